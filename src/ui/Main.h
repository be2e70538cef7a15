#pragma once
// TForm1: the main window. It owns the measurement store and the chart, starts the loading of
// a recording, shows its progress and answers, and carries the menu and toolbar commands.
//
// The window is two notebooks without tabs: the outer one (`onbWork`) switches between the
// work page and the progress page of a load, the inner one (`onbView`) between the views:
// chart, table and configuration. Each view brings its own menu and toolbar panel.

#include "store/FileThread.h"

#include <QMainWindow>
#include <QPointer>
#include <QStringList>

#include <QElapsedTimer>
#include <functional>
#include <memory>
#include <vector>

namespace zeb {
enum class TTextId : int;
}

class QAction;
class QActionGroup;
class QCheckBox;
class QFrame;
class QLabel;
class QMenu;
class QMimeData;
class QGroupBox;
class QPrintPreviewWidget;
class QPrinter;
class QProcess;
class QProgressBar;
class QRadioButton;
class QSpinBox;
class QComboBox;
class QPushButton;
class QStackedWidget;
class QToolButton;
class TCfgPage;
class TDataBase;
struct TReportOptions;
class TFileThread;
class TTableView;
class TZebChart;
class TCutterLaunch;
class TPrintPreviewPage;
class TfrmBigDataDlg;
class TfrmViewCalc;
class TfrmViewFFT;
class TfrmSummary;
class TfrmViewLimit;

class TForm1 : public QMainWindow {
    Q_OBJECT
public:
    enum TWorkPage : int { pgWork = 0, pgProgress = 1, pgPreview = 2, pgEditor = 3 };
    enum TViewPage : int { pgGraph = 0, pgTable = 1, pgCfg = 2 };

    explicit TForm1(QWidget* parent = nullptr);
    // Form_OnDestroy: stops a running load and writes the window's settings.
    ~TForm1() override;

    // The large-file question; without one the window makes its own on first use.
    void SetBigDataDlg(TfrmBigDataDlg* dlg);
    // The program's arguments after its name; exactly one is opened when the window is first
    // shown. Defaults to the application's own arguments.
    void SetCommandLine(const QStringList& args) { FCommandLine = args; }

    // Starts loading a recording; false (with the message shown) when it cannot be started.
    bool OpenFile(const QString& fileName);
    // Applies a display template to the open recording.
    bool ApplyTemplate(const QString& fileName);

    TDataBase* DataBase() const { return FDataBase; }
    TZebChart* Chart() const { return FChart; }
    TTableView* TableView() const { return FTableView; }
    TCfgPage* CfgPage() const { return FCfgPage; }
    TfrmViewCalc* ViewCalc() const { return FViewCalc; }
    TfrmViewLimit* ViewLimit() const { return FViewLimit; }
    // The FFT view, made when first asked for.
    TfrmViewFFT* ViewFFT() const { return FViewFFT; }
    int ViewPage() const;
    // The outer notebook: work, progress, print preview, chart editor.
    int WorkPage() const;
    // The printer every print goes to; tests point it at a PDF file.
    QPrinter* Printer() const { return FPrinter.get(); }
    // The configuration tab that the page opens on next; -1 keeps the tab it shows.
    int CfgTab() const { return FCfgTab; }
    bool IsLoading() const { return FLoading; }
    bool IsModified() const { return FModified; }
    // True is ignored while no file is open; false always takes effect.
    void SetModified(bool modified);
    QString BaseCaption() const { return FBaseCaption; }
    QString StatusText() const;
    // The companions found next to the program at start.
    bool CutterAvailable() const { return FCutterAvailable; }
    bool TextExportAvailable() const { return FTextExportAvailable; }
    // The cutter's command line for the visible time window and the curves shown, in its
    // order: data file, target, start, end, count, comma list of channels[, "csv"]. Empty
    // when no curve is shown.
    QStringList CutterArguments(const QString& target, const QString& kind) const;
    // Cuts still running.
    int CuttersRunning() const;
    // The settings file that belongs to a recording: same name, template extension.
    static QString SettingsFileOf(const QString& dataFile);

Q_SIGNALS:
    // A load has ended with the loader's result code, after the window has dealt with it.
    void loadFinished(TLoadReport result);
    // A cutter started by the window has ended; the status bar says how.
    void cutterFinished(int exitCode);

public Q_SLOTS:
    void GUI_FileOpen();
    void GUI_FileSave();
    void GUI_FileTemplateUse();
    void GUI_FileTemplateSave();
    void GUI_FileExit();
    void GUI_FileCancel();
    void GUI_ViewGraph();
    void GUI_ViewTable();
    void GUI_ViewCfg();
    void GUI_GraphGridBottom();
    void GUI_GraphGridLeft();
    void GUI_GraphGridRight();
    void GUI_GraphAxisBottom();
    void GUI_GraphAxisLeft();
    void GUI_GraphAxisRight();
    void GUI_GraphCursor1();
    void GUI_GraphCursor2();
    void GUI_GraphLimits();
    void GUI_GraphScale();
    void GUI_GraphRedo();
    void GUI_TableGotoTMin();
    void GUI_TableGotoTime();
    void GUI_CfgRedo();
    void chkBigDataOnClick();
    void menGraphFuncIntegralClick();
    void menGraphFuncFlowClick();
    void menGraphFuncCalcClick();
    void menGraphFuncLimitClick();
    void menGraphFuncKessaClick();
    void menGraphFFTClick();
    void GUI_FileExportBmp();
    void GUI_FileExportJpeg();
    void GUI_FileExportPng();
    void GUI_FileExportPdf();
    void GUI_FileExportSvg();
    void GUI_FileSaveAs();
    void GUI_FileExportText();
    void GUI_FileExportMatlab();
    void GUI_FileExportHdf5();
    // File > "Summary of recordings..": the recordings chosen, read and summed up in a window.
    void GUI_FileSummary();
    void Summarise(const QStringList& files);
    void GUI_FilePrintPreview();
    void GUI_FilePrint();
    void GUI_FilePrintDirect();
    void GUI_FilePrintReport();
    void GUI_Back();
    void GUI_GraphExtended();
    void GUI_GraphEditorExit();
    void GUI_GraphCheckboxes();
    void GUI_PrintOrientation(int item);
    void GUI_PrintMargins();
    void GUI_PrintProportional();
    void GUI_PrintAfterDraw();
    void GUI_Print();
    void GUI_PrintProperties();
    void menGraphNoteClick();
    void spbTextModifyClick();
    void spbTextInsertClick();

protected:
    void closeEvent(QCloseEvent* event) override; // Form_OnCloseQuery
    void showEvent(QShowEvent* event) override;   // FormShow
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void FormCreate();
    void BuildMenus();
    void BuildWorkPage();
    void BuildProgressPage();
    void BuildPreviewPage();
    void BuildEditorPage();
    // Shows an outer page with the menus it allows: all on the work page, only the second
    // File menu while a file loads, only "Back!" on the preview and the chart editor.
    void ShowWorkPage(int page);
    // Asks for a picture file named after the recording and writes the chart into it.
    void ExportPicture(const QString& extension, const QString& filter, zeb::TTextId title);
    void ApplyLanguage();
    void FindHelperPrograms();
    void UpdateCaption();
    void SetStatus(const QString& text);
    // Shows a view; false when the view being left refuses (an invalid configuration entry).
    bool SetViewPage(int page);
    // Before a change of view: false refuses it.
    bool View_OnPageChange(int page);
    void View_OnPageChanged(int page);
    // The configuration page, when it is shown, into the store and onto the chart; false while
    // one of its entries is invalid (the entry then has the focus). Runs before a save, a
    // template save, a new file and the close that saves.
    bool CfgPageApply();
    void SyncViewButtons();
    void Graph_OnElementClick(int configTab);

    void GUI_File();  // File menu about to open
    void GUI_Graph(); // Graph menu about to open
    void GraphGridSet(int axis, bool on, bool store);
    void GraphAxisFixed(int axis, bool fixed);
    void GraphCursorSet(int which, bool on);
    void UpdateUndo();
    void Graph_OnLegendClick(int curve, Qt::KeyboardModifiers modifiers);
    void SyncGraphSwitches();

    // The calculation and limit views follow the chart; the flow channel learns which curves
    // are drawn.
    void Analyses_ReCalc();
    // The views as the template's ViewCalc and ViewLimit say, computed anew.
    void Analyses_Arm();
    void Analyses_SetShown(bool calc, bool shown);

    void FileThread_OnAnswer(TLoadReport report, const QString& text);
    void FileThread_OnAsk(TBigDataAnswer& answer);
    void FileLoaded();
    void FileFailed(TLoadReport result);
    void StepBusyIndicator();
    void ShowError(const QString& text);
    bool SaveSettingsNextToFile();
    void StartCutter(const QString& target, const QString& kind);
    void StartPreviewer(const QString& fileName);
    QString FileDisplayName() const;
    QString DataFileExtension() const;
    QString AcceptableDrop(const QMimeData* mime) const;
    // A folder among the dropped items, whose recordings are summed up.
    QString DroppedFolder(const QMimeData* mime) const;

    void RecentFiles_Add(const QString& fileName);
    void RecentFiles_Rebuild();

    // ---- state
    TDataBase* FDataBase = nullptr;
    TZebChart* FChart = nullptr;
    TTableView* FTableView = nullptr;
    TCfgPage* FCfgPage = nullptr;
    TFileThread* FFileThread = nullptr; // the running load, if any
    // Every loader made so far that may not have ended yet; freed once it has.
    std::vector<std::unique_ptr<TFileThread>> FThreads;
    QPointer<TfrmBigDataDlg> FBigDataDlg;
    TfrmViewCalc* FViewCalc = nullptr;
    TfrmViewLimit* FViewLimit = nullptr;
    TfrmViewFFT* FViewFFT = nullptr;
    QPointer<TfrmSummary> FSummary;
    bool FLoading = false;
    bool FModified = false;
    int FCfgTab = 0;
    QString FBaseCaption;
    QString FCaptionFile; // the file shown in the caption; empty while none is open
    QStringList FCommandLine;
    bool FShownOnce = false;
    bool FCutterAvailable = false;
    bool FTextExportAvailable = false;
    TCutterLaunch* FCutterLaunch = nullptr;
    QElapsedTimer FBusyStep;
    std::unique_ptr<QPrinter> FPrinter;

    // ---- controls
    QStackedWidget* onbWork = nullptr;
    QStackedWidget* onbView = nullptr;
    QLabel* lblFileTitle = nullptr;
    QPushButton* btnFileCancel = nullptr;
    QProgressBar* trbFileProgress = nullptr;
    QLabel* stbStatus = nullptr;
    QFrame* Panel3 = nullptr;
    QFrame* Panel1 = nullptr; // the view buttons
    QFrame* panSpeedButtonsGraph = nullptr;
    QFrame* panSpeedButtonsTable = nullptr;
    QFrame* panSpeedButtonsCfg = nullptr;
    QFrame* panSpeedButtonsText = nullptr;
    QFrame* panSpeedButtonsBigData = nullptr;
    QCheckBox* chkBigDataOn = nullptr;

    QMenu* menFile = nullptr;
    QMenu* menFileOpenAgain = nullptr;
    QMenu* menView = nullptr;
    QMenu* menGraph = nullptr;
    QMenu* menTable = nullptr;
    QMenu* menCfg = nullptr;
    QAction* menFileOpen = nullptr;
    QAction* menFileSave = nullptr;
    QAction* menFileTemplateUse = nullptr;
    QAction* menFileTemplateSave = nullptr;
    QAction* menFileExit = nullptr;
    QMenu* menFile2 = nullptr; // while a file loads: only "Exit"
    QAction* menFileExit2 = nullptr;
    QAction* menBack = nullptr;
    QAction* menFileExportBmp = nullptr;
    QAction* menFileExportJpg = nullptr;
    QAction* menFileExportPng = nullptr;
    QAction* menFileExportPdf = nullptr;
    QAction* menFileExportSvg = nullptr;
    QAction* menFileSaveAs = nullptr;
    QAction* menFileExportText = nullptr;
    QAction* menFileExportMatlab = nullptr;
    QAction* menFileExportHdf5 = nullptr;
    QAction* menFileSummary = nullptr;
    QAction* menFilePrintPreview = nullptr;
    QAction* menFilePrint = nullptr;
    QAction* menFilePrintDirect = nullptr; // the print tool button
    QAction* menFilePrintReport = nullptr;
    QAction* menGraphExtended = nullptr;
    QAction* menGraphCheckboxes = nullptr;
    // ---- the print preview page
    TPrintPreviewPage* FPrintPage = nullptr; // page 2 and the prints made there
    // ---- the chart editor page
    QWidget* FEditor = nullptr;
    class QVBoxLayout* FGraphLayout = nullptr; // the chart page's: the chart and its read-outs
    class QHBoxLayout* FEditorRow = nullptr;   // the editor page's: the chart and the editor
    QPushButton* btnGraphEditorOK = nullptr;
    QActionGroup* FViewGroup = nullptr;
    QAction* menViewGraph = nullptr;
    QAction* menViewTable = nullptr;
    QAction* menViewCfg = nullptr;
    QAction* menGraphGrid[3] = {};
    QAction* menGraphAxis[3] = {};
    QAction* menGraphCursor[2] = {};
    QAction* menGraphLimits = nullptr;
    QMenu* menGraphFunc = nullptr;
    QAction* menGraphFuncIntegral = nullptr;
    QAction* menGraphFuncFlow = nullptr;
    QAction* menGraphFuncCalc = nullptr;
    QAction* menGraphFuncLimit = nullptr;
    QAction* menGraphFuncKessa = nullptr;
    QAction* menGraphFFT = nullptr;
    QAction* menGraphNote = nullptr;
    QAction* menTextModify = nullptr; // the tool buttons' actions
    QAction* menTextInsert = nullptr;
    QAction* menGraphScale = nullptr;
    QAction* menGraphRedo = nullptr;
    QAction* menTableGotoTime = nullptr;
    QAction* menTableGotoTMin = nullptr;
    QAction* menCfgRedo = nullptr;
};
