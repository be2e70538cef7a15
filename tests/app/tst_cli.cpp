// Every program's manners on the command line, run as the real processes on a machine without a
// display: help on stdout in the user's language, the version, a wrong call on stderr, and the
// exit codes the help promises.

#include "LanguageSetting.h"
#include "config/Texts.h"

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct TRun {
    int Code = -1;
    bool Crashed = false;
    QString Out, Err;
};

// No display and no platform chosen: whatever answers here must not need a window.
TRun RunProgram(const QString& program, const QStringList& args, const QString& settingsFile) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(QString::fromLatin1(name));
    env.insert(u"ZEB_SETTINGS_FILE"_s, settingsFile);
    // Qt's note about a missing runtime folder would come before our messages.
    const QString runtime = QFileInfo(settingsFile).dir().filePath(u"runtime"_s);
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    env.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    p.setProcessEnvironment(env);
    p.start(program, args);
    TRun run;
    if (!p.waitForFinished(60000)) {
        p.kill();
        p.waitForFinished();
        return run;
    }
    run.Crashed = p.exitStatus() != QProcess::NormalExit;
    run.Code = p.exitCode();
    run.Out = QString::fromLocal8Bit(p.readAllStandardOutput());
    run.Err = QString::fromLocal8Bit(p.readAllStandardError());
    return run;
}

void WriteLanguage(const QString& settingsFile, int language) {
    QFile::remove(settingsFile);
    qputenv("ZEB_SETTINGS_FILE", settingsFile.toLocal8Bit());
    QVERIFY(WriteLanguageSetting(language));
}

QString Program(const QString& name) {
    if (name == u"zeb_viewer"_s) return QStringLiteral(ZEB_VIEWER);
    if (name == u"zebtool"_s) return QStringLiteral(ZEBTOOL);
    if (name == u"zeb_previewer"_s) return QStringLiteral(ZEB_PREVIEWER);
    if (name == u"zeb_cutter"_s) return QStringLiteral(ZEB_CUTTER);
    return QStringLiteral(ZEB2CSV);
}

} // namespace

class TstCli : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(FTmp.isValid()); }

    void manners_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("language");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out"); // the start of stdout; empty: nothing at all
        // The start of stderr, all of it when it ends a line; empty: nothing.
        QTest::addColumn<QString>("err");

        const QString version = QStringLiteral(ZEB_VERSION);
        struct TProgramHelp {
            const char* Name;
            const char* English;
            const char* German;
            const char* French;
        };
        const TProgramHelp helps[] = {
            {"zeb_viewer", "Usage: zeb_viewer [FILE]", "Aufruf: zeb_viewer [DATEI]",
             "Usage : zeb_viewer [FICHIER]"},
            {"zebtool", "Usage: zebtool gen ", "Aufruf: zebtool gen ", "Usage : zebtool gen "},
            {"zeb_previewer", "Usage: zeb_previewer [FILE]", "Aufruf: zeb_previewer [DATEI]",
             "Usage : zeb_previewer [FICHIER]"},
            {"zeb_cutter", "Usage: zeb_cutter ", "Aufruf: zeb_cutter ", "Usage : zeb_cutter "},
            {"zeb2csv", "Usage: zeb2csv ", "Aufruf: zeb2csv ", "Usage : zeb2csv "},
        };
        for (const TProgramHelp& h : helps) {
            const QString name = QString::fromLatin1(h.Name);
            const QByteArray tag = h.Name;
            QTest::newRow(QByteArray(tag + " --help, German").constData())
                << name << QStringList{u"--help"_s} << int(zeb::LangGerman) << 0
                << QString::fromUtf8(h.German) << QString();
            QTest::newRow(QByteArray(tag + " -h, French").constData())
                << name << QStringList{u"-h"_s} << int(zeb::LangFrench) << 0 << QString::fromUtf8(h.French)
                << QString();
            QTest::newRow(QByteArray(tag + " --help, English").constData())
                << name << QStringList{u"--help"_s} << int(zeb::LangEnglish) << 0
                << QString::fromUtf8(h.English) << QString();
            QTest::newRow(QByteArray(tag + " --version").constData())
                << name << QStringList{u"--version"_s} << int(zeb::LangEnglish) << 0 << name + u' ' + version
                << QString();
        }

        // Wrong calls: the message on stderr in the user's language, nothing on stdout.
        const auto wrong = [](const char* tag, const char* program, const QStringList& args, int language,
                              int code, const QString& err) {
            QTest::newRow(tag) << QString::fromLatin1(program) << args << language << code << QString()
                               << err;
        };
        const int de = zeb::LangGerman, en = zeb::LangEnglish, fr = zeb::LangFrench;
        wrong("viewer, unknown option", "zeb_viewer", {u"a.zeb"_s, u"--fast"_s}, de, 2,
              u"Ungültiges Argument: --fast\nAufruf: zeb_viewer"_s);
        wrong("viewer, export of nothing", "zeb_viewer", {u"--export-png"_s, u"o.png"_s}, en, 2,
              u"Invalid argument: FILE\nUsage: zeb_viewer"_s);
        wrong("viewer, Qt option without its value", "zeb_viewer", {u"a.zeb"_s, u"-style"_s}, fr, 2,
              u"Argument invalide : -style\nUsage : zeb_viewer"_s);
        wrong("viewer, missing recording", "zeb_viewer",
              {u"/nonexistent/a.zeb"_s, u"--export-png"_s, u"o.png"_s}, en, 1,
              u"File \"/nonexistent/a.zeb\" cannot be opened!"_s);
        wrong("previewer, unknown option", "zeb_previewer", {u"--fast"_s}, en, 2,
              u"Invalid argument: --fast\nUsage: zeb_previewer"_s);
        wrong("previewer, two files", "zeb_previewer", {u"a.zeb"_s, u"b.zeb"_s}, en, 2,
              u"Wrong number of arguments (zeb_previewer --help shows the call)\n"_s);
        wrong("zebtool, unknown option", "zebtool", {u"--bogus"_s}, fr, 2,
              u"Argument invalide : --bogus\nUsage : zebtool gen "_s);
        wrong("zebtool, nothing", "zebtool", {}, de, 2, u"Aufruf: zebtool gen "_s);
        wrong("zebtool, unknown command", "zebtool", {u"make"_s}, en, 2,
              u"Invalid argument: make\nUsage: zebtool gen "_s);
        wrong("zebtool, missing file", "zebtool", {u"info"_s, u"/nonexistent/a.zeb"_s}, en, 1,
              u"zebtool info: no such file"_s);
        wrong("converter, one argument", "zeb2csv", {u"a.zeb"_s}, en, 1, u"Wrong number of arguments"_s);
        // Answered as asked, not as a wrong call.
        QTest::newRow("viewer, help wins over a wrong call")
            << u"zeb_viewer"_s << QStringList{u"--fast"_s, u"--help"_s} << en << 0
            << u"Usage: zeb_viewer [FILE]"_s << QString();
        QTest::newRow("previewer, Qt's options before the version")
            << u"zeb_previewer"_s << QStringList{u"-platform"_s, u"offscreen"_s, u"--version"_s} << en << 0
            << u"zeb_previewer "_s + version << QString();
    }

    void manners() {
        QFETCH(QString, program);
        QFETCH(QStringList, args);
        QFETCH(int, language);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        const QString settings = FTmp.filePath(u"settings.ini"_s);
        WriteLanguage(settings, language);

        const TRun run = RunProgram(Program(program), args, settings);
        QVERIFY2(!run.Crashed, qPrintable(run.Err));
        QCOMPARE(run.Code, code);
        if (out.isEmpty())
            QCOMPARE(run.Out, QString());
        else
            QVERIFY2(run.Out.startsWith(out), qPrintable(run.Out));
        if (err.isEmpty() || err.endsWith(u'\n'))
            QCOMPARE(run.Err, err);
        else
            QVERIFY2(run.Err.startsWith(err), qPrintable(run.Err));
        // A help names every exit code it can end with.
        if (code == 0 && args.contains(u"--help"_s))
            for (const QString& c : {u"0 "_s, u"2 "_s})
                QVERIFY2(run.Out.contains(c), qPrintable(run.Out));
    }

    // The viewer looks for its companions in its own folder; --version says where and what it found,
    // so an installation can be checked from the shell.
    void versionNamesTheCompanions() {
        const QString settings = FTmp.filePath(u"settings.ini"_s);
        WriteLanguage(settings, zeb::LangEnglish);
        const TRun run = RunProgram(QStringLiteral(ZEB_VIEWER), {u"--version"_s}, settings);
        QCOMPARE(run.Code, 0);
        const QString dir = QFileInfo(QStringLiteral(ZEB_VIEWER)).canonicalPath();
        QCOMPARE(run.Out.section(u'\n', 1, 1),
                 u"Companion programs in "_s + dir + u": zeb_cutter, zeb2csv, zeb_previewer"_s);

        // A copy of the viewer alone in a folder finds none.
        const QString lone = FTmp.filePath(u"lone/zeb_viewer"_s);
        QVERIFY(QDir().mkpath(FTmp.filePath(u"lone"_s)));
        QVERIFY(QFile::copy(QStringLiteral(ZEB_VIEWER), lone));
        QVERIFY(QFile::setPermissions(lone, QFile::permissions(QStringLiteral(ZEB_VIEWER))));
        WriteLanguage(settings, zeb::LangGerman);
        const TRun alone = RunProgram(lone, {u"--version"_s}, settings);
        QCOMPARE(alone.Code, 0);
        QCOMPARE(alone.Out.section(u'\n', 1, 1),
                 u"Keine Begleitprogramme in "_s + QFileInfo(lone).canonicalPath());

        // Started through a link from another folder, it still looks next to the real file.
        const QString link = FTmp.filePath(u"bin/zeb_viewer"_s);
        QVERIFY(QDir().mkpath(FTmp.filePath(u"bin"_s)));
        QVERIFY(QFile::link(QStringLiteral(ZEB_VIEWER), link));
        WriteLanguage(settings, zeb::LangEnglish);
        const TRun linked = RunProgram(link, {u"--version"_s}, settings);
        QCOMPARE(linked.Out.section(u'\n', 1, 1),
                 u"Companion programs in "_s + dir + u": zeb_cutter, zeb2csv, zeb_previewer"_s);
    }

private:
    QTemporaryDir FTmp;
};

QTEST_GUILESS_MAIN(TstCli)
#include "tst_cli.moc"
