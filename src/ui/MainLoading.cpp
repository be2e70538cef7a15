// The main window opening a recording: the progress page, the loader's reports and question,
// and what follows a complete, failed or cancelled load.

#include "ui/Main.h"

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"
#include "store/FileThread.h"
#include "ui/BigDataDlg.h"
#include "ui/SummaryWindow.h"
#include "ui/ChartTexts.h"
#include "ui/ViewCalc.h"
#include "ui/ViewFFT.h"
#include "ui/ViewLimit.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

using zeb::TMsgDlgType;
using zeb::TTextId;
using zeb::Txt;
using zeb::TxtFmt;
using zeb::TZebDlg;

namespace {

constexpr int kBusySteps = 10;
constexpr int kBusyStepMs = 1000;

} // namespace

void TForm1::BuildProgressPage() {
    auto* page = new QWidget(onbWork);
    page->setObjectName(QStringLiteral("tbsProgress"));
    auto* v = new QVBoxLayout(page);
    v->addStretch(2);
    lblFileTitle = new QLabel(page);
    lblFileTitle->setObjectName(QStringLiteral("lblFileTitle"));
    lblFileTitle->setAlignment(Qt::AlignCenter);
    lblFileTitle->setWordWrap(true);
    QFont f = lblFileTitle->font();
    f.setPointSizeF(f.pointSizeF() * 1.25);
    lblFileTitle->setFont(f);
    v->addWidget(lblFileTitle);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    trbFileProgress = new QProgressBar(page);
    trbFileProgress->setObjectName(QStringLiteral("trbFileProgress"));
    trbFileProgress->setRange(0, kBusySteps - 1);
    trbFileProgress->setTextVisible(false);
    trbFileProgress->setMinimumWidth(360);
    row->addWidget(trbFileProgress, 2);
    row->addStretch(1);
    v->addLayout(row);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    btnFileCancel = new QPushButton(page);
    btnFileCancel->setObjectName(QStringLiteral("btnFileCancel"));
    connect(btnFileCancel, &QPushButton::clicked, this, &TForm1::GUI_FileCancel);
    buttons->addWidget(btnFileCancel);
    buttons->addStretch(1);
    v->addLayout(buttons);
    v->addStretch(3);
    onbWork->addWidget(page); // page 1
}

bool TForm1::OpenFile(const QString& fileName) {
    if (FLoading || FFileThread) return false;
    std::erase_if(FThreads, [](const std::unique_ptr<TFileThread>& t) { return t->isFinished(); });
    const QFileInfo fi(fileName);
    if (!fi.isFile() || !fi.isReadable()) {
        ShowError(TxtFmt(TTextId::MsgLoadCannotOpen, {QDir::toNativeSeparators(fileName)}));
        return false;
    }
    // The page's entries go into the old recording's settings (the general ones outlive it),
    // and the new recording opens on its chart.
    if (onbView->currentIndex() == pgCfg && !SetViewPage(pgGraph)) return false;

    // 1. the views let go of the old recording (the chart and the table when the store
    // forgets it)
    FViewCalc->SetInactive();
    FViewLimit->SetInactive();
    if (FViewFFT) FViewFFT->hide(); // its input belongs to the old recording
    ShowWorkPage(pgProgress);
    FCaptionFile.clear();
    FModified = false;
    lblFileTitle->setText(Txt(TTextId::MsgReadingFile) + QLatin1Char('\n') +
                          QDir::toNativeSeparators(fi.absoluteFilePath()));
    trbFileProgress->setValue(0);
    FBusyStep.invalidate();
    FDataBase->AddFile(fi.absoluteFilePath());

    // 2. the loader
    FLoading = true;
    UpdateCaption();
    btnFileCancel->setEnabled(true);
    btnFileCancel->setFocus();
    // The last report runs inside the loader's own call, so the object is kept until a later
    // open or the window's end, when the thread has surely finished.
    FThreads.push_back(std::make_unique<TFileThread>(
        FDataBase, fi.absoluteFilePath(),
        [this](TLoadReport report, const QString& text) { FileThread_OnAnswer(report, text); },
        [this](TBigDataAnswer& answer) { FileThread_OnAsk(answer); }, ZebSettings().BrandVariant));
    FFileThread = FThreads.back().get();
    return true;
}

void TForm1::StepBusyIndicator() {
    if (FBusyStep.isValid() && FBusyStep.elapsed() < kBusyStepMs) return;
    FBusyStep.start();
    const int next = trbFileProgress->value() + 1;
    trbFileProgress->setValue(next > trbFileProgress->maximum() ? trbFileProgress->minimum() : next);
}

void TForm1::FileThread_OnAnswer(TLoadReport report, const QString& text) {
    switch (report) {
    case TLoadReport::Progress:
        // "Block " and a further blank before the number: two blanks, as always shown.
        SetStatus(Txt(TTextId::StatusBlock) + QLatin1Char(' ') + text);
        StepBusyIndicator();
        break;
    case TLoadReport::CannotOpen:
        ShowError(TxtFmt(TTextId::MsgLoadCannotOpen, {text}));
        break;
    case TLoadReport::Error:
        ShowError(Txt(TTextId::MsgFatalError));
        break;
    case TLoadReport::Defect:
        ShowError(text);
        break;
    case TLoadReport::ResultOk:
        FileLoaded();
        break;
    case TLoadReport::ResultError:
    case TLoadReport::ResultCancelled:
    case TLoadReport::ResultPreviewer:
        FileFailed(report);
        break;
    case TLoadReport::ValueCount:
    case TLoadReport::Cancelled:
        break; // they need no answer
    }
}

void TForm1::FileThread_OnAsk(TBigDataAnswer& answer) {
    if (!FBigDataDlg) FBigDataDlg = new TfrmBigDataDlg(this);
    answer = FBigDataDlg->Execute();
}

void TForm1::FileFailed(TLoadReport result) {
    const QString fileName = FDataBase->FileName();
    FFileThread = nullptr;
    FLoading = false;
    FModified = false;
    FCaptionFile.clear();
    // What was read stays and is shown; only the file is forgotten. Large curves are drawn
    // reduced, as after a complete load, so a cancelled huge file stays responsive.
    FViewCalc->Clear();
    FViewLimit->Clear();
    FDataBase->FinishPartialLoad();
    chkBigDataOn->setChecked(FDataBase->isBigDataOn());
    UpdateCaption();
    ShowWorkPage(pgWork);
    View_OnPageChanged(onbView->currentIndex());
    SyncGraphSwitches();
    if (result == TLoadReport::ResultPreviewer) {
        StartPreviewer(fileName);
    }
    Q_EMIT loadFinished(result);
}

void TForm1::StartPreviewer(const QString& fileName) {
    const QString previewer = ZebProgramPath(QStringLiteral("zeb_previewer"));
    if (!QFileInfo(previewer).isFile() || !QProcess::startDetached(previewer, {fileName})) {
        // Deliberately the same German text in every language.
        ShowError(Txt(TTextId::MsgNoPreviewer));
        return;
    }
    // The previewer takes over; the viewer goes once the loader's last report has returned.
    QTimer::singleShot(0, this, &QWidget::close);
}

void TForm1::FileLoaded() {
    FFileThread = nullptr;
    FLoading = false;
    FModified = false;
    TDataBase& db = *FDataBase;

    db.FinishLoad(); // the chart and the table rebuild when the store says so
    chkBigDataOn->setChecked(db.isBigDataOn());

    FCaptionFile = db.FileName();
    RecentFiles_Add(db.FileName());
    UpdateCaption();
    ShowWorkPage(pgWork);
    View_OnPageChanged(onbView->currentIndex());
    GraphCursorSet(0, true);
    GraphCursorSet(1, true);
    SyncGraphSwitches();
    Analyses_Arm();

    if (db.isBigDataOn())
        TZebDlg::ShowMsg(Txt(TTextId::MsgDataReductionNote), TMsgDlgType::Information);
    Q_EMIT loadFinished(TLoadReport::ResultOk);
}

// ====================================================================== summary of recordings

void TForm1::GUI_FileSummary() {
    if (FLoading) return;
    const QString current = FDataBase->FileName();
    const QString dir = current.isEmpty() ? ZebSettings().FileDir : QFileInfo(current).absolutePath();
    QStringList files;
    if (!TZebDlg::OpenMultipleZebFile(Txt(TTextId::SumCaption), dir, files) || files.isEmpty()) return;
    Summarise(files);
}

void TForm1::Summarise(const QStringList& files) {
    if (files.isEmpty()) return;
    if (!FSummary) {
        FSummary = new TfrmSummary(this);
        FSummary->setAttribute(Qt::WA_DeleteOnClose);
        connect(FSummary, &TfrmSummary::openRecording, this, [this](const QString& file) {
            if (FLoading) return;
            if (OpenFile(file)) SetModified(false);
            raise();
            activateWindow();
        });
    }
    TSummaryOptions options;
    options.ActivationEnergy = ZebSettings().MktActivationEnergy;
    options.Variant = ZebSettings().BrandVariant;
    if (!FSummary->Summarise(files, options) && FSummary->Rows().empty()) {
        FSummary->close(); // cancelled before there was anything to show
        return;
    }
    FSummary->show();
    FSummary->raise();
}

QString TForm1::DroppedFolder(const QMimeData* mime) const {
    if (!mime || !mime->hasUrls()) return {};
    for (const QUrl& url : mime->urls())
        if (url.isLocalFile() && QFileInfo(url.toLocalFile()).isDir()) return url.toLocalFile();
    return {};
}
