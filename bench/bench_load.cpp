// Loading a recording against the bare inflate of the same file, in one process.
//   bench_load [values]    default 10,000,000 values on 4 channels; 100000000 on request
// Prints both times, their ratio (goal <= 1.5), the peak memory per loaded value beyond the
// state before loading (goal <= 16 bytes), and the cost of Table_SetFirstRow in the middle.

#include "DataBase.h"
#include "FileThread.h"
#include "RecordingGenerator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <fstream>
#include <string>
#include <zlib.h>

namespace {

qint64 StatusKb(const char* key) {
    std::ifstream f("/proc/self/status");
    std::string line;
    while (std::getline(f, line))
        if (line.rfind(key, 0) == 0) return std::stoll(line.substr(std::strlen(key)));
    return -1;
}

void ResetPeak() {
    std::ofstream f("/proc/self/clear_refs");
    f << "5";
}

double BareInflate(const QString& path) {
    QElapsedTimer timer;
    timer.start();
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return 0;
    z_stream z{};
    inflateInit(&z);
    std::vector<char> in(256 * 1024), out(65536);
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
    }
    inflateEnd(&z);
    return double(timer.nsecsElapsed()) * 1e-9;
}

double Load(TDataBase& db, const QString& path, int& blocks) {
    QElapsedTimer timer;
    timer.start();
    db.AddFile(path);
    QEventLoop loop;
    blocks = 0;
    TFileThread thread(
        &db, path,
        [&](int index, const QString&) {
            if (index == TFileThread::kProgress) ++blocks;
            if (index < 0) loop.quit();
        },
        [](int& res) { res = 2; });
    loop.exec();
    thread.wait();
    return double(timer.nsecsElapsed()) * 1e-9;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const qint64 values = argc > 1 ? QByteArray(argv[1]).toLongLong() : 10000000;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.zeb"));
    TGenOptions o;
    o.channels = 4;
    o.records = values / 4;
    std::printf("writing %lld values on %d channels ...\n", static_cast<long long>(values), o.channels);
    std::fflush(stdout);
    if (!WriteRecording(path, o)) return 1;
    std::printf("file %.1f MB\n", double(QFile(path).size()) / 1e6);

    double bestInflate = 1e30, bestLoad = 1e30;
    double bytesPerValue = 0;
    int blocks = 0;
    const int rounds = values > 50000000 ? 1 : 3;
    std::unique_ptr<TDataBase> last;
    for (int round = 0; round < rounds; ++round) {
        bestInflate = std::min(bestInflate, BareInflate(path));
        last.reset();
        auto db = std::make_unique<TDataBase>();
        const qint64 before = StatusKb("VmRSS:");
        ResetPeak();
        bestLoad = std::min(bestLoad, Load(*db, path, blocks));
        const qint64 peak = StatusKb("VmHWM:");
        // Only the first load sees fresh memory; later ones reuse what the allocator kept.
        if (round == 0) bytesPerValue = double(peak - before) * 1024.0 / double(db->ValueCount());
        last = std::move(db);
    }
    std::printf("bare inflate %.3f s, load through the loader thread %.3f s (%d blocks), ratio %.2f\n",
                bestInflate, bestLoad, blocks, bestLoad / bestInflate);
    std::printf("peak memory per loaded value: %.1f bytes\n", bytesPerValue);

    // The table's first row in the middle: binary search per curve and 50 merged rows.
    double mn, mx;
    last->GetXMinXMax(mn, mx, true);
    const int reps = 2000;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < reps; ++i) last->Table_SetFirstRow(mn + (mx - mn) * (0.5 + 1e-4 * (i % 100)));
    std::printf("Table_SetFirstRow in the middle of %lld values: %.1f us\n",
                static_cast<long long>(last->ValueCount()), double(timer.nsecsElapsed()) / 1e3 / reps);

    // The table's End and Home: the last row, then a page back; the first row.
    timer.restart();
    for (int i = 0; i < reps; ++i) {
        last->Table_SetFirstRow(10000000000.0);
        last->Table_MoveFirstRow(-47);
        last->Table_SetFirstRow(0.0);
    }
    std::printf("table End (page back) and Home: %.1f us\n", double(timer.nsecsElapsed()) / 1e3 / reps);
    return 0;
}
