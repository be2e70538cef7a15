#include "app/Export.h"

#include "app/Startup.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"
#include "store/FileThread.h"
#include "store/Summary.h"
#include "ui/BigDataDlg.h"
#include "ui/ChartTexts.h"
#include "ui/CrossHair.h"
#include "ui/Printing.h"
#include "ui/Report.h"
#include "ui/SummaryReport.h"
#include "ui/ZebChart.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

namespace zeb {

namespace {

void PrintErr(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    std::fputs(text.toLocal8Bit().constData(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

// Loads the recording through the loader, as the window does, reading a large file to its
// end; the loader's messages go to standard error. True when it loaded completely.
bool Load(TDataBase& db, const QString& fileName) {
    const QFileInfo fi(fileName);
    if (!fi.isFile() || !fi.isReadable()) {
        PrintErr(TxtFmt(TTextId::MsgLoadCannotOpen, {QDir::toNativeSeparators(fileName)}));
        return false;
    }
    db.AddFile(fi.absoluteFilePath());
    TLoadReport result = TLoadReport::ResultError;
    QEventLoop loop;
    TFileThread thread(
        &db, fi.absoluteFilePath(),
        [&](TLoadReport report, const QString& text) {
            switch (report) {
            case TLoadReport::CannotOpen: PrintErr(TxtFmt(TTextId::MsgLoadCannotOpen, {text})); break;
            case TLoadReport::Error: PrintErr(Txt(TTextId::MsgFatalError)); break;
            case TLoadReport::Defect: PrintErr(text); break;
            case TLoadReport::ResultOk:
            case TLoadReport::ResultError:
            case TLoadReport::ResultCancelled:
            case TLoadReport::ResultPreviewer:
                result = report;
                loop.quit();
                break;
            case TLoadReport::Progress:
            case TLoadReport::ValueCount:
            case TLoadReport::Cancelled: break;
            }
        },
        [](TBigDataAnswer& answer) { answer = TBigDataAnswer::Continue; }, ZebSettings().BrandVariant); // an export reads it all
    loop.exec();
    thread.wait();
    return result == TLoadReport::ResultOk;
}

} // namespace

int RunSummary(const TCommandLine& cmd) {
    TSummaryOptions options;
    options.Template = cmd.Template;
    options.ActivationEnergy = cmd.ActivationEnergy > 0.0 ? cmd.ActivationEnergy : ZebSettings().MktActivationEnergy;
    options.Variant = ZebSettings().BrandVariant;
    if (!options.Template.isEmpty() && !QFileInfo(options.Template).isFile()) {
        PrintErr(TxtFmt(TTextId::MsgCannotOpenFile, {QDir::toNativeSeparators(options.Template)}));
        return 1;
    }
    const std::vector<TSummaryRow> rows = TSummaryRun{}.Run(cmd.Files, options);
    bool written = false;
    if (QFileInfo(cmd.Summary).suffix().compare(QLatin1String("csv"), Qt::CaseInsensitive) == 0) {
        QSaveFile out(cmd.Summary);
        written = out.open(QIODevice::WriteOnly) && WriteSummaryCsv(out, rows) && out.commit();
    } else {
        written = WriteSummaryPdf(rows, options, cmd.Summary);
    }
    if (!written) {
        PrintErr(TxtFmt(TTextId::SumCannotWrite, {QDir::toNativeSeparators(cmd.Summary)}));
        return 3;
    }
    for (const TSummaryRow& r : rows)
        if (r.Status != TSummaryStatus::Ok) return 1;
    return 0;
}

int RunExport(const TCommandLine& cmd) {
    TDataBase db;
    if (!Load(db, cmd.Files.first())) return 1;
    db.FinishLoad();
    if (!cmd.Template.isEmpty() && !db.Ini_FileOpen(cmd.Template)) {
        PrintErr(TxtFmt(TTextId::MsgCannotOpenFile, {QDir::toNativeSeparators(cmd.Template)}));
        return 1;
    }

    TZebChart chart(&db);
    // A chart in no window has the shape the report gives such a chart; pictures take their
    // own size, and text boxes the window's reference size.
    chart.resize(1000, 600);
    chart.Texts()->SetNoticesShown(cmd.Notices);
    chart.Rebuild();
    // Both crosshairs where the window puts them after a load.
    for (int which = 0; which < 2; ++which) {
        chart.CrossHair()->SetCursor(which, db.Cursor_Get(which).Axis);
        chart.CrossHair()->SetWidth(which, db.Cursor_Get(which).Width);
    }

    if (!cmd.Picture.isEmpty() && !SaveChartPicture(chart, cmd.Picture, cmd.Size)) {
        PrintErr(TxtFmt(TTextId::CliCannotWritePicture, {QDir::toNativeSeparators(cmd.Picture)}));
        return 3;
    }
    if (!cmd.Report.isEmpty()) {
        TReportOptions options;
        options.ActivationEnergy = cmd.ActivationEnergy > 0.0 ? cmd.ActivationEnergy : ZebSettings().MktActivationEnergy;
        if (!WriteReportPdf(db, &chart, cmd.Report, options)) {
            PrintErr(TxtFmt(TTextId::ReportCannotWrite, {QDir::toNativeSeparators(cmd.Report)}));
            return 3;
        }
    }
    return 0;
}

} // namespace zeb
