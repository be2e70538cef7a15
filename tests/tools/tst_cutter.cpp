// The cutter: a cut loads to exactly the window of the source for the chosen channels, with
// their descriptions; records without any chosen value are left out; damaged sources, failed
// writes and every bad argument end with their message and exit code.

#include "CompanionCli.h"
#include "Cutter.h"
#include "DataFile.h"
#include "Language.h"
#include "RecordingBuilder.h"
#include "RecordingGenerator.h"
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
        TGenOptions o;
        o.channels = 3;
        o.records = 30000;
        o.missingRate = 0.2;
        o.gapRate = 0.03;
        FGen = Path(QStringLiteral("gen.zeb"));
        QVERIFY(WriteRecording(FGen, o));
        FSettings = Path(QStringLiteral("settings.ini"));
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(FSettings));
        PutSetting(FSettings, QStringLiteral("Language"), 1);
    }

    void cutEqualsTheWindow_data() {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<QList<int>>("channels");
        QTest::addColumn<qint64>("records"); // data records in the cut
        auto t = [](double v) { return v / 86400.0 * 86400.0; }; // a stamp as the loader computes it
        QTest::newRow("all") << t(100) << t(106) << Ints({0, 1, 2}) << qint64(7);
        QTest::newRow("first stamp only") << t(100) << t(100) << Ints({0, 1, 2}) << qint64(1);
        QTest::newRow("last stamp only") << t(106) << t(106) << Ints({0, 1, 2}) << qint64(1);
        QTest::newRow("equal stamps at the edge") << t(103) << t(103) << Ints({0, 2}) << qint64(2);
        QTest::newRow("inside B's gap") << 101.5 << 103.5 << Ints({1}) << qint64(0);
        QTest::newRow("starting in B's gap") << 101.5 << 200.0 << Ints({1}) << qint64(3);
        QTest::newRow("one channel, some records without it") << 0.0 << 200.0 << Ints({2}) << qint64(3);
        QTest::newRow("list out of order") << 0.0 << 200.0 << Ints({2, 0}) << qint64(7);
        QTest::newRow("between stamps") << 103.2 << 103.8 << Ints({0, 1, 2}) << qint64(0);
    }
    void cutEqualsTheWindow() {
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(QList<int>, channels);
        QFETCH(qint64, records);
        const QString cut = Path(QStringLiteral("cut.zeb"));
        QCOMPARE(Cut(FSource, cut, from, to, channels), TCutResult::Ok);
        CompareWindow(FSource, cut, from, to, channels);
        QCOMPARE(Walk(cut).records, records);
    }

    void largerRecordingWindows_data() {
        QTest::addColumn<double>("fromShare");
        QTest::addColumn<double>("toShare");
        QTest::addColumn<QList<int>>("channels");
        QTest::newRow("middle, one channel") << 0.3 << 0.4 << Ints({1});
        QTest::newRow("start to middle, all") << 0.0 << 0.5 << Ints({0, 1, 2});
        QTest::newRow("last tenth, two") << 0.9 << 1.0 << Ints({0, 2});
    }
    void largerRecordingWindows() {
        QFETCH(double, fromShare);
        QFETCH(double, toShare);
        QFETCH(QList<int>, channels);
        const auto src = Load(FGen);
        double first = 0, last = 0;
        src->GetXMinXMax(first, last, false);
        const double from = first + fromShare * (last - first), to = first + toShare * (last - first);
        const QString cut = Path(QStringLiteral("gencut.zeb"));
        QCOMPARE(Cut(FGen, cut, from, to, channels), TCutResult::Ok);
        CompareWindow(FGen, cut, from, to, channels);
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
        const auto src = Load(FGen);
        double first = 0, last = 0;
        src->GetXMinXMax(first, last, false);
        const double from = first + 0.2 * (last - first), to = first + 0.6 * (last - first);
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
        QFile f(FGen);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString broken = Path(QStringLiteral("broken.zeb"));
        QVERIFY(B::SaveBytes(broken, f.read(f.size() * 2 / 3)));
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
        QFile f(target);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("user's file"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("precious.zeb")});
    }

    void commandLine_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        const QString src = FSource, out = Path(QStringLiteral("cl.zeb"));
        const QString dotted = Path(QStringLiteral("x/../src.zeb"));
        QDir(FDir.path()).mkpath(QStringLiteral("x"));
        QTest::newRow("too few") << QStringList{src, out, u"0"_s, u"1"_s, u"1"_s} << 1
                                 << u"Wrong number of arguments (zeb_cutter --help shows the call)"_s;
        QTest::newRow("comma as decimal point") << QStringList{src, out, u"1,5"_s, u"9"_s, u"1"_s, u"0"_s} << 1
                                                << u"Invalid argument \"1,5\" (zeb_cutter --help shows the call)"_s;
        QTest::newRow("end not a number") << QStringList{src, out, u"0"_s, u"nan"_s, u"1"_s, u"0"_s} << 1
                                          << u"Invalid argument \"nan\" (zeb_cutter --help shows the call)"_s;
        QTest::newRow("start after end") << QStringList{src, out, u"9"_s, u"1.5"_s, u"1"_s, u"0"_s} << 1
                                         << u"The start 9 lies after the end 1.5"_s;
        QTest::newRow("no channel") << QStringList{src, out, u"0"_s, u"9"_s, u"0"_s, u""_s} << 1
                                    << u"Invalid argument \"0\" (zeb_cutter --help shows the call)"_s;
        QTest::newRow("count differs") << QStringList{src, out, u"0"_s, u"9"_s, u"3"_s, u"0,1"_s} << 1
                                       << u"N is 3, but the list holds 2 channels"_s;
        QTest::newRow("channel twice") << QStringList{src, out, u"0"_s, u"9"_s, u"2"_s, u"1,1"_s} << 1
                                       << u"Invalid argument \"1,1\" (zeb_cutter --help shows the call)"_s;
        QTest::newRow("blank in list") << QStringList{src, out, u"0"_s, u"9"_s, u"2"_s, u"0, 1"_s} << 1
                                       << u"Invalid argument \"0, 1\" (zeb_cutter --help shows the call)"_s;
        QTest::newRow("last word") << QStringList{src, out, u"0"_s, u"9"_s, u"1"_s, u"0"_s, u"txt"_s} << 1
                                   << u"Invalid argument \"txt\" (zeb_cutter --help shows the call)"_s;
        QTest::newRow("unknown channel") << QStringList{src, out, u"0"_s, u"999"_s, u"1"_s, u"7"_s} << 1
                                         << u"The recording has no channel 7"_s;
        QTest::newRow("missing source") << QStringList{Path(u"none.zeb"_s), out, u"0"_s, u"9"_s, u"1"_s, u"0"_s}
                                        << 2 << u"Cannot read \""_s + QDir::toNativeSeparators(Path(u"none.zeb"_s)) + u"\""_s;
        QTest::newRow("not a recording") << QStringList{Path(u"settings.ini"_s), out, u"0"_s, u"9"_s, u"1"_s, u"0"_s}
                                         << 2 << u"\""_s + QDir::toNativeSeparators(FSettings) + u"\" is not a recording"_s;
        QTest::newRow("target is the source") << QStringList{src, dotted, u"0"_s, u"9"_s, u"1"_s, u"0"_s} << 3
                                              << u"The target \""_s + QDir::toNativeSeparators(dotted) + u"\" is the source itself"_s;
        const QString nowhere = Path(u"no/such/folder/c.zeb"_s);
        QTest::newRow("target folder missing") << QStringList{src, nowhere, u"0"_s, u"9"_s, u"1"_s, u"0"_s} << 4
                                               << u"Cannot write \""_s + QDir::toNativeSeparators(nowhere) + u"\""_s;
    }
    void commandLine() {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        QFETCH(QString, message);
        const TRun run = RunProgram(QStringLiteral(ZEB_CUTTER), args);
        QCOMPARE(run.code, code);
        QCOMPARE(run.err, message + QLatin1Char('\n'));
        QVERIFY(run.out.isEmpty());
    }

    void commandLineSuccessAndDamage() {
        const QString out = Path(QStringLiteral("ok.zeb"));
        TRun run = RunProgram(QStringLiteral(ZEB_CUTTER), {FSource, out, u"100.5"_s, u"104"_s, u"2"_s, u"0,2"_s});
        QCOMPARE(run.code, 0);
        QVERIFY(run.err.isEmpty());
        CompareWindow(FSource, out, 100.5, 104, {0, 2});

        QFile f(FGen);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString broken = Path(QStringLiteral("broken2.zeb"));
        QVERIFY(B::SaveBytes(broken, f.read(f.size() / 2)));
        run = RunProgram(QStringLiteral(ZEB_CUTTER), {broken, out, u"0"_s, u"1e12"_s, u"1"_s, u"1"_s});
        QCOMPARE(run.code, 5);
        QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
        QVERIFY(Load(out)->ValueCount() > 0);
    }

    void helpVersionAndLanguage() {
        TRun run = RunProgram(QStringLiteral(ZEB_CUTTER), {u"--help"_s});
        QCOMPARE(run.code, 0);
        QVERIFY(run.out.startsWith(u"Usage: zeb_cutter \"SOURCE\" \"TARGET\" \"START\" \"END\" \"N\" \"LIST\" [\"csv\"]"_s));
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
