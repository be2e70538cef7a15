#include "data/RecordingWalk.h"

#include "data/CurveData.h"
#include "data/DataFile.h"

#include <algorithm>
#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little, "data records are decoded in place");

QString ZebBlock::Name(quint16 id) {
    switch (id) {
    case Header: return QStringLiteral("file header");
    case Creator: return QStringLiteral("creator");
    case StartTime: return QStringLiteral("start time");
    case Channels: return QStringLiteral("channel list");
    case 4:
    case 5: return QStringLiteral("(not read)");
    case ChannelNames: return QStringLiteral("channel names");
    case Units: return QStringLiteral("units");
    case Data: return QStringLiteral("data");
    case ZebName: return QStringLiteral("ZEB name");
    case 10:
    case 12: return QStringLiteral("(not read)");
    case Limits: return QStringLiteral("limit lines");
    case LoggerNames: return QStringLiteral("logger names");
    case ReaderMarker: return QStringLiteral("reader marker");
    case CreatorVersion: return QStringLiteral("creator with version");
    default: return QStringLiteral("unknown");
    }
}

TRecordingWalk::TRecordingWalk(TDataFile& file, TRecordingReceiver& receiver, int variantCode)
    : FFile(file), FReceiver(receiver), FVariant(variantCode) {}

QString TRecordingWalk::EndText(TEnd end) {
    switch (end) {
    case TEnd::EndOfStream: return QStringLiteral("end of stream");
    case TEnd::EmptyBlock: return QStringLiteral("empty block");
    case TEnd::Truncated: return QStringLiteral("file truncated inside the stream");
    case TEnd::Damaged: return QStringLiteral("damaged stream");
    case TEnd::Cancelled: return QStringLiteral("cancelled");
    case TEnd::Stopped: return QStringLiteral("stopped after a data block");
    case TEnd::BadHeader: return QStringLiteral("not a recording (bad header)");
    }
    return {};
}

QString TRecordingWalk::DefectText(int counter) {
    if (counter < 0) return QStringLiteral("ZEB file is defect !");
    return QStringLiteral("ZEB file is defect ! [") + QString::number(counter) + QLatin1Char(']');
}

TRecordingWalk::TEnd TRecordingWalk::Run() {
    if (!FFile.IsLoadOk(FVariant)) {
        FError = QStringLiteral("the file header is not that of a recording");
        return TEnd::BadHeader;
    }
    try {
        for (;;) {
            if (!FFile.ReadBlock()) {
                switch (FFile.LastReadEnd()) {
                case TDataFile::TReadEnd::EmptyBlock: return TEnd::EmptyBlock;
                case TDataFile::TReadEnd::Truncated: return TEnd::Truncated;
                default: return TEnd::EndOfStream;
                }
            }
            if (FReceiver.IsCancelled()) return TEnd::Cancelled;
            ++FCounter;
            FReceiver.OnBlock(FCounter, FFile.BlockId(), FFile.BlockSize());
            HandleBlock();
            if (FFile.BlockId() == ZebBlock::Data && !FReceiver.AfterDataBlock(FValueCount)) return TEnd::Stopped;
        }
    } catch (const TDataFileError& e) {
        FError = QString::fromStdString(e.what());
        return TEnd::Damaged;
    }
}

// A record is read only while the position plus one is less than the payload length.
template <typename F> void TRecordingWalk::ForEachRecord(F&& read) {
    for (int i = 0; FFile.BlockPos() + 1 < FFile.BlockSize(); ++i)
        if (!read(i)) break;
}

void TRecordingWalk::HandleBlock() {
    switch (FFile.BlockId()) {
    case ZebBlock::Creator:
        if (FCreator.isEmpty()) {
            FCreator = FFile.ReadString();
            FReceiver.SetCreator(FCreator);
        }
        break;
    case ZebBlock::CreatorVersion: {
        const QString name = FFile.ReadString();
        const QString version = FFile.ReadString();
        FCreator = name + QStringLiteral(" [V") + version + QLatin1Char(']');
        FReceiver.SetCreator(FCreator);
        break;
    }
    case ZebBlock::ReaderMarker:
        if (FCreator == QLatin1String(kReaderProgram)) FReceiver.SetReaderMarker();
        break;
    case ZebBlock::StartTime: FReceiver.SetStartTime(FFile.ReadDouble()); break;
    case ZebBlock::Channels:
        ForEachRecord([this](int) {
            const QString module = FFile.ReadString();
            ++FCurveCount;
            FGapOpen.push_back(0);
            FReceiver.AddCurve(module);
            return true;
        });
        break;
    case ZebBlock::ChannelNames:
    case ZebBlock::Units:
    case ZebBlock::LoggerNames: {
        const quint16 id = FFile.BlockId();
        ForEachRecord([this, id](int i) {
            if (i >= FCurveCount) return false;
            const QString s = FFile.ReadString();
            if (id == ZebBlock::ChannelNames) FReceiver.SetChannelName(i, s);
            else if (id == ZebBlock::Units) FReceiver.SetUnit(i, s);
            else FReceiver.SetLoggerName(i, s);
            return true;
        });
        if (id == ZebBlock::LoggerNames) FReceiver.LoggerNamesDone();
        break;
    }
    case ZebBlock::ZebName: FReceiver.SetZebName(FFile.ReadString()); break;
    case ZebBlock::Limits:
        ForEachRecord([this](int i) {
            if (i >= FCurveCount) {
                FReceiver.ClearAllLimits();
                return false;
            }
            const quint16 alarm = FFile.ReadWord();
            const quint16 record = FFile.ReadWord();
            const double v1 = FFile.ReadSingle();
            const double v2 = FFile.ReadSingle();
            FReceiver.SetLimits(i, alarm, record, v1, v2);
            return true;
        });
        break;
    case ZebBlock::Data: HandleData(); break;
    default: break; // not read: skipped whole
    }
}

// Decodes the data records of the current block and hands every point to emit(curve, time,
// value, kind); answers whether a record was cut off by the end of the block.
template <bool Points, typename Emit> bool TRecordingWalk::DecodeRecords(Emit&& emit) {
    const size_t n = size_t(FCurveCount);
    const char* data = FFile.BlockData().constData();
    const int len = FFile.BlockSize();
    const int recordSize = 8 + 4 * int(n);
    int pos = FFile.BlockPos();
    bool damaged = false;
    while (pos + 1 < len) {
        if (pos + recordSize > len) {
            damaged = true;
            break;
        }
        double days;
        std::memcpy(&days, data + pos, 8);
        if (!(days >= 0.0 && days <= kMaxDays)) {
            if (FVariant == TDataFile::kBrandVariant && !FDefectReported) {
                FDefectReported = true;
                FReceiver.ReportDefect(DefectText(FCounter));
            }
            break;
        }
        const char* p = data + pos + 8;
        if constexpr (!Points) {
            // Only counted: the reader takes the records as they stand.
            for (size_t c = 0; c < n; ++c, p += 4) {
                quint32 bits;
                std::memcpy(&bits, p, 4);
                FValueCount += bits != kNoValueBits;
            }
            pos += recordSize;
            continue;
        }
        const double t = days * 86400.0;
        for (size_t c = 0; c < n; ++c, p += 4) {
            quint32 bits;
            std::memcpy(&bits, p, 4);
            if (bits == kNoValueBits) continue;
            ++FValueCount;
            if (bits == kGapBits) {
                FGapOpen[c] = 1;
                emit(c, t, 0.0f, TPointKind::Gap);
            } else {
                emit(c, t, std::bit_cast<float>(bits), FGapOpen[c] ? TPointKind::GapEnd : TPointKind::Value);
                FGapOpen[c] = 0;
            }
        }
        pos += recordSize;
    }
    FFile.SetBlockPos(pos);
    return damaged;
}

void TRecordingWalk::HandleData() {
    const int start = FFile.BlockPos();
    bool damaged;
    if (!FReceiver.WantsPoints()) {
        damaged = DecodeRecords<false>([](size_t, double, float, TPointKind) {});
    } else {
        if (FColumnsFor != FCurveCount) {
            FColumnsFor = FCurveCount;
            FColumns.clear();
            for (int c = 0; c < FCurveCount; ++c) FColumns.push_back(FReceiver.Column(c));
            if (std::find(FColumns.begin(), FColumns.end(), nullptr) != FColumns.end()) FColumns.clear();
        }
        if (!FColumns.empty()) {
            TCurveData* const* columns = FColumns.data();
            damaged = DecodeRecords<true>(
                [columns](size_t c, double t, float v, TPointKind k) { columns[c]->Push(t, v, k); });
        } else {
            damaged = StagePoints();
        }
    }
    const int end = FFile.BlockPos();
    if (end > start)
        FReceiver.OnRecords(std::span(FFile.BlockData().constData() + start, size_t(end - start)),
                            8 + 4 * FCurveCount);
    if (damaged) throw TDataFileError("data record cut off at the end of block " + std::to_string(FCounter));
}

// A block's points are staged per curve and handed over in one call per curve: the store
// appends them chunk-wise, which measured faster than writing each point into its columns.
bool TRecordingWalk::StagePoints() {
    const size_t n = size_t(FCurveCount);
    // Staging sized for the most records the block can hold, reused from block to block.
    const size_t capacity = size_t(FFile.BlockSize() / (8 + 4 * int(n)) + 1);
    if (FTimes.size() < n) {
        FTimes.resize(n);
        FValues.resize(n);
        FKinds.resize(n);
    }
    FFill.assign(n, 0);
    for (size_t c = 0; c < n; ++c) {
        if (FTimes[c].size() < capacity) {
            FTimes[c].resize(capacity);
            FValues[c].resize(capacity);
            FKinds[c].resize(capacity);
        }
    }
    const bool damaged = DecodeRecords<true>([&](size_t c, double t, float v, TPointKind k) {
        const size_t i = FFill[c]++;
        FTimes[c][i] = t;
        FValues[c][i] = double(v);
        FKinds[c][i] = k;
    });
    for (size_t c = 0; c < n; ++c) {
        const size_t k = FFill[c];
        if (k > 0)
            FReceiver.AddPoints(int(c), std::span(FTimes[c].data(), k), std::span(FValues[c].data(), k),
                                std::span(FKinds[c].data(), k));
    }
    return damaged;
}
