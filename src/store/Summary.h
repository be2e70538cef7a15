#pragma once
// The summary of many recordings: per recording and curve the figures a quality manager asks
// of every logger of a shipment or a room (extremes and when, average, mean kinetic
// temperature, time out of limits, violations, a verdict). The figures are the report's, by
// the same functions. Recordings are read one after another, without any question, each with
// its own display template or one for all; one recording is held at a time.

#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

class QIODevice;
class TDataBase;

// How far a recording could be read.
enum class TSummaryStatus { Ok, Truncated, Damaged, Unreadable };
// What a curve's limits say of it: no violation, at least one, or it has no limits.
enum class TSummaryVerdict { Passed, Failed, NoLimits };

// The names scripts read (JSON), the same in every language.
QString SummaryStatusName(TSummaryStatus status);
QString SummaryVerdictName(TSummaryVerdict verdict);

struct TSummaryRow {
    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

    QString File; // as given
    TSummaryStatus Status = TSummaryStatus::Unreadable;
    // The curve; -1 for the one row of a recording without curves (an unreadable file).
    int Index = -1;
    QString Logger, Name, Unit, Format;
    qint64 Points = 0;   // measured values in the range, infinite ones included
    qint64 Infinite = 0; // infinite values, left out of the figures below
    double First = kNone, Last = kNone; // of the points in the range
    double Min = kNone, MinTime = kNone, Max = kNone, MaxTime = kNone, Average = kNone;
    double Mkt = kNone; // °C curves only
    int LimitMode = 0;  // 1..4 with limits
    double Limit1 = kNone, Limit2 = kNone;
    double LimitOut = kNone; // seconds out of the limits
    qint64 Violations = 0;
    double FirstViolation = kNone;
    TSummaryVerdict Verdict = TSummaryVerdict::NoLimits;

    bool HasFigures() const { return Index >= 0; }
};

struct TSummaryOptions {
    // The range; unset, each recording's own first and last time.
    std::optional<double> From, To;
    // One template for all recordings; empty: each recording's own (as when it is opened).
    QString Template;
    double ActivationEnergy = 83.144; // kJ/mol, of the mean kinetic temperature
    int Variant = 0;                  // the brand's variant code of the recordings
};

// Reads a recording into the store as the viewer does after a complete load, but never asks
// anything and reads it whole. A template that cannot be read is left out (the recording's
// own settings stay). The status says how far the file could be read.
TSummaryStatus ReadForSummary(TDataBase& db, const QString& file, const TSummaryOptions& options,
                              const std::atomic<bool>* cancel = nullptr);

// The rows of a store read by ReadForSummary: one per curve, or one without figures when the
// recording has no curve.
std::vector<TSummaryRow> SummaryRows(const TDataBase& db, const QString& file, TSummaryStatus status,
                                     const TSummaryOptions& options);

// Reads the recordings one after another. progress(done, total, file) before each recording;
// cancel stops before the next one (the rows so far are returned).
struct TSummaryRun {
    std::function<void(int done, int total, const QString& file)> Progress;
    const std::atomic<bool>* Cancel = nullptr;
    std::vector<TSummaryRow> Run(const QStringList& files, const TSummaryOptions& options) const;
};

// Counts for a header: recordings, curves passed, failed and without limits.
struct TSummaryCounts {
    int Recordings = 0, Passed = 0, Failed = 0, NoLimits = 0, Incomplete = 0;
};
TSummaryCounts CountSummary(const std::vector<TSummaryRow>& rows);

// The summary as CSV: a header row in the current language, then one row per recording and
// curve, with the program's decimal and list separators. False when it cannot be written.
bool WriteSummaryCsv(QIODevice& out, const std::vector<TSummaryRow>& rows);

// The texts of the columns, in the current language, in the order of the table and the CSV.
QStringList SummaryColumnTitles();
// The text of a row's cell in that order, as the table, the CSV and the PDF show it.
QString SummaryCellText(const TSummaryRow& row, int column);
// The recordings found in a folder (not its subfolders), sorted by name.
QStringList RecordingsInFolder(const QString& folder);
