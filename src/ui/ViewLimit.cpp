#include "ui/ViewLimit.h"

#include "config/Texts.h"
#include "store/DataBase.h"

using zeb::TTextId;
using zeb::Txt;

namespace {
constexpr int kColumns[3] = {150, 150, 100};
}

TfrmViewLimit::TfrmViewLimit(TDataBase* db, QWidget* parent) : TfrmViewBase(db, "frmViewLimit", kColumns, 1, parent) {
    LoadLanguageRes();
}

void TfrmViewLimit::LoadLanguageRes() {
    setWindowTitle(Txt(TTextId::Limits));
    SetColumnTitles(Txt(TTextId::ViewColumnCurve), Txt(TTextId::ViewColumnParameter), Txt(TTextId::ViewColumnValue));
}

void TfrmViewLimit::ReCalc() {
    if (!BeginReCalc()) return;
    TCalcKessa& kessa = FDb->CalcKessa();
    kessa.clearLimitValues();
    const TAxisState& bottom = FDb->Axis_Get(axBottom);
    for (int i = 0; i < FDb->Curve_Count(); ++i) {
        if (!FDb->Curve_IsActive(i)) continue;
        const auto summary = FDb->Summary(i);
        const TCurveFigures f = CurveFigures(FDb->Data(i), summary.get(), LimitRuleOf(FDb->Cfg_Curve_Get(i)),
                                             bottom.Min, bottom.Max);
        if (!f.Times.Valid) continue;
        FFigures.push_back({i, f});
        const QString out = DurationText(f.Times.Out);
        AddRow(FDb->Curve_NameUnitGet(i), Txt(TTextId::ViewOutOfLimits), out);
        AddRow(QString(), Txt(TTextId::ViewWithinLimits), DurationText(f.Times.In));
        if (kessa.isCalcCurve(i)) kessa.LimitText[0] = out;
    }
}
