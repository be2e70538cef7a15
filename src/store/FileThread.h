#pragma once
// Reads a recording into the store in a thread of its own. Every report and the large-file
// question run on the thread that owns the store (the GUI thread) while the loader waits.

#include <QString>
#include <QThread>

#include <atomic>
#include <functional>

class TDataBase;

// What the loader reports while it reads, then its result as the last report (the results are
// the negative codes).
enum class TLoadReport : int {
    Cancelled = 1,
    Error = 2,
    CannotOpen = 3,
    Progress = 4,
    ValueCount = 5,
    Defect = 6,
    ResultOk = -1,
    ResultError = -2,
    ResultCancelled = -3,
    ResultPreviewer = -5,
};
// The answers to the large-file question: stop and show nothing, show what was read, read on,
// hand the file to the previewer.
enum class TBigDataAnswer : int { Stop, Show, Continue, Previewer };

using TAnswerProc = std::function<void(TLoadReport report, const QString& text)>;
using TAskProc = std::function<void(TBigDataAnswer& answer)>;

class TFileThread : public QThread {
    Q_OBJECT
public:
    static constexpr qint64 kAskAbove = 2500000;

    // Starts at once; the store gets the file name and loses its reader mark.
    TFileThread(TDataBase* DataBase, const QString& fileName, TAnswerProc AnswerProc, TAskProc AskProc,
                int variantCode = 0);
    ~TFileThread() override;

    TDataBase* DataBase() const { return FDataBase; }
    const TAnswerProc& AnswerProc() const { return FAnswerProc; }
    const TAskProc& AskProc() const { return FAskProc; }
    TLoadReport Result() const { return FResult; }
    qint64 ValueCount() const { return FValueCount; }

    // Cancels: noticed before the next block.
    void Terminate() { requestInterruption(); }

protected:
    void run() override;

private:
    friend class TLoaderReceiver;
    void Answer(TLoadReport report, const QString& text);
    TBigDataAnswer Ask();

    TAnswerProc FAnswerProc;
    TAskProc FAskProc;
    TLoadReport FAnswerReport = TLoadReport::Progress;
    QString FAnswerText;
    TDataBase* FDataBase;
    QString FFileName;
    int FVariant;
    TLoadReport FResult = TLoadReport::ResultError;
    qint64 FValueCount = 0;
    bool FAsked = false;
    std::atomic<bool> FClosing = false;
};
