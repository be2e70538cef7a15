// The start-up and shutdown sequence run in-process, with a real application object each time,
// and the command line.

#include "app/Startup.h"
#include "ui/Main.h"

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

void WriteLanguage(int language) {
    TZEBRegistry reg;
    QVERIFY(reg.OpenKeyWrite(QString()));
    reg.WriteI(u"Language"_s, language);
}

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
        const QSize def(1200, 800);
        QTest::newRow("nothing") << QStringList{} << TMode::Window << QStringList{} << QString() << def
                                 << QString();
        QTest::newRow("one file") << QStringList{u"a.zeb"_s} << TMode::Window << QStringList{u"a.zeb"_s}
                                  << QString() << def << QString();
        QTest::newRow("two files") << QStringList{u"a.zeb"_s, u"b.zeb"_s} << TMode::Window
                                   << QStringList{u"a.zeb"_s, u"b.zeb"_s} << QString() << def << QString();
        QTest::newRow("png") << QStringList{u"a.zeb"_s, u"--export-png"_s, u"o.png"_s} << TMode::Export
                             << QStringList{u"a.zeb"_s} << u"png"_s << def << QString();
        QTest::newRow("jpg sized") << QStringList{u"a.zeb"_s, u"--export-jpg"_s, u"o.jpg"_s, u"--size"_s,
                                                  u"640x480"_s}
                                   << TMode::Export << QStringList{u"a.zeb"_s} << u"jpg"_s << QSize(640, 480)
                                   << QString();
        QTest::newRow("bmp, options first")
            << QStringList{u"--template"_s, u"t.mse"_s, u"--export-bmp"_s, u"o.bmp"_s, u"a.zeb"_s}
            << TMode::Export << QStringList{u"a.zeb"_s} << u"bmp"_s << def << u"t.mse"_s;
        QTest::newRow("Qt's options pass")
            << QStringList{u"-platform"_s, u"xcb"_s, u"a.zeb"_s, u"--style=fusion"_s, u"-reverse"_s}
            << TMode::Window << QStringList{u"a.zeb"_s} << QString() << def << QString();
        QTest::newRow("Qt's option inside an export")
            << QStringList{u"a.zeb"_s, u"-style"_s, u"fusion"_s, u"--export-png"_s, u"o.png"_s}
            << TMode::Export << QStringList{u"a.zeb"_s} << u"png"_s << def << QString();
        const QStringList none;
        QTest::newRow("help") << QStringList{u"--help"_s} << TMode::Help << none << QString() << def
                              << QString();
        QTest::newRow("help after a file")
            << QStringList{u"a.zeb"_s, u"-h"_s} << TMode::Help << none << QString() << def << QString();
        QTest::newRow("help beats a wrong option")
            << QStringList{u"--fast"_s, u"--help"_s} << TMode::Help << none << QString() << def << QString();
        QTest::newRow("version") << QStringList{u"--version"_s} << TMode::Version << none << QString() << def
                                 << QString();
        QTest::newRow("help beats version") << QStringList{u"--version"_s, u"--help"_s} << TMode::Help << none
                                            << QString() << def << QString();
        auto bad = [&](const char* tag, const QStringList& args) {
            QTest::newRow(tag) << args << TMode::Invalid << none << QString() << def << QString();
        };
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
        WriteLanguage(language);
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
