#include "analysis/Analysis.h"

#include "config/MseSettings.h"
#include "config/Texts.h"
#include "data/Formats.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <limits>

namespace {

constexpr qint64 kBlock = TCurveSummary::kStatBlock;

// Calls f(i, time, value, measured) for every point of [a, b) in order, a chunk at a time and
// with the gap markers walked alongside, so a long stretch costs no lookup per point.
template <typename F> void ForPoints(const TCurveData& d, qint64 a, qint64 b, F&& f) {
    a = std::max<qint64>(a, 0);
    b = std::min(b, d.Count());
    const auto& nulls = d.Nulls();
    auto gap = std::lower_bound(nulls.begin(), nulls.end(), a,
                                [](const auto& n, qint64 i) { return n.first < i; });
    // Packed stamps are unpacked a piece at a time into a small buffer.
    constexpr qint64 kPiece = 4096;
    double buf[kPiece];
    while (a < b) {
        const qint64 chunk = a >> TCurveData::kChunkBits;
        const qint64 base = chunk << TCurveData::kChunkBits;
        const float* v = d.ValueChunk(chunk).data();
        const qint64 end = std::min({b, base + TCurveData::kChunkSize, a + kPiece});
        const double* t = d.Times(a, end - a, buf) - a;
        for (qint64 i = a; i < end; ++i) {
            while (gap != nulls.end() && gap->first < i) ++gap;
            const double y = v[i - base];
            const bool isGap = gap != nulls.end() && gap->first == i && gap->second == TPointKind::Gap;
            f(i, t[i], y, !isGap && !std::isnan(y));
        }
        a = end;
    }
}

struct TSums {
    qint64 Count = 0;
    double Sum = 0.0, SumSq = 0.0;
    double Min = std::numeric_limits<double>::infinity(), Max = -std::numeric_limits<double>::infinity();
};

} // namespace

TIndexRange VisibleRange(const TCurveData& d, double from, double to) {
    const qint64 first = d.LowerBound(from);
    const qint64 last = d.UpperBound(to) - 1;
    if (first >= d.Count() || last < first) return {};
    return {first, last};
}

bool IsMeasured(const TCurveData& d, qint64 i) {
    return i >= 0 && i < d.Count() && !std::isnan(d.Value(i)) && !d.IsGap(i);
}

// ---------------------------------------------------------------------- statistics

TRangeStats RangeStats(const TCurveData& d, const TCurveSummary* summary, TIndexRange range, bool finiteOnly) {
    TRangeStats out;
    if (range.IsEmpty()) return out;
    const qint64 a = range.First, b = range.Last + 1;
    // Sums of value - reference: the summary's, or the range's first finite value.
    double ref = 0.0;
    if (summary) {
        ref = summary->Reference();
    } else {
        bool found = false;
        ForPoints(d, a, b, [&](qint64, double, double y, bool measured) {
            if (!found && measured && std::isfinite(y)) {
                ref = y;
                found = true;
            }
        });
    }
    TSums s;
    qint64 infinite = 0;
    auto raw = [&](qint64 from, qint64 to) {
        ForPoints(d, from, to, [&](qint64, double, double y, bool measured) {
            if (!measured) return;
            if (finiteOnly && !std::isfinite(y)) {
                ++infinite;
                return;
            }
            const double z = y - ref;
            ++s.Count;
            s.Sum += z;
            s.SumSq += z * z;
            s.Min = std::min(s.Min, y);
            s.Max = std::max(s.Max, y);
        });
    };
    const qint64 firstBlock = (a + kBlock - 1) / kBlock, endBlock = b / kBlock;
    if (summary && firstBlock < endBlock) {
        const auto& blocks = summary->Blocks();
        raw(a, firstBlock * kBlock);
        for (qint64 k = firstBlock; k < endBlock; ++k) {
            const TCurveSummary::TBlockStats& bs = blocks[size_t(k)];
            // A block with an infinite value is read point by point to leave it out.
            if (finiteOnly && bs.Count > 0 && !(std::isfinite(bs.Min) && std::isfinite(bs.Max))) {
                raw(k * kBlock, (k + 1) * kBlock);
                continue;
            }
            s.Count += bs.Count;
            s.Sum += bs.Sum;
            s.SumSq += bs.SumSq;
            s.Min = std::min(s.Min, bs.Min);
            s.Max = std::max(s.Max, bs.Max);
        }
        raw(endBlock * kBlock, b);
    } else {
        raw(a, b);
    }
    out.Count = s.Count;
    out.Infinite = infinite;
    if (s.Count == 0) return out;
    const double n = double(s.Count);
    out.Min = s.Min;
    out.Max = s.Max;
    out.Average = ref + s.Sum / n;
    if (s.Count >= 2) {
        const double q = (n * s.SumSq - s.Sum * s.Sum) / (n * (n - 1.0));
        out.StdDev = q < 0.0 ? 0.0 : std::sqrt(q);
    }
    return out;
}

double TypicalStep(const TCurveData& d, TIndexRange range) {
    if (range.IsEmpty() || range.Last <= range.First) return std::numeric_limits<double>::quiet_NaN();
    const qint64 steps = range.Last - range.First;
    const qint64 looked = std::min<qint64>(steps, 65536);
    std::map<qint64, qint64> counts; // microseconds to how often
    for (qint64 k = 0; k < looked; ++k) {
        const qint64 i = range.First + k * steps / looked;
        ++counts[std::llround((d.Time(i + 1) - d.Time(i)) * 1e6)];
    }
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return double(most->first) / 1e6;
}

// ---------------------------------------------------------------------- limits

bool TLimitRule::IsAlarm(double value) const {
    return ::IsAlarm(Mode, L1, L2, value);
}

TLimitTimes CalcLimits(const TCurveData& d, const TCurveSummary* summary, const TLimitRule& limits,
                       TIndexRange range) {
    TLimitTimes out;
    if (limits.Mode < 1 || limits.Mode > 4 || range.IsEmpty() || range.Last - range.First < 1) return out;
    out.Valid = true;
    std::optional<bool> state; // none before the first measured value and after a gap
    double t0 = 0.0;
    auto credit = [&](double t) { (*state ? out.Out : out.In) += t - t0; };
    auto point = [&](qint64, double t, double y, bool measured) {
        if (!measured) {
            if (state) credit(t);
            state.reset();
            return;
        }
        const bool s = limits.IsAlarm(y);
        if (!state) {
            state = s;
            t0 = t;
        } else if (s != *state) {
            credit(t);
            t0 = t;
            state = s;
        }
    };
    const qint64 end = range.Last + 1;
    if (!summary) {
        ForPoints(d, range.First, end, point);
    } else {
        // A whole block of measured values adds its own in and out times: the stretch running
        // into it up to its first point, then everything up to its last point.
        const auto blocks = summary->LimitBlocks({limits.Mode, limits.L1, limits.L2},
                                                 [&limits](double y) { return limits.IsAlarm(y); });
        const auto& stats = summary->Blocks();
        for (qint64 i = range.First; i < end;) {
            if (i % kBlock == 0 && i + kBlock <= end && stats[size_t(i / kBlock)].Clean) {
                const TCurveSummary::TLimitBlock& b = (*blocks)[size_t(i / kBlock)];
                if (state) credit(d.Time(i));
                out.Out += b.Out;
                out.In += b.In;
                t0 = d.Time(i + kBlock - 1);
                state = b.LastAlarm;
                i += kBlock;
                continue;
            }
            const qint64 next = std::min(end, (i / kBlock + 1) * kBlock);
            ForPoints(d, i, next, point);
            i = next;
        }
    }
    if (state && d.Time(range.Last) != t0) credit(d.Time(range.Last));
    return out;
}

// ---------------------------------------------------------------------- integral

namespace {

// The trapezoids of the pairs (i - 1, i) for i in [a, b) whose two points are measured.
double Trapezoids(const TCurveData& d, const TCurveSummary* summary, qint64 a, qint64 b) {
    a = std::max<qint64>(a, 1);
    if (a >= b) return 0.0;
    double sum = 0.0;
    auto raw = [&](qint64 from, qint64 to) {
        if (from >= to) return;
        bool prev = false;
        double pt = 0.0, py = 0.0;
        ForPoints(d, from - 1, to, [&](qint64 i, double t, double y, bool measured) {
            if (measured && prev && i >= from) sum += (py + y) / 2.0 * (t - pt);
            prev = measured;
            pt = t;
            py = y;
        });
    };
    const qint64 firstBlock = (a + kBlock - 1) / kBlock, endBlock = b / kBlock;
    if (summary && firstBlock < endBlock) {
        const auto& blocks = summary->Blocks();
        raw(a, firstBlock * kBlock);
        for (qint64 k = firstBlock; k < endBlock; ++k)
            sum += blocks[size_t(k)].Trapezoids;
        raw(endBlock * kBlock, b);
    } else {
        raw(a, b);
    }
    return sum;
}

} // namespace

std::optional<double> Integrate(const TCurveData& d, const TCurveSummary* summary, double xmin, double xmax) {
    const qint64 n = d.Count();
    const qint64 s = d.LowerBound(xmin);
    // Without a point in the range there is nothing to start from: the lines through the
    // neighbours would reach out of the curve.
    if (s >= n || d.Time(s) > xmax) return std::nullopt;
    auto line = [&](qint64 i, double x) { // through points i - 1 and i
        return (d.Value(i) - d.Value(i - 1)) / (d.Time(i) - d.Time(i - 1)) * (x - d.Time(i - 1)) + d.Value(i - 1);
    };
    double result = 0.0;
    if (s > 0 && d.Time(s) > xmin && IsMeasured(d, s - 1) && IsMeasured(d, s))
        result = (line(s, xmin) + d.Value(s)) / 2.0 * (d.Time(s) - xmin);
    // The first point beyond xmax ends the sum.
    const qint64 e = d.UpperBound(xmax);
    result += Trapezoids(d, summary, s + 1, e);
    if (e < n && IsMeasured(d, e - 1) && IsMeasured(d, e))
        result += (d.Value(e - 1) + line(e, xmax)) / 2.0 * (xmax - d.Time(e - 1));
    return result;
}

// ---------------------------------------------------------------------- texts

QString DurationText(double seconds) {
    const double days = std::floor(seconds / zeb::kSecondsPerDay);
    const double rest = seconds - days * zeb::kSecondsPerDay;
    return QString::number(qint64(days)) + QLatin1Char('+') + zeb::FormatTime(zeb::TTimeKind::Time, rest);
}

QString DayDurationText(double seconds) {
    const double days = std::floor(seconds / zeb::kSecondsPerDay);
    const double rest = seconds - days * zeb::kSecondsPerDay;
    return zeb::TxtFmt(zeb::TTextId::ReportDuration, {QString::number(qint64(days)), zeb::FormatTime(zeb::TTimeKind::Time, rest)});
}

// ---------------------------------------------------------------------- report figures

qint64 FirstIndexOf(const TCurveData& d, const TCurveSummary* summary, TIndexRange range, double value) {
    if (range.IsEmpty() || std::isnan(value)) return -1;
    const qint64 end = range.Last + 1;
    const std::vector<TCurveSummary::TBlockStats>* blocks = summary ? &summary->Blocks() : nullptr;
    qint64 found = -1;
    // A block at a time, so the search stops at the block that holds the value.
    for (qint64 i = range.First; i < end && found < 0;) {
        const qint64 next = std::min(end, (i / kBlock + 1) * kBlock);
        if (blocks) {
            const TCurveSummary::TBlockStats& b = (*blocks)[size_t(i / kBlock)];
            if (b.Count == 0 || value < b.Min || value > b.Max) {
                i = next;
                continue;
            }
        }
        ForPoints(d, i, next, [&](qint64 j, double, double y, bool measured) {
            if (found < 0 && measured && y == value) found = j;
        });
        i = next;
    }
    return found;
}

namespace {

// Whether every value of [min, max] is in alarm (1), none is (0), or it depends (-1).
int UniformAlarm(const TLimitRule& limits, double min, double max) {
    const bool a = limits.IsAlarm(min), b = limits.IsAlarm(max);
    switch (limits.Mode) {
    case 1:
    case 2: // a half-line and its complement
        return a == b ? int(a) : -1;
    case 3: // inside an open band
        if (a && b) return 1;
        if (!a && !b && (max <= limits.L1 || min >= limits.L2)) return 0;
        return -1;
    case 4: // outside a closed band
        if (!a && !b) return 0;
        if (a && b && (max < limits.L1 || min > limits.L2)) return 1;
        return -1;
    default:
        return 0;
    }
}

} // namespace

TLimitViolations LimitViolations(const TCurveData& d, const TCurveSummary* summary, const TLimitRule& limits,
                                 TIndexRange range) {
    TLimitViolations out;
    if (limits.Mode < 1 || limits.Mode > 4 || range.IsEmpty()) return out;
    bool inAlarm = false; // the point before was a measured value in alarm
    auto enter = [&](qint64 i, bool alarm) {
        if (alarm && !inAlarm && out.Count++ == 0) out.FirstIndex = i;
        inAlarm = alarm;
    };
    auto point = [&](qint64 i, double, double y, bool measured) { enter(i, measured && limits.IsAlarm(y)); };
    const qint64 end = range.Last + 1;
    const std::vector<TCurveSummary::TBlockStats>* blocks = summary ? &summary->Blocks() : nullptr;
    for (qint64 i = range.First; i < end;) {
        const qint64 next = std::min(end, (i / kBlock + 1) * kBlock);
        if (blocks && i % kBlock == 0 && next == i + kBlock) {
            const TCurveSummary::TBlockStats& b = (*blocks)[size_t(i / kBlock)];
            const int uniform = b.Clean ? UniformAlarm(limits, b.Min, b.Max) : -1;
            if (uniform >= 0) {
                enter(i, uniform == 1);
                i = next;
                continue;
            }
        }
        ForPoints(d, i, next, point);
        i = next;
    }
    return out;
}

std::vector<TViolationSpan> ListViolations(const TCurveData& d, const TLimitRule& limits, TIndexRange range,
                                           size_t maxCount) {
    std::vector<TViolationSpan> out;
    if (limits.Mode < 1 || limits.Mode > 4 || range.IsEmpty() || maxCount == 0) return out;
    bool inAlarm = false;
    for (qint64 i = range.First; i <= range.Last; ++i) {
        const bool alarm = IsMeasured(d, i) && limits.IsAlarm(d.Value(i));
        if (alarm && !inAlarm) {
            if (out.size() == maxCount) break;
            out.push_back({i, i});
        } else if (alarm) {
            out.back().Last = i;
        }
        inAlarm = alarm;
    }
    return out;
}

double MeanKineticTemperature(const TCurveData& d, TIndexRange range, double activationEnergy) {
    constexpr double kGasConstant = 8.3144; // J/(mol·K), as the customary ΔH/R = 10000 K takes it
    constexpr double kZeroCelsius = 273.15;
    if (range.IsEmpty()) return std::numeric_limits<double>::quiet_NaN();
    const double k = activationEnergy * 1000.0 / kGasConstant;
    // ln Σ e^x kept as top + ln(sum of e^(x - top)): the terms are near 1e-15 and underflow in
    // the cold.
    qint64 n = 0;
    double top = -std::numeric_limits<double>::infinity(), sum = 0.0;
    ForPoints(d, range.First, range.Last + 1, [&](qint64, double, double y, bool measured) {
        const double kelvin = y + kZeroCelsius;
        if (!measured || !std::isfinite(y) || kelvin <= 0.0) return;
        const double x = -k / kelvin;
        ++n;
        if (x > top) {
            sum = sum * std::exp(top - x) + 1.0;
            top = x;
        } else {
            sum += std::exp(x - top);
        }
    });
    if (n == 0) return std::numeric_limits<double>::quiet_NaN();
    return k / -(top + std::log(sum / double(n))) - kZeroCelsius;
}
