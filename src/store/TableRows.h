#pragma once
// The rows of the table view: from a first time on, up to 50 rows of the merged time stamps
// of the shown curves; per row its time and, per curve, the index of its point at that time
// (-1: none). One flat array, so building the rows again allocates nothing once it has grown.

#include <QtGlobal>

#include <vector>

class TDataBase;

class TTableRows {
public:
    static constexpr int kMaxRows = 50;

    // Rows from the first stamp at or after time; a time after the last stamp of the shown
    // curves is taken as that last stamp.
    void SetFirstRow(const TDataBase& db, double time);
    // Moves the first row by whole rows of the merged stamps (negative: back).
    void MoveFirstRow(const TDataBase& db, int rows);
    void Clear();

    // The first row's time, or the time asked for when there are no rows.
    double FirstTime() const { return FTimes.empty() ? FFirstTime : FTimes.front(); }
    int Count() const { return int(FTimes.size()); }
    bool IsRow(int row) const { return row >= 0 && row < Count(); }
    double Time(int row) const { return FTimes[size_t(row)]; }
    // -1 also for a curve the rows were not built for.
    qint64 Index(int row, int curve) const {
        return curve < FCurves ? FIndex[size_t(row) * size_t(FCurves) + size_t(curve)] : -1;
    }

private:
    void Build(const TDataBase& db, double first);

    std::vector<double> FTimes;
    std::vector<qint64> FIndex;
    int FCurves = 0;
    double FFirstTime = 0.0;
};
