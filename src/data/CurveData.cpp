#include "CurveData.h"

#include <algorithm>
#include <limits>
#include <numeric>

TPointKind TCurveData::Kind(qint64 i) const {
    if (FNulls.empty()) return TPointKind::Value;
    const auto it = std::lower_bound(FNulls.begin(), FNulls.end(), i,
                                     [](const auto& n, qint64 idx) { return n.first < idx; });
    return (it != FNulls.end() && it->first == i) ? it->second : TPointKind::Value;
}

void TCurveData::Grow() {
    FTimes.push_back(std::make_unique_for_overwrite<double[]>(size_t(kChunkSize)));
    FValues.push_back(std::make_unique_for_overwrite<float[]>(size_t(kChunkSize)));
}

void TCurveData::Append(double time, double value, TPointKind kind) {
    Append(std::span(&time, 1), std::span(&value, 1), std::span(&kind, 1));
}

void TCurveData::Append(std::span<const double> times, std::span<const double> values,
                        std::span<const TPointKind> kinds) {
    // Chunk by chunk with local pointers: a block's points go in at memory speed.
    const size_t n = times.size();
    double last = FCount > 0 ? FLast : -std::numeric_limits<double>::infinity();
    bool sorted = FSorted;
    size_t k = 0;
    while (k < n) {
        if ((FCount & kChunkMask) == 0 && (FCount >> kChunkBits) >= qint64(FTimes.size())) Grow();
        double* t = FTimes[size_t(FCount >> kChunkBits)].get();
        float* v = FValues[size_t(FCount >> kChunkBits)].get();
        const size_t at = size_t(FCount & kChunkMask);
        const size_t room = std::min(n - k, size_t(kChunkSize) - at);
        for (size_t j = 0; j < room; ++j) {
            const double tj = times[k + j];
            sorted = sorted && tj >= last;
            last = tj;
            t[at + j] = tj;
            v[at + j] = float(values[k + j]);
            if (kinds[k + j] != TPointKind::Value) FNulls.emplace_back(FCount + qint64(j), kinds[k + j]);
        }
        FCount += qint64(room);
        k += room;
    }
    if (n > 0) FLast = last;
    FSorted = sorted;
}

void TCurveData::Clear() {
    FTimes.clear();
    FValues.clear();
    FNulls.clear();
    FCount = 0;
    FLast = 0.0;
    FSorted = true;
}

void TCurveData::SortByTime() {
    if (FSorted) return;
    std::vector<qint64> order(static_cast<size_t>(FCount));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [this](qint64 a, qint64 b) { return Time(a) < Time(b); });
    std::vector<TPointKind> kinds(size_t(FCount), TPointKind::Value);
    for (const auto& [i, k] : FNulls) kinds[size_t(i)] = k;
    TCurveData sorted;
    for (qint64 i : order) sorted.Append(Time(i), Value(i), kinds[size_t(i)]);
    *this = std::move(sorted);
    FSorted = true;
}

qint64 TCurveData::LowerBound(double t) const {
    qint64 lo = 0, hi = FCount;
    while (lo < hi) {
        const qint64 mid = lo + (hi - lo) / 2;
        if (Time(mid) < t) lo = mid + 1;
        else hi = mid;
    }
    return lo;
}

qint64 TCurveData::UpperBound(double t) const {
    qint64 lo = 0, hi = FCount;
    while (lo < hi) {
        const qint64 mid = lo + (hi - lo) / 2;
        if (Time(mid) <= t) lo = mid + 1;
        else hi = mid;
    }
    return lo;
}

qint64 TCurveData::MemoryBytes() const {
    return qint64(FTimes.size()) * kChunkSize * qint64(sizeof(double) + sizeof(float)) +
           qint64(FNulls.capacity() * sizeof(FNulls[0]));
}

std::span<const double> TCurveData::TimeChunk(qint64 chunk) const {
    const qint64 n = std::min(kChunkSize, FCount - chunk * kChunkSize);
    return {FTimes[size_t(chunk)].get(), size_t(std::max<qint64>(n, 0))};
}

std::span<const float> TCurveData::ValueChunk(qint64 chunk) const {
    const qint64 n = std::min(kChunkSize, FCount - chunk * kChunkSize);
    return {FValues[size_t(chunk)].get(), size_t(std::max<qint64>(n, 0))};
}
