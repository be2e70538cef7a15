#include "analysis/FastFourier.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <new>
#include <numbers>

TFastFourier::TFastFourier(const QString& name) : FName(name) {}

void TFastFourier::Fail(const QString& what) const {
    throw EFastFourierError(QStringLiteral("Component \"") + FName + QStringLiteral("\": ") + what);
}

void TFastFourier::SetSpectrumSize(int n) {
    // One bit among the low 24; a bit above them would make a size no buffer here can take.
    if (std::popcount(unsigned(n) & 0xFFFFFFu) != 1 || (unsigned(n) & ~0xFFFFFFu) != 0)
        Fail(QStringLiteral("data length must be power of 2"));
    try {
        std::vector<double> data(size_t(2) * size_t(n), 0.0), weights(size_t(n), 0.0);
        // Each stage's factors e^(-2πi·j/len), j < len/2, one stage after the other, so a stage
        // reads them in order: len/2 - 1 is where the stage of length len begins.
        std::vector<double> c(size_t(std::max(n - 1, 0))), s(size_t(std::max(n - 1, 0)));
        for (int half = 1; half < n; half <<= 1)
            for (int j = 0; j < half; ++j) {
                const double a = std::numbers::pi * double(j) / double(half);
                c[size_t(half - 1 + j)] = std::cos(a);
                s[size_t(half - 1 + j)] = std::sin(a);
            }
        std::vector<int> rev(size_t(n), 0);
        for (int i = 1, j = 0; i < n; ++i) {
            int bit = n >> 1;
            for (; j & bit; bit >>= 1)
                j ^= bit;
            j |= bit;
            rev[size_t(i)] = j;
        }
        FRev = std::move(rev);
        FData = std::move(data);
        FWeights = std::move(weights);
        FCos = std::move(c);
        FSin = std::move(s);
    } catch (const std::bad_alloc&) {
        Fail(QStringLiteral("not enough memory on heap"));
    }
    FN = n;
    FTransformed = false;
}

double TFastFourier::WgtFunction(int i) const {
    return i >= 0 && i < FN ? FWeights[size_t(i)] : 0.0;
}

void TFastFourier::SetWgtFunction(int i, double w) {
    if (i >= 0 && i < FN) FWeights[size_t(i)] = w;
}

// c = i − N/2 runs from −N/2 + 1 to N/2: the windows are centred on element N/2 − 1.
double TFastFourier::Weight(int i) const {
    if (i < 1 || i > FN) return 0.0;
    const double n = double(FN), c = double(i) - n / 2.0, pi = std::numbers::pi;
    switch (FWindow) {
    case fwRectangle:
        return 1.0;
    case fwTriangle: // Bartlett: 1 at the centre, 0 at the edges
        return 1.0 - std::abs(c) / (n / 2.0);
    case fwCos2:
        return std::pow(std::cos(pi * c / n), 2);
    case fwGauss:
        return std::exp(-0.5 * std::pow(2.0 * 3.0 * c / n, 2));
    case fwHamming:
        return 0.543478261 + 0.456521739 * std::cos(2.0 * pi * c / n);
    case fwBlackman:
        return 0.42659 + 0.49656 * std::cos(2.0 * pi * c / n) + 0.076848 * std::cos(4.0 * pi * c / n);
    case fwBlkmHarris: // four-term Blackman-Harris
        return 0.35875 + 0.48829 * std::cos(2.0 * pi * c / n) + 0.14128 * std::cos(4.0 * pi * c / n) +
               0.01168 * std::cos(6.0 * pi * c / n);
    case fwBlkmNuttall: // Blackman-Nuttall
        return 0.3635819 + 0.4891775 * std::cos(2.0 * pi * c / n) + 0.1365995 * std::cos(4.0 * pi * c / n) +
               0.0106411 * std::cos(6.0 * pi * c / n);
    case fwTukey: { // flat in the middle share 1 − α, cosine tapers of α·N/2 at both ends
        const double alpha = std::clamp(FTukeyAlpha, 0.0, 1.0);
        const double flat = (1.0 - alpha) * n / 2.0, taper = alpha * n / 2.0;
        if (std::abs(c) <= flat || taper <= 0.0) return 1.0;
        return 0.5 * (1.0 + std::cos(pi * (std::abs(c) - flat) / taper));
    }
    case fwUserDef:
        return FWeights[size_t(i - 1)];
    }
    return 1.0;
}

void TFastFourier::Clear() {
    std::fill(FData.begin(), FData.end(), 0.0);
    FTransformed = false;
}

void TFastFourier::ClearReal() {
    for (int k = 0; k < FN; ++k)
        FData[size_t(2 * k)] = 0.0;
    FTransformed = false;
}

void TFastFourier::ClearImag() {
    for (int k = 0; k < FN; ++k)
        FData[size_t(2 * k + 1)] = 0.0;
    FTransformed = false;
}

void TFastFourier::SetRealVal(int i, double v) {
    if (i < 1 || i > FN) return;
    FData[size_t(2 * (i - 1))] = v;
    FTransformed = false;
}

void TFastFourier::SetImagVal(int i, double v) {
    if (i < 1 || i > FN) return;
    FData[size_t(2 * (i - 1) + 1)] = v;
    FTransformed = false;
}

double TFastFourier::GetRealVal(int i) const {
    return i >= 1 && i <= FN ? FData[size_t(2 * (i - 1))] : 0.0;
}

double TFastFourier::GetImagVal(int i) const {
    return i >= 1 && i <= FN ? FData[size_t(2 * (i - 1) + 1)] : 0.0;
}

// Iterative radix-2 decimation in time on the interleaved buffer, two stages at a time (a
// radix-4 pass: half the passes over the buffer, three twiddle products for four elements).
// The first pass takes its elements in bit-reversed order and is a single radix-2 stage when
// log2(N) is odd.
void TFastFourier::Fft(bool inverse) {
    if (inverse)
        Fft<true>();
    else
        Fft<false>();
}

template <bool Inverse> void TFastFourier::Fft() {
    const int n = FN;
    if (n < 2) return;
    constexpr double sign = Inverse ? 1.0 : -1.0;
    // The first pass reads the elements in bit-reversed order and writes its results in order
    // into the second buffer, which then becomes the data: no separate reordering pass.
    FScratch.resize(FData.size());
    const double* in = FData.data();
    double* out = FScratch.data();
    const int* rev = FRev.data();
    int span;
    if (std::countr_zero(unsigned(n)) % 2 == 1) {
        for (int i = 0; i < n; i += 2) {
            const int r0 = 2 * rev[i], r1 = 2 * rev[i + 1];
            out[2 * i] = in[r0] + in[r1];
            out[2 * i + 1] = in[r0 + 1] + in[r1 + 1];
            out[2 * i + 2] = in[r0] - in[r1];
            out[2 * i + 3] = in[r0 + 1] - in[r1 + 1];
        }
        span = 2;
    } else {
        for (int i = 0; i < n; i += 4) {
            const double* x0 = in + 2 * rev[i];
            const double* x1 = in + 2 * rev[i + 1];
            const double* x2 = in + 2 * rev[i + 2];
            const double* x3 = in + 2 * rev[i + 3];
            const double b0r = x0[0] + x1[0], b0i = x0[1] + x1[1];
            const double b1r = x0[0] - x1[0], b1i = x0[1] - x1[1];
            const double b2r = x2[0] + x3[0], b2i = x2[1] + x3[1];
            const double b3r = x2[0] - x3[0], b3i = x2[1] - x3[1];
            const double u3r = -sign * b3i, u3i = sign * b3r;
            double* o = out + 2 * i;
            o[0] = b0r + b2r;
            o[1] = b0i + b2i;
            o[4] = b0r - b2r;
            o[5] = b0i - b2i;
            o[2] = b1r + u3r;
            o[3] = b1i + u3i;
            o[6] = b1r - u3r;
            o[7] = b1i - u3i;
        }
        span = 4;
    }
    FData.swap(FScratch);
    double* a = FData.data();
    for (; span < n; span *= 4) {
        const int s = span;
        const double* c1 = FCos.data() + (s - 1);      // W(2s)^j
        const double* s1 = FSin.data() + (s - 1);
        const double* c2 = FCos.data() + (2 * s - 1);  // W(4s)^j
        const double* s2 = FSin.data() + (2 * s - 1);
        for (int i = 0; i < n; i += 4 * s) {
            double* p0 = a + 2 * i;
            double* p1 = p0 + 2 * s;
            double* p2 = p1 + 2 * s;
            double* p3 = p2 + 2 * s;
            for (int j = 0; j < s; ++j) {
                const double w1r = c1[j], w1i = sign * s1[j];
                const double w2r = c2[j], w2i = sign * s2[j];
                const int k = 2 * j;
                // First stage: (0,1) and (2,3) with W(2s)^j.
                const double t1r = p1[k] * w1r - p1[k + 1] * w1i, t1i = p1[k] * w1i + p1[k + 1] * w1r;
                const double t3r = p3[k] * w1r - p3[k + 1] * w1i, t3i = p3[k] * w1i + p3[k + 1] * w1r;
                const double b0r = p0[k] + t1r, b0i = p0[k + 1] + t1i;
                const double b1r = p0[k] - t1r, b1i = p0[k + 1] - t1i;
                const double b2r = p2[k] + t3r, b2i = p2[k + 1] + t3i;
                const double b3r = p2[k] - t3r, b3i = p2[k + 1] - t3i;
                // Second stage: (0,2) with W(4s)^j, (1,3) with W(4s)^(j+s) = W(4s)^j · (∓i).
                const double u2r = b2r * w2r - b2i * w2i, u2i = b2r * w2i + b2i * w2r;
                const double v3r = b3r * w2r - b3i * w2i, v3i = b3r * w2i + b3i * w2r;
                const double u3r = -sign * v3i, u3i = sign * v3r;
                p0[k] = b0r + u2r;
                p0[k + 1] = b0i + u2i;
                p2[k] = b0r - u2r;
                p2[k + 1] = b0i - u2i;
                p1[k] = b1r + u3r;
                p1[k + 1] = b1i + u3i;
                p3[k] = b1r - u3r;
                p3[k + 1] = b1i - u3i;
            }
        }
    }
}

void TFastFourier::Transform() {
    if (FWindow != fwRectangle)
        for (int i = 1; i <= FN; ++i) {
            const double w = Weight(i);
            FData[size_t(2 * (i - 1))] *= w;
            FData[size_t(2 * (i - 1) + 1)] *= w;
        }
    Fft(false);
    FTransformed = true;
}

void TFastFourier::InverseTransform() {
    Fft(true);
    const double scale = FN > 0 ? 1.0 / double(FN) : 1.0;
    for (double& v : FData)
        v *= scale;
    FTransformed = false;
}

double TFastFourier::FreqOfLine(int k, double dt) const {
    return k >= 1 && k <= FN / 2 ? double(k) / dt / double(FN) : 0.0;
}

int TFastFourier::LineOfFreq(double f, double dt) const {
    const double k = std::round(f * double(FN) * dt);
    return k < 1.0 || k > double(FN / 2) ? 0 : int(k);
}

double TFastFourier::GetMagnitude(int k) const {
    if (k == 0 && FN > 0) return std::sqrt(Re(0) * Re(0) + Im(0) * Im(0)) / double(FN);
    if (k < 1 || k > FN / 2) return 0.0;
    const double re = Re(k) + Re(FN - k), im = Im(k) - Im(FN - k);
    return std::sqrt(re * re + im * im) / double(FN);
}

double TFastFourier::GetPowerSpec(int k) const {
    if (k == 0 && FN > 0) return (Re(0) * Re(0) + Im(0) * Im(0)) / double(FN);
    if (k < 1 || k > FN / 2) return 0.0;
    return (Re(k) * Re(k) + Im(k) * Im(k) + Re(FN - k) * Re(FN - k) + Im(FN - k) * Im(FN - k)) / double(FN);
}

double TFastFourier::RMS(int k1, int k2) const {
    if (FN <= 0) return 0.0;
    k1 = std::clamp(k1, 0, FN / 2);
    k2 = std::clamp(k2, 0, FN / 2);
    if (k1 > k2) std::swap(k1, k2);
    double sum = 0.0;
    for (int k = k1; k <= k2; ++k)
        sum += GetPowerSpec(k) * double(FN);
    return std::sqrt(sum) / double(FN);
}

double TFastFourier::GetFSerCos(int k) const {
    if (k == 0 && FN > 0) return Re(0) / double(FN);
    if (k < 1 || k > FN / 2) return 0.0;
    return (Re(k) + Re(FN - k)) / double(FN);
}

double TFastFourier::GetFSerSin(int k) const {
    if (k < 1 || k > FN / 2) return 0.0;
    return (Im(FN - k) - Im(k)) / double(FN);
}

double TFastFourier::GetPhase(int k) const {
    if (k < 0 || k > FN / 2 || FN <= 0) return 0.0;
    return std::atan2(-GetFSerSin(k), GetFSerCos(k));
}

double TFastFourier::PowerMax() const {
    double m = 0.0;
    for (int k = 0; k <= FN / 2 && FN > 0; ++k)
        m = std::max(m, GetPowerSpec(k));
    return m;
}

double TFastFourier::MagniMax() const {
    double m = 0.0;
    for (int k = 0; k <= FN / 2 && FN > 0; ++k)
        m = std::max(m, GetMagnitude(k));
    return m;
}

double TFastFourier::RealMax() const {
    double m = -std::numeric_limits<double>::infinity();
    for (int k = 0; k < FN; ++k)
        m = std::max(m, Re(k));
    return FN > 0 ? m : 0.0;
}

double TFastFourier::ImagMax() const {
    double m = -std::numeric_limits<double>::infinity();
    for (int k = 0; k < FN; ++k)
        m = std::max(m, Im(k));
    return FN > 0 ? m : 0.0;
}

double TFastFourier::RealMin() const {
    double m = std::numeric_limits<double>::infinity();
    for (int k = 0; k < FN; ++k)
        m = std::min(m, Re(k));
    return FN > 0 ? m : 0.0;
}

double TFastFourier::ImagMin() const {
    double m = std::numeric_limits<double>::infinity();
    for (int k = 0; k < FN; ++k)
        m = std::min(m, Im(k));
    return FN > 0 ? m : 0.0;
}
