#pragma once
// The cutter: a time window and a choice of channels of a recording, written as a new
// recording that loads to exactly those points, or through the converter's table as text.
// The text converter is the same run over every channel and all of time.
//
// The target is written to a temporary file and renamed at the end, so a failure leaves
// no half file and an existing file of that name stays as it was.

#include "ArrayExport.h"
#include "CsvTable.h"

#include <QString>

#include <limits>
#include <optional>
#include <vector>

struct TCutRequest {
    QString Source, Target;
    // Seconds since 1 January 2000; a point is kept when Start <= time <= End.
    double Start = -std::numeric_limits<double>::infinity();
    double End = std::numeric_limits<double>::infinity();
    // Curve indices from 0 in ascending order; empty: every channel.
    std::vector<int> Channels;
    bool Csv = false;
    TCsvFormat Format;
    // Set: the window as MATLAB or HDF5 arrays instead.
    std::optional<TArrayKind> Arrays;
};

// The exit codes of zeb_cutter and zeb2csv.
enum class TCutResult : int {
    Ok = 0,
    BadArgument = 1,    // also a channel the recording does not have
    CannotRead = 2,     // the source cannot be opened or is no recording
    TargetIsSource = 3,
    CannotWrite = 4,
    Damaged = 5, // the source is damaged: what could be read up to the damage was written
};

class TCutter {
public:
    explicit TCutter(TCutRequest request);

    TCutResult Run();
    // One line in the program's language; empty after success.
    QString Message() const { return FMessage; }
    // Data records (recording) or rows (text) written.
    qint64 Written() const { return FWritten; }

private:
    enum class TPass { Done, Again, Failed };
    TPass Pass(bool whole);
    TCutResult RunArrays(TArrayKind kind);
    TCutResult Fail(TCutResult result, const QString& message);

    TCutRequest FReq;
    TCutResult FResult = TCutResult::Ok;
    QString FMessage;
    qint64 FWritten = 0;
};
