// Transform at N = 16384 with our component against FFTW's plan for the same size (out of
// place, measured), each on data loaded beforehand, in one run; and the FFT view's whole
// computation for a band of 16384 points.
//
// Goal: within 4 times FFTW.

#include "analysis/FastFourier.h"
#include "analysis/Spectrum.h"

#include <QElapsedTimer>

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <random>
#include <vector>

namespace {

// Median of runs of f, each after prepare (untimed).
template <typename P, typename F> double MedianUs(P&& prepare, F&& f, int runs) {
    std::vector<double> us;
    for (int r = 0; r < runs; ++r) {
        prepare();
        QElapsedTimer t;
        t.start();
        f();
        us.push_back(double(t.nsecsElapsed()) / 1e3);
    }
    std::sort(us.begin(), us.end());
    return us[us.size() / 2];
}

} // namespace

int main() {
    constexpr int n = 16384;
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> signal(n);
    for (double& v : signal)
        v = u(rng);

    TFastFourier f;
    f.SetSpectrumSize(n);
    const double ours = MedianUs(
        [&] {
            f.Clear();
            for (int i = 0; i < n; ++i)
                f.SetRealVal(i + 1, signal[size_t(i)]);
        },
        [&] { f.Transform(); }, 201);

    std::vector<std::complex<double>> in(n), out(n);
    fftw_plan plan = fftw_plan_dft_1d(n, reinterpret_cast<fftw_complex*>(in.data()),
                                      reinterpret_cast<fftw_complex*>(out.data()), FFTW_FORWARD, FFTW_MEASURE);
    const double theirs = MedianUs(
        [&] {
            for (int i = 0; i < n; ++i)
                in[size_t(i)] = signal[size_t(i)];
        },
        [&] { fftw_execute(plan); }, 201);
    fftw_destroy_plan(plan);

    TCurveData d;
    for (int i = 0; i < 20000; ++i)
        d.Append(7.6e8 + i * 0.01, signal[size_t(i % n)]);
    TFastFourier view;
    const double band =
        MedianUs([] {}, [&] { BandSpectrum(d, 0, d.Count() - 1, 7.6e8, 7.6e8 + 200.0, view); }, 51);

    std::printf("N = %d: ours %.1f us, FFTW (measured plan) %.1f us: %.2fx\n", n, ours, theirs, ours / theirs);
    std::printf("the view's computation of a 16384-point band: %.1f us\n", band);
    return 0;
}
