#pragma once
// The text converter's table: a header line, then the rows of the store's merged walk over
// the curves (each row takes the smallest time the curves stand at, and every curve standing
// exactly there moves on), made while the recording is read. Memory stays flat: rows are
// written in rounds as soon as no later record can still belong to them.
//
// A recording whose records do not come in time order cannot be merged that way; the table
// then asks to be fed again sorted. The records are then sorted in runs that go to a
// temporary file and are merged from there, equal stamps in file order, which leaves every
// curve as the loader sorts it. Memory stays flat that way too; the disk holds the records
// once more (12 bytes and 4 per column each).

#include "config/ZebReg.h"
#include "data/Formats.h"

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>
#include <thread>
#include <memory>
#include <string>
#include <vector>

class QIODevice;

// The settings of the "\zeb2csv.exe" section, resolved. The integer codes:
//   iListSeparator    0 automatic (";" where the decimal separator is ",", else ","),
//                     1 ";", 2 ",", 3 tab, 4 blank
//   iDecimalSeparator 0 automatic (the locale's), 1 ".", 2 ","
//   iNumberFormat     0 as many digits as the value needs, 1..9 that many decimals,
//                     10 scientific "0.000000E+00"
//   iNanFormat        text of a missing value: 0 empty, 1 "NaN", 2 "#N/A", 3 "-"
//   iTimeColumn       0 date and time, 1 seconds from the first row, 2 both,
//                     3 seconds since 1 January 2000 (the viewer's time axis)
//   iDateFormat       0 yyyy-MM-dd, 1 dd/MM/yyyy, 2 MM/dd/yyyy, 3 dd.MM.yyyy, 4 dd-MMM-yyyy,
//                     5 yyyy-MMM-dd, 6 the pattern sDateFormat
//   iTimeFormat       0 HH:mm:ss with milliseconds, 1 HH:mm:ss, 2 HH:mm, 3 the pattern sTimeFormat
//   iFileExt          extension given to a target without one: 0 ".csv", 1 ".txt", 2 sFileExt
// Any other value means 0.
// sDateFormat and sTimeFormat in the letters of the program's date and time patterns: in a
// date pattern "m" is taken as the month "M", in a time pattern "n" as the minute "m", so the
// patterns other programs of the suite write read the same here.
QString OwnDatePattern(const QString& pattern);
QString OwnTimePattern(const QString& pattern);

struct TCsvFormat {
    QChar List = QLatin1Char(',');
    QChar Decimal = QLatin1Char('.');
    int NumberFormat = 0;
    QString Missing;
    int TimeColumn = 0;
    QString DatePattern = QStringLiteral("yyyy-MM-dd");
    int TimeKind = 0; // iTimeFormat
    QString TimePattern;
    QString Extension = QStringLiteral(".csv");

    enum : int { kScientific = 10 };
    static TCsvFormat FromSettings(const TZebSettings::TCsv& s, const QLocale& locale);
    // The target with the extension added when it has none.
    QString Target(const QString& target) const;
};

class TCsvTable {
public:
    // Rows are merged in rounds of this many records at least.
    static constexpr int kRoundRecords = 8192;
    // Records held in memory while they come out of time order, before a sorted run of them
    // goes to the temporary file.
    static constexpr qint64 kRunBytes = qint64(2) << 20;

    // sorted: the records may come in any order; they are sorted through runs written to a
    // temporary file in spillFolder and merged when Finish comes. Otherwise they must come in
    // time order (NeedsWhole() tells when they did not) and rows go out as they come.
    TCsvTable(const TCsvFormat& format, QIODevice& out, bool sorted, const QString& spillFolder = QString());
    ~TCsvTable();
    TCsvTable(const TCsvTable&) = delete;
    TCsvTable& operator=(const TCsvTable&) = delete;

    // Columns come in file order and are named as the store names its curves: the channel
    // name (else the module name) with the unit in brackets.
    void AddColumn(const QString& module);
    void SetName(int column, const QString& name);
    void SetUnit(int column, const QString& unit);
    int ColumnCount() const { return int(FColumns.size()); }

    // One record: time in seconds since 1 January 2000 and one 32-bit pattern for each of the
    // first count columns (the others have no value in it).
    void AddRecord(double seconds, const quint32* bits, int count);
    // Writes the rows still held and the header if no row came; false on a write error.
    bool Finish();

    // The records left time order (or columns came after the header): feed again sorted.
    bool NeedsWhole() const { return FNeedsWhole; }
    bool Failed() const;
    qint64 Rows() const { return FRows; }
    // Sorted runs that went to the temporary file, known after Finish.
    int SpilledRuns() const;
    // How many bytes of records a sorted run holds and how many runs are merged at once; tests
    // make both small to reach every path with few records.
    void SetSortLimits(qint64 runBytes, int mergeRuns);
    // How many threads make the text (2 unless set; 1 keeps it to one besides the reader).
    void SetFormatters(int count);

    // The texts of one cell, as written (for tests of the codes).
    QByteArray ValueText(float value) const;
    QByteArray TimeText(double seconds);

private:
    struct TPoint {
        double Time;
        quint32 Bits;
    };
    struct TColumn {
        QString Module, Name, Unit;
        std::vector<TPoint> Pending; // points not yet merged
    };
    // A round's points, column by column, on their way to text.
    struct TBatch {
        qint64 Seq = 0;
        std::vector<std::vector<TPoint>> Columns;
        std::vector<char> Text;
        size_t Len = 0; // of Text, used
        qint64 Rows = 0;
    };
    struct TClock;
    class TSorter;

    void Take(double seconds, const quint32* bits, int count);
    void Round();
    void Formatter();
    void StopFormatters(bool abandon);
    void Format(TBatch& batch, TClock& clock) const;
    void WriteHeader();
    void AppendField(const QByteArray& field);
    bool NeedsQuotes(const char* text, size_t n) const;
    // Puts text at p as one field, quoted when it holds a separator, a quote or a line end;
    // returns the end.
    char* PutField(char* p, const char* text, size_t n) const;
    // The value's text at p, unquoted; returns the end.
    char* PutValue(char* p, float v) const;
    // Brings the clock's time texts to the stamp; returns the time field's length unquoted.
    size_t MakeTimeText(TClock& clock, double seconds) const;
    void SpellTime(TClock& clock) const;
    char* PutClock(const TClock& clock, char* p) const;
    char* PutTime(TClock& clock, char* p) const;

    TCsvFormat FFormat;
    QIODevice& FOut;
    bool FSorted;
    std::unique_ptr<TSorter> FSorter;
    std::vector<TColumn> FColumns;
    double FLast = -std::numeric_limits<double>::infinity();
    int FRecordsInRound = 0;
    bool FHeaderDone = false;
    bool FNeedsWhole = false;
    bool FFailed = false;
    int FSpilledRuns = 0;
    double FFirstRow = 0.0; // set before the first batch goes out
    QByteArray FMissing, FMissingField, FLine;
    size_t FCellMax = 0; // the longest a cell can be, separator and quotes included
    char FList, FDecimal;
    zeb::TFormatSettings FDateFs;
    std::unique_ptr<TClock> FOwnClock; // for TimeText

    // Shared with the formatters, under FMutex.
    int FFormatters = 2;
    std::vector<std::thread> FThreads;
    std::mutex FMutex;
    std::condition_variable FCond;
    std::deque<std::unique_ptr<TBatch>> FQueue;
    std::vector<std::unique_ptr<TBatch>> FDone; // made, waiting for those before them
    std::vector<std::vector<TPoint>> FSpare;    // emptied columns for the next rounds
    std::vector<std::vector<char>> FSpareText;
    qint64 FNextSeq = 0, FNextWrite = 0;
    size_t FBusy = 0;
    bool FStop = false, FAbandon = false;
    qint64 FRows = 0;
    std::atomic<bool> FWriteFailed{false};
};
