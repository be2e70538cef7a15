#include "Main.h"

#include "BigDataDlg.h"
#include "CalcDlg.h"
#include "CalcKessa.h"
#include "CalcKessaDlg.h"
#include "CfgPage.h"
#include "ChartTexts.h"
#include "CutterLaunch.h"
#include "CrossHair.h"
#include "DataBase.h"
#include "FileThread.h"
#include "Formats.h"
#include "ChartEditor.h"
#include "GoToDlg.h"
#include "PrintPreviewPage.h"
#include "Printing.h"
#include "ReportDlg.h"
#include "TableView.h"
#include "ToolbarGlyphs.h"
#include "ViewCalc.h"
#include "ViewFFT.h"
#include "ViewLimit.h"
#include "Texts.h"
#include "ZebChart.h"
#include "ZebDlg.h"
#include "ZebReg.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCursor>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QProcess>
#include <QComboBox>
#include <QGroupBox>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProgressBar>
#include <QRadioButton>
#include <QSpinBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

using zeb::TMsgDlgBtn;
using zeb::TMsgDlgType;
using zeb::TTextId;
using zeb::Txt;
using zeb::TxtFmt;
using zeb::TZebDlg;

namespace {

constexpr int kBusySteps = 10;
constexpr int kBusyStepMs = 1000;

bool CompanionExists(const QString& baseName) {
    const QFileInfo fi(ZebProgramPath(baseName));
    return fi.isFile() && fi.isExecutable();
}

QFrame* ToolPanel(QWidget* parent, const char* name) {
    auto* f = new QFrame(parent);
    f->setObjectName(QLatin1String(name));
    f->setFrameShape(QFrame::StyledPanel);
    f->setFrameShadow(QFrame::Raised);
    auto* l = new QHBoxLayout(f);
    l->setContentsMargins(2, 1, 2, 1);
    l->setSpacing(1);
    return f;
}

QToolButton* SpeedButton(QFrame* panel, const char* name, QAction* action) {
    auto* b = new QToolButton(panel);
    b->setObjectName(QLatin1String(name));
    b->setDefaultAction(action);
    b->setAutoRaise(true);
    b->setIconSize(QSize(22, 22));
    b->setToolButtonStyle(Qt::ToolButtonIconOnly);
    panel->layout()->addWidget(b);
    return b;
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
    // 1. the store and the chart with its cursors and zoom
    FDataBase = new TDataBase(this);
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
    FViewCalc = new TfrmViewCalc(FDataBase, this);
    FViewLimit = new TfrmViewLimit(FDataBase, this);
    connect(FChart, &TZebChart::viewChanged, this, &TForm1::Analyses_ReCalc);
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
    CalcKessa().setCalcCurve(s.CustomApp0_Active, s.CustomApp0_Curve, s.CustomApp0_Name, s.CustomApp0_Unit,
                             s.CustomApp0_Mul, s.CustomApp0_Add);

    // 5. the chart view
    ShowWorkPage(pgWork);
    onbView->setCurrentIndex(pgGraph);
    View_OnPageChanged(pgGraph);
    SyncGraphSwitches();
    UpdateCaption();
}

void TForm1::BuildMenus() {
    auto action = [this](const char* name, auto slot) {
        auto* a = new QAction(this);
        a->setObjectName(QLatin1String(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };

    menFile = menuBar()->addMenu(QString());
    menFile->setObjectName(QStringLiteral("menFile"));
    connect(menFile, &QMenu::aboutToShow, this, &TForm1::GUI_File);
    menFileOpen = action("menFileOpen", &TForm1::GUI_FileOpen);
    menFileOpen->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    menFileOpen->setIcon(style()->standardIcon(QStyle::SP_DialogOpenButton));
    menFile->addAction(menFileOpen);
    menFileOpenAgain = menFile->addMenu(QString());
    menFileOpenAgain->setObjectName(QStringLiteral("menFileOpenAgain"));
    menFileSave = action("menFileSave", &TForm1::GUI_FileSave);
    menFileSave->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_S));
    menFileSave->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    menFile->addAction(menFileSave);
    menFileSaveAs = action("menFileSaveAs", &TForm1::GUI_FileSaveAs);
    menFileExportText = action("menFileExportText", &TForm1::GUI_FileExportText);
    menFile->addAction(menFileSaveAs);
    menFile->addAction(menFileExportText);
    menFile->addSeparator();
    menFileTemplateUse = action("menFileTemplateUse", &TForm1::GUI_FileTemplateUse);
    menFileTemplateSave = action("menFileTemplateSave", &TForm1::GUI_FileTemplateSave);
    menFile->addAction(menFileTemplateUse);
    menFile->addAction(menFileTemplateSave);
    menFile->addSeparator();
    menFileExportBmp = action("menFileExportBmp", &TForm1::GUI_FileExportBmp);
    menFileExportJpg = action("menFileExportJpg", &TForm1::GUI_FileExportJpeg);
    menFileExportPng = action("menFileExportPng", &TForm1::GUI_FileExportPng);
    menFileExportPdf = action("menFileExportPdf", &TForm1::GUI_FileExportPdf);
    menFileExportSvg = action("menFileExportSvg", &TForm1::GUI_FileExportSvg);
    for (QAction* a : {menFileExportBmp, menFileExportJpg, menFileExportPng, menFileExportPdf, menFileExportSvg})
        menFile->addAction(a);
    menFile->addSeparator();
    menFilePrintPreview = action("menFilePrintPreview", &TForm1::GUI_FilePrintPreview);
    menFilePrint = action("menFilePrint", &TForm1::GUI_FilePrint);
    menFilePrint->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_P));
    menFilePrintDirect = action("menFilePrintDirect", &TForm1::GUI_FilePrintDirect);
    menFilePrintDirect->setIcon(QIcon::fromTheme(QStringLiteral("document-print"), Glyph(TGlyph::Print)));
    menFilePrintReport = action("menFilePrintReport", &TForm1::GUI_FilePrintReport);
    menFilePrintReport->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
    for (QAction* a : {menFilePrintPreview, menFilePrint, menFilePrintReport})
        menFile->addAction(a);
    menFile->addSeparator();
    menFileExit = action("menFileExit", &TForm1::GUI_FileExit);
    menFileExit->setShortcut(QKeySequence(Qt::ALT | Qt::Key_F4));
    menFile->addAction(menFileExit);
    // While a file loads the window offers nothing but leaving.
    menFile2 = menuBar()->addMenu(QString());
    menFile2->setObjectName(QStringLiteral("menFile2"));
    menFileExit2 = action("menFileExit2", &TForm1::GUI_FileExit);
    menFile2->addAction(menFileExit2);

    // One view at a time: the menu and the tool buttons show which.
    menView = menuBar()->addMenu(QString());
    menView->setObjectName(QStringLiteral("menView"));
    FViewGroup = new QActionGroup(this);
    FViewGroup->setExclusive(true);
    menViewGraph = action("menViewGraph", &TForm1::GUI_ViewGraph);
    menViewGraph->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_G));
    menViewGraph->setIcon(Glyph(TGlyph::ViewGraph));
    menViewTable = action("menViewTable", &TForm1::GUI_ViewTable);
    menViewTable->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
    menViewTable->setIcon(Glyph(TGlyph::ViewTable));
    menViewCfg = action("menViewCfg", &TForm1::GUI_ViewCfg);
    menViewCfg->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_C));
    menViewCfg->setIcon(Glyph(TGlyph::ViewCfg));
    for (QAction* a : {menViewGraph, menViewTable, menViewCfg}) {
        a->setCheckable(true);
        FViewGroup->addAction(a);
        menView->addAction(a);
    }

    menGraph = menuBar()->addMenu(QString());
    menGraph->setObjectName(QStringLiteral("menGraph"));
    connect(menGraph, &QMenu::aboutToShow, this, &TForm1::GUI_Graph);
    const char* gridNames[3] = {"menGraphGridBottom", "menGraphGridLeft", "menGraphGridRight"};
    const char* axisNames[3] = {"menGraphAxisBottom", "menGraphAxisLeft", "menGraphAxisRight"};
    using TSlot = void (TForm1::*)();
    const TSlot gridSlots[3] = {&TForm1::GUI_GraphGridBottom, &TForm1::GUI_GraphGridLeft,
                                &TForm1::GUI_GraphGridRight};
    const TSlot axisSlots[3] = {&TForm1::GUI_GraphAxisBottom, &TForm1::GUI_GraphAxisLeft,
                                &TForm1::GUI_GraphAxisRight};
    const TGlyph gridGlyphs[3] = {TGlyph::GridBottom, TGlyph::GridLeft, TGlyph::GridRight};
    const TGlyph axisGlyphs[3] = {TGlyph::AxisBottom, TGlyph::AxisLeft, TGlyph::AxisRight};
    for (int a = 0; a < 3; ++a) {
        menGraphGrid[a] = action(gridNames[a], gridSlots[a]);
        menGraphGrid[a]->setCheckable(true);
        menGraphGrid[a]->setIcon(Glyph(gridGlyphs[a]));
        menGraph->addAction(menGraphGrid[a]);
    }
    menGraph->addSeparator();
    for (int a = 0; a < 3; ++a) {
        menGraphAxis[a] = action(axisNames[a], axisSlots[a]);
        menGraphAxis[a]->setCheckable(true);
        menGraphAxis[a]->setIcon(Glyph(axisGlyphs[a]));
        menGraph->addAction(menGraphAxis[a]);
    }
    menGraph->addSeparator();
    menGraphCursor[0] = action("menGraphCursor1", &TForm1::GUI_GraphCursor1);
    menGraphCursor[1] = action("menGraphCursor2", &TForm1::GUI_GraphCursor2);
    menGraphCursor[0]->setIcon(Glyph(TGlyph::Cursor1));
    menGraphCursor[1]->setIcon(Glyph(TGlyph::Cursor2));
    for (QAction* a : menGraphCursor) {
        a->setCheckable(true);
        menGraph->addAction(a);
    }
    menGraph->addSeparator();
    menGraphLimits = action("menGraphLimits", &TForm1::GUI_GraphLimits);
    menGraphLimits->setCheckable(true);
    menGraph->addAction(menGraphLimits);
    menGraphCheckboxes = action("menGraphCheckboxes", &TForm1::GUI_GraphCheckboxes);
    menGraphCheckboxes->setCheckable(true);
    menGraph->addAction(menGraphCheckboxes);
    menGraphExtended = action("menGraphExtended", &TForm1::GUI_GraphExtended);
    menGraph->addAction(menGraphExtended);
    menGraph->addSeparator();
    menGraphFunc = menGraph->addMenu(QString());
    menGraphFunc->setObjectName(QStringLiteral("menGraphFunc"));
    menGraphFuncIntegral = action("menGraphFuncIntegral", &TForm1::menGraphFuncIntegralClick);
    menGraphFuncFlow = action("menGraphFuncFlow", &TForm1::menGraphFuncFlowClick);
    menGraphFuncCalc = action("menGraphFuncCalc", &TForm1::menGraphFuncCalcClick);
    menGraphFuncLimit = action("menGraphFuncLimit", &TForm1::menGraphFuncLimitClick);
    menGraphFuncKessa = action("menGraphFuncKessa", &TForm1::menGraphFuncKessaClick);
    menGraphFFT = action("menGraphFFT", &TForm1::menGraphFFTClick);
    menGraphFuncCalc->setCheckable(true);
    menGraphFuncLimit->setCheckable(true);
    for (QAction* a : {menGraphFuncIntegral, menGraphFuncFlow})
        menGraphFunc->addAction(a);
    menGraphFunc->addSeparator();
    for (QAction* a : {menGraphFuncCalc, menGraphFuncLimit})
        menGraphFunc->addAction(a);
    menGraphFunc->addSeparator();
    menGraphFunc->addAction(menGraphFuncKessa);
    menGraphFunc->addSeparator();
    menGraphFunc->addAction(menGraphFFT);
    menGraph->addSeparator();
    menGraphScale = action("menGraphScale", &TForm1::GUI_GraphScale);
    menGraphScale->setIcon(Glyph(TGlyph::Scale));
    menGraphRedo = action("menGraphRedo", &TForm1::GUI_GraphRedo);
    menGraphRedo->setIcon(Glyph(TGlyph::Undo));
    menGraph->addAction(menGraphScale);
    menGraph->addAction(menGraphRedo);
    menGraph->addSeparator();
    menGraphNote = action("menGraphNote", &TForm1::menGraphNoteClick);
    menGraphNote->setCheckable(true);
    menGraph->addAction(menGraphNote);
    menTextModify = action("menTextModify", &TForm1::spbTextModifyClick);
    menTextModify->setCheckable(true);
    menTextModify->setIcon(Glyph(TGlyph::TextModify));
    menTextInsert = action("menTextInsert", &TForm1::spbTextInsertClick);
    menTextInsert->setIcon(Glyph(TGlyph::TextInsert));

    menTable = menuBar()->addMenu(QString());
    menTable->setObjectName(QStringLiteral("menTable"));
    menTableGotoTime = action("menTableGotoTime", &TForm1::GUI_TableGotoTime);
    menTableGotoTime->setIcon(Glyph(TGlyph::TableGotoTime));
    menTableGotoTMin = action("menTableGotoTMin", &TForm1::GUI_TableGotoTMin);
    menTableGotoTMin->setIcon(Glyph(TGlyph::TableGotoTMin));
    menTable->addAction(menTableGotoTime);
    menTable->addAction(menTableGotoTMin);

    menCfg = menuBar()->addMenu(QString());
    menCfg->setObjectName(QStringLiteral("menCfg"));
    menCfgRedo = action("menCfgRedo", &TForm1::GUI_CfgRedo);
    menCfgRedo->setIcon(Glyph(TGlyph::Undo));
    menCfg->addAction(menCfgRedo);

    menBack = action("menBack", &TForm1::GUI_Back);
    menuBar()->addAction(menBack);
}

void TForm1::BuildWorkPage() {
    auto* work = new QWidget(onbWork);
    work->setObjectName(QStringLiteral("tbsWork"));
    auto* v = new QVBoxLayout(work);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(0);

    auto* bar = new QWidget(work);
    bar->setObjectName(QStringLiteral("panToolbar"));
    auto* h = new QHBoxLayout(bar);
    h->setContentsMargins(2, 2, 2, 2);
    h->setSpacing(4);

    Panel3 = ToolPanel(bar, "Panel3");
    SpeedButton(Panel3, "spbFileOpen", menFileOpen);
    SpeedButton(Panel3, "spbFileSave", menFileSave);
    SpeedButton(Panel3, "spbFilePrint", menFilePrintDirect);
    h->addWidget(Panel3);

    // The view buttons come before the panels that change with the view, so they stay put.
    Panel1 = ToolPanel(bar, "Panel1");
    SpeedButton(Panel1, "spbViewGraph", menViewGraph);
    SpeedButton(Panel1, "spbViewTable", menViewTable);
    SpeedButton(Panel1, "spbViewCfg", menViewCfg);
    h->addWidget(Panel1);

    panSpeedButtonsGraph = ToolPanel(bar, "panSpeedButtonsGraph");
    const char* gridNames[3] = {"spbGraphGridBottom", "spbGraphGridLeft", "spbGraphGridRight"};
    const char* axisNames[3] = {"spbGraphAxisBottom", "spbGraphAxisLeft", "spbGraphAxisRight"};
    for (int a = 0; a < 3; ++a)
        SpeedButton(panSpeedButtonsGraph, gridNames[a], menGraphGrid[a]);
    for (int a = 0; a < 3; ++a)
        SpeedButton(panSpeedButtonsGraph, axisNames[a], menGraphAxis[a]);
    SpeedButton(panSpeedButtonsGraph, "spbGraphCursor1", menGraphCursor[0]);
    SpeedButton(panSpeedButtonsGraph, "spbGraphCursor2", menGraphCursor[1]);
    SpeedButton(panSpeedButtonsGraph, "spbGraphScale", menGraphScale);
    SpeedButton(panSpeedButtonsGraph, "spbGraphRedo", menGraphRedo);
    h->addWidget(panSpeedButtonsGraph);

    panSpeedButtonsText = ToolPanel(bar, "panSpeedButtonsText");
    SpeedButton(panSpeedButtonsText, "spbTextModify", menTextModify);
    SpeedButton(panSpeedButtonsText, "spbTextInsert", menTextInsert);
    h->addWidget(panSpeedButtonsText);

    panSpeedButtonsTable = ToolPanel(bar, "panSpeedButtonsTable");
    SpeedButton(panSpeedButtonsTable, "spbTableGotoTMin", menTableGotoTMin);
    SpeedButton(panSpeedButtonsTable, "spbTableGotoT", menTableGotoTime);
    h->addWidget(panSpeedButtonsTable);

    panSpeedButtonsCfg = ToolPanel(bar, "panSpeedButtonsCfg");
    SpeedButton(panSpeedButtonsCfg, "spbCfgRedo", menCfgRedo);
    h->addWidget(panSpeedButtonsCfg);

    panSpeedButtonsBigData = ToolPanel(bar, "panSpeedButtonsBigData");
    chkBigDataOn = new QCheckBox(panSpeedButtonsBigData);
    chkBigDataOn->setObjectName(QStringLiteral("chkBigDataOn"));
    connect(chkBigDataOn, &QCheckBox::clicked, this, &TForm1::chkBigDataOnClick);
    panSpeedButtonsBigData->layout()->setContentsMargins(6, 1, 6, 1);
    panSpeedButtonsBigData->layout()->addWidget(chkBigDataOn);
    panSpeedButtonsBigData->hide();
    h->addWidget(panSpeedButtonsBigData);
    h->addStretch(1);
    v->addWidget(bar);

    onbView = new QStackedWidget(work);
    onbView->setObjectName(QStringLiteral("onbView"));
    // page 0: the chart with the crosshair read-outs below it
    auto* graphPage = new QWidget(onbView);
    graphPage->setObjectName(QStringLiteral("tbsGraph"));
    auto* gv = FGraphLayout = new QVBoxLayout(graphPage);
    gv->setContentsMargins(0, 0, 0, 0);
    gv->setSpacing(0);
    FChart->setParent(graphPage);
    gv->addWidget(FChart, 1);
    if (QWidget* readout = FChart->ReadoutPanel()) {
        readout->setParent(graphPage);
        gv->addWidget(readout);
    }
    onbView->addWidget(graphPage);
    // page 1: the table
    FTableView->setParent(onbView);
    onbView->addWidget(FTableView);
    // page 2: the configuration, a little away from the window's edges
    auto* cfgPage = new QWidget(onbView);
    cfgPage->setObjectName(QStringLiteral("tbsCfg"));
    auto* cv = new QVBoxLayout(cfgPage);
    cv->setContentsMargins(6, 6, 6, 6);
    FCfgPage->setParent(cfgPage);
    cv->addWidget(FCfgPage);
    onbView->addWidget(cfgPage);
    v->addWidget(onbView, 1);

    onbWork->addWidget(work); // page 0
}

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

void TForm1::ApplyLanguage() {
    FBaseCaption = TxtFmt(TTextId::MainCaption, {ZebSettings().ProductShort});
    menFile->setTitle(Txt(TTextId::MenuFile));
    menFileOpen->setText(Txt(TTextId::MenuFileOpen));
    menFileOpen->setToolTip(Txt(TTextId::HintFileOpen));
    menFileOpenAgain->setTitle(Txt(TTextId::MenuFileOpenAgain));
    menFileSave->setText(Txt(TTextId::MenuFileSave));
    menFileSave->setToolTip(Txt(TTextId::HintFileSave));
    menFileTemplateUse->setText(Txt(TTextId::MenuFileTemplateUse));
    menFileTemplateSave->setText(Txt(TTextId::MenuFileTemplateSave));
    menFileExit->setText(Txt(TTextId::MenuFileExit));
    menFile2->setTitle(Txt(TTextId::MenuFile));
    menFileExit2->setText(Txt(TTextId::MenuFileExit));
    menBack->setText(Txt(TTextId::MenuBack));
    menFileExportBmp->setText(Txt(TTextId::MenuFileExportBmp));
    menFileExportJpg->setText(Txt(TTextId::MenuFileExportJpg));
    menFileExportPng->setText(Txt(TTextId::MenuFileExportPng));
    menFileExportPdf->setText(Txt(TTextId::MenuFileExportPdf));
    menFileSaveAs->setText(Txt(TTextId::MenuFileSaveAs));
    menFileExportText->setText(Txt(TTextId::MenuFileExportText));
    menFileExportSvg->setText(Txt(TTextId::MenuFileExportSvg));
    menFilePrintPreview->setText(Txt(TTextId::MenuFilePrintPreview));
    menFilePrint->setText(Txt(TTextId::MenuFilePrint));
    menFilePrintDirect->setText(Txt(TTextId::HintFilePrint));
    menFilePrintDirect->setToolTip(Txt(TTextId::HintFilePrint));
    menFilePrintReport->setText(Txt(TTextId::MenuFilePrintReport));
    menGraphExtended->setText(Txt(TTextId::MenuGraphExtended));
    menGraphCheckboxes->setText(Txt(TTextId::MenuGraphCheckboxes));

    menGraph->setTitle(Txt(TTextId::MenuGraph));
    const TTextId grid[3] = {TTextId::MenuGraphGridBottom, TTextId::MenuGraphGridLeft,
                             TTextId::MenuGraphGridRight};
    const TTextId axis[3] = {TTextId::MenuGraphAxisBottom, TTextId::MenuGraphAxisLeft,
                             TTextId::MenuGraphAxisRight};
    for (int a = 0; a < 3; ++a) {
        menGraphGrid[a]->setText(Txt(grid[a]));
        menGraphAxis[a]->setText(Txt(axis[a]));
    }
    menGraphCursor[0]->setText(Txt(TTextId::Crosshairs1));
    menGraphCursor[1]->setText(Txt(TTextId::Crosshairs2));
    menGraphLimits->setText(Txt(TTextId::Limits));
    menGraphFunc->setTitle(Txt(TTextId::MenuGraphFunc));
    menGraphFuncIntegral->setText(Txt(TTextId::MenuGraphFuncIntegral));
    menGraphFuncFlow->setText(Txt(TTextId::MenuGraphFuncFlow));
    menGraphFuncCalc->setText(Txt(TTextId::MenuGraphFuncCalc));
    menGraphFuncLimit->setText(Txt(TTextId::MenuGraphFuncLimit));
    menGraphFuncKessa->setText(Txt(TTextId::MenuGraphFuncKessa));
    menGraphFFT->setText(Txt(TTextId::Fft));
    menGraphNote->setText(Txt(TTextId::MenuGraphNote));
    menTextModify->setText(Txt(TTextId::TextModify));
    menTextModify->setToolTip(Txt(TTextId::TextModify));
    menTextInsert->setText(Txt(TTextId::TextInsert));
    menTextInsert->setToolTip(Txt(TTextId::TextInsert));
    menGraphScale->setText(Txt(TTextId::MenuGraphScale));
    menGraphRedo->setText(Txt(TTextId::Undo));

    menView->setTitle(Txt(TTextId::MenuView));
    menViewGraph->setText(Txt(TTextId::MenuGraph));
    menViewGraph->setToolTip(Txt(TTextId::HintViewGraph));
    menViewTable->setText(Txt(TTextId::MenuTable));
    menViewTable->setToolTip(Txt(TTextId::HintViewTable));
    menViewCfg->setText(Txt(TTextId::MenuConfiguration));
    menViewCfg->setToolTip(Txt(TTextId::HintViewCfg));
    menTable->setTitle(Txt(TTextId::MenuTable));
    menTableGotoTime->setText(Txt(TTextId::MenuTableGotoTime));
    menTableGotoTMin->setText(Txt(TTextId::MenuTableGotoTMin));
    menCfg->setTitle(Txt(TTextId::MenuConfiguration));
    menCfgRedo->setText(Txt(TTextId::Undo));

    chkBigDataOn->setText(Txt(TTextId::DataReduction));
    btnFileCancel->setText(Txt(TTextId::BtnCancel));
    if (FPrintPage) FPrintPage->ApplyLanguage();
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
    // The store's view now holds the page's values; the chart, its cursors and the switches
    // show them.
    FChart->Rebuild();
    FChart->CrossHair()->Repaint();
    SyncGraphSwitches();
    // Limits, number formats and the flow channel may have changed: the figures with them.
    Analyses_Renew();
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
    if (!dlg.Execute(FDataBase->View().Axes[axBottom].XType, origin / zeb::kSecondsPerDay, seconds)) return;
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
    menFileSaveAs->setEnabled(open);
    menFileExportText->setEnabled(open);
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
    FChart->Rebuild();
    SyncGraphSwitches();
    Analyses_Arm();
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

// ====================================================================== graph commands

void TForm1::GraphGridSet(int axis, bool on, bool store) {
    for (int a = 0; a < 3; ++a) {
        if (axis != -1 && a != axis) continue;
        menGraphGrid[a]->setChecked(on);
        FChart->SetGrid(a, on, store);
    }
}

void TForm1::GraphAxisFixed(int axis, bool fixed) {
    for (int a = 0; a < 3; ++a) {
        if (axis != -1 && a != axis) continue;
        menGraphAxis[a]->setChecked(fixed);
        FChart->SetAxisFixed(a, fixed);
    }
}

void TForm1::GUI_GraphGridBottom() {
    GraphGridSet(axBottom, menGraphGrid[axBottom]->isChecked(), true);
    SetModified(true);
}
void TForm1::GUI_GraphGridLeft() {
    GraphGridSet(axLeft, menGraphGrid[axLeft]->isChecked(), true);
    SetModified(true);
}
void TForm1::GUI_GraphGridRight() {
    GraphGridSet(axRight, menGraphGrid[axRight]->isChecked(), true);
    SetModified(true);
}
void TForm1::GUI_GraphAxisBottom() {
    GraphAxisFixed(axBottom, menGraphAxis[axBottom]->isChecked());
    SetModified(true);
}
void TForm1::GUI_GraphAxisLeft() {
    GraphAxisFixed(axLeft, menGraphAxis[axLeft]->isChecked());
    SetModified(true);
}
void TForm1::GUI_GraphAxisRight() {
    GraphAxisFixed(axRight, menGraphAxis[axRight]->isChecked());
    SetModified(true);
}

// On: onto the axis the settings name for the cursor; the width always from the settings.
void TForm1::GraphCursorSet(int which, bool on) {
    TCrossHair* ch = FChart->CrossHair();
    ch->SetCursor(which, on ? FDataBase->Cursor_Get(which).Axis : -1);
    ch->SetWidth(which, FDataBase->Cursor_Get(which).Width);
    menGraphCursor[which]->setChecked(ch->GetActive(which) != -1);
}

void TForm1::GUI_GraphCursor1() {
    GraphCursorSet(0, menGraphCursor[0]->isChecked());
}
void TForm1::GUI_GraphCursor2() {
    GraphCursorSet(1, menGraphCursor[1]->isChecked());
}

void TForm1::GUI_GraphLimits() {
    // The action has already flipped its check mark: the new state is the opposite of the old.
    FDataBase->Curve_SetAllLimitLines(menGraphLimits->isChecked());
    FChart->Rebuild();
    SetModified(true);
}

void TForm1::GUI_GraphScale() {
    GraphAxisFixed(-1, false);
    FChart->AutoScale();
    UpdateUndo();
    SetModified(true);
}

void TForm1::GUI_GraphRedo() {
    FChart->Undo();
    UpdateUndo();
}

void TForm1::UpdateUndo() {
    menGraphRedo->setEnabled(FChart->IsUndoPossible());
}

void TForm1::GUI_Graph() {
    menGraphLimits->setChecked(FDataBase->LimitLinesOn());
    menGraphFuncFlow->setVisible(FDataBase->ExistsFlowModul());
    menGraphFuncCalc->setChecked(FViewCalc->IsActive());
    menGraphCheckboxes->setChecked(FDataBase->View().Print.CheckBoxes);
    menGraphNote->setChecked(FChart->Texts()->NoticesShown());
    menGraphFuncLimit->setChecked(FViewLimit->IsActive());
    for (int k = 0; k < 2; ++k)
        menGraphCursor[k]->setChecked(FChart->CrossHair()->GetActive(k) != -1);
    UpdateUndo();
}

// The chart has already switched the limit lines (plain click) or the series (with a key).
void TForm1::Graph_OnLegendClick(int, Qt::KeyboardModifiers modifiers) {
    if (modifiers & (Qt::ShiftModifier | Qt::AltModifier | Qt::ControlModifier)) FCfgTab = 1;
    SetModified(true);
}

// Shift, Alt or Ctrl on the title, a curve, an axis or a legend entry: the configuration
// page on the tab that edits it.
void TForm1::Graph_OnElementClick(int configTab) {
    if (FLoading || onbView->currentIndex() != pgGraph) return;
    FCfgTab = std::clamp(configTab, 0, TCfgPage::tabCount - 1);
    SetViewPage(pgCfg);
}

// Menu check marks and tool buttons show what the chart holds now.
void TForm1::SyncGraphSwitches() {
    for (int a = 0; a < 3; ++a) {
        menGraphGrid[a]->setChecked(FChart->Grid(a));
        menGraphAxis[a]->setChecked(FChart->IsAxisFixed(a));
    }
    menGraphLimits->setChecked(FDataBase->LimitLinesOn());
    for (int k = 0; k < 2; ++k)
        menGraphCursor[k]->setChecked(FChart->CrossHair()->GetActive(k) != -1);
    UpdateUndo();
}

void TForm1::chkBigDataOnClick() {
    FDataBase->switchBigData(chkBigDataOn->isChecked());
    chkBigDataOn->setChecked(FDataBase->isBigDataOn());
    FChart->Rebuild();
}

// ====================================================================== analyses

void TForm1::menGraphFuncIntegralClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    TfrmCalcDlg dlg(this);
    dlg.Execute(FDataBase, FChart->CrossHair(), false);
}

void TForm1::menGraphFuncFlowClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    TfrmCalcDlg dlg(this);
    dlg.Execute(FDataBase, FChart->CrossHair(), true);
}

void TForm1::menGraphFuncCalcClick() {
    Analyses_SetShown(true, !FViewCalc->IsActive());
}

void TForm1::menGraphFuncLimitClick() {
    Analyses_SetShown(false, !FViewLimit->IsActive());
}

void TForm1::menGraphFuncKessaClick() {
    if (FLoading) return;
    TfrmCalcKessaDlg dlg(this);
    if (!dlg.Execute(FDataBase)) return;
    // The views fill the channel's texts anew, and the chart draws it (or no longer does).
    FChart->Rebuild();
    Analyses_Renew();
}

void TForm1::menGraphFFTClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    if (!FViewFFT) FViewFFT = new TfrmViewFFT(this);
    FViewFFT->Execute(FDataBase, FChart->CrossHair());
}

// ====================================================================== texts

// The notices are drawn on the left axis: without it they can only be hidden.
void TForm1::menGraphNoteClick() {
    TChartTexts& texts = *FChart->Texts();
    if (!FChart->ChartAxis(axLeft)->visible()) {
        texts.SetNoticesShown(false);
        menGraphNote->setChecked(false);
        ShowError(Txt(TTextId::MsgActivateLeftAxis));
        return;
    }
    texts.SetNoticesShown(!texts.NoticesShown());
    menGraphNote->setChecked(texts.NoticesShown());
}

void TForm1::spbTextModifyClick() {
    FChart->SetTextMode(menTextModify->isChecked());
}

void TForm1::spbTextInsertClick() {
    if (FLoading || FCaptionFile.isEmpty()) return;
    QString text;
    if (!TZebDlg::InputBox(Txt(TTextId::TextInsert), QString(), text, QCursor::pos()) || text.isEmpty()) return;
    FChart->Texts()->InsertText(text);
}

// Shown or not is part of the display settings.
void TForm1::Analyses_SetShown(bool calc, bool shown) {
    TfrmViewBase* view = calc ? static_cast<TfrmViewBase*>(FViewCalc) : FViewLimit;
    (calc ? FDataBase->View().General.ViewCalc : FDataBase->View().General.ViewLimit) = shown;
    if (shown) {
        view->SetActive();
        view->Display(onbView->currentIndex() == pgGraph);
        Analyses_ReCalc();
    } else {
        view->SetInactive();
    }
    (calc ? menGraphFuncCalc : menGraphFuncLimit)->setChecked(shown);
    SetModified(true);
}

void TForm1::Analyses_Arm() {
    const TGeneralState& g = FDataBase->View().General;
    for (TfrmViewBase* view : std::initializer_list<TfrmViewBase*>{FViewCalc, FViewLimit}) {
        const bool shown = view == FViewCalc ? g.ViewCalc : g.ViewLimit;
        view->SetInactive();
        if (shown) {
            view->SetActive();
            view->Display(onbView->currentIndex() == pgGraph);
        }
    }
    Analyses_ReCalc();
}

// What the views remember of the last range goes: they compute anew, with the settings as
// they are now.
void TForm1::Analyses_Renew() {
    FViewCalc->Clear();
    FViewLimit->Clear();
    Analyses_ReCalc();
}

void TForm1::Analyses_ReCalc() {
    if (FLoading) return;
    for (TfrmViewBase* view : std::initializer_list<TfrmViewBase*>{FViewCalc, FViewLimit})
        if (view->IsActive()) view->ReCalc();
    // What the views have seen of the flow channel is up to date; the chart draws its curve
    // while the reference curve is shown.
    TCalcKessa& kessa = CalcKessa();
    kessa.clearVisibleCurve();
    for (int i = 0; i < FDataBase->Curve_Count(); ++i)
        if (FDataBase->Curve_IsActive(i)) kessa.setVisibleCurve(i);
}

// ====================================================================== opening a file

QString TForm1::SettingsFileOf(const QString& dataFile) {
    return TDataBase::SettingsFileOf(dataFile);
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

    // 1. the views let go of the old recording
    FDataBase->Repaint(false);
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
        [this](int index, const QString& text) { FileThread_OnAnswer(index, text); },
        [this](int& res) { FileThread_OnAsk(res); }, ZebSettings().BrandVariant));
    FFileThread = FThreads.back().get();
    return true;
}

void TForm1::StepBusyIndicator() {
    if (FBusyStep.isValid() && FBusyStep.elapsed() < kBusyStepMs) return;
    FBusyStep.start();
    const int next = trbFileProgress->value() + 1;
    trbFileProgress->setValue(next > trbFileProgress->maximum() ? trbFileProgress->minimum() : next);
}

void TForm1::FileThread_OnAnswer(int index, const QString& text) {
    switch (index) {
    case TFileThread::kProgress:
        // "Block " and a further blank before the number: two blanks, as always shown.
        SetStatus(Txt(TTextId::StatusBlock) + QLatin1Char(' ') + text);
        StepBusyIndicator();
        break;
    case TFileThread::kCannotOpen:
        ShowError(TxtFmt(TTextId::MsgLoadCannotOpen, {text}));
        break;
    case TFileThread::kError:
        ShowError(Txt(TTextId::MsgFatalError));
        break;
    case TFileThread::kDefect:
        ShowError(text);
        break;
    case TFileThread::kResultOk:
        FileLoaded();
        break;
    case TFileThread::kResultError:
    case TFileThread::kResultCancelled:
    case TFileThread::kResultPreviewer:
        FileFailed(index);
        break;
    default:
        break; // the value count and the cancel report need no answer
    }
}

void TForm1::FileThread_OnAsk(int& res) {
    if (!FBigDataDlg) FBigDataDlg = new TfrmBigDataDlg(this);
    res = FBigDataDlg->Execute();
}

void TForm1::FileFailed(int result) {
    const QString fileName = FDataBase->FileName();
    FFileThread = nullptr;
    FLoading = false;
    FModified = false;
    FCaptionFile.clear();
    // What was read stays and is shown; only the file is forgotten. Large curves are drawn
    // reduced, as after a complete load, so a cancelled huge file stays responsive.
    FDataBase->ClearFileName();
    FViewCalc->Clear();
    FViewLimit->Clear();
    FDataBase->CheckBigData();
    chkBigDataOn->setChecked(FDataBase->isBigDataOn());
    FDataBase->Table_SetFirstRow(0.0);
    UpdateCaption();
    FDataBase->Repaint(true);
    FChart->Rebuild();
    ShowWorkPage(pgWork);
    View_OnPageChanged(onbView->currentIndex());
    SyncGraphSwitches();
    if (result == TFileThread::kResultPreviewer) {
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

    db.FinishLoad();
    chkBigDataOn->setChecked(db.isBigDataOn());

    FCaptionFile = db.FileName();
    RecentFiles_Add(db.FileName());
    UpdateCaption();
    FChart->Texts()->SetNoticesShown(false); // the notice series starts hidden with every file
    db.Repaint(true);
    FChart->Rebuild();
    ShowWorkPage(pgWork);
    View_OnPageChanged(onbView->currentIndex());
    GraphCursorSet(0, true);
    GraphCursorSet(1, true);
    SyncGraphSwitches();
    Analyses_Arm();

    if (db.isBigDataOn())
        TZebDlg::ShowMsg(Txt(TTextId::MsgDataReductionNote), TMsgDlgType::Information);
    Q_EMIT loadFinished(TFileThread::kResultOk);
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
    if (!FLoading && !AcceptableDrop(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void TForm1::dropEvent(QDropEvent* event) {
    const QString path = AcceptableDrop(event->mimeData());
    if (FLoading || path.isEmpty()) return;
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

QStringList TForm1::CutterArguments(const QString& target, bool csv) const {
    return ::CutterArguments(*FDataBase, target, csv);
}

int TForm1::CuttersRunning() const {
    return FCutterLaunch->Running();
}

void TForm1::StartCutter(const QString& target, bool csv) {
    FCutterLaunch->Start(*FDataBase, target, csv);
}

void TForm1::GUI_FileSaveAs() {
    if (FLoading || FCaptionFile.isEmpty() || !FCutterAvailable || !CfgPageApply()) return;
    const QFileInfo data(FDataBase->FileName());
    // The data file's own name would be refused by the cutter; offer a free one beside it.
    QString fileName = data.absoluteDir().filePath(data.completeBaseName() + QStringLiteral("_window") +
                                                    DataFileExtension());
    if (!TZebDlg::SaveZebFile(Txt(TTextId::MenuFileSaveAs), data.absolutePath(), fileName)) return;
    StartCutter(fileName, false);
}

void TForm1::GUI_FileExportText() {
    if (FLoading || FCaptionFile.isEmpty() || !FTextExportAvailable || !CfgPageApply()) return;
    const QFileInfo data(FDataBase->FileName());
    QString fileName = data.absoluteDir().filePath(data.completeBaseName() + QStringLiteral(".csv"));
    if (!TZebDlg::SaveCsvFile(Txt(TTextId::MenuFileExportText), data.absolutePath(), fileName)) return;
    StartCutter(fileName, true);
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
    FChart->Rebuild();
    SyncGraphSwitches();
}

void TForm1::GUI_GraphCheckboxes() {
    TPrintState& p = FDataBase->View().Print;
    p.CheckBoxes = !p.CheckBoxes;
    menGraphCheckboxes->setChecked(p.CheckBoxes);
    FChart->Rebuild();
    SetModified(true);
}
