// The analyses at 10^8 values on 4 channels: the calculation view's statistics, the limit
// view's times on a signal that crosses its limits rarely and on one that crosses them often,
// and the integral, each from the block summaries against a pass over every point of the same
// function, over the whole recording and over a zoomed part. Also the full ReCalc of both
// views, and what the summaries cost to make once after loading.
//
//   bench_analysis            10^8 values (about 1.4 GB of memory)
//   bench_analysis --values N
//
// Goals: the calculation view at least 20 times faster than the pass over every point and
// under 10 ms at 10^8; limit times at least 5 times faster on rare crossings and never slower
// on frequent ones; results equal (extremes exactly, sums to 1e-9 relative).

#include "analysis/Analysis.h"
#include "analysis/Figures.h"
#include "store/DataBase.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <numbers>
#include <random>

namespace {

constexpr double kT0 = 7.6e8;

// Channel 0 crosses its limit a few times in the whole recording, channel 1 at every few
// samples; channels 2 and 3 are a drifting temperature and a noisy flow with gaps.
void Fill(TDataBase& db, qint64 perChannel) {
    TStoreReceiver r(db);
    std::mt19937 rng(11);
    std::normal_distribution<double> noise(0.0, 1.0);
    const qint64 chunk = TCurveData::kChunkSize;
    std::vector<double> t(static_cast<size_t>(chunk)), v(static_cast<size_t>(chunk));
    std::vector<TPointKind> k(static_cast<size_t>(chunk));
    for (int c = 0; c < 4; ++c) {
        r.AddCurve(QStringLiteral("M%1").arg(c));
        for (qint64 i = 0; i < perChannel;) {
            const qint64 m = std::min(chunk, perChannel - i);
            for (qint64 j = 0; j < m; ++j, ++i) {
                const double x = double(i) / double(perChannel);
                t[size_t(j)] = kT0 + double(i);
                k[size_t(j)] = TPointKind::Value;
                switch (c) {
                case 0: v[size_t(j)] = 20.0 + 10.0 * std::sin(6.0 * std::numbers::pi * x) + 0.2 * noise(rng); break;
                case 1: v[size_t(j)] = 20.0 + 3.0 * noise(rng); break;
                case 2: v[size_t(j)] = 1013.0 + 5.0 * x + 0.1 * noise(rng); break;
                default:
                    v[size_t(j)] = std::max(0.0, 12.0 + noise(rng));
                    if (i % 1000003 == 500000) k[size_t(j)] = TPointKind::Gap;
                }
            }
            r.AddPoints(c, std::span(t.data(), size_t(m)), std::span(v.data(), size_t(m)),
                        std::span(k.data(), size_t(m)));
        }
    }
    r.SetLimits(0, 2, 0, 25.0, 0.0); // above 25: a handful of stretches
    r.SetLimits(1, 4, 0, 18.0, 22.0); // outside 18..22: every few samples
    r.SetLimits(2, 2, 0, 1015.0, 0.0);
    r.SetLimits(3, 1, 0, 10.0, 0.0);
}

// Median of a few runs, in milliseconds.
double Ms(const std::function<void()>& f, int runs) {
    std::vector<double> ms;
    for (int k = 0; k < runs; ++k) {
        QElapsedTimer t;
        t.start();
        f();
        ms.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::sort(ms.begin(), ms.end());
    return ms[ms.size() / 2];
}

bool Same(double a, double b) {
    return a == b || std::abs(a - b) <= 1e-9 * std::max(std::abs(a), std::abs(b));
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication app(argc, argv);
    qint64 values = 100000000;
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--values") == 0) values = std::atoll(argv[i + 1]);
    const qint64 perChannel = values / 4;
    std::printf("%lld values on 4 channels\n", static_cast<long long>(perChannel * 4));

    TDataBase db;
    Fill(db, perChannel);
    QElapsedTimer made;
    made.start();
    std::vector<std::shared_ptr<const TCurveSummary>> summaries;
    for (int c = 0; c < 4; ++c) {
        summaries.push_back(db.Summary(c));
        summaries.back()->Blocks();
    }
    const double madeMs = double(made.nsecsElapsed()) / 1e6;
    // Each curve's limit test, made at the views' first computation.
    made.restart();
    for (int c = 0; c < 4; ++c) {
        const TMseSettingsCurve& cu = db.Cfg_Curve_Get(c);
        const TLimitRule rule{cu.LAlarm, cu.LValue1, cu.LValue2};
        summaries[size_t(c)]->LimitBlocks({rule.Mode, rule.L1, rule.L2}, [&rule](double y) { return rule.IsAlarm(y); });
    }
    const double limitMs = double(made.nsecsElapsed()) / 1e6;
    std::printf("summaries made once after loading: %.0f ms, limit blocks at the first computation: %.0f ms "
                "(%.2f bytes a value)\n",
                madeMs, limitMs,
                double([&] {
                    qint64 b = 0;
                    for (const auto& s : summaries)
                        b += s->MemoryBytes() + qint64(s->Blocks().size() * (sizeof(TCurveSummary::TBlockStats) +
                                                                              sizeof(TCurveSummary::TLimitBlock)));
                    return b;
                }()) / double(values));

    bool equal = true;
    const double first = kT0, last = kT0 + double(perChannel - 1);
    for (const auto& [label, from, to] : {std::tuple{"whole recording", first, last},
                                          std::tuple{"zoomed to 37 %", first + 0.31 * (last - first),
                                                     first + 0.68 * (last - first)}}) {
        std::printf("\n%s\n", label);
        std::vector<TIndexRange> ranges;
        for (int c = 0; c < 4; ++c)
            ranges.push_back(VisibleRange(db.Data(c), from, to));

        auto stats = [&](bool fast) {
            for (int c = 0; c < 4; ++c) {
                const TRangeStats s = RangeStats(db.Data(c), fast ? summaries[size_t(c)].get() : nullptr, ranges[size_t(c)]);
                if (s.Count < 0) std::puts("");
            }
        };
        const double sFast = Ms([&] { stats(true); }, 9), sBrute = Ms([&] { stats(false); }, 3);
        std::printf("  statistics, 4 curves:   %9.3f ms vs %9.1f ms every point: %7.0fx\n", sFast, sBrute,
                    sBrute / sFast);
        for (int c = 0; c < 4; ++c) {
            const TRangeStats a = RangeStats(db.Data(c), summaries[size_t(c)].get(), ranges[size_t(c)]);
            const TRangeStats b = RangeStats(db.Data(c), nullptr, ranges[size_t(c)]);
            equal = equal && a.Count == b.Count && a.Min == b.Min && a.Max == b.Max && Same(a.Average, b.Average) &&
                    Same(a.StdDev, b.StdDev);
        }

        for (int c : {0, 1}) {
            const TMseSettingsCurve& cu = db.Cfg_Curve_Get(c);
            const TLimitRule rule{cu.LAlarm, cu.LValue1, cu.LValue2};
            TLimitTimes a, b;
            const double lFast = Ms([&] { a = CalcLimits(db.Data(c), summaries[size_t(c)].get(), rule, ranges[size_t(c)]); }, 5);
            const double lBrute = Ms([&] { b = CalcLimits(db.Data(c), nullptr, rule, ranges[size_t(c)]); }, 3);
            std::printf("  limit times, %s: %9.3f ms vs %9.1f ms every point: %7.1fx\n",
                        c == 0 ? "rare crossings   " : "frequent crossings", lFast, lBrute, lBrute / lFast);
            equal = equal && a.Valid == b.Valid && Same(a.Out, b.Out) && Same(a.In, b.In);
        }

        double ia = 0, ib = 0;
        const double iFast = Ms([&] { ia = Integrate(db.Data(3), summaries[3].get(), from, to).value_or(0.0); }, 9);
        const double iBrute = Ms([&] { ib = Integrate(db.Data(3), nullptr, from, to).value_or(0.0); }, 3);
        std::printf("  integral, 1 curve:      %9.3f ms vs %9.1f ms every point: %7.0fx\n", iFast, iBrute,
                    iBrute / iFast);
        equal = equal && Same(ia, ib);

        // Every curve's figures as the views take them, and as the report takes them (finite
        // statistics, the extremes' times, the interval, violations, the mean kinetic temperature).
        TFigureOptions document;
        document.Finite = document.ExtremeTimes = document.Step = document.Violations = true;
        document.MktEnergy = kMktActivationEnergy;
        auto all = [&](const TFigureOptions& options) {
            for (int c = 0; c < db.Curve_Count(); ++c)
                (void)CurveFigures(db.Data(c), summaries[size_t(c)].get(), LimitRuleOf(db.Cfg_Curve_Get(c)), from, to,
                                   options);
        };
        const double views = Ms([&] { all({}); }, 9);
        const double report = Ms([&] { all(document); }, 3);
        std::printf("  figures of every curve: as the views take them %.3f ms, as the report %.3f ms\n", views,
                    report);
    }
    std::printf("\nresults equal to the pass over every point: %s\n", equal ? "yes" : "NO");
    return equal ? 0 : 1;
}
