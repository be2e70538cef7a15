#pragma once
// TfrmCalcDlg: integrates one curve over time between two bounds, either as a numerical
// integral (unit times seconds) or, for a flow in litres per minute, as a volume in litres.
// The bounds are the chart's time axis, or a crosshair where one is placed.

#include <QDialog>

#include <optional>

class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class TCrossHair;
class TDataBase;

class TfrmCalcDlg : public QDialog {
    Q_OBJECT
public:
    explicit TfrmCalcDlg(QWidget* parent = nullptr);

    // Prepares and shows the dialog modally; false (and nothing shown) when no curve can be
    // offered. With modal false it is only shown, for tests and scripts.
    bool Execute(TDataBase* db, TCrossHair* crossHair, bool flowMode, bool modal = true);

    void Button1Click(); // compute
    void Button2Click(); // close

    double XMin() const { return FXMin; }
    double XMax() const { return FXMax; }
    // Empty when the range holds no point of the curve.
    std::optional<double> Result() const { return FResult; }
    QString ResultText(int line) const;
    QListWidget* CurveList() const { return ListBox1; }

private:
    TDataBase* FDb = nullptr;
    bool FFlow = false;
    double FXMin = 0.0, FXMax = 0.0;
    bool FMinFromCursor = false, FMaxFromCursor = false;
    std::optional<double> FResult;

    QLabel* lblBegin;
    QLabel* lblBeginValue;
    QLabel* lblEnd;
    QLabel* lblEndValue;
    QLabel* lblSelect;
    QListWidget* ListBox1;
    QLabel* lblResult;
    QLabel* lblResult1;
    QLabel* lblResult2;
    QProgressBar* ProgressBar1;
    QPushButton* Button1;
    QPushButton* Button2;
};
