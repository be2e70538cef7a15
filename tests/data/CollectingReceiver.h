#pragma once
// Records everything a walk hands over, in a form tests can compare.

#include "data/DataFile.h"
#include "data/RecordingWalk.h"

#include <QStringList>

#include <vector>

struct TCollectedCurve {
    QString module, channel, unit, logger;
    int alarm = -1, record = -1;
    double value1 = 0, value2 = 0;
    std::vector<double> t, v;
    std::vector<TPointKind> kind;
    bool operator==(const TCollectedCurve&) const = default;
};

class TCollectingReceiver : public TRecordingReceiver {
public:
    QString creator, zebName, loggerName;
    double startDays = -1;
    int mode = 0;
    bool readerMarker = false;
    QStringList defects;
    QList<int> blockIds;
    std::vector<TCollectedCurve> curves;
    int clears = 0;
    int cancelBeforeBlock = -1; // cancel when this many blocks were handled
    int stopAfterDataBlocks = -1;
    int dataBlocks = 0;

    void OnBlock(int, quint16 id, int) override { blockIds << id; }
    bool IsCancelled() override { return cancelBeforeBlock >= 0 && blockIds.size() >= cancelBeforeBlock; }
    void SetCreator(const QString& c) override { creator = c; }
    void SetStartTime(double d) override { startDays = d; }
    void AddCurve(const QString& m) override {
        curves.emplace_back();
        curves.back().module = m;
    }
    void SetChannelName(int c, const QString& s) override { curves.at(size_t(c)).channel = s; }
    void SetUnit(int c, const QString& s) override { curves.at(size_t(c)).unit = s; }
    void SetLoggerName(int c, const QString& s) override { curves.at(size_t(c)).logger = s; }
    void LoggerNamesDone() override {
        loggerName = curves.empty() ? QString() : curves.front().logger;
        mode = 3;
    }
    void SetZebName(const QString& s) override { zebName = s; }
    void SetLimits(int c, quint16 a, quint16 r, double v1, double v2) override {
        auto& cu = curves.at(size_t(c));
        cu.alarm = a;
        cu.record = r;
        cu.value1 = v1;
        cu.value2 = v2;
    }
    void ClearAllLimits() override {
        ++clears;
        for (auto& c : curves) c.alarm = 0;
    }
    void SetReaderMarker() override { readerMarker = true; }
    void AddPoints(int c, std::span<const double> t, std::span<const double> v,
                   std::span<const TPointKind> k) override {
        auto& cu = curves.at(size_t(c));
        cu.t.insert(cu.t.end(), t.begin(), t.end());
        cu.v.insert(cu.v.end(), v.begin(), v.end());
        cu.kind.insert(cu.kind.end(), k.begin(), k.end());
    }
    void ReportDefect(const QString& text) override { defects << text; }
    bool AfterDataBlock(qint64) override { return ++dataBlocks != stopAfterDataBlocks; }
};

struct TWalkResult {
    TRecordingWalk::TEnd end = TRecordingWalk::TEnd::BadHeader;
    qint64 values = 0;
    int blocks = 0;
};

inline TWalkResult WalkFile(const QString& path, TCollectingReceiver& r, int variant = 0, bool readAhead = false,
                            TDataFile::TInflater inflater = TDataFile::DefaultInflater()) {
    TWalkResult res;
    auto file = TDataFile::CreateLoad(path, nullptr, inflater);
    if (!file) return res;
    if (readAhead) file->EnableReadAhead(2);
    TRecordingWalk walk(*file, r, variant);
    res.end = walk.Run();
    res.values = walk.ValueCount();
    res.blocks = walk.BlockCounter();
    return res;
}

// The suites run once per reader (ZEB_TEST_INFLATER=zlib or isal, see tests/data/CMakeLists.txt):
// every expectation holds for both.
inline void ChooseInflaterFromEnvironment() {
    const QString chosen = qEnvironmentVariable("ZEB_TEST_INFLATER");
    if (chosen == QLatin1String("zlib")) TDataFile::SetDefaultInflater(TDataFile::TInflater::Zlib);
    if (chosen == QLatin1String("isal")) TDataFile::SetDefaultInflater(TDataFile::TInflater::Isal);
}

// The readers the build has, zlib first.
inline std::vector<TDataFile::TInflater> AllInflaters() {
    std::vector<TDataFile::TInflater> all{TDataFile::TInflater::Zlib};
    if (TDataFile::HasIsal()) all.push_back(TDataFile::TInflater::Isal);
    return all;
}
