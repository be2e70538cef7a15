#include "data/Formats.h"

#include <QDate>
#include <QRegularExpression>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace zeb {

// ====================================================================== settings

namespace {

struct TDateEntry {
    const char* format;
    char separator;
};
constexpr std::array<TDateEntry, 6> kDateTable = {{{"yyyy-MM-dd", '-'},
                                                   {"dd/MM/yyyy", '/'},
                                                   {"MM/dd/yyyy", '/'},
                                                   {"dd.MM.yyyy", '.'},
                                                   {"dd-MMM-yyyy", '-'},
                                                   {"yyyy-MMM-dd", '-'}}};

std::optional<QLocale>& LocaleOverride() {
    static std::optional<QLocale> locale;
    return locale;
}

void SetNamesFrom(TFormatSettings& fs, const QLocale& loc) {
    fs.ShortMonthNames.clear();
    fs.LongMonthNames.clear();
    for (int m = 1; m <= 12; ++m) {
        fs.ShortMonthNames << loc.monthName(m, QLocale::ShortFormat);
        fs.LongMonthNames << loc.monthName(m, QLocale::LongFormat);
    }
    fs.ShortDayNames.clear();
    fs.LongDayNames.clear();
    for (int d = 1; d <= 7; ++d) {
        fs.ShortDayNames << loc.dayName(d, QLocale::ShortFormat);
        fs.LongDayNames << loc.dayName(d, QLocale::LongFormat);
    }
    fs.TimeAMString = loc.amText();
    fs.TimePMString = loc.pmText();
}

// The first character of a pattern that is neither a pattern letter nor a blank.
QChar SeparatorIn(const QString& pattern, QChar fallback) {
    bool quoted = false;
    for (QChar c : pattern) {
        if (c == QLatin1Char('\'')) quoted = !quoted;
        else if (!quoted && !c.isLetter() && !c.isSpace()) return c;
    }
    return fallback;
}

// Qt's long time format of a locale ends with the time zone; times here have none.
QString WithoutZone(QString pattern) {
    pattern.remove(QRegularExpression(QStringLiteral("\\s*\\bt+\\b\\s*")));
    return pattern.trimmed();
}

} // namespace

TFormatSettings TFormatSettings::International() {
    TFormatSettings fs;
    fs.ShortDateFormat = fs.LongDateFormat = QStringLiteral("dd-MMM-yyyy");
    fs.DateSeparator = QLatin1Char('-');
    fs.LongTimeFormat = QStringLiteral("HH:mm:ss");
    fs.ShortTimeFormat = QStringLiteral("HH:mm");
    fs.TimeSeparator = QLatin1Char(':');
    fs.DecimalSeparator = QLatin1Char('.');
    fs.ThousandSeparator = QLatin1Char(',');
    SetNamesFrom(fs, QLocale::c());
    return fs;
}

TFormatSettings MakeSettings(int mode, int dateIndex, int decimalSeparatorChoice);

TFormatSettings& FormatSettings() {
    static TFormatSettings fs = MakeSettings(0, 0, 0);
    return fs;
}

QLocale SystemLocale() { return LocaleOverride() ? *LocaleOverride() : QLocale::system(); }
void SetSystemLocaleOverride(std::optional<QLocale> locale) { LocaleOverride() = std::move(locale); }

QString DateFormatOf(int index) {
    if (index < 0 || index >= int(kDateTable.size())) index = 0;
    return QString::fromLatin1(kDateTable[size_t(index)].format);
}

QChar DateSeparatorOf(int index) {
    if (index < 0 || index >= int(kDateTable.size())) index = 0;
    return QLatin1Char(kDateTable[size_t(index)].separator);
}

void SetFormats(int mode, int dateIndex, int decimalSeparatorChoice) {
    FormatSettings() = MakeSettings(mode, dateIndex, decimalSeparatorChoice);
}

TFormatSettings MakeSettings(int mode, int dateIndex, int decimalSeparatorChoice) {
    TFormatSettings fs;
    if (mode == 2) {
        fs = TFormatSettings::International();
    } else if (mode >= 3) {
        const QLocale loc = SystemLocale();
        fs.ShortDateFormat = loc.dateFormat(QLocale::ShortFormat);
        fs.LongDateFormat = loc.dateFormat(QLocale::LongFormat);
        fs.LongTimeFormat = WithoutZone(loc.timeFormat(QLocale::LongFormat));
        fs.ShortTimeFormat = WithoutZone(loc.timeFormat(QLocale::ShortFormat));
        fs.DateSeparator = SeparatorIn(fs.ShortDateFormat, QLatin1Char('/'));
        fs.TimeSeparator = SeparatorIn(fs.LongTimeFormat, QLatin1Char(':'));
        fs.DecimalSeparator = loc.decimalPoint().at(0);
        fs.ThousandSeparator = loc.groupSeparator().isEmpty() ? QChar() : loc.groupSeparator().at(0);
        SetNamesFrom(fs, loc);
    } else {
        fs.ShortDateFormat = fs.LongDateFormat = DateFormatOf(dateIndex);
        fs.DateSeparator = DateSeparatorOf(dateIndex);
        fs.LongTimeFormat = QStringLiteral("HH:mm:ss");
        fs.ShortTimeFormat = QStringLiteral("HH:mm");
        fs.TimeSeparator = QLatin1Char(':');
        const bool comma = decimalSeparatorChoice == 1;
        fs.DecimalSeparator = comma ? QLatin1Char(',') : QLatin1Char('.');
        fs.ThousandSeparator = comma ? QLatin1Char('.') : QLatin1Char(',');
        SetNamesFrom(fs, SystemLocale());
    }
    return fs;
}

QString TimeFormat(TTimeKind kind) {
    const TFormatSettings& fs = FormatSettings();
    const QString zzz = QString(fs.DecimalSeparator) + QStringLiteral("zzz");
    switch (kind) {
    case TTimeKind::DateTime: return fs.ShortDateFormat + QLatin1Char(' ') + fs.LongTimeFormat;
    case TTimeKind::DateTimeMs: return fs.ShortDateFormat + QLatin1Char(' ') + fs.LongTimeFormat + zzz;
    case TTimeKind::Time: return fs.LongTimeFormat;
    case TTimeKind::TimeMs: return fs.LongTimeFormat + zzz;
    case TTimeKind::Date: return fs.ShortDateFormat;
    case TTimeKind::ShortTime: return fs.ShortTimeFormat;
    case TTimeKind::DateShortTime: return fs.ShortDateFormat + QLatin1Char(' ') + fs.ShortTimeFormat;
    case TTimeKind::None: return {};
    case TTimeKind::Fixed: return QStringLiteral("MM/dd/yyyy HH:mm:ss");
    }
    return {}; // a number from outside the kinds
}

QString FormatTime(TTimeKind kind, double secondsSince2000) {
    const QString pattern = TimeFormat(kind);
    if (pattern.isEmpty()) return {};
    if (kind == TTimeKind::Fixed) {
        // A fixed format whatever the settings, separators included.
        TFormatSettings fs = FormatSettings();
        fs.DateSeparator = QLatin1Char('/');
        fs.TimeSeparator = QLatin1Char(':');
        return FormatDateTime(pattern, secondsSince2000, fs);
    }
    return FormatDateTime(pattern, secondsSince2000);
}

QString ValueFormats() { return QStringLiteral("0, 0.0, #.#, #.0, 0.0E+00"); }
QStringList ValueFormatList() { return ValueFormats().split(QStringLiteral(", ")); }

int LanguageIndex(int setting) {
    if (setting >= 0 && setting <= 2) return setting;
    switch (SystemLocale().language()) {
    case QLocale::German: return 0;
    case QLocale::French: return 2;
    default: return 1;
    }
}

// ====================================================================== date-time patterns

namespace {

struct TBrokenTime {
    int year, month, day, dayOfWeek;
    int hour, minute, second, msec;
};

TBrokenTime Break(double secondsSince2000) {
    TBrokenTime b{};
    double msD = std::round(secondsSince2000 * 1000.0);
    // Far outside any recording; keep the arithmetic finite and defined.
    if (!std::isfinite(msD)) msD = 0;
    msD = std::clamp(msD, -1e17, 1e17);
    const auto ms = static_cast<long long>(msD);
    constexpr long long kMsPerDay = 86400000LL;
    long long day = ms / kMsPerDay;
    long long rest = ms % kMsPerDay;
    if (rest < 0) {
        rest += kMsPerDay;
        --day;
    }
    const QDate date = QDate(2000, 1, 1).addDays(day);
    b.year = date.year();
    b.month = date.month();
    b.day = date.day();
    b.dayOfWeek = date.dayOfWeek();
    b.hour = int(rest / 3600000);
    b.minute = int(rest / 60000 % 60);
    b.second = int(rest / 1000 % 60);
    b.msec = int(rest % 1000);
    return b;
}

QString Pad(int v, int width) { return QStringLiteral("%1").arg(v, width, 10, QLatin1Char('0')); }

int RunLength(const QString& s, qsizetype i) {
    int n = 1;
    while (i + n < s.size() && s[i + n] == s[i]) ++n;
    return n;
}

bool HasAmPm(const QString& p) {
    return p.contains(QLatin1String("AM/PM"), Qt::CaseInsensitive) ||
           p.contains(QLatin1String("A/P"), Qt::CaseInsensitive) || p.contains(QLatin1String("AP")) ||
           p.contains(QLatin1String("ap")) || p.contains(QLatin1String("ampm"), Qt::CaseInsensitive);
}

} // namespace

QString FormatDateTime(const QString& p, double secondsSince2000, const TFormatSettings& fs) {
    const TBrokenTime b = Break(secondsSince2000);
    const bool twelve = HasAmPm(p);
    const int h12 = b.hour % 12 == 0 ? 12 : b.hour % 12;
    const bool pm = b.hour >= 12;
    QString out;
    out.reserve(p.size() + 8);
    for (qsizetype i = 0; i < p.size();) {
        const QChar c = p[i];
        const int n = RunLength(p, i);
        auto take = [&](int k) { i += k; };
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            const qsizetype end = p.indexOf(c, i + 1);
            if (end < 0) { // unterminated quote: the rest is literal
                out += p.mid(i + 1);
                break;
            }
            if (end == i + 1 && c == QLatin1Char('\'')) out += c; // '' is a quote
            else out += p.mid(i + 1, end - i - 1);
            i = end + 1;
            continue;
        }
        if (p.mid(i, 5).compare(QLatin1String("AM/PM"), Qt::CaseInsensitive) == 0) {
            const QString s = pm ? QStringLiteral("PM") : QStringLiteral("AM");
            out += p[i].isLower() ? s.toLower() : s;
            take(5);
            continue;
        }
        if (p.mid(i, 3).compare(QLatin1String("A/P"), Qt::CaseInsensitive) == 0) {
            const QChar s = pm ? QLatin1Char('P') : QLatin1Char('A');
            out += p[i].isLower() ? s.toLower() : s;
            take(3);
            continue;
        }
        if (p.mid(i, 4) == QLatin1String("ampm")) {
            out += pm ? fs.TimePMString : fs.TimeAMString;
            take(4);
            continue;
        }
        if (p.mid(i, 2) == QLatin1String("AP") || p.mid(i, 2) == QLatin1String("ap")) {
            const QString s = pm ? fs.TimePMString : fs.TimeAMString;
            out += c == QLatin1Char('a') ? s.toLower() : s.toUpper();
            take(2);
            continue;
        }
        switch (c.unicode()) {
        case 'y':
            if (n >= 3) out += Pad(b.year, 4);
            else out += Pad(b.year % 100, 2);
            take(n);
            break;
        case 'M':
            if (n >= 4) out += fs.LongMonthNames.value(b.month - 1);
            else if (n == 3) out += fs.ShortMonthNames.value(b.month - 1);
            else out += Pad(b.month, n);
            take(n);
            break;
        case 'd':
            if (n >= 4) out += fs.LongDayNames.value(b.dayOfWeek - 1);
            else if (n == 3) out += fs.ShortDayNames.value(b.dayOfWeek - 1);
            else out += Pad(b.day, n);
            take(n);
            break;
        case 'H': out += Pad(b.hour, std::min(n, 2)); take(std::min(n, 2)); break;
        case 'h': out += Pad(twelve ? h12 : b.hour, std::min(n, 2)); take(std::min(n, 2)); break;
        case 'm': out += Pad(b.minute, std::min(n, 2)); take(std::min(n, 2)); break;
        case 's': out += Pad(b.second, std::min(n, 2)); take(std::min(n, 2)); break;
        case 'z':
            if (n >= 3) {
                out += Pad(b.msec, 3);
                take(3);
            } else {
                out += QString::number(b.msec);
                take(n);
            }
            break;
        case 't': take(n); break; // time zone: times here have none
        case '/': out += fs.DateSeparator; take(1); break;
        case ':': out += fs.TimeSeparator; take(1); break;
        default: out += c; take(1); break;
        }
    }
    return out;
}

// ====================================================================== float patterns

namespace {

// The value's 15 significant digits and the position of the decimal point relative to them:
// value = 0.DIGITS * 10^point.
struct TDecimal {
    QByteArray digits; // 15 digits, or empty for zero
    int point = 0;
};

TDecimal ToDecimal(double a) {
    TDecimal d;
    if (a == 0.0) return d;
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", a);
    // buf: d.dddddddddddddde[+-]XX
    d.digits.append(buf[0]);
    d.digits.append(buf + 2, 14);
    d.point = std::atoi(buf + 17) + 1;
    return d;
}

// Keeps `keep` leading digits, rounding half away from zero; may carry into a new digit.
QByteArray RoundDigits(const TDecimal& d, int keep, int& point) {
    point = d.point;
    if (d.digits.isEmpty() || keep < 0) return {};
    QByteArray s = d.digits.left(keep);
    while (s.size() < keep) s.append('0');
    if (keep < d.digits.size() && d.digits[keep] >= '5') {
        qsizetype i = s.size() - 1;
        for (; i >= 0; --i) {
            if (s[i] == '9') s[i] = '0';
            else {
                ++s[i];
                break;
            }
        }
        if (i < 0) {
            s.prepend('1');
            ++point;
        }
    }
    if (s.count('0') == s.size()) return {};
    return s;
}

struct TSection {
    QString text;
    int intPlaces = 0;   // digit placeholders before the decimal point
    int minInt = 0;      // from the first '0' before the point to the point
    int fracPlaces = 0;  // digit placeholders after the point
    int minFrac = 0;     // up to the last '0' after the point
    bool thousands = false;
    bool scientific = false;
};

TSection Analyse(const QString& text) {
    TSection s;
    s.text = text;
    bool afterPoint = false;
    int firstZero = -1;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            const qsizetype end = text.indexOf(c, i + 1);
            if (end < 0) break;
            i = end;
        } else if (c == QLatin1Char('0') || c == QLatin1Char('#')) {
            if (afterPoint) {
                ++s.fracPlaces;
                if (c == QLatin1Char('0')) s.minFrac = s.fracPlaces;
            } else {
                if (c == QLatin1Char('0') && firstZero < 0) firstZero = s.intPlaces;
                ++s.intPlaces;
            }
        } else if (c == QLatin1Char('.')) {
            afterPoint = true;
        } else if (c == QLatin1Char(',')) {
            s.thousands = true;
        } else if ((c == QLatin1Char('E') || c == QLatin1Char('e')) && i + 1 < text.size() &&
                   (text[i + 1] == QLatin1Char('+') || text[i + 1] == QLatin1Char('-'))) {
            s.scientific = true;
            break;
        }
    }
    if (firstZero >= 0) s.minInt = s.intPlaces - firstZero;
    return s;
}

QStringList SplitSections(const QString& pattern) {
    QStringList out;
    QString cur;
    QChar quote;
    for (QChar c : pattern) {
        if (!quote.isNull()) {
            if (c == quote) quote = QChar();
        } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            quote = c;
        } else if (c == QLatin1Char(';')) {
            out << cur;
            cur.clear();
            continue;
        }
        cur += c;
    }
    out << cur;
    return out;
}

struct TNumber {
    QByteArray intDigits;  // without leading zeros unless placeholders demand them
    QByteArray fracDigits; // trimmed to what the placeholders show
    int exponent = 0;
    bool zero = true;
};

TNumber Digits(const TSection& s, double a) {
    TNumber n;
    const TDecimal d = ToDecimal(a);
    if (s.scientific) {
        const int ip = std::max(1, s.intPlaces);
        int point;
        QByteArray sig = RoundDigits(d, ip + s.fracPlaces, point);
        n.zero = sig.isEmpty();
        if (n.zero) sig = QByteArray(ip + s.fracPlaces, '0');
        n.exponent = n.zero ? 0 : point - ip;
        sig = sig.left(ip + s.fracPlaces);
        n.intDigits = sig.left(ip);
        n.fracDigits = sig.mid(ip);
    } else {
        int point;
        const QByteArray r = RoundDigits(d, d.point + s.fracPlaces, point);
        n.zero = r.isEmpty();
        const qsizetype intLen = std::max<qsizetype>(0, r.size() - s.fracPlaces);
        n.intDigits = r.left(intLen);
        n.fracDigits = r.mid(intLen);
        while (n.fracDigits.size() < s.fracPlaces) n.fracDigits.prepend('0');
        while (n.intDigits.size() > 0 && n.intDigits[0] == '0') n.intDigits.remove(0, 1);
        while (n.intDigits.size() < s.minInt) n.intDigits.prepend('0');
    }
    while (n.fracDigits.size() > s.minFrac && n.fracDigits.endsWith('0')) n.fracDigits.chop(1);
    return n;
}

QString Render(const TSection& s, const TNumber& n, const TFormatSettings& fs) {
    QString out;
    const qsizetype L = n.intDigits.size();
    const int P = s.scientific ? std::max(1, s.intPlaces) : s.intPlaces;
    auto emitInt = [&](qsizetype from, qsizetype to) {
        for (qsizetype k = from; k < to; ++k) {
            out += QLatin1Char(n.intDigits[k]);
            if (s.thousands && !fs.ThousandSeparator.isNull() && k < L - 1 && (L - 1 - k) % 3 == 0)
                out += fs.ThousandSeparator;
        }
    };
    int intSeen = 0, fracSeen = 0;
    bool afterPoint = false, intDone = (P == 0 && L == 0);
    auto flushInt = [&] {
        if (!intDone) emitInt(0, L);
        intDone = true;
    };
    const QString& t = s.text;
    for (qsizetype i = 0; i < t.size(); ++i) {
        const QChar c = t[i];
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            const qsizetype end = t.indexOf(c, i + 1);
            if (end < 0) {
                out += t.mid(i + 1);
                break;
            }
            out += t.mid(i + 1, end - i - 1);
            i = end;
        } else if (c == QLatin1Char('0') || c == QLatin1Char('#')) {
            if (!afterPoint) {
                const qsizetype pos = L - P + intSeen;
                if (intSeen == 0 && pos > 0) emitInt(0, pos);
                if (pos >= 0) emitInt(pos, pos + 1);
                if (++intSeen == P) intDone = true;
            } else {
                if (fracSeen < n.fracDigits.size()) out += QLatin1Char(n.fracDigits[fracSeen]);
                ++fracSeen;
            }
        } else if (c == QLatin1Char('.')) {
            if (!afterPoint) {
                flushInt();
                afterPoint = true;
                if (!n.fracDigits.isEmpty()) out += fs.DecimalSeparator;
            }
        } else if (c == QLatin1Char(',')) {
            // thousands grouping: shown through the digits
        } else if ((c == QLatin1Char('E') || c == QLatin1Char('e')) && i + 1 < t.size() &&
                   (t[i + 1] == QLatin1Char('+') || t[i + 1] == QLatin1Char('-'))) {
            flushInt();
            const bool always = t[i + 1] == QLatin1Char('+');
            qsizetype j = i + 2;
            int width = 0;
            while (j < t.size() && t[j] == QLatin1Char('0') && width < 4) {
                ++width;
                ++j;
            }
            out += c;
            if (n.exponent < 0) out += QLatin1Char('-');
            else if (always) out += QLatin1Char('+');
            out += QStringLiteral("%1").arg(std::abs(n.exponent), std::max(width, 1), 10, QLatin1Char('0'));
            i = j - 1;
        } else {
            out += c;
        }
    }
    flushInt();
    return out;
}

} // namespace

QString FormatFloat(const QString& pattern, double value, const TFormatSettings& fs) {
    if (std::isnan(value)) return QStringLiteral("NAN");
    if (std::isinf(value)) return value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    if (pattern.isEmpty()) return FloatToStr(value, fs);

    const QStringList sections = SplitSections(pattern);
    const TSection pos = Analyse(sections[0]);
    const TNumber first = Digits(pos, std::abs(value));
    if (first.zero) {
        if (sections.size() >= 3 && !sections[2].isEmpty()) {
            const TSection z = Analyse(sections[2]);
            return Render(z, Digits(z, 0.0), fs);
        }
        return Render(pos, first, fs); // never "-0"
    }
    if (value < 0) {
        if (sections.size() >= 2 && !sections[1].isEmpty()) {
            const TSection neg = Analyse(sections[1]);
            return Render(neg, Digits(neg, -value), fs);
        }
        return QLatin1Char('-') + Render(pos, first, fs);
    }
    return Render(pos, first, fs);
}

// ====================================================================== number conversion

QString FloatToStr(double value, const TFormatSettings& fs) {
    if (std::isnan(value)) return QStringLiteral("NAN");
    if (std::isinf(value)) return value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    if (value == 0.0) return QStringLiteral("0");
    const TDecimal d = ToDecimal(std::abs(value));
    QByteArray digits = d.digits;
    while (digits.endsWith('0')) digits.chop(1);
    QString out = value < 0 ? QStringLiteral("-") : QString();
    const int exp = d.point - 1;
    if (exp >= 15 || exp < -4) {
        out += QLatin1Char(digits[0]);
        if (digits.size() > 1) out += fs.DecimalSeparator + QString::fromLatin1(digits.mid(1));
        out += QLatin1Char('E') + QString::number(exp);
        return out;
    }
    if (d.point <= 0) {
        out += QLatin1Char('0') + QString(fs.DecimalSeparator) + QString(-d.point, QLatin1Char('0')) +
               QString::fromLatin1(digits);
    } else if (digits.size() <= d.point) {
        out += QString::fromLatin1(digits) + QString(d.point - digits.size(), QLatin1Char('0'));
    } else {
        out += QString::fromLatin1(digits.left(d.point)) + fs.DecimalSeparator +
               QString::fromLatin1(digits.mid(d.point));
    }
    return out;
}

// Under the program's settings a number has at most its one decimal separator: no groups of
// thousands ("1,500" is no number under "." nor is "1.5" under ",").
std::optional<double> TryStrToFloat(const QString& text, const TFormatSettings& fs) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) return std::nullopt;
    QString t;
    t.reserve(trimmed.size());
    for (const QChar c : trimmed) {
        if (c == fs.DecimalSeparator)
            t += QLatin1Char('.');
        else if (c == QLatin1Char('.') || c == QLatin1Char(',') || c.isSpace())
            return std::nullopt;
        else
            t += c;
    }
    static const QLocale strict = [] {
        QLocale c = QLocale::c();
        c.setNumberOptions(QLocale::RejectGroupSeparator);
        return c;
    }();
    bool ok = false;
    const double v = strict.toDouble(t, &ok);
    if (!ok) return std::nullopt;
    return v;
}

double StrToFloatDef(const QString& text, double fallback, const TFormatSettings& fs) {
    return TryStrToFloat(text, fs).value_or(fallback);
}

} // namespace zeb
