// The companion programs against bare zlib on the same data, in one process.
//   bench_companions [previewValues [cutValues [csvValues]]]
//       defaults 400,000,000 / 100,000,000 / 10,000,000 values on 4 channels
// Previewer pass: time against a bare inflate of the file (goal <= 1.3) and its peak memory
// (goal < 200 MB). Cutter, whole window and every channel (the most it can write): time
// against a bare inflate of the source plus a bare deflate of what it writes (goal <= 2).
// Text converter: time and its ratio to the bare inflate (goal <= 3); then zeb2csv as a
// program, its peak memory on 4*10^6 values in time order, on the same with one late record
// (goal: at most 1.3 times the ordered one) and on 10^7 in order. Files go to $ZEB_BENCH_DIR
// or a temporary folder.

#include "Cutter.h"
#include "data/DataFile.h"
#include "Overview.h"
#include "RecordingGenerator.h"

#include "BenchCommon.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>
#include <zlib.h>

namespace {

QString Make(const QTemporaryDir& dir, const char* name, qint64 values, int late = 0) {
    const QString path = dir.filePath(QString::fromLatin1(name));
    TGenOptions o;
    o.channels = 4;
    o.records = values / 4;
    o.lateRecords = late;
    o.intervalSeconds = 1.0; // 10^8 records a minute apart would run past 2099, where stamps end
    std::printf("writing %lld values on 4 channels ... ", static_cast<long long>(values));
    std::fflush(stdout);
    QElapsedTimer t;
    t.start();
    if (!WriteRecording(path, o)) return {};
    std::printf("%.1f MB in %.1f s\n", double(QFile(path).size()) / 1e6, Seconds(t));
    return path;
}

double Cut(const QString& source, const QString& target, bool csv) {
    TCutRequest r;
    r.Source = source;
    r.Target = target;
    r.Channels = {0, 1, 2, 3};
    r.Csv = csv;
    QElapsedTimer t;
    t.start();
    if (TCutter(r).Run() != TCutResult::Ok) return -1;
    return Seconds(t);
}

// The converter's peak memory in MB as a process of its own: this program started again to
// convert the source and report its own high-water mark (a child's rusage would carry this
// process's own peak over its exec). -1 when it failed.
double ProgramPeakMb(const QString& source, const QString& target) {
    QProcess p;
    p.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--convert"), source, target});
    if (!p.waitForFinished(-1) || p.exitCode() != 0) return -1;
    return p.readAllStandardOutput().trimmed().toDouble() / 1024.0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc == 4 && std::strcmp(argv[1], "--convert") == 0) {
        // As zeb2csv does with its default settings.
        if (Cut(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]), true) < 0) return 1;
        std::printf("%lld\n", static_cast<long long>(StatusKb("VmHWM:")));
        return 0;
    }
    const qint64 previewValues = argc > 1 ? QByteArray(argv[1]).toLongLong() : 400000000;
    const qint64 cutValues = argc > 2 ? QByteArray(argv[2]).toLongLong() : 100000000;
    const qint64 csvValues = argc > 3 ? QByteArray(argv[3]).toLongLong() : 10000000;
    const QByteArray where = qgetenv("ZEB_BENCH_DIR");
    QTemporaryDir dir(where.isEmpty() ? QDir::tempPath() + QStringLiteral("/bench-XXXXXX")
                                      : QString::fromLocal8Bit(where) + QStringLiteral("/bench-XXXXXX"));

    // Previewer: one pass over the file, read-ahead inflating in a thread of its own.
    {
        const QString path = Make(dir, "preview.zeb", previewValues);
        if (path.isEmpty()) return 1;
        const double inflate = BareZlib(path, false);
        TOverview ov;
        const qint64 before = StatusKb("VmRSS:");
        ResetPeak();
        QElapsedTimer t;
        t.start();
        const TOverview::TStatus status = ov.Build(path);
        const double pass = Seconds(t);
        const qint64 peak = StatusKb("VmHWM:");
        std::printf("previewer pass: %lld values, bare inflate %.2f s, pass %.2f s, ratio %.2f (goal <= 1.3), "
                    "memory %.1f MB above the %.1f MB before (goal < 200 MB)%s\n",
                    static_cast<long long>(ov.ValueCount()), inflate, pass, pass / inflate,
                    double(peak - before) / 1024.0, double(before) / 1024.0,
                    status == TOverview::TStatus::Ok && ov.ValueCount() == previewValues ? ""
                                                                                         : " [not all values read]");
        QFile::remove(path);
    }

    // Cutter: everything, so it writes as much as it reads.
    {
        const QString path = Make(dir, "cut.zeb", cutValues);
        if (path.isEmpty()) return 1;
        const double inflate = BareZlib(path, false);
        const double both = BareZlib(path, true);
        const double cut = Cut(path, dir.filePath(QStringLiteral("out.zeb")), false);
        std::printf("cutter: bare inflate %.2f s, bare inflate + deflate %.2f s, cutter %.2f s, ratio %.2f "
                    "(goal <= 2)\n",
                    inflate, both, cut, cut / both);
        QFile::remove(path);
        QFile::remove(dir.filePath(QStringLiteral("out.zeb")));
    }

    // Text converter.
    {
        const QString path = Make(dir, "csv.zeb", csvValues);
        if (path.isEmpty()) return 1;
        const double inflate = BareZlib(path, false);
        const QString out = dir.filePath(QStringLiteral("out.csv"));
        const qint64 before = StatusKb("VmRSS:");
        ResetPeak();
        const double csv = Cut(path, out, true);
        const qint64 peak = StatusKb("VmHWM:");
        std::printf("text converter: %lld values, bare inflate %.2f s, converter %.2f s (ratio %.2f, goal <= 3), "
                    "%.1f MB of text, memory %.1f MB above the start\n",
                    static_cast<long long>(csvValues), inflate, csv, csv / inflate, double(QFile(out).size()) / 1e6,
                    double(peak - before) / 1024.0);
        const double whole = ProgramPeakMb(path, out);
        QFile::remove(path);
        QFile::remove(out);

        // The program's memory whatever the order of the records.
        const qint64 sortValues = 4000000;
        const QString ordered = Make(dir, "ordered.zeb", sortValues), late = Make(dir, "late.zeb", sortValues, 1);
        if (ordered.isEmpty() || late.isEmpty()) return 1;
        const double orderedMb = ProgramPeakMb(ordered, out), lateMb = ProgramPeakMb(late, out);
        std::printf("zeb2csv peak memory: %lld values in time order %.1f MB, with one late record %.1f MB (ratio %.2f, "
                    "goal <= 1.3), %lld values in time order %.1f MB\n",
                    static_cast<long long>(sortValues), orderedMb, lateMb, lateMb / orderedMb,
                    static_cast<long long>(csvValues), whole);
    }
    return 0;
}
