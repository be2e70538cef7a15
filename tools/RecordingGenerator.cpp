#include "RecordingGenerator.h"

#include <limits>

#include "data/DataFile.h"
#include "data/RecordingWalk.h"

#include <bit>
#include <cmath>
#include <numbers>

namespace {

struct TKind {
    const char* module;
    const char* name;
    const char16_t* unit;
    quint16 alarm;
    float l1, l2;
};

// What ZEB loggers record; the units include the non-ASCII ones users see every day.
const TKind kKinds[] = {
    {"ZEB-T1", "Temperature", u"°C", 4, 15.0f, 25.0f},
    {"ZEB-H1", "Humidity", u"%rH", 2, 70.0f, 0.0f},
    {"ZEB-P1", "Pressure", u"hPa", 1, 1000.0f, 0.0f},
    {"ZEB-F1", "Flow", u"l/min", 2, 14.0f, 0.0f},
    {"ZEB-A1", "Acceleration", u"g", 0, 0.0f, 0.0f},
};
constexpr int kKindCount = int(std::size(kKinds));

} // namespace

TRecordingGenerator::TRecordingGenerator(const TGenOptions& options)
    : FOpt(options), FState(options.seed * 0x9E3779B97F4A7C15ull + 1) {
    for (int c = 0; c < FOpt.channels; ++c) {
        const TKind& k = kKinds[c % kKindCount];
        TGenChannel ch;
        const int round = c / kKindCount;
        ch.module = QString::fromLatin1(k.module);
        ch.name = QString::fromLatin1(k.name) + (round ? QStringLiteral(" %1").arg(round + 1) : QString());
        ch.unit = QString::fromUtf16(k.unit);
        ch.logger = FOpt.loggerName;
        ch.alarm = FOpt.limitMode >= 0 ? quint16(FOpt.limitMode) : k.alarm;
        ch.record = ch.alarm ? 1 : 0;
        ch.limit1 = k.l1;
        ch.limit2 = k.l2;
        FChannels.push_back(ch);
    }
}

double TRecordingGenerator::Uniform() {
    // splitmix64: the same numbers on every platform and standard library
    std::uint64_t z = (FState += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    z ^= z >> 31;
    return double(z >> 11) * 0x1.0p-53;
}

double TRecordingGenerator::Normal() {
    const double u1 = std::max(Uniform(), 1e-300);
    const double u2 = Uniform();
    return std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * std::numbers::pi * u2);
}

float TRecordingGenerator::Sample(int channel, double seconds) {
    const double day = seconds / 86400.0;
    const double daily = std::sin(2.0 * std::numbers::pi * (day - 0.375));
    switch (channel % kKindCount) {
    case 0: return float(20.0 + 5.0 * daily + 0.2 * Normal());
    case 1: return float(std::clamp(55.0 - 15.0 * daily + 1.0 * Normal(), 0.0, 100.0));
    case 2: return float(1013.0 + 8.0 * std::sin(2.0 * std::numbers::pi * day / 5.0) + 0.3 * Normal());
    case 3: {
        // A pump that switches now and then; the level drifts slowly while it runs.
        if (Uniform() < 0.01) FFlowLevel = FFlowLevel > 0 ? 0.0 : 12.5 + Normal();
        return float(FFlowLevel > 0 ? FFlowLevel + 0.4 * Normal() : 0.0);
    }
    default: return float(0.05 * Normal());
    }
}

// Now and then a value no instrument should send: NaN, or an infinity of either sign.
float TRecordingGenerator::OddValue(float v) {
    if (FOpt.oddRate <= 0 || Uniform() >= FOpt.oddRate) return v;
    const double kind = Uniform();
    if (kind < 0.5) return std::numeric_limits<float>::quiet_NaN();
    return kind < 0.75 ? std::numeric_limits<float>::infinity() : -std::numeric_limits<float>::infinity();
}

bool TRecordingGenerator::NextRecord(double& days, std::uint32_t* bits) {
    if (FIndex >= FOpt.records) return false;
    double seconds = double(FIndex) * FOpt.intervalSeconds;
    if (FOpt.jitter > 0) seconds += (Uniform() - 0.5) * FOpt.jitter * FOpt.intervalSeconds;
    days = FOpt.startDays + seconds / 86400.0;
    for (int c = 0; c < FOpt.channels; ++c) {
        const double r = (FOpt.missingRate > 0 || FOpt.gapRate > 0) ? Uniform() : 1.0;
        const float v = Sample(c, seconds); // drawn always, so the signal does not depend on the rates
        if (r < FOpt.missingRate) bits[c] = TRecordingWalk::kNoValueBits;
        else if (r < FOpt.missingRate + FOpt.gapRate) bits[c] = TRecordingWalk::kGapBits;
        else bits[c] = std::bit_cast<std::uint32_t>(OddValue(v));
    }
    ++FIndex;
    return true;
}

bool WriteRecording(const QString& path, const TGenOptions& options, QString* error,
                    const std::function<void(double)>& progress) {
    QString err;
    auto file = TDataFile::CreateSave(path, &err);
    if (!file) {
        if (error) *error = err;
        return false;
    }
    TRecordingGenerator gen(options);
    const auto& ch = gen.Channels();
    try {
        auto perChannelStrings = [&](quint16 id, auto field) {
            file->NewBlock(id);
            for (const TGenChannel& c : ch) file->WriteString(field(c));
            return file->WriteBlock();
        };
        bool ok = true;
        file->NewBlock(ZebBlock::CreatorVersion);
        file->WriteString(options.creator);
        file->WriteString(options.version);
        ok = ok && file->WriteBlock();
        file->NewBlock(ZebBlock::StartTime);
        file->WriteDouble(options.startDays);
        ok = ok && file->WriteBlock();
        ok = ok && perChannelStrings(ZebBlock::Channels, [](const TGenChannel& c) { return c.module; });
        ok = ok && perChannelStrings(ZebBlock::ChannelNames, [](const TGenChannel& c) { return c.name; });
        ok = ok && perChannelStrings(ZebBlock::Units, [](const TGenChannel& c) { return c.unit; });
        ok = ok && perChannelStrings(ZebBlock::LoggerNames, [](const TGenChannel& c) { return c.logger; });
        if (options.limits) {
            file->NewBlock(ZebBlock::Limits);
            for (const TGenChannel& c : ch) {
                file->WriteWord(c.alarm);
                file->WriteWord(c.record);
                file->WriteSingle(c.limit1);
                file->WriteSingle(c.limit2);
            }
            ok = ok && file->WriteBlock();
        }
        file->NewBlock(ZebBlock::ZebName);
        file->WriteString(options.zebName);
        ok = ok && file->WriteBlock();

        const int recordSize = 8 + 4 * int(ch.size());
        std::vector<std::uint32_t> bits(ch.size() + 1);
        double days;
        std::int64_t done = 0;
        auto write = [&](double d, const std::uint32_t* b) {
            if (file->BlockSpace() < recordSize) {
                ok = file->WriteBlock();
                file->NewBlock(ZebBlock::Data);
                if (progress && options.records > 0) progress(double(done) / double(options.records));
            }
            file->WriteDouble(d);
            for (size_t c = 0; c < ch.size(); ++c) file->WriteSingleBits(b[c]);
        };
        const std::int64_t lateEvery = options.lateRecords > 0 ? options.records / (options.lateRecords + 1) : 0;
        std::vector<std::pair<double, std::vector<std::uint32_t>>> late;
        file->NewBlock(ZebBlock::Data);
        while (ok && gen.NextRecord(days, bits.data())) {
            if (lateEvery > 0 && done > 0 && done % lateEvery == 0 && std::int64_t(late.size()) < options.lateRecords)
                late.emplace_back(days, bits);
            else write(days, bits.data());
            ++done;
        }
        for (const auto& [d, b] : late)
            if (ok) write(d, b.data());
        ok = ok && file->WriteBlock();
        if (!ok) {
            if (error) *error = file->ErrorString();
            file->Abort();
            return false;
        }
        if (!file->Close()) {
            if (error) *error = file->ErrorString();
            return false;
        }
    } catch (const TDataFileError& e) {
        if (error) *error = QString::fromStdString(e.what());
        file->Abort();
        return false;
    }
    return true;
}
