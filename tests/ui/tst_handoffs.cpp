// The window's hand-offs to the cutter: the File commands follow the programs found next to
// the viewer, the command line carries the visible window and the shown channels of the file,
// and what the cutter writes loads back to exactly the window the chart showed.

#include "../tools/ToolHelpers.h"
#include "MainFixture.h"
#include "RecordingBuilder.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"
#include "ui/ZebDlg.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include <charconv>

using namespace zeb;
using namespace Qt::StringLiterals;
using B = TRecordingBuilder;

namespace {

constexpr quint32 kNo = 0xFFFFFFFFu;

QByteArray Rec(double seconds, quint32 a, quint32 b, quint32 c) {
    return B::Record(seconds / 86400.0, {a, b, c});
}

// Three channels; the middle one never measures, so the viewer drops it and the curves shown
// are the file's channels 0 and 2. Stamps one third of a second apart do not print exactly.
bool WriteFixture(const QString& path) {
    QByteArray records;
    for (int k = 0; k < 60; ++k) {
        const double t = 1000.0 + k / 3.0;
        records += Rec(t, k % 7 == 3 ? kNo : B::F(float(k)), kNo, k % 2 ? B::F(float(-k)) : kNo);
    }
    B b;
    b.Header()
        .Block(1, B::Str("zeblog_reader.exe"))
        .Block(2, B::Double(8826.25))
        .Block(3, B::Strs({"M0", "M1", "M2"}))
        .Block(6, B::Strs({"Alpha", "Beta", "Gamma"}))
        .Block(7, B::Strs({"V", "bar", "K"}))
        .Block(8, records);
    return b.Save(path);
}

double ReadBack(const QString& text) {
    double v = 0;
    const QByteArray b = text.toLatin1();
    const auto r = std::from_chars(b.constData(), b.constData() + b.size(), v);
    return r.ptr == b.constData() + b.size() ? v : std::nan("");
}

// The file dialog's own question about replacing a file, answered yes if it comes up before
// the dialog closes. The dialog's file list may still remember a file that was just removed, so
// the question is not left to what the disk says now.
void ConfirmOverwrite(QPointer<QDialog> fd) {
    QTimer::singleShot(5, [fd] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            box->button(QMessageBox::Yes)->click();
            return;
        }
        if (fd && fd->isVisible()) ConfirmOverwrite(fd);
    });
}

// Answers the save dialog with the name.
void AnswerSaveDialog(const QString& name) {
    TZebDlg::SetDialogHook([name](QDialog* dlg) {
        auto* fd = qobject_cast<QFileDialog*>(dlg);
        if (!fd) return;
        fd->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(name);
        ConfirmOverwrite(fd);
        dlg->accept();
    });
}

void ShowFileMenu(TForm1& f) {
    auto* menu = f.findChild<QMenu*>(u"menFile"_s);
    QVERIFY(menu);
    Q_EMIT menu->aboutToShow();
}

} // namespace

class TstHandoffs : public QObject {
    Q_OBJECT
    QTemporaryDir FTmp;
    QString FSource, FPrograms;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FTmp.isValid());
        qputenv("ZEB_SETTINGS_FILE", FTmp.filePath(u"settings.ini"_s).toLocal8Bit());
        SwitchTexts(LangEnglish);
        TZebDlg::SetNativeDialogs(false);
        FSource = FTmp.filePath(u"source.zeb"_s);
        QVERIFY(WriteFixture(FSource));
        FPrograms = QFileInfo(QStringLiteral(ZEB_CUTTER)).absolutePath();
    }

    void cleanup() {
        TZebDlg::SetDialogHook({});
        SetZebProgramDir({});
        ZebSettings() = TZebSettings();
    }

    void commandsFollowPrograms_data() {
        QTest::addColumn<QStringList>("programs");
        QTest::addColumn<bool>("saveAs");
        QTest::addColumn<bool>("exportText");
        QTest::newRow("none") << QStringList{} << false << false;
        QTest::newRow("cutter") << QStringList{QStringLiteral(ZEB_CUTTER)} << true << false;
        // Text goes through the cutter, so the converter alone is not enough.
        QTest::newRow("converter") << QStringList{QStringLiteral(ZEB2CSV)} << false << false;
        QTest::newRow("both") << QStringList{QStringLiteral(ZEB_CUTTER), QStringLiteral(ZEB2CSV)} << true
                              << true;
    }

    void commandsFollowPrograms() {
        QFETCH(QStringList, programs);
        QFETCH(bool, saveAs);
        QFETCH(bool, exportText);
        QTemporaryDir bin;
        for (const QString& p : programs)
            QVERIFY(QFile::copy(p, bin.filePath(QFileInfo(p).fileName())));
        SetZebProgramDir(bin.path());

        TForm1 f;
        QAction* save = Action(f, u"menFileSaveAs"_s);
        QAction* text = Action(f, u"menFileExportText"_s);
        QVERIFY(save && text);
        QCOMPARE(save->isVisible(), saveAs);
        QCOMPARE(text->isVisible(), exportText);
        ShowFileMenu(f);
        QVERIFY(!save->isEnabled() && !text->isEnabled()); // nothing open yet

        QVERIFY(Load(f, FSource));
        ShowFileMenu(f);
        QCOMPARE(save->isEnabled(), saveAs); // a hidden action never enables
        QCOMPARE(text->isEnabled(), exportText);
        // Hidden for good: opening a file does not bring a missing program's command back.
        QCOMPARE(save->isVisible(), saveAs);
        QCOMPARE(text->isVisible(), exportText);
    }

    void commandLine() {
        TForm1 f;
        QVERIFY(Load(f, FSource));
        TDataBase& db = *f.DataBase();
        QCOMPARE(db.Curve_Count(), 2);
        TAxisState& x = db.Axis_Get(axBottom);
        x.Min = 1000.0 + 4 / 3.0;
        x.Max = 1000.0 + 50 / 3.0;

        const QString target = FTmp.filePath(u"out.csv"_s);
        QStringList args = f.CutterArguments(target, u"csv"_s);
        QCOMPARE(args.size(), 7);
        QCOMPARE(args[0], QDir::toNativeSeparators(FSource));
        QCOMPARE(args[1], QDir::toNativeSeparators(target));
        // The edges read back bit for bit, whatever the locale's decimal sign.
        QCOMPARE(ReadBack(args[2]), x.Min);
        QCOMPARE(ReadBack(args[3]), x.Max);
        QVERIFY(!args[2].contains(u','));
        QCOMPARE(args[4], u"2"_s);
        QCOMPARE(args[5], u"0,2"_s); // the file's channels, not the curves' positions
        QCOMPARE(args[6], u"csv"_s);

        db.Curve_SetActive(0, false);
        args = f.CutterArguments(target, QString());
        QCOMPARE(args.size(), 6);
        QCOMPARE(args[4], u"1"_s);
        QCOMPARE(args[5], u"2"_s);

        db.Curve_SetActive(1, false);
        QVERIFY(f.CutterArguments(target, QString()).isEmpty());
    }

    void cutLoadsBackToWindow_data() {
        QTest::addColumn<bool>("csv");
        QTest::addColumn<bool>("firstOnly");
        QTest::addColumn<QString>("name");
        QTest::newRow("recording, both curves") << false << false << u"both.zeb"_s;
        QTest::newRow("recording, one curve") << false << true << u"one.zeb"_s;
        QTest::newRow("text") << true << false << u"window.csv"_s;
    }

    void cutLoadsBackToWindow() {
        QFETCH(bool, csv);
        QFETCH(bool, firstOnly);
        QFETCH(QString, name);
        SetZebProgramDir(FPrograms);
        TForm1 f;
        QVERIFY(f.CutterAvailable() && f.TextExportAvailable());
        QVERIFY(Load(f, FSource));
        TDataBase& db = *f.DataBase();
        if (firstOnly) db.Curve_SetActive(1, false);
        // Edges on stamps that have no exact decimal form: both must stay inside.
        TAxisState& x = db.Axis_Get(axBottom);
        x.Min = 1000.0 + 5 / 3.0;
        x.Max = 1000.0 + 41 / 3.0;

        const QString target = FTmp.filePath(name);
        AnswerSaveDialog(target);
        QSignalSpy done(&f, &TForm1::cutterFinished);
        Action(f, csv ? u"menFileExportText"_s : u"menFileSaveAs"_s)->trigger();
        QCOMPARE(f.CuttersRunning(), 1);
        QVERIFY(f.StatusText().contains(u"Writing"_s));
        QVERIFY(done.wait(60000));
        QCOMPARE(done.first().first().toInt(), 0);
        QCOMPARE(f.StatusText(), TxtFmt(TTextId::MsgCutterDone, {QDir::toNativeSeparators(target)}));
        QCOMPARE(f.CuttersRunning(), 0);

        if (csv) {
            QFile file(target);
            QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
            const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
            QVERIFY(lines.size() > 1);
            QVERIFY(lines[0].contains(u"Alpha"_s) && lines[0].contains(u"Gamma"_s));
            QVERIFY(!lines[0].contains(u"Beta"_s));
            // One row per stamp inside the window that either curve measured.
            QSet<double> stamps;
            for (int c = 0; c < db.Curve_Count(); ++c)
                for (const tooltest::TPoint& p : tooltest::Points(db, c, x.Min, x.Max))
                    stamps.insert(p.t);
            QCOMPARE(lines.size() - 1, stamps.size());
            return;
        }
        auto cut = tooltest::Load(target);
        QCOMPARE(cut->Curve_Count(), firstOnly ? 1 : 2);
        for (int c = 0; c < cut->Curve_Count(); ++c) {
            QCOMPARE(cut->Curve_NameGet(c), db.Curve_NameGet(c));
            const auto want = tooltest::Points(db, c, x.Min, x.Max);
            QVERIFY(!want.isEmpty());
            QCOMPARE(tooltest::Points(*cut, c, -1e300, 1e300), want);
        }
    }

    // The MATLAB and HDF5 exports hand the same window to the cutter with their kind; what the
    // files hold is checked where the cutter is.
    void arraysHandedOver_data() {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("name");
        QTest::newRow("MATLAB") << u"menFileExportMatlab"_s << u"window.mat"_s;
        QTest::newRow("HDF5") << u"menFileExportHdf5"_s << u"window.h5"_s;
    }
    void arraysHandedOver() {
        QFETCH(QString, action);
        QFETCH(QString, name);
        SetZebProgramDir(FPrograms);
        TForm1 f;
        QVERIFY(Load(f, FSource));
        QVERIFY(Action(f, action)->isVisible());
        const QString target = FTmp.filePath(name);
        AnswerSaveDialog(target);
        QSignalSpy done(&f, &TForm1::cutterFinished);
        Action(f, action)->trigger();
        QVERIFY(done.wait(60000));
        QCOMPARE(done.first().first().toInt(), 0);
        QVERIFY(QFileInfo(target).size() > 0);
        QCOMPARE(f.CutterArguments(target, name.section(u'.', 1)).last(), name.section(u'.', 1));
    }

    void failureInStatusBar() {
        SetZebProgramDir(FPrograms);
        TForm1 f;
        QVERIFY(Load(f, FSource));
        // The source under another name as the target: the cutter refuses, and its own line is shown.
        const QString alias = FTmp.filePath(u"alias.zeb"_s);
        QVERIFY(QFile::link(FSource, alias));
        AnswerSaveDialog(alias);
        QSignalSpy done(&f, &TForm1::cutterFinished);
        Action(f, u"menFileSaveAs"_s)->trigger();
        QVERIFY(done.wait(60000));
        QCOMPARE(done.first().first().toInt(), 3);
        const QString status = f.StatusText();
        QVERIFY2(status.startsWith(u"The cutter stopped with code 3: "_s), qPrintable(status));
        QVERIFY(status.size() > 33);
        QVERIFY(!status.contains(u'\n'));
        // The source is untouched.
        QVERIFY(Load(f, FSource));
        QCOMPARE(f.DataBase()->Curve_Count(), 2);
    }
};

QTEST_MAIN(TstHandoffs)
#include "tst_handoffs.moc"
