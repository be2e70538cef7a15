#pragma once
// A store filled directly, as the loader fills it.

#include "store/DataBase.h"

#include <functional>
#include <vector>

// Adds a curve of n measured values stamped start, start + step, ... with value(i); its index.
inline int AddSampledCurve(TDataBase& db, const QString& module, int n, double start, double step,
                           const std::function<double(int)>& value) {
    TStoreReceiver r(db);
    const int c = db.Curve_Count();
    r.AddCurve(module);
    std::vector<double> t(static_cast<size_t>(n)), v(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        t[size_t(i)] = start + i * step;
        v[size_t(i)] = value(i);
    }
    r.AddPoints(c, t, v, std::vector<TPointKind>(size_t(n), TPointKind::Value));
    return c;
}
