// The analyses in the real window offscreen: the calculation and limit views following the
// chart, their texts and counters, the integration and flow dialog, the additional flow
// channel, and zebtool analyse agreeing with what the views show.

#include "analysis/Analysis.h"
#include "analysis/CalcKessa.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "MainFixture.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/CalcDlg.h"
#include "ui/CalcKessaDlg.h"
#include "ui/CfgPage.h"
#include "ui/CrossHair.h"
#include "ui/Main.h"
#include "ui/ValidateEdit.h"
#include "ui/ViewCalc.h"
#include "ui/ViewLimit.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace zeb;
using namespace Qt::StringLiterals;

namespace {

QString Cell(const TfrmViewBase& v, int row, int column) {
    const QTableWidgetItem* item = v.List()->item(row, column);
    return item ? item->text() : QString();
}

// A store of one curve with n points a second apart, as the loader leaves it.
void FillOne(TDataBase& db, const QString& unit, int n, double (*value)(int)) {
    AddSampledCurve(db, u"M1"_s, n, 7.6e8, 1, value);
    TStoreReceiver r(db);
    r.SetChannelName(0, u"Flow"_s);
    r.SetUnit(0, unit);
    db.Curve_FormatSet(0, u"0.000"_s);
    db.Axis_Get(axBottom).Min = 7.6e8;
    db.Axis_Get(axBottom).Max = 7.6e8 + n - 1;
}

} // namespace

class TstAnalysisViews : public QObject {
    Q_OBJECT

    QTemporaryDir FTmp;
    QString FFile;

    std::unique_ptr<TForm1> Open() const { return OpenShown(FFile); }

    // What zebtool analyse prints for the recording, over the whole of it or a span; empty on
    // failure.
    QJsonObject Analyse(std::optional<double> from = {}, std::optional<double> to = {}) const {
        QStringList args{u"analyse"_s};
        if (from) args << u"--from"_s << QString::number(*from, 'g', 17) << u"--to"_s << QString::number(*to, 'g', 17);
        QProcess p;
        p.start(QStringLiteral(ZEBTOOL), args << FFile);
        p.waitForFinished(60000);
        return p.exitCode() == 0 ? QJsonDocument::fromJson(p.readAllStandardOutput()).object() : QJsonObject();
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FTmp.isValid());
        UseTestEnvironment(FTmp);
        TZebDlg::SetDialogHook([](QDialog* dlg) { dlg->reject(); });
        FFile = FTmp.filePath(u"analyses.zeb"_s);
        QVERIFY(MakeRecording(FFile, {.seed = 4, .channels = 4, .records = 30000, .gapRate = kSomeGaps}));
    }
    void init() {
        ZebSettings() = TZebSettings();
        QFile::remove(TForm1::SettingsFileOf(FFile));
    }

    // Shown from the Graph menu, the views list every active curve over the span the chart
    // shows, and follow a zoom; nothing changed, nothing is computed.
    void viewsFollowTheChart() {
        auto f = Open();
        QVERIFY(f);
        TfrmViewCalc& calc = *f->ViewCalc();
        TfrmViewLimit& limit = *f->ViewLimit();
        QVERIFY(!calc.IsActive());
        Action(*f, "menGraphFuncCalc")->trigger();
        Action(*f, "menGraphFuncLimit")->trigger();
        QVERIFY(calc.isVisible() && limit.isVisible());
        QVERIFY(f->DataBase()->General_Get().ViewCalc && f->DataBase()->General_Get().ViewLimit);
        QVERIFY(f->IsModified());
        TDataBase& db = *f->DataBase();
        QCOMPARE(calc.List()->rowCount(), 4 * db.Curve_Count());
        QCOMPARE(Cell(calc, 0, 0), db.Curve_NameUnitGet(0));
        QCOMPARE(Cell(calc, 0, 1), u"Minimum="_s);
        QCOMPARE(Cell(calc, 3, 1), u"STDEF="_s);
        QCOMPARE(Cell(limit, 1, 1), u"Within limits time="_s);
        QCOMPARE(calc.windowTitle(), u"Calculation"_s);

        // Zoomed in: the figures of the points on screen.
        const int before = calc.CalcCount();
        TZebChart& chart = *f->Chart();
        const QRect plot = chart.axisRect()->rect();
        QTest::mousePress(&chart, Qt::LeftButton, Qt::NoModifier, QPoint(plot.left() + 50, plot.top() - 5));
        QTest::mouseMove(&chart, plot.center());
        QTest::mouseRelease(&chart, Qt::LeftButton, Qt::NoModifier, QPoint(plot.left() + 200, plot.bottom() + 5));
        QCOMPARE(calc.CalcCount(), before + 1);
        const TAxisState& x = db.Axis_Get(axBottom);
        const TRangeStats st = RangeStats(db.Data(0), nullptr, VisibleRange(db.Data(0), x.Min, x.Max));
        QCOMPARE(Cell(calc, 0, 2), FormatFloat(db.Curve_FormatGet(0), st.Min));
        QCOMPARE(Cell(calc, 2, 2), FormatFloat(db.Curve_FormatGet(0), st.Average));
        QCOMPARE(Cell(calc, 3, 2), FormatFloat(u"0.00000E+00"_s, st.StdDev));
        // The figures the view shows are the view's own, not kept in the settings.
        QCOMPARE(calc.Figures().front().Curve, 0);
        QCOMPARE(calc.Figures().front().Figures.Stats.Max, st.Max);

        // Asked again without a change: counted, not computed.
        const int calls = calc.CallCount(), done = calc.CalcCount();
        calc.ReCalc();
        QCOMPARE(calc.CallCount(), calls + 1);
        QCOMPARE(calc.CalcCount(), done);
        // A curve switched off leaves the list.
        db.Curve_SetActive(0, false);
        chart.Rebuild();
        QCOMPARE(calc.List()->rowCount(), 4 * (db.Curve_Count() - 1));

        // Closing a window switches its view off.
        calc.close();
        QVERIFY(!calc.IsActive());
        QVERIFY(!db.General_Get().ViewCalc);
        // Another page hides the views; the chart brings them back.
        f->GUI_ViewTable();
        QVERIFY(!limit.isVisible());
        f->GUI_ViewGraph();
        QVERIFY(limit.isVisible());
    }

    // A saved ViewCalc brings the view back with the recording; Ctrl+C copies the rows.
    void shownFromTheTemplateAndCopied() {
        {
            auto f = Open();
            QVERIFY(f);
            Action(*f, "menGraphFuncCalc")->trigger();
            Action(*f, "menFileSave")->trigger();
        }
        auto f = Open();
        QVERIFY(f);
        TfrmViewCalc& calc = *f->ViewCalc();
        QVERIFY(calc.IsActive());
        QVERIFY(!f->ViewLimit()->IsActive());
        QVERIFY(calc.List()->rowCount() > 0);
        calc.List()->selectRow(1);
        calc.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&calc));
        QTest::keyClick(calc.List(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"\t"_s + Cell(calc, 1, 1) + u"\t"_s + Cell(calc, 1, 2));
    }

    // A number format changed on the configuration page shows in the views once the page is
    // left, without waiting for a zoom.
    void configurationReachesTheViews() {
        auto f = Open();
        QVERIFY(f);
        Action(*f, "menGraphFuncCalc")->trigger();
        TDataBase& db = *f->DataBase();
        const TAxisState& x = db.Axis_Get(axBottom);
        const TRangeStats st = RangeStats(db.Data(0), nullptr, VisibleRange(db.Data(0), x.Min, x.Max));
        QCOMPARE(Cell(*f->ViewCalc(), 0, 2), FormatFloat(db.Curve_FormatGet(0), st.Min));
        f->GUI_ViewCfg();
        f->CfgPage()->Enter(TCfgPage::tabCurve);
        QAbstractItemModel* m = f->CfgPage()->CurveTable()->model();
        QVERIFY(m->setData(m->index(0, TCfgPage::colFormat), u"0.0000"_s));
        f->GUI_ViewGraph();
        QCOMPARE(Cell(*f->ViewCalc(), 0, 2), FormatFloat(u"0.0000"_s, st.Min));
    }

    // zebtool analyse computes the same figures for the same span.
    void zebtoolAgrees() {
        auto f = Open();
        QVERIFY(f);
        Action(*f, "menGraphFuncCalc")->trigger();
        Action(*f, "menGraphFuncLimit")->trigger();
        TDataBase& db = *f->DataBase();
        const TAxisState& x = db.Axis_Get(axBottom);
        const QJsonArray curves = Analyse(x.Min, x.Max)[u"curves"_s].toArray();
        QCOMPARE(curves.size(), db.Curve_Count());
        int limitRow = 0;
        for (int c = 0; c < db.Curve_Count(); ++c) {
            const QJsonObject o = curves[c].toObject();
            const QString format = db.Curve_FormatGet(c);
            QCOMPARE(Cell(*f->ViewCalc(), 4 * c, 2), FormatFloat(format, o[u"min"_s].toDouble()));
            QCOMPARE(Cell(*f->ViewCalc(), 4 * c + 2, 2), FormatFloat(format, o[u"average"_s].toDouble()));
            if (o[u"limit_mode"_s].isNull()) continue;
            QCOMPARE(Cell(*f->ViewLimit(), limitRow, 2), DurationText(o[u"limit_out_s"_s].toDouble()));
            limitRow += 2;
        }
        QVERIFY(limitRow > 0);
    }

    // Bounds the wrong way round are the same range; a range beside the recording has no
    // integral, rather than one extrapolated from its first points.
    void zebtoolBounds() {
        const double first = Analyse()[u"from"_s].toDouble();
        QVERIFY(first > 0);
        const QJsonObject ordered = Analyse(first + 200, first + 900), reversed = Analyse(first + 900, first + 200);
        QVERIFY(!ordered.isEmpty());
        QCOMPARE(reversed, ordered);
        QVERIFY(ordered[u"curves"_s].toArray()[0].toObject()[u"points"_s].toInt() > 0);
        for (const QJsonObject& beside : {Analyse(first - 5000, first - 1000), Analyse(first + 1e9, first + 2e9)}) {
            QVERIFY(!beside[u"curves"_s].toArray().isEmpty());
            for (const QJsonValue c : beside[u"curves"_s].toArray()) {
                QCOMPARE(c.toObject()[u"points"_s].toInt(), 0);
                QVERIFY(c.toObject()[u"integral"_s].isNull());
            }
        }
    }

    void integrationDialog_data() {
        QTest::addColumn<bool>("flow");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("line1");
        QTest::addColumn<QString>("line2");
        // 60 l/min for 60 s.
        QTest::newRow("flow") << true << u"l/min"_s << u"60.000 l"_s << u"(6.00000E+01 l)"_s;
        QTest::newRow("integral") << false << u"bar"_s << u"3600.000 bar * s"_s << u"(3.60000E+03 bar * s)"_s;
    }
    void integrationDialog() {
        QFETCH(bool, flow);
        QFETCH(QString, unit);
        QFETCH(QString, line1);
        QFETCH(QString, line2);
        TDataBase db;
        FillOne(db, unit, 61, [](int) { return 60.0; });
        TfrmCalcDlg dlg;
        QVERIFY(dlg.Execute(&db, nullptr, flow, false));
        QCOMPARE(dlg.windowTitle(), Txt(flow ? TTextId::CalcDlgFlow : TTextId::CalcDlgIntegration));
        QCOMPARE(dlg.CurveList()->count(), 1);
        QTest::mouseClick(dlg.findChild<QPushButton*>(u"Button1"_s), Qt::LeftButton);
        QCOMPARE(dlg.ResultText(0), line1);
        QCOMPARE(dlg.ResultText(1), line2);
        // No flow curve: nothing to offer, no dialog.
        TDataBase other;
        FillOne(other, u"bar"_s, 10, [](int) { return 1.0; });
        TfrmCalcDlg none;
        QVERIFY(!none.Execute(&other, nullptr, true, false));
        QVERIFY(!none.isVisible());
    }

    // The crosshairs bound the integral where they stand on the left axis; reversed, they swap.
    void integrationBoundsFromCrosshairs() {
        TDataBase db;
        FillOne(db, u"l/min"_s, 101, [](int i) { return double(i); });
        db.Curve_AxisSet(0, axLeft);
        TZebChart chart(&db);
        chart.resize(800, 500);
        chart.replot();
        TCrossHair& ch = *chart.CrossHair();
        ch.SetCursor(0, 0);
        ch.SetCursor(1, 0);
        ch.MoveTo(0, 7.6e8 + 80);
        ch.MoveTo(1, 7.6e8 + 20);
        TfrmCalcDlg dlg;
        QVERIFY(dlg.Execute(&db, &ch, false, false));
        QCOMPARE(dlg.XMin(), 7.6e8 + 20);
        QCOMPARE(dlg.XMax(), 7.6e8 + 80);
        const QString begin = dlg.findChild<QLabel*>(u"lblBeginValue"_s)->text();
        QVERIFY2(begin.endsWith(Txt(TTextId::CalcDlgFromCursor) + u")"_s), qPrintable(begin));
        dlg.Button1Click();
        QCOMPARE(dlg.Result().value_or(-1.0), (80.0 * 80.0 - 20.0 * 20.0) / 2.0);
        ch.SetCursor(1, -1);
        QVERIFY(dlg.Execute(&db, &ch, false, false));
        QCOMPARE(dlg.XMax(), db.Axis_Get(axBottom).Max);
        QVERIFY(dlg.findChild<QLabel*>(u"lblEndValue"_s)->text().endsWith(Txt(TTextId::CalcDlgFromAxis) + u")"_s));
        // A time axis wholly before the curve: no point, so no figure at all.
        ch.SetCursor(0, -1);
        db.Axis_Get(axBottom).Min = 7.6e8 - 500;
        db.Axis_Get(axBottom).Max = 7.6e8 - 100;
        QVERIFY(dlg.Execute(&db, &ch, false, false));
        dlg.Button1Click();
        QVERIFY(!dlg.Result());
        QCOMPARE(dlg.ResultText(0), QString());
        QCOMPARE(dlg.ResultText(1), QString());
    }

    // The additional flow channel: its dialog fills the settings, the chart draws it, the
    // calculation view fills its texts.
    void additionalFlowChannel() {
        auto f = Open();
        QVERIFY(f);
        Action(*f, "menGraphFuncCalc")->trigger();
        TfrmCalcKessaDlg dlg(f.get());
        dlg.Execute(f->DataBase(), false);
        dlg.findChild<QListWidget*>(u"ListBox1"_s)->setCurrentRow(1);
        dlg.findChild<QCheckBox*>(u"CheckBox1"_s)->setChecked(true);
        dlg.findChild<QLineEdit*>(u"Edit1"_s)->setText(u"Q"_s);
        dlg.findChild<QLineEdit*>(u"Edit2"_s)->setText(u"m3/h"_s);
        dlg.findChild<TValidateEdit*>(u"ValidateEdit1"_s)->setText(u"-0.5"_s);
        dlg.findChild<TValidateEdit*>(u"ValidateEdit2"_s)->setText(u"1"_s);
        const int computed = f->ViewCalc()->CalcCount();
        QSignalSpy rebuilt(f->Chart(), &TZebChart::rebuilt);
        dlg.Button1Click();
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
        const TZebSettings& s = ZebSettings();
        QVERIFY(s.CustomApp0_Active);
        QCOMPARE(s.CustomApp0_Curve, 1);
        QCOMPARE(s.CustomApp0_Name, u"Q"_s);
        QCOMPARE(s.CustomApp0_Mul, -0.5);
        QCOMPARE(s.CustomApp0_Add, 1.0);

        // The store tells of the new settings: drawn and computed anew once, although the
        // chart shows the same span.
        QCOMPARE(rebuilt.count(), 1);
        QCOMPARE(f->ViewCalc()->CalcCount(), computed + 1);
        TCurvePlottable* derived = f->Chart()->DerivedPlottable();
        QVERIFY(derived);
        QCOMPARE(derived->name(), u"Q [m3/h]"_s);
        const auto& shown = f->ViewCalc()->Figures();
        const auto it = std::find_if(shown.begin(), shown.end(), [](const auto& e) { return e.Curve == 1; });
        QVERIFY(it != shown.end());
        const TRangeStats& ref = it->Figures.Stats;
        const QString format = f->DataBase()->Curve_FormatGet(1);
        // A negative factor makes the mapped minimum the larger value; kept so.
        const TCalcKessa& kessa = f->DataBase()->CalcKessa();
        QCOMPARE(kessa.MinText, FormatFloat(format, -0.5 * ref.Min + 1.0));
        QCOMPARE(kessa.MaxText, FormatFloat(format, -0.5 * ref.Max + 1.0));
        QCOMPARE(kessa.StdDevText, FigureText::StdDev(ref.StdDev));
        bool found = false;
        const QCPRange r = derived->getValueRange(found);
        QVERIFY(found);
        QCOMPARE(r.lower, -0.5 * ref.Max + 1.0);
        // Switched off, the chart no longer draws it.
        f->DataBase()->SetCalcKessa(false, 1, u"Q"_s, u"m3/h"_s, -0.5, 1.0);
        QVERIFY(!f->Chart()->DerivedPlottable());
    }
};

QTEST_MAIN(TstAnalysisViews)
#include "tst_analysisviews.moc"
