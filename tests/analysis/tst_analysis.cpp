// The analyses' figures: reference signals against their closed-form answers, the rules for
// gaps and NaN values, and the block-summary paths against a pass over every point.

#include "analysis/Analysis.h"
#include "analysis/CalcKessa.h"
#include "data/Formats.h"

#include <QTest>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <random>

namespace {

constexpr double kT0 = 7.6e8;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// n points one second apart from kT0 with the given values.
TCurveData Curve(qint64 n, const std::function<double(qint64)>& value) {
    TCurveData d;
    for (qint64 i = 0; i < n; ++i)
        d.Append(kT0 + double(i), value(i));
    return d;
}

TIndexRange All(const TCurveData& d) {
    return {0, d.Count() - 1};
}

bool Near(double a, double b, double relative) {
    return std::abs(a - b) <= relative * std::max({1.0, std::abs(a), std::abs(b)});
}

} // namespace

class TstAnalysis : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { zeb::SetFormats(2); }

    void statisticsOfReferenceSignals_data() {
        QTest::addColumn<int>("signal");
        QTest::addColumn<qint64>("count");
        QTest::newRow("constant 1013") << 0 << qint64(100000);
        QTest::newRow("ramp") << 1 << qint64(50001);
        QTest::newRow("sine, whole periods") << 2 << qint64(40000);
    }
    void statisticsOfReferenceSignals() {
        QFETCH(int, signal);
        QFETCH(qint64, count);
        const double n = double(count);
        // Values are kept as singles, as in the recording.
        const std::function<double(qint64)> f[] = {
            [](qint64) { return 1013.25; },
            [](qint64 i) { return -5.0 + 0.25 * double(i); },
            [](qint64 i) { return 20.0 + 4.0 * std::sin(2.0 * M_PI * double(i) / 400.0); }};
        const TCurveData d = Curve(count, f[signal]);
        const TCurveSummary summary(d);
        double mean = 0, std = 0, min = 0, max = 0, tolerance = 1e-12;
        switch (signal) {
        case 0:
            mean = min = max = 1013.25;
            break;
        case 1:
            min = -5.0;
            max = -5.0 + 0.25 * (n - 1);
            mean = (min + max) / 2.0;
            std = 0.25 * std::sqrt(n * (n + 1) / 12.0);
            break;
        default:
            mean = 20.0;
            std = 4.0 / std::sqrt(2.0) * std::sqrt(n / (n - 1));
            min = 16.0;
            max = 24.0;
            tolerance = 1e-6; // singles of the sine
        }
        for (const TCurveSummary* s : {static_cast<const TCurveSummary*>(nullptr), &summary}) {
            const TRangeStats r = RangeStats(d, s, All(d));
            QCOMPARE(r.Count, count);
            QCOMPARE(r.CalcCount(), 2);
            QVERIFY2(Near(r.Average, mean, tolerance), qPrintable(QString::number(r.Average, 'g', 17)));
            QVERIFY2(Near(r.StdDev, std, tolerance), qPrintable(QString::number(r.StdDev, 'g', 17)));
            QVERIFY(Near(r.Min, min, 1e-6));
            QVERIFY(Near(r.Max, max, 1e-6));
        }
    }

    void fewValues() {
        const TCurveData one = Curve(1, [](qint64) { return 7.5; });
        TRangeStats r = RangeStats(one, nullptr, All(one));
        QCOMPARE(r.CalcCount(), 1);
        QCOMPARE(r.Min, 7.5);
        QCOMPARE(r.Max, 7.5);
        QCOMPARE(r.Average, 7.5);
        QCOMPARE(r.StdDev, 0.0);
        const TCurveData two = Curve(2, [](qint64) { return 3.0; });
        r = RangeStats(two, nullptr, All(two));
        QCOMPARE(r.CalcCount(), 2);
        QCOMPARE(r.StdDev, 0.0);
        QCOMPARE(RangeStats(two, nullptr, TIndexRange{}).CalcCount(), 0);
        // The visible points: from <= time <= to.
        const TCurveData d = Curve(10, [](qint64 i) { return double(i); });
        QCOMPARE(VisibleRange(d, kT0 + 2.5, kT0 + 5.0).First, 3);
        QCOMPARE(VisibleRange(d, kT0 + 2.5, kT0 + 5.0).Last, 5);
        QVERIFY(VisibleRange(d, kT0 + 2.2, kT0 + 2.8).IsEmpty());
        QVERIFY(VisibleRange(d, kT0 + 20, kT0 + 30).IsEmpty());
    }

    // Gap markers and NaN values are no measurements; infinite ones are.
    void valuesThatAreNoMeasurements() {
        TCurveData d;
        d.Append(kT0, 1.0);
        d.Append(kT0 + 1, 0.0, TPointKind::Gap);
        d.Append(kT0 + 2, 3.0, TPointKind::GapEnd);
        d.Append(kT0 + 3, kNaN);
        d.Append(kT0 + 4, 5.0);
        const TRangeStats r = RangeStats(d, nullptr, All(d));
        QCOMPARE(r.Count, qint64(3));
        QCOMPARE(r.Min, 1.0);
        QCOMPARE(r.Average, 3.0);
        QVERIFY(!IsMeasured(d, 1));
        QVERIFY(IsMeasured(d, 2));
        QVERIFY(!IsMeasured(d, 3));
        // No pair of neighbours is measured on both ends: no area.
        QCOMPARE(*Integrate(d, nullptr, kT0, kT0 + 4), 0.0);
        d.Append(kT0 + 5, 7.0);
        QCOMPARE(*Integrate(d, nullptr, kT0, kT0 + 5), 6.0);
        d.Append(kT0 + 6, kInf);
        QCOMPARE(RangeStats(d, nullptr, All(d)).Max, kInf);
    }

    void integralBounds_data() {
        QTest::addColumn<bool>("square"); // y = t² (else the line y = 2 + t/2)
        QTest::addColumn<double>("from"); // seconds after the first point
        QTest::addColumn<double>("to");
        QTest::addColumn<double>("expected"); // NaN: no integral
        // Sampled each second over t = 0..100 s. Trapezoids are exact on the line; on t² each
        // whole step adds 1/6 to the exact area, so the sum between points a and b is known.
        auto line = [](double a, double b) { return 2.0 * (b - a) + 0.25 * (b * b - a * a); };
        auto square = [](double a, double b) { return (b * b * b - a * a * a) / 3.0 + (b - a) / 6.0; };
        const double none = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("line, whole range") << false << 0.0 << 100.0 << line(0, 100);
        QTest::newRow("line, on points") << false << 10.0 << 20.0 << line(10, 20);
        QTest::newRow("line, between points") << false << 10.25 << 20.75 << line(10.25, 20.75);
        // Starting before the first point starts at it, ending after the last ends at it: a
        // line would hide an extrapolation, t² does not.
        QTest::newRow("before the first point") << true << -50.0 << 10.0 << square(0, 10);
        QTest::newRow("after the last point") << true << 90.0 << 500.0 << square(90, 100);
        QTest::newRow("beyond both ends") << true << -5.0 << 105.0 << square(0, 100);
        // Between points 10 and 11 the line through them: (110.5 + 121) / 2 · 0.5 to 11.
        QTest::newRow("from between points") << true << 10.5 << 20.0 << 57.875 + square(11, 20);
        // No point in the range: nothing to integrate, whatever the neighbours say.
        QTest::newRow("wholly before") << true << -50.0 << -10.0 << none;
        QTest::newRow("wholly after") << true << 200.0 << 300.0 << none;
        QTest::newRow("inside one step") << true << 10.25 << 10.75 << none;
        QTest::newRow("on the first point only") << true << -3.0 << 0.0 << 0.0;
    }
    void integralBounds() {
        QFETCH(bool, square);
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(double, expected);
        const TCurveData d = Curve(101, [square](qint64 i) {
            const double t = double(i);
            return square ? t * t : 2.0 + 0.5 * t;
        });
        const TCurveSummary summary(d);
        for (const TCurveSummary* s : {static_cast<const TCurveSummary*>(nullptr), &summary}) {
            const std::optional<double> result = Integrate(d, s, kT0 + from, kT0 + to);
            if (std::isnan(expected)) {
                QVERIFY2(!result, qPrintable(QString::number(result.value_or(0.0))));
            } else {
                QVERIFY(result);
                QVERIFY2(Near(*result, expected, 1e-12), qPrintable(QString::number(*result, 'g', 17)));
            }
        }
    }

    void flowTotal() {
        // 60 l/min for 60 s: 60 litres.
        const TCurveData d = Curve(61, [](qint64) { return 60.0; });
        QCOMPARE(FlowTotal(*Integrate(d, nullptr, kT0, kT0 + 60)), 60.0);
    }

    // A step across the limit at second 100 of 300: each stretch counts to the state it began in.
    void limitTimesOfAStep_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("l1");
        QTest::addColumn<double>("l2");
        QTest::addColumn<double>("out");
        QTest::addColumn<double>("in");
        QTest::newRow("above L1") << 2 << 5.0 << 0.0 << 199.0 << 100.0;
        QTest::newRow("below L1") << 1 << 5.0 << 0.0 << 100.0 << 199.0;
        QTest::newRow("on L1 is no alarm") << 2 << 10.0 << 0.0 << 0.0 << 299.0;
        QTest::newRow("inside the band") << 3 << 0.0 << 20.0 << 199.0 << 100.0;
        QTest::newRow("band edge L1 is no alarm") << 3 << 10.0 << 20.0 << 0.0 << 299.0;
        QTest::newRow("outside the band") << 4 << -1.0 << 5.0 << 199.0 << 100.0;
        QTest::newRow("band edge L2 is no alarm") << 4 << -1.0 << 10.0 << 0.0 << 299.0;
        QTest::newRow("no limits") << 0 << 5.0 << 0.0 << -1.0 << -1.0;
    }
    void limitTimesOfAStep() {
        QFETCH(int, mode);
        QFETCH(double, l1);
        QFETCH(double, l2);
        QFETCH(double, out);
        QFETCH(double, in);
        const TCurveData d = Curve(300, [](qint64 i) { return i < 100 ? 0.0 : 10.0; });
        const TLimitTimes t = CalcLimits(d, nullptr, TLimitRule{mode, l1, l2}, All(d));
        QCOMPARE(t.Valid, out >= 0);
        if (!t.Valid) return;
        QCOMPARE(t.Out, out);
        QCOMPARE(t.In, in);
        QCOMPARE(DurationText(t.Out), DurationText(out));
    }

    void limitTimesAcrossAGap() {
        // in 0..10, gap at 10, nothing until the value at 15, in again up to 20, out to 30.
        TCurveData d;
        for (int t : {0, 5})
            d.Append(kT0 + t, 1.0);
        d.Append(kT0 + 10, 0.0, TPointKind::Gap);
        d.Append(kT0 + 15, 1.0, TPointKind::GapEnd);
        d.Append(kT0 + 20, 9.0);
        d.Append(kT0 + 30, 9.0);
        const TLimitTimes t = CalcLimits(d, nullptr, TLimitRule{2, 5.0, 0.0}, All(d));
        QCOMPARE(t.In, 10.0 + 5.0);
        QCOMPARE(t.Out, 10.0);
        // A single point is no stretch.
        QVERIFY(!CalcLimits(d, nullptr, TLimitRule{2, 5.0, 0.0}, TIndexRange{2, 2}).Valid);
    }

    // The block summaries give what a pass over every point gives, on random data with gaps,
    // NaN and infinite values, a signal that crosses its limits rarely and one that crosses
    // them often.
    void summaryMatchesEveryPoint_data() {
        QTest::addColumn<bool>("often");
        QTest::newRow("rare crossings") << false;
        QTest::newRow("frequent crossings") << true;
    }
    void summaryMatchesEveryPoint() {
        QFETCH(bool, often);
        std::mt19937_64 rng(often ? 5 : 9);
        std::uniform_real_distribution<double> noise(-1.0, 1.0);
        TCurveData d;
        const qint64 n = 5 * TCurveSummary::kStatBlock + 1234;
        double t = kT0;
        for (qint64 i = 0; i < n; ++i) {
            t += 0.5 + (rng() % 3) * 0.25;
            // Rare crossings fall on block starts, where a whole block changes the state; frequent
            // ones fall inside blocks.
            double v = often ? 5.0 + 6.0 * noise(rng)
                             : (i / TCurveSummary::kStatBlock) % 2 ? 12.0 + noise(rng) : 1.0 + noise(rng);
            TPointKind kind = TPointKind::Value;
            // Rare enough that most blocks hold measured values only.
            if (rng() % 9001 == 0) kind = TPointKind::Gap;
            if (rng() % 12007 == 0) v = kNaN;
            if (rng() % 15013 == 0) v = rng() % 2 ? kInf : -kInf;
            d.Append(t, v, kind);
        }
        const TCurveSummary summary(d);
        const TLimitRule limits{4, 0.0, 10.0};
        std::uniform_int_distribution<qint64> at(0, n - 1);
        for (int k = 0; k < 200; ++k) {
            qint64 a = at(rng), b = at(rng);
            if (a > b) std::swap(a, b);
            if (k == 0) a = 0, b = n - 1;
            const TIndexRange r{a, b};
            const TRangeStats fast = RangeStats(d, &summary, r), brute = RangeStats(d, nullptr, r);
            QCOMPARE(fast.Count, brute.Count);
            QCOMPARE(fast.Min, brute.Min);
            QCOMPARE(fast.Max, brute.Max);
            if (std::isfinite(brute.Average)) {
                QVERIFY(Near(fast.Average, brute.Average, 1e-9));
                QVERIFY(Near(fast.StdDev, brute.StdDev, 1e-9));
            }
            const TLimitTimes lf = CalcLimits(d, &summary, limits, r), lb = CalcLimits(d, nullptr, limits, r);
            QCOMPARE(lf.Valid, lb.Valid);
            QVERIFY2(Near(lf.Out, lb.Out, 1e-9) && Near(lf.In, lb.In, 1e-9),
                     qPrintable(QStringLiteral("%1 %2 / %3 %4").arg(lf.Out).arg(lb.Out).arg(lf.In).arg(lb.In)));
            const double x0 = d.Time(a) - 0.3, x1 = d.Time(b) + 0.3;
            const double fi = Integrate(d, &summary, x0, x1).value(), bi = Integrate(d, nullptr, x0, x1).value();
            if (std::isfinite(bi)) QVERIFY2(Near(fi, bi, 1e-9), qPrintable(QStringLiteral("%1 %2").arg(fi).arg(bi)));
        }
    }

    void durationText() {
        QCOMPARE(DurationText(90061.0), QStringLiteral("1+01:01:01"));
        QCOMPARE(DurationText(0.0), QStringLiteral("0+00:00:00"));
        QCOMPARE(DurationText(86400.0 * 12 + 59.0), QStringLiteral("12+00:00:59"));
    }

    void calcKessa() {
        TCalcKessa k;
        QVERIFY(!k.isCalcCurve(-1)); // inactive: no curve, whatever the index
        k.setCalcCurve(false, 2, QStringLiteral("Q"), QStringLiteral("l/s"), -3.0, 1.0);
        QVERIFY(!k.isCalcCurve(2));
        QVERIFY(k.isUpdated());
        k.MinText = QStringLiteral("x");
        k.setCalcCurve(true, 2, QStringLiteral("Q"), QStringLiteral("l/s"), -3.0, 1.0);
        QVERIFY(k.MinText.isEmpty());
        QVERIFY(k.isCalcCurve(2));
        QCOMPARE(k.getValue(2.0), -5.0);
        QVERIFY(!k.isCalcCurveVisible());
        k.setVisibleCurve(1);
        QVERIFY(!k.isCalcCurveVisible());
        k.setVisibleCurve(2);
        QVERIFY(k.isCalcCurveVisible());
        k.clearVisibleCurve();
        QVERIFY(!k.isUpdated());
        QVERIFY(!k.isCalcCurveVisible());
        k.setInactive();
        QVERIFY(!k.isCalcCurve(2));
    }

    // The time of an extreme is its first point; gap markers hold no value.
    void firstIndexOfExtremes() {
        const qint64 n = 3 * TCurveSummary::kStatBlock + 100;
        TCurveData d = Curve(n, [n](qint64 i) {
            return i == 5000 || i == 9000 ? -7.0 : i == n - 50 ? 99.0 : double(i % 50);
        });
        d.Append(kT0 + double(n), -9.0, TPointKind::Gap);
        const TCurveSummary summary(d);
        for (const TCurveSummary* s : {static_cast<const TCurveSummary*>(nullptr), &summary}) {
            QCOMPARE(FirstIndexOf(d, s, All(d), -7.0), qint64(5000));
            QCOMPARE(FirstIndexOf(d, s, {5001, n - 1}, -7.0), qint64(9000));
            QCOMPARE(FirstIndexOf(d, s, All(d), 99.0), n - 50);
            QCOMPARE(FirstIndexOf(d, s, {0, 4999}, -7.0), qint64(-1));
            QCOMPARE(FirstIndexOf(d, s, All(d), 3.5), qint64(-1));
            QCOMPARE(FirstIndexOf(d, s, All(d), -9.0), qint64(-1));
        }
    }

    void limitViolations_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("l1");
        QTest::addColumn<double>("l2");
        QTest::addColumn<QList<double>>("values");
        QTest::addColumn<qint64>("count");
        QTest::addColumn<qint64>("first");
        QTest::newRow("three excursions above") << 2 << 10.0 << 0.0 << QList<double>{0, 11, 12, 0, 0, 15, 0, 20, 20}
                                                << qint64(3) << qint64(1);
        QTest::newRow("range begins in alarm") << 1 << 0.0 << 0.0 << QList<double>{-1, -2, 3, -1} << qint64(2)
                                               << qint64(0);
        QTest::newRow("on the limit is no alarm") << 2 << 10.0 << 0.0 << QList<double>{10, 10, 10.5, 10} << qint64(1)
                                                  << qint64(2);
        QTest::newRow("NaN splits a violation") << 2 << 10.0 << 0.0 << QList<double>{11, kNaN, 12, 0} << qint64(2)
                                                << qint64(0);
        QTest::newRow("inside the band") << 3 << 0.0 << 5.0 << QList<double>{-1, 0, 1, 5, 6, 4, 4} << qint64(2)
                                         << qint64(2);
        QTest::newRow("outside the band, both sides in a row")
            << 4 << 0.0 << 5.0 << QList<double>{2, -1, 6, 2, 7} << qint64(2) << qint64(1);
        QTest::newRow("no limits") << 0 << 0.0 << 0.0 << QList<double>{-1, 1, -1} << qint64(0) << qint64(-1);
    }
    void limitViolations() {
        QFETCH(int, mode);
        QFETCH(double, l1);
        QFETCH(double, l2);
        QFETCH(QList<double>, values);
        QFETCH(qint64, count);
        QFETCH(qint64, first);
        const TCurveData d = Curve(values.size(), [&](qint64 i) { return values[i]; });
        const TLimitViolations v = LimitViolations(d, nullptr, {mode, l1, l2}, All(d));
        QCOMPARE(v.Count, count);
        QCOMPARE(v.FirstIndex, first);
    }

    // Whole blocks on one side of the limits are taken from the summary: the same count as a
    // pass over every point, for every mode, with gaps and ranges cutting blocks.
    void limitViolationsFromBlocks() {
        std::mt19937_64 rng(11);
        std::normal_distribution<double> noise(0.0, 0.3);
        const qint64 n = 40 * TCurveSummary::kStatBlock;
        TCurveData d;
        for (qint64 i = 0; i < n; ++i) {
            // A slow sine, so many blocks lie wholly in one state and some cross, then steps
            // -10, 0, 10 within a block: both ends of a band in one state, the middle not.
            const double level = (i < n / 2 ? 10.0 * std::sin(2.0 * M_PI * double(i) / 70000.0)
                                            : 10.0 * double(i / 1000 % 3 - 1)) +
                                 noise(rng);
            const bool gap = i % 23456 == 100;
            d.Append(kT0 + double(i), gap ? 0.0 : i % 51234 == 7 ? kNaN : level,
                     gap ? TPointKind::Gap : TPointKind::Value);
        }
        const TCurveSummary summary(d);
        const TLimitRule rules[] = {{1, -8.0, 0}, {2, 8.0, 0}, {3, -3.0, 3.0}, {4, -8.0, 8.0}};
        std::uniform_int_distribution<qint64> at(0, n - 1);
        for (const TLimitRule& rule : rules) {
            for (int k = 0; k < 20; ++k) {
                qint64 a = at(rng), b = at(rng);
                if (a > b) std::swap(a, b);
                if (k == 0) a = 0, b = n - 1;
                const TLimitViolations fast = LimitViolations(d, &summary, rule, {a, b});
                const TLimitViolations brute = LimitViolations(d, nullptr, rule, {a, b});
                QCOMPARE(fast.Count, brute.Count);
                QCOMPARE(fast.FirstIndex, brute.FirstIndex);
                if (k == 0) QVERIFY(brute.Count > 5);
            }
        }
    }

    // Against values worked out by hand from the formula with ΔH/R = 10000 K.
    void meanKineticTemperature() {
        const TCurveData two = Curve(2, [](qint64 i) { return i == 0 ? 20.0 : 30.0; });
        QVERIFY(Near(MeanKineticTemperature(two, All(two)), 26.2598869160, 1e-10));
        QVERIFY(Near(MeanKineticTemperature(two, All(two), 2.0 * kMktActivationEnergy), 27.2994860505, 1e-10));
        // What is no temperature is left out.
        TCurveData d;
        const double values[] = {5, kNaN, 5, 25, kInf, 25, -300, 40};
        for (int i = 0; i < 8; ++i)
            d.Append(kT0 + i, values[i]);
        d.Append(kT0 + 8, 0.0, TPointKind::Gap);
        QVERIFY(Near(MeanKineticTemperature(d, All(d)), 28.2329162858, 1e-10));
        QVERIFY(std::isnan(MeanKineticTemperature(d, {1, 1})));
        QVERIFY(std::isnan(MeanKineticTemperature(d, {})));
        // A long constant run keeps its value: no terms lost to underflow or summing.
        const TCurveData cold = Curve(200000, [](qint64) { return -180.5; });
        QVERIFY(Near(MeanKineticTemperature(cold, All(cold)), -180.5, 1e-9));
    }
};

QTEST_GUILESS_MAIN(TstAnalysis)
#include "tst_analysis.moc"
