#include "ui/Main.h"

#include "analysis/CalcKessa.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "store/Summary.h"
#include "store/FileThread.h"
#include "ui/BigDataDlg.h"
#include "ui/CfgPage.h"
#include "ui/ChartEditor.h"
#include "ui/CrossHair.h"
#include "ui/CutterLaunch.h"
#include "ui/GoToDlg.h"
#include "ui/Printing.h"
#include "ui/PrintPreviewPage.h"
#include "ui/ReportDlg.h"
#include "ui/TableView.h"
#include "ui/ViewCalc.h"
#include "ui/ViewLimit.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPrinter>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

using zeb::TMsgDlgBtn;
using zeb::TMsgDlgType;
using zeb::TTextId;
using zeb::Txt;
using zeb::TxtFmt;
using zeb::TZebDlg;

namespace {

bool CompanionExists(const QString& baseName) {
    const QFileInfo fi(ZebProgramPath(baseName));
    return fi.isFile() && fi.isExecutable();
}

} // namespace

// ====================================================================== creation

TForm1::TForm1(QWidget* parent)
    : QMainWindow(parent), FCommandLine(QCoreApplication::arguments().mid(1)),
      FPrinter(std::make_unique<QPrinter>(QPrinter::HighResolution)) {
    setObjectName(QStringLiteral("Form1"));
    setAcceptDrops(true);
    FormCreate();
}

TForm1::~TForm1() {
    // Cuts the user started finish before the program ends, with the window already gone.
    if (FCutterLaunch->Running() > 0) {
        hide();
        FCutterLaunch->WaitForAll();
    }
    // A load still running is only stopped; its pending reports go nowhere.
    FFileThread = nullptr;
    FThreads.clear();
    TZebSettings& s = ZebSettings();
    s.ScreenFull = isMaximized();
    if (!s.ScreenFull) {
        s.ScreenWidth = normalGeometry().width();
        s.ScreenHeight = normalGeometry().height();
    }
    // The window is gone by now, but the program still runs: the user hears of it as of
    // any other failed save.
    if (!SaveZebSettings(QString::fromLatin1(kZebProgramViewer))) ShowError(ZebSettingsSaveFailedText());
}

void TForm1::FormCreate() {
    // 1. the store, the analysis views and the chart with its cursors and zoom. The views hear
    // of new settings before the chart, whose rebuild then computes them once.
    FDataBase = new TDataBase(this);
    FViewCalc = new TfrmViewCalc(FDataBase, this);
    FViewLimit = new TfrmViewLimit(FDataBase, this);
    FChart = new TZebChart(FDataBase);
    FChart->setObjectName(QStringLiteral("ZEBChart"));
    FTableView = new TTableView(FDataBase);
    FTableView->setObjectName(QStringLiteral("tbsTable"));
    FCfgPage = new TCfgPage(FDataBase);
    FCutterLaunch = new TCutterLaunch(this);
    connect(FCutterLaunch, &TCutterLaunch::statusText, this, &TForm1::SetStatus);
    connect(FCutterLaunch, &TCutterLaunch::finished, this, &TForm1::cutterFinished);

    onbWork = new QStackedWidget(this);
    onbWork->setObjectName(QStringLiteral("onbWork"));
    setCentralWidget(onbWork);
    BuildMenus();
    BuildWorkPage();
    BuildProgressPage();
    BuildPreviewPage();
    BuildEditorPage();

    stbStatus = new QLabel(this);
    stbStatus->setObjectName(QStringLiteral("stbStatus"));
    stbStatus->setTextInteractionFlags(Qt::NoTextInteraction);
    statusBar()->setObjectName(QStringLiteral("stbStatusBar"));
    statusBar()->addWidget(stbStatus, 1);
    statusBar()->setSizeGripEnabled(true);

    connect(FChart, &TZebChart::modified, this, [this] { SetModified(true); });
    connect(FChart, &TZebChart::statusText, this, &TForm1::SetStatus);
    connect(FChart, &TZebChart::legendClicked, this, &TForm1::Graph_OnLegendClick);
    connect(FChart, &TZebChart::elementClicked, this, &TForm1::Graph_OnElementClick);
    connect(FChart, &TZebChart::undoAvailable, this, [this] { UpdateUndo(); });
    connect(FChart, &TZebChart::switchesChanged, this, &TForm1::SyncGraphSwitches);
    connect(FTableView, &TTableView::statusText, this, &TForm1::SetStatus);
    connect(FTableView, &TTableView::gotoTimeRequested, this, &TForm1::GUI_TableGotoTime);
    FTableView->SetChartMinProvider([this] { return FChart->ChartAxis(axBottom)->range().lower; });
    connect(FCfgPage, &TCfgPage::modified, this, [this] { SetModified(true); });
    // The analyses follow the visible range and the curves shown.
    connect(FDataBase, &TDataBase::viewRangeChanged, this, &TForm1::Analyses_ReCalc);
    connect(FChart, &TZebChart::rebuilt, this, &TForm1::Analyses_ReCalc);
    connect(FDataBase, &TDataBase::settingsChanged, this, &TForm1::SyncGraphSwitches);
    connect(FViewCalc, &TfrmViewBase::closedByUser, this, [this] { Analyses_SetShown(true, false); });
    connect(FViewLimit, &TfrmViewBase::closedByUser, this, [this] { Analyses_SetShown(false, false); });

    // 2. texts and settings
    ApplyLanguage();
    const TZebSettings& s = ZebSettings();
    resize(s.ScreenWidth > 0 ? s.ScreenWidth : 1024, s.ScreenHeight > 0 ? s.ScreenHeight : 720);
    if (s.ScreenFull) setWindowState(windowState() | Qt::WindowMaximized);
    RecentFiles_Rebuild();

    // 3. the companions
    FindHelperPrograms();

    // 4. the additional flow channel from the settings
    FDataBase->CalcKessa().setCalcCurve(s.CustomApp0_Active, s.CustomApp0_Curve, s.CustomApp0_Name, s.CustomApp0_Unit,
                             s.CustomApp0_Mul, s.CustomApp0_Add);

    // 5. the chart view
    ShowWorkPage(pgWork);
    onbView->setCurrentIndex(pgGraph);
    View_OnPageChanged(pgGraph);
    SyncGraphSwitches();
    UpdateCaption();
}





void TForm1::FindHelperPrograms() {
    const bool partner = ZebSettings().BrandVariant != 0;
    const bool cutter =
        CompanionExists(partner ? QStringLiteral("trk_cutter") : QStringLiteral("zeb_cutter"));
    const bool converter = CompanionExists(partner ? QStringLiteral("trk2csv") : QStringLiteral("zeb2csv"));
    FCutterAvailable = cutter;
    FTextExportAvailable = cutter && converter;
    // Missing programs take their commands away for good.
    menFileSaveAs->setVisible(FCutterAvailable);
    menFileExportText->setVisible(FTextExportAvailable);
    menFileExportMatlab->setVisible(FCutterAvailable);
    menFileExportHdf5->setVisible(FCutterAvailable);
}

void TForm1::SetBigDataDlg(TfrmBigDataDlg* dlg) {
    FBigDataDlg = dlg;
}


// ====================================================================== caption and status

QString TForm1::FileDisplayName() const {
    return QDir::toNativeSeparators(FCaptionFile);
}

void TForm1::UpdateCaption() {
    QString caption = FBaseCaption;
    if (FLoading) caption += QLatin1Char('>');
    caption += QStringLiteral(" [64]");
    if (!FCaptionFile.isEmpty()) {
        caption += QStringLiteral(" [") + FileDisplayName();
        if (FModified) caption += QLatin1Char('*');
        caption += QLatin1Char(']');
    }
    setWindowTitle(caption);
    const bool canSave = FModified && !FCaptionFile.isEmpty();
    menFileSave->setEnabled(canSave);
    // The store belongs to the loader while it runs.
    menFileOpen->setEnabled(!FLoading);
    for (QMenu* m : {menView, menGraph, menTable, menCfg})
        m->menuAction()->setEnabled(!FLoading);
    // The shortcuts too: no view may read the store while the loader fills it.
    for (QAction* a : FViewGroup->actions())
        a->setEnabled(!FLoading);
}

void TForm1::SetModified(bool modified) {
    if (modified && (FLoading || FCaptionFile.isEmpty())) return;
    FModified = modified;
    UpdateCaption();
}

void TForm1::SetStatus(const QString& text) {
    stbStatus->setText(text);
}

QString TForm1::StatusText() const {
    return stbStatus->text();
}

// ====================================================================== views

int TForm1::ViewPage() const {
    return onbView->currentIndex();
}

bool TForm1::SetViewPage(int page) {
    if (FLoading || page < pgGraph || page > pgCfg) return false;
    if (page != onbView->currentIndex()) {
        if (!View_OnPageChange(page)) {
            SyncViewButtons(); // the button pressed for the refused view comes up again
            return false;
        }
        onbView->setCurrentIndex(page);
        View_OnPageChanged(page);
    }
    SyncViewButtons();
    return true;
}

// Only the configuration page can hold the user back: an invalid entry keeps its toolbar and
// the focus where they are.
bool TForm1::View_OnPageChange(int) {
    return CfgPageApply();
}

bool TForm1::CfgPageApply() {
    if (onbView->currentIndex() != pgCfg) return true;
    if (!FCfgPage->Leave()) return false;
    // The store's view now holds the page's values (limits, number formats and the flow
    // channel among them): chart, switches and figures follow.
    FDataBase->Cfg_Changed();
    return true;
}

void TForm1::View_OnPageChanged(int page) {
    const bool graph = page == pgGraph, table = page == pgTable, cfg = page == pgCfg;
    panSpeedButtonsGraph->setVisible(graph);
    panSpeedButtonsText->setVisible(graph);
    menGraph->menuAction()->setVisible(graph);
    panSpeedButtonsTable->setVisible(table);
    menTable->menuAction()->setVisible(table);
    panSpeedButtonsCfg->setVisible(cfg);
    menCfg->menuAction()->setVisible(cfg);
    // The switch stays at hand while the recording holds reduced curves; the configuration
    // page has toolbars of its own.
    panSpeedButtonsBigData->setVisible(!cfg && FDataBase->isBigData());
    if (graph) SetStatus(Txt(TTextId::StatusZoomHint));
    // The analyses speak of the chart: they go while another view is shown.
    FViewCalc->Display(graph);
    FViewLimit->Display(graph);
    if (table) {
        SetStatus(QString());
        FTableView->Enter();
    }
    if (cfg) {
        SetStatus(QString());
        FCfgPage->Enter(FCfgTab);
        FCfgTab = -1; // a later visit keeps the tab the user was on, unless a click names one
        SetModified(true);
    }
    SyncViewButtons();
}

void TForm1::SyncViewButtons() {
    const int page = onbView->currentIndex();
    menViewGraph->setChecked(page == pgGraph);
    menViewTable->setChecked(page == pgTable);
    menViewCfg->setChecked(page == pgCfg);
}

void TForm1::GUI_ViewGraph() {
    SetViewPage(pgGraph);
}

void TForm1::GUI_ViewTable() {
    if (SetViewPage(pgTable)) GUI_TableGotoTMin();
}

void TForm1::GUI_ViewCfg() {
    SetViewPage(pgCfg);
}

// ====================================================================== table commands

void TForm1::GUI_TableGotoTMin() {
    if (FLoading) return;
    FTableView->GUI_TableGotoTMin();
}

// The dialog asks in the time axis's own terms: seconds, a span or a moment, all counted from
// the axis's zero.
void TForm1::GUI_TableGotoTime() {
    if (FLoading || onbView->currentIndex() != pgTable) return;
    const double origin = ChartText::Origin(*FDataBase);
    TfrmGoToDlg dlg(this);
    double seconds = 0.0;
    if (!dlg.Execute(FDataBase->Axis_Get(axBottom).XType, origin / zeb::kSecondsPerDay, seconds)) return;
    FTableView->GUI_TableGotoTime(origin + seconds);
}

// ====================================================================== configuration commands

void TForm1::GUI_CfgRedo() {
    if (FLoading || onbView->currentIndex() != pgCfg) return;
    FCfgPage->Undo();
}

// ====================================================================== file commands

void TForm1::GUI_File() {
    const bool open = !FCaptionFile.isEmpty() && !FLoading;
    menFileTemplateUse->setEnabled(open);
    for (QAction* a : {menFileExportBmp, menFileExportJpg, menFileExportPng, menFileExportPdf, menFileExportSvg,
                       menFilePrintPreview, menFilePrint, menFilePrintReport})
        a->setEnabled(open);
    menFileOpenAgain->setEnabled(!FLoading && !menFileOpenAgain->isEmpty());
    for (QAction* a : {menFileSaveAs, menFileExportText, menFileExportMatlab, menFileExportHdf5}) a->setEnabled(open);
}

void TForm1::GUI_FileOpen() {
    if (FLoading || !CfgPageApply()) return;
    QString fileName = FDataBase->FileName();
    const QString dir = fileName.isEmpty() ? ZebSettings().FileDir : QFileInfo(fileName).absolutePath();
    if (!TZebDlg::OpenZebFile(Txt(TTextId::HintFileOpen), dir, fileName)) return;
    QCoreApplication::processEvents();
    OpenFile(fileName);
    SetModified(false);
}

void TForm1::GUI_FileSave() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    if (!CfgPageApply()) return;
    if (SaveSettingsNextToFile()) SetModified(false);
}

bool TForm1::SaveSettingsNextToFile() {
    const QString target = SettingsFileOf(FDataBase->FileName());
    if (FDataBase->Ini_FileSave(target)) return true;
    ShowError(TxtFmt(TTextId::MsgCannotSaveFile, {QDir::toNativeSeparators(target)}));
    return false;
}

void TForm1::GUI_FileTemplateUse() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    // The page's entries go first, or the template would be overwritten by them on leaving.
    if (!CfgPageApply()) return;
    QString fileName = ZebSettings().TemplateFile;
    const QString dir = fileName.isEmpty() ? QFileInfo(FDataBase->FileName()).absolutePath()
                                           : QFileInfo(fileName).absolutePath();
    if (!TZebDlg::OpenMseFile(Txt(TTextId::MenuFileTemplateUse), dir, fileName)) return;
    if (!ApplyTemplate(fileName)) return;
    if (onbView->currentIndex() == pgCfg) FCfgPage->Enter(); // shows what the template set
    SetModified(true);
}

bool TForm1::ApplyTemplate(const QString& fileName) {
    if (!FDataBase->Ini_FileOpen(fileName)) {
        ShowError(TxtFmt(TTextId::MsgCannotOpenFile, {QDir::toNativeSeparators(fileName)}));
        return false;
    }
    Analyses_Arm(); // the template says which views are shown
    return true;
}

void TForm1::GUI_FileTemplateSave() {
    if (FLoading || !CfgPageApply()) return;
    if (FCaptionFile.isEmpty()) {
        ShowError(Txt(TTextId::MsgSaveFileFirst));
        return;
    }
    QString fileName = ZebSettings().TemplateFile;
    const QString dir = QFileInfo(FDataBase->FileName()).absolutePath();
    if (!TZebDlg::SaveMseFile(Txt(TTextId::MenuFileTemplateSave), dir, fileName)) return;
    if (!FDataBase->Ini_FileSave(fileName))
        ShowError(TxtFmt(TTextId::MsgCannotSaveFile, {QDir::toNativeSeparators(fileName)}));
}

void TForm1::GUI_FileExit() {
    close();
}

void TForm1::GUI_FileCancel() {
    if (FFileThread) FFileThread->Terminate();
}

// ====================================================================== recent files

void TForm1::RecentFiles_Add(const QString& fileName) {
    auto& files = ZebSettings().File;
    const QString path = QFileInfo(fileName).absoluteFilePath();
    std::vector<QString> list{path};
    for (const QString& f : files) {
        if (f.isEmpty() || QFileInfo(f).absoluteFilePath() == path) continue;
        list.push_back(f);
    }
    for (size_t i = 0; i < files.size(); ++i)
        files[i] = i < list.size() ? list[i] : QString();
    ZebSettings().FileDir = QFileInfo(path).absolutePath();
    RecentFiles_Rebuild();
}

void TForm1::RecentFiles_Rebuild() {
    menFileOpenAgain->clear();
    int n = 0;
    for (const QString& f : ZebSettings().File) {
        if (f.isEmpty()) continue;
        QAction* a = menFileOpenAgain->addAction(
            QStringLiteral("&%1 %2").arg(n + 1 == 10 ? 0 : n + 1).arg(QDir::toNativeSeparators(f)));
        a->setObjectName(QStringLiteral("menFileOpenAgain%1").arg(n));
        connect(a, &QAction::triggered, this, [this, f] {
            if (FLoading || !CfgPageApply()) return;
            OpenFile(f);
            SetModified(false);
        });
        ++n;
    }
    menFileOpenAgain->setEnabled(n > 0);
}

// ====================================================================== opening a file

QString TForm1::SettingsFileOf(const QString& dataFile) {
    return TDataBase::SettingsFileOf(dataFile);
}








void TForm1::ShowError(const QString& text) {
    TZebDlg::ShowErrMsg(text);
}

// ====================================================================== window events

void TForm1::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (FShownOnce) return;
    FShownOnce = true;
    // FormShow: exactly one argument is a recording to open.
    if (FCommandLine.size() == 1) {
        const QString file = FCommandLine.first();
        QTimer::singleShot(0, this, [this, file] { OpenFile(file); });
    }
}

void TForm1::closeEvent(QCloseEvent* event) {
    if (FLoading) {
        // Only the load stops; the window stays until asked again.
        if (FFileThread) FFileThread->Terminate();
        FLoading = false;
        event->ignore();
        return;
    }
    if (FModified && !FCaptionFile.isEmpty()) {
        switch (TZebDlg::ShowMsgBox(Txt(TTextId::MsgSaveSettings), TMsgDlgType::Confirmation,
                                    TMsgDlgBtn::Yes | TMsgDlgBtn::No | TMsgDlgBtn::Cancel, TMsgDlgBtn::Yes)) {
        case zeb::TModalResult::Yes:
            if (!CfgPageApply() || !SaveSettingsNextToFile()) {
                event->ignore();
                return;
            }
            break;
        case zeb::TModalResult::No:
            break;
        default:
            event->ignore();
            return;
        }
    }
    event->accept();
}

QString TForm1::DataFileExtension() const {
    return ZebSettings().DataFileExt.isEmpty() ? QStringLiteral(".zeb") : ZebSettings().DataFileExt;
}

QString TForm1::AcceptableDrop(const QMimeData* mime) const {
    if (!mime || !mime->hasUrls()) return {};
    for (const QUrl& url : mime->urls()) {
        if (!url.isLocalFile()) continue;
        const QString path = url.toLocalFile();
        if (path.endsWith(DataFileExtension(), Qt::CaseInsensitive) && QFileInfo(path).isFile()) return path;
    }
    return {};
}

void TForm1::dragEnterEvent(QDragEnterEvent* event) {
    if (!FLoading && !(AcceptableDrop(event->mimeData()).isEmpty() && DroppedFolder(event->mimeData()).isEmpty()))
        event->acceptProposedAction();
}

void TForm1::dropEvent(QDropEvent* event) {
    if (FLoading) return;
    if (const QString folder = DroppedFolder(event->mimeData()); !folder.isEmpty()) {
        event->acceptProposedAction();
        QTimer::singleShot(0, this, [this, folder] {
            const QStringList files = RecordingsInFolder(folder);
            if (files.isEmpty())
                TZebDlg::ShowMsg(TxtFmt(TTextId::SumNoRecordings, {QDir::toNativeSeparators(folder)}),
                                 TMsgDlgType::Information);
            else
                Summarise(files);
        });
        return;
    }
    const QString path = AcceptableDrop(event->mimeData());
    if (path.isEmpty()) return;
    event->acceptProposedAction();
    // Opened after the drop has returned, so the source is not kept waiting during a dialog.
    QTimer::singleShot(0, this, [this, path] {
        if (OpenFile(path)) SetModified(false);
    });
}

// ====================================================================== picture


// ====================================================================== outer pages

int TForm1::WorkPage() const {
    return onbWork->currentIndex();
}

void TForm1::ShowWorkPage(int page) {
    onbWork->setCurrentIndex(page);
    if (page == pgPreview || page == pgEditor) SetStatus(QString());
    const bool work = page == pgWork;
    menFile->menuAction()->setVisible(work);
    menView->menuAction()->setVisible(work);
    menFile2->menuAction()->setVisible(page == pgProgress);
    menBack->setVisible(page == pgPreview || page == pgEditor);
    if (work) {
        View_OnPageChanged(onbView->currentIndex()); // the view's own menu and panels
    } else {
        for (QMenu* m : {menGraph, menTable, menCfg})
            m->menuAction()->setVisible(false);
    }
}

void TForm1::GUI_Back() {
    if (WorkPage() == pgEditor) {
        GUI_GraphEditorExit();
        return;
    }
    ShowWorkPage(pgWork);
}

// ====================================================================== printing

void TForm1::BuildPreviewPage() {
    FPrintPage = new TPrintPreviewPage(FDataBase, FChart, FPrinter.get(), onbWork);
    connect(FPrintPage, &TPrintPreviewPage::modified, this, [this] { SetModified(true); });
    connect(FPrintPage, &TPrintPreviewPage::failed, this, &TForm1::ShowError);
    connect(FPrintPage, &TPrintPreviewPage::back, this, &TForm1::GUI_Back);
    connect(FPrintPage, &TPrintPreviewPage::printed, this, [this] { ShowWorkPage(pgWork); });
    onbWork->addWidget(FPrintPage); // page 2
}

void TForm1::GUI_FilePrintPreview() {
    if (FLoading || FCaptionFile.isEmpty() || !CfgPageApply()) return;
    FPrintPage->Enter();
    ShowWorkPage(pgPreview);
    FPrintPage->Refresh();
}

void TForm1::GUI_PrintOrientation(int item) {
    FPrintPage->SetOrientation(item);
}

void TForm1::GUI_PrintMargins() {
    FPrintPage->TakeMargins();
}

void TForm1::GUI_PrintProportional() {
    FPrintPage->TakeProportional();
}

void TForm1::GUI_PrintAfterDraw() {
    FPrintPage->ShowDrawnMargins();
}

void TForm1::GUI_PrintProperties() {
    FPrintPage->PageSetup();
}

void TForm1::GUI_Print() {
    if (FPrintPage->PrintNow()) ShowWorkPage(pgWork);
}

// At once, with the orientation the printer has; the store's orientation is set afterwards,
// as the program always has.
void TForm1::GUI_FilePrintDirect() {
    if (FLoading || FCaptionFile.isEmpty() || !CfgPageApply()) return;
    if (!FPrintPage->PrintDirect()) GUI_FilePrint(); // no printer of the system: the dialog, which offers a file
}

void TForm1::GUI_FilePrint() {
    if (FLoading || FCaptionFile.isEmpty() || !CfgPageApply()) return;
    FPrintPage->PrintWithDialog(this);
}

void TForm1::GUI_FilePrintReport() {
    if (FLoading || FCaptionFile.isEmpty() || !CfgPageApply()) return;
    // The figures are the analyses' over what the chart shows.
    TReportOptions options;
    options.ActivationEnergy = ZebSettings().MktActivationEnergy;
    TfrmReport dlg(*FDataBase, FChart, this, options);
    dlg.exec();
}


// ====================================================================== picture export

void TForm1::ExportPicture(const QString& extension, const QString& filter, TTextId title) {
    if (FLoading || FCaptionFile.isEmpty() || !CfgPageApply()) return;
    const QFileInfo data(FDataBase->FileName());
    QString fileName = data.absoluteDir().filePath(data.completeBaseName() + extension);
    if (!TZebDlg::SaveFile(Txt(title), data.absolutePath(), filter, extension, fileName)) return;
    QCoreApplication::processEvents();
    if (!::SaveChartPicture(*FChart, fileName, FChart->size()))
        ShowError(TxtFmt(TTextId::MsgCannotWritePicture, {QDir::toNativeSeparators(fileName)}));
}

void TForm1::GUI_FileExportBmp() {
    ExportPicture(QStringLiteral(".bmp"), TZebDlg::BmpFilter(), TTextId::MenuFileExportBmp);
}

void TForm1::GUI_FileExportJpeg() {
    ExportPicture(QStringLiteral(".jpg"), TZebDlg::JpgFilter(), TTextId::MenuFileExportJpg);
}

void TForm1::GUI_FileExportPng() {
    ExportPicture(QStringLiteral(".png"), TZebDlg::BuildFilter(Txt(TTextId::DlgPngPicture), QStringLiteral(".png")),
                  TTextId::MenuFileExportPng);
}

void TForm1::GUI_FileExportPdf() {
    ExportPicture(QStringLiteral(".pdf"), TZebDlg::BuildFilter(Txt(TTextId::ReportPdfFilter), QStringLiteral(".pdf")),
                  TTextId::MenuFileExportPdf);
}

void TForm1::GUI_FileExportSvg() {
    ExportPicture(QStringLiteral(".svg"), TZebDlg::BuildFilter(Txt(TTextId::DlgSvgDrawing), QStringLiteral(".svg")),
                  TTextId::MenuFileExportSvg);
}

// ====================================================================== time-window cuts

QStringList TForm1::CutterArguments(const QString& target, const QString& kind) const {
    return ::CutterArguments(*FDataBase, target, kind);
}

int TForm1::CuttersRunning() const {
    return FCutterLaunch->Running();
}

void TForm1::StartCutter(const QString& target, const QString& kind) {
    FCutterLaunch->Start(*FDataBase, target, kind);
}

void TForm1::GUI_FileSaveAs() {
    if (FLoading || FCaptionFile.isEmpty() || !FCutterAvailable || !CfgPageApply()) return;
    const QFileInfo data(FDataBase->FileName());
    // The data file's own name would be refused by the cutter; offer a free one beside it.
    QString fileName = data.absoluteDir().filePath(data.completeBaseName() + QStringLiteral("_window") +
                                                    DataFileExtension());
    if (!TZebDlg::SaveZebFile(Txt(TTextId::MenuFileSaveAs), data.absolutePath(), fileName)) return;
    StartCutter(fileName, QString());
}

void TForm1::GUI_FileExportText() {
    if (FLoading || FCaptionFile.isEmpty() || !FTextExportAvailable || !CfgPageApply()) return;
    const QFileInfo data(FDataBase->FileName());
    QString fileName = data.absoluteDir().filePath(data.completeBaseName() + QStringLiteral(".csv"));
    if (!TZebDlg::SaveCsvFile(Txt(TTextId::MenuFileExportText), data.absolutePath(), fileName)) return;
    StartCutter(fileName, QStringLiteral("csv"));
}

void TForm1::GUI_FileExportMatlab() {
    if (FLoading || FCaptionFile.isEmpty() || !FCutterAvailable || !CfgPageApply()) return;
    const QFileInfo data(FDataBase->FileName());
    QString fileName = data.absoluteDir().filePath(data.completeBaseName() + QStringLiteral(".mat"));
    if (!TZebDlg::SaveMatlabFile(Txt(TTextId::MenuFileExportMatlab), data.absolutePath(), fileName)) return;
    StartCutter(fileName, QStringLiteral("mat"));
}

void TForm1::GUI_FileExportHdf5() {
    if (FLoading || FCaptionFile.isEmpty() || !FCutterAvailable || !CfgPageApply()) return;
    const QFileInfo data(FDataBase->FileName());
    QString fileName = data.absoluteDir().filePath(data.completeBaseName() + QStringLiteral(".h5"));
    if (!TZebDlg::SaveFile(Txt(TTextId::MenuFileExportHdf5), data.absolutePath(),
                           TZebDlg::BuildFilter(Txt(TTextId::DlgHdf5File), QStringLiteral(".h5")), QStringLiteral(".h5"),
                           fileName))
        return;
    StartCutter(fileName, QStringLiteral("h5"));
}

// ====================================================================== chart editor

void TForm1::BuildEditorPage() {
    FEditor = new QWidget(onbWork);
    FEditor->setObjectName(QStringLiteral("tbsGraphEditor"));
    auto* v = new QVBoxLayout(FEditor);
    // The chart itself stands left of the editor while the page is shown.
    FEditorRow = new QHBoxLayout;
    auto* editor = new TChartEditor(FDataBase, FChart, FEditor);
    connect(editor, &TChartEditor::modified, this, [this] { SetModified(true); });
    FEditorRow->addWidget(editor);
    v->addLayout(FEditorRow, 1);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    btnGraphEditorOK = new QPushButton(Txt(TTextId::BtnOk), FEditor);
    btnGraphEditorOK->setObjectName(QStringLiteral("btnGraphEditorOK"));
    connect(btnGraphEditorOK, &QPushButton::clicked, this, &TForm1::GUI_GraphEditorExit);
    row->addWidget(btnGraphEditorOK);
    v->addLayout(row);
    onbWork->addWidget(FEditor); // page 3
}

void TForm1::GUI_GraphExtended() {
    if (FLoading || onbView->currentIndex() != pgGraph) return;
    FEditor->findChild<TChartEditor*>()->Fill();
    FGraphLayout->removeWidget(FChart);
    FEditorRow->insertWidget(0, FChart, 1);
    ShowWorkPage(pgEditor);
}

void TForm1::GUI_GraphEditorExit() {
    if (FChart->parentWidget() == FEditor) {
        FEditorRow->removeWidget(FChart);
        FGraphLayout->insertWidget(0, FChart, 1);
    }
    ShowWorkPage(pgWork);
    FDataBase->Cfg_Changed();
}

void TForm1::GUI_GraphCheckboxes() {
    TPrintState& p = FDataBase->Print_Get();
    p.CheckBoxes = !p.CheckBoxes;
    menGraphCheckboxes->setChecked(p.CheckBoxes);
    FDataBase->Cfg_Changed();
    SetModified(true);
}
