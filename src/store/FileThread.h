#pragma once
// Reads a recording into the store in a thread of its own. Every report and the large-file
// question run on the thread that owns the store (the GUI thread) while the loader waits.

#include <QString>
#include <QThread>

#include <atomic>
#include <functional>

class TDataBase;

using TAnswerProc = std::function<void(int Index, const QString& sText)>;
using TAskProc = std::function<void(int& res)>;

class TFileThread : public QThread {
    Q_OBJECT
public:
    // Report indices.
    enum : int { kCancelled = 1, kError = 2, kCannotOpen = 3, kProgress = 4, kValueCount = 5, kDefect = 6 };
    // Result codes, also sent as the last report.
    enum : int { kResultOk = -1, kResultError = -2, kResultCancelled = -3, kResultPreviewer = -5 };
    static constexpr qint64 kAskAbove = 2500000;

    // Starts at once; the store gets the file name and loses its reader mark.
    TFileThread(TDataBase* DataBase, const QString& fileName, TAnswerProc AnswerProc, TAskProc AskProc,
                int variantCode = 0);
    ~TFileThread() override;

    TDataBase* DataBase() const { return FDataBase; }
    const TAnswerProc& AnswerProc() const { return FAnswerProc; }
    const TAskProc& AskProc() const { return FAskProc; }
    int Result() const { return FResult; }
    qint64 ValueCount() const { return FValueCount; }

    // Cancels: noticed before the next block.
    void Terminate() { requestInterruption(); }

protected:
    void run() override;

private:
    friend class TLoaderReceiver;
    void Answer(int Index, const QString& Text);
    int Ask();

    TAnswerProc FAnswerProc;
    TAskProc FAskProc;
    int FAnswerIndex = 0;
    QString FAnswerText;
    TDataBase* FDataBase;
    QString FFileName;
    int FVariant;
    int FResult = kResultError;
    qint64 FValueCount = 0;
    bool FAsked = false;
    std::atomic<bool> FClosing = false;
};
