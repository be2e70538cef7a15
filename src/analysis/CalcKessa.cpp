#include "analysis/CalcKessa.h"

void TCalcKessa::setCalcCurve(bool active, int index, const QString& name, const QString& unit, double factor,
                              double offset) {
    FActive = active;
    FCurve = index;
    FName = name;
    FUnit = unit;
    FFactor = factor;
    FOffset = offset;
    FUpdated = true;
    clearCalcValues();
    clearLimitValues();
}

void TCalcKessa::clearCalcValues() {
    MinText.clear();
    MaxText.clear();
    AverageText.clear();
    StdDevText.clear();
}

void TCalcKessa::clearLimitValues() {
    LimitText[0].clear();
    LimitText[1].clear();
}
