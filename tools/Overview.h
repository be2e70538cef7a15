#pragma once
// The previewer's pass: one streaming walk over a recording of any size that keeps, for each
// channel, the smallest and the largest value in each of a fixed number of time buckets.
// Memory is that of the buckets, whatever the size of the file.
//
// The time range is not known before the end, so the buckets start narrow at the first
// stamp and are merged pairwise whenever a stamp falls outside them: each bucket then always
// covers a whole number of the narrowest ones, and nothing is read twice.

#include "data/RecordingWalk.h"

#include <QString>

#include <atomic>
#include <limits>
#include <vector>

struct TOverviewChannel {
    QString Module, Name, Unit;
    qint64 Count = 0; // measured values, gap markers not counted
    // Of the finite values; Min > Max when there is none.
    double Min = std::numeric_limits<double>::infinity();
    double Max = -std::numeric_limits<double>::infinity();
    // Per bucket; Min > Max where a bucket holds no finite value.
    std::vector<float> BucketMin, BucketMax;

    // The name the viewer gives the curve: channel name, else module name.
    QString Title() const { return Name.isEmpty() ? Module : Name; }
};

class TOverview {
public:
    static constexpr int kBuckets = 2000;
    static constexpr double kFirstWidth = 1e-3; // seconds

    enum class TStatus { Ok, Damaged, Cancelled, CannotRead, NotARecording };

    // Reads the file. Progress: bytes of the compressed file read so far, of total; both may
    // be read from another thread while the pass runs. Cancel is checked between blocks.
    TStatus Build(const QString& path, const std::atomic<bool>* cancel = nullptr,
                  std::atomic<qint64>* done = nullptr, std::atomic<qint64>* total = nullptr);

    const std::vector<TOverviewChannel>& Channels() const { return FChannels; }
    // As the loader counts: every value that is not "no measurement", gap markers included.
    qint64 ValueCount() const { return FValueCount; }
    bool HasTime() const { return FFirst <= FLast; }
    double FirstTime() const { return FFirst; } // seconds since 1 January 2000
    double LastTime() const { return FLast; }
    int BucketCount() const { return kBuckets; }
    double BucketStart(int i) const { return FOrigin + FWidth * double(i); }
    double BucketWidth() const { return FWidth; }

    // One record, for the walk and for tests of the bucket arithmetic.
    void AddRecord(double seconds, const quint32* bits, int count);
    void AddChannel(const QString& module);
    void Reset();

private:
    friend class TOverviewReceiver;
    qint64 BucketOf(double seconds);
    void Rebin(qint64 shift, qint64 factor);

    std::vector<TOverviewChannel> FChannels;
    qint64 FValueCount = 0;
    double FFirst = std::numeric_limits<double>::infinity();
    double FLast = -std::numeric_limits<double>::infinity();
    double FOrigin = 0.0;
    double FWidth = kFirstWidth;
    bool FStarted = false;
    // The bucket the last record fell into, and its edges.
    qint64 FHit = 0;
    double FHitFrom = 0.0, FHitTo = 0.0;
};
