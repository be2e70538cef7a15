#pragma once
// The samples of one curve: times (seconds since 1 January 2000) and values in fixed-size
// chunks, so appending never moves what is there. Values come from 4-byte singles in the file
// and are kept as such. Null points (gap markers and the first value after a gap) are rare and
// kept in a sorted side list.
//
// Times: a full chunk whose stamps follow runs of a fixed step is kept as those runs plus,
// per point, its distance in units of the last place from the run's line (4 bits; stamps too
// far off are kept whole in a side list). Every stamp reads back bit for bit; a regularly
// sampled curve costs 4.5 bytes per point instead of 12. Chunks that runs do not describe
// well keep their stamps as written.

#include "data/RecordingWalk.h"

#include <bit>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

class TCurveData {
public:
    static constexpr int kChunkBits = 16;
    static constexpr qint64 kChunkSize = qint64(1) << kChunkBits;
    static constexpr qint64 kChunkMask = kChunkSize - 1;

    TCurveData() = default;
    TCurveData(TCurveData&&) noexcept = default;
    TCurveData& operator=(TCurveData&&) noexcept = default;

    qint64 Count() const { return FCount; }
    bool IsEmpty() const { return FCount == 0; }

    double Time(qint64 i) const {
        const TTimeChunk& c = FTimes[size_t(i >> kChunkBits)];
        const int j = int(i & kChunkMask);
        return c.Raw ? c.Raw[size_t(j)] : c.Decode(j);
    }
    double Value(qint64 i) const { return double(FValues[size_t(i >> kChunkBits)][size_t(i & kChunkMask)]); }
    TPointKind Kind(qint64 i) const;
    bool IsNull(qint64 i) const { return Kind(i) != TPointKind::Value; }
    // Whether the point is a gap marker: a null point without a value of its own.
    bool IsGap(qint64 i) const { return Kind(i) == TPointKind::Gap; }
    const std::vector<std::pair<qint64, TPointKind>>& Nulls() const { return FNulls; }

    double FirstTime() const { return Time(0); }
    double LastTime() const { return Time(FCount - 1); }

    void Append(std::span<const double> times, std::span<const double> values, std::span<const TPointKind> kinds);
    void Append(double time, double value, TPointKind kind = TPointKind::Value);
    // The loader's path: one point straight into the columns.
    void Push(double time, float value, TPointKind kind) {
        if (!FTail || (FCount & kChunkMask) == 0) PrepareTail();
        const size_t at = size_t(FCount & kChunkMask);
        if (FCount > 0 && time < FLast) FSorted = false;
        FLast = time;
        FTail[at] = time;
        FValueTail[at] = value;
        if (kind != TPointKind::Value) FNulls.emplace_back(FCount, kind);
        ++FCount;
    }
    void Clear();
    // Packs the last, partly filled chunk too; appending afterwards unpacks it again.
    void Compact();
    // Whether full chunks get packed, for the whole process: benchmarks compare both ways.
    static void SetPacking(bool on);
    static bool Packing();

    // Keeps the times ascending, as a time-ordered curve needs; a file written out of
    // order is put in order once, with equal stamps keeping their file order.
    bool IsSorted() const { return FSorted; }
    void SortByTime();

    // First index whose time is >= t (Count() when none), for a curve in time order: a search
    // over the chunks, then from where a packed chunk's run puts t.
    qint64 LowerBound(double t) const;
    // First index whose time is > t.
    qint64 UpperBound(double t) const;

    // Bytes held by the columns.
    qint64 MemoryBytes() const;

    // For fast sequential readers. The times of [first, first + n), which must lie in one
    // chunk: a pointer into the column where the chunk keeps its stamps as written, else into
    // buf (room for n) with the stamps unpacked.
    const double* Times(qint64 first, qint64 n, double* buf) const;
    std::span<const float> ValueChunk(qint64 chunk) const;

    qint64 ChunkCount() const { return qint64(FValues.size()); }
    // Whether a chunk keeps its stamps packed (for tests and the memory figures).
    bool IsChunkPacked(qint64 chunk) const { return !FTimes[size_t(chunk)].Raw; }
    // An address inside the memory that holds point i's time, for prefetching.
    const void* TimeAddress(qint64 i) const;

private:
    struct TTimeRun {
        qint32 First; // index in the chunk
        double Base;  // the stamp at First
        double Step;
    };
    // The line a run draws through its points; the same expression packs and unpacks.
    static double Line(const TTimeRun& r, int j) { return r.Base + double(j - r.First) * r.Step; }
    static double AddUlps(double v, int ulps) {
        return std::bit_cast<double>(std::bit_cast<std::int64_t>(v) + std::int64_t(ulps));
    }
    struct TTimeChunk {
        std::unique_ptr<double[]> Raw; // the stamps as written; null when packed
        // The first run's line, kept here so the common chunk of one run decodes without a
        // look into Runs.
        double Base = 0.0, Step = 0.0;
        bool OneRun = false;
        // Per point 4 bits: the stamp's bits minus its run's line's bits, -7..7; -8 marks an
        // exception. Null when every stamp lies on its line.
        std::unique_ptr<std::uint8_t[]> Residuals;
        std::vector<TTimeRun> Runs;
        std::vector<std::pair<qint32, double>> Exceptions; // sorted by index

        double Decode(int j) const {
            if (!OneRun) return DecodeSlow(j);
            const double line = Base + double(j) * Step; // Line() of the first run, whose First is 0
            if (!Residuals) return line;
            const int x = (Residuals[size_t(j >> 1)] >> ((j & 1) * 4)) & 0xF;
            return x != 8 ? AddUlps(line, (x ^ 8) - 8) : DecodeSlow(j);
        }
        double DecodeSlow(int j) const;
        // Packs n stamps when that saves most of their memory; false leaves the chunk as it is.
        bool Pack(const double* t, int n);
        bool PackOneRun(const double* t, int n);
        void SetRuns(std::vector<TTimeRun> runs);
        void Unpack(double* out, int first, int n) const;
        qint64 Bytes() const;
    };

    // Makes the chunk that point FCount goes into writable: a new one when the last is full
    // (packing that one), or the last one unpacked again after Compact.
    void PrepareTail();
    template <typename Before> qint64 Bound(double t, Before before) const;
    void SealChunk(qint64 chunk, int n);

    std::vector<TTimeChunk> FTimes;
    std::vector<std::unique_ptr<float[]>> FValues;
    std::vector<std::pair<qint64, TPointKind>> FNulls;
    std::unique_ptr<double[]> FSpare; // a raw chunk kept for the next one
    double* FTail = nullptr;          // the chunk being filled
    float* FValueTail = nullptr;
    qint64 FCount = 0;
    qint64 FTrimmed = 0; // points of the last chunk when Compact cut it to their size, else 0
    double FLast = 0.0;
    bool FSorted = true;
};
