// The container: field encodings, block framing, the header rule, the wide frame,
// safe saving and damaged input.

#include "CollectingReceiver.h"
#include "data/DataFile.h"
#include "Files.h"
#include "RecordingBuilder.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>

using B = TRecordingBuilder;

class TstDataFile : public QObject {
    Q_OBJECT

    QTemporaryDir FDir;
    QString Path(const QString& name) const { return FDir.filePath(name); }
    QByteArray Inflated(const QString& name) const {
        return B::Inflate(ReadBytes(Path(name)));
    }

    // Writes blocks through one file, reads them back through another.
    std::unique_ptr<TDataFile> RoundTrip(const std::function<void(TDataFile&)>& write, const QString& name) {
        {
            auto out = TDataFile::CreateSave(Path(name));
            if (!out) return nullptr;
            write(*out);
            if (!out->Close()) return nullptr;
        }
        auto in = TDataFile::CreateLoad(Path(name));
        if (!in || !in->IsLoadOk()) return nullptr;
        return in;
    }

private Q_SLOTS:
    void initTestCase() { ChooseInflaterFromEnvironment(); }

    void everyFieldRoundTrips() {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        auto in = RoundTrip(
            [&](TDataFile& f) {
                f.NewBlock(42);
                f.WriteWord(0);
                f.WriteWord(65535);
                f.WriteSmallint(-32768);
                f.WriteSmallint(32767);
                f.WriteLongint(std::numeric_limits<qint32>::min());
                f.WriteLongint(123456789);
                f.WriteSingle(-1.5f);
                f.WriteSingleBits(0xFFFFFFFEu);
                f.WriteDouble(8826.123456789012);
                f.WriteDouble(-0.0);
                f.WriteExtended(1.0);
                f.WriteExtended(-2.718281828459045);
                f.WriteExtended(5e-324); // smallest subnormal double
                f.WriteExtended(std::numeric_limits<double>::infinity());
                f.WriteExtended(nan);
                f.WriteString(QString());
                f.WriteString(QStringLiteral("°C m³/h € Öl"));
                QVERIFY(f.WriteBlock());
            },
            QStringLiteral("fields.zeb"));
        QVERIFY(in);
        QVERIFY(in->ReadBlock());
        QCOMPARE(in->BlockId(), quint16(42));
        QCOMPARE(in->ReadWord(), quint16(0));
        QCOMPARE(in->ReadWord(), quint16(65535));
        QCOMPARE(in->ReadSmallint(), qint16(-32768));
        QCOMPARE(in->ReadSmallint(), qint16(32767));
        QCOMPARE(in->ReadLongint(), std::numeric_limits<qint32>::min());
        QCOMPARE(in->ReadLongint(), 123456789);
        QCOMPARE(in->ReadSingle(), -1.5f);
        QCOMPARE(in->ReadSingleBits(), 0xFFFFFFFEu);
        QCOMPARE(in->ReadDouble(), 8826.123456789012);
        QVERIFY(std::signbit(in->ReadDouble()));
        QCOMPARE(in->ReadExtended(), 1.0);
        QCOMPARE(in->ReadExtended(), -2.718281828459045);
        QCOMPARE(in->ReadExtended(), 5e-324);
        QCOMPARE(in->ReadExtended(), std::numeric_limits<double>::infinity());
        QVERIFY(std::isnan(in->ReadExtended()));
        QCOMPARE(in->ReadString(), QString());
        QCOMPARE(in->ReadString(), QStringLiteral("°C m³/h € Öl"));
        QCOMPARE(in->BlockPos(), in->BlockSize());
        QVERIFY_THROWS_EXCEPTION(TDataFileError, in->ReadWord());
        QVERIFY(!in->ReadBlock());
        QCOMPARE(in->LastReadEnd(), TDataFile::TReadEnd::EndOfStream);
    }

    // What reaches the disk: the header at once, strings as Windows-1252, an empty block not at
    // all, a written block once.
    void bytesOnDisk() {
        QVERIFY(TDataFile::CreateSave(Path("empty.zeb"))->Close());
        QCOMPARE(Inflated("empty.zeb"), B().Header().Plain());
        auto out = TDataFile::CreateSave(Path("ansi.zeb"));
        out->NewBlock(8);
        QVERIFY(out->WriteBlock());
        out->NewBlock(7);
        out->WriteString(QStringLiteral("°C"));
        out->WriteString(QStringLiteral("m³/h"));
        out->WriteString(QStringLiteral("€"));
        QVERIFY(out->WriteBlock());
        QVERIFY(out->WriteBlock()); // already written: the buffer is empty again
        QVERIFY(out->Close());
        QCOMPARE(Inflated("ansi.zeb"),
                 B().Header().Block(7, B::Str("\xB0" "C") + B::Str("m\xB3/h") + B::Str("\x80")).Plain());
    }

    void extendedHasX87Layout_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("1") << 1.0 << QByteArray::fromHex("0000000000000080ff3f");
        QTest::newRow("-2") << -2.0 << QByteArray::fromHex("000000000000008000c0");
        QTest::newRow("0.5") << 0.5 << QByteArray::fromHex("0000000000000080fe3f");
        QTest::newRow("0") << 0.0 << QByteArray::fromHex("00000000000000000000");
        QTest::newRow("inf") << std::numeric_limits<double>::infinity() << QByteArray::fromHex("0000000000000080ff7f");
        QTest::newRow("pi") << 3.141592653589793 << QByteArray::fromHex("00c06821a2da0fc90040");
    }
    void extendedHasX87Layout() {
        QFETCH(double, value);
        QFETCH(QByteArray, bytes);
        unsigned char out[10];
        TDataFile::EncodeExtended(value, out);
        QCOMPARE(QByteArray(reinterpret_cast<char*>(out), 10).toHex(), bytes.toHex());
        QCOMPARE(TDataFile::DecodeExtended(reinterpret_cast<const unsigned char*>(bytes.constData())), value);
    }

    void extendedRoundsLongMantissaToNearest() {
        // 1 + 2^-53 + 2^-63: above the halfway point between two doubles, so it rounds up.
        const QByteArray bytes = QByteArray::fromHex("0104000000000080ff3f");
        QCOMPARE(TDataFile::DecodeExtended(reinterpret_cast<const unsigned char*>(bytes.constData())),
                 1.0 + std::ldexp(1.0, -52));
    }

    void headerRule_data() {
        QTest::addColumn<QByteArray>("plain");
        QTest::addColumn<int>("variant");
        QTest::addColumn<bool>("ok");
        const QByteArray tail = B::Word(1) + B::Word(0);
        QTest::newRow("exact") << B().Header().Plain() << 0 << true;
        QTest::newRow("version and zero word are not examined")
            << B().Block(0, B::Str("VELMORANT") + B::Word(9) + B::Word(7)).Plain() << 0 << true;
        QTest::newRow("16 bytes") << B().Block(0, B::Str("VELMORANT") + tail + "x").Plain() << 0 << false;
        QTest::newRow("longer magic") << B().Block(0, B::Str("VELMORANTX") + B::Word(1)).Plain() << 0 << false;
        QTest::newRow("14 bytes") << B().Block(0, B::Str("VELMORANT") + B::Word(1) + "\0").Plain() << 0 << false;
        QTest::newRow("wrong id") << B().Block(1, B::Str("VELMORANT") + tail).Plain() << 0 << false;
        QTest::newRow("lower case") << B().Header("velmorant").Plain() << 0 << false;
        QTest::newRow("brand magic, plain program") << B().Header("TORVANELI").Plain() << 0 << false;
        QTest::newRow("brand magic, brand variant") << B().Header("TORVANELI").Plain() << 5665 << true;
        QTest::newRow("magic, brand variant") << B().Header().Plain() << 5665 << true;
        QTest::newRow("brand magic, other variant") << B().Header("TORVANELI").Plain() << 5666 << false;
        QTest::newRow("string length beyond payload") << B().Block(0, B::Word(200) + QByteArray(13, 'A')).Plain() << 0 << false;
        QTest::newRow("empty stream") << QByteArray() << 0 << false;
        QTest::newRow("half a block head") << QByteArray("\0", 1) << 0 << false;
    }
    void headerRule() {
        QFETCH(QByteArray, plain);
        QFETCH(int, variant);
        QFETCH(bool, ok);
        QVERIFY(B::SaveBytes(Path("h.zeb"), B::Compress(plain)));
        auto f = TDataFile::CreateLoad(Path("h.zeb"));
        QVERIFY(f);
        QCOMPARE(f->IsLoadOk(variant), ok);
    }

    void notZlibAtAllIsRejectedCleanly() {
        QVERIFY(B::SaveBytes(Path("text.zeb"), "this is a text file, not a recording\n"));
        auto f = TDataFile::CreateLoad(Path("text.zeb"));
        QVERIFY(f);
        QVERIFY(!f->IsLoadOk());
        QVERIFY(!TDataFile::CreateLoad(Path("does-not-exist.zeb")));
    }

    void blockNeverOutgrows16Bits() {
        auto out = TDataFile::CreateSave(Path("big.zeb"));
        out->NewBlock(8);
        for (int i = 0; i < 65535 / 4; ++i) out->WriteLongint(i);
        QCOMPARE(out->BlockSpace(), 3);
        QVERIFY_THROWS_EXCEPTION(TDataFileError, out->WriteLongint(0));
        QCOMPARE(out->BlockSize(), 65532);
        out->WriteString(QStringLiteral("x")); // three bytes: exactly full
        QCOMPARE(out->BlockSize(), 65535);
        QVERIFY_THROWS_EXCEPTION(TDataFileError, out->WriteString(QString()));
        QVERIFY(out->WriteBlock());
        QVERIFY(out->Close());
        auto in = TDataFile::CreateLoad(Path("big.zeb"));
        QVERIFY(in->IsLoadOk());
        QVERIFY(in->ReadBlock());
        QCOMPARE(in->BlockSize(), 65535);
        QCOMPARE(in->ReadLongint(), 0);
    }

    void abortedSaveKeepsTheOldFile() {
        QVERIFY(B::SaveBytes(Path("keep.zeb"), "old content"));
        {
            auto out = TDataFile::CreateSave(Path("keep.zeb"));
            out->NewBlock(8);
            out->WriteDouble(1);
            QVERIFY(out->WriteBlock());
            out->Abort();
        }
        QCOMPARE(ReadBytes(Path("keep.zeb")), QByteArray("old content"));
        QVERIFY(!TDataFile::CreateSave(FDir.filePath("no/such/folder/x.zeb")));
    }

    void copyBlockTakesIdAndPayload() {
        auto a = TDataFile::CreateSave(Path("a.zeb"));
        auto b = TDataFile::CreateSave(Path("b.zeb"));
        a->NewBlock(13);
        a->WriteString(QStringLiteral("Logger"));
        b->CopyBlock(*a);
        QCOMPARE(b->BlockId(), quint16(13));
        QCOMPARE(b->BlockData(), a->BlockData());
        QCOMPARE(b->ReadString(), QStringLiteral("Logger"));
    }

    void wideFrame() {
        auto a = TDataFile::CreateSave(Path("w.zeb"));
        QBuffer buf;
        buf.open(QIODevice::ReadWrite);
        a->NewBlock(3);
        QVERIFY(a->storeBufStream(buf)); // empty block: nothing
        QCOMPARE(buf.size(), 0);
        a->WriteString(QStringLiteral("M1"));
        QVERIFY(a->storeBufStream(buf));
        QCOMPARE(buf.data().toHex(), QByteArray("03000000040000000200") + QByteArray("M1").toHex());

        auto b = TDataFile::CreateSave(Path("w2.zeb"));
        buf.seek(0);
        QVERIFY(b->restoreBufStream(buf));
        QCOMPARE(b->BlockId(), quint16(3));
        QCOMPARE(b->ReadString(), QStringLiteral("M1"));
        QVERIFY(!b->restoreBufStream(buf)); // nothing left

        QBuffer shortLen;
        shortLen.setData(QByteArray::fromHex("0300000010000000aabb"));
        shortLen.open(QIODevice::ReadOnly);
        QVERIFY(!b->restoreBufStream(shortLen));
        QBuffer seven;
        seven.setData(QByteArray(7, '\0'));
        seven.open(QIODevice::ReadOnly);
        QVERIFY(!b->restoreBufStream(seven));
        QBuffer negative;
        negative.setData(QByteArray::fromHex("03000000ffffffff"));
        negative.open(QIODevice::ReadOnly);
        QVERIFY(!b->restoreBufStream(negative));
    }

    void readBlockReportsWhyItEnded_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("end");
        const QByteArray full = B().Header().Block(9, B::Str("abc")).Compressed();
        QTest::newRow("end of stream") << full << int(TDataFile::TReadEnd::EndOfStream);
        QTest::newRow("empty block") << B().Header().Block(9, {}).Block(9, B::Str("x")).Compressed()
                                     << int(TDataFile::TReadEnd::EmptyBlock);
        // Cut the compressed file short: the last block cannot be completed.
        QTest::newRow("truncated") << full.left(full.size() - 8) << int(TDataFile::TReadEnd::Truncated);
        QTest::newRow("cut inside a block head")
            << B().Header().Raw(QByteArray("\x09\x00\x05", 3)).Compressed() << int(TDataFile::TReadEnd::Truncated);
    }
    void readBlockReportsWhyItEnded() {
        QFETCH(QByteArray, file);
        QFETCH(int, end);
        QVERIFY(B::SaveBytes(Path("r.zeb"), file));
        auto f = TDataFile::CreateLoad(Path("r.zeb"));
        QVERIFY(f->IsLoadOk());
        while (f->ReadBlock()) {
        }
        QCOMPARE(int(f->LastReadEnd()), end);
        QCOMPARE(f->BlockSize(), 0);
    }

    void damagedStreamThrows() {
        // Noise does not compress, so damage in the middle leaves the header readable.
        QByteArray noise(60000, Qt::Uninitialized);
        quint32 x = 12345;
        for (char& c : noise) c = char((x = x * 1664525u + 1013904223u) >> 24);
        QByteArray file = B().Header().Block(9, noise).Block(8, noise.left(3000)).Compressed();
        file[file.size() / 2] = char(file[file.size() / 2] ^ 0x5A);
        QVERIFY(B::SaveBytes(Path("d.zeb"), file));
        auto f = TDataFile::CreateLoad(Path("d.zeb"));
        QVERIFY(f->IsLoadOk());
        QVERIFY_THROWS_EXCEPTION(TDataFileError, [&] {
            while (f->ReadBlock()) {
            }
        }());
    }

    // Damage keeps every whole block before it, with either reader: ISA-L reports damage
    // ahead of what it has handed out, so the same blocks must still come out before the error.
    void damageKeepsTheBlocksBefore_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("blocksBefore");
        B text = B().Header();
        for (int i = 0; i < 40; ++i) text.Block(9, B::Str(QByteArray("line ") + QByteArray::number(i) + " of a longish text block"));
        QByteArray badCheck = text.Compressed();
        badCheck[badCheck.size() - 1] = char(badCheck[badCheck.size() - 1] ^ 0x01);
        QTest::newRow("bad check value") << badCheck << 40;
        // Damage among the blocks: how many come before it depends on zlib's compression,
        // so only some, and the same with either reader.
        for (int at : {100, 140}) {
            QByteArray damaged = text.Compressed();
            damaged[at] = char(damaged[at] ^ 0xFF);
            QTest::newRow(qPrintable(QStringLiteral("damage at byte %1").arg(at))) << damaged << -1;
        }
    }
    void damageKeepsTheBlocksBefore() {
        QFETCH(QByteArray, file);
        QFETCH(int, blocksBefore);
        QVERIFY(B::SaveBytes(Path("k.zeb"), file));
        std::vector<int> kept;
        for (const auto inflater : AllInflaters()) {
            auto f = TDataFile::CreateLoad(Path("k.zeb"), nullptr, inflater);
            int blocks = 0;
            bool threw = false;
            try {
                if (f->IsLoadOk())
                    while (f->ReadBlock()) ++blocks;
            } catch (const TDataFileError&) {
                threw = true;
            }
            QVERIFY2(threw || f->LastReadEnd() != TDataFile::TReadEnd::EndOfStream,
                     "damage never reads as a whole stream");
            kept.push_back(blocks);
        }
        if (blocksBefore >= 0) QCOMPARE(kept.front(), blocksBefore);
        else QVERIFY(kept.front() > 0 && kept.front() < 40);
        QVERIFY(std::all_of(kept.begin(), kept.end(), [&](int k) { return k == kept.front(); }));
    }
};

QTEST_GUILESS_MAIN(TstDataFile)
#include "tst_datafile.moc"
