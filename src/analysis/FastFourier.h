#pragma once
// TFastFourier: the program's FFT component. A complex buffer of N = SpectrumSize elements
// (2·N doubles, real and imaginary parts interleaved), an optional weighting window, an
// iterative in-place radix-2 transform with precomputed twiddle factors, and the spectrum's
// accessors. Lines run from 0 to N/2; at N/2 the element N − k is element k itself, so its
// power is counted twice and its magnitude doubled, on purpose.

#include <QString>

#include <stdexcept>
#include <vector>

enum TFastFourierWgtWin {
    fwRectangle,
    fwTriangle,
    fwCos2,
    fwGauss,
    fwHamming,
    fwBlackman,
    fwBlkmHarris,
    fwBlkmNuttall,
    fwTukey,
    fwUserDef
};

// The component's error: "Component "<name>": <what went wrong>".
class EFastFourierError : public std::runtime_error {
public:
    explicit EFastFourierError(const QString& message)
        : std::runtime_error(message.toStdString()), FMessage(message) {}
    QString Message() const { return FMessage; }

private:
    QString FMessage;
};

class TFastFourier {
public:
    explicit TFastFourier(const QString& name = QStringLiteral("FastFourier1"));

    QString Name() const { return FName; }

    // Must be a power of two: exactly one of the low 24 bits set (and none above them).
    int SpectrumSize() const { return FN; }
    void SetSpectrumSize(int n);

    TFastFourierWgtWin WeightingWindow() const { return FWindow; }
    void SetWeightingWindow(TFastFourierWgtWin window) { FWindow = window; }
    double TukeyAlpha() const { return FTukeyAlpha; }
    void SetTukeyAlpha(double alpha) { FTukeyAlpha = alpha; }
    // The weights of fwUserDef, element 0..N-1.
    double WgtFunction(int i) const;
    void SetWgtFunction(int i, double w);
    // The weight the window gives element i - 1 (i = 1..N), without applying it.
    double Weight(int i) const;

    void Clear();
    void ClearReal();
    void ClearImag();
    // 1-based: element i - 1 for 1 <= i <= N; other indices are ignored (reads answer 0).
    void SetRealVal(int i, double v);
    void SetImagVal(int i, double v);
    double GetRealVal(int i) const;
    double GetImagVal(int i) const;
    // The buffer's elements, 0-based (the array properties RealSpec and ImagSpec).
    double RealSpec(int k) const { return k >= 0 && k < FN ? FData[size_t(2 * k)] : 0.0; }
    double ImagSpec(int k) const { return k >= 0 && k < FN ? FData[size_t(2 * k + 1)] : 0.0; }
    bool IsTransformed() const { return FTransformed; }

    // The window on the data, then the forward transform in place (no scaling).
    void Transform();
    // The inverse transform in place, scaled by 1/N, so it undoes an unweighted Transform.
    void InverseTransform();

    // k / dt / N for 1 <= k <= N/2, else 0.
    double FreqOfLine(int k, double dt) const;
    // round(f · N · dt); 0 below 1 or above N/2.
    int LineOfFreq(double f, double dt) const;
    double GetMagnitude(int k) const;
    double GetPowerSpec(int k) const;
    double RMS(int k1, int k2) const;
    // The line as a Fourier series term cos·cos(2π·f·t) + sin·sin(2π·f·t) of real data, and
    // its phase φ in A·cos(2π·f·t + φ); 0 outside 0..N/2.
    double GetFSerSin(int k) const;
    double GetFSerCos(int k) const;
    double GetPhase(int k) const;

    // Over lines 0..N/2 (power and magnitude) or over the buffer (real and imaginary parts).
    double PowerMax() const;
    double MagniMax() const;
    double RealMax() const;
    double ImagMax() const;
    double RealMin() const;
    double ImagMin() const;

private:
    [[noreturn]] void Fail(const QString& what) const;
    void Fft(bool inverse);
    template <bool Inverse> void Fft();
    double Re(int k) const { return FData[size_t(2 * k)]; }
    double Im(int k) const { return FData[size_t(2 * k + 1)]; }

    QString FName;
    int FN = 0;
    TFastFourierWgtWin FWindow = fwRectangle;
    double FTukeyAlpha = 0.5;
    std::vector<double> FData;    // 2·N, interleaved
    std::vector<double> FWeights; // N, the user's weights
    std::vector<double> FCos, FSin; // the twiddle factors of every stage, N - 1 in all
    std::vector<int> FRev;          // the bit-reversed position of each element
    std::vector<double> FScratch;   // the first pass's target, then the data's old buffer
    bool FTransformed = false;
};
