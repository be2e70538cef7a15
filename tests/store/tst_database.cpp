// The store: table rows merged by time, the merged walk, time ranges, big data and the
// bookkeeping of curves and limit lines.

#include "config/IniFile.h"
#include "data/Formats.h"
#include "Files.h"
#include "store/DataBase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <random>

namespace {

// Fills a store directly, as the loader would.
struct TFill {
    TDataBase& db;
    TStoreReceiver r{db};
    int Curve(const QString& name, std::initializer_list<std::pair<double, double>> points,
              std::initializer_list<qint64> gaps = {}) {
        const int c = db.Curve_Count();
        r.AddCurve(QStringLiteral("M%1").arg(c));
        r.SetChannelName(c, name);
        std::vector<double> t, v;
        std::vector<TPointKind> k;
        for (auto [ti, vi] : points) {
            t.push_back(ti);
            v.push_back(vi);
            k.push_back(TPointKind::Value);
        }
        for (qint64 g : gaps) k[size_t(g)] = TPointKind::Gap;
        r.AddPoints(c, t, v, k);
        db.Curve_FormatSet(c, QStringLiteral("0.0"));
        return c;
    }
};

QStringList RowTimes(const TDataBase& db) {
    QStringList out;
    for (int r = 0; r < db.Table_RowCount(); ++r) out << QString::number(db.Table_GetTimeValue(r), 'g', 12);
    return out;
}

QStringList RowCells(const TDataBase& db, int row) {
    QStringList out;
    for (int c = 0; c < db.Curve_Count(); ++c) out << db.Table_GetValue(c, row);
    return out;
}

} // namespace

class TstDataBase : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zeb::SetFormats(2); }

    void emptyStore() {
        TDataBase db;
        double mn = 5, mx = 5;
        db.GetXMinXMax(mn, mx, false);
        QCOMPARE(mn, 0.0);
        QCOMPARE(mx, 0.0);
        db.Table_SetFirstRow(100);
        QCOMPARE(db.Table_RowCount(), 0);
        QCOMPARE(db.Table_GetTime(-1), QString());
        QCOMPARE(db.Table_GetTime(0), QString());
        QCOMPARE(db.Table_GetMaxRows(), 50);
    }

    void timeRange() {
        TDataBase db;
        TFill f{db};
        f.Curve("a", {{10, 1}, {20, 2}});
        f.Curve("b", {{5, 1}, {15, 2}});
        f.Curve("c", {});
        f.Curve("d", {{1, 1}, {100, 1}});
        db.Curve_SetActive(3, false);
        double mn, mx;
        db.GetXMinXMax(mn, mx, true);
        QCOMPARE(mn, 5.0);
        QCOMPARE(mx, 20.0);
        db.GetXMinXMax(mn, mx, false);
        QCOMPARE(mn, 1.0);
        QCOMPARE(mx, 100.0);
    }

    void rowsMergeByExactTime() {
        TDataBase db;
        TFill f{db};
        f.Curve("a", {{10.0, 1}, {20.0, 2}, {30.0, 3}});
        f.Curve("b", {{10.0000001, 5}, {20.0, 6}, {25.0, 7}}, {2});
        db.Table_SetFirstRow(0);
        QCOMPARE(RowTimes(db), (QStringList{"10", "10.0000001", "20", "25", "30"}));
        QCOMPARE(RowCells(db, 0), (QStringList{"1.0", ""}));
        QCOMPARE(RowCells(db, 1), (QStringList{"", "5.0"}));
        QCOMPARE(RowCells(db, 2), (QStringList{"2.0", "6.0"}));
        QCOMPARE(RowCells(db, 3), (QStringList{"", ""})); // a gap marker shows no value
        QCOMPARE(db.Table_GetValue(0, 50), QString());
        QCOMPARE(db.Table_GetTime(4), zeb::FormatTime(zeb::TTimeKind::DateTimeMs, 30.0));
    }

    void inactiveCurvesGiveNoRows() {
        TDataBase db;
        TFill f{db};
        f.Curve("a", {{10, 1}, {30, 3}});
        f.Curve("b", {{20, 2}, {40, 4}});
        db.Curve_SetActive(1, false);
        db.Table_SetFirstRow(0);
        QCOMPARE(RowTimes(db), (QStringList{"10", "30"}));
        QCOMPARE(RowCells(db, 0), (QStringList{"1.0", ""}));
    }

    void firstRowIsClamped() {
        TDataBase db;
        TFill f{db};
        f.Curve("a", {{10, 1}, {20, 2}, {30, 3}});
        f.Curve("b", {{15, 1}, {35, 2}});
        db.Table_SetFirstRow(-1000);
        QCOMPARE(db.Table_GetFirstTime(), 10.0);
        db.Table_SetFirstRow(1e9); // past the end: the largest last time
        QCOMPARE(RowTimes(db), QStringList{"35"});
        db.Table_SetFirstRow(21);
        QCOMPARE(RowTimes(db), (QStringList{"30", "35"}));
    }

    void movingTheFirstRow() {
        TDataBase db;
        TFill f{db};
        TStoreReceiver& r = f.r;
        r.AddCurve(QStringLiteral("A"));
        r.AddCurve(QStringLiteral("B"));
        std::vector<double> ta, tb, v;
        std::vector<TPointKind> k;
        for (int i = 0; i < 200; ++i) ta.push_back(i * 2.0);     // even seconds
        for (int i = 0; i < 200; ++i) tb.push_back(i * 3.0);     // multiples of three
        v.assign(200, 1.0);
        k.assign(200, TPointKind::Value);
        r.AddPoints(0, ta, v, k);
        r.AddPoints(1, tb, v, k);
        db.Table_SetFirstRow(0);
        QCOMPARE(db.Table_RowCount(), 50);
        // Merged times 0 2 3 4 6 8 9 10 ...
        db.Table_MoveFirstRow(3);
        QCOMPARE(db.Table_GetFirstTime(), 4.0);
        db.Table_MoveFirstRow(-2);
        QCOMPARE(db.Table_GetFirstTime(), 2.0);
        db.Table_MoveFirstRow(-10);
        QCOMPARE(db.Table_GetFirstTime(), 0.0);
        db.Table_MoveFirstRow(120); // beyond the built rows
        const double t = db.Table_GetFirstTime();
        db.Table_MoveFirstRow(-120);
        QCOMPARE(db.Table_GetFirstTime(), 0.0);
        QVERIFY(t > 100.0);
        db.Table_MoveFirstRow(100000);
        QCOMPARE(db.Table_GetFirstTime(), 597.0);
        QCOMPARE(db.Table_RowCount(), 1);
    }

    // Moves of any length, from anywhere, over curves with equal stamps, stamps of their own
    // and packed chunks, land on the merged list of distinct times; each row shows each
    // curve's last point at its time.
    void movingMatchesTheMergedTimes() {
        TDataBase db;
        TFill f{db};
        std::mt19937 rng(11);
        std::vector<double> merged;
        std::vector<std::vector<double>> stamps;
        for (int c = 0; c < 3; ++c) {
            f.r.AddCurve(QStringLiteral("M%1").arg(c));
            db.Curve_FormatSet(c, QStringLiteral("0"));
            std::vector<double> t, v;
            double at = 100.0 * c;
            for (int i = 0; i < 70000 + 1000 * c; ++i) {
                // Curve 0 regular with a rare equal stamp, curve 1 regular, curve 2 irregular
                // with many equal stamps.
                if (c == 0 && rng() % 5000 != 0) at += 1.0;
                if (c == 1) at += 0.5;
                if (c == 2 && rng() % 50 != 0) at += 0.5 + double(rng() % 3);
                t.push_back(at);
                v.push_back(double(i));
            }
            f.r.AddPoints(c, t, v, std::vector<TPointKind>(t.size(), TPointKind::Value));
            merged.insert(merged.end(), t.begin(), t.end());
            stamps.push_back(t);
        }
        for (int c = 0; c < 3; ++c) db.Data(c).Compact();
        QVERIFY(db.Data(0).IsChunkPacked(0) && db.Data(1).IsChunkPacked(1) && !db.Data(2).IsChunkPacked(0));
        std::sort(merged.begin(), merged.end());
        merged.erase(std::unique(merged.begin(), merged.end()), merged.end());
        const int last = int(merged.size()) - 1;
        for (int round = 0; round < 300; ++round) {
            const int from = int(rng() % merged.size());
            const int rows = int(rng() % 301) - 150 + (round % 10 == 0 ? 40000 * (round % 20 ? 1 : -1) : 0);
            db.Table_SetFirstRow(merged[size_t(from)]);
            QCOMPARE(db.Table_GetFirstTime(), merged[size_t(from)]);
            db.Table_MoveFirstRow(rows);
            const int to = std::clamp(from + rows, 0, last);
            if (db.Table_GetFirstTime() != merged[size_t(to)])
                QFAIL(qPrintable(QStringLiteral("from row %1 by %2: %3 instead of %4")
                                     .arg(from)
                                     .arg(rows)
                                     .arg(db.Table_GetFirstTime(), 0, 'f', 1)
                                     .arg(merged[size_t(to)], 0, 'f', 1)));
            for (int r = 0; r < db.Table_RowCount(); ++r) {
                QCOMPARE(db.Table_GetTimeValue(r), merged[size_t(to + r)]);
                for (int c = 0; c < 3; ++c) {
                    // Values are the points' indices: the last point at the row's time, if any.
                    const auto& t = stamps[size_t(c)];
                    const auto at = std::upper_bound(t.begin(), t.end(), merged[size_t(to + r)]);
                    const bool has = at != t.begin() && *(at - 1) == merged[size_t(to + r)];
                    QCOMPARE(db.Table_GetValue(c, r), has ? QString::number(at - t.begin() - 1) : QString());
                }
            }
        }
    }

    void alarmsFollowTheLimits() {
        TDataBase db;
        TFill f{db};
        f.Curve("a", {{1, -1}, {2, 0}, {3, 5}, {4, 10}, {5, 11}});
        f.r.SetLimits(0, 4, 1, 0.0, 10.0);
        db.Table_SetFirstRow(0);
        QList<bool> alarms;
        for (int r = 0; r < 5; ++r) alarms << db.Table_IsAlarm(0, r);
        QCOMPARE(alarms, (QList<bool>{true, false, false, false, true}));
        QVERIFY(!db.Table_IsAlarm(0, 7));
        QCOMPARE(int(db.LimitLines().size()), 2);
        QCOMPARE(db.LimitLineIndex(0, 1), 0);
        QCOMPARE(db.LimitLineIndex(0, 2), 1);
    }

    void bigDataThreshold_data() {
        QTest::addColumn<int>("points");
        QTest::addColumn<bool>("big");
        QTest::newRow("1,000,000") << 1000000 << false;
        QTest::newRow("1,000,001") << 1000001 << true;
    }
    void bigDataThreshold() {
        QFETCH(int, points);
        QFETCH(bool, big);
        TDataBase db;
        TStoreReceiver r(db);
        r.AddCurve(QStringLiteral("big"));
        r.AddCurve(QStringLiteral("small"));
        std::vector<double> t(static_cast<size_t>(points)), v(static_cast<size_t>(points), 1.0);
        std::vector<TPointKind> k(size_t(points), TPointKind::Value);
        for (int i = 0; i < points; ++i) t[size_t(i)] = i;
        r.AddPoints(0, t, v, k);
        r.AddPoints(1, std::span(t).first(10), std::span(v).first(10), std::span(k).first(10));
        db.CheckBigData();
        QCOMPARE(db.isBigData(), big);
        QCOMPARE(db.isBigDataOn(), big);
        QCOMPARE(db.Curve_isBigDataOn(0), big);
        QVERIFY(!db.Curve_isBigDataOn(1));
        db.switchBigData(false);
        QVERIFY(!db.Curve_isBigDataOn(0));
        QVERIFY(!db.isBigDataOn());
        QCOMPARE(db.isBigData(), big);
        db.switchBigData(true);
        QCOMPARE(db.isBigDataOn(), big);
    }

    void deletingEmptyCurvesKeepsBindings() {
        TDataBase db;
        TFill f{db};
        f.Curve("empty", {});
        f.Curve("a", {{1, 1}});
        f.Curve("empty2", {});
        f.Curve("b", {{2, 2}});
        f.r.SetLimits(3, 2, 1, 1.5, 0);
        db.DeleteEmptyCurves();
        QCOMPARE(db.Curve_Count(), 2);
        QCOMPARE(db.Settings().Curves.Count(), 2);
        QCOMPARE(db.Curve_NameGet(0), QStringLiteral("a"));
        QCOMPARE(db.Curve_NameGet(1), QStringLiteral("b"));
        QCOMPARE(db.LimitLines().front().Curve, 1);
        QCOMPARE(db.LimitLineIndex(1, 1), 0);
    }

    void namesAndUnits() {
        TDataBase db;
        TFill f{db};
        f.Curve("Temp", {{1, 1}});
        f.r.SetUnit(0, QStringLiteral("°C"));
        QCOMPARE(db.Curve_NameUnitGet(0), QStringLiteral("Temp [°C]"));
        QCOMPARE(db.Curve_NameGet(5), QString());
        QCOMPARE(TDataBase::AddUnit(QStringLiteral("x"), QString()), QStringLiteral("x"));
        // Flow curves are litres per minute, whatever the spelling.
        for (const char* unit : {"l/min", " L / Min ", "lpm", "Litre/min"}) {
            f.r.SetUnit(0, QString::fromLatin1(unit));
            QVERIFY2(db.IsFlowCurve(0), unit);
        }
        QVERIFY(db.ExistsFlowModul());
        f.r.SetUnit(0, QStringLiteral("m³/h"));
        QVERIFY(!db.IsFlowCurve(0));
        QVERIFY(!db.ExistsFlowModul());
    }

    void templateRoundTripThroughTheStore() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("view.mse"));
        TDataBase a;
        TFill fa{a};
        fa.Curve("T1", {{1, 1}});
        fa.Curve("H1", {{1, 2}});
        a.General_Get().Title = QStringLiteral("Cold store");
        a.Axis_Get(axLeft).Auto = false;
        a.Axis_Get(axLeft).Min = -20;
        a.Axis_Get(axBottom).XType = TTimeAxisType::TimeFromStart;
        a.Cursor_Get(1).YFormat = QStringLiteral("0.0");
        a.Print_Get().Landscape = false;
        a.Curve_ColorSet(1, 0x123456);
        a.Curve_AxisSet(1, 2);
        QVERIFY(a.Ini_FileSave(path));

        // Another recording with the same channels in another order takes the curve
        // settings by channel, and every view value.
        TDataBase b;
        TFill fb{b};
        fb.Curve("H1", {{1, 2}});
        fb.Curve("T1", {{1, 1}});
        QVERIFY(b.Ini_FileOpen(path));
        QCOMPARE(b.General_Get().Title, QStringLiteral("Cold store"));
        QCOMPARE(b.Axis_Get(axLeft).Auto, false);
        QCOMPARE(b.Axis_Get(axLeft).Min, -20.0);
        QCOMPARE(b.Axis_Get(axBottom).XType, TTimeAxisType::TimeFromStart);
        QCOMPARE(b.Cursor_Get(1).YFormat, QStringLiteral("0.0"));
        QCOMPARE(b.Print_Get().Landscape, false);
        QCOMPARE(b.Curve_ColorGet(0), 0x123456);
        QCOMPARE(b.Curve_AxisGet(0), 2);
        QCOMPARE(b.Curve_AxisGet(1), a.Curve_AxisGet(0));
        // A template that cannot be read changes nothing.
        QVERIFY(!b.Ini_FileOpen(dir.filePath(QStringLiteral("missing.mse"))));
        QCOMPARE(b.General_Get().Title, QStringLiteral("Cold store"));
    }

    void partialTemplateChangesOnlyWhatItSets() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("part.mse"));
        QVERIFY(WriteBytes(path, "[Axis Left]\r\nMin='5'\r\n[Curve0]\r\nChannelName='T1'\r\nColor=255\r\n"));
        TDataBase db;
        TFill fill{db};
        fill.Curve("T1", {{1, 1}});
        db.Curve_NameSet(0, QStringLiteral("Inside"));
        db.General_Get().Title = QStringLiteral("kept");
        db.Axis_Get(axLeft).Max = 40;
        QVERIFY(db.Ini_FileOpen(path));
        QCOMPARE(db.Axis_Get(axLeft).Min, 5.0);
        QCOMPARE(db.Axis_Get(axLeft).Max, 40.0);
        QCOMPARE(db.General_Get().Title, QStringLiteral("kept"));
        QCOMPARE(db.Curve_ColorGet(0), 255);
        QCOMPARE(db.Curve_NameGet(0), QStringLiteral("Inside")); // matched by channel: title kept
        db.Ini_CreateOriginalNames();
        QCOMPARE(db.Curve_NameGet(0), QStringLiteral("T1"));
    }

    // The view gets what it can use of a template; the template keeps what its file says, so
    // saving it again writes back what was read, unless the view was changed since.
    void templateValuesAreLimitedWhereApplied() {
        QTemporaryDir dir;
        const QString in = dir.filePath(QStringLiteral("wide.mse"));
        const QString out = dir.filePath(QStringLiteral("again.mse"));
        QVERIFY(WriteBytes(in, "[General]\r\nOnlineRate=0\r\n[Font Title]\r\nSize=500\r\nStyle=9\r\n"
                               "[Axis Bottom]\r\nXType=7\r\n[Cursor1]\r\nAxis=-3\r\nWidth=30\r\n"
                               "[Print]\r\nMarginLeft=80\r\n"
                               "[Curve0]\r\nChannelName='T1'\r\nAxis=5\r\nWidth=500\r\nType=9\r\n"));
        TDataBase db;
        TFill fill{db};
        fill.Curve("T1", {{1, 1}});
        QVERIFY(db.Ini_FileOpen(in));
        QCOMPARE(db.General_Get().OnlineRate, 1);
        QCOMPARE(db.General_Get().FontTitle.Size, 200);
        QCOMPARE(db.General_Get().FontTitle.Style, 3);
        QCOMPARE(db.Axis_Get(axBottom).XType, TTimeAxisType::DateTime);
        QCOMPARE(db.Cursor_Get(0).Axis, 0);
        QCOMPARE(db.Cursor_Get(0).Width, 9);
        QCOMPARE(db.Print_Get().MarginLeft, 45);
        QCOMPARE(db.Curve_AxisGet(0), 2);
        QCOMPARE(db.Curve_WidthGet(0), 10);
        QCOMPARE(db.Curve_TypeGet(0), TCurveType::Points);

        QVERIFY(db.Ini_FileSave(out));
        const QStringList kept{"General/OnlineRate=0", "Font Title/Size=500", "Font Title/Style=9",
                               "Axis Bottom/XType=7", "Cursor1/Axis=-3", "Cursor1/Width=30", "Print/MarginLeft=80"};
        TIniFile saved(out);
        for (const QString& k : kept) {
            const QStringList sk = k.split(QLatin1Char('/'));
            const QStringList kv = sk[1].split(QLatin1Char('='));
            QCOMPARE(sk[0] + '/' + kv[0] + '=' + saved.ReadString(sk[0], kv[0]), k);
        }
        db.General_Get().FontTitle.Size = 12;
        QVERIFY(db.Ini_FileSave(out));
        QCOMPARE(TIniFile(out).ReadInteger(QStringLiteral("Font Title"), QStringLiteral("Size"), 0), 12);
    }

    void outOfOrderStampsAreSorted() {
        TCurveData d;
        const std::vector<double> t{3, 1, 2, 1}, v{30, 10, 20, 11};
        const std::vector<TPointKind> k{TPointKind::Value, TPointKind::Gap, TPointKind::Value, TPointKind::Value};
        d.Append(t, v, k);
        QVERIFY(!d.IsSorted());
        d.SortByTime();
        QCOMPARE(d.Time(0), 1.0);
        QVERIFY(d.IsGap(0)); // equal stamps keep their file order
        QCOMPARE(d.Value(1), 11.0);
        QCOMPARE(d.Value(3), 30.0);
        QCOMPARE(d.LowerBound(2), 2);
        QCOMPARE(d.UpperBound(1), 2);
    }

    void columnsCrossChunks() {
        TCurveData d;
        const qint64 n = TCurveData::kChunkSize * 2 + 17;
        std::vector<double> t(static_cast<size_t>(n)), v(static_cast<size_t>(n));
        std::vector<TPointKind> k(size_t(n), TPointKind::Value);
        for (qint64 i = 0; i < n; ++i) {
            t[size_t(i)] = double(i) * 0.5;
            v[size_t(i)] = double(i % 1000);
        }
        k[size_t(TCurveData::kChunkSize)] = TPointKind::Gap;
        // Appended in uneven pieces, as blocks bring them.
        for (qint64 at = 0; at < n; at += 7919) {
            const size_t len = size_t(std::min<qint64>(7919, n - at));
            d.Append(std::span(t).subspan(size_t(at), len), std::span(v).subspan(size_t(at), len),
                     std::span(k).subspan(size_t(at), len));
        }
        QCOMPARE(d.Count(), n);
        for (qint64 i : {qint64(0), TCurveData::kChunkSize - 1, TCurveData::kChunkSize, n - 1}) {
            QCOMPARE(d.Time(i), double(i) * 0.5);
            QCOMPARE(d.Value(i), double(i % 1000));
        }
        QVERIFY(d.IsGap(TCurveData::kChunkSize));
        QVERIFY(!d.IsGap(TCurveData::kChunkSize + 1));
        QCOMPARE(d.LowerBound(double(TCurveData::kChunkSize) * 0.5), TCurveData::kChunkSize);
    }
};

QTEST_GUILESS_MAIN(TstDataBase)
#include "tst_database.moc"
