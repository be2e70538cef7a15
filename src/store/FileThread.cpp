#include "store/FileThread.h"

#include "data/DataFile.h"
#include "store/DataBase.h"

#include <QCoreApplication>

#include <new>

class TLoaderReceiver : public TStoreReceiver {
public:
    TLoaderReceiver(TDataBase& db, TFileThread& thread) : TStoreReceiver(db), FThread(thread) {}

    bool IsCancelled() override { return FThread.isInterruptionRequested(); }
    void ReportDefect(const QString& text) override { FThread.Answer(TLoadReport::Defect, text); }
    void OnBlock(int counter, quint16, int) override { FThread.Answer(TLoadReport::Progress, QString::number(counter)); }
    bool AfterDataBlock(qint64 count) override {
        FThread.FValueCount = count;
        if (FThread.FAsked || count <= TFileThread::kAskAbove) return true;
        switch (FThread.Ask()) {
        case TBigDataAnswer::Show: FThread.FResult = TLoadReport::ResultOk; return false;
        case TBigDataAnswer::Continue: FThread.FAsked = true; return true;
        case TBigDataAnswer::Previewer: FThread.FResult = TLoadReport::ResultPreviewer; return false;
        case TBigDataAnswer::Stop: break;
        }
        FThread.requestInterruption();
        return false;
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

void TFileThread::Answer(TLoadReport report, const QString& text) {
    FAnswerReport = report;
    FAnswerText = text;
    if (!FAnswerProc || FClosing) return;
    QMetaObject::invokeMethod(
        FDataBase,
        [this] {
            if (!FClosing) FAnswerProc(FAnswerReport, FAnswerText);
        },
        Qt::BlockingQueuedConnection);
}

TBigDataAnswer TFileThread::Ask() {
    TBigDataAnswer res = TBigDataAnswer::Stop;
    if (!FAskProc || FClosing) return res;
    QMetaObject::invokeMethod(
        FDataBase,
        [this, &res] {
            if (!FClosing) FAskProc(res);
        },
        Qt::BlockingQueuedConnection);
    return res;
}

void TFileThread::run() {
    FResult = TLoadReport::ResultError;
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
            case TRecordingWalk::TEnd::Truncated: FResult = TLoadReport::ResultOk; break;
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

    if (FResult == TLoadReport::ResultOk || FResult == TLoadReport::ResultPreviewer) {
        Answer(TLoadReport::ValueCount, QString::number(FValueCount));
    } else if (isInterruptionRequested()) {
        Answer(TLoadReport::Cancelled, {});
        FResult = TLoadReport::ResultCancelled;
    } else {
        Answer(TLoadReport::Error, {});
    }
    FDataBase->SetLoading(false);
    Answer(FResult, {});
}
