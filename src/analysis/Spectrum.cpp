#include "analysis/Spectrum.h"

#include "analysis/Analysis.h"

#include <algorithm>
#include <cmath>

TBandPoints BandPoints(const TCurveData& d, qint64 seriesFirst, qint64 seriesLast, double start, double end) {
    seriesFirst = std::max<qint64>(seriesFirst, 0);
    seriesLast = std::min(seriesLast, d.Count() - 1);
    if (seriesFirst > seriesLast) return {};
    // Times ascend: binary searches within the series.
    const qint64 first = std::max(seriesFirst, d.LowerBound(start));
    if (first > seriesLast) return {};
    qint64 last = seriesLast;
    const qint64 atEnd = std::max(first + 1, d.LowerBound(end));
    if (atEnd <= seriesLast) last = d.Time(atEnd) == end ? atEnd : atEnd - 1;
    return {first, last};
}

int SpectrumSizeFor(qint64 points) {
    int n = 512;
    while (n < 16384 && points > n)
        n *= 2;
    return n;
}

TBandSpectrum BandSpectrum(const TCurveData& d, qint64 seriesFirst, qint64 seriesLast, double start, double end,
                           TFastFourier& fft) {
    TBandSpectrum out;
    TBandPoints p = BandPoints(d, seriesFirst, seriesLast, start, end);
    if (p.IsEmpty() || p.Last - p.First <= 5) return out;
    // A stamp written twice at the start of the band.
    if (d.Time(p.First + 1) - d.Time(p.First) < 0.0001) ++p.First;
    const qint64 m = p.Last - p.First + 1;
    out.N = SpectrumSizeFor(m);
    fft.SetSpectrumSize(out.N);
    out.Dt = d.Time(p.First + 1) - d.Time(p.First);
    out.Points = p;
    fft.Clear();
    for (int i = 1; i <= out.N && i <= m; ++i) {
        const qint64 at = p.First + i - 1;
        fft.SetRealVal(i, IsMeasured(d, at) ? d.Value(at) : 0.0);
    }
    fft.Transform();
    out.Frequency.resize(size_t(out.N / 2 + 1));
    out.Magnitude.resize(size_t(out.N / 2 + 1));
    for (int k = 0; k <= out.N / 2; ++k) {
        out.Frequency[size_t(k)] = fft.FreqOfLine(k, out.Dt);
        out.Magnitude[size_t(k)] = fft.GetMagnitude(k);
    }
    return out;
}
