// The main window's menus, toolbar panels and work page, and their texts in the current
// language.

#include "ui/Main.h"

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "ui/CfgPage.h"
#include "ui/PrintPreviewPage.h"
#include "ui/TableView.h"
#include "ui/ToolbarGlyphs.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QMenu>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>


using zeb::TTextId;
using zeb::Txt;
using zeb::TxtFmt;

namespace {

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
    menFileExportMatlab = action("menFileExportMatlab", &TForm1::GUI_FileExportMatlab);
    menFileExportHdf5 = action("menFileExportHdf5", &TForm1::GUI_FileExportHdf5);
    menFile->addAction(menFileExportMatlab);
    menFile->addAction(menFileExportHdf5);
    menFileSummary = action("menFileSummary", &TForm1::GUI_FileSummary);
    menFile->addAction(menFileSummary);
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
    menFileExportMatlab->setText(Txt(TTextId::MenuFileExportMatlab));
    menFileExportHdf5->setText(Txt(TTextId::MenuFileExportHdf5));
    menFileSummary->setText(Txt(TTextId::MenuFileSummary));
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
