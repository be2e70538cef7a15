// Walking a recording against the bare inflate of the same file, in the same process.
// Prints seconds and the ratio walk / inflate; the goal is a ratio close to 1.
//   bench_walk [values]   (default 20,000,000 values on 4 channels)

#include "DataFile.h"
#include "RecordingGenerator.h"
#include "RecordingWalk.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <zlib.h>

namespace {

class TColumns : public TRecordingReceiver {
public:
    std::vector<std::vector<double>> t, v;
    void AddCurve(const QString&) override {
        t.emplace_back();
        v.emplace_back();
    }
    void AddPoints(int c, std::span<const double> ts, std::span<const double> vs,
                   std::span<const TPointKind>) override {
        t[size_t(c)].insert(t[size_t(c)].end(), ts.begin(), ts.end());
        v[size_t(c)].insert(v[size_t(c)].end(), vs.begin(), vs.end());
    }
};

double BareInflate(const QString& path, qint64& bytes) {
    QElapsedTimer timer;
    timer.start();
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    z_stream z{};
    inflateInit(&z);
    std::vector<char> in(256 * 1024), out(65536);
    bytes = 0;
    int rc = Z_OK;
    while (rc != Z_STREAM_END) {
        if (z.avail_in == 0) {
            const qint64 r = f.read(in.data(), qint64(in.size()));
            if (r <= 0) break;
            z.next_in = reinterpret_cast<Bytef*>(in.data());
            z.avail_in = uInt(r);
        }
        z.next_out = reinterpret_cast<Bytef*>(out.data());
        z.avail_out = uInt(out.size());
        rc = inflate(&z, Z_NO_FLUSH);
        if (rc != Z_OK && rc != Z_STREAM_END) break;
        bytes += qint64(out.size() - z.avail_out);
    }
    inflateEnd(&z);
    return double(timer.nsecsElapsed()) * 1e-9;
}

double Walk(const QString& path, qint64& values) {
    QElapsedTimer timer;
    timer.start();
    auto f = TDataFile::CreateLoad(path);
    TColumns cols;
    TRecordingWalk walk(*f, cols);
    walk.Run();
    values = walk.ValueCount();
    return double(timer.nsecsElapsed()) * 1e-9;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const qint64 values = argc > 1 ? QByteArray(argv[1]).toLongLong() : 20000000;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.zeb"));
    TGenOptions o;
    o.channels = 4;
    o.records = values / 4;
    o.missingRate = 0.001;
    std::printf("writing %lld values ...\n", static_cast<long long>(values));
    if (!WriteRecording(path, o)) return 1;

    double bestInflate = 1e9, bestWalk = 1e9;
    qint64 bytes = 0, got = 0;
    for (int round = 0; round < 3; ++round) {
        bestInflate = std::min(bestInflate, BareInflate(path, bytes));
        bestWalk = std::min(bestWalk, Walk(path, got));
    }
    std::printf("file %.1f MB, decompressed %.1f MB, %lld values\n", double(QFile(path).size()) / 1e6,
                double(bytes) / 1e6, static_cast<long long>(got));
    std::printf("bare inflate %.3f s, walk into columns %.3f s, ratio %.2f\n", bestInflate, bestWalk,
                bestWalk / bestInflate);
    return 0;
}
