#include "CsvTable.h"

#include "config/Texts.h"
#include "data/Formats.h"
#include "data/RecordingWalk.h"
#include "store/DataBase.h"

#include <QDir>
#include <QFile>
#include <QIODevice>
#include <QTemporaryFile>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <queue>
#include <thread>

namespace {

constexpr size_t kWriteChunk = 1 << 20;
// The read buffers of all runs together while they are merged, and the most runs merged at
// once: more runs are first merged in groups into longer ones.
constexpr size_t kMergeBytes = 2 << 20;
constexpr size_t kMaxMergeRuns = 64;
constexpr qint64 kMsPerDay = 86400000;

// Milliseconds since 1 January 2000, rounded as every time text of the program is.
qint64 Milliseconds(double seconds) {
    double ms = std::round(seconds * 1000.0);
    if (!std::isfinite(ms)) ms = 0;
    return qint64(std::clamp(ms, -1e17, 1e17));
}

void SetDecimal(char* first, char* last, char decimal) {
    if (decimal != '.')
        for (char* p = first; p < last; ++p)
            if (*p == '.') *p = decimal;
}

} // namespace

// ====================================================================== format

namespace {

// The settings are shared with other programs of the suite, whose patterns write the minute "n"
// and the month "m". Both read here too: in a date pattern a lowercase "m" can only be the
// month ("M"), in a time pattern "n" is the minute ("m"). Quoted text and AM/PM stay as written.
QString Respelled(const QString& pattern, QChar from, QChar to) {
    QString out;
    out.reserve(pattern.size());
    for (qsizetype i = 0; i < pattern.size();) {
        const QChar c = pattern[i];
        qsizetype kept = 0; // characters copied as they are
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            const qsizetype end = pattern.indexOf(c, i + 1);
            kept = (end < 0 ? pattern.size() : end + 1) - i;
        } else {
            for (const QLatin1String marker : {QLatin1String("am/pm"), QLatin1String("ampm")})
                if (pattern.mid(i, marker.size()).compare(marker, Qt::CaseInsensitive) == 0) kept = marker.size();
        }
        if (kept > 0) {
            out += pattern.mid(i, kept);
            i += kept;
        } else {
            out += c == from ? to : c;
            ++i;
        }
    }
    return out;
}

} // namespace

QString OwnDatePattern(const QString& pattern) {
    return Respelled(pattern, QLatin1Char('m'), QLatin1Char('M'));
}

QString OwnTimePattern(const QString& pattern) {
    return Respelled(pattern, QLatin1Char('n'), QLatin1Char('m'));
}

TCsvFormat TCsvFormat::FromSettings(const TZebSettings::TCsv& s, const QLocale& locale) {
    TCsvFormat f;
    const bool commaLocale = locale.decimalPoint() == QLatin1String(",");
    switch (s.iDecimalSeparator) {
    case 1: f.Decimal = QLatin1Char('.'); break;
    case 2: f.Decimal = QLatin1Char(','); break;
    default: f.Decimal = commaLocale ? QLatin1Char(',') : QLatin1Char('.'); break;
    }
    switch (s.iListSeparator) {
    case 1: f.List = QLatin1Char(';'); break;
    case 2: f.List = QLatin1Char(','); break;
    case 3: f.List = QLatin1Char('\t'); break;
    case 4: f.List = QLatin1Char(' '); break;
    default: f.List = f.Decimal == QLatin1Char(',') ? QLatin1Char(';') : QLatin1Char(','); break;
    }
    f.NumberFormat = (s.iNumberFormat >= 0 && s.iNumberFormat <= kScientific) ? s.iNumberFormat : 0;
    switch (s.iNanFormat) {
    case 1: f.Missing = QStringLiteral("NaN"); break;
    case 2: f.Missing = QStringLiteral("#N/A"); break;
    case 3: f.Missing = QStringLiteral("-"); break;
    default: break;
    }
    f.TimeColumn = (s.iTimeColumn >= 0 && s.iTimeColumn <= 3) ? s.iTimeColumn : 0;
    if (s.iDateFormat == 6 && !s.sDateFormat.isEmpty()) f.DatePattern = OwnDatePattern(s.sDateFormat);
    else f.DatePattern = zeb::DateFormatOf(s.iDateFormat);
    f.TimeKind = (s.iTimeFormat >= 0 && s.iTimeFormat <= 3) ? s.iTimeFormat : 0;
    if (f.TimeKind == 3) {
        if (s.sTimeFormat.isEmpty()) f.TimeKind = 0;
        else f.TimePattern = OwnTimePattern(s.sTimeFormat);
    }
    switch (s.iFileExt) {
    case 1: f.Extension = QStringLiteral(".txt"); break;
    case 2:
        if (!s.sFileExt.trimmed().isEmpty()) {
            const QString e = s.sFileExt.trimmed();
            f.Extension = e.startsWith(QLatin1Char('.')) ? e : QLatin1Char('.') + e;
        }
        break;
    default: break;
    }
    return f;
}

QString TCsvFormat::Target(const QString& target) const {
    const qsizetype slash = std::max(target.lastIndexOf(QLatin1Char('/')), target.lastIndexOf(QLatin1Char('\\')));
    const qsizetype dot = target.lastIndexOf(QLatin1Char('.'));
    // A dot that only starts a hidden name is no extension.
    return (dot > slash + 1) ? target : target + Extension;
}

// ====================================================================== sorting

// Records in any order, given back in time order with equal stamps in the order they came.
// They are held in memory up to kRunBytes, then sorted and written as a run to a temporary
// file; the runs are merged at the end. A record on disk: its time (8 bytes), its count of
// patterns (4) and the patterns (4 each).
class TCsvTable::TSorter {
public:
    explicit TSorter(const QString& folder)
        : FFile((folder.isEmpty() ? QDir::tempPath() : folder) + QStringLiteral("/.zeb2csv-XXXXXX.sort")) {}

    void SetLimits(qint64 runBytes, size_t mergeRuns) {
        FRunBytes = std::max<qint64>(runBytes, 1);
        FMaxRuns = std::max<size_t>(mergeRuns, 2);
    }

    int Runs() const { return FSpills; }

    bool Add(double t, const quint32* bits, int count) {
        const size_t words = 1 + size_t(count);
        if (FKeys.capacity() == 0) {
            // Room for a run of records like this one, taken once: growing would hold the old
            // and the new room at the same time.
            const size_t records = std::max<size_t>(1, size_t(FRunBytes) / (sizeof(TKey) + 4 * words));
            FKeys.reserve(records);
            FWords.reserve(records * words);
        }
        if (!FKeys.empty() && (FKeys.size() == FKeys.capacity() || FWords.size() + words > FWords.capacity()) &&
            !Spill())
            return false;
        FKeys.push_back({t, FWords.size()});
        FWords.push_back(quint32(count));
        FWords.insert(FWords.end(), bits, bits + count);
        return true;
    }

    // Hands every record to take(time, bits, count) in time order; false on a file error.
    template <typename F> bool Drain(F&& take) {
        if (FRuns.empty()) {
            SortKeys();
            for (const TKey& k : FKeys) take(k.Time, FWords.data() + k.At + 1, int(FWords[k.At]));
            return true;
        }
        if (!FKeys.empty() && !Spill()) return false;
        std::vector<TKey>().swap(FKeys);
        std::vector<quint32>().swap(FWords);
        // Too many runs for one merge: merge groups of them into longer runs at the file's end.
        while (FRuns.size() > FMaxRuns) {
            std::vector<TRun> longer;
            for (size_t first = 0; first < FRuns.size(); first += FMaxRuns) {
                const size_t last = std::min(FRuns.size(), first + FMaxRuns);
                if (last - first == 1) {
                    longer.push_back(FRuns[first]);
                    continue;
                }
                TRun run{FEnd, FEnd};
                const bool ok = Merge(first, last, [&](double t, const quint32* bits, int count) {
                    return Put(t, bits, count);
                });
                if (!ok || !Flush()) return false;
                run.End = FEnd;
                longer.push_back(run);
            }
            FRuns = std::move(longer);
        }
        return Merge(0, FRuns.size(), [&](double t, const quint32* bits, int count) {
            take(t, bits, count);
            return true;
        });
    }

private:
    struct TKey {
        double Time;
        size_t At; // in FWords: the count, then the patterns
    };
    struct TRun {
        qint64 Begin, End; // bytes in the file
    };
    // The reading position in one run while it is merged.
    struct TCursor {
        qint64 Pos, End;
        std::vector<char> Buf;
        size_t At = 0, Len = 0;
        double Time = 0;
        int Count = 0;
    };

    void SortKeys() {
        // Keys are made in arrival order, so their place breaks ties: stable without the
        // buffer a stable sort takes.
        std::sort(FKeys.begin(), FKeys.end(),
                  [](const TKey& a, const TKey& b) { return a.Time < b.Time || (a.Time == b.Time && a.At < b.At); });
    }

    bool Spill() {
        if (!FFile.isOpen() && !FFile.open()) return false;
        SortKeys();
        TRun run{FEnd, FEnd};
        for (const TKey& k : FKeys)
            if (!Put(k.Time, FWords.data() + k.At + 1, int(FWords[k.At]))) return false;
        if (!Flush()) return false;
        run.End = FEnd;
        FRuns.push_back(run);
        ++FSpills;
        FKeys.clear();
        FWords.clear();
        return true;
    }

    bool Put(double t, const quint32* bits, int count) {
        const size_t at = FRecords.size(), n = 12 + 4 * size_t(count);
        FRecords.resize(at + n);
        const quint32 c = quint32(count);
        std::memcpy(&FRecords[at], &t, 8);
        std::memcpy(&FRecords[at + 8], &c, 4);
        std::memcpy(&FRecords[at + 12], bits, 4 * size_t(count));
        return FRecords.size() < kWriteChunk || Flush();
    }

    bool Flush() {
        if (FRecords.empty()) return true;
        if (!FFile.seek(FEnd) || FFile.write(FRecords.data(), qint64(FRecords.size())) != qint64(FRecords.size()))
            return false;
        FEnd += qint64(FRecords.size());
        FRecords.clear();
        return true;
    }

    // Brings the next whole record of the run into its buffer; false at the run's end or on
    // a read error (error tells which).
    bool Next(TCursor& c, bool& error) {
        c.At += c.Len;
        c.Len = 0;
        auto have = [&] { return c.Buf.size() - c.At; };
        auto fill = [&](size_t need) {
            if (have() >= need) return true;
            // Moves what is left to the front (records stay 4-byte aligned there) and reads on.
            std::vector<char>& b = c.Buf;
            const size_t left = have();
            std::memmove(b.data(), b.data() + c.At, left);
            c.At = 0;
            size_t room = std::max(b.capacity(), need);
            const qint64 more = std::min<qint64>(qint64(room - left), c.End - c.Pos);
            b.resize(left + size_t(more));
            if (more > 0 && (!FFile.seek(c.Pos) || FFile.read(b.data() + left, more) != more)) {
                error = true;
                return false;
            }
            c.Pos += more;
            return have() >= need;
        };
        if (!fill(12)) return false;
        std::memcpy(&c.Time, &c.Buf[c.At], 8);
        quint32 count;
        std::memcpy(&count, &c.Buf[c.At + 8], 4);
        c.Count = int(count);
        c.Len = 12 + 4 * size_t(count);
        if (!fill(c.Len)) {
            error = true; // a run never ends inside a record
            return false;
        }
        return true;
    }

    // Merges runs [first, last): the smallest time first, on equal times the earlier run.
    template <typename F> bool Merge(size_t first, size_t last, F&& put) {
        const size_t n = last - first;
        const size_t each = std::max<size_t>(kMergeBytes / std::max<size_t>(n, 1), 64 << 10);
        std::vector<TCursor> cursors(n);
        using TItem = std::pair<double, size_t>;
        auto later = [](const TItem& a, const TItem& b) { return b.first < a.first || (a.first == b.first && a.second > b.second); };
        std::priority_queue<TItem, std::vector<TItem>, decltype(later)> heap(later);
        bool error = false;
        for (size_t i = 0; i < n; ++i) {
            TCursor& c = cursors[i];
            c.Pos = FRuns[first + i].Begin;
            c.End = FRuns[first + i].End;
            c.Buf.reserve(each);
            if (Next(c, error)) heap.push({c.Time, i});
        }
        while (!heap.empty() && !error) {
            const size_t i = heap.top().second;
            heap.pop();
            TCursor& c = cursors[i];
            if (!put(c.Time, reinterpret_cast<const quint32*>(c.Buf.data() + c.At + 12), c.Count)) return false;
            if (Next(c, error)) heap.push({c.Time, i});
        }
        return !error;
    }

    QTemporaryFile FFile;
    qint64 FRunBytes = kRunBytes;
    size_t FMaxRuns = kMaxMergeRuns;
    int FSpills = 0;
    qint64 FEnd = 0;
    std::vector<TRun> FRuns;
    std::vector<TKey> FKeys;
    std::vector<quint32> FWords;
    std::vector<char> FRecords; // waiting to be written
};

// ====================================================================== table

// What one formatter thread keeps between rows: where each column stands in its batch and
// the time texts it made last.
struct TCsvTable::TClock {
    std::vector<size_t> At;
    // The date part of a day's rows, made once per day, and whether the time fields of the
    // fixed formats need quotes that day.
    qint64 Day = std::numeric_limits<qint64>::min();
    QByteArray DayText;
    bool Quote = false;
    int Ms = 0; // milliseconds into the day
    double PatternSeconds = std::numeric_limits<double>::quiet_NaN();
    std::string Text; // the time field, unquoted, when spelled out whole
};

TCsvTable::TCsvTable(const TCsvFormat& format, QIODevice& out, bool sorted, const QString& spillFolder)
    : FFormat(format), FOut(out), FSorted(sorted), FMissing(format.Missing.toUtf8()),
      FList(char(format.List.unicode())), FDecimal(char(format.Decimal.unicode())),
      FOwnClock(std::make_unique<TClock>()) {
    if (sorted) FSorter = std::make_unique<TSorter>(spillFolder);
    FLine.clear();
    AppendField(FMissing);
    FMissingField = FLine;
    FLine.clear();
    // A value's text is at most 50 characters (a float's 39 digits, 9 decimals, sign and
    // point); quoted, every character could double.
    FCellMax = 1 + std::max<size_t>(2 * 64 + 2, size_t(FMissingField.size()));
    // '/' and ':' of a pattern stand for the separators: those of the date format chosen.
    FDateFs = zeb::FormatSettings();
    FDateFs.DateSeparator = QLatin1Char('/');
    for (int i = 0; i < 6; ++i)
        if (format.DatePattern == zeb::DateFormatOf(i)) FDateFs.DateSeparator = zeb::DateSeparatorOf(i);
    FDateFs.TimeSeparator = QLatin1Char(':');
    FDateFs.DecimalSeparator = format.Decimal;
}

TCsvTable::~TCsvTable() { StopFormatters(true); }

int TCsvTable::SpilledRuns() const { return FSpilledRuns; }

void TCsvTable::SetSortLimits(qint64 runBytes, int mergeRuns) {
    if (FSorter) FSorter->SetLimits(runBytes, size_t(std::max(mergeRuns, 0)));
}

void TCsvTable::SetFormatters(int count) { FFormatters = std::clamp(count, 1, 16); }

void TCsvTable::AddColumn(const QString& module) {
    // Rows written so far would lack the new column: only a sorted run can take it.
    if (FHeaderDone && !FSorted) FNeedsWhole = true;
    FColumns.push_back({module, {}, {}, {}});
}

void TCsvTable::SetName(int column, const QString& name) {
    if (column >= 0 && column < ColumnCount()) FColumns[size_t(column)].Name = name;
}

void TCsvTable::SetUnit(int column, const QString& unit) {
    if (column >= 0 && column < ColumnCount()) FColumns[size_t(column)].Unit = unit;
}

bool TCsvTable::Failed() const { return FFailed || FWriteFailed.load(std::memory_order_relaxed); }

void TCsvTable::AddRecord(double seconds, const quint32* bits, int count) {
    if (FNeedsWhole || Failed()) return;
    count = std::min(count, ColumnCount());
    if (FSorted) {
        if (!FSorter->Add(seconds, bits, count)) FFailed = true;
        return;
    }
    if (seconds < FLast) {
        FNeedsWhole = true;
        return;
    }
    Take(seconds, bits, count);
}

void TCsvTable::Take(double seconds, const quint32* bits, int count) {
    // A round can close only where time moves on: a later record may share this stamp.
    if (seconds > FLast && FRecordsInRound >= kRoundRecords) Round();
    FLast = seconds;
    ++FRecordsInRound;
    for (int c = 0; c < count; ++c)
        if (bits[c] != TRecordingWalk::kNoValueBits) FColumns[size_t(c)].Pending.push_back({seconds, bits[c]});
}

bool TCsvTable::Finish() {
    if (FNeedsWhole) return false;
    if (FSorted && !Failed()) {
        const bool read = FSorter->Drain([&](double t, const quint32* bits, int count) { Take(t, bits, count); });
        FSpilledRuns = FSorter->Runs();
        FSorter.reset(); // the temporary file goes now
        if (!read) FFailed = true;
    }
    Round();
    StopFormatters(false);
    if (!FHeaderDone) WriteHeader();
    return !Failed();
}

// Hands every pending point to the formatters as one batch. Records come in time order here
// and a round closes only where time moves on, so no later record can add a point to these
// rows: they are those the walk over the whole curves gives.
void TCsvTable::Round() {
    FRecordsInRound = 0;
    bool any = false;
    for (const TColumn& c : FColumns) any = any || !c.Pending.empty();
    if (!any || Failed()) return;
    if (!FHeaderDone) {
        WriteHeader(); // before any formatter writes
        // The first row's time, which the seconds columns count from: the smallest any
        // curve starts at.
        bool first = true;
        for (const TColumn& c : FColumns)
            if (!c.Pending.empty() && (first || c.Pending.front().Time < FFirstRow)) {
                FFirstRow = c.Pending.front().Time;
                first = false;
            }
    }
    auto batch = std::make_unique<TBatch>();
    batch->Columns.resize(FColumns.size());
    std::unique_lock lock(FMutex);
    // Reading waits while every formatter has a batch and as many wait.
    FCond.wait(lock, [&] { return FQueue.size() < size_t(FFormatters); });
    batch->Seq = FNextSeq++;
    for (size_t c = 0; c < FColumns.size(); ++c) {
        batch->Columns[c].swap(FColumns[c].Pending);
        if (!FSpare.empty()) {
            FColumns[c].Pending = std::move(FSpare.back());
            FSpare.pop_back();
        }
    }
    if (!FSpareText.empty()) {
        batch->Text = std::move(FSpareText.back());
        FSpareText.pop_back();
    }
    FQueue.push_back(std::move(batch));
    if (FThreads.size() < size_t(FFormatters) && FThreads.size() < FQueue.size() + FBusy)
        FThreads.emplace_back([this] { Formatter(); });
    FCond.notify_all();
}

// Batches are made into text by a few threads while the recording is read on; each batch is
// written when those before it are, so the rows stay in order.
void TCsvTable::Formatter() {
    TClock clock;
    std::unique_lock lock(FMutex);
    for (;;) {
        FCond.wait(lock, [&] { return FStop || !FQueue.empty(); });
        if (FQueue.empty()) return;
        std::unique_ptr<TBatch> batch = std::move(FQueue.front());
        FQueue.pop_front();
        ++FBusy;
        FCond.notify_all();
        lock.unlock();
        if (!FAbandon && !FWriteFailed) Format(*batch, clock);
        lock.lock();
        --FBusy;
        FRows += batch->Rows;
        FDone.push_back(std::move(batch));
        // Writes whatever is next in line; one thread writes at a time, under the lock.
        for (bool found = true; found;) {
            found = false;
            for (auto it = FDone.begin(); it != FDone.end(); ++it) {
                if ((*it)->Seq != FNextWrite) continue;
                std::unique_ptr<TBatch> next = std::move(*it);
                FDone.erase(it);
                if (!FAbandon && !FWriteFailed && next->Len > 0 &&
                    FOut.write(next->Text.data(), qint64(next->Len)) != qint64(next->Len))
                    FWriteFailed = true;
                ++FNextWrite;
                for (std::vector<TPoint>& v : next->Columns) {
                    v.clear();
                    FSpare.push_back(std::move(v));
                }
                FSpareText.push_back(std::move(next->Text));
                found = true;
                break;
            }
        }
        FCond.notify_all();
    }
}

void TCsvTable::StopFormatters(bool abandon) {
    {
        std::lock_guard lock(FMutex);
        FStop = true;
        FAbandon = FAbandon || abandon;
    }
    FCond.notify_all();
    for (std::thread& t : FThreads) t.join();
    FThreads.clear();
}

void TCsvTable::Format(TBatch& batch, TClock& clock) const {
    const size_t columns = batch.Columns.size();
    clock.At.assign(columns, 0);
    const bool twoTimes = FFormat.TimeColumn == 2;
    batch.Len = 0;
    batch.Rows = 0;
    auto room = [&](size_t n) {
        if (batch.Text.size() - batch.Len < n) batch.Text.resize(std::max(2 * batch.Text.size(), batch.Len + n));
        return batch.Text.data() + batch.Len;
    };
    for (;;) {
        // The row's time: the smallest any curve stands at.
        double t = 0.0;
        bool any = false;
        for (size_t c = 0; c < columns; ++c)
            if (clock.At[c] < batch.Columns[c].size()) {
                const double ct = batch.Columns[c][clock.At[c]].Time;
                if (!any || ct < t) t = ct;
                any = true;
            }
        if (!any) break;
        ++batch.Rows;

        char* p;
        auto seconds = [&](double v) {
            char buf[64];
            char* end = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, 6).ptr;
            SetDecimal(buf, end, FDecimal);
            p = PutField(p, buf, size_t(end - buf));
        };
        if (FFormat.TimeColumn == 0 || twoTimes) {
            const size_t n = MakeTimeText(clock, t);
            p = room(2 * n + 2 + 140 + columns * FCellMax + 2);
            p = PutTime(clock, p);
            if (twoTimes) {
                *p++ = FList;
                seconds(t - FFirstRow);
            }
        } else {
            p = room(140 + columns * FCellMax + 2);
            seconds(FFormat.TimeColumn == 1 ? t - FFirstRow : t);
        }
        // One cell per column; a column not standing at this time stays missing.
        for (size_t c = 0; c < columns; ++c) {
            *p++ = FList;
            const std::vector<TPoint>& points = batch.Columns[c];
            size_t& at = clock.At[c];
            if (at >= points.size() || points[at].Time != t) {
                std::memcpy(p, FMissingField.constData(), size_t(FMissingField.size()));
                p += FMissingField.size();
                continue;
            }
            const quint32 b = points[at++].Bits;
            if (b == TRecordingWalk::kGapBits) {
                std::memcpy(p, FMissingField.constData(), size_t(FMissingField.size()));
                p += FMissingField.size();
            } else if (FDecimal != FList) {
                p = PutValue(p, std::bit_cast<float>(b));
            } else {
                char buf[128];
                char* end = PutValue(buf, std::bit_cast<float>(b));
                p = PutField(p, buf, size_t(end - buf));
            }
        }
        *p++ = '\r';
        *p++ = '\n';
        batch.Len = size_t(p - batch.Text.data());
    }
}

void TCsvTable::AppendField(const QByteArray& field) {
    const bool quote = field.contains(FList) || field.contains('"') || field.contains('\n') || field.contains('\r');
    if (!quote) {
        FLine += field;
        return;
    }
    FLine += '"';
    for (char ch : field) {
        if (ch == '"') FLine += '"';
        FLine += ch;
    }
    FLine += '"';
}

bool TCsvTable::NeedsQuotes(const char* text, size_t n) const {
    for (size_t i = 0; i < n; ++i) {
        const char ch = text[i];
        if (ch == FList || ch == '"' || ch == '\n' || ch == '\r') return true;
    }
    return false;
}

char* TCsvTable::PutField(char* p, const char* text, size_t n) const {
    if (!NeedsQuotes(text, n)) {
        std::memcpy(p, text, n);
        return p + n;
    }
    *p++ = '"';
    for (size_t i = 0; i < n; ++i) {
        if (text[i] == '"') *p++ = '"';
        *p++ = text[i];
    }
    *p++ = '"';
    return p;
}

// The byte order mark and the header line, written at once.
void TCsvTable::WriteHeader() {
    FHeaderDone = true;
    // UTF-8 with its mark, so spreadsheets read units like "°C" right.
    FLine = QByteArrayLiteral("\xEF\xBB\xBF");
    const QByteArray time = zeb::Txt(zeb::TTextId::ColumnTime).toUtf8();
    const QByteArray seconds = time + " [s]";
    switch (FFormat.TimeColumn) {
    case 1:
    case 3: AppendField(seconds); break;
    case 2:
        AppendField(time);
        FLine += FList;
        AppendField(seconds);
        break;
    default: AppendField(time); break;
    }
    for (const TColumn& c : FColumns) {
        FLine += FList;
        const QString name = !c.Name.isEmpty() ? c.Name : c.Module;
        AppendField(TDataBase::AddUnit(name, c.Unit).toUtf8());
    }
    FLine += "\r\n";
    if (FOut.write(FLine) != FLine.size()) FWriteFailed = true;
    FLine.clear();
}

QByteArray TCsvTable::ValueText(float v) const {
    char buf[128];
    return QByteArray(buf, PutValue(buf, v) - buf);
}

char* TCsvTable::PutValue(char* p, float v) const {
    if (std::isnan(v)) {
        std::memcpy(p, "NAN", 3);
        return p + 3;
    }
    if (std::isinf(v)) {
        if (v < 0) *p++ = '-';
        std::memcpy(p, "INF", 3);
        return p + 3;
    }
    char* const first = p;
    std::to_chars_result r;
    if (FFormat.NumberFormat == 0) r = std::to_chars(p, p + 64, v);
    else if (FFormat.NumberFormat == TCsvFormat::kScientific) r = std::to_chars(p, p + 64, v, std::chars_format::scientific, 6);
    else r = std::to_chars(p, p + 64, v, std::chars_format::fixed, FFormat.NumberFormat);
    for (char* q = first; q < r.ptr; ++q) {
        if (*q == 'e') *q = 'E';
        else if (*q == '.') *q = FDecimal;
    }
    return r.ptr;
}

QByteArray TCsvTable::TimeText(double seconds) {
    MakeTimeText(*FOwnClock, seconds);
    if (FFormat.TimeKind != 3) SpellTime(*FOwnClock);
    return QByteArray(FOwnClock->Text.data(), qsizetype(FOwnClock->Text.size()));
}

void TCsvTable::SpellTime(TClock& clock) const {
    clock.Text.resize(size_t(clock.DayText.size()) + 13);
    clock.Text.resize(size_t(PutClock(clock, clock.Text.data()) - clock.Text.data()));
}

size_t TCsvTable::MakeTimeText(TClock& clock, double seconds) const {
    const qint64 ms = Milliseconds(seconds);
    qint64 day = ms / kMsPerDay, rest = ms % kMsPerDay;
    if (rest < 0) {
        rest += kMsPerDay;
        --day;
    }
    if (day != clock.Day) {
        clock.DayText = zeb::FormatDateTime(FFormat.DatePattern, double(day) * zeb::kSecondsPerDay, FDateFs).toUtf8();
        clock.Day = day;
        clock.PatternSeconds = std::numeric_limits<double>::quiet_NaN();
        // Whether the fixed formats' fields need quotes is a matter of the day's text and the
        // separators: the digits never do.
        const char separators[] = {' ', ':', FDecimal};
        clock.Quote = NeedsQuotes(clock.DayText.constData(), size_t(clock.DayText.size())) ||
                      NeedsQuotes(separators, FFormat.TimeKind == 0 ? 3 : 2);
    }
    if (FFormat.TimeKind == 3) {
        // A pattern of the user's may show anything down to the millisecond: made per stamp.
        if (seconds != clock.PatternSeconds) {
            clock.Text.assign(clock.DayText.constData(), size_t(clock.DayText.size()));
            clock.Text += ' ';
            clock.Text += zeb::FormatDateTime(FFormat.TimePattern, seconds, FDateFs).toStdString();
            clock.PatternSeconds = seconds;
        }
        return clock.Text.size();
    }
    clock.Ms = int(rest);
    return size_t(clock.DayText.size()) + (FFormat.TimeKind == 0 ? 13 : FFormat.TimeKind == 1 ? 9 : 6);
}

// The fixed time formats, written directly: a row costs its digits, not a pattern's parsing.
char* TCsvTable::PutClock(const TClock& clock, char* p) const {
    std::memcpy(p, clock.DayText.constData(), size_t(clock.DayText.size()));
    p += clock.DayText.size();
    const int ms = clock.Ms;
    const int h = ms / 3600000, m = ms / 60000 % 60, s = ms / 1000 % 60, z = ms % 1000;
    auto two = [&](int v) {
        p[0] = char('0' + v / 10);
        p[1] = char('0' + v % 10);
        p += 2;
    };
    *p++ = ' ';
    two(h);
    *p++ = ':';
    two(m);
    if (FFormat.TimeKind == 2) return p;
    *p++ = ':';
    two(s);
    if (FFormat.TimeKind == 1) return p;
    *p++ = FDecimal;
    *p++ = char('0' + z / 100);
    two(z % 100);
    return p;
}

char* TCsvTable::PutTime(TClock& clock, char* p) const {
    if (FFormat.TimeKind != 3 && !clock.Quote) return PutClock(clock, p);
    if (FFormat.TimeKind != 3) SpellTime(clock);
    return PutField(p, clock.Text.data(), clock.Text.size());
}
