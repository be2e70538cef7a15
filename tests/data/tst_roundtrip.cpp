// A generated recording read back value for value: by an independent parser of the raw
// bytes, by the walk, and through zebtool as a user runs it.

#include "CollectingReceiver.h"
#include "Files.h"
#include "RecordingBuilder.h"
#include "RecordingGenerator.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <bit>
#include <cstring>
#include <limits>

namespace {

// What the generator means to write, per channel, as the loader should see it.
struct TExpected {
    std::vector<TCollectedCurve> curves;
    qint64 values = 0;
};

TExpected Expect(const TGenOptions& o) {
    TExpected e;
    TRecordingGenerator gen(o);
    for (const TGenChannel& ch : gen.Channels()) {
        TCollectedCurve c;
        c.module = ch.module;
        c.channel = ch.name;
        c.unit = ch.unit;
        c.logger = ch.logger;
        c.alarm = o.limits ? ch.alarm : -1;
        c.record = o.limits ? ch.record : -1;
        c.value1 = o.limits ? double(ch.limit1) : 0;
        c.value2 = o.limits ? double(ch.limit2) : 0;
        e.curves.push_back(c);
    }
    std::vector<quint32> bits(gen.Channels().size());
    std::vector<bool> gapOpen(bits.size());
    double days;
    while (gen.NextRecord(days, bits.data())) {
        for (size_t c = 0; c < bits.size(); ++c) {
            if (bits[c] == 0xFFFFFFFFu) continue;
            ++e.values;
            auto& cu = e.curves[c];
            cu.t.push_back(days * 86400.0);
            if (bits[c] == 0xFFFFFFFEu) {
                cu.v.push_back(0);
                cu.kind.push_back(TPointKind::Gap);
                gapOpen[c] = true;
            } else {
                cu.v.push_back(double(std::bit_cast<float>(bits[c])));
                cu.kind.push_back(gapOpen[c] ? TPointKind::GapEnd : TPointKind::Value);
                gapOpen[c] = false;
            }
        }
    }
    return e;
}

struct TToolRun {
    int exitCode = -1;
    QByteArray out;
};
// Runs zebtool as a user does; what it prints on standard output comes back.
TToolRun Zebtool(const QStringList& args) {
    QProcess p;
    p.start(QStringLiteral(ZEBTOOL), args);
    if (!p.waitForFinished(120000)) return {};
    return {p.exitCode(), p.readAllStandardOutput()};
}

template <typename T> T At(const QByteArray& b, qsizetype pos) {
    T v;
    std::memcpy(&v, b.constData() + pos, sizeof(T));
    return v;
}

} // namespace

class TstRoundTrip : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;

    // Six channels: one of each kind and a second temperature.
    const TGenOptions FOptions{
        .seed = 42, .channels = 6, .records = 30000, .intervalSeconds = 0.5, .missingRate = 0.01, .gapRate = 0.002};

private Q_SLOTS:
    // Parses the decompressed bytes with no help from the reader's code.
    void independentParserSeesWhatTheGeneratorMeant() {
        const TGenOptions& o = FOptions;
        const QString path = FDir.filePath(QStringLiteral("gen.zeb"));
        QString error;
        QVERIFY2(WriteRecording(path, o, &error), qPrintable(error));
        const QByteArray plain = TRecordingBuilder::Inflate(ReadBytes(path));

        TRecordingGenerator gen(o);
        const int n = int(gen.Channels().size());
        std::vector<quint32> bits(size_t(n) + 1);
        QList<int> order;
        qsizetype pos = 0;
        qint64 records = 0;
        bool sawChannels = false;
        while (pos + 4 <= plain.size()) {
            const quint16 id = At<quint16>(plain, pos);
            const quint16 len = At<quint16>(plain, pos + 2);
            pos += 4;
            QVERIFY(len > 0);
            QVERIFY(pos + len <= plain.size());
            if (order.isEmpty()) {
                QCOMPARE(id, quint16(0));
                QCOMPARE(len, quint16(15));
                QCOMPARE(plain.mid(pos, 11), QByteArray("\x09\x00VELMORANT", 11));
            }
            if (id == 3) sawChannels = true;
            if (id == 6 || id == 7 || id == 11 || id == 13 || id == 8) QVERIFY(sawChannels);
            if (id == 8) {
                const int recordSize = 8 + 4 * n;
                QCOMPARE(len % recordSize, 0);
                for (qsizetype r = pos; r < pos + len; r += recordSize) {
                    double days;
                    QVERIFY(gen.NextRecord(days, bits.data()));
                    QCOMPARE(At<double>(plain, r), days);
                    for (int c = 0; c < n; ++c) QCOMPARE(At<quint32>(plain, r + 8 + 4 * c), bits[size_t(c)]);
                    ++records;
                }
            }
            order << id;
            pos += len;
        }
        QCOMPARE(pos, plain.size());
        QCOMPARE(records, o.records);
        QCOMPARE(order.mid(0, 4), (QList<int>{0, 20, 2, 3}));
    }

    void walkReadsValueForValue() {
        const TGenOptions& o = FOptions;
        const QString path = FDir.filePath(QStringLiteral("walk.zeb"));
        QVERIFY(WriteRecording(path, o));
        TCollectingReceiver r;
        const TWalkResult res = WalkFile(path, r);
        QCOMPARE(res.end, TRecordingWalk::TEnd::EndOfStream);
        const TExpected e = Expect(o);
        QCOMPARE(res.values, e.values);
        QCOMPARE(r.creator, QStringLiteral("zebtool [V1.0]"));
        QCOMPARE(r.startDays, o.startDays);
        QCOMPARE(r.zebName, o.zebName);
        QCOMPARE(r.curves.size(), e.curves.size());
        for (size_t c = 0; c < e.curves.size(); ++c) {
            QCOMPARE(r.curves[c].unit, e.curves[c].unit);
            QVERIFY2(r.curves[c] == e.curves[c], qPrintable(QStringLiteral("curve %1").arg(c)));
        }
        // Both reserved patterns really occur, or the test would prove little.
        QVERIFY(std::count(r.curves[0].kind.begin(), r.curves[0].kind.end(), TPointKind::Gap) > 0);
        QVERIFY(r.curves[0].t.size() < size_t(o.records));
    }

    void zebtoolWritesAndDumps() {
        const QString path = FDir.filePath(QStringLiteral("tool.zeb"));
        const QStringList gen{"gen", "--seed", "3", "--channels", "3", "--records", "700", "--gap-rate", "0.01",
                              "--quiet", path};
        QCOMPARE(Zebtool(gen).exitCode, 0);
        const TToolRun dump = Zebtool({"dump", path});
        QCOMPARE(dump.exitCode, 0);
        QJsonParseError perr;
        const QJsonObject j = QJsonDocument::fromJson(dump.out, &perr).object();
        QCOMPARE(perr.error, QJsonParseError::NoError);

        const TGenOptions o{.seed = 3, .channels = 3, .records = 700, .gapRate = 0.01};
        const TExpected e = Expect(o);
        QCOMPARE(j[QStringLiteral("status")].toInt(), -1);
        QCOMPARE(j[QStringLiteral("values")].toInteger(), e.values);
        QCOMPARE(j[QStringLiteral("mode")].toInt(), 3);
        QCOMPARE(j[QStringLiteral("logger_name")].toString(), o.loggerName);
        const QJsonArray curves = j[QStringLiteral("curves")].toArray();
        QCOMPARE(curves.size(), qsizetype(e.curves.size()));
        for (qsizetype c = 0; c < curves.size(); ++c) {
            const QJsonObject jc = curves[c].toObject();
            const TCollectedCurve& ec = e.curves[size_t(c)];
            QCOMPARE(jc[QStringLiteral("unit")].toString(), ec.unit);
            QCOMPARE(jc[QStringLiteral("alarm")].toInt(), ec.alarm);
            QCOMPARE(jc[QStringLiteral("value1")].toDouble(), ec.value1);
            const QJsonArray pts = jc[QStringLiteral("points")].toArray();
            QCOMPARE(pts.size(), qsizetype(ec.t.size()));
            for (qsizetype i = 0; i < pts.size(); ++i) {
                const QJsonArray p = pts[i].toArray();
                QCOMPARE(p[0].toDouble(), ec.t[size_t(i)]);
                if (ec.kind[size_t(i)] == TPointKind::Gap) QVERIFY(p[1].isNull());
                else QCOMPARE(p[1].toDouble(), ec.v[size_t(i)]);
            }
        }
    }

    // JSON has no NaN or infinities: the dump stays parseable and tells them from gaps.
    void zebtoolDumpsNonFiniteValuesAsJson() {
        using B = TRecordingBuilder;
        const QString path = FDir.filePath(QStringLiteral("nan.zeb"));
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float inf = std::numeric_limits<float>::infinity();
        QVERIFY(B()
                    .Header()
                    .Block(3, B::Strs({"M1"}))
                    .Block(11, B::Word(4) + B::Word(1) + B::Single(nan) + B::Single(-inf))
                    .Block(8, B::Record(1, {B::F(nan)}) + B::Record(2, {B::F(inf)}) +
                                  B::Record(3, {B::F(-inf)}) + B::Record(4, {0xFFFFFFFEu}) +
                                  B::Record(5, {B::F(1.5f)}))
                    .Save(path));
        QJsonParseError perr;
        const QJsonDocument doc = QJsonDocument::fromJson(Zebtool({"dump", path}).out, &perr);
        QVERIFY2(perr.error == QJsonParseError::NoError, qPrintable(perr.errorString()));
        const QJsonObject curve = doc.object()[QStringLiteral("curves")].toArray()[0].toObject();
        QCOMPARE(curve[QStringLiteral("value1")].toString(), QStringLiteral("NaN"));
        QCOMPARE(curve[QStringLiteral("value2")].toString(), QStringLiteral("-Infinity"));
        QStringList values;
        for (const QJsonValue p : curve[QStringLiteral("points")].toArray()) {
            const QJsonValue v = p.toArray()[1];
            values << (v.isString() ? v.toString()
                       : v.isNull() ? QStringLiteral("gap")
                                    : QString::number(v.toDouble()));
        }
        QCOMPARE(values, (QStringList{"NaN", "Infinity", "-Infinity", "gap", "1.5"}));
    }

    void zebtoolBlocksExplainsDamage() {
        const QString path = FDir.filePath(QStringLiteral("cut.zeb"));
        QVERIFY(WriteRecording(path, FOptions));
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.resize(f.size() / 2));
        f.close();
        const QString out = QString::fromUtf8(Zebtool({"blocks", path}).out);
        QVERIFY2(out.contains(QStringLiteral("file truncated inside the stream")), qPrintable(out));
        QVERIFY(out.contains(QStringLiteral("channel list")));

        QVERIFY(TRecordingBuilder::SaveBytes(path, "not a recording"));
        const TToolRun bad = Zebtool({"blocks", path});
        QCOMPARE(bad.exitCode, 1);
        QVERIFY(QString::fromUtf8(bad.out).contains(QStringLiteral("bad header")));
    }

    void largeFileQuestion_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("all");
        QTest::newRow("continue") << QStringList{QStringLiteral("--answer"), QStringLiteral("2")} << -1 << true;
        QTest::newRow("keep what was read") << QStringList{QStringLiteral("--answer"), QStringLiteral("1")} << -1 << false;
        QTest::newRow("previewer") << QStringList{QStringLiteral("--answer"), QStringLiteral("3")} << -5 << false;
        QTest::newRow("stop") << QStringList{QStringLiteral("--answer"), QStringLiteral("0")} << -3 << false;
        QTest::newRow("no handler") << QStringList{QStringLiteral("--no-ask")} << -3 << false;
    }
    void largeFileQuestion() {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(bool, all);
        const QString path = FDir.filePath(QStringLiteral("large.zeb"));
        if (!QFile::exists(path)) {
            QVERIFY(WriteRecording(path, {.channels = 1, .records = 2600000}));
        }
        const QJsonObject j = QJsonDocument::fromJson(Zebtool(QStringList{"dump"} + args << path).out).object();
        QCOMPARE(j[QStringLiteral("status")].toInt(), status);
        const qint64 values = j[QStringLiteral("values")].toInteger();
        if (all) QCOMPARE(values, 2600000);
        else QVERIFY(values > 2500000 && values < 2600000);
    }
};

QTEST_GUILESS_MAIN(TstRoundTrip)
#include "tst_roundtrip.moc"
