// Fuzzes the walk over a recording. The first byte picks the form of the input: the raw
// file (zlib and all), or block content that is compressed first so that the fuzzer spends
// its time on the block rules rather than on zlib's checks. Where the build reads with ISA-L,
// every input is walked with zlib's reader too. Where zlib reads the stream without damage,
// both must end alike with the same points. Where zlib finds damage, ISA-L must end with an
// error too, after the same points; it may have read more before, as it accepts some Huffman
// tables zlib rejects.

#include "data/DataFile.h"
#include "data/RecordingWalk.h"

#include <QFile>
#include <QTemporaryFile>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>
#include <zlib.h>

namespace {

class TSink : public TRecordingReceiver {
public:
    int curves = 0;
    qint64 points = 0;
    std::vector<quint64> prints;
    void AddCurve(const QString&) override { ++curves; }
    void SetChannelName(int c, const QString&) override { Check(c); }
    void SetUnit(int c, const QString&) override { Check(c); }
    void SetLoggerName(int c, const QString&) override { Check(c); }
    void SetLimits(int c, quint16, quint16, double, double) override { Check(c); }
    void AddPoints(int c, std::span<const double> t, std::span<const double> v,
                   std::span<const TPointKind> k) override {
        Check(c);
        if (t.size() != v.size() || t.size() != k.size()) __builtin_trap();
        points += qint64(t.size());
        // A fingerprint of each point, bits and all, to compare the readers.
        for (size_t i = 0; i < t.size(); ++i)
            prints.push_back(std::bit_cast<quint64>(t[i]) * 31u + std::bit_cast<quint64>(v[i]) * 7u +
                             quint64(k[i]) + quint64(c));
    }

private:
    void Check(int c) const {
        if (c < 0 || c >= curves) __builtin_trap();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const bool plain = data[0] & 1;
    QByteArray bytes(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    if (plain) {
        // A valid header first, so the fuzzer starts past the magic.
        static const QByteArray header = QByteArray::fromHex("00000f000900") + "VELMORANT" + QByteArray(4, '\0').replace(0, 1, "\x01");
        bytes.prepend(header);
        uLongf len = compressBound(uLong(bytes.size()));
        QByteArray z(qsizetype(len), Qt::Uninitialized);
        compress2(reinterpret_cast<Bytef*>(z.data()), &len, reinterpret_cast<const Bytef*>(bytes.constData()),
                  uLong(bytes.size()), 1);
        z.resize(qsizetype(len));
        bytes = z;
    }
    static QTemporaryFile file;
    if (!file.isOpen() && !file.open()) return 0;
    file.resize(0);
    file.seek(0);
    file.write(bytes);
    file.flush();
    TSink first;
    TRecordingWalk::TEnd firstEnd = TRecordingWalk::TEnd::BadHeader;
    bool walked = false;
    for (const auto inflater : {TDataFile::TInflater::Zlib, TDataFile::TInflater::Isal}) {
        if (inflater == TDataFile::TInflater::Isal && !TDataFile::HasIsal()) break;
        auto f = TDataFile::CreateLoad(file.fileName(), nullptr, inflater);
        if (!f) return 0;
        TSink sink;
        TRecordingWalk walk(*f, sink, (data[0] & 2) ? TDataFile::kBrandVariant : 0);
        const TRecordingWalk::TEnd end = walk.Run();
        if (walk.CurveCount() != sink.curves || walk.ValueCount() < sink.points) __builtin_trap();
        if (!walked) {
            first = sink;
            firstEnd = end;
            walked = true;
            continue;
        }
        using TEnd = TRecordingWalk::TEnd;
        const bool zlibFoundDamage = firstEnd == TEnd::Damaged || firstEnd == TEnd::BadHeader;
        if (!zlibFoundDamage) {
            if (end != firstEnd || sink.curves != first.curves || sink.prints != first.prints) __builtin_trap();
        } else {
            if (end != TEnd::Damaged && end != TEnd::BadHeader) __builtin_trap();
            if (sink.prints.size() < first.prints.size() ||
                !std::equal(first.prints.begin(), first.prints.end(), sink.prints.begin()))
                __builtin_trap();
        }
    }
    return 0;
}
