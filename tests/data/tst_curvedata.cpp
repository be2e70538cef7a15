// The sample columns: packed time stamps read back bit for bit, whatever their pattern, and
// regular ones are actually packed.

#include "data/CurveData.h"

#include <QTest>

#include <bit>
#include <cmath>
#include <functional>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using TStamps = std::function<std::vector<double>(qint64 n)>;

constexpr double kStartDays = 8826.25;

// Stamps made as a logger file makes them: a day count with fractions, times 86,400.
std::vector<double> FileStamps(qint64 n, double intervalSeconds) {
    std::vector<double> t(static_cast<size_t>(n));
    for (qint64 k = 0; k < n; ++k)
        t[size_t(k)] = (kStartDays + double(k) * intervalSeconds / 86400.0) * 86400.0;
    return t;
}

std::vector<double> Jittered(qint64 n) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> u(-0.4, 0.4);
    std::vector<double> t(static_cast<size_t>(n));
    for (qint64 k = 0; k < n; ++k)
        t[size_t(k)] = (kStartDays + (double(k) + u(rng)) / 86400.0) * 86400.0;
    return t;
}

TCurveData Fill(const std::vector<double>& t, bool push) {
    TCurveData d;
    if (push) {
        for (size_t k = 0; k < t.size(); ++k)
            d.Push(t[k], float(k % 1000), TPointKind::Value);
    } else {
        const std::vector<double> v(t.size(), 1.5);
        const std::vector<TPointKind> kinds(t.size(), TPointKind::Value);
        d.Append(t, v, kinds);
    }
    d.Compact();
    return d;
}

quint64 Bits(double v) {
    return std::bit_cast<quint64>(v);
}

} // namespace

class TstCurveData : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stampsReadBack_data() {
        QTest::addColumn<TStamps>("stamps");
        QTest::addColumn<qint64>("count");
        QTest::addColumn<bool>("packed"); // whether the first chunk is expected packed

        const qint64 twoChunks = 2 * TCurveData::kChunkSize + 1234;
        auto file = [](double iv) { return [iv](qint64 n) { return FileStamps(n, iv); }; };
        QTest::newRow("every minute") << TStamps(file(60.0)) << twoChunks << true;
        QTest::newRow("every second") << TStamps(file(1.0)) << twoChunks << true;
        QTest::newRow("100 Hz") << TStamps(file(0.01)) << twoChunks << true;
        QTest::newRow("a third of a second") << TStamps(file(1.0 / 3.0)) << twoChunks << true;
        QTest::newRow("0.1234567 s") << TStamps(file(0.1234567)) << twoChunks << true;
        QTest::newRow("one late stamp") << TStamps([](qint64 n) {
            auto t = FileStamps(n, 60.0);
            t[1000] += 0.4;
            t[70000] += 13.0;
            return t;
        }) << twoChunks << true;
        QTest::newRow("schedule restarts after a late stamp") << TStamps([](qint64 n) {
            auto t = FileStamps(n, 10.0);
            for (qint64 k = 500; k < n; ++k)
                t[size_t(k)] += 3.25;
            return t;
        }) << twoChunks << true;
        QTest::newRow("equal stamps in threes") << TStamps([](qint64 n) {
            auto t = FileStamps(n, 2.0);
            for (qint64 k = 0; k < n; ++k)
                t[size_t(k)] = t[size_t(k - k % 3)];
            return t;
        }) << twoChunks << false;
        QTest::newRow("the step changes") << TStamps([](qint64 n) {
            auto t = FileStamps(n, 1.0);
            for (qint64 k = 30000; k < n; ++k)
                t[size_t(k)] = t[29999] + double(k - 29999) * 0.25;
            return t;
        }) << twoChunks << true;
        QTest::newRow("descending") << TStamps([](qint64 n) {
            auto t = FileStamps(n, 5.0);
            std::reverse(t.begin(), t.end());
            return t;
        }) << twoChunks << true;
        QTest::newRow("around zero") << TStamps([](qint64 n) {
            std::vector<double> t(static_cast<size_t>(n));
            for (qint64 k = 0; k < n; ++k)
                t[size_t(k)] = double(k - n / 2) * 1e-3;
            return t;
        }) << twoChunks << true;
        QTest::newRow("jittered") << TStamps(Jittered) << twoChunks << false;
        QTest::newRow("part of a chunk") << TStamps(file(60.0)) << qint64(777) << true;
        QTest::newRow("one point, not worth packing") << TStamps(file(60.0)) << qint64(1) << false;
    }

    void stampsReadBack() {
        QFETCH(TStamps, stamps);
        QFETCH(qint64, count);
        QFETCH(bool, packed);
        const std::vector<double> t = stamps(count);
        for (bool push : {false, true}) {
            const TCurveData d = Fill(t, push);
            QCOMPARE(d.Count(), count);
            QCOMPARE(d.IsChunkPacked(0), packed);
            for (qint64 i = 0; i < count; ++i)
                if (Bits(d.Time(i)) != Bits(t[size_t(i)]))
                    QFAIL(qPrintable(u"point %1: %2 instead of %3"_s.arg(i)
                                         .arg(d.Time(i), 0, 'g', 17)
                                         .arg(t[size_t(i)], 0, 'g', 17)));
            // Pieces as the sequential readers take them, starting anywhere in a chunk.
            std::vector<double> buf(static_cast<size_t>(TCurveData::kChunkSize));
            for (qint64 first = 0; first < count;) {
                const qint64 chunkEnd = ((first >> TCurveData::kChunkBits) + 1) << TCurveData::kChunkBits;
                const qint64 n = std::min({count, chunkEnd, first + 3001}) - first;
                const double* p = d.Times(first, n, buf.data());
                for (qint64 j = 0; j < n; ++j)
                    if (Bits(p[j]) != Bits(t[size_t(first + j)]))
                        QFAIL(qPrintable(u"piece at %1"_s.arg(first + j)));
                first += n;
            }
        }
        if (packed && t[0] > 1e8) {
            // Stamps of our time, packed: about 4.5 bytes a point for times and values, where 12 were.
            const TCurveData d = Fill(t, false);
            const double perPoint = double(d.MemoryBytes()) / double(d.ChunkCount() * TCurveData::kChunkSize);
            QVERIFY2(perPoint < 4.6, qPrintable(QString::number(perPoint)));
        }
    }

    // Compact packs or trims the chunk being filled; appending brings it back to full size and
    // goes on where it stood, for packed and for irregular stamps kept as written.
    void appendAfterCompact() {
        for (const bool regular : {true, false}) {
            const qint64 n = TCurveData::kChunkSize + 500;
            const std::vector<double> t = regular ? FileStamps(n, 1.0) : Jittered(n);
            TCurveData d;
            for (size_t k = 0; k < t.size(); ++k) {
                d.Push(t[k], float(k), TPointKind::Value);
                if (k % 20000 == 7) {
                    const qint64 before = d.MemoryBytes();
                    d.Compact();
                    QCOMPARE(d.IsChunkPacked(qint64(k) >> TCurveData::kChunkBits), regular);
                    QVERIFY2(d.MemoryBytes() < before, "a part-filled chunk keeps only its points");
                }
            }
            d.Compact();
            QCOMPARE(d.Count(), qint64(t.size()));
            for (qint64 i = 0; i < d.Count(); ++i) {
                QCOMPARE(Bits(d.Time(i)), Bits(t[size_t(i)]));
                QCOMPARE(d.Value(i), double(float(i)));
            }
            QCOMPARE(d.LowerBound(t[60000]), qint64(60000));
            QCOMPARE(d.UpperBound(t[60000]), qint64(60001));
        }
    }

    // The bounds from chunk search, run guess and gallop agree with a plain binary search of the
    // stamps, at the stamps themselves, between them and beyond both ends.
    void boundsMatchASearch_data() {
        QTest::addColumn<TStamps>("stamps");
        QTest::newRow("regular") << TStamps([](qint64 c) { return FileStamps(c, 1.0); });
        QTest::newRow("jittered") << TStamps(Jittered);
        QTest::newRow("equal stamps in runs") << TStamps([](qint64 c) {
            auto t = FileStamps(c, 2.0);
            for (qint64 k = 0; k < c; ++k)
                t[size_t(k)] = t[size_t(k - k % 5)];
            return t;
        });
        QTest::newRow("steps and jumps") << TStamps([](qint64 c) {
            auto t = FileStamps(c, 1.0);
            for (qint64 k = 0; k < c; ++k)
                t[size_t(k)] += 1000.0 * double(k / 9000) + (k % 9000 == 4500 ? 0.3 : 0.0);
            return t;
        });
    }

    void boundsMatchASearch() {
        QFETCH(TStamps, stamps);
        const qint64 n = 3 * TCurveData::kChunkSize + 77;
        const std::vector<double> t = stamps(n);
        const TCurveData d = Fill(t, true);
        std::mt19937_64 rng(3);
        std::uniform_int_distribution<qint64> pick(0, n - 1);
        std::vector<double> probes = {t.front() - 1.0, t.front(), t.back(), t.back() + 1.0};
        for (int k = 0; k < 3000; ++k) {
            const double at = t[size_t(pick(rng))];
            probes.insert(probes.end(),
                          {at, std::nextafter(at, -1e300), std::nextafter(at, 1e300), at + 0.5, at - 0.25});
        }
        for (qint64 c = 0; c < d.ChunkCount(); ++c) {
            const double first = t[size_t(c << TCurveData::kChunkBits)];
            probes.insert(probes.end(), {first, std::nextafter(first, -1e300), std::nextafter(first, 1e300)});
        }
        for (const double p : probes) {
            const qint64 lower = std::lower_bound(t.begin(), t.end(), p) - t.begin();
            const qint64 upper = std::upper_bound(t.begin(), t.end(), p) - t.begin();
            if (d.LowerBound(p) != lower || d.UpperBound(p) != upper)
                QFAIL(qPrintable(u"at %1: %2 and %3 instead of %4 and %5"_s.arg(p, 0, 'g', 17)
                                     .arg(d.LowerBound(p))
                                     .arg(d.UpperBound(p))
                                     .arg(lower)
                                     .arg(upper)));
        }
    }

    // Sorting an out-of-order curve moves each value with its stamp and null kind.
    void sortKeepsPairs() {
        TCurveData d;
        const int n = 70000;
        for (int k = 0; k < n; ++k) {
            const int at = (k * 7919) % n; // a permutation of 0..n-1
            d.Append(1000.0 + at * 0.5, double(at), at % 100 == 0 ? TPointKind::Gap : TPointKind::Value);
        }
        QVERIFY(!d.IsSorted());
        d.SortByTime();
        QVERIFY(d.IsSorted());
        for (int i = 0; i < n; ++i) {
            QCOMPARE(d.Time(i), 1000.0 + i * 0.5);
            QCOMPARE(d.Value(i), double(i));
            QCOMPARE(d.IsGap(i), i % 100 == 0);
        }
        QVERIFY(d.IsChunkPacked(0));
    }
};

QTEST_APPLESS_MAIN(TstCurveData)
#include "tst_curvedata.moc"
