#pragma once
// TCalcKessa: the additional flow channel, a linear scaling factor * y + offset of one
// reference curve. The store owns the program's one channel; its dialog edits it, the chart
// draws the derived channel while it is active, and the calculation and limit views fill its
// result texts.

#include <QString>

class TCalcKessa {
public:
    double getValue(double y) const { return FFactor * y + FOffset; }
    // Stores all six, marks the settings as changed and forgets every result text.
    void setCalcCurve(bool active, int index, const QString& name, const QString& unit, double factor,
                      double offset);
    bool isCalcCurve(int i) const { return FActive && i == FCurve; }
    bool isCalcCurveVisible() const { return FActive && FVisible; }
    void setVisibleCurve(int i) {
        if (i == FCurve) FVisible = true;
    }
    void clearVisibleCurve() {
        FVisible = false;
        FUpdated = false;
    }
    bool isUpdated() const { return FUpdated; }
    void setInactive() { FActive = false; }
    void clearCalcValues();
    void clearLimitValues();

    bool Active() const { return FActive; }
    int Curve() const { return FCurve; }
    QString Name() const { return FName; }
    QString Unit() const { return FUnit; }
    double Factor() const { return FFactor; }
    double Offset() const { return FOffset; }

    // The results the calculation view maps through getValue, and the limit view's time
    // outside the limits (the second limit text is kept for the report).
    QString MinText, MaxText, AverageText, StdDevText;
    QString LimitText[2];

private:
    bool FActive = false;
    int FCurve = -1;
    QString FName = QStringLiteral("Flow");
    QString FUnit = QStringLiteral("m3/h");
    double FFactor = 2.0;
    double FOffset = 0.0;
    bool FVisible = false;
    bool FUpdated = false;
};
