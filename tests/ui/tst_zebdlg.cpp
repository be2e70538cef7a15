// TZebDlg driven through the real dialogs offscreen.

#include "config/Language.h"
#include "config/Texts.h"
#include "Files.h"
#include "ui/ZebDlg.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

using namespace zeb;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(zeb::TMsgDlgButtons)
Q_DECLARE_METATYPE(zeb::TMsgDlgBtn)
Q_DECLARE_METATYPE(zeb::TModalResult)

namespace {

using TSaveOp = bool (*)(const QString&, const QString&, QString&, bool, TZebDlg::TOptions);

QPushButton* Button(QDialog* dlg, const QString& name) {
    return dlg->findChild<QPushButton*>(name);
}

// Types a name into a file dialog and confirms it, as a user would.
void TypeAndAccept(QDialog* dlg, const QString& name) {
    auto* fd = qobject_cast<QFileDialog*>(dlg);
    QVERIFY(fd);
    auto* edit = fd->findChild<QLineEdit*>(u"fileNameEdit"_s);
    QVERIFY(edit);
    edit->setText(name);
    dlg->accept();
}

} // namespace

class TstZebDlg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FDir.isValid());
        TZebDlg::SetNativeDialogs(false);
        SwitchTexts(LangEnglish);
    }

    void cleanup() {
        TZebDlg::SetDialogHook({});
        TZebDlg::SetMainWindow(nullptr);
        SwitchTexts(LangEnglish);
        InstallQtTranslations();
    }

    void qtFilter_data() {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("expected");
        QTest::newRow("label shows pattern") << u"ZEB file (*.zeb)|*.zeb"_s << u"ZEB file (*.zeb)"_s;
        QTest::newRow("misspelt label kept") << TZebDlg::JpgFilter() << u"JEPG (*.jpg)"_s;
        QTest::newRow("label without pattern") << u"Text|*.csv;*.txt"_s << u"Text (*.csv *.txt)"_s;
        QTest::newRow("label with ; list") << u"Data (*.a;*.b)|*.a;*.b"_s << u"Data (*.a *.b)"_s;
        QTest::newRow("several entries") << u"A (*.a)|*.a|B (*.b)|*.b"_s << u"A (*.a);;B (*.b)"_s;
        QTest::newRow("label naming other pattern") << u"Old (*.x)|*.y"_s << u"Old (*.x) (*.y)"_s;
        QTest::newRow("pattern missing") << u"Only label"_s << u"Only label"_s;
    }

    void qtFilter() {
        QFETCH(QString, filter);
        QFETCH(QString, expected);
        QCOMPARE(TZebDlg::QtFilter(filter), expected);
    }

    void defaultExtension_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("expected");
        QTest::newRow("bare") << u"data"_s << u".bin"_s << u"data.bin"_s;
        QTest::newRow("has one") << u"data.bin2"_s << u".bin"_s << u"data.bin2"_s;
        QTest::newRow("dot in folder only") << u"/tmp/a.b/data"_s << u".csv"_s << u"/tmp/a.b/data.csv"_s;
        QTest::newRow("trailing dot") << u"data."_s << u".csv"_s << u"data.csv"_s;
        QTest::newRow("no extension wanted") << u"data"_s << QString() << u"data"_s;
        QTest::newRow("empty name") << QString() << u".csv"_s << QString();
    }

    void defaultExtension() {
        QFETCH(QString, name);
        QFETCH(QString, extension);
        QFETCH(QString, expected);
        QCOMPARE(TZebDlg::WithDefaultExtension(name, extension), expected);
    }

    void defaultButton_data() {
        QTest::addColumn<TMsgDlgButtons>("buttons");
        QTest::addColumn<TMsgDlgBtn>("def");
        QTest::addColumn<QString>("expectedDefault"); // empty: none is default
        QTest::addColumn<TModalResult>("onReturn");   // Cancel: Return does nothing, then "Cancel" is clicked
        const TMsgDlgButtons ync = TMsgDlgBtn::Yes | TMsgDlgBtn::No | TMsgDlgBtn::Cancel;
        QTest::newRow("yes/no/cancel, No") << ync << TMsgDlgBtn::No << u"No"_s << TModalResult::No;
        QTest::newRow("yes/no/cancel, Yes") << ync << TMsgDlgBtn::Yes << u"Yes"_s << TModalResult::Yes;
        QTest::newRow("ok/cancel, Cancel") << (TMsgDlgBtn::OK | TMsgDlgBtn::Cancel) << TMsgDlgBtn::Cancel
                                           << u"Cancel"_s << TModalResult::Cancel;
        QTest::newRow("abort/retry/ignore, Ignore")
            << (TMsgDlgBtn::Abort | TMsgDlgBtn::Retry | TMsgDlgBtn::Ignore) << TMsgDlgBtn::Ignore
            << u"Ignore"_s << TModalResult::Ignore;
        // Qt would otherwise make the first accepting button the default.
        QTest::newRow("default not in set, accepting buttons")
            << (TMsgDlgBtn::OK | TMsgDlgBtn::Retry | TMsgDlgBtn::Cancel) << TMsgDlgBtn::Help << QString()
            << TModalResult::Cancel;
        QTest::newRow("default not in set, yes/no/cancel")
            << ync << TMsgDlgBtn::OK << QString() << TModalResult::Cancel;
    }

    void defaultButton() {
        QFETCH(TMsgDlgButtons, buttons);
        QFETCH(TMsgDlgBtn, def);
        QFETCH(QString, expectedDefault);
        QFETCH(TModalResult, onReturn);

        QStringList defaults;
        QString focused;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            for (QPushButton* pb : dlg->findChildren<QPushButton*>())
                if (pb->isDefault()) defaults << pb->objectName();
            if (QWidget* f = dlg->focusWidget()) focused = f->objectName();
            QTest::keyClick(dlg, Qt::Key_Return);
            if (dlg->isVisible()) Button(dlg, u"Cancel"_s)->click();
        });
        const TModalResult result =
            TZebDlg::ShowMsgBox(u"Question?"_s, TMsgDlgType::Confirmation, buttons, def);
        if (expectedDefault.isEmpty()) {
            QCOMPARE(defaults, QStringList());
        } else {
            QCOMPARE(defaults, QStringList{expectedDefault});
            QCOMPARE(focused, expectedDefault);
        }
        QCOMPARE(result, onReturn);
    }

    void escapeAnswers_data() {
        QTest::addColumn<TMsgDlgButtons>("buttons");
        QTest::addColumn<TModalResult>("expected");
        QTest::newRow("yes/no/cancel")
            << (TMsgDlgBtn::Yes | TMsgDlgBtn::No | TMsgDlgBtn::Cancel) << TModalResult::Cancel;
        QTest::newRow("yes/no") << (TMsgDlgBtn::Yes | TMsgDlgBtn::No) << TModalResult::No;
        QTest::newRow("ok only") << TMsgDlgButtons(TMsgDlgBtn::OK) << TModalResult::Ok;
    }

    void escapeAnswers() {
        QFETCH(TMsgDlgButtons, buttons);
        QFETCH(TModalResult, expected);
        TZebDlg::SetDialogHook([](QDialog* dlg) { QTest::keyClick(dlg, Qt::Key_Escape); });
        QCOMPARE(TZebDlg::ShowMsgBox(u"?"_s, TMsgDlgType::Warning, buttons, TMsgDlgBtn::Yes), expected);
    }

    void messageBoxLooksAlike() {
        QString title, text, retry;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            auto* box = qobject_cast<QMessageBox*>(dlg);
            title = box->windowTitle();
            text = box->text();
            icon = box->icon();
            if (QPushButton* pb = Button(dlg, u"Retry"_s)) retry = pb->text();
            dlg->findChildren<QPushButton*>().constLast()->click();
        });
        SwitchTexts(LangEnglish);
        TZebDlg::ShowMsgBox(Txt(TTextId::MsgTimeAxisNote), TMsgDlgType::Warning,
                            TMsgDlgBtn::Retry | TMsgDlgBtn::Cancel, TMsgDlgBtn::Retry);
        QCOMPARE(title, u"Warning"_s);
        QCOMPARE(icon, QMessageBox::Warning);
        QVERIFY(!text.contains(QLatin1Char('\r')));
        QCOMPARE(text.count(QLatin1Char('\n')), 2);
        QCOMPARE(retry, u"&Wiederholen"_s); // the message dialog's own Retry record

        SwitchTexts(LangFrench);
        QCOMPARE(TZebDlg::ShowErrMsg(u"x"_s), TModalResult::Ok);
        QCOMPARE(title, u"Erreur"_s);
        QCOMPARE(icon, QMessageBox::Critical);
    }

    void messageBoxCentredOverMainWindow() {
        QWidget main;
        main.setGeometry(150, 120, 900, 640);
        main.show();
        QVERIFY(QTest::qWaitForWindowExposed(&main));
        TZebDlg::SetMainWindow(&main);
        QPoint centre;
        QWidget* parent = nullptr;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            centre = dlg->frameGeometry().center();
            parent = dlg->parentWidget();
            dlg->findChildren<QPushButton*>().constFirst()->click();
        });
        QCOMPARE(TZebDlg::ShowMsg(u"Centred"_s, TMsgDlgType::Information), TModalResult::Ok);
        QCOMPARE(parent, &main);
        const QPoint delta = centre - main.frameGeometry().center();
        QVERIFY2(delta.manhattanLength() <= 4, qPrintable(u"off by %1,%2"_s.arg(delta.x()).arg(delta.y())));
    }

    void cursorSavedAndRestored() {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        QList<Qt::CursorShape> during;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            during << QGuiApplication::overrideCursor()->shape();
            if (auto* fd = qobject_cast<QFileDialog*>(dlg))
                fd->reject();
            else
                dlg->findChildren<QPushButton*>().constFirst()->click();
        });
        TZebDlg::ShowMsg(u"busy"_s, TMsgDlgType::Information);
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QString name;
        QVERIFY(!TZebDlg::SaveCsvFile(QString(), FDir.path(), name));
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QCOMPARE(during, (QList<Qt::CursorShape>{Qt::ArrowCursor, Qt::ArrowCursor}));
        QGuiApplication::restoreOverrideCursor();
        QVERIFY(!QGuiApplication::overrideCursor());

        // Without an hourglass nothing is forced onto the dialog.
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            QVERIFY(!QGuiApplication::overrideCursor());
            dlg->findChildren<QPushButton*>().constFirst()->click();
        });
        TZebDlg::ShowMsg(u"idle"_s, TMsgDlgType::Information);
    }

    void saveVariants_data() {
        QTest::addColumn<void*>("op");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("saved");
        const auto row = [](const char* tag, TSaveOp op, const QString& filter, const QString& typed,
                            const QString& saved) {
            QTest::newRow(tag) << reinterpret_cast<void*>(op) << filter << typed << saved;
        };
        row("zeb", &TZebDlg::SaveZebFile, u"ZEB file (*.zeb)"_s, u"rec"_s, u"rec.zeb"_s);
        row("mse", &TZebDlg::SaveMseFile, u"ZEB template (*.mse)"_s, u"look"_s, u"look.mse"_s);
        row("matlab", &TZebDlg::SaveMatlabFile, u"MATLAB (*.mat)"_s, u"m"_s, u"m.mat"_s);
        row("binary", &TZebDlg::SaveBinaryFile, u"ZEB Binary file (*.bin)"_s, u"b"_s, u"b.bin"_s);
        row("binary with time", &TZebDlg::SaveBinaryTimeFile, u"ZEB Binary2 file with time mark (*.bin2)"_s,
            u"data"_s, u"data.bin"_s);
        row("binary with time, typed extension", &TZebDlg::SaveBinaryTimeFile,
            u"ZEB Binary2 file with time mark (*.bin2)"_s, u"data.bin2"_s, u"data.bin2"_s);
        row("bitmap", &TZebDlg::SaveBmpFile, u"Bitmap (*.bmp)"_s, u"pic"_s, u"pic.bmp"_s);
        row("jpeg", &TZebDlg::SaveJpgFile, u"JEPG (*.jpg)"_s, u"pic"_s, u"pic.jpg"_s);
        row("csv", &TZebDlg::SaveCsvFile, u"Text (*.csv)"_s, u"table"_s, u"table.csv"_s);
    }

    void saveVariants() {
        QFETCH(void*, op);
        QFETCH(QString, filter);
        QFETCH(QString, typed);
        QFETCH(QString, saved);
        QStringList filters;
        QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            auto* fd = qobject_cast<QFileDialog*>(dlg);
            filters = fd->nameFilters();
            mode = fd->acceptMode();
            TypeAndAccept(dlg, typed);
        });
        QString name;
        QVERIFY(reinterpret_cast<TSaveOp>(op)(u"Save"_s, FDir.path(), name, true, {}));
        QCOMPARE(filters, QStringList{filter});
        QCOMPARE(mode, QFileDialog::AcceptSave);
        QCOMPARE(name, QDir(FDir.path()).filePath(saved));
    }

    void saveStartsAtGivenPath() {
        const QString sub = QDir(FDir.path()).filePath(u"sub"_s);
        QVERIFY(QDir().mkpath(sub));
        QString folder, shownName;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            auto* fd = qobject_cast<QFileDialog*>(dlg);
            folder = fd->directory().absolutePath();
            shownName = fd->findChild<QLineEdit*>(u"fileNameEdit"_s)->text();
            dlg->accept();
        });
        // The folder comes from the name, not from the initial folder.
        QString name = sub + u"/export.csv"_s;
        QVERIFY(TZebDlg::SaveCsvFile(QString(), FDir.path(), name));
        QCOMPARE(folder, sub);
        QCOMPARE(shownName, u"export.csv"_s);
        QCOMPARE(name, sub + u"/export.csv"_s);

        // A bare name starts in the initial folder.
        name = u"bare.csv"_s;
        QVERIFY(TZebDlg::SaveCsvFile(QString(), sub, name));
        QCOMPARE(folder, sub);
        QCOMPARE(name, sub + u"/bare.csv"_s);
    }

    void cancelKeepsName() {
        TZebDlg::SetDialogHook([](QDialog* dlg) { dlg->reject(); });
        QString name = u"keep.zeb"_s;
        QVERIFY(!TZebDlg::OpenZebFile(QString(), FDir.path(), name));
        QVERIFY(!TZebDlg::SaveZebFile(QString(), FDir.path(), name));
        QString folder = FDir.path();
        QVERIFY(!TZebDlg::SelectDirectory(QString(), folder));
        QColor color(Qt::red);
        QVERIFY(!TZebDlg::SelectColor(color));
        QCOMPARE(name, u"keep.zeb"_s);
        QCOMPARE(folder, FDir.path());
        QCOMPARE(color, QColor(Qt::red));
    }

    void createMseFile() {
        const QString target = QDir(FDir.path()).filePath(u"new.mse"_s);
        TZebDlg::SetDialogHook([&](QDialog* dlg) { TypeAndAccept(dlg, target.chopped(4)); });
        QString name = QDir(FDir.path()).filePath(u"x"_s);
        QVERIFY(TZebDlg::CreateMseFile(name));
        QCOMPARE(name, target);
        QVERIFY(QFile::exists(target));
        QCOMPARE(QFileInfo(target).size(), 0);

        const QString other = QDir(FDir.path()).filePath(u"cancelled.mse"_s);
        TZebDlg::SetDialogHook([](QDialog* dlg) { dlg->reject(); });
        name = other;
        QVERIFY(!TZebDlg::CreateMseFile(name));
        QVERIFY(!QFile::exists(other));
    }

    void openZebFile() {
        const QString rec = QDir(FDir.path()).filePath(u"open.zeb"_s);
        QVERIFY(WriteBytes(rec, {}));

        QStringList filters;
        QFileDialog::FileMode mode = QFileDialog::AnyFile;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            auto* fd = qobject_cast<QFileDialog*>(dlg);
            filters = fd->nameFilters();
            mode = fd->fileMode();
            TypeAndAccept(dlg, u"open"_s); // the default extension finds open.zeb
        });
        QString name;
        QVERIFY(TZebDlg::OpenZebFile(u"Open"_s, FDir.path(), name, true, true));
        QCOMPARE(name, rec);
        QCOMPARE(mode, QFileDialog::ExistingFile);
        QCOMPARE(filters, (QStringList{u"ZEB file (*.zeb)"_s, u"ZEB file (*.dvk)"_s, u"All files (*)"_s}));
    }

    void openMultipleZebFile() {
        QStringList expected;
        for (const QString& base : {u"m1.zeb"_s, u"m2.zeb"_s}) {
            expected << QDir(FDir.path()).filePath(base);
            QVERIFY(WriteBytes(expected.last(), {}));
        }
        TZebDlg::SetDialogHook([](QDialog* dlg) { TypeAndAccept(dlg, u"\"m1.zeb\" \"m2.zeb\""_s); });
        QStringList names;
        QVERIFY(TZebDlg::OpenMultipleZebFile(QString(), FDir.path(), names));
        names.sort();
        QCOMPARE(names, expected);
    }

    void selectDirectory() {
        const QString sub = QDir(FDir.path()).filePath(u"folder"_s);
        QVERIFY(QDir().mkpath(sub));
        QString title, start;
        QPoint centre;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            auto* fd = qobject_cast<QFileDialog*>(dlg);
            title = fd->windowTitle();
            start = fd->directory().absolutePath();
            centre = fd->frameGeometry().center();
            dlg->accept();
        });
        SwitchTexts(LangGerman);
        QString folder = sub;
        QVERIFY(TZebDlg::SelectDirectory(QString(), folder));
        QCOMPARE(title, u"Verzeichnis wählen"_s);
        QCOMPARE(start, sub);
        QCOMPARE(folder, sub);
        const QPoint delta = centre - QGuiApplication::primaryScreen()->availableGeometry().center();
        QVERIFY2(delta.manhattanLength() <= 4, qPrintable(u"off by %1,%2"_s.arg(delta.x()).arg(delta.y())));

        QVERIFY(TZebDlg::SelectDirectory(u"Export"_s, folder));
        QCOMPARE(title, u"Export"_s);
    }

    void selectColor() {
        QColor custom, current;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            auto* cd = qobject_cast<QColorDialog*>(dlg);
            custom = QColorDialog::customColor(0);
            current = cd->currentColor();
            cd->setCurrentColor(QColor(10, 20, 30));
            cd->accept();
        });
        QColor color(200, 100, 50);
        QVERIFY(TZebDlg::SelectColor(color));
        QCOMPARE(custom, QColor(200, 100, 50));
        QCOMPARE(current, QColor(200, 100, 50));
        QCOMPARE(color, QColor(10, 20, 30));
    }

    // The captions the user sees, ours and Qt's own, in each language.
    void dialogsInEachLanguage_data() {
        QTest::addColumn<int>("language");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("yes");
        QTest::addColumn<QString>("qtCancel");
        QTest::addColumn<QString>("zebFilter");
        QTest::newRow("German") << int(LangGerman) << u"Bestätigen"_s << u"&Ja"_s << u"Abbrechen"_s
                                << u"ZEB-Datei (*.zeb)"_s;
        QTest::newRow("English") << int(LangEnglish) << u"Confirm"_s << u"&Yes"_s << u"Cancel"_s
                                 << u"ZEB file (*.zeb)"_s;
        QTest::newRow("French") << int(LangFrench) << u"Confirmation"_s << u"&Oui"_s << u"Annuler"_s
                                << u"Fichier ZEB (*.zeb)"_s;
    }

    void dialogsInEachLanguage() {
        QFETCH(int, language);
        QFETCH(QString, title);
        QFETCH(QString, yes);
        QFETCH(QString, qtCancel);
        QFETCH(QString, zebFilter);
        SwitchTexts(language);
        if (!InstallQtTranslations()) QSKIP("Qt's translations are not installed");

        QString shownTitle, shownYes;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            shownTitle = dlg->windowTitle();
            shownYes = Button(dlg, u"Yes"_s)->text();
            Button(dlg, u"No"_s)->click();
        });
        QCOMPARE(TZebDlg::ShowMsgBox(Txt(TTextId::MsgSaveSettings), TMsgDlgType::Confirmation,
                                     TMsgDlgBtn::Yes | TMsgDlgBtn::No | TMsgDlgBtn::Cancel, TMsgDlgBtn::Yes),
                 TModalResult::No);
        QCOMPARE(shownTitle, title);
        QCOMPARE(shownYes, yes);

        QString cancel;
        QStringList filters;
        TZebDlg::SetDialogHook([&](QDialog* dlg) {
            auto* box = dlg->findChild<QDialogButtonBox*>();
            cancel = box->button(QDialogButtonBox::Cancel)->text();
            filters = qobject_cast<QFileDialog*>(dlg)->nameFilters();
            dlg->reject();
        });
        QString name;
        TZebDlg::OpenZebFile(QString(), FDir.path(), name);
        QCOMPARE(cancel, qtCancel);
        QCOMPARE(filters, QStringList{zebFilter});
    }

private:
    QTemporaryDir FDir;
};

QTEST_MAIN(TstZebDlg)
#include "tst_zebdlg.moc"
