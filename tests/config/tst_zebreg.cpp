// The settings store: defaults, what each program reads and writes back, values of the wrong
// kind, the window geometry and report-hint adjustments, and the choice of the settings root.
// Every test works on its own settings file named by ZEB_SETTINGS_FILE.

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "Files.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

const QString kTree = QStringLiteral("Software/Velmorant/ZEB/");

const QStringList kViewerKeys = [] {
    QStringList keys;
    for (int i = 0; i < 10; ++i)
        keys << QStringLiteral("File%1").arg(i);
    return keys + QStringList{"ScreenFull",        "ScreenWidth",      "ScreenHeight",
                              "CustomApp0_Active", "CustomApp0_Curve", "CustomApp0_Name",
                              "CustomApp0_Unit",   "CustomApp0_Mul",   "CustomApp0_Add",
                              "MktActivationEnergy"};
}();

QStringList Prefixed(const QString& prefix, const QStringList& keys) {
    QStringList out;
    for (const QString& k : keys)
        out << prefix + k;
    return out;
}

} // namespace

class TstZebReg : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> FDir;
    QString FFile;

    // The key tree as another program of the suite sees it.
    void Put(const QString& key, const QVariant& value) const {
        QSettings tree(FFile, QSettings::IniFormat);
        tree.setValue(key, value);
    }
    QVariant Get(const QString& key) const { return QSettings(FFile, QSettings::IniFormat).value(key); }
    QMap<QString, QString> Snapshot() const {
        QSettings tree(FFile, QSettings::IniFormat);
        QMap<QString, QString> all;
        const QStringList keys = tree.allKeys();
        for (const QString& k : keys)
            all.insert(k, tree.value(k).toString());
        return all;
    }
    QString ProgramDir() const { return FDir->filePath("prog"); }
    QString PrototypeFile() const { return QDir(ProgramDir()).filePath("zeb_reg.ini"); }

private Q_SLOTS:
    void init() {
        FDir = std::make_unique<QTemporaryDir>();
        QVERIFY(FDir->isValid());
        FFile = FDir->filePath("registry.ini");
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(FFile));
        QDir().mkpath(ProgramDir());
        SetZebProgramDir(ProgramDir());
        SetZebSettingsRoot(QString::fromLatin1(kZebRootPath));
        SetZebScreenSizeProvider({});
        zeb::SetSystemLocaleOverride(QLocale(QLocale::German, QLocale::Germany));
        zeb::SetFormats(0, 0, 0);
    }
    void cleanup() {
        zeb::SetSystemLocaleOverride(std::nullopt);
        zeb::SetFormats(0, 0, 0);
        SetZebProgramDir({});
        qunsetenv("ZEB_SETTINGS_FILE");
    }

    void defaultsWithoutAnySettings() {
        ZebSettings().Language = 2; // left over from an earlier load: must go
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        const TZebSettings& s = ZebSettings();
        QCOMPARE(s.Language, -1);
        QCOMPARE(s.ScreenFull, true);
        QCOMPARE(s.ScreenWidth, -1);
        QCOMPARE(s.ComportSearch, 2);
        QCOMPARE(s.Comport, QStringLiteral("COM1"));
        QCOMPARE(s.CheckRange, true);
        QCOMPARE(s.ReportHint, 1);
        QCOMPARE(s.CustomApp0_Name, QStringLiteral("FLOW"));
        QCOMPARE(s.CustomApp0_Unit, QStringLiteral("m3/h"));
        QCOMPARE(s.CustomApp0_Mul, 0.06);
        QCOMPARE(s.Reader.OutputMode, 2);
        QCOMPARE(s.Resample.Period * 86400.0, 1.0);
        for (const QString& f : s.File)
            QVERIFY(f.isEmpty());
        QCOMPARE(s.MseFileExt, QStringLiteral(".mse"));
        QVERIFY(!QFile::exists(FFile)); // loading writes nothing
    }

    void viewerValuesSurviveARestart() {
        zeb::SetFormats(0, 0, 1); // a user with a decimal comma
        TZebSettings& s = ZebSettings();
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        s.File[0] = QStringLiteral("C:\\data\\a, b.zeb");
        s.File[9] = QString::fromUtf8("/home/m\xC3\xBCller/x.zeb");
        s.ScreenFull = false;
        s.ScreenWidth = 1024;
        s.ScreenHeight = 700;
        s.CustomApp0_Active = true;
        s.CustomApp0_Curve = 3;
        s.CustomApp0_Name = QStringLiteral("Q");
        s.CustomApp0_Unit = QStringLiteral("l/s");
        s.CustomApp0_Mul = 1.25;
        s.CustomApp0_Add = -0.5;
        s.MktActivationEnergy = 100.0;
        QVERIFY(SaveZebSettings(kZebProgramViewer));
        QCOMPARE(Get(kTree + "zeb_viewer.exe/CustomApp0_Mul").toString(), QStringLiteral("1,25"));

        zeb::SetFormats(0, 0, 0); // read back before the formats are set up, as at start-up
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        QCOMPARE(s.File[0], QStringLiteral("C:\\data\\a, b.zeb"));
        QCOMPARE(s.File[9], QString::fromUtf8("/home/m\xC3\xBCller/x.zeb"));
        QCOMPARE(s.ScreenFull, false);
        QCOMPARE(s.ScreenWidth, 1024);
        QCOMPARE(s.ScreenHeight, 700);
        QCOMPARE(s.CustomApp0_Active, true);
        QCOMPARE(s.CustomApp0_Curve, 3);
        QCOMPARE(s.CustomApp0_Name, QStringLiteral("Q"));
        QCOMPARE(s.CustomApp0_Unit, QStringLiteral("l/s"));
        QCOMPARE(s.CustomApp0_Mul, 1.25);
        QCOMPARE(s.CustomApp0_Add, -0.5);
        QCOMPARE(s.MktActivationEnergy, 100.0);

        // Saved again unchanged (with the decimal comma it was saved with), the file is left
        // as it was, to the byte and the time.
        zeb::SetFormats(0, 0, 1);
        QByteArray before;
        {
            QFile f(FFile);
            QVERIFY(f.open(QIODevice::ReadWrite));
            before = f.readAll();
            QVERIFY(f.setFileTime(QDateTime(QDate(2020, 1, 1), QTime(0, 0)), QFileDevice::FileModificationTime));
        }
        QVERIFY(SaveZebSettings(kZebProgramViewer));
        QCOMPARE(QFileInfo(FFile).lastModified(), QDateTime(QDate(2020, 1, 1), QTime(0, 0)));
        QCOMPARE(ReadBytes(FFile), before);
        zeb::SetFormats(0, 0, 0);
    }

    // Values another program of the suite wrote: the viewer reads the root, the prototype key
    // and its own section, and nothing of the other programs' sections.
    void readsWhatTheSuiteWrote_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<bool>("viewer");
        QTest::addColumn<bool>("reader");
        QTest::addColumn<bool>("online");
        QTest::addColumn<bool>("csv");
        QTest::addColumn<bool>("resample");
        QTest::newRow("viewer") << "zeb_viewer.exe" << true << false << false << false << false;
        QTest::newRow("main program") << "zeb.exe" << true << true << true << true << true;
        QTest::newRow("reader") << "reader" << false << true << false << false << false;
        QTest::newRow("converter") << "zeb2csv.exe" << false << false << false << true << false;
        QTest::newRow("resampler") << "zeb_resample.exe" << false << false << false << false << true;
        QTest::newRow("name case matters") << "ZEB_VIEWER.EXE" << false << false << false << false << false;
    }
    void readsWhatTheSuiteWrote() {
        QFETCH(QString, program);
        QFETCH(bool, viewer);
        QFETCH(bool, reader);
        QFETCH(bool, online);
        QFETCH(bool, csv);
        QFETCH(bool, resample);
        Put(kTree + "Language", 2);
        Put(kTree + "LocDate", 3);
        Put(kTree + "FileDir", "D:/rec");
        Put(kTree + "ShowTools", 1);
        Put(kTree + "ValReportFirma", "ACME");
        Put(kTree + "Prototype/ReaderExe", "C:/zeb/reader.exe");
        Put(kTree + "Prototype/VersionPC", 7);
        Put(kTree + "zeb_viewer.exe/Extended", 1);
        Put(kTree + "zeb_viewer.exe/File3", "x.zeb");
        Put(kTree + "reader/FileMode", 5);
        Put(kTree + "online/Rate", 250);
        Put(kTree + "zeb2csv.exe/sDateFormat", "yyyy");
        Put(kTree + "zeb_resample.exe/Period", "0.5");

        LoadZebSettings(program, QSize(1920, 1080));
        const TZebSettings& s = ZebSettings();
        QCOMPARE(s.Language, 2);
        QCOMPARE(s.LocDate, 3);
        QCOMPARE(s.FileDir, QStringLiteral("D:/rec"));
        QCOMPARE(s.ShowTools, true);
        QCOMPARE(s.ValReportFirma, QStringLiteral("ACME"));
        QCOMPARE(s.ReaderExe, QStringLiteral("C:/zeb/reader.exe"));
        QCOMPARE(s.VersionPC, 7);
        QCOMPARE(s.Extended, viewer);
        QCOMPARE(s.File[3], viewer ? QStringLiteral("x.zeb") : QString());
        QCOMPARE(s.Reader.FileMode, reader ? 5 : 1);
        QCOMPARE(s.Online.Rate, online ? 250 : 1000);
        QCOMPARE(s.Csv.sDateFormat, csv ? QStringLiteral("yyyy") : QString());
        QCOMPARE(s.Resample.Period, resample ? 0.5 : 1.0 / 86400.0);
    }

    // What each program writes into an empty tree: nothing it does not own.
    void writesOnlyWhatItOwns_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("keys");
        const QStringList readerKeys{"FileMode", "OutputMode", "ForceExtZEB"};
        const QStringList onlineKeys{"Rate",       "Autostart",   "ShowServerError", "Port",
                                     "ScreenFull", "ScreenWidth", "ScreenHeight"};
        QTest::newRow("viewer") << "zeb_viewer.exe" << Prefixed(kTree + "zeb_viewer.exe/", kViewerKeys);
        QTest::newRow("main program")
            << "zeb.exe"
            << Prefixed(kTree, {"ComportSearch", "Comport", "FileDir", "TemplateFile", "ShowTools",
                                "Language", "ValReportFirma", "ReportHint", "LocDate", "LocDecimalSeparator",
                                "View", "CustomApp"}) +
                   Prefixed(kTree + "reader/", readerKeys) + Prefixed(kTree + "online/", onlineKeys);
        QTest::newRow("loader") << "Loader.exe" << Prefixed(kTree, {"ComportDevice", "Comport"});
        QTest::newRow("reader") << "reader"
                                << Prefixed(kTree + "reader/", readerKeys + QStringList{"MultipleZEB"});
        QTest::newRow("online") << "online" << Prefixed(kTree + "online/", onlineKeys);
        QTest::newRow("converter") << "zeb2csv.exe"
                                   << Prefixed(kTree + "zeb2csv.exe/",
                                               {"iListSeparator", "iDecimalSeparator", "iNumberFormat",
                                                "iNanFormat", "iTimeColumn", "iDateFormat", "sDateFormat",
                                                "iTimeFormat", "sTimeFormat", "iFileExt", "sFileExt"});
        QTest::newRow("resampler") << "zeb_resample.exe"
                                   << Prefixed(kTree + "zeb_resample.exe/", {"Period", "Empty"});
        QTest::newRow("stranger") << "other.exe" << QStringList();
    }
    void writesOnlyWhatItOwns() {
        QFETCH(QString, program);
        QFETCH(QStringList, keys);
        ZebSettings() = TZebSettings();
        SaveZebSettings(program);
        QStringList written = Snapshot().keys();
        written.sort();
        keys.sort();
        QCOMPARE(written, keys);
    }

    // A run of the viewer over a tree another program filled: only its own section changes,
    // even when the common values changed during the run.
    void aViewerRunChangesOnlyItsSection() {
        Put(kTree + "Language", 0);
        Put(kTree + "Comport", "COM3");
        Put(kTree + "MultipleInstances", 1);
        Put(kTree + "Prototype/SetupExe", "setup.exe");
        Put(kTree + "reader/FileMode", 4);
        Put(kTree + "zeb_viewer.exe/Extended", 1);
        Put(kTree + "zeb_viewer.exe/Unknown", "keep");
        Put("Software/Velmorant/ZEB_Prototypes/lab/Language", 1);
        const QMap<QString, QString> before = Snapshot();

        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        TZebSettings& s = ZebSettings();
        s.Language = 2;
        s.FileDir = QStringLiteral("/elsewhere");
        s.Extended = false;
        s.File[0] = QStringLiteral("new.zeb");
        SaveZebSettings(kZebProgramViewer);

        const QMap<QString, QString> after = Snapshot();
        const QString own = kTree + "zeb_viewer.exe/";
        for (auto it = before.begin(); it != before.end(); ++it)
            if (!it.key().startsWith(own) || it.key() == own + "Extended" || it.key() == own + "Unknown")
                QCOMPARE(after.value(it.key()), it.value());
        for (auto it = after.begin(); it != after.end(); ++it)
            if (!before.contains(it.key())) QVERIFY2(it.key().startsWith(own), qPrintable(it.key()));
        QCOMPARE(after.value(own + "File0"), QStringLiteral("new.zeb"));
    }

    // Values of the wrong kind or out of range give the default, never an error.
    void wrongValuesFallBack_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("raw");
        const auto row = [](const char* tag, const char* key, const char* raw) {
            QTest::newRow(tag) << QString::fromLatin1(key) << QString::fromLatin1(raw);
        };
        row("word for integer", "Language", "german");
        row("fraction for integer", "Language", "1.5");
        row("integer overflow", "Language", "4294967297");
        row("empty for integer", "Language", "");
        row("word for boolean", "ShowTools", "yes");
        row("word for double", "zeb_viewer.exe/CustomApp0_Mul", "much");
        row("nan for double", "zeb_viewer.exe/CustomApp0_Mul", "NAN");
        row("huge double", "zeb_viewer.exe/CustomApp0_Mul", "1e999");
        row("word for width", "zeb_viewer.exe/ScreenWidth", "wide");
        // An activation energy must be positive to give a temperature.
        row("zero energy", "zeb_viewer.exe/MktActivationEnergy", "0");
        row("negative energy", "zeb_viewer.exe/MktActivationEnergy", "-83.144");
    }
    void wrongValuesFallBack() {
        QFETCH(QString, key);
        QFETCH(QString, raw);
        Put(kTree + "zeb_viewer.exe/ScreenFull", 0);
        Put(kTree + "zeb_viewer.exe/ScreenHeight", 600);
        Put(kTree + key, raw);
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        const TZebSettings& s = ZebSettings();
        QCOMPARE(s.Language, -1);
        QCOMPARE(s.ShowTools, false);
        QCOMPARE(s.CustomApp0_Mul, 0.06);
        QCOMPARE(s.MktActivationEnergy, 83.144);
        // A width that is not there, or unreadable, means a maximised window.
        QCOMPARE(s.ScreenWidth, -1);
        QCOMPARE(s.ScreenFull, true);
    }

    // The file as another process left it: every value is text there.
    void readsAFileWrittenElsewhere() {
        QVERIFY(WriteBytes(FFile, "[Software]\r\n"
                                  "Velmorant\\ZEB\\Language=2\r\n"
                                  "Velmorant\\ZEB\\LocDate=abc\r\n"
                                  "Velmorant\\ZEB\\ShowTools=1\r\n"
                                  "Velmorant\\ZEB\\FileDir=\"D:\\\\rec, old\"\r\n"
                                  "Velmorant\\ZEB\\zeb_viewer.exe\\ScreenFull=0\r\n"
                                  "Velmorant\\ZEB\\zeb_viewer.exe\\ScreenWidth=800\r\n"
                                  "Velmorant\\ZEB\\zeb_viewer.exe\\ScreenHeight= 600\r\n"
                                  "Velmorant\\ZEB\\zeb_viewer.exe\\CustomApp0_Mul=0,5\r\n"
                                  "Velmorant\\ZEB\\zeb_viewer.exe\\CustomApp0_Add=true\r\n"));
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        const TZebSettings& s = ZebSettings();
        QCOMPARE(s.Language, 2);
        QCOMPARE(s.LocDate, 0);
        QCOMPARE(s.ShowTools, true);
        QCOMPARE(s.FileDir, QStringLiteral("D:\\rec, old"));
        QCOMPARE(s.ScreenFull, false);
        QCOMPARE(s.ScreenWidth, 800);
        QCOMPARE(s.ScreenHeight, 600);
        QCOMPARE(s.CustomApp0_Mul, 0.5); // a decimal comma the file format took for a list
        QCOMPARE(s.CustomApp0_Add, 0.0);
    }

    void accessorBasics() {
        {
            TZEBRegistry reg;
            QVERIFY(!reg.OpenKeyRead("\\zeb_viewer.exe"));
            QCOMPARE(reg.ReadI("ScreenWidth", 42), 42);
            reg.WriteI("ScreenWidth", 1); // opened for reading: ignored
            QVERIFY(reg.OpenKeyWrite("\\zeb_viewer.exe"));
            reg.WriteB("ScreenFull", false);
            reg.WriteI("ScreenWidth", -7);
            reg.WriteS("Title", "t");
            reg.WriteD("Mul", 0.125);
        }
        QCOMPARE(Get(kTree + "zeb_viewer.exe/ScreenFull").toString(), QStringLiteral("0"));
        TZEBRegistry reg;
        QVERIFY(reg.KeyExists("\\zeb_viewer.exe"));
        QVERIFY(!reg.KeyExists("\\zeb_viewer"));
        QVERIFY(reg.OpenKeyRead(""));
        QStringList names;
        reg.GetKeyNames(names);
        QCOMPARE(names, QStringList{"zeb_viewer.exe"});
        QVERIFY(reg.OpenKeyRead("\\zeb_viewer.exe"));
        QCOMPARE(reg.ReadB("ScreenFull", true), false);
        QCOMPARE(reg.ReadI("ScreenWidth", 0), -7);
        QCOMPARE(reg.ReadS("Title", {}), QStringLiteral("t"));
        QCOMPARE(reg.ReadD("Mul", 0), 0.125);
        QCOMPARE(reg.ReadI("Title", 5), 5);
        QVERIFY(reg.ValueExists("Title"));
        QVERIFY(!reg.ValueExists("Nothing"));
        reg.GetValueNames(names);
        names.sort();
        QCOMPARE(names, (QStringList{"Mul", "ScreenFull", "ScreenWidth", "Title"}));
    }

    void windowGeometry_data() {
        QTest::addColumn<bool>("storedFull");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<bool>("full");
        QTest::addColumn<int>("readWidth");
        const QSize hd(1920, 1080);
        QTest::newRow("fits") << false << 800 << 600 << hd << false << 800;
        QTest::newRow("smallest") << false << 20 << 20 << hd << false << 20;
        QTest::newRow("whole screen") << false << 1920 << 1080 << hd << false << 1920;
        QTest::newRow("too narrow") << false << 19 << 600 << hd << true << 19;
        QTest::newRow("too low") << false << 800 << 19 << hd << true << 800;
        QTest::newRow("wider than screen") << false << 1921 << 600 << hd << true << 1921;
        QTest::newRow("taller than screen") << false << 800 << 1081 << hd << true << 800;
        QTest::newRow("never stored") << false << -1 << -1 << hd << true << -1;
        QTest::newRow("full: size not read") << true << 800 << 600 << hd << true << -1;
        QTest::newRow("screen unknown") << false << 5000 << 4000 << QSize() << false << 5000;
    }
    void windowGeometry() {
        QFETCH(bool, storedFull);
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(QSize, screen);
        QFETCH(bool, full);
        QFETCH(int, readWidth);
        Put(kTree + "zeb_viewer.exe/ScreenFull", storedFull ? 1 : 0);
        if (width != -1) Put(kTree + "zeb_viewer.exe/ScreenWidth", width);
        if (height != -1) Put(kTree + "zeb_viewer.exe/ScreenHeight", height);
        LoadZebSettings(kZebProgramViewer, screen);
        QCOMPARE(ZebSettings().ScreenFull, full);
        QCOMPARE(ZebSettings().ScreenWidth, readWidth);

        SaveZebSettings(kZebProgramViewer);
        QCOMPARE(Get(kTree + "zeb_viewer.exe/ScreenFull").toString(),
                 full ? QStringLiteral("1") : QStringLiteral("0"));
    }

    void screenSizeComesFromTheProvider() {
        Put(kTree + "zeb_viewer.exe/ScreenFull", 0);
        Put(kTree + "zeb_viewer.exe/ScreenWidth", 1200);
        Put(kTree + "zeb_viewer.exe/ScreenHeight", 700);
        SetZebScreenSizeProvider([] { return QSize(1024, 768); });
        LoadZebSettings(kZebProgramViewer);
        QCOMPARE(ZebSettings().ScreenFull, true);
        SetZebScreenSizeProvider([] { return QSize(1280, 1024); });
        LoadZebSettings(kZebProgramViewer);
        QCOMPARE(ZebSettings().ScreenFull, false);

        // Loaded before a screen is known, checked once it is.
        SetZebScreenSizeProvider({});
        LoadZebSettings(kZebProgramViewer);
        QCOMPARE(ZebSettings().ScreenFull, false);
        CheckZebScreenSize(QSize(1024, 768));
        QCOMPARE(ZebSettings().ScreenFull, true);
    }

    void reportHint_data() {
        QTest::addColumn<int>("stored"); // -1: none
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<int>("hint");
        const QLocale india(QLocale::English, QLocale::India);
        const QLocale germany(QLocale::German, QLocale::Germany);
        QTest::newRow("none, Germany") << -1 << germany << 1;
        QTest::newRow("none, India") << -1 << india << 2;
        QTest::newRow("0, India") << 0 << india << 2;
        QTest::newRow("0, Hindi in India") << 0 << QLocale(QLocale::Hindi, QLocale::India) << 2;
        QTest::newRow("0, Indonesia") << 0 << QLocale(QLocale::Indonesian, QLocale::Indonesia) << 1;
        QTest::newRow("1 kept in India") << 1 << india << 1;
        QTest::newRow("2 kept in Germany") << 2 << germany << 2;
        QTest::newRow("7 kept") << 7 << germany << 7;
    }
    void reportHint() {
        QFETCH(int, stored);
        QFETCH(QLocale, locale);
        QFETCH(int, hint);
        if (stored != -1) Put(kTree + "ReportHint", stored);
        zeb::SetSystemLocaleOverride(locale);
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        QCOMPARE(ZebSettings().ReportHint, hint);
    }

    void settingsRoot_data() {
        QTest::addColumn<QByteArray>("prototypeFile"); // empty: no file
        QTest::addColumn<QString>("root");
        QTest::newRow("no prototype file") << QByteArray() << "\\Software\\Velmorant\\ZEB";
        QTest::newRow("named prototype")
            << QByteArray("[Settings]\r\nKey=Lab7\r\n") << "\\Software\\Velmorant\\ZEB_Prototypes\\Lab7";
        QTest::newRow("quoted name") << QByteArray("[settings]\nkey='Lab 8'\n")
                                     << "\\Software\\Velmorant\\ZEB_Prototypes\\Lab 8";
        QTest::newRow("no key") << QByteArray("[Settings]\r\nOther=1\r\n")
                                << "\\Software\\Velmorant\\ZEB_Prototypes\\unknown";
        QTest::newRow("empty file") << QByteArray("\r\n") << "\\Software\\Velmorant\\ZEB_Prototypes\\unknown";
        // Present but empty: the platform's reader answers an empty name, not the default.
        QTest::newRow("empty name") << QByteArray("[Settings]\nKey=\n")
                                    << "\\Software\\Velmorant\\ZEB_Prototypes\\";
        QTest::newRow("empty quoted name")
            << QByteArray("[Settings]\nKey=''\n") << "\\Software\\Velmorant\\ZEB_Prototypes\\";
    }
    void settingsRoot() {
        QFETCH(QByteArray, prototypeFile);
        QFETCH(QString, root);
        if (!prototypeFile.isEmpty()) QVERIFY(WriteBytes(PrototypeFile(), prototypeFile));
#ifdef ZEB_VALIDATED_EDITION
        root = QString::fromLatin1(kZebValidatedRootPath);
#endif
        QCOMPARE(SelectZebSettingsRoot(), root);
        QCOMPARE(ZebSettingsRoot(), root);
        if (!prototypeFile.isEmpty()) QCOMPARE(ReadBytes(PrototypeFile()), prototypeFile); // only read
    }

    // Settings that cannot be written: the old file stays whole, the saver says so, and a warning
    // in the user's language goes to standard error. A file where the folder should be and a
    // folder where the file should be stop root too; the read-only cases only other users.
    void failedSaveKeepsTheOldSettings_data() {
        QTest::addColumn<QString>("obstacle");
        QTest::newRow("file in place of the folder") << "file as folder";
        QTest::newRow("folder in place of the file") << "folder as file";
        QTest::newRow("read-only folder") << "read-only folder";
        QTest::newRow("read-only file") << "read-only file";
    }
    void failedSaveKeepsTheOldSettings() {
        QFETCH(QString, obstacle);
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        Put(kTree + "zeb_viewer.exe/File0", "old.zeb");
        const QString folder = FDir->filePath("ro");
        QString file = FFile;
        if (obstacle == "file as folder") {
            file = FFile + "/registry.ini";
        } else if (obstacle == "folder as file") {
            file = FDir->filePath("folder.ini");
            QVERIFY(QDir().mkdir(file));
        } else {
            QVERIFY(QDir().mkdir(folder));
            file = folder + "/registry.ini";
            QVERIFY(QFile::copy(FFile, file));
            const QString target = obstacle == "read-only folder" ? folder : file;
            QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::ExeOwner));
            if (QFileInfo(target).isWritable()) {
                QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
                QSKIP("permissions do not stop this user");
            }
        }
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(file));
        const QByteArray before = ReadBytes(file);

        ZebSettings().File[0] = QStringLiteral("new.zeb");
        const bool ok = SaveZebSettings(kZebProgramViewer);
        zeb::SwitchTexts(zeb::LangFrench);
        const QString warning = ZebSettingsSaveFailedText();
        zeb::SwitchTexts(zeb::LangGerman);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);

        QVERIFY(!ok);
        QCOMPARE(ReadBytes(file), before);
        // What the window shows the user names the file.
        QCOMPARE(warning, QString::fromUtf8("Attention : les param\xC3\xA8tres n\xE2\x80\x99ont pas pu \xC3\xAAtre "
                                            "enregistr\xC3\xA9s [") +
                              QDir::toNativeSeparators(file) + "] !");
    }

#ifndef ZEB_VALIDATED_EDITION
    void prototypeBranchHoldsTheSettings() {
        QVERIFY(WriteBytes(PrototypeFile(), "[Settings]\r\nKey=Lab7\r\n"));
        const QString branch = QStringLiteral("Software/Velmorant/ZEB_Prototypes/Lab7/");
        Put(kTree + "Language", 2);
        Put(branch + "Language", 1);
        Put(branch + "zeb_viewer.exe/File0", "proto.zeb");
        SelectZebSettingsRoot();
        LoadZebSettings(kZebProgramViewer, QSize(1920, 1080));
        QCOMPARE(ZebSettings().Language, 1);
        QCOMPARE(ZebSettings().File[0], QStringLiteral("proto.zeb"));
        ZebSettings().File[1] = QStringLiteral("second.zeb");
        SaveZebSettings(kZebProgramViewer);
        QCOMPARE(Get(branch + "zeb_viewer.exe/File1").toString(), QStringLiteral("second.zeb"));
        QVERIFY(!Get(kTree + "zeb_viewer.exe/File1").isValid());
    }

    void unusablePrototypeStaysOnTheMainRoot() {
        // A folder where the file should be: unreadable.
        QVERIFY(QDir(ProgramDir()).mkdir("zeb_reg.ini"));
        QCOMPARE(SelectZebSettingsRoot(), QString::fromLatin1(kZebRootPath));

        // A branch that can be neither found nor created: the settings file cannot come into being.
        QVERIFY(QDir(ProgramDir()).rmdir("zeb_reg.ini"));
        QVERIFY(WriteBytes(PrototypeFile(), "[Settings]\r\nKey=Lab7\r\n"));
        QVERIFY(WriteBytes(FDir->filePath("blocker"), {}));
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(FDir->filePath("blocker/registry.ini")));
        QCOMPARE(SelectZebSettingsRoot(), QString::fromLatin1(kZebRootPath));
    }
#endif
};

QTEST_GUILESS_MAIN(TstZebReg)
#include "tst_zebreg.moc"
