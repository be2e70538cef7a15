#pragma once
// TfrmViewFFT: the frequency content of one curve. The input chart shows the curve over the
// chosen time span with a band whose edges are dragged with the mouse; "FFT" draws the
// magnitude spectrum of the band's points over frequency in hertz.

#include "analysis/FastFourier.h"
#include "analysis/Spectrum.h"
#include "ui/CurvePlottable.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QMenu;
class QPushButton;
class TCrossHair;
class TDataBase;

class TfrmViewFFT : public QWidget {
    Q_OBJECT
public:
    explicit TfrmViewFFT(QWidget* parent = nullptr);

    // Takes the first shown curve over the chart's time span (or between the crosshairs) into
    // the input and shows the window; false, and nothing shown, when no curve is shown.
    bool Execute(TDataBase* db, TCrossHair* crossHair);

    void btnResetClick();
    void btnSetWindowToBandClick();
    void btnSetBandToWindowClick();
    void btnCalcFFTClick();
    void Editor2Click();
    void FFT2Click();

    // The band on the input's time axis (seconds since 2000, as the store keeps times).
    double BandStart() const { return FBandStart; }
    double BandEnd() const { return FBandEnd; }
    void SetBand(double start, double end);
    int Curve() const { return FCurve; }
    // The input's points, as indices into the curve.
    TBandPoints Input() const { return FInput; }
    const TBandSpectrum& Spectrum() const { return FSpectrum; }

    QCustomPlot* ChartInp = nullptr;
    QCustomPlot* ChartFFT = nullptr;
    TCurvePlottable* SeriesInp = nullptr;
    QCPGraph* SeriesFFT = nullptr;
    TFastFourier FFT1{QStringLiteral("FFT1")};

Q_SIGNALS:
    void bandChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void PlaceBandOnMiddleThird();
    void UpdateLabels();
    void ResetInputAxes();
    // Seconds on the input's time axis count from its first point.
    double Origin() const;

    TDataBase* FDb = nullptr;
    TCrossHair* FCrossHair = nullptr;
    int FCurve = -1;
    double FLower = 0.0, FUpper = 0.0;
    TBandPoints FInput;
    TBandSpectrum FSpectrum;
    double FBandStart = 0.0, FBandEnd = 0.0;
    int FDragEdge = -1; // 0 start, 1 end
    QCPItemRect* FBand = nullptr;
    QCPTextElement* FInputTitle = nullptr;
    QCPTextElement* FFFTTitle = nullptr;
    QLabel* lblX1;
    QLabel* lblX2;
    QLabel* lblD;
    QLabel* lblPeak;
    QPushButton* btnCalcFFT;
    QPushButton* btnReset;
    QPushButton* btnSetWindowToBand;
    QPushButton* btnSetBandToWindow;
    QComboBox* cbxWindow;
    QCheckBox* chkLog;
    QCheckBox* chkPeak;
};
