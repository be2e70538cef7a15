#pragma once
// The chart's curve: one curve of the store, drawn straight from its columns (no copy).
//
// With data reduction off every segment is drawn. With it on, each pixel column gets the
// first, last, smallest and largest value of its samples (M4), the extremes taken from a
// min/max pyramid built once per curve, so a redraw costs about the number of pixels and
// not the number of samples. Both ways snap the points to whole pixels first; in that space
// the segments inside one pixel column are vertical and their union is exactly the span
// from the column's minimum to its maximum, so the two pictures are the same.
//
// Null points: a gap marker is not drawn and breaks the line; the first value after a gap
// starts a new piece of line. A piece of a single point is drawn as a dot. A NaN value is
// not drawn and breaks the line the same way; an infinite value is drawn to the plot's edge.

// The chart library's header uses Qt's keyword macros, which this project switches off;
// every unit gets the chart library through this header.
#ifndef signals
#define ZEB_UNDEF_SIGNALS
#define signals Q_SIGNALS
#endif
#ifndef foreach
#define ZEB_UNDEF_FOREACH
#define foreach Q_FOREACH
#endif
#include <qcustomplot.h>
#ifdef ZEB_UNDEF_SIGNALS
#undef signals
#undef ZEB_UNDEF_SIGNALS
#endif
#ifdef ZEB_UNDEF_FOREACH
#undef foreach
#undef ZEB_UNDEF_FOREACH
#endif

#include "config/DisplayKinds.h"
#include "data/CurveSummary.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>
#include <vector>

class TDataBase;

// Maps a sample to pixels the same way for drawing, aggregating and hit testing.
struct TPixelMap {
    // Points far outside the plot are pulled in to this distance: the painter's fixed-point
    // arithmetic must not overflow, and the slope of a line leaving the plot barely changes.
    static constexpr double kMargin = 10000.0;

    double KeyLower = 0.0; // time at the left edge of column 0
    double KeyScale = 1.0; // columns per second
    double Left = 0.0;     // pixel x of column 0
    double Top = 0.0, Bottom = 0.0;
    double Offset = 0.0; // 0.5 puts points on pixel centres
    const QCPAxis* ValueAxis = nullptr;
    // A plain linear value axis is mapped here, without a call per sample.
    bool Linear = false;
    double ValueLower = 0.0, ValueScale = 1.0, ValueBase = 0.0;
    // A derived curve draws factor * value + offset.
    double ValueFactor = 1.0, ValueOffset = 0.0;
    // The points drawn: [FirstIndex, EndIndex) of the curve; an EndIndex below 0 means all.
    qint64 FirstIndex = 0, EndIndex = -1;

    double Column(double time) const { return std::floor((time - KeyLower) * KeyScale); }
    double PixelY(double value) const {
        value = ValueFactor * value + ValueOffset;
        // Infinite values run off the plot's edge; NaN never comes here (it breaks the line).
        if (std::isinf(value)) return value > 0 ? Top - kMargin : Bottom + kMargin;
        const double y =
            Linear ? ValueBase - (value - ValueLower) * ValueScale : ValueAxis->coordToPixel(value);
        if (std::isnan(y)) return Bottom + kMargin;
        return std::clamp(y, Top - kMargin, Bottom + kMargin);
    }
};

// The pieces of line of a curve, in pixels: one flat list of points and where each piece
// ends. Kept from draw to draw, so a redraw allocates nothing.
struct TCurvePath {
    std::vector<QPointF> Points;
    std::vector<size_t> Ends;
    void Clear() {
        Points.clear();
        Ends.clear();
    }
    size_t Runs() const { return Ends.size(); }
    std::span<const QPointF> Run(size_t k) const {
        const size_t from = k == 0 ? 0 : Ends[k - 1];
        return {Points.data() + from, Ends[k] - from};
    }
};

// The pieces of line of a curve over a window of pixel columns; collapsing keeps of each
// pixel column only its first, top, bottom and last point.
void BuildCurvePath(const TCurveData& data, const TCurveSummary* pyramid, bool reduce, const TPixelMap& map,
                    double firstColumn, double lastColumn, TCurvePath& path, bool collapseColumns = true);

class TCurvePlottable : public QCPAbstractPlottable {
    Q_OBJECT
public:
    TCurvePlottable(QCPAxis* keyAxis, QCPAxis* valueAxis);

    // The curve of the store to draw; the plottable draws nothing once the store has thrown
    // its samples away or while it loads.
    void SetSource(const TDataBase* db, int curve, std::shared_ptr<const TCurveSummary> pyramid);
    // Only for drawing a bare column (benchmark, tests): no store around it.
    void SetData(const TCurveData* data, std::shared_ptr<const TCurveSummary> pyramid);
    int Curve() const { return FCurve; }
    const TCurveData* Data() const;

    void SetReduction(bool on) { FReduce = on; }
    bool Reduction() const { return FReduce; }
    // 0 line, 1 line and points, 2 points.
    void SetLineType(TCurveType type) { FType = type; }
    // Draws factor * value + offset instead of the values (the additional flow channel).
    void SetTransform(double factor, double offset) {
        FFactor = factor;
        FOffset = offset;
    }
    TCurveType LineType() const { return FType; }
    // Only the points first..last of the curve are drawn (a copy's range); last below first: all.
    void SetIndexRange(qint64 first, qint64 last) {
        FFirstIndex = first;
        FLastIndex = last;
    }
    // Segments inside one pixel column are vertical and drawn as the one line they cover
    // together, the same pixels for far fewer strokes and points. Off draws each segment as
    // its own line, the reference the tests compare with.
    void SetMergeColumns(bool on) { FMergeColumns = on; }
    // Nothing is drawn while suspended (the store's repaint switch).
    void SetSuspended(bool on) { FSuspended = on; }

    // The legend's picture of the curve.
    void Icon(QCPPainter* painter, const QRectF& rect) const { drawLegendIcon(painter, rect); }

    // Points handed to the painter by the last draw, for tests and the benchmark.
    qint64 LastDrawnPoints() const { return FLastPoints; }

    double selectTest(const QPointF& pos, bool onlySelectable, QVariant* details = nullptr) const override;
    QCPRange getKeyRange(bool& foundRange, QCP::SignDomain inSignDomain = QCP::sdBoth) const override;
    QCPRange getValueRange(bool& foundRange, QCP::SignDomain inSignDomain = QCP::sdBoth,
                           const QCPRange& inKeyRange = QCPRange()) const override;

protected:
    void draw(QCPPainter* painter) override;
    void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;

private:
    bool PixelMap(TPixelMap& map) const;
    void DrawMarker(QCPPainter* painter, const QPointF& p) const;
    static void AppendLines(std::span<const QPointF> run, bool merge, std::vector<QLineF>& lines);

    const TDataBase* FDb = nullptr;
    int FCurve = -1;
    quint64 FGeneration = 0;
    const TCurveData* FData = nullptr;
    std::shared_ptr<const TCurveSummary> FPyramid;
    bool FReduce = false;
    bool FSuspended = false;
    bool FMergeColumns = true;
    TCurveType FType = TCurveType::Line;
    double FFactor = 1.0, FOffset = 0.0;
    qint64 FFirstIndex = 0, FLastIndex = -1;
    qint64 FLastPoints = 0;
    TCurvePath FPath;
    std::vector<QLineF> FLines;
};

// A limit line of a curve: horizontal across the plot at the limit's value on the curve's
// axis, solid at L1 and dashed at L2.
class TLimitLineItem : public QCPItemStraightLine {
    Q_OBJECT
public:
    TLimitLineItem(QCustomPlot* plot, QCPAxis* valueAxis, int curve, int which, double value,
                   const QColor& color);
    int Curve() const { return FCurve; }
    int Which() const { return FWhich; }
    double Value() const { return FValue; }

private:
    int FCurve, FWhich;
    double FValue;
};
