#include "data/CurveSummary.h"

#include <cmath>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();

bool IsGapIn(const std::vector<std::pair<qint64, TPointKind>>& nulls, qint64 first, qint64 last) {
    auto it = std::lower_bound(nulls.begin(), nulls.end(), first,
                               [](const auto& n, qint64 i) { return n.first < i; });
    for (; it != nulls.end() && it->first < last; ++it)
        if (it->second == TPointKind::Gap) return true;
    return false;
}

} // namespace


template <typename T> T* TCurveSummary::THugeAllocator<T>::allocate(size_t n) {
    constexpr size_t kHuge = size_t(2) << 20;
    const size_t bytes = n * sizeof(T);
    if (bytes < 2 * kHuge) {
        if (void* p = std::malloc(std::max<size_t>(bytes, 1))) return static_cast<T*>(p);
        throw std::bad_alloc();
    }
    const size_t rounded = (bytes + kHuge - 1) / kHuge * kHuge;
    void* p = std::aligned_alloc(kHuge, rounded);
    if (!p) throw std::bad_alloc();
#ifdef MADV_HUGEPAGE
    madvise(p, rounded, MADV_HUGEPAGE);
#endif
    return static_cast<T*>(p);
}

TCurveSummary::TCurveSummary(const TCurveData& data) : FData(data), FCount(data.Count()) {
    const qint64 blocks = (FCount + kBase - 1) >> kBaseBits;
    TLevel base(size_t(blocks), TRange{kInf, -kInf});
    std::vector<quint64> odd(size_t((blocks + 63) >> 6), 0);
    // The lowest level straight from the value chunks; a chunk holds whole blocks.
    for (qint64 c = 0; c < data.ChunkCount(); ++c) {
        const std::span<const float> v = data.ValueChunk(c);
        const qint64 firstBlock = (c * TCurveData::kChunkSize) >> kBaseBits;
        for (size_t at = 0; at < v.size(); at += size_t(kBase)) {
            const size_t end = std::min(v.size(), at + size_t(kBase));
            TRange r{kInf, -kInf};
            bool nonFinite = false;
            for (size_t j = at; j < end; ++j) {
                const float x = v[j];
                if (!std::isfinite(x)) {
                    nonFinite = true;
                    continue;
                }
                r.Min = std::min(r.Min, x);
                r.Max = std::max(r.Max, x);
            }
            const qint64 block = firstBlock + qint64(at >> kBaseBits);
            base[size_t(block)] = r;
            if (nonFinite) odd[size_t(block >> 6)] |= quint64(1) << (block & 63);
        }
    }
    // Gap markers hold a stand-in value of 0 that must not count; they are rare.
    for (const auto& [index, kind] : data.Nulls()) {
        if (kind != TPointKind::Gap) continue;
        const qint64 b = index >> kBaseBits;
        TRange r{kInf, -kInf};
        ScanRaw(b << kBaseBits, std::min(FCount, (b + 1) << kBaseBits), r);
        base[size_t(b)] = r;
    }
    FLevels.push_back(std::move(base));
    FNonFinite.push_back(std::move(odd));
    while (FLevels.back().size() > 1) {
        const TLevel& below = FLevels.back();
        TLevel level((below.size() + kFan - 1) / kFan, TRange{kInf, -kInf});
        for (size_t k = 0; k < below.size(); ++k) {
            TRange& r = level[k >> kFanBits];
            r.Min = std::min(r.Min, below[k].Min);
            r.Max = std::max(r.Max, below[k].Max);
        }
        // Eight blocks below make one above: a block is marked when any byte of them is.
        const std::vector<quint64>& oddBelow = FNonFinite.back();
        std::vector<quint64> up(size_t((level.size() + 63) >> 6), 0);
        for (size_t k = 0; k < level.size(); ++k) {
            const quint64 byte = (oddBelow[(k * 8) >> 6] >> ((k * 8) & 63)) & 0xFF;
            if (byte) up[k >> 6] |= quint64(1) << (k & 63);
        }
        FLevels.push_back(std::move(level));
        FNonFinite.push_back(std::move(up));
    }
}

qint64 TCurveSummary::FindNonFinite(size_t level, qint64 block, qint64 first, qint64 last) const {
    const int shift = kBaseBits + kFanBits * int(level);
    const qint64 b0 = block << shift, b1 = std::min(FCount, (block + 1) << shift);
    if (b1 <= first || b0 >= last || !HasNonFinite(level, block)) return last;
    if (level == 0) {
        for (qint64 i = std::max(b0, first), end = std::min(b1, last); i < end; ++i)
            if (!std::isfinite(FData.Value(i))) return i;
        return last;
    }
    const qint64 children = qint64(FLevels[level - 1].size());
    for (qint64 c = block << kFanBits; c < std::min(children, (block + 1) << kFanBits); ++c) {
        const qint64 found = FindNonFinite(level - 1, c, first, last);
        if (found < last) return found;
    }
    return last;
}

qint64 TCurveSummary::NextNonFinite(qint64 first, qint64 last) const {
    first = std::max<qint64>(first, 0);
    last = std::min(last, FCount);
    if (first >= last || FLevels.empty()) return last;
    return FindNonFinite(FLevels.size() - 1, 0, first, last);
}

void TCurveSummary::ScanRaw(qint64 first, qint64 last, TRange& r) const {
    if (first >= last) return;
    const bool gaps = IsGapIn(FData.Nulls(), first, last);
    while (first < last) {
        // Straight over the chunk's column.
        const qint64 chunk = first >> TCurveData::kChunkBits;
        const std::span<const float> v = FData.ValueChunk(chunk);
        const qint64 base = chunk << TCurveData::kChunkBits;
        const qint64 end = std::min(last, base + qint64(v.size()));
        for (qint64 i = first; i < end; ++i) {
            const float x = v[size_t(i - base)];
            if (!std::isfinite(x) || (gaps && FData.IsGap(i))) continue;
            r.Min = std::min(r.Min, x);
            r.Max = std::max(r.Max, x);
        }
        first = end;
    }
}

bool TCurveSummary::MinMax(qint64 first, qint64 last, double& min, double& max) const {
    first = std::max<qint64>(first, 0);
    last = std::min(last, FCount);
    TRange r{kInf, -kInf};
    qint64 a = (first + kBase - 1) >> kBaseBits; // first whole block
    qint64 b = last >> kBaseBits;                // end of the whole blocks
    if (a >= b) {
        ScanRaw(first, last, r);
    } else {
        ScanRaw(first, a << kBaseBits, r);
        ScanRaw(b << kBaseBits, last, r);
        // Upwards through the levels; at each level the ragged ends, a few neighbours in a row.
        auto take = [&r](const TLevel& level, qint64 from, qint64 to) {
            for (qint64 k = from; k < to; ++k) {
                r.Min = std::min(r.Min, level[size_t(k)].Min);
                r.Max = std::max(r.Max, level[size_t(k)].Max);
            }
        };
        for (size_t level = 0; a < b; ++level) {
            const qint64 up = (a + kFan - 1) >> kFanBits, down = b >> kFanBits;
            if (up >= down || level + 1 == FLevels.size()) {
                take(FLevels[level], a, b);
                break;
            }
            take(FLevels[level], a, up << kFanBits);
            take(FLevels[level], down << kFanBits, b);
            a = up;
            b = down;
        }
    }
    if (r.Min > r.Max) return false;
    min = r.Min;
    max = r.Max;
    return true;
}

qint64 TCurveSummary::MemoryBytes() const {
    qint64 n = 0;
    for (const auto& l : FLevels)
        n += qint64(l.size());
    return n * qint64(sizeof(TRange));
}

const std::vector<TCurveSummary::TBlockStats>& TCurveSummary::Blocks() const {
    std::call_once(FStatsOnce, [this] {
        const TCurveData& d = FData;
        FStats.assign(size_t((FCount + kStatBlock - 1) >> kStatBits), TBlockStats{});
        const auto& nulls = d.Nulls();
        auto gap = nulls.begin();
        bool haveReference = false;
        bool prevMeasured = false;
        double prevT = 0.0, prevV = 0.0;
        std::vector<double> buf(static_cast<size_t>(TCurveData::kChunkSize));
        for (qint64 c = 0; c < d.ChunkCount(); ++c) {
            const std::span<const float> v = d.ValueChunk(c);
            const qint64 base = c << TCurveData::kChunkBits;
            const double* t = d.Times(base, qint64(v.size()), buf.data());
            for (size_t j = 0; j < v.size(); ++j) {
                const qint64 i = base + qint64(j);
                TBlockStats& b = FStats[size_t(i >> kStatBits)];
                while (gap != nulls.end() && gap->first < i) ++gap;
                const double y = v[j];
                const bool measured =
                    !std::isnan(y) && !(gap != nulls.end() && gap->first == i && gap->second == TPointKind::Gap);
                if (!measured) {
                    b.Clean = false;
                    prevMeasured = false;
                    continue;
                }
                if (!haveReference && std::isfinite(y)) {
                    FReference = y;
                    haveReference = true;
                }
                const double z = y - FReference;
                ++b.Count;
                b.Sum += z;
                b.SumSq += z * z;
                b.Min = std::min(b.Min, y);
                b.Max = std::max(b.Max, y);
                if (prevMeasured) b.Trapezoids += (prevV + y) / 2.0 * (t[j] - prevT);
                prevMeasured = true;
                prevT = t[j];
                prevV = y;
            }
        }
    });
    return FStats;
}

std::shared_ptr<const std::vector<TCurveSummary::TLimitBlock>>
TCurveSummary::LimitBlocks(const TLimitKey& key, const std::function<bool(double)>& isAlarm) const {
    const std::lock_guard lock(FLimitMutex);
    if (FLimitBlocks && FLimitKey == key) return FLimitBlocks;
    const std::vector<TBlockStats>& stats = Blocks();
    auto blocks = std::make_shared<std::vector<TLimitBlock>>(stats.size());
    for (size_t k = 0; k < stats.size(); ++k) {
        const qint64 first = qint64(k) << kStatBits, last = std::min(FCount, first + kStatBlock) - 1;
        if (!stats[k].Clean) continue; // read point by point where it is needed
        TLimitBlock& b = (*blocks)[k];
        bool state = isAlarm(FData.Value(first));
        b.FirstAlarm = state;
        double t0 = FData.Time(first);
        for (qint64 i = first + 1; i <= last; ++i) {
            const bool s = isAlarm(FData.Value(i));
            if (s == state) continue;
            const double t = FData.Time(i);
            (state ? b.Out : b.In) += t - t0;
            t0 = t;
            state = s;
        }
        (state ? b.Out : b.In) += FData.Time(last) - t0;
        b.LastAlarm = state;
    }
    FLimitKey = key;
    FLimitBlocks = std::move(blocks);
    return FLimitBlocks;
}
