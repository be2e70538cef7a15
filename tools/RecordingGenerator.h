#pragma once
// Realistic synthetic recordings: a daily temperature cycle with noise, humidity, pressure,
// a pump's flow and a vibration channel, with optional missing values and gap markers.
// Deterministic for a seed on every platform, and streaming: one record at a time.

#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

struct TGenOptions {
    std::uint64_t seed = 1;
    int channels = 4;
    std::int64_t records = 1000;
    double intervalSeconds = 60.0;
    double startDays = 8826.0; // 2024-03-01
    double missingRate = 0.0;  // share of values written as "no measurement"
    double gapRate = 0.0;      // share of values written as gap markers
    double oddRate = 0.0;      // share of values written as NaN or infinity
    double jitter = 0.0;       // each stamp moved at random by up to this share of the interval
    bool limits = true;
    // Set: every channel's limit mode (1 below L1, 2 above L1, 3 between L1 and L2, 4 outside
    // them) instead of its own.
    int limitMode = -1;
    // This many records, spread evenly over the recording, are held back and written after the
    // last one, so the file leaves time order as a logger's late write does.
    int lateRecords = 0;
    QString zebName = QStringLiteral("ZEB demo");
    QString loggerName = QStringLiteral("Logger 1");
    QString creator = QStringLiteral("zebtool");
    QString version = QStringLiteral("1.0");
};

struct TGenChannel {
    QString module, name, unit, logger;
    quint16 alarm = 0, record = 0;
    float limit1 = 0, limit2 = 0;
};

class TRecordingGenerator {
public:
    explicit TRecordingGenerator(const TGenOptions& options);

    const std::vector<TGenChannel>& Channels() const { return FChannels; }
    // The next record: its time stamp in days and one 32-bit pattern per channel.
    bool NextRecord(double& days, std::uint32_t* bits);

private:
    double Uniform();
    double Normal();
    float Sample(int channel, double seconds);
    float OddValue(float v);

    TGenOptions FOpt;
    std::vector<TGenChannel> FChannels;
    std::uint64_t FState;
    std::int64_t FIndex = 0;
    double FFlowLevel = 0;
};

// Writes the whole recording; progress gets the share done (0..1) now and then.
bool WriteRecording(const QString& path, const TGenOptions& options, QString* error = nullptr,
                    const std::function<void(double)>& progress = {});
