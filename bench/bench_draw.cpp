// Full-view redraw of one curve with our plottable at growing sample counts, and of the same
// 10^7 samples with a stock QCPGraph, timed in one run; prints times and ratios.
//
//   bench_draw            10^4, 10^6, 10^7 values
//   bench_draw --1e8      and 10^8 values (about 1.3 GB of memory)
// At 10^7 values also the same samples with their stamps kept as written instead of packed.
//
// Goals: the redraw of 10^8 values within 2 times the redraw of 10^4 (cost follows pixels,
// not samples), and at 10^7 values at least 5 times faster than the stock graph.

#include "data/CurveData.h"
#include "ui/CurvePlottable.h"

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <numbers>
#include <random>

namespace {

constexpr int kWidth = 1600, kHeight = 900;

// The same recording at every size, a sample a second: ten slow cycles with light noise,
// eight one-sample spikes and twenty gaps. The pictures then look alike and differ only in
// how many samples stand behind each pixel column.
std::unique_ptr<TCurveData> MakeCurve(qint64 n) {
    auto d = std::make_unique<TCurveData>();
    std::mt19937 rng(5);
    std::normal_distribution<double> noise(0.0, 0.05);
    const qint64 block = TCurveData::kChunkSize;
    std::vector<double> t(static_cast<size_t>(block)), v(static_cast<size_t>(block));
    std::vector<TPointKind> k(static_cast<size_t>(block));
    const qint64 gapEvery = std::max<qint64>(n / 20, 4), spikeEvery = std::max<qint64>(n / 8, 2);
    for (qint64 i = 0; i < n;) {
        const qint64 m = std::min(block, n - i);
        for (qint64 j = 0; j < m; ++j, ++i) {
            // Stamps as the file makes them: days since 2000 times 86,400.
            t[size_t(j)] = (8796.0 + double(i) / 86400.0) * 86400.0;
            v[size_t(j)] =
                20.0 + 5.0 * std::sin(20.0 * std::numbers::pi * double(i) / double(n)) + noise(rng);
            if (i % spikeEvery == spikeEvery / 3) v[size_t(j)] += 40.0;
            k[size_t(j)] = i % gapEvery == gapEvery / 2       ? TPointKind::Gap
                           : i % gapEvery == gapEvery / 2 + 1 ? TPointKind::GapEnd
                                                              : TPointKind::Value;
        }
        d->Append(std::span(t.data(), size_t(m)), std::span(v.data(), size_t(m)),
                  std::span(k.data(), size_t(m)));
    }
    return d;
}

// Median of several full redraws, after one to warm up.
double RedrawMs(QCustomPlot& plot, int runs) {
    plot.replot(QCustomPlot::rpImmediateRefresh);
    std::vector<double> ms;
    for (int r = 0; r < runs; ++r) {
        QElapsedTimer timer;
        timer.start();
        plot.replot(QCustomPlot::rpImmediateRefresh);
        ms.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(ms.begin(), ms.end());
    return ms[ms.size() / 2];
}

struct TPlot {
    QCustomPlot Plot;
    explicit TPlot(const QCPRange& keys) {
        Plot.resize(kWidth, kHeight);
        Plot.setAutoAddPlottableToLegend(false);
        Plot.setNotAntialiasedElements(QCP::aeAll);
        Plot.xAxis->setRange(keys);
        Plot.yAxis->setRange(0, 70);
        Plot.show();
    }
};

struct TOurs {
    double Pyramid = 0, Reduced = 0, StoreRule = 0;
    qint64 Points = 0;
};

TOurs TimeOurs(const TCurveData& d) {
    TOurs r;
    // Best of three builds: the first one in a process also pays for fresh pages.
    std::shared_ptr<const TCurveSummary> pyramid;
    r.Pyramid = 1e30;
    for (int k = 0; k < 3; ++k) {
        QElapsedTimer timer;
        timer.start();
        pyramid = std::make_shared<const TCurveSummary>(d);
        r.Pyramid = std::min(r.Pyramid, double(timer.nsecsElapsed()) / 1e6);
    }
    TPlot p(QCPRange(d.FirstTime(), d.LastTime()));
    auto* c = new TCurvePlottable(p.Plot.xAxis, p.Plot.yAxis);
    c->SetData(&d, pyramid);
    const int runs = d.Count() > 20000000 ? 9 : 15;
    c->SetReduction(true);
    r.Reduced = RedrawMs(p.Plot, runs);
    r.Points = c->LastDrawnPoints();
    // The store reduces only curves of more than a million samples.
    if (d.Count() <= 1000000) {
        c->SetReduction(false);
        r.StoreRule = RedrawMs(p.Plot, runs);
    } else {
        r.StoreRule = r.Reduced;
    }
    return r;
}

double TimeStockGraph(const TCurveData& d) {
    TPlot p(QCPRange(d.FirstTime(), d.LastTime()));
    QCPGraph* g = p.Plot.addGraph();
    QVector<QCPGraphData> data(d.Count());
    for (qint64 i = 0; i < d.Count(); ++i)
        data[i] = QCPGraphData(d.Time(i), d.IsGap(i) ? std::nan("") : d.Value(i)); // NaN breaks its line
    g->data()->set(data, true);
    data.clear();
    return RedrawMs(p.Plot, 5);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const bool huge =
        std::any_of(argv + 1, argv + argc, [](const char* a) { return std::strcmp(a, "--1e8") == 0; });
    std::vector<qint64> sizes = {10000, 1000000, 10000000};
    if (huge) sizes.push_back(100000000);

    {
        TPlot empty(QCPRange(0, 1));
        std::printf("chart without curves: %.2f ms a redraw (%dx%d)\n\n", RedrawMs(empty.Plot, 15), kWidth,
                    kHeight);
    }
    std::printf("%12s %12s %14s %14s %12s\n", "values", "pyramid ms", "as stored ms", "reduced ms",
                "points drawn");
    std::map<qint64, TOurs> ours;
    double stock = 0.0, rawFull = 0.0, rawPyramid = 0.0;
    for (qint64 n : sizes) {
        const auto d = MakeCurve(n);
        const TOurs r = TimeOurs(*d);
        ours[n] = r;
        std::printf("%12lld %12.1f %14.2f %14.2f %12lld\n", static_cast<long long>(n), r.Pyramid, r.StoreRule,
                    r.Reduced, static_cast<long long>(r.Points));
        std::fflush(stdout);
        if (n == 10000000) {
            stock = TimeStockGraph(*d);
            // The same samples with every stamp kept as written, as before time columns were packed.
            TCurveData::SetPacking(false);
            const auto raw = MakeCurve(n);
            TCurveData::SetPacking(true);
            const TOurs r2 = TimeOurs(*raw);
            std::printf("%12s %12.1f %14.2f %14.2f %12lld   stamps as written: %.0f MB against %.0f MB packed\n",
                        "", r2.Pyramid, r2.StoreRule, r2.Reduced, static_cast<long long>(r2.Points),
                        double(raw->MemoryBytes()) / 1e6, double(d->MemoryBytes()) / 1e6);
            rawFull = r2.Reduced;
            rawPyramid = r2.Pyramid;
        }
    }
    const qint64 top = sizes.back();
    std::printf("\nQCPGraph, 10^7 values: %.2f ms a redraw\n", stock);
    std::printf("ratio redraw %g values / 10^4 values (drawn as stored): %.2f (goal <= 2)\n", double(top),
                ours[top].StoreRule / ours[10000].StoreRule);
    std::printf("ratio QCPGraph / ours at 10^7 values: %.1f (goal >= 5)\n", stock / ours[10000000].Reduced);
    std::printf("ratio packed / as written at 10^7 values: redraw %.2f, pyramid %.2f (goal <= 1)\n",
                ours[10000000].Reduced / rawFull, ours[10000000].Pyramid / rawPyramid);
    return 0;
}
