#pragma once
// Printing the chart as it is on screen, stretched into the page by the margins, and the
// chart written to picture files of every kind.

#include <QRect>
#include <QString>

class QPrinter;
class TZebChart;
struct TPrintState;

// Margins in percent of the page.
struct TPrintMargins {
    int Left = 0, Top = 0, Right = 0, Bottom = 0;
    bool operator==(const TPrintMargins&) const = default;
};

// The rectangle the picture fills on a page of w × h printer pixels: left and top from their
// margins; right and bottom mirror them, one pixel further in, and one more when the right
// (bottom) margin is 0 — the program has always printed so, and prints stay as they were.
QRect PrintRect(int w, int h, const TPrintMargins& margins);

// Margins that keep the chart's proportions, the picture centred on the page.
TPrintMargins ProportionalMargins(QSize page, QSize chart);

// The margins a print uses: the store's, or with proportional on the proportional ones.
TPrintMargins MarginsFor(const TPrintState& print, QSize page, QSize chart);

// Prints the chart as the job "ZEB Print": drawn as on screen, its crosshairs grey while it
// is drawn, stretched into the margins' rectangle; false when the printer could not start.
bool PrintChart(QPrinter& printer, TZebChart& chart, const TPrintState& print);

// The chart as a picture file of the given size: the format follows the extension (png, jpg,
// jpeg, bmp, pdf, svg); pdf and svg are vector drawings. False when it cannot be written.
bool SaveChartPicture(TZebChart& chart, const QString& fileName, QSize size);
