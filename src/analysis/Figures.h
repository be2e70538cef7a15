#pragma once
// A curve's figures over a time range as one value: what the calculation view, the limit view,
// the report and zebtool show, computed by the same functions in one call, and the texts they
// are written with. Nothing of it is kept in the display settings.

#include "analysis/Analysis.h"
#include "config/MseSettings.h"

#include <QString>

#include <limits>
#include <optional>

// What to work out beyond the statistics and the limit times (those always come).
struct TFigureOptions {
    bool Finite = false;      // statistics of the finite values, the infinite ones counted apart
    bool ExtremeTimes = false; // the first points of the finite minimum and maximum
    bool Step = false;        // the sampling interval
    bool Violations = false;  // the limit violations
    bool Integral = false;    // the integral over the range
    // Set: the mean kinetic temperature with this activation energy in kJ/mol (°C curves).
    std::optional<double> MktEnergy;
};

struct TCurveFigures {
    TIndexRange Range;   // the points with from <= time <= to
    TRangeStats Stats;   // every measured value, infinite ones included (the views' rule)
    TRangeStats Finite;  // asked for: finite values only, the infinite ones in Finite.Infinite
    qint64 MinIndex = -1, MaxIndex = -1; // asked for: where the finite extremes first occur
    double Step = std::numeric_limits<double>::quiet_NaN();
    TLimitRule Limits;
    TLimitTimes Times;
    TLimitViolations Violations;
    double Mkt = std::numeric_limits<double>::quiet_NaN();
    std::optional<double> Integral;
    bool HasLimits() const { return Limits.Mode >= 1 && Limits.Mode <= 4; }
};

TCurveFigures CurveFigures(const TCurveData& d, const TCurveSummary* summary, const TLimitRule& limits,
                           double from, double to, const TFigureOptions& options = {});

// The texts of figures, as every place writes them.
namespace FigureText {
// A value in the curve's number format.
QString Value(double v, const QString& format);
// The standard deviation, scientific whatever the curve's format.
QString StdDev(double v);
// The unit after a value, when the curve has one.
QString WithUnit(const QString& text, const QString& unit);
} // namespace FigureText

// A curve's limits as its display settings hold them.
inline TLimitRule LimitRuleOf(const TMseSettingsCurve& c) {
    return {c.LAlarm, c.LValue1, c.LValue2};
}

// Whether a unit is degrees Celsius: the curves a mean kinetic temperature is made of.
bool IsCelsius(QString unit);
