#include "ui/PrintPreviewPage.h"

#include "config/Texts.h"
#include "store/DataBase.h"
#include "ui/Printing.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;
using zeb::TxtFmt;
using zeb::TZebDlg;

TPrintPreviewPage::TPrintPreviewPage(TDataBase* db, TZebChart* chart, QPrinter* printer, QWidget* parent)
    : QWidget(parent), FDb(db), FChart(chart), FPrinter(printer) {
    setObjectName(QStringLiteral("tbsPrintPreview"));
    FPreview = new QPrintPreviewWidget(FPrinter, this);
    FPreview->setObjectName(QStringLiteral("panPrintPreview"));
    connect(FPreview, &QPrintPreviewWidget::paintRequested, this, [this](QPrinter* p) {
        PrintChart(*p, *FChart, FDb->Print_Get());
        QTimer::singleShot(0, this, &TPrintPreviewPage::ShowDrawnMargins);
    });

    auto* side = new QWidget(this);
    side->setObjectName(QStringLiteral("panPrintControls"));
    side->setFixedWidth(230);
    auto* v = new QVBoxLayout(side);
    lblPrinter = new QLabel(side);
    cbxPrinter = new QComboBox(side);
    cbxPrinter->setObjectName(QStringLiteral("cbxPrinter"));
    for (const QString& name : QPrinterInfo::availablePrinterNames())
        cbxPrinter->addItem(name, name);
    cbxPrinter->addItem(QString(), QString()); // a PDF file, named when printing
    connect(cbxPrinter, &QComboBox::currentIndexChanged, this, [this](int index) {
        const QString name = cbxPrinter->itemData(index).toString();
        if (name.isEmpty()) {
            FPrinter->setOutputFormat(QPrinter::PdfFormat);
        } else {
            FPrinter->setOutputFormat(QPrinter::NativeFormat);
            FPrinter->setPrinterName(name);
        }
        FPreview->updatePreview();
    });
    btnPrintProperties = new QPushButton(side);
    btnPrintProperties->setObjectName(QStringLiteral("btnPrintProperties"));
    connect(btnPrintProperties, &QPushButton::clicked, this, &TPrintPreviewPage::PageSetup);

    rgpPrintOrientation = new QGroupBox(side);
    rgpPrintOrientation->setObjectName(QStringLiteral("rgpPrintOrientation"));
    auto* ov = new QVBoxLayout(rgpPrintOrientation);
    for (int k = 0; k < 2; ++k) {
        FOrientation[k] = new QRadioButton(rgpPrintOrientation);
        FOrientation[k]->setObjectName(k ? QStringLiteral("rbnLandscape") : QStringLiteral("rbnPortrait"));
        ov->addWidget(FOrientation[k]);
        connect(FOrientation[k], &QRadioButton::toggled, this, [this, k](bool on) {
            if (on && !FFilling) SetOrientation(k);
        });
    }

    grpPrintMargins = new QGroupBox(side);
    grpPrintMargins->setObjectName(QStringLiteral("grpPrintMargins"));
    auto* grid = new QGridLayout(grpPrintMargins);
    QSpinBox** fields[4] = {&osfPrintMarginLeft, &osfPrintMarginRight, &osfPrintMarginTop, &osfPrintMarginBottom};
    const char* names[4] = {"osfPrintMarginLeft", "osfPrintMarginRight", "osfPrintMarginTop", "osfPrintMarginBottom"};
    for (int k = 0; k < 4; ++k) {
        lblPrintMargin[k] = new QLabel(grpPrintMargins);
        auto* f = *fields[k] = new QSpinBox(grpPrintMargins);
        f->setObjectName(QLatin1String(names[k]));
        f->setRange(0, 45);
        connect(f, &QSpinBox::valueChanged, this, [this] {
            if (!FFilling) TakeMargins();
        });
        grid->addWidget(lblPrintMargin[k], k, 0);
        grid->addWidget(f, k, 1);
    }
    chkPrintProportional = new QCheckBox(side);
    chkPrintProportional->setObjectName(QStringLiteral("chkPrintProportional"));
    connect(chkPrintProportional, &QCheckBox::toggled, this, [this] {
        if (!FFilling) TakeProportional();
    });
    btnPrint = new QPushButton(side);
    btnPrint->setObjectName(QStringLiteral("btnPrint"));
    connect(btnPrint, &QPushButton::clicked, this, [this] {
        if (PrintNow()) Q_EMIT printed();
    });
    btnPrintCancel = new QPushButton(side);
    btnPrintCancel->setObjectName(QStringLiteral("btnPrintCancel"));
    connect(btnPrintCancel, &QPushButton::clicked, this, &TPrintPreviewPage::back);

    v->addWidget(lblPrinter);
    v->addWidget(cbxPrinter);
    v->addWidget(btnPrintProperties);
    v->addSpacing(8);
    v->addWidget(rgpPrintOrientation);
    v->addWidget(grpPrintMargins);
    v->addWidget(chkPrintProportional);
    v->addStretch(1);
    v->addWidget(btnPrint);
    v->addWidget(btnPrintCancel);

    auto* h = new QHBoxLayout(this);
    h->addWidget(FPreview, 1);
    h->addWidget(side);
}

void TPrintPreviewPage::ApplyLanguage() {
    lblPrinter->setText(Txt(TTextId::PrintPrinter));
    cbxPrinter->setItemText(cbxPrinter->count() - 1, Txt(TTextId::PrintToPdf));
    btnPrintProperties->setText(Txt(TTextId::PrintProperties));
    rgpPrintOrientation->setTitle(Txt(TTextId::PrintOrientation));
    const QStringList orientations = zeb::TxtList(TTextId::PrintOrientations);
    for (int k = 0; k < 2; ++k)
        FOrientation[k]->setText(orientations.value(k));
    grpPrintMargins->setTitle(Txt(TTextId::PrintMargins));
    const TTextId margins[4] = {TTextId::PrintMarginLeft, TTextId::PrintMarginRight, TTextId::PrintMarginTop,
                                TTextId::PrintMarginBottom};
    for (int k = 0; k < 4; ++k)
        lblPrintMargin[k]->setText(Txt(margins[k]));
    chkPrintProportional->setText(Txt(TTextId::PrintProportional));
    btnPrint->setText(Txt(TTextId::PrintPrint));
    btnPrintCancel->setText(Txt(TTextId::PrintBack));
}

void TPrintPreviewPage::PrinterFromStore() {
    FPrinter->setPageOrientation(FDb->Print_Get().Landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
}

void TPrintPreviewPage::Enter() {
    PrinterFromStore();
    FFilling = true;
    const bool landscape = FPrinter->pageLayout().orientation() == QPageLayout::Landscape;
    FOrientation[landscape ? 1 : 0]->setChecked(true);
    FFilling = false;
    // Without a printer of the system the preview and the print are a PDF page.
    if (cbxPrinter->itemData(cbxPrinter->currentIndex()).toString().isEmpty())
        FPrinter->setOutputFormat(QPrinter::PdfFormat);
}

void TPrintPreviewPage::Refresh() {
    FPreview->updatePreview();
}

void TPrintPreviewPage::SetOrientation(int item) {
    FPreview->setOrientation(item == 1 ? QPageLayout::Landscape : QPageLayout::Portrait);
    FDb->Print_Get().Landscape = item == 1;
    Q_EMIT modified();
}

void TPrintPreviewPage::TakeMargins() {
    TPrintState& p = FDb->Print_Get();
    p.Proportional = false;
    p.MarginLeft = osfPrintMarginLeft->value();
    p.MarginRight = osfPrintMarginRight->value();
    p.MarginTop = osfPrintMarginTop->value();
    p.MarginBottom = osfPrintMarginBottom->value();
    Q_EMIT modified();
    FPreview->updatePreview();
}

void TPrintPreviewPage::TakeProportional() {
    FDb->Print_Get().Proportional = chkPrintProportional->isChecked();
    Q_EMIT modified();
    if (chkPrintProportional->isChecked()) FPreview->updatePreview();
}

void TPrintPreviewPage::ShowDrawnMargins() {
    const TPrintState& p = FDb->Print_Get();
    const QRect page = FPrinter->pageLayout().paintRectPixels(FPrinter->resolution());
    const TPrintMargins m = MarginsFor(p, page.size(), FChart->size());
    FFilling = true;
    osfPrintMarginLeft->setValue(m.Left);
    osfPrintMarginRight->setValue(m.Right);
    osfPrintMarginTop->setValue(m.Top);
    osfPrintMarginBottom->setValue(m.Bottom);
    chkPrintProportional->setChecked(p.Proportional);
    FFilling = false;
}

void TPrintPreviewPage::PageSetup() {
    QPageSetupDialog dlg(FPrinter, this);
    dlg.setObjectName(QStringLiteral("PageSetupDialog1"));
    if (dlg.exec() != QDialog::Accepted) return;
    const bool landscape = FPrinter->pageLayout().orientation() == QPageLayout::Landscape;
    if (landscape != FDb->Print_Get().Landscape) {
        FDb->Print_Get().Landscape = landscape;
        Q_EMIT modified();
    }
    FFilling = true;
    FOrientation[landscape ? 1 : 0]->setChecked(true);
    FFilling = false;
    FPreview->updatePreview();
}

bool TPrintPreviewPage::PrintNow() {
    if (FPrinter->outputFormat() == QPrinter::PdfFormat && FPrinter->outputFileName().isEmpty()) {
        QString fileName = QFileInfo(FDb->FileName()).completeBaseName() + QStringLiteral(".pdf");
        const QString dir = QFileInfo(FDb->FileName()).absolutePath();
        if (!TZebDlg::SaveFile(Txt(TTextId::MenuFilePrint), dir,
                               TZebDlg::BuildFilter(Txt(TTextId::ReportPdfFilter), QStringLiteral(".pdf")),
                               QStringLiteral(".pdf"), fileName))
            return false;
        FPrinter->setOutputFileName(fileName);
        const bool ok = PrintChart(*FPrinter, *FChart, FDb->Print_Get());
        FPrinter->setOutputFileName(QString());
        if (!ok) Q_EMIT failed(TxtFmt(TTextId::MsgPrintFailed, {QDir::toNativeSeparators(fileName)}));
        return ok;
    }
    if (PrintChart(*FPrinter, *FChart, FDb->Print_Get())) return true;
    Q_EMIT failed(TxtFmt(TTextId::MsgPrintFailed, {FPrinter->printerName()}));
    return false;
}

bool TPrintPreviewPage::PrintDirect() {
    if (FPrinter->outputFormat() == QPrinter::NativeFormat && FPrinter->printerName().isEmpty()) return false;
    PrintNow();
    PrinterFromStore();
    return true;
}

void TPrintPreviewPage::PrintWithDialog(QWidget* parent) {
    PrinterFromStore();
    QPrintDialog dlg(FPrinter, parent);
    dlg.setObjectName(QStringLiteral("PrintDialog1"));
    if (dlg.exec() != QDialog::Accepted) return;
    FDb->Print_Get().Landscape = FPrinter->pageLayout().orientation() == QPageLayout::Landscape;
    if (!PrintChart(*FPrinter, *FChart, FDb->Print_Get()))
        Q_EMIT failed(TxtFmt(TTextId::MsgPrintFailed, {FPrinter->printerName()}));
}
