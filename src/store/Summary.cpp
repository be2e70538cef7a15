#include "store/Summary.h"

#include "analysis/Analysis.h"
#include "analysis/Figures.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/DataFile.h"
#include "data/Formats.h"
#include "data/RecordingWalk.h"
#include "store/DataBase.h"

#include <QDir>
#include <QFileInfo>
#include <QIODevice>

#include <charconv>
#include <cmath>
#include <future>
#include <memory>
#include <new>

using zeb::TTextId;

namespace {

// Reads into the store, never asks, and stops when told to.
class TSummaryReceiver : public TStoreReceiver {
public:
    TSummaryReceiver(TDataBase& db, const std::atomic<bool>* cancel) : TStoreReceiver(db), FCancel(cancel) {}
    bool IsCancelled() override { return FCancel && FCancel->load(); }

private:
    const std::atomic<bool>* FCancel;
};

bool Has(double v) { return !std::isnan(v); }

} // namespace

QString SummaryStatusName(TSummaryStatus status) {
    switch (status) {
    case TSummaryStatus::Ok: return QStringLiteral("ok");
    case TSummaryStatus::Truncated: return QStringLiteral("truncated");
    case TSummaryStatus::Damaged: return QStringLiteral("damaged");
    case TSummaryStatus::Unreadable: break;
    }
    return QStringLiteral("unreadable");
}

QString SummaryVerdictName(TSummaryVerdict verdict) {
    switch (verdict) {
    case TSummaryVerdict::Passed: return QStringLiteral("passed");
    case TSummaryVerdict::Failed: return QStringLiteral("failed");
    case TSummaryVerdict::NoLimits: break;
    }
    return QStringLiteral("no limits");
}

TSummaryStatus ReadForSummary(TDataBase& db, const QString& file, const TSummaryOptions& options,
                              const std::atomic<bool>* cancel) {
    const QFileInfo fi(file);
    db.AddFile(fi.absoluteFilePath());
    if (!fi.isFile() || !fi.isReadable() || fi.size() == 0) return TSummaryStatus::Unreadable;
    TSummaryStatus status = TSummaryStatus::Damaged;
    try {
        auto data = TDataFile::CreateLoad(fi.absoluteFilePath());
        if (!data) return TSummaryStatus::Unreadable;
        data->EnableReadAhead();
        TSummaryReceiver receiver(db, cancel);
        TRecordingWalk walk(*data, receiver, options.Variant);
        switch (walk.Run()) {
        case TRecordingWalk::TEnd::EndOfStream:
        case TRecordingWalk::TEnd::EmptyBlock: status = TSummaryStatus::Ok; break;
        case TRecordingWalk::TEnd::Truncated: status = TSummaryStatus::Truncated; break;
        case TRecordingWalk::TEnd::BadHeader: return TSummaryStatus::Unreadable;
        case TRecordingWalk::TEnd::Damaged:
        case TRecordingWalk::TEnd::Cancelled:
        case TRecordingWalk::TEnd::Stopped: break;
        }
    } catch (const TDataFileError&) {
        return TSummaryStatus::Unreadable;
    } catch (const std::bad_alloc&) {
        // What was read stays and is summarised; the file counts as not read completely.
    }
    // As the loader leaves a store: ascending curves, packed.
    for (int i = 0; i < db.Curve_Count(); ++i) {
        db.Data(i).SortByTime();
        db.Data(i).Compact();
    }
    if (db.Curve_Count() == 0 && status == TSummaryStatus::Damaged) return TSummaryStatus::Unreadable;
    db.FinishLoad();
    if (!options.Template.isEmpty()) db.Ini_FileOpen(options.Template);
    return status;
}

namespace {

// The range of a recording's rows: the options' bounds, else its own first and last time.
std::pair<double, double> RangeOf(const TDataBase& db, const TSummaryOptions& options) {
    double first = 0.0, last = 0.0;
    db.GetXMinXMax(first, last, false);
    double from = options.From.value_or(first), to = options.To.value_or(last);
    if (from > to) std::swap(from, to);
    return {from, to};
}

TSummaryRow CurveRow(const TDataBase& db, int i, const TSummaryRow& base, double from, double to,
                     const TSummaryOptions& options) {
    TSummaryRow r = base;
    r.Index = i;
    r.Logger = db.Curve_LoggernameGet(i);
    r.Name = db.Curve_NameGet(i);
    r.Unit = db.Curve_UnitGet(i).trimmed();
    r.Format = db.Curve_FormatGet(i);
    const TCurveData& d = db.Data(i);
    const auto summary = db.Summary(i);
    // The report's figures: finite values, the infinite ones counted apart.
    TFigureOptions want;
    want.Finite = want.ExtremeTimes = want.Violations = true;
    if (IsCelsius(r.Unit)) want.MktEnergy = options.ActivationEnergy;
    const TCurveFigures f = CurveFigures(d, summary.get(), LimitRuleOf(db.Settings().Curves[i]), from, to, want);
    r.Points = f.Stats.Count;
    r.Infinite = f.Finite.Infinite;
    if (!f.Range.IsEmpty()) {
        r.First = d.Time(f.Range.First);
        r.Last = d.Time(f.Range.Last);
    }
    if (f.Finite.Count > 0) {
        r.Min = f.Finite.Min;
        r.Max = f.Finite.Max;
        r.Average = f.Finite.Average;
        if (f.MinIndex >= 0) r.MinTime = d.Time(f.MinIndex);
        if (f.MaxIndex >= 0) r.MaxTime = d.Time(f.MaxIndex);
    }
    r.Mkt = f.Mkt;
    if (f.HasLimits()) {
        r.LimitMode = f.Limits.Mode;
        r.Limit1 = f.Limits.L1;
        r.Limit2 = f.Limits.L2;
        if (f.Times.Valid) r.LimitOut = f.Times.Out;
        r.Violations = f.Violations.Count;
        if (f.Violations.FirstIndex >= 0) r.FirstViolation = d.Time(f.Violations.FirstIndex);
        r.Verdict = r.Violations > 0 ? TSummaryVerdict::Failed : TSummaryVerdict::Passed;
    }
    return r;
}

TSummaryRow FileRow(const QString& file, TSummaryStatus status) {
    TSummaryRow base;
    base.File = file;
    base.Status = status;
    return base;
}

} // namespace

std::vector<TSummaryRow> SummaryRows(const TDataBase& db, const QString& file, TSummaryStatus status,
                                     const TSummaryOptions& options) {
    const TSummaryRow base = FileRow(file, status);
    if (db.Curve_Count() == 0) return {base};
    const auto [from, to] = RangeOf(db, options);
    const int n = db.Curve_Count();
    std::vector<TSummaryRow> rows(static_cast<size_t>(n));
    // The curves' figures on two cores: every other curve in a helper thread. Each curve has
    // its own columns and summary, and the store is only read.
    auto some = [&](int first) {
        for (int i = first; i < n; i += 2) rows[size_t(i)] = CurveRow(db, i, base, from, to, options);
    };
    std::future<void> helper;
    if (n > 1) helper = std::async(std::launch::async, some, 1);
    for (int i = 0; i < n; i += n > 1 ? 2 : 1) rows[size_t(i)] = CurveRow(db, i, base, from, to, options);
    if (helper.valid()) helper.get();
    return rows;
}

std::vector<TSummaryRow> TSummaryRun::Run(const QStringList& files, const TSummaryOptions& options) const {
    std::vector<TSummaryRow> rows;
    const int total = int(files.size());
    // One recording at a time. Reading already keeps two cores busy (the inflate runs ahead
    // in a thread of its own), so making the figures of one recording while the next is read
    // gained nothing measurable on two cores and held two recordings at once.
    TDataBase db;
    for (int k = 0; k < total && !(Cancel && Cancel->load()); ++k) {
        if (Progress) Progress(k, total, files[k]);
        const TSummaryStatus status = ReadForSummary(db, files[k], options, Cancel);
        if (Cancel && Cancel->load()) break;
        std::vector<TSummaryRow> some = SummaryRows(db, files[k], status, options);
        rows.insert(rows.end(), std::make_move_iterator(some.begin()), std::make_move_iterator(some.end()));
        db.Reset();
    }
    if (Progress && !(Cancel && Cancel->load())) Progress(total, total, QString());
    return rows;
}

TSummaryCounts CountSummary(const std::vector<TSummaryRow>& rows) {
    TSummaryCounts c;
    for (const TSummaryRow& r : rows) {
        // A recording's rows begin with its first curve, or are its one row without curves.
        if (r.Index <= 0) {
            ++c.Recordings;
            if (r.Status != TSummaryStatus::Ok) ++c.Incomplete;
        }
        if (!r.HasFigures()) continue;
        switch (r.Verdict) {
        case TSummaryVerdict::Passed: ++c.Passed; break;
        case TSummaryVerdict::Failed: ++c.Failed; break;
        case TSummaryVerdict::NoLimits: ++c.NoLimits; break;
        }
    }
    return c;
}

QStringList SummaryColumnTitles() { return zeb::TxtList(TTextId::SumColumns); }

QString SummaryCellText(const TSummaryRow& r, int column) {
    auto time = [](double t) { return Has(t) ? zeb::FormatTime(zeb::TTimeKind::DateTime, t) : QString(); };
    auto value = [&r](double v) {
        return Has(v) ? FigureText::WithUnit(FigureText::Value(v, r.Format), r.Unit) : QString();
    };
    switch (column) {
    case 0: return QDir::toNativeSeparators(r.File);
    case 1: return zeb::TxtList(TTextId::SumStatuses).value(int(r.Status));
    case 2: return r.Logger;
    case 3: return r.Name;
    case 4: return r.Unit;
    default: break;
    }
    if (!r.HasFigures()) return {};
    switch (column) {
    case 5: return time(r.First);
    case 6: return time(r.Last);
    case 7: return QString::number(r.Points);
    case 8: return value(r.Min);
    case 9: return time(r.MinTime);
    case 10: return value(r.Max);
    case 11: return time(r.MaxTime);
    case 12: return value(r.Average);
    case 13: return value(r.Mkt);
    case 14: return r.LimitMode ? DayDurationText(Has(r.LimitOut) ? r.LimitOut : 0.0) : QString();
    case 15: return r.LimitMode ? QString::number(r.Violations) : QString();
    case 16: return time(r.FirstViolation);
    case 17: return zeb::TxtList(TTextId::SumVerdicts).value(int(r.Verdict));
    default: return {};
    }
}

bool WriteSummaryCsv(QIODevice& out, const std::vector<TSummaryRow>& rows) {
    const QChar decimal = zeb::FormatSettings().DecimalSeparator;
    const QChar list = decimal == QLatin1Char(',') ? QLatin1Char(';') : QLatin1Char(',');
    auto quoted = [list](QString s) -> QString {
        if (!s.contains(list) && !s.contains(QLatin1Char('"')) && !s.contains(QLatin1Char('\n'))) return s;
        return QLatin1Char('"') + s.replace(QLatin1String("\""), QLatin1String("\"\"")) + QLatin1Char('"');
    };
    // Numbers in full, so a spreadsheet computes with what the figures are.
    auto number = [decimal](double v) {
        if (!Has(v)) return QString();
        char buf[64];
        const auto r = std::to_chars(buf, buf + sizeof buf, v);
        QString s = QString::fromLatin1(buf, int(r.ptr - buf));
        return s.replace(QLatin1Char('.'), decimal);
    };
    auto time = [](double t) { return Has(t) ? zeb::FormatTime(zeb::TTimeKind::DateTime, t) : QString(); };
    QString text;
    QStringList titles = SummaryColumnTitles();
    for (QString& t : titles) t = quoted(t);
    text += titles.join(list) + QLatin1String("\r\n");
    for (const TSummaryRow& r : rows) {
        QStringList cells = {quoted(r.File), quoted(SummaryCellText(r, 1)), quoted(r.Logger), quoted(r.Name),
                             quoted(r.Unit)};
        if (r.HasFigures()) {
            cells << time(r.First) << time(r.Last) << QString::number(r.Points) << number(r.Min) << time(r.MinTime)
                  << number(r.Max) << time(r.MaxTime) << number(r.Average) << number(r.Mkt)
                  << (r.LimitMode ? number(Has(r.LimitOut) ? r.LimitOut : 0.0) : QString())
                  << (r.LimitMode ? QString::number(r.Violations) : QString()) << time(r.FirstViolation)
                  << quoted(SummaryCellText(r, 17));
        } else {
            for (int k = 5; k < 18; ++k) cells << QString();
        }
        text += cells.join(list) + QLatin1String("\r\n");
    }
    // With a byte order mark, so spreadsheets take the file as UTF-8 (units such as "°C").
    const QByteArray bytes = QByteArray("\xEF\xBB\xBF") + text.toUtf8();
    return out.write(bytes) == bytes.size();
}

QStringList RecordingsInFolder(const QString& folder) {
    const QDir dir(folder);
    QStringList files;
    for (const QFileInfo& fi : dir.entryInfoList({QStringLiteral("*.zeb"), QStringLiteral("*.dvk")},
                                                 QDir::Files | QDir::Readable, QDir::Name | QDir::IgnoreCase))
        files << fi.absoluteFilePath();
    return files;
}
