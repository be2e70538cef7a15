// The chart view driven through the real widget offscreen: what it builds from the store
// (curves, legend texts, limit lines, axes), the clicks on its elements, the switches, the
// time-axis texts, and its care with samples the store has thrown away.

#include "ChartHelpers.h"
#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/CrossHair.h"
#include "ui/ZebChart.h"
#include "ui/ZoomAndScroll.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr double kT0 = 7.6e8;

// Fills a store as the loader would.
struct TFill {
    TDataBase& db;
    TStoreReceiver r{db};
    int Curve(const QString& module, const QString& name, const QString& unit, int axis, int n,
              double (*value)(int), const QString& logger = QStringLiteral("Logger 1")) {
        const int c = AddSampledCurve(db, module, n, kT0, 1, value);
        r.SetChannelName(c, name);
        r.SetUnit(c, unit);
        r.SetLoggerName(c, logger);
        db.Curve_AxisSet(c, axis);
        return c;
    }
};

double Ramp(int i) {
    return 10.0 + i * 0.01;
}
double Wave(int i) {
    return 50.0 + 10.0 * std::sin(i / 50.0);
}

// A store of a temperature on the left (with both limits) and a humidity on the right.
void FillTwo(TDataBase& db) {
    TFill f{db};
    f.Curve(QStringLiteral("T-100"), QStringLiteral("Temperature"), QStringLiteral("°C"), 1, 1000, Ramp);
    f.Curve(QStringLiteral("H-200"), QStringLiteral("Humidity"), QStringLiteral("%rH"), 2, 1000, Wave,
            QStringLiteral("Logger 2"));
    f.r.SetLimits(0, 4, 0, 12.0, 18.0);
    f.r.SetLimits(1, 2, 0, 55.0, 0.0);
}

} // namespace

class TstZebChart : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        zeb::SetFormats(2);
        zeb::SwitchTexts(zeb::LangEnglish);
    }

    void buildsCurvesAxesAndLimitLines() {
        TDataBase db;
        FillTwo(db);
        TFill{db}.Curve(QStringLiteral("P-300"), QStringLiteral("Pressure"), QStringLiteral("hPa"), 0, 10,
                        Ramp);
        TZebChart chart(&db);
        QCOMPARE(chart.objectName(), QStringLiteral("ZEBChart"));
        QVERIFY(chart.CurvePlottable(0) && chart.CurvePlottable(1));
        QVERIFY(!chart.CurvePlottable(2)); // inactive axis: not on the chart
        QCOMPARE(chart.CurvePlottable(0)->valueAxis(), chart.yAxis);
        QCOMPARE(chart.CurvePlottable(1)->valueAxis(), chart.yAxis2);
        QVERIFY(chart.yAxis2->visible());
        QCOMPARE(chart.yAxis->label(), QStringLiteral("[°C]"));
        QCOMPARE(chart.yAxis2->label(), QStringLiteral("[%rH]"));
        // The pen follows the store's colour (0x00BBGGRR) and width.
        db.Curve_ColorSet(0, 0x00FF8000);
        db.Curve_WidthSet(0, 3);
        chart.Rebuild();
        QCOMPARE(chart.CurvePlottable(0)->pen().color(), QColor(0x00, 0x80, 0xFF));
        QCOMPARE(chart.CurvePlottable(0)->pen().width(), 3);

        // Mode 4 gives two lines (solid at L1, dashed at L2), mode 2 one.
        QCOMPARE(chart.LimitLineItems().size(), size_t(3));
        std::map<std::pair<int, int>, const TLimitLineItem*> lines;
        for (const TLimitLineItem* l : chart.LimitLineItems())
            lines[{l->Curve(), l->Which()}] = l;
        QCOMPARE(lines.at({0, 1})->pen().style(), Qt::SolidLine);
        QCOMPARE(lines.at({0, 2})->pen().style(), Qt::DashLine);
        QCOMPARE(lines.at({0, 2})->Value(), 18.0);
        QCOMPARE(lines.at({1, 1})->point1->valueAxis(), chart.yAxis2);
        QCOMPARE(lines.at({0, 1})->pen().color(), chart.CurvePlottable(0)->pen().color());

        // Without a curve on the right the right axis goes.
        db.Curve_AxisSet(1, 1);
        chart.Rebuild();
        QVERIFY(!chart.yAxis2->visible());
        QCOMPARE(chart.yAxis->label(), QStringLiteral("[°C, %rH]"));
        db.Axis_Get(axLeft).Name = QStringLiteral("Climate");
        chart.Rebuild();
        QCOMPARE(chart.yAxis->label(), QStringLiteral("Climate"));
    }

    void legendTexts_data() {
        QTest::addColumn<bool>("twoLoggers");
        QTest::addColumn<bool>("reduced");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("expected");
        QTest::newRow("name and unit") << false << false << u"°C"_s << u"Temperature [°C]"_s;
        QTest::newRow("no unit") << false << false << QString() << u"Temperature"_s;
        QTest::newRow("reduced") << false << true << u"°C"_s << u"* Temperature [°C]"_s;
        QTest::newRow("extended view") << true << false << u"°C"_s << u"A-1,Temperature [°C]"_s;
        QTest::newRow("extended and reduced") << true << true << u"°C"_s << u"* A-1,Temperature [°C]"_s;
    }

    void legendTexts() {
        QFETCH(bool, twoLoggers);
        QFETCH(bool, reduced);
        QFETCH(QString, unit);
        QFETCH(QString, expected);
        TDataBase db;
        TFill f{db};
        f.Curve(QStringLiteral("A-1"), QStringLiteral("Temperature"), unit, 1,
                reduced ? int(TDataBase::kBigDataPoints) : 100, Ramp);
        f.Curve(twoLoggers ? QStringLiteral("B-2") : QStringLiteral("A-1"), QStringLiteral("Other"),
                QString(), 1, 10, Ramp);
        db.CheckBigData();
        db.CheckExtView();
        TZebChart chart(&db);
        QCOMPARE(chart.LegendText(0), expected);
        QCOMPARE(chart.CurvePlottable(0)->name(), expected);
        QCOMPARE(chart.CurvePlottable(0)->Reduction(), reduced);
    }

    void legendListsOnlyCurvesOnTheChart() {
        TDataBase db;
        TFill f{db};
        f.Curve(QStringLiteral("A"), QStringLiteral("Off"), QString(), 0, 10, Ramp);
        f.Curve(QStringLiteral("A"), QStringLiteral("Left"), QString(), 1, 10, Ramp);
        f.Curve(QStringLiteral("A"), QStringLiteral("Right"), QString(), 2, 10, Ramp);
        TZebChart chart(&db);
        QCOMPARE(chart.legend->itemCount(), 2);
        QCOMPARE(chart.LegendCurve(0), 1);
        QCOMPARE(chart.LegendCurve(1), 2);
        QCOMPARE(chart.LegendCurve(2), -1);
    }

    void plainLegendClickSwitchesLimitLines() {
        TDataBase db;
        FillTwo(db);
        TZebChart chart(&db);
        chart.resize(900, 500);
        chart.show();
        chart.replot();
        QSignalSpy modified(&chart, &TZebChart::modified);
        QSignalSpy legend(&chart, &TZebChart::legendClicked);
        QSignalSpy element(&chart, &TZebChart::elementClicked);
        QTest::mouseClick(&chart, Qt::LeftButton, Qt::NoModifier, LegendEntry(chart, 0));
        QVERIFY(!db.Curve_LimitLinesOn(0));
        QVERIFY(db.Curve_LimitLinesOn(1));
        QCOMPARE(chart.LimitLineItems().size(), size_t(1));
        QCOMPARE(modified.count(), 1);
        QCOMPARE(legend.count(), 1);
        QCOMPARE(legend.at(0).at(0).toInt(), 0);
        QCOMPARE(element.count(), 0);
        QTest::mouseClick(&chart, Qt::LeftButton, Qt::NoModifier, LegendEntry(chart, 0));
        QVERIFY(db.Curve_LimitLinesOn(0));
        QCOMPARE(chart.LimitLineItems().size(), size_t(3));

        // "Limits" switches all curves; a legend click still switches its own curve afterwards.
        db.Curve_SetAllLimitLines(false);
        chart.Rebuild();
        QCOMPARE(chart.LimitLineItems().size(), size_t(0));
        QTest::mouseClick(&chart, Qt::LeftButton, Qt::NoModifier, LegendEntry(chart, 0));
        QVERIFY(db.Curve_LimitLinesOn(0));
        QVERIFY(!db.Curve_LimitLinesOn(1));
        QCOMPARE(chart.LimitLineItems().size(), size_t(2)); // both lines of curve 0
        db.Curve_SetAllLimitLines(true);
        chart.Rebuild();
        QCOMPARE(chart.LimitLineItems().size(), size_t(3));
    }

    // Forty curves: the legend shows what fits and scrolls through the rest, by its bar and by
    // the wheel, and a click still hits the curve of the entry under the mouse.
    void legendScrollsThroughManyCurves() {
        TDataBase db;
        TFill f{db};
        for (int i = 0; i < 40; ++i)
            f.Curve(u"M%1"_s.arg(i), u"Channel %1"_s.arg(i), u"°C"_s, 1, 20, Ramp);
        // Laid out before it is shown, as in the window.
        TZebChart chart(&db);
        chart.resize(900, 500);
        chart.replot();
        chart.show();
        QVERIFY(QTest::qWaitForWindowExposed(&chart));
        QScrollBar* bar = chart.LegendScrollBar();
        QVERIFY(bar->isVisible());
        const int shown = chart.legend->itemCount();
        QVERIFY(shown > 3 && shown < 40);
        QCOMPARE(bar->maximum(), 40 - shown);
        for (int i = 0; i < shown; ++i)
            QVERIFY(chart.rect().contains(chart.legend->item(i)->outerRect()));
        // Beside the legend, as high as it.
        QVERIFY(bar->geometry().left() > chart.legend->outerRect().right());
        QCOMPARE(bar->geometry().top(), chart.legend->outerRect().top());
        QCOMPARE(bar->geometry().height(), chart.legend->outerRect().height());

        bar->setValue(bar->maximum());
        QCOMPARE(chart.LegendCurve(0), 40 - shown);
        QCOMPARE(chart.LegendCurve(shown - 1), 39);
        const QPoint entry = LegendEntry(chart, shown - 1);
        QTest::mouseClick(&chart, Qt::LeftButton, Qt::NoModifier, entry);
        QVERIFY(!db.Curve_LimitLinesOn(39));
        QCOMPARE(chart.LegendCurve(shown - 1), 39); // a rebuild keeps the legend where it was

        QWheelEvent up(QPointF(entry), chart.mapToGlobal(QPointF(entry)), QPoint(), QPoint(0, 120), Qt::NoButton,
                       Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&chart, &up);
        QCOMPARE(chart.LegendCurve(0), 39 - shown);

        // Room for all: no bar.
        chart.resize(900, 2400);
        chart.replot();
        QCOMPARE(chart.legend->itemCount(), 40);
        QVERIFY(!bar->isVisible());
    }

    void modifiedClicksOpenConfiguration_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("modifier");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("tab");
        const std::pair<const char*, int> keys[] = {
            {"shift", Qt::ShiftModifier}, {"alt", Qt::AltModifier}, {"ctrl", Qt::ControlModifier}};
        const std::pair<const char*, int> targets[] = {{"title", 0},       {"curve", 1},
                                                       {"bottom axis", 2}, {"left axis", 3},
                                                       {"right axis", 4},  {"legend", 1}};
        for (const auto& [key, modifier] : keys)
            for (const auto& [target, tab] : targets)
                QTest::addRow("%s, %s", target, key)
                    << QString::fromLatin1(target) << modifier << int(Qt::LeftButton) << tab;
        // The other button on a legend entry needs no key.
        QTest::newRow("legend, right button") << u"legend"_s << 0 << int(Qt::RightButton) << 1;
    }

    void modifiedClicksOpenConfiguration() {
        QFETCH(QString, target);
        QFETCH(int, modifier);
        QFETCH(int, button);
        QFETCH(int, tab);
        TDataBase db;
        FillTwo(db);
        db.General_Get().Title = QStringLiteral("Cold store");
        TZebChart chart(&db);
        chart.resize(900, 500);
        chart.show();
        chart.replot();
        const QPoint at = ElementPos(chart, target);
        QVERIFY(!at.isNull());
        QSignalSpy element(&chart, &TZebChart::elementClicked);
        QTest::mouseClick(&chart, Qt::MouseButton(button), Qt::KeyboardModifiers(modifier), at);
        QCOMPARE(element.count(), 1);
        QCOMPARE(element.at(0).at(0).toInt(), tab);
        // A click with a key held never zooms.
        QVERIFY(!chart.IsUndoPossible());
        if (target == u"legend") {
            // The entry's curve is switched off but stays in the legend, to be switched on again.
            QVERIFY(!db.Curve_IsActive(0));
            QVERIFY(!chart.CurvePlottable(0)->visible());
            QCOMPARE(chart.LegendCurve(0), 0);
            QVERIFY(db.Curve_LimitLinesOn(0)); // the plain click's switch is untouched
        }
    }

    void gridAndFixedSwitches() {
        TDataBase db;
        FillTwo(db);
        TZebChart chart(&db);
        QSignalSpy switches(&chart, &TZebChart::switchesChanged);
        chart.SetGrid(-1, false);
        for (int a = 0; a < 3; ++a) {
            QVERIFY(!chart.Grid(a));
            QVERIFY(!db.Axis_Get(a).Grid);
        }
        chart.SetGrid(axLeft, true, false); // shown, not stored
        QVERIFY(chart.Grid(axLeft));
        QVERIFY(!db.Axis_Get(axLeft).Grid);
        chart.SetAxisFixed(axRight, true);
        QVERIFY(chart.IsAxisFixed(axRight));
        QVERIFY(chart.Zoom()->IsFixed(TZoomAndScroll::zaRight));
        QVERIFY(!chart.IsAxisFixed(axBottom));
        QCOMPARE(switches.count(), 3);
        // The store's grids come back with a rebuild.
        chart.Rebuild();
        QVERIFY(!chart.Grid(axLeft));
    }

    void autoScaleReleasesFixedAxes() {
        TDataBase db;
        FillTwo(db);
        // Ranges of their own, as a template sets them.
        db.Axis_Get(axBottom) = {QString(), false, kT0 + 100, kT0 + 200};
        db.Axis_Get(axLeft) = {QString(), false, -5, 5};
        TZebChart chart(&db);
        chart.resize(800, 500);
        QCOMPARE(chart.xAxis->range(), QCPRange(kT0 + 100, kT0 + 200));
        chart.SetAxisFixed(-1, true);
        QSignalSpy modified(&chart, &TZebChart::modified);
        chart.AutoScale();
        for (int a = 0; a < 3; ++a)
            QVERIFY(!chart.IsAxisFixed(a));
        QCOMPARE(chart.xAxis->range().lower, kT0);
        QCOMPARE(chart.xAxis->range().upper, kT0 + 999);
        QVERIFY(chart.yAxis->range().contains(Ramp(0)) && chart.yAxis->range().contains(Ramp(999)));
        QVERIFY(chart.yAxis->range().size() < 2 * (Ramp(999) - Ramp(0)));
        QVERIFY(db.Axis_Get(axBottom).Auto);
        QCOMPARE(modified.count(), 1);
        QVERIFY(chart.IsUndoPossible());
        chart.Undo();
        QCOMPARE(chart.xAxis->range().lower, kT0 + 100);
        QCOMPARE(chart.yAxis->range().lower, -5.0);
        QVERIFY(!db.Axis_Get(axLeft).Auto);
        QVERIFY(!chart.IsUndoPossible());
    }

    void storeRangesApplyOnRebuild() {
        TDataBase db;
        FillTwo(db);
        TAxisState& left = db.Axis_Get(axLeft);
        left.Auto = false;
        left.Min = -10;
        left.Max = 40;
        TZebChart chart(&db);
        QCOMPARE(chart.yAxis->range(), QCPRange(-10, 40));
        QVERIFY(!chart.Zoom()->IsAuto(TZoomAndScroll::zaLeft));
        QVERIFY(chart.Zoom()->IsAuto(TZoomAndScroll::zaBottom));
        QCOMPARE(chart.xAxis->range(), QCPRange(kT0, kT0 + 999));
    }

    void timeAxisLabels_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("format");
        QTest::addColumn<double>("offset"); // from the recording's first time
        QTest::addColumn<double>("step");
        QTest::addColumn<QString>("expected");
        QTest::newRow("seconds from 0") << 0 << QString() << 90.0 << 30.0 << u"90"_s;
        QTest::newRow("seconds, fractions") << 0 << QString() << 1.5 << 0.5 << u"1.5"_s;
        QTest::newRow("time from 0") << 1 << QString() << 3690.0 << 30.0 << u"01:01:30"_s;
        QTest::newRow("time from 0, pattern") << 1 << u"000:00.000"_s << 90.25 << 0.25 << u"001:30.250"_s;
        QTest::newRow("time from 0, days") << 1 << u"0+00:00:00"_s << 90000.0 << 3600.0 << u"1+01:00:00"_s;
        QTest::newRow("date and time") << 2 << QString() << 0.0 << 600.0 << u"01-Jan-2024\n00:00:00"_s;
        QTest::newRow("date and time, pattern")
            << 2 << u"dd.mm.yy hh:mm"_s << 61.0 << 60.0 << u"01.01.24 00:01"_s;
    }

    void timeAxisLabels() {
        QFETCH(int, type);
        QFETCH(QString, format);
        QFETCH(double, offset);
        QFETCH(double, step);
        QFETCH(QString, expected);
        TDataBase db;
        TFill f{db};
        const double start = 8766.0 * zeb::kSecondsPerDay; // 2024-01-01 00:00
        f.r.AddCurve(QStringLiteral("A"));
        std::vector<double> t{start, start + 7200.0}, v{1.0, 2.0};
        f.r.AddPoints(0, t, v, std::vector<TPointKind>(2, TPointKind::Value));
        db.Axis_Get(axBottom).XType = TTimeAxisType(type);
        db.Axis_Get(axBottom).Format = format;
        TZebChart chart(&db);
        QCOMPARE(chart.TimeOrigin(), start);
        QCOMPARE(chart.TimeAxisLabel(start + offset, step), expected);
        // The axis itself shows these labels.
        chart.resize(800, 400);
        chart.replot();
        QVERIFY(!chart.xAxis->tickVectorLabels().isEmpty());
        if (type == 0) QCOMPARE(chart.xAxis->tickVectorLabels().first(), u"0"_s);
    }

    void relativeTimeTexts_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("expected");
        QTest::newRow("days to milliseconds") << 93723.5 << u"0+00:00:00.000"_s << u"1+02:02:03.500"_s;
        QTest::newRow("hours unbounded") << 93723.5 << u"000:00:00.000"_s << u"026:02:03.500"_s;
        QTest::newRow("minutes unbounded") << 3723.5 << u"000:00.000"_s << u"062:03.500"_s;
        QTest::newRow("whole seconds") << 3723.9 << u"000:00:00"_s << u"001:02:03"_s;
        QTest::newRow("minutes and seconds") << 3723.0 << u"000:00"_s << u"062:03"_s;
        QTest::newRow("days and minutes") << 93723.0 << u"0+00:00"_s << u"1+02:02"_s;
        QTest::newRow("days and hours") << 93723.0 << u"0+00"_s << u"1+02"_s;
        QTest::newRow("negative") << -61.5 << u"00:00:00.000"_s << u"-00:01:01.500"_s;
        QTest::newRow("zero") << 0.0 << u"0+00:00:00"_s << u"0+00:00:00"_s;
    }

    void relativeTimeTexts() {
        QFETCH(double, seconds);
        QFETCH(QString, pattern);
        QFETCH(QString, expected);
        QVERIFY(ChartText::IsRelativePattern(pattern));
        QCOMPARE(ChartText::RelativeTime(seconds, pattern), expected);
    }

    void durationsAndDatePatterns() {
        QCOMPARE(ChartText::Duration(65.25), u"00:01:05.250"_s);
        QCOMPARE(ChartText::Duration(-65.25), u"-00:01:05.250"_s);
        QCOMPARE(ChartText::Duration(90061.0), u"1+01:01:01.000"_s);
        QCOMPARE(ChartText::DatePattern(u"dd.mm.yy hh:mm:ss"_s), u"dd.MM.yy hh:mm:ss"_s);
        QCOMPARE(ChartText::DatePattern(u"dd.mm hh:mm"_s), u"dd.MM hh:mm"_s);
        QCOMPARE(ChartText::DatePattern(u"dd hh:mm:ss"_s), u"dd hh:mm:ss"_s);
        QCOMPARE(ChartText::DatePattern(u"yyyy-MM-dd HH:mm"_s), u"yyyy-MM-dd HH:mm"_s);
        QVERIFY(ChartText::IsDatePattern(u"dd.mm.yyyy hh:mm:ss.zzz"_s));
        QVERIFY(!ChartText::IsDatePattern(u"0.000"_s));
        QVERIFY(!ChartText::IsDatePattern(u"000:00.000"_s));
    }

    void titleAndInfoTexts() {
        TDataBase db;
        FillTwo(db);
        TStoreReceiver r(db);
        r.SetStartTime(8766.0);
        r.SetZebName(QStringLiteral("Store 3"));
        db.General_Get().Title = QStringLiteral("Cold store");
        db.General_Get().Foot = QStringLiteral("checked");
        TZebChart chart(&db);
        QCOMPARE(chart.TitleElement()->text(), QStringLiteral("Cold store"));
        QVERIFY(chart.TitleElement()->visible());
        auto texts = chart.findChildren<QCPTextElement*>();
        auto shown = [&](const QString& part) {
            for (QCPTextElement* t : texts)
                if (t->visible() && t->text().contains(part)) return true;
            return false;
        };
        QVERIFY(shown(QStringLiteral("Store 3")));
        QVERIFY(shown(QStringLiteral("checked")));
        QVERIFY(shown(zeb::FormatTime(zeb::TTimeKind::DateTime, 8766.0 * zeb::kSecondsPerDay)));
        db.General_Get().ShowName = false;
        db.General_Get().ShowTime = false;
        db.General_Get().Title.clear();
        chart.Rebuild();
        QVERIFY(!shown(QStringLiteral("Store 3")));
        QVERIFY(!chart.TitleElement()->visible());
    }

    // The store tells the chart when samples go and when new ones are complete.
    void samplesReleasedAndReplaced() {
        TDataBase db;
        FillTwo(db);
        TZebChart chart(&db);
        chart.resize(800, 400);
        chart.replot();
        QVERIFY(chart.CurvePlottable(0)->LastDrawnPoints() > 0);
        // A new file throws the samples away before the chart is rebuilt: the old curves
        // must not touch them.
        TCurvePlottable* stale = chart.CurvePlottable(0);
        db.AddFile(QStringLiteral("other.zeb"));
        QCOMPARE(stale->LastDrawnPoints(), 0);
        TFill{db}.Curve(QStringLiteral("X"), QStringLiteral("New"), QString(), 1, 5, Ramp);
        chart.replot();
        QCOMPARE(stale->LastDrawnPoints(), 0);
        bool found = true;
        stale->getValueRange(found);
        QVERIFY(!found);
        QSignalSpy rebuilt(&chart, &TZebChart::rebuilt);
        db.FinishLoad();
        QCOMPARE(rebuilt.count(), 1);
        QCOMPARE(chart.legend->itemCount(), 1);
        QVERIFY(chart.CurvePlottable(0)->LastDrawnPoints() > 0);
    }
};

QTEST_MAIN(TstZebChart)
#include "tst_zebchart.moc"
