// The main window's commands on the chart: grids, axes, crosshairs, scale and undo, the
// analyses it shows, and the texts written onto it.

#include "ui/Main.h"

#include "analysis/CalcKessa.h"
#include "config/Texts.h"
#include "store/DataBase.h"
#include "ui/CalcDlg.h"
#include "ui/CalcKessaDlg.h"
#include "ui/CfgPage.h"
#include "ui/ChartTexts.h"
#include "ui/CrossHair.h"
#include "ui/ViewCalc.h"
#include "ui/ViewFFT.h"
#include "ui/ViewLimit.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QCursor>

#include <algorithm>

using zeb::TTextId;
using zeb::Txt;
using zeb::TZebDlg;

// ====================================================================== graph commands

void TForm1::GraphGridSet(int axis, bool on, bool store) {
    for (int a = 0; a < 3; ++a) {
        if (axis != -1 && a != axis) continue;
        menGraphGrid[a]->setChecked(on);
        FChart->SetGrid(a, on, store);
    }
}

void TForm1::GraphAxisFixed(int axis, bool fixed) {
    for (int a = 0; a < 3; ++a) {
        if (axis != -1 && a != axis) continue;
        menGraphAxis[a]->setChecked(fixed);
        FChart->SetAxisFixed(a, fixed);
    }
}

void TForm1::GUI_GraphGridBottom() {
    GraphGridSet(axBottom, menGraphGrid[axBottom]->isChecked(), true);
    SetModified(true);
}
void TForm1::GUI_GraphGridLeft() {
    GraphGridSet(axLeft, menGraphGrid[axLeft]->isChecked(), true);
    SetModified(true);
}
void TForm1::GUI_GraphGridRight() {
    GraphGridSet(axRight, menGraphGrid[axRight]->isChecked(), true);
    SetModified(true);
}
void TForm1::GUI_GraphAxisBottom() {
    GraphAxisFixed(axBottom, menGraphAxis[axBottom]->isChecked());
    SetModified(true);
}
void TForm1::GUI_GraphAxisLeft() {
    GraphAxisFixed(axLeft, menGraphAxis[axLeft]->isChecked());
    SetModified(true);
}
void TForm1::GUI_GraphAxisRight() {
    GraphAxisFixed(axRight, menGraphAxis[axRight]->isChecked());
    SetModified(true);
}

// On: onto the axis the settings name for the cursor; the width always from the settings.
void TForm1::GraphCursorSet(int which, bool on) {
    TCrossHair* ch = FChart->CrossHair();
    ch->SetCursor(which, on ? FDataBase->Cursor_Get(which).Axis : -1);
    ch->SetWidth(which, FDataBase->Cursor_Get(which).Width);
    menGraphCursor[which]->setChecked(ch->GetActive(which) != -1);
}

void TForm1::GUI_GraphCursor1() {
    GraphCursorSet(0, menGraphCursor[0]->isChecked());
}
void TForm1::GUI_GraphCursor2() {
    GraphCursorSet(1, menGraphCursor[1]->isChecked());
}

void TForm1::GUI_GraphLimits() {
    // The action has already flipped its check mark: the new state is the opposite of the old.
    FDataBase->Curve_SetAllLimitLines(menGraphLimits->isChecked());
    SetModified(true);
}

void TForm1::GUI_GraphScale() {
    GraphAxisFixed(-1, false);
    FChart->AutoScale();
    UpdateUndo();
    SetModified(true);
}

void TForm1::GUI_GraphRedo() {
    FChart->Undo();
    UpdateUndo();
}

void TForm1::UpdateUndo() {
    menGraphRedo->setEnabled(FChart->IsUndoPossible());
}

void TForm1::GUI_Graph() {
    menGraphLimits->setChecked(FDataBase->LimitLinesOn());
    menGraphFuncFlow->setVisible(FDataBase->ExistsFlowModul());
    menGraphFuncCalc->setChecked(FViewCalc->IsActive());
    menGraphCheckboxes->setChecked(FDataBase->Print_Get().CheckBoxes);
    menGraphNote->setChecked(FChart->Texts()->NoticesShown());
    menGraphFuncLimit->setChecked(FViewLimit->IsActive());
    for (int k = 0; k < 2; ++k)
        menGraphCursor[k]->setChecked(FChart->CrossHair()->GetActive(k) != -1);
    UpdateUndo();
}

// The chart has already switched the limit lines (plain click) or the series (with a key).
void TForm1::Graph_OnLegendClick(int, Qt::KeyboardModifiers modifiers) {
    if (modifiers & (Qt::ShiftModifier | Qt::AltModifier | Qt::ControlModifier)) FCfgTab = 1;
    SetModified(true);
}

// Shift, Alt or Ctrl on the title, a curve, an axis or a legend entry: the configuration
// page on the tab that edits it.
void TForm1::Graph_OnElementClick(int configTab) {
    if (FLoading || onbView->currentIndex() != pgGraph) return;
    FCfgTab = std::clamp(configTab, 0, TCfgPage::tabCount - 1);
    SetViewPage(pgCfg);
}

// Menu check marks and tool buttons show what the chart holds now.
void TForm1::SyncGraphSwitches() {
    for (int a = 0; a < 3; ++a) {
        menGraphGrid[a]->setChecked(FChart->Grid(a));
        menGraphAxis[a]->setChecked(FChart->IsAxisFixed(a));
    }
    menGraphLimits->setChecked(FDataBase->LimitLinesOn());
    for (int k = 0; k < 2; ++k)
        menGraphCursor[k]->setChecked(FChart->CrossHair()->GetActive(k) != -1);
    UpdateUndo();
}

void TForm1::chkBigDataOnClick() {
    FDataBase->switchBigData(chkBigDataOn->isChecked());
    chkBigDataOn->setChecked(FDataBase->isBigDataOn());
}

// ====================================================================== analyses

void TForm1::menGraphFuncIntegralClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    TfrmCalcDlg dlg(this);
    dlg.Execute(FDataBase, FChart->CrossHair(), false);
}

void TForm1::menGraphFuncFlowClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    TfrmCalcDlg dlg(this);
    dlg.Execute(FDataBase, FChart->CrossHair(), true);
}

void TForm1::menGraphFuncCalcClick() {
    Analyses_SetShown(true, !FViewCalc->IsActive());
}

void TForm1::menGraphFuncLimitClick() {
    Analyses_SetShown(false, !FViewLimit->IsActive());
}

void TForm1::menGraphFuncKessaClick() {
    if (FLoading) return;
    TfrmCalcKessaDlg dlg(this);
    dlg.Execute(FDataBase); // the store tells chart and views of the channel's new settings
}

void TForm1::menGraphFFTClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    if (!FViewFFT) FViewFFT = new TfrmViewFFT(this);
    FViewFFT->Execute(FDataBase, FChart->CrossHair());
}

// ====================================================================== texts

// The notices are drawn on the left axis: without it they can only be hidden.
void TForm1::menGraphNoteClick() {
    TChartTexts& texts = *FChart->Texts();
    if (!FChart->ChartAxis(axLeft)->visible()) {
        texts.SetNoticesShown(false);
        menGraphNote->setChecked(false);
        ShowError(Txt(TTextId::MsgActivateLeftAxis));
        return;
    }
    texts.SetNoticesShown(!texts.NoticesShown());
    menGraphNote->setChecked(texts.NoticesShown());
}

void TForm1::spbTextModifyClick() {
    FChart->SetTextMode(menTextModify->isChecked());
}

void TForm1::spbTextInsertClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    QString text;
    if (!TZebDlg::InputBox(Txt(TTextId::TextInsert), QString(), text, QCursor::pos()) || text.isEmpty()) return;
    FChart->Texts()->InsertText(text);
}

// Shown or not is part of the display settings.
void TForm1::Analyses_SetShown(bool calc, bool shown) {
    TfrmViewBase* view = calc ? static_cast<TfrmViewBase*>(FViewCalc) : FViewLimit;
    (calc ? FDataBase->General_Get().ViewCalc : FDataBase->General_Get().ViewLimit) = shown;
    if (shown) {
        view->SetActive();
        view->Display(onbView->currentIndex() == pgGraph);
        Analyses_ReCalc();
    } else {
        view->SetInactive();
    }
    (calc ? menGraphFuncCalc : menGraphFuncLimit)->setChecked(shown);
    SetModified(true);
}

void TForm1::Analyses_Arm() {
    const TGeneralState& g = FDataBase->General_Get();
    for (TfrmViewBase* view : std::initializer_list<TfrmViewBase*>{FViewCalc, FViewLimit}) {
        const bool shown = view == FViewCalc ? g.ViewCalc : g.ViewLimit;
        view->SetInactive();
        if (shown) {
            view->SetActive();
            view->Display(onbView->currentIndex() == pgGraph);
        }
    }
    Analyses_ReCalc();
}

void TForm1::Analyses_ReCalc() {
    if (FLoading) return;
    for (TfrmViewBase* view : std::initializer_list<TfrmViewBase*>{FViewCalc, FViewLimit})
        if (view->IsActive()) view->ReCalc();
    // What the views have seen of the flow channel is up to date; the chart draws its curve
    // while the reference curve is shown.
    TCalcKessa& kessa = FDataBase->CalcKessa();
    kessa.clearVisibleCurve();
    for (int i = 0; i < FDataBase->Curve_Count(); ++i)
        if (FDataBase->Curve_IsActive(i)) kessa.setVisibleCurve(i);
}

