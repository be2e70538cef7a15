#include "store/DataBase.h"

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

// Colours of new curves (0x00BBGGRR), in the order the curves come.
constexpr int kPalette[] = {0x0000FF, 0x008000, 0xFF0000, 0x00A5FF, 0x800080, 0x808000, 0x008080, 0x4B0082,
                            0x2F6B55, 0xB469FF, 0x000080, 0x808080};

} // namespace

// ====================================================================== receiver

void TStoreReceiver::SetCreator(const QString& creator) { FDb.FCreator = creator; }

void TStoreReceiver::SetStartTime(double days) {
    FDb.FStartTime = days;
    FDb.FStartTimeText << zeb::Txt(zeb::TTextId::ChartStartTime) + QLatin1Char(' ') +
                              zeb::FormatTime(zeb::TTimeKind::DateTime, days * zeb::kSecondsPerDay);
}

void TStoreReceiver::AddCurve(const QString& moduleName) {
    const int index = FDb.Curve_Count();
    FDb.FCurves.push_back(std::make_unique<TDataBase::TCurve>());
    FDb.FCurves.back()->FileChannel = index;
    FDb.FCurves.back()->LimitsShown = FDb.FLimitsOn; // a new file starts as "Limits" was left
    TMseSettingsCurve& c = FDb.FSettings.Curves.Add();
    c.Axis.Reset(1);
    c.Color.Reset(kPalette[index % int(std::size(kPalette))]);
    c.sModulName.Set(moduleName);
    if (index == 0) FDb.FModulName = moduleName;
}

void TStoreReceiver::SetChannelName(int curve, const QString& name) { FDb.Cfg(curve).sChannelName.Set(name); }
void TStoreReceiver::SetUnit(int curve, const QString& unit) { FDb.Cfg(curve).sUnit = unit; }
void TStoreReceiver::SetLoggerName(int curve, const QString& name) { FDb.Cfg(curve).sLoggername = name; }

void TStoreReceiver::LoggerNamesDone() {
    FDb.FLoggerName = FDb.Curve_Count() > 0 ? FDb.Cfg(0).sLoggername : QString();
    FDb.FMode = 3;
}

void TStoreReceiver::SetZebName(const QString& name) {
    FDb.FZebName = name;
    FDb.FNameText << QStringLiteral("ZEB : ") + QLatin1Char(' ') + name;
}

void TStoreReceiver::SetLimits(int curve, quint16 alarm, quint16 record, double value1, double value2) {
    TMseSettingsCurve& c = FDb.Cfg(curve);
    c.LAlarm = alarm;
    c.LRecord = record;
    c.LValue1 = value1;
    c.LValue2 = value2;
    FDb.AddLimitLines(curve);
}

void TStoreReceiver::ClearAllLimits() {
    for (int i = 0; i < FDb.Curve_Count(); ++i) FDb.Cfg(i).LAlarm = 0;
    FDb.ClearLimitLines();
}

void TStoreReceiver::SetReaderMarker() { FDb.FReaderMarker = true; }

void TStoreReceiver::AddPoints(int curve, std::span<const double> times, std::span<const double> values,
                               std::span<const TPointKind> kinds) {
    FDb.Data(curve).Append(times, values, kinds);
}

TCurveData* TStoreReceiver::Column(int curve) { return &FDb.Data(curve); }

// ====================================================================== life

TDataBase::TDataBase(QObject* parent) : QObject(parent) {}
TDataBase::~TDataBase() = default;

void TDataBase::Reset() {
    Q_EMIT samplesReleased();
    ++FSamplesGeneration;
    FExtView = 0;
    FCurves.clear();
    FSettings.Curves.Clear();
    // Texts and notices belong to the recording they were written on.
    FSettings.Texts.Clear();
    FSettings.TimeTexts.Clear();
    FTable.Clear();
    FLimitLines.clear();
    FStartTime = 0.0;
    FCreator.clear();
    FModulName.clear();
    FLoggerName.clear();
    FZebName.clear();
    FStartTimeText.clear();
    FNameText.clear();
    FMode = 0;
    FReaderMarker = false;
    FIsBigData = false;
    FIsBigDataOn = false;
}

void TDataBase::AddFile(const QString& fileName) {
    Reset();
    FFileName = fileName;
}

void TDataBase::FinishLoad() {
    FFinishing = true;
    DeleteEmptyCurves();
    CheckBigData();
    CheckExtView();
    Ini_CreateOriginalNames();
    if (Curve_Count() > 0) Curve_AxisSet(0, axLeft);
    Ini_Store();
    const QString own = SettingsFileOf(FileName());
    const QString& templ = ZebSettings().TemplateFile;
    if (!(QFileInfo(own).isFile() && Ini_FileOpen(own)) &&
        !(!templ.isEmpty() && QFileInfo(templ).isFile() && Ini_FileOpen(templ)))
        Ini_Update();
    double first = 0.0, last = 0.0;
    GetXMinXMax(first, last, false);
    Table_SetFirstRow(first);
    FFinishing = false;
    Q_EMIT samplesReplaced();
}

void TDataBase::FinishPartialLoad() {
    FFileName.clear();
    CheckBigData();
    Table_SetFirstRow(0.0);
    Q_EMIT samplesReplaced();
}

void TDataBase::SetCalcKessa(bool active, int curve, const QString& name, const QString& unit, double factor,
                             double offset) {
    FCalcKessa.setCalcCurve(active, curve, name, unit, factor, offset);
    Q_EMIT settingsChanged();
}

QString TDataBase::SettingsFileOf(const QString& dataFile) {
    const QFileInfo fi(dataFile);
    return fi.dir().filePath(fi.completeBaseName() + ZebSettings().MseFileExt);
}

void TDataBase::DeleteEmptyCurves() {
    for (int i = Curve_Count() - 1; i >= 0; --i) {
        if (!Data(i).IsEmpty()) continue;
        FCurves.erase(FCurves.begin() + i);
        FSettings.Curves.Delete(i);
        std::erase_if(FLimitLines, [i](const TLimitLine& l) { return l.Curve == i; });
        for (TLimitLine& l : FLimitLines)
            if (l.Curve > i) --l.Curve;
    }
    FTable.Clear();
}

std::shared_ptr<const TCurveSummary> TDataBase::Summary(int curve) const {
    if (!Curve_IsValid(curve) || IsLoading()) return nullptr;
    const TCurve& c = *FCurves[size_t(curve)];
    // Samples change only while a load runs; after it the count tells a stale summary.
    if (!c.Summary || c.SummaryCount != c.Data.Count()) {
        c.Summary = std::make_shared<const TCurveSummary>(c.Data);
        c.SummaryCount = c.Data.Count();
    }
    return c.Summary;
}

qint64 TDataBase::ValueCount() const {
    qint64 n = 0;
    for (const auto& c : FCurves) n += c->Data.Count();
    return n;
}

// ====================================================================== curves

void TDataBase::Curve_SetActive(int curve, bool active) {
    if (Curve_IsValid(curve)) FCurves[size_t(curve)]->Active = active;
}

QString TDataBase::Curve_NameGet(int curve) const {
    if (!Curve_IsValid(curve)) return {};
    const TMseSettingsCurve& c = Cfg(curve);
    if (!c.Title.Value.isEmpty()) return c.Title.Value;
    if (!c.sChannelName.Value.isEmpty()) return c.sChannelName.Value;
    return c.sModulName.Value;
}

void TDataBase::Curve_NameSet(int curve, const QString& name) {
    if (Curve_IsValid(curve)) Cfg(curve).Title.Set(name);
}

QString TDataBase::Curve_UnitGet(int curve) const { return Curve_IsValid(curve) ? Cfg(curve).sUnit : QString(); }

QString TDataBase::AddUnit(const QString& name, const QString& unit) {
    return unit.isEmpty() ? name : name + QStringLiteral(" [") + unit + QLatin1Char(']');
}

QString TDataBase::Curve_NameUnitGet(int curve) const { return AddUnit(Curve_NameGet(curve), Curve_UnitGet(curve)); }

QString TDataBase::Curve_LoggernameGet(int curve) const {
    return Curve_IsValid(curve) ? Cfg(curve).sLoggername : QString();
}

QString TDataBase::Curve_SNumberGet(int curve) const {
    return Curve_IsValid(curve) ? Cfg(curve).sModulName.Value : QString();
}

#define ZEB_CURVE_PROP(Name, Field, Type, Fallback)                                                          \
    Type TDataBase::Curve_##Name##Get(int curve) const {                                                     \
        return Curve_IsValid(curve) ? Cfg(curve).Field.Value : Fallback;                                     \
    }                                                                                                        \
    void TDataBase::Curve_##Name##Set(int curve, Type value) {                                               \
        if (Curve_IsValid(curve)) Cfg(curve).Field.Set(value);                                               \
    }
ZEB_CURVE_PROP(Color, Color, int, 0)
ZEB_CURVE_PROP(Width, Width, int, 1)
ZEB_CURVE_PROP(Axis, Axis, int, 0)
#undef ZEB_CURVE_PROP

TCurveType TDataBase::Curve_TypeGet(int curve) const {
    return Curve_IsValid(curve) ? TCurveType(Cfg(curve).Type.Value) : TCurveType::Line;
}

void TDataBase::Curve_TypeSet(int curve, TCurveType type) {
    if (Curve_IsValid(curve)) Cfg(curve).Type.Set(int(type));
}

QString TDataBase::Curve_FormatGet(int curve) const {
    return Curve_IsValid(curve) ? Cfg(curve).Format.Value : QStringLiteral("0.000");
}

void TDataBase::Curve_FormatSet(int curve, const QString& format) {
    if (Curve_IsValid(curve)) Cfg(curve).Format.Set(format);
}

void TDataBase::AddLimitLines(int curve) {
    // Mode 1 and 2 test against L1 only; 3 and 4 need both lines.
    TMseSettingsCurve& c = Cfg(curve);
    std::erase_if(FLimitLines, [curve](const TLimitLine& l) { return l.Curve == curve; });
    if (c.LAlarm >= 1 && c.LAlarm <= 4) FLimitLines.push_back({curve, 1, c.LValue1});
    if (c.LAlarm == 3 || c.LAlarm == 4) FLimitLines.push_back({curve, 2, c.LValue2});
}

void TDataBase::Curve_SetLimitLines(int curve, bool on) {
    if (Curve_IsValid(curve)) FCurves[size_t(curve)]->LimitsShown = on;
}

// A curve's own switch: the global one only sets them all, so a legend click can bring one
// curve's lines back after all were switched off.
bool TDataBase::Curve_LimitLinesOn(int curve) const {
    return Curve_IsValid(curve) && FCurves[size_t(curve)]->LimitsShown;
}

void TDataBase::Curve_SetAllLimitLines(bool on) {
    FLimitsOn = on;
    for (auto& c : FCurves) c->LimitsShown = on;
    Q_EMIT settingsChanged();
}

void TDataBase::ClearLimitLines() {
    FLimitLines.clear();
}

int TDataBase::LimitLineIndex(int curve, int which) const {
    for (size_t k = 0; k < FLimitLines.size(); ++k)
        if (FLimitLines[k].Curve == curve && FLimitLines[k].Which == which) return int(k);
    return -1;
}

bool TDataBase::IsUsedAxis(int axis) const {
    for (int i = 0; i < Curve_Count(); ++i)
        if (Curve_IsActive(i) && Curve_AxisGet(i) == axis) return true;
    return false;
}

// A flow curve measures litres per minute, as the flow total (litres, the integral over
// seconds divided by 60) needs: its unit, without blanks and of either case, is "l/min",
// "ltr/min", "liter/min", "litre/min" or "lpm".
bool TDataBase::IsFlowCurve(int curve) const {
    if (!Curve_IsValid(curve)) return false;
    QString unit = Curve_UnitGet(curve).toLower();
    unit.remove(QLatin1Char(' '));
    static const QStringList kLitresPerMinute = {QStringLiteral("l/min"), QStringLiteral("ltr/min"),
                                                 QStringLiteral("liter/min"), QStringLiteral("litre/min"),
                                                 QStringLiteral("lpm")};
    return kLitresPerMinute.contains(unit);
}

bool TDataBase::ExistsFlowModul() const {
    for (int i = 0; i < Curve_Count(); ++i)
        if (IsFlowCurve(i)) return true;
    return false;
}

// ====================================================================== time

void TDataBase::GetXMinXMax(double& min, double& max, bool onlyActive) const {
    bool first = true;
    min = max = 0.0;
    for (int i = 0; i < Curve_Count(); ++i) {
        if (onlyActive && !Curve_IsActive(i)) continue;
        const TCurveData& d = Data(i);
        if (d.IsEmpty()) continue;
        // Times are ascending, so the ends are the extremes.
        if (first) {
            min = d.FirstTime();
            max = d.LastTime();
            first = false;
        } else {
            min = std::min(min, d.FirstTime());
            max = std::max(max, d.LastTime());
        }
    }
}

QString TDataBase::GetXValueStr(zeb::TTimeKind kind, double time) { return zeb::FormatTime(kind, time); }

// ====================================================================== table rows

void TDataBase::Table_SetFirstRow(double time) {
    FTable.SetFirstRow(*this, time);
    Q_EMIT tableMoved();
}

void TDataBase::Table_MoveFirstRow(int rows) {
    FTable.MoveFirstRow(*this, rows);
    Q_EMIT tableMoved();
}

void TDataBase::Table_RecalcFirstRow() { Table_SetFirstRow(FTable.FirstTime()); }

QString TDataBase::Table_GetTime(int row) const { return FTable.IsRow(row) ? GetXValueStr(zeb::TTimeKind::DateTimeMs, FTable.Time(row)) : QString(); }

double TDataBase::Table_GetTimeValue(int row) const { return FTable.IsRow(row) ? FTable.Time(row) : 0.0; }

QString TDataBase::Table_GetValue(int curve, int row) const {
    if (!FTable.IsRow(row) || !Curve_IsValid(curve)) return {};
    const qint64 i = FTable.Index(row, curve);
    if (i < 0 || Data(curve).IsGap(i)) return {};
    return zeb::FormatFloat(Curve_FormatGet(curve), Data(curve).Value(i));
}

bool TDataBase::Table_IsAlarm(int curve, int row) const {
    if (!FTable.IsRow(row) || !Curve_IsValid(curve)) return false;
    const qint64 i = FTable.Index(row, curve);
    if (i < 0 || Data(curve).IsGap(i)) return false;
    return Cfg(curve).IsAlarm(Data(curve).Value(i));
}

// ====================================================================== merged walk

void TDataPrintCurve::Load() {
    FActive = FData && FIndex < FData->Count();
    if (FActive) {
        FTime = FData->Time(FIndex);
        FValue = FData->Value(FIndex);
    }
}

bool TDataPrintRow::ChooseRow() {
    FTime = -1.0;
    bool any = false;
    for (const TDataPrintCurve& c : FCurves) {
        if (!c.FActive) continue;
        if (!any || c.FTime < FTime) FTime = c.FTime;
        any = true;
    }
    if (!any) return false;
    bool marked = false;
    for (TDataPrintCurve& c : FCurves) {
        c.FMarked = c.FActive && c.FTime == FTime;
        marked = marked || c.FMarked;
    }
    return marked;
}

bool TDataPrintRow::initialize() {
    for (TDataPrintCurve& c : FCurves) {
        c.FIndex = 0;
        c.FMarked = false;
        c.Load();
    }
    return ChooseRow();
}

bool TDataPrintRow::nextValues() {
    for (TDataPrintCurve& c : FCurves) {
        if (!c.FMarked) continue;
        c.FMarked = false;
        ++c.FIndex;
        c.Load();
    }
    return ChooseRow();
}

// ====================================================================== big data

bool TDataBase::setBigData(int curve, bool on) {
    if (!Curve_IsValid(curve)) return false;
    TCurve& c = *FCurves[size_t(curve)];
    c.BigDataOn = on && c.Data.Count() >= kBigDataPoints;
    return c.BigDataOn;
}

void TDataBase::CheckBigData() {
    FIsBigData = FIsBigDataOn = false;
    bool any = false;
    for (int i = 0; i < Curve_Count(); ++i) any = setBigData(i, true) || any;
    FIsBigData = FIsBigDataOn = any;
}

void TDataBase::switchBigData(bool on) {
    if (!FIsBigData) return;
    bool any = false;
    for (int i = 0; i < Curve_Count(); ++i) any = setBigData(i, on) || any;
    FIsBigDataOn = any;
    Q_EMIT settingsChanged();
}

// ====================================================================== view state and template

void TDataBase::Axis_SetRanges(const TAxisRange (&ranges)[3]) {
    bool changed = false;
    for (int axis = 0; axis < 3; ++axis) {
        TAxisState& a = FView.Axes[axis];
        const TAxisRange& r = ranges[axis];
        if (a.Auto == r.Auto && a.Min == r.Min && a.Max == r.Max) continue;
        a.Auto = r.Auto;
        a.Min = r.Min;
        a.Max = r.Max;
        changed = true;
    }
    if (changed) Q_EMIT viewRangeChanged();
}

TMseAxis& TDataBase::Cfg_Axis_Get(int axis) {
    switch (axis) {
    case axLeft: return FSettings.AxisLeft;
    case axRight: return FSettings.AxisRight;
    default: return FSettings.AxisBottom;
    }
}

namespace {

// One two-way mapping between the live view and the template, so that applying a template
// and storing the view can never disagree on which value goes where.
struct TSync {
    bool Store; // true: live view into the template; false: the template's set values onto the view
    template <typename T> void operator()(TOpt<T>& o, T& v) const {
        if (Store) o.Set(v);
        else o.ApplyTo(v);
    }
    // The view gets only what it can use. Stored back, a template value that the view shows
    // limited stays as the file had it, so saving writes back what was read.
    void operator()(TOpt<int>& o, int& v, TMseRange range) const {
        if (!Store) {
            if (o.IsSet) v = range(o.Value);
        } else if (!o.IsSet || range(o.Value) != v) {
            o.Set(v);
        }
    }
    // An enum of the view kept in the template by its number.
    template <typename E>
        requires std::is_enum_v<E>
    void operator()(TOpt<int>& o, E& v, TMseRange range) const {
        int n = int(v);
        (*this)(o, n, range);
        v = E(n);
    }
    void Font(TMseFont& f, TFontState& s) const {
        (*this)(f.Name, s.Name);
        (*this)(f.Size, s.Size, kMseFontSize);
        (*this)(f.Style, s.Style, kMseFontStyle);
    }
};

} // namespace

// Tabs 0..5 as the configuration page shows them; tab 6 holds what no tab shows.
void TDataBase::SyncTab(int tab, bool store) {
    const TSync sync{store};
    TGeneralState& g = FView.General;
    switch (tab) {
    case 0:
        sync(FSettings.Title, g.Title);
        sync(FSettings.ShowName, g.ShowName);
        sync(FSettings.Foot, g.Foot);
        sync(FSettings.ShowTime, g.ShowTime);
        sync.Font(FSettings.FontTitle, g.FontTitle);
        sync.Font(FSettings.FontAxes, g.FontAxes);
        sync.Font(FSettings.FontLegend, g.FontLegend);
        sync.Font(FSettings.FontText, g.FontText);
        break;
    case 1:
        // The curves' display values live in the template already; storing marks them chosen.
        // The chart reads them from there, so applying limits them in place.
        for (int i = 0; i < Curve_Count(); ++i) {
            TMseSettingsCurve& c = Cfg(i);
            if (store) {
                for (auto* o : {&c.Axis, &c.Color, &c.Width, &c.Type}) o->Set(o->Value);
                c.Format.Set(c.Format.Value);
            } else {
                c.Axis.Value = kMseCurveAxis(c.Axis.Value);
                c.Width.Value = kMseLineWidth(c.Width.Value);
                c.Type.Value = kMseCurveType(c.Type.Value);
            }
        }
        break;
    case 2:
    case 3:
    case 4: {
        const int a = tab - 2;
        TMseAxis& c = Cfg_Axis_Get(a);
        TAxisState& v = FView.Axes[a];
        sync(c.Name, v.Name);
        sync(c.Min, v.Min);
        sync(c.Max, v.Max);
        sync(c.Inc, v.Inc);
        sync(c.Format, v.Format);
        sync(c.Auto, v.Auto);
        if (a == axBottom) sync(c.XType, v.XType, kMseXType);
        break;
    }
    case 5:
        for (int k = 0; k < 2; ++k) {
            TMseCursor& c = Cfg_Cursor_Get(k);
            TCursorState& v = FView.Cursors[k];
            sync(c.Axis, v.Axis, kMseCursorAxis);
            sync(c.Width, v.Width, kMseCursorWidth);
            sync(c.XFormat, v.XFormat);
            sync(c.YFormat, v.YFormat);
        }
        break;
    case 6: {
        sync(FSettings.OnlineRate, g.OnlineRate, kMseOnlineRate);
        sync(FSettings.DispTime, g.DispTime);
        sync(FSettings.DispLimits, g.DispLimits);
        sync(FSettings.ViewCalc, g.ViewCalc);
        sync(FSettings.ViewLimit, g.ViewLimit);
        for (int a = 0; a < 3; ++a) sync(Cfg_Axis_Get(a).Grid, FView.Axes[a].Grid);
        TMsePrint& p = FSettings.Print;
        TPrintState& ps = FView.Print;
        sync(p.Landscape, ps.Landscape);
        sync(p.MarginTop, ps.MarginTop, kMseMargin);
        sync(p.MarginLeft, ps.MarginLeft, kMseMargin);
        sync(p.MarginRight, ps.MarginRight, kMseMargin);
        sync(p.MarginBottom, ps.MarginBottom, kMseMargin);
        sync(p.Proportional, ps.Proportional);
        sync(p.CheckBoxes, ps.CheckBoxes);
        break;
    }
    default: break;
    }
}

void TDataBase::Ini_Update() {
    for (int tab = 0; tab <= kLastSyncTab; ++tab) SyncTab(tab, false);
}

void TDataBase::Ini_Store() {
    for (int tab = 0; tab <= kLastSyncTab; ++tab) SyncTab(tab, true);
}

void TDataBase::Ini_Store(int tab) {
    if (tab >= 0 && tab <= 5) SyncTab(tab, true);
}

void TDataBase::SetTextFont(const TFontState& font) {
    FView.General.FontText = font;
    TSync{true}.Font(FSettings.FontText, FView.General.FontText);
}

bool TDataBase::Ini_FileOpen(const QString& fileName) {
    if (!FSettings.OpenFile(fileName)) return false;
    Ini_Update();
    if (!FFinishing) Q_EMIT settingsChanged();
    return true;
}

bool TDataBase::Ini_FileSave(const QString& fileName) {
    Ini_Store();
    return FSettings.SaveFile(fileName);
}

void TDataBase::Ini_CreateOriginalNames() {
    for (int i = 0; i < Curve_Count(); ++i) {
        TMseSettingsCurve& c = Cfg(i);
        c.Title.Set(c.sChannelName.Value.isEmpty() ? c.sModulName.Value : c.sChannelName.Value);
    }
}

// ====================================================================== chart support

void TDataBase::CheckExtView() {
    QStringList serials;
    for (int i = 0; i < Curve_Count(); ++i) {
        const QString s = Curve_SNumberGet(i);
        if (!serials.contains(s)) serials << s;
    }
    FExtView = serials.size() > 1 ? 2 : 0;
}

