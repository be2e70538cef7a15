#pragma once
// The loader's walk over a recording: blocks in file order, each handed to a receiver as
// typed results. Written once and shared by the loading thread and the command-line tools.

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

class TCurveData;
class TDataFile;

enum class TPointKind : std::uint8_t {
    Value = 0,  // an ordinary measured value
    Gap = 1,    // gap marker: a null point at (time, 0) that breaks the line
    GapEnd = 2, // first value after a gap: a null point that carries its value
};

// Block ids the loader acts on.
namespace ZebBlock {
enum : quint16 {
    Header = 0,
    Creator = 1,
    StartTime = 2,
    Channels = 3,
    ChannelNames = 6,
    Units = 7,
    Data = 8,
    ZebName = 9,
    Limits = 11,
    LoggerNames = 13,
    ReaderMarker = 14,
    CreatorVersion = 20,
};
QString Name(quint16 id);
} // namespace ZebBlock

// Receives what the walk reads. Per-curve calls come with an index below the number of
// AddCurve calls made so far.
class TRecordingReceiver {
public:
    virtual ~TRecordingReceiver() = default;

    // Before each block is handled (also for skipped kinds); counter counts from 1.
    virtual void OnBlock(int /*counter*/, quint16 /*id*/, int /*length*/) {}
    // Checked before each block: true ends the walk as cancelled.
    virtual bool IsCancelled() { return false; }

    virtual void SetCreator(const QString& /*creator*/) {}
    virtual void SetStartTime(double /*days*/) {}
    virtual void AddCurve(const QString& /*moduleName*/) {}
    virtual void SetChannelName(int /*curve*/, const QString& /*name*/) {}
    virtual void SetUnit(int /*curve*/, const QString& /*unit*/) {}
    virtual void SetLoggerName(int /*curve*/, const QString& /*name*/) {}
    // After block 13: the logger names are in, the store's mode becomes 3.
    virtual void LoggerNamesDone() {}
    virtual void SetZebName(const QString& /*name*/) {}
    virtual void SetLimits(int /*curve*/, quint16 /*alarm*/, quint16 /*record*/, double /*value1*/,
                           double /*value2*/) {}
    // Block 11 held more records than curves: every alarm flag 0, every limit line gone.
    virtual void ClearAllLimits() {}
    virtual void SetReaderMarker() {}
    // The points one data block brought to one curve, in file order; times in seconds.
    virtual void AddPoints(int /*curve*/, std::span<const double> /*times*/, std::span<const double> /*values*/,
                           std::span<const TPointKind> /*kinds*/) {}
    // The brand variant's one-time report of an invalid time stamp.
    virtual void ReportDefect(const QString& /*text*/) {}
    // After each data block, with the running count of measured values; false ends the walk.
    virtual bool AfterDataBlock(qint64 /*valueCount*/) { return true; }

    // The data records of a block as they stand in the file, for readers that copy or scan
    // records rather than collect points: each record is a Double time stamp in days and one
    // 32-bit pattern per curve (recordSize = 8 + 4 * curves). Only the records the walk
    // accepts are passed: the block's run up to an invalid stamp or a cut-off record.
    virtual void OnRecords(std::span<const char> /*records*/, int /*recordSize*/) {}
    // False spares the per-curve staging of AddPoints for readers that only use OnRecords.
    virtual bool WantsPoints() const { return true; }
    // A receiver that keeps a curve's points in a column of its own names it here; when every
    // curve has one, the walk writes the points straight into them instead of AddPoints.
    virtual TCurveData* Column(int /*curve*/) { return nullptr; }
};

class TRecordingWalk {
public:
    enum class TEnd {
        EndOfStream, // the stream ended where a block would start
        EmptyBlock,  // a block with an empty payload
        Truncated,   // the file ended inside the stream
        Damaged,     // the compressed stream or a block's payload is damaged
        Cancelled,   // the receiver asked to stop before a block
        Stopped,     // the receiver ended the walk after a data block
        BadHeader,   // block 0 is missing or wrong
    };

    static constexpr double kMaxDays = 36500.0;
    static constexpr quint32 kNoValueBits = 0xFFFFFFFFu;
    static constexpr quint32 kGapBits = 0xFFFFFFFEu;
    static constexpr const char* kReaderProgram = "zeblog_reader.exe";

    TRecordingWalk(TDataFile& file, TRecordingReceiver& receiver, int variantCode = 0);

    // Checks the header and walks to the end; what was handed over stays handed over.
    TEnd Run();

    int BlockCounter() const { return FCounter; }
    qint64 ValueCount() const { return FValueCount; }
    int CurveCount() const { return FCurveCount; }
    QString Creator() const { return FCreator; }
    QString ErrorText() const { return FError; }

    static QString EndText(TEnd end);
    static QString DefectText(int counter);

private:
    void HandleBlock();
    void HandleData();
    // Hands a data block's points to AddPoints, curve by curve; answers whether a record was cut off.
    bool StagePoints();
    template <bool Points, typename Emit> bool DecodeRecords(Emit&& emit);
    template <typename F> void ForEachRecord(F&& read);

    TDataFile& FFile;
    TRecordingReceiver& FReceiver;
    int FVariant;
    int FCounter = 0;
    qint64 FValueCount = 0;
    int FCurveCount = 0;
    QString FCreator;
    QString FError;
    bool FDefectReported = false;
    std::vector<std::uint8_t> FGapOpen;
    // The receiver's columns when it has one for every curve, else empty.
    std::vector<TCurveData*> FColumns;
    int FColumnsFor = -1; // the curve count FColumns was asked for
    // Per-curve staging of one data block, reused from block to block.
    std::vector<std::vector<double>> FTimes, FValues;
    std::vector<std::vector<TPointKind>> FKinds;
    std::vector<size_t> FFill;
};
