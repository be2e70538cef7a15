#include "ui/ReportDlg.h"

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"
#include "ui/CurvePlottable.h" // the chart library
#include "ui/ZebDlg.h"

#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;

TfrmReport::TfrmReport(const TDataBase& db, QCustomPlot* chart, QWidget* parent,
                       const TReportOptions& options)
    : QDialog(parent), FDb(db), FChart(chart), FOptions(options),
      FReport(std::make_unique<TReport>(db, chart, options)),
      FPrinter(std::make_unique<QPrinter>(QPrinter::HighResolution)), FDataFile(db.FileName()) {
    setObjectName(QStringLiteral("frmReport"));
    resize(820, 900);
    // The report keeps its own margins on the full sheet.
    FPrinter->setFullPage(true);
    TReport::PreparePage(*FPrinter);
    FPreview = new QPrintPreviewWidget(FPrinter.get(), this);
    FPreview->setObjectName(QStringLiteral("ppwReport"));
    connect(FPreview, &QPrintPreviewWidget::paintRequested, this,
            [this](QPrinter* printer) { FReport->Print(*printer); });

    auto button = [this](const char* name) {
        auto* b = new QPushButton(this);
        b->setObjectName(QLatin1String(name));
        b->setAutoDefault(false);
        return b;
    };
    btnReportZoomOut = button("btnReportZoomOut");
    btnReportZoomIn = button("btnReportZoomIn");
    btnReportPrint = button("btnReportPrint");
    btnReportSavePdf = button("btnReportSavePdf");
    btnReportClose = button("btnReportClose");
    connect(btnReportZoomOut, &QPushButton::clicked, FPreview, [this] { FPreview->zoomOut(); });
    connect(btnReportZoomIn, &QPushButton::clicked, FPreview, [this] { FPreview->zoomIn(); });
    connect(btnReportPrint, &QPushButton::clicked, this, &TfrmReport::GUI_ReportPrint);
    connect(btnReportSavePdf, &QPushButton::clicked, this, &TfrmReport::GUI_ReportSavePdf);
    connect(btnReportClose, &QPushButton::clicked, this, &QDialog::accept);

    lblReportActivationEnergy = new QLabel(this);
    lblReportActivationEnergy->setObjectName(QStringLiteral("lblReportActivationEnergy"));
    osfReportActivationEnergy = new QDoubleSpinBox(this);
    osfReportActivationEnergy->setObjectName(QStringLiteral("osfReportActivationEnergy"));
    osfReportActivationEnergy->setDecimals(3);
    osfReportActivationEnergy->setRange(1.0, 1000.0);
    osfReportActivationEnergy->setSuffix(QStringLiteral(" kJ/mol"));
    osfReportActivationEnergy->setValue(options.ActivationEnergy);
    lblReportActivationEnergy->setBuddy(osfReportActivationEnergy);
    connect(osfReportActivationEnergy, &QDoubleSpinBox::editingFinished, this,
            [this] { SetActivationEnergy(osfReportActivationEnergy->value()); });

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(lblReportActivationEnergy);
    buttons->addWidget(osfReportActivationEnergy);
    buttons->addSpacing(12);
    buttons->addWidget(btnReportZoomOut);
    buttons->addWidget(btnReportZoomIn);
    buttons->addStretch(1);
    buttons->addWidget(btnReportPrint);
    buttons->addWidget(btnReportSavePdf);
    buttons->addWidget(btnReportClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(FPreview, 1);
    layout->addLayout(buttons);
    LoadLanguageRes();
    FPreview->fitToWidth();
}

TfrmReport::~TfrmReport() = default;

void TfrmReport::SetActivationEnergy(double kJPerMol) {
    if (kJPerMol == FOptions.ActivationEnergy || !(kJPerMol > 0.0)) return;
    FOptions.ActivationEnergy = kJPerMol;
    ZebSettings().MktActivationEnergy = kJPerMol;
    osfReportActivationEnergy->setValue(kJPerMol);
    FReport = std::make_unique<TReport>(FDb, FChart, FOptions);
    FPreview->updatePreview();
}

void TfrmReport::LoadLanguageRes() {
    setWindowTitle(Txt(TTextId::ReportTitle));
    btnReportZoomOut->setText(QStringLiteral("\u2212"));
    btnReportZoomOut->setToolTip(Txt(TTextId::ReportZoomOut));
    btnReportZoomIn->setText(QStringLiteral("+"));
    btnReportZoomIn->setToolTip(Txt(TTextId::ReportZoomIn));
    btnReportPrint->setText(Txt(TTextId::PrintPrint));
    btnReportSavePdf->setText(Txt(TTextId::ReportSavePdf));
    btnReportClose->setText(Txt(TTextId::BtnClose));
    lblReportActivationEnergy->setText(Txt(TTextId::ReportActivationEnergy));
}

void TfrmReport::GUI_ReportPrint() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setFullPage(true);
    TReport::PreparePage(printer);
    printer.setDocName(Txt(TTextId::ReportTitle));
    QPrintDialog dlg(&printer, this);
    if (dlg.exec() != QDialog::Accepted) return;
    if (!FReport->Print(printer))
        zeb::TZebDlg::ShowErrMsg(zeb::TxtFmt(TTextId::ReportCannotWrite, {printer.printerName()}));
}

void TfrmReport::GUI_ReportSavePdf() {
    const QFileInfo data(FDataFile);
    QString fileName = FDataFile.isEmpty() ? QString()
                                           : data.path() + QLatin1Char('/') + data.completeBaseName() +
                                                 QStringLiteral(".pdf");
    const QString filter = zeb::TZebDlg::BuildFilter(Txt(TTextId::ReportPdfFilter), QStringLiteral(".pdf"));
    if (!zeb::TZebDlg::SaveFile(Txt(TTextId::ReportSavePdf).remove(QLatin1Char('&')), data.path(), filter,
                                QStringLiteral(".pdf"), fileName))
        return;
    SavePdf(fileName);
}

bool TfrmReport::SavePdf(const QString& fileName) {
    if (FReport->SavePdf(fileName)) return true;
    zeb::TZebDlg::ShowErrMsg(zeb::TxtFmt(TTextId::ReportCannotWrite, {fileName}));
    return false;
}
