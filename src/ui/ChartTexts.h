#pragma once
// The texts a user writes onto the chart: free text boxes placed anywhere (the template's
// "Text" sections: a text and a pixel position) and notices anchored to a time and a value
// on the left axis (its "TimeText" sections), drawn as marks beside their invisible points.
// Both live in the store's display template; this class draws them and edits them, and the
// chart hands it the mouse while the text-modify button is down.

#include <QObject>
#include <QPoint>
#include <QSize>
#include <QPointer>

#include <vector>

class QCPItemLine;
class QCPItemText;
class QCPItemTracer;
class QCustomPlot;
class QMenu;
class QMouseEvent;
class TCrossHair;
class TDataBase;

class TMseTimeTextList;

// The notices whose time lies in [from, to], in time order (indices into the list); the report
// numbers them in this order, on its chart and in its table.
std::vector<int> NoticesInRange(const TMseTimeTextList& notices, double from, double to);

class TChartTexts : public QObject {
    Q_OBJECT
public:
    TChartTexts(TDataBase* db, QCustomPlot* chart, TCrossHair* crossHair, QObject* parent = nullptr);

    // A box's position is a pixel of the chart in the window. A drawing of another size (a
    // picture, the report, a print) places it at the same share of its width and height; a
    // chart that is in no window shown takes this size for the window's.
    static constexpr QSize kReferenceSize{1200, 800};
    QSize ReferenceSize() const;

    // Draws the template's texts anew (after a load, a template, a change of fonts).
    void Rebuild();
    // Places the boxes for a drawing of that size (the chart's own when empty), each inside it.
    void PlaceBoxes(QSize drawing = {});
    // The notice series: hidden at first and after every load.
    bool NoticesShown() const { return FShown; }
    void SetNoticesShown(bool shown);

    // The marks of these notices show their number in this order (1, 2, ...) instead of their
    // text, the others none; an empty order gives every mark its text back, as shown before.
    void NumberNotices(const std::vector<int>& order);

    // ---- the commands
    // A notice with the text at the top-left corner of what the chart shows.
    void InsertText(const QString& text);
    // A free box with the text at a pixel of the chart.
    void InsertBox(const QString& text, QPoint at);
    // Free boxes: "Delete", "Insert X1, Y1", "Insert X2, Y2", "Insert X2-X1, Y2-Y1" (0..3) on
    // the box of that index; an index out of range does nothing.
    void PopupMenuClick(int action, int box);
    // Notices: 0 change (the editor), 1 delete.
    void PopupMenu2Click(int action, int notice, QPoint at);
    // The editor of a notice (-1: a new one at the chart pixel); false when cancelled.
    bool EditNotice(int notice, QPoint at);
    // The input box of a free box at the mouse; false when cancelled.
    bool EditBox(int box, QPoint at);

    // ---- the mouse, while the text-modify button is down; true when the event was used
    bool MousePress(QMouseEvent* event);
    bool MouseMove(QMouseEvent* event);
    bool MouseRelease(QMouseEvent* event);
    bool MouseDoubleClick(QMouseEvent* event); // Text_OnDblClick

    // The first box, or notice mark, in order whose area holds the pixel; -1 for none.
    int BoxAt(QPoint p) const;
    int NoticeAt(QPoint p) const;
    int BoxCount() const;
    int NoticeCount() const;
    QCPItemText* BoxItem(int i) const { return FBoxes[size_t(i)]; }
    QCPItemText* NoticeItem(int i) const { return FMarks[size_t(i)]; }
    QMenu* PopupMenu1() const { return FPopup1; }
    QMenu* PopupMenu2() const { return FPopup2; }

Q_SIGNALS:
    // The texts changed: the window is modified.
    void modified();

private:
    void Changed();
    void PlaceBox(int i, QSize drawing = {});
    QPoint Global(QPoint chartPixel) const;

    TDataBase* FDb;
    QCustomPlot* FChart;
    TCrossHair* FCrossHair;
    bool FShown = false;
    std::vector<QCPItemText*> FBoxes;
    std::vector<QCPItemTracer*> FPoints;
    std::vector<QCPItemText*> FMarks;
    std::vector<QCPItemLine*> FLeaders;
    // Where each mark stands from its point, in pixels; kept while the notices stay the same.
    std::vector<QPoint> FOffsets;
    // What the mouse holds: a box or a mark, and where it was grabbed from its corner.
    enum class TDrag { None, Box, Mark } FDrag = TDrag::None;
    int FDragIndex = -1;
    QPoint FGrab;
    QMenu* FPopup1 = nullptr;
    QMenu* FPopup2 = nullptr;
    QMenu* FPopupNew = nullptr;
    int FMenuIndex = -1;
    QPoint FMenuAt;
};
