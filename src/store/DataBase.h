#pragma once
// The measurement store: the one model every view and analysis reads. It owns the samples
// of each curve and the display template, and binds them by index: curve i of the store is
// entry i of the template's curve list and channel i of the file.
//
// While a file loads, the loader thread appends to the curves; the views must not read the
// samples until the final report (IsLoading() tells them).

#include "analysis/CalcKessa.h"
#include "config/DisplayKinds.h"
#include "config/MseSettings.h"
#include "data/CurveData.h"
#include "data/CurveSummary.h"
#include "data/Formats.h"
#include "store/TableRows.h"

#include <QObject>
#include <QStringList>

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

class TDataBase;

// The merged walk over all curves by time, for printing and export.
struct TDataPrintCurve {
    bool FActive = false;
    bool FMarked = false;
    int FCurve = 0;
    double FTime = 0.0;
    double FValue = 0.0;
    qint64 FIndex = 0;
    const TCurveData* FData = nullptr;

    void Load(); // the point at FIndex, or inactive past the end
};

class TDataPrintRow {
public:
    void Add(const TDataPrintCurve& c) { FCurves.push_back(c); }
    TDataPrintCurve& GetItem(int i) { return FCurves[size_t(i)]; }
    const TDataPrintCurve& GetItem(int i) const { return FCurves[size_t(i)]; }
    int Count() const { return int(FCurves.size()); }
    void Clear() {
        FCurves.clear();
        FTime = -1.0;
    }
    bool initialize();
    bool nextValues();
    double Time() const { return FTime; }

private:
    bool ChooseRow();
    std::vector<TDataPrintCurve> FCurves;
    double FTime = -1.0;
};

// A horizontal limit line of a curve, as the chart shows it.
struct TLimitLine {
    int Curve = 0;
    int Which = 1; // 1: at L1 (solid), 2: at L2 (dashed)
    double Value = 0.0;
};

// What the chart shows besides the curves: the store's own view state, which the chart
// reflects. The template holds the same values as optional ones (the Cfg_ operations).
struct TAxisState {
    QString Name;
    bool Auto = true;
    double Min = 0.0, Max = 100.0, Inc = 0.0; // Inc 0: automatic
    bool Grid = true;
    QString Format = QStringLiteral("0.000");
    TTimeAxisType XType = TTimeAxisType::DateTime; // the bottom axis only
};
struct TCursorState {
    int Axis = 0; // 0 left, 1 right
    int Width = 0;
    QString XFormat = QStringLiteral("0.000");
    QString YFormat = QStringLiteral("0.000");
};
struct TFontState {
    QString Name = QStringLiteral("Arial");
    int Size = 8;
    int Style = 0; // 0 normal, 1 bold, 2 italic, 3 bold+italic
};
struct TGeneralState {
    QString Title, Foot;
    bool ShowName = true, ShowTime = true;
    int OnlineRate = 1000, DispTime = 0;
    bool DispLimits = false, ViewCalc = false, ViewLimit = false;
    TFontState FontTitle, FontAxes, FontLegend, FontText;
};
struct TPrintState {
    bool Landscape = true;
    int MarginTop = 0, MarginLeft = 0, MarginRight = 0, MarginBottom = 0;
    bool Proportional = false;
    bool CheckBoxes = true; // the extended legend
};
// What the chart editor sets beyond the template's keys: kept while the program runs, not
// saved. Colours as the platform's values, 0x00BBGGRR.
enum class TLegendPosition : int { Right, Left, Top, Bottom };
struct TChartLook {
    int TitleColor = 0x000000;
    // The footer's font and colour; until set, the title's.
    bool FootFontSet = false;
    TFontState FootFont;
    int FootColor = -1;
    int Background = 0xFFFFFF;
    int PlotBackground = 0xFFFFFF;
    bool LegendVisible = true;
    TLegendPosition LegendPosition = TLegendPosition::Right; // beside, above or below the plot
    bool LegendFrame = true;
    bool AxisVisible[3] = {true, true, true};
    int GridColor[3] = {0xC8C8C8, 0xC8C8C8, 0xC8C8C8};
    // By axis: the line style as the curves' (0 solid, 1 dashed, 2 dotted, 3 dash-dotted) and
    // the width in pixels.
    int GridStyle[3] = {2, 2, 2};
    int GridWidth[3] = {1, 1, 1};
    std::vector<int> CurveStyle; // by curve: 0 solid, 1 dashed, 2 dotted, 3 dash-dotted
};
struct TViewState {
    TViewState() { Axes[2].Grid = false; } // the right axis draws no grid of its own
    TAxisState Axes[3]; // bottom, left, right
    TCursorState Cursors[2];
    TGeneralState General;
    TPrintState Print;
    TChartLook Look;
};
enum TAxisId : int { axBottom = 0, axLeft = 1, axRight = 2 };

// Receives a walk into the store. The loader thread derives from it for progress,
// cancelling and the large-file question.
class TStoreReceiver : public TRecordingReceiver {
public:
    explicit TStoreReceiver(TDataBase& db) : FDb(db) {}
    void SetCreator(const QString& creator) override;
    void SetStartTime(double days) override;
    void AddCurve(const QString& moduleName) override;
    void SetChannelName(int curve, const QString& name) override;
    void SetUnit(int curve, const QString& unit) override;
    void SetLoggerName(int curve, const QString& name) override;
    void LoggerNamesDone() override;
    void SetZebName(const QString& name) override;
    void SetLimits(int curve, quint16 alarm, quint16 record, double value1, double value2) override;
    void ClearAllLimits() override;
    void SetReaderMarker() override;
    void AddPoints(int curve, std::span<const double> times, std::span<const double> values,
                   std::span<const TPointKind> kinds) override;
    TCurveData* Column(int curve) override;

protected:
    TDataBase& FDb;
};

class TDataBase : public QObject {
    Q_OBJECT
public:
    static constexpr int kTableRows = TTableRows::kMaxRows;
    static constexpr qint64 kBigDataPoints = 1000001;

    explicit TDataBase(QObject* parent = nullptr);
    ~TDataBase() override;

    // ------------------------------------------------------------------ life
    // The store tells the views what changed (the signals below); nobody tells the views to
    // redraw.
    //
    // Forgets the recording: curves, names, flags, table rows; the template keeps its
    // general settings and loses its curves. The views let go of the samples.
    void Reset();
    // A new file is about to be read into the store.
    void AddFile(const QString& fileName);
    // What follows a load that failed or was cancelled: the samples read stay and are shown
    // (large curves reduced, so a cancelled huge file stays responsive); the file is gone.
    void FinishPartialLoad();
    // Removes the curves that hold no point, with their template entries.
    void DeleteEmptyCurves();
    // What follows a complete load, in the window and without one: empty curves go, large ones
    // are drawn reduced, the loggers decide the extended view, the first curve goes on the
    // left axis, and the display settings are read: the recording's own settings file, else
    // the default template named in the settings, else the store's defaults. The table starts
    // at the first time.
    void FinishLoad();
    // The settings file of a recording: same name, template extension.
    static QString SettingsFileOf(const QString& dataFile);
    void SetLoading(bool loading) { FLoading = loading; }
    bool IsLoading() const { return FLoading; }

    QString FileName() const { return FFileName; }
    QString Creator() const { return FCreator; }
    double StartTime() const { return FStartTime; } // days since 1 January 2000
    QString ModulName() const { return FModulName; }
    QString LoggerName() const { return FLoggerName; }
    QString ZebName() const { return FZebName; }
    int Mode() const { return FMode; }
    bool ReaderMarker() const { return FReaderMarker; }
    void SetReaderMarker(bool on) { FReaderMarker = on; }
    const QStringList& StartTimeText() const { return FStartTimeText; }
    const QStringList& NameText() const { return FNameText; }

    TMseSettings& Settings() { return FSettings; }
    const TMseSettings& Settings() const { return FSettings; }
    const TCurveData& Data(int curve) const { return FCurves[size_t(curve)]->Data; }
    TCurveData& Data(int curve) { return FCurves[size_t(curve)]->Data; }
    qint64 ValueCount() const;
    // The block summary of a curve, made on first use after a load and shared by the chart
    // and the analyses; none while the loader fills the store.
    std::shared_ptr<const TCurveSummary> Summary(int curve) const;

    // ------------------------------------------------------------------ curves
    int Curve_Count() const { return int(FCurves.size()); }
    bool Curve_IsValid(int curve) const { return curve >= 0 && curve < Curve_Count(); }
    bool Curve_IsActive(int curve) const { return Curve_IsValid(curve) && FCurves[size_t(curve)]->Active; }
    bool Curve_IsAvailable(int curve) const { return Curve_IsActive(curve) && !Data(curve).IsEmpty(); }
    void Curve_SetActive(int curve, bool active);
    // The curve's channel in the data file, which differs from its index once empty
    // channels were dropped after the load.
    int Curve_FileChannel(int curve) const { return Curve_IsValid(curve) ? FCurves[size_t(curve)]->FileChannel : -1; }
    QString Curve_NameGet(int curve) const;
    void Curve_NameSet(int curve, const QString& name);
    QString Curve_UnitGet(int curve) const;
    QString Curve_NameUnitGet(int curve) const;
    QString Curve_LoggernameGet(int curve) const;
    QString Curve_SNumberGet(int curve) const;
    int Curve_ColorGet(int curve) const;
    void Curve_ColorSet(int curve, int color);
    int Curve_WidthGet(int curve) const;
    void Curve_WidthSet(int curve, int width);
    TCurveType Curve_TypeGet(int curve) const;
    void Curve_TypeSet(int curve, TCurveType type);
    int Curve_AxisGet(int curve) const;
    void Curve_AxisSet(int curve, int axis);
    QString Curve_FormatGet(int curve) const;
    void Curve_FormatSet(int curve, const QString& format);
    // Limit lines of one curve or of all, shown or hidden; the lines themselves stay. The
    // global switch (the Graph menu's "Limits", the table's red values) is the last one set
    // for all; each curve keeps its own.
    void Curve_SetLimitLines(int curve, bool on);
    bool Curve_LimitLinesOn(int curve) const;
    void Curve_SetAllLimitLines(bool on);
    // The position of a curve's limit line (which 1 or 2) among the lines; -1 for none.
    int LimitLineIndex(int curve, int which) const;
    void ClearLimitLines();
    const std::vector<TLimitLine>& LimitLines() const { return FLimitLines; }
    bool LimitLinesOn() const { return FLimitsOn; }
    bool IsUsedAxis(int axis) const;
    bool IsFlowCurve(int curve) const;
    bool ExistsFlowModul() const;
    bool Curve_isBigDataOn(int curve) const { return Curve_IsValid(curve) && FCurves[size_t(curve)]->BigDataOn; }

    static QString AddUnit(const QString& name, const QString& unit);

    // ------------------------------------------------------------------ view state
    // The live values (Axis_, Cursor_, General_, Print_, Look_) and their template
    // counterparts (Cfg_...): the template's values are optional, and a Cfg_ setter marks them
    // set. The store owns the visible range: the chart shows it and reports a zoom or pan
    // through Axis_SetRange.
    TAxisState& Axis_Get(int axis) { return FView.Axes[std::clamp(axis, 0, 2)]; }
    const TAxisState& Axis_Get(int axis) const { return FView.Axes[std::clamp(axis, 0, 2)]; }
    // Sets the visible ranges of the three axes (bottom, left, right) at once;
    // viewRangeChanged when any differs.
    struct TAxisRange {
        bool Auto = true;
        double Min = 0.0, Max = 0.0;
    };
    void Axis_SetRanges(const TAxisRange (&ranges)[3]);
    TCursorState& Cursor_Get(int cursor) { return FView.Cursors[std::clamp(cursor, 0, 1)]; }
    const TCursorState& Cursor_Get(int cursor) const { return FView.Cursors[std::clamp(cursor, 0, 1)]; }
    TGeneralState& General_Get() { return FView.General; }
    const TGeneralState& General_Get() const { return FView.General; }
    TPrintState& Print_Get() { return FView.Print; }
    const TPrintState& Print_Get() const { return FView.Print; }
    TChartLook& Look_Get() { return FView.Look; }
    const TChartLook& Look_Get() const { return FView.Look; }
    TMseAxis& Cfg_Axis_Get(int axis);
    TMseCursor& Cfg_Cursor_Get(int cursor) { return cursor == 0 ? FSettings.Cursor1 : FSettings.Cursor2; }
    TMseSettingsCurve& Cfg_Curve_Get(int curve) { return Cfg(curve); }
    TMsePrint& Cfg_Print_Get() { return FSettings.Print; }
    // The font of the text notices, live and in the template.
    void SetTextFont(const TFontState& font);

    // ------------------------------------------------------------------ template
    // Opens a template and applies what it sets; false when it cannot be read.
    bool Ini_FileOpen(const QString& fileName);
    // Takes the live view into the template and writes it; false when it cannot be written.
    bool Ini_FileSave(const QString& fileName);
    // The live view into the template (every value set).
    void Ini_Store();
    // The template's set values onto the live view.
    void Ini_Update();
    // Every curve's title back to its channel's own name.
    void Ini_CreateOriginalNames();

    // ------------------------------------------------------------------ time
    void GetXMinXMax(double& min, double& max, bool onlyActive) const;
    static QString GetXValueStr(zeb::TTimeKind kind, double time);

    // ------------------------------------------------------------------ table view
    int Table_GetMaxRows() const { return kTableRows; }
    void Table_SetFirstRow(double time);
    // Moves the first row by whole rows of the merged time stamps (negative: back).
    void Table_MoveFirstRow(int rows);
    void Table_RecalcFirstRow();
    double Table_GetFirstTime() const { return FTable.FirstTime(); }
    int Table_RowCount() const { return FTable.Count(); }
    QString Table_GetTime(int row) const;
    double Table_GetTimeValue(int row) const;
    QString Table_GetValue(int curve, int row) const;
    bool Table_IsAlarm(int curve, int row) const;

    // ------------------------------------------------------------------ big data
    void CheckBigData();
    bool isBigData() const { return FIsBigData; }
    bool isBigDataOn() const { return FIsBigDataOn; }
    void switchBigData(bool on);
    bool setBigData(int curve, bool on);

    // ------------------------------------------------------------------ chart support
    // Changes whenever the samples are thrown away (a reset, a new file), so a view that keeps
    // something derived from them, or a pointer into them, can tell that it is stale.
    quint64 SamplesGeneration() const { return FSamplesGeneration; }
    // The extended view: level 2 when the curves come from two or more loggers (different
    // serial numbers), so the legend and the curve table name the logger of each curve;
    // 0 otherwise.
    void CheckExtView();
    int ExtView() const { return FExtView; }

    // ------------------------------------------------------------------ configuration page
    // The live values that one tab of the configuration page shows back into the template
    // (0 general, 2..4 bottom, left and right axis, 5 the cursors), undoing what the tab wrote
    // since the template was last applied. The curves (tab 1) have no live copy: their values
    // are only marked as chosen.
    void Ini_Store(int tab);

    // An editor of the display settings (the configuration page, a menu switch, the chart
    // editor) has finished a change; the views hear it as settingsChanged.
    void Cfg_Changed() { Q_EMIT settingsChanged(); }

    // The additional flow channel, defined on one of the curves.
    TCalcKessa& CalcKessa() { return FCalcKessa; }
    const TCalcKessa& CalcKessa() const { return FCalcKessa; }
    // Sets the channel; the views hear it as a settings change.
    void SetCalcKessa(bool active, int curve, const QString& name, const QString& unit, double factor,
                      double offset);

Q_SIGNALS:
    // A new recording is about to be read: the views let go of the samples and show none of
    // them until samplesReplaced.
    void samplesReleased();
    // A load ended, complete or not: curves, settings and table rows are new.
    void samplesReplaced();
    // The table's first row moved.
    void tableMoved();
    // Display settings changed: a template applied, limit lines or reduction switched, the
    // flow channel set, an editor finished.
    void settingsChanged();
    // The visible range of the axes changed (Axis_SetRanges: a zoom, a pan).
    void viewRangeChanged();

private:
    friend class TStoreReceiver;
    struct TCurve {
        TCurveData Data;
        bool Active = true;
        bool BigDataOn = false;
        bool LimitsShown = true;
        int FileChannel = -1;
        mutable std::shared_ptr<const TCurveSummary> Summary; // of Data as it was at SummaryCount
        mutable qint64 SummaryCount = -1;
    };
    const TMseSettingsCurve& Cfg(int curve) const { return FSettings.Curves[curve]; }
    TMseSettingsCurve& Cfg(int curve) { return FSettings.Curves[curve]; }
    void AddLimitLines(int curve);
    static constexpr int kLastSyncTab = 6;
    void SyncTab(int tab, bool store);

    TMseSettings FSettings;
    TViewState FView;
    std::vector<std::unique_ptr<TCurve>> FCurves;
    TTableRows FTable;
    double FStartTime = 0.0;
    QString FFileName, FCreator, FModulName, FLoggerName, FZebName;
    QStringList FStartTimeText, FNameText;
    int FMode = 0;
    bool FReaderMarker = false;
    bool FIsBigData = false;
    bool FIsBigDataOn = false;
    std::atomic<bool> FLoading = false;
    bool FLimitsOn = true;
    std::vector<TLimitLine> FLimitLines;
    quint64 FSamplesGeneration = 0;
    int FExtView = 0;
    TCalcKessa FCalcKessa;
    // Set while a load is finished: the template it applies is part of the new samples, not
    // a settings change of its own.
    bool FFinishing = false;
};
