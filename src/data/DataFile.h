#pragma once
// The recording container: one zlib stream carrying a sequence of small typed blocks
// (Word id, Word length, payload). TDataFile reads or writes one block at a time; the
// current block's payload sits in a memory buffer with a read/write position.

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

class QIODevice;
class QFile;
class QSaveFile;

// Raised on reading past a payload, on a block that would outgrow 65,535 bytes and on a
// damaged compressed stream. The walk turns it into a clean end with what was read kept.
class TDataFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class TDataFile {
public:
    static constexpr int kMaxBlockSize = 65535;
    static constexpr int kHeaderSize = 15;
    static constexpr int kMaxChunk = 1 << 20;
    static constexpr int kBrandVariant = 5665;
    static const char* const kMagic;        // "VELMORANT"
    static const char* const kBrandMagic;   // "TORVANELI", accepted in the brand variant only

    // Why the last ReadBlock answered false.
    enum class TReadEnd { None, EndOfStream, EmptyBlock, Truncated };

    // The library that inflates a file being read. Writing always uses zlib.
    enum class TInflater { Zlib, Isal };
    // Whether the build has ISA-L; without it every reader is zlib.
    static bool HasIsal();
    // The reader CreateLoad uses unless told otherwise: ISA-L where the build has it.
    static TInflater DefaultInflater();
    // For comparisons in tests and benchmarks: every later CreateLoad of the process reads
    // with this one (ISA-L falls back to zlib in a build without it).
    static void SetDefaultInflater(TInflater inflater);

    ~TDataFile();
    TDataFile(const TDataFile&) = delete;
    TDataFile& operator=(const TDataFile&) = delete;

    // Opens a file for reading; nullptr (and a reason in *error) when it cannot be opened.
    static std::unique_ptr<TDataFile> CreateLoad(const QString& fileName, QString* error = nullptr,
                                                 TInflater inflater = DefaultInflater());
    TInflater Inflater() const { return FInflater; }
    // Creates a file for writing and writes block 0 at once. The file appears under its
    // name only when Close() succeeds, so an interrupted save never destroys an old file.
    static std::unique_ptr<TDataFile> CreateSave(const QString& fileName, QString* error = nullptr);

    // Finishes the compressed stream and commits the file; false when writing failed.
    // Called by the destructor if not called before.
    bool Close();
    // Drops a file being written: the old file under that name, if any, stays as it was.
    void Abort();
    QString ErrorString() const { return FError; }

    // Reads block 0: id 0, exactly 15 bytes, the magic (or the brand magic in the brand variant).
    bool IsLoadOk(int variantCode = 0);

    // Reads the next block into the buffer; true when it holds at least one byte.
    // Throws TDataFileError when the compressed stream is damaged.
    bool ReadBlock();
    TReadEnd LastReadEnd() const { return FReadEnd; }
    // Inflates the following blocks in a thread of its own, up to depth blocks ahead, so that
    // decompression goes on while the caller handles a block. Call before the first read.
    void EnableReadAhead(int depth = 8);
    // Bytes of the compressed file consumed up to the current block (for progress); with
    // read-ahead, as far as the block last handed out, so the reading thread may ask.
    qint64 CompressedPos() const;
    qint64 CompressedSize() const;

    void NewBlock(quint16 id);
    // Writes the current block unless it is empty; false on an output error.
    bool WriteBlock();
    void CopyBlock(const TDataFile& other);

    quint16 BlockId() const { return FBlockId; }
    int BlockSize() const { return int(FBuf.size()); }
    int BlockPos() const { return FPos; }
    void SetBlockPos(int pos);
    int BlockSpace() const { return kMaxBlockSize - int(FBuf.size()); }
    const QByteArray& BlockData() const { return FBuf; }

    quint16 ReadWord();
    qint16 ReadSmallint();
    qint32 ReadLongint();
    float ReadSingle();
    quint32 ReadSingleBits();
    double ReadDouble();
    double ReadExtended();
    QString ReadString();

    void WriteWord(quint16 v);
    void WriteSmallint(qint16 v);
    void WriteLongint(qint32 v);
    void WriteSingle(float v);
    void WriteSingleBits(quint32 bits);
    void WriteDouble(double v);
    void WriteExtended(double v);
    void WriteString(const QString& s);

    // The current block with a wider frame: 32-bit id, 32-bit length, payload.
    bool storeBufStream(QIODevice& stream) const;
    bool restoreBufStream(QIODevice& stream);

    // 10-byte x87 extended precision, little-endian.
    static void EncodeExtended(double v, unsigned char out[10]);
    static double DecodeExtended(const unsigned char in[10]);

private:
    TDataFile();
    void Need(int bytes) const;
    void Append(const void* data, int bytes);
    qint64 ReadRaw(char* dst, qint64 n);
    bool TakeOverWithZlib();
    void ConfirmWithZlib();
    bool InflateBlock(quint16& id, QByteArray& buf, TReadEnd& end);
    qint64 InflatedUpTo() const;
    void StopReadAhead();
    bool WriteRaw(const char* data, qint64 n);
    bool FlushDeflate(int flush);

    struct TZStream;
    std::unique_ptr<QFile> FIn;
    std::unique_ptr<QSaveFile> FOut;
    std::unique_ptr<TZStream> FZ;
    TInflater FInflater = TInflater::Zlib;
    bool FInputEnded = false;
    std::string FStreamError; // the inflater failed; thrown once what it decoded before is read
    qint64 FInflated = 0;     // bytes handed out by ReadRaw
    struct TReadAhead {
        struct TEntry {
            quint16 Id = 0;
            QByteArray Payload;
            TReadEnd End = TReadEnd::None;
            qint64 CompressedPos = 0;
            bool Ok = false;
            std::exception_ptr Error;
        };
        std::thread Thread;
        std::mutex Mutex;
        std::condition_variable Changed;
        std::deque<TEntry> Queue;
        int Depth = 8;
        bool Stop = false;
        bool Finished = false;
        TReadEnd LastEnd = TReadEnd::EndOfStream;
    };
    std::unique_ptr<TReadAhead> FAhead;
    QByteArray FIoBuf;
    QByteArray FBuf;
    int FPos = 0;
    quint16 FBlockId = 0;
    TReadEnd FReadEnd = TReadEnd::None;
    qint64 FAheadPos = 0; // CompressedPos of the block last taken from the read-ahead queue
    bool FStreamEnded = false;
    bool FClosed = false;
    QString FError;
};
