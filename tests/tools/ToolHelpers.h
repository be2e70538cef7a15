#pragma once
// Shared by the companion-program tests: loading a recording the way the viewer does, the
// points of a curve inside a window, and running a companion program as a process.

#include "LoadRecording.h"

#include <QProcess>
#include <QSettings>

#include <bit>
#include <memory>

namespace tooltest {

inline std::unique_ptr<TDataBase> Load(const QString& path, int* result = nullptr) {
    return LoadRecording(path, result);
}

// One point as the store holds it: time, the value's bits, and whether it is a gap marker.
struct TPoint {
    double t;
    quint32 bits;
    bool gap;
    bool operator==(const TPoint&) const = default;
};

inline QList<TPoint> Points(const TDataBase& db, int curve, double from, double to) {
    QList<TPoint> out;
    const TCurveData& d = db.Data(curve);
    for (qint64 i = 0; i < d.Count(); ++i)
        if (d.Time(i) >= from && d.Time(i) <= to)
            out.append({d.Time(i), std::bit_cast<quint32>(float(d.Value(i))), d.IsGap(i)});
    return out;
}

struct TRun {
    int code = -1;
    QString out, err;
};

inline TRun RunProgram(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    TRun r;
    if (!p.waitForFinished(120000)) return r;
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromLocal8Bit(p.readAllStandardOutput());
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

// Values of the settings tree the companion programs read ("Language", "zeb2csv.exe/iNanFormat").
inline void PutSetting(const QString& file, const QString& key, const QVariant& value) {
    QSettings tree(file, QSettings::IniFormat);
    tree.setValue(QStringLiteral("Software/Velmorant/ZEB/") + key, value);
}

} // namespace tooltest
