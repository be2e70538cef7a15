#include "ui/ViewFFT.h"

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/ChartPropsDlg.h"
#include "ui/CrossHair.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

using zeb::TTextId;
using zeb::Txt;

namespace {

// Ticks of the input's time axis in seconds from its first point.
class TSecondsTicker : public QCPAxisTicker {
public:
    explicit TSecondsTicker(double origin) : FOrigin(origin) { setTickOrigin(origin); }

protected:
    QString getTickLabel(double tick, const QLocale& locale, QChar formatChar, int precision) override {
        double v = tick - FOrigin;
        if (std::abs(v) < 1e-9) v = 0.0;
        return QCPAxisTicker::getTickLabel(v, locale, formatChar, precision);
    }

private:
    double FOrigin;
};

QCustomPlot* Chart(QWidget* parent, const char* name, QCPTextElement*& title) {
    auto* c = new QCustomPlot(parent);
    c->setObjectName(QLatin1String(name));
    c->setBackground(Qt::white);
    c->setMinimumSize(400, 180);
    c->setNoAntialiasingOnDrag(true);
    for (QCPAxis* a : {c->xAxis, c->yAxis}) {
        a->grid()->setPen(QPen(QColor(200, 200, 200), 0, Qt::DotLine));
        a->grid()->setSubGridVisible(false);
    }
    c->plotLayout()->insertRow(0);
    title = new QCPTextElement(c, QString(), QFont(c->font().family(), 10, QFont::Bold));
    c->plotLayout()->addElement(0, 0, title);
    return c;
}

} // namespace

TfrmViewFFT::TfrmViewFFT(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("frmViewFFT"));
    setWindowTitle(Txt(TTextId::Fft));
    resize(820, 680);

    // FormCreate: both charts without legends, grey grids, their titles.
    ChartInp = Chart(this, "ChartInp", FInputTitle);
    ChartInp->xAxis->setLabel(Txt(TTextId::FftTimeAxis));
    SeriesInp = new TCurvePlottable(ChartInp->xAxis, ChartInp->yAxis);
    SeriesInp->setObjectName(QStringLiteral("SeriesInp"));
    SeriesInp->setPen(QPen(QColor(0, 0, 200), 1));
    FBand = new QCPItemRect(ChartInp);
    FBand->setObjectName(QStringLiteral("ColorBand"));
    FBand->topLeft->setTypeX(QCPItemPosition::ptPlotCoords);
    FBand->topLeft->setTypeY(QCPItemPosition::ptAxisRectRatio);
    FBand->bottomRight->setTypeX(QCPItemPosition::ptPlotCoords);
    FBand->bottomRight->setTypeY(QCPItemPosition::ptAxisRectRatio);
    FBand->setPen(QPen(QColor(200, 120, 0), 2));
    FBand->setBrush(QColor(255, 200, 80, 70));
    FBand->setSelectable(false);
    FBand->setLayer(QStringLiteral("background"));
    ChartInp->installEventFilter(this);
    ChartInp->setMouseTracking(true);

    ChartFFT = Chart(this, "ChartFFT", FFFTTitle);
    FFFTTitle->setText(Txt(TTextId::Fft));
    SeriesFFT = ChartFFT->addGraph();
    SeriesFFT->setObjectName(QStringLiteral("SeriesFFT"));
    SeriesFFT->setPen(QPen(QColor(200, 0, 0), 1));

    auto label = [this](const char* name) {
        auto* l = new QLabel(this);
        l->setObjectName(QLatin1String(name));
        l->setMinimumWidth(120);
        return l;
    };
    lblX1 = label("lblX1");
    lblX2 = label("lblX2");
    lblD = label("lblD");
    lblPeak = label("lblPeak");
    auto button = [this](const char* name, TTextId text, void (TfrmViewFFT::*slot)()) {
        auto* b = new QPushButton(Txt(text), this);
        b->setObjectName(QLatin1String(name));
        connect(b, &QPushButton::clicked, this, slot);
        return b;
    };
    btnCalcFFT = button("btnCalcFFT", TTextId::Fft, &TfrmViewFFT::btnCalcFFTClick);
    btnReset = button("btnReset", TTextId::FftReset, &TfrmViewFFT::btnResetClick);
    btnSetWindowToBand = button("btnSetWindowToBand", TTextId::FftWindowToBand, &TfrmViewFFT::btnSetWindowToBandClick);
    btnSetBandToWindow = button("btnSetBandToWindow", TTextId::FftBandToWindow, &TfrmViewFFT::btnSetBandToWindowClick);
    btnCalcFFT->setDefault(true);

    // Beyond what the view always did, off at first: a weighting window, a logarithmic
    // magnitude axis, the strongest line's frequency.
    cbxWindow = new QComboBox(this);
    cbxWindow->setObjectName(QStringLiteral("cbxWindow"));
    cbxWindow->addItems(zeb::TxtList(TTextId::FftWindowNames));
    chkLog = new QCheckBox(Txt(TTextId::FftLogarithmic), this);
    chkLog->setObjectName(QStringLiteral("chkLog"));
    chkPeak = new QCheckBox(Txt(TTextId::FftPeak), this);
    chkPeak->setObjectName(QStringLiteral("chkPeak"));
    connect(chkLog, &QCheckBox::toggled, this, [this](bool on) {
        ChartFFT->yAxis->setScaleType(on ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
        ChartFFT->yAxis->setTicker(on ? QSharedPointer<QCPAxisTicker>(new QCPAxisTickerLog)
                                      : QSharedPointer<QCPAxisTicker>(new QCPAxisTicker));
        ChartFFT->yAxis->rescale();
        ChartFFT->replot();
    });
    connect(chkPeak, &QCheckBox::toggled, this, [this] { btnCalcFFTClick(); });

    auto* menu = new QMenuBar(this);
    QMenu* editor = menu->addMenu(Txt(TTextId::FftEditor));
    editor->setObjectName(QStringLiteral("Editor1"));
    QAction* input = editor->addAction(Txt(TTextId::FftInput), this, &TfrmViewFFT::Editor2Click);
    input->setObjectName(QStringLiteral("Editor2"));
    QAction* fft = editor->addAction(Txt(TTextId::Fft), this, &TfrmViewFFT::FFT2Click);
    fft->setObjectName(QStringLiteral("FFT2"));

    auto* bandRow = new QHBoxLayout;
    for (QWidget* w : std::initializer_list<QWidget*>{lblX1, lblX2, lblD})
        bandRow->addWidget(w);
    bandRow->addStretch(1);
    for (QWidget* w : std::initializer_list<QWidget*>{btnReset, btnSetWindowToBand, btnSetBandToWindow, btnCalcFFT})
        bandRow->addWidget(w);
    auto* options = new QHBoxLayout;
    options->addWidget(new QLabel(Txt(TTextId::FftWeighting), this));
    options->addWidget(cbxWindow);
    options->addSpacing(12);
    options->addWidget(chkLog);
    options->addWidget(chkPeak);
    options->addWidget(lblPeak, 1);
    auto* v = new QVBoxLayout(this);
    v->setMenuBar(menu);
    v->addWidget(ChartInp, 1);
    v->addLayout(bandRow);
    v->addWidget(ChartFFT, 1);
    v->addLayout(options);
}

double TfrmViewFFT::Origin() const {
    return FDb && FCurve >= 0 && !FInput.IsEmpty() ? FDb->Data(FCurve).Time(FInput.First) : FLower;
}

bool TfrmViewFFT::Execute(TDataBase* db, TCrossHair* crossHair) {
    FDb = db;
    FCrossHair = crossHair;
    FCurve = -1;
    // The chart's time span, or the crosshairs where they stand on the left axis.
    FLower = db->Axis_Get(axBottom).Min;
    FUpper = db->Axis_Get(axBottom).Max;
    if (crossHair && crossHair->GetActive(0) == 0) FLower = crossHair->X(0);
    if (crossHair && crossHair->GetActive(1) == 0) FUpper = crossHair->X(1);
    if (FUpper < FLower) std::swap(FLower, FUpper);
    // The first shown curve of the store; the additional flow channel is none of them.
    for (int i = 0; i < db->Curve_Count() && FCurve < 0; ++i)
        if (db->Curve_IsActive(i) && !db->Data(i).IsEmpty()) FCurve = i;
    if (FCurve < 0) return false;

    FInputTitle->setText(db->Curve_NameUnitGet(FCurve));
    const TCurveData& d = db->Data(FCurve);
    FInput = {};
    const qint64 first = d.LowerBound(FLower), last = d.UpperBound(FUpper) - 1;
    if (first <= last) FInput = {first, last};
    // The input is the curve's own points, not a copy: drawn from the store like the chart,
    // but only those of the copied range, which are all the FFT can take.
    SeriesInp->SetSource(db, FCurve, db->Summary(FCurve));
    SeriesInp->SetIndexRange(FInput.IsEmpty() ? 0 : FInput.First, FInput.IsEmpty() ? -1 : FInput.Last);
    SeriesInp->SetReduction(last - first > 100000);
    SeriesFFT->data()->clear();
    FSpectrum = {};
    FFFTTitle->setText(Txt(TTextId::Fft));
    ChartFFT->xAxis->setLabel(QString());
    lblPeak->clear();
    ChartFFT->replot();
    ResetInputAxes();
    PlaceBandOnMiddleThird();
    show();
    raise();
    return true;
}

void TfrmViewFFT::ResetInputAxes() {
    const double a = FInput.IsEmpty() ? FLower : FDb->Data(FCurve).Time(FInput.First);
    const double b = FInput.IsEmpty() ? FUpper : FDb->Data(FCurve).Time(FInput.Last);
    ChartInp->xAxis->setTicker(QSharedPointer<QCPAxisTicker>(new TSecondsTicker(Origin())));
    ChartInp->xAxis->setRange(a, b > a ? b : a + 1.0);
    bool found = false;
    const QCPRange values = SeriesInp->getValueRange(found, QCP::sdBoth, QCPRange(a, b));
    if (found) {
        const double air = values.size() > 0 ? values.size() * 0.05 : 1.0;
        ChartInp->yAxis->setRange(values.lower - air, values.upper + air);
    }
    ChartInp->replot();
}

void TfrmViewFFT::PlaceBandOnMiddleThird() {
    const QCPRange r = ChartInp->xAxis->range();
    SetBand(r.lower + r.size() / 3.0, r.upper - r.size() / 3.0);
}

void TfrmViewFFT::SetBand(double start, double end) {
    FBandStart = std::min(start, end);
    FBandEnd = std::max(start, end);
    FBand->topLeft->setCoords(FBandStart, 0.0);
    FBand->bottomRight->setCoords(FBandEnd, 1.0);
    UpdateLabels();
    ChartInp->replot();
    Q_EMIT bandChanged();
}

void TfrmViewFFT::UpdateLabels() {
    const double origin = Origin();
    lblX1->setText(Txt(TTextId::FftBandStart) + zeb::FormatFloat(QStringLiteral("0.000"), FBandStart - origin));
    lblX2->setText(Txt(TTextId::FftBandEnd) + zeb::FormatFloat(QStringLiteral("0.000"), FBandEnd - origin));
    const TBandPoints p = FDb && FCurve >= 0 ? BandPoints(FDb->Data(FCurve), FInput.First, FInput.Last, FBandStart, FBandEnd)
                                             : TBandPoints{};
    lblD->setText(p.IsEmpty() ? QString() : Txt(TTextId::FftBandPoints) + QString::number(p.Last - p.First));
}

void TfrmViewFFT::btnResetClick() {
    if (!FDb) return;
    ResetInputAxes();
    PlaceBandOnMiddleThird();
}

void TfrmViewFFT::btnSetWindowToBandClick() {
    if (!(FBandStart < FBandEnd)) return;
    ChartInp->xAxis->setRange(FBandStart, FBandEnd);
    ChartInp->replot();
}

void TfrmViewFFT::btnSetBandToWindowClick() {
    const QCPRange r = ChartInp->xAxis->range();
    SetBand(r.lower, r.upper);
}

void TfrmViewFFT::btnCalcFFTClick() {
    SeriesFFT->data()->clear();
    lblPeak->clear();
    if (!FDb || FCurve < 0 || FDb->IsLoading()) {
        ChartFFT->replot();
        return;
    }
    FFT1.SetWeightingWindow(TFastFourierWgtWin(std::max(0, cbxWindow->currentIndex())));
    FSpectrum = BandSpectrum(FDb->Data(FCurve), FInput.First, FInput.Last, FBandStart, FBandEnd, FFT1);
    if (FSpectrum.N == 0) {
        ChartFFT->replot();
        return;
    }
    FFFTTitle->setText(Txt(TTextId::Fft) + QStringLiteral(" (") + QString::number(FSpectrum.N) + QLatin1Char(')'));
    ChartFFT->xAxis->setLabel(Txt(TTextId::FftFrequencyAxis));
    QVector<double> f(FSpectrum.Frequency.begin(), FSpectrum.Frequency.end());
    QVector<double> m(FSpectrum.Magnitude.begin(), FSpectrum.Magnitude.end());
    SeriesFFT->setData(f, m, true);
    ChartFFT->rescaleAxes();
    if (chkPeak->isChecked() && FSpectrum.Magnitude.size() > 1) {
        // The strongest line apart from the mean at line 0.
        const auto peak = std::max_element(FSpectrum.Magnitude.begin() + 1, FSpectrum.Magnitude.end());
        const double hz = FSpectrum.Frequency[size_t(peak - FSpectrum.Magnitude.begin())];
        // Slow cycles (a day is 1.2E-05 Hz) need the exponent to show at all.
        const QString pattern = hz >= 0.01 ? QStringLiteral("0.000") : QStringLiteral("0.000E+00");
        lblPeak->setText(zeb::TxtFmt(TTextId::FftPeakText, {zeb::FormatFloat(pattern, hz)}));
    }
    ChartFFT->replot();
}

void TfrmViewFFT::Editor2Click() {
    TfrmChartProps dlg(this);
    dlg.Execute(ChartInp, FInputTitle, SeriesInp);
}

void TfrmViewFFT::FFT2Click() {
    TfrmChartProps dlg(this);
    dlg.Execute(ChartFFT, FFFTTitle, SeriesFFT);
}

// Both edges of the band follow the mouse once pressed within a few pixels of them.
bool TfrmViewFFT::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (watched != ChartInp || (type != QEvent::MouseButtonPress && type != QEvent::MouseMove &&
                                type != QEvent::MouseButtonRelease))
        return QWidget::eventFilter(watched, event);
    constexpr double kGrip = 5.0;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        if (mouse->button() != Qt::LeftButton) break;
        const double x = mouse->position().x();
        const double s = ChartInp->xAxis->coordToPixel(FBandStart), e = ChartInp->xAxis->coordToPixel(FBandEnd);
        const double ds = std::abs(x - s), de = std::abs(x - e);
        if (std::min(ds, de) > kGrip) break;
        FDragEdge = de < ds ? 1 : 0;
        return true;
    }
    case QEvent::MouseMove: {
        const double x = mouse->position().x();
        if (FDragEdge < 0) {
            const double s = ChartInp->xAxis->coordToPixel(FBandStart), e = ChartInp->xAxis->coordToPixel(FBandEnd);
            ChartInp->setCursor(std::min(std::abs(x - s), std::abs(x - e)) <= kGrip ? Qt::SizeHorCursor : Qt::ArrowCursor);
            break;
        }
        const double v = ChartInp->xAxis->pixelToCoord(x);
        // An edge dragged past the other becomes the other.
        if (FDragEdge == 0) {
            const double other = FBandEnd;
            if (v > other) FDragEdge = 1;
            SetBand(v, other);
        } else {
            const double other = FBandStart;
            if (v < other) FDragEdge = 0;
            SetBand(other, v);
        }
        return true;
    }
    case QEvent::MouseButtonRelease:
        if (FDragEdge >= 0 && mouse->button() == Qt::LeftButton) {
            FDragEdge = -1;
            return true;
        }
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}
