#include "ui/DocumentPages.h"

#include "config/Texts.h"

#include "data/Formats.h"

#include <QDate>
#include <QDateTime>
#include <QPagedPaintDevice>
#include <QPainter>

int PaintPages(QCPPainter& p, QPagedPaintDevice& device, const TPageLayout& L, const std::vector<TBlock>& blocks,
               const QString& headerLeft, const QString& headerRight, const QString& footerName) {
    // Pages: a block that does not fit goes to the next page, a heading with it.
    struct TPlaced {
        const TBlock* Block;
        double Y;
    };
    std::vector<std::vector<TPlaced>> pages(1);
    const double top = L.Content().top(), bottom = L.Content().bottom();
    double y = top;
    for (size_t k = 0; k < blocks.size(); ++k) {
        double need = blocks[k].Height;
        if (blocks[k].KeepWithNext && k + 1 < blocks.size())
            need += blocks[k].SpaceAfter + blocks[k + 1].Height;
        if ((y + need > bottom || blocks[k].PageBreakBefore) && y > top) {
            pages.emplace_back();
            y = top;
        }
        pages.back().push_back({&blocks[k], y});
        y += blocks[k].Height + blocks[k].SpaceAfter;
    }

    const QFont small = TPageLayout::Font(8), smallBold = TPageLayout::Font(8, true);
    for (size_t n = 0; n < pages.size(); ++n) {
        if (n > 0 && !device.newPage()) return -1;
        // The running header: company and title, a rule beneath.
        const double left = L.X(kMarginLeft), right = L.Page().width() - L.X(kMarginRight);
        const QRectF header(left, L.Y(kMarginTop), right - left, L.Y(kHeaderBand - 4));
        p.setPen(Qt::black);
        p.setFont(smallBold);
        p.drawText(header, Qt::AlignLeft | Qt::AlignTop, headerLeft);
        p.setFont(small);
        p.drawText(header, Qt::AlignRight | Qt::AlignTop, headerRight);
        p.setPen(QPen(QColor(120, 120, 120), 0));
        p.drawLine(QPointF(left, header.bottom()), QPointF(right, header.bottom()));
        // The running footer: file and page number over a rule.
        const double rule = L.Page().height() - L.Y(kMarginBottom + kFooterBand - 3);
        p.drawLine(QPointF(left, rule), QPointF(right, rule));
        const QRectF footer(left, rule + L.Y(1), right - left, L.Y(kFooterBand - 3));
        p.setPen(Qt::black);
        p.setFont(small);
        // A long name gives way to the page number, shortened in its middle.
        const QString page = zeb::TxtFmt(zeb::TTextId::ReportPage, {QString::number(n + 1), QString::number(pages.size())});
        const QFontMetricsF fm(small, &device);
        const double room = footer.width() - fm.horizontalAdvance(page) - L.X(5);
        p.drawText(footer, Qt::AlignLeft | Qt::AlignTop, fm.elidedText(footerName, Qt::ElideMiddle, room));
        p.drawText(footer, Qt::AlignRight | Qt::AlignTop, page);
        for (const TPlaced& placed : pages[n])
            placed.Block->Draw(
                p, QRectF(L.Content().left(), placed.Y, L.Content().width(), placed.Block->Height));
    }
    return int(pages.size());
}

// Now on the wall clock, in the seconds since 1 January 2000 that every time text takes.
double NowSince2000() {
    const QDateTime now = QDateTime::currentDateTime();
    return double(QDate(2000, 1, 1).daysTo(now.date())) * zeb::kSecondsPerDay +
           now.time().msecsSinceStartOfDay() / 1000.0;
}
