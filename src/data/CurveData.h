#pragma once
// The samples of one curve: times (seconds since 1 January 2000) and values in fixed-size
// chunks, so appending never moves what is there and 10^8 values cost 12 bytes each.
// Values come from 4-byte singles in the file and are kept as such. Null points (gap
// markers and the first value after a gap) are rare and kept in a sorted side list.

#include "RecordingWalk.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class TCurveData {
public:
    static constexpr int kChunkBits = 16;
    static constexpr qint64 kChunkSize = qint64(1) << kChunkBits;
    static constexpr qint64 kChunkMask = kChunkSize - 1;

    qint64 Count() const { return FCount; }
    bool IsEmpty() const { return FCount == 0; }

    double Time(qint64 i) const { return FTimes[size_t(i >> kChunkBits)][size_t(i & kChunkMask)]; }
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
        if ((FCount & kChunkMask) == 0 && (FCount >> kChunkBits) >= qint64(FTimes.size())) Grow();
        const size_t chunk = size_t(FCount >> kChunkBits), at = size_t(FCount & kChunkMask);
        if (FCount > 0 && time < FLast) FSorted = false;
        FLast = time;
        FTimes[chunk][at] = time;
        FValues[chunk][at] = value;
        if (kind != TPointKind::Value) FNulls.emplace_back(FCount, kind);
        ++FCount;
    }
    void Clear();

    // Keeps the times ascending, as a time-ordered curve needs; a file written out of
    // order is put in order once, with equal stamps keeping their file order.
    bool IsSorted() const { return FSorted; }
    void SortByTime();

    // First index whose time is >= t (Count() when none), by binary search.
    qint64 LowerBound(double t) const;
    // First index whose time is > t.
    qint64 UpperBound(double t) const;

    // Bytes held by the columns.
    qint64 MemoryBytes() const;

    // A contiguous run of one chunk, for fast sequential readers.
    std::span<const double> TimeChunk(qint64 chunk) const;
    std::span<const float> ValueChunk(qint64 chunk) const;
    qint64 ChunkCount() const { return qint64(FTimes.size()); }

private:
    void Grow();
    std::vector<std::unique_ptr<double[]>> FTimes;
    std::vector<std::unique_ptr<float[]>> FValues;
    std::vector<std::pair<qint64, TPointKind>> FNulls;
    qint64 FCount = 0;
    double FLast = 0.0;
    bool FSorted = true;
};
