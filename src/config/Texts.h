#pragma once
// The program's user-visible texts in German, English and French. Every caption, menu entry,
// hint, message and label is one record of the table in Texts.cpp; code looks it up with
// Txt(TTextId::...) and never keeps a literal of its own in a widget.
//
// Adding a text: add an identity to TTextId (in the group where it is shown) and a record
// with the same identity at the same position in Texts.cpp; the build fails when the two
// disagree.
//
// Before the language switch (Language.h) every lookup answers the German text.

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <span>

namespace zeb {

enum TLanguage : int { LangGerman = 0, LangEnglish = 1, LangFrench = 2 };

enum class TTextId : int {
    // Messages
    MsgCannotOpenFile,
    MsgFileCannotBeRead,
    MsgLoadCannotOpen,
    MsgFatalError,
    MsgSaveSettings,
    MsgSaveFileFirst,
    MsgEnterCorrectTime,
    MsgActivateLeftAxis,
    MsgFileTooLarge,
    MsgReadingFile,
    MsgCrosshairNote,
    MsgTimeAxisNote,
    MsgDataReductionNote,
    MsgNoPreviewer,
    MsgZebFileDefect,
    MsgCannotSaveFile,
    MsgCannotSaveSettings,
    MsgPrintFailed,
    MsgCannotWritePicture,
    MsgCutterRunning,
    MsgCutterDone,
    MsgCutterFailed,
    MsgCutterNoChannel,

    // Large-file question
    BigDataInfo,
    BigDataStop,
    BigDataShow,
    BigDataContinue,
    BigDataPreviewer,

    // File, folder and colour dialogs
    DlgZebFile,
    DlgZebTemplate,
    DlgAllFiles,
    DlgSelectDirectory,

    // General buttons
    BtnOk,
    BtnCancel,
    BtnYes,
    BtnNo,
    BtnHelp,
    BtnClose,
    BtnIgnore,
    BtnRetry,
    BtnAbort,
    BtnAll,
    BtnNoToAll,
    BtnYesToAll,

    // Buttons and titles of the message dialog
    MsgBtnOk,
    MsgBtnCancel,
    MsgBtnYes,
    MsgBtnNo,
    MsgBtnHelp,
    MsgBtnClose,
    MsgBtnIgnore,
    MsgBtnRetry,
    MsgBtnAbort,
    MsgBtnAll,
    MsgBtnNoToAll,
    MsgBtnYesToAll,
    MsgTitleWarning,
    MsgTitleError,
    MsgTitleInformation,
    MsgTitleConfirm,

    // Main window: menus, commands, hints, status line
    MenuFile,
    MenuFileOpen,
    HintFileOpen,
    MenuFileOpenAgain,
    MenuFileSave,
    HintFileSave,
    MenuFileSaveAs,
    MenuFileTemplateUse,
    MenuFileTemplateSave,
    MenuFileExportText,
    MenuFileExportMatlab,
    MenuFileExportHdf5,
    DlgHdf5File,
    MenuFileExportBmp,
    MenuFileExportJpg,
    MenuFileExportPng,
    MenuFileExportPdf,
    MenuFileExportSvg,
    MenuFilePrintPreview,
    MenuFilePrint,
    HintFilePrint,
    MenuFilePrintReport,
    MenuFileExit,
    MenuBack,
    MenuView,
    MenuGraph, // the Graph menu and the View entry
    HintViewGraph,
    MenuTable, // the Table menu and the View entry
    HintViewTable,
    MenuConfiguration, // the Configuration menu and the View entry
    HintViewCfg,
    MenuGraphGridBottom,
    MenuGraphGridLeft,
    MenuGraphGridRight,
    MenuGraphAxisBottom,
    MenuGraphAxisLeft,
    MenuGraphAxisRight,
    Crosshairs1, // menu entry, hint and configuration group
    Crosshairs2,
    MenuGraphExtended,
    MenuGraphFunc,
    MenuGraphFuncIntegral,
    MenuGraphFuncFlow,
    MenuGraphFuncCalc,
    MenuGraphFuncLimit,
    MenuGraphFuncKessa,
    Fft, // menu entry, FFT window caption and button
    MenuGraphCheckboxes,
    Limits, // Graph menu entry and limit view caption
    MenuGraphNote,
    MenuGraphScale,
    Undo, // Graph and Configuration menus
    MenuTableGotoTime,
    MenuTableGotoTMin,
    HintTableFirst,
    HintTableReverseFast,
    HintTableReverse,
    HintTableForward,
    HintTableForwardFast,
    HintTableEnd,
    TextModify,
    TextInsert, // tool button hint and title of the text input
    DataReduction,
    StatusBlock,
    StatusZoomHint,
    StatusScrollX,
    MainCaption,

    // Crosshair read-outs
    ReadX1,
    ReadY1,
    ReadX2,
    ReadY2,
    ReadDX,
    ReadDY,

    // Chart and table view
    ChartStartTime,
    ColumnTime,

    // Configuration page
    CfgGeneral,
    CfgCurves,
    CfgAxisBottom,
    CfgAxisLeft,
    CfgAxisRight,
    CfgCursor,
    CfgTitle,
    CfgFooter,
    CfgShowStartTime,
    CfgShowZebName,
    CfgFontTitle,
    CfgFontLegend,
    CfgFontAxes,
    CfgFontText,
    CfgFontStyles, // quoted list
    CfgName,       // also the name field of the additional flow channel
    CfgAutomatic,
    CfgMinimum,
    CfgMaximum,
    CfgIncrement,
    CfgAxisType,
    CfgAxisTypes, // quoted list
    CfgFormat,
    CfgFormatRelative,
    CfgFormatAbsolute,
    CfgFormatX,
    CfgFormatY,
    CfgYAxis,
    CfgLineWidth,
    CfgCursorAxes, // quoted list
    CfgCurveNumber,
    CfgCurveSerial,
    CfgCurveDescription,
    CfgCurveAxis,
    CfgCurveColor,
    CfgCurveWidth,
    CfgCurveType,
    CfgCurveAxes,  // quoted list
    CfgCurveTypes, // quoted list
    CfgFonts,
    CfgFontName,
    CfgFontSize,
    CfgFontStyle,
    CfgAxisBottomSeconds,
    CfgPickTime,

    // Text notices
    NoteDelete,
    NoteInsertXY1,
    NoteInsertXY2,
    NoteInsertDiff,
    NoteModify,
    NoteModifyTitle,
    NoteNewTitle,
    NoteNewBox,

    // Print preview
    PrintProportional,
    PrintOrientation,
    PrintOrientations, // quoted list
    PrintMargins,
    PrintMarginLeft,
    PrintMarginRight,
    PrintMarginTop,
    PrintMarginBottom,
    PrintPrinter,
    PrintProperties,
    PrintPrint,
    PrintBack,
    PrintToPdf,

    // Chart editor
    EdTitles,
    EdAxes,
    EdLegend,
    EdBackground,
    EdVisible,
    EdGrid,
    EdGridColor,
    EdGridStyle,
    EdGridWidth,
    EdLineStyle,
    EdLineStyles, // quoted list
    EdPoints,
    EdPosition,
    EdPositions, // quoted list
    EdFrame,
    EdChartBackground,
    EdPlotBackground,

    // Integration and flow dialog
    CalcDlgIntegration,
    CalcDlgFlow,
    CalcDlgBegin,
    CalcDlgEnd,
    CalcDlgSelectCurve,
    CalcDlgCompute,
    CalcDlgClose,
    CalcDlgResult,
    CalcDlgFromAxis,
    CalcDlgFromCursor,

    // Calculation and limit views
    ViewCalcCaption,
    ViewColumnCurve,
    ViewColumnParameter,
    ViewColumnValue,
    ViewMinimum,
    ViewMaximum,
    ViewAverage,
    ViewStdDev,
    ViewOutOfLimits,
    ViewWithinLimits,
    ViewClipboard,

    // FFT view
    FftReset,
    FftWindowToBand,
    FftBandToWindow,
    FftEditor,
    FftInput,
    FftTimeAxis,
    FftFrequencyAxis,
    FftBandStart,
    FftBandEnd,
    FftBandPoints,
    FftWeighting,
    FftWindowNames, // one comma-separated list, in the order of the weighting windows
    FftLogarithmic,
    FftPeak,
    FftPeakText,
    ChartPropsCaption,
    ChartPropsXAxis,
    ChartPropsYAxis,

    // Additional flow channel
    KessaCaption,
    KessaActive,
    KessaUnit,
    KessaFactor,
    KessaOffset,
    KessaSelectCurve,

    // Go-to-time and date/time input
    GoToCaption,
    GoToLabel,
    DateTimeOk,
    DateTimeCancel,
    DateTimeIntervals, // one comma-separated list

    // Report
    ReportTitle, // also the caption of its preview
    ReportCompany,
    ReportFile,
    ReportCreator,
    ReportZebName,
    ReportLoggers,
    ReportStartTime,
    ReportTimeRange,
    ReportPrinted,
    ReportChannels,
    ReportNotices,
    ReportNoticeText,
    ReportMinimum,
    ReportMaximum,
    ReportAverage,
    ReportStdDev,
    ReportSpan,
    ReportMkt, // %s: the activation energy
    ReportLimitMode,
    ReportLimitModes, // quoted list by limit mode, %s for L1 and L2
    ReportOutOfLimits,
    ReportWithinLimits,
    ReportViolations,
    ReportNoValues,
    ReportPage, // %s: the page and the number of pages
    ReportCheckedBy,
    ReportDate,
    ReportSavePdf,
    ReportZoomIn,
    ReportZoomOut,
    ReportPdfFilter,
    ReportCannotWrite,
    ReportDuration,
    ReportValues,
    ReportInterval,
    ReportInfinite,
    ReportNoticeNumber,
    ReportActivationEnergy,
    DlgPngPicture,
    DlgSvgDrawing,

    // Summary of recordings
    MenuFileSummary,
    SumCaption,
    SumReading,
    SumProgress, // %s: done, total, file
    SumColumns,  // quoted list, the table's columns
    SumStatuses, // quoted list by TSummaryStatus
    SumVerdicts, // quoted list by TSummaryVerdict
    SumFailedOnly,
    SumOwnTemplates,
    SumOneTemplate, // %s: the template
    SumChooseTemplate,
    SumExportPdf,
    SumExportCsv,
    SumCsvFilter,
    SumCounts,     // %s: recordings, passed, failed, without limits
    SumIncomplete, // %s: how many recordings
    SumPeriod,
    SumResult,
    SumFailedCurve, // %s: the curve
    SumViolationColumns,
    SumMoreViolations, // %s: how many
    SumOpenHint,
    SumCannotWrite, // %s: the file
    SumLimits,
    SumNoRecordings, // %s: the folder

    // Command-line picture export
    CliUsage,
    CliBadArgument,
    CliCannotWritePicture,

    // Companion programs: cutter, text converter, previewer
    CmpCutterUsage,
    CmpConverterUsage,
    CmpBadArgument,
    CmpArgumentCount,
    CmpChannelCount,
    CmpWindowReversed,
    CmpWindowEmpty,
    CmpNoSuchChannel,
    CmpCannotRead,
    CmpNotARecording,
    CmpTargetIsSource,
    CmpCannotWrite,
    CmpKindMissing,
    CmpDamaged,
    PrvCaption,
    PrvReading,
    PrvInfo,
    PrvChannel,
    PrvUnit,
    PrvValues,
    PrvMinimum,
    PrvMaximum,
    PrvWindow,
    PrvHint,
    PrvWhole,
    PrvCutAndOpen,
    PrvNoChannel,
    PrvSaveAs,
    PrvCutting,
    PrvOpened,
    PrvCutFailed,
    PrvMissingProgram,
    PrvDamaged,
    PrvEmpty,

    CliVersionCompanions,
    CliVersionNoCompanions,
    PrvUsage,
    ToolUsage,

    Count
};

struct TTextRecord {
    TTextId Id;
    const char16_t* English;
    const char16_t* German;
    const char16_t* French;
};

// The whole table in identity order.
std::span<const TTextRecord> TextTable();

// The text of a record in the current language.
QString Txt(TTextId id);
// The text of a record in the given language, whatever the current one is.
QString TxtIn(TTextId id, int language);

// The items of a record in the quoted-list form "a","b","c", in the current language.
QStringList TxtList(TTextId id);
QStringList SplitQuotedList(const QString& text);

// Puts the arguments, in order, in place of the "%s" placeholders of a text.
QString FormatText(const QString& text, std::initializer_list<QString> args);
QString TxtFmt(TTextId id, std::initializer_list<QString> args);

// The language every lookup answers in (0 German, 1 English, 2 French).
int CurrentLanguage();
// Points every record at its text in the language; anything outside 0..2 is English.
// Meant for the language switch and for tests.
void SwitchTexts(int language);

} // namespace zeb
