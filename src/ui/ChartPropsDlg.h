#pragma once
// TfrmChartProps: a small property dialog for a chart of the FFT view: its title, the ranges
// of its two axes and the colour of its curve.

#include <QDialog>

class QCPAbstractPlottable;
class QCPTextElement;
class QCustomPlot;
class QLineEdit;
class QPushButton;
class TValidateEdit;

class TfrmChartProps : public QDialog {
    Q_OBJECT
public:
    explicit TfrmChartProps(QWidget* parent = nullptr);

    // Fills the dialog from the chart; OK writes it back and redraws. With modal false the
    // dialog is only shown (tests); Apply() then does what OK does.
    bool Execute(QCustomPlot* chart, QCPTextElement* title, QCPAbstractPlottable* curve, bool modal = true);
    bool Apply();

private:
    QCustomPlot* FChart = nullptr;
    QCPTextElement* FTitle = nullptr;
    QCPAbstractPlottable* FCurve = nullptr;
    QColor FColor;
    QLineEdit* edtTitle;
    TValidateEdit* vedXMin;
    TValidateEdit* vedXMax;
    TValidateEdit* vedYMin;
    TValidateEdit* vedYMax;
    QPushButton* btnColor;
};
