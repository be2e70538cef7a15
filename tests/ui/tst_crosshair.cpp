// The crosshair cursors on the real chart offscreen: binding to an axis's first curve,
// switching off on an empty axis, the read-out texts and their deliberate rules, the pen
// widths, following the curve while dragged, and the zoom rectangle's read-out.

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/CrossHair.h"
#include "ui/ZebChart.h"

#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr double kT0 = 7.6e8;

// A curve on the left: a sample every 10 s with value i, a gap marker at sample 50.
// Optionally a second one on the right.
void Fill(TDataBase& db, bool right) {
    TStoreReceiver r(db);
    r.AddCurve(u"A-1"_s);
    r.SetChannelName(0, u"Level"_s);
    std::vector<double> t, v;
    std::vector<TPointKind> k;
    for (int i = 0; i < 100; ++i) {
        t.push_back(kT0 + 10.0 * i);
        v.push_back(i == 50 ? 0.0 : double(i));
        k.push_back(i == 50 ? TPointKind::Gap : i == 51 ? TPointKind::GapEnd : TPointKind::Value);
    }
    r.AddPoints(0, t, v, k);
    db.Curve_AxisSet(0, 1);
    if (!right) return;
    AddSampledCurve(db, u"B-2"_s, 100, kT0, 10.0, [](int i) { return 1000.0 - (i == 50 ? 0.0 : i); });
    db.Curve_AxisSet(1, 2);
}

struct TChart {
    TDataBase Db;
    std::unique_ptr<TZebChart> Chart;
    TCrossHair* Cross = nullptr;
    explicit TChart(bool right = true) {
        Fill(Db, right);
        Chart = std::make_unique<TZebChart>(&Db);
        Chart->resize(800, 500);
        Chart->show();
        Chart->replot();
        Cross = Chart->CrossHair();
    }
    QString Label(int i) const {
        return Chart->ReadoutPanel()->findChild<QLabel*>(u"Label%1"_s.arg(i))->text();
    }
};

} // namespace

class TstCrossHair : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        zeb::SetFormats(2);
        zeb::SwitchTexts(zeb::LangEnglish);
    }

    void bindsAndPlacesAtThirds() {
        TChart c;
        c.Cross->SetCursor(0, 0);
        c.Cross->SetCursor(1, 1);
        QCOMPARE(c.Cross->GetActive(0), 0);
        QCOMPARE(c.Cross->GetActive(1), 1);
        QCOMPARE(c.Cross->GetActive(2), -1);
        QCOMPARE(c.Cross->BoundCurve(0), 0);
        QCOMPARE(c.Cross->BoundCurve(1), 1);
        const QCPRange x = c.Chart->xAxis->range(), left = c.Chart->yAxis->range(),
                       right = c.Chart->yAxis2->range();
        QCOMPARE(c.Cross->X(0), x.lower + x.size() / 3.0);
        QCOMPARE(c.Cross->Y(0), left.lower + left.size() / 3.0);
        QCOMPARE(c.Cross->X(1), x.lower + x.size() * 2.0 / 3.0);
        QCOMPARE(c.Cross->Y(1), right.lower + right.size() * 2.0 / 3.0);
        QCOMPARE(c.Cross->Tracer(1)->position->valueAxis(), c.Chart->yAxis2);
        QCOMPARE(c.Cross->Tracer(0)->pen().style(), Qt::DashLine);
        QCOMPARE(c.Cross->Tracer(1)->pen().style(), Qt::DashDotDotLine);
    }

    void emptyAxisSwitchesOff() {
        TChart c(false);
        QVERIFY(c.Cross->IsActive(0));
        QVERIFY(!c.Cross->IsActive(1));
        c.Cross->SetCursor(0, 0);
        const double x = c.Cross->X(0);
        c.Cross->SetCursor(0, 1); // the right axis has no curve
        QCOMPARE(c.Cross->GetActive(0), -1);
        QVERIFY(!c.Cross->Tracer(0)->visible());
        QCOMPARE(c.Cross->X(0), x - 1.0);
        QCOMPARE(c.Label(1), u"X1="_s);
        QCOMPARE(c.Label(2), u"Y1="_s);

        // A curve moved away from a cursor's axis takes the cursor with it at the next build.
        c.Cross->SetCursor(1, 0);
        QCOMPARE(c.Cross->GetActive(1), 0);
        c.Db.Curve_AxisSet(0, 2);
        c.Chart->Rebuild();
        QCOMPARE(c.Cross->GetActive(1), -1);
        QCOMPARE(c.Label(3), u"X2="_s);
    }

    void readoutTexts_data() {
        QTest::addColumn<int>("xType");
        QTest::addColumn<QString>("x1");
        QTest::addColumn<QString>("x2");
        QTest::addColumn<QString>("dx");
        const double a = kT0 + 120.0, b = kT0 + 185.5;
        QTest::newRow("date and time")
            << 2 << zeb::FormatTime(zeb::TTimeKind::Time, a) << zeb::FormatTime(zeb::TTimeKind::TimeMs, b) << u"00:01:05.500"_s;
        // Seconds from the first time, in each cursor's own x format.
        QTest::newRow("seconds from 0") << 0 << u"120.0"_s << u"185.50"_s << u"65.5"_s;
        QTest::newRow("time from 0") << 1 << u"0+00:02:00"_s << u"0+00:03:05.500"_s << u"00:01:05.500"_s;
    }

    void readoutTexts() {
        QFETCH(int, xType);
        QFETCH(QString, x1);
        QFETCH(QString, x2);
        QFETCH(QString, dx);
        TChart c;
        c.Db.Axis_Get(axBottom).XType = TTimeAxisType(xType);
        c.Db.Cursor_Get(0).XFormat = u"0.0"_s;
        c.Db.Cursor_Get(0).YFormat = u"0.0"_s;
        c.Db.Cursor_Get(1).XFormat = u"0.00"_s;
        c.Db.Cursor_Get(1).YFormat = u"0.000"_s;
        c.Cross->SetCursor(0, 0);
        c.Cross->SetCursor(1, 0);
        c.Cross->SetPosition(0, kT0 + 120.0, 12.345);
        c.Cross->SetPosition(1, kT0 + 185.5, 20.0);
        QCOMPARE(c.Label(1), u"X1="_s + x1);
        QCOMPARE(c.Label(2), u"Y1=12.3"_s);
        QCOMPARE(c.Label(3), u"X2="_s + x2);
        QCOMPARE(c.Label(4), u"Y2=20.000"_s);
        QCOMPARE(c.Label(5), u"X2-X1="_s + dx);
        QCOMPARE(c.Label(6), u"Y2-Y1=7.7"_s); // cursor 1's format, deliberately
        QCOMPARE(c.Cross->LabelText(5), c.Label(6));
    }

    void differencesKeepTextWhileOneCursorIsOff() {
        TChart c;
        c.Cross->SetCursor(0, 0);
        c.Cross->SetCursor(1, 1);
        const QString dx = c.Label(5), dy = c.Label(6);
        QVERIFY(dx.size() > 6 && dy.size() > 6);
        c.Cross->SetCursor(1, -1);
        QCOMPARE(c.Label(3), u"X2="_s);
        QCOMPARE(c.Label(4), u"Y2="_s);
        QCOMPARE(c.Label(5), dx);
        QCOMPARE(c.Label(6), dy);
        // Moving the remaining cursor leaves them as well.
        c.Cross->SetPosition(0, kT0 + 300.0, 1.0);
        QCOMPARE(c.Label(5), dx);
        c.Cross->SetCursor(0, -1);
        QCOMPARE(c.Label(5), u"X2-X1="_s);
        QCOMPARE(c.Label(6), u"Y2-Y1="_s);
        QCOMPARE(c.Label(1), u"X1="_s);
    }

    void penWidths_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("pen");
        QTest::addColumn<int>("back");
        QTest::newRow("below the range") << -3 << 2.0 << 0;
        QTest::newRow("first") << 0 << 2.0 << 0;
        QTest::newRow("middle") << 4 << 6.0 << 4;
        QTest::newRow("last") << 9 << 11.0 << 9;
        QTest::newRow("above the range") << 15 << 11.0 << 9;
    }

    void penWidths() {
        QFETCH(int, index);
        QFETCH(double, pen);
        QFETCH(int, back);
        TChart c;
        c.Cross->SetWidth(1, index);
        QCOMPARE(c.Cross->Tracer(1)->pen().widthF(), pen);
        QCOMPARE(c.Cross->GetWidth(1), back);
        QCOMPARE(c.Cross->Tracer(0)->pen().widthF(), 2.0);
    }

    void followsTheCurveAndSkipsGapMarkers() {
        TChart c;
        c.Cross->SetCursor(0, 0);
        c.Cross->MoveTo(0, kT0 + 123.0); // nearest sample: 12 at 120 s
        QCOMPARE(c.Cross->X(0), kT0 + 120.0);
        QCOMPARE(c.Cross->Y(0), 12.0);
        c.Cross->MoveTo(0, kT0 + 501.0); // sample 50 is a gap marker without a value
        QVERIFY(c.Cross->X(0) == kT0 + 490.0 || c.Cross->X(0) == kT0 + 510.0);
        QCOMPARE(c.Cross->Y(0), (c.Cross->X(0) - kT0) / 10.0);
        c.Cross->MoveTo(0, kT0 - 1e6); // far left: the first sample
        QCOMPARE(c.Cross->X(0), kT0);
    }

    void dragWithTheMouse() {
        TChart c;
        c.Cross->SetCursor(0, 0);
        const QPointF at = c.Cross->Tracer(0)->position->pixelPosition();
        QVERIFY(c.Cross->IsClicked(int(at.x()), int(at.y()) + 40)); // on the vertical line
        QVERIFY(!c.Cross->IsClicked(int(at.x()) + 40, int(at.y()) + 40));
        const int to = int(c.Chart->xAxis->coordToPixel(kT0 + 700.0));
        QTest::mousePress(c.Chart.get(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(int(at.x()), int(at.y()) + 40));
        QTest::mouseMove(c.Chart.get(), QPoint(to, int(at.y()) + 40));
        QTest::mouseRelease(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, QPoint(to, int(at.y()) + 40));
        QVERIFY(std::abs(c.Cross->X(0) - (kT0 + 700.0)) <= 10.0);
        QCOMPARE(c.Cross->Y(0), (c.Cross->X(0) - kT0) / 10.0); // on a sample of the curve
        QVERIFY(c.Label(2).startsWith(u"Y1="_s));
        // Dragging a cursor is no zoom.
        QVERIFY(!c.Chart->IsUndoPossible());
    }

    void zoomRectangleReadout() {
        TChart c(false);
        c.Db.Axis_Get(axLeft).Format = u"0.00"_s;
        c.Cross->SetCursor(0, 0);
        const QString y1 = c.Label(2);
        const QRect plot = c.Chart->axisRect()->rect();
        const QPoint start(plot.left() + 100, plot.top() + 50);
        const double x = c.Chart->xAxis->pixelToCoord(start.x()), y = c.Chart->yAxis->pixelToCoord(start.y());
        c.Cross->SetZoomRect(true, start.x(), start.y());
        QCOMPARE(c.Label(1), u"X1="_s + zeb::FormatTime(zeb::TTimeKind::DateTime, x));
        QCOMPARE(c.Label(2), u"Y1="_s + zeb::FormatFloat(u"0.00"_s, y));
        // While the rectangle is drawn the cursors leave the read-outs alone.
        c.Cross->SetPosition(0, kT0, 3.0);
        QCOMPARE(c.Label(2), u"Y1="_s + zeb::FormatFloat(u"0.00"_s, y));
        c.Cross->DispZoomRect(start.x() + 200, start.y() + 100);
        const double dx = c.Chart->xAxis->pixelToCoord(start.x() + 200) - x;
        const double dy = y - c.Chart->yAxis->pixelToCoord(start.y() + 100);
        QCOMPARE(c.Label(5), u"X2-X1="_s + ChartText::Duration(dx));
        QCOMPARE(c.Label(6), u"Y2-Y1="_s + zeb::FormatFloat(u"0.00"_s, dy));
        c.Cross->SetZoomRect(false);
        QCOMPARE(c.Label(2), u"Y1=3.000"_s);
        QVERIFY(c.Label(2) != y1);
    }
};

QTEST_MAIN(TstCrossHair)
#include "tst_crosshair.moc"
