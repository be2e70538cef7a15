// Mouse zoom and pan on the real chart offscreen: which axes a band zooms, the 10-pixel
// threshold and the band's colours, fixed axes, pan by pixel scale, undo after zoom and
// after pan, auto scale, and the store following the axes.

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/CrossHair.h"
#include "ui/ZebChart.h"
#include "ui/ZoomAndScroll.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr double kT0 = 7.6e8;

struct TChart {
    TDataBase Db;
    std::unique_ptr<TZebChart> Chart;
    TZoomAndScroll* Zoom = nullptr;
    QRect Plot;

    TChart() {
        AddSampledCurve(Db, u"M0"_s, 500, kT0, 1, [](int i) { return i * 0.1; });
        AddSampledCurve(Db, u"M1"_s, 500, kT0, 1, [](int i) { return 100.0 - i; });
        Db.Curve_AxisSet(0, 1);
        Db.Curve_AxisSet(1, 2);
        Chart = std::make_unique<TZebChart>(&Db);
        Chart->resize(800, 500);
        Chart->show();
        Chart->replot();
        Zoom = Chart->Zoom();
        Plot = Chart->axisRect()->rect();
    }
    QCPRange Range(int axis) const { return Chart->ChartAxis(axis)->range(); }
    // Presses, drags in steps and releases as a hand would; answers the modified signals.
    int Drag(Qt::MouseButton button, QPoint from, QPoint to) {
        QSignalSpy modified(Chart.get(), &TZebChart::modified);
        QTest::mousePress(Chart.get(), button, Qt::NoModifier, from);
        QTest::mouseMove(Chart.get(), (from + to) / 2);
        QTest::mouseMove(Chart.get(), to);
        QTest::mouseRelease(Chart.get(), button, Qt::NoModifier, to);
        return int(modified.count());
    }
};

bool Same(const QCPRange& a, const QCPRange& b) {
    return qFuzzyCompare(a.lower, b.lower) && qFuzzyCompare(a.upper, b.upper);
}

} // namespace

class TstZoomAndScroll : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        zeb::SetFormats(2);
        zeb::SwitchTexts(zeb::LangEnglish);
    }

    void bandSizes_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("zooms");
        QTest::newRow("9 pixels high") << 200 << 9 << false;
        QTest::newRow("9 pixels wide") << 9 << 200 << false;
        QTest::newRow("10 by 10") << 10 << 10 << true;
        QTest::newRow("drawn upwards to the left") << -150 << -120 << true;
    }

    void bandSizes() {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(bool, zooms);
        TChart c;
        const QCPRange bottom = c.Range(axBottom), left = c.Range(axLeft);
        const QPoint from = c.Plot.center();
        const QPoint to = from + QPoint(width, height);
        QTest::mousePress(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(c.Chart.get(), to);
        QCOMPARE(c.Zoom->State(), TZoomAndScroll::zsZooming);
        QVERIFY(c.Zoom->IsBandDrawn());
        QCOMPARE(c.Zoom->BandColor(), zooms ? QColor(Qt::black) : QColor(Qt::red));
        // The outline inverts the chart below it: on white it shows in the pen's colour.
        const QImage shot = c.Chart->grab().toImage();
        const QRect band = c.Zoom->Band();
        int hits = 0;
        for (int x = band.left(); x <= band.right(); ++x)
            hits += QColor(shot.pixel(x, band.top())) == c.Zoom->BandColor();
        QVERIFY2(hits > band.width() / 2, qPrintable(QString::number(hits)));
        QSignalSpy modified(c.Chart.get(), &TZebChart::modified);
        QTest::mouseRelease(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, to);
        QVERIFY(!c.Zoom->IsBandDrawn());
        QCOMPARE(modified.count(), zooms ? 1 : 0);
        QCOMPARE(!Same(c.Range(axBottom), bottom), zooms);
        QCOMPARE(!Same(c.Range(axLeft), left), zooms);
        if (!zooms) return;
        const int x1 = std::min(from.x(), to.x()), x2 = std::max(from.x(), to.x());
        QVERIFY(Same(c.Range(axBottom),
                     QCPRange(bottom.lower + (x1 - c.Plot.left()) * bottom.size() / c.Plot.width(),
                              bottom.lower + (x2 - c.Plot.left()) * bottom.size() / c.Plot.width())));
        QVERIFY(c.Chart->IsUndoPossible());
    }

    void participation_data() {
        QTest::addColumn<QPoint>("from"); // relative to the plot's corners, see below
        QTest::addColumn<QPoint>("to");
        QTest::addColumn<bool>("time");
        QTest::addColumn<bool>("values");
        // x: pixels from the plot's left edge, y: from its top; -20 lies outside, 9999 stands
        // for 20 pixels beyond the right or bottom edge, 8888 for the first pixel beyond it.
        QTest::newRow("inside") << QPoint(100, 100) << QPoint(300, 250) << true << true;
        QTest::newRow("across the whole height") << QPoint(100, -20) << QPoint(300, 9999) << true << false;
        QTest::newRow("across the whole width") << QPoint(-20, 100) << QPoint(9999, 250) << false << true;
        QTest::newRow("to the first pixel below") << QPoint(100, -20) << QPoint(300, 8888) << true << false;
        QTest::newRow("from the first pixel right") << QPoint(8888, 100) << QPoint(9999, 250) << false << false;
        QTest::newRow("across everything") << QPoint(-20, -20) << QPoint(9999, 9999) << false << false;
        QTest::newRow("beyond the top only") << QPoint(100, -20) << QPoint(300, 250) << true << true;
        QTest::newRow("outside the plot") << QPoint(100, 9999) << QPoint(300, 9999 + 30) << false << false;
    }

    void participation() {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(bool, time);
        QFETCH(bool, values);
        TChart c;
        auto place = [&](QPoint p) {
            auto at = [](int v, int first, int size) {
                if (v == 8888) return first + size;
                return v >= 9999 ? first + size - 1 + 20 + (v - 9999) : first + v;
            };
            return QPoint(at(p.x(), c.Plot.left(), c.Plot.width()), at(p.y(), c.Plot.top(), c.Plot.height()));
        };
        const QCPRange bottom = c.Range(axBottom), left = c.Range(axLeft), right = c.Range(axRight);
        const int changes = c.Drag(Qt::LeftButton, place(from), place(to));
        QCOMPARE(changes, time || values ? 1 : 0);
        QCOMPARE(!Same(c.Range(axBottom), bottom), time);
        QCOMPARE(!Same(c.Range(axLeft), left), values);
        QCOMPARE(!Same(c.Range(axRight), right), values);
        if (time && !values) {
            // The band's time edges became the axis's.
            QCOMPARE(c.Range(axBottom).lower, bottom.lower + 100.0 * bottom.size() / c.Plot.width());
        }
    }

    void fixedAxesStayPut() {
        TChart c;
        c.Chart->SetAxisFixed(axLeft, true);
        const QCPRange left = c.Range(axLeft), bottom = c.Range(axBottom);
        QCOMPARE(
            c.Drag(Qt::LeftButton, c.Plot.topLeft() + QPoint(50, 50), c.Plot.topLeft() + QPoint(300, 300)),
            1);
        QVERIFY(Same(c.Range(axLeft), left));
        QVERIFY(!Same(c.Range(axBottom), bottom));
        const QCPRange zoomed = c.Range(axBottom);
        c.Drag(Qt::RightButton, c.Plot.center(), c.Plot.center() + QPoint(60, 40));
        QVERIFY(Same(c.Range(axLeft), left));
        QVERIFY(!Same(c.Range(axBottom), zoomed));
        c.Zoom->Autoscale(false); // keeps the fixed axis
        QVERIFY(Same(c.Range(axLeft), left));
        QCOMPARE(c.Range(axBottom), QCPRange(kT0, kT0 + 499));
        // Every axis fixed: a band zooms nothing.
        c.Chart->SetAxisFixed(-1, true);
        const QCPRange now = c.Range(axBottom);
        QCOMPARE(
            c.Drag(Qt::LeftButton, c.Plot.topLeft() + QPoint(50, 50), c.Plot.topLeft() + QPoint(300, 300)),
            0);
        QVERIFY(Same(c.Range(axBottom), now));
        // A pan with every axis fixed moves nothing: no change to save, and the zoom before it
        // can still be undone. One free axis makes it a pan again, which cannot be undone.
        c.Chart->SetAxisFixed(-1, false);
        c.Drag(Qt::LeftButton, c.Plot.topLeft() + QPoint(50, 50), c.Plot.topLeft() + QPoint(300, 300));
        QVERIFY(c.Chart->IsUndoPossible());
        c.Chart->SetAxisFixed(-1, true);
        const QCPRange before = c.Range(axBottom);
        QCOMPARE(c.Drag(Qt::RightButton, c.Plot.center(), c.Plot.center() + QPoint(60, 40)), 0);
        QVERIFY(Same(c.Range(axBottom), before));
        QVERIFY(c.Chart->IsUndoPossible());
        c.Chart->SetAxisFixed(axBottom, false);
        QCOMPARE(c.Drag(Qt::RightButton, c.Plot.center(), c.Plot.center() + QPoint(60, 40)), 1);
        QVERIFY(!Same(c.Range(axBottom), before));
        QVERIFY(!c.Chart->IsUndoPossible());
    }

    // The crosshair is the mouse's: pressing on it with either button neither zooms nor pans.
    void pressOnACrosshair_data() {
        QTest::addColumn<int>("button");
        QTest::newRow("left") << int(Qt::LeftButton);
        QTest::newRow("right") << int(Qt::RightButton);
    }
    void pressOnACrosshair() {
        QFETCH(int, button);
        TChart c;
        c.Chart->CrossHair()->SetCursor(0, 0);
        c.Chart->replot();
        const QCPRange bottom = c.Range(axBottom), left = c.Range(axLeft);
        const int x = int(std::lround(c.Chart->xAxis->coordToPixel(bottom.lower + bottom.size() / 3)));
        const QPoint on(x, c.Plot.top() + 20);
        QVERIFY(c.Chart->CrossHair()->IsClicked(on.x(), on.y()));
        QTest::mousePress(c.Chart.get(), Qt::MouseButton(button), Qt::NoModifier, on);
        QCOMPARE(c.Zoom->State(), TZoomAndScroll::zsIdle);
        QTest::mouseMove(c.Chart.get(), on + QPoint(0, 150));
        QTest::mouseRelease(c.Chart.get(), Qt::MouseButton(button), Qt::NoModifier, on + QPoint(0, 150));
        QVERIFY(Same(c.Range(axBottom), bottom));
        QVERIFY(Same(c.Range(axLeft), left));
        QVERIFY(!c.Chart->IsUndoPossible());
    }

    void panFollowsTheMouse() {
        TChart c;
        const QCPRange bottom = c.Range(axBottom), left = c.Range(axLeft), right = c.Range(axRight);
        QSignalSpy status(c.Chart.get(), &TZebChart::statusText);
        QCOMPARE(c.Drag(Qt::RightButton, c.Plot.center(), c.Plot.center() + QPoint(80, 50)), 1);
        const double dt = 80.0 * bottom.size() / c.Plot.width();
        QVERIFY(qFuzzyCompare(c.Range(axBottom).lower, bottom.lower - dt));
        QVERIFY(qFuzzyCompare(c.Range(axBottom).size(), bottom.size()));
        QVERIFY(qFuzzyCompare(c.Range(axLeft).lower, left.lower + 50.0 * left.size() / c.Plot.height()));
        QVERIFY(qFuzzyCompare(c.Range(axRight).upper, right.upper + 50.0 * right.size() / c.Plot.height()));
        QVERIFY(status.count() >= 2);
        QVERIFY(status.first().at(0).toString().startsWith(u"X= "_s));
        QCOMPARE(status.last().at(0).toString(), zeb::Txt(zeb::TTextId::StatusZoomHint));
        // The store follows the axes; they no longer scale themselves.
        QCOMPARE(c.Db.Axis_Get(axBottom).Min, c.Range(axBottom).lower);
        QVERIFY(!c.Db.Axis_Get(axBottom).Auto);
        // A right click without moving is no pan.
        QCOMPARE(c.Drag(Qt::RightButton, c.Plot.center(), c.Plot.center()), 0);
    }

    void undoAfterZoomAndAfterPan() {
        TChart c;
        const QCPRange bottom = c.Range(axBottom), left = c.Range(axLeft);
        QVERIFY(!c.Chart->IsUndoPossible());
        QSignalSpy undo(c.Chart.get(), &TZebChart::undoAvailable);
        // Time only: undo restores the time axis; the value axes were never touched.
        c.Drag(Qt::LeftButton, QPoint(c.Plot.left() + 100, c.Plot.top() - 20),
               QPoint(c.Plot.left() + 300, c.Plot.bottom() + 20));
        QVERIFY(c.Chart->IsUndoPossible());
        QVERIFY(undo.count() >= 1 && undo.last().at(0).toBool());
        c.Chart->yAxis->setRange(-7, 7); // a value range set meanwhile stays
        c.Chart->Undo();
        QVERIFY(Same(c.Range(axBottom), bottom));
        QCOMPARE(c.Range(axLeft), QCPRange(-7, 7));
        QVERIFY(c.Zoom->IsAuto(TZoomAndScroll::zaBottom));
        QVERIFY(!c.Chart->IsUndoPossible());
        c.Chart->Undo(); // one level only
        QVERIFY(Same(c.Range(axBottom), bottom));

        // After a pan nothing can be undone.
        c.Chart->yAxis->setRange(left);
        c.Drag(Qt::LeftButton, c.Plot.topLeft() + QPoint(50, 50), c.Plot.topLeft() + QPoint(300, 300));
        QVERIFY(c.Chart->IsUndoPossible());
        c.Drag(Qt::RightButton, c.Plot.center(), c.Plot.center() + QPoint(30, 0));
        QVERIFY(!c.Chart->IsUndoPossible());
        const QCPRange panned = c.Range(axBottom);
        c.Chart->Undo();
        QVERIFY(Same(c.Range(axBottom), panned));
    }

    void autoscaleCanBeUndone() {
        TChart c;
        c.Drag(Qt::LeftButton, c.Plot.topLeft() + QPoint(50, 50), c.Plot.topLeft() + QPoint(300, 300));
        const QCPRange zoomed = c.Range(axBottom);
        c.Chart->AutoScale();
        QCOMPARE(c.Range(axBottom), QCPRange(kT0, kT0 + 499));
        QVERIFY(c.Db.Axis_Get(axBottom).Auto);
        c.Chart->Undo();
        QVERIFY(Same(c.Range(axBottom), zoomed));
        QVERIFY(!c.Db.Axis_Get(axBottom).Auto);
    }
};

QTEST_MAIN(TstZoomAndScroll)
#include "tst_zoomandscroll.moc"
