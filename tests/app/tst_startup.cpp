// The start-up and shutdown sequence run in-process, with a real application object each time,
// and the command line.

#include "app/Startup.h"
#include "ui/Main.h"

#include "LanguageSetting.h"
#include "MakeRecording.h"
#include "config/Language.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"
#include "ui/BigDataDlg.h"
#include "ui/ZebDlg.h"

#include <QApplication>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace zeb;
using namespace Qt::StringLiterals;
using TMode = TCommandLine::TMode;

Q_DECLARE_METATYPE(TCommandLine::TMode)
Q_DECLARE_METATYPE(TStartupStep)

namespace {

// What the observer saw at each step.
struct TRun {
    QList<TStartupStep> Steps;
    bool AppAtLanguageSwitch = true;
    int LanguageAtSwitch = -1;
    QString MenuAtForms;
    bool DialogMainWindowSet = false;
    bool BigDataDlgMade = false;
    bool ShownAtLoop = false;
    bool Loaded = false;
    QString FileAtClose;
    int ExitCode = -1;
};

TRun Run(const QStringList& args) {
    TRun run;
    std::vector<QByteArray> storage{QByteArrayLiteral("zeb_viewer")};
    for (const QString& a : args)
        storage.push_back(a.toLocal8Bit());
    std::vector<char*> argv;
    for (QByteArray& b : storage)
        argv.push_back(b.data());
    argv.push_back(nullptr);

    run.ExitCode = RunViewer(int(storage.size()), argv.data(), [&run](TStartupStep step, TForm1* form) {
        run.Steps << step;
        switch (step) {
        case TStartupStep::LanguageSwitched:
            run.AppAtLanguageSwitch = QCoreApplication::instance() != nullptr;
            run.LanguageAtSwitch = CurrentLanguage();
            break;
        case TStartupStep::FormsCreated:
            run.MenuAtForms = form->menuBar()->actions().value(0)->text();
            run.DialogMainWindowSet = TZebDlg::MainWindow() == form;
            run.BigDataDlgMade = form->findChild<TfrmBigDataDlg*>() != nullptr;
            break;
        case TStartupStep::EventLoopStarted:
            run.ShownAtLoop = form->isVisible();
            // Close once a command-line file has loaded, or at once when none is opened: the
            // window starts its load from the first event the loop delivers, ahead of this one.
            QObject::connect(form, &TForm1::loadFinished, form, [&run, form](TLoadReport result) {
                run.Loaded = result == TLoadReport::ResultOk;
                run.FileAtClose = form->DataBase()->FileName();
                QTimer::singleShot(0, form, &QWidget::close);
            });
            QTimer::singleShot(0, form, [&run, form] {
                if (!form->IsLoading()) {
                    run.FileAtClose = form->DataBase()->FileName();
                    form->close();
                }
            });
            break;
        default:
            break;
        }
    });
    return run;
}

} // namespace

class TstStartup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FTmp.isValid());
        qputenv("ZEB_SETTINGS_FILE", FTmp.filePath(u"settings.ini"_s).toLocal8Bit());
        qputenv("QT_QPA_PLATFORM", "offscreen");
        FFile = FTmp.filePath(u"rec.zeb"_s);
        QVERIFY(MakeRecording(FFile, {.records = 500}));
    }

    void init() { QFile::remove(FTmp.filePath(u"settings.ini"_s)); }

    void parseCommandLine_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<TMode>("mode");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("templ");
        // Files, format, size and template as given, or the defaults.
        const auto row = [](const char* tag, const QStringList& args, TMode mode,
                            const QStringList& files = {}, const QString& format = {},
                            QSize size = QSize(1200, 800), const QString& templ = {}) {
            QTest::newRow(tag) << args << mode << files << format << size << templ;
        };
        const QStringList a{u"a.zeb"_s};
        row("nothing", {}, TMode::Window);
        row("one file", a, TMode::Window, a);
        row("two files", {u"a.zeb"_s, u"b.zeb"_s}, TMode::Window, {u"a.zeb"_s, u"b.zeb"_s});
        row("png", {u"a.zeb"_s, u"--export-png"_s, u"o.png"_s}, TMode::Export, a, u"png"_s);
        row("jpg sized", {u"a.zeb"_s, u"--export-jpg"_s, u"o.jpg"_s, u"--size"_s, u"640x480"_s},
            TMode::Export, a, u"jpg"_s, QSize(640, 480));
        row("bmp, options first", {u"--template"_s, u"t.mse"_s, u"--export-bmp"_s, u"o.bmp"_s, u"a.zeb"_s},
            TMode::Export, a, u"bmp"_s, QSize(1200, 800), u"t.mse"_s);
        row("Qt's options pass", {u"-platform"_s, u"xcb"_s, u"a.zeb"_s, u"--style=fusion"_s, u"-reverse"_s},
            TMode::Window, a);
        row("Qt's option inside an export",
            {u"a.zeb"_s, u"-style"_s, u"fusion"_s, u"--export-png"_s, u"o.png"_s}, TMode::Export, a,
            u"png"_s);
        row("help", {u"--help"_s}, TMode::Help);
        row("help after a file", {u"a.zeb"_s, u"-h"_s}, TMode::Help);
        row("help beats a wrong option", {u"--fast"_s, u"--help"_s}, TMode::Help);
        row("version", {u"--version"_s}, TMode::Version);
        row("help beats version", {u"--version"_s, u"--help"_s}, TMode::Help);
        const auto bad = [&](const char* tag, const QStringList& args) { row(tag, args, TMode::Invalid); };
        bad("unknown format", {u"a.zeb"_s, u"--export-gif"_s, u"o.gif"_s});
        bad("picture name missing", {u"a.zeb"_s, u"--export-png"_s});
        bad("two pictures", {u"a.zeb"_s, u"--export-png"_s, u"o.png"_s, u"--export-jpg"_s, u"o.jpg"_s});
        bad("export without file", {u"--export-png"_s, u"o.png"_s});
        bad("export of two files", {u"a.zeb"_s, u"b.zeb"_s, u"--export-png"_s, u"o.png"_s});
        bad("size not a size", {u"a.zeb"_s, u"--export-png"_s, u"o.png"_s, u"--size"_s, u"big"_s});
        bad("size too small", {u"a.zeb"_s, u"--export-png"_s, u"o.png"_s, u"--size"_s, u"10x10"_s});
        bad("size without export", {u"a.zeb"_s, u"--size"_s, u"640x480"_s});
        bad("template without export", {u"a.zeb"_s, u"--template"_s, u"t.mse"_s});
        bad("unknown option", {u"a.zeb"_s, u"--fast"_s});
        bad("Qt's option without its value", {u"a.zeb"_s, u"-platform"_s});
        bad("a file that looks like an option", {u"--help.zeb"_s});
    }

    void parseCommandLine() {
        QFETCH(QStringList, args);
        QFETCH(TMode, mode);
        const TCommandLine cmd = ParseCommandLine(args);
        QCOMPARE(cmd.Mode, mode);
        if (mode == TMode::Invalid) {
            QVERIFY(!cmd.Error.isEmpty());
            return;
        }
        QFETCH(QStringList, files);
        QFETCH(QString, format);
        QFETCH(QSize, size);
        QFETCH(QString, templ);
        QCOMPARE(cmd.Files, files);
        QCOMPARE(cmd.Format, format);
        QCOMPARE(cmd.Size, size);
        QCOMPARE(cmd.Template, templ);
    }

    void windowRun_data() {
        QTest::addColumn<int>("language");
        QTest::addColumn<int>("arguments");
        QTest::addColumn<bool>("opened");
        QTest::newRow("German, no argument") << int(LangGerman) << 0 << false;
        QTest::newRow("English, one argument") << int(LangEnglish) << 1 << true;
        QTest::newRow("French, two arguments") << int(LangFrench) << 2 << false;
    }

    // The real start-up: the language before the application object, the forms before the audit
    // log, the loop, the settings written as the window goes, and the log closed last.
    void windowRun() {
        QFETCH(int, language);
        QFETCH(int, arguments);
        QFETCH(bool, opened);
        QVERIFY(WriteLanguageSetting(language));
        QStringList args;
        for (int i = 0; i < arguments; ++i)
            args << FFile;

        const TRun run = Run(args);
        QCOMPARE(run.ExitCode, 0);
        const QList<TStartupStep> order{TStartupStep::SettingsLoaded,      TStartupStep::LanguageSwitched,
                                        TStartupStep::ApplicationCreated,  TStartupStep::FormsCreated,
                                        TStartupStep::AuditLogOpened,      TStartupStep::EventLoopStarted,
                                        TStartupStep::MainWindowDestroyed, TStartupStep::AuditLogClosed};
        QCOMPARE(run.Steps, order);
        QVERIFY(!run.AppAtLanguageSwitch);
        QCOMPARE(run.LanguageAtSwitch, language);
        QCOMPARE(run.MenuAtForms, TxtIn(TTextId::MenuFile, language));
        QVERIFY(run.DialogMainWindowSet);
        QVERIFY(run.BigDataDlgMade);
        QVERIFY(run.ShownAtLoop);
        QCOMPARE(run.Loaded, opened);
        QCOMPARE(run.FileAtClose, opened ? QFileInfo(FFile).absoluteFilePath() : QString());
        QVERIFY(!QCoreApplication::instance()); // nothing of the run is left behind

        // The window wrote the settings as it went: the opened file heads the recent list.
        LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
        QCOMPARE(ZebSettings().Language, language);
        QCOMPARE(ZebSettings().File[0], opened ? QFileInfo(FFile).absoluteFilePath() : QString());
        SwitchTexts(LangGerman);
    }

    // Answered in the user's language before the application object exists, so no display is needed:
    // no window, no log entry.
    void invalidCommandLine() {
        const QList<TStartupStep> early{TStartupStep::SettingsLoaded, TStartupStep::LanguageSwitched};
        const TRun bad = Run({FFile, u"--no-such-option"_s});
        QCOMPARE(bad.ExitCode, 2);
        QCOMPARE(bad.Steps, early);
        for (const QString& arg : {u"--help"_s, u"--version"_s}) {
            const TRun run = Run({FFile, arg});
            QCOMPARE(run.ExitCode, 0);
            QCOMPARE(run.Steps, early);
        }
    }

private:
    QTemporaryDir FTmp;
    QString FFile;
};

QTEST_APPLESS_MAIN(TstStartup)
#include "tst_startup.moc"
