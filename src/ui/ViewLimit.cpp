#include "ViewLimit.h"

#include "Analysis.h"
#include "CalcKessa.h"
#include "DataBase.h"
#include "Texts.h"

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
    TCalcKessa& kessa = CalcKessa();
    kessa.clearLimitValues();
    const TAxisState& bottom = FDb->View().Axes[axBottom];
    for (int i = 0; i < FDb->Curve_Count(); ++i) {
        if (!FDb->Curve_IsActive(i)) continue;
        TMseSettingsCurve& c = FDb->Cfg_Curve_Get(i);
        const TCurveData& d = FDb->Data(i);
        const auto summary = FDb->Summary(i);
        const TLimitTimes t = CalcLimits(d, summary.get(), TLimitRule{c.LAlarm, c.LValue1, c.LValue2},
                                         VisibleRange(d, bottom.Min, bottom.Max));
        c.LimitValid = t.Valid;
        c.LimitOutTime = t.Out;
        c.LimitInTime = t.In;
        if (!t.Valid) continue;
        c.LimitOutText = DurationText(t.Out);
        c.LimitInText = DurationText(t.In);
        AddRow(FDb->Curve_NameUnitGet(i), Txt(TTextId::ViewOutOfLimits), c.LimitOutText);
        AddRow(QString(), Txt(TTextId::ViewWithinLimits), c.LimitInText);
        if (kessa.isCalcCurve(i)) kessa.LimitText[0] = c.LimitOutText;
    }
}
