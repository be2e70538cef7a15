// The loader's walk: each rule on a hand-built file, truncation at every byte and damage.

#include "CollectingReceiver.h"
#include "RecordingBuilder.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>

using B = TRecordingBuilder;
using TEnd = TRecordingWalk::TEnd;

namespace {
constexpr quint32 kNone = 0xFFFFFFFFu;
constexpr quint32 kGap = 0xFFFFFFFEu;

// Header plus a channel list of two curves.
B TwoCurves() { return std::move(B().Header().Block(3, B::Strs({"M1", "M2"}))); }
} // namespace

class TstWalk : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;

    TWalkResult Walk(const B& b, TCollectingReceiver& r, int variant = 0) {
        const QString path = FDir.filePath(QStringLiteral("w.zeb"));
        if (!b.Save(path)) return {};
        return WalkFile(path, r, variant);
    }

private Q_SLOTS:
    void initTestCase() { ChooseInflaterFromEnvironment(); }

    // How a walk ends early, and the blocks it handed on before.
    void earlyEnds_data() {
        QTest::addColumn<QByteArray>("plain");
        QTest::addColumn<int>("end");
        QTest::addColumn<QList<int>>("blocks");
        QTest::newRow("header only: an empty recording") << B().Header().Plain() << int(TEnd::EndOfStream)
                                                         << QList<int>{};
        QTest::newRow("bad header: before any block")
            << B().Header("VELMORANTX").Block(3, B::Strs({"M1"})).Plain() << int(TEnd::BadHeader) << QList<int>{};
        QTest::newRow("empty payload ends the walk")
            << TwoCurves().Block(9, {}).Block(9, B::Str("never")).Plain() << int(TEnd::EmptyBlock) << QList<int>{3};
    }
    void earlyEnds() {
        QFETCH(QByteArray, plain);
        QFETCH(int, end);
        QFETCH(QList<int>, blocks);
        TCollectingReceiver r;
        const auto res = Walk(B().Raw(plain), r);
        QCOMPARE(int(res.end), end);
        QCOMPARE(r.blockIds, blocks);
    }

    void creatorRules_data() {
        QTest::addColumn<QByteArray>("blocks");
        QTest::addColumn<QString>("creator");
        const QByteArray b1 = B().Block(1, B::Str("first.exe")).Plain();
        const QByteArray b1b = B().Block(1, B::Str("second.exe")).Plain();
        const QByteArray b20 = B().Block(20, B::Strs({"prog.exe", "2.1"})).Plain();
        QTest::newRow("block 1") << b1 << "first.exe";
        QTest::newRow("second block 1 ignored") << b1 + b1b << "first.exe";
        QTest::newRow("20 replaces 1") << b1 + b20 << "prog.exe [V2.1]";
        QTest::newRow("1 after 20 leaves 20") << b20 + b1 << "prog.exe [V2.1]";
    }
    void creatorRules() {
        QFETCH(QByteArray, blocks);
        QFETCH(QString, creator);
        TCollectingReceiver r;
        Walk((B().Header().Raw(blocks)), r);
        QCOMPARE(r.creator, creator);
    }

    void readerMarkerOnlyForTheReader_data() {
        QTest::addColumn<QByteArray>("creatorBlock");
        QTest::addColumn<bool>("marked");
        QTest::newRow("reader") << B().Block(1, B::Str("zeblog_reader.exe")).Plain() << true;
        QTest::newRow("other program") << B().Block(1, B::Str("zeb.exe")).Plain() << false;
        QTest::newRow("reader with version") << B().Block(20, B::Strs({"zeblog_reader.exe", "1"})).Plain() << false;
        QTest::newRow("no creator") << QByteArray() << false;
    }
    void readerMarkerOnlyForTheReader() {
        QFETCH(QByteArray, creatorBlock);
        QFETCH(bool, marked);
        TCollectingReceiver r;
        Walk((B().Header().Raw(creatorBlock).Block(14, "\x01")), r);
        QCOMPARE(r.readerMarker, marked);
    }

    void headerBlocksFillTheCurves() {
        TCollectingReceiver r;
        const auto res = Walk((TwoCurves()
                                            .Block(2, B::Double(8826.5))
                                            .Block(6, B::Strs({"Temp", "Hum"}))
                                            .Block(7, B::Strs({"\xB0" "C", "%rH"}))
                                            .Block(13, B::Strs({"L-1", "L-2"}))
                                            .Block(9, B::Str("Cold room"))
                                            .Block(11, B::Word(4) + B::Word(1) + B::Single(2.5f) + B::Single(8.0f) +
                                                           B::Word(1) + B::Word(0) + B::Single(-1) + B::Single(0))),
                              r);
        QCOMPARE(res.end, TEnd::EndOfStream);
        QCOMPARE(r.startDays, 8826.5);
        QCOMPARE(r.zebName, QStringLiteral("Cold room"));
        QCOMPARE(r.loggerName, QStringLiteral("L-1"));
        QCOMPARE(r.mode, 3);
        QCOMPARE(int(r.curves.size()), 2);
        QCOMPARE(r.curves[0].module, QStringLiteral("M1"));
        QCOMPARE(r.curves[1].channel, QStringLiteral("Hum"));
        QCOMPARE(r.curves[0].unit, QStringLiteral("°C"));
        QCOMPARE(r.curves[1].logger, QStringLiteral("L-2"));
        QCOMPARE(r.curves[0].alarm, 4);
        QCOMPARE(r.curves[0].record, 1);
        QCOMPARE(r.curves[0].value1, 2.5);
        QCOMPARE(r.curves[0].value2, 8.0);
        QCOMPARE(r.curves[1].alarm, 1);
        QCOMPARE(r.curves[1].value1, -1.0);
        QCOMPARE(r.clears, 0);
    }

    void moreRecordsThanCurves() {
        TCollectingReceiver r;
        Walk((TwoCurves()
                           .Block(6, B::Strs({"a", "b", "c"}))
                           .Block(13, B::Strs({"x", "y", "z"}))
                           .Block(11, B::Word(2) + B::Word(1) + B::Single(1) + B::Single(2) + B::Word(3) +
                                          B::Word(1) + B::Single(3) + B::Single(4) + B::Word(4) + B::Word(1) +
                                          B::Single(5) + B::Single(6))),
             r);
        QCOMPARE(int(r.curves.size()), 2);
        QCOMPARE(r.curves[1].channel, QStringLiteral("b"));
        QCOMPARE(r.loggerName, QStringLiteral("x"));
        // One limit record too many: no curve keeps an alarm.
        QCOMPARE(r.clears, 1);
        QCOMPARE(r.curves[0].alarm, 0);
        QCOMPARE(r.curves[1].alarm, 0);
    }

    void loggerNamesWithoutCurves() {
        TCollectingReceiver r;
        r.loggerName = QStringLiteral("stale");
        Walk((B().Header().Block(13, B::Strs({"x"}))), r);
        QCOMPARE(r.loggerName, QString());
        QCOMPARE(r.mode, 3);
    }

    void runRecordRule() {
        // A record that would start in the last byte is not read: the lone trailing byte
        // neither makes a curve nor raises an error.
        TCollectingReceiver r;
        const auto res = Walk((B().Header().Block(3, B::Strs({"M1"}) + "\x05")), r);
        QCOMPARE(int(r.curves.size()), 1);
        QCOMPARE(res.end, TEnd::EndOfStream);
        // Two bytes left: a record starts and its string runs past the payload.
        TCollectingReceiver r2;
        const auto res2 = Walk((B().Header().Block(3, B::Strs({"M1"}) + B::Word(7))), r2);
        QCOMPARE(int(r2.curves.size()), 1);
        QCOMPARE(res2.end, TEnd::Damaged);
    }

    void dataPatterns() {
        TCollectingReceiver r;
        const auto res = Walk((TwoCurves().Block(
                                  8, B::Record(1.0, {B::F(1.5f), kNone}) + B::Record(2.0, {kGap, B::F(-3.0f)}) +
                                         B::Record(3.0, {kNone, kGap}) + B::Record(4.0, {B::F(4.5f), kNone}) +
                                         B::Record(5.0, {B::F(5.5f), B::F(7.0f)}))),
                              r);
        QCOMPARE(res.end, TEnd::EndOfStream);
        QCOMPARE(res.values, 7); // FFFFFFFF is not counted, FFFFFFFE is
        const auto& a = r.curves[0];
        QCOMPARE(a.t, (std::vector<double>{86400.0, 172800.0, 345600.0, 432000.0}));
        QCOMPARE(a.v, (std::vector<double>{1.5, 0.0, 4.5, 5.5}));
        QCOMPARE(a.kind, (std::vector<TPointKind>{TPointKind::Value, TPointKind::Gap, TPointKind::GapEnd,
                                                  TPointKind::Value}));
        const auto& b = r.curves[1];
        QCOMPARE(b.t, (std::vector<double>{172800.0, 259200.0, 432000.0}));
        QCOMPARE(b.kind, (std::vector<TPointKind>{TPointKind::Value, TPointKind::Gap, TPointKind::GapEnd}));
        QCOMPARE(b.v[2], 7.0);
    }

    void gapFlagSurvivesBlockBoundaries() {
        TCollectingReceiver r;
        Walk((B().Header().Block(3, B::Strs({"M1"})).Block(8, B::Record(1, {kGap})).Block(
                 8, B::Record(2, {B::F(2)}) + B::Record(3, {B::F(3)}))),
             r);
        QCOMPARE(r.curves[0].kind, (std::vector<TPointKind>{TPointKind::Gap, TPointKind::GapEnd, TPointKind::Value}));
    }

    void otherNaNsAreValues() {
        TCollectingReceiver r;
        Walk((B().Header().Block(3, B::Strs({"M1"})).Block(
                 8, B::Record(1, {0x7FC00000u}) + B::Record(2, {0xFFFFFFFDu}) + B::Record(3, {0x7F800000u}))),
             r);
        QCOMPARE(int(r.curves[0].t.size()), 3);
        QVERIFY(std::isnan(r.curves[0].v[0]));
        QVERIFY(std::isnan(r.curves[0].v[1]));
        QVERIFY(std::isinf(r.curves[0].v[2]));
    }

    void timeStampValidation_data() {
        QTest::addColumn<double>("days");
        QTest::addColumn<bool>("valid");
        QTest::newRow("0") << 0.0 << true;
        QTest::newRow("36500") << 36500.0 << true;
        QTest::newRow("just above") << 36500.000001 << false;
        QTest::newRow("negative") << -0.000001 << false;
        QTest::newRow("negative zero") << -0.0 << true;
        QTest::newRow("nan") << std::numeric_limits<double>::quiet_NaN() << false;
        QTest::newRow("infinity") << std::numeric_limits<double>::infinity() << false;
    }
    void timeStampValidation() {
        QFETCH(double, days);
        QFETCH(bool, valid);
        TCollectingReceiver r;
        // The bad stamp drops the rest of its block; the next block is read again.
        Walk((B().Header().Block(3, B::Strs({"M1"})).Block(
                           8, B::Record(1, {B::F(1)}) + B::Record(days, {B::F(2)}) + B::Record(3, {B::F(3)}))
                           .Block(8, B::Record(4, {B::F(4)}))),
             r);
        const std::vector<double> expected = valid ? std::vector<double>{1, 2, 3, 4} : std::vector<double>{1, 4};
        QCOMPARE(r.curves[0].v, expected);
        QVERIFY(r.defects.isEmpty());
    }

    void brandVariantReportsTheFirstDefectOnce() {
        const B b = (B().Header().Block(3, B::Strs({"M1"})).Block(9, B::Str("n")).Block(
            8, B::Record(-1, {B::F(1)})).Block(8, B::Record(40000, {B::F(1)})));
        TCollectingReceiver brand;
        Walk(b, brand, 5665);
        QCOMPARE(brand.defects, QStringList{QStringLiteral("ZEB file is defect ! [3]")});
        TCollectingReceiver plain;
        Walk(b, plain, 0);
        QVERIFY(plain.defects.isEmpty());
        QCOMPARE(TRecordingWalk::DefectText(-1), QStringLiteral("ZEB file is defect !"));
    }

    void unknownAndSkippedBlocksAreCountedAndSkipped() {
        TCollectingReceiver r;
        const auto res = Walk((TwoCurves()
                                            .Block(4, "xyz")
                                            .Block(5, "xyz")
                                            .Block(10, "abc")
                                            .Block(12, "abc")
                                            .Block(999, "????")
                                            .Block(9, B::Str("name"))),
                              r);
        QCOMPARE(res.end, TEnd::EndOfStream);
        QCOMPARE(r.blockIds, (QList<int>{3, 4, 5, 10, 12, 999, 9}));
        QCOMPARE(r.zebName, QStringLiteral("name"));
    }

    void recordCutOffKeepsTheWholeRecords() {
        TCollectingReceiver r;
        const auto res = Walk((TwoCurves().Block(
                                  8, B::Record(1, {B::F(1), B::F(2)}) + B::Record(2, {B::F(3), B::F(4)}).left(12))),
                              r);
        QCOMPARE(res.end, TEnd::Damaged);
        QCOMPARE(r.curves[0].v, std::vector<double>{1});
        QCOMPARE(r.curves[1].v, std::vector<double>{2});
    }

    // Cancelled before a block or stopped after one, with and without reading ahead: the walk
    // ends there, and a read-ahead thread with blocks still to go does not hang the close.
    void cancelAndStop_data() {
        QTest::addColumn<bool>("ahead");
        QTest::newRow("block by block") << false;
        QTest::newRow("reading ahead") << true;
    }
    void cancelAndStop() {
        QFETCH(bool, ahead);
        B b = TwoCurves();
        for (int i = 0; i < 50; ++i) b.Block(8, B::Record(i, {B::F(1), B::F(2)}));
        const QString path = FDir.filePath(QStringLiteral("many.zeb"));
        QVERIFY(b.Block(9, B::Str("z")).Save(path));
        TCollectingReceiver cancel;
        cancel.cancelBeforeBlock = 2;
        QCOMPARE(WalkFile(path, cancel, 0, ahead).end, TEnd::Cancelled);
        QCOMPARE(cancel.blockIds, (QList<int>{3, 8}));
        TCollectingReceiver stop;
        stop.stopAfterDataBlocks = 1;
        const auto res = WalkFile(path, stop, 0, ahead);
        QCOMPARE(res.end, TEnd::Stopped);
        QCOMPARE(res.values, 2);
    }

    // Cut the file at every byte: never a crash, and what is kept is a prefix of the whole.
    void truncationAtEveryOffset() {
        B b = TwoCurves();
        b.Block(20, B::Strs({"gen", "1"})).Block(6, B::Strs({"a", "b"})).Block(7, B::Strs({"u", "v"}));
        for (int blk = 0; blk < 3; ++blk) {
            QByteArray payload;
            for (int i = 0; i < 40; ++i)
                payload += B::Record(blk * 40 + i, {B::F(float(i)), i % 7 ? B::F(float(-i)) : kGap});
            b.Block(8, payload);
        }
        b.Block(9, B::Str("end"));
        TCollectingReceiver full, fullAhead;
        QCOMPARE(Walk(b, full).end, TEnd::EndOfStream);
        QVERIFY(b.Save(FDir.filePath(QStringLiteral("full.zeb"))));
        QCOMPARE(WalkFile(FDir.filePath(QStringLiteral("full.zeb")), fullAhead, 0, true).end, TEnd::EndOfStream);
        QVERIFY(fullAhead.curves == full.curves);
        const QByteArray file = b.Compressed();
        const QString path = FDir.filePath(QStringLiteral("t.zeb"));
        for (qsizetype cut = 0; cut < file.size(); ++cut) {
            QVERIFY(B::SaveBytes(path, file.left(cut)));
            TCollectingReceiver r;
            const auto res = WalkFile(path, r, 0, false, TDataFile::TInflater::Zlib);
            // Either reader, reading ahead in a thread of its own or not, ends the same way
            // with the same points.
            for (const auto inflater : AllInflaters()) {
                for (const bool readAhead : {false, true}) {
                    TCollectingReceiver other;
                    const auto resOther = WalkFile(path, other, 0, readAhead, inflater);
                    QVERIFY2(resOther.end == res.end && resOther.values == res.values && other.curves == r.curves,
                             qPrintable(QStringLiteral("cut at %1, reader %2, ahead %3: %4 against %5")
                                            .arg(cut)
                                            .arg(int(inflater))
                                            .arg(readAhead)
                                            .arg(TRecordingWalk::EndText(resOther.end), TRecordingWalk::EndText(res.end))));
                }
            }
            QVERIFY2(res.end == TEnd::BadHeader || res.end == TEnd::Truncated || res.end == TEnd::Damaged,
                     qPrintable(QStringLiteral("cut at %1: %2").arg(cut).arg(TRecordingWalk::EndText(res.end))));
            QVERIFY(r.curves.size() <= full.curves.size());
            for (size_t c = 0; c < r.curves.size(); ++c) {
                const auto& got = r.curves[c];
                const auto& all = full.curves[c];
                QVERIFY(got.t.size() <= all.t.size());
                QVERIFY(std::equal(got.t.begin(), got.t.end(), all.t.begin()));
                QVERIFY(std::equal(got.v.begin(), got.v.end(), all.v.begin()));
                QVERIFY(std::equal(got.kind.begin(), got.kind.end(), all.kind.begin()));
            }
        }
    }

    // A stream whose first Huffman table zlib rejects and ISA-L reads (found by the fuzzer):
    // ISA-L hands out blocks that end in an empty one, long before the check value. Either
    // reader ends with an error and no points.
    void streamOnlyIsalAccepts() {
        const QString path = QStringLiteral(ZEB_FIXTURES "/recordings/huffman-table-only-isal-accepts.zeb");
        for (const auto inflater : AllInflaters()) {
            TCollectingReceiver r;
            const auto res = WalkFile(path, r, TDataFile::kBrandVariant, false, inflater);
            QVERIFY2(res.end == TEnd::BadHeader || res.end == TEnd::Damaged,
                     qPrintable(TRecordingWalk::EndText(res.end)));
            QCOMPARE(res.values, 0);
        }
    }

    // Flip bytes all over a file: the walk ends cleanly, whatever it keeps.
    void damageNeverCrashes() {
        B b = TwoCurves();
        QByteArray payload;
        for (int i = 0; i < 500; ++i) payload += B::Record(i, {B::F(float(i) * 0.5f), B::F(float(i))});
        b.Block(8, payload).Block(9, B::Str("end"));
        const QByteArray file = b.Compressed();
        const QString path = FDir.filePath(QStringLiteral("d.zeb"));
        quint32 x = 99;
        for (int round = 0; round < 300; ++round) {
            QByteArray bad = file;
            for (int k = 0; k < 1 + round % 3; ++k) {
                x = x * 1664525u + 1013904223u;
                bad[qsizetype(x % quint32(bad.size()))] = char(x >> 24);
            }
            QVERIFY(B::SaveBytes(path, bad));
            TCollectingReceiver r;
            const auto res = WalkFile(path, r, 0, false, TDataFile::TInflater::Zlib);
            QVERIFY(res.values <= 1000);
            // A damaged stream or a bad check value ends every reader at the same place.
            for (const auto inflater : AllInflaters()) {
                for (const bool readAhead : {false, true}) {
                    TCollectingReceiver other;
                    const auto resOther = WalkFile(path, other, 0, readAhead, inflater);
                    QVERIFY2(resOther.end == res.end && other.curves == r.curves,
                             qPrintable(QStringLiteral("round %1, reader %2, ahead %3: %4 against %5")
                                            .arg(round)
                                            .arg(int(inflater))
                                            .arg(readAhead)
                                            .arg(TRecordingWalk::EndText(resOther.end), TRecordingWalk::EndText(res.end))));
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(TstWalk)
#include "tst_walk.moc"
