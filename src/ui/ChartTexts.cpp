#include "ui/ChartTexts.h"

#include "config/Texts.h"
#include "store/DataBase.h"
#include "ui/CrossHair.h"
#include "ui/CurvePlottable.h"
#include "ui/ZebDlg.h"

#include <QMenu>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

using zeb::TTextId;
using zeb::Txt;

namespace {

const QPoint kMarkOffset(12, 14); // a new mark stands right of and below its point

QFont TextFont(const TFontState& f) {
    QFont font(f.Name, std::max(1, f.Size));
    font.setBold(f.Style & 1);
    font.setItalic(f.Style & 2);
    return font;
}

QRect RectOf(const QCPItemText* item) {
    return QRectF(item->topLeft->pixelPosition(), item->bottomRight->pixelPosition()).toRect().normalized();
}

} // namespace

std::vector<int> NoticesInRange(const TMseTimeTextList& notices, double from, double to) {
    std::vector<int> in;
    for (int i = 0; i < notices.Count(); ++i)
        if (notices[i].X.Value >= from && notices[i].X.Value <= to) in.push_back(i);
    std::stable_sort(in.begin(), in.end(),
                     [&notices](int a, int b) { return notices[a].X.Value < notices[b].X.Value; });
    return in;
}

TChartTexts::TChartTexts(TDataBase* db, QCustomPlot* chart, TCrossHair* crossHair, QObject* parent)
    : QObject(parent), FDb(db), FChart(chart), FCrossHair(crossHair) {
    FPopup1 = new QMenu(chart);
    FPopup1->setObjectName(QStringLiteral("PopupMenu1"));
    const TTextId entries1[] = {TTextId::NoteDelete, TTextId::NoteInsertXY1, TTextId::NoteInsertXY2,
                                TTextId::NoteInsertDiff};
    for (int k = 0; k < 4; ++k) {
        QAction* a = FPopup1->addAction(Txt(entries1[k]));
        connect(a, &QAction::triggered, this, [this, k] { PopupMenuClick(k, FMenuIndex); });
    }
    FPopup2 = new QMenu(chart);
    FPopup2->setObjectName(QStringLiteral("PopupMenu2"));
    QAction* modify = FPopup2->addAction(Txt(TTextId::NoteModify));
    modify->setObjectName(QStringLiteral("pop2Modify"));
    connect(modify, &QAction::triggered, this, [this] { PopupMenu2Click(0, FMenuIndex, FMenuAt); });
    QAction* del = FPopup2->addAction(Txt(TTextId::NoteDelete));
    del->setObjectName(QStringLiteral("pop2Delete"));
    connect(del, &QAction::triggered, this, [this] { PopupMenu2Click(1, FMenuIndex, FMenuAt); });
    // Beyond the notices' own menu: a free box where the right button was pressed.
    FPopupNew = new QMenu(chart);
    FPopupNew->setObjectName(QStringLiteral("PopupMenuNew"));
    connect(FPopupNew->addAction(Txt(TTextId::NoteNewBox)), &QAction::triggered, this, [this] {
        QString text;
        if (zeb::TZebDlg::InputBox(Txt(TTextId::TextInsert), QString(), text, Global(FMenuAt)) && !text.isEmpty())
            InsertBox(text, FMenuAt);
    });
}

int TChartTexts::BoxCount() const {
    return int(FBoxes.size());
}

int TChartTexts::NoticeCount() const {
    return int(FMarks.size());
}

QPoint TChartTexts::Global(QPoint chartPixel) const {
    return FChart->mapToGlobal(chartPixel);
}

void TChartTexts::Changed() {
    Q_EMIT modified();
}

void TChartTexts::Rebuild() {
    for (auto* item : FBoxes)
        FChart->removeItem(item);
    for (auto* item : FMarks)
        FChart->removeItem(item);
    for (auto* item : FLeaders)
        FChart->removeItem(item);
    for (auto* item : FPoints)
        FChart->removeItem(item);
    FBoxes.clear();
    FMarks.clear();
    FLeaders.clear();
    FPoints.clear();
    const QFont font = TextFont(FDb->General_Get().FontText);

    const TMseTextList& boxes = FDb->Settings().Texts;
    for (int i = 0; i < boxes.Count(); ++i) {
        auto* b = new QCPItemText(FChart);
        b->position->setType(QCPItemPosition::ptAbsolute); // pixels of the chart
        b->setText(boxes[i].Text.Value);
        b->setFont(font);
        b->setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
        b->setTextAlignment(Qt::AlignLeft);
        b->setPadding(QMargins(4, 2, 4, 2));
        b->setPen(QPen(Qt::black));
        b->setBrush(Qt::white);
        b->setClipToAxisRect(false);
        b->setSelectable(false);
        FBoxes.push_back(b);
        PlaceBox(i);
    }

    const TMseTimeTextList& notices = FDb->Settings().TimeTexts;
    FOffsets.resize(size_t(notices.Count()), kMarkOffset);
    for (int i = 0; i < notices.Count(); ++i) {
        auto* point = new QCPItemTracer(FChart);
        point->setStyle(QCPItemTracer::tsNone);
        point->position->setType(QCPItemPosition::ptPlotCoords);
        point->position->setAxes(FChart->xAxis, FChart->yAxis);
        point->position->setCoords(notices[i].X.Value, notices[i].Y.Value);
        point->setSelectable(false);
        auto* mark = new QCPItemText(FChart);
        mark->position->setParentAnchor(point->position);
        mark->position->setCoords(FOffsets[size_t(i)]);
        mark->setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
        mark->setText(notices[i].Text.Value);
        mark->setFont(font);
        mark->setPadding(QMargins(4, 2, 4, 2));
        mark->setPen(QPen(QColor(120, 120, 120)));
        mark->setBrush(QColor(255, 250, 205));
        mark->setSelectable(false);
        auto* leader = new QCPItemLine(FChart);
        leader->start->setParentAnchor(point->position);
        leader->end->setParentAnchor(mark->topLeft);
        leader->setPen(QPen(QColor(120, 120, 120)));
        leader->setSelectable(false);
        for (QCPAbstractItem* item : std::initializer_list<QCPAbstractItem*>{point, mark, leader})
            item->setVisible(FShown);
        FPoints.push_back(point);
        FMarks.push_back(mark);
        FLeaders.push_back(leader);
    }
}

QSize TChartTexts::ReferenceSize() const {
    const QWidget* window = FChart->window();
    return window && window->isVisible() && !FChart->size().isEmpty() ? FChart->size() : kReferenceSize;
}

// A box keeps its place as a share of the drawing, pulled inside where its text would reach
// out, so it never disappears; it goes back to its place when the drawing grows again.
void TChartTexts::PlaceBox(int i, QSize drawing) {
    if (drawing.isEmpty()) drawing = FChart->viewport().size();
    const QSize reference = ReferenceSize();
    const TMseText& t = FDb->Settings().Texts[i];
    const QFontMetrics fm(FBoxes[size_t(i)]->font());
    const QSize size = fm.boundingRect(QRect(), Qt::AlignLeft, t.Text.Value).size() + QSize(8, 4);
    const int x = int(std::lround(double(t.X.Value) * drawing.width() / reference.width()));
    const int y = int(std::lround(double(t.Y.Value) * drawing.height() / reference.height()));
    FBoxes[size_t(i)]->position->setCoords(std::clamp(x, 0, std::max(0, drawing.width() - size.width())),
                                           std::clamp(y, 0, std::max(0, drawing.height() - size.height())));
}

void TChartTexts::PlaceBoxes(QSize drawing) {
    for (int i = 0; i < int(FBoxes.size()) && i < FDb->Settings().Texts.Count(); ++i)
        PlaceBox(i, drawing);
}

void TChartTexts::NumberNotices(const std::vector<int>& order) {
    const TMseTimeTextList& notices = FDb->Settings().TimeTexts;
    for (size_t i = 0; i < FMarks.size(); ++i) {
        const auto at = std::find(order.begin(), order.end(), int(i));
        const bool numbered = at != order.end();
        const bool shown = order.empty() ? FShown : numbered;
        QCPItemText* mark = FMarks[i];
        QCPItemPosition* position = mark->position;
        if (numbered) {
            // A number along the top of the plot at the notice's time, its leader down to the
            // point: always in sight, whatever the value, and never over another's text.
            mark->setText(QString::number(at - order.begin() + 1));
            position->setParentAnchor(nullptr);
            position->setTypeX(QCPItemPosition::ptPlotCoords);
            position->setTypeY(QCPItemPosition::ptAxisRectRatio);
            position->setAxes(FChart->xAxis, FChart->yAxis);
            position->setAxisRect(FChart->axisRect());
            position->setCoords(notices[int(i)].X.Value, 0.0);
            mark->setPositionAlignment(Qt::AlignHCenter | Qt::AlignTop);
            FLeaders[i]->end->setParentAnchor(mark->bottom);
        } else {
            mark->setText(notices[int(i)].Text.Value);
            position->setType(QCPItemPosition::ptAbsolute);
            position->setParentAnchor(FPoints[i]->position);
            position->setCoords(FOffsets[i]);
            mark->setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
            FLeaders[i]->end->setParentAnchor(mark->topLeft);
        }
        FPoints[i]->setVisible(shown);
        mark->setVisible(shown);
        FLeaders[i]->setVisible(shown);
    }
}

void TChartTexts::SetNoticesShown(bool shown) {
    FShown = shown;
    for (size_t i = 0; i < FMarks.size(); ++i) {
        FPoints[i]->setVisible(shown);
        FMarks[i]->setVisible(shown);
        FLeaders[i]->setVisible(shown);
    }
    FChart->replot(QCustomPlot::rpQueuedReplot);
}

// ---------------------------------------------------------------------- commands

void TChartTexts::InsertText(const QString& text) {
    TMseTimeText& n = FDb->Settings().TimeTexts.Add();
    n.Text.Set(text);
    n.X.Set(FChart->xAxis->range().lower);
    n.Y.Set(FChart->yAxis->range().upper);
    FOffsets.push_back(kMarkOffset);
    FShown = true;
    Rebuild();
    FChart->replot();
    Changed();
}

void TChartTexts::InsertBox(const QString& text, QPoint at) {
    TMseText& t = FDb->Settings().Texts.Add();
    t.Text.Set(text);
    t.X.Set(at.x());
    t.Y.Set(at.y());
    Rebuild();
    FChart->replot();
    Changed();
}

void TChartTexts::PopupMenuClick(int action, int box) {
    TMseTextList& boxes = FDb->Settings().Texts;
    if (box < 0 || box >= boxes.Count()) return;
    if (action == 0) {
        boxes.Delete(box);
    } else if (action >= 1 && action <= 3) {
        // The read-outs as they stand, the reset captions of a crosshair that is off included.
        const int first = 2 * (action - 1);
        boxes[box].Text.Set(FCrossHair->LabelText(first) + QLatin1Char(' ') + FCrossHair->LabelText(first + 1));
    } else {
        return;
    }
    Rebuild();
    FChart->replot();
    Changed();
}

void TChartTexts::PopupMenu2Click(int action, int notice, QPoint at) {
    TMseTimeTextList& notices = FDb->Settings().TimeTexts;
    if (notice < 0 || notice >= notices.Count()) return;
    if (action == 0) {
        EditNotice(notice, at);
        return;
    }
    if (action != 1) return;
    notices.Delete(notice);
    FOffsets.erase(FOffsets.begin() + notice);
    Rebuild();
    FChart->replot();
    Changed();
}

// An empty text confirmed removes the notice (or adds none): a mark without text could be
// neither seen nor clicked again.
bool TChartTexts::EditNotice(int notice, QPoint at) {
    TMseTimeTextList& notices = FDb->Settings().TimeTexts;
    if (notice >= notices.Count()) return false;
    QString text = notice >= 0 ? notices[notice].Text.Value : QString();
    const TTextId title = notice >= 0 ? TTextId::NoteModifyTitle : TTextId::NoteNewTitle;
    if (!zeb::TZebDlg::InputBox(Txt(title), QString(), text, Global(at))) return false;
    if (notice < 0) {
        if (text.isEmpty()) return false;
        TMseTimeText& n = notices.Add();
        n.Text.Set(text);
        n.X.Set(FChart->xAxis->pixelToCoord(at.x()));
        n.Y.Set(FChart->yAxis->pixelToCoord(at.y()));
        FOffsets.push_back(kMarkOffset);
        FShown = true;
    } else if (text.isEmpty()) {
        notices.Delete(notice);
        FOffsets.erase(FOffsets.begin() + notice);
    } else {
        notices[notice].Text.Set(text);
    }
    Rebuild();
    FChart->replot();
    Changed();
    return true;
}

// As for notices, an empty text confirmed removes the box.
bool TChartTexts::EditBox(int box, QPoint at) {
    TMseTextList& boxes = FDb->Settings().Texts;
    if (box < 0 || box >= boxes.Count()) return false;
    QString text = boxes[box].Text.Value;
    if (!zeb::TZebDlg::InputBox(Txt(TTextId::TextInsert), QString(), text, Global(at))) return false;
    if (text.isEmpty())
        boxes.Delete(box);
    else
        boxes[box].Text.Set(text);
    Rebuild();
    FChart->replot();
    Changed();
    return true;
}

// ---------------------------------------------------------------------- mouse

int TChartTexts::BoxAt(QPoint p) const {
    for (size_t i = 0; i < FBoxes.size(); ++i)
        if (RectOf(FBoxes[i]).contains(p)) return int(i);
    return -1;
}

int TChartTexts::NoticeAt(QPoint p) const {
    if (!FShown) return -1;
    for (size_t i = 0; i < FMarks.size(); ++i)
        if (RectOf(FMarks[i]).contains(p)) return int(i);
    return -1;
}

bool TChartTexts::MousePress(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    Changed();
    const int box = BoxAt(p), notice = box < 0 ? NoticeAt(p) : -1;
    FMenuAt = p;
    if (event->button() == Qt::RightButton) {
        FMenuIndex = box >= 0 ? box : notice;
        QMenu* menu = box >= 0 ? FPopup1 : notice >= 0 ? FPopup2 : FPopupNew;
        menu->popup(Global(p));
        return true;
    }
    if (event->button() != Qt::LeftButton) return false;
    if (box >= 0) {
        FDrag = TDrag::Box;
        FDragIndex = box;
        FGrab = p - RectOf(FBoxes[size_t(box)]).topLeft();
    } else if (notice >= 0) {
        FDrag = TDrag::Mark;
        FDragIndex = notice;
        FGrab = p - RectOf(FMarks[size_t(notice)]).topLeft();
    } else {
        EditNotice(-1, p);
    }
    return true;
}

bool TChartTexts::MouseMove(QMouseEvent* event) {
    if (FDrag == TDrag::None) return false;
    const QPoint corner = event->position().toPoint() - FGrab;
    if (FDrag == TDrag::Box && FDragIndex < FDb->Settings().Texts.Count()) {
        TMseText& t = FDb->Settings().Texts[FDragIndex];
        t.X.Set(corner.x());
        t.Y.Set(corner.y());
        PlaceBox(FDragIndex);
    } else if (FDrag == TDrag::Mark && FDragIndex < int(FMarks.size())) {
        const QPoint offset = corner - FPoints[size_t(FDragIndex)]->position->pixelPosition().toPoint();
        FOffsets[size_t(FDragIndex)] = offset;
        FMarks[size_t(FDragIndex)]->position->setCoords(offset);
    }
    FChart->replot(QCustomPlot::rpQueuedReplot);
    return true;
}

bool TChartTexts::MouseRelease(QMouseEvent*) {
    if (FDrag == TDrag::None) return false;
    FDrag = TDrag::None;
    FDragIndex = -1;
    Changed();
    return true;
}

bool TChartTexts::MouseDoubleClick(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    const int box = BoxAt(p);
    if (box < 0) return false;
    FDrag = TDrag::None;
    EditBox(box, p);
    return true;
}
