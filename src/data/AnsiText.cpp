#include "data/AnsiText.h"

#include <array>

namespace zeb {
namespace {

// Bytes 0x80..0x9F; the rest of the code page equals Latin-1.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

int EncodeChar(char16_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return c;
    for (int i = 0; i < 32; ++i)
        if (kHigh[size_t(i)] == c) return 0x80 + i;
    return -1;
}

} // namespace

QString AnsiToString(const char* data, qsizetype size) {
    QString out;
    out.resize(size);
    QChar* dst = out.data();
    for (qsizetype i = 0; i < size; ++i) {
        const auto b = static_cast<unsigned char>(data[i]);
        dst[i] = (b >= 0x80 && b < 0xA0) ? QChar(kHigh[b - 0x80]) : QChar(b);
    }
    return out;
}

QByteArray StringToAnsi(const QString& text) {
    QByteArray out;
    out.reserve(text.size());
    for (QChar c : text) {
        const int b = EncodeChar(c.unicode());
        out.append(b < 0 ? '?' : static_cast<char>(b));
    }
    return out;
}

bool IsAnsiRepresentable(const QString& text) {
    for (QChar c : text)
        if (EncodeChar(c.unicode()) < 0) return false;
    return true;
}

} // namespace zeb
