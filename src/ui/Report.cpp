#include "ui/Report.h"

#include "analysis/Figures.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/ChartTexts.h"
#include "ui/CurvePlottable.h" // the chart library, as every unit includes it
#include "ui/ZebChart.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSaveFile>
#include <QTextLayout>
#include <QTextOption>

#include <cmath>
#include <functional>

using zeb::TTextId;
using zeb::Txt;

namespace {

// Now on the wall clock, in the seconds since 1 January 2000 that every time text takes.
double NowSince2000() {
    const QDateTime now = QDateTime::currentDateTime();
    return double(QDate(2000, 1, 1).daysTo(now.date())) * zeb::kSecondsPerDay +
           now.time().msecsSinceStartOfDay() / 1000.0;
}

// A sampling interval: seconds below an hour, else days and hours.
QString IntervalText(double seconds) {
    if (seconds < 3600.0) return zeb::FormatFloat(QStringLiteral("0.###"), seconds) + QStringLiteral(" s");
    return DayDurationText(seconds);
}

QColor FromBgr(int bgr) {
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}

// ---------------------------------------------------------------------- layout

// A4 in millimetres and the report's own margins, wide enough for any printer's unprintable
// edge.
constexpr double kPageWidth = 210.0, kPageHeight = 297.0;
constexpr double kMarginLeft = 20.0, kMarginRight = 15.0, kMarginTop = 12.0, kMarginBottom = 12.0;
constexpr double kHeaderBand = 10.0, kFooterBand = 9.0; // running header and footer
constexpr double kCellPad = 1.2;
constexpr double kMaxChartHeight = 115.0;

// One piece of the flow: its height, and how it draws itself into a rectangle of the content
// width at its place on a page.
struct TBlock {
    double Height = 0.0;
    double SpaceAfter = 0.0;
    bool KeepWithNext = false; // a heading stays with what it heads
    std::function<void(QCPPainter&, const QRectF&)> Draw;
};

struct TCell {
    TCell(QString text, int span = 1, bool bold = false, QColor swatch = {})
        : Text(std::move(text)), Span(span), Bold(bold), Swatch(swatch) {}
    QString Text;
    int Span = 1;
    bool Bold = false;
    QColor Swatch; // a colour square before the text
};
struct TRow {
    std::vector<TCell> Cells;
    bool Shaded = false;
};

class TPageLayout {
public:
    TPageLayout(QPaintDevice& device)
        : FDevice(device), FDpmX(device.logicalDpiX() / 25.4), FDpmY(device.logicalDpiY() / 25.4) {
        // The device may be a printer whose page is not exactly A4: the report fills what it has.
        FPage = QRectF(0, 0, device.width(), device.height());
        FContent =
            QRectF(X(kMarginLeft), Y(kMarginTop + kHeaderBand), FPage.width() - X(kMarginLeft + kMarginRight),
                   FPage.height() - Y(kMarginTop + kHeaderBand + kMarginBottom + kFooterBand));
    }
    double X(double mm) const { return mm * FDpmX; }
    double Y(double mm) const { return mm * FDpmY; }
    const QRectF& Page() const { return FPage; }
    const QRectF& Content() const { return FContent; }

    static QFont Font(double points, bool bold = false) {
        QFont f(QStringLiteral("Arial"));
        f.setStyleHint(QFont::SansSerif);
        f.setPointSizeF(points);
        f.setBold(bold);
        return f;
    }
    // Text breaks at word boundaries, and anywhere where a word (a path, a long name) is
    // wider than the line.
    static QTextOption Wrapping(Qt::Alignment alignment) {
        QTextOption o(alignment);
        o.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        return o;
    }
    double TextHeight(const QFont& font, double width, const QString& text) const {
        if (text.isEmpty()) return QFontMetricsF(font, &FDevice).height();
        QString lines = text;
        lines.replace(QLatin1Char('\n'), QChar::LineSeparator);
        QTextLayout layout(lines, font, &FDevice);
        layout.setTextOption(Wrapping(Qt::AlignLeft));
        double height = 0.0;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            height += line.height();
        }
        layout.endLayout();
        return height;
    }

    // A table of rows over columns given as fractions of the width.
    TBlock Table(std::vector<TRow> rows, std::vector<double> columns, double spaceAfter) const {
        const QFont normal = Font(9), bold = Font(9, true);
        const double width = FContent.width(), padX = X(kCellPad), padY = Y(kCellPad * 0.6);
        std::vector<double> x{0.0};
        for (double c : columns)
            x.push_back(x.back() + c * width);
        auto cellWidth = [&](size_t col, int span) {
            return x[std::min(x.size() - 1, col + size_t(span))] - x[col];
        };
        std::vector<double> heights;
        double total = 0.0;
        for (const TRow& r : rows) {
            double h = 0.0;
            size_t col = 0;
            for (const TCell& c : r.Cells) {
                const double swatch = c.Swatch.isValid() ? X(4.5) : 0.0;
                h = std::max(h, TextHeight(c.Bold ? bold : normal, cellWidth(col, c.Span) - 2 * padX - swatch,
                                           c.Text));
                col += size_t(c.Span);
            }
            heights.push_back(h + 2 * padY);
            total += heights.back();
        }
        TBlock b;
        b.Height = total;
        b.SpaceAfter = spaceAfter;
        b.Draw = [rows = std::move(rows), heights, x, normal, bold, padX, padY, swatchSize = X(2.8),
                  swatchSpace = X(4.5)](QCPPainter& p, const QRectF& at) {
            double y = at.top();
            const QPen grid(QColor(150, 150, 150), 0);
            for (size_t k = 0; k < rows.size(); ++k) {
                const TRow& r = rows[k];
                const double h = heights[k];
                if (r.Shaded) p.fillRect(QRectF(at.left(), y, x.back(), h), QColor(232, 236, 241));
                size_t col = 0;
                for (const TCell& c : r.Cells) {
                    const size_t end = std::min(x.size() - 1, col + size_t(c.Span));
                    QRectF cell(at.left() + x[col], y, x[end] - x[col], h);
                    p.setPen(grid);
                    p.setBrush(Qt::NoBrush);
                    p.drawRect(cell);
                    QRectF text = cell.adjusted(padX, padY, -padX, -padY);
                    if (c.Swatch.isValid()) {
                        const QRectF square(text.left(), text.center().y() - swatchSize / 2, swatchSize,
                                            swatchSize);
                        p.fillRect(square, c.Swatch);
                        p.drawRect(square);
                        text.setLeft(text.left() + swatchSpace);
                    }
                    p.setPen(Qt::black);
                    p.setFont(c.Bold ? bold : normal);
                    QString lines = c.Text;
                    lines.replace(QLatin1Char('\n'), QChar::LineSeparator);
                    p.drawText(text, lines, Wrapping(Qt::AlignLeft | Qt::AlignVCenter));
                    col = end;
                }
                y += h;
            }
        };
        return b;
    }

    TBlock Text(const QString& text, const QFont& font, double spaceAfter, bool keepWithNext = false) const {
        TBlock b;
        b.Height = TextHeight(font, FContent.width(), text);
        b.SpaceAfter = spaceAfter;
        b.KeepWithNext = keepWithNext;
        b.Draw = [text, font](QCPPainter& p, const QRectF& at) {
            p.setPen(Qt::black);
            p.setFont(font);
            p.drawText(at, text, Wrapping(Qt::AlignLeft | Qt::AlignTop));
        };
        return b;
    }

private:
    QPaintDevice& FDevice;
    double FDpmX, FDpmY; // device pixels per millimetre
    QRectF FPage, FContent;
};

} // namespace

// ====================================================================== figures

TReport::TReport(const TDataBase& db, QCustomPlot* chart, const TReportOptions& options)
    : FActivationEnergy(options.ActivationEnergy) {
    const TAxisState& bottom = db.Axis_Get(axBottom);
    FCompany = ZebSettings().ValReportFirma;
    FFileName = db.FileName();
    FPrinted = zeb::FormatTime(zeb::TTimeKind::DateTime, NowSince2000());

    QStringList loggers;
    for (int i = 0; i < db.Curve_Count(); ++i) {
        const QString name = db.Curve_LoggernameGet(i);
        if (!name.isEmpty() && !loggers.contains(name)) loggers << name;
    }
    const QString range = TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, bottom.Min) + QStringLiteral(" \u2013 ") +
                          TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, bottom.Max) + QStringLiteral(" (") +
                          DayDurationText(bottom.Max - bottom.Min) + QLatin1Char(')');
    FHeader = {
        {Txt(TTextId::ReportCompany), FCompany},
        {Txt(TTextId::ReportFile), QDir::toNativeSeparators(FFileName)},
        {Txt(TTextId::ReportCreator), db.Creator()},
        {Txt(TTextId::ReportZebName), db.ZebName()},
        {Txt(TTextId::ReportLoggers), loggers.join(QStringLiteral(", "))},
        // Only a recording that states its start has one.
        {Txt(TTextId::ReportStartTime),
         db.StartTimeText().isEmpty() ? QString() : zeb::FormatTime(zeb::TTimeKind::DateTime, db.StartTime() * zeb::kSecondsPerDay)},
        {Txt(TTextId::ReportTimeRange), range},
        {Txt(TTextId::ReportPrinted), FPrinted},
    };

    const QStringList modes = zeb::TxtList(TTextId::ReportLimitModes);
    for (int i = 0; i < db.Curve_Count(); ++i) {
        if (!db.Curve_IsActive(i)) continue;
        const TCurveData& d = db.Data(i);
        const auto summary = db.Summary(i);
        const QString format = db.Curve_FormatGet(i);
        const QString unit = db.Curve_UnitGet(i).trimmed();
        TFigureOptions want;
        want.Finite = want.ExtremeTimes = want.Step = want.Violations = true;
        if (IsCelsius(unit)) want.MktEnergy = options.ActivationEnergy;
        const TCurveFigures f = CurveFigures(d, summary.get(), LimitRuleOf(db.Settings().Curves[i]), bottom.Min,
                                             bottom.Max, want);
        const TRangeStats& st = f.Finite;
        // A value as the views write it, with the unit a reader needs to sign it.
        auto value = [&](double v) { return FigureText::WithUnit(FigureText::Value(v, format), unit); };
        auto timeOf = [&](qint64 k) { return k < 0 ? QString() : TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, d.Time(k)); };

        TReportCurve c;
        c.Curve = i;
        c.Name = db.Curve_NameUnitGet(i);
        if (db.ExtView() > 0 && !db.Curve_LoggernameGet(i).isEmpty())
            c.Name += QStringLiteral(" (") + db.Curve_LoggernameGet(i) + QLatin1Char(')');
        c.Color = db.Curve_ColorGet(i);
        c.CalcCount = st.CalcCount();
        c.Values = QString::number(st.Count + st.Infinite);
        if (std::isfinite(f.Step))
            c.Values += QStringLiteral(" (") + zeb::TxtFmt(TTextId::ReportInterval, {IntervalText(f.Step)}) + QLatin1Char(')');
        if (st.Infinite > 0) c.Infinite = zeb::TxtFmt(TTextId::ReportInfinite, {QString::number(st.Infinite)});
        if (c.CalcCount > 0) {
            c.Min = value(st.Min);
            c.MinTime = timeOf(f.MinIndex);
            c.Max = value(st.Max);
            c.MaxTime = timeOf(f.MaxIndex);
            c.Average = value(st.Average);
            c.Span = value(std::abs(st.Max - st.Min));
            if (std::isfinite(f.Mkt)) c.Mkt = value(f.Mkt);
        }
        if (c.CalcCount > 1) c.StdDev = FigureText::WithUnit(FigureText::StdDev(st.StdDev), unit);

        c.LimitMode = f.HasLimits() ? f.Limits.Mode : 0;
        c.Limits = zeb::FormatText(modes.value(c.LimitMode), {value(f.Limits.L1), value(f.Limits.L2)});
        c.LimitValid = f.Times.Valid;
        if (f.Times.Valid) {
            c.Out = DayDurationText(f.Times.Out);
            c.In = DayDurationText(f.Times.In);
        }
        if (c.LimitMode > 0) {
            c.Violations = f.Violations.Count;
            c.FirstViolation = timeOf(f.Violations.FirstIndex);
        }
        FCurves.push_back(std::move(c));
    }

    // Only the notices of the range, numbered in time order as the chart's marks.
    const TMseTimeTextList& notices = db.Settings().TimeTexts;
    const std::vector<int> inRange = NoticesInRange(notices, bottom.Min, bottom.Max);
    for (size_t k = 0; k < inRange.size(); ++k) {
        const TMseTimeText& n = notices[inRange[k]];
        QString text = n.Text.Value;
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        FNotices.push_back({int(k) + 1, TDataBase::GetXValueStr(zeb::TTimeKind::DateTime, n.X.Value), text});
    }

    if (chart) {
        FChartWidget = chart;
        // Its shape on screen; one never laid out gets a shape of its own.
        FChartSize = chart->size();
        if (FChartSize.width() < 300 || FChartSize.height() < 150) FChartSize = QSize(1000, 600);
    }
}

// ====================================================================== pages

void TReport::PreparePage(QPagedPaintDevice& device) {
    device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    // The chart's resolution: it stays vectors (text and lines are not resolution-bound in a
    // PDF or a preview).
    if (auto* pdf = dynamic_cast<QPdfWriter*>(&device)) pdf->setResolution(96);
    if (auto* printer = dynamic_cast<QPrinter*>(&device)) printer->setResolution(96);
}

bool TReport::Print(QPagedPaintDevice& device) const {
    QCPPainter p;
    if (!p.begin(&device)) return false;
    const TPageLayout L(device);
    const double gap = L.Y(5);

    std::vector<TBlock> blocks;
    blocks.push_back(L.Text(Txt(TTextId::ReportTitle), TPageLayout::Font(16, true), L.Y(4)));
    {
        std::vector<TRow> rows;
        for (const auto& [label, value] : FHeader)
            rows.push_back({{TCell{label, 1, true}, TCell{value}}, false});
        blocks.push_back(L.Table(std::move(rows), {0.3, 0.7}, gap));
    }
    if (FChartWidget) {
        double w = L.Content().width();
        double h = w * FChartSize.height() / FChartSize.width();
        if (h > L.Y(kMaxChartHeight)) {
            h = L.Y(kMaxChartHeight);
            w = h * FChartSize.width() / FChartSize.height();
        }
        TBlock b;
        b.Height = h;
        b.SpaceAfter = gap;
        // The chart is laid out as on a screen of 96 pixels an inch, the resolution its fonts are
        // measured in. On a device of that resolution (the report's own PDF, the preview) it is
        // drawn as vectors; elsewhere (a printer that keeps its own resolution) as a picture of
        // up to 300 dots an inch.
        const double scale = device.logicalDpiX() / 96.0;
        b.Draw = [chart = FChartWidget, w, h, scale](QCPPainter& p, const QRectF& at) {
            if (!chart) return;
            const TDocumentLook look(qobject_cast<TZebChart*>(chart.data()));
            const QRectF target(at.left() + (at.width() - w) / 2, at.top(), w, h);
            const int lw = qRound(w / scale), lh = qRound(h / scale);
            if (std::abs(scale - 1.0) < 0.01) {
                p.save();
                p.setClipRect(target);
                p.translate(target.topLeft());
                const QCPPainter::PainterModes modes = p.modes();
                p.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching);
                chart->toPainter(&p, lw, lh);
                p.setModes(modes);
                p.restore();
            } else {
                const QPixmap picture = chart->toPixmap(lw, lh, std::min(scale, 300.0 / 96.0));
                p.drawPixmap(target, picture, QRectF(picture.rect()));
            }
            p.setPen(QPen(QColor(150, 150, 150), 0));
            p.setBrush(Qt::NoBrush);
            p.drawRect(target);
        };
        blocks.push_back(std::move(b));
    }

    if (!FCurves.empty())
        blocks.push_back(L.Text(Txt(TTextId::ReportChannels), TPageLayout::Font(12, true), L.Y(2), true));
    const std::vector<double> columns{0.5, 0.2, 0.3};
    for (const TReportCurve& c : FCurves) {
        std::vector<TRow> rows;
        rows.push_back({{TCell{c.Name, 3, true, FromBgr(c.Color)}}, true});
        if (c.CalcCount == 0) {
            rows.push_back({{TCell{Txt(TTextId::ReportNoValues), 3}}, false});
            if (!c.Infinite.isEmpty()) rows.push_back({{TCell{c.Infinite, 3}}, false});
        } else {
            auto row = [&rows](const QString& label, const QString& value, const QString& time = QString()) {
                rows.push_back({{TCell{label}, TCell{value}, TCell{time}}, false});
            };
            // A value with words takes the time's column too.
            auto wide = [&rows](const QString& label, const QString& value) {
                rows.push_back({{TCell{label}, TCell{value, 2}}, false});
            };
            rows.push_back(
                {{TCell{Txt(TTextId::ViewColumnParameter), 1, true},
                  TCell{Txt(TTextId::ViewColumnValue), 1, true}, TCell{Txt(TTextId::ColumnTime), 1, true}},
                 false});
            wide(Txt(TTextId::ReportValues), c.Values);
            if (!c.Infinite.isEmpty()) rows.push_back({{TCell{c.Infinite, 3}}, false});
            row(Txt(TTextId::ReportMinimum), c.Min, c.MinTime);
            row(Txt(TTextId::ReportMaximum), c.Max, c.MaxTime);
            row(Txt(TTextId::ReportAverage), c.Average);
            row(Txt(TTextId::ReportStdDev), c.StdDev);
            row(Txt(TTextId::ReportSpan), c.Span);
            if (!c.Mkt.isEmpty())
                row(zeb::TxtFmt(TTextId::ReportMkt,
                                {zeb::FormatFloat(QStringLiteral("0.000"), FActivationEnergy)}),
                    c.Mkt);
            wide(Txt(TTextId::ReportLimitMode), c.Limits);
            if (c.LimitValid) {
                row(Txt(TTextId::ReportOutOfLimits), c.Out);
                row(Txt(TTextId::ReportWithinLimits), c.In);
            }
            if (c.LimitMode > 0)
                row(Txt(TTextId::ReportViolations), QString::number(c.Violations), c.FirstViolation);
        }
        blocks.push_back(L.Table(std::move(rows), columns, L.Y(4)));
    }

    if (!FNotices.empty()) {
        blocks.push_back(L.Text(Txt(TTextId::ReportNotices), TPageLayout::Font(12, true), L.Y(2), true));
        const std::vector<double> noticeColumns{0.08, 0.27, 0.65};
        TBlock head = L.Table({{{TCell{Txt(TTextId::ReportNoticeNumber), 1, true},
                                 TCell{Txt(TTextId::ColumnTime), 1, true}, TCell{Txt(TTextId::ReportNoticeText), 1, true}},
                                true}},
                              noticeColumns, 0.0);
        head.KeepWithNext = true;
        blocks.push_back(std::move(head));
        // A row each, so a long list runs on over pages.
        for (const TNotice& n : FNotices)
            blocks.push_back(
                L.Table({{{TCell{QString::number(n.Number)}, TCell{n.TimeText}, TCell{n.Text}}, false}}, noticeColumns, 0.0));
        blocks.back().SpaceAfter = L.Y(4);
    }

    {
        // Lines to sign, with their labels beneath.
        const QFont font = TPageLayout::Font(9);
        const QString labels[2] = {Txt(TTextId::ReportCheckedBy), Txt(TTextId::ReportDate)};
        TBlock b;
        const double line = L.Y(14);
        b.Height = line + L.Y(1) + L.TextHeight(font, L.Content().width(), labels[0]);
        b.Draw = [labels, font, line, space = L.Y(1)](QCPPainter& p, const QRectF& at) {
            const double w = at.width() * 0.42;
            for (int k = 0; k < 2; ++k) {
                const double x = at.left() + k * at.width() * 0.58;
                p.setPen(QPen(Qt::black, 0));
                p.drawLine(QPointF(x, at.top() + line), QPointF(x + w, at.top() + line));
                p.setFont(font);
                p.drawText(QRectF(x, at.top() + line + space, w, at.height()), Qt::AlignLeft | Qt::AlignTop,
                           labels[k]);
            }
        };
        // Well apart from the figures above.
        if (!blocks.empty()) blocks.back().SpaceAfter = std::max(blocks.back().SpaceAfter, L.Y(10));
        blocks.push_back(std::move(b));
    }

    // Pages: a block that does not fit goes to the next page, a heading with it.
    struct TPlaced {
        const TBlock* Block;
        double Y;
    };
    std::vector<std::vector<TPlaced>> pages(1);
    const double top = L.Content().top(), bottom = L.Content().bottom();
    double y = top;
    for (size_t k = 0; k < blocks.size(); ++k) {
        double need = blocks[k].Height;
        if (blocks[k].KeepWithNext && k + 1 < blocks.size())
            need += blocks[k].SpaceAfter + blocks[k + 1].Height;
        if (y + need > bottom && y > top) {
            pages.emplace_back();
            y = top;
        }
        pages.back().push_back({&blocks[k], y});
        y += blocks[k].Height + blocks[k].SpaceAfter;
    }
    FPageCount = int(pages.size());

    const QFont small = TPageLayout::Font(8), smallBold = TPageLayout::Font(8, true);
    const QString title = Txt(TTextId::ReportTitle);
    const QString file = QFileInfo(FFileName).fileName();
    for (size_t n = 0; n < pages.size(); ++n) {
        if (n > 0 && !device.newPage()) return false;
        // The running header: company and title, a rule beneath.
        const double left = L.X(kMarginLeft), right = L.Page().width() - L.X(kMarginRight);
        const QRectF header(left, L.Y(kMarginTop), right - left, L.Y(kHeaderBand - 4));
        p.setPen(Qt::black);
        p.setFont(smallBold);
        p.drawText(header, Qt::AlignLeft | Qt::AlignTop, FCompany);
        p.setFont(small);
        p.drawText(header, Qt::AlignRight | Qt::AlignTop, title);
        p.setPen(QPen(QColor(120, 120, 120), 0));
        p.drawLine(QPointF(left, header.bottom()), QPointF(right, header.bottom()));
        // The running footer: file and page number over a rule.
        const double rule = L.Page().height() - L.Y(kMarginBottom + kFooterBand - 3);
        p.drawLine(QPointF(left, rule), QPointF(right, rule));
        const QRectF footer(left, rule + L.Y(1), right - left, L.Y(kFooterBand - 3));
        p.setPen(Qt::black);
        p.setFont(small);
        // A long name gives way to the page number, shortened in its middle.
        const QString page = zeb::TxtFmt(TTextId::ReportPage, {QString::number(n + 1), QString::number(pages.size())});
        const QFontMetricsF fm(small, &device);
        const double room = footer.width() - fm.horizontalAdvance(page) - L.X(5);
        p.drawText(footer, Qt::AlignLeft | Qt::AlignTop, fm.elidedText(file, Qt::ElideMiddle, room));
        p.drawText(footer, Qt::AlignRight | Qt::AlignTop, page);
        for (const TPlaced& placed : pages[n])
            placed.Block->Draw(
                p, QRectF(L.Content().left(), placed.Y, L.Content().width(), placed.Block->Height));
    }
    return p.end();
}

bool TReport::SavePdf(const QString& fileName) const {
    QSaveFile out(fileName);
    if (!out.open(QIODevice::WriteOnly)) return false;
    {
        QPdfWriter pdf(&out);
        PreparePage(pdf);
        pdf.setTitle(Txt(TTextId::ReportTitle) + QStringLiteral(" - ") + QFileInfo(FFileName).fileName());
        pdf.setCreator(QStringLiteral("ZEB Viewer"));
        if (!Print(pdf)) {
            out.cancelWriting();
            return false;
        }
    }
    return out.commit();
}

bool WriteReportPdf(const TDataBase& db, QCustomPlot* chart, const QString& fileName,
                    const TReportOptions& options) {
    return TReport(db, chart, options).SavePdf(fileName);
}
