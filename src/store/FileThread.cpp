#include "store/FileThread.h"

#include "data/DataFile.h"
#include "store/DataBase.h"

#include <QCoreApplication>

#include <new>

class TLoaderReceiver : public TStoreReceiver {
public:
    TLoaderReceiver(TDataBase& db, TFileThread& thread) : TStoreReceiver(db), FThread(thread) {}

    bool IsCancelled() override { return FThread.isInterruptionRequested(); }
    void ReportDefect(const QString& text) override { FThread.Answer(TFileThread::kDefect, text); }
    void OnBlock(int counter, quint16, int) override { FThread.Answer(TFileThread::kProgress, QString::number(counter)); }
    bool AfterDataBlock(qint64 count) override {
        FThread.FValueCount = count;
        if (FThread.FAsked || count <= TFileThread::kAskAbove) return true;
        switch (FThread.Ask()) {
        case 1: FThread.FResult = TFileThread::kResultOk; return false;
        case 2: FThread.FAsked = true; return true;
        case 3: FThread.FResult = TFileThread::kResultPreviewer; return false;
        default: FThread.requestInterruption(); return false;
        }
    }

private:
    TFileThread& FThread;
};

TFileThread::TFileThread(TDataBase* DataBase, const QString& fileName, TAnswerProc AnswerProc, TAskProc AskProc,
                         int variantCode)
    : FAnswerProc(std::move(AnswerProc)), FAskProc(std::move(AskProc)), FDataBase(DataBase), FFileName(fileName),
      FVariant(variantCode) {
    FDataBase->SetReaderMarker(false);
    FDataBase->SetLoading(true);
    start();
}

TFileThread::~TFileThread() {
    // The loader may be waiting inside a report for this very thread: serve the pending
    // calls (which do nothing now) until it has finished.
    FClosing = true;
    requestInterruption();
    while (!wait(QDeadlineTimer(20))) QCoreApplication::sendPostedEvents();
}

void TFileThread::Answer(int Index, const QString& Text) {
    FAnswerIndex = Index;
    FAnswerText = Text;
    if (!FAnswerProc || FClosing) return;
    QMetaObject::invokeMethod(
        FDataBase,
        [this] {
            if (!FClosing) FAnswerProc(FAnswerIndex, FAnswerText);
        },
        Qt::BlockingQueuedConnection);
}

int TFileThread::Ask() {
    if (!FAskProc) return -1;
    int res = -1;
    if (FClosing) return res;
    QMetaObject::invokeMethod(
        FDataBase,
        [this, &res] {
            if (!FClosing) FAskProc(res);
        },
        Qt::BlockingQueuedConnection);
    return res;
}

void TFileThread::run() {
    FResult = kResultError;
    FValueCount = 0;
    FAsked = false;
    try {
        auto file = TDataFile::CreateLoad(FFileName);
        if (file) {
            // Decompression runs ahead while this thread waits for its reports.
            file->EnableReadAhead();
            TLoaderReceiver receiver(*FDataBase, *this);
            TRecordingWalk walk(*file, receiver, FVariant);
            const TRecordingWalk::TEnd end = walk.Run();
            FValueCount = walk.ValueCount();
            switch (end) {
            case TRecordingWalk::TEnd::EndOfStream:
            case TRecordingWalk::TEnd::EmptyBlock:
            case TRecordingWalk::TEnd::Truncated: FResult = kResultOk; break;
            default: break; // an answer, a cancel or an error decided
            }
        }
    } catch (const std::bad_alloc&) {
        // Out of memory: what was read stays; the user is told of an error.
    }
    // Views read only ascending curves; a file written out of order is sorted once here.
    // The last chunk of each curve is packed too.
    for (int i = 0; i < FDataBase->Curve_Count(); ++i) {
        FDataBase->Data(i).SortByTime();
        FDataBase->Data(i).Compact();
    }
    FDataBase->SetReaderMarker(false);

    if (FResult == kResultOk || FResult == kResultPreviewer) {
        Answer(kValueCount, QString::number(FValueCount));
    } else if (isInterruptionRequested()) {
        Answer(kCancelled, {});
        FResult = kResultCancelled;
    } else {
        Answer(kError, {});
    }
    FDataBase->SetLoading(false);
    Answer(FResult, {});
}
