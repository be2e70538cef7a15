#include "analysis/Figures.h"

#include "data/Formats.h"

#include <cmath>

TCurveFigures CurveFigures(const TCurveData& d, const TCurveSummary* summary, const TLimitRule& limits,
                           double from, double to, const TFigureOptions& options) {
    TCurveFigures f;
    f.Range = VisibleRange(d, from, to);
    f.Limits = limits;
    f.Stats = RangeStats(d, summary, f.Range);
    if (options.Finite || options.ExtremeTimes) f.Finite = RangeStats(d, summary, f.Range, true);
    if (options.ExtremeTimes && f.Finite.Count > 0) {
        f.MinIndex = FirstIndexOf(d, summary, f.Range, f.Finite.Min);
        f.MaxIndex = FirstIndexOf(d, summary, f.Range, f.Finite.Max);
    }
    if (options.Step) f.Step = TypicalStep(d, f.Range);
    f.Times = CalcLimits(d, summary, limits, f.Range);
    if (options.Violations && f.HasLimits()) f.Violations = LimitViolations(d, summary, limits, f.Range);
    if (options.MktEnergy) f.Mkt = MeanKineticTemperature(d, f.Range, *options.MktEnergy);
    if (options.Integral) f.Integral = Integrate(d, summary, from, to);
    return f;
}

namespace FigureText {

QString Value(double v, const QString& format) {
    return zeb::FormatFloat(format, v);
}

QString StdDev(double v) {
    return zeb::FormatFloat(QStringLiteral("0.00000E+00"), v);
}

QString WithUnit(const QString& text, const QString& unit) {
    return unit.isEmpty() ? text : text + QLatin1Char(' ') + unit;
}

} // namespace FigureText

bool IsCelsius(QString unit) {
    unit.remove(QLatin1Char(' '));
    return unit.compare(QStringLiteral("°C"), Qt::CaseInsensitive) == 0;
}
