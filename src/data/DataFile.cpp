#include "data/DataFile.h"

#include "data/AnsiText.h"

#include <QFile>
#include <QIODevice>
#include <QSaveFile>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>
#include <zlib.h>
#ifdef ZEB_HAVE_ISAL
#include <isa-l/igzip_lib.h>
#endif

const char* const TDataFile::kMagic = "VELMORANT";
const char* const TDataFile::kBrandMagic = "TORVANELI";

namespace {

constexpr qint64 kIoBufSize = 256 * 1024;

template <typename T> T LoadLE(const char* p) {
    T v;
    std::memcpy(&v, p, sizeof(T));
    if constexpr (std::endian::native == std::endian::big) {
        auto* b = reinterpret_cast<unsigned char*>(&v);
        std::reverse(b, b + sizeof(T));
    }
    return v;
}

template <typename T> void StoreLE(T v, char* p) {
    std::memcpy(p, &v, sizeof(T));
    if constexpr (std::endian::native == std::endian::big) std::reverse(p, p + sizeof(T));
}

#ifdef ZEB_HAVE_ISAL
// ISA-L's AVX code may return with the upper halves of the vector registers still in use; until
// they are cleared, every scalar SSE instruction the thread runs afterwards waits on them, and
// our arithmetic on stamps gets several times slower. Clearing them after each call is free.
void ClearUpperVectorHalves() {
#if defined(__x86_64__) || defined(__i386__)
    static const bool avx = __builtin_cpu_supports("avx");
    if (avx) asm volatile("vzeroupper");
#endif
}
#endif

} // namespace

struct TDataFile::TZStream {
    z_stream z{};
    bool inflating = false;
    bool deflating = false;
#ifdef ZEB_HAVE_ISAL
    // Tens of kilobytes of tables and history: on the heap, and only for ISA-L readers.
    std::unique_ptr<inflate_state> isal;
#endif
    ~TZStream() {
        if (inflating) inflateEnd(&z);
        if (deflating) deflateEnd(&z);
    }
    // Input bytes handed to the inflater and not yet used.
    qint64 AvailIn() const {
#ifdef ZEB_HAVE_ISAL
        if (isal) return isal->avail_in;
#endif
        return z.avail_in;
    }
};

bool TDataFile::HasIsal() {
#ifdef ZEB_HAVE_ISAL
    return true;
#else
    return false;
#endif
}

namespace {
std::atomic<int> gDefaultInflater{-1}; // -1: the best the build has
}

TDataFile::TInflater TDataFile::DefaultInflater() {
    const int chosen = gDefaultInflater.load(std::memory_order_relaxed);
    if (chosen >= 0 && HasIsal()) return TInflater(chosen);
    return HasIsal() ? TInflater::Isal : TInflater::Zlib;
}

void TDataFile::SetDefaultInflater(TInflater inflater) { gDefaultInflater.store(int(inflater)); }

TDataFile::TDataFile() = default;

TDataFile::~TDataFile() { Close(); }

std::unique_ptr<TDataFile> TDataFile::CreateLoad(const QString& fileName, QString* error, TInflater inflater) {
    std::unique_ptr<TDataFile> f(new TDataFile);
    f->FIn = std::make_unique<QFile>(fileName);
    if (!f->FIn->open(QIODevice::ReadOnly)) {
        if (error) *error = f->FIn->errorString();
        return nullptr;
    }
    f->FZ = std::make_unique<TZStream>();
    f->FIoBuf.resize(kIoBufSize);
#ifdef ZEB_HAVE_ISAL
    if (inflater == TInflater::Isal) {
        f->FInflater = TInflater::Isal;
        f->FZ->isal = std::make_unique<inflate_state>();
        isal_inflate_init(f->FZ->isal.get());
        f->FZ->isal->crc_flag = ISAL_ZLIB; // parses the zlib header and checks the Adler-32 at the end
        return f;
    }
#else
    Q_UNUSED(inflater);
#endif
    if (inflateInit(&f->FZ->z) != Z_OK) {
        if (error) *error = QStringLiteral("zlib initialisation failed");
        return nullptr;
    }
    f->FZ->inflating = true;
    return f;
}

std::unique_ptr<TDataFile> TDataFile::CreateSave(const QString& fileName, QString* error) {
    std::unique_ptr<TDataFile> f(new TDataFile);
    f->FOut = std::make_unique<QSaveFile>(fileName);
    if (!f->FOut->open(QIODevice::WriteOnly)) {
        if (error) *error = f->FOut->errorString();
        return nullptr;
    }
    f->FZ = std::make_unique<TZStream>();
    if (deflateInit(&f->FZ->z, Z_DEFAULT_COMPRESSION) != Z_OK) {
        if (error) *error = QStringLiteral("zlib initialisation failed");
        return nullptr;
    }
    f->FZ->deflating = true;
    f->FIoBuf.resize(kIoBufSize);
    f->NewBlock(0);
    f->WriteString(QString::fromLatin1(kMagic));
    f->WriteWord(1);
    f->WriteWord(0);
    if (!f->WriteBlock()) {
        if (error) *error = f->FError;
        return nullptr;
    }
    return f;
}

bool TDataFile::Close() {
    StopReadAhead();
    if (FClosed) return FError.isEmpty();
    FClosed = true;
    bool ok = true;
    if (FOut) {
        ok = FError.isEmpty() && FlushDeflate(Z_FINISH);
        if (ok) {
            if (!FOut->commit()) {
                FError = FOut->errorString();
                ok = false;
            }
        } else {
            FOut->cancelWriting();
        }
    }
    if (FIn) FIn->close();
    FZ.reset();
    return ok;
}

void TDataFile::Abort() {
    if (FClosed) return;
    FClosed = true;
    if (FOut) FOut->cancelWriting();
    FZ.reset();
}

// ---------------------------------------------------------------- compressed stream

// Inflates up to n bytes into dst; fewer only at the end of the stream or of the file.
// Both inflaters may hold decoded bytes back while their input is used up, so the end of the
// file means truncation only once they make no more progress without input.
qint64 TDataFile::ReadRaw(char* dst, qint64 n) {
    if (!FZ || !FIn || n <= 0) return 0;
    // A damaged stream first hands out what decoded before the damage, then fails.
    if (!FStreamError.empty()) throw TDataFileError(FStreamError);
    qint64 got = 0;
    while (got < n && !FStreamEnded) {
        if (FZ->AvailIn() == 0 && !FInputEnded) {
            const qint64 r = FIn->read(FIoBuf.data(), FIoBuf.size());
            if (r < 0) throw TDataFileError("cannot read the file: " + FIn->errorString().toStdString());
            if (r == 0) {
                FInputEnded = true;
            } else {
#ifdef ZEB_HAVE_ISAL
                if (FZ->isal) {
                    FZ->isal->next_in = reinterpret_cast<uint8_t*>(FIoBuf.data());
                    FZ->isal->avail_in = uint32_t(r);
                } else
#endif
                {
                    FZ->z.next_in = reinterpret_cast<Bytef*>(FIoBuf.data());
                    FZ->z.avail_in = uInt(r);
                }
            }
        }
        const qint64 want = std::min<qint64>(n - got, std::numeric_limits<uint32_t>::max());
        qint64 produced = 0;
#ifdef ZEB_HAVE_ISAL
        if (FZ->isal) {
            inflate_state& s = *FZ->isal;
            s.next_out = reinterpret_cast<uint8_t*>(dst + got);
            s.avail_out = uint32_t(want);
            const int rc = isal_inflate(&s);
            ClearUpperVectorHalves();
            produced = want - s.avail_out;
            if (rc < 0 || rc == ISAL_NEED_DICT) {
                // ISA-L decodes ahead of what it hands out and reports damage early. zlib reads
                // the rest, so a damaged file keeps exactly the blocks before the damage.
                if (!TakeOverWithZlib()) return got;
                continue;
            }
            if (s.block_state == ISAL_BLOCK_FINISH) FStreamEnded = true;
        } else
#endif
        {
            z_stream& z = FZ->z;
            z.next_out = reinterpret_cast<Bytef*>(dst + got);
            z.avail_out = uInt(want);
            const int rc = inflate(&z, Z_NO_FLUSH);
            produced = want - z.avail_out;
            if (rc == Z_STREAM_END) {
                FStreamEnded = true;
            } else if (rc == Z_NEED_DICT || rc == Z_DATA_ERROR || rc == Z_MEM_ERROR || rc == Z_STREAM_ERROR) {
                FStreamError = std::string("damaged compressed stream: ") + (z.msg ? z.msg : "zlib error");
            }
            // Z_BUF_ERROR only means no progress was possible without more input.
        }
        got += produced;
        FInflated += produced;
        if (!FStreamError.empty()) {
            if (got == 0) throw TDataFileError(FStreamError);
            break;
        }
        if (produced == 0 && FInputEnded && FZ->AvailIn() == 0) break; // the file ended first: truncated
    }
    return got;
}

// ISA-L accepts some Huffman tables that zlib rejects as damage, and may then hand out bytes
// that only look like blocks. A walk that ends early, before the check value at the end of
// the stream vouched for what was read, ends as zlib would: with the damage if zlib finds
// it in what was handed out. Only files that end abnormally pay for the second inflate.
void TDataFile::ConfirmWithZlib() {
#ifdef ZEB_HAVE_ISAL
    if (FZ->isal && !TakeOverWithZlib()) throw TDataFileError(FStreamError);
#endif
}

// The reader's state as if zlib had read the file from its start: the file read again and the
// bytes already handed out inflated into scratch. False with FStreamError set when that fails.
bool TDataFile::TakeOverWithZlib() {
#ifdef ZEB_HAVE_ISAL
    FZ->isal.reset();
#endif
    FZ->z = z_stream{};
    if (inflateInit(&FZ->z) != Z_OK) {
        FStreamError = "zlib initialisation failed";
        return false;
    }
    FZ->inflating = true;
    if (!FIn->seek(0)) {
        FStreamError = "cannot read the file: " + FIn->errorString().toStdString();
        return false;
    }
    FInputEnded = false;
    FStreamEnded = false;
    const qint64 skip = FInflated;
    FInflated = 0;
    std::vector<char> scratch(size_t(std::min<qint64>(skip, 65536)));
    try {
        for (qint64 left = skip; left > 0;) {
            const qint64 r = ReadRaw(scratch.data(), std::min<qint64>(left, qint64(scratch.size())));
            if (r <= 0) break;
            left -= r;
        }
    } catch (const TDataFileError& e) {
        FStreamError = e.what();
        return false;
    }
    if (FInflated != skip && FStreamError.empty()) FStreamError = "damaged compressed stream";
    return FStreamError.empty();
}

bool TDataFile::WriteRaw(const char* data, qint64 n) {
    z_stream& z = FZ->z;
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data));
    z.avail_in = uInt(n);
    while (z.avail_in > 0) {
        z.next_out = reinterpret_cast<Bytef*>(FIoBuf.data());
        z.avail_out = uInt(FIoBuf.size());
        if (deflate(&z, Z_NO_FLUSH) == Z_STREAM_ERROR) {
            FError = QStringLiteral("compression failed");
            return false;
        }
        const qint64 have = FIoBuf.size() - z.avail_out;
        if (have > 0 && FOut->write(FIoBuf.constData(), have) != have) {
            FError = FOut->errorString();
            return false;
        }
    }
    return true;
}

bool TDataFile::FlushDeflate(int flush) {
    if (!FZ || !FZ->deflating) return false;
    z_stream& z = FZ->z;
    z.next_in = nullptr;
    z.avail_in = 0;
    int rc;
    do {
        z.next_out = reinterpret_cast<Bytef*>(FIoBuf.data());
        z.avail_out = uInt(FIoBuf.size());
        rc = deflate(&z, flush);
        if (rc == Z_STREAM_ERROR) {
            FError = QStringLiteral("compression failed");
            return false;
        }
        const qint64 have = FIoBuf.size() - z.avail_out;
        if (have > 0 && FOut->write(FIoBuf.constData(), have) != have) {
            FError = FOut->errorString();
            return false;
        }
    } while (rc != Z_STREAM_END && z.avail_out == 0);
    return flush != Z_FINISH || rc == Z_STREAM_END;
}

qint64 TDataFile::InflatedUpTo() const { return FIn ? FIn->pos() - (FZ ? FZ->AvailIn() : 0) : 0; }
// The reader thread owns the stream while read-ahead runs: its position travels with each block.
qint64 TDataFile::CompressedPos() const { return FAhead ? FAheadPos : InflatedUpTo(); }
qint64 TDataFile::CompressedSize() const { return FIn ? FIn->size() : 0; }

// ---------------------------------------------------------------- blocks

bool TDataFile::IsLoadOk(int variantCode) {
    try {
        if (!ReadBlock() || FBlockId != 0 || FBuf.size() != kHeaderSize) return false;
        const QString magic = ReadString();
        if (magic == QLatin1String(kMagic)) return true;
        return variantCode == kBrandVariant && magic == QLatin1String(kBrandMagic);
    } catch (const TDataFileError&) {
        return false;
    }
}

// One block from the compressed stream into the given buffer. Only one thread ever calls it
// for a file: the caller of ReadBlock, or the read-ahead thread once that runs.
bool TDataFile::InflateBlock(quint16& id, QByteArray& buf, TReadEnd& end) {
    buf.clear();
    end = TReadEnd::None;
    char head[4];
    const qint64 h = ReadRaw(head, 4);
    if (h < 4) {
        if (!FStreamError.empty()) throw TDataFileError(FStreamError);
        end = (h == 0 && FStreamEnded) ? TReadEnd::EndOfStream : TReadEnd::Truncated;
        if (end == TReadEnd::Truncated) ConfirmWithZlib();
        return false;
    }
    id = LoadLE<quint16>(head);
    const int length = LoadLE<quint16>(head + 2);
    buf.resize(length);
    int done = 0;
    while (done < length) {
        const int chunk = std::min(length - done, kMaxChunk);
        const qint64 r = ReadRaw(buf.data() + done, chunk);
        done += int(r);
        if (r < chunk) break;
    }
    if (done < length) {
        if (!FStreamError.empty()) throw TDataFileError(FStreamError);
        // The file ends inside this block: the partial payload is dropped.
        ConfirmWithZlib();
        buf.clear();
        end = TReadEnd::Truncated;
        return false;
    }
    if (length == 0) {
        ConfirmWithZlib();
        end = TReadEnd::EmptyBlock;
        return false;
    }
    return true;
}

bool TDataFile::ReadBlock() {
    FPos = 0;
    if (!FAhead) return InflateBlock(FBlockId, FBuf, FReadEnd);

    std::unique_lock lock(FAhead->Mutex);
    FAhead->Changed.wait(lock, [this] { return !FAhead->Queue.empty() || FAhead->Finished; });
    if (FAhead->Queue.empty()) {
        // The reader has stopped and everything it read was taken: the end stays the end.
        FBuf.clear();
        FReadEnd = FAhead->LastEnd;
        return false;
    }
    TReadAhead::TEntry e = std::move(FAhead->Queue.front());
    FAhead->Queue.pop_front();
    lock.unlock();
    FAhead->Changed.notify_all();
    FAheadPos = e.CompressedPos;
    if (e.Error) {
        FBuf.clear();
        std::rethrow_exception(e.Error);
    }
    FBlockId = e.Id;
    FBuf = std::move(e.Payload);
    FReadEnd = e.End;
    return e.Ok;
}

void TDataFile::EnableReadAhead(int depth) {
    if (FAhead || !FIn || FClosed) return;
    FAhead = std::make_unique<TReadAhead>();
    FAhead->Depth = std::max(depth, 1);
    FAhead->Thread = std::thread([this] {
        for (;;) {
            TReadAhead::TEntry e;
            try {
                e.Ok = InflateBlock(e.Id, e.Payload, e.End);
                e.CompressedPos = InflatedUpTo();
            } catch (...) {
                e.Error = std::current_exception();
                e.CompressedPos = InflatedUpTo();
            }
            const bool last = !e.Ok;
            std::unique_lock lock(FAhead->Mutex);
            if (last) FAhead->LastEnd = e.End;
            FAhead->Queue.push_back(std::move(e));
            if (last) FAhead->Finished = true;
            FAhead->Changed.notify_all();
            if (last) return;
            FAhead->Changed.wait(lock, [this] { return int(FAhead->Queue.size()) < FAhead->Depth || FAhead->Stop; });
            if (FAhead->Stop) {
                FAhead->Finished = true;
                FAhead->Changed.notify_all();
                return;
            }
        }
    });
}

void TDataFile::StopReadAhead() {
    if (!FAhead) return;
    {
        std::lock_guard lock(FAhead->Mutex);
        FAhead->Stop = true;
    }
    FAhead->Changed.notify_all();
    if (FAhead->Thread.joinable()) FAhead->Thread.join();
    FAhead.reset();
}

void TDataFile::NewBlock(quint16 id) {
    FBuf.clear();
    FPos = 0;
    FBlockId = id;
}

bool TDataFile::WriteBlock() {
    if (FBuf.isEmpty()) return true;
    if (!FOut || FClosed) {
        FError = QStringLiteral("the file is not open for writing");
        return false;
    }
    char head[4];
    StoreLE<quint16>(FBlockId, head);
    StoreLE<quint16>(quint16(FBuf.size()), head + 2);
    const bool ok = WriteRaw(head, 4) && WriteRaw(FBuf.constData(), FBuf.size());
    FBuf.clear();
    FPos = 0;
    return ok;
}

void TDataFile::CopyBlock(const TDataFile& other) {
    FBuf = other.FBuf;
    FBlockId = other.FBlockId;
    FPos = 0;
}

void TDataFile::SetBlockPos(int pos) { FPos = std::clamp(pos, 0, int(FBuf.size())); }

// ---------------------------------------------------------------- fields

void TDataFile::Need(int bytes) const {
    if (FPos + bytes > FBuf.size())
        throw TDataFileError("read beyond the end of block " + std::to_string(FBlockId));
}

void TDataFile::Append(const void* data, int bytes) {
    if (FBuf.size() + bytes > kMaxBlockSize)
        throw TDataFileError("block " + std::to_string(FBlockId) + " would exceed 65535 bytes");
    // Writes go at the current position, as with a memory stream.
    if (FPos + bytes > FBuf.size()) FBuf.resize(FPos + bytes);
    std::memcpy(FBuf.data() + FPos, data, size_t(bytes));
    FPos += bytes;
}

#define ZEB_READ(T)                                                                                          \
    Need(sizeof(T));                                                                                         \
    const T v = LoadLE<T>(FBuf.constData() + FPos);                                                         \
    FPos += sizeof(T);                                                                                       \
    return v

quint16 TDataFile::ReadWord() { ZEB_READ(quint16); }
qint16 TDataFile::ReadSmallint() { ZEB_READ(qint16); }
qint32 TDataFile::ReadLongint() { ZEB_READ(qint32); }
quint32 TDataFile::ReadSingleBits() { ZEB_READ(quint32); }
double TDataFile::ReadDouble() { ZEB_READ(double); }
#undef ZEB_READ

float TDataFile::ReadSingle() { return std::bit_cast<float>(ReadSingleBits()); }

double TDataFile::ReadExtended() {
    Need(10);
    const double v = DecodeExtended(reinterpret_cast<const unsigned char*>(FBuf.constData() + FPos));
    FPos += 10;
    return v;
}

QString TDataFile::ReadString() {
    const int n = ReadWord();
    Need(n);
    const QString s = zeb::AnsiToString(FBuf.constData() + FPos, n);
    FPos += n;
    return s;
}

#define ZEB_WRITE(T, v)                                                                                      \
    char b[sizeof(T)];                                                                                       \
    StoreLE<T>(v, b);                                                                                        \
    Append(b, sizeof(T))

void TDataFile::WriteWord(quint16 v) { ZEB_WRITE(quint16, v); }
void TDataFile::WriteSmallint(qint16 v) { ZEB_WRITE(qint16, v); }
void TDataFile::WriteLongint(qint32 v) { ZEB_WRITE(qint32, v); }
void TDataFile::WriteSingleBits(quint32 bits) { ZEB_WRITE(quint32, bits); }
void TDataFile::WriteDouble(double v) { ZEB_WRITE(double, v); }
#undef ZEB_WRITE

void TDataFile::WriteSingle(float v) { WriteSingleBits(std::bit_cast<quint32>(v)); }

void TDataFile::WriteExtended(double v) {
    unsigned char b[10];
    EncodeExtended(v, b);
    Append(b, 10);
}

void TDataFile::WriteString(const QString& s) {
    const QByteArray bytes = zeb::StringToAnsi(s);
    if (bytes.size() > 0xFFFF || FBuf.size() + 2 + bytes.size() > kMaxBlockSize)
        throw TDataFileError("string does not fit into block " + std::to_string(FBlockId));
    WriteWord(quint16(bytes.size()));
    if (!bytes.isEmpty()) Append(bytes.constData(), int(bytes.size()));
}

// ---------------------------------------------------------------- wide frame

bool TDataFile::storeBufStream(QIODevice& stream) const {
    if (FBuf.isEmpty()) return true;
    char head[8];
    StoreLE<qint32>(FBlockId, head);
    StoreLE<qint32>(qint32(FBuf.size()), head + 4);
    return stream.write(head, 8) == 8 && stream.write(FBuf) == FBuf.size();
}

bool TDataFile::restoreBufStream(QIODevice& stream) {
    FBuf.clear();
    FPos = 0;
    if (stream.bytesAvailable() < 8 && stream.size() - stream.pos() < 8) return false;
    char head[8];
    if (stream.read(head, 8) != 8) return false;
    const qint32 id = LoadLE<qint32>(head);
    const qint32 len = LoadLE<qint32>(head + 4);
    const qint64 remaining = stream.size() - stream.pos();
    if (len < 0 || len > remaining || len > kMaxBlockSize) return false;
    FBlockId = quint16(id);
    FBuf = stream.read(len);
    return FBuf.size() == len;
}

// ---------------------------------------------------------------- x87 extended

void TDataFile::EncodeExtended(double v, unsigned char out[10]) {
    const quint64 bits = std::bit_cast<quint64>(v);
    const bool neg = bits >> 63;
    const int exp = int((bits >> 52) & 0x7FF);
    quint64 frac = bits & ((quint64(1) << 52) - 1);
    quint16 e = 0;
    quint64 mant = 0;
    if (exp == 0x7FF) { // infinity or NaN
        e = 0x7FFF;
        mant = (quint64(1) << 63) | (frac << 11);
    } else if (exp == 0) {
        if (frac != 0) { // subnormal double: normal in extended
            int shift = std::countl_zero(frac) - 11; // bring the top bit to position 52
            frac <<= shift;
            e = quint16(1 - 1023 - shift + 16383);
            mant = frac << 11;
        }
    } else {
        e = quint16(exp - 1023 + 16383);
        mant = (quint64(1) << 63) | (frac << 11);
    }
    if (neg) e |= 0x8000;
    StoreLE<quint64>(mant, reinterpret_cast<char*>(out));
    StoreLE<quint16>(e, reinterpret_cast<char*>(out) + 8);
}

double TDataFile::DecodeExtended(const unsigned char in[10]) {
    const quint64 mant = LoadLE<quint64>(reinterpret_cast<const char*>(in));
    const quint16 se = LoadLE<quint16>(reinterpret_cast<const char*>(in) + 8);
    const bool neg = se & 0x8000;
    const int e = se & 0x7FFF;
    double r;
    if (e == 0x7FFF) {
        const bool isNan = (mant << 1) != 0;
        r = isNan ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
    } else if (mant == 0) {
        r = 0.0;
    } else {
        // ldexp rounds the 64-bit mantissa once more to 53 bits; converting it to double
        // first rounds to nearest, which is what the FPU does on a store.
        r = std::ldexp(double(mant), e - 16383 - 63);
    }
    return neg ? -r : r;
}
