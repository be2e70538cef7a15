#pragma once
// What the benchmarks share: the process's memory figures and a bare zlib pass over a file,
// the baseline the loader and the companion programs are measured against.

#include <QElapsedTimer>
#include <QFile>
#include <QString>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>
#include <zlib.h>

// A value of /proc/self/status in kB ("VmRSS:", "VmHWM:"), -1 where there is none.
inline qint64 StatusKb(const char* key) {
    std::ifstream f("/proc/self/status");
    std::string line;
    while (std::getline(f, line))
        if (line.rfind(key, 0) == 0) return std::stoll(line.substr(std::strlen(key)));
    return -1;
}

inline double Seconds(const QElapsedTimer& t) { return double(t.nsecsElapsed()) * 1e-9; }

// Starts the peak (VmHWM) over from the memory in use now.
inline void ResetPeak() {
    std::ofstream f("/proc/self/clear_refs");
    f << "5";
}

// Seconds to inflate the whole file into a reused buffer; with deflateToo, also compressing
// what comes out at the default level, as the cutter's writer does. Both outputs are dropped.
inline double BareZlib(const QString& path, bool deflateToo = false) {
    QElapsedTimer timer;
    timer.start();
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return 0;
    z_stream in{}, out{};
    inflateInit(&in);
    if (deflateToo) deflateInit(&out, Z_DEFAULT_COMPRESSION);
    std::vector<char> raw(256 * 1024), plain(65536), packed(256 * 1024);
    int rc = Z_OK;
    while (rc != Z_STREAM_END) {
        if (in.avail_in == 0) {
            const qint64 r = f.read(raw.data(), qint64(raw.size()));
            if (r <= 0) break;
            in.next_in = reinterpret_cast<Bytef*>(raw.data());
            in.avail_in = uInt(r);
        }
        in.next_out = reinterpret_cast<Bytef*>(plain.data());
        in.avail_out = uInt(plain.size());
        rc = inflate(&in, Z_NO_FLUSH);
        if (rc != Z_OK && rc != Z_STREAM_END) break;
        if (!deflateToo) continue;
        out.next_in = reinterpret_cast<Bytef*>(plain.data());
        out.avail_in = uInt(plain.size() - in.avail_out);
        while (out.avail_in > 0) {
            out.next_out = reinterpret_cast<Bytef*>(packed.data());
            out.avail_out = uInt(packed.size());
            deflate(&out, Z_NO_FLUSH);
        }
    }
    if (deflateToo) {
        do {
            out.next_out = reinterpret_cast<Bytef*>(packed.data());
            out.avail_out = uInt(packed.size());
        } while (deflate(&out, Z_FINISH) == Z_OK);
        deflateEnd(&out);
    }
    inflateEnd(&in);
    return Seconds(timer);
}
