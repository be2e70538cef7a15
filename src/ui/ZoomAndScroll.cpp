#include "ui/ZoomAndScroll.h"

#include "ui/CrossHair.h"

#include "ui/CurvePlottable.h"

#include <QPainter>

namespace {

// Draws the rubber band over the chart. The outline inverts what lies below it, so it shows
// on any background; repainting the overlay restores the chart under the old outline.
class TBandOverlay : public QWidget {
public:
    TBandOverlay(QWidget* chart, const TZoomAndScroll* zoom) : QWidget(chart), FZoom(zoom) {
        setObjectName(QStringLiteral("zoomBand"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
        setGeometry(chart->rect());
        chart->installEventFilter(this);
        show();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == parentWidget() && event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
        return false;
    }
    void paintEvent(QPaintEvent*) override {
        if (!FZoom->IsBandDrawn()) return;
        QPainter p(this);
        p.setCompositionMode(QPainter::RasterOp_NotSourceXorDestination);
        p.setPen(QPen(FZoom->BandColor(), 1, Qt::SolidLine));
        p.setBrush(Qt::NoBrush);
        const QRect b = FZoom->Band();
        p.drawRect(b.adjusted(0, 0, -1, -1));
    }

private:
    const TZoomAndScroll* FZoom;
};

bool IsVertical(TZoomAndScroll::TAxis a) {
    return a == TZoomAndScroll::zaLeft || a == TZoomAndScroll::zaRight;
}

} // namespace

TZoomAndScroll::TZoomAndScroll(TCrossHair* crossHair, QCustomPlot* chart, QObject* parent)
    : QObject(parent), FCrossHair(crossHair), FChart(chart) {
    FOverlay = new TBandOverlay(chart, this);
}

TZoomAndScroll::~TZoomAndScroll() {
    delete FOverlay.data();
}

QCPAxis* TZoomAndScroll::Axis(TAxis axis) const {
    switch (axis) {
    case zaLeft:
        return FChart->yAxis;
    case zaBottom:
        return FChart->xAxis;
    case zaRight:
        return FChart->yAxis2;
    default:
        return FChart->xAxis2;
    }
}

QColor TZoomAndScroll::BandColor() const {
    const QRect b = Band();
    return (b.width() - 1 < kMinBand || b.height() - 1 < kMinBand) ? QColor(Qt::red) : QColor(Qt::black);
}

bool TZoomAndScroll::Takes(TAxis axis) const {
    return Axis(axis)->visible() && !FFixed[axis];
}

void TZoomAndScroll::UpdateBand() {
    if (FOverlay) FOverlay->update();
}

void TZoomAndScroll::MouseDown(Qt::MouseButton button, int x, int y) {
    if (button == Qt::LeftButton) {
        FState = zsZooming;
        FStart = FEnd = QPoint(x, y);
        FDrawn = false;
        if (FCrossHair) FCrossHair->SetZoomRect(true, x, y);
    } else if (button == Qt::RightButton) {
        FState = zsMoving;
        FMoved = false;
        const QRect plot = FChart->axisRect()->rect();
        for (int a = 0; a < zaCount; ++a) {
            const double pixels = IsVertical(TAxis(a)) ? plot.height() : plot.width();
            FScale[size_t(a)] = pixels > 0 ? Axis(TAxis(a))->range().size() / pixels : 0.0;
        }
        FStart = QPoint(x, y);
    }
}

void TZoomAndScroll::MouseMove(int x, int y) {
    if (FState == zsZooming) {
        FEnd = QPoint(x, y);
        FDrawn = true;
        UpdateBand();
        if (FCrossHair) FCrossHair->DispZoomRect(x, y);
    } else if (FState == zsMoving) {
        const int dx = x - FStart.x(), dy = y - FStart.y();
        if (dx == 0 && dy == 0) return;
        FStart = QPoint(x, y);
        bool moved = false;
        for (int i = 0; i < zaCount; ++i) {
            const TAxis a = TAxis(i);
            const int d = IsVertical(a) ? dy : -dx; // the curves follow the mouse
            if (d == 0 || !Takes(a)) continue;
            Axis(a)->moveRange(d * FScale[size_t(a)]);
            FAuto[a] = false;
            moved = true;
        }
        // With every axis fixed nothing moved, and nothing is to be saved; no pan can be undone.
        if (!moved) return;
        FMoved = true;
        for (TUndo& u : FUndo)
            u.Valid = false;
        FChart->replot(QCustomPlot::rpQueuedReplot);
        Q_EMIT rangesChanged();
    }
}

bool TZoomAndScroll::MouseUp(Qt::MouseButton button, int x, int y) {
    if (button == Qt::RightButton) {
        if (FState == zsMoving) FState = zsIdle;
        return std::exchange(FMoved, false);
    }
    if (button != Qt::LeftButton || FState != zsZooming) return false;
    if (FCrossHair) FCrossHair->SetZoomRect(false);
    FState = zsIdle;
    if (!FDrawn) return false;
    FEnd = QPoint(x, y);
    FDrawn = false; // erased in every case below
    UpdateBand();
    int x1 = std::min(FStart.x(), FEnd.x()), x2 = std::max(FStart.x(), FEnd.x());
    int y1 = std::min(FStart.y(), FEnd.y()), y2 = std::max(FStart.y(), FEnd.y());
    if (x2 - x1 < kMinBand || y2 - y1 < kMinBand) return false;
    // The plot's pixels are pl..pr-1 and pt..pb-1; pr and pb lie outside it, and the axes'
    // ends map onto them.
    const QRect plot = FChart->axisRect()->rect();
    const int pl = plot.left(), pr = plot.left() + plot.width(), pt = plot.top(),
              pb = plot.top() + plot.height();
    if (x2 < pl || x1 >= pr || y2 < pt || y1 >= pb) return false;

    // A band across the whole height zooms time only, one across the whole width values only.
    const bool vertical = !(y1 < pt && y2 >= pb);
    const bool horizontal = !(x1 < pl && x2 >= pr);
    std::array<bool, zaCount> takes{};
    bool any = false;
    for (int i = 0; i < zaCount; ++i) {
        const TAxis a = TAxis(i);
        takes[size_t(i)] = Takes(a) && (IsVertical(a) ? vertical : horizontal);
        any = any || takes[size_t(i)];
    }
    if (!any) return false;

    x1 = std::max(x1, pl);
    x2 = std::min(x2, pr);
    y1 = std::max(y1, pt);
    y2 = std::min(y2, pb);
    for (int i = 0; i < zaCount; ++i) {
        const TAxis a = TAxis(i);
        QCPAxis* axis = Axis(a);
        if (!takes[size_t(i)]) {
            FUndo[size_t(i)].Valid = false;
            continue;
        }
        FUndo[size_t(i)] = {true, FAuto[a], axis->range().lower, axis->range().upper};
        if (IsVertical(a))
            axis->setRange(axis->pixelToCoord(y2), axis->pixelToCoord(y1));
        else
            axis->setRange(axis->pixelToCoord(x1), axis->pixelToCoord(x2));
        FAuto[a] = false;
    }
    FChart->replot(QCustomPlot::rpQueuedReplot);
    Q_EMIT rangesChanged();
    return true;
}

void TZoomAndScroll::ZoomRedo() {
    bool any = false;
    for (int i = 0; i < zaCount; ++i) {
        TUndo& u = FUndo[size_t(i)];
        if (!u.Valid) continue;
        u.Valid = false;
        any = true;
        FAuto[size_t(i)] = u.Auto;
        if (u.Auto)
            Rescale(TAxis(i));
        else
            Axis(TAxis(i))->setRange(u.Min, u.Max);
    }
    if (!any) return;
    FChart->replot(QCustomPlot::rpQueuedReplot);
    Q_EMIT rangesChanged();
}

bool TZoomAndScroll::IsZoomRedoPossible() const {
    return std::any_of(FUndo.begin(), FUndo.end(), [](const TUndo& u) { return u.Valid; });
}

void TZoomAndScroll::Autoscale(bool clearFixed) {
    if (clearFixed) ClearFixed();
    for (int i = 0; i < zaCount; ++i) {
        const TAxis a = TAxis(i);
        if (FFixed[a]) {
            FUndo[size_t(i)].Valid = false;
            continue;
        }
        const QCPRange r = Axis(a)->range();
        FUndo[size_t(i)] = {true, FAuto[a], r.lower, r.upper};
        FAuto[a] = true;
        Rescale(a);
    }
    FChart->replot(QCustomPlot::rpQueuedReplot);
    Q_EMIT rangesChanged();
}

void TZoomAndScroll::ClearFixed() {
    FFixed.fill(false);
}

bool TZoomAndScroll::IsFixed() const {
    return std::any_of(FFixed.begin(), FFixed.end(), [](bool f) { return f; });
}

void TZoomAndScroll::ApplyAuto() {
    for (int i = 0; i < zaCount; ++i)
        if (FAuto[size_t(i)]) Rescale(TAxis(i));
}

void TZoomAndScroll::Rescale(TAxis axis) {
    QCPAxis* a = Axis(axis);
    bool found = false;
    QCPRange range;
    for (QCPAbstractPlottable* p : a->plottables()) {
        if (!p->realVisibility()) continue;
        bool f = false;
        const QCPRange r = p->keyAxis() == a ? p->getKeyRange(f) : p->getValueRange(f);
        if (!f) continue;
        if (found)
            range.expand(r);
        else
            range = r;
        found = true;
    }
    if (!found) return; // nothing to scale to: the axis keeps its range
    if (IsVertical(axis)) {
        // Values keep a little air to the plot's edges, so a curve never hides under an axis line.
        const double air =
            range.size() > 0 ? range.size() * 0.04 : std::max(1.0, std::abs(range.center()) * 0.05);
        range = QCPRange(range.lower - air, range.upper + air);
    } else if (!(range.size() > 0)) {
        range = QCPRange(range.lower - 1.0, range.upper + 1.0);
    }
    a->setRange(range);
}
