#include "ui/ToolbarGlyphs.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

QIcon Glyph(TGlyph g) {
    constexpr int S = 22;
    QPixmap pm(S * 2, S * 2);
    pm.setDevicePixelRatio(2.0);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor ink(40, 40, 40);
    const QColor accent(0, 90, 180);
    const QColor grid(150, 150, 150);
    auto axes = [&](bool left, bool right) {
        p.setPen(QPen(ink, 1.6));
        p.drawLine(QPointF(3, 18.5), QPointF(19, 18.5));
        if (left) p.drawLine(QPointF(3.5, 3), QPointF(3.5, 19));
        if (right) p.drawLine(QPointF(18.5, 3), QPointF(18.5, 19));
    };
    switch (g) {
    case TGlyph::GridBottom:
    case TGlyph::GridLeft:
    case TGlyph::GridRight: {
        p.setPen(QPen(grid, 1.0, Qt::DotLine));
        if (g == TGlyph::GridBottom)
            for (double x : {8.5, 13.5})
                p.drawLine(QPointF(x, 3), QPointF(x, 18));
        else
            for (double y : {6.5, 12.5})
                p.drawLine(QPointF(4, y), QPointF(18, y));
        axes(g != TGlyph::GridRight, g == TGlyph::GridRight);
        p.setPen(QPen(accent, 2.0));
        if (g == TGlyph::GridBottom)
            p.drawLine(QPointF(3, 18.5), QPointF(19, 18.5));
        else if (g == TGlyph::GridLeft)
            p.drawLine(QPointF(3.5, 3), QPointF(3.5, 19));
        else
            p.drawLine(QPointF(18.5, 3), QPointF(18.5, 19));
        break;
    }
    case TGlyph::AxisBottom:
    case TGlyph::AxisLeft:
    case TGlyph::AxisRight: {
        axes(g != TGlyph::AxisRight, g == TGlyph::AxisRight);
        // A padlock on the axis that keeps its range.
        const QPointF c = g == TGlyph::AxisBottom ? QPointF(11, 12)
                          : g == TGlyph::AxisLeft ? QPointF(11, 10)
                                                  : QPointF(10, 10);
        p.setPen(QPen(accent, 1.6));
        p.setBrush(Qt::NoBrush);
        p.drawArc(QRectF(c.x() - 3, c.y() - 6, 6, 7), 0, 180 * 16);
        p.setBrush(accent);
        p.drawRoundedRect(QRectF(c.x() - 4.5, c.y() - 2, 9, 7), 1, 1);
        break;
    }
    case TGlyph::Cursor1:
    case TGlyph::Cursor2: {
        QPen pen(ink, 1.4, g == TGlyph::Cursor1 ? Qt::DashLine : Qt::DashDotDotLine);
        p.setPen(pen);
        p.drawLine(QPointF(11, 2), QPointF(11, 20));
        p.drawLine(QPointF(2, 11), QPointF(20, 11));
        p.setPen(QPen(accent, 1.6));
        p.drawEllipse(QPointF(11, 11), 3.5, 3.5);
        p.setPen(ink);
        QFont f = p.font();
        f.setPixelSize(8);
        f.setBold(true);
        p.setFont(f);
        p.drawText(QRectF(13, 12, 9, 9), Qt::AlignCenter,
                   g == TGlyph::Cursor1 ? QStringLiteral("1") : QStringLiteral("2"));
        break;
    }
    case TGlyph::Scale: {
        axes(true, false);
        QPainterPath curve;
        curve.moveTo(5, 15);
        curve.cubicTo(9, 2, 12, 20, 18, 5);
        p.setPen(QPen(accent, 1.8));
        p.drawPath(curve);
        p.setPen(QPen(ink, 1.2));
        p.drawLine(QPointF(15, 2.5), QPointF(20, 2.5));
        p.drawLine(QPointF(19.5, 2), QPointF(19.5, 7));
        break;
    }
    case TGlyph::Undo: {
        QPainterPath arc;
        arc.moveTo(6, 9);
        arc.cubicTo(10, 4, 18, 5, 18, 12);
        arc.cubicTo(18, 17, 13, 19, 9, 18);
        p.setPen(QPen(accent, 2.0, Qt::SolidLine, Qt::RoundCap));
        p.drawPath(arc);
        QPainterPath head;
        head.moveTo(3, 8);
        head.lineTo(9.5, 4.5);
        head.lineTo(9, 12);
        head.closeSubpath();
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawPath(head);
        break;
    }
    case TGlyph::ViewGraph: {
        p.setPen(QPen(ink, 1.2));
        p.setBrush(Qt::white);
        p.drawRect(QRectF(2.5, 3.5, 17, 15));
        QPainterPath curve;
        curve.moveTo(4, 14);
        curve.lineTo(8, 8);
        curve.lineTo(11, 12);
        curve.lineTo(15, 6);
        curve.lineTo(18, 9);
        p.setPen(QPen(accent, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(curve);
        break;
    }
    case TGlyph::ViewTable: {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(200, 220, 240));
        p.drawRect(QRectF(2.5, 3.5, 17, 4));
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(ink, 1.2));
        p.drawRect(QRectF(2.5, 3.5, 17, 15));
        for (double y : {7.5, 11.25, 15.0})
            p.drawLine(QPointF(2.5, y), QPointF(19.5, y));
        p.drawLine(QPointF(8.5, 3.5), QPointF(8.5, 18.5));
        p.drawLine(QPointF(14, 3.5), QPointF(14, 18.5));
        break;
    }
    case TGlyph::ViewCfg: {
        // Three sliders: the settings page.
        p.setPen(QPen(ink, 1.4, Qt::SolidLine, Qt::RoundCap));
        const double ys[3] = {5, 11, 17};
        const double knobs[3] = {7, 15, 10};
        for (int i = 0; i < 3; ++i)
            p.drawLine(QPointF(3, ys[i]), QPointF(19, ys[i]));
        p.setBrush(accent);
        p.setPen(QPen(Qt::white, 1.0));
        for (int i = 0; i < 3; ++i)
            p.drawRoundedRect(QRectF(knobs[i] - 2.5, ys[i] - 3, 5, 6), 1.2, 1.2);
        break;
    }
    case TGlyph::TableGotoTMin: {
        // To the chart's first moment: an arrow onto a bar, over a small curve.
        QPainterPath curve;
        curve.moveTo(4, 19);
        curve.cubicTo(8, 13, 12, 20, 19, 14);
        p.setPen(QPen(grid, 1.4));
        p.drawPath(curve);
        p.setPen(QPen(accent, 2.0, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(4, 3), QPointF(4, 13));
        p.drawLine(QPointF(18, 8), QPointF(7, 8));
        QPainterPath head;
        head.moveTo(6, 8);
        head.lineTo(11, 4.5);
        head.lineTo(11, 11.5);
        head.closeSubpath();
        p.setPen(Qt::NoPen);
        p.setBrush(accent);
        p.drawPath(head);
        break;
    }
    case TGlyph::TextModify:
    case TGlyph::TextInsert: {
        // A text box; a hand to move it, or a plus to add one.
        p.setPen(QPen(ink, 1.2));
        p.setBrush(QColor(255, 250, 205));
        p.drawRect(QRectF(2.5, 4.5, 14, 9));
        p.setPen(QPen(ink, 1.0));
        for (double y : {7.5, 10.5})
            p.drawLine(QPointF(5, y), QPointF(13, y));
        p.setPen(QPen(accent, 2.0, Qt::SolidLine, Qt::RoundCap));
        if (g == TGlyph::TextInsert) {
            p.drawLine(QPointF(16, 13), QPointF(16, 20));
            p.drawLine(QPointF(12.5, 16.5), QPointF(19.5, 16.5));
        } else {
            p.drawLine(QPointF(11, 17), QPointF(19, 17));
            p.drawLine(QPointF(15, 13), QPointF(15, 21));
        }
        break;
    }
    case TGlyph::Print: {
        p.setPen(QPen(ink, 1.2));
        p.setBrush(Qt::white);
        p.drawRect(QRectF(6.5, 2.5, 9, 6));
        p.setBrush(QColor(220, 220, 220));
        p.drawRoundedRect(QRectF(2.5, 8.5, 17, 8), 1.5, 1.5);
        p.setBrush(Qt::white);
        p.drawRect(QRectF(6.5, 13.5, 9, 6));
        p.setPen(QPen(accent, 1.2));
        p.drawLine(QPointF(8, 16), QPointF(14, 16));
        break;
    }
    case TGlyph::TableGotoTime: {
        p.setPen(QPen(ink, 1.4));
        p.setBrush(Qt::white);
        p.drawEllipse(QPointF(11, 11), 8, 8);
        p.setPen(QPen(accent, 1.8, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(11, 11), QPointF(11, 5.5));
        p.drawLine(QPointF(11, 11), QPointF(15, 13));
        break;
    }
    }
    p.end();
    return QIcon(pm);
}

