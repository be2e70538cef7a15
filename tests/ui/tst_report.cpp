// The report as a reader of its PDF sees it: each curve's figures as the calculation and limit
// views show them, the times of extremes and violations on a signal with known crossings, the
// mean kinetic temperature, notices, page numbers, lines to sign, and the language.

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "DialogHelpers.h"
#include "PdfWords.h"
#include "store/DataBase.h"
#include "ui/ChartTexts.h"
#include "ui/CrossHair.h"
#include "ui/Report.h"
#include "ui/ReportDlg.h"
#include "ui/ViewCalc.h"
#include "ui/ViewLimit.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPdfWriter>
#include <QPrintPreviewWidget>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>

using namespace zeb;
using namespace Qt::StringLiterals;

namespace {

constexpr double kT0 = 7.6e8; // seconds since 2000, a minute per point below
constexpr int kPoints = 1000;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The time of point i.
double At(int i) {
    return kT0 + 60.0 * i;
}

// Three curves as the loader leaves them: a temperature swinging 12..28 °C with a period of
// 240 points and an alarm above 25 °C; a pressure with a band of limits; a hidden curve.
void Fill(TDataBase& db, const QString& file) {
    db.AddFile(file);
    TStoreReceiver r(db);
    r.SetCreator(u"QA lab"_s);
    r.SetStartTime(kT0 / kSecondsPerDay);
    r.SetZebName(u"Cold room 3"_s);
    const QString names[3] = {u"Temp"_s, u"Pressure"_s, u"Hidden"_s};
    const QString units[3] = {u"°C"_s, u"hPa"_s, u"V"_s};
    for (int c = 0; c < 3; ++c) {
        r.AddCurve(u"M%1"_s.arg(c));
        r.SetChannelName(c, names[c]);
        r.SetUnit(c, units[c]);
        r.SetLoggerName(c, u"Logger A"_s);
    }
    r.LoggerNamesDone();
    r.SetLimits(0, 2, 0, 25.0, 0.0);
    r.SetLimits(1, 4, 0, 1000.0, 1020.0);
    std::vector<double> t, v[3];
    for (int i = 0; i < kPoints; ++i) {
        t.push_back(At(i));
        v[0].push_back(20.0 + 8.0 * std::sin(2.0 * M_PI * i / 240.0));
        v[1].push_back(1010.0 + 15.0 * std::cos(2.0 * M_PI * i / 333.0));
        v[2].push_back(i);
    }
    const std::vector<TPointKind> kinds(kPoints, TPointKind::Value);
    for (int c = 0; c < 3; ++c)
        r.AddPoints(c, t, v[c], kinds);
    db.Curve_FormatSet(0, u"0.000"_s);
    db.Curve_FormatSet(1, u"0.0"_s);
    db.Curve_SetActive(2, false);
    // The chart shows points 10 to 900.
    db.Axis_Get(axBottom).Auto = false;
    db.Axis_Get(axBottom).Min = At(10);
    db.Axis_Get(axBottom).Max = At(900);
    TMseTimeText& n1 = db.Settings().TimeTexts.Add();
    n1.Text.Set(u"Door opened"_s);
    n1.X.Set(At(500));
    TMseTimeText& n0 = db.Settings().TimeTexts.Add();
    n0.Text.Set(u"Defrost started"_s);
    n0.X.Set(At(100));
    // Beyond the reported range: in neither the chart nor the table.
    TMseTimeText& late = db.Settings().TimeTexts.Add();
    late.Text.Set(u"Compressor serviced"_s);
    late.X.Set(At(950));
}

// The lines from the one holding `from` up to the next holding any of `until`.
QStringList Section(const QString& text, const QString& from, const QStringList& until) {
    QStringList out;
    bool in = false;
    for (const QString& line : text.split(u'\n')) {
        if (in && std::any_of(until.begin(), until.end(), [&](const QString& u) { return line.contains(u); }))
            break;
        if (line.contains(from)) in = true;
        if (in) out << line;
    }
    return out;
}

// The line of a section that begins with the label.
QString Row(const QStringList& section, const QString& label) {
    for (const QString& line : section)
        if (line.trimmed().startsWith(label)) return line;
    return {};
}

} // namespace

class TstReport : public QObject {
    Q_OBJECT

    QTemporaryDir FTmp;

    // The report's PDF and its text.
    QString Make(const TDataBase& db, QCustomPlot* chart, const QString& name, TReportOptions options = {}) {
        const QString pdf = FTmp.filePath(name);
        if (!WriteReportPdf(db, chart, pdf, options)) return {};
        return PdfText(pdf);
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty()) QSKIP("pdftotext is not installed");
        QVERIFY(FTmp.isValid());
        qputenv("ZEB_SETTINGS_FILE", FTmp.filePath(u"settings.ini"_s).toLocal8Bit());
        SetFormats(2);
        TZebDlg::SetNativeDialogs(false);
        ZebSettings().ValReportFirma = u"Velmorant Test GmbH"_s;
    }
    void init() { SwitchTexts(LangEnglish); }

    // Every figure of every shown curve, with the views' own texts for the same span.
    void figuresAsTheViewsShowThem() {
        TDataBase db;
        Fill(db, FTmp.filePath(u"cold room.zeb"_s));
        TZebChart chart(&db);
        chart.resize(1000, 560);
        chart.Rebuild();
        TfrmViewCalc calc(&db);
        TfrmViewLimit limit(&db);
        calc.SetActive();
        limit.SetActive();
        calc.ReCalc();
        limit.ReCalc();
        const QString all = Make(db, &chart, u"figures.pdf"_s);
        QVERIFY(!all.isEmpty());
        // The chart comes first, drawn as vectors: its texts are texts of the PDF.
        const qsizetype channels = all.indexOf(u"Channels"_s);
        QVERIFY(all.left(channels).contains(u"Start time :"_s));
        QVERIFY(all.left(channels).contains(u"Pressure [hPa]"_s));
        const QString text = all.mid(channels);

        const QStringList names = {db.Curve_NameUnitGet(0), db.Curve_NameUnitGet(1), u"Notices"_s};
        for (int i = 0; i < 2; ++i) {
            // The views list the shown curves 0 and 1; their figures are the report's too.
            const TCurveFigures& shown = calc.Figures()[size_t(i)].Figures;
            const TLimitTimes& times = limit.Figures()[size_t(i)].Figures.Times;
            QVERIFY(shown.Stats.CalcCount() == 2 && times.Valid);
            const QString format = db.Curve_FormatGet(i);
            const QStringList s = Section(text, names[i], names);
            QVERIFY2(!s.isEmpty(), qPrintable(names[i]));
            QVERIFY(Row(s, u"Minimum"_s).contains(FigureText::Value(shown.Stats.Min, format)));
            QVERIFY(Row(s, u"Maximum"_s).contains(FigureText::Value(shown.Stats.Max, format)));
            QVERIFY(Row(s, u"Average"_s).contains(FigureText::Value(shown.Stats.Average, format)));
            QVERIFY(Row(s, u"Standard deviation"_s).contains(FigureText::StdDev(shown.Stats.StdDev)));
            QVERIFY(Row(s, u"Span"_s).contains(FigureText::Value(shown.Stats.Max - shown.Stats.Min, format)));
            // The view's times, read as days and hours.
            QVERIFY(Row(s, u"Out of limits time"_s).contains(DayDurationText(times.Out)));
            QVERIFY(Row(s, u"Within limits time"_s).contains(DayDurationText(times.In)));
        }
        // The temperature over points 10..900: extremes first at 180 (12 °C) and 60 (28 °C),
        // above 25 °C from point 26 on, once in each of four periods; the mean kinetic
        // temperature of its values worked out by hand.
        const QStringList temp = Section(text, names[0], names);
        QVERIFY(Row(temp, u"Minimum"_s).contains(u"12.000"_s + u' ') &&
                Row(temp, u"Minimum"_s).contains(TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, At(180))));
        QVERIFY(Row(temp, u"Maximum"_s).contains(TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, At(60))));
        QVERIFY(Row(temp, u"Limits"_s).contains(u"alarm above L1 = 25.000"_s));
        const QString violations = Row(temp, u"Limit violations"_s);
        QVERIFY2(violations.contains(u" 4 "_s) && violations.contains(TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, At(26))),
                 qPrintable(violations));
        QVERIFY(Row(temp, u"Mean kinetic temperature (ΔH = 83.144 kJ/mol)"_s).contains(u"21.970"_s));
        // Only temperatures have one; the pressure's band is named with its format.
        QCOMPARE(text.count(u"Mean kinetic temperature"_s), 1);
        QVERIFY(Row(Section(text, names[1], names), u"Limits"_s)
                    .contains(u"alarm below L1 = 1000.0 hPa or above L2 = 1020.0 hPa"_s));
        QVERIFY(!text.contains(u"Hidden"_s));

        // The header, the notices in time order, the lines to sign.
        QVERIFY(all.contains(u"Velmorant Test GmbH"_s));
        for (const char* s : {"QA lab", "Cold room 3", "Logger A", "cold room.zeb", "Checked by", "Date"})
            QVERIFY2(all.contains(QLatin1String(s)), s);
        QVERIFY(all.contains(TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, At(10)) + u" – "_s +
                             TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, At(900))));
        // The notices of the range only, numbered in time order as on the chart.
        const QStringList notices = Section(text, u"Notices"_s, {});
        const QString defrost = Row(notices, u"1 "_s);
        QVERIFY2(defrost.contains(u"Defrost started"_s) && defrost.contains(TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, At(100))),
                 qPrintable(defrost));
        QVERIFY(Row(notices, u"2 "_s).contains(u"Door opened"_s));
        QVERIFY(!all.contains(u"Compressor serviced"_s));
        QVERIFY(text.lastIndexOf(u"Checked by"_s) > text.lastIndexOf(u"Door opened"_s));

        // A printer that keeps a resolution of its own gets the same pages, the chart as a
        // picture.
        {
            const QString pdf = FTmp.filePath(u"printer.pdf"_s);
            QPdfWriter printer(pdf);
            printer.setPageSize(QPageSize(QPageSize::A4));
            printer.setPageMargins({});
            printer.setResolution(600);
            QVERIFY(TReport(db, &chart).Print(printer));
        }
        const QString printed = PdfText(FTmp.filePath(u"printer.pdf"_s));
        QVERIFY(!printed.contains(u"Start time :"_s));
        QCOMPARE(printed.count(u'\f'), all.count(u'\f'));
        QStringList printedLines;
        for (const QString& line : printed.split(u'\n'))
            printedLines << line.simplified();
        for (const QString& line : text.split(u'\n'))
            QVERIFY2(line.contains(u'\f') || printedLines.contains(line.simplified()), qPrintable(line));

        // Each page numbered, out of the number of pages.
        const QStringList pages = all.split(u'\f', Qt::SkipEmptyParts);
        QVERIFY(pages.size() >= 2);
        for (int p = 0; p < pages.size(); ++p)
            QVERIFY2(pages[p].contains(u"Page %1 of %2"_s.arg(p + 1).arg(pages.size())),
                     qPrintable(pages[p]));
    }

    // What a signer reads: each value with its unit, the values and their interval, infinite
    // values counted and left out, durations in days, a long name wrapped inside its cell.
    void figuresASignerCanRead() {
        TDataBase db;
        const QString name = FTmp.filePath(u"Shipment 2024-03 from the central warehouse to the "
                                           u"customer's cold room number three, pallet seven.zeb"_s);
        Fill(db, name);
        // Two infinite temperatures inside the range, the highest and lowest of all.
        TCurveData& temp = db.Data(0);
        TCurveData changed;
        for (qint64 i = 0; i < temp.Count(); ++i)
            changed.Append(temp.Time(i), i == 300 ? kInfinity : i == 400 ? -kInfinity : temp.Value(i));
        temp = std::move(changed);
        const QString pdf = FTmp.filePath(u"signer.pdf"_s);
        QVERIFY(WriteReportPdf(db, nullptr, pdf));
        const QString text = PdfText(pdf);
        const QStringList names = {db.Curve_NameUnitGet(0), db.Curve_NameUnitGet(1), u"Notices"_s};
        const QStringList t = Section(text, names[0], names);
        QVERIFY2(Row(t, u"Values"_s).contains(u"891 (every 60 s)"_s), qPrintable(Row(t, u"Values"_s)));
        QVERIFY2(Row(t, u"Infinite values: 2,"_s).contains(u"left out of minimum"_s), qPrintable(t.join(u'\n')));
        QVERIFY(Row(t, u"Minimum"_s).contains(u"12.000 °C"_s));
        QVERIFY(Row(t, u"Maximum"_s).contains(u"28.000 °C"_s));
        QVERIFY(Row(t, u"Average"_s).contains(u" °C"_s));
        QVERIFY(Row(t, u"Mean kinetic temperature"_s).contains(u" °C"_s));
        QVERIFY(Row(t, u"Out of limits time"_s).contains(u"0 d "_s));
        QVERIFY(Row(Section(text, names[1], names), u"Span"_s).contains(u" hPa"_s));
        QVERIFY(!text.contains(u"INF"_s) && !text.contains(u"NAN"_s));
        // The range heading the report reads in days too.
        QVERIFY(text.contains(u"(0 d 14:50:00)"_s));

        // Every word of the name inside the page's right margin (15 mm of 210).
        const std::vector<TPdfWord> words = PdfWords(pdf);
        int found = 0;
        for (const TPdfWord& w : words)
            if (w.Page == 1 && (w.Text.contains(u"warehouse"_s) || w.Text.contains(u"pallet"_s))) {
                ++found;
                QVERIFY2(w.Box.right() <= w.PageSize.width() * (1.0 - 15.0 / 210.0), qPrintable(w.Text));
            }
        QVERIFY(found >= 2); // in the header's cell, and in the running footer

        // The same in German: days as "T".
        SwitchTexts(LangGerman);
        QVERIFY(WriteReportPdf(db, nullptr, pdf));
        QVERIFY(PdfText(pdf).contains(u"(0 T 14:50:00)"_s));
    }

    // The report's chart: no crosshairs, the range's notices as numbers; as it was afterwards.
    void chartAsADocumentShowsIt() {
        TDataBase db;
        Fill(db, FTmp.filePath(u"look.zeb"_s));
        TZebChart chart(&db);
        chart.resize(1000, 560);
        chart.Rebuild();
        chart.CrossHair()->SetCursor(0, 0);
        chart.Texts()->SetNoticesShown(false);
        chart.replot();
        const QImage before = chart.toPixmap(1000, 560).toImage();
        {
            const TDocumentLook look(&chart);
            QVERIFY(!chart.CrossHair()->Tracer(0)->layer()->visible());
            // Notices 1 (index 1, at point 100) and 2 (index 0, at 500); the late one hidden.
            QVERIFY(chart.Texts()->NoticeItem(1)->visible() && chart.Texts()->NoticeItem(0)->visible());
            QCOMPARE(chart.Texts()->NoticeItem(1)->text(), u"1"_s);
            QCOMPARE(chart.Texts()->NoticeItem(0)->text(), u"2"_s);
            QVERIFY(!chart.Texts()->NoticeItem(2)->visible());
        }
        QVERIFY(chart.CrossHair()->Tracer(0)->layer()->visible());
        QVERIFY(!chart.Texts()->NoticeItem(0)->visible());
        QCOMPARE(chart.Texts()->NoticeItem(0)->text(), u"Door opened"_s);
        QCOMPARE(chart.toPixmap(1000, 560).toImage(), before);
    }

    // The energy is the report's setting; German texts in a German run.
    void activationEnergyAndLanguage() {
        TDataBase db;
        Fill(db, FTmp.filePath(u"cold room.zeb"_s));
        TReportOptions options;
        options.ActivationEnergy = 2.0 * kMktActivationEnergy;
        QString text = Make(db, nullptr, u"energy.pdf"_s, options);
        QVERIFY(text.contains(u"(ΔH = 166.288 kJ/mol)"_s));
        QVERIFY(!text.contains(u"21.970"_s)); // a higher energy weighs the warm values more

        SwitchTexts(LangGerman);
        text = Make(db, nullptr, u"deutsch.pdf"_s);
        for (const char* s :
             {"Messbericht", "Mittelwert", "Standardabweichung", "Zeit außerhalb der Grenzwerte",
              "Grenzwertverletzungen", "Seite 1 von 1", "Geprüft von", "Datum", "Notizen"})
            QVERIFY2(text.contains(QString::fromUtf8(s)), s);
        QVERIFY(!text.contains(u"Average"_s));
    }

    // The form previews every page, saves the PDF under the name asked for, and reports a file
    // that cannot be written.
    void previewAndSave() {
        TDataBase db;
        Fill(db, FTmp.filePath(u"cold room.zeb"_s));
        TfrmReport form(db, nullptr);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QTRY_VERIFY(form.Preview()->pageCount() > 0);
        QCOMPARE(form.Preview()->pageCount(), form.Report().PageCount());

        // The activation energy typed in the form makes the report anew and is kept.
        auto* energy = form.findChild<QDoubleSpinBox*>(u"osfReportActivationEnergy"_s);
        QVERIFY(energy);
        QCOMPARE(energy->value(), kMktActivationEnergy);
        const QString usual = form.Report().Curves()[0].Mkt;
        Retype(energy, u"100"_s);
        QTest::keyClick(energy, Qt::Key_Return);
        QCOMPARE(ZebSettings().MktActivationEnergy, 100.0);
        QVERIFY(!form.Report().Curves()[0].Mkt.isEmpty() && form.Report().Curves()[0].Mkt != usual);
        ZebSettings().MktActivationEnergy = kMktActivationEnergy;

        const QString target = FTmp.filePath(u"saved.pdf"_s);
        QString proposed;
        TZebDlg::SetDialogHook([&](QDialog* d) {
            auto* fd = qobject_cast<QFileDialog*>(d);
            if (!fd) return d->reject();
            proposed = fd->selectedFiles().value(0);
            fd->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(target);
            d->accept();
        });
        form.GUI_ReportSavePdf();
        QCOMPARE(QFileInfo(proposed).fileName(), u"cold room.pdf"_s);
        QVERIFY(PdfText(target).contains(u"Velmorant Test GmbH"_s));

        bool told = false;
        TZebDlg::SetDialogHook([&](QDialog* d) {
            told = true;
            d->reject();
        });
        QVERIFY(!form.SavePdf(FTmp.filePath(u"no such folder/x.pdf"_s)));
        QVERIFY(told);
        TZebDlg::SetDialogHook(nullptr);
    }
};

QTEST_MAIN(TstReport)
#include "tst_report.moc"
