#pragma once
// Whole files in one call, for what a test writes by hand or reads back.

#include <QByteArray>
#include <QFile>
#include <QString>

// The file's bytes; empty if it cannot be read.
inline QByteArray ReadBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The bytes as the whole file; false if any of them could not be written.
inline bool WriteBytes(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}
