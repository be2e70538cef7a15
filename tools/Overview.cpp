#include "Overview.h"

#include "data/DataFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace {

constexpr float kEmptyMin = std::numeric_limits<float>::infinity();
constexpr float kEmptyMax = -std::numeric_limits<float>::infinity();

} // namespace

class TOverviewReceiver : public TRecordingReceiver {
public:
    TOverviewReceiver(TOverview& overview, TDataFile& file, const std::atomic<bool>* cancel,
                      std::atomic<qint64>* done)
        : FOverview(overview), FFile(file), FCancel(cancel), FDone(done) {}

    bool WantsPoints() const override { return false; }
    bool IsCancelled() override { return FCancel && FCancel->load(std::memory_order_relaxed); }
    void OnBlock(int, quint16, int) override {
        if (FDone) FDone->store(FFile.CompressedPos(), std::memory_order_relaxed);
    }
    void AddCurve(const QString& module) override { FOverview.AddChannel(module); }
    void SetChannelName(int curve, const QString& name) override { FOverview.FChannels[size_t(curve)].Name = name; }
    void SetUnit(int curve, const QString& unit) override { FOverview.FChannels[size_t(curve)].Unit = unit; }
    void OnRecords(std::span<const char> records, int recordSize) override {
        const int count = (recordSize - 8) / 4;
        FBits.resize(size_t(count) + 1);
        for (size_t at = 0; at + size_t(recordSize) <= records.size(); at += size_t(recordSize)) {
            double days;
            std::memcpy(&days, records.data() + at, 8);
            std::memcpy(FBits.data(), records.data() + at + 8, size_t(count) * 4);
            FOverview.AddRecord(days * 86400.0, FBits.data(), count);
        }
    }

private:
    TOverview& FOverview;
    TDataFile& FFile;
    const std::atomic<bool>* FCancel;
    std::atomic<qint64>* FDone;
    std::vector<quint32> FBits;
};

void TOverview::Reset() { *this = TOverview(); }

void TOverview::AddChannel(const QString& module) {
    TOverviewChannel c;
    c.Module = module;
    c.BucketMin.assign(size_t(kBuckets), kEmptyMin);
    c.BucketMax.assign(size_t(kBuckets), kEmptyMax);
    FChannels.push_back(std::move(c));
}

// Old bucket i becomes new bucket (i + shift) / factor: the origin moves down by shift old
// buckets and each new bucket spans factor old ones, so the old edges stay edges.
void TOverview::Rebin(qint64 shift, qint64 factor) {
    for (TOverviewChannel& c : FChannels) {
        std::vector<float> mn(size_t(kBuckets), kEmptyMin), mx(size_t(kBuckets), kEmptyMax);
        for (qint64 i = 0; i < kBuckets; ++i) {
            const size_t j = size_t((i + shift) / factor);
            mn[j] = std::min(mn[j], c.BucketMin[size_t(i)]);
            mx[j] = std::max(mx[j], c.BucketMax[size_t(i)]);
        }
        c.BucketMin.swap(mn);
        c.BucketMax.swap(mx);
    }
    FOrigin -= double(shift) * FWidth;
    FWidth *= double(factor);
}

qint64 TOverview::BucketOf(double t) {
    if (!FStarted) {
        FStarted = true;
        FOrigin = t;
        FWidth = kFirstWidth;
    }
    double pos = std::floor((t - FOrigin) / FWidth);
    if (pos >= kBuckets) {
        qint64 factor = 1;
        while (pos / double(factor) >= kBuckets) factor *= 2;
        Rebin(0, factor);
    } else if (pos < 0) {
        const qint64 shift = qint64(-pos);
        qint64 factor = 1;
        while ((kBuckets - 1 + shift) / factor >= kBuckets) factor *= 2;
        Rebin(shift, factor);
    } else {
        return qint64(pos);
    }
    pos = std::floor((t - FOrigin) / FWidth);
    return std::clamp<qint64>(qint64(pos), 0, kBuckets - 1);
}

void TOverview::AddRecord(double t, const quint32* bits, int count) {
    count = std::min(count, int(FChannels.size()));
    bool any = false;
    for (int c = 0; c < count; ++c) any = any || bits[c] != TRecordingWalk::kNoValueBits;
    if (!any) return;
    FFirst = std::min(FFirst, t);
    FLast = std::max(FLast, t);
    // Stamps mostly come in order: most records fall into the bucket of the one before.
    if (!(t >= FHitFrom && t < FHitTo)) {
        FHit = BucketOf(t);
        FHitFrom = BucketStart(int(FHit));
        FHitTo = BucketStart(int(FHit) + 1);
    }
    const size_t b = size_t(FHit);
    for (int c = 0; c < count; ++c) {
        const quint32 bits32 = bits[c];
        if (bits32 == TRecordingWalk::kNoValueBits) continue;
        ++FValueCount;
        if (bits32 == TRecordingWalk::kGapBits) continue;
        TOverviewChannel& ch = FChannels[size_t(c)];
        ++ch.Count;
        const float v = std::bit_cast<float>(bits32);
        if (!std::isfinite(v)) continue;
        ch.BucketMin[b] = std::min(ch.BucketMin[b], v);
        ch.BucketMax[b] = std::max(ch.BucketMax[b], v);
        ch.Min = std::min(ch.Min, double(v));
        ch.Max = std::max(ch.Max, double(v));
    }
}

TOverview::TStatus TOverview::Build(const QString& path, const std::atomic<bool>* cancel,
                                    std::atomic<qint64>* done, std::atomic<qint64>* total) {
    Reset();
    auto file = TDataFile::CreateLoad(path);
    if (!file) return TStatus::CannotRead;
    if (total) total->store(file->CompressedSize());
    // Inflating runs ahead in a thread of its own while this one fills the buckets.
    file->EnableReadAhead();
    TOverviewReceiver receiver(*this, *file, cancel, done);
    TRecordingWalk walk(*file, receiver);
    const TRecordingWalk::TEnd end = walk.Run();
    if (done) done->store(file->CompressedSize());
    switch (end) {
    case TRecordingWalk::TEnd::BadHeader: return TStatus::NotARecording;
    case TRecordingWalk::TEnd::Cancelled: return TStatus::Cancelled;
    case TRecordingWalk::TEnd::Damaged:
    case TRecordingWalk::TEnd::Truncated: return TStatus::Damaged;
    default: return TStatus::Ok;
    }
}
