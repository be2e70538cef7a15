#include "ui/Report.h"

#include "analysis/Figures.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/ChartTexts.h"
#include "ui/CurvePlottable.h" // the chart library, as every unit includes it
#include "ui/DocumentPages.h"
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


// A sampling interval: seconds below an hour, else days and hours.
QString IntervalText(double seconds) {
    if (seconds < 3600.0) return zeb::FormatFloat(QStringLiteral("0.###"), seconds) + QStringLiteral(" s");
    return DayDurationText(seconds);
}

QColor FromBgr(int bgr) {
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}

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

    const int pages = PaintPages(p, device, L, blocks, FCompany, Txt(TTextId::ReportTitle),
                                 QFileInfo(FFileName).fileName());
    if (pages < 0) return false;
    FPageCount = pages;
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
