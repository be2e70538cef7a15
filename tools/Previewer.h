#pragma once
// The previewer's window: a recording too large for the viewer is read once, in constant
// memory, into a min/max overview of every channel; the user drags a time window over it,
// ticks channels, and "Cut and open" has the cutter write that window as a new recording
// which then opens in the viewer. Both programs are looked up in this program's folder.

#include "Overview.h"

#include <QMainWindow>
#include <QPointer>

#include <atomic>
#include <functional>
#include <vector>

class QCPItemRect;
class QCustomPlot;
class QLabel;
class QProcess;
class QProgressBar;
class QPushButton;
class QThread;
class QTimer;
class QTreeWidget;

class TfrmPreviewer : public QMainWindow {
    Q_OBJECT
public:
    explicit TfrmPreviewer(QWidget* parent = nullptr);
    ~TfrmPreviewer() override;

    // Starts the pass over a recording; the window stays usable while it runs.
    void OpenFile(const QString& fileName);
    bool IsReading() const { return FThread != nullptr; }
    const TOverview& Overview() const { return FOverview; }
    TOverview::TStatus Status() const { return FStatus; }

    // The chosen window in seconds since 1 January 2000; the whole recording at first.
    double WindowStart() const { return FStart; }
    double WindowEnd() const { return FEnd; }
    void SetWindow(double start, double end);
    QList<int> CheckedChannels() const;
    // The cutter's arguments for a target, as "Cut and open" passes them.
    QStringList CutterArguments(const QString& target) const;

    // Asks where the cut goes (a save dialog unless replaced); empty: not now.
    using TAskTarget = std::function<QString(const QString& proposed)>;
    void SetTargetAsker(TAskTarget ask) { FAskTarget = std::move(ask); }

    QCustomPlot* Chart() const { return chtOverview; }
    QTreeWidget* ChannelList() const { return lvwChannels; }
    QPushButton* CutButton() const { return btnCutAndOpen; }

public Q_SLOTS:
    void CutAndOpen();
    void SelectWhole();

Q_SIGNALS:
    void overviewReady();
    // The cutter has ended (its exit code, -1 when it could not run) and the viewer was
    // started when it succeeded.
    void cutFinished(int exitCode);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildUi();
    void OnProgress();
    void OnPassDone();
    void ShowOverview();
    void UpdateBand();
    // One row per ticked channel: its min/max band over the buckets and the chosen window.
    void UpdateGraphs();
    void OnCutterFinished(int exitCode, bool crashed);
    void StopPass();

    QCustomPlot* chtOverview = nullptr;
    QTreeWidget* lvwChannels = nullptr;
    QLabel* lblInfo = nullptr;
    QLabel* lblWindow = nullptr;
    QPushButton* btnWhole = nullptr;
    QPushButton* btnCutAndOpen = nullptr;
    QProgressBar* pgbRead = nullptr;
    std::vector<QCPItemRect*> FBands; // the chosen window, one band per row
    QTimer* FProgressTimer = nullptr;

    QString FFileName;
    TOverview FOverview;
    TOverview::TStatus FStatus = TOverview::TStatus::Ok;
    QThread* FThread = nullptr;
    std::atomic<bool> FCancel = false;
    std::atomic<qint64> FDone = 0, FTotal = 0;

    double FStart = 0.0, FEnd = 0.0;
    bool FDragging = false;
    double FDragFrom = 0.0;

    TAskTarget FAskTarget;
    QPointer<QProcess> FCutter;
    QString FCutTarget;
};
