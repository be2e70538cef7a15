// The loader thread: reports in order, the large-file question and its answers,
// cancelling between blocks, bad and damaged files, closing during a load.

#include "MakeRecording.h"
#include "RecordingBuilder.h"
#include "store/DataBase.h"
#include "store/FileThread.h"

#include <QEventLoop>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

struct TRun {
    QList<int> reports;   // every index except progress
    int progress = 0;     // number of progress reports
    QStringList texts;    // texts of the non-progress reports
    int asked = 0;
    bool onGuiThread = true;
};

TRun Load(TDataBase& db, const QString& path, std::optional<int> answer, int cancelAtBlock = -1) {
    TRun run;
    db.AddFile(path);
    QEventLoop loop;
    QThread* gui = QThread::currentThread();
    std::unique_ptr<TFileThread> thread;
    TAskProc ask;
    if (answer) ask = [&run, a = *answer](TBigDataAnswer& res) {
        ++run.asked;
        res = TBigDataAnswer(a); // the dialog's order: stop, show, continue, previewer
    };
    thread = std::make_unique<TFileThread>(
        &db, path,
        [&](TLoadReport report, const QString& text) {
            run.onGuiThread = run.onGuiThread && QThread::currentThread() == gui;
            const int index = int(report);
            if (report == TLoadReport::Progress) {
                ++run.progress;
                if (run.progress == cancelAtBlock) thread->Terminate();
                return;
            }
            run.reports << index;
            run.texts << text;
            if (index < 0) loop.quit();
        },
        ask);
    QTimer::singleShot(120000, &loop, &QEventLoop::quit);
    loop.exec();
    thread.reset();
    return run;
}

} // namespace

class TstFileThread : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;
    QString FAtLimit, FPastLimit;
    qint64 FPerBlock = 0;

private Q_SLOTS:
    void initTestCase() {
        FAtLimit = FDir.filePath(QStringLiteral("at.zeb"));
        QVERIFY(MakeRecording(FAtLimit, {.channels = 1, .records = 2500000}));
        FPastLimit = FDir.filePath(QStringLiteral("past.zeb"));
        // three blocks past the limit
        QVERIFY(MakeRecording(FPastLimit, {.channels = 1, .records = 2500000 + 3 * 5460}));
        FPerBlock = 65535 / 12;
    }

    void exactlyAtTheLimitIsNeverAsked() {
        TDataBase db;
        const TRun run = Load(db, FAtLimit, 0);
        QCOMPARE(run.asked, 0);
        QCOMPARE(run.reports, (QList<int>{5, -1}));
        QCOMPARE(run.texts.first(), QStringLiteral("2500000"));
        QCOMPARE(db.Data(0).Count(), 2500000);
        QVERIFY(run.onGuiThread);
    }

    void answers_data() {
        QTest::addColumn<int>("answer"); // -100: no ask handler
        QTest::addColumn<QList<int>>("reports");
        QTest::addColumn<bool>("all");
        QTest::newRow("1 keep what was read") << 1 << QList<int>{5, -1} << false;
        QTest::newRow("2 continue") << 2 << QList<int>{5, -1} << true;
        QTest::newRow("3 previewer") << 3 << QList<int>{5, -5} << false;
        QTest::newRow("0 stop") << 0 << QList<int>{1, -3} << false;
        QTest::newRow("7 other") << 7 << QList<int>{1, -3} << false;
        QTest::newRow("no handler") << -100 << QList<int>{1, -3} << false;
    }
    void answers() {
        QFETCH(int, answer);
        QFETCH(QList<int>, reports);
        QFETCH(bool, all);
        TDataBase db;
        const TRun run = Load(db, FPastLimit, answer == -100 ? std::nullopt : std::optional<int>(answer));
        QCOMPARE(run.reports, reports);
        QCOMPARE(run.asked, answer == -100 ? 0 : 1); // asked once, even when reading goes on
        const qint64 n = db.Data(0).Count();
        if (all) {
            QCOMPARE(n, 2500000 + 3 * 5460);
        } else {
            // Asked after the first block that crossed the limit: the values read stay.
            QVERIFY(n > 2500000);
            QVERIFY(n <= 2500000 + FPerBlock);
        }
        if (reports.first() == 5) QCOMPARE(run.texts.first().toLongLong(), n);
    }

    void cancellingBetweenBlocks() {
        TDataBase db;
        const TRun run = Load(db, FAtLimit, 2, 20);
        QCOMPARE(run.reports, (QList<int>{1, -3}));
        QCOMPARE(run.progress, 20);
        // The header blocks and the data blocks handled before the cancel stay in the store.
        QVERIFY(db.Data(0).Count() > 0);
        QVERIFY(db.Data(0).Count() < 20 * FPerBlock);
        QCOMPARE(db.Data(0).Count() % FPerBlock, 0); // whole blocks only
    }

    void progressForEveryBlock() {
        const QString path = FDir.filePath(QStringLiteral("skip.zeb"));
        TRecordingBuilder b;
        b.Header().Block(3, TRecordingBuilder::Strs({"M"})).Block(4, "x").Block(99, "yy").Block(
            8, TRecordingBuilder::Record(1, {TRecordingBuilder::F(1)}));
        QVERIFY(b.Save(path));
        TDataBase db;
        const TRun run = Load(db, path, 2);
        QCOMPARE(run.progress, 4);
        QCOMPARE(run.reports, (QList<int>{5, -1}));
        QCOMPARE(run.texts.first(), QStringLiteral("1"));
    }

    void badFiles_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("keepsData");
        QTest::newRow("wrong magic") << TRecordingBuilder().Header("NOTAMAGIC").Compressed() << false;
        QTest::newRow("not zlib") << QByteArray("hello world") << false;
        QTest::newRow("empty file") << QByteArray() << false;
        QByteArray noise(40000, Qt::Uninitialized);
        quint32 x = 7;
        for (char& c : noise) c = char((x = x * 1664525u + 1013904223u) >> 24);
        QByteArray payload;
        for (int i = 0; i < 1000; ++i) payload += TRecordingBuilder::Record(i, {TRecordingBuilder::F(float(i))});
        QByteArray damaged = TRecordingBuilder()
                                 .Header()
                                 .Block(3, TRecordingBuilder::Strs({"M"}))
                                 .Block(8, payload)
                                 .Block(9, noise)
                                 .Block(8, payload)
                                 .Compressed();
        damaged[damaged.size() - 100] = char(damaged[damaged.size() - 100] ^ 0x55);
        QTest::newRow("damaged mid-file") << damaged << true;
    }
    void badFiles() {
        QFETCH(QByteArray, content);
        QFETCH(bool, keepsData);
        const QString path = FDir.filePath(QStringLiteral("bad.zeb"));
        QVERIFY(TRecordingBuilder::SaveBytes(path, content));
        TDataBase db;
        const TRun run = Load(db, path, 2);
        QCOMPARE(run.reports, (QList<int>{2, -2}));
        if (keepsData) QCOMPARE(db.Data(0).Count(), 1000);
        else QCOMPARE(db.Curve_Count(), 0);
        QVERIFY(!db.IsLoading());
    }

    void missingFileIsAnError() {
        TDataBase db;
        const TRun run = Load(db, FDir.filePath(QStringLiteral("nope.zeb")), 2);
        QCOMPARE(run.reports, (QList<int>{2, -2}));
    }

    void closingDuringALoadLosesNothingAndHangsNot() {
        TDataBase db;
        db.AddFile(FPastLimit);
        int reports = 0;
        {
            TFileThread thread(&db, FPastLimit, [&](TLoadReport, const QString&) { ++reports; }, {});
            // Destroyed once it has begun to report, while it may be waiting on this thread.
            QTRY_VERIFY_WITH_TIMEOUT(reports > 0, 60000);
        }
        QVERIFY(!db.IsLoading());
        const qint64 n = db.Curve_Count() > 0 ? db.Data(0).Count() : 0;
        QVERIFY(n >= 0 && n <= 2500000 + 3 * 5460);
    }
};

QTEST_GUILESS_MAIN(TstFileThread)
#include "tst_filethread.moc"
