#pragma once
// The figures of the analyses as plain functions over a curve's columns and a range of its
// points: the statistics of the calculation view, the limit times of the limit view, the
// integral of the integration dialog and the texts they are shown with. Views and dialogs only
// gather the parameters and show the results.
//
// What counts as a measurement is decided here once: a gap marker and a NaN value carry no
// measured value; every other point does, infinite values included, and so does the first
// value after a gap.
//
// Each function takes the curve's block summary (TCurveSummary) or none. With it, whole
// blocks are taken from their summaries and only the ragged ends are read point by point;
// without it every point is read (the reference the fast path is checked against).

#include "data/CurveData.h"
#include "data/CurveSummary.h"

#include <QString>

#include <optional>
#include <vector>

// The points of a range, inclusive; First is -1 when there is none.
struct TIndexRange {
    qint64 First = -1;
    qint64 Last = -1;
    bool IsEmpty() const { return First < 0; }
};

// The points of a curve with from <= time <= to (the chart's visible points).
TIndexRange VisibleRange(const TCurveData& d, double from, double to);

// Whether point i carries a measured value.
bool IsMeasured(const TCurveData& d, qint64 i);

struct TRangeStats {
    qint64 Count = 0;    // measured values (the finite ones when asked for those alone)
    qint64 Infinite = 0; // infinite values left out, when asked for finite values alone
    double Min = 0.0, Max = 0.0, Average = 0.0;
    // The sample standard deviation sqrt((n·Σy² − (Σy)²) / (n·(n−1))), 0 when rounding makes
    // the quotient negative, and 0 below two values.
    double StdDev = 0.0;
    // What the calculation view shows: 0 no value, 1 one value, 2 two or more.
    int CalcCount() const { return Count >= 2 ? 2 : int(Count); }
};

// The statistics of the measured values. The calculation view takes infinite values in (its
// minimum or maximum is then infinite); with finiteOnly they are counted apart and left out,
// as a document's figures leave them.
TRangeStats RangeStats(const TCurveData& d, const TCurveSummary* summary, TIndexRange range,
                       bool finiteOnly = false);

// The most common step between the stamps of a range (the sampling interval), to the
// microsecond; at most 65536 steps, spread evenly over the range, are looked at. NaN below two
// points.
double TypicalStep(const TCurveData& d, TIndexRange range);

// A curve's limits: mode 0 none, 1 below L1, 2 above L1, 3 strictly between, 4 outside.
struct TLimitRule {
    int Mode = 0;
    double L1 = 0.0, L2 = 0.0;
    bool IsAlarm(double value) const;
};

struct TLimitTimes {
    bool Valid = false; // the curve has limits and at least two points in the range
    double Out = 0.0;   // seconds outside the limits
    double In = 0.0;    // seconds inside them
};

// Each stretch of one alarm state is credited, up to the first point of the next state, to
// the state it began in. A point without a measured value ends the stretch there (credited as
// usual); the time from it to the next measured value counts to neither total.
TLimitTimes CalcLimits(const TCurveData& d, const TCurveSummary* summary, const TLimitRule& limits,
                       TIndexRange range);

// The integral between xmin <= xmax by the trapezoidal rule, with the line through the
// neighbouring points at both bounds. The first piece starts at the first point at or after
// xmin (nothing is extrapolated before the first point or after the last). A trapezoid needs
// two consecutive measured values, so no area is added across a gap or a NaN value. A range
// that holds no point of the curve has no integral (nullopt).
std::optional<double> Integrate(const TCurveData& d, const TCurveSummary* summary, double xmin, double xmax);

// The flow total in litres of a flow in litres per minute integrated over seconds.
inline double FlowTotal(double integral) {
    return integral / 60.0;
}

// A duration as whole days, "+" and the rest in the long time format: 90061 s is "1+01:01:01".
QString DurationText(double seconds);
// A duration as documents read it: days, then hours:minutes:seconds ("1 d 06:37:00", in the
// current language's form).
QString DayDurationText(double seconds);

// ---------------------------------------------------------------------- report figures

// The first point of the range whose measured value equals value (the time of a range's
// minimum or maximum), -1 when there is none. With the summary, blocks that cannot hold the
// value are skipped.
qint64 FirstIndexOf(const TCurveData& d, const TCurveSummary* summary, TIndexRange range, double value);

struct TLimitViolations {
    qint64 Count = 0;       // separate violations
    qint64 FirstIndex = -1; // the first point of the first one, -1 with none
};

// A violation is a run of measured values in alarm. A point without a measured value ends it,
// as it ends a stretch of the limit times, so an alarm on both sides of a gap counts twice. A
// range that begins in alarm begins with a violation. With the summary, blocks whose values
// all lie on one side of the limits are taken whole.
TLimitViolations LimitViolations(const TCurveData& d, const TCurveSummary* summary, const TLimitRule& limits,
                                 TIndexRange range);

// The violations themselves, by the same rule, at most maxCount of them from the range's start:
// the first and the last point of each run in alarm.
struct TViolationSpan {
    qint64 First = -1, Last = -1;
};
std::vector<TViolationSpan> ListViolations(const TCurveData& d, const TLimitRule& limits, TIndexRange range,
                                           size_t maxCount);

// The customary activation energy of the mean kinetic temperature, in kJ/mol: ΔH/R = 10000 K.
inline constexpr double kMktActivationEnergy = 83.144;

// The mean kinetic temperature in °C of the measured values in °C:
// (ΔH/R) / (−ln(Σ e^(−ΔH/(R·Tk)) / n)) − 273.15, with R = 8.3144 J/(mol·K) and the activation
// energy ΔH in kJ/mol. Infinite values and values at or below absolute zero are left out; NaN
// when no value is left.
double MeanKineticTemperature(const TCurveData& d, TIndexRange range,
                              double activationEnergy = kMktActivationEnergy);
