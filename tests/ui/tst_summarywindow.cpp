// The summary window as a user works it: a folder dropped onto the viewer, the rows sorted by a
// number column, the failed curves alone, a double click that opens the recording.

#include "MainFixture.h"
#include "RecordingGenerator.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"
#include "ui/SummaryWindow.h"
#include "ui/ZebDlg.h"

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace zeb;

class TstSummaryWindow : public QObject {
    Q_OBJECT
    QTemporaryDir FTmp;
    QString FFolder;

private Q_SLOTS:
    void initTestCase() {
        qputenv("ZEB_SETTINGS_FILE", FTmp.filePath(u"settings.ini"_s).toLocal8Bit());
        SwitchTexts(LangEnglish);
        TZebDlg::SetNativeDialogs(false);
        FFolder = FTmp.filePath(u"shipment"_s);
        QVERIFY(QDir().mkpath(FFolder));
        for (int i = 0; i < 5; ++i) {
            TGenOptions o;
            o.seed = quint64(40 + i);
            o.channels = 1 + i % 3;
            o.records = 2000 + 700 * i;
            o.limits = i != 2;
            QVERIFY(WriteRecording(QDir(FFolder).filePath(u"logger-%1.zeb"_s.arg(i)), o));
        }
    }

    void droppedFolderSummedUp() {
        TForm1 f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(FFolder)});
        const QPoint at = f.rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&f, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&f, &drop);
        QTRY_VERIFY(f.findChild<TfrmSummary*>() && f.findChild<TfrmSummary*>()->isVisible());
        auto* summary = f.findChild<TfrmSummary*>();
        const std::vector<TSummaryRow> expected = TSummaryRun{}.Run(RecordingsInFolder(FFolder), {});
        QCOMPARE(summary->Rows().size(), expected.size());
        QAbstractItemModel* model = summary->Table()->model();
        QCOMPARE(model->rowCount(), int(expected.size()));
        const TSummaryCounts counts = CountSummary(expected);
        QVERIFY(summary->findChild<QLabel*>(u"lblCounts"_s)->text().startsWith(u"5 recordings"_s));

        // Sorted by the number of values, most first: as numbers, not as texts.
        summary->Table()->sortByColumn(7, Qt::DescendingOrder);
        for (int r = 1; r < model->rowCount(); ++r)
            QVERIFY(model->index(r - 1, 7).data().toString().toLongLong() >= model->index(r, 7).data().toString().toLongLong());

        // The failed curves alone.
        summary->findChild<QCheckBox*>(u"chkFailedOnly"_s)->setChecked(true);
        QCOMPARE(model->rowCount(), counts.Failed);
        for (int r = 0; r < model->rowCount(); ++r) QCOMPARE(model->index(r, 17).data().toString(), u"failed"_s);

        // A double click opens the row's recording in the viewer.
        QSignalSpy loaded(&f, &TForm1::loadFinished);
        const QString file = QDir(FFolder).filePath(model->index(0, 0).data().toString());
        Q_EMIT summary->Table()->doubleClicked(model->index(0, 2));
        QVERIFY(loaded.wait(60000));
        QCOMPARE(f.DataBase()->FileName(), file);
    }

    // A folder without recordings says so, and opens nothing.
    void emptyFolderSaysSo() {
        const QString empty = FTmp.filePath(u"empty"_s);
        QVERIFY(QDir().mkpath(empty));
        QStringList shown;
        TZebDlg::SetDialogHook([&shown](QDialog* dlg) {
            if (auto* box = qobject_cast<QMessageBox*>(dlg)) shown << box->text();
            dlg->reject();
        });
        TForm1 f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(empty)});
        QDragEnterEvent enter(f.rect().center(), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&f, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(f.rect().center(), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&f, &drop);
        QTRY_COMPARE(shown.size(), 1);
        QCOMPARE(shown[0], TxtFmt(TTextId::SumNoRecordings, {QDir::toNativeSeparators(empty)}));
        QVERIFY(!f.findChild<TfrmSummary*>());
        TZebDlg::SetDialogHook(nullptr);
    }

    // The menu's command, in the user's language, and the window's texts with it.
    void texts_data() {
        QTest::addColumn<int>("language");
        QTest::newRow("German") << int(LangGerman);
        QTest::newRow("English") << int(LangEnglish);
        QTest::newRow("French") << int(LangFrench);
    }
    void texts() {
        QFETCH(int, language);
        SwitchTexts(language);
        TForm1 f;
        QCOMPARE(Action(f, "menFileSummary")->text(), TxtIn(TTextId::MenuFileSummary, language));
        TfrmSummary summary;
        QCOMPARE(summary.windowTitle(), TxtIn(TTextId::SumCaption, language));
        QVERIFY(summary.Summarise(RecordingsInFolder(FFolder), {}));
        const QStringList titles = SplitQuotedList(TxtIn(TTextId::SumColumns, language));
        QCOMPARE(titles.size(), 18);
        for (int c = 0; c < 18; ++c)
            QCOMPARE(summary.Table()->model()->headerData(c, Qt::Horizontal).toString(), titles[c]);
        SwitchTexts(LangEnglish);
    }
};

QTEST_MAIN(TstSummaryWindow)
#include "tst_summarywindow.moc"
