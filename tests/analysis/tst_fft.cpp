// The FFT component against a reference transform for every size, its spectrum accessors on
// signals with known lines, the weighting windows, its errors, and the FFT view's band rules.

#include "analysis/FastFourier.h"
#include "analysis/Spectrum.h"

#include <QTest>

#include <complex>
#include <functional>
#include <numbers>
#include <random>

#ifdef ZEB_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

using TComplex = std::complex<double>;

// The forward transform without scaling: FFTW when the build has it, else the sum itself.
std::vector<TComplex> Reference(const std::vector<TComplex>& x) {
    const int n = int(x.size());
    std::vector<TComplex> out(x.size());
#ifdef ZEB_HAVE_FFTW
    std::vector<TComplex> in = x;
    fftw_plan plan = fftw_plan_dft_1d(n, reinterpret_cast<fftw_complex*>(in.data()),
                                      reinterpret_cast<fftw_complex*>(out.data()), FFTW_FORWARD, FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
#else
    for (int k = 0; k < n; ++k)
        for (int j = 0; j < n; ++j)
            out[size_t(k)] += x[size_t(j)] * std::polar(1.0, -2.0 * std::numbers::pi * double(k) * j / n);
#endif
    return out;
}

void Load(TFastFourier& f, const std::vector<double>& re) {
    f.Clear();
    for (size_t i = 0; i < re.size(); ++i)
        f.SetRealVal(int(i) + 1, re[i]);
}

// n points a second apart from t0 with the values of f.
TCurveData Series(int n, const std::function<double(int)>& f, double t0 = 7.6e8) {
    TCurveData d;
    for (int i = 0; i < n; ++i)
        d.Append(t0 + i, f(i));
    return d;
}

} // namespace

class TstFft : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void matchesTheReferenceAtEverySize() {
        std::mt19937_64 rng(17);
        std::uniform_real_distribution<double> u(-1.0, 1.0);
        for (int n = 2; n <= 16384; n *= 2) {
            std::vector<TComplex> x(static_cast<size_t>(n));
            for (auto& v : x)
                v = {u(rng), u(rng)};
            TFastFourier f;
            f.SetSpectrumSize(n);
            for (int i = 0; i < n; ++i) {
                f.SetRealVal(i + 1, x[size_t(i)].real());
                f.SetImagVal(i + 1, x[size_t(i)].imag());
            }
            f.Transform();
            QVERIFY(f.IsTransformed());
            const std::vector<TComplex> ref = Reference(x);
            double largest = 0.0, error = 0.0;
            for (int k = 0; k < n; ++k) {
                largest = std::max(largest, std::abs(ref[size_t(k)]));
                error = std::max(error, std::abs(TComplex(f.RealSpec(k), f.ImagSpec(k)) - ref[size_t(k)]));
            }
            QVERIFY2(error <= 1e-9 * largest, qPrintable(QStringLiteral("N %1: error %2").arg(n).arg(error)));
            // And back again.
            f.InverseTransform();
            QVERIFY(!f.IsTransformed());
            for (int i = 0; i < n; i += std::max(1, n / 64))
                QVERIFY(std::abs(TComplex(f.GetRealVal(i + 1), f.GetImagVal(i + 1)) - x[size_t(i)]) < 1e-12);
        }
    }

    void linesOfKnownSignals() {
        constexpr int n = 1024;
        TFastFourier f;
        f.SetSpectrumSize(n);
        // A sine on line 37: one line of its amplitude, phase −90°, RMS amplitude / √2.
        std::vector<double> x(static_cast<size_t>(n));
        for (int i = 0; i < n; ++i)
            x[size_t(i)] = 3.0 * std::sin(2.0 * std::numbers::pi * 37.0 * i / n);
        Load(f, x);
        f.Transform();
        QVERIFY(std::abs(f.GetMagnitude(37) - 3.0) < 1e-12);
        QVERIFY(f.GetMagnitude(36) < 1e-12 && f.GetMagnitude(38) < 1e-12 && f.GetMagnitude(0) < 1e-12);
        QVERIFY(std::abs(f.GetFSerSin(37) - 3.0) < 1e-12);
        QVERIFY(std::abs(f.GetFSerCos(37)) < 1e-12);
        QVERIFY(std::abs(f.GetPhase(37) + std::numbers::pi / 2) < 1e-12);
        QVERIFY(std::abs(f.RMS(0, n / 2) - 3.0 / std::sqrt(2.0)) < 1e-12);
        QVERIFY(std::abs(f.RMS(n, 30) - 3.0 / std::sqrt(2.0)) < 1e-12); // clamped and ordered
        QVERIFY(std::abs(f.MagniMax() - 3.0) < 1e-12);
        QVERIFY(std::abs(f.PowerMax() - 9.0 * n / 2.0) < 1e-9);
        // The line at N/2 counts its element twice: an alternating ±1 shows magnitude 2.
        for (int i = 0; i < n; ++i)
            x[size_t(i)] = i % 2 ? -1.0 : 1.0;
        Load(f, x);
        f.Transform();
        QVERIFY(std::abs(f.GetMagnitude(n / 2) - 2.0) < 1e-12);
        QVERIFY(std::abs(f.GetPowerSpec(n / 2) - 2.0 * n) < 1e-9);
        QCOMPARE(f.GetMagnitude(n / 2 + 1), 0.0);
        QCOMPARE(f.GetMagnitude(-1), 0.0);
        // A constant over m points, padded: mean · m / N at line 0.
        Load(f, std::vector<double>(700, 2.5));
        f.Transform();
        QVERIFY(std::abs(f.GetMagnitude(0) - 2.5 * 700 / n) < 1e-12);
        QVERIFY(std::abs(f.GetFSerCos(0) - 2.5 * 700 / n) < 1e-12);
    }

    void windows_data() {
        QTest::addColumn<int>("window");
        QTest::addColumn<double>("centre"); // weight of element N/2 (c = 0)
        QTest::addColumn<double>("edge");   // weight of element N (c = N/2)
        QTest::newRow("rectangle") << int(fwRectangle) << 1.0 << 1.0;
        QTest::newRow("triangle") << int(fwTriangle) << 1.0 << 0.0;
        QTest::newRow("cos2") << int(fwCos2) << 1.0 << 0.0;
        QTest::newRow("gauss") << int(fwGauss) << 1.0 << std::exp(-4.5);
        QTest::newRow("hamming") << int(fwHamming) << 1.0 << 0.543478261 - 0.456521739;
        QTest::newRow("blackman") << int(fwBlackman) << 0.42659 + 0.49656 + 0.076848 << 0.42659 - 0.49656 + 0.076848;
        QTest::newRow("blackman-harris") << int(fwBlkmHarris) << 1.0 << 0.35875 - 0.48829 + 0.14128 - 0.01168;
        QTest::newRow("blackman-nuttall") << int(fwBlkmNuttall) << 1.0
                                          << 0.3635819 - 0.4891775 + 0.1365995 - 0.0106411;
        QTest::newRow("tukey 0.5") << int(fwTukey) << 1.0 << 0.0;
    }
    void windows() {
        QFETCH(int, window);
        QFETCH(double, centre);
        QFETCH(double, edge);
        constexpr int n = 64;
        TFastFourier f;
        f.SetSpectrumSize(n);
        f.SetWeightingWindow(TFastFourierWgtWin(window));
        QVERIFY(std::abs(f.Weight(n / 2) - centre) < 1e-12);
        QVERIFY(std::abs(f.Weight(n) - edge) < 1e-12);
        // Symmetric about the centre.
        QVERIFY(std::abs(f.Weight(n / 2 - 5) - f.Weight(n / 2 + 5)) < 1e-12);
        // Applied by Transform: a constant 1 gives the weights' mean at line 0.
        Load(f, std::vector<double>(n, 1.0));
        f.Transform();
        double mean = 0.0;
        for (int i = 1; i <= n; ++i)
            mean += f.Weight(i) / n;
        QVERIFY(std::abs(f.GetMagnitude(0) - mean) < 1e-12);
    }

    void userWeightsAndTukeyShape() {
        TFastFourier f;
        f.SetSpectrumSize(8);
        f.SetWeightingWindow(fwUserDef);
        f.SetWgtFunction(2, 0.25);
        QCOMPARE(f.Weight(3), 0.25);
        QCOMPARE(f.Weight(1), 0.0);
        f.SetWeightingWindow(fwTukey);
        f.SetTukeyAlpha(0.0);
        QCOMPARE(f.Weight(8), 1.0); // no taper: a rectangle
        f.SetTukeyAlpha(1.0);
        QVERIFY(std::abs(f.Weight(6) - 0.5) < 1e-12); // c = 2 of N/2 = 4: half way down a Hann
    }

    void sizesAndIndices() {
        TFastFourier f(QStringLiteral("FFT1"));
        for (int bad : {0, 3, 100, 512 + 256, -4}) {
            try {
                f.SetSpectrumSize(bad);
                QFAIL(qPrintable(QStringLiteral("%1 taken").arg(bad)));
            } catch (const EFastFourierError& e) {
                QCOMPARE(e.Message(), QStringLiteral("Component \"FFT1\": data length must be power of 2"));
            }
        }
        f.SetSpectrumSize(16);
        QCOMPARE(f.SpectrumSize(), 16);
        f.SetRealVal(0, 9.0);  // ignored
        f.SetRealVal(17, 9.0); // ignored
        f.SetRealVal(16, 4.0);
        f.SetImagVal(1, -2.0);
        QCOMPARE(f.GetRealVal(16), 4.0);
        QCOMPARE(f.RealSpec(15), 4.0);
        QCOMPARE(f.GetImagVal(1), -2.0);
        QCOMPARE(f.GetRealVal(17), 0.0);
        QCOMPARE(f.RealMax(), 4.0);
        QCOMPARE(f.ImagMin(), -2.0);
        f.ClearReal();
        QCOMPARE(f.GetRealVal(16), 0.0);
        QCOMPARE(f.GetImagVal(1), -2.0);
        f.ClearImag();
        QCOMPARE(f.GetImagVal(1), 0.0);
        // Lines and frequencies at 16 points a quarter second apart.
        QCOMPARE(f.FreqOfLine(2, 0.25), 0.5);
        QCOMPARE(f.FreqOfLine(0, 0.25), 0.0);
        QCOMPARE(f.FreqOfLine(9, 0.25), 0.0);
        QCOMPARE(f.LineOfFreq(0.5, 0.25), 2);
        QCOMPARE(f.LineOfFreq(0.1, 0.25), 0);
        QCOMPARE(f.LineOfFreq(2.5, 0.25), 0);
        // A new size clears what was transformed.
        f.Transform();
        f.SetSpectrumSize(32);
        QVERIFY(!f.IsTransformed());
    }

    void bandRules_data() {
        QTest::addColumn<int>("points"); // in the band from its first point
        QTest::addColumn<int>("n");
        QTest::newRow("six points do nothing") << 6 << 0;
        QTest::newRow("seven points compute") << 7 << 512;
        QTest::newRow("512") << 512 << 512;
        QTest::newRow("513 give 1024") << 513 << 1024;
        QTest::newRow("more than 16384 are cut") << 20000 << 16384;
    }
    void bandRules() {
        QFETCH(int, points);
        QFETCH(int, n);
        const TCurveData d = Series(30000, [](int i) { return std::sin(i * 0.1); });
        TFastFourier f;
        // The band ends on a point: it belongs to the band.
        const TBandSpectrum s = BandSpectrum(d, 0, d.Count() - 1, 7.6e8 + 100, 7.6e8 + 100 + points - 1, f);
        QCOMPARE(s.N, n);
        if (!n) return;
        QCOMPARE(s.Points.First, qint64(100));
        QCOMPARE(s.Points.Last, qint64(100 + points - 1));
        QCOMPARE(s.Dt, 1.0);
        QCOMPARE(int(s.Frequency.size()), n / 2 + 1);
        QCOMPARE(s.Frequency[1], 1.0 / n);
        QCOMPARE(f.SpectrumSize(), n);
        // Line 0 is the sum of the points transformed, over N: the band's first min(m, N).
        double sum = 0.0;
        for (int i = 0; i < std::min(points, n); ++i)
            sum += d.Value(100 + i);
        QVERIFY(std::abs(s.Magnitude[0] - std::abs(sum) / n) < 1e-12);
    }

    void bandEdges() {
        const TCurveData d = Series(100, [](int i) { return double(i); });
        // A band end between points: the point before it is the last.
        TBandPoints p = BandPoints(d, 0, 99, 7.6e8 + 10.5, 7.6e8 + 20.5);
        QCOMPARE(p.First, qint64(11));
        QCOMPARE(p.Last, qint64(20));
        // Beyond the series: to its last point; before it: none.
        p = BandPoints(d, 0, 49, 7.6e8 + 40, 7.6e8 + 80);
        QCOMPARE(p.Last, qint64(49));
        QVERIFY(BandPoints(d, 0, 49, 7.6e8 + 60, 7.6e8 + 80).IsEmpty());
        // A stamp written twice at the band's start: the second is the first transformed.
        TCurveData twice;
        twice.Append(7.6e8, 5.0);
        for (int i = 0; i < 20; ++i)
            twice.Append(7.6e8 + i * 0.5, double(i));
        TFastFourier f;
        const TBandSpectrum s = BandSpectrum(twice, 0, twice.Count() - 1, 7.6e8, 7.6e8 + 100, f);
        QCOMPARE(s.Points.First, qint64(1));
        QCOMPARE(s.Dt, 0.5);
        QCOMPARE(f.GetRealVal(1), 190.0); // line 0: 0 + 1 + .. + 19, without the 5 written first
    }
};

QTEST_GUILESS_MAIN(TstFft)
#include "tst_fft.moc"
