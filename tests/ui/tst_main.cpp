// The main window driven offscreen: caption and modified rules, opening from the command line,
// the menu and a drop, every answer of the loader, closing, settings.

#include "ChartHelpers.h"
#include "MainFixture.h"
#include "config/MseSettings.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "Files.h"
#include "store/DataBase.h"
#include "store/FileThread.h"
#include "ui/BigDataDlg.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFrame>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUrl>

using namespace zeb;
using namespace Qt::StringLiterals;

namespace {

// Answers the large-file question once it is on screen.
class TAutoAnswer : public QObject {
public:
    TAutoAnswer(TfrmBigDataDlg* dlg, std::function<void(TfrmBigDataDlg*)> act)
        : FDlg(dlg), FAct(std::move(act)) {
        dlg->installEventFilter(this);
    }
    int Asked = 0;

protected:
    bool eventFilter(QObject* o, QEvent* e) override {
        if (o == FDlg && e->type() == QEvent::Show) {
            ++Asked;
            QTimer::singleShot(0, FDlg, [this] { FAct(FDlg); });
        }
        return false;
    }

private:
    TfrmBigDataDlg* FDlg;
    std::function<void(TfrmBigDataDlg*)> FAct;
};

// Every message box the window shows: its text is kept and the named button pressed.
struct TMessages {
    QStringList Texts; // line breaks and blanks as the text table has them
    QString Answer = u"OK"_s;
};
// The message box shows line breaks as such and keeps a blank before "?" on the line.
QString Plain(QString text) {
    return text.replace(QChar(0x00A0), QLatin1Char(' ')).replace(u"\r\n"_s, u"\n"_s);
}

TMessages& Messages() {
    static TMessages m;
    return m;
}

QString Native(const QString& path) {
    return QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
}

} // namespace

class TstMain : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FTmp.isValid());
        UseTestEnvironment(FTmp);
        FBin = FTmp.filePath(u"bin"_s);
        QVERIFY(QDir().mkpath(FBin));
        SetZebProgramDir(FBin); // no companion programs unless a test puts one there
        FSmall = FTmp.filePath(u"small.zeb"_s);
        FBig = FTmp.filePath(u"big.zeb"_s);
        QVERIFY(MakeRecording(FSmall, {.channels = 3, .records = 3000, .gapRate = kSomeGaps}));
        // Above the 2,500,000 values that bring up the question; two channels of 1,350,000 each
        // also need data reduction.
        QVERIFY(MakeRecording(FBig, {.channels = 2, .records = RecordsFor(2700000, 2)}));
    }

    void init() {
        Messages() = TMessages();
        TZebDlg::SetDialogHook([](QDialog* dlg) {
            auto* box = qobject_cast<QMessageBox*>(dlg);
            if (!box) return;
            Messages().Texts << Plain(box->text());
            if (auto* b = box->findChild<QPushButton*>(Messages().Answer))
                b->click();
            else
                box->reject();
        });
        ZebSettings() = TZebSettings();
        QFile::remove(TForm1::SettingsFileOf(FSmall));
        QFile::remove(TForm1::SettingsFileOf(FBig));
    }

    void cleanup() {
        QDir(FBin).removeRecursively();
        QDir().mkpath(FBin);
    }

    void captionAndModified() {
        TForm1 f;
        QAction* save = Action(f, "menFileSave");
        auto* spbSave = f.findChild<QToolButton*>(u"spbFileSave"_s);
        QVERIFY(save && spbSave);
        QCOMPARE(f.windowTitle(), u"ZEB Viewer [64]"_s);

        // Without a file, modified cannot be set.
        f.SetModified(true);
        QVERIFY(!f.IsModified());
        QCOMPARE(f.windowTitle(), u"ZEB Viewer [64]"_s);
        QVERIFY(!save->isEnabled());

        QVERIFY(Load(f, FSmall));
        const QString open = u"ZEB Viewer [64] ["_s + Native(FSmall) + u"]"_s;
        QCOMPARE(f.windowTitle(), open);
        QVERIFY(!f.IsModified());
        QVERIFY(!save->isEnabled());
        QVERIFY(!spbSave->isEnabled());

        f.SetModified(true);
        QCOMPARE(f.windowTitle(), u"ZEB Viewer [64] ["_s + Native(FSmall) + u"*]"_s);
        QVERIFY(save->isEnabled());
        QVERIFY(spbSave->isEnabled());

        f.SetModified(false);
        QCOMPARE(f.windowTitle(), open);
        QVERIFY(!save->isEnabled());
    }

    void modifyingCommands_data() {
        QTest::addColumn<QString>("command");
        QTest::newRow("grid bottom") << u"menGraphGridBottom"_s;
        QTest::newRow("grid left") << u"menGraphGridLeft"_s;
        QTest::newRow("grid right") << u"menGraphGridRight"_s;
        QTest::newRow("fixed axis left") << u"menGraphAxisLeft"_s;
        QTest::newRow("limits") << u"menGraphLimits"_s;
        QTest::newRow("auto scale") << u"menGraphScale"_s;
        QTest::newRow("zoom with the mouse") << u"zoom"_s;
        QTest::newRow("plain legend click") << u"legend"_s;
    }

    // Each display change marks the window, and the switches show their new state.
    void modifyingCommands() {
        QFETCH(QString, command);
        TForm1 f;
        f.setWindowState(Qt::WindowNoState);
        f.resize(1000, 700);
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QVERIFY(Load(f, FSmall));
        QVERIFY(!f.IsModified());
        TDataBase& db = *f.DataBase();
        TZebChart* chart = f.Chart();
        const bool gridLeftBefore = db.Axis_Get(axLeft).Grid;

        if (command == u"zoom"_s) {
            const QRect plot = chart->axisRect()->rect();
            QTest::mousePress(chart, Qt::LeftButton, Qt::NoModifier, plot.center() - QPoint(100, 60));
            QTest::mouseMove(chart, plot.center());
            QTest::mouseRelease(chart, Qt::LeftButton, Qt::NoModifier, plot.center() + QPoint(100, 60));
            QVERIFY(chart->IsUndoPossible());
        } else if (command == u"legend"_s) {
            const int curve = chart->LegendCurve(0);
            const bool limits = db.Curve_LimitLinesOn(curve);
            QTest::mouseClick(chart, Qt::LeftButton, Qt::NoModifier, LegendEntry(*chart, 0));
            QCOMPARE(db.Curve_LimitLinesOn(curve), !limits);
        } else {
            QAction* a = f.findChild<QAction*>(command);
            QVERIFY(a);
            const bool checkedBefore = a->isChecked();
            a->trigger();
            if (a->isCheckable()) QCOMPARE(a->isChecked(), !checkedBefore);
            if (command == u"menGraphGridLeft"_s) QCOMPARE(db.Axis_Get(axLeft).Grid, !gridLeftBefore);
            if (command == u"menGraphLimits"_s) QCOMPARE(db.LimitLinesOn(), a->isChecked());
            if (command == u"menGraphScale"_s)
                for (const char* n : {"menGraphAxisBottom", "menGraphAxisLeft", "menGraphAxisRight"})
                    QVERIFY(!Action(f, n)->isChecked());
        }
        QVERIFY(f.IsModified());
        QVERIFY(f.windowTitle().endsWith(u"*]"_s));
    }

    void saveWritesSettingsNextToFile() {
        TForm1 f;
        QVERIFY(Load(f, FSmall));
        const QString mse = TForm1::SettingsFileOf(FSmall);
        QCOMPARE(QFileInfo(mse).fileName(), u"small.mse"_s);
        f.DataBase()->General_Get().Title = u"Saved title"_s;
        f.SetModified(true);
        Action(f, "menFileSave")->trigger();
        QVERIFY(QFileInfo::exists(mse));
        QVERIFY(!f.IsModified());
        TMseSettings back;
        QVERIFY(back.OpenFile(mse));
        QCOMPARE(back.Title.Value, u"Saved title"_s);
    }

    // Which arguments open a file is the start-up's test; here: showing the window again does not
    // open the file again.
    void commandLineOpensOnce() {
        TForm1 f;
        f.SetCommandLine({FSmall});
        QSignalSpy spy(&f, &TForm1::loadFinished);
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QVERIFY(spy.wait(60000));
        QCOMPARE(int(spy.first().first().value<TLoadReport>()), int(TLoadReport::ResultOk));
        QCOMPARE(f.DataBase()->FileName(), QFileInfo(FSmall).absoluteFilePath());
        f.hide();
        f.show();
        QVERIFY(!spy.wait(300));
        QCOMPARE(spy.size(), 1);
    }

    // While the loader waits for the large-file answer, the window shows the load in progress.
    void stateWhileLoading() {
        TForm1 f;
        TfrmBigDataDlg dlg(&f);
        f.SetBigDataDlg(&dlg);
        QString title, status;
        int page = -1;
        bool modified = true, cancelEnabled = false, openEnabled = true;
        TAutoAnswer answer(&dlg, [&](TfrmBigDataDlg* d) {
            title = f.windowTitle();
            status = f.StatusText();
            page = f.findChild<QStackedWidget*>(u"onbWork"_s)->currentIndex();
            f.SetModified(true);
            modified = f.IsModified();
            cancelEnabled = f.findChild<QPushButton*>(u"btnFileCancel"_s)->isEnabled();
            openEnabled = Action(f, "menFileOpen")->isEnabled();
            d->reject();
        });
        QVERIFY(Load(f, FBig));
        QCOMPARE(answer.Asked, 1);
        QCOMPARE(title, u"ZEB Viewer> [64]"_s); // busy, and no file while it loads
        QVERIFY2(QRegularExpression(u"^Block  \\d+$"_s).match(status).hasMatch(), qPrintable(status));
        QCOMPARE(page, int(TForm1::pgProgress));
        QVERIFY(!modified);
        QVERIFY(cancelEnabled);
        QVERIFY(!openEnabled);
        QVERIFY(Action(f, "menFileOpen")->isEnabled());
    }

    void loaderAnswers_data() {
        QTest::addColumn<QString>("choice"); // the radio button
        QTest::addColumn<int>("result");
        QTest::addColumn<bool>("open");
        QTest::addColumn<QString>("message");
        QTest::newRow("stop") << u"rbnCancel"_s << int(TLoadReport::ResultCancelled) << false << QString();
        QTest::newRow("show what was read")
            << u"rbnShow"_s << int(TLoadReport::ResultOk) << true << Txt(TTextId::MsgDataReductionNote);
        QTest::newRow("continue") << u"rbnContinue"_s << int(TLoadReport::ResultOk) << true
                                  << Txt(TTextId::MsgDataReductionNote);
        QTest::newRow("previewer missing") << u"rbnPreviewer"_s << int(TLoadReport::ResultPreviewer) << false
                                           << u"Previewer nicht vorhanden!"_s;
    }

    void loaderAnswers() {
        QFETCH(QString, choice);
        QFETCH(int, result);
        QFETCH(bool, open);
        QFETCH(QString, message);
        TForm1 f;
        f.show();
        TfrmBigDataDlg dlg(&f);
        f.SetBigDataDlg(&dlg);
        TAutoAnswer answer(&dlg, [&](TfrmBigDataDlg* d) {
            d->findChild<QRadioButton*>(choice)->setChecked(true);
            QTest::mouseClick(d->findChild<QPushButton*>(u"btnOK"_s), Qt::LeftButton);
        });
        int got = 0;
        QSignalSpy rebuilt(f.Chart(), &TZebChart::rebuilt);
        QVERIFY(Load(f, FBig, &got));
        QCOMPARE(got, result);
        QCOMPARE(rebuilt.count(), 1); // complete or not, a load builds the chart once
        QCOMPARE(answer.Asked, 1);    // never asked twice, not even after "continue"
        QCOMPARE(Messages().Texts, message.isEmpty() ? QStringList() : QStringList{Plain(message)});

        TDataBase& db = *f.DataBase();
        QCOMPARE(f.findChild<QStackedWidget*>(u"onbWork"_s)->currentIndex(), int(TForm1::pgWork));
        QVERIFY(!f.IsLoading());
        QVERIFY(!f.IsModified());
        QVERIFY(f.isVisible());
        auto* bigData = f.findChild<QFrame*>(u"panSpeedButtonsBigData"_s);
        if (!open) {
            // The file is forgotten, but what was read up to the question stays and is shown.
            QCOMPARE(f.windowTitle(), u"ZEB Viewer [64]"_s);
            QVERIFY(db.FileName().isEmpty());
            QCOMPARE(db.Curve_Count(), 2);
            QVERIFY(db.ValueCount() > TFileThread::kAskAbove);
            QVERIFY(db.ValueCount() < 2700000);
            return;
        }
        QCOMPARE(f.windowTitle(), u"ZEB Viewer [64] ["_s + Native(FBig) + u"]"_s);
        QCOMPARE(db.Curve_Count(), 2);
        if (choice == u"rbnContinue"_s) {
            QCOMPARE(db.ValueCount(), qint64(2700000));
        } else {
            QVERIFY(db.ValueCount() > TFileThread::kAskAbove);
            QVERIFY(db.ValueCount() < 2700000);
        }
        // Both channels hold more than a million values: reduced, and the panel says so.
        QVERIFY(db.isBigDataOn());
        QVERIFY(bigData->isVisible());
        auto* chk = f.findChild<QCheckBox*>(u"chkBigDataOn"_s);
        QVERIFY(chk->isChecked());
        chk->click();
        QVERIFY(!db.isBigDataOn());
        QVERIFY(!chk->isChecked());
        // The switch stays at hand on the table; the configuration page has none.
        f.GUI_ViewTable();
        QVERIFY(bigData->isVisible());
        f.GUI_ViewCfg();
        QVERIFY(!bigData->isVisible());
    }

    void previewerStarted() {
#ifdef Q_OS_UNIX
        // A stand-in previewer that writes down its arguments.
        const QString out = FTmp.filePath(u"previewer-args.txt"_s);
        QFile script(FBin + u"/zeb_previewer"_s);
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write(QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"$@\" > '%1'\n").arg(out).toUtf8());
        script.close();
        script.setPermissions(script.permissions() | QFileDevice::ExeOwner);

        TForm1 f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        TfrmBigDataDlg dlg(&f);
        f.SetBigDataDlg(&dlg);
        TAutoAnswer answer(&dlg, [](TfrmBigDataDlg* d) {
            d->findChild<QRadioButton*>(u"rbnPreviewer"_s)->setChecked(true);
            d->accept();
        });
        int got = 0;
        QVERIFY(Load(f, FBig, &got));
        QCOMPARE(got, int(TLoadReport::ResultPreviewer));
        QTRY_VERIFY(!f.isVisible()); // the viewer hands over and closes
        QTRY_VERIFY(QFileInfo(out).size() > 0);
        QCOMPARE(QString::fromUtf8(ReadBytes(out)).trimmed(), QFileInfo(FBig).absoluteFilePath());
        QVERIFY(Messages().Texts.isEmpty());
#else
        QSKIP("needs a shell script as the stand-in previewer");
#endif
    }

    void loadFailures_data() {
        QTest::addColumn<QByteArray>("content"); // empty: the file does not exist
        QTest::addColumn<QString>("message");
        QTest::newRow("missing") << QByteArray() << TxtFmt(TTextId::MsgLoadCannotOpen, {u"%FILE%"_s});
        QTest::newRow("not a recording")
            << QByteArray("just some text, not a recording\n") << Txt(TTextId::MsgFatalError);
    }

    void loadFailures() {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        const QString file = FTmp.filePath(u"bad.zeb"_s);
        QFile::remove(file);
        if (!content.isEmpty()) QVERIFY(WriteBytes(file, content));
        TForm1 f;
        // A file that loaded before must be gone afterwards.
        QVERIFY(Load(f, FSmall));
        int got = 0;
        const bool started = Load(f, file, &got);
        QCOMPARE(started, !content.isEmpty());
        if (started) QCOMPARE(got, int(TLoadReport::ResultError));
        QCOMPARE(Messages().Texts, QStringList{Plain(QString(message).replace(u"%FILE%"_s, Native(file)))});
        QVERIFY(!f.IsLoading());
        QCOMPARE(f.findChild<QStackedWidget*>(u"onbWork"_s)->currentIndex(), int(TForm1::pgWork));
        if (started) {
            // The load began: the old recording is gone and the window is idle.
            QCOMPARE(f.windowTitle(), u"ZEB Viewer [64]"_s);
            QVERIFY(f.DataBase()->FileName().isEmpty());
        } else {
            // Nothing was started: the recording on screen stays.
            QCOMPARE(f.DataBase()->FileName(), QFileInfo(FSmall).absoluteFilePath());
        }
        // And the window can open the next one.
        QVERIFY(Load(f, FSmall));
        QCOMPARE(f.DataBase()->FileName(), QFileInfo(FSmall).absoluteFilePath());
    }

    void settingsSource_data() {
        QTest::addColumn<bool>("own");
        QTest::addColumn<bool>("defaultTemplate");
        QTest::addColumn<QString>("title");
        QTest::newRow("own settings file first") << true << true << u"own"_s;
        QTest::newRow("default template") << false << true << u"template"_s;
        QTest::newRow("store defaults") << false << false << QString();
        QTest::newRow("named template missing") << false << false << QString();
    }

    void settingsSource() {
        QFETCH(bool, own);
        QFETCH(bool, defaultTemplate);
        QFETCH(QString, title);
        auto write = [](const QString& path, const QString& t) {
            TMseSettings s;
            s.Title.Set(t);
            s.AxisLeft.Name.Set(t + u" axis"_s);
            QVERIFY(s.SaveFile(path));
        };
        if (own) write(TForm1::SettingsFileOf(FSmall), u"own"_s);
        const QString templ = FTmp.filePath(u"default.mse"_s);
        QFile::remove(templ);
        if (defaultTemplate) write(templ, u"template"_s);
        ZebSettings().TemplateFile =
            QTest::currentDataTag() == QByteArray("store defaults") ? QString() : templ;

        TForm1 f;
        QVERIFY(Load(f, FSmall));
        QCOMPARE(f.DataBase()->General_Get().Title, title);
        QCOMPARE(f.DataBase()->Axis_Get(axLeft).Name, title.isEmpty() ? QString() : title + u" axis"_s);
        QVERIFY(Messages().Texts.isEmpty());
        QVERIFY(!f.IsModified());
    }

    void closeDuringLoad() {
        TForm1 f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QSignalSpy spy(&f, &TForm1::loadFinished);
        QVERIFY(f.OpenFile(FBig));
        QVERIFY(f.IsLoading());
        QVERIFY(!f.close()); // only the load stops
        QVERIFY(f.isVisible());
        QVERIFY(spy.wait(60000));
        QCOMPARE(int(spy.first().first().value<TLoadReport>()), int(TLoadReport::ResultCancelled));
        QVERIFY(f.isVisible());
        QVERIFY(f.DataBase()->FileName().isEmpty());
        QVERIFY(Messages().Texts.isEmpty()); // a cancel is no error
        QVERIFY(f.close());                  // the second request closes
    }

    void closeQuery_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("closed");
        QTest::addColumn<bool>("saved");
        QTest::newRow("yes") << u"Yes"_s << true << true;
        QTest::newRow("no") << u"No"_s << true << false;
        QTest::newRow("cancel") << u"Cancel"_s << false << false;
    }

    void closeQuery() {
        QFETCH(QString, answer);
        QFETCH(bool, closed);
        QFETCH(bool, saved);
        TForm1 f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QVERIFY(Load(f, FSmall));

        // Unmodified: no question.
        QVERIFY(f.close());
        QVERIFY(Messages().Texts.isEmpty());
        f.show();

        f.SetModified(true);
        Messages().Answer = answer;
        QCOMPARE(f.close(), closed);
        QCOMPARE(Messages().Texts, QStringList{Plain(Txt(TTextId::MsgSaveSettings))});
        QCOMPARE(QFileInfo::exists(TForm1::SettingsFileOf(FSmall)), saved);
        QCOMPARE(f.isVisible(), !closed);
    }

    void recentFilesAndSettingsOnDestroy() {
        const QString second = FTmp.filePath(u"second.zeb"_s);
        QVERIFY(QFile::copy(FSmall, second) || QFileInfo::exists(second));
        ZebSettings().File[0] = second; // already in the list: moves to the front
        ZebSettings().File[1] = FTmp.filePath(u"older.zeb"_s);
        const QString settingsFile = FTmp.filePath(u"settings.ini"_s);
        QFile::remove(settingsFile);
        {
            TForm1 f;
            QVERIFY(Load(f, FSmall));
            QVERIFY(Load(f, second));
            auto* menu = f.findChild<QMenu*>(u"menFileOpenAgain"_s);
            QCOMPARE(menu->actions().size(), 3);
            QVERIFY(menu->actions().at(0)->text().endsWith(Native(second)));
            QVERIFY(menu->actions().at(1)->text().endsWith(Native(FSmall)));

            // The recent list opens its entry.
            QSignalSpy spy(&f, &TForm1::loadFinished);
            menu->actions().at(1)->trigger();
            QVERIFY(spy.wait(60000));
            QCOMPARE(f.DataBase()->FileName(), QFileInfo(FSmall).absoluteFilePath());
            QVERIFY(!QFileInfo::exists(settingsFile));
        }
        QVERIFY(QFileInfo::exists(settingsFile));
        // The window wrote its settings when it went.
        LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
        QCOMPARE(ZebSettings().File[0], QFileInfo(FSmall).absoluteFilePath());
        QCOMPARE(ZebSettings().File[1], QFileInfo(second).absoluteFilePath());
        QCOMPARE(ZebSettings().File[2], FTmp.filePath(u"older.zeb"_s));
        QVERIFY(ZebSettings().File[3].isEmpty());

        // Settings that cannot be written (their folder is a file) are the user's to hear of.
        const QString blocked = FTmp.filePath(u"blocked"_s);
        QVERIFY(WriteBytes(blocked, {}));
        const QString unwritable = blocked + u"/settings.ini"_s;
        qputenv("ZEB_SETTINGS_FILE", unwritable.toLocal8Bit());
        { TForm1 f; }
        qputenv("ZEB_SETTINGS_FILE", settingsFile.toLocal8Bit());
        QCOMPARE(Messages().Texts,
                 QStringList{Plain(TxtFmt(TTextId::MsgCannotSaveSettings, {Native(unwritable)}))});
    }

    void dropRecording_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("recording") << u"dropped.zeb"_s << true;
        QTest::newRow("upper-case extension") << u"DROPPED.ZEB"_s << true;
        QTest::newRow("other file") << u"dropped.txt"_s << false;
    }

    void dropRecording() {
        QFETCH(QString, name);
        QFETCH(bool, accepted);
        const QString file = FTmp.filePath(name);
        QFile::remove(file);
        QVERIFY(QFile::copy(FSmall, file));
        TForm1 f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(file)});
        const QPoint at = f.rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&f, &enter);
        QCOMPARE(enter.isAccepted(), accepted);
        QSignalSpy spy(&f, &TForm1::loadFinished);
        QDropEvent drop(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&f, &drop);
        QCOMPARE(spy.wait(accepted ? 60000 : 300), accepted);
        QCOMPARE(f.DataBase()->FileName(), accepted ? QFileInfo(file).absoluteFilePath() : QString());
    }

    void templateCommands() {
        TForm1 f;
        f.show();
        // Nothing to take the template from yet.
        Action(f, "menFileTemplateSave")->trigger();
        QCOMPARE(Messages().Texts, QStringList{Txt(TTextId::MsgSaveFileFirst)});

        QVERIFY(Load(f, FSmall));
        Messages().Texts.clear();
        const QString templ = FTmp.filePath(u"made.mse"_s);
        QFile::remove(templ);
        // The save dialog gets the name typed in; the message hook leaves file dialogs alone.
        TZebDlg::SetDialogHook([templ](QDialog* dlg) {
            if (auto* fd = qobject_cast<QFileDialog*>(dlg)) {
                fd->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(templ);
                dlg->accept();
            } else if (auto* box = qobject_cast<QMessageBox*>(dlg)) {
                Messages().Texts << Plain(box->text());
                box->accept();
            }
        });
        f.DataBase()->General_Get().Title = u"made"_s;
        Action(f, "menFileTemplateSave")->trigger();
        QVERIFY(QFileInfo::exists(templ));
        QVERIFY(!f.IsModified()); // saving a template changes nothing shown

        f.DataBase()->General_Get().Title = u"changed"_s;
        Action(f, "menFileTemplateUse")->trigger();
        QCOMPARE(f.DataBase()->General_Get().Title, u"made"_s);
        QVERIFY(f.IsModified());
        QVERIFY(Messages().Texts.isEmpty());
    }

private:
    QTemporaryDir FTmp;
    QString FSmall, FBig, FBin;
};

QTEST_MAIN(TstMain)
#include "tst_main.moc"
