#pragma once
// The chart view: the store's curves on a time axis with left and right value axes, a
// legend, the curves' limit lines, the title, foot, start time and logger name texts, the
// two crosshair cursors and the mouse zoom and pan.
//
// The store is the model: Rebuild() reads everything from it (after a load and after a
// configuration change), and the chart writes back what the user changes in it (axis
// ranges by zoom and pan, grids, limit lines, series visibility).

#include "store/DataBase.h"
#include "ui/CurvePlottable.h"

#include <array>
#include <limits>
#include <memory>
#include <vector>

class QLabel;
class QScrollBar;
class TChartTexts;
class TCrossHair;
class TCurveData;
class TDataBase;
class TZoomAndScroll;

// Texts of times as the chart's axis and read-outs show them.
namespace ChartText {

// A relative pattern is built of '0', '+', ':' and '.', e.g. "0+00:00:00.000" (days+hours:
// minutes:seconds.milliseconds) or "000:00.000" (minutes:seconds.milliseconds).
bool IsRelativePattern(const QString& pattern);
// A time span in seconds by a relative pattern; '.' stands for the decimal separator.
QString RelativeTime(double seconds, const QString& pattern);
// A time span as the difference read-out shows it: hours:minutes:seconds with
// milliseconds, and days in front once the span reaches a day.
QString Duration(double seconds);
// A date-time pattern of the configuration page ("dd.mm.yy hh:mm:ss", with 'm' for minutes
// after hours and for months elsewhere) in the form the formatter takes; patterns that
// already tell months by 'M' stay as they are.
QString DatePattern(const QString& pattern);
bool IsDatePattern(const QString& pattern);
// Zero of the time-axis types that begin at 0: the first time of the recording.
double Origin(const TDataBase& db);
// The text of a time by the store's time-axis type: the store's time text of that kind for
// date and time, a span from the origin for the types that begin at 0 (with milliseconds for
// the kinds that have them). numberFormat serves the axis type in seconds.
QString XText(const TDataBase& db, zeb::TTimeKind kind, double x, const QString& numberFormat);
// The text of a difference of two times by the store's time-axis type.
QString XSpanText(const TDataBase& db, double dx, const QString& numberFormat);

} // namespace ChartText

class TZebChart : public QCustomPlot {
    Q_OBJECT
public:
    explicit TZebChart(TDataBase* db, QWidget* parent = nullptr);
    ~TZebChart() override;

    // Builds curves, axes, legend, limit lines and texts from the store.
    void Rebuild();
    // Draws anew.
    void Refresh();

    // Axis switches; axis 0 bottom, 1 left, 2 right, -1 all three.
    void SetGrid(int axis, bool on, bool store = true);
    bool Grid(int axis) const;
    void SetAxisFixed(int axis, bool fixed);
    bool IsAxisFixed(int axis) const;
    // Releases every fixed axis, then scales all axes to the data.
    void AutoScale();
    // One step back before the last zoom or auto scale.
    void Undo();
    bool IsUndoPossible() const;

    TDataBase* DataBase() const { return FDb; }
    TCrossHair* CrossHair() const { return FCrossHair; }
    TZoomAndScroll* Zoom() const { return FZoom; }
    // The free text boxes and notices.
    TChartTexts* Texts() const { return FTexts; }
    // While on, the mouse belongs to the texts (the text-modify button is down).
    void SetTextMode(bool on) { FTextMode = on; }
    bool TextMode() const { return FTextMode; }
    // The read-out panel below the chart ("panelX" with "Label1" to "Label6"); the main
    // window puts it into its layout and then owns it.
    QWidget* ReadoutPanel() const { return FPanel; }

    // Zoom, pan and crosshair dragging with the mouse; off while another tool owns the mouse.
    void SetMouseTools(bool on) { FMouseTools = on; }

    // The legend text of a curve: unit, serial number in the extended view, "* " when the
    // curve is drawn reduced.
    QString LegendText(int curve) const;
    // The label text of the time axis at a value, by the store's time-axis type.
    QString TimeAxisLabel(double value, double tickStep) const;
    // Zero of the time axis types that begin at 0: the first time of the recording.
    double TimeOrigin() const { return FOrigin; }

    TCurvePlottable* CurvePlottable(int curve) const;
    // The additional flow channel while it is drawn.
    TCurvePlottable* DerivedPlottable() const { return FDerived; }
    // The curve of a legend entry, -1 when there is none.
    int LegendCurve(int legendIndex) const;
    // Axis 0 bottom, 1 left, 2 right.
    QCPAxis* ChartAxis(int axis) const;
    const std::vector<TLimitLineItem*>& LimitLineItems() const { return FLimitItems; }
    // The legend's scroll bar, shown while not every entry fits.
    QScrollBar* LegendScrollBar() const { return FLegendBar; }
    QCPTextElement* TitleElement() const { return FTitle; }

Q_SIGNALS:
    // The user changed the view (zoom, pan, auto scale, undo, a limit or visibility switch).
    void modified();
    void statusText(const QString& text);
    // After a plain legend click has switched the curve's limit lines, or a click with
    // Shift, Alt or Ctrl has switched its visibility.
    void legendClicked(int curve, Qt::KeyboardModifiers modifiers);
    // Shift, Alt or Ctrl click on an element: the configuration tab that edits it.
    void elementClicked(int configTab);
    void undoAvailable(bool possible);
    // Grid or fixed-axis switches changed, for menu check marks and tool buttons.
    void switchesChanged();
    // Everything was built anew from the store: the curves shown may have changed.
    void rebuilt();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void updateLayout() override;

private:
    void OnSamplesReleased();
    void OnRangesChanged();
    void BuildLayout();
    void ApplyAxes(bool withData);
    void ApplyTexts();
    void ApplyLook();
    bool ElementClick(const QPoint& pos, Qt::KeyboardModifiers modifiers);
    int LegendCurveAt(const QPoint& pos) const;
    void FillLegend();
    int LegendRowsThatFit() const;
    QString ValueAxisTitle(int axis) const;

    void PlaceLegend(TLegendPosition position);
    TLegendPosition FLegendPlace = TLegendPosition::Right;
    TDataBase* FDb;
    TCrossHair* FCrossHair = nullptr;
    TZoomAndScroll* FZoom = nullptr;
    TChartTexts* FTexts = nullptr;
    bool FTextMode = false;
    QPointer<QWidget> FPanel;
    std::vector<TCurvePlottable*> FCurves; // by curve index, nullptr when not on the chart
    std::vector<TLimitLineItem*> FLimitItems;
    QCPTextElement* FTitle = nullptr;
    QCPTextElement* FFoot = nullptr;
    QCPTextElement* FStartText = nullptr;
    QCPTextElement* FNameText = nullptr;
    QCPLayoutGrid* FInfoRow = nullptr;
    QCPLayoutGrid* FMainRow = nullptr;
    QCPLayoutGrid* FLegendColumn = nullptr;
    QScrollBar* FLegendBar = nullptr;
    static constexpr int kDerivedEntry = -1;
    TCurvePlottable* FDerived = nullptr;
    std::vector<int> FLegendCurves; // the curves the legend lists, in order; kDerivedEntry the derived one
    int FLegendFirst = 0;           // the first of them shown
    int FLegendRows = std::numeric_limits<int>::max(); // how many fit
    int FLegendWheel = 0;
    quint64 FBuiltGeneration = ~quint64(0);
    double FOrigin = 0.0;
    bool FMouseTools = true;
    bool FShowData = true;
    int FDragCursor = -1;
    bool FPanning = false;
};

// While it lives, the chart looks as a document shows it: no crosshairs (nothing on paper
// reads them out), and the notices inside the time axis's range as numbered marks, numbered
// as NoticesInRange orders them so a table can list them by number. Undone when it goes.
class TDocumentLook {
public:
    explicit TDocumentLook(TZebChart* chart);
    ~TDocumentLook();
    TDocumentLook(const TDocumentLook&) = delete;
    TDocumentLook& operator=(const TDocumentLook&) = delete;

private:
    TZebChart* FChart;
};

