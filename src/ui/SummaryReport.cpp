#include "ui/SummaryReport.h"

#include "analysis/Analysis.h"
#include "analysis/Figures.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/DocumentPages.h"
#include "ui/ZebChart.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QPdfWriter>
#include <QPicture>
#include <QSaveFile>

#include <cmath>
#include <map>
#include <memory>

using zeb::TTextId;
using zeb::Txt;

namespace {

// The violations a failed curve's page lists; the rest are counted.
constexpr size_t kListedViolations = 9;
// The chart of a failed curve, laid out as on a screen, then scaled onto the page.
constexpr int kChartWidth = 950, kChartHeight = 450;
constexpr double kChartHeightMm = 72.0;

QString TimeText(double t) {
    return std::isnan(t) ? QString() : zeb::FormatTime(zeb::TTimeKind::DateTime, t);
}

// What a failed curve's page shows beyond its row: its chart and its violations.
struct TFailedPage {
    const TSummaryRow* Row = nullptr;
    std::shared_ptr<QPicture> Chart;
    std::vector<TViolationSpan> Spans;
    std::vector<std::pair<double, double>> SpanTimes;
};

// Reads each recording with failed curves once more and keeps, per failed curve, its chart
// as a picture and its violations; one recording is held at a time.
std::vector<TFailedPage> FailedPages(const std::vector<TSummaryRow>& rows, const TSummaryOptions& options) {
    std::vector<TFailedPage> pages;
    std::map<QString, std::vector<const TSummaryRow*>> byFile;
    std::vector<QString> order;
    for (const TSummaryRow& r : rows) {
        if (!r.HasFigures() || r.Verdict != TSummaryVerdict::Failed) continue;
        if (!byFile.count(r.File)) order.push_back(r.File);
        byFile[r.File].push_back(&r);
    }
    for (const QString& file : order) {
        TDataBase db;
        ReadForSummary(db, file, options);
        for (const TSummaryRow* r : byFile[file]) {
            TFailedPage page;
            page.Row = r;
            if (db.Curve_IsValid(r->Index)) {
                const TCurveData& d = db.Data(r->Index);
                double first = 0.0, last = 0.0;
                db.GetXMinXMax(first, last, false);
                const TIndexRange range =
                    VisibleRange(d, options.From.value_or(first), options.To.value_or(last));
                page.Spans = ListViolations(d, LimitRuleOf(db.Settings().Curves[r->Index]), range, kListedViolations);
                for (const TViolationSpan& s : page.Spans) page.SpanTimes.push_back({d.Time(s.First), d.Time(s.Last)});

                // The curve alone over the recording's time range, with its limit lines.
                for (int i = 0; i < db.Curve_Count(); ++i) db.Curve_SetActive(i, i == r->Index);
                db.Curve_SetLimitLines(r->Index, true);
                for (int a = 0; a < 3; ++a) db.Axis_Get(a).Auto = true;
                if (options.From || options.To) {
                    TAxisState& bottom = db.Axis_Get(axBottom);
                    bottom.Auto = false;
                    bottom.Min = options.From.value_or(first);
                    bottom.Max = options.To.value_or(last);
                }
                TZebChart chart(&db);
                chart.resize(kChartWidth, kChartHeight);
                chart.Rebuild();
                const TDocumentLook look(&chart);
                auto picture = std::make_shared<QPicture>();
                QCPPainter painter(picture.get());
                painter.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching);
                chart.toPainter(&painter, kChartWidth, kChartHeight);
                painter.end();
                page.Chart = std::move(picture);
            }
            pages.push_back(std::move(page));
        }
    }
    return pages;
}

TCell Bold(const QString& text, int span = 1) { return TCell{text, span, true}; }

} // namespace

bool WriteSummaryPdf(const std::vector<TSummaryRow>& rows, const TSummaryOptions& options, const QString& fileName) {
    const std::vector<TFailedPage> failed = FailedPages(rows, options);

    QSaveFile out(fileName);
    if (!out.open(QIODevice::WriteOnly)) return false;
    {
        QPdfWriter pdf(&out);
        pdf.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(0, 0, 0, 0)));
        pdf.setResolution(96);
        pdf.setTitle(Txt(TTextId::SumCaption));
        pdf.setCreator(QStringLiteral("ZEB Viewer"));
        QCPPainter p;
        if (!p.begin(&pdf)) {
            out.cancelWriting();
            return false;
        }
        const TPageLayout L(pdf);
        const double gap = L.Y(5);
        std::vector<TBlock> blocks;
        blocks.push_back(L.Text(Txt(TTextId::SumCaption), TPageLayout::Font(16, true), L.Y(4)));

        // The header: who, when, and what came out.
        const TSummaryCounts counts = CountSummary(rows);
        double first = NAN, last = NAN;
        for (const TSummaryRow& r : rows) {
            if (!std::isnan(r.First) && !(r.First >= first)) first = r.First;
            if (!std::isnan(r.Last) && !(r.Last <= last)) last = r.Last;
        }
        const QString period = std::isnan(first) ? QString()
                                                 : TimeText(first) + QStringLiteral(" \u2013 ") + TimeText(last) +
                                                       QStringLiteral(" (") + DayDurationText(last - first) +
                                                       QLatin1Char(')');
        QString result = zeb::TxtFmt(TTextId::SumCounts,
                                     {QString::number(counts.Recordings), QString::number(counts.Passed),
                                      QString::number(counts.Failed), QString::number(counts.NoLimits)});
        if (counts.Incomplete > 0)
            result += QLatin1Char('\n') + zeb::TxtFmt(TTextId::SumIncomplete, {QString::number(counts.Incomplete)});
        const QString company = ZebSettings().ValReportFirma;
        {
            std::vector<TRow> header;
            auto row = [&header](const QString& label, const QString& value) {
                header.push_back({{TCell{label, 1, true}, TCell{value}}, false});
            };
            row(Txt(TTextId::ReportCompany), company);
            row(Txt(TTextId::SumPeriod), period);
            row(Txt(TTextId::SumResult), result);
            row(Txt(TTextId::SumLimits),
                options.Template.isEmpty()
                    ? Txt(TTextId::SumOwnTemplates)
                    : zeb::TxtFmt(TTextId::SumOneTemplate, {QDir::toNativeSeparators(options.Template)}));
            row(Txt(TTextId::ReportPrinted), zeb::FormatTime(zeb::TTimeKind::DateTime, NowSince2000()));
            blocks.push_back(L.Table(std::move(header), {0.22, 0.78}, gap));
        }

        // The table: a row per recording and curve, each a block of its own so it runs on over
        // pages, the header row repeated on none but kept with the first.
        const QStringList titles = SummaryColumnTitles();
        const std::vector<double> columns{0.14, 0.06, 0.105, 0.115, 0.05, 0.09, 0.09, 0.065, 0.075, 0.07, 0.075, 0.065};
        const double points = 7.0;
        auto both = [](const QString& a, const QString& b) { return b.isEmpty() ? a : a + QLatin1Char('\n') + b; };
        {
            TBlock head = L.Table({{{Bold(titles[0]), Bold(titles[2]), Bold(titles[3]),
                                     Bold(both(titles[5], titles[6])), Bold(titles[7]), Bold(both(titles[8], titles[9])),
                                     Bold(both(titles[10], titles[11])), Bold(titles[12]), Bold(titles[13]),
                                     Bold(titles[14]), Bold(both(titles[15], titles[16])), Bold(titles[17])},
                                    true}},
                                  columns, 0.0, points);
            head.KeepWithNext = true;
            blocks.push_back(std::move(head));
        }
        for (const TSummaryRow& r : rows) {
            QString file = QFileInfo(r.File).fileName();
            if (r.Status != TSummaryStatus::Ok) file += QStringLiteral(" (") + SummaryCellText(r, 1) + QLatin1Char(')');
            const bool failedRow = r.HasFigures() && r.Verdict == TSummaryVerdict::Failed;
            std::vector<TCell> cells{TCell{file}, TCell{r.Logger}, TCell{TDataBase::AddUnit(r.Name, r.Unit)},
                                     TCell{both(SummaryCellText(r, 5), SummaryCellText(r, 6))},
                                     TCell{SummaryCellText(r, 7)},
                                     TCell{both(SummaryCellText(r, 8), SummaryCellText(r, 9))},
                                     TCell{both(SummaryCellText(r, 10), SummaryCellText(r, 11))},
                                     TCell{SummaryCellText(r, 12)}, TCell{SummaryCellText(r, 13)},
                                     TCell{SummaryCellText(r, 14)},
                                     TCell{both(SummaryCellText(r, 15), SummaryCellText(r, 16))},
                                     TCell{SummaryCellText(r, 17), 1, failedRow}};
            blocks.push_back(L.Table({{std::move(cells), false}}, columns, 0.0, points));
        }

        // A page per failed curve.
        const QStringList spanTitles = zeb::TxtList(TTextId::SumViolationColumns);
        const std::vector<double> spanColumns{0.08, 0.25, 0.25, 0.22, 0.2};
        for (const TFailedPage& page : failed) {
            const TSummaryRow& r = *page.Row;
            TBlock heading = L.Text(zeb::TxtFmt(TTextId::SumFailedCurve, {TDataBase::AddUnit(r.Name, r.Unit)}) +
                                        QStringLiteral(" \u2013 ") + QFileInfo(r.File).fileName(),
                                    TPageLayout::Font(12, true), L.Y(2), true);
            heading.PageBreakBefore = true;
            blocks.push_back(std::move(heading));
            std::vector<TRow> figures;
            auto row = [&figures](const QString& label, const QString& value) {
                figures.push_back({{TCell{label, 1, true}, TCell{value}}, false});
            };
            row(titles[0], QDir::toNativeSeparators(r.File));
            row(titles[2], r.Logger);
            auto withUnit = [&r](double v) { return FigureText::WithUnit(FigureText::Value(v, r.Format), r.Unit); };
            row(Txt(TTextId::ReportLimitMode), zeb::FormatText(zeb::TxtList(TTextId::ReportLimitModes).value(r.LimitMode),
                                                               {withUnit(r.Limit1), withUnit(r.Limit2)}));
            row(titles[8] + QStringLiteral(" / ") + titles[10],
                SummaryCellText(r, 8) + QStringLiteral(" (") + SummaryCellText(r, 9) + QStringLiteral(") / ") +
                    SummaryCellText(r, 10) + QStringLiteral(" (") + SummaryCellText(r, 11) + QLatin1Char(')'));
            row(titles[14], SummaryCellText(r, 14));
            row(titles[15], SummaryCellText(r, 15));
            blocks.push_back(L.Table(std::move(figures), {0.25, 0.75}, L.Y(3), 8.0));
            if (page.Chart) {
                TBlock chart;
                chart.Height = L.Y(kChartHeightMm);
                chart.SpaceAfter = L.Y(3);
                chart.Draw = [picture = page.Chart](QCPPainter& p, const QRectF& at) {
                    const double scale = std::min(at.width() / kChartWidth, at.height() / kChartHeight);
                    const QRectF target(at.left() + (at.width() - kChartWidth * scale) / 2, at.top(),
                                        kChartWidth * scale, kChartHeight * scale);
                    p.save();
                    p.setClipRect(target);
                    p.translate(target.topLeft());
                    p.scale(scale, scale);
                    p.drawPicture(0, 0, *picture);
                    p.restore();
                    p.setPen(QPen(QColor(150, 150, 150), 0));
                    p.setBrush(Qt::NoBrush);
                    p.drawRect(target);
                };
                blocks.push_back(std::move(chart));
            }
            std::vector<TRow> spans;
            spans.push_back({{Bold(spanTitles.value(0)), Bold(spanTitles.value(1)), Bold(spanTitles.value(2)),
                              Bold(spanTitles.value(3)), Bold(spanTitles.value(4))},
                             true});
            for (size_t k = 0; k < page.Spans.size(); ++k) {
                const auto [begins, ends] = page.SpanTimes[k];
                spans.push_back({{TCell{QString::number(k + 1)}, TCell{TimeText(begins)}, TCell{TimeText(ends)},
                                  TCell{DayDurationText(ends - begins)},
                                  TCell{QString::number(page.Spans[k].Last - page.Spans[k].First + 1)}},
                                 false});
            }
            if (r.Violations > qint64(page.Spans.size()))
                spans.push_back({{TCell{zeb::TxtFmt(TTextId::SumMoreViolations,
                                                    {QString::number(r.Violations - qint64(page.Spans.size()))}),
                                        5}},
                                 false});
            blocks.push_back(L.Table(std::move(spans), spanColumns, 0.0, 7.0));
        }

        if (PaintPages(p, pdf, L, blocks, company, Txt(TTextId::SumCaption), QFileInfo(fileName).fileName()) < 0) {
            p.end();
            out.cancelWriting();
            return false;
        }
        p.end();
    }
    return out.commit();
}
