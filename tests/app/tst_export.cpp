// The picture export of the command line, run as the real program without a display.

#include "Files.h"
#include "LanguageSetting.h"
#include "LoadRecording.h"
#include "MakeRecording.h"
#include "PdfWords.h"
#include "analysis/Analysis.h"
#include "config/MseSettings.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "store/Summary.h"

#include <QColor>
#include <QFileInfo>
#include <QImage>
#include <QJsonObject>
#include <QJsonDocument>
#include <QJsonArray>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;
using zeb::TTextId;

namespace {

struct TResult {
    int ExitCode = -1;
    QString Err;
};

// Distinct saturated colours: the curves, not the axes, grid or background.
int ColouredPixels(const QImage& img) {
    int n = 0;
    for (int y = 0; y < img.height(); y += 2)
        for (int x = 0; x < img.width(); x += 2)
            if (QColor(img.pixel(x, y)).hsvSaturation() > 120) ++n;
    return n;
}

// Pages of a PDF as Qt writes them: one page object each.
int PdfPages(const QByteArray& pdf) {
    return int(pdf.count("/Type /Page\n") + pdf.count("/Type /Page ") + pdf.count("/Type /Page/"));
}

// Drawn elements and texts of an SVG file; empty when it is not well-formed SVG.
struct TSvg {
    int Shapes = 0;
    QString Texts;
};
TSvg ReadSvg(const QByteArray& svg) {
    QXmlStreamReader xml(svg);
    TSvg out;
    bool root = true;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (root && xml.name() != u"svg"_s) return {};
        root = false;
        if (xml.name() == u"path"_s || xml.name() == u"polyline"_s) ++out.Shapes;
        if (xml.name() == u"text"_s) out.Texts += xml.readElementText(QXmlStreamReader::IncludeChildElements);
    }
    return xml.hasError() ? TSvg{} : out;
}

} // namespace

class TstExport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FTmp.isValid());
        FSettings = FTmp.filePath(u"settings.ini"_s);
        qputenv("ZEB_SETTINGS_FILE", FSettings.toLocal8Bit());
        FFile = FTmp.filePath(u"rec.zeb"_s);
        QVERIFY(MakeRecording(FFile, {.channels = 3, .records = 4000, .gapRate = kSomeGaps}));
    }

    void init() { QFile::remove(FSettings); }

    void formats_data() {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("size");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("png, default size")
            << u"--export-png"_s << u"out.png"_s << QString() << QSize(1200, 800);
        QTest::newRow("png, sized") << u"--export-png"_s << u"out.png"_s << u"800x500"_s << QSize(800, 500);
        QTest::newRow("jpg") << u"--export-jpg"_s << u"out.jpg"_s << u"640x480"_s << QSize(640, 480);
        QTest::newRow("bmp") << u"--export-bmp"_s << u"out.bmp"_s << u"1024x300"_s << QSize(1024, 300);
    }

    void formats() {
        QFETCH(QString, option);
        QFETCH(QString, name);
        QFETCH(QString, size);
        QFETCH(QSize, expected);
        const QString out = FTmp.filePath(name);
        QFile::remove(out);
        QStringList args{FFile, option, out};
        if (!size.isEmpty()) args << u"--size"_s << size;
        const TResult r = Viewer(args);
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        QImage img;
        QVERIFY(img.load(out, QFileInfo(out).suffix().toUpper().toLatin1().constData()));
        QCOMPARE(img.size(), expected);
        // The curves are in the picture, not only an empty frame.
        QVERIFY2(ColouredPixels(img) > 200, qPrintable(QString::number(ColouredPixels(img))));

        // An export is no use of the window: the recent list stays as it was.
        LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
        QVERIFY(ZebSettings().File[0].isEmpty());
    }

    // Vector output: the chart as PDF and SVG, and the report, whose pages grow with the curves.
    void documents_data() {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("name");
        QTest::newRow("pdf") << u"--export-pdf"_s << u"chart.pdf"_s;
        QTest::newRow("svg") << u"--export-svg"_s << u"chart.svg"_s;
        QTest::newRow("report") << u"--report"_s << u"report.pdf"_s;
    }

    void documents() {
        QFETCH(QString, option);
        QFETCH(QString, name);
        const QString out = FTmp.filePath(name);
        QFile::remove(out);
        const TResult r = Viewer({FFile, option, out});
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        const QByteArray bytes = ReadBytes(out);
        if (name.endsWith(u".svg"_s)) {
            const TSvg svg = ReadSvg(bytes);
            QVERIFY2(svg.Shapes > 10, qPrintable(QString::number(svg.Shapes)));
            QVERIFY2(svg.Texts.contains(u"Time"_s) || svg.Texts.contains(u"Zeit"_s), qPrintable(svg.Texts));
            return;
        }
        QVERIFY(bytes.startsWith("%PDF-"));
        QVERIFY(bytes.trimmed().endsWith("%%EOF"));
        const int pages = PdfPages(bytes);
        if (option == u"--report"_s)
            QVERIFY2(pages >= 2, qPrintable(QString::number(pages))); // header and chart, then the figures
        else
            QCOMPARE(pages, 1);
    }

    void failures_data() {
        QTest::addColumn<int>("language");
        QTest::addColumn<QByteArray>("content"); // empty: the file does not exist
        QTest::addColumn<QString>("message");
        QTest::newRow("missing, German") << 0 << QByteArray() << u"kann nicht geöffnet werden"_s;
        QTest::newRow("missing, English") << 1 << QByteArray() << u"cannot be opened"_s;
        QTest::newRow("not a recording, English")
            << 1 << QByteArray("plain text\n") << u"Fatal error has occurred!"_s;
        QTest::newRow("not a recording, French") << 2 << QByteArray("plain text\n") << u"Une erreur fatale"_s;
    }

    void failures() {
        QFETCH(int, language);
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        QVERIFY(WriteLanguageSetting(language));
        const QString bad = FTmp.filePath(u"bad.zeb"_s);
        QFile::remove(bad);
        if (!content.isEmpty()) QVERIFY(WriteBytes(bad, content));
        const QString out = FTmp.filePath(u"never.png"_s);
        QFile::remove(out);
        const TResult r = Viewer({bad, u"--export-png"_s, out});
        QCOMPARE(r.ExitCode, 1);
        QVERIFY2(r.Err.contains(message), qPrintable(r.Err));
        QVERIFY(!QFileInfo::exists(out));
    }

    // A template's fixed axis range shows in the picture; a missing template is an error.
    void templateApplied() {
        const QString plain = FTmp.filePath(u"plain.png"_s);
        const QString templated = FTmp.filePath(u"templated.png"_s);
        const QString templ = FTmp.filePath(u"range.mse"_s);
        TMseSettings s;
        s.AxisLeft.Auto.Set(false);
        s.AxisLeft.Min.Set(-500.0);
        s.AxisLeft.Max.Set(500.0);
        s.Title.Set(u"From the template"_s);
        QVERIFY(s.SaveFile(templ));

        TResult r = Viewer({FFile, u"--export-png"_s, plain, u"--size"_s, u"700x400"_s});
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        r = Viewer({FFile, u"--export-png"_s, templated, u"--size"_s, u"700x400"_s, u"--template"_s, templ});
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        QVERIFY(QImage(plain) != QImage(templated));

        const QString missing = FTmp.filePath(u"missing.mse"_s);
        r = Viewer({FFile, u"--export-png"_s, templated, u"--template"_s, missing});
        QCOMPARE(r.ExitCode, 1);
        QVERIFY2(r.Err.contains(QFileInfo(missing).fileName()), qPrintable(r.Err));
    }

    // A text box keeps its share of the drawing at any size: the window's reference without a
    // window is 1200x800, so (300, 120) is a quarter across and 15 % down. A box that would reach
    // out of the drawing is pulled inside. In the report, the box lies on the chart.
    void boxesKeepTheirPlace() {
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty()) QSKIP("pdftotext is missing");
        const QString templ = FTmp.filePath(u"boxes.mse"_s);
        TMseSettings s;
        for (const auto& [text, x, y] :
             {std::tuple{u"Leftbox"_s, 300, 120}, std::tuple{u"Rightbox"_s, 1150, 700}}) {
            TMseText& t = s.Texts.Add();
            t.Text.Set(text);
            t.X.Set(x);
            t.Y.Set(y);
        }
        QVERIFY(s.SaveFile(templ));
        for (const QString& size : {u"1200x800"_s, u"2400x1600"_s}) {
            const QString out = FTmp.filePath(u"boxes-"_s + size + u".pdf"_s);
            const TResult r =
                Viewer({FFile, u"--export-pdf"_s, out, u"--size"_s, size, u"--template"_s, templ});
            QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
            const std::vector<TPdfWord> words = PdfWords(out);
            const TPdfWord* left = FindWord(words, u"Leftbox"_s);
            const TPdfWord* right = FindWord(words, u"Rightbox"_s);
            QVERIFY2(left && right, qPrintable(size));
            // The text starts a few pixels inside its box's corner.
            QVERIFY2(left->Left() >= 0.25 && left->Left() < 0.26, qPrintable(QString::number(left->Left())));
            QVERIFY2(left->Top() >= 0.145 && left->Top() < 0.165, qPrintable(QString::number(left->Top())));
            QVERIFY(right->Box.right() <= right->PageSize.width() &&
                    right->Box.bottom() <= right->PageSize.height());
            QVERIFY2(right->Box.right() > 0.97 * right->PageSize.width(),
                     qPrintable(QString::number(right->Box.right())));
        }

        const QString report = FTmp.filePath(u"boxes-report.pdf"_s);
        const TResult r = Viewer({FFile, u"--report"_s, report, u"--template"_s, templ});
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        const std::vector<TPdfWord> words = PdfWords(report);
        const TPdfWord* box = FindWord(words, u"Leftbox"_s);
        const TPdfWord* file = FindWord(words, FFile); // the header's row of the file
        const TPdfWord* channels = FindWord(words, u"Channels"_s);
        QVERIFY(box && file && channels);
        QCOMPARE(box->Page, 1);
        // Below the header, above the figures: on the chart, a quarter across its width.
        QVERIFY(box->Box.top() > file->Box.bottom());
        QVERIFY(channels->Page > 1 || box->Box.bottom() < channels->Box.top());
        QVERIFY2(box->Left() > 0.25 && box->Left() < 0.35, qPrintable(QString::number(box->Left())));
    }

    // The notices are drawn on a picture when asked for.
    void noticesOnRequest() {
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty()) QSKIP("pdftotext is missing");
        const auto db = LoadRecording(FFile);
        double first = 0, last = 0;
        db->GetXMinXMax(first, last, false);
        const QString templ = FTmp.filePath(u"notice.mse"_s);
        TMseSettings s;
        TMseTimeText& n = s.TimeTexts.Add();
        n.Text.Set(u"Doorwasopen"_s);
        n.X.Set((first + last) / 2);
        n.Y.Set(20.0);
        QVERIFY(s.SaveFile(templ));
        const QString plain = FTmp.filePath(u"plain-notice.pdf"_s),
                      shown = FTmp.filePath(u"shown-notice.pdf"_s);
        TResult r = Viewer({FFile, u"--export-pdf"_s, plain, u"--template"_s, templ});
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        r = Viewer({FFile, u"--export-pdf"_s, shown, u"--template"_s, templ, u"--notices"_s});
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        QVERIFY(!FindWord(PdfWords(plain), u"Doorwasopen"_s));
        QVERIFY(FindWord(PdfWords(shown), u"Doorwasopen"_s));
    }

    // --activation-energy gives the mean kinetic temperature of that energy, and says which.
    void reportActivationEnergy() {
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty()) QSKIP("pdftotext is missing");
        const auto db = LoadRecording(FFile);
        QCOMPARE(db->Curve_UnitGet(0), u"°C"_s);
        const TIndexRange all{0, db->Data(0).Count() - 1};
        const QString expected =
            zeb::FormatFloat(u"0.000"_s, MeanKineticTemperature(db->Data(0), all, 100.0)) + u" °C"_s;
        const QString usual =
            zeb::FormatFloat(u"0.000"_s, MeanKineticTemperature(db->Data(0), all)) + u" °C"_s;
        QVERIFY(expected != usual);
        const QString out = FTmp.filePath(u"energy.pdf"_s);
        const TResult r = Viewer({FFile, u"--report"_s, out, u"--activation-energy"_s, u"100"_s});
        QVERIFY2(r.ExitCode == 0, qPrintable(r.Err));
        const QString text = PdfText(out);
        QVERIFY2(text.contains(u"(ΔH = 100.000 kJ/mol)"_s), qPrintable(text));
        QVERIFY2(text.contains(expected), qPrintable(expected));
        QVERIFY(!text.contains(usual));
    }

    void wrongCommandLine() {
        TResult r = Viewer({FFile, u"--export-gif"_s, FTmp.filePath(u"x.gif"_s)});
        QCOMPARE(r.ExitCode, 2);
        QVERIFY2(r.Err.contains(u"--export-gif"_s) && r.Err.contains(u"--export-png"_s), qPrintable(r.Err));

        // Options of the other export.
        r = Viewer({FFile, u"--report"_s, FTmp.filePath(u"r.pdf"_s), u"--notices"_s});
        QCOMPARE(r.ExitCode, 2);
        r = Viewer({FFile, u"--export-png"_s, FTmp.filePath(u"r.png"_s), u"--activation-energy"_s, u"90"_s});
        QCOMPARE(r.ExitCode, 2);
        r = Viewer({FFile, u"--report"_s, FTmp.filePath(u"r.pdf"_s), u"--activation-energy"_s, u"-5"_s});
        QCOMPARE(r.ExitCode, 2);
        QVERIFY2(r.Err.contains(u"-5"_s), qPrintable(r.Err));

        // A picture that cannot be written.
        r = Viewer({FFile, u"--export-png"_s, FTmp.filePath(u"no/such/folder/x.png"_s)});
        QCOMPARE(r.ExitCode, 3);
        QVERIFY2(r.Err.contains(u"x.png"_s), qPrintable(r.Err));
    }

    // The summary without a window: PDF and CSV from the viewer, JSON from zebtool, the same rows;
    // a file that cannot be read is marked and makes the exit code 1.
    void summaryFromTheCommandLine() {
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty()) QSKIP("pdftotext is missing");
        const QString missing = FTmp.filePath(u"missing.zeb"_s);
        TSummaryOptions options;
        const std::vector<TSummaryRow> rows = TSummaryRun{}.Run({FFile, missing}, options);
        const TSummaryCounts counts = CountSummary(rows);
        QVERIFY(counts.Failed > 0);

        for (int language : {int(zeb::LangEnglish), int(zeb::LangGerman), int(zeb::LangFrench)}) {
            QVERIFY(WriteLanguageSetting(language));
            const QString pdf = FTmp.filePath(u"summary.pdf"_s);
            const TResult r = Viewer({u"--summary"_s, pdf, FFile, missing});
            QCOMPARE(r.ExitCode, 1);
            QProcess p;
            p.start(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
            QVERIFY(p.waitForFinished(60000));
            const QString text = QString::fromUtf8(p.readAllStandardOutput());
            QVERIFY2(text.contains(zeb::TxtIn(TTextId::SumCaption, language)), qPrintable(text));
            // A page per failed curve, headed by its name.
            const QString failed = zeb::TxtIn(TTextId::SumFailedCurve, language).section(u"%s"_s, 0, 0);
            QCOMPARE(int(text.count(failed)), counts.Failed);
            QVERIFY(text.contains(zeb::FormatText(zeb::TxtIn(TTextId::SumIncomplete, language), {u"1"_s})));
        }
        QVERIFY(WriteLanguageSetting(zeb::LangEnglish));

        const QString csv = FTmp.filePath(u"summary.csv"_s);
        QCOMPARE(Viewer({u"--summary"_s, csv, FFile}).ExitCode, 0);
        QFile in(csv);
        QVERIFY(in.open(QIODevice::ReadOnly));
        QCOMPARE(int(in.readAll().count("\r\n")), int(rows.size())); // the header and the curves of FFile

        QProcess tool;
        tool.start(QStringLiteral(ZEBTOOL), {u"summary"_s, FFile, missing});
        QVERIFY(tool.waitForFinished(60000));
        QCOMPARE(tool.exitCode(), 1);
        const QJsonArray json = QJsonDocument::fromJson(tool.readAllStandardOutput()).array();
        QCOMPARE(json.size(), qsizetype(rows.size()));
        for (qsizetype k = 0; k < json.size(); ++k) {
            const QJsonObject o = json[k].toObject();
            const TSummaryRow& r = rows[size_t(k)];
            QCOMPARE(o[u"status"_s].toString(), SummaryStatusName(r.Status));
            QCOMPARE(o[u"verdict"_s].toString(), r.HasFigures() ? SummaryVerdictName(r.Verdict) : QString());
            if (!r.HasFigures()) continue;
            QCOMPARE(o[u"min"_s].toDouble(), r.Min);
            QCOMPARE(o[u"max_time"_s].toDouble(), r.MaxTime);
            QCOMPARE(o[u"violations"_s].toInteger(), r.Violations);
            QCOMPARE(o[u"mkt"_s].isNull(), std::isnan(r.Mkt));
        }

        // Calls that make no sense, and a file that cannot be written.
        QCOMPARE(Viewer({u"--summary"_s, FTmp.filePath(u"s.txt"_s), FFile}).ExitCode, 2);
        QCOMPARE(Viewer({u"--summary"_s, FTmp.filePath(u"s.pdf"_s)}).ExitCode, 2);
        QCOMPARE(Viewer({u"--summary"_s, FTmp.filePath(u"s.pdf"_s), FFile, u"--notices"_s}).ExitCode, 2);
        QCOMPARE(Viewer({u"--summary"_s, FTmp.filePath(u"no/such/folder/s.csv"_s), FFile}).ExitCode, 3);
    }

private:
    TResult Viewer(const QStringList& args, bool withDisplayVariables = false);

    QTemporaryDir FTmp;
    QString FFile, FSettings;
};

TResult TstExport::Viewer(const QStringList& args, bool withDisplayVariables) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"ZEB_SETTINGS_FILE"_s, FSettings);
    if (!withDisplayVariables) {
        // As on a build server: no display of any kind, and no platform chosen.
        for (const char* v : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            env.remove(QLatin1String(v));
    }
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(ZEB_VIEWER), args);
    TResult r;
    if (!p.waitForFinished(120000)) {
        p.kill();
        return r;
    }
    r.ExitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.Err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

QTEST_GUILESS_MAIN(TstExport)
#include "tst_export.moc"
