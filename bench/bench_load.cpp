// Loading a recording against the bare inflate of the same file, in one process.
//   bench_load [values...]    default 10,000,000 values on 4 channels; e.g. 10000000 100000000
// For each size, a regularly sampled recording and one whose stamps jitter: the bare zlib
// inflate, the bare ISA-L inflate, the load through the loader thread with each reader, the
// peak memory per loaded value beyond the state before loading, and the cost of
// Table_SetFirstRow in the middle.
//
// Goals: the load at most 0.75 of the bare zlib inflate of the same file; at most 5 bytes per
// value on a regular recording and 12.5 on an irregular one; the table no slower than on the
// same recording with its stamps kept as written (ratios <= 1, give or take the noise).

#include "BenchCommon.h"
#include "data/CurveData.h"
#include "data/DataFile.h"
#include "RecordingGenerator.h"
#include "store/DataBase.h"
#include "store/FileThread.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>
#include <zlib.h>
#ifdef ZEB_BENCH_ISAL
#include <isa-l/igzip_lib.h>
#endif

namespace {

double BareIsal(const QString& path) {
#ifdef ZEB_BENCH_ISAL
    QElapsedTimer timer;
    timer.start();
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return 0;
    auto s = std::make_unique<inflate_state>();
    isal_inflate_init(s.get());
    s->crc_flag = ISAL_ZLIB;
    std::vector<char> in(256 * 1024), out(65536);
    while (s->block_state != ISAL_BLOCK_FINISH) {
        if (s->avail_in == 0) {
            const qint64 r = f.read(in.data(), qint64(in.size()));
            if (r <= 0) break;
            s->next_in = reinterpret_cast<uint8_t*>(in.data());
            s->avail_in = uint32_t(r);
        }
        s->next_out = reinterpret_cast<uint8_t*>(out.data());
        s->avail_out = uint32_t(out.size());
        if (isal_inflate(s.get()) < 0) break;
    }
    const double seconds = double(timer.nsecsElapsed()) * 1e-9;
#if defined(__x86_64__) || defined(__i386__)
    // As the reader does: ISA-L may leave the vector registers' upper halves in use, which
    // would slow every later scalar computation of this thread (the table figures).
    if (__builtin_cpu_supports("avx")) asm volatile("vzeroupper");
#endif
    return seconds;
#else
    Q_UNUSED(path);
    return 0;
#endif
}

double Load(TDataBase& db, const QString& path) {
    QElapsedTimer timer;
    timer.start();
    db.AddFile(path);
    QEventLoop loop;
    TFileThread thread(
        &db, path, [&](TLoadReport report, const QString&) { if (int(report) < 0) loop.quit(); },
        [](TBigDataAnswer& answer) { answer = TBigDataAnswer::Continue; });
    loop.exec();
    thread.wait();
    return double(timer.nsecsElapsed()) * 1e-9;
}


// Best of the rounds.
double MeasureLoad(const QString& path, TDataFile::TInflater inflater, int rounds, std::unique_ptr<TDataBase>* keep) {
    TDataFile::SetDefaultInflater(inflater);
    double seconds = 1e30;
    for (int round = 0; round < rounds; ++round) {
        keep->reset();
        auto db = std::make_unique<TDataBase>();
        seconds = std::min(seconds, Load(*db, path));
        *keep = std::move(db);
    }
    return seconds;
}

// Peak memory of a load per value, in a process of its own: freed memory of earlier loads
// stays with this one and would be counted as free. Prints "peak columns" bytes per value.
int MemoryChild(const QString& path, const QString& inflater) {
    TDataFile::SetDefaultInflater(inflater == QLatin1String("zlib") ? TDataFile::TInflater::Zlib
                                                                    : TDataFile::TInflater::Isal);
    TDataBase db;
    const qint64 before = StatusKb("VmRSS:");
    ResetPeak();
    Load(db, path);
    const qint64 peak = StatusKb("VmHWM:");
    qint64 columns = 0;
    for (int c = 0; c < db.Curve_Count(); ++c) columns += db.Data(c).MemoryBytes();
    const double values = double(std::max<qint64>(db.ValueCount(), 1));
    std::printf("%.3f %.3f\n", double(peak - before) * 1024.0 / values, double(columns) / values);
    return 0;
}

struct TMemory {
    double peak = 0, columns = 0; // bytes per value
};

TMemory MeasureMemory(const QString& path, const char* inflater) {
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--memory"), path, QString::fromLatin1(inflater)});
    child.waitForFinished(-1);
    TMemory m;
    const QList<QByteArray> parts = child.readAllStandardOutput().trimmed().split(' ');
    if (parts.size() == 2) {
        m.peak = parts[0].toDouble();
        m.columns = parts[1].toDouble();
    }
    return m;
}

struct TTableFigures {
    double middle = 0, endHome = 0; // microseconds a call
};

TTableFigures TableFigures(TDataBase& db) {
    double mn, mx;
    db.GetXMinXMax(mn, mx, true);
    const int reps = 4000;
    TTableFigures f;
    // Best of three rounds: the figures are a few microseconds and the machine is shared.
    for (int round = 0; round < 3; ++round) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < reps; ++i) db.Table_SetFirstRow(mn + (mx - mn) * (0.5 + 1e-4 * (i % 100)));
        const double middle = double(timer.nsecsElapsed()) / 1e3 / reps;
        timer.restart();
        for (int i = 0; i < reps; ++i) {
            db.Table_SetFirstRow(10000000000.0);
            db.Table_MoveFirstRow(-47);
            db.Table_SetFirstRow(0.0);
        }
        const double endHome = double(timer.nsecsElapsed()) / 1e3 / reps;
        f.middle = round == 0 ? middle : std::min(f.middle, middle);
        f.endHome = round == 0 ? endHome : std::min(f.endHome, endHome);
    }
    return f;
}

void Run(qint64 values, bool irregular) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.zeb"));
    TGenOptions o;
    o.channels = 4;
    o.records = values / 4;
    o.intervalSeconds = 1.0;
    o.startDays = 8826.0;
    if (irregular) o.jitter = 0.5;
    if (!WriteRecording(path, o)) {
        std::printf("cannot write %s\n", qPrintable(path));
        return;
    }
    std::printf("%lld values on 4 channels, %s, file %.1f MB\n", static_cast<long long>(values),
                irregular ? "irregular stamps" : "regular stamps", double(QFile(path).size()) / 1e6);
    std::fflush(stdout);

    const int rounds = values > 50000000 ? 1 : 3;
    double zlib = 1e30, isal = 1e30;
    for (int r = 0; r < rounds; ++r) {
        zlib = std::min(zlib, BareZlib(path));
        isal = std::min(isal, BareIsal(path));
    }
    std::unique_ptr<TDataBase> db;
    const double withZlib = MeasureLoad(path, TDataFile::TInflater::Zlib, rounds, &db);
    const TMemory zlibMemory = MeasureMemory(path, "zlib");
    double withIsal = 0;
    TMemory isalMemory;
    if (TDataFile::HasIsal()) {
        withIsal = MeasureLoad(path, TDataFile::TInflater::Isal, rounds, &db);
        isalMemory = MeasureMemory(path, "isal");
    }
    std::printf("  bare inflate: zlib %.3f s", zlib);
    if (TDataFile::HasIsal()) std::printf(", ISA-L %.3f s (%.2f of zlib)", isal, isal / zlib);
    std::printf("\n  load with zlib %.3f s (%.2f of bare zlib), peak %.2f bytes per value (columns %.2f)\n",
                withZlib, withZlib / zlib, zlibMemory.peak, zlibMemory.columns);
    if (TDataFile::HasIsal())
        std::printf("  load with ISA-L %.3f s (%.2f of bare zlib, goal <= 0.75), peak %.2f bytes per value "
                    "(columns %.2f; goal <= %s)\n",
                    withIsal, withIsal / zlib, isalMemory.peak, isalMemory.columns, irregular ? "12.5" : "5");
    // The table against the same recording with every stamp kept as written, as before packing.
    const TTableFigures packed = TableFigures(*db);
    db.reset();
    TCurveData::SetPacking(false);
    auto asWritten = std::make_unique<TDataBase>();
    Load(*asWritten, path);
    TCurveData::SetPacking(true);
    const TTableFigures raw = TableFigures(*asWritten);
    std::printf("  Table_SetFirstRow in the middle %.2f us, with stamps as written %.2f us (%.2f); "
                "End (page back) and Home %.2f us against %.2f us (%.2f)\n",
                packed.middle, raw.middle, packed.middle / raw.middle, packed.endHome, raw.endHome,
                packed.endHome / raw.endHome);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc == 4 && std::strcmp(argv[1], "--memory") == 0)
        return MemoryChild(QString::fromLocal8Bit(argv[2]), QString::fromLatin1(argv[3]));
    std::vector<qint64> sizes;
    for (int i = 1; i < argc; ++i) sizes.push_back(QByteArray(argv[i]).toLongLong());
    if (sizes.empty()) sizes.push_back(10000000);
    for (qint64 values : sizes)
        for (bool irregular : {false, true}) Run(values, irregular);
    return 0;
}
