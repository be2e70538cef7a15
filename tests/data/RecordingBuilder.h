#pragma once
// Hand-built recordings for tests, made without TDataFile: raw block bytes, compressed
// with zlib directly, so the reader is checked against an independent writer.

#include <QByteArray>
#include <QFile>
#include <QString>

#include <bit>
#include <cstdint>
#include <cstring>
#include <zlib.h>

class TRecordingBuilder {
public:
    TRecordingBuilder& Raw(const QByteArray& bytes) {
        FBytes += bytes;
        return *this;
    }
    // One block: id, 16-bit length, payload.
    TRecordingBuilder& Block(quint16 id, const QByteArray& payload) {
        FBytes += Word(id) + Word(quint16(payload.size())) + payload;
        return *this;
    }
    TRecordingBuilder& Header(const char* magic = "VELMORANT") {
        return Block(0, Str(magic) + Word(1) + Word(0));
    }

    static QByteArray Word(quint16 v) { return Le(v); }
    static QByteArray Single(float v) { return Le(std::bit_cast<quint32>(v)); }
    static QByteArray Bits(quint32 v) { return Le(v); }
    static QByteArray Double(double v) { return Le(std::bit_cast<quint64>(v)); }
    static QByteArray Str(const QByteArray& latin1) { return Word(quint16(latin1.size())) + latin1; }
    static QByteArray Strs(std::initializer_list<const char*> items) {
        QByteArray out;
        for (const char* s : items) out += Str(s);
        return out;
    }
    // A data record: time stamp in days, then one 32-bit pattern per curve.
    static QByteArray Record(double days, std::initializer_list<quint32> bits) {
        QByteArray out = Double(days);
        for (quint32 b : bits) out += Bits(b);
        return out;
    }
    static quint32 F(float v) { return std::bit_cast<quint32>(v); }

    QByteArray Plain() const { return FBytes; }
    QByteArray Compressed() const { return Compress(FBytes); }
    bool Save(const QString& path) const { return SaveBytes(path, Compressed()); }

    static QByteArray Compress(const QByteArray& plain) {
        uLongf size = compressBound(uLong(plain.size()));
        QByteArray out(qsizetype(size), Qt::Uninitialized);
        if (compress2(reinterpret_cast<Bytef*>(out.data()), &size, reinterpret_cast<const Bytef*>(plain.constData()),
                      uLong(plain.size()), Z_DEFAULT_COMPRESSION) != Z_OK)
            return {};
        out.resize(qsizetype(size));
        return out;
    }
    // Inflates a whole file as far as it goes; what a damaged stream yields is kept.
    static QByteArray Inflate(const QByteArray& compressed) {
        z_stream z{};
        inflateInit(&z);
        QByteArray out;
        char buf[65536];
        z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.constData()));
        z.avail_in = uInt(compressed.size());
        int rc = Z_OK;
        while (rc == Z_OK) {
            z.next_out = reinterpret_cast<Bytef*>(buf);
            z.avail_out = sizeof buf;
            rc = inflate(&z, Z_NO_FLUSH);
            out.append(buf, qsizetype(sizeof buf - z.avail_out));
            if (rc == Z_BUF_ERROR && z.avail_out != 0) break;
            if (rc == Z_BUF_ERROR) rc = Z_OK;
        }
        inflateEnd(&z);
        return out;
    }
    static bool SaveBytes(const QString& path, const QByteArray& bytes) {
        QFile f(path);
        return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
    }

private:
    template <typename T> static QByteArray Le(T v) {
        QByteArray out(sizeof(T), Qt::Uninitialized);
        std::memcpy(out.data(), &v, sizeof(T)); // the test machines are little-endian
        return out;
    }
    QByteArray FBytes;
};
