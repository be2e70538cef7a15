#pragma once
// Where the elements of a laid-out chart are, for clicks on them.

#include "ui/ZebChart.h"

inline QPoint LegendEntry(TZebChart& chart, int index) {
    return chart.legend->item(index)->outerRect().center();
}

// A point on "title", "bottom axis", "left axis", "right axis", the first "legend" entry or a
// "curve" (down the middle of the plot until one answers).
inline QPoint ElementPos(TZebChart& chart, const QString& element) {
    const QRect r = chart.axisRect()->rect();
    if (element == QLatin1String("title")) return chart.TitleElement()->outerRect().center();
    if (element == QLatin1String("bottom axis")) return QPoint(r.center().x(), r.bottom() + 4);
    if (element == QLatin1String("left axis")) return QPoint(r.left() - 4, r.center().y());
    if (element == QLatin1String("right axis")) return QPoint(r.right() + 4, r.center().y());
    if (element == QLatin1String("legend")) return LegendEntry(chart, 0);
    for (int y = r.top(); y <= r.bottom(); ++y)
        if (chart.plottableAt(QPointF(r.center().x(), y), false)) return QPoint(r.center().x(), y);
    return {};
}
