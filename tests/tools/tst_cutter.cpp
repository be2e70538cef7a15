// The cutter: a cut loads to exactly the window of the source for the chosen channels, with
// their descriptions; records without any chosen value are left out; damaged sources, failed
// writes and every bad argument end with their message and exit code.

#include "CompanionCli.h"
#include "config/Language.h"
#include "Cutter.h"
#include "data/DataFile.h"
#include "Files.h"
#include "MakeRecording.h"
#include "RecordingBuilder.h"
#include "ToolHelpers.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace tooltest;
using namespace Qt::StringLiterals;
using B = TRecordingBuilder;

namespace {

constexpr quint32 kNo = 0xFFFFFFFFu, kGap = 0xFFFFFFFEu;

QByteArray Rec(double seconds, quint32 a, quint32 b, quint32 c) { return B::Record(seconds / 86400.0, {a, b, c}); }

// Three channels over two data blocks: missing values, a record with none, gaps in A and B,
// two records with one stamp.
QByteArray Fixture(bool voidLimits) {
    QByteArray limits;
    for (int i = 0; i < (voidLimits ? 4 : 3); ++i)
        limits += B::Word(quint16(i + 1)) + B::Word(1) + B::Single(float(i) + 0.5f) + B::Single(float(i) + 9.5f);
    B b;
    b.Header()
        .Block(1, B::Str("zeblog_reader.exe"))
        .Block(2, B::Double(8826.25))
        .Block(3, B::Strs({"M0", "M1", "M2"}))
        .Block(6, B::Strs({"A", "B", "C"}))
        .Block(7, B::Strs({"V", "bar", "\xB0"
                                        "C"}))
        .Block(11, limits)
        .Block(13, B::Strs({"L0", "L1", "L2"}))
        .Block(9, B::Str("Cold store"))
        .Block(14, "x")
        .Block(5, "unknown kind")
        .Block(8, Rec(100, B::F(1), B::F(10), kNo) + Rec(101, B::F(2), kGap, kNo) + Rec(102, kNo, kNo, kNo) +
                      Rec(103, B::F(3), kNo, B::F(5)))
        .Block(8, Rec(103, B::F(4), kNo, kNo) + Rec(104, kNo, B::F(11), B::F(6)) + Rec(105, kGap, B::F(12), kNo) +
                      Rec(106, B::F(7), B::F(13), B::F(7)));
    return b.Compressed();
}

// Data records in a file, as the walk accepts them.
class TRecordCounter : public TRecordingReceiver {
public:
    qint64 records = 0;
    bool readerMarker = false;
    bool WantsPoints() const override { return false; }
    void OnRecords(std::span<const char> r, int size) override { records += qint64(r.size()) / size; }
    void SetReaderMarker() override { readerMarker = true; }
};

TRecordCounter Walk(const QString& path) {
    auto f = TDataFile::CreateLoad(path);
    TRecordCounter c;
    TRecordingWalk walk(*f, c);
    walk.Run();
    return c;
}

QList<int> Ints(std::initializer_list<int> v) { return QList<int>(v); }

} // namespace

class TstCutter : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;
    QString FSource, FVoid, FGen, FSettings;
    double FGenFirst = 0, FGenLast = 0;

    QString Path(const QString& name) const { return FDir.filePath(name); }

    TCutResult Cut(const QString& source, const QString& target, double from, double to, const QList<int>& ch,
                   bool csv = false) {
        TCutRequest r;
        r.Source = source;
        r.Target = target;
        r.Start = from;
        r.End = to;
        r.Channels.assign(ch.begin(), ch.end());
        r.Csv = csv;
        return TCutter(r).Run();
    }

    // The cut holds, curve by curve, exactly the source's points inside the window.
    void CompareWindow(const QString& source, const QString& cut, double from, double to, const QList<int>& ch) {
        const auto src = Load(source);
        const auto dst = Load(cut);
        QCOMPARE(dst->Curve_Count(), ch.size());
        QList<int> sorted = ch;
        std::sort(sorted.begin(), sorted.end());
        for (int j = 0; j < sorted.size(); ++j)
            QCOMPARE(Points(*dst, j, -1e300, 1e300), Points(*src, sorted[j], from, to));
    }

private Q_SLOTS:
    void initTestCase() {
        FSource = Path(QStringLiteral("src.zeb"));
        FVoid = Path(QStringLiteral("void.zeb"));
        zeb::ApplyStartupLanguage(1, 0, 0);
        QVERIFY(B::SaveBytes(FSource, Fixture(false)));
        QVERIFY(B::SaveBytes(FVoid, Fixture(true)));
        FGen = Path(QStringLiteral("gen.zeb"));
        QVERIFY(MakeRecording(FGen, {.channels = 3, .records = 30000, .missingRate = 0.2, .gapRate = 0.03}));
        Load(FGen)->GetXMinXMax(FGenFirst, FGenLast, false);
        FSettings = Path(QStringLiteral("settings.ini"));
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(FSettings));
        PutSetting(FSettings, QStringLiteral("Language"), 1);
    }

    void cutEqualsTheWindow_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<QList<int>>("channels");
        QTest::addColumn<qint64>("records"); // data records in the cut; -1: not counted
        auto t = [](double v) { return v / 86400.0 * 86400.0; }; // a stamp as the loader computes it
        QTest::newRow("all") << FSource << t(100) << t(106) << Ints({0, 1, 2}) << qint64(7);
        QTest::newRow("first stamp only") << FSource << t(100) << t(100) << Ints({0, 1, 2}) << qint64(1);
        QTest::newRow("last stamp only") << FSource << t(106) << t(106) << Ints({0, 1, 2}) << qint64(1);
        QTest::newRow("equal stamps at the edge") << FSource << t(103) << t(103) << Ints({0, 2}) << qint64(2);
        QTest::newRow("inside B's gap") << FSource << 101.5 << 103.5 << Ints({1}) << qint64(0);
        QTest::newRow("starting in B's gap") << FSource << 101.5 << 200.0 << Ints({1}) << qint64(3);
        QTest::newRow("one channel, some records without it") << FSource << 0.0 << 200.0 << Ints({2}) << qint64(3);
        QTest::newRow("list out of order") << FSource << 0.0 << 200.0 << Ints({2, 0}) << qint64(7);
        QTest::newRow("between stamps") << FSource << 103.2 << 103.8 << Ints({0, 1, 2}) << qint64(0);
        // Many blocks, missing values and gaps.
        const double span = FGenLast - FGenFirst;
        QTest::newRow("long: middle, one channel") << FGen << FGenFirst + 0.3 * span << FGenFirst + 0.4 * span
                                                   << Ints({1}) << qint64(-1);
        QTest::newRow("long: first half, all") << FGen << FGenFirst << FGenFirst + 0.5 * span << Ints({0, 1, 2})
                                               << qint64(-1);
        QTest::newRow("long: last tenth, two") << FGen << FGenFirst + 0.9 * span << FGenLast << Ints({0, 2})
                                               << qint64(-1);
    }
    void cutEqualsTheWindow() {
        QFETCH(QString, source);
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(QList<int>, channels);
        QFETCH(qint64, records);
        const QString cut = Path(QStringLiteral("cut.zeb"));
        QCOMPARE(Cut(source, cut, from, to, channels), TCutResult::Ok);
        CompareWindow(source, cut, from, to, channels);
        if (records >= 0) QCOMPARE(Walk(cut).records, records);
    }

    void descriptionsOfTheChosenChannels_data() {
        QTest::addColumn<bool>("voidLimits");
        QTest::newRow("limits") << false;
        QTest::newRow("limits void: one record too many") << true;
    }
    void descriptionsOfTheChosenChannels() {
        QFETCH(bool, voidLimits);
        const QString cut = Path(QStringLiteral("desc.zeb"));
        QCOMPARE(Cut(voidLimits ? FVoid : FSource, cut, 0, 1e9, {0, 2}), TCutResult::Ok);
        const auto src = Load(voidLimits ? FVoid : FSource);
        const auto dst = Load(cut);
        QCOMPARE(dst->Creator(), src->Creator());
        QCOMPARE(dst->StartTime(), src->StartTime());
        QCOMPARE(dst->ZebName(), src->ZebName());
        QVERIFY(Walk(cut).readerMarker);
        const auto linesOf = [](const TDataBase& db, QList<int> curves) {
            return std::count_if(db.LimitLines().begin(), db.LimitLines().end(),
                                 [&](const TLimitLine& l) { return curves.contains(l.Curve); });
        };
        QCOMPARE(linesOf(*dst, {0, 1}), linesOf(*src, {0, 2}));
        QCOMPARE(linesOf(*dst, {0, 1}) > 0, !voidLimits);
        for (int j = 0; j < 2; ++j) {
            const TMseSettingsCurve& a = src->Settings().Curves[j == 0 ? 0 : 2];
            const TMseSettingsCurve& b = dst->Settings().Curves[j];
            QCOMPARE(b.sModulName.Value, a.sModulName.Value);
            QCOMPARE(b.sChannelName.Value, a.sChannelName.Value);
            QCOMPARE(b.sUnit, a.sUnit);
            QCOMPARE(b.sLoggername, a.sLoggername);
            QCOMPARE(b.LAlarm, a.LAlarm);
            QCOMPARE(b.LRecord, a.LRecord);
            QCOMPARE(b.LValue1, a.LValue1);
            QCOMPARE(b.LValue2, a.LValue2);
        }
        QCOMPARE(dst->Settings().Curves[1].sUnit, QStringLiteral("°C"));
    }

    // A cut to text is the converter's text of the cut recording.
    void csvIsTheTextOfTheCut() {
        const double from = FGenFirst + 0.2 * (FGenLast - FGenFirst), to = FGenFirst + 0.6 * (FGenLast - FGenFirst);
        const QString rec = Path(QStringLiteral("w.zeb")), direct = Path(QStringLiteral("direct.csv"));
        QCOMPARE(Cut(FGen, direct, from, to, {0, 2}, true), TCutResult::Ok);
        QCOMPARE(Cut(FGen, rec, from, to, {0, 2}), TCutResult::Ok);
        const QString viaCut = Path(QStringLiteral("via.csv"));
        QCOMPARE(Cut(rec, viaCut, -1e300, 1e300, {}, true), TCutResult::Ok);
        QFile a(direct), b(viaCut);
        QVERIFY(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
        const QByteArray text = a.readAll();
        QVERIFY(text.count('\n') > 1000);
        QCOMPARE(text, b.readAll());
    }

    void damagedSourceIsCutAsFarAsItReads() {
        const QByteArray whole = ReadBytes(FGen);
        const QString broken = Path(QStringLiteral("broken.zeb"));
        QVERIFY(B::SaveBytes(broken, whole.left(whole.size() * 2 / 3)));
        const QString cut = Path(QStringLiteral("brokencut.zeb"));
        TCutRequest r;
        r.Source = broken;
        r.Target = cut;
        TCutter cutter(r);
        QCOMPARE(cutter.Run(), TCutResult::Damaged);
        QVERIFY(cutter.Message().contains(QStringLiteral("damaged")));
        QVERIFY(Load(cut)->ValueCount() > 0);
        CompareWindow(broken, cut, -1e300, 1e300, {0, 1, 2});
    }

    // A failed cut leaves an existing target as it was and no temporary file behind.
    void failureKeepsTheTarget_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QList<int>>("channels");
        QTest::addColumn<int>("result");
        QTest::newRow("no recording") << QStringLiteral("junk") << Ints({0}) << int(TCutResult::CannotRead);
        QTest::newRow("no such channel") << QStringLiteral("src.zeb") << Ints({0, 3}) << int(TCutResult::BadArgument);
    }
    void failureKeepsTheTarget() {
        QFETCH(QString, source);
        QFETCH(QList<int>, channels);
        QFETCH(int, result);
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("precious.zeb"));
        QVERIFY(B::SaveBytes(target, "user's file"));
        QVERIFY(B::SaveBytes(Path(QStringLiteral("junk")), "not a recording at all"));
        QCOMPARE(int(Cut(Path(source), target, 0, 1e9, channels)), result);
        QCOMPARE(ReadBytes(target), QByteArray("user's file"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("precious.zeb")});
    }

    // Every exit code through the program itself; a message is one line on standard error.
    void commandLine_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message"); // empty: none
        const QString out = Path(u"cl.zeb"_s), broken = Path(u"broken2.zeb"_s);
        const QByteArray whole = ReadBytes(FGen);
        QVERIFY(B::SaveBytes(broken, whole.left(whole.size() / 2)));
        QDir(FDir.path()).mkpath(u"x"_s);
        auto row = [&](const char* name, QString src, QString dst, QString words, int code, QString message) {
            QTest::newRow(name) << QStringList{src, dst} + words.split(u'|') << code << message;
        };
        auto native = [](const QString& p) { return QDir::toNativeSeparators(p); };
        const QString help = u" (zeb_cutter --help shows the call)"_s;
        row("done", FSource, out, u"100.5|104|2|0,2"_s, 0, {});
        // Written all the same, but said: a window beside the recording is seldom meant.
        row("window before the recording", FSource, out, u"0|1|1|0"_s, 0,
            u"The time window holds no values of the chosen channels"_s);
        row("window before the recording, text", FSource, out, u"0|1|1|0|csv"_s, 0,
            u"The time window holds no values of the chosen channels"_s);
        row("too few", FSource, out, u"0|1|1"_s, 1, u"Wrong number of arguments"_s + help);
        row("comma as decimal point", FSource, out, u"1,5|9|1|0"_s, 1, u"Invalid argument \"1,5\""_s + help);
        row("end not a number", FSource, out, u"0|nan|1|0"_s, 1, u"Invalid argument \"nan\""_s + help);
        row("start after end", FSource, out, u"9|1.5|1|0"_s, 1, u"The start 9 lies after the end 1.5"_s);
        row("no channel", FSource, out, u"0|9|0|"_s, 1, u"Invalid argument \"0\""_s + help);
        row("count differs", FSource, out, u"0|9|3|0,1"_s, 1, u"N is 3, but the list holds 2 channels"_s);
        row("channel twice", FSource, out, u"0|9|2|1,1"_s, 1, u"Invalid argument \"1,1\""_s + help);
        row("blank in list", FSource, out, u"0|9|2|0, 1"_s, 1, u"Invalid argument \"0, 1\""_s + help);
        row("last word", FSource, out, u"0|9|1|0|txt"_s, 1, u"Invalid argument \"txt\""_s + help);
        row("unknown channel", FSource, out, u"0|999|1|7"_s, 1, u"The recording has no channel 7"_s);
        row("missing source", Path(u"none.zeb"_s), out, u"0|9|1|0"_s, 2,
            u"Cannot read \""_s + native(Path(u"none.zeb"_s)) + u"\""_s);
        row("not a recording", FSettings, out, u"0|9|1|0"_s, 2, u"\""_s + native(FSettings) + u"\" is not a recording"_s);
        const QString dotted = Path(u"x/../src.zeb"_s), nowhere = Path(u"no/such/folder/c.zeb"_s);
        row("target is the source", FSource, dotted, u"0|9|1|0"_s, 3,
            u"The target \""_s + native(dotted) + u"\" is the source itself"_s);
        row("target folder missing", FSource, nowhere, u"0|9|1|0"_s, 4, u"Cannot write \""_s + native(nowhere) + u"\""_s);
        row("damaged source", broken, out, u"0|1e12|1|1"_s, 5,
            u"\""_s + native(broken) + u"\" is damaged: what could be read up to the damage was written to \""_s +
                native(out) + u"\""_s);
    }
    void commandLine() {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        QFETCH(QString, message);
        const TRun run = RunProgram(QStringLiteral(ZEB_CUTTER), args);
        QCOMPARE(run.code, code);
        QCOMPARE(run.err, message.isEmpty() ? QString() : message + QLatin1Char('\n'));
        QVERIFY(run.out.isEmpty());
        const bool empty = message.startsWith(u"The time window"_s);
        if (code == 5 || (code == 0 && !empty)) QVERIFY(Load(args[1])->ValueCount() > 0);
        if (empty && args.size() == 6) QCOMPARE(Load(args[1])->ValueCount(), qint64(0));
    }

    void helpVersionAndLanguage() {
        TRun run = RunProgram(QStringLiteral(ZEB_CUTTER), {u"--help"_s});
        QCOMPARE(run.code, 0);
        QVERIFY(run.out.startsWith(u"Usage: zeb_cutter \"SOURCE\" \"TARGET\" \"START\" \"END\" \"N\" \"LIST\" [\"csv\" | \"mat\" | \"h5\"]"_s));
        QVERIFY(run.out.contains(u"5 the source is damaged"_s));
        run = RunProgram(QStringLiteral(ZEB_CUTTER), {u"--version"_s});
        QCOMPARE(run.code, 0);
        QVERIFY(run.out.startsWith(u"zeb_cutter "_s));

        PutSetting(FSettings, QStringLiteral("Language"), 0);
        run = RunProgram(QStringLiteral(ZEB_CUTTER), {u"a"_s});
        PutSetting(FSettings, QStringLiteral("Language"), 1);
        QCOMPARE(run.code, 1);
        QCOMPARE(run.err, u"Falsche Anzahl von Argumenten (zeb_cutter --help zeigt den Aufruf)\n"_s);
    }
};

QTEST_GUILESS_MAIN(TstCutter)
#include "tst_cutter.moc"
