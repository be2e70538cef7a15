#pragma once
// A time window of a recording as arrays for MATLAB (a ".mat" file) or HDF5 (".h5"), for
// analyses in MATLAB, Python and the like: per channel its name, unit, logger, limits and the
// columns of its points in the window, times as seconds since 1 January 2000 (and as MATLAB
// date numbers), values as recorded, a gap marker as NaN.
//
// MATLAB: "source", "epoch" and "channels", a 1xN struct array with the fields name, unit,
// logger, time_s, datenum, value, limit_mode and limits ([L1 L2]); version 5, or 7.3 where a
// variable would pass 2 GB. HDF5: root attributes source and epoch, a group /channels/NN per
// channel (NN its place in the list) with the datasets time (float64) and value (float32),
// chunked and compressed, and the attributes name, unit, logger, limit_mode, l1 and l2.

#include <QString>

#include <vector>

enum class TArrayKind { Matlab, Hdf5 };

struct TArrayChannel {
    QString Name, Unit, Logger;
    int LimitMode = 0;
    double L1 = 0.0, L2 = 0.0;
    std::vector<double> Times; // seconds since 1 January 2000
    std::vector<float> Values; // a gap marker as NaN
};

// Whether this build can write the kind.
bool ArrayKindAvailable(TArrayKind kind);

// Writes the file at path (replaced whole); false when it cannot be written.
bool WriteArrays(TArrayKind kind, const QString& path, const QString& source, const std::vector<TArrayChannel>& channels);

// The MATLAB date number of a time in seconds since 1 January 2000.
inline double MatlabDatenum(double seconds) { return 730486.0 + seconds / 86400.0; }
