#include "Cutter.h"

#include "config/Texts.h"
#include "data/DataFile.h"
#include "data/RecordingWalk.h"
#include "analysis/Analysis.h"
#include "store/DataBase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cstring>

using zeb::TTextId;

namespace {

// Where a target would land, to tell whether it is the source under another name.
QString Resolved(const QString& path) {
    const QFileInfo fi(path);
    const QString canonical = fi.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(fi.absoluteFilePath()) : canonical;
}

bool SamePath(const QString& a, const QString& b) {
#ifdef Q_OS_WIN
    return Resolved(a).compare(Resolved(b), Qt::CaseInsensitive) == 0;
#else
    return Resolved(a) == Resolved(b);
#endif
}

QString Native(const QString& path) { return QDir::toNativeSeparators(path); }

// Follows the walk over the source and passes on what belongs to the cut: the blocks that
// describe the recording as they stand, the per-curve blocks for the chosen channels, and
// the data records inside the window holding only the chosen channels. Exactly one of
// FOut (a recording) and FTable (text) is set.
class TCutReceiver : public TRecordingReceiver {
public:
    TCutReceiver(const TCutRequest& req, TDataFile& in, TDataFile* out, TCsvTable* table)
        : FReq(req), FIn(in), FOut(out), FTable(table) {}

    int Curves() const { return FCurves; }
    bool WriteFailed() const { return FWriteFailed || (FTable && FTable->Failed()); }
    bool Restart() const { return FTable && FTable->NeedsWhole(); }
    qint64 Records() const { return FRecords; }

    // The blocks still open; false on an output error.
    bool Flush() {
        FlushBlock();
        return !WriteFailed();
    }

    bool WantsPoints() const override { return false; }
    bool IsCancelled() override { return WriteFailed() || Restart(); }

    void OnBlock(int, quint16 id, int) override {
        FlushBlock();
        if (!FOut) return;
        switch (id) {
        case ZebBlock::Creator:
        case ZebBlock::StartTime:
        case ZebBlock::ZebName:
        case ZebBlock::ReaderMarker:
        case ZebBlock::CreatorVersion:
            // Copied as they stand: their order keeps which creator wins and whether the
            // reader mark counts.
            FOut->CopyBlock(FIn);
            Check(FOut->WriteBlock());
            break;
        case ZebBlock::Channels:
        case ZebBlock::ChannelNames:
        case ZebBlock::Units:
        case ZebBlock::Limits:
        case ZebBlock::LoggerNames:
            FOut->NewBlock(id);
            FOpen = true;
            break;
        default: break; // data comes through OnRecords; blocks the loader skips are left out
        }
    }

    void AddCurve(const QString& module) override {
        const int curve = FCurves++;
        if (!Selected(curve)) return;
        ++FOutCurves;
        if (FOut) Write([&] { FOut->WriteString(module); });
        else FTable->AddColumn(module);
    }
    void SetChannelName(int curve, const QString& name) override {
        if (!Selected(curve)) return;
        if (FOut) Write([&] { FOut->WriteString(name); });
        else FTable->SetName(OutIndex(curve), name);
    }
    void SetUnit(int curve, const QString& unit) override {
        if (!Selected(curve)) return;
        if (FOut) Write([&] { FOut->WriteString(unit); });
        else FTable->SetUnit(OutIndex(curve), unit);
    }
    void SetLoggerName(int curve, const QString& name) override {
        if (Selected(curve) && FOut) Write([&] { FOut->WriteString(name); });
    }
    void SetLimits(int curve, quint16 alarm, quint16 record, double value1, double value2) override {
        if (!Selected(curve) || !FOut) return;
        Write([&] {
            FOut->WriteWord(alarm);
            FOut->WriteWord(record);
            FOut->WriteSingle(float(value1));
            FOut->WriteSingle(float(value2));
        });
    }
    // The source's limits are void (a record too many): one record too many voids the cut's too.
    void ClearAllLimits() override {
        if (!FOut) return;
        Write([&] {
            FOut->WriteWord(0);
            FOut->WriteWord(0);
            FOut->WriteSingle(0.0f);
            FOut->WriteSingle(0.0f);
        });
    }

    void OnRecords(std::span<const char> records, int recordSize) override {
        const int inCurves = (recordSize - 8) / 4;
        const int outSize = 8 + 4 * FOutCurves;
        FBits.resize(size_t(FOutCurves) + 1);
        for (const char* p = records.data(); p + recordSize <= records.data() + records.size(); p += recordSize) {
            double days;
            std::memcpy(&days, p, 8);
            const double t = days * 86400.0; // as the loader computes it
            if (!(t >= FReq.Start && t <= FReq.End)) continue;
            bool any = false;
            for (int j = 0; j < FOutCurves; ++j) {
                const int src = SourceIndex(j);
                quint32 b = TRecordingWalk::kNoValueBits;
                if (src < inCurves) std::memcpy(&b, p + 8 + 4 * src, 4);
                FBits[size_t(j)] = b;
                any = any || b != TRecordingWalk::kNoValueBits;
            }
            if (!any) continue; // nothing of the chosen channels in it
            ++FRecords;
            if (FTable) {
                FTable->AddRecord(t, FBits.data(), FOutCurves);
                continue;
            }
            if (FData && FOut->BlockSpace() < outSize) {
                Check(FOut->WriteBlock());
                FData = false;
            }
            if (!FData) {
                FOut->NewBlock(ZebBlock::Data);
                FData = true;
            }
            FOut->WriteDouble(days);
            for (int j = 0; j < FOutCurves; ++j) FOut->WriteSingleBits(FBits[size_t(j)]);
        }
    }

private:
    bool Selected(int curve) const {
        return FReq.Channels.empty() || std::binary_search(FReq.Channels.begin(), FReq.Channels.end(), curve);
    }
    int OutIndex(int curve) const {
        if (FReq.Channels.empty()) return curve;
        return int(std::lower_bound(FReq.Channels.begin(), FReq.Channels.end(), curve) - FReq.Channels.begin());
    }
    int SourceIndex(int out) const { return FReq.Channels.empty() ? out : FReq.Channels[size_t(out)]; }

    void FlushBlock() {
        if (!FOut || (!FOpen && !FData)) return;
        Check(FOut->WriteBlock()); // an empty block writes nothing
        FOpen = FData = false;
    }
    void Check(bool ok) { FWriteFailed = FWriteFailed || !ok; }
    // The cut's blocks never outgrow the source's, but a failure must not look like damage
    // of the source, which is what the walk makes of this exception.
    template <typename F> void Write(F&& f) {
        try {
            f();
        } catch (const TDataFileError&) {
            FWriteFailed = true;
        }
    }

    const TCutRequest& FReq;
    TDataFile& FIn;
    TDataFile* FOut;
    TCsvTable* FTable;
    int FCurves = 0;    // curves of the source so far
    int FOutCurves = 0; // of them chosen
    bool FOpen = false; // a per-curve block is being built
    bool FData = false; // a data block is being built
    bool FWriteFailed = false;
    qint64 FRecords = 0;
    std::vector<quint32> FBits;
};

} // namespace

namespace {

// Keeps only the window's points of the chosen channels, so the arrays' reading costs the
// memory of what they hold, not of the recording.
class TWindowReceiver : public TStoreReceiver {
public:
    TWindowReceiver(TDataBase& db, const TCutRequest& req) : TStoreReceiver(db), FReq(req) {}
    // No columns to write into directly: every block's points pass AddPoints.
    TCurveData* Column(int) override { return nullptr; }
    void AddPoints(int curve, std::span<const double> times, std::span<const double> values,
                   std::span<const TPointKind> kinds) override {
        if (!FReq.Channels.empty() && !std::binary_search(FReq.Channels.begin(), FReq.Channels.end(), curve)) return;
        FTimes.clear();
        FValues.clear();
        FKinds.clear();
        for (size_t i = 0; i < times.size(); ++i) {
            if (times[i] < FReq.Start || times[i] > FReq.End) continue;
            FTimes.push_back(times[i]);
            FValues.push_back(values[i]);
            FKinds.push_back(kinds[i]);
        }
        if (!FTimes.empty()) TStoreReceiver::AddPoints(curve, FTimes, FValues, FKinds);
    }

private:
    const TCutRequest& FReq;
    std::vector<double> FTimes, FValues;
    std::vector<TPointKind> FKinds;
};

} // namespace

TCutter::TCutter(TCutRequest request) : FReq(std::move(request)) {
    std::sort(FReq.Channels.begin(), FReq.Channels.end());
    FReq.Channels.erase(std::unique(FReq.Channels.begin(), FReq.Channels.end()), FReq.Channels.end());
}

TCutResult TCutter::Fail(TCutResult result, const QString& message) {
    FResult = result;
    FMessage = message;
    return result;
}

TCutResult TCutter::Run() {
    FResult = TCutResult::Ok;
    FMessage.clear();
    FWritten = 0;
    if (FReq.Csv) FReq.Target = FReq.Format.Target(FReq.Target);
    if (!QFileInfo(FReq.Source).isFile())
        return Fail(TCutResult::CannotRead, zeb::TxtFmt(TTextId::CmpCannotRead, {Native(FReq.Source)}));
    if (SamePath(FReq.Source, FReq.Target))
        return Fail(TCutResult::TargetIsSource, zeb::TxtFmt(TTextId::CmpTargetIsSource, {Native(FReq.Target)}));
    if (FReq.Arrays) return RunArrays(*FReq.Arrays);
    // Records out of time order cannot be merged as they come: the text is made again from
    // the whole recording.
    if (Pass(false) == TPass::Again) Pass(true);
    return FResult;
}

// The window's points per channel, read as the viewer reads them (each curve in time order),
// written whole under a temporary name and renamed at the end.
TCutResult TCutter::RunArrays(TArrayKind kind) {
    const QString target = Native(FReq.Target);
    if (!ArrayKindAvailable(kind))
        return Fail(TCutResult::CannotWrite, zeb::TxtFmt(TTextId::CmpKindMissing, {target}));
    auto in = TDataFile::CreateLoad(FReq.Source);
    if (!in) return Fail(TCutResult::CannotRead, zeb::TxtFmt(TTextId::CmpCannotRead, {Native(FReq.Source)}));
    in->EnableReadAhead();
    TDataBase db;
    TWindowReceiver receiver(db, FReq);
    TRecordingWalk walk(*in, receiver);
    const TRecordingWalk::TEnd end = walk.Run();
    in.reset();
    if (end == TRecordingWalk::TEnd::BadHeader)
        return Fail(TCutResult::CannotRead, zeb::TxtFmt(TTextId::CmpNotARecording, {Native(FReq.Source)}));
    std::vector<int> list = FReq.Channels;
    if (list.empty())
        for (int c = 0; c < db.Curve_Count(); ++c) list.push_back(c);
    if (!list.empty() && list.back() >= db.Curve_Count())
        return Fail(TCutResult::BadArgument, zeb::TxtFmt(TTextId::CmpNoSuchChannel, {QString::number(list.back())}));

    std::vector<TArrayChannel> channels;
    qint64 points = 0;
    for (int c : list) {
        TCurveData& d = db.Data(c);
        d.SortByTime();
        const TMseSettingsCurve& s = db.Settings().Curves[c];
        TArrayChannel a;
        a.Name = s.sChannelName.Value.isEmpty() ? s.sModulName.Value : s.sChannelName.Value;
        a.Unit = s.sUnit;
        a.Logger = s.sLoggername;
        if (s.LAlarm >= 1 && s.LAlarm <= 4) {
            a.LimitMode = s.LAlarm;
            a.L1 = s.LValue1;
            a.L2 = s.LValue2;
        }
        const TIndexRange range = VisibleRange(d, FReq.Start, FReq.End);
        for (qint64 i = range.First; !range.IsEmpty() && i <= range.Last; ++i) {
            a.Times.push_back(d.Time(i));
            a.Values.push_back(d.IsGap(i) ? std::numeric_limits<float>::quiet_NaN() : float(d.Value(i)));
        }
        points += qint64(a.Times.size());
        channels.push_back(std::move(a));
        d.Clear(); // the column is copied; its memory goes now
    }
    const QString part = FReq.Target + QStringLiteral(".part");
    if (!WriteArrays(kind, part, QFileInfo(FReq.Source).fileName(), channels) ||
        (QFile::exists(FReq.Target) && !QFile::remove(FReq.Target)) || !QFile::rename(part, FReq.Target)) {
        QFile::remove(part);
        return Fail(TCutResult::CannotWrite, zeb::TxtFmt(TTextId::CmpCannotWrite, {target}));
    }
    FWritten = points;
    if (end == TRecordingWalk::TEnd::Damaged || end == TRecordingWalk::TEnd::Truncated)
        return Fail(TCutResult::Damaged, zeb::TxtFmt(TTextId::CmpDamaged, {Native(FReq.Source), target}));
    return FResult;
}

TCutter::TPass TCutter::Pass(bool whole) {
    const QString target = Native(FReq.Target);
    auto in = TDataFile::CreateLoad(FReq.Source);
    if (!in) {
        Fail(TCutResult::CannotRead, zeb::TxtFmt(TTextId::CmpCannotRead, {Native(FReq.Source)}));
        return TPass::Failed;
    }
    in->EnableReadAhead();

    std::unique_ptr<TDataFile> out;
    std::unique_ptr<QSaveFile> text;
    std::unique_ptr<TCsvTable> table;
    if (FReq.Csv) {
        text = std::make_unique<QSaveFile>(FReq.Target);
        if (!text->open(QIODevice::WriteOnly)) {
            Fail(TCutResult::CannotWrite, zeb::TxtFmt(TTextId::CmpCannotWrite, {target}));
            return TPass::Failed;
        }
        table = std::make_unique<TCsvTable>(FReq.Format, *text, whole, QFileInfo(FReq.Target).absolutePath());
    } else {
        out = TDataFile::CreateSave(FReq.Target);
        if (!out) {
            Fail(TCutResult::CannotWrite, zeb::TxtFmt(TTextId::CmpCannotWrite, {target}));
            return TPass::Failed;
        }
    }
    auto discard = [&] {
        if (out) out->Abort();
        table.reset(); // its formatter may still be writing
        if (text) text->cancelWriting();
    };

    TCutReceiver receiver(FReq, *in, out.get(), table.get());
    TRecordingWalk walk(*in, receiver);
    const TRecordingWalk::TEnd end = walk.Run();
    in.reset();

    if (end == TRecordingWalk::TEnd::BadHeader) {
        discard();
        Fail(TCutResult::CannotRead, zeb::TxtFmt(TTextId::CmpNotARecording, {Native(FReq.Source)}));
        return TPass::Failed;
    }
    if (receiver.Restart() && !whole) {
        discard();
        return TPass::Again;
    }
    if (!FReq.Channels.empty() && FReq.Channels.back() >= receiver.Curves()) {
        discard();
        Fail(TCutResult::BadArgument, zeb::TxtFmt(TTextId::CmpNoSuchChannel, {QString::number(FReq.Channels.back())}));
        return TPass::Failed;
    }
    bool written = receiver.Flush();
    if (written && table) written = table->Finish() && text->commit();
    if (written && out) written = out->Close();
    if (!written) {
        discard();
        Fail(TCutResult::CannotWrite, zeb::TxtFmt(TTextId::CmpCannotWrite, {target}));
        return TPass::Failed;
    }
    FWritten = table ? table->Rows() : receiver.Records();
    if (end == TRecordingWalk::TEnd::Damaged || end == TRecordingWalk::TEnd::Truncated)
        Fail(TCutResult::Damaged, zeb::TxtFmt(TTextId::CmpDamaged, {Native(FReq.Source), target}));
    return TPass::Done;
}
