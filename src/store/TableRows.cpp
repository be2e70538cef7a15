#include "store/TableRows.h"

#include "store/DataBase.h"

#include <algorithm>
#include <cmath>
#include <limits>

void TTableRows::Clear() {
    FTimes.clear();
    FIndex.clear();
    FCurves = 0;
    FFirstTime = 0.0;
}

void TTableRows::SetFirstRow(const TDataBase& db, double time) {
    double lastShown = -1.0;
    for (int i = 0; i < db.Curve_Count(); ++i)
        if (db.Curve_IsAvailable(i)) lastShown = std::max(lastShown, db.Data(i).LastTime());
    Build(db, std::min(time, lastShown));
}

void TTableRows::Build(const TDataBase& db, double first) {
    const int n = db.Curve_Count();
    FTimes.clear();
    FIndex.clear();
    FCurves = n;
    FFirstTime = first;
    constexpr double kNone = std::numeric_limits<double>::infinity();
    // Per curve the next point not yet shown and its time (infinity when there is none).
    std::vector<qint64> cursor(size_t(n), -1);
    std::vector<double> next(size_t(n), kNone);
    for (int i = 0; i < n; ++i) {
        if (!db.Curve_IsAvailable(i)) continue;
        const TCurveData& d = db.Data(i);
        cursor[size_t(i)] = d.LowerBound(first);
        if (cursor[size_t(i)] < d.Count()) next[size_t(i)] = d.Time(cursor[size_t(i)]);
    }
    // Merge the curves' stamps from there: each row is the smallest time not yet shown.
    while (n > 0 && Count() < kMaxRows) {
        const double t = *std::min_element(next.begin(), next.end());
        if (t == kNone) break;
        FTimes.push_back(t);
        FIndex.resize(FIndex.size() + size_t(n), -1);
        qint64* index = FIndex.data() + FIndex.size() - size_t(n);
        for (int i = 0; i < n; ++i) {
            if (next[size_t(i)] != t) continue;
            const TCurveData& d = db.Data(i);
            qint64& c = cursor[size_t(i)];
            // Equal stamps within one curve: the last point of them stands for the time.
            double following = kNone;
            while (++c < d.Count()) {
                following = d.Time(c);
                if (following != t) break;
                following = kNone;
            }
            index[i] = c - 1;
            next[size_t(i)] = following;
        }
    }
}

void TTableRows::MoveFirstRow(const TDataBase& db, int rows) {
    const int n = db.Curve_Count();
    double t = FirstTime();
    if (rows > 0 && rows < Count()) {
        // Forward within the rows already built.
        t = Time(rows);
    } else if (rows != 0 && n > 0) {
        // Row by row with a cursor per curve and the time of the point it would take next:
        // the first point after t going forward, the last point before t going back.
        const bool forward = rows > 0;
        const double none = forward ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
        std::vector<qint64> cursor(size_t(n), -1);
        std::vector<double> candidate(size_t(n), none);
        auto take = [&](int i) {
            const TCurveData& d = db.Data(i);
            const qint64 c = cursor[size_t(i)];
            candidate[size_t(i)] = forward ? (c < d.Count() ? d.Time(c) : none) : (c > 0 ? d.Time(c - 1) : none);
        };
        for (int i = 0; i < n; ++i) {
            if (!db.Curve_IsAvailable(i)) continue;
            cursor[size_t(i)] = forward ? db.Data(i).UpperBound(t) : db.Data(i).LowerBound(t);
            take(i);
        }
        for (int step = 0, steps = std::abs(rows); step < steps; ++step) {
            const double to = forward ? *std::min_element(candidate.begin(), candidate.end())
                                      : *std::max_element(candidate.begin(), candidate.end());
            if (to == none) break;
            t = to;
            for (int i = 0; i < n; ++i) {
                if (candidate[size_t(i)] != t) continue;
                // Past every point of this curve at t (equal stamps are one row).
                const TCurveData& d = db.Data(i);
                qint64& c = cursor[size_t(i)];
                if (forward)
                    do ++c;
                    while (c < d.Count() && d.Time(c) == t);
                else
                    do --c;
                    while (c > 0 && d.Time(c - 1) == t);
                take(i);
            }
        }
    }
    SetFirstRow(db, t);
}
