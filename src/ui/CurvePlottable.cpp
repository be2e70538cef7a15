#include "ui/CurvePlottable.h"

#include "data/CurveData.h"
#include "store/DataBase.h"

#include <algorithm>
#include <limits>



// ====================================================================== path

namespace {

class TPathBuilder {
public:
    TPathBuilder(const TCurveData& d, const TCurveSummary* pyramid, bool reduce, const TPixelMap& map,
                 double firstColumn, double lastColumn, TCurvePath& path, bool collapse)
        : D(d), P(pyramid), Reduce(reduce && pyramid), Collapse(collapse), M(map), C0(firstColumn),
          C1(lastColumn), Path(path) {}

    void Build() {
        // The points drawn: the whole curve, or the range the map names.
        const qint64 first = std::max<qint64>(0, M.FirstIndex);
        const qint64 n = M.EndIndex < 0 ? D.Count() : std::min(D.Count(), M.EndIndex);
        if (n <= first) return;
        Lo = NextColumn(first, n, C0 - 1, first);
        Hi = NextColumn(Lo, n, C1, n);
        const qint64 s0 = Lo > first ? Lo - 1 : first;
        const qint64 e0 = Hi < n ? Hi : n - 1;
        // Pieces of line between null points: a gap marker belongs to none, the first value
        // after a gap starts one.
        const auto& nulls = D.Nulls();
        auto it = std::lower_bound(nulls.begin(), nulls.end(), s0,
                                   [](const auto& x, qint64 i) { return x.first < i; });
        qint64 pos = s0;
        for (; it != nulls.end() && it->first <= e0; ++it) {
            Run(pos, it->first - 1);
            pos = it->second == TPointKind::Gap ? it->first + 1 : it->first;
        }
        Run(pos, e0);
    }

private:
    double Column(qint64 i) const { return M.Column(D.Time(i)); }

    // First index in [from, to) whose column lies right of c; `to` when none. The search
    // gallops out from a guess: samples usually come at a steady rate, so the previous
    // column's count guesses the next boundary well, and every probe of a large curve is
    // a cache miss.
    qint64 NextColumn(qint64 from, qint64 to, double c, qint64 guess) const {
        guess = std::clamp(guess, from, to);
        qint64 lo = from, hi = to;
        if (guess < to && Column(guess) <= c) {
            lo = guess + 1;
            for (qint64 step = 1;; step *= 2) {
                const qint64 p = lo + step - 1;
                if (p >= to) break;
                if (Column(p) > c) {
                    hi = p;
                    break;
                }
                lo = p + 1;
            }
        } else {
            hi = guess;
            for (qint64 step = 1;; step *= 2) {
                const qint64 p = hi - step;
                if (p < from) break;
                if (Column(p) <= c) {
                    lo = p + 1;
                    break;
                }
                hi = p;
            }
        }
        while (lo < hi) {
            const qint64 mid = lo + (hi - lo) / 2;
            if (Column(mid) > c)
                hi = mid;
            else
                lo = mid + 1;
        }
        return lo;
    }

    void Prefetch(qint64 i) const {
        const qint64 chunk = i >> TCurveData::kChunkBits, at = i & TCurveData::kChunkMask;
        const float* v = D.ValueChunk(chunk).data() + at;
        __builtin_prefetch(D.TimeAddress(i));
        __builtin_prefetch(v);
        __builtin_prefetch(v - 16);
        P->Prefetch(i);
    }

    void Push(double x, double y) {
        const QPointF p(x, y);
        if (Path.Points.size() == RunStart || Path.Points.back() != p) Path.Points.push_back(p);
    }

    // Collapsing keeps of each column only its first, top, bottom and last point: the lines
    // they make cover the same pixels as all of them, and a million samples drawn one by one
    // need no million points in memory.
    void Add(double column, double y) {
        const double x = M.Left + column + M.Offset, py = std::round(y) + M.Offset;
        if (!Collapse) {
            Push(x, py);
        } else if (ColOpen && x == ColX) {
            ColMin = std::min(ColMin, py);
            ColMax = std::max(ColMax, py);
            ColLast = py;
        } else {
            FlushColumn();
            ColOpen = true;
            ColX = x;
            ColFirst = ColMin = ColMax = ColLast = py;
        }
    }

    void FlushColumn() {
        if (!ColOpen) return;
        ColOpen = false;
        for (double y : {ColFirst, ColMin, ColMax, ColLast})
            Push(ColX, y);
    }

    // A point outside the window, moved along its segment to just beyond the window's edge.
    void AddOuter(qint64 outer, qint64 inner, double edge) {
        const double xo = Column(outer), yo = M.PixelY(D.Value(outer));
        const double xi = Column(inner), yi = M.PixelY(D.Value(inner));
        if ((edge < C0 && xo < edge) || (edge > C1 && xo > edge)) {
            Add(edge, yi + (yo - yi) * (edge - xi) / (xo - xi));
        } else {
            Add(xo, yo);
        }
    }

    // The first NaN in [from, to), or to. Infinite values are drawn and do not break.
    qint64 NextNaN(qint64 from, qint64 to) const {
        while (from < to) {
            const qint64 i = P ? P->NextNonFinite(from, to) : from;
            if (i >= to) return to;
            if (std::isnan(D.Value(i))) return i;
            from = i + 1;
        }
        return to;
    }

    // A piece between null points; NaN values split it further.
    void Run(qint64 s, qint64 e) {
        for (qint64 from = s; from <= e;) {
            const qint64 nan = NextNaN(from, e + 1);
            Piece(from, nan - 1);
            from = nan + 1;
        }
    }

    void Piece(qint64 s, qint64 e) {
        if (s > e) return;
        const bool leftOuter = s < Lo, rightOuter = e >= Hi;
        if (s == e && (leftOuter || rightOuter)) return; // a lone point outside the window
        if (leftOuter) AddOuter(s, s + 1, C0 - 2);
        const qint64 a = std::max(s, Lo), b = std::min(e, Hi - 1);
        if (a <= b) {
            if (Reduce)
                Aggregate(a, b);
            else
                for (qint64 i = a; i <= b; ++i)
                    Add(Column(i), M.PixelY(D.Value(i)));
        }
        if (rightOuter) AddOuter(e, e - 1, C1 + 2);
        FlushColumn();
        if (Path.Points.size() > RunStart) Path.Ends.push_back(Path.Points.size());
        RunStart = Path.Points.size();
    }

    // First, smallest, largest and last value per column: in pixels the same lines as
    // every segment, since inside a column they are all vertical.
    void Aggregate(qint64 a, qint64 b) {
        qint64 perColumn = 1;
        for (qint64 i = a; i <= b;) {
            const double c = Column(i);
            const qint64 j = NextColumn(i + 1, b + 1, c, i + perColumn);
            perColumn = j - i;
            // Large curves miss the cache at every column: ask for a later column's samples
            // now, so their loads overlap with this column's work.
            if (perColumn > 64) Prefetch(std::min(b, j + 8 * perColumn));
            // An infinite value lies outside the pyramid's extremes: such a column is drawn
            // sample by sample, as without reduction.
            if (j - i <= 4 || P->NextNonFinite(i, j) < j) {
                for (qint64 k = i; k < j; ++k)
                    Add(c, M.PixelY(D.Value(k)));
            } else {
                Add(c, M.PixelY(D.Value(i)));
                double lo = 0.0, hi = 0.0;
                if (P->MinMax(i, j, lo, hi)) {
                    Add(c, M.PixelY(lo));
                    Add(c, M.PixelY(hi));
                }
                Add(c, M.PixelY(D.Value(j - 1)));
            }
            i = j;
        }
    }

    const TCurveData& D;
    const TCurveSummary* P;
    const bool Reduce, Collapse;
    const TPixelMap& M;
    const double C0, C1;
    TCurvePath& Path;
    size_t RunStart = 0;  // where the piece being built begins
    bool ColOpen = false; // a collapsed column is being collected
    double ColX = 0.0, ColFirst = 0.0, ColMin = 0.0, ColMax = 0.0, ColLast = 0.0;
    qint64 Lo = 0, Hi = 0;
};

} // namespace

void BuildCurvePath(const TCurveData& data, const TCurveSummary* pyramid, bool reduce, const TPixelMap& map,
                    double firstColumn, double lastColumn, TCurvePath& path, bool collapseColumns) {
    path.Clear();
    TPathBuilder(data, pyramid, reduce, map, firstColumn, lastColumn, path, collapseColumns).Build();
}

// ====================================================================== plottable

TCurvePlottable::TCurvePlottable(QCPAxis* keyAxis, QCPAxis* valueAxis)
    : QCPAbstractPlottable(keyAxis, valueAxis) {
    setSelectable(QCP::stNone);
    setAntialiased(false);
}

void TCurvePlottable::SetSource(const TDataBase* db, int curve,
                                std::shared_ptr<const TCurveSummary> pyramid) {
    FDb = db;
    FCurve = curve;
    FGeneration = db->SamplesGeneration();
    FData = &db->Data(curve);
    FPyramid = std::move(pyramid);
}

void TCurvePlottable::SetData(const TCurveData* data, std::shared_ptr<const TCurveSummary> pyramid) {
    FDb = nullptr;
    FData = data;
    FPyramid = std::move(pyramid);
}

const TCurveData* TCurvePlottable::Data() const {
    if (FSuspended || !FData) return nullptr;
    if (FDb) {
        // The store may have thrown the samples away since; then the pointer is stale.
        if (FDb->IsLoading() || FDb->SamplesGeneration() != FGeneration || !FDb->Curve_IsValid(FCurve) ||
            &FDb->Data(FCurve) != FData)
            return nullptr;
    }
    return FData;
}

bool TCurvePlottable::PixelMap(TPixelMap& map) const {
    const QCPAxis* key = keyAxis();
    const QCPAxis* value = valueAxis();
    if (!key || !value || key->orientation() != Qt::Horizontal || key->rangeReversed()) return false;
    const QRect r = key->axisRect()->rect();
    const QCPRange range = key->range();
    if (r.width() <= 0 || !(range.size() > 0)) return false;
    map.KeyLower = range.lower;
    map.KeyScale = r.width() / range.size();
    map.Left = r.left();
    map.Top = r.top();
    map.Bottom = r.bottom();
    map.ValueAxis = value;
    map.ValueFactor = FFactor;
    map.ValueOffset = FOffset;
    if (FLastIndex >= FFirstIndex) {
        map.FirstIndex = FFirstIndex;
        map.EndIndex = FLastIndex + 1;
    }
    if (value->orientation() == Qt::Vertical && value->scaleType() == QCPAxis::stLinear &&
        !value->rangeReversed() && value->range().size() > 0) {
        const QRect vr = value->axisRect()->rect();
        map.Linear = true;
        map.ValueLower = value->range().lower;
        map.ValueScale = vr.height() / value->range().size();
        map.ValueBase = vr.bottom();
    }
    return true;
}

void TCurvePlottable::draw(QCPPainter* painter) {
    FLastPoints = 0;
    const TCurveData* d = Data();
    TPixelMap map;
    if (!d || d->IsEmpty() || !PixelMap(map)) return;
    applyDefaultAntialiasingHint(painter);
    map.Offset = 0.5; // points on pixel centres: no rounding decides between two pixels
    const int width = keyAxis()->axisRect()->width();
    BuildCurvePath(*d, FPyramid.get(), FReduce, map, 0, width - 1, FPath, FMergeColumns);
    FLastPoints = qint64(FPath.Points.size());

    QPen pen = mPen;
    // Each segment is drawn on its own with both ends capped, and vertical ones always
    // downwards: what a segment covers then depends only on its two points, never on its
    // neighbours or on the way a column was walked.
    pen.setCapStyle(pen.widthF() > 1.0 ? Qt::RoundCap : Qt::SquareCap);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    FLines.clear();
    for (size_t k = 0; k < FPath.Runs() && FType != TCurveType::Points; ++k) {
        const std::span<const QPointF> run = FPath.Run(k);
        if (run.size() == 1)
            painter->drawPoint(run.front());
        else
            AppendLines(run, FMergeColumns, FLines);
    }
    if (!FLines.empty()) painter->drawLines(FLines.data(), int(FLines.size()));
    if (FType != TCurveType::Line)
        for (const QPointF& p : FPath.Points)
            DrawMarker(painter, p);
}

void TCurvePlottable::AppendLines(std::span<const QPointF> run, bool merge, std::vector<QLineF>& lines) {
    if (!merge) {
        for (size_t k = 1; k < run.size(); ++k) {
            QPointF a = run[k - 1], b = run[k];
            if (a.x() == b.x() && a.y() > b.y()) std::swap(a, b);
            lines.emplace_back(a, b);
        }
        return;
    }
    // The vertical segments of one column cover the span from its top to its bottom: one
    // line for them, and the segments between columns as they are.
    for (size_t k = 0; k < run.size();) {
        const double x = run[k].x();
        double top = run[k].y(), bottom = top;
        size_t e = k;
        while (e + 1 < run.size() && run[e + 1].x() == x) {
            ++e;
            top = std::min(top, run[e].y());
            bottom = std::max(bottom, run[e].y());
        }
        if (k > 0) lines.emplace_back(run[k - 1], run[k]);
        if (bottom > top) lines.emplace_back(QPointF(x, top), QPointF(x, bottom));
        k = e + 1;
    }
}

void TCurvePlottable::DrawMarker(QCPPainter* painter, const QPointF& p) const {
    const double r = 2.0 + mPen.widthF();
    painter->save();
    painter->setPen(QPen(mPen.color(), 1));
    painter->setBrush(mPen.color());
    painter->drawRect(QRectF(p.x() - r / 2, p.y() - r / 2, r, r));
    painter->restore();
}

void TCurvePlottable::drawLegendIcon(QCPPainter* painter, const QRectF& rect) const {
    painter->setPen(mPen);
    if (FType != TCurveType::Points)
        painter->drawLine(QLineF(rect.left(), rect.center().y(), rect.right(), rect.center().y()));
    if (FType != TCurveType::Line) DrawMarker(painter, rect.center());
}

double TCurvePlottable::selectTest(const QPointF& pos, bool onlySelectable, QVariant* details) const {
    Q_UNUSED(details)
    if ((onlySelectable && mSelectable == QCP::stNone) || !realVisibility()) return -1;
    const TCurveData* d = Data();
    TPixelMap map;
    if (!d || d->IsEmpty() || !PixelMap(map)) return -1;
    if (!keyAxis()->axisRect()->rect().contains(pos.toPoint())) return -1;
    const double tol = mParentPlot->selectionTolerance();
    const double col = std::floor(pos.x() - map.Left);
    TCurvePath path;
    BuildCurvePath(*d, FPyramid.get(), FPyramid != nullptr, map, col - tol, col + tol, path);
    double best = std::numeric_limits<double>::max();
    const QCPVector2D p(pos);
    for (size_t r = 0; r < path.Runs(); ++r) {
        const std::span<const QPointF> run = path.Run(r);
        if (run.size() == 1) best = std::min(best, (QCPVector2D(run.front()) - p).lengthSquared());
        for (size_t k = 1; k < run.size(); ++k)
            best = std::min(best, p.distanceSquaredToLine(QCPVector2D(run[k - 1]), QCPVector2D(run[k])));
    }
    return best == std::numeric_limits<double>::max() ? -1 : std::sqrt(best);
}

QCPRange TCurvePlottable::getKeyRange(bool& foundRange, QCP::SignDomain inSignDomain) const {
    Q_UNUSED(inSignDomain) // time axes are linear
    const TCurveData* d = Data();
    foundRange = d && !d->IsEmpty();
    if (!foundRange) return {};
    if (FLastIndex >= FFirstIndex && FLastIndex < d->Count())
        return QCPRange(d->Time(FFirstIndex), d->Time(FLastIndex));
    return QCPRange(d->FirstTime(), d->LastTime());
}

QCPRange TCurvePlottable::getValueRange(bool& foundRange, QCP::SignDomain inSignDomain,
                                        const QCPRange& inKeyRange) const {
    Q_UNUSED(inSignDomain) // value axes are linear
    foundRange = false;
    const TCurveData* d = Data();
    if (!d || d->IsEmpty()) return {};
    qint64 first = 0, last = d->Count();
    if (inKeyRange != QCPRange()) {
        first = d->LowerBound(inKeyRange.lower);
        last = d->UpperBound(inKeyRange.upper);
    }
    if (FLastIndex >= FFirstIndex) {
        first = std::max(first, FFirstIndex);
        last = std::min(last, FLastIndex + 1);
        if (first >= last) return {};
    }
    double lo = 0.0, hi = 0.0;
    if (FPyramid) {
        foundRange = FPyramid->MinMax(first, last, lo, hi);
    } else {
        TCurveSummary scan(*d); // bare columns only (tests); the chart always has a pyramid
        foundRange = scan.MinMax(first, last, lo, hi);
    }
    if (!foundRange) return QCPRange();
    const double a = FFactor * lo + FOffset, b = FFactor * hi + FOffset;
    return QCPRange(std::min(a, b), std::max(a, b));
}

// ====================================================================== limit lines

TLimitLineItem::TLimitLineItem(QCustomPlot* plot, QCPAxis* valueAxis, int curve, int which, double value,
                               const QColor& color)
    : QCPItemStraightLine(plot), FCurve(curve), FWhich(which), FValue(value) {
    for (QCPItemPosition* p : {point1, point2})
        p->setAxes(plot->xAxis, valueAxis);
    point1->setCoords(0.0, value);
    point2->setCoords(1.0, value);
    setPen(QPen(color, 1, which == 1 ? Qt::SolidLine : Qt::DashLine));
    setSelectable(false);
    setClipAxisRect(plot->axisRect());
}
