// The text converter: its rows are those of the store's merged walk (also for stamps that
// differ by a hair, equal stamps across rounds and records out of time order), every
// settings code, and the program as a process.

#include "CompanionCli.h"
#include "config/Language.h"
#include "Cutter.h"
#include "data/Formats.h"
#include "RecordingBuilder.h"
#include "ToolHelpers.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <vector>

using namespace tooltest;
using namespace Qt::StringLiterals;
using B = TRecordingBuilder;

namespace {

constexpr quint32 kNo = 0xFFFFFFFFu, kGap = 0xFFFFFFFEu;

QByteArray Header3() {
    B b;
    b.Header().Block(3, B::Strs({"M0", "M1", "M2"})).Block(6, B::Strs({"A", "B"})).Block(7, B::Strs({"V", "", "g"}));
    return b.Plain();
}

// Records with missing values, gaps and runs of equal stamps; with shuffle, some records
// trade places so the file leaves time order.
QByteArray RandomRecording(quint32 seed, int records, bool shuffle) {
    QRandomGenerator rnd(seed);
    std::vector<QByteArray> recs;
    double seconds = 762566400.0;
    for (int i = 0; i < records; ++i) {
        if (rnd.bounded(4) != 0) seconds += rnd.bounded(1, 5) * 0.25; // else: the same stamp again
        std::vector<quint32> bits;
        for (int c = 0; c < 3; ++c) {
            const int k = rnd.bounded(10);
            bits.push_back(k < 3 ? kNo : k == 3 ? kGap : B::F(float(rnd.bounded(-1000, 1000)) / 7.0f));
        }
        recs.push_back(B::Double(seconds / 86400.0) + B::Bits(bits[0]) + B::Bits(bits[1]) + B::Bits(bits[2]));
    }
    if (shuffle)
        for (int i = 0; i < records / 50; ++i) std::swap(recs[size_t(rnd.bounded(records))], recs[size_t(rnd.bounded(records))]);
    QByteArray plain = Header3();
    QByteArray block;
    for (const QByteArray& r : recs) {
        if (block.size() + r.size() > 65535) {
            plain += B::Word(8) + B::Word(quint16(block.size())) + block;
            block.clear();
        }
        block += r;
    }
    plain += B::Word(8) + B::Word(quint16(block.size())) + block;
    return B::Compress(plain);
}

QString Bits(float v) { return QString::number(std::bit_cast<quint32>(v), 16); }

QStringList Lines(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return {};
    QByteArray all = f.readAll();
    if (!all.startsWith("\xEF\xBB\xBF")) return {u"no byte order mark"_s};
    QString text = QString::fromUtf8(all.mid(3));
    if (!text.endsWith(u"\r\n"_s)) return {u"no line end at the end"_s};
    text.chop(2);
    return text.split(u"\r\n"_s);
}

} // namespace

class TstZeb2Csv : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;
    QString FSmall, FSettings;

    QString Path(const QString& name) const { return FDir.filePath(name); }

    QStringList Convert(const QString& source, const TCsvFormat& format, const QString& target = u"out.csv"_s) {
        TCutRequest r;
        r.Source = source;
        r.Target = Path(target);
        r.Csv = true;
        r.Format = format;
        if (TCutter(r).Run() != TCutResult::Ok) return {u"failed"_s};
        return Lines(format.Target(r.Target));
    }

private Q_SLOTS:
    void initTestCase() {
        zeb::SetSystemLocaleOverride(QLocale::c());
        zeb::ApplyStartupLanguage(1, 0, 0);
        // Two records a second apart at 2024-03-01 12:34:56.789.
        const double day = 8826.0 + (12 * 3600 + 34 * 60 + 56.789) / 86400.0;
        B b;
        b.Header()
            .Block(3, B::Strs({"M0", "M1"}))
            .Block(6, B::Strs({"A", "B"}))
            .Block(7, B::Strs({"V", ""}))
            .Block(8, B::Record(day, {B::F(1.5f), kNo}) + B::Record(day + 1.0 / 86400.0, {kGap, B::F(-0.25f)}));
        FSmall = Path(u"small.zeb"_s);
        QVERIFY(b.Save(FSmall));
        FSettings = Path(u"settings.ini"_s);
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(FSettings));
        PutSetting(FSettings, u"Language"_s, 1);
    }

    void settingsCodes_data() {
        QTest::addColumn<QVariantMap>("codes");
        QTest::addColumn<bool>("german");
        QTest::addColumn<QStringList>("lines");
        // The three lines, split at '|'; %1 and %2 stand for the two rows' date and time.
        auto row = [](const char* name, QVariantMap codes, const QString& lines, bool german = false) {
            QString text = lines;
            text.replace(u"%1"_s, u"2024-03-01 12:34:56.789"_s).replace(u"%2"_s, u"2024-03-01 12:34:57.789"_s);
            QTest::newRow(name) << codes << german << text.split(u'|');
        };
        const QString plain = u"Time,A [V],B|%1,1.5,|%2,,-0.25"_s;
        row("defaults", {}, plain);
        row("German locale", {}, u"Time;A [V];B|2024-03-01 12:34:56,789;1,5;|2024-03-01 12:34:57,789;;-0,25"_s, true);
        row("German locale, decimal point", {{u"iDecimalSeparator"_s, 1}}, plain, true);
        row("list ;", {{u"iListSeparator"_s, 1}}, u"Time;A [V];B|%1;1.5;|%2;;-0.25"_s);
        row("list tab", {{u"iListSeparator"_s, 3}}, u"Time\tA [V]\tB|%1\t1.5\t|%2\t\t-0.25"_s);
        row("list blank quotes", {{u"iListSeparator"_s, 4}}, u"Time \"A [V]\" B|\"%1\" 1.5 |\"%2\"  -0.25"_s);
        row("list , and decimal , quote", {{u"iListSeparator"_s, 2}, {u"iDecimalSeparator"_s, 2}},
            u"Time,A [V],B|\"2024-03-01 12:34:56,789\",\"1,5\",|\"2024-03-01 12:34:57,789\",,\"-0,25\""_s);
        row("three decimals", {{u"iNumberFormat"_s, 3}}, u"Time,A [V],B|%1,1.500,|%2,,-0.250"_s);
        row("scientific", {{u"iNumberFormat"_s, 10}}, u"Time,A [V],B|%1,1.500000E+00,|%2,,-2.500000E-01"_s);
        row("number code out of range", {{u"iNumberFormat"_s, 11}}, plain);
        row("missing NaN", {{u"iNanFormat"_s, 1}}, u"Time,A [V],B|%1,1.5,NaN|%2,NaN,-0.25"_s);
        row("missing #N/A", {{u"iNanFormat"_s, 2}}, u"Time,A [V],B|%1,1.5,#N/A|%2,#N/A,-0.25"_s);
        row("missing -", {{u"iNanFormat"_s, 3}}, u"Time,A [V],B|%1,1.5,-|%2,-,-0.25"_s);
        row("seconds from the first row", {{u"iTimeColumn"_s, 1}}, u"Time [s],A [V],B|0.000000,1.5,|1.000000,,-0.25"_s);
        row("date and seconds", {{u"iTimeColumn"_s, 2}}, u"Time,Time [s],A [V],B|%1,0.000000,1.5,|%2,1.000000,,-0.25"_s);
        row("seconds since 2000", {{u"iTimeColumn"_s, 3}},
            u"Time [s],A [V],B|762611696.789000,1.5,|762611697.789000,,-0.25"_s);
        const char* dates[] = {"01/03/2024", "03/01/2024", "01.03.2024", "01-Mar-2024", "2024-Mar-01"};
        for (int i = 1; i <= 5; ++i)
            row(dates[i - 1], {{u"iDateFormat"_s, i}},
                u"Time,A [V],B|%3 12:34:56.789,1.5,|%3 12:34:57.789,,-0.25"_s.replace(u"%3"_s, QLatin1String(dates[i - 1])));
        row("date pattern", {{u"iDateFormat"_s, 6}, {u"sDateFormat"_s, u"yy/MM/dd"_s}},
            u"Time,A [V],B|24/03/01 12:34:56.789,1.5,|24/03/01 12:34:57.789,,-0.25"_s);
        row("time seconds", {{u"iTimeFormat"_s, 1}}, u"Time,A [V],B|2024-03-01 12:34:56,1.5,|2024-03-01 12:34:57,,-0.25"_s);
        row("time minutes", {{u"iTimeFormat"_s, 2}}, u"Time,A [V],B|2024-03-01 12:34,1.5,|2024-03-01 12:34,,-0.25"_s);
        row("time pattern", {{u"iTimeFormat"_s, 3}, {u"sTimeFormat"_s, u"HH'h'mm:ss"_s}},
            u"Time,A [V],B|2024-03-01 12h34:56,1.5,|2024-03-01 12h34:57,,-0.25"_s);
        // The suite's other notation: "m" the month in a date, "n" the minute in a time.
        row("date pattern, m for the month", {{u"iDateFormat"_s, 6}, {u"sDateFormat"_s, u"ddd d mmmm yyyy"_s}},
            u"Time,A [V],B|Fri 1 March 2024 12:34:56.789,1.5,|Fri 1 March 2024 12:34:57.789,,-0.25"_s);
        row("date pattern, quoted m", {{u"iDateFormat"_s, 6}, {u"sDateFormat"_s, u"dd/mm 'am'"_s}},
            u"Time,A [V],B|01/03 am 12:34:56.789,1.5,|01/03 am 12:34:57.789,,-0.25"_s);
        row("time pattern, n for the minute", {{u"iTimeFormat"_s, 3}, {u"sTimeFormat"_s, u"hh:nn:ss.zzz"_s}},
            u"Time,A [V],B|2024-03-01 12:34:56.789,1.5,|2024-03-01 12:34:57.789,,-0.25"_s);
        row("time pattern, AM/PM", {{u"iTimeFormat"_s, 3}, {u"sTimeFormat"_s, u"h:nn AM/PM"_s}},
            u"Time,A [V],B|2024-03-01 12:34 PM,1.5,|2024-03-01 12:34 PM,,-0.25"_s);
    }
    void settingsCodes() {
        QFETCH(QVariantMap, codes);
        QFETCH(bool, german);
        QFETCH(QStringList, lines);
        TZebSettings::TCsv s;
        s.iListSeparator = codes.value(u"iListSeparator"_s).toInt();
        s.iDecimalSeparator = codes.value(u"iDecimalSeparator"_s).toInt();
        s.iNumberFormat = codes.value(u"iNumberFormat"_s).toInt();
        s.iNanFormat = codes.value(u"iNanFormat"_s).toInt();
        s.iTimeColumn = codes.value(u"iTimeColumn"_s).toInt();
        s.iDateFormat = codes.value(u"iDateFormat"_s).toInt();
        s.sDateFormat = codes.value(u"sDateFormat"_s).toString();
        s.iTimeFormat = codes.value(u"iTimeFormat"_s).toInt();
        s.sTimeFormat = codes.value(u"sTimeFormat"_s).toString();
        const QLocale locale = german ? QLocale(QLocale::German, QLocale::Germany) : QLocale::c();
        QCOMPARE(Convert(FSmall, TCsvFormat::FromSettings(s, locale)), lines);
    }

    void fileExtension_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("expected");
        QTest::newRow("csv") << 0 << QString() << u"/d/out"_s << u"/d/out.csv"_s;
        QTest::newRow("txt") << 1 << QString() << u"/d/out"_s << u"/d/out.txt"_s;
        QTest::newRow("own") << 2 << u"dat"_s << u"/d/out"_s << u"/d/out.dat"_s;
        QTest::newRow("own with dot") << 2 << u".tsv"_s << u"/d/out"_s << u"/d/out.tsv"_s;
        QTest::newRow("own empty") << 2 << QString() << u"/d/out"_s << u"/d/out.csv"_s;
        QTest::newRow("target has one") << 1 << QString() << u"/d/out.csv"_s << u"/d/out.csv"_s;
        QTest::newRow("dot in the folder") << 1 << QString() << u"/d.x/out"_s << u"/d.x/out.txt"_s;
        QTest::newRow("hidden name") << 0 << QString() << u"/d/.out"_s << u"/d/.out.csv"_s;
    }
    void fileExtension() {
        QFETCH(int, code);
        QFETCH(QString, text);
        QFETCH(QString, target);
        QFETCH(QString, expected);
        TZebSettings::TCsv s;
        s.iFileExt = code;
        s.sFileExt = text;
        QCOMPARE(TCsvFormat::FromSettings(s, QLocale::c()).Target(target), expected);
    }

    // Row for row the store's merged walk: its time, and per curve the value or nothing.
    void rowsOfTheMergedWalk_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("rows"); // -1: not known beforehand
        B hair;
        hair.Header()
            .Block(3, B::Strs({"M0", "M1"}))
            .Block(8, B::Record(10.0 / 86400.0, {B::F(1), kNo}) + B::Record(10.0000001 / 86400.0, {kNo, B::F(2)}));
        QTest::newRow("10.0 s and 10.0000001 s") << hair.Compressed() << 2;
        QTest::newRow("in time order, rounds") << RandomRecording(1, 30000, false) << -1;
        QTest::newRow("out of time order") << RandomRecording(2, 30000, true) << -1;
    }
    void rowsOfTheMergedWalk() {
        QFETCH(QByteArray, file);
        QFETCH(int, rows);
        const QString source = Path(u"walk.zeb"_s);
        QVERIFY(B::SaveBytes(source, file));
        TCsvFormat f;
        f.TimeColumn = 3;
        const QStringList lines = Convert(source, f);
        const auto db = Load(source);
        // The rows by a plain merge of the shown curves in file order: each row takes the
        // smallest time the curves are at, and every curve standing exactly there moves on (a
        // gap marker moves on with an empty cell).
        std::vector<int> shown;
        for (int c = 0; c < db->Curve_Count(); ++c)
            if (db->Curve_IsAvailable(c)) shown.push_back(c);
        std::vector<qint64> at(shown.size(), 0);
        QStringList expected;
        for (;;) {
            double time = 0.0;
            bool any = false;
            for (size_t k = 0; k < shown.size(); ++k) {
                const TCurveData& d = db->Data(shown[k]);
                if (at[k] < d.Count() && (!any || d.Time(at[k]) < time)) time = d.Time(at[k]), any = true;
            }
            if (!any) break;
            QStringList cells(db->Curve_Count());
            for (size_t k = 0; k < shown.size(); ++k) {
                const TCurveData& d = db->Data(shown[k]);
                if (at[k] >= d.Count() || d.Time(at[k]) != time) continue;
                if (!d.IsGap(at[k])) cells[shown[k]] = Bits(float(d.Value(at[k])));
                ++at[k];
            }
            expected << QString::number(time, 'f', 6) + u","_s + cells.join(u',');
        }
        QStringList actual = lines.mid(1);
        for (QString& line : actual) {
            QStringList cells = line.split(u',');
            for (int c = 1; c < cells.size(); ++c)
                if (!cells[c].isEmpty()) cells[c] = Bits(cells[c].toFloat());
            line = cells.join(u',');
        }
        if (rows >= 0) QCOMPARE(actual.size(), rows);
        QVERIFY(actual.size() > 0);
        QCOMPARE(actual, expected);
    }

    // Records out of order, sorted through runs on disk, make the same text as the same records
    // fed in stable time order through one formatter: in memory, through one merge, through
    // merges in groups, with records of different lengths (columns that start later), and
    // with rounds made into text by several threads.
    void sortedThroughRuns_data() {
        QTest::addColumn<int>("records");
        QTest::addColumn<qint64>("runBytes");
        QTest::addColumn<int>("mergeRuns");
        QTest::addColumn<bool>("shortRecords");
        QTest::addColumn<int>("formatters");
        QTest::addColumn<int>("minRuns");
        QTest::newRow("in memory") << 3000 << TCsvTable::kRunBytes << 64 << false << 1 << 0;
        QTest::newRow("runs, one merge") << 3000 << qint64(4096) << 64 << false << 1 << 20;
        QTest::newRow("runs merged in groups") << 3000 << qint64(1024) << 3 << false << 1 << 50;
        QTest::newRow("a record per run") << 3000 << qint64(1) << 2 << false << 1 << 3000;
        QTest::newRow("records of different lengths") << 3000 << qint64(700) << 4 << true << 1 << 100;
        QTest::newRow("many rounds, 2 formatters") << 60000 << qint64(65536) << 8 << true << 2 << 20;
        QTest::newRow("many rounds, 5 formatters") << 60000 << TCsvTable::kRunBytes << 64 << false << 5 << 0;
    }
    void sortedThroughRuns() {
        QFETCH(int, records);
        QFETCH(qint64, runBytes);
        QFETCH(int, mergeRuns);
        QFETCH(bool, shortRecords);
        QFETCH(int, formatters);
        QFETCH(int, minRuns);
        struct TRec {
            double t;
            std::vector<quint32> bits;
        };
        QRandomGenerator rnd(7);
        std::vector<TRec> recs;
        for (int i = 0; i < records; ++i) {
            // Few distinct stamps, so equal stamps meet across runs.
            TRec r{100.0 + rnd.bounded(records / 8) * 0.5, {}};
            const int count = shortRecords ? rnd.bounded(1, 4) : 3;
            for (int c = 0; c < count; ++c) {
                const int k = rnd.bounded(8);
                r.bits.push_back(k == 0 ? kNo : k == 1 ? kGap : B::F(float(i * 3 + c) / 8.0f));
            }
            recs.push_back(std::move(r));
        }
        auto table = [&](const std::vector<TRec>& in, bool sorted, int threads, int* runs) {
            QBuffer out;
            out.open(QIODevice::WriteOnly);
            TCsvFormat f;
            f.TimeColumn = 2;
            TCsvTable t(f, out, sorted, FDir.path());
            t.SetSortLimits(runBytes, mergeRuns);
            t.SetFormatters(threads);
            for (const char* m : {"M0", "M1", "M2"}) t.AddColumn(QLatin1String(m));
            for (const TRec& r : in) t.AddRecord(r.t, r.bits.data(), int(r.bits.size()));
            if (!t.Finish() || t.NeedsWhole()) return QByteArray("failed");
            if (runs) *runs = t.SpilledRuns();
            return out.data();
        };
        std::vector<TRec> ordered = recs;
        std::stable_sort(ordered.begin(), ordered.end(), [](const TRec& a, const TRec& b) { return a.t < b.t; });
        int runs = -1;
        const QByteArray expected = table(ordered, false, 1, nullptr);
        QVERIFY(expected.count('\n') > records / 8);
        QCOMPARE(table(recs, true, formatters, &runs), expected);
        QVERIFY2(runs >= minRuns && (minRuns > 0 || runs == 0), qPrintable(QString::number(runs)));
        QVERIFY2(QDir(FDir.path()).entryList({u".zeb2csv-*"_s}, QDir::Files | QDir::Hidden).isEmpty(), "sort file left");
    }

    // A sort file or a target that cannot be written fails the table instead of losing rows.
    void writeFailures() {
        const quint32 bits = B::F(1.0f);
        {
            QBuffer out;
            out.open(QIODevice::WriteOnly);
            TCsvTable t(TCsvFormat(), out, true, Path(u"no/such/folder"_s));
            t.SetSortLimits(64, 4);
            t.AddColumn(u"M0"_s);
            for (int i = 0; i < 100; ++i) t.AddRecord(100.0 - i, &bits, 1);
            QVERIFY(!t.Finish());
            QVERIFY(t.Failed());
        }
        {
            QFile full(u"/dev/full"_s);
            if (!full.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) QSKIP("no /dev/full here");
            TCsvTable t(TCsvFormat(), full, false);
            t.AddColumn(u"M0"_s);
            for (int i = 0; i < 5 * TCsvTable::kRoundRecords; ++i) t.AddRecord(i, &bits, 1);
            QVERIFY(!t.Finish());
            QVERIFY(t.Failed());
        }
    }

    void asAProgram() {
        PutSetting(FSettings, u"zeb2csv.exe/iListSeparator"_s, 1);
        PutSetting(FSettings, u"zeb2csv.exe/iNanFormat"_s, 2);
        PutSetting(FSettings, u"zeb2csv.exe/iFileExt"_s, 1);
        TRun run = RunProgram(QStringLiteral(ZEB2CSV), {FSmall, Path(u"prog"_s)});
        QCOMPARE(run.code, 0);
        QVERIFY(run.err.isEmpty());
        QCOMPARE(Lines(Path(u"prog.txt"_s)).value(1), u"2024-03-01 12:34:56.789;1.5;#N/A"_s);

        run = RunProgram(QStringLiteral(ZEB2CSV), {u"--help"_s});
        QCOMPARE(run.code, 0);
        for (const char* key : {"iListSeparator", "iDecimalSeparator", "iNumberFormat", "iNanFormat", "iTimeColumn",
                                "iDateFormat", "sDateFormat", "iTimeFormat", "sTimeFormat", "iFileExt", "sFileExt"})
            QVERIFY2(run.out.contains(QLatin1String(key)), key);

        run = RunProgram(QStringLiteral(ZEB2CSV), {FSmall});
        QCOMPARE(run.code, 1);
        QCOMPARE(run.err, u"Wrong number of arguments (zeb2csv --help shows the call)\n"_s);
        run = RunProgram(QStringLiteral(ZEB2CSV), {FSmall, FSmall});
        QCOMPARE(run.code, 3);
    }
};

QTEST_GUILESS_MAIN(TstZeb2Csv)
#include "tst_zeb2csv.moc"
