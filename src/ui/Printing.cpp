#include "ui/Printing.h"

#include "store/DataBase.h"
#include "ui/CrossHair.h"
#include "ui/ZebChart.h"

#include <QFileInfo>
#include <QPainter>
#include <QPicture>
#include <QPrinter>
#include <QSaveFile>
#include <QSvgGenerator>

#include <algorithm>

QRect PrintRect(int w, int h, const TPrintMargins& m) {
    const int left = w * m.Left / 100, top = h * m.Top / 100;
    const int q = (100 - m.Right) / 100, r = (100 - m.Bottom) / 100;
    const int right = w - left - q - 1, bottom = h - top - r - 1;
    return QRect(left, top, right - left, bottom - top);
}

TPrintMargins ProportionalMargins(QSize page, QSize chart) {
    TPrintMargins m;
    if (page.isEmpty() || chart.isEmpty()) return m;
    const double pageRatio = double(page.width()) / page.height(), chartRatio = double(chart.width()) / chart.height();
    if (pageRatio > chartRatio) {
        const double width = page.height() * chartRatio;
        m.Left = m.Right = int((page.width() - width) / 2.0 * 100.0 / page.width());
    } else {
        const double height = page.width() / chartRatio;
        m.Top = m.Bottom = int((page.height() - height) / 2.0 * 100.0 / page.height());
    }
    return m;
}

TPrintMargins MarginsFor(const TPrintState& print, QSize page, QSize chart) {
    if (print.Proportional) return ProportionalMargins(page, chart);
    return {print.MarginLeft, print.MarginTop, print.MarginRight, print.MarginBottom};
}

namespace {

// Draws the chart at w × h with pens that scale with the drawing, as on paper they must.
void DrawChart(TZebChart& chart, QPaintDevice* device, int w, int h) {
    QCPPainter painter;
    painter.begin(device);
    painter.setMode(QCPPainter::pmVectorized);
    painter.setMode(QCPPainter::pmNoCaching);
    painter.setMode(QCPPainter::pmNonCosmetic);
    chart.toPainter(&painter, w, h);
    painter.end();
}

} // namespace

bool PrintChart(QPrinter& printer, TZebChart& chart, const TPrintState& print) {
    // A picture of the chart as it is on screen, its crosshairs grey while it is made.
    QPicture picture;
    TCrossHair* crossHair = chart.CrossHair();
    crossHair->SetCursorPrintColor(true);
    DrawChart(chart, &picture, chart.width(), chart.height());
    crossHair->SetCursorPrintColor(false);
    chart.replot(QCustomPlot::rpQueuedReplot);

    printer.setDocName(QStringLiteral("ZEB Print"));
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    const QRect page = printer.pageLayout().paintRectPixels(printer.resolution());
    const QRect target = PrintRect(page.width(), page.height(), MarginsFor(print, page.size(), chart.size()));
    // Stretched into the rectangle; the painter already scales a picture from its resolution to
    // the printer's.
    const double dpi = double(printer.logicalDpiX()) / picture.logicalDpiX();
    const double dpiY = double(printer.logicalDpiY()) / picture.logicalDpiY();
    painter.translate(target.topLeft());
    painter.scale(double(target.width()) / (std::max(1, chart.width()) * dpi),
                  double(target.height()) / (std::max(1, chart.height()) * dpiY));
    painter.drawPicture(0, 0, picture);
    return painter.end();
}

bool SaveChartPicture(TZebChart& chart, const QString& fileName, QSize size) {
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    const int w = size.width(), h = size.height();
    if (suffix == QLatin1String("png")) return chart.savePng(fileName, w, h);
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg")) return chart.saveJpg(fileName, w, h, 1.0, 95);
    if (suffix == QLatin1String("bmp")) return chart.saveBmp(fileName, w, h);
    if (suffix == QLatin1String("pdf")) return chart.savePdf(fileName, w, h, QCP::epNoCosmetic, QStringLiteral("ZEB Viewer"));
    if (suffix == QLatin1String("svg")) {
        // Through a save file: a failed write leaves no half picture behind.
        QSaveFile file(fileName);
        if (!file.open(QIODevice::WriteOnly)) return false;
        QSvgGenerator svg;
        svg.setOutputDevice(&file);
        svg.setSize(QSize(w, h));
        svg.setViewBox(QRect(0, 0, w, h));
        svg.setTitle(QStringLiteral("ZEB Viewer"));
        DrawChart(chart, &svg, w, h);
        return file.commit();
    }
    return false;
}
