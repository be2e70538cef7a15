#pragma once
// The FFT view's computation on a band of a curve: which points the band holds, how many lines
// the transform gets, and the magnitude spectrum over frequency in hertz.

#include "analysis/FastFourier.h"
#include "data/CurveData.h"

#include <vector>

struct TBandPoints {
    qint64 First = -1, Last = -1; // inclusive; First -1 when the band holds no point
    bool IsEmpty() const { return First < 0; }
};

// The band's points among the series' points seriesFirst..seriesLast: from the first point at
// or after start; to the last of the series, or else to the first point at or after end when
// it lies on end, or to the one before it.
TBandPoints BandPoints(const TCurveData& d, qint64 seriesFirst, qint64 seriesLast, double start, double end);

// The transform size for m points: the next of 512 .. 16384, capped at 16384.
int SpectrumSizeFor(qint64 points);

struct TBandSpectrum {
    int N = 0;          // 0: the band holds six points or fewer, nothing was computed
    double Dt = 0.0;    // seconds, from the first pair of points
    TBandPoints Points; // as transformed, after a doubled first stamp was skipped
    std::vector<double> Frequency, Magnitude; // lines 0..N/2
};

// The spectrum of the band: its points from the first (a doubled first stamp skipped), zero
// padded to N, transformed with the component's weighting window. A point without a measured
// value (gap marker, NaN) enters as 0.
TBandSpectrum BandSpectrum(const TCurveData& d, qint64 seriesFirst, qint64 seriesLast, double start, double end,
                           TFastFourier& fft);
