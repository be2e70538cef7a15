#include "ViewCalc.h"

#include "Analysis.h"
#include "CalcKessa.h"
#include "DataBase.h"
#include "Formats.h"
#include "Texts.h"

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
    return changed || CalcKessa().isUpdated();
}

void TfrmViewCalc::ReCalc() {
    if (!BeginReCalc()) return;
    FClipText.clear();
    TCalcKessa& kessa = CalcKessa();
    kessa.clearCalcValues();
    const TAxisState& bottom = FDb->View().Axes[axBottom];
    for (int i = 0; i < FDb->Curve_Count(); ++i) {
        if (!FDb->Curve_IsActive(i)) continue;
        TMseSettingsCurve& c = FDb->Cfg_Curve_Get(i);
        const TCurveData& d = FDb->Data(i);
        const auto summary = FDb->Summary(i);
        const TRangeStats st = RangeStats(d, summary.get(), VisibleRange(d, bottom.Min, bottom.Max));
        c.CalcCount = st.CalcCount();
        c.CalcMin = c.CalcMax = c.CalcAverage = c.CalcStdDev = c.CalcSpan = 0.0;
        c.CalcMinText.clear();
        c.CalcMaxText.clear();
        c.CalcAverageText.clear();
        c.CalcSpanText.clear();
        c.CalcStdDevText.clear();
        const QString format = FDb->Curve_FormatGet(i);
        if (c.CalcCount > 0) {
            c.CalcMin = st.Min;
            c.CalcMax = st.Max;
            c.CalcAverage = st.Average;
            c.CalcStdDev = st.StdDev;
            c.CalcSpan = std::abs(st.Max - st.Min);
            c.CalcMinText = zeb::FormatFloat(format, c.CalcMin);
            c.CalcMaxText = zeb::FormatFloat(format, c.CalcMax);
            c.CalcSpanText = zeb::FormatFloat(format, c.CalcSpan);
            c.CalcAverageText = zeb::FormatFloat(format, c.CalcAverage);
        }
        // Scientific whatever the curve's format; with one value the row stays empty.
        if (c.CalcCount > 1) c.CalcStdDevText = zeb::FormatFloat(QStringLiteral("0.00000E+00"), c.CalcStdDev);
        if (c.CalcCount > 0) {
            AddRow(FDb->Curve_NameUnitGet(i), Txt(TTextId::ViewMinimum), c.CalcMinText);
            AddRow(QString(), Txt(TTextId::ViewMaximum), c.CalcMaxText);
            AddRow(QString(), Txt(TTextId::ViewAverage), c.CalcAverageText);
            AddRow(QString(), Txt(TTextId::ViewStdDev), c.CalcStdDevText);
        }
        if (kessa.isCalcCurve(i) && c.CalcCount > 0) {
            // Mapped one by one: with a negative factor the minimum's text is the larger value.
            kessa.MinText = zeb::FormatFloat(format, kessa.getValue(c.CalcMin));
            kessa.MaxText = zeb::FormatFloat(format, kessa.getValue(c.CalcMax));
            kessa.AverageText = zeb::FormatFloat(format, kessa.getValue(c.CalcAverage));
            kessa.StdDevText.clear();
            if (c.CalcCount > 1) kessa.StdDevText = c.CalcStdDevText;
        }
        if (!FClipText.isEmpty()) FClipText += QLatin1Char('\t');
        FClipText += c.CalcSpanText + QLatin1Char('\t') + c.CalcStdDevText;
    }
}
