#pragma once
// The text converter's table: a header line, then one line per distinct time stamp, made by
// the store's merged walk (TDataPrintRow) while the recording is read. Memory stays flat:
// rows are written in rounds as soon as no later record can still belong to them.
//
// A recording whose records do not come in time order cannot be merged that way; the table
// then asks to be fed again in whole mode, where it keeps every point, sorts each curve as
// the loader does and walks once at the end.

#include "config/ZebReg.h"
#include "data/CurveData.h"
#include "data/Formats.h"

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <limits>
#include <vector>

class QIODevice;
class TDataPrintRow;

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

    TCsvTable(const TCsvFormat& format, QIODevice& out, bool whole);
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

    // The records left time order (or columns came after the header): feed again in whole mode.
    bool NeedsWhole() const { return FNeedsWhole; }
    bool Failed() const { return FFailed; }
    qint64 Rows() const { return FRows; }

    // The texts of one cell, as written (for tests of the codes).
    QByteArray ValueText(float value) const;
    QByteArray TimeText(double seconds);

private:
    struct TColumn {
        QString Module, Name, Unit;
        std::vector<std::pair<double, quint32>> Pending; // points not yet merged
    };
    void Round(double horizon);
    void Walk(std::vector<TCurveData>& data);
    void EmitRow(const TDataPrintRow& row);
    void WriteHeader();
    void AppendField(const QByteArray& field);
    void AppendValue(QByteArray& out, float value) const;
    void Write(bool force);

    TCsvFormat FFormat;
    QIODevice& FOut;
    bool FWhole;
    std::vector<TColumn> FColumns;
    std::vector<TCurveData> FData; // whole mode: every point; streaming: the round's points
    double FLast = -std::numeric_limits<double>::infinity();
    int FRecordsInRound = 0;
    bool FHeaderDone = false;
    bool FNeedsWhole = false;
    bool FFailed = false;
    qint64 FRows = 0;
    double FFirstRow = 0.0;
    QByteArray FBuf, FMissing, FMissingField, FLine;
    zeb::TFormatSettings FDateFs;
    char FList, FDecimal;
    // The date part of a day's rows, made once per day.
    qint64 FDay = std::numeric_limits<qint64>::min();
    QByteArray FDayText;
};
