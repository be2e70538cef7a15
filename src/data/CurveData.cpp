#include "data/CurveData.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr int kException = -8;

int Nibble(const std::uint8_t* r, int j) {
    const int x = (r[j >> 1] >> ((j & 1) * 4)) & 0xF;
    return x >= 8 ? x - 16 : x;
}

void SetNibble(std::uint8_t* r, int j, int v) {
    const int shift = (j & 1) * 4;
    r[j >> 1] = std::uint8_t((r[j >> 1] & ~(0xF << shift)) | ((v & 0xF) << shift));
}

// Distance in units of the last place that still counts as "on the line" while a run's extent
// is sought; the final line is drawn afterwards and lands within a few units of every point.
bool Near(double t, double line) {
    return std::abs(t - line) <= 16.0 * 0x1p-52 * std::max(std::abs(t), std::abs(line)) + 1e-300;
}

} // namespace

// ---------------------------------------------------------------- packed stamps

double TCurveData::TTimeChunk::DecodeSlow(int j) const {
    const TTimeRun* r = Runs.data();
    if (Runs.size() > 1)
        r = &*std::prev(std::upper_bound(Runs.begin(), Runs.end(), j,
                                         [](int k, const TTimeRun& run) { return k < run.First; }));
    const double line = Line(*r, j);
    if (!Residuals) return line;
    const int code = Nibble(Residuals.get(), j);
    if (code != kException) return AddUlps(line, code);
    const auto it = std::lower_bound(Exceptions.begin(), Exceptions.end(), j,
                                     [](const auto& e, int k) { return e.first < k; });
    return it->second;
}

void TCurveData::TTimeChunk::SetRuns(std::vector<TTimeRun> runs) {
    Runs = std::move(runs);
    Runs.shrink_to_fit();
    OneRun = Runs.size() == 1;
    Base = Runs.front().Base;
    Step = Runs.front().Step;
}

// Every point from its run's line and residual in a loop without branches; exceptions are
// written over afterwards.
void TCurveData::TTimeChunk::Unpack(double* out, int first, int n) const {
    const int end = first + n;
    auto run = std::upper_bound(Runs.begin(), Runs.end(), first,
                                [](int k, const TTimeRun& r) { return k < r.First; }) - 1;
    const std::uint8_t* residuals = Residuals.get();
    for (int j = first; j < end; ++run) {
        const int runEnd = (run + 1 == Runs.end()) ? end : std::min(end, (run + 1)->First);
        const double base = run->Base, step = run->Step;
        const int origin = run->First;
        double* o = out + (j - first);
        if (!residuals) {
            for (int k = j; k < runEnd; ++k) *o++ = base + double(k - origin) * step;
        } else {
            // Two points a byte; an odd first or last point on its own.
            int k = j;
            if (k < runEnd && (k & 1)) {
                *o++ = AddUlps(base + double(k - origin) * step, ((residuals[k >> 1] >> 4) ^ 8) - 8);
                ++k;
            }
            const std::uint8_t* r = residuals + (k >> 1);
            const int pairs = (runEnd - k) >> 1;
            const double first = double(k - origin);
            for (int m = 0; m < pairs; ++m) {
                const int b = r[m];
                o[2 * m] = AddUlps(base + (first + double(2 * m)) * step, ((b & 0xF) ^ 8) - 8);
                o[2 * m + 1] = AddUlps(base + (first + double(2 * m + 1)) * step, ((b >> 4) ^ 8) - 8);
            }
            o += 2 * pairs;
            k += 2 * pairs;
            if (k < runEnd) *o++ = AddUlps(base + double(k - origin) * step, ((residuals[k >> 1] & 0xF) ^ 8) - 8);
        }
        j = runEnd;
    }
    auto e = std::lower_bound(Exceptions.begin(), Exceptions.end(), first,
                              [](const auto& x, int k) { return x.first < k; });
    for (; e != Exceptions.end() && e->first < end; ++e) out[e->first - first] = e->second;
}

// Nearly every chunk of a logger's recording is one run: the line through its first and last
// stamps, every stamp within 7 units of the last place of it. Tried first in one pass that the
// compiler can vectorise, giving up at the first stretch that does not fit.
bool TCurveData::TTimeChunk::PackOneRun(const double* t, int n) {
    if (n < 2 || !std::isfinite(t[0]) || !std::isfinite(t[n - 1])) return false;
    const TTimeRun run{0, t[0], (t[n - 1] - t[0]) / double(n - 1)};
    auto residuals = std::make_unique_for_overwrite<std::uint8_t[]>(size_t(n / 2 + 1));
    std::uint64_t any = 0;
    constexpr int kStretch = 512;
    for (int s = 0; s < n; s += kStretch) {
        const int e = std::min(n, s + kStretch);
        std::uint64_t bad = 0;
        int j = s;
        for (; j + 1 < e; j += 2) {
            const std::int64_t d0 = std::bit_cast<std::int64_t>(t[j]) - std::bit_cast<std::int64_t>(Line(run, j));
            const std::int64_t d1 =
                std::bit_cast<std::int64_t>(t[j + 1]) - std::bit_cast<std::int64_t>(Line(run, j + 1));
            bad |= std::uint64_t(d0 + 7) > 14 || std::uint64_t(d1 + 7) > 14;
            any |= std::uint64_t(d0 | d1);
            residuals[size_t(j >> 1)] = std::uint8_t((d0 & 0xF) | ((d1 & 0xF) << 4));
        }
        if (j < e) {
            const std::int64_t d0 = std::bit_cast<std::int64_t>(t[j]) - std::bit_cast<std::int64_t>(Line(run, j));
            bad |= std::uint64_t(d0 + 7) > 14;
            any |= std::uint64_t(d0);
            residuals[size_t(j >> 1)] = std::uint8_t(d0 & 0xF);
        }
        if (bad) return false;
    }
    SetRuns({run});
    Exceptions.clear();
    Exceptions.shrink_to_fit();
    Residuals.reset();
    if (any) Residuals = std::move(residuals);
    return true;
}

bool TCurveData::TTimeChunk::Pack(const double* t, int n) {
    if (n <= 0) return false;
    if (PackOneRun(t, n)) return true;
    std::vector<TTimeRun> runs;
    std::vector<std::pair<qint32, double>> exceptions;
    std::vector<std::int8_t> codes(size_t(n), 0);
    // More runs than this cost more than packing saves.
    const size_t maxRuns = size_t(n) / 64 + 1;
    bool anyResidual = false;
    std::vector<int> offLine;
    for (int s = 0; s < n;) {
        if (runs.size() >= maxRuns || !std::isfinite(t[s])) return false;
        // The run's extent: the step is fitted again at every doubling of its length, so a
        // first step rounded to the stamps' last place cannot pull the line off over many points.
        offLine.clear();
        double step = 0.0;
        int lastOn = s, k = s + 1;
        if (k < n) {
            step = t[k] - t[s];
            lastOn = k++;
        }
        for (int refit = 2; k < n;) {
            if (!std::isfinite(t[k])) return false;
            if (Near(t[k], t[s] + double(k - s) * step)) {
                lastOn = k++;
                if (k - s >= refit) {
                    step = (t[lastOn] - t[s]) / double(lastOn - s);
                    refit *= 2;
                }
            } else if (k + 1 < n && Near(t[k + 1], t[s] + double(k + 1 - s) * step)) {
                offLine.push_back(k++); // one stamp off, the next back on the line
            } else {
                break;
            }
        }
        const TTimeRun run{s, t[s], lastOn > s ? (t[lastOn] - t[s]) / double(lastOn - s) : 0.0};
        runs.push_back(run);
        auto off = offLine.begin();
        for (int j = s; j < k; ++j) {
            const bool isOff = off != offLine.end() && *off == j;
            if (isOff) ++off;
            const std::int64_t d = std::bit_cast<std::int64_t>(t[j]) - std::bit_cast<std::int64_t>(Line(run, j));
            if (!isOff && d >= -7 && d <= 7) {
                codes[size_t(j)] = std::int8_t(d);
                anyResidual = anyResidual || d != 0;
            } else {
                codes[size_t(j)] = kException;
                exceptions.emplace_back(j, t[j]);
                anyResidual = true;
            }
        }
        s = k;
    }
    const qint64 packed = qint64(runs.size() * sizeof(TTimeRun)) + (anyResidual ? n / 2 + 1 : 0) +
                          qint64(exceptions.size() * sizeof(exceptions[0]));
    if (packed * 2 > qint64(n) * qint64(sizeof(double))) return false; // saves too little
    SetRuns(std::move(runs));
    Exceptions = std::move(exceptions);
    Exceptions.shrink_to_fit();
    Residuals.reset();
    if (anyResidual) {
        Residuals = std::make_unique<std::uint8_t[]>(size_t(n / 2 + 1));
        for (int j = 0; j < n; ++j) SetNibble(Residuals.get(), j, codes[size_t(j)]);
    }
    return true;
}

qint64 TCurveData::TTimeChunk::Bytes() const {
    if (Raw) return kChunkSize * qint64(sizeof(double));
    return qint64(Runs.capacity() * sizeof(TTimeRun)) + (Residuals ? kChunkSize / 2 + 1 : 0) +
           qint64(Exceptions.capacity() * sizeof(Exceptions[0]));
}

// ---------------------------------------------------------------- columns

TPointKind TCurveData::Kind(qint64 i) const {
    if (FNulls.empty()) return TPointKind::Value;
    const auto it = std::lower_bound(FNulls.begin(), FNulls.end(), i,
                                     [](const auto& n, qint64 idx) { return n.first < idx; });
    return (it != FNulls.end() && it->first == i) ? it->second : TPointKind::Value;
}

namespace {
std::atomic<bool> gPacking{true};
}

void TCurveData::SetPacking(bool on) { gPacking.store(on, std::memory_order_relaxed); }
bool TCurveData::Packing() { return gPacking.load(std::memory_order_relaxed); }

void TCurveData::SealChunk(qint64 chunk, int n) {
    TTimeChunk& c = FTimes[size_t(chunk)];
    if (c.Raw && Packing() && c.Pack(c.Raw.get(), n)) FSpare = std::move(c.Raw);
}

void TCurveData::PrepareTail() {
    const qint64 chunk = FCount >> kChunkBits;
    if ((FCount & kChunkMask) != 0) {
        // Compact packed or trimmed the chunk that is still being filled: back to full size
        // and stamps as written.
        const int n = int(FCount & kChunkMask);
        TTimeChunk& c = FTimes[size_t(chunk)];
        if (!c.Raw || FTrimmed) {
            auto raw = FSpare ? std::move(FSpare) : std::make_unique_for_overwrite<double[]>(size_t(kChunkSize));
            if (c.Raw) std::copy_n(c.Raw.get(), n, raw.get());
            else c.Unpack(raw.get(), 0, n);
            c = TTimeChunk{};
            c.Raw = std::move(raw);
        }
        if (FTrimmed) {
            auto values = std::make_unique_for_overwrite<float[]>(size_t(kChunkSize));
            std::copy_n(FValues[size_t(chunk)].get(), n, values.get());
            FValues[size_t(chunk)] = std::move(values);
            FTrimmed = 0;
        }
    } else {
        if (chunk > 0) SealChunk(chunk - 1, int(kChunkSize));
        TTimeChunk c;
        c.Raw = FSpare ? std::move(FSpare) : std::make_unique_for_overwrite<double[]>(size_t(kChunkSize));
        FTimes.push_back(std::move(c));
        FValues.push_back(std::make_unique_for_overwrite<float[]>(size_t(kChunkSize)));
        FTrimmed = 0;
    }
    FTail = FTimes[size_t(chunk)].Raw.get();
    FValueTail = FValues[size_t(chunk)].get();
}

void TCurveData::Compact() {
    if (FCount == 0) return;
    const qint64 last = (FCount - 1) >> kChunkBits;
    const int n = int(FCount - (last << kChunkBits));
    SealChunk(last, n);
    FSpare.reset();
    FTail = nullptr;
    FValueTail = nullptr;
    // A partly filled last chunk keeps only what it holds.
    if (n < kChunkSize && !FTrimmed) {
        TTimeChunk& c = FTimes[size_t(last)];
        if (c.Raw) {
            auto raw = std::make_unique_for_overwrite<double[]>(size_t(n));
            std::copy_n(c.Raw.get(), n, raw.get());
            c.Raw = std::move(raw);
        }
        auto values = std::make_unique_for_overwrite<float[]>(size_t(n));
        std::copy_n(FValues[size_t(last)].get(), n, values.get());
        FValues[size_t(last)] = std::move(values);
        FTrimmed = n;
    }
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
        if (!FTail || (FCount & kChunkMask) == 0) PrepareTail();
        const size_t at = size_t(FCount & kChunkMask);
        const size_t room = std::min(n - k, size_t(kChunkSize) - at);
        double* t = FTail + at;
        float* v = FValueTail + at;
        for (size_t j = 0; j < room; ++j) {
            const double tj = times[k + j];
            sorted = sorted && tj >= last;
            last = tj;
            t[j] = tj;
            v[j] = float(values[k + j]);
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
    FSpare.reset();
    FTail = nullptr;
    FValueTail = nullptr;
    FCount = 0;
    FTrimmed = 0;
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
    sorted.Compact();
    *this = std::move(sorted);
    FSorted = true;
}

// The first index whose stamp is not before t. Chunks are told apart by their first stamps;
// inside a packed chunk the run that holds t says about where it lies, and the search gallops
// out from there, so a lookup costs a handful of stamps instead of a full binary search.
template <typename Before> qint64 TCurveData::Bound(double t, Before before) const {
    if (FCount == 0) return 0;
    // The last chunk whose first stamp is before t; none: the answer is 0.
    qint64 lo = 0, hi = qint64(FTimes.size());
    while (lo < hi) {
        const qint64 mid = lo + (hi - lo) / 2;
        if (before(Time(mid << kChunkBits), t)) lo = mid + 1;
        else hi = mid;
    }
    if (lo == 0) return 0;
    const qint64 chunk = lo - 1, base = chunk << kChunkBits;
    const qint64 end = std::min(FCount, base + kChunkSize);
    const TTimeChunk& c = FTimes[size_t(chunk)];
    // [a, b): a is before t, b is not (or the chunk's end).
    qint64 a = base, b = end;
    if (!c.Raw && !c.Runs.empty()) {
        auto run = std::upper_bound(c.Runs.begin(), c.Runs.end(), t,
                                    [&](double v, const TTimeRun& r) { return before(v, r.Base) || v == r.Base; });
        if (run != c.Runs.begin()) --run;
        const qint64 runEnd = base + ((run + 1 == c.Runs.end()) ? end - base : (run + 1)->First);
        qint64 guess = base + run->First;
        if (run->Step > 0) {
            const double k = std::floor((t - run->Base) / run->Step);
            guess += qint64(std::clamp(k, 0.0, double(runEnd - 1 - (base + run->First))));
        }
        guess = std::clamp(guess, a, end - 1);
        // Gallop from the guess until the answer is bracketed.
        if (before(Time(guess), t)) {
            a = guess;
            for (qint64 step = 1;; step *= 2) {
                const qint64 probe = a + step;
                if (probe >= end) break;
                if (!before(Time(probe), t)) {
                    b = probe;
                    break;
                }
                a = probe;
            }
        } else {
            b = guess;
            for (qint64 step = 1;; step *= 2) {
                const qint64 probe = b - step;
                if (probe <= base) break;
                if (before(Time(probe), t)) {
                    a = probe;
                    break;
                }
                b = probe;
            }
        }
    }
    // Binary search of (a, b): Time(a) is before t.
    lo = a + 1;
    hi = b;
    while (lo < hi) {
        const qint64 mid = lo + (hi - lo) / 2;
        if (before(Time(mid), t)) lo = mid + 1;
        else hi = mid;
    }
    return lo;
}

qint64 TCurveData::LowerBound(double t) const {
    return Bound(t, [](double v, double x) { return v < x; });
}

qint64 TCurveData::UpperBound(double t) const {
    return Bound(t, [](double v, double x) { return v <= x; });
}

qint64 TCurveData::MemoryBytes() const {
    qint64 bytes = qint64(FValues.size()) * kChunkSize * qint64(sizeof(float)) +
                   qint64(FNulls.capacity() * sizeof(FNulls[0])) + (FSpare ? kChunkSize * qint64(sizeof(double)) : 0);
    for (const TTimeChunk& c : FTimes) bytes += c.Bytes();
    if (FTrimmed) {
        bytes -= (kChunkSize - FTrimmed) * qint64(sizeof(float));
        if (FTimes.back().Raw) bytes -= (kChunkSize - FTrimmed) * qint64(sizeof(double));
    }
    return bytes;
}

const double* TCurveData::Times(qint64 first, qint64 n, double* buf) const {
    const TTimeChunk& c = FTimes[size_t(first >> kChunkBits)];
    const int j = int(first & kChunkMask);
    if (c.Raw) return c.Raw.get() + j;
    c.Unpack(buf, j, int(n));
    return buf;
}

std::span<const float> TCurveData::ValueChunk(qint64 chunk) const {
    const qint64 n = std::min(kChunkSize, FCount - chunk * kChunkSize);
    return {FValues[size_t(chunk)].get(), size_t(std::max<qint64>(n, 0))};
}

const void* TCurveData::TimeAddress(qint64 i) const {
    const TTimeChunk& c = FTimes[size_t(i >> kChunkBits)];
    const int j = int(i & kChunkMask);
    if (c.Raw) return c.Raw.get() + j;
    if (c.Residuals) return c.Residuals.get() + (j >> 1);
    return c.Runs.data();
}
