#pragma once
// 8-bit text as the recording and template files hold it: Windows-1252.

#include <QByteArray>
#include <QString>

namespace zeb {

// Decodes Windows-1252 bytes; the five undefined bytes map to the C1 controls of the same value.
QString AnsiToString(const char* data, qsizetype size);
inline QString AnsiToString(const QByteArray& bytes) { return AnsiToString(bytes.constData(), bytes.size()); }

// Encodes to Windows-1252; characters it cannot hold become '?'.
QByteArray StringToAnsi(const QString& text);

// Whether every character of the text survives StringToAnsi.
bool IsAnsiRepresentable(const QString& text);

} // namespace zeb
