#pragma once
// The display template (".mse"): how a recording is shown, from titles and axes to each curve.
// Every value is optional: a template may carry only part of a configuration, and applying it
// changes only what it holds.

#include <QString>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

class TIniFile;

// What the viewer can use of an integer value. A template keeps whatever its file says, so that
// saving writes back what was read; these bounds apply where a template is applied to the view.
struct TMseRange {
    int Lo, Hi;
    constexpr int operator()(int v) const { return std::clamp(v, Lo, Hi); }
};
inline constexpr TMseRange kMseFontSize{1, 200}; // larger titles leave no room for the plot
inline constexpr TMseRange kMseFontStyle{0, 3};
inline constexpr TMseRange kMseXType{0, 2};
inline constexpr TMseRange kMseCursorAxis{0, 1};
inline constexpr TMseRange kMseCurveAxis{0, 2};
inline constexpr TMseRange kMseCurveType{0, 2};
// Curves: every segment is stroked with the pen, and wide pens cost seconds.
inline constexpr TMseRange kMseLineWidth{0, 10};
// Cursors: the position in the choice of widths "1" to "10".
inline constexpr TMseRange kMseCursorWidth{0, 9};
// Percent of the page; two opposite margins still leave a tenth of it to the chart.
inline constexpr TMseRange kMseMargin{0, 45};
inline constexpr TMseRange kMseOnlineRate{1, std::numeric_limits<int>::max()};

// A template value with its "is set" mark. Reading a file sets the mark for every key present,
// whatever its value, and only for those.
template <typename T> struct TOpt {
    T Value{};
    bool IsSet = false;

    TOpt() = default;
    explicit TOpt(const T& def) : Value(def) {} // the default, not set

    void Set(const T& v) {
        Value = v;
        IsSet = true;
    }
    // Back to a default, unset.
    void Reset(const T& def) {
        Value = def;
        IsSet = false;
    }
    // Copies the value into target when set; answers whether it did.
    bool ApplyTo(T& target) const {
        if (IsSet) target = Value;
        return IsSet;
    }
    // Takes another optional's value where that one is set.
    void Merge(const TOpt& other) {
        if (other.IsSet) Set(other.Value);
    }
};

struct TMseFont {
    TOpt<QString> Name;
    TOpt<int> Size;
    TOpt<int> Style; // 0 normal, 1 bold, 2 italic, 3 bold+italic
};

struct TMseAxis {
    TOpt<QString> Name;
    TOpt<double> Min;
    TOpt<double> Max;
    TOpt<double> Inc;
    TOpt<QString> Format;
    TOpt<bool> Grid;
    TOpt<bool> Auto;
    TOpt<int> XType; // bottom axis only: 0 seconds from 0, 1 time from 0, 2 date and time
};

struct TMseCursor {
    TOpt<int> Axis; // 0 left, 1 right
    TOpt<int> Width;
    TOpt<QString> XFormat;
    TOpt<QString> YFormat;
};

struct TMsePrint {
    TOpt<bool> Landscape;
    TOpt<int> MarginTop;
    TOpt<int> MarginLeft;
    TOpt<int> MarginRight;
    TOpt<int> MarginBottom;
    TOpt<bool> Proportional;
    TOpt<bool> CheckBoxes;
};

// Whether a value violates limits: mode 1 below L1, 2 above L1, 3 strictly between L1 and L2,
// 4 below L1 or above L2, anything else never. A value on a limit is no alarm.
bool IsAlarm(int mode, double l1, double l2, double value);

// One curve: the keys of a "Curve<n>" section, plus what the recording and the analyses keep
// with the curve at run time (never saved).
class TMseSettingsCurve {
public:
    TMseSettingsCurve() { Clear(); }

    // Persisted: the keys ModulName, ChannelName, Title, Axis, Color, Width, Type, Format.
    TOpt<QString> sModulName;
    TOpt<QString> sChannelName;
    TOpt<QString> Title;
    TOpt<int> Axis;  // 0 inactive, 1 left, 2 right
    TOpt<int> Color; // the platform's colour value, 0x00BBGGRR
    TOpt<int> Width;
    TOpt<int> Type; // 0 line, 1 line and points, 2 points
    TOpt<QString> Format;

    // From the recording.
    QString sUnit;
    QString sLoggername;
    int LAlarm = 0; // limit mode 0..4, see IsAlarm
    int LRecord = 0;
    double LValue1 = 0.0; // L1
    double LValue2 = 0.0; // L2

    // The persisted values back to their defaults, unset (no title, inactive, colour 0, width 1,
    // a line, format "0.000"); run-time values untouched.
    void Clear();
    // Whether a value violates the curve's limits (the free IsAlarm with LAlarm, LValue1, LValue2).
    bool IsAlarm(double value) const { return ::IsAlarm(LAlarm, LValue1, LValue2, value); }

    // Every key present in the section is set; the others stay as they are.
    void Read(const TIniFile& ini, const QString& section);
    // Without the names, and without the title unless withTitle.
    void ReadDisplay(const TIniFile& ini, const QString& section, bool withTitle);
    void Write(TIniFile& ini, const QString& section, bool all) const;
};

struct TMseCalc {
    TOpt<QString> ModulName;
    TOpt<QString> ChannelName;
    TOpt<QString> Unit;
    TOpt<QString> Formula; // kept as text; the calculation dialog owns its syntax

    void Read(const TIniFile& ini, const QString& section);
    void Write(TIniFile& ini, const QString& section, bool all) const;
};

// A free text box at a position on the chart.
struct TMseText {
    TOpt<QString> Text;
    TOpt<int> X;
    TOpt<int> Y;

    void Read(const TIniFile& ini, const QString& section);
    void Write(TIniFile& ini, const QString& section, bool all) const;
};

// A notice anchored to a time (X) and a value (Y); a missing coordinate reads as 1.0.
struct TMseTimeText {
    TOpt<QString> Text;
    TOpt<double> X{1.0};
    TOpt<double> Y{1.0};

    void Read(const TIniFile& ini, const QString& section);
    void Write(TIniFile& ini, const QString& section, bool all) const;
};

// An owning list of template entries, saved as sections "<Prefix>0", "<Prefix>1", ...
template <typename TItem> class TMseList {
public:
    int Count() const { return int(FItems.size()); }
    bool IsEmpty() const { return FItems.empty(); }
    TItem& operator[](int i) { return *FItems[size_t(i)]; }
    const TItem& operator[](int i) const { return *FItems[size_t(i)]; }
    TItem& Add() {
        FItems.push_back(std::make_unique<TItem>());
        return *FItems.back();
    }
    void Delete(int i) { FItems.erase(FItems.begin() + i); }
    void Clear() { FItems.clear(); }

    // Sections whose first characters equal the prefix exactly, in file order.
    QStringList Sections(const TIniFile& ini) const;
    // Replaces the list by the file's sections, each read in full.
    void Load(const TIniFile& ini);
    // Erases every section with the prefix, then writes one per entry, numbered from 0.
    void Save(TIniFile& ini, bool all) const;

protected:
    explicit TMseList(QString prefix) : FPrefix(std::move(prefix)) {}
    ~TMseList() = default;
    // Copies own their entries.
    TMseList(const TMseList& other) : FPrefix(other.FPrefix) { CopyItems(other); }
    TMseList& operator=(const TMseList& other) {
        if (this != &other) CopyItems(other);
        return *this;
    }
    TMseList(TMseList&&) noexcept = default;
    TMseList& operator=(TMseList&&) noexcept = default;

private:
    void CopyItems(const TMseList& other) {
        FItems.clear();
        for (const auto& item : other.FItems)
            FItems.push_back(std::make_unique<TItem>(*item));
    }

    QString FPrefix;
    std::vector<std::unique_ptr<TItem>> FItems;
};

class TMseSettingsCurveList : public TMseList<TMseSettingsCurve> {
public:
    TMseSettingsCurveList() : TMseList(QStringLiteral("Curve")) {}

    // Matches the file's curve sections to the curves of a recording: first by module and
    // channel (the title too), else by channel alone (keeping the curve's title). The first
    // matching section wins; a curve without a match keeps its settings.
    void Apply(const TIniFile& ini);
    // Loads into an empty list; matches against the curves when there are some.
    void LoadOrApply(const TIniFile& ini);
};

class TMseCalcList : public TMseList<TMseCalc> {
public:
    TMseCalcList() : TMseList(QStringLiteral("Calc")) {}
};

class TMseTextList : public TMseList<TMseText> {
public:
    TMseTextList() : TMseList(QStringLiteral("Text")) {}
};

class TMseTimeTextList : public TMseList<TMseTimeText> {
public:
    TMseTimeTextList() : TMseList(QStringLiteral("TimeText")) {}
};

class TMseSettings {
public:
    TMseSettings() { Clear(); }

    // "General"
    TOpt<QString> Title;
    TOpt<bool> ShowName;
    TOpt<QString> Foot;
    TOpt<bool> ShowTime;
    TOpt<int> OnlineRate;
    TOpt<int> DispTime;
    TOpt<bool> DispLimits;
    TOpt<bool> ViewCalc;
    TOpt<bool> ViewLimit;

    TMseFont FontTitle, FontAxes, FontLegend, FontText;
    TMseAxis AxisBottom, AxisLeft, AxisRight;
    TMseCursor Cursor1, Cursor2;
    TMsePrint Print;

    TMseSettingsCurveList Curves;
    TMseCalcList Calcs;
    TMseTextList Texts;
    TMseTimeTextList TimeTexts;

    // Every value back to its default and unset; every list emptied. The axis values a file
    // need not state default to: Min 0, Max 100, Inc 0 (automatic), Auto on for all three
    // axes; Grid on for the bottom and left axes, off for the right one; XType 2 (date and
    // time) for the bottom axis.
    void Clear();

    // The whole template. The general values take exactly what the file says (absent keys
    // unset); curves are loaded into an empty curve list or else matched to its curves; the
    // calculation and text lists are replaced when the file holds sections of their kind.
    // False when the file cannot be read; nothing changes then.
    bool OpenFile(const QString& fileName);
    // Writes into the file, keeping what else it holds; only set values unless all.
    // False when it cannot be written; the previous file is then untouched.
    bool SaveFile(const QString& fileName, bool all = false) const;

    // The curve or calculation sections alone, in a file of the same syntax.
    bool OpenCurveFile(const QString& fileName);
    bool SaveCurveFile(const QString& fileName, bool all = false) const;
    bool OpenCalcFile(const QString& fileName);
    bool SaveCalcFile(const QString& fileName, bool all = false) const;

    // The same on INI content already in memory.
    void Read(const TIniFile& ini);
    void Write(TIniFile& ini, bool all) const;

private:
    void ClearGeneral();
};
