#pragma once
// Process-wide date, time and number formats, and the two pattern languages every text of
// a time or a value goes through: float patterns ("0.000", "#.#", "0.0E+00", sections with
// ';') and date-time patterns ("yyyy-MM-dd HH:mm:ss,zzz", "dd-MMM-yyyy", AM/PM).

#include <QLocale>
#include <QString>
#include <QStringList>

#include <optional>

namespace zeb {

constexpr double kSecondsPerDay = 86400.0;

struct TFormatSettings {
    QString ShortDateFormat;
    QString LongDateFormat;
    QString ShortTimeFormat;
    QString LongTimeFormat;
    QChar DateSeparator;
    QChar TimeSeparator;
    QChar DecimalSeparator;
    QChar ThousandSeparator;
    QString TimeAMString;
    QString TimePMString;
    QStringList ShortMonthNames; // 12 entries
    QStringList LongMonthNames;
    QStringList ShortDayNames; // 7 entries, Monday first
    QStringList LongDayNames;

    static TFormatSettings International();
};

// The settings every text of the program is made with.
TFormatSettings& FormatSettings();

// The system's user locale; tests replace it.
QLocale SystemLocale();
void SetSystemLocaleOverride(std::optional<QLocale> locale);

// Mode 0/1: from the date-format index and decimal-separator choice of the program settings;
// 2: fixed international; 3 and above: from the system locale.
void SetFormats(int mode, int dateIndex = 0, int decimalSeparatorChoice = 0);

// The date format of a stored date-format index; anything outside 0..5 is index 0.
QString DateFormatOf(int index);
QChar DateSeparatorOf(int index);

// The display kinds by which a time text is asked for (their numbers are the settings' and
// the templates' own).
enum class TTimeKind : int {
    DateTime = 0,      // short date and long time
    DateTimeMs = 1,    // short date, long time and milliseconds
    Time = 2,          // long time
    TimeMs = 3,        // long time and milliseconds
    Date = 4,          // short date
    ShortTime = 5,     // short time
    DateShortTime = 6, // short date and short time
    None = 7,          // no text
    Fixed = 8,         // "MM/dd/yyyy HH:mm:ss" whatever the settings
};
// Pattern of a time display kind; empty for None and outside the kinds.
QString TimeFormat(TTimeKind kind);
// Text of a time in seconds since 1 January 2000 by a display kind.
QString FormatTime(TTimeKind kind, double secondsSince2000);

// '/' and ':' in the pattern stand for the date and time separators of the settings.
QString FormatDateTime(const QString& pattern, double secondsSince2000,
                       const TFormatSettings& fs = FormatSettings());
QString FormatFloat(const QString& pattern, double value, const TFormatSettings& fs = FormatSettings());

// The value format choices: "0, 0.0, #.#, #.0, 0.0E+00".
QString ValueFormats();
QStringList ValueFormatList();

// 0 German, 1 English, 2 French: a setting of 0..2 as it is, anything else from the system.
int LanguageIndex(int setting);

// The program's own number conversion: 15 significant digits with the decimal separator.
QString FloatToStr(double value, const TFormatSettings& fs = FormatSettings());
// Only the decimal separator of the settings, no groups of thousands; blanks around are allowed.
std::optional<double> TryStrToFloat(const QString& text, const TFormatSettings& fs = FormatSettings());
double StrToFloatDef(const QString& text, double fallback, const TFormatSettings& fs = FormatSettings());

} // namespace zeb
