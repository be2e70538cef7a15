#include "Previewer.h"

#include "CompanionCli.h"
#include "Formats.h"
#include "Texts.h"
#include "ZebReg.h"

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

QString Number(double v) { return std::isfinite(v) ? QString::number(v, 'g', 7) : QString(); }

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
    chtOverview = new QCustomPlot(split);
    chtOverview->setObjectName(QStringLiteral("chtOverview"));
    chtOverview->setMinimumSize(400, 250);
    auto ticker = QSharedPointer<QCPAxisTickerDateTime>::create();
    ticker->setDateTimeSpec(Qt::UTC);
    ticker->setDateTimeFormat(QStringLiteral("yyyy-MM-dd\nHH:mm:ss"));
    chtOverview->xAxis->setTicker(ticker);
    FBand = new QCPItemRect(chtOverview);
    FBand->topLeft->setTypeY(QCPItemPosition::ptAxisRectRatio);
    FBand->bottomRight->setTypeY(QCPItemPosition::ptAxisRectRatio);
    FBand->setPen(QPen(QColor(0, 90, 200)));
    FBand->setBrush(QColor(0, 90, 200, 40));
    FBand->setVisible(false);
    connect(chtOverview, &QCustomPlot::mousePress, this, [this](QMouseEvent* e) {
        if (e->button() != Qt::LeftButton || !FOverview.HasTime() || IsReading()) return;
        FDragging = true;
        FDragFrom = e->position().x();
    });
    connect(chtOverview, &QCustomPlot::mouseMove, this, [this](QMouseEvent* e) {
        if (!FDragging || std::abs(e->position().x() - FDragFrom) < kClickSlop) return;
        const double a = chtOverview->xAxis->pixelToCoord(FDragFrom) - kUnix2000;
        const double b = chtOverview->xAxis->pixelToCoord(e->position().x()) - kUnix2000;
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
    chtOverview->clearGraphs();
    FBand->setVisible(false);
    chtOverview->replot();
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
                                               zeb::FormatTime(1, FOverview.FirstTime()),
                                               zeb::FormatTime(1, FOverview.LastTime())}));

    const QSignalBlocker block(lvwChannels);
    QVector<double> keys(FOverview.BucketCount());
    for (int b = 0; b < FOverview.BucketCount(); ++b)
        keys[b] = FOverview.BucketStart(b) + FOverview.BucketWidth() / 2 + kUnix2000;
    for (size_t c = 0; c < channels.size(); ++c) {
        const TOverviewChannel& ch = channels[c];
        auto* item = new QTreeWidgetItem(lvwChannels, {ch.Title(), ch.Unit, QString::number(ch.Count), Number(ch.Min),
                                                        Number(ch.Max)});
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Checked);

        const QColor color = kColors[c % std::size(kColors)];
        QVector<double> lo(keys.size()), hi(keys.size());
        for (int b = 0; b < keys.size(); ++b) {
            const float mn = ch.BucketMin[size_t(b)], mx = ch.BucketMax[size_t(b)];
            const bool empty = mn > mx;
            lo[b] = empty ? qQNaN() : double(mn);
            hi[b] = empty ? qQNaN() : double(mx);
        }
        QCPGraph* gMin = chtOverview->addGraph();
        QCPGraph* gMax = chtOverview->addGraph();
        gMin->setData(keys, lo, true);
        gMax->setData(keys, hi, true);
        gMin->setPen(QPen(color));
        gMax->setPen(QPen(color));
        QColor fill = color;
        fill.setAlpha(70);
        gMax->setBrush(fill);
        gMax->setChannelFillGraph(gMin);
        gMin->setName(ch.Title());
        gMax->setName(ch.Title());
    }
    chtOverview->xAxis->setRange(FOverview.FirstTime() + kUnix2000, FOverview.LastTime() + kUnix2000);
    if (FOverview.FirstTime() == FOverview.LastTime())
        chtOverview->xAxis->setRange(FOverview.FirstTime() + kUnix2000, 1.0, Qt::AlignCenter);
    FBand->setVisible(true);
    btnWhole->setEnabled(true);
    btnCutAndOpen->setEnabled(!channels.empty());
    UpdateGraphs();
    SelectWhole();
}

void TfrmPreviewer::UpdateGraphs() {
    for (int i = 0; i < lvwChannels->topLevelItemCount(); ++i) {
        const bool on = lvwChannels->topLevelItem(i)->checkState(0) == Qt::Checked;
        for (int k : {2 * i, 2 * i + 1})
            if (k < chtOverview->graphCount()) chtOverview->graph(k)->setVisible(on);
    }
    bool found = false;
    const QCPRange range = [&] {
        QCPRange r;
        for (int k = 0; k < chtOverview->graphCount(); ++k) {
            if (!chtOverview->graph(k)->visible()) continue;
            bool ok = false;
            const QCPRange g = chtOverview->graph(k)->getValueRange(ok);
            if (!ok) continue;
            r = found ? QCPRange(std::min(r.lower, g.lower), std::max(r.upper, g.upper)) : g;
            found = true;
        }
        return r;
    }();
    if (found) {
        const double pad = range.size() > 0 ? range.size() * 0.05 : 1.0;
        chtOverview->yAxis->setRange(range.lower - pad, range.upper + pad);
    }
    chtOverview->replot();
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
    FBand->topLeft->setCoords(FStart + kUnix2000, 0.0);
    FBand->bottomRight->setCoords(FEnd + kUnix2000, 1.0);
    lblWindow->setText(TxtFmt(TTextId::PrvWindow, {zeb::FormatTime(1, FStart), zeb::FormatTime(1, FEnd)}));
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
    const QString cutter = companion::ProgramPath(QString::fromLatin1(companion::kCutterName));
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
    const QString viewer = companion::ProgramPath(QString::fromLatin1(companion::kViewerName));
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
