// The FFT view offscreen: the input taken from the store, the band dragged with the mouse and
// set by its buttons, the spectrum of a known sine, the chart editor, and zebtool fft
// computing the same spectrum.

#include "config/Texts.h"
#include "data/Formats.h"
#include "LoadRecording.h"
#include "MakeRecording.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/ChartPropsDlg.h"
#include "ui/CrossHair.h"
#include "ui/ValidateEdit.h"
#include "ui/ViewFFT.h"
#include "ui/ZebChart.h"

#include <QCheckBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <numbers>

using namespace Qt::StringLiterals;

namespace {

constexpr double kT0 = 7.6e8;
constexpr double kDt = 0.01; // 100 samples a second
constexpr double kHz = 5.0;

// Curve 0 inactive, curve 1 a 5 Hz sine of amplitude 2 around 1: the view takes curve 1.
void Fill(TDataBase& db, int n = 6000) {
    TStoreReceiver r(db);
    for (int c = 0; c < 2; ++c) {
        AddSampledCurve(db, u"A1"_s, n, kT0, kDt,
                        [](int i) { return 1.0 + 2.0 * std::sin(2.0 * std::numbers::pi * kHz * i * kDt); });
        r.SetChannelName(c, c ? u"Vibration"_s : u"Off"_s);
        r.SetUnit(c, u"g"_s);
    }
    db.Curve_SetActive(0, false);
    db.Axis_Get(axBottom).Min = kT0;
    db.Axis_Get(axBottom).Max = kT0 + (n - 1) * kDt;
}

QString Text(const TfrmViewFFT& v, const char* label) {
    return v.findChild<QLabel*>(QLatin1String(label))->text();
}

} // namespace

class TstViewFft : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        zeb::SetFormats(2);
        zeb::SwitchTexts(zeb::LangEnglish);
    }

    void spectrumOfASine() {
        TDataBase db;
        Fill(db);
        TfrmViewFFT v;
        QVERIFY(v.Execute(&db, nullptr));
        QVERIFY(v.isVisible());
        QCOMPARE(v.Curve(), 1);
        QCOMPARE(v.Input().First, qint64(0));
        QCOMPARE(v.Input().Last, qint64(5999));
        // The band on the middle third, in seconds from the input's first point.
        const double span = 5999 * kDt;
        QCOMPARE(v.BandStart(), kT0 + span / 3);
        QCOMPARE(Text(v, "lblX1"), u"X1= "_s + zeb::FormatFloat(u"0.000"_s, span / 3));
        QCOMPARE(Text(v, "lblD"), u"D = 1999"_s);

        v.btnCalcFFTClick();
        const TBandSpectrum& s = v.Spectrum();
        QCOMPARE(s.N, 2048);
        QVERIFY(std::abs(s.Dt - kDt) < 1e-6); // times near 7.6e8 s keep about 1e-7 s
        QCOMPARE(v.SeriesFFT->dataCount(), 1025);
        QCOMPARE(v.ChartFFT->xAxis->label(), u"Frequenz in Hz"_s);
        // The strongest line lies at 5 Hz, one line apart at most (0.049 Hz a line).
        const auto peak = std::max_element(s.Magnitude.begin() + 1, s.Magnitude.end());
        QVERIFY(std::abs(s.Frequency[size_t(peak - s.Magnitude.begin())] - kHz) <= 1.0 / (s.N * kDt));
        QVERIFY(*peak > 0.5);
        // The read-out, when asked for, says so.
        v.findChild<QCheckBox*>(u"chkPeak"_s)->setChecked(true);
        QVERIFY(Text(v, "lblPeak").startsWith(u"Strongest line: 4.9"_s) ||
                Text(v, "lblPeak").startsWith(u"Strongest line: 5.0"_s));
    }

    // The band's edges follow the mouse; the buttons set window and band from each other.
    void bandByMouseAndButtons() {
        TDataBase db;
        Fill(db);
        TfrmViewFFT v;
        v.resize(900, 700);
        QVERIFY(v.Execute(&db, nullptr));
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        QCustomPlot* c = v.ChartInp;
        c->replot();
        const int y = c->axisRect()->rect().center().y();
        const int from = int(std::lround(c->xAxis->coordToPixel(v.BandStart())));
        QTest::mousePress(c, Qt::LeftButton, Qt::NoModifier, QPoint(from + 2, y));
        QTest::mouseMove(c, QPoint(from - 100, y));
        QTest::mouseRelease(c, Qt::LeftButton, Qt::NoModifier, QPoint(from - 100, y));
        QVERIFY(std::abs(v.BandStart() - c->xAxis->pixelToCoord(from - 100)) < 1e-6);
        QCOMPARE(Text(v, "lblX1"), u"X1= "_s + zeb::FormatFloat(u"0.000"_s, v.BandStart() - kT0));
        // Away from the edges the mouse moves nothing.
        const double start = v.BandStart(), end = v.BandEnd();
        QTest::mouseClick(c, Qt::LeftButton, Qt::NoModifier, QPoint((from + 300), y));
        QCOMPARE(v.BandStart(), start);
        QCOMPARE(v.BandEnd(), end);

        v.btnSetWindowToBandClick();
        QCOMPARE(c->xAxis->range().lower, start);
        QCOMPARE(c->xAxis->range().upper, end);
        c->xAxis->setRange(kT0 + 10, kT0 + 20);
        v.btnSetBandToWindowClick();
        QCOMPARE(v.BandStart(), kT0 + 10);
        QCOMPARE(v.BandEnd(), kT0 + 20);
        v.btnResetClick();
        QCOMPARE(c->xAxis->range().lower, kT0);
        QCOMPARE(v.BandEnd(), kT0 + 5999 * kDt * 2 / 3);
        // Six points do nothing.
        v.SetBand(kT0, kT0 + 5 * kDt);
        v.btnCalcFFTClick();
        QCOMPARE(v.SeriesFFT->dataCount(), 0);
        QCOMPARE(Text(v, "lblD"), u"D = 5"_s);
    }

    void inputBounds() {
        TDataBase db;
        Fill(db);
        // Between the crosshairs, taken in either order.
        TZebChart chart(&db);
        db.Curve_SetActive(0, true);
        chart.Rebuild();
        chart.CrossHair()->SetCursor(0, 0);
        chart.CrossHair()->SetCursor(1, 0);
        chart.CrossHair()->MoveTo(0, kT0 + 40.0);
        chart.CrossHair()->MoveTo(1, kT0 + 10.0);
        TfrmViewFFT v;
        QVERIFY(v.Execute(&db, chart.CrossHair()));
        QCOMPARE(v.Curve(), 0);
        QCOMPARE(v.Input().First, qint64(1000));
        QCOMPARE(v.Input().Last, qint64(4000));
        // The input chart holds the copied range alone: "Window = Band" with the band dragged
        // past both ends shows no point the FFT does not use.
        v.SetBand(kT0, kT0 + 59.0);
        v.btnSetWindowToBandClick();
        v.ChartInp->replot();
        QVERIFY(v.SeriesInp->LastDrawnPoints() > 0);
        // 3001 points in the range, where the whole curve would give the window 5901.
        QVERIFY2(v.SeriesInp->LastDrawnPoints() <= 3001,
                 qPrintable(QString::number(v.SeriesInp->LastDrawnPoints())));
        bool found = false;
        const QCPRange keys = v.SeriesInp->getKeyRange(found);
        QVERIFY(found);
        QCOMPARE(keys.lower, kT0 + 10.0);
        QCOMPARE(keys.upper, kT0 + 40.0);
        v.SeriesInp->getValueRange(found, QCP::sdBoth, QCPRange(kT0, kT0 + 5.0));
        QVERIFY(!found); // nothing of the curve before the range
        // No curve shown: nothing to take, no window.
        db.Curve_SetActive(0, false);
        db.Curve_SetActive(1, false);
        TfrmViewFFT none;
        QVERIFY(!none.Execute(&db, nullptr));
        QVERIFY(!none.isVisible());
    }

    void chartEditor() {
        TDataBase db;
        Fill(db);
        TfrmViewFFT v;
        QVERIFY(v.Execute(&db, nullptr));
        v.btnCalcFFTClick();
        TfrmChartProps dlg;
        dlg.Execute(v.ChartFFT, nullptr, v.SeriesFFT, false);
        dlg.findChild<TValidateEdit*>(u"vedXMin"_s)->setText(u"2"_s);
        dlg.findChild<TValidateEdit*>(u"vedXMax"_s)->setText(u"8"_s);
        QVERIFY(dlg.Apply());
        QCOMPARE(v.ChartFFT->xAxis->range(), QCPRange(2, 8));
        // A maximum below the minimum is refused.
        dlg.findChild<TValidateEdit*>(u"vedYMax"_s)->setText(u"-100"_s);
        QVERIFY(!dlg.Apply());
    }

    // zebtool fft runs the same computation on the same band of a recording file.
    void zebtoolAgrees() {
        QTemporaryDir dir;
        const QString file = dir.filePath(u"fft.zeb"_s);
        QVERIFY(MakeRecording(file, {.channels = 5, .records = 3000, .intervalSeconds = 1}));
        const auto db = LoadRecording(file); // as the viewer and zebtool load it
        const TCurveData& d = db->Data(4);
        const double from = d.Time(100), to = d.Time(1200);
        TFastFourier fft;
        const TBandSpectrum s = BandSpectrum(d, 0, d.Count() - 1, from, to, fft);
        QProcess p;
        p.start(QStringLiteral(ZEBTOOL), {u"fft"_s, u"--curve"_s, u"4"_s, u"--from"_s, QString::number(from, 'g', 17),
                                          u"--to"_s, QString::number(to, 'g', 17), file});
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), 0);
        const QJsonObject o = QJsonDocument::fromJson(p.readAllStandardOutput()).object();
        QCOMPARE(o[u"n"_s].toInt(), s.N);
        QCOMPARE(o[u"first"_s].toInteger(), s.Points.First);
        QCOMPARE(o[u"last"_s].toInteger(), s.Points.Last);
        const QJsonArray lines = o[u"lines"_s].toArray();
        QCOMPARE(lines.size(), qsizetype(s.Magnitude.size()));
        for (qsizetype k = 0; k < lines.size(); k += 37)
            QCOMPARE(lines[k].toArray()[1].toDouble(), s.Magnitude[size_t(k)]);
    }
};

QTEST_MAIN(TstViewFft)
#include "tst_viewfft.moc"
