// The curve plottable: the min/max pyramid, and the aggregated drawing compared pixel by
// pixel with drawing every segment, on curves with spikes and gaps at many zoom levels.

#include "data/CurveData.h"
#include "ui/CurvePlottable.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <random>
#include <tuple>

namespace {

constexpr double kT0 = 7.6e8; // 2024, seconds since 2000

struct TCurveShape {
    qint64 Count = 0;
    std::vector<qint64> Spikes;                 // single samples far off the curve
    std::vector<qint64> Gaps;                   // gap markers; the sample after each starts anew
    double GapSeconds = 0.0;                    // time that passes across each gap
    std::vector<std::pair<qint64, double>> Odd; // NaN and infinite values, by sample
};

// A noisy wave sampled once a second, with the given spikes and gaps.
std::unique_ptr<TCurveData> MakeCurve(const TCurveShape& shape, unsigned seed = 7) {
    auto d = std::make_unique<TCurveData>();
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    double t = kT0;
    bool gapOpen = false;
    for (qint64 i = 0; i < shape.Count; ++i) {
        const bool gap = std::binary_search(shape.Gaps.begin(), shape.Gaps.end(), i);
        if (gap) {
            d->Append(t, 0.0, TPointKind::Gap);
            t += shape.GapSeconds;
            gapOpen = true;
        } else {
            double v = 20.0 + 5.0 * std::sin(double(i) / 5000.0) + noise(rng);
            if (std::binary_search(shape.Spikes.begin(), shape.Spikes.end(), i)) v += (i % 2 ? -60.0 : 60.0);
            for (const auto& [at, odd] : shape.Odd)
                if (at == i) v = odd;
            d->Append(t, v, gapOpen ? TPointKind::GapEnd : TPointKind::Value);
            gapOpen = false;
        }
        t += 1.0;
    }
    return d;
}

struct TRender {
    QImage Image;
    qint64 Points = 0;
    QRect Plot; // the axis rect
    QCPRange Keys, Values;
    double X(double t) const { return Plot.left() + (t - Keys.lower) / Keys.size() * Plot.width(); }
    double Y(double v) const { return Plot.bottom() - (v - Values.lower) / Values.size() * Plot.height(); }
    bool ColumnHasCurve(int x) const;
};

// reduce: aggregated per pixel column; merge off: every segment drawn as a line of its own,
// the plain reference.
TRender Render(const TCurveData& d, const std::shared_ptr<const TCurveSummary>& pyramid, bool reduce,
               const QCPRange& keys, const QCPRange& values, int penWidth = 1, QSize size = QSize(640, 320),
               bool merge = true) {
    QCustomPlot plot;
    plot.resize(size);
    plot.setAutoAddPlottableToLegend(false);
    plot.setNotAntialiasedElements(QCP::aeAll);
    auto* c = new TCurvePlottable(plot.xAxis, plot.yAxis);
    c->SetData(&d, pyramid);
    c->SetReduction(reduce);
    c->SetMergeColumns(merge);
    c->setPen(QPen(Qt::blue, penWidth));
    plot.xAxis->setRange(keys);
    plot.yAxis->setRange(values);
    TRender r;
    r.Image = plot.toPixmap(size.width(), size.height()).toImage().convertToFormat(QImage::Format_RGB32);
    r.Points = c->LastDrawnPoints();
    r.Plot = plot.axisRect()->rect();
    r.Keys = keys;
    r.Values = values;
    return r;
}

int Differences(const QImage& a, const QImage& b) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            n += a.pixel(x, y) != b.pixel(x, y);
    return n;
}

bool IsCurve(QRgb p) {
    return qBlue(p) > 200 && qRed(p) < 100 && qGreen(p) < 100;
}

bool TRender::ColumnHasCurve(int x) const {
    for (int y = Plot.top(); y <= Plot.bottom(); ++y)
        if (IsCurve(Image.pixel(x, y))) return true;
    return false;
}

// Rows of (reduce, from, to): each named window, as shares of the time range, drawn segment by
// segment and reduced.
void WindowRows(std::initializer_list<std::tuple<const char*, double, double>> windows) {
    QTest::addColumn<bool>("reduce");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    for (bool reduce : {false, true})
        for (const auto& [name, from, to] : windows)
            QTest::addRow("%s, %s", reduce ? "reduced" : "every segment", name) << reduce << from << to;
}

} // namespace

class TstPlottable : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pyramidMatchesScan_data() {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<int>("gaps");
        QTest::newRow("one sample") << qint64(1) << 0;
        QTest::newRow("below a block") << qint64(63) << 2;
        QTest::newRow("one block") << qint64(64) << 0;
        QTest::newRow("block and one") << qint64(65) << 1;
        QTest::newRow("several chunks with gaps") << qint64(3 * TCurveData::kChunkSize + 1234) << 40;
    }

    void pyramidMatchesScan() {
        QFETCH(qint64, count);
        QFETCH(int, gaps);
        std::mt19937_64 rng(11);
        TCurveShape shape;
        shape.Count = count;
        for (int g = 0; g < gaps; ++g)
            shape.Gaps.push_back(qint64(rng() % quint64(count)));
        std::sort(shape.Gaps.begin(), shape.Gaps.end());
        shape.Gaps.erase(std::unique(shape.Gaps.begin(), shape.Gaps.end()), shape.Gaps.end());
        for (qint64 i = 0; i < count; i += 997)
            shape.Spikes.push_back(i);
        constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
        constexpr double kInf = std::numeric_limits<double>::infinity();
        for (qint64 i = 5; i < count; i += 1511)
            shape.Odd.emplace_back(i, i % 3 == 0 ? kNaN : i % 3 == 1 ? kInf : -kInf);
        const auto d = MakeCurve(shape);
        const TCurveSummary p(*d);

        std::vector<double> values(static_cast<size_t>(count));
        std::vector<bool> gap(static_cast<size_t>(count));
        for (qint64 i = 0; i < count; ++i) {
            values[size_t(i)] = d->Value(i);
            gap[size_t(i)] = d->IsGap(i);
        }
        auto check = [&](qint64 a, qint64 b) {
            double lo = 0, hi = 0;
            const bool found = p.MinMax(a, b, lo, hi);
            double elo = std::numeric_limits<double>::infinity(), ehi = -elo;
            qint64 nonFinite = b;
            for (qint64 i = a; i < b; ++i) {
                if (!std::isfinite(values[size_t(i)])) {
                    nonFinite = std::min(nonFinite, i);
                    continue;
                }
                if (gap[size_t(i)]) continue;
                elo = std::min(elo, values[size_t(i)]);
                ehi = std::max(ehi, values[size_t(i)]);
            }
            QCOMPARE(p.NextNonFinite(a, b), nonFinite);
            QCOMPARE(found, elo <= ehi);
            if (found) {
                QCOMPARE(lo, elo);
                QCOMPARE(hi, ehi);
            }
        };
        check(0, count);
        for (int k = 0; k < 300; ++k) {
            qint64 a = qint64(rng() % quint64(count + 1)), b = qint64(rng() % quint64(count + 1));
            if (a > b) std::swap(a, b);
            if (k % 4 == 0) b = std::min(count, a + qint64(rng() % 200)); // short ranges hit the raw ends
            check(a, b);
        }
        // A range of nothing but a gap marker holds no value.
        if (!shape.Gaps.empty()) {
            double lo = 0, hi = 0;
            QVERIFY(!p.MinMax(shape.Gaps[0], shape.Gaps[0] + 1, lo, hi));
        }
    }

    void aggregationDrawsEverySegment_data() {
        QTest::addColumn<double>("from"); // share of the time range
        QTest::addColumn<double>("to");
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<int>("penWidth");
        QTest::addColumn<bool>("curve"); // the window shows some of the curve
        // 200,000 samples a second apart: from thousands of samples per pixel column to none.
        // Around 30 % of the time lie two gap markers in a row, 1,400 seconds without values.
        QTest::newRow("whole curve") << 0.0 << 1.0 << -50.0 << 90.0 << 1 << true;
        QTest::newRow("a tenth") << 0.45 << 0.55 << -50.0 << 90.0 << 1 << true;
        QTest::newRow("six per column") << 0.20 << 0.20 + 3800.0 / 2e5 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("three per column") << 0.20 << 0.20 + 1900.0 / 2e5 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("columns between samples") << 0.20 << 0.20 + 200.0 / 2e5 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("inside one sample step") << 0.200001 << 0.200004 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("inside a gap") << 0.30 << 0.30 + 200.0 / 2e5 << 0.0 << 40.0 << 1 << false;
        QTest::newRow("across a gap") << 0.29 << 0.31 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("across NaN values") << 0.199 << 0.201 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("an infinite value") << 0.255 << 0.265 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("spikes leave the plot") << 0.0 << 1.0 << 17.0 << 23.0 << 1 << true;
        QTest::newRow("beyond the last sample") << 0.999 << 1.2 << 0.0 << 40.0 << 1 << true;
        QTest::newRow("after the last sample") << 1.1 << 1.2 << 0.0 << 40.0 << 1 << false;
        QTest::newRow("wide pen") << 0.0 << 1.0 << -50.0 << 90.0 << 3 << true;
        QTest::newRow("wide pen, a tenth") << 0.45 << 0.55 << -50.0 << 90.0 << 3 << true;
    }

    void aggregationDrawsEverySegment() {
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(int, penWidth);
        QFETCH(bool, curve);
        static const auto d = [] {
            TCurveShape shape;
            shape.Count = 200000;
            shape.GapSeconds = 700.0;
            for (qint64 i = 1000; i < shape.Count; i += 7919)
                shape.Spikes.push_back(i);
            for (qint64 i = 3000; i < shape.Count; i += 15013)
                shape.Gaps.push_back(i);
            shape.Gaps.push_back(60003); // two gap markers in a row
            shape.Gaps.push_back(60004);
            std::sort(shape.Gaps.begin(), shape.Gaps.end());
            // NaN values break the line, infinite ones reach the plot's edge.
            for (qint64 i = 41000; i < shape.Count; i += 29989)
                shape.Odd.emplace_back(i, std::numeric_limits<double>::quiet_NaN());
            shape.Odd.emplace_back(40001, std::numeric_limits<double>::quiet_NaN());
            shape.Odd.emplace_back(40002, std::numeric_limits<double>::quiet_NaN());
            for (qint64 i = 52000; i < shape.Count; i += 37003)
                shape.Odd.emplace_back(i, i % 2 ? -std::numeric_limits<double>::infinity()
                                                : std::numeric_limits<double>::infinity());
            return MakeCurve(shape);
        }();
        static const auto pyramid = std::make_shared<const TCurveSummary>(*d);
        const double span = d->LastTime() - d->FirstTime();
        const QCPRange keys(d->FirstTime() + from * span, d->FirstTime() + to * span);
        const QCPRange values(low, high);

        const QSize size(640, 320);
        const TRender full = Render(*d, pyramid, false, keys, values, penWidth, size, false);
        const TRender reduced = Render(*d, pyramid, true, keys, values, penWidth, size);
        const TRender merged = Render(*d, pyramid, false, keys, values, penWidth, size);
        for (const TRender* other : {&reduced, &merged}) {
            const int diff = Differences(full.Image, other->Image);
            if (diff != 0) {
                QTemporaryDir dir;
                dir.setAutoRemove(false);
                full.Image.save(dir.filePath(QStringLiteral("every-segment.png")));
                other->Image.save(dir.filePath(QStringLiteral("other.png")));
                qWarning("pictures kept in %s", qPrintable(dir.path()));
            }
            QCOMPARE(diff, 0);
        }
        // The picture must show the curve where there is one, or the comparison proves nothing.
        int curvePixels = 0;
        for (int y = 0; y < full.Image.height(); ++y)
            for (int x = 0; x < full.Image.width(); ++x)
                curvePixels += IsCurve(full.Image.pixel(x, y));
        QCOMPARE(curvePixels > 0, curve);
        // About four points a pixel column at most, however many samples stand behind them.
        QVERIFY(reduced.Points <= 4 * size.width());
    }

    void spikeStaysVisible() {
        TCurveShape shape;
        shape.Count = 1500000;
        shape.Spikes = {1234568};
        const auto d = MakeCurve(shape);
        const auto pyramid = std::make_shared<const TCurveSummary>(*d);
        const QCPRange keys(d->FirstTime(), d->LastTime()), values(0.0, 100.0);
        const TRender r = Render(*d, pyramid, true, keys, values);
        // The spike (about 80) is the curve's highest point; the top of the drawn curve must
        // reach its row although one pixel column holds thousands of samples.
        const int spikeRow = int(std::round(r.Y(d->Value(1234568))));
        int top = r.Image.height();
        for (int y = 0; y < r.Image.height() && top == r.Image.height(); ++y)
            for (int x = 0; x < r.Image.width(); ++x)
                if (IsCurve(r.Image.pixel(x, y))) {
                    top = y;
                    break;
                }
        QVERIFY2(std::abs(top - spikeRow) <= 1,
                 qPrintable(QStringLiteral("top %1, spike %2").arg(top).arg(spikeRow)));
    }

    void gapBreaksAtEveryZoom_data() {
        WindowRows({{"whole", 0.0, 1.0}, {"half", 0.25, 0.75}, {"tight", 0.45, 0.56}});
    }

    void gapBreaksAtEveryZoom() {
        QFETCH(bool, reduce);
        QFETCH(double, from);
        QFETCH(double, to);
        static const auto d = [] {
            TCurveShape shape;
            shape.Count = 1000000;
            shape.Gaps = {500000};
            shape.GapSeconds = 100000.0; // a tenth of the whole time
            return MakeCurve(shape);
        }();
        static const auto pyramid = std::make_shared<const TCurveSummary>(*d);
        const double span = d->LastTime() - d->FirstTime();
        const QCPRange keys(d->FirstTime() + from * span, d->FirstTime() + to * span), values(0.0, 40.0);
        const TRender r = Render(*d, pyramid, reduce, keys, values);

        const int before = int(r.X(d->Time(499999)));
        const int after = int(r.X(d->Time(500001)));
        QVERIFY(after - before > 10);
        for (int x = before + 2; x <= after - 2; ++x)
            QVERIFY2(!r.ColumnHasCurve(x), qPrintable(QStringLiteral("line across the gap at x %1").arg(x)));
        // Both sides of the gap are drawn.
        QVERIFY(r.ColumnHasCurve(before - 1));
        QVERIFY(r.ColumnHasCurve(after + 1));
    }

    void loneValueIsDrawn() {
        // value, gap, lone value, gap, value: the lone value has no neighbour to join.
        TCurveData d;
        d.Append(kT0, 10.0);
        d.Append(kT0 + 10, 0.0, TPointKind::Gap);
        d.Append(kT0 + 50, 20.0, TPointKind::GapEnd);
        d.Append(kT0 + 60, 0.0, TPointKind::Gap);
        d.Append(kT0 + 100, 10.0, TPointKind::GapEnd);
        d.Append(kT0 + 101, 10.0);
        const auto pyramid = std::make_shared<const TCurveSummary>(d);
        const TRender r = Render(d, pyramid, true, QCPRange(kT0 - 5, kT0 + 105), QCPRange(0, 30));
        const int x = int(std::floor(r.X(kT0 + 50)));
        const int y = int(std::round(r.Y(20.0)));
        bool drawn = false;
        for (int dx = -1; dx <= 1; ++dx)
            for (int dy = -1; dy <= 1; ++dy)
                drawn = drawn || IsCurve(r.Image.pixel(x + dx, y + dy));
        QVERIFY(drawn);
        // Nothing joins it to its neighbours.
        QVERIFY(!r.ColumnHasCurve(int(r.X(kT0 + 30))));
        QVERIFY(!r.ColumnHasCurve(int(r.X(kT0 + 80))));
    }

    void nonFiniteValues_data() { WindowRows({{"whole", 0.0, 1.0}, {"tight", 0.4998, 0.5002}}); }

    // A NaN value leaves a hole in the line, never a stroke to the bottom; an infinite value is a
    // stroke to the plot's edge.
    void nonFiniteValues() {
        QFETCH(bool, reduce);
        QFETCH(double, from);
        QFETCH(double, to);
        static const auto d = [] {
            auto c = std::make_unique<TCurveData>();
            for (int i = 0; i < 200000; ++i) {
                double v = 20.0;
                if (i >= 99990 && i < 100010) v = std::numeric_limits<double>::quiet_NaN();
                if (i == 30000) v = std::numeric_limits<double>::infinity();
                if (i == 160000) v = -std::numeric_limits<double>::infinity();
                c->Append(kT0 + i, v);
            }
            return c;
        }();
        static const auto pyramid = std::make_shared<const TCurveSummary>(*d);
        const double span = d->LastTime() - d->FirstTime();
        const QCPRange keys(d->FirstTime() + from * span, d->FirstTime() + to * span), values(0.0, 40.0);
        const TRender r = Render(*d, pyramid, reduce, keys, values);
        const int line = int(std::round(r.Y(20.0)));
        // Near the edges, clear of the axes' tick marks.
        const int bottom = r.Plot.bottom() - 8, top = r.Plot.top() + 8;
        auto curveAt = [&](int x, int y) { return IsCurve(r.Image.pixel(x, y)); };
        for (int x = r.Plot.left(); x < r.Plot.right(); ++x)
            QVERIFY2(!curveAt(x, bottom) || std::abs(r.X(d->Time(160000)) - x) < 2,
                     qPrintable(QStringLiteral("a stroke to the bottom at x %1").arg(x)));
        if (from > 0.0) {
            // Twenty NaN values are a hole of twenty seconds in the line.
            const int a = int(std::ceil(r.X(d->Time(99989)))) + 1,
                      b = int(std::floor(r.X(d->Time(100010)))) - 1;
            QVERIFY(b - a > 50);
            for (int x = a; x <= b; ++x)
                QVERIFY2(!r.ColumnHasCurve(x), qPrintable(QStringLiteral("line across NaN at x %1").arg(x)));
            QVERIFY(curveAt(a - 3, line));
            QVERIFY(curveAt(b + 3, line));
        } else {
            // Plus infinity reaches the top edge, minus infinity the bottom one.
            const int up = int(r.X(d->Time(30000))), down = int(r.X(d->Time(160000)));
            QVERIFY(curveAt(up, top) || curveAt(up + 1, top));
            QVERIFY(curveAt(down, bottom) || curveAt(down + 1, bottom));
        }
        // Drawn reduced or not, the picture is the same.
        QCOMPARE(Differences(r.Image, Render(*d, pyramid, !reduce, keys, values).Image), 0);
    }

    void costFollowsPixels() {
        // Handed to the painter: about four points per pixel column, whatever the sample count.
        for (qint64 n : {qint64(100000), qint64(1500000)}) {
            TCurveShape shape;
            shape.Count = n;
            const auto d = MakeCurve(shape);
            const auto pyramid = std::make_shared<const TCurveSummary>(*d);
            const TRender r =
                Render(*d, pyramid, true, QCPRange(d->FirstTime(), d->LastTime()), QCPRange(0, 40));
            QVERIFY2(r.Points <= 4 * 640 + 8, qPrintable(QString::number(r.Points)));
            QVERIFY(r.Points > 640);
        }
    }

    void valueRangeSkipsGapMarkers() {
        TCurveShape shape;
        shape.Count = 5000;
        shape.Gaps = {10, 2500};
        const auto d = MakeCurve(shape);
        QCustomPlot plot;
        auto* c = new TCurvePlottable(plot.xAxis, plot.yAxis);
        c->SetData(d.get(), std::make_shared<const TCurveSummary>(*d));
        bool found = false;
        const QCPRange r = c->getValueRange(found);
        QVERIFY(found);
        QVERIFY(r.lower > 10.0); // the gap markers' stand-in 0 does not count
        QVERIFY(r.upper < 30.0);
        const QCPRange k = c->getKeyRange(found);
        QVERIFY(found);
        QCOMPARE(k.lower, d->FirstTime());
        QCOMPARE(k.upper, d->LastTime());
        // A part of the time range gives that part's values only.
        const QCPRange part = c->getValueRange(found, QCP::sdBoth, QCPRange(d->Time(100), d->Time(200)));
        double lo = 1e9, hi = -1e9;
        for (qint64 i = 100; i <= 200; ++i) {
            lo = std::min(lo, d->Value(i));
            hi = std::max(hi, d->Value(i));
        }
        QCOMPARE(part.lower, lo);
        QCOMPARE(part.upper, hi);
    }

    void selectTestFindsTheLine() {
        TCurveData d;
        for (int i = 0; i <= 100; ++i)
            d.Append(kT0 + i, 10.0);
        QCustomPlot plot;
        plot.resize(400, 300);
        auto* c = new TCurvePlottable(plot.xAxis, plot.yAxis);
        c->SetData(&d, std::make_shared<const TCurveSummary>(d));
        plot.xAxis->setRange(kT0, kT0 + 100);
        plot.yAxis->setRange(0, 20);
        plot.replot();
        const double x = plot.xAxis->coordToPixel(kT0 + 50), y = plot.yAxis->coordToPixel(10.0);
        QVERIFY(c->selectTest(QPointF(x, y + 1), false) <= 2.0);
        const double far = c->selectTest(QPointF(x, y + 60), false);
        QVERIFY(far < 0 || far > plot.selectionTolerance());
        c->setVisible(false);
        QCOMPARE(c->selectTest(QPointF(x, y), false), -1.0);
    }
};

QTEST_MAIN(TstPlottable)
#include "tst_plottable.moc"
