#pragma once
// The print preview page of the main window (its outer notebook's page 2): the chart on the
// page as it will print, the printer, its set-up, the orientation and the margins, which are
// the store's print settings; and the prints made from it and from the File menu.

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QPrintPreviewWidget;
class QPrinter;
class QPushButton;
class QRadioButton;
class QSpinBox;
class TDataBase;
class TZebChart;

class TPrintPreviewPage : public QWidget {
    Q_OBJECT
public:
    // The printer is the window's: the page and every print share it.
    TPrintPreviewPage(TDataBase* db, TZebChart* chart, QPrinter* printer, QWidget* parent);

    void ApplyLanguage();
    // Before the page is shown: the printer and the controls take the store's settings.
    void Enter();
    // Draws the page anew.
    void Refresh();

    // The controls' commands (GUI_PrintOrientation, GUI_PrintMargins, GUI_PrintProportional,
    // GUI_PrintAfterDraw, GUI_PrintProperties).
    void SetOrientation(int item);
    void TakeMargins();
    void TakeProportional();
    // The fields show the margins the preview was drawn with: the proportional ones when on.
    void ShowDrawnMargins();
    // The printer's set-up dialog; the orientation chosen there is the store's too.
    void PageSetup();

    // Prints the chart; a PDF "printer" asks where the page goes. False when nothing was
    // printed (cancelled, or it failed: then failed() was sent).
    bool PrintNow();
    // At once with the printer's own orientation, the store's taken afterwards; false when
    // there is no printer of the system to print to.
    bool PrintDirect();
    // The printer dialog, then the print.
    void PrintWithDialog(QWidget* parent);

Q_SIGNALS:
    void modified();
    void failed(const QString& message);
    void back();
    // The page's own print button printed.
    void printed();

private:
    void PrinterFromStore();

    TDataBase* FDb;
    TZebChart* FChart;
    QPrinter* FPrinter;
    bool FFilling = false; // the controls are being set from the store

    QPrintPreviewWidget* FPreview = nullptr;
    QLabel* lblPrinter = nullptr;
    QComboBox* cbxPrinter = nullptr;
    QPushButton* btnPrintProperties = nullptr;
    QGroupBox* rgpPrintOrientation = nullptr;
    QRadioButton* FOrientation[2] = {};
    QGroupBox* grpPrintMargins = nullptr;
    QLabel* lblPrintMargin[4] = {};
    QSpinBox* osfPrintMarginLeft = nullptr;
    QSpinBox* osfPrintMarginRight = nullptr;
    QSpinBox* osfPrintMarginTop = nullptr;
    QSpinBox* osfPrintMarginBottom = nullptr;
    QCheckBox* chkPrintProportional = nullptr;
    QPushButton* btnPrint = nullptr;
    QPushButton* btnPrintCancel = nullptr;
};
