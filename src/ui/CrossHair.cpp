#include "ui/CrossHair.h"

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/ZebChart.h"

#include <QLabel>

using zeb::TTextId;
using zeb::Txt;

namespace {
constexpr int kLabelCount = 6;
constexpr double kHitPixels = 3.0;
} // namespace

TCrossHair::TCrossHair(TDataBase* db, QCustomPlot* chart, const std::array<QLabel*, 6>& labels,
                       QObject* parent)
    : QObject(parent), FDb(db), FChart(chart) {
    // The cursors get a buffered layer of their own: dragging one redraws only them.
    const QString layer = QStringLiteral("cursors");
    if (!chart->layer(layer))
        chart->addLayer(layer, chart->layer(QStringLiteral("main")), QCustomPlot::limAbove);
    FLayer = chart->layer(layer);
    FLayer->setMode(QCPLayer::lmBuffered);
    for (int k = 0; k < 2; ++k) {
        auto* t = new QCPItemTracer(chart);
        t->setLayer(FLayer);
        t->setStyle(QCPItemTracer::tsCrosshair);
        t->setSelectable(false);
        t->setInterpolating(false);
        t->position->setType(QCPItemPosition::ptPlotCoords);
        t->position->setAxes(chart->xAxis, chart->yAxis);
        t->setVisible(false);
        FTracer[size_t(k)] = t;
        ApplyPen(k);
    }
    SetLabels(labels);
    Refresh();
}

void TCrossHair::SetLabels(const std::array<QLabel*, 6>& labels) {
    for (int i = 0; i < kLabelCount; ++i) {
        FLabels[size_t(i)] = labels[size_t(i)];
        if (FLabels[size_t(i)]) FLabels[size_t(i)]->setText(FTexts[size_t(i)]);
    }
}

void TCrossHair::SetText(int index, const QString& text) {
    FTexts[size_t(index)] = text;
    if (FLabels[size_t(index)]) FLabels[size_t(index)]->setText(text);
}

void TCrossHair::ApplyPen(int which) {
    FTracer[size_t(which)]->setPen(
        QPen(FColor, FWidth[size_t(which)], which == 0 ? Qt::DashLine : Qt::DashDotDotLine));
}

QCPAxis* TCrossHair::ValueAxis(int axis) const {
    return axis == 1 ? FChart->yAxis2 : FChart->yAxis;
}

bool TCrossHair::IsActive(int axis) const {
    return (axis == 0 || axis == 1) && FDb->IsUsedAxis(axis + 1);
}

int TCrossHair::FirstCurve(int axis) const {
    for (int i = 0; i < FDb->Curve_Count(); ++i)
        if (FDb->Curve_IsActive(i) && FDb->Curve_AxisGet(i) == axis + 1) return i;
    return -1;
}

int TCrossHair::GetActive(int which) const {
    return which == 0 || which == 1 ? FAxis[size_t(which)] : -1;
}

int TCrossHair::BoundCurve(int which) const {
    return which == 0 || which == 1 ? FCurve[size_t(which)] : -1;
}

double TCrossHair::X(int which) const {
    return FTracer[size_t(which & 1)]->position->coords().x();
}
double TCrossHair::Y(int which) const {
    return FTracer[size_t(which & 1)]->position->coords().y();
}

void TCrossHair::SetCursor(int which, int axis) {
    if (which != 0 && which != 1) {
        Refresh();
        return;
    }
    QCPItemTracer* t = FTracer[size_t(which)];
    if (!IsActive(axis)) {
        t->setVisible(false);
        FAxis[size_t(which)] = -1;
        FCurve[size_t(which)] = -1;
        const QPointF p = t->position->coords();
        t->position->setCoords(p.x() - 1.0, p.y());
        OnChange(which);
    } else {
        FAxis[size_t(which)] = axis;
        FCurve[size_t(which)] = FirstCurve(axis);
        t->position->setAxes(FChart->xAxis, ValueAxis(axis));
        t->setVisible(true);
        const QCPRange xr = FChart->xAxis->range(), yr = ValueAxis(axis)->range();
        const double share = which == 0 ? 1.0 / 3.0 : 2.0 / 3.0;
        t->position->setCoords(xr.lower + xr.size() * share, yr.lower + yr.size() * share);
        OnChange(which);
    }
    Refresh();
}

void TCrossHair::Rebind() {
    for (int k = 0; k < 2; ++k) {
        const int axis = FAxis[size_t(k)];
        if (axis < 0) continue;
        if (!IsActive(axis)) {
            SetCursor(k, -1);
            continue;
        }
        FCurve[size_t(k)] = FirstCurve(axis);
        FTracer[size_t(k)]->position->setAxes(FChart->xAxis, ValueAxis(axis));
    }
    Refresh();
}

int TCrossHair::GetWidth(int which) const {
    const double w = FWidth[size_t(which & 1)];
    if (w < 2) return 0;
    if (w >= 12) return 9;
    return std::min(9, int(w) - 2);
}

void TCrossHair::SetWidth(int which, int index) {
    if (which != 0 && which != 1) return;
    FWidth[size_t(which)] = std::clamp(index, 0, 9) + 2;
    ApplyPen(which);
    Repaint();
}

void TCrossHair::SetCursorPrintColor(bool on) {
    FColor = on ? QColor(128, 128, 128) : QColor(Qt::black);
    ApplyPen(0);
    ApplyPen(1);
    Repaint();
}

void TCrossHair::SetHidden(bool hidden) {
    FLayer->setVisible(!hidden);
}

int TCrossHair::CursorAt(int x, int y) const {
    const QRect plot = FChart->axisRect()->rect();
    if (!plot.contains(x, y)) return -1;
    for (int k = 0; k < 2; ++k) {
        if (FAxis[size_t(k)] < 0) continue;
        const QPointF p = FTracer[size_t(k)]->position->pixelPosition();
        const double reach = kHitPixels + FWidth[size_t(k)] / 2.0;
        if (std::abs(x - p.x()) <= reach || std::abs(y - p.y()) <= reach) return k;
    }
    return -1;
}

bool TCrossHair::IsClicked(int x, int y) const {
    return CursorAt(x, y) >= 0;
}

void TCrossHair::Refresh() {
    if (FAxis[0] < 0) {
        SetText(0, Txt(TTextId::ReadX1));
        SetText(1, Txt(TTextId::ReadY1));
    }
    if (FAxis[1] < 0) {
        SetText(2, Txt(TTextId::ReadX2));
        SetText(3, Txt(TTextId::ReadY2));
    }
    // The differences keep their last text while only one cursor is off.
    if (FAxis[0] < 0 && FAxis[1] < 0) {
        SetText(4, Txt(TTextId::ReadDX));
        SetText(5, Txt(TTextId::ReadDY));
    }
    // Formats or axes may have changed since the cursors last moved.
    for (int k = 0; k < 2; ++k)
        if (FAxis[size_t(k)] >= 0) OnChange(k);
    Repaint();
}

void TCrossHair::Repaint() {
    if (FLayer) FLayer->replot();
}

void TCrossHair::OnChange(int which) {
    if (FBusy) return;
    const double x = X(which), y = Y(which);
    if (which == 0) {
        FX1 = x;
        if (FAxis[0] >= 0) {
            SetText(0, Txt(TTextId::ReadX1) + ChartText::XText(*FDb, zeb::TTimeKind::Time, x, FDb->Cursor_Get(0).XFormat));
            SetText(1, Txt(TTextId::ReadY1) + zeb::FormatFloat(FDb->Cursor_Get(0).YFormat, y));
        }
    } else {
        FX2 = x;
        if (FAxis[1] >= 0) {
            SetText(2, Txt(TTextId::ReadX2) + ChartText::XText(*FDb, zeb::TTimeKind::TimeMs, x, FDb->Cursor_Get(1).XFormat));
            SetText(3, Txt(TTextId::ReadY2) + zeb::FormatFloat(FDb->Cursor_Get(1).YFormat, y));
        }
    }
    if (FAxis[0] >= 0 && FAxis[1] >= 0) {
        SetText(4, Txt(TTextId::ReadDX) + ChartText::XSpanText(*FDb, X(1) - X(0), FDb->Cursor_Get(0).XFormat));
        // Deliberately in cursor 1's format.
        SetText(5, Txt(TTextId::ReadDY) + zeb::FormatFloat(FDb->Cursor_Get(0).YFormat, Y(1) - Y(0)));
    }
    Q_EMIT cursorChanged(which);
}

void TCrossHair::SetPosition(int which, double x, double y) {
    if (which != 0 && which != 1) return;
    FTracer[size_t(which)]->position->setCoords(x, y);
    OnChange(which);
    Repaint();
}

void TCrossHair::MoveTo(int which, double time) {
    if ((which != 0 && which != 1) || FAxis[size_t(which)] < 0) return;
    const int curve = FCurve[size_t(which)];
    if (!FDb->Curve_IsValid(curve) || FDb->IsLoading() || FDb->Data(curve).IsEmpty()) {
        SetPosition(which, time, Y(which));
        return;
    }
    // The sample nearest in time; gap markers hold no value, so the nearest real one.
    const TCurveData& d = FDb->Data(curve);
    const qint64 n = d.Count();
    const qint64 at = d.LowerBound(time);
    qint64 best = -1;
    for (qint64 lo = at - 1, hi = at; lo >= 0 || hi < n; --lo, ++hi) {
        for (qint64 i : {lo, hi}) {
            if (i < 0 || i >= n || d.IsGap(i)) continue;
            if (best < 0 || std::abs(d.Time(i) - time) < std::abs(d.Time(best) - time)) best = i;
        }
        if (best >= 0) break;
    }
    if (best < 0)
        SetPosition(which, time, Y(which));
    else
        SetPosition(which, d.Time(best), d.Value(best));
}

void TCrossHair::SetZoomRect(bool on, int x, int y) {
    if (!on) {
        FBusy = false;
        Refresh();
        return;
    }
    FBusy = true;
    FZoomX = FChart->xAxis->pixelToCoord(x);
    SetText(0, Txt(TTextId::ReadX1) + ChartText::XText(*FDb, zeb::TTimeKind::DateTime, FZoomX, QStringLiteral("0.000")));
    FZoomAxis = FDb->IsUsedAxis(axLeft) ? axLeft : FDb->IsUsedAxis(axRight) ? axRight : 0;
    if (FZoomAxis == 0) {
        SetText(1, Txt(TTextId::ReadY1));
        return;
    }
    FZoomY = ValueAxis(FZoomAxis - 1)->pixelToCoord(y);
    SetText(1, Txt(TTextId::ReadY1) + zeb::FormatFloat(FDb->Axis_Get(FZoomAxis).Format, FZoomY));
}

void TCrossHair::DispZoomRect(int x, int y) {
    if (!FBusy) return;
    const double dx = std::abs(FChart->xAxis->pixelToCoord(x) - FZoomX);
    SetText(4, Txt(TTextId::ReadDX) + ChartText::XSpanText(*FDb, dx, QStringLiteral("0.000")));
    if (FZoomAxis == 0) {
        SetText(5, Txt(TTextId::ReadDY));
        return;
    }
    const double dy = std::abs(ValueAxis(FZoomAxis - 1)->pixelToCoord(y) - FZoomY);
    SetText(5, Txt(TTextId::ReadDY) + zeb::FormatFloat(FDb->Axis_Get(FZoomAxis).Format, dy));
}
