#pragma once
// Documents of pages (the report, the summary): a flow of blocks (texts, tables, pictures) laid
// out on A4 pages with the documents' own margins, a running header and a footer with the page
// number. Sizes are given in millimetres and points, so any paint device (a PDF, a printer,
// the preview) gets the same page.

#include "ui/CurvePlottable.h" // the chart library, as every unit includes it

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPaintDevice>
#include <QRectF>
#include <QString>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <functional>
#include <vector>

class QPagedPaintDevice;

// A4 in millimetres and the report's own margins, wide enough for any printer's unprintable
// edge.
constexpr double kPageWidth = 210.0, kPageHeight = 297.0;
constexpr double kMarginLeft = 20.0, kMarginRight = 15.0, kMarginTop = 12.0, kMarginBottom = 12.0;
constexpr double kHeaderBand = 10.0, kFooterBand = 9.0; // running header and footer
constexpr double kCellPad = 1.2;
constexpr double kMaxChartHeight = 115.0; // a report's chart

// One piece of the flow: its height, and how it draws itself into a rectangle of the content
// width at its place on a page.
struct TBlock {
    double Height = 0.0;
    double SpaceAfter = 0.0;
    bool KeepWithNext = false; // a heading stays with what it heads
    bool PageBreakBefore = false; // begins a page of its own
    std::function<void(QCPPainter&, const QRectF&)> Draw;
};

struct TCell {
    TCell(QString text, int span = 1, bool bold = false, QColor swatch = {})
        : Text(std::move(text)), Span(span), Bold(bold), Swatch(swatch) {}
    QString Text;
    int Span = 1;
    bool Bold = false;
    QColor Swatch; // a colour square before the text
};
struct TRow {
    std::vector<TCell> Cells;
    bool Shaded = false;
};

class TPageLayout {
public:
    explicit TPageLayout(QPaintDevice& device)
        : FDevice(device), FDpmX(device.logicalDpiX() / 25.4), FDpmY(device.logicalDpiY() / 25.4) {
        // The device may be a printer whose page is not exactly A4: the report fills what it has.
        FPage = QRectF(0, 0, device.width(), device.height());
        FContent =
            QRectF(X(kMarginLeft), Y(kMarginTop + kHeaderBand), FPage.width() - X(kMarginLeft + kMarginRight),
                   FPage.height() - Y(kMarginTop + kHeaderBand + kMarginBottom + kFooterBand));
    }
    double X(double mm) const { return mm * FDpmX; }
    double Y(double mm) const { return mm * FDpmY; }
    const QRectF& Page() const { return FPage; }
    const QRectF& Content() const { return FContent; }

    static QFont Font(double points, bool bold = false) {
        QFont f(QStringLiteral("Arial"));
        f.setStyleHint(QFont::SansSerif);
        f.setPointSizeF(points);
        f.setBold(bold);
        return f;
    }
    // Text breaks at word boundaries, and anywhere where a word (a path, a long name) is
    // wider than the line.
    static QTextOption Wrapping(Qt::Alignment alignment) {
        QTextOption o(alignment);
        o.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        return o;
    }
    double TextHeight(const QFont& font, double width, const QString& text) const {
        if (text.isEmpty()) return QFontMetricsF(font, &FDevice).height();
        QString lines = text;
        lines.replace(QLatin1Char('\n'), QChar::LineSeparator);
        QTextLayout layout(lines, font, &FDevice);
        layout.setTextOption(Wrapping(Qt::AlignLeft));
        double height = 0.0;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            height += line.height();
        }
        layout.endLayout();
        return height;
    }

    // A table of rows over columns given as fractions of the width.
    TBlock Table(std::vector<TRow> rows, std::vector<double> columns, double spaceAfter,
                 double points = 9.0) const {
        const QFont normal = Font(points), bold = Font(points, true);
        const double width = FContent.width(), padX = X(kCellPad), padY = Y(kCellPad * 0.6);
        std::vector<double> x{0.0};
        for (double c : columns)
            x.push_back(x.back() + c * width);
        auto cellWidth = [&](size_t col, int span) {
            return x[std::min(x.size() - 1, col + size_t(span))] - x[col];
        };
        std::vector<double> heights;
        double total = 0.0;
        for (const TRow& r : rows) {
            double h = 0.0;
            size_t col = 0;
            for (const TCell& c : r.Cells) {
                const double swatch = c.Swatch.isValid() ? X(4.5) : 0.0;
                h = std::max(h, TextHeight(c.Bold ? bold : normal, cellWidth(col, c.Span) - 2 * padX - swatch,
                                           c.Text));
                col += size_t(c.Span);
            }
            heights.push_back(h + 2 * padY);
            total += heights.back();
        }
        TBlock b;
        b.Height = total;
        b.SpaceAfter = spaceAfter;
        b.Draw = [rows = std::move(rows), heights, x, normal, bold, padX, padY, swatchSize = X(2.8),
                  swatchSpace = X(4.5)](QCPPainter& p, const QRectF& at) {
            double y = at.top();
            const QPen grid(QColor(150, 150, 150), 0);
            for (size_t k = 0; k < rows.size(); ++k) {
                const TRow& r = rows[k];
                const double h = heights[k];
                if (r.Shaded) p.fillRect(QRectF(at.left(), y, x.back(), h), QColor(232, 236, 241));
                size_t col = 0;
                for (const TCell& c : r.Cells) {
                    const size_t end = std::min(x.size() - 1, col + size_t(c.Span));
                    QRectF cell(at.left() + x[col], y, x[end] - x[col], h);
                    p.setPen(grid);
                    p.setBrush(Qt::NoBrush);
                    p.drawRect(cell);
                    QRectF text = cell.adjusted(padX, padY, -padX, -padY);
                    if (c.Swatch.isValid()) {
                        const QRectF square(text.left(), text.center().y() - swatchSize / 2, swatchSize,
                                            swatchSize);
                        p.fillRect(square, c.Swatch);
                        p.drawRect(square);
                        text.setLeft(text.left() + swatchSpace);
                    }
                    p.setPen(Qt::black);
                    p.setFont(c.Bold ? bold : normal);
                    QString lines = c.Text;
                    lines.replace(QLatin1Char('\n'), QChar::LineSeparator);
                    p.drawText(text, lines, Wrapping(Qt::AlignLeft | Qt::AlignVCenter));
                    col = end;
                }
                y += h;
            }
        };
        return b;
    }

    TBlock Text(const QString& text, const QFont& font, double spaceAfter, bool keepWithNext = false) const {
        TBlock b;
        b.Height = TextHeight(font, FContent.width(), text);
        b.SpaceAfter = spaceAfter;
        b.KeepWithNext = keepWithNext;
        b.Draw = [text, font](QCPPainter& p, const QRectF& at) {
            p.setPen(Qt::black);
            p.setFont(font);
            p.drawText(at, text, Wrapping(Qt::AlignLeft | Qt::AlignTop));
        };
        return b;
    }

private:
    QPaintDevice& FDevice;
    double FDpmX, FDpmY; // device pixels per millimetre
    QRectF FPage, FContent;
};


// Lays the blocks out on pages (a block that does not fit goes to the next page, a heading
// with it) and paints them with the running header (left and right texts) and footer (the
// name, shortened in its middle where it must, and "page n of m"). The number of pages, or -1
// when the device refuses a new page.
int PaintPages(QCPPainter& p, QPagedPaintDevice& device, const TPageLayout& L, const std::vector<TBlock>& blocks,
               const QString& headerLeft, const QString& headerRight, const QString& footerName);

// Now on the wall clock, in the seconds since 1 January 2000 that every time text takes: a
// document's "printed on".
double NowSince2000();
