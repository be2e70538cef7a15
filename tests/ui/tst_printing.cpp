// Printing and exporting the chart: the rectangle the margins give on a printed PDF page, the
// crosshairs grey on paper and black again on screen, the print preview's controls writing
// the store's settings, and picture files of every kind at the requested size.

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "Files.h"
#include "MainFixture.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/CrossHair.h"
#include "ui/Main.h"
#include "ui/Printing.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QImageReader>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStandardPaths>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr double kT0 = 7.6e8;

void Fill(TDataBase& db) {
    AddSampledCurve(db, u"T1"_s, 300, kT0, 1, [](int i) { return 20.0 + 5.0 * std::sin(i / 20.0); });
    db.Curve_AxisSet(0, axLeft);
}

// The page as pdftoppm renders it at 36 dots an inch.
QImage Render(const QString& pdf, const QString& dir) {
    QProcess p;
    p.start(u"pdftoppm"_s, {u"-png"_s, u"-r"_s, u"36"_s, u"-singlefile"_s, pdf, dir + u"/page"_s});
    if (!p.waitForFinished(30000)) return {};
    return QImage(dir + u"/page.png"_s);
}

// The bounding box of the pixels near a colour.
QRect Extent(const QImage& image, QColor color) {
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (std::abs(c.red() - color.red()) + std::abs(c.green() - color.green()) + std::abs(c.blue() - color.blue()) < 40)
                box |= QRect(x, y, 1, 1);
        }
    return box;
}

} // namespace

class TstPrinting : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        zeb::SetFormats(2);
        zeb::SwitchTexts(zeb::LangEnglish);
    }

    // Right and bottom mirror left and top, one pixel further in, one more for a margin of 0.
    void rectangleArithmetic_data() {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("top");
        QTest::addColumn<int>("right");
        QTest::addColumn<int>("bottom");
        QTest::addColumn<QRect>("rect");
        QTest::newRow("none") << 0 << 0 << 0 << 0 << QRect(0, 0, 998, 498);
        QTest::newRow("10 and 30 print 10 on both sides") << 10 << 20 << 30 << 40 << QRect(100, 100, 799, 299);
        QTest::newRow("right 1") << 0 << 0 << 1 << 1 << QRect(0, 0, 999, 499);
        QTest::newRow("right 100") << 0 << 0 << 100 << 100 << QRect(0, 0, 999, 499);
        QTest::newRow("odd page") << 7 << 3 << 5 << 5 << QRect(69, 14, 860, 470);
    }
    void rectangleArithmetic() {
        QFETCH(int, left);
        QFETCH(int, top);
        QFETCH(int, right);
        QFETCH(int, bottom);
        QFETCH(QRect, rect);
        const int w = rect == QRect(69, 14, 860, 470) ? 999 : 1000;
        const int h = rect == QRect(69, 14, 860, 470) ? 499 : 500;
        QCOMPARE(PrintRect(w, h, {left, top, right, bottom}), rect);
    }

    // Printed to a PDF page: the chart (its background yellow here) fills exactly the
    // rectangle of the margins; the crosshairs print grey and are black again afterwards.
    void printedPage_data() {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("top");
        QTest::newRow("no margins") << 0 << 0;
        QTest::newRow("10 and 20") << 10 << 20;
        QTest::newRow("25 and 5") << 25 << 5;
    }
    void printedPage() {
        if (QStandardPaths::findExecutable(u"pdftoppm"_s).isEmpty()) QSKIP("pdftoppm is missing");
        QFETCH(int, left);
        QFETCH(int, top);
        TDataBase db;
        Fill(db);
        db.Look_Get().Background = 0x00FFFF; // yellow
        TZebChart chart(&db);
        chart.resize(800, 500);
        chart.show();
        chart.Rebuild();
        chart.CrossHair()->SetCursor(0, 0);
        chart.replot();
        QTemporaryDir dir;
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(u"page.pdf"_s));
        printer.setPageOrientation(QPageLayout::Landscape);
        printer.setPageMargins(QMarginsF(0, 0, 0, 0));
        TPrintState print;
        print.MarginLeft = left;
        print.MarginTop = top;
        print.MarginRight = 40;
        print.MarginBottom = 40;
        QVERIFY(PrintChart(printer, chart, print));
        QCOMPARE(printer.docName(), u"ZEB Print"_s);

        const QImage page = Render(dir.filePath(u"page.pdf"_s), dir.path());
        QVERIFY(!page.isNull());
        const QRect expected = PrintRect(page.width(), page.height(), {left, top, 40, 40});
        const QRect yellow = Extent(page, Qt::yellow);
        QVERIFY2(std::abs(yellow.left() - expected.left()) <= 1 && std::abs(yellow.top() - expected.top()) <= 1 &&
                     std::abs(yellow.right() - expected.right()) <= 2 && std::abs(yellow.bottom() - expected.bottom()) <= 2,
                 qPrintable(QStringLiteral("%1,%2 %3x%4 against %5,%6 %7x%8")
                                .arg(yellow.x()).arg(yellow.y()).arg(yellow.width()).arg(yellow.height())
                                .arg(expected.x()).arg(expected.y()).arg(expected.width()).arg(expected.height())));
        // The crosshair's vertical line: grey on paper, black on screen again. The line is dashed,
        // so the test looks along the plot's whole height at its column for a grey share of it.
        const int x = int(std::lround(chart.xAxis->coordToPixel(chart.CrossHair()->X(0))));
        const int px = expected.left() + x * expected.width() / chart.width();
        const QRect plot = chart.axisRect()->rect();
        const int plotTop = expected.top() + plot.top() * expected.height() / chart.height();
        const int height = plot.height() * expected.height() / chart.height();
        int greyRows = 0;
        for (int y = plotTop; y < plotTop + height; ++y) {
            bool grey = false;
            for (int dx = -2; dx <= 2; ++dx)
                grey = grey || Extent(page.copy(px + dx, y, 1, 1), QColor(128, 128, 128)).isValid();
            greyRows += grey;
        }
        QVERIFY2(greyRows > height / 3, qPrintable(QStringLiteral("%1 of %2 rows grey").arg(greyRows).arg(height)));
        QCOMPARE(chart.CrossHair()->Tracer(0)->pen().color(), QColor(Qt::black));
    }

    // The preview page: only "Back!" in the menu bar; its controls write the store's print
    // settings; the chart editor beside it changes the chart and the store at once.
    void previewAndEditorPages() {
        QTemporaryDir dir;
        UseTestEnvironment(dir);
        const QString file = dir.filePath(u"p.zeb"_s);
        QVERIFY(MakeRecording(file, {.channels = 2, .records = 500}));
        TForm1 f;
        f.resize(1100, 750);
        f.show();
        QVERIFY(Load(f, file));
        f.GUI_FilePrintPreview();
        QCOMPARE(f.WorkPage(), int(TForm1::pgPreview));
        auto visibleMenus = [&f] {
            QStringList names;
            for (QAction* a : f.menuBar()->actions())
                if (a->isVisible()) names << a->text();
            return names;
        };
        QCOMPARE(visibleMenus(), QStringList{u"Back!"_s});
        f.findChild<QRadioButton*>(u"rbnPortrait"_s)->click();
        QVERIFY(!f.DataBase()->Print_Get().Landscape);
        f.DataBase()->Print_Get().Proportional = true;
        f.findChild<QSpinBox*>(u"osfPrintMarginLeft"_s)->setValue(12);
        QCOMPARE(f.DataBase()->Print_Get().MarginLeft, 12);
        QVERIFY(!f.DataBase()->Print_Get().Proportional);
        f.findChild<QCheckBox*>(u"chkPrintProportional"_s)->click();
        QVERIFY(f.DataBase()->Print_Get().Proportional);
        QVERIFY(f.IsModified());
        f.GUI_Back();
        QCOMPARE(f.WorkPage(), int(TForm1::pgWork));
        QVERIFY(visibleMenus().contains(u"File"_s) && visibleMenus().contains(u"Graph"_s));

        f.GUI_GraphExtended();
        QCOMPARE(f.WorkPage(), int(TForm1::pgEditor));
        QVERIFY(f.Chart()->isVisible()); // beside the editor
        f.findChild<QComboBox*>(u"cbxGraphCurve"_s)->setCurrentIndex(1);
        f.findChild<QSpinBox*>(u"speGraphCurveWidth"_s)->setValue(4);
        QCOMPARE(f.DataBase()->Curve_WidthGet(1), 4);
        QCOMPARE(f.Chart()->CurvePlottable(1)->pen().width(), 4);
        f.findChild<QSpinBox*>(u"osfAxisFont"_s)->setValue(13);
        QCOMPARE(f.DataBase()->General_Get().FontAxes.Size, 13);
        QCOMPARE(f.Chart()->xAxis->tickLabelFont().pointSize(), 13);
        // The footer's own font and colour; the title keeps its own.
        f.findChild<QLineEdit*>(u"edtGraphFoot"_s)->setText(u"Checked"_s);
        f.DataBase()->General_Get().Foot = u"Checked"_s;
        f.findChild<QSpinBox*>(u"osfFootFont"_s)->setValue(15);
        QVERIFY(f.DataBase()->Look_Get().FootFontSet);
        QCOMPARE(f.DataBase()->Look_Get().FootFont.Size, 15);
        QVERIFY(f.DataBase()->General_Get().FontTitle.Size != 15);
        f.DataBase()->Look_Get().FootColor = 0x0000FF; // red, as the colour dialog would set it
        f.Chart()->Rebuild();
        auto* foot = qobject_cast<QCPTextElement*>(f.Chart()->plotLayout()->element(f.Chart()->plotLayout()->rowCount() - 1, 0));
        QVERIFY(foot && foot->text() == u"Checked"_s);
        QCOMPARE(foot->font().pointSize(), 15);
        QCOMPARE(foot->textColor(), QColor(Qt::red));
        // Grid lines of each axis in a style and width of their own.
        f.findChild<QComboBox*>(u"cbxGraphAxis"_s)->setCurrentIndex(1);
        f.findChild<QComboBox*>(u"cbxGridStyle"_s)->setCurrentIndex(1);
        f.findChild<QSpinBox*>(u"speGridWidth"_s)->setValue(3);
        QCOMPARE(f.Chart()->yAxis->grid()->pen().style(), Qt::DashLine);
        QCOMPARE(f.Chart()->yAxis->grid()->pen().width(), 3);
        QCOMPARE(f.Chart()->xAxis->grid()->pen().style(), Qt::DotLine);
        // The legend on each side: beside the plot, or above or below it.
        auto* position = f.findChild<QComboBox*>(u"cbxLegendPosition"_s);
        QCOMPARE(position->count(), 4);
        for (int k = 0; k < 4; ++k) {
            position->setCurrentIndex(k);
            f.Chart()->replot();
            const QRect plot = f.Chart()->axisRect()->outerRect(), legend = f.Chart()->legend->outerRect();
            const bool placed[] = {legend.left() >= plot.right(), legend.right() <= plot.left(),
                                   legend.bottom() <= plot.top(), legend.top() >= plot.bottom()};
            QVERIFY2(placed[k], qPrintable(QString::number(k)));
        }
        position->setCurrentIndex(0);
        f.findChild<QCheckBox*>(u"chkLegendVisible"_s)->setChecked(false);
        QVERIFY(!f.Chart()->legend->visible());
        f.findChild<QPushButton*>(u"btnGraphEditorOK"_s)->click();
        QCOMPARE(f.WorkPage(), int(TForm1::pgWork));
        QVERIFY(f.Chart()->isVisible());
        // Kept in the template, where it has a key.
        QCOMPARE(f.DataBase()->Settings().FontAxes.Size.Value, 13);

        // The print button prints with the printer's orientation, then takes the store's.
        QPrinter& printer = *f.Printer();
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(u"direct.pdf"_s));
        printer.setPageOrientation(QPageLayout::Landscape);
        f.GUI_FilePrintDirect();
        QVERIFY(QFileInfo(dir.filePath(u"direct.pdf"_s)).size() > 1000);
        QCOMPARE(printer.pageLayout().orientation(), QPageLayout::Portrait);

        // An orientation chosen in the page set-up reaches the store and the preview's buttons.
        f.GUI_FilePrintPreview();
        QVERIFY(f.findChild<QRadioButton*>(u"rbnPortrait"_s)->isChecked());
        bool chosen = false;
        std::function<void()> choose = [&] {
            auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            auto* landscape = dlg ? dlg->findChild<QRadioButton*>(u"landscape"_s) : nullptr;
            if (!landscape) {
                QTimer::singleShot(5, choose);
                return;
            }
            landscape->click();
            chosen = true;
            dlg->accept();
        };
        QTimer::singleShot(0, choose);
        f.findChild<QPushButton*>(u"btnPrintProperties"_s)->click();
        QVERIFY(chosen);
        QVERIFY(f.DataBase()->Print_Get().Landscape);
        QVERIFY(f.findChild<QRadioButton*>(u"rbnLandscape"_s)->isChecked());
        f.GUI_Back();
    }

    // The picture exports offer their file types in the user's language.
    void pictureFiltersInTheLanguage() {
        QTemporaryDir dir;
        UseTestEnvironment(dir);
        const QString file = dir.filePath(u"f.zeb"_s);
        QVERIFY(MakeRecording(file, {.channels = 2, .records = 100}));
        TForm1 f;
        QVERIFY(Load(f, file));
        const struct {
            int Language;
            const char* Action;
            const char* Filter;
        } cases[] = {{zeb::LangGerman, "menFileExportPng", "PNG-Bild (*.png)"},
                     {zeb::LangFrench, "menFileExportSvg", "Dessin SVG (*.svg)"},
                     {zeb::LangGerman, "menFileExportPdf", "PDF-Dokument (*.pdf)"}};
        for (const auto& c : cases) {
            zeb::SwitchTexts(c.Language);
            QString offered;
            zeb::TZebDlg::SetDialogHook([&](QDialog* d) {
                if (auto* fd = qobject_cast<QFileDialog*>(d)) offered = fd->nameFilters().join(u';');
                d->reject();
            });
            Action(f, QString::fromLatin1(c.Action))->trigger();
            QVERIFY2(offered.contains(QString::fromUtf8(c.Filter)), qPrintable(offered));
        }
        zeb::TZebDlg::SetDialogHook(nullptr);
        zeb::SwitchTexts(zeb::LangEnglish);
    }

    // Each picture format decodes to a picture of the asked size.
    void pictureFiles_data() {
        QTest::addColumn<QString>("suffix");
        for (const char* s : {"png", "jpg", "bmp", "svg", "pdf"})
            QTest::newRow(s) << QString::fromLatin1(s);
    }
    void pictureFiles() {
        QFETCH(QString, suffix);
        TDataBase db;
        Fill(db);
        TZebChart chart(&db);
        chart.resize(700, 400);
        chart.replot();
        QTemporaryDir dir;
        const QString file = dir.filePath(u"chart."_s + suffix);
        QVERIFY(SaveChartPicture(chart, file, QSize(640, 360)));
        if (suffix == u"svg") {
            QSvgRenderer svg(file);
            QVERIFY(svg.isValid());
            QCOMPARE(svg.viewBox(), QRect(0, 0, 640, 360));
        } else if (suffix == u"pdf") {
            QVERIFY(ReadBytes(file).startsWith("%PDF-"));
        } else {
            QImageReader reader(file);
            QCOMPARE(reader.size(), QSize(640, 360));
            QVERIFY(!reader.read().isNull());
        }
        QVERIFY(!SaveChartPicture(chart, dir.filePath(u"chart.gif"_s), QSize(100, 100)));
        QVERIFY(!SaveChartPicture(chart, dir.filePath(u"missing/chart.svg"_s), QSize(100, 100)));
    }
};

QTEST_MAIN(TstPrinting)
#include "tst_printing.moc"
