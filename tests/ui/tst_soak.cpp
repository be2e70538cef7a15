// Many loads in one process: opened and cancelled again and again, and the window destroyed
// in the middle of one. Run under the sanitizers this finds leaks, use after free and loader
// threads that outlive their window.

#include "MainFixture.h"
#include "store/DataBase.h"
#include "store/FileThread.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Threads of this process, from the system's own list; Qt's idle pool workers, which wait
// half a minute before they go, are not ours.
int ThreadCount() {
    int n = 0;
    for (const QString& task : QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(u"/proc/self/task/"_s + task + u"/comm"_s);
        if (comm.open(QIODevice::ReadOnly) && !comm.readAll().startsWith("Thread (pooled)")) ++n;
    }
    return n;
}

// A load under way: its first block has been reported.
bool WaitForProgress(TForm1& f) {
    return QTest::qWaitFor([&] { return f.StatusText().contains(zeb::Txt(zeb::TTextId::StatusBlock)); }, 60000);
}

} // namespace

class TstSoak : public QObject {
    Q_OBJECT

    QTemporaryDir FTmp;
    QString FBig, FSmall;
    int FBaseThreads = 0;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FTmp.isValid());
        UseTestEnvironment(FTmp);
        zeb::TZebDlg::SetDialogHook([](QDialog* dlg) { dlg->reject(); });
        FBig = FTmp.filePath(u"big.zeb"_s);
        FSmall = FTmp.filePath(u"small.zeb"_s);
        QVERIFY(MakeRecording(FBig, {.channels = 4, .records = RecordsFor(2000000, 4)}));
        QVERIFY(MakeRecording(FSmall, {.channels = 2, .records = 500}));
        // Qt starts some helper threads of its own on first use: one whole load before counting.
        {
            TForm1 f;
            QSignalSpy done(&f, &TForm1::loadFinished);
            QVERIFY(f.OpenFile(FSmall));
            QVERIFY(done.wait(60000));
        }
        QCoreApplication::processEvents();
        FBaseThreads = ThreadCount();
    }

    void openAndCancelManyTimes() {
        TForm1 f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        for (int round = 0; round < 20; ++round) {
            QSignalSpy done(&f, &TForm1::loadFinished);
            QVERIFY(f.OpenFile(FBig));
            QVERIFY(WaitForProgress(f));
            f.GUI_FileCancel();
            QVERIFY(done.wait(60000));
            const int result = int(done.first().first().value<TLoadReport>());
            // A fast machine may have read the whole file before the cancel arrived.
            QVERIFY2(result == int(TLoadReport::ResultCancelled) || result == int(TLoadReport::ResultOk),
                     qPrintable(QString::number(result)));
            QVERIFY(!f.IsLoading());
        }
        // The last load in full: the window still works after all of it.
        QSignalSpy done(&f, &TForm1::loadFinished);
        QVERIFY(f.OpenFile(FSmall));
        QVERIFY(done.wait(60000));
        QCOMPARE(int(done.first().first().value<TLoadReport>()), int(TLoadReport::ResultOk));
        QCOMPARE(f.DataBase()->Curve_Count(), 2);
    }

    // Destroyed while its loader reads: the loader stops and goes with the window.
    void destroyDuringLoad() {
        for (int round = 0; round < 5; ++round) {
            auto f = std::make_unique<TForm1>();
            f->show();
            QVERIFY(f->OpenFile(FBig));
            QVERIFY(WaitForProgress(*f));
            f.reset();
        }
        QTRY_COMPARE_WITH_TIMEOUT(ThreadCount(), FBaseThreads, 10000);
    }
};

QTEST_MAIN(TstSoak)
#include "tst_soak.moc"
