#pragma once
// The report's form (File > "Print report.."): the document page by page before it is
// printed, with buttons to print it, to save it as PDF and to zoom, and the activation energy
// of the mean kinetic temperature (kept in the program settings for the next report).

#include "ui/Report.h"

#include <QDialog>

#include <memory>

class QDoubleSpinBox;
class QLabel;
class QPrinter;
class QPrintPreviewWidget;
class QPushButton;

class TfrmReport : public QDialog {
    Q_OBJECT
public:
    // The report is made at once from the store and the chart as they are.
    TfrmReport(const TDataBase& db, QCustomPlot* chart, QWidget* parent = nullptr,
               const TReportOptions& options = {});
    ~TfrmReport() override;

    const TReport& Report() const { return *FReport; }
    // Makes the report anew with this activation energy (kJ/mol) and keeps it in the settings.
    void SetActivationEnergy(double kJPerMol);
    QPrintPreviewWidget* Preview() const { return FPreview; }

    // The printer dialog, then the print.
    void GUI_ReportPrint();
    // Asks for a name (the data file's with ".pdf") and writes the PDF; says so when it cannot.
    void GUI_ReportSavePdf();
    // The PDF without asking; false (and a message) when it cannot be written.
    bool SavePdf(const QString& fileName);

private:
    void LoadLanguageRes();

    const TDataBase& FDb;
    QPointer<QCustomPlot> FChart;
    TReportOptions FOptions;
    std::unique_ptr<TReport> FReport;
    std::unique_ptr<QPrinter> FPrinter; // the preview's
    QString FDataFile;
    QPrintPreviewWidget* FPreview = nullptr;
    QPushButton* btnReportPrint = nullptr;
    QPushButton* btnReportSavePdf = nullptr;
    QPushButton* btnReportZoomIn = nullptr;
    QPushButton* btnReportZoomOut = nullptr;
    QPushButton* btnReportClose = nullptr;
    QLabel* lblReportActivationEnergy = nullptr;
    QDoubleSpinBox* osfReportActivationEnergy = nullptr;
};
