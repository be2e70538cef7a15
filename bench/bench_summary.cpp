// The summary of many recordings against the bare zlib inflate of the same files, in one run.
//   bench_summary [recordings] [values]   default 40 recordings of 1,000,000 values each
// Prints the summary's time, the sum of the bare inflates and their ratio (goal: at most 0.9,
// reading the next recording while the previous one's figures are made), then the peak memory
// of summarising 40 recordings of 2,500,000 values against reading the largest of them alone
// (goal: at most 1.5), each measured in a child process of its own.

#include "BenchCommon.h"
#include "RecordingGenerator.h"
#include "store/DataBase.h"
#include "store/Summary.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

QStringList MakeRecordings(const QTemporaryDir& dir, int count, qint64 values, const char* prefix) {
    QStringList files;
    for (int k = 0; k < count; ++k) {
        TGenOptions o;
        o.seed = quint64(100 + k);
        o.channels = 4;
        o.records = values / o.channels;
        o.intervalSeconds = 10.0;
        const QString path = dir.filePath(QStringLiteral("%1-%2.zeb").arg(QLatin1String(prefix)).arg(k, 2, 10, QLatin1Char('0')));
        if (!WriteRecording(path, o)) return {};
        files << path;
    }
    return files;
}

// In a child: the peak memory beyond the start of summarising the files (or reading the first
// alone), in kB, on stdout.
int Child(const QString& mode, const QStringList& files) {
    const qint64 before = StatusKb("VmRSS:");
    ResetPeak();
    if (mode == QLatin1String("--child-one")) {
        TDataBase db;
        ReadForSummary(db, files.first(), {});
        const auto rows = SummaryRows(db, files.first(), TSummaryStatus::Ok, {});
        if (rows.empty()) return 1;
    } else {
        const auto rows = TSummaryRun{}.Run(files, {});
        if (rows.empty()) return 1;
    }
    std::printf("%lld\n", static_cast<long long>(StatusKb("VmHWM:") - before));
    return 0;
}

qint64 PeakInChild(const QString& mode, const QStringList& files) {
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), QStringList{mode} + files);
    child.waitForFinished(-1);
    return child.readAllStandardOutput().trimmed().toLongLong();
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (!args.isEmpty() && args.first().startsWith(QLatin1String("--child"))) return Child(args.first(), args.mid(1));
    const int count = args.size() > 0 ? args[0].toInt() : 40;
    const qint64 values = args.size() > 1 ? args[1].toLongLong() : 1000000;

    QTemporaryDir dir;
    std::printf("making %d recordings of %lld values...\n", count, static_cast<long long>(values));
    const QStringList files = MakeRecordings(dir, count, values, "speed");
    if (files.isEmpty()) return 1;

    // Best of three, the baseline and the summary taken in turns.
    double inflate = 1e30, summary = 1e30;
    for (int round = 0; round < 3; ++round) {
        double sum = 0.0;
        for (const QString& f : files) sum += BareZlib(f);
        inflate = std::min(inflate, sum);
        QElapsedTimer t;
        t.start();
        const auto rows = TSummaryRun{}.Run(files, {});
        summary = std::min(summary, Seconds(t));
        if (rows.size() != size_t(count) * 4) return 1;
    }
    std::printf("bare zlib inflate of the %d files %.3f s, summary %.3f s: ratio %.2f (goal <= 0.9)\n", count,
                inflate, summary, summary / inflate);
    {
        // Where the time goes, one recording after another without overlap.
        double reading = 0.0, figures = 0.0;
        for (const QString& f : files) {
            TDataBase db;
            QElapsedTimer t;
            t.start();
            const TSummaryStatus status = ReadForSummary(db, f, {});
            reading += Seconds(t);
            t.restart();
            const auto rows = SummaryRows(db, f, status, {});
            figures += Seconds(t);
        }
        std::printf("  in turn: reading %.3f s (%.2f), figures %.3f s (%.2f)\n", reading, reading / inflate, figures,
                    figures / inflate);
    }

    std::printf("making %d recordings of 2,500,000 values...\n", count);
    const QStringList big = MakeRecordings(dir, count, 2500000, "memory");
    if (big.isEmpty()) return 1;
    const qint64 one = PeakInChild(QStringLiteral("--child-one"), big);
    const qint64 all = PeakInChild(QStringLiteral("--child-all"), big);
    std::printf("peak memory: one recording %.1f MB, the summary of %d %.1f MB: ratio %.2f (goal <= 1.5)\n",
                one / 1024.0, count, all / 1024.0, double(all) / double(std::max<qint64>(one, 1)));
    return 0;
}
