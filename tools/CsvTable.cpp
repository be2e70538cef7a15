#include "CsvTable.h"

#include "config/Texts.h"
#include "data/CurveData.h"
#include "data/Formats.h"
#include "data/RecordingWalk.h"
#include "store/DataBase.h"

#include <QIODevice>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr qsizetype kWriteChunk = 1 << 20;
constexpr qint64 kMsPerDay = 86400000;

// Milliseconds since 1 January 2000, rounded as every time text of the program is.
qint64 Milliseconds(double seconds) {
    double ms = std::round(seconds * 1000.0);
    if (!std::isfinite(ms)) ms = 0;
    return qint64(std::clamp(ms, -1e17, 1e17));
}

void Two(QByteArray& out, int v) {
    out.append(char('0' + v / 10));
    out.append(char('0' + v % 10));
}

void WithDecimal(QByteArray& out, const char* first, const char* last, char decimal) {
    const qsizetype at = out.size();
    out.append(first, qsizetype(last - first));
    if (decimal != '.')
        for (qsizetype i = at; i < out.size(); ++i)
            if (out[i] == '.') out[i] = decimal;
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

// ====================================================================== table

TCsvTable::TCsvTable(const TCsvFormat& format, QIODevice& out, bool whole)
    : FFormat(format), FOut(out), FWhole(whole), FMissing(format.Missing.toUtf8()),
      FList(char(format.List.unicode())), FDecimal(char(format.Decimal.unicode())) {
    // UTF-8 with its mark, so spreadsheets read units like "°C" right.
    FBuf = QByteArrayLiteral("\xEF\xBB\xBF");
    FLine.clear();
    AppendField(FMissing);
    FMissingField = FLine;
    FLine.clear();
    // '/' and ':' of a pattern stand for the separators: those of the date format chosen.
    FDateFs = zeb::FormatSettings();
    FDateFs.DateSeparator = QLatin1Char('/');
    for (int i = 0; i < 6; ++i)
        if (format.DatePattern == zeb::DateFormatOf(i)) FDateFs.DateSeparator = zeb::DateSeparatorOf(i);
    FDateFs.TimeSeparator = QLatin1Char(':');
    FDateFs.DecimalSeparator = format.Decimal;
}

TCsvTable::~TCsvTable() = default;

void TCsvTable::AddColumn(const QString& module) {
    // Rows written so far would lack the new column: only a whole run can take it.
    if (FHeaderDone && !FWhole) FNeedsWhole = true;
    FColumns.push_back({module, {}, {}, {}});
    FData.emplace_back();
}

void TCsvTable::SetName(int column, const QString& name) {
    if (column >= 0 && column < ColumnCount()) FColumns[size_t(column)].Name = name;
}

void TCsvTable::SetUnit(int column, const QString& unit) {
    if (column >= 0 && column < ColumnCount()) FColumns[size_t(column)].Unit = unit;
}

void TCsvTable::AddRecord(double seconds, const quint32* bits, int count) {
    if (FNeedsWhole || FFailed) return;
    count = std::min(count, ColumnCount());
    if (FWhole) {
        for (int c = 0; c < count; ++c) {
            if (bits[c] == TRecordingWalk::kNoValueBits) continue;
            const bool gap = bits[c] == TRecordingWalk::kGapBits;
            FData[size_t(c)].Push(seconds, gap ? 0.0f : std::bit_cast<float>(bits[c]),
                                  gap ? TPointKind::Gap : TPointKind::Value);
        }
        return;
    }
    if (seconds < FLast) {
        FNeedsWhole = true;
        return;
    }
    // A round can close only where time moves on: a later record may share this stamp.
    if (seconds > FLast && FRecordsInRound >= kRoundRecords) Round(seconds);
    FLast = seconds;
    ++FRecordsInRound;
    for (int c = 0; c < count; ++c)
        if (bits[c] != TRecordingWalk::kNoValueBits) FColumns[size_t(c)].Pending.emplace_back(seconds, bits[c]);
}

// Merges every pending point before the horizon. Curves run in time order here, so the rows
// before the horizon are those the walk over the whole curves gives: none of them can gain
// a point from a later record.
void TCsvTable::Round(double horizon) {
    for (size_t c = 0; c < FColumns.size(); ++c) {
        auto& pending = FColumns[c].Pending;
        TCurveData& d = FData[c];
        d.Clear();
        size_t k = 0;
        for (; k < pending.size() && pending[k].first < horizon; ++k) {
            const quint32 b = pending[k].second;
            const bool gap = b == TRecordingWalk::kGapBits;
            d.Push(pending[k].first, gap ? 0.0f : std::bit_cast<float>(b), gap ? TPointKind::Gap : TPointKind::Value);
        }
        pending.erase(pending.begin(), pending.begin() + qsizetype(k));
    }
    FRecordsInRound = 0;
    Walk(FData);
}

void TCsvTable::Walk(std::vector<TCurveData>& data) {
    TDataPrintRow row;
    for (size_t c = 0; c < data.size(); ++c) {
        if (data[c].IsEmpty()) continue;
        TDataPrintCurve pc;
        pc.FCurve = int(c);
        pc.FData = &data[c];
        row.Add(pc);
    }
    for (bool more = row.initialize(); more && !FFailed; more = row.nextValues()) EmitRow(row);
}

bool TCsvTable::Finish() {
    if (FNeedsWhole) return false;
    if (FWhole) {
        // As the loader leaves a recording written out of order: each curve sorted, equal
        // stamps in file order.
        for (TCurveData& d : FData) d.SortByTime();
        Walk(FData);
    } else {
        Round(std::numeric_limits<double>::infinity());
    }
    if (!FHeaderDone) WriteHeader();
    Write(true);
    return !FFailed;
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

void TCsvTable::WriteHeader() {
    FHeaderDone = true;
    FLine.clear();
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
    FBuf += FLine;
}

QByteArray TCsvTable::ValueText(float v) const {
    QByteArray out;
    AppendValue(out, v);
    return out;
}

void TCsvTable::AppendValue(QByteArray& out, float v) const {
    if (std::isnan(v)) {
        out += "NAN";
        return;
    }
    if (std::isinf(v)) {
        out += v > 0 ? "INF" : "-INF";
        return;
    }
    char buf[128];
    std::to_chars_result r;
    if (FFormat.NumberFormat == 0) r = std::to_chars(buf, buf + sizeof buf, v);
    else if (FFormat.NumberFormat == TCsvFormat::kScientific)
        r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific, 6);
    else r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, FFormat.NumberFormat);
    for (char* p = buf; p < r.ptr; ++p)
        if (*p == 'e') *p = 'E';
    WithDecimal(out, buf, r.ptr, FDecimal);
}

QByteArray TCsvTable::TimeText(double seconds) {
    const qint64 ms = Milliseconds(seconds);
    qint64 day = ms / kMsPerDay, rest = ms % kMsPerDay;
    if (rest < 0) {
        rest += kMsPerDay;
        --day;
    }
    if (day != FDay) {
        FDayText = zeb::FormatDateTime(FFormat.DatePattern, double(day) * zeb::kSecondsPerDay, FDateFs).toUtf8();
        FDay = day;
    }
    QByteArray out = FDayText;
    out += ' ';
    if (FFormat.TimeKind == 3) {
        out += zeb::FormatDateTime(FFormat.TimePattern, seconds, FDateFs).toUtf8();
        return out;
    }
    // The fixed time formats, built directly: a row costs its digits, not a pattern's parsing.
    const int h = int(rest / 3600000), m = int(rest / 60000 % 60), s = int(rest / 1000 % 60), z = int(rest % 1000);
    Two(out, h);
    out += ':';
    Two(out, m);
    if (FFormat.TimeKind == 2) return out;
    out += ':';
    Two(out, s);
    if (FFormat.TimeKind == 1) return out;
    out += FDecimal;
    out += char('0' + z / 100);
    Two(out, z % 100);
    return out;
}

void TCsvTable::EmitRow(const TDataPrintRow& row) {
    if (!FHeaderDone) WriteHeader();
    const double t = row.Time();
    if (FRows == 0) FFirstRow = t;
    ++FRows;
    FLine.clear();
    auto seconds = [&](double v) {
        char buf[64];
        const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, 6);
        QByteArray f;
        WithDecimal(f, buf, r.ptr, FDecimal);
        AppendField(f);
    };
    switch (FFormat.TimeColumn) {
    case 1: seconds(t - FFirstRow); break;
    case 2:
        AppendField(TimeText(t));
        FLine += FList;
        seconds(t - FFirstRow);
        break;
    case 3: seconds(t); break;
    default: AppendField(TimeText(t)); break;
    }
    // One cell per column; a column without a marked point in this row stays missing.
    int next = 0;
    for (int i = 0; i < row.Count(); ++i) {
        const TDataPrintCurve& pc = row.GetItem(i);
        for (; next < pc.FCurve; ++next) {
            FLine += FList;
            FLine += FMissingField;
        }
        FLine += FList;
        if (!pc.FMarked || pc.FData->IsGap(pc.FIndex)) FLine += FMissingField;
        else if (FDecimal != FList) AppendValue(FLine, float(pc.FValue));
        else AppendField(ValueText(float(pc.FValue)));
        next = pc.FCurve + 1;
    }
    for (; next < ColumnCount(); ++next) {
        FLine += FList;
        FLine += FMissingField;
    }
    FLine += "\r\n";
    FBuf += FLine;
    Write(false);
}

void TCsvTable::Write(bool force) {
    if (FFailed || (!force && FBuf.size() < kWriteChunk)) return;
    if (FOut.write(FBuf) != FBuf.size()) FFailed = true;
    FBuf.clear();
}
