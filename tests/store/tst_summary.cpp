// The summary of many recordings: every readable curve gets the report's figures of the
// recording as the viewer loads it, bad files are marked and never stop the others, and the
// CSV carries the same rows.

#include "LoadRecording.h"
#include "RecordingGenerator.h"
#include "analysis/Figures.h"
#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "store/Summary.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

bool Same(double a, double b) { return (std::isnan(a) && std::isnan(b)) || a == b; }

QString Make(const QTemporaryDir& dir, const QString& name, TGenOptions o) {
    const QString path = dir.filePath(name);
    return WriteRecording(path, o) ? path : QString();
}

// A copy of the first bytes, or one with bytes overwritten in the middle of the stream.
QString Cut(const QString& from, const QString& to, qint64 keep, bool damage) {
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly)) return {};
    QByteArray bytes = in.readAll();
    if (damage) {
        for (qint64 i = keep; i < keep + 64 && i < bytes.size(); ++i) bytes[i] = char(0x5A);
    } else {
        bytes.truncate(keep);
    }
    QFile out(to);
    return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size() ? to : QString();
}

} // namespace

class TstSummary : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;
    QString FPlain, FOdd, FNoLimits, FTruncated, FDamaged, FBetween;

private Q_SLOTS:
    void initTestCase() {
        zeb::SwitchTexts(zeb::LangEnglish);
        zeb::SetFormats(2);
        qputenv("ZEB_SETTINGS_FILE", FDir.filePath(QStringLiteral("settings.ini")).toLocal8Bit());
        TGenOptions o;
        o.records = 40000;
        o.seed = 7;
        FPlain = Make(FDir, QStringLiteral("plain.zeb"), o);
        o.seed = 8;
        o.gapRate = 0.01;
        o.missingRate = 0.02;
        o.oddRate = 0.005;
        FOdd = Make(FDir, QStringLiteral("odd.zeb"), o);
        o = TGenOptions();
        o.records = 20000;
        o.limitMode = 3;
        FBetween = Make(FDir, QStringLiteral("between.zeb"), o);
        o = TGenOptions();
        o.records = 3000;
        o.limits = false;
        FNoLimits = Make(FDir, QStringLiteral("nolimits.zeb"), o);
        FTruncated = Cut(FPlain, FDir.filePath(QStringLiteral("cut.zeb")), QFileInfo(FPlain).size() * 2 / 3, false);
        FDamaged = Cut(FOdd, FDir.filePath(QStringLiteral("damaged.zeb")), QFileInfo(FOdd).size() / 2, true);
        for (const QString& f : {FPlain, FOdd, FNoLimits, FTruncated, FDamaged, FBetween}) QVERIFY(!f.isEmpty());
    }

    // Each curve's row holds the report's figures of the recording as the viewer's loader
    // reads it, over the whole recording; the status says how far it could be read.
    void figuresOfTheViewersLoad_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("status");
        QTest::newRow("complete") << FPlain << int(TSummaryStatus::Ok);
        QTest::newRow("gaps, missing and non-finite values") << FOdd << int(TSummaryStatus::Ok);
        QTest::newRow("without limits") << FNoLimits << int(TSummaryStatus::Ok);
        QTest::newRow("limits: alarm between L1 and L2") << FBetween << int(TSummaryStatus::Ok);
        QTest::newRow("truncated") << FTruncated << int(TSummaryStatus::Truncated);
        QTest::newRow("damaged") << FDamaged << int(TSummaryStatus::Damaged);
    }
    void figuresOfTheViewersLoad() {
        QFETCH(QString, file);
        QFETCH(int, status);
        TSummaryOptions options;
        options.ActivationEnergy = 95.0;
        const std::vector<TSummaryRow> rows = TSummaryRun{}.Run({file}, options);

        const auto db = LoadRecording(file);
        db->FinishLoad();
        QCOMPARE(int(rows.size()), db->Curve_Count());
        double first = 0.0, last = 0.0;
        db->GetXMinXMax(first, last, false);
        for (const TSummaryRow& r : rows) {
            QCOMPARE(int(r.Status), status);
            QCOMPARE(r.File, file);
            const int i = r.Index;
            QCOMPARE(r.Name, db->Curve_NameGet(i));
            QCOMPARE(r.Unit, db->Curve_UnitGet(i));
            TFigureOptions want;
            want.Finite = want.ExtremeTimes = want.Violations = true;
            if (IsCelsius(r.Unit)) want.MktEnergy = 95.0;
            const TCurveData& d = db->Data(i);
            const TCurveFigures f =
                CurveFigures(d, nullptr, LimitRuleOf(db->Settings().Curves[i]), first, last, want);
            QCOMPARE(r.Points, f.Stats.Count);
            QCOMPARE(r.Infinite, f.Finite.Infinite);
            QVERIFY(Same(r.Min, f.Finite.Min) && Same(r.Max, f.Finite.Max));
            QVERIFY(Same(r.Average, f.Finite.Average));
            QCOMPARE(r.MinTime, d.Time(f.MinIndex));
            QCOMPARE(r.MaxTime, d.Time(f.MaxIndex));
            QVERIFY(Same(r.Mkt, f.Mkt));
            QCOMPARE(IsCelsius(r.Unit), !std::isnan(r.Mkt));
            QCOMPARE(r.LimitMode, f.HasLimits() ? f.Limits.Mode : 0);
            if (!f.HasLimits()) {
                QCOMPARE(int(r.Verdict), int(TSummaryVerdict::NoLimits));
                continue;
            }
            QVERIFY(Same(r.LimitOut, f.Times.Out));
            QCOMPARE(r.Violations, f.Violations.Count);
            QCOMPARE(r.FirstViolation, f.Violations.Count ? d.Time(f.Violations.FirstIndex) : TSummaryRow::kNone);
            QCOMPARE(int(r.Verdict), int(r.Violations ? TSummaryVerdict::Failed : TSummaryVerdict::Passed));
            // The listed violations are the counted ones.
            const auto spans = ListViolations(d, f.Limits, f.Range, size_t(r.Violations) + 5);
            QCOMPARE(qint64(spans.size()), r.Violations);
            if (!spans.empty()) QCOMPARE(d.Time(spans.front().First), r.FirstViolation);
        }
        if (status == int(TSummaryStatus::Ok)) QVERIFY(!rows.empty());
    }

    // Files that cannot be read get one row each with their status; the others go on, in order.
    void badFilesNeverStopTheOthers() {
        const QString empty = FDir.filePath(QStringLiteral("empty.zeb"));
        const QString text = FDir.filePath(QStringLiteral("text.zeb"));
        QFile(empty).open(QIODevice::WriteOnly);
        {
            QFile t(text);
            QVERIFY(t.open(QIODevice::WriteOnly));
            t.write("not a recording at all");
        }
        const QString missing = FDir.filePath(QStringLiteral("missing.zeb"));
        QStringList seen;
        TSummaryRun run;
        run.Progress = [&seen](int, int, const QString& f) { seen << f; };
        const auto rows = run.Run({missing, FNoLimits, empty, text, FPlain}, {});
        QCOMPARE(seen, (QStringList{missing, FNoLimits, empty, text, FPlain, QString()}));
        QStringList order;
        for (const TSummaryRow& r : rows) {
            if (order.isEmpty() || order.last() != r.File) order << r.File;
            if (r.File == missing || r.File == empty || r.File == text) {
                QCOMPARE(int(r.Status), int(TSummaryStatus::Unreadable));
                QVERIFY(!r.HasFigures());
            }
        }
        QCOMPARE(order, (QStringList{missing, FNoLimits, empty, text, FPlain}));
        const TSummaryCounts c = CountSummary(rows);
        QCOMPARE(c.Recordings, 5);
        QCOMPARE(c.Incomplete, 3);
        QCOMPARE(c.Passed + c.Failed + c.NoLimits, 8);
        QVERIFY(c.NoLimits >= 4);
    }

    // A range narrows every figure; one template for all replaces each recording's own.
    void rangeAndTemplate() {
        const auto whole = TSummaryRun{}.Run({FPlain}, {});
        TSummaryOptions options;
        options.From = whole[0].First + 3600.0;
        options.To = whole[0].First + 7200.0;
        // A template made as a user makes one: the first curve with one decimal.
        const QString templ = FDir.filePath(QStringLiteral("all.mse"));
        {
            const auto db = LoadRecording(FPlain);
            db->FinishLoad();
            db->Curve_FormatSet(0, QStringLiteral("0.0"));
            QVERIFY(db->Ini_FileSave(templ));
        }
        options.Template = templ;
        const auto rows = TSummaryRun{}.Run({FPlain}, options);
        QVERIFY(rows[0].First >= *options.From && rows[0].First < *options.From + 60.0);
        QVERIFY(rows[0].Last <= *options.To && rows[0].Last > *options.To - 60.0);
        QVERIFY(rows[0].Points == 60 || rows[0].Points == 61); // a point a minute
        QCOMPARE(rows[0].Format, QStringLiteral("0.0"));
        QCOMPARE(rows[1].Format, whole[1].Format);
        QVERIFY(rows[0].Violations <= whole[0].Violations);
    }

    // Cancelled, the summary stops before the next recording.
    void cancelStopsBeforeTheNext() {
        std::atomic<bool> cancel = false;
        TSummaryRun run;
        run.Cancel = &cancel;
        run.Progress = [&cancel](int done, int, const QString&) { cancel = done >= 1; };
        const auto rows = run.Run({FNoLimits, FPlain, FOdd}, {});
        for (const TSummaryRow& r : rows) QCOMPARE(r.File, FNoLimits);
    }

    // The CSV: the columns in the current language, the program's separators, one line per row.
    void csv_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("decimal");
        QTest::newRow("point") << 2 << u","_s << u"."_s;
        QTest::newRow("comma") << 1 << u";"_s << u","_s;
    }
    void csv() {
        QFETCH(int, mode);
        QFETCH(QString, list);
        QFETCH(QString, decimal);
        zeb::SetFormats(mode, 3, mode == 1 ? 1 : 0);
        const auto rows = TSummaryRun{}.Run({FNoLimits, FDir.filePath(QStringLiteral("missing.zeb"))}, {});
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(WriteSummaryCsv(buffer, rows));
        const QByteArray bytes = buffer.data();
        QVERIFY(bytes.startsWith("\xEF\xBB\xBF"));
        const QStringList lines = QString::fromUtf8(bytes.mid(3)).split(u"\r\n"_s, Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), int(rows.size()) + 1);
        QCOMPARE(lines[0], SummaryColumnTitles().join(list));
        const QStringList cells = lines[1].split(list);
        QCOMPARE(cells.size(), 18);
        QCOMPARE(cells[0], FNoLimits);
        QCOMPARE(cells[3], rows[0].Name);
        QCOMPARE(cells[7], QString::number(rows[0].Points));
        QVERIFY(cells[8].contains(decimal));
        QCOMPARE(QString(cells[8]).replace(decimal, u"."_s).toDouble(), rows[0].Min);
        QCOMPARE(cells[17], u"no limits"_s);
        QCOMPARE(lines.last().split(list).value(1), u"unreadable"_s);
        zeb::SetFormats(2);
    }
};

QTEST_MAIN(TstSummary)
#include "tst_summary.moc"
