#include "Previewer.h"

#include "CompanionCli.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "store/DataBase.h"

// The chart library's header uses Qt's keyword macros, which this project switches off.
#define signals Q_SIGNALS
#define foreach Q_FOREACH
#include <qcustomplot.h>
#undef signals
#undef foreach

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QScrollArea>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QThread>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cmath>

using zeb::Txt;
using zeb::TxtFmt;
using zeb::TTextId;

namespace {

// The chart's keys are seconds since 1970, which the date-time ticker reads.
constexpr double kUnix2000 = 946684800.0;
constexpr int kClickSlop = 3; // pixels: a shorter drag is a click and keeps the window

const QColor kColors[] = {QColor(255, 0, 0),   QColor(0, 128, 0),   QColor(0, 0, 255),   QColor(255, 165, 0),
                          QColor(128, 0, 128), QColor(0, 128, 128), QColor(128, 128, 0), QColor(130, 0, 75)};

QString Native(const QString& path) { return QDir::toNativeSeparators(path); }

// Seven digits, as a single holds them, with the program's decimal separator.
QString Number(double v) {
    if (!std::isfinite(v)) return {};
    return QString::number(v, 'g', 7).replace(QLatin1Char('.'), zeb::FormatSettings().DecimalSeparator);
}

} // namespace

TfrmPreviewer::TfrmPreviewer(QWidget* parent) : QMainWindow(parent) {
    BuildUi();
    FProgressTimer = new QTimer(this);
    FProgressTimer->setInterval(100);
    connect(FProgressTimer, &QTimer::timeout, this, &TfrmPreviewer::OnProgress);
    FAskTarget = [this](const QString& proposed) {
        const QString ext = ZebSettings().DataFileExt;
        return QFileDialog::getSaveFileName(this, Txt(TTextId::PrvSaveAs), proposed,
                                            Txt(TTextId::DlgZebFile) + QStringLiteral(" (*") + ext + QLatin1Char(')'));
    };
}

TfrmPreviewer::~TfrmPreviewer() { StopPass(); }

void TfrmPreviewer::BuildUi() {
    setObjectName(QStringLiteral("frmPreviewer"));
    setWindowTitle(Txt(TTextId::PrvCaption));
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);

    lblInfo = new QLabel(central);
    lblInfo->setObjectName(QStringLiteral("lblInfo"));
    lblInfo->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(lblInfo);

    auto* split = new QSplitter(Qt::Horizontal, central);
    // One row per ticked channel, each on its own value axis: a pressure near 1000 hPa would
    // flatten a temperature drawn on the same axis. Many channels scroll.
    auto* scroll = new QScrollArea(split);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    chtOverview = new QCustomPlot;
    chtOverview->setObjectName(QStringLiteral("chtOverview"));
    chtOverview->setMinimumSize(400, 250);
    scroll->setWidget(chtOverview);
    connect(chtOverview, &QCustomPlot::mousePress, this, [this](QMouseEvent* e) {
        if (e->button() != Qt::LeftButton || !FOverview.HasTime() || IsReading()) return;
        FDragging = true;
        FDragFrom = e->position().x();
    });
    connect(chtOverview, &QCustomPlot::mouseMove, this, [this](QMouseEvent* e) {
        if (!FDragging || std::abs(e->position().x() - FDragFrom) < kClickSlop) return;
        const QCPAxis* x = chtOverview->axisRect()->axis(QCPAxis::atBottom);
        const double a = x->pixelToCoord(FDragFrom) - kUnix2000;
        const double b = x->pixelToCoord(e->position().x()) - kUnix2000;
        SetWindow(std::min(a, b), std::max(a, b));
    });
    connect(chtOverview, &QCustomPlot::mouseRelease, this, [this](QMouseEvent*) { FDragging = false; });

    lvwChannels = new QTreeWidget(split);
    lvwChannels->setObjectName(QStringLiteral("lvwChannels"));
    lvwChannels->setRootIsDecorated(false);
    lvwChannels->setHeaderLabels({Txt(TTextId::PrvChannel), Txt(TTextId::PrvUnit), Txt(TTextId::PrvValues),
                                  Txt(TTextId::PrvMinimum), Txt(TTextId::PrvMaximum)});
    lvwChannels->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(lvwChannels, &QTreeWidget::itemChanged, this, [this] { UpdateGraphs(); });
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 1);
    split->setSizes({2800, 1200});
    layout->addWidget(split, 1);

    auto* hint = new QLabel(Txt(TTextId::PrvHint), central);
    hint->setWordWrap(true);
    layout->addWidget(hint);

    auto* row = new QHBoxLayout;
    lblWindow = new QLabel(central);
    lblWindow->setObjectName(QStringLiteral("lblWindow"));
    row->addWidget(lblWindow, 1);
    btnWhole = new QPushButton(Txt(TTextId::PrvWhole), central);
    btnWhole->setObjectName(QStringLiteral("btnWhole"));
    connect(btnWhole, &QPushButton::clicked, this, &TfrmPreviewer::SelectWhole);
    row->addWidget(btnWhole);
    btnCutAndOpen = new QPushButton(Txt(TTextId::PrvCutAndOpen), central);
    btnCutAndOpen->setObjectName(QStringLiteral("btnCutAndOpen"));
    btnCutAndOpen->setDefault(true);
    connect(btnCutAndOpen, &QPushButton::clicked, this, &TfrmPreviewer::CutAndOpen);
    row->addWidget(btnCutAndOpen);
    layout->addLayout(row);
    btnWhole->setEnabled(false);
    btnCutAndOpen->setEnabled(false);
    setCentralWidget(central);

    pgbRead = new QProgressBar(this);
    pgbRead->setObjectName(QStringLiteral("pgbRead"));
    pgbRead->setRange(0, 1000);
    pgbRead->setMaximumWidth(240);
    pgbRead->hide();
    statusBar()->addPermanentWidget(pgbRead);
    resize(1100, 650);
}

// ---------------------------------------------------------------- the pass

void TfrmPreviewer::OpenFile(const QString& fileName) {
    StopPass();
    FFileName = fileName;
    FOverview.Reset();
    lvwChannels->clear();
    UpdateGraphs();
    lblWindow->clear();
    btnWhole->setEnabled(false);
    btnCutAndOpen->setEnabled(false);
    setWindowTitle(Txt(TTextId::PrvCaption) + QStringLiteral(" [") + QFileInfo(fileName).fileName() +
                   QLatin1Char(']'));
    lblInfo->setText(TxtFmt(TTextId::PrvReading, {Native(fileName)}));
    FCancel = false;
    FDone = 0;
    FTotal = 0;
    pgbRead->setValue(0);
    pgbRead->show();
    FThread = QThread::create([this, fileName] { FStatus = FOverview.Build(fileName, &FCancel, &FDone, &FTotal); });
    connect(FThread, &QThread::finished, this, &TfrmPreviewer::OnPassDone);
    FThread->start();
    FProgressTimer->start();
}

void TfrmPreviewer::OnProgress() {
    const qint64 total = FTotal.load();
    if (total > 0) pgbRead->setValue(int(1000.0 * double(FDone.load()) / double(total)));
}

void TfrmPreviewer::StopPass() {
    if (!FThread) return;
    FCancel = true;
    FThread->disconnect(this);
    FThread->wait();
    delete FThread;
    FThread = nullptr;
    FProgressTimer->stop();
    pgbRead->hide();
}

void TfrmPreviewer::OnPassDone() {
    if (!FThread) return;
    FThread->wait();
    delete FThread;
    FThread = nullptr;
    FProgressTimer->stop();
    pgbRead->hide();
    ShowOverview();
    Q_EMIT overviewReady();
}

void TfrmPreviewer::ShowOverview() {
    const QString file = Native(FFileName);
    switch (FStatus) {
    case TOverview::TStatus::CannotRead: lblInfo->setText(TxtFmt(TTextId::CmpCannotRead, {file})); return;
    case TOverview::TStatus::NotARecording: lblInfo->setText(TxtFmt(TTextId::CmpNotARecording, {file})); return;
    case TOverview::TStatus::Damaged: statusBar()->showMessage(Txt(TTextId::PrvDamaged)); break;
    default: break;
    }
    const auto& channels = FOverview.Channels();
    if (!FOverview.HasTime()) {
        lblInfo->setText(Native(FFileName) + QStringLiteral(": ") + Txt(TTextId::PrvEmpty));
        return;
    }
    lblInfo->setText(file + QStringLiteral(": ") +
                     TxtFmt(TTextId::PrvInfo, {QString::number(channels.size()), QString::number(FOverview.ValueCount()),
                                               zeb::FormatTime(zeb::TTimeKind::DateTimeMs, FOverview.FirstTime()),
                                               zeb::FormatTime(zeb::TTimeKind::DateTimeMs, FOverview.LastTime())}));

    const QSignalBlocker block(lvwChannels);
    for (const TOverviewChannel& ch : channels) {
        auto* item = new QTreeWidgetItem(lvwChannels, {ch.Title(), ch.Unit, QString::number(ch.Count), Number(ch.Min),
                                                        Number(ch.Max)});
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Checked);
    }
    // The list as wide as its columns, so the figures are never cut off.
    lvwChannels->header()->resizeSections(QHeaderView::ResizeToContents);
    lvwChannels->setMinimumWidth(lvwChannels->header()->length() + 2 * lvwChannels->frameWidth() + 4);
    btnWhole->setEnabled(true);
    btnCutAndOpen->setEnabled(!channels.empty());
    UpdateGraphs();
    SelectWhole();
}

void TfrmPreviewer::UpdateGraphs() {
    chtOverview->clearItems();
    chtOverview->clearGraphs();
    chtOverview->plotLayout()->clear();
    FBands.clear();
    const QList<int> rows = CheckedChannels();
    const bool data = FOverview.HasTime();
    double from = data ? FOverview.FirstTime() : 0.0, to = data ? FOverview.LastTime() : 1.0;
    if (to <= from) to = from + 1.0;
    QVector<double> keys(FOverview.BucketCount());
    for (int b = 0; b < FOverview.BucketCount(); ++b)
        keys[b] = FOverview.BucketStart(b) + FOverview.BucketWidth() / 2 + kUnix2000;

    auto* margins = new QCPMarginGroup(chtOverview);
    auto ticker = QSharedPointer<QCPAxisTickerDateTime>::create();
    ticker->setDateTimeSpec(Qt::UTC);
    ticker->setDateTimeFormat(QStringLiteral("yyyy-MM-dd\nHH:mm:ss"));
    const int count = std::max<int>(1, int(rows.size())); // an empty row keeps the time axis
    for (int r = 0; r < count; ++r) {
        auto* rect = new QCPAxisRect(chtOverview);
        chtOverview->plotLayout()->addElement(r, 0, rect);
        rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins);
        QCPAxis* x = rect->axis(QCPAxis::atBottom);
        QCPAxis* y = rect->axis(QCPAxis::atLeft);
        x->setTicker(ticker);
        x->setTickLabels(r == count - 1);
        x->setRange(from + kUnix2000, to + kUnix2000);
        auto* band = new QCPItemRect(chtOverview);
        band->setClipAxisRect(rect);
        for (QCPItemPosition* p : {band->topLeft, band->bottomRight}) {
            p->setAxes(x, y);
            p->setAxisRect(rect);
            p->setTypeY(QCPItemPosition::ptAxisRectRatio);
        }
        band->setPen(QPen(QColor(0, 90, 200)));
        band->setBrush(QColor(0, 90, 200, 40));
        band->setVisible(data);
        FBands.push_back(band);
        if (rows.isEmpty()) break;

        const int c = rows[r];
        const TOverviewChannel& ch = FOverview.Channels()[size_t(c)];
        const QColor color = kColors[size_t(c) % std::size(kColors)];
        QVector<double> lo(keys.size()), hi(keys.size());
        for (int b = 0; b < keys.size(); ++b) {
            const float mn = ch.BucketMin[size_t(b)], mx = ch.BucketMax[size_t(b)];
            lo[b] = mn > mx ? qQNaN() : double(mn); // NaN: an empty bucket breaks the line
            hi[b] = mn > mx ? qQNaN() : double(mx);
        }
        QCPGraph* gMin = chtOverview->addGraph(x, y);
        QCPGraph* gMax = chtOverview->addGraph(x, y);
        gMin->setData(keys, lo, true);
        gMax->setData(keys, hi, true);
        gMin->setPen(QPen(color));
        gMax->setPen(QPen(color));
        QColor fill = color;
        fill.setAlpha(70);
        gMax->setBrush(fill);
        gMax->setChannelFillGraph(gMin);
        y->setLabel(TDataBase::AddUnit(ch.Title(), ch.Unit));
        if (ch.Min <= ch.Max) {
            const double pad = ch.Max > ch.Min ? (ch.Max - ch.Min) * 0.05 : 1.0;
            y->setRange(ch.Min - pad, ch.Max + pad);
        }
    }
    chtOverview->setMinimumHeight(std::max(250, 110 * count));
    UpdateBand();
}

// ---------------------------------------------------------------- the window

void TfrmPreviewer::SetWindow(double start, double end) {
    if (start > end) std::swap(start, end);
    if (FOverview.HasTime()) {
        start = std::clamp(start, FOverview.FirstTime(), FOverview.LastTime());
        end = std::clamp(end, FOverview.FirstTime(), FOverview.LastTime());
    }
    FStart = start;
    FEnd = end;
    UpdateBand();
}

void TfrmPreviewer::SelectWhole() {
    if (FOverview.HasTime()) SetWindow(FOverview.FirstTime(), FOverview.LastTime());
}

void TfrmPreviewer::UpdateBand() {
    for (QCPItemRect* band : FBands) {
        band->topLeft->setCoords(FStart + kUnix2000, 0.0);
        band->bottomRight->setCoords(FEnd + kUnix2000, 1.0);
    }
    if (FOverview.HasTime())
        lblWindow->setText(TxtFmt(TTextId::PrvWindow, {zeb::FormatTime(zeb::TTimeKind::DateTimeMs, FStart), zeb::FormatTime(zeb::TTimeKind::DateTimeMs, FEnd)}));
    else lblWindow->clear();
    chtOverview->replot();
}

QList<int> TfrmPreviewer::CheckedChannels() const {
    QList<int> out;
    for (int i = 0; i < lvwChannels->topLevelItemCount(); ++i)
        if (lvwChannels->topLevelItem(i)->checkState(0) == Qt::Checked) out << i;
    return out;
}

QStringList TfrmPreviewer::CutterArguments(const QString& target) const {
    QStringList list;
    const QList<int> channels = CheckedChannels();
    for (int c : channels) list << QString::number(c);
    // Seventeen digits: the window's edges reach the cutter as they are.
    return {FFileName,
            target,
            QString::number(FStart, 'g', 17),
            QString::number(FEnd, 'g', 17),
            QString::number(channels.size()),
            list.join(QLatin1Char(','))};
}

// ---------------------------------------------------------------- cut and open

void TfrmPreviewer::CutAndOpen() {
    if (FCutter || IsReading() || !FOverview.HasTime()) return;
    if (CheckedChannels().isEmpty()) {
        statusBar()->showMessage(Txt(TTextId::PrvNoChannel));
        return;
    }
    const QString cutter = ZebProgramPath(QString::fromLatin1(companion::kCutterName));
    if (!QFileInfo(cutter).isExecutable()) {
        statusBar()->showMessage(TxtFmt(TTextId::PrvMissingProgram, {Native(cutter)}));
        Q_EMIT cutFinished(-1);
        return;
    }
    const QFileInfo source(FFileName);
    const QString proposed =
        source.dir().filePath(source.completeBaseName() + QStringLiteral("_cut") + ZebSettings().DataFileExt);
    const QString target = FAskTarget ? FAskTarget(proposed) : proposed;
    if (target.isEmpty()) return;

    FCutTarget = target;
    FCutter = new QProcess(this);
    connect(FCutter, &QProcess::finished, this,
            [this](int code, QProcess::ExitStatus status) { OnCutterFinished(code, status == QProcess::CrashExit); });
    connect(FCutter, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e == QProcess::FailedToStart) OnCutterFinished(-1, true);
    });
    btnCutAndOpen->setEnabled(false);
    statusBar()->showMessage(TxtFmt(TTextId::PrvCutting, {Native(target)}));
    FCutter->start(cutter, CutterArguments(target));
}

void TfrmPreviewer::OnCutterFinished(int exitCode, bool crashed) {
    if (!FCutter) return;
    const QString message = QString::fromLocal8Bit(FCutter->readAllStandardError()).trimmed().section(QLatin1Char('\n'), 0, 0);
    FCutter->deleteLater();
    FCutter = nullptr;
    btnCutAndOpen->setEnabled(true);
    const auto written = !crashed && (exitCode == int(TCutResult::Ok) || exitCode == int(TCutResult::Damaged));
    if (!written) {
        statusBar()->showMessage(
            TxtFmt(TTextId::PrvCutFailed, {message.isEmpty() ? QString::number(exitCode) : message}));
        Q_EMIT cutFinished(crashed ? -1 : exitCode);
        return;
    }
    const QString viewer = ZebProgramPath(QString::fromLatin1(companion::kViewerName));
    if (!QFileInfo(viewer).isExecutable() || !QProcess::startDetached(viewer, {FCutTarget})) {
        statusBar()->showMessage(TxtFmt(TTextId::PrvMissingProgram, {Native(viewer)}));
    } else {
        // A damaged source was cut as far as it could be read: the cutter's line says so.
        statusBar()->showMessage(exitCode == int(TCutResult::Damaged)
                                     ? message
                                     : TxtFmt(TTextId::PrvOpened, {Native(FCutTarget)}));
    }
    Q_EMIT cutFinished(exitCode);
}

void TfrmPreviewer::closeEvent(QCloseEvent* event) {
    StopPass();
    event->accept();
}
