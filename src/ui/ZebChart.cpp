#include "ui/ZebChart.h"

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/ChartTexts.h"
#include "ui/CrossHair.h"
#include "ui/CurvePlottable.h"
#include "ui/ZoomAndScroll.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>

#include <cmath>

using zeb::TTextId;
using zeb::Txt;

// ====================================================================== time texts

namespace ChartText {

bool IsRelativePattern(const QString& pattern) {
    if (pattern.isEmpty() || !(pattern.contains(QLatin1Char(':')) || pattern.contains(QLatin1Char('+'))))
        return false;
    return std::all_of(pattern.begin(), pattern.end(), [](QChar c) {
        return c == QLatin1Char('0') || c == QLatin1Char('+') || c == QLatin1Char(':') ||
               c == QLatin1Char('.');
    });
}

QString RelativeTime(double seconds, const QString& pattern) {
    if (!std::isfinite(seconds)) return {};
    if (seconds < 0) {
        const QString t = RelativeTime(-seconds, pattern);
        const bool zero = std::none_of(
            t.begin(), t.end(), [](QChar c) { return c >= QLatin1Char('1') && c <= QLatin1Char('9'); });
        return zero ? t : QLatin1Char('-') + t;
    }
    const qsizetype plus = pattern.indexOf(QLatin1Char('+'));
    const QString dayPart = plus >= 0 ? pattern.left(plus) : QString();
    QString rest = plus >= 0 ? pattern.mid(plus + 1) : pattern;
    const qsizetype dot = rest.indexOf(QLatin1Char('.'));
    const int fracDigits = dot >= 0 ? int(std::min<qsizetype>(3, rest.size() - dot - 1)) : 0;
    if (dot >= 0) rest = rest.left(dot);
    const QStringList groups = rest.split(QLatin1Char(':'));
    // Units of the groups, largest first: after a day part hours come first, else the
    // groups end with seconds.
    static constexpr qint64 kUnits[] = {3600, 60, 1};
    const int n = int(std::min<qsizetype>(groups.size(), 3));
    const int firstUnit = plus >= 0 ? 0 : 3 - n;
    const qint64 smallest = kUnits[firstUnit + n - 1];
    const qint64 fracScale = smallest == 1 ? qint64(std::pow(10, fracDigits)) : 1;
    // Whole steps of the smallest shown unit (or of its fraction). A tick a hair below a whole
    // step (times far from 0 lose digits) still shows that step.
    const double steps = seconds * double(fracScale) / double(smallest);
    const double nearest = std::round(steps);
    const auto total = qint64(std::abs(steps - nearest) < 1e-3 ? nearest : std::floor(steps));
    qint64 whole = total / fracScale * smallest; // seconds
    const qint64 frac = total % fracScale;

    QString out;
    if (plus >= 0) {
        const qint64 days = whole / 86400;
        whole %= 86400;
        out += QStringLiteral("%1").arg(days, int(dayPart.size()), 10, QLatin1Char('0'));
        out += QLatin1Char('+');
    }
    for (int g = 0; g < n; ++g) {
        const qint64 unit = kUnits[firstUnit + g];
        const qint64 v = g == 0 ? whole / unit : whole / unit % (kUnits[firstUnit + g - 1] / unit);
        if (g > 0) out += QLatin1Char(':');
        out += QStringLiteral("%1").arg(v, int(groups[g].size()), 10, QLatin1Char('0'));
    }
    if (fracDigits > 0 && smallest == 1)
        out += zeb::FormatSettings().DecimalSeparator +
               QStringLiteral("%1").arg(frac, fracDigits, 10, QLatin1Char('0'));
    return out;
}

QString Duration(double seconds) {
    const double a = std::abs(seconds);
    const QString t =
        RelativeTime(a, a >= 86400.0 ? QStringLiteral("0+00:00:00.000") : QStringLiteral("00:00:00.000"));
    return seconds < 0 ? QLatin1Char('-') + t : t;
}

bool IsDatePattern(const QString& pattern) {
    if (IsRelativePattern(pattern)) return false;
    for (QChar c : pattern)
        if (QStringLiteral("yMdhHmsn").contains(c)) return true;
    return false;
}

QString DatePattern(const QString& pattern) {
    if (pattern.contains(QLatin1Char('M'))) return pattern;
    QString out = pattern;
    QChar previous; // the letter of the previous run of pattern letters
    for (qsizetype i = 0; i < out.size();) {
        const QChar c = out[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            const qsizetype end = out.indexOf(c, i + 1);
            i = end < 0 ? out.size() : end + 1;
            continue;
        }
        qsizetype j = i;
        while (j < out.size() && out[j] == c)
            ++j;
        if (c == QLatin1Char('n')) {
            out.replace(i, j - i, QString(j - i, QLatin1Char('m')));
        } else if (c == QLatin1Char('m')) {
            // Minutes right after hours or right before seconds, months elsewhere.
            qsizetype k = j;
            while (k < out.size() && !out[k].isLetter())
                ++k;
            const bool minutes =
                previous.toLower() == QLatin1Char('h') || (k < out.size() && out[k] == QLatin1Char('s'));
            if (!minutes) out.replace(i, j - i, QString(j - i, QLatin1Char('M')));
        }
        if (c.isLetter()) previous = c;
        i = j;
    }
    return out;
}

double Origin(const TDataBase& db) {
    if (db.IsLoading()) return 0.0; // the loader is still writing the samples
    double min = 0.0, max = 0.0;
    db.GetXMinXMax(min, max, false);
    return min;
}

QString XText(const TDataBase& db, zeb::TTimeKind kind, double x, const QString& numberFormat) {
    switch (db.Axis_Get(axBottom).XType) {
    case TTimeAxisType::Seconds:
        return zeb::FormatFloat(numberFormat, x - Origin(db));
    case TTimeAxisType::TimeFromStart: {
        const bool ms = kind == zeb::TTimeKind::DateTimeMs || kind == zeb::TTimeKind::TimeMs;
        return RelativeTime(x - Origin(db),
                            ms ? QStringLiteral("0+00:00:00.000") : QStringLiteral("0+00:00:00"));
    }
    case TTimeAxisType::DateTime:
        break;
    }
    return TDataBase::GetXValueStr(kind, x);
}

QString XSpanText(const TDataBase& db, double dx, const QString& numberFormat) {
    return db.Axis_Get(axBottom).XType == TTimeAxisType::Seconds ? zeb::FormatFloat(numberFormat, dx) : Duration(dx);
}

} // namespace ChartText

// ====================================================================== tickers and legend

namespace {

// The additional flow channel's colour: apart from the curves' palette.
const QColor kDerivedColor(230, 110, 0);

QColor ColorOf(int colorRef) {
    return QColor(colorRef & 0xFF, (colorRef >> 8) & 0xFF, (colorRef >> 16) & 0xFF);
}

// The line styles of curves and grids, by their index in the settings.
constexpr Qt::PenStyle kLineStyles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
// Legend entries side by side in a line above or below the plot.
constexpr int kLegendColumns = 4;

QFont FontOf(const TFontState& f) {
    QFont font(f.Name, std::max(1, f.Size));
    font.setBold(f.Style & 1);
    font.setItalic(f.Style & 2);
    return font;
}

// Ticks of the time axis: nice steps of seconds, minutes, hours and days, counted from the
// recording's start for the axis types that begin at 0.
class TTimeTicker : public QCPAxisTicker {
public:
    explicit TTimeTicker(const TZebChart* chart, const TAxisState& state, double origin)
        : FChart(chart), FType(state.XType), FInc(state.Inc) {
        setTickOrigin(FType == TTimeAxisType::DateTime ? 0.0 : origin); // date ticks fall on midnight
    }

protected:
    double getTickStep(const QCPRange& range) override {
        // As many ticks as there is room for, also when a picture is made at another size. The
        // axis rect is laid out only after the ticks, so the chart's size has to do.
        mTickCount = std::clamp((FChart->viewport().width() - 250) / 150, 3, 10);
        if (FInc > 0 && range.size() / FInc <= 200) return FStep = FInc;
        if (FType == TTimeAxisType::Seconds) return FStep = QCPAxisTicker::getTickStep(range);
        static const QVector<double> kSteps = {0.001, 0.002, 0.005, 0.01,   0.02,   0.05,   0.1,  0.2,
                                               0.5,   1,     2,     5,      10,     15,     30,   60,
                                               120,   300,   600,   900,    1800,   3600,   7200, 10800,
                                               21600, 43200, 86400, 172800, 604800, 1209600};
        const double target = range.size() / (mTickCount + 1e-10);
        if (target > kSteps.last()) return FStep = QCPAxisTicker::getTickStep(range / 86400.0) * 86400.0;
        return FStep = pickClosest(target, kSteps);
    }
    int getSubTickCount(double tickStep) override {
        if (FType == TTimeAxisType::Seconds) return QCPAxisTicker::getSubTickCount(tickStep);
        for (double d : {5.0, 4.0, 3.0, 2.0}) {
            const double sub = tickStep / d;
            if (std::abs(sub - std::round(sub)) < 1e-9 || sub < 1.0) return int(d) - 1;
        }
        return 0;
    }
    QString getTickLabel(double tick, const QLocale&, QChar, int) override {
        return FChart->TimeAxisLabel(tick, FStep);
    }

private:
    const TZebChart* FChart;
    TTimeAxisType FType;
    double FInc;
    double FStep = 1.0;
};

// Ticks of a value axis in the axis's number format, at a fixed increment when one is set.
class TValueTicker : public QCPAxisTicker {
public:
    TValueTicker(const QCPAxis* axis, const QString& format, double inc)
        : FAxis(axis), FFormat(format), FInc(inc) {}

protected:
    double getTickStep(const QCPRange& range) override {
        mTickCount = std::clamp((FAxis->parentPlot()->viewport().height() - 120) / 70, 3, 10);
        return FStep = (FInc > 0 && range.size() / FInc <= 200) ? FInc : QCPAxisTicker::getTickStep(range);
    }
    QString getTickLabel(double tick, const QLocale& locale, QChar formatChar, int precision) override {
        if (std::abs(tick) < FStep * 1e-9) tick = 0.0; // no "-0.000" from rounding noise
        if (FFormat.isEmpty()) return QCPAxisTicker::getTickLabel(tick, locale, formatChar, precision);
        return zeb::FormatFloat(FFormat, tick);
    }

private:
    const QCPAxis* FAxis;
    QString FFormat;
    double FInc;
    double FStep = 1.0;
};

// A legend entry of a curve: greyed while the curve is hidden, and in the detailed legend
// with the curve's logger name on a second line.
class TCurveLegendItem : public QCPPlottableLegendItem {
public:
    TCurveLegendItem(QCPLegend* legend, TCurvePlottable* plottable, int curve, const QString& logger)
        : QCPPlottableLegendItem(legend, plottable), FCurve(curve), FLogger(logger) {}
    int Curve() const { return FCurve; }

protected:
    void draw(QCPPainter* painter) override {
        if (!mPlottable) return;
        const QFont font = getFont();
        const QSize icon = mParentLegend->iconSize();
        const int pad = mParentLegend->iconTextPadding();
        const QFontMetrics fm(font);
        const QRect textRect = fm.boundingRect(0, 0, 0, icon.height(), Qt::TextDontClip, mPlottable->name());
        const int line = std::max(textRect.height(), icon.height());
        painter->setFont(font);
        painter->setPen(mPlottable->visible() ? getTextColor() : QColor(Qt::gray));
        painter->drawText(mRect.x() + icon.width() + pad, mRect.y(), textRect.width(), line, Qt::TextDontClip,
                          mPlottable->name());
        if (!FLogger.isEmpty()) {
            QFont small = font;
            small.setPointSizeF(std::max(1.0, font.pointSizeF() - 1));
            painter->setFont(small);
            painter->setPen(QColor(Qt::darkGray));
            painter->drawText(mRect.x() + icon.width() + pad - 2, mRect.y() + line, mRect.width(),
                              QFontMetrics(small).height(), Qt::TextDontClip, FLogger);
        }
        const QRect iconRect(QPoint(mRect.x(), mRect.y() + (line - icon.height()) / 2), icon);
        painter->save();
        painter->setClipRect(iconRect, Qt::IntersectClip);
        if (mPlottable->visible()) static_cast<const TCurvePlottable*>(mPlottable)->Icon(painter, iconRect);
        painter->restore();
    }
    QSize minimumOuterSizeHint() const override {
        QSize s = QCPPlottableLegendItem::minimumOuterSizeHint();
        if (!FLogger.isEmpty()) {
            QFont small = getFont();
            small.setPointSizeF(std::max(1.0, small.pointSizeF() - 1));
            const QFontMetrics fm(small);
            s.rheight() += fm.height();
            s.setWidth(
                std::max(s.width(), mParentLegend->iconSize().width() + mParentLegend->iconTextPadding() +
                                        fm.horizontalAdvance(FLogger) + mMargins.left() + mMargins.right()));
        }
        return s;
    }

private:
    int FCurve;
    QString FLogger;
};

} // namespace

// ====================================================================== chart

TZebChart::TZebChart(TDataBase* db, QWidget* parent) : QCustomPlot(parent), FDb(db) {
    setObjectName(QStringLiteral("ZEBChart"));
    setBackground(Qt::white);
    setInteractions(QCP::Interactions()); // zoom and pan are ours
    setSelectionTolerance(6);
    setAutoAddPlottableToLegend(false); // our own legend entries

    // Rows: title, start time and logger name, plot with the legend beside it, foot.
    FTitle = new QCPTextElement(this);
    FFoot = new QCPTextElement(this);
    FStartText = new QCPTextElement(this);
    FNameText = new QCPTextElement(this);
    FStartText->setTextFlags(Qt::AlignLeft | Qt::AlignVCenter);
    FNameText->setTextFlags(Qt::AlignRight | Qt::AlignVCenter);
    // Grids learn their plot when they enter the layout; fill them only after that.
    QCPAxisRect* rect = axisRect();
    plotLayout()->take(rect);
    plotLayout()->simplify();
    FInfoRow = new QCPLayoutGrid;
    FMainRow = new QCPLayoutGrid;
    auto* legendColumn = FLegendColumn = new QCPLayoutGrid;
    plotLayout()->addElement(0, 0, FInfoRow);
    plotLayout()->addElement(1, 0, FMainRow);
    FInfoRow->addElement(0, 0, FStartText);
    FInfoRow->addElement(0, 1, FNameText);
    FInfoRow->setMargins(QMargins(12, 0, 12, 0));
    FMainRow->addElement(0, 0, rect);
    FMainRow->addElement(0, 1, legendColumn);
    FMainRow->setColumnStretchFactor(1, 0.001);
    FMainRow->setColumnSpacing(8);
    // The legend keeps its own height at the top of its column.
    rect->insetLayout()->take(legend);
    legendColumn->addElement(0, 0, legend);
    legendColumn->addElement(1, 0, new QCPLayoutElement(this));
    legendColumn->setRowStretchFactor(0, 0.001);
    legendColumn->setRowStretchFactor(1, 1.0);
    legendColumn->setAutoMargins(QCP::msNone);
    legendColumn->setMargins(QMargins(0, 0, 6, 0));
    legend->setMargins(QMargins(6, 4, 6, 4));
    legend->setVisible(false);
    // More curves than the legend has room for: it shows a window of them and scrolls.
    FLegendBar = new QScrollBar(Qt::Vertical, this);
    FLegendBar->setObjectName(QStringLiteral("LegendScrollBar"));
    FLegendBar->hide();
    connect(FLegendBar, &QScrollBar::valueChanged, this, [this](int first) {
        if (first == FLegendFirst) return;
        FLegendFirst = first;
        FillLegend();
        replot();
    });

    xAxis2->setVisible(false);
    yAxis2->setVisible(false);
    for (QCPAxis* a : {xAxis, yAxis, yAxis2}) {
        a->grid()->setSubGridVisible(false);
        a->setTickLabelPadding(4);
    }
    yAxis2->setTickLabels(true);

    FPanel = new QWidget;
    FPanel->setObjectName(QStringLiteral("panelX"));
    auto* row = new QHBoxLayout(FPanel);
    row->setContentsMargins(4, 2, 4, 2);
    std::array<QLabel*, 6> labels{};
    for (int i = 0; i < 6; ++i) {
        labels[size_t(i)] = new QLabel(FPanel);
        labels[size_t(i)]->setObjectName(QStringLiteral("Label%1").arg(i + 1));
        labels[size_t(i)]->setMinimumWidth(120);
        row->addWidget(labels[size_t(i)], 1);
    }
    FCrossHair = new TCrossHair(FDb, this, labels, this);
    FZoom = new TZoomAndScroll(FCrossHair, this, this);
    FTexts = new TChartTexts(FDb, this, FCrossHair, this);
    connect(FTexts, &TChartTexts::modified, this, &TZebChart::modified);
    connect(FZoom, &TZoomAndScroll::rangesChanged, this, &TZebChart::OnRangesChanged);
    connect(FDb, &TDataBase::samplesReleased, this, &TZebChart::OnSamplesReleased);
    connect(FDb, &TDataBase::samplesReplaced, this, [this] {
        FShowData = true;
        Rebuild();
    });
    connect(FDb, &TDataBase::settingsChanged, this, &TZebChart::Rebuild);
    Rebuild();
}

TZebChart::~TZebChart() {
    // The panel belongs to the main window once it sits in its layout.
    if (FPanel && !FPanel->parent()) delete FPanel.data();
}

QCPAxis* TZebChart::ChartAxis(int axis) const {
    switch (axis) {
    case axLeft:
        return yAxis;
    case axRight:
        return yAxis2;
    default:
        return xAxis;
    }
}

TCurvePlottable* TZebChart::CurvePlottable(int curve) const {
    return curve >= 0 && curve < int(FCurves.size()) ? FCurves[size_t(curve)] : nullptr;
}

QString TZebChart::LegendText(int curve) const {
    const QString nameUnit = TDataBase::AddUnit(FDb->Curve_NameGet(curve), FDb->Curve_UnitGet(curve));
    QString text =
        FDb->ExtView() >= 2 ? FDb->Curve_SNumberGet(curve) + QLatin1Char(',') + nameUnit : nameUnit;
    if (FDb->Curve_isBigDataOn(curve)) text = QStringLiteral("* ") + text;
    return text;
}

QString TZebChart::TimeAxisLabel(double value, double tickStep) const {
    const TAxisState& s = FDb->Axis_Get(axBottom);
    switch (s.XType) {
    case TTimeAxisType::Seconds: {
        double v = value - FOrigin;
        if (std::abs(v) < tickStep * 1e-6) v = 0.0;
        const int decimals = tickStep >= 1 ? 0 : std::min(6, int(std::ceil(-std::log10(tickStep) - 1e-9)));
        QString t = QString::number(v, 'f', decimals);
        return t.replace(QLatin1Char('.'), zeb::FormatSettings().DecimalSeparator);
    }
    case TTimeAxisType::TimeFromStart: {
        QString pattern = s.Format;
        if (!ChartText::IsRelativePattern(pattern)) {
            const QCPRange r = xAxis->range();
            pattern =
                r.upper - FOrigin >= 86400.0 ? QStringLiteral("0+00:00:00") : QStringLiteral("00:00:00");
            if (tickStep < 1.0) pattern += QStringLiteral(".000");
        }
        return ChartText::RelativeTime(value - FOrigin, pattern);
    }
    case TTimeAxisType::DateTime: {
        if (ChartText::IsDatePattern(s.Format))
            return zeb::FormatDateTime(ChartText::DatePattern(s.Format), value);
        // The store's text of the time, date and time of day on two lines.
        QString t = TDataBase::GetXValueStr(tickStep < 1.0 ? zeb::TTimeKind::DateTimeMs : zeb::TTimeKind::DateTime, value);
        const qsizetype blank = t.indexOf(QLatin1Char(' '));
        if (blank >= 0) t[blank] = QLatin1Char('\n');
        return t;
    }
    }
    return {};
}

int TZebChart::LegendCurve(int legendIndex) const {
    const auto* item = dynamic_cast<const TCurveLegendItem*>(legend->item(legendIndex));
    return item ? item->Curve() : -1;
}

int TZebChart::LegendCurveAt(const QPoint& pos) const {
    for (int i = 0; i < legend->itemCount(); ++i)
        if (legend->item(i) && legend->item(i)->outerRect().contains(pos)) return LegendCurve(i);
    return -1;
}

QString TZebChart::ValueAxisTitle(int axis) const {
    const TAxisState& s = FDb->Axis_Get(axis);
    if (!s.Name.isEmpty()) return s.Name;
    // Without a name of its own the axis shows the units of its curves.
    QStringList units;
    for (int i = 0; i < FDb->Curve_Count(); ++i) {
        if (!FDb->Curve_IsActive(i) || FDb->Curve_AxisGet(i) != axis) continue;
        const QString u = FDb->Curve_UnitGet(i);
        if (!u.isEmpty() && !units.contains(u)) units << u;
    }
    return units.isEmpty() ? QString()
                           : QLatin1Char('[') + units.join(QStringLiteral(", ")) + QLatin1Char(']');
}

void TZebChart::Rebuild() {
    clearPlottables();
    legend->clearItems();
    for (TLimitLineItem* item : FLimitItems)
        removeItem(item);
    FLimitItems.clear();
    const int n = FDb->Curve_Count();
    FCurves.assign(size_t(n), nullptr);
    const bool withData = FShowData && !FDb->IsLoading();
    FBuiltGeneration = FDb->SamplesGeneration();

    legend->setFont(FontOf(FDb->General_Get().FontLegend));
    FLegendCurves.clear();
    for (int i = 0; i < n; ++i) {
        const int axis = FDb->Curve_AxisGet(i);
        if (axis != axLeft && axis != axRight) continue;
        auto* p = new TCurvePlottable(xAxis, ChartAxis(axis));
        if (withData) {
            p->SetSource(FDb, i, FDb->Summary(i));
        }
        p->SetReduction(FDb->Curve_isBigDataOn(i));
        p->SetLineType(FDb->Curve_TypeGet(i));
        const std::vector<int>& styles = FDb->Look_Get().CurveStyle;
        const int style = i < int(styles.size()) ? std::clamp(styles[size_t(i)], 0, 3) : 0;
        p->setPen(QPen(ColorOf(FDb->Curve_ColorGet(i)), std::max(1, FDb->Curve_WidthGet(i)), kLineStyles[style]));
        p->setName(LegendText(i));
        p->setVisible(FDb->Curve_IsActive(i));
        FLegendCurves.push_back(i);
        FCurves[size_t(i)] = p;
    }
    // The additional flow channel, on its reference curve's axis while that curve is shown.
    FDerived = nullptr;
    const TCalcKessa& kessa = FDb->CalcKessa();
    if (TCurvePlottable* ref = kessa.Active() ? CurvePlottable(kessa.Curve()) : nullptr; ref && ref->visible()) {
        auto* p = new TCurvePlottable(xAxis, ref->valueAxis());
        if (withData) p->SetSource(FDb, kessa.Curve(), FDb->Summary(kessa.Curve()));
        p->SetTransform(kessa.Factor(), kessa.Offset());
        p->SetReduction(ref->Reduction());
        p->setPen(QPen(kDerivedColor, 2));
        p->setName((ref->Reduction() ? QStringLiteral("* ") : QString()) + TDataBase::AddUnit(kessa.Name(), kessa.Unit()));
        FLegendCurves.push_back(kDerivedEntry);
        FDerived = p;
    }
    FillLegend();

    for (const TLimitLine& l : FDb->LimitLines()) {
        TCurvePlottable* p = CurvePlottable(l.Curve);
        if (!p || !p->visible() || !FDb->Curve_LimitLinesOn(l.Curve)) continue;
        FLimitItems.push_back(
            new TLimitLineItem(this, p->valueAxis(), l.Curve, l.Which, l.Value, p->pen().color()));
    }

    FOrigin = ChartText::Origin(*FDb);
    ApplyAxes(withData);
    ApplyTexts();
    BuildLayout();
    ApplyLook();
    FTexts->Rebuild();
    FCrossHair->Rebind();
    replot();
    Q_EMIT rebuilt();
}

void TZebChart::ApplyAxes(bool withData) {
    const QFont font = FontOf(FDb->General_Get().FontAxes);
    const bool left = FDb->IsUsedAxis(axLeft), right = FDb->IsUsedAxis(axRight);
    yAxis->setVisible(left || !right);
    yAxis2->setVisible(right);
    static constexpr TZoomAndScroll::TAxis kZoomAxis[] = {TZoomAndScroll::zaBottom, TZoomAndScroll::zaLeft,
                                                          TZoomAndScroll::zaRight};
    for (int a = 0; a < 3; ++a) {
        const TAxisState& s = FDb->Axis_Get(a);
        QCPAxis* ax = ChartAxis(a);
        ax->setLabelFont(font);
        ax->setTickLabelFont(font);
        ax->grid()->setVisible(s.Grid);
        if (a == axBottom) {
            ax->setTicker(QSharedPointer<QCPAxisTicker>(new TTimeTicker(this, s, FOrigin)));
            QString title = s.Name;
            if (title.isEmpty())
                title = Txt(TTextId::ColumnTime) + (s.XType == TTimeAxisType::Seconds ? QStringLiteral(" [s]") : QString());
            ax->setLabel(title);
        } else {
            ax->setTicker(QSharedPointer<QCPAxisTicker>(new TValueTicker(ax, s.Format, s.Inc)));
            ax->setLabel(ValueAxisTitle(a));
        }
        FZoom->SetAuto(kZoomAxis[a], s.Auto || !(s.Min < s.Max));
        if (!FZoom->IsAuto(kZoomAxis[a])) ax->setRange(s.Min, s.Max);
    }
    FZoom->ApplyAuto();
    // An automatic axis keeps the range it shows in the store: the configuration page shows it,
    // and switching "Automatic" off starts from there.
    if (withData)
        for (int a = 0; a < 3; ++a) {
            if (!FZoom->IsAuto(kZoomAxis[a])) continue;
            TAxisState& s = FDb->Axis_Get(a);
            s.Min = ChartAxis(a)->range().lower;
            s.Max = ChartAxis(a)->range().upper;
        }
}

void TZebChart::ApplyTexts() {
    const TGeneralState& g = FDb->General_Get();
    FTitle->setText(g.Title);
    FTitle->setFont(FontOf(g.FontTitle));
    FFoot->setText(g.Foot);
    const TChartLook& look = FDb->Look_Get();
    FFoot->setFont(FontOf(look.FootFontSet ? look.FootFont : g.FontTitle));
    const QFont info = FontOf(g.FontLegend);
    FStartText->setFont(info);
    FNameText->setFont(info);
    FStartText->setText(g.ShowTime ? FDb->StartTimeText().join(QLatin1Char('\n')) : QString());
    FNameText->setText(g.ShowName ? FDb->NameText().join(QLatin1Char('\n')) : QString());
}

// What the chart editor set beyond the template.
void TZebChart::ApplyLook() {
    const TChartLook& look = FDb->Look_Get();
    FTitle->setTextColor(ColorOf(look.TitleColor));
    FFoot->setTextColor(ColorOf(look.FootColor >= 0 ? look.FootColor : look.TitleColor));
    setBackground(ColorOf(look.Background));
    axisRect()->setBackground(ColorOf(look.PlotBackground));
    legend->setBorderPen(look.LegendFrame ? QPen(Qt::black) : QPen(Qt::NoPen));
    legend->setVisible(legend->visible() && look.LegendVisible);
    for (int a = 0; a < 3; ++a) {
        QCPAxis* ax = ChartAxis(a);
        if (!look.AxisVisible[a]) ax->setVisible(false);
        // A one-pixel line stays one pixel wide at any resolution.
        const int width = std::clamp(look.GridWidth[a], 1, 5);
        ax->grid()->setPen(QPen(ColorOf(look.GridColor[a]), width == 1 ? 0 : width,
                                kLineStyles[std::clamp(look.GridStyle[a], 0, 3)]));
    }
    PlaceLegend(look.LegendPosition);
}

// The legend's column beside the plot (right or left), or its lines above or below it.
void TZebChart::PlaceLegend(TLegendPosition position) {
    if (position == FLegendPlace) return;
    FLegendPlace = position;
    QCPLayoutElement* rect = axisRect();
    FMainRow->take(rect);
    FMainRow->take(FLegendColumn);
    FMainRow->simplify();
    const bool first = position == TLegendPosition::Left || position == TLegendPosition::Top;
    QCPLayoutElement* const order[2] = {first ? static_cast<QCPLayoutElement*>(FLegendColumn) : rect,
                                        first ? rect : static_cast<QCPLayoutElement*>(FLegendColumn)};
    const bool beside = position == TLegendPosition::Left || position == TLegendPosition::Right;
    for (int k = 0; k < 2; ++k)
        FMainRow->addElement(beside ? 0 : k, beside ? k : 0, order[k]);
    const QList<double> stretch{order[0] == rect ? 1.0 : 0.001, order[1] == rect ? 1.0 : 0.001};
    if (beside) FMainRow->setColumnStretchFactors(stretch);
    else FMainRow->setRowStretchFactors(stretch);
    // Above or below, the entries run in lines across the plot's width.
    legend->setFillOrder(beside ? QCPLayoutGrid::foRowsFirst : QCPLayoutGrid::foColumnsFirst);
    legend->setWrap(beside ? 0 : kLegendColumns);
}

void TZebChart::BuildLayout() {
    const QList<QCPLayoutElement*> present = plotLayout()->elements(false);
    for (QCPLayoutElement* e : std::initializer_list<QCPLayoutElement*>{FTitle, FInfoRow, FMainRow, FFoot})
        if (present.contains(e)) plotLayout()->take(e);
    plotLayout()->simplify();
    int row = 0;
    auto put = [&](QCPLayoutElement* e, bool on) {
        e->setVisible(on);
        if (on) plotLayout()->addElement(row++, 0, e);
    };
    put(FTitle, !FTitle->text().isEmpty());
    const bool info = !FStartText->text().isEmpty() || !FNameText->text().isEmpty();
    put(FInfoRow, info);
    FStartText->setVisible(info);
    FNameText->setVisible(info);
    put(FMainRow, true);
    put(FFoot, !FFoot->text().isEmpty());
    for (int r = 0; r < plotLayout()->rowCount(); ++r)
        plotLayout()->setRowStretchFactor(r, plotLayout()->element(r, 0) == FMainRow ? 1.0 : 0.001);
}

void TZebChart::Refresh() {
    replot();
}

// The legend entries from the first one scrolled to, as many as there is room for.
void TZebChart::FillLegend() {
    legend->clearItems();
    const int n = int(FLegendCurves.size());
    const int rows = std::min(n, FLegendRows);
    FLegendFirst = std::clamp(FLegendFirst, 0, n - rows);
    const bool detailed = FDb->Print_Get().CheckBoxes;
    for (int k = FLegendFirst; k < FLegendFirst + rows; ++k) {
        const int curve = FLegendCurves[size_t(k)];
        if (curve == kDerivedEntry) {
            legend->addItem(new TCurveLegendItem(legend, FDerived, -1, QString()));
            continue;
        }
        legend->addItem(new TCurveLegendItem(legend, FCurves[size_t(curve)], curve,
                                             detailed ? FDb->Curve_LoggernameGet(curve) : QString()));
    }
    legend->setVisible(n > 0 && FDb->Look_Get().LegendVisible);
    const bool scrolls = rows < n && legend->visible();
    const int barWidth = FLegendBar->sizeHint().width();
    FLegendColumn->setMargins(QMargins(0, 0, scrolls ? 8 + barWidth : 6, 0));
    const QSignalBlocker block(FLegendBar);
    FLegendBar->setRange(0, n - rows);
    FLegendBar->setPageStep(std::max(1, rows));
    FLegendBar->setValue(FLegendFirst);
    FLegendBar->setVisible(scrolls);
}

// How many legend entries fit beside the plot: the height the other rows leave, whatever the
// legend itself asks for.
int TZebChart::LegendRowsThatFit() const {
    int height = viewport().height() - plotLayout()->margins().top() - plotLayout()->margins().bottom();
    int rows = 0;
    for (int r = 0; r < plotLayout()->rowCount(); ++r) {
        QCPLayoutElement* e = plotLayout()->element(r, 0);
        if (!e) continue;
        ++rows;
        if (e != FMainRow) height -= e->outerRect().height();
    }
    height -= std::max(0, rows - 1) * plotLayout()->rowSpacing();
    height -= legend->margins().top() + legend->margins().bottom();
    int entry = 0;
    for (int i = 0; i < legend->itemCount(); ++i)
        if (legend->item(i)) entry = std::max(entry, legend->item(i)->minimumOuterSizeHint().height());
    if (entry <= 0) return FLegendRows;
    const int spacing = legend->rowSpacing();
    return std::max(1, (height + spacing) / (entry + spacing));
}

void TZebChart::updateLayout() {
    QCustomPlot::updateLayout();
    // Every drawing lays out first, the window's and any picture's at its own size.
    if (FTexts) FTexts->PlaceBoxes(viewport().size());
    // Above or below the plot every entry is shown; beside it as many as fit, with a scroll bar.
    const bool beside = FLegendPlace == TLegendPosition::Left || FLegendPlace == TLegendPosition::Right;
    const int fit = beside ? LegendRowsThatFit() : std::numeric_limits<int>::max();
    const int n = int(FLegendCurves.size());
    const int rows = fit >= n ? std::numeric_limits<int>::max() : fit;
    if (rows != FLegendRows) {
        FLegendRows = rows;
        FillLegend();
        QCustomPlot::updateLayout();
    }
    if (!FLegendBar->isHidden()) {
        const QRect r = legend->outerRect();
        const int w = FLegendBar->sizeHint().width();
        FLegendBar->setGeometry(r.right() + 3, r.top(), w, r.height());
    }
}

void TZebChart::wheelEvent(QWheelEvent* event) {
    if (!FLegendBar->isHidden() && legend->outerRect().contains(event->position().toPoint())) {
        FLegendWheel += event->angleDelta().y();
        const int notches = FLegendWheel / QWheelEvent::DefaultDeltasPerStep;
        FLegendWheel -= notches * QWheelEvent::DefaultDeltasPerStep;
        FLegendBar->setValue(FLegendBar->value() - notches);
        event->accept();
        return;
    }
    QCustomPlot::wheelEvent(event);
}

// A new recording is being read: nothing of the old samples is drawn, and its notice series
// starts hidden.
void TZebChart::OnSamplesReleased() {
    FShowData = false;
    for (TCurvePlottable* p : FCurves)
        if (p) p->SetSuspended(true);
    FTexts->SetNoticesShown(false);
    replot();
}

void TZebChart::OnRangesChanged() {
    static constexpr TZoomAndScroll::TAxis kZoomAxis[] = {TZoomAndScroll::zaBottom, TZoomAndScroll::zaLeft,
                                                          TZoomAndScroll::zaRight};
    TDataBase::TAxisRange ranges[3];
    for (int a = 0; a < 3; ++a)
        ranges[a] = {FZoom->IsAuto(kZoomAxis[a]), ChartAxis(a)->range().lower, ChartAxis(a)->range().upper};
    Q_EMIT undoAvailable(IsUndoPossible());
    FDb->Axis_SetRanges(ranges);
}

// ---------------------------------------------------------------------- switches

void TZebChart::SetGrid(int axis, bool on, bool store) {
    for (int a = 0; a < 3; ++a) {
        if (axis >= 0 && a != axis) continue;
        ChartAxis(a)->grid()->setVisible(on);
        if (store) FDb->Axis_Get(a).Grid = on;
    }
    replot(rpQueuedReplot);
    Q_EMIT switchesChanged();
}

bool TZebChart::Grid(int axis) const {
    return ChartAxis(axis)->grid()->visible();
}

namespace {
TZoomAndScroll::TAxis ZoomAxis(int axis) {
    return axis == axLeft    ? TZoomAndScroll::zaLeft
           : axis == axRight ? TZoomAndScroll::zaRight
                             : TZoomAndScroll::zaBottom;
}
} // namespace

void TZebChart::SetAxisFixed(int axis, bool fixed) {
    for (int a = 0; a < 3; ++a)
        if (axis < 0 || a == axis) FZoom->SetFixed(ZoomAxis(a), fixed);
    Q_EMIT switchesChanged();
}

bool TZebChart::IsAxisFixed(int axis) const {
    return FZoom->IsFixed(ZoomAxis(axis));
}

void TZebChart::AutoScale() {
    FZoom->Autoscale(true);
    Q_EMIT switchesChanged();
    Q_EMIT modified();
}

void TZebChart::Undo() {
    FZoom->ZoomRedo();
    Q_EMIT undoAvailable(IsUndoPossible());
    Q_EMIT modified();
}

bool TZebChart::IsUndoPossible() const {
    return FZoom->IsZoomRedoPossible();
}

// ---------------------------------------------------------------------- mouse

void TZebChart::mouseDoubleClickEvent(QMouseEvent* event) {
    QCustomPlot::mouseDoubleClickEvent(event);
    if (FMouseTools && FTextMode) FTexts->MouseDoubleClick(event); // Text_OnDblClick
}



bool TZebChart::ElementClick(const QPoint& pos, Qt::KeyboardModifiers modifiers) {
    if (legend->visible() && legend->outerRect().contains(pos)) {
        const int curve = LegendCurveAt(pos);
        if (curve < 0) return false;
        FDb->Curve_SetActive(curve, !FDb->Curve_IsActive(curve));
        Rebuild();
        Q_EMIT modified();
        Q_EMIT legendClicked(curve, modifiers);
        Q_EMIT elementClicked(1);
        return true;
    }
    if (FTitle->visible() && FTitle->outerRect().contains(pos)) {
        Q_EMIT elementClicked(0);
        return true;
    }
    for (int a = 0; a < 3; ++a) {
        QCPAxis* ax = ChartAxis(a);
        if (ax->visible() && ax->selectTest(pos, false) >= 0) {
            Q_EMIT elementClicked(2 + a);
            return true;
        }
    }
    if (plottableAt(pos, false)) {
        Q_EMIT elementClicked(1);
        return true;
    }
    return false;
}

void TZebChart::mousePressEvent(QMouseEvent* event) {
    QCustomPlot::mousePressEvent(event);
    if (!FMouseTools) return;
    if (FTextMode) {
        FTexts->MousePress(event);
        return;
    }
    const QPoint pos = event->position().toPoint();
    const Qt::KeyboardModifiers mods =
        event->modifiers() & (Qt::ShiftModifier | Qt::AltModifier | Qt::ControlModifier);
    if (mods) {
        ElementClick(pos, mods);
        return;
    }
    if (legend->visible() && legend->outerRect().contains(pos)) {
        const int curve = LegendCurveAt(pos);
        if (curve < 0) return;
        if (event->button() == Qt::LeftButton) {
            FDb->Curve_SetLimitLines(curve, !FDb->Curve_LimitLinesOn(curve));
            Rebuild();
            Q_EMIT modified();
            Q_EMIT legendClicked(curve, Qt::NoModifier);
        } else if (event->button() == Qt::RightButton) {
            ElementClick(pos, Qt::NoModifier); // the other button: the series, and its tab
        }
        return;
    }
    // A crosshair is dragged by the left button; no button starts a zoom or a pan on it.
    const int cursor = FCrossHair->CursorAt(pos.x(), pos.y());
    if (cursor >= 0) {
        if (event->button() == Qt::LeftButton) FDragCursor = cursor;
        return;
    }
    if (event->button() == Qt::LeftButton || event->button() == Qt::RightButton) {
        FPanning = event->button() == Qt::RightButton;
        FZoom->MouseDown(event->button(), pos.x(), pos.y());
    }
}

void TZebChart::mouseMoveEvent(QMouseEvent* event) {
    QCustomPlot::mouseMoveEvent(event);
    if (!FMouseTools) return;
    if (FTextMode) {
        FTexts->MouseMove(event);
        return;
    }
    const QPoint pos = event->position().toPoint();
    if (FDragCursor >= 0) {
        FCrossHair->MoveTo(FDragCursor, xAxis->pixelToCoord(pos.x()));
        return;
    }
    if (FZoom->State() != TZoomAndScroll::zsIdle) {
        FZoom->MouseMove(pos.x(), pos.y());
        if (FZoom->State() == TZoomAndScroll::zsMoving)
            Q_EMIT statusText(Txt(TTextId::StatusScrollX) +
                              ChartText::XText(*FDb, zeb::TTimeKind::DateTimeMs, xAxis->range().lower, QStringLiteral("0.000")));
        return;
    }
    setCursor(FCrossHair->IsClicked(pos.x(), pos.y()) ? Qt::SizeHorCursor : Qt::ArrowCursor);
}

void TZebChart::mouseReleaseEvent(QMouseEvent* event) {
    QCustomPlot::mouseReleaseEvent(event);
    if (!FMouseTools) return;
    if (FTextMode) {
        FTexts->MouseRelease(event);
        return;
    }
    const QPoint pos = event->position().toPoint();
    if (FDragCursor >= 0) {
        FDragCursor = -1;
        return;
    }
    if (FZoom->MouseUp(event->button(), pos.x(), pos.y())) Q_EMIT modified();
    if (FPanning && event->button() == Qt::RightButton) {
        FPanning = false;
        Q_EMIT statusText(Txt(TTextId::StatusZoomHint));
    }
}

// ====================================================================== document look

TDocumentLook::TDocumentLook(TZebChart* chart) : FChart(chart) {
    if (!FChart) return;
    FChart->CrossHair()->SetHidden(true);
    const QCPRange time = FChart->xAxis->range();
    std::vector<int> order = NoticesInRange(FChart->DataBase()->Settings().TimeTexts, time.lower, time.upper);
    // A mark for each notice in the range, and no other.
    if (order.empty()) order.push_back(-1);
    FChart->Texts()->NumberNotices(order);
}

TDocumentLook::~TDocumentLook() {
    if (!FChart) return;
    FChart->CrossHair()->SetHidden(false);
    FChart->Texts()->NumberNotices({});
}
