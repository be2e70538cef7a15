#include "ui/ViewCalc.h"

#include "config/Texts.h"
#include "store/DataBase.h"

#include <cmath>

using zeb::TTextId;
using zeb::Txt;

namespace {
constexpr int kColumns[3] = {150, 100, 100};
}

TfrmViewCalc::TfrmViewCalc(TDataBase* db, QWidget* parent) : TfrmViewBase(db, "frmViewCalc", kColumns, 0, parent) {
    LoadLanguageRes();
}

void TfrmViewCalc::LoadLanguageRes() {
    setWindowTitle(Txt(TTextId::ViewCalcCaption));
    SetColumnTitles(Txt(TTextId::ViewColumnCurve), Txt(TTextId::ViewColumnParameter), Txt(TTextId::ViewColumnValue));
}

bool TfrmViewCalc::NeedsRecalc() {
    // The flow channel's new settings need its texts anew, whatever the chart shows.
    const bool changed = TfrmViewBase::NeedsRecalc();
    return changed || FDb->CalcKessa().isUpdated();
}

void TfrmViewCalc::ReCalc() {
    if (!BeginReCalc()) return;
    FClipText.clear();
    TCalcKessa& kessa = FDb->CalcKessa();
    kessa.clearCalcValues();
    const TAxisState& bottom = FDb->Axis_Get(axBottom);
    for (int i = 0; i < FDb->Curve_Count(); ++i) {
        if (!FDb->Curve_IsActive(i)) continue;
        const auto summary = FDb->Summary(i);
        const TCurveFigures f = CurveFigures(FDb->Data(i), summary.get(), LimitRuleOf(FDb->Cfg_Curve_Get(i)),
                                             bottom.Min, bottom.Max);
        FFigures.push_back({i, f});
        const TRangeStats& st = f.Stats;
        const QString format = FDb->Curve_FormatGet(i);
        // With one value the standard deviation's row stays empty.
        const QString stdDev = st.CalcCount() > 1 ? FigureText::StdDev(st.StdDev) : QString();
        const QString span = st.CalcCount() > 0 ? FigureText::Value(std::abs(st.Max - st.Min), format) : QString();
        if (st.CalcCount() > 0) {
            AddRow(FDb->Curve_NameUnitGet(i), Txt(TTextId::ViewMinimum), FigureText::Value(st.Min, format));
            AddRow(QString(), Txt(TTextId::ViewMaximum), FigureText::Value(st.Max, format));
            AddRow(QString(), Txt(TTextId::ViewAverage), FigureText::Value(st.Average, format));
            AddRow(QString(), Txt(TTextId::ViewStdDev), stdDev);
        }
        if (kessa.isCalcCurve(i) && st.CalcCount() > 0) {
            // Mapped one by one: with a negative factor the minimum's text is the larger value.
            kessa.MinText = FigureText::Value(kessa.getValue(st.Min), format);
            kessa.MaxText = FigureText::Value(kessa.getValue(st.Max), format);
            kessa.AverageText = FigureText::Value(kessa.getValue(st.Average), format);
            kessa.StdDevText = stdDev;
        }
        if (!FClipText.isEmpty()) FClipText += QLatin1Char('\t');
        FClipText += span + QLatin1Char('\t') + stdDev;
    }
}
