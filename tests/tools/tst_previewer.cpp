// The previewer: the overview's buckets hold every value where its time belongs, whatever
// order the stamps come in; the overview of a file agrees with what the store loads; and the
// window, offscreen, is read, a time window dragged, channels ticked and "Cut and open" run
// with the real cutter and a stand-in viewer.

#include "CompanionCli.h"
#include "config/Language.h"
#include "Files.h"
#include "MakeRecording.h"
#include "Previewer.h"
#include "RecordingBuilder.h"
#include "ToolHelpers.h"

#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#define signals Q_SIGNALS
#define foreach Q_FOREACH
#include <qcustomplot.h>
#undef signals
#undef foreach

#include <bit>
#include <cmath>

using namespace tooltest;
using namespace Qt::StringLiterals;

class TstPreviewer : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;
    QString FGen;

    QString Path(const QString& name) const { return FDir.filePath(name); }

private Q_SLOTS:
    void initTestCase() {
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(Path(u"settings.ini"_s)));
        zeb::ApplyStartupLanguage(1, 0, 0);
        FGen = Path(u"gen.zeb"_s);
        QVERIFY(MakeRecording(FGen, {.channels = 3, .records = 40000, .missingRate = 0.1, .gapRate = 0.01,
                                     .oddRate = 0.001}));
    }

    // Stamps jump far ahead and fall back before the first one: each value still counts in
    // the bucket of the final grid that holds its time, and only there.
    void bucketsHoldEveryValue() {
        TOverview ov;
        ov.AddChannel(u"A"_s);
        ov.AddChannel(u"B"_s);
        QRandomGenerator rnd(5);
        std::vector<std::pair<double, std::array<quint32, 2>>> recs;
        for (int i = 0; i < 5000; ++i) {
            // Half seconds after whole ones never meet a bucket edge (widths are 2^k ms).
            const double t = 9000.5 + (i < 100 ? i : double(rnd.bounded(-3000, 200000))) * (i % 7 == 0 ? 17 : 1);
            const quint32 a = rnd.bounded(8) == 0 ? 0xFFFFFFFFu : std::bit_cast<quint32>(float(rnd.bounded(1000)));
            const quint32 b = rnd.bounded(8) == 0 ? 0xFFFFFFFEu : std::bit_cast<quint32>(-float(rnd.bounded(1000)));
            recs.push_back({t, {a, b}});
            ov.AddRecord(t, recs.back().second.data(), 2);
        }
        QVERIFY(ov.BucketWidth() > TOverview::kFirstWidth);
        for (int c = 0; c < 2; ++c) {
            std::vector<float> mn(TOverview::kBuckets, INFINITY), mx(TOverview::kBuckets, -INFINITY);
            for (const auto& [t, bits] : recs) {
                if (bits[size_t(c)] >= 0xFFFFFFFEu) continue;
                const double pos = std::floor((t - ov.BucketStart(0)) / ov.BucketWidth());
                QVERIFY(pos >= 0 && pos < TOverview::kBuckets);
                const float v = std::bit_cast<float>(bits[size_t(c)]);
                mn[size_t(pos)] = std::min(mn[size_t(pos)], v);
                mx[size_t(pos)] = std::max(mx[size_t(pos)], v);
            }
            QVERIFY(mn == ov.Channels()[size_t(c)].BucketMin);
            QVERIFY(mx == ov.Channels()[size_t(c)].BucketMax);
        }
    }

    void overviewAgreesWithTheStore() {
        TOverview ov;
        std::atomic<qint64> done = 0, total = 0;
        QCOMPARE(ov.Build(FGen, nullptr, &done, &total), TOverview::TStatus::Ok);
        QCOMPARE(done.load(), total.load());
        const auto db = Load(FGen);
        QCOMPARE(ov.ValueCount(), db->ValueCount());
        double first = 0, last = 0;
        db->GetXMinXMax(first, last, false);
        QCOMPARE(ov.FirstTime(), first);
        QCOMPARE(ov.LastTime(), last);
        QCOMPARE(int(ov.Channels().size()), db->Curve_Count());
        for (int c = 0; c < db->Curve_Count(); ++c) {
            const TCurveData& d = db->Data(c);
            qint64 values = 0;
            double mn = INFINITY, mx = -INFINITY;
            for (qint64 i = 0; i < d.Count(); ++i) {
                if (d.IsGap(i)) continue;
                ++values;
                if (std::isfinite(d.Value(i))) mn = std::min(mn, d.Value(i)), mx = std::max(mx, d.Value(i));
            }
            const TOverviewChannel& ch = ov.Channels()[size_t(c)];
            QCOMPARE(ch.Count, values);
            QCOMPARE(ch.Min, mn);
            QCOMPARE(ch.Max, mx);
            QCOMPARE(ch.Title(), db->Curve_NameGet(c));
            QCOMPARE(ch.Unit, db->Curve_UnitGet(c));
        }

        const QByteArray whole = ReadBytes(FGen);
        QVERIFY(TRecordingBuilder::SaveBytes(Path(u"half.zeb"_s), whole.left(whole.size() / 2)));
        QCOMPARE(ov.Build(Path(u"half.zeb"_s)), TOverview::TStatus::Damaged);
        QVERIFY(ov.ValueCount() > 0);
        QVERIFY(TRecordingBuilder::SaveBytes(Path(u"junk.zeb"_s), "no recording"));
        QCOMPARE(ov.Build(Path(u"junk.zeb"_s)), TOverview::TStatus::NotARecording);
        QCOMPARE(ov.Build(Path(u"none.zeb"_s)), TOverview::TStatus::CannotRead);
    }

    void windowCutAndOpen() {
        // The real cutter and a viewer that notes what it was asked to open.
        QTemporaryDir bin;
        QVERIFY(QFile::link(QStringLiteral(ZEB_CUTTER), bin.filePath(u"zeb_cutter"_s)));
        const QString noted = bin.filePath(u"opened.txt"_s);
        QFile viewer(bin.filePath(u"zeb_viewer"_s));
        QVERIFY(viewer.open(QIODevice::WriteOnly));
        viewer.write("#!/bin/sh\nprintf '%s' \"$1\" > \"$(dirname \"$0\")/opened.tmp\" && "
                     "mv \"$(dirname \"$0\")/opened.tmp\" \"$(dirname \"$0\")/opened.txt\"\n");
        viewer.close();
        viewer.setPermissions(viewer.permissions() | QFile::ExeOwner);
        SetZebProgramDir(bin.path());

        TfrmPreviewer w;
        w.show();
        QSignalSpy ready(&w, &TfrmPreviewer::overviewReady);
        w.OpenFile(FGen);
        QVERIFY(ready.wait(60000));
        QCOMPARE(w.ChannelList()->topLevelItemCount(), 3);
        QCOMPARE(w.Chart()->axisRectCount(), 3);
        QCOMPARE(w.Chart()->graphCount(), 6);
        QVERIFY(w.Chart()->graph(0)->dataCount() > 100);
        QVERIFY(w.findChild<QLabel*>(u"lblInfo"_s)->text().contains(u"3 channels"_s));
        const double first = w.Overview().FirstTime(), last = w.Overview().LastTime();
        QCOMPARE(w.WindowStart(), first);
        QCOMPARE(w.WindowEnd(), last);

        // Dragged from 30 % to 60 % of the chart's width.
        QCustomPlot* chart = w.Chart();
        const QRect r = chart->axisRect()->rect();
        const QPoint a(r.left() + r.width() * 3 / 10, r.center().y()), b(r.left() + r.width() * 6 / 10, r.center().y());
        QTest::mousePress(chart, Qt::LeftButton, {}, a);
        QTest::mouseMove(chart, b);
        QTest::mouseRelease(chart, Qt::LeftButton, {}, b);
        const double span = last - first;
        QVERIFY(std::abs(w.WindowStart() - (first + 0.3 * span)) < span / 100);
        QVERIFY(std::abs(w.WindowEnd() - (first + 0.6 * span)) < span / 100);

        w.ChannelList()->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
        QCOMPARE(chart->axisRectCount(), 2);
        QCOMPARE(chart->graphCount(), 4);
        QCOMPARE(chart->axisRect(1)->axis(QCPAxis::atLeft)->label(), u"Pressure [hPa]"_s);
        QCOMPARE(w.CheckedChannels(), (QList<int>{0, 2}));

        const QString target = Path(u"window.zeb"_s);
        w.SetTargetAsker([&](const QString& proposed) {
            return proposed == Path(u"gen_cut.zeb"_s) ? target : QString();
        });
        QSignalSpy cut(&w, &TfrmPreviewer::cutFinished);
        QTest::mouseClick(w.CutButton(), Qt::LeftButton);
        QVERIFY(cut.wait(60000));
        QCOMPARE(cut.first().first().toInt(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(noted), 10000);
        QCOMPARE(QString::fromLocal8Bit(ReadBytes(noted)), target);

        const auto src = Load(FGen);
        const auto dst = Load(target);
        QCOMPARE(dst->Curve_Count(), 2);
        QCOMPARE(Points(*dst, 0, -1e300, 1e300), Points(*src, 0, w.WindowStart(), w.WindowEnd()));
        QCOMPARE(Points(*dst, 1, -1e300, 1e300), Points(*src, 2, w.WindowStart(), w.WindowEnd()));
        QVERIFY(dst->Data(0).Count() > 1000);

        // Without a cutter next to it the previewer says so.
        QTemporaryDir empty;
        SetZebProgramDir(empty.path());
        cut.clear();
        QTest::mouseClick(w.CutButton(), Qt::LeftButton);
        QCOMPARE(cut.size(), 1);
        QCOMPARE(cut.first().first().toInt(), -1);
        QVERIFY(w.statusBar()->currentMessage().contains(u"not found"_s));
        SetZebProgramDir({});
    }
};

QTEST_MAIN(TstPreviewer)
#include "tst_previewer.moc"
