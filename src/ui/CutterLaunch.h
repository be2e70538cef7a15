#pragma once
// The hand-off of a time window to the cutter: the command line for what the chart shows, the
// process started without waiting, and what the status bar says of it. Cuts still running when
// the window goes are waited for, so none is cut off half way.

#include <QObject>
#include <QStringList>

#include <vector>

class QProcess;
class TDataBase;

// The cutter's arguments for the visible time window and the curves shown, in its order: data
// file, target, start, end, count, comma list of channels[, kind]. kind: empty for a recording,
// "csv", "mat" or "h5". Empty when no curve is shown.
QStringList CutterArguments(const TDataBase& db, const QString& target, const QString& kind);

class TCutterLaunch : public QObject {
    Q_OBJECT
public:
    explicit TCutterLaunch(QObject* parent = nullptr);
    ~TCutterLaunch() override;

    // Starts the cutter (the suite's, next to the program) on the store's window.
    void Start(const TDataBase& db, const QString& target, const QString& kind);
    int Running() const { return int(FCutters.size()); }
    // Waits for every cut still running; their ends report nothing more.
    void WaitForAll();

Q_SIGNALS:
    void statusText(const QString& text);
    // A cut ended: its exit code, -1 when it crashed or could not start.
    void finished(int exitCode);

private:
    std::vector<QProcess*> FCutters;
};
