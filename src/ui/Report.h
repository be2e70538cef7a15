#pragma once
// The report: a paginated A4 document, in the current language, of what the chart shows: a
// header naming the recording and the time range, the chart itself, per shown curve the
// figures of the calculation and limit views over that range (with the times of the extremes,
// the limit violations and, for temperatures, the mean kinetic temperature), the notices of
// the range (numbered on the chart and in their table), page numbers and lines to sign. Previewed and printed by TfrmReport, written by scripts with
// WriteReportPdf.
//
// The figures and texts are taken from the store when the report is made, so the preview, the
// print and the PDF of one report agree; the chart is drawn when a page is painted.

#include "analysis/Analysis.h"

#include <QPointer>
#include <QSize>
#include <QString>

#include <vector>

class QCustomPlot;
class QPagedPaintDevice;
class TDataBase;

struct TReportOptions {
    // For the mean kinetic temperature, in kJ/mol.
    double ActivationEnergy = kMktActivationEnergy;
};

// One curve of the report: its figures as texts, formatted as the views format them, each
// value with the curve's unit. Infinite values are counted apart and left out of the figures.
struct TReportCurve {
    int Curve = 0;
    QString Name;      // with unit, and the logger when the curves come from several
    int Color = 0;     // 0x00BBGGRR
    int CalcCount = 0; // finite values: 0 none in the range, 1 one, 2 more
    QString Values;    // how many, and the sampling interval
    QString Infinite;  // how many infinite values were left out; empty with none
    QString Min, MinTime, Max, MaxTime, Average, StdDev, Span;
    QString Mkt; // empty unless the unit is °C
    int LimitMode = 0;
    QString Limits; // the mode with L1 and L2
    bool LimitValid = false;
    QString Out, In;
    qint64 Violations = 0;
    QString FirstViolation; // its time; empty with none
};

class TReport {
public:
    // The chart may be null: the report then has no picture.
    TReport(const TDataBase& db, QCustomPlot* chart, const TReportOptions& options = {});

    // A4 portrait without margins of the device's own (the report keeps its own margins), at
    // the resolution the chart is drawn as vectors in.
    static void PreparePage(QPagedPaintDevice& device);
    // Paints every page onto the device: a printer, the preview's printer, a PDF writer.
    // False when painting cannot begin (a PDF that cannot be written, a printer that fails).
    bool Print(QPagedPaintDevice& device) const;
    // Writes the document as a PDF file; an existing file is replaced only when the new one is
    // complete.
    bool SavePdf(const QString& fileName) const;
    // The pages of the last Print.
    int PageCount() const { return FPageCount; }

    const std::vector<TReportCurve>& Curves() const { return FCurves; }
    // The header's rows: label and value.
    const std::vector<std::pair<QString, QString>>& Header() const { return FHeader; }

private:
    // The notices of the reported range, numbered as the chart's marks are.
    struct TNotice {
        int Number = 0;
        QString TimeText, Text;
    };
    std::vector<std::pair<QString, QString>> FHeader;
    std::vector<TReportCurve> FCurves;
    std::vector<TNotice> FNotices;
    QString FCompany, FFileName, FPrinted;
    QPointer<QCustomPlot> FChartWidget;
    QSize FChartSize; // its shape on screen
    double FActivationEnergy = kMktActivationEnergy;
    mutable int FPageCount = 0;
};

// For scripts: the report of a loaded store and its chart as a PDF file; false when the file
// cannot be written.
bool WriteReportPdf(const TDataBase& db, QCustomPlot* chart, const QString& fileName,
                    const TReportOptions& options = {});
