#pragma once
// Block summaries of a curve's samples for drawing and for the analyses.

#include "data/CurveData.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <limits>
#include <mutex>
#include <vector>

// What is known of a curve's samples block by block, built once after loading, so that a
// redraw or an analysis of a range costs its blocks and not its samples.
//
// For drawing: the smallest and largest value per block, in levels of eight times the block
// size of the level below. Gap markers carry no value and are left out; so are NaN and
// infinite values, which no axis can show; blocks that hold one are marked.
//
// For the analyses: per block of 4096 samples the count, sums and extremes of the measured
// values and the trapezoids between them (TBlockStats), made on first use.
class TCurveSummary {
public:
    static constexpr int kBaseBits = 4; // 16 samples per block of the lowest level
    static constexpr qint64 kBase = qint64(1) << kBaseBits;
    static constexpr int kFanBits = 3; // 8 blocks make one of the level above
    static constexpr qint64 kFan = qint64(1) << kFanBits;

    explicit TCurveSummary(const TCurveData& data);

    // The extremes of the values in [first, last); false when the range holds no value.
    bool MinMax(qint64 first, qint64 last, double& min, double& max) const;
    // The first NaN or infinite value in [first, last), or last when there is none. Such
    // values are rare; blocks without one are skipped level by level.
    qint64 NextNonFinite(qint64 first, qint64 last) const;
    qint64 Count() const { return FCount; }
    qint64 MemoryBytes() const;

    // A measured value is a point that is neither a gap marker nor NaN; infinite values are
    // measurements. Sums are taken of value - Reference (the curve's first measured value):
    // the same formulas in exact arithmetic, far less rounding on values like 1013 hPa.
    static constexpr int kStatBits = 12;
    static constexpr qint64 kStatBlock = qint64(1) << kStatBits;
    struct TBlockStats {
        qint64 Count = 0; // measured values
        double Sum = 0.0, SumSq = 0.0;
        double Min = std::numeric_limits<double>::infinity(), Max = -std::numeric_limits<double>::infinity();
        // Trapezoids (y[i-1] + y[i]) / 2 * (x[i] - x[i-1]) for every i of the block whose
        // point and the one before are both measured.
        double Trapezoids = 0.0;
        // Every point of the block is measured.
        bool Clean = true;
    };
    const std::vector<TBlockStats>& Blocks() const;

    // Per block whose points are all measured: the time from its first to its last point
    // split into time in and out of alarm (each stretch credited to the state it began in),
    // and the states of its first and last point; made on first use for a limit test and
    // kept for the last test asked for. A test is named by its mode and two limits.
    struct TLimitKey {
        int Mode = 0;
        double L1 = 0.0, L2 = 0.0;
        bool operator==(const TLimitKey&) const = default;
    };
    struct TLimitBlock {
        double Out = 0.0, In = 0.0;
        bool FirstAlarm = false, LastAlarm = false;
    };
    std::shared_ptr<const std::vector<TLimitBlock>> LimitBlocks(const TLimitKey& key,
                                                                 const std::function<bool(double)>& isAlarm) const;
    double Reference() const {
        Blocks();
        return FReference;
    }
    const TCurveData& Data() const { return FData; }
    // Asks the cache for the blocks around a sample ahead of a query.
    void Prefetch(qint64 i) const {
        for (size_t level = 0, k = size_t(i >> kBaseBits); level < std::min<size_t>(FLevels.size(), 3);
             ++level, k >>= kFanBits)
            if (k < FLevels[level].size()) __builtin_prefetch(&FLevels[level][k]);
    }

    struct TRange {
        float Min, Max;
    };
    // Large levels live on huge pages where the system offers them: a redraw touches a few
    // blocks per pixel column all over the level, and each small page costs a page walk.
    template <typename T> struct THugeAllocator {
        using value_type = T;
        THugeAllocator() = default;
        template <typename U> THugeAllocator(const THugeAllocator<U>&) {}
        T* allocate(size_t n);
        void deallocate(T* p, size_t) { std::free(p); }
        bool operator==(const THugeAllocator&) const { return true; }
    };
    using TLevel = std::vector<TRange, THugeAllocator<TRange>>;

private:
    void ScanRaw(qint64 first, qint64 last, TRange& r) const;
    qint64 FindNonFinite(size_t level, qint64 block, qint64 first, qint64 last) const;
    bool HasNonFinite(size_t level, qint64 block) const {
        return (FNonFinite[level][size_t(block >> 6)] >> (block & 63)) & 1;
    }

    const TCurveData& FData;
    qint64 FCount = 0;
    // [level][block]; minimum and maximum side by side, as every query wants both.
    std::vector<TLevel> FLevels;
    // [level][block / 64]: one bit per block that holds a NaN or an infinite value.
    std::vector<std::vector<quint64>> FNonFinite;
    mutable std::once_flag FStatsOnce;
    mutable std::vector<TBlockStats> FStats;
    mutable double FReference = 0.0;
    mutable std::mutex FLimitMutex;
    mutable TLimitKey FLimitKey;
    mutable std::shared_ptr<const std::vector<TLimitBlock>> FLimitBlocks;
};
