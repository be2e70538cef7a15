// The text table, the language choice and the switch.

#include "config/Language.h"
#include "config/Texts.h"
#include "data/Formats.h"

#include <QCoreApplication>
#include <QTest>

using namespace zeb;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(zeb::TTextId)

class TstTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Must stay first: it looks at the state before any switch.
    void germanBeforeTheSwitch();
    void everyRecordIsComplete();
    void languagesAgreeOnStructure();
    void quotedTexts_data();
    void quotedTexts();
    void dataReductionNote();
    void selection_data();
    void selection();
    void switchModesAndNoFrench_data();
    void switchModesAndNoFrench();
    void switchSetsUpFormats();
    void quotedLists();
    void formatText_data();
    void formatText();
    void qtTranslationsFollow();
    void cleanup();
};

void TstTexts::germanBeforeTheSwitch() {
    QCOMPARE(CurrentLanguage(), int(LangGerman));
    QCOMPARE(Txt(TTextId::MsgFatalError), QStringLiteral("Es ist ein schwerwiegender Fehler aufgetreten !"));
    QCOMPARE(Txt(TTextId::ColumnTime), QStringLiteral("Zeit"));
}

void TstTexts::everyRecordIsComplete() {
    const auto table = TextTable();
    QCOMPARE(qsizetype(table.size()), qsizetype(TTextId::Count));
    for (size_t i = 0; i < table.size(); ++i) {
        const TTextRecord& r = table[i];
        QCOMPARE(size_t(r.Id), i);
        for (int lang : {LangGerman, LangEnglish, LangFrench}) {
            const QString text = TxtIn(r.Id, lang);
            QVERIFY2(!text.trimmed().isEmpty(),
                     qPrintable(QStringLiteral("record %1, language %2").arg(i).arg(lang)));
        }
    }
}

// A placeholder, a line break or a list item missing in one language breaks the caller that
// formats, lays out or splits the text.
void TstTexts::languagesAgreeOnStructure() {
    for (const TTextRecord& r : TextTable()) {
        const QString en = TxtIn(r.Id, LangEnglish);
        const QString what = QStringLiteral("record %1: ").arg(int(r.Id)) + en;
        for (int lang : {LangGerman, LangFrench}) {
            const QString other = TxtIn(r.Id, lang);
            QVERIFY2(other.count(QStringLiteral("%s")) == en.count(QStringLiteral("%s")), qPrintable(what));
            QVERIFY2(other.count(QStringLiteral("\r\n")) == en.count(QStringLiteral("\r\n")),
                     qPrintable(what));
            QVERIFY2(other.count(QLatin1Char('\n')) == other.count(QStringLiteral("\r\n")), qPrintable(what));
            QVERIFY2(SplitQuotedList(other).size() == SplitQuotedList(en).size(), qPrintable(what));
        }
    }
}

// Every text the program's documentation quotes, in each language it quotes it, written out
// here rather than taken from the table. \u00A0 is the no-break space French puts before "!".
namespace {
constexpr int De = LangGerman, En = LangEnglish, Fr = LangFrench;
struct TQuoted {
    TTextId Id;
    int Lang;
    const char16_t* Text;
};
using enum TTextId;
constexpr TQuoted kQuoted[] = {
    {MsgCannotOpenFile, En, u"Cannot open file [%s] !"},
    {MsgCannotOpenFile, De, u"Kann Datei [%s] nicht öffnen !"},
    {MsgCannotOpenFile, Fr, u"Impossible d’ouvrir le fichier [%s] !"},
    {MsgFileCannotBeRead, En, u"File [%s] cannot be read!"},
    {MsgFileCannotBeRead, De, u"Datei [%s] kann nicht geöffnet werden !"},
    {MsgFileCannotBeRead, Fr, u"Impossible d’ouvrir le fichier [%s] !"},
    {MsgFatalError, En, u"Fatal error has occurred!"},
    {MsgFatalError, De, u"Es ist ein schwerwiegender Fehler aufgetreten !"},
    {MsgFatalError, Fr, u"Une erreur fatale s’est produite !"},
    {MsgSaveSettings, En, u"Do you want to save the current settings ?"},
    {MsgSaveSettings, De, u"Sollen die aktuellen Einstellungen gespeichert werden ?"},
    {MsgSaveSettings, Fr, u"Voulez-vous enregistrer les paramètres actuels ?"},
    {MsgSaveFileFirst, En, u"Please save file first!"},
    {MsgSaveFileFirst, De, u"Bitte zuerst die Datei speichern !"},
    {MsgSaveFileFirst, Fr, u"Enregistrer d’abord le fichier, SVP\u00A0!"},
    {MsgEnterCorrectTime, En, u"Please enter correct time:"},
    {MsgEnterCorrectTime, De, u"Bitte korrekte Zeit eingeben :"},
    {MsgEnterCorrectTime, Fr, u"Entrer un temps correct, SVP:"},
    {MsgActivateLeftAxis, En, u"First activate left Y axis, please!"},
    {MsgActivateLeftAxis, De, u"Bitte zuerst die linke Y-Achse aktivieren !"},
    {MsgActivateLeftAxis, Fr, u"Veuillez d'abord activer l'axe de coordonnées Y de gauche\u00A0!"},
    {MsgFileTooLarge, En, u"File too large!"},
    {MsgFileTooLarge, De, u"Achtung: Datei zu gross!"},
    {MsgFileTooLarge, Fr, u"Attention : Fichier trop volumineux !"},
    {MsgReadingFile, En, u"Reading file.."},
    {MsgReadingFile, De, u"Datei lesen.."},
    {MsgReadingFile, Fr, u"Lecture du fichier.."},
    {MsgCrosshairNote, En,
     u"Note: In some cases changes may only take effect once the crosshairs have been activated !"},
    {MsgCrosshairNote, De, u"Hinweis: Änderungen werden u.U. nur mit Aktivierung des Fadenkreuzes wirksam !"},
    {MsgCrosshairNote, Fr,
     u"NB : Ìl arrive que les modifications ne soient prises en compte qu’une fois le réticule "
     u"activé\u00A0!"},
    {MsgTimeAxisNote, En,
     u"Note:\r\nThe time axis label is aligned to the right !\r\n"
     u"Enter a final value therefore, that lies within the required range."},
    {MsgNoPreviewer, En, u"Previewer nicht vorhanden!"},
    {MsgNoPreviewer, De, u"Previewer nicht vorhanden!"},
    {MsgNoPreviewer, Fr, u"Previewer nicht vorhanden!"},
    {MsgZebFileDefect, En, u"ZEB file is defect !"},
    {BigDataInfo, En, u"This file contains more than 2.5 million measurements."},
    {BigDataInfo, De, u"Diese Datei enthält mehr als 2.500.000 Messwerte"},
    {BigDataStop, En, u"Stop the process and close the Viewer"},
    {BigDataStop, De, u"Viewer ohne Anzeige beenden"},
    {BigDataShow, En, u"Only display the measurements read so far"},
    {BigDataShow, De, u"Nur die bis jetzt gelesenen Messwerte anzeigen"},
    {BigDataContinue, En, u"Continue reading in"},
    {BigDataContinue, De, u"Das Einlesen fortsetzen"},
    {BigDataPreviewer, En, u"Open file in Previewer"},
    {BigDataPreviewer, De, u"Die Datei im Previewer öffnen und dort zuschneiden"},
    {DlgZebFile, En, u"ZEB file"},
    {DlgZebTemplate, En, u"ZEB template"},
    {DlgSelectDirectory, De, u"Verzeichnis wählen"},
    {BtnOk, En, u"OK"},
    {BtnCancel, En, u"Cancel"},
    {BtnYes, En, u"&Yes"},
    {BtnNo, En, u"&No"},
    {BtnHelp, En, u"&Help"},
    {BtnClose, En, u"&Close"},
    {BtnIgnore, En, u"&Ignore"},
    {BtnRetry, En, u"&Retry"},
    {BtnRetry, De, u"&Wiederholen"},
    {BtnRetry, Fr, u"&Renouveler"},
    {BtnAbort, En, u"&Abort"},
    {BtnAll, En, u"&All"},
    {BtnNoToAll, En, u"N&o to All"},
    {BtnYesToAll, En, u"Yes to &All"},
    {MsgBtnOk, En, u"OK"},
    {MsgBtnCancel, En, u"Cancel"},
    {MsgBtnYes, En, u"&Yes"},
    {MsgBtnNo, En, u"&No"},
    {MsgBtnHelp, En, u"&Help"},
    {MsgBtnClose, En, u"&Close"},
    {MsgBtnIgnore, En, u"&Ignore"},
    {MsgBtnRetry, En, u"&Wiederholen"}, // swapped on purpose
    {MsgBtnRetry, De, u"&Retry"},
    {MsgBtnRetry, Fr, u"&Renouveler"},
    {MsgBtnAbort, En, u"&Abort"},
    {MsgBtnAll, En, u"&All"},
    {MsgBtnNoToAll, En, u"N&o to All"},
    {MsgBtnYesToAll, En, u"Yes to &All"},
    {MsgTitleWarning, En, u"Warning"},
    {MsgTitleError, En, u"Error"},
    {MsgTitleInformation, En, u"Information"},
    {MsgTitleConfirm, En, u"Confirm"},
    {MenuFileOpen, En, u"Open.."},
    {HintFileOpen, En, u"Open file"},
    {MenuFileOpenAgain, En, u"Open again"},
    {MenuFileSave, En, u"Save"},
    {HintFileSave, En, u"Save file"},
    {MenuFileSaveAs, En, u"Save time window as.."},
    {MenuFileTemplateUse, En, u"Use template.."},
    {MenuFileTemplateSave, En, u"Save as template.."},
    {MenuFileExportText, En, u"Export time window as text.."},
    {MenuFileExportBmp, En, u"Export graphic as bitmap.."},
    {MenuFileExportJpg, En, u"Export graphic as JPEG.."},
    {MenuFilePrintPreview, En, u"Print preview.."},
    {MenuFilePrint, En, u"Print"},
    {HintFilePrint, En, u"Print graph"},
    {MenuFilePrintReport, En, u"Print report.."},
    {MenuFileExit, En, u"Exit"},
    {MenuBack, En, u"Back!"},
    {MenuGraph, En, u"Graph"},
    {HintViewGraph, En, u"Show graph"},
    {MenuTable, En, u"Table"},
    {HintViewTable, En, u"Show table"},
    {MenuConfiguration, En, u"Configuration"},
    {HintViewCfg, En, u"Show configuration"},
    {Crosshairs1, En, u"Crosshairs 1"},
    {Crosshairs2, En, u"Crosshairs 2"},
    {MenuGraphExtended, En, u"Extended.."},
    {MenuGraphFunc, En, u"Functions"},
    {MenuGraphFuncIntegral, En, u"Numerical Integration.."},
    {MenuGraphFuncFlow, En, u"Calculation of Flow.."},
    {MenuGraphFuncCalc, En, u"Show calculation"},
    {MenuGraphFuncLimit, En, u"Show limits"},
    {Fft, En, u"FFT"},
    {MenuGraphCheckboxes, En, u"Detailed legend"},
    {Limits, En, u"Limits"},
    {MenuGraphNote, En, u"Notice"},
    {MenuGraphScale, En, u"Auto scale"},
    {Undo, En, u"Undo"},
    {MenuTableGotoTime, En, u"Go to time.."},
    {MenuTableGotoTMin, En, u"Go to beginning of graph"},
    {TextModify, En, u"Change or move Text"},
    {TextInsert, En, u"Insert Text"},
    {DataReduction, En, u"Data reduction"},
    {StatusBlock, En, u"Block "},
    {StatusZoomHint, En,
     u"Zoom: Mark selection with left mouse button pressed, Move: with right mouse button pressed"},
    {StatusScrollX, En, u"X= "},
    {ReadX1, En, u"X1="},
    {ReadY1, En, u"Y1="},
    {ReadX2, En, u"X2="},
    {ReadY2, En, u"Y2="},
    {ReadDX, En, u"X2-X1="},
    {ReadDY, En, u"Y2-Y1="},
    {ChartStartTime, De, u"Startzeit : "},
    {ColumnTime, En, u"Time"},
    {ColumnTime, De, u"Zeit"},
    {CfgGeneral, En, u"General"},
    {CfgCurves, En, u"Curves"},
    {CfgCursor, En, u"Cursor"},
    {CfgShowStartTime, En, u"Show start date and time"},
    {CfgShowZebName, En, u"Show ZEB name"},
    {CfgFontStyles, En, u"\"standard\",\"bold\",\"italic\",\"bold+italic\""},
    {CfgAxisTypes, En,
     u"\"Time axis with time in seconds beginning at 0\",\"Time axis in time format beginning at 0\","
     u"\"Time axis in date/time format\""},
    {CfgFormatX, En, u"Format X"},
    {CfgFormatY, En, u"Format Y"},
    {CfgYAxis, En, u"Y axis"},
    {CfgLineWidth, En, u"Line Width"},
    {CfgCurveAxes, En, u"\"inactive\",\"left\",\"right\""},
    {NoteDelete, En, u"Delete"},
    {NoteInsertXY1, En, u"Insert X1, Y1"},
    {NoteInsertXY2, En, u"Insert X2, Y2"},
    {NoteInsertDiff, En, u"Insert X2-X1, Y2-Y1"},
    {NoteModifyTitle, En, u"modify notice"},
    {NoteModifyTitle, De, u"Notiz ändern"},
    {NoteNewTitle, De, u"Neue Notiz"},
    {PrintProportional, En, u"&proportional"},
    {PrintOrientation, En, u"&Orientation"},
    {PrintMargins, En, u"&Margins (in %)"},
    {PrintProperties, En, u"&Properties"},
    {PrintPrint, En, u"Pri&nt"},
    {PrintBack, En, u"&Back"},
    {CalcDlgIntegration, De, u"Numerische Integration"},
    {CalcDlgFlow, De, u"Berechnung des Durchflusses"},
    {CalcDlgBegin, De, u"Beginn"},
    {CalcDlgEnd, De, u"Ende"},
    {CalcDlgSelectCurve, De, u"Auswahl der Kurve:"},
    {CalcDlgCompute, De, u"Berechnen"},
    {CalcDlgClose, De, u"Ende"},
    {CalcDlgResult, De, u"Ergebnis:"},
    {CalcDlgFromAxis, De, u"Zeitachse X"},
    {CalcDlgFromCursor, De, u"Fadenkreuz"},
    {ViewCalcCaption, En, u"Calculation"},
    {ViewColumnCurve, En, u"Curve"},
    {ViewColumnParameter, En, u"Parameter"},
    {ViewColumnValue, En, u"Value"},
    {ViewMinimum, En, u"Minimum="},
    {ViewMaximum, En, u"Maximum="},
    {ViewAverage, En, u"Average="},
    {ViewStdDev, En, u"STDEF="},
    {ViewOutOfLimits, En, u"Out of limits time="},
    {ViewWithinLimits, En, u"Within limits time="},
    {ViewClipboard, De, u"Zwischenablage"},
    {FftReset, En, u"Reset"},
    {FftWindowToBand, En, u"Window = Band"},
    {FftBandToWindow, En, u"Band = Window"},
    {FftEditor, En, u"Editor"},
    {FftInput, En, u"Input"},
    {FftTimeAxis, En, u"t in s"},
    {FftFrequencyAxis, En, u"Frequenz in Hz"},
    {FftFrequencyAxis, De, u"Frequenz in Hz"},
    {FftFrequencyAxis, Fr, u"Frequenz in Hz"},
    {FftBandStart, En, u"X1= "},
    {FftBandEnd, En, u"X2= "},
    {FftBandPoints, En, u"D = "},
    {KessaCaption, De, u"zusätzlicher FLOW-Kanal"},
    {KessaActive, De, u"aktiv"},
    {CfgName, De, u"Name"},
    {KessaUnit, De, u"Einheit"},
    {KessaFactor, De, u"Multiplikator"},
    {KessaOffset, De, u"Offset"},
    {KessaSelectCurve, De, u"Bitte Referenzkurve wählen:"},
    {DateTimeOk, De, u"&OK"},
    {DateTimeCancel, De, u"Ab&bruch"},
    {DateTimeIntervals, En,
     u"00:00:30,00:01:00,00:05:00,00:10:00,00:30:00,01:00:00,02:00:00,12:00:00,24:00:00"},
};
} // namespace

void TstTexts::quotedTexts_data() {
    QTest::addColumn<TTextId>("id");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("text");
    for (const TQuoted& q : kQuoted) {
        const QString text = QString::fromUtf16(q.Text);
        QTest::addRow("%d/%s", int(q.Id), qPrintable(text.left(40).simplified())) << q.Id << q.Lang << text;
    }
}

void TstTexts::quotedTexts() {
    QFETCH(TTextId, id);
    QFETCH(int, language);
    QFETCH(QString, text);
    QCOMPARE(TxtIn(id, language), text);
}

// Quoted only by their beginning and end.
void TstTexts::dataReductionNote() {
    const QString en = TxtIn(TTextId::MsgDataReductionNote, LangEnglish);
    QVERIFY(en.startsWith(
        u"Note:\r\nAt least one measurement channel contains more than 1 million measured values."_s));
    QVERIFY(en.endsWith(u"Data reduction can be deactivated at any time."_s));
}

// One text in the language a switch should have chosen.
static QString SaveSettingsIn(int language) {
    switch (language) {
    case LangGerman:
        return u"Sollen die aktuellen Einstellungen gespeichert werden ?"_s;
    case LangFrench:
        return u"Voulez-vous enregistrer les paramètres actuels ?"_s;
    default:
        return u"Do you want to save the current settings ?"_s;
    }
}

void TstTexts::selection_data() {
    QTest::addColumn<int>("setting");
    QTest::addColumn<QString>("system");
    QTest::addColumn<int>("expected");
    QTest::newRow("stored German on French system") << 0 << u"fr_FR"_s << 0;
    QTest::newRow("stored English on German system") << 1 << u"de_DE"_s << 1;
    QTest::newRow("stored French on English system") << 2 << u"en_US"_s << 2;
    QTest::newRow("none, French") << -1 << u"fr_FR"_s << 2;
    QTest::newRow("none, Canadian French") << -1 << u"fr_CA"_s << 2;
    QTest::newRow("none, Austrian German") << -1 << u"de_AT"_s << 0;
    QTest::newRow("none, Swiss German") << -1 << u"de_CH"_s << 0;
    QTest::newRow("none, English") << -1 << u"en_GB"_s << 1;
    QTest::newRow("5, Spanish") << 5 << u"es_ES"_s << 1;
    QTest::newRow("3, Italian") << 3 << u"it_IT"_s << 1;
    QTest::newRow("5, German") << 5 << u"de_DE"_s << 0;
}

void TstTexts::selection() {
    QFETCH(int, setting);
    QFETCH(QString, system);
    QFETCH(int, expected);
    SetSystemLocaleOverride(QLocale(system));
    QCOMPARE(SelectLanguage(setting), expected);
    QCOMPARE(ApplyStartupLanguage(setting, 0, 0), expected);
    QCOMPARE(CurrentLanguage(), expected);
    QCOMPARE(Txt(TTextId::MsgSaveSettings), SaveSettingsIn(expected));
}

void TstTexts::switchModesAndNoFrench_data() {
    QTest::addColumn<int>("requested");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("noFrench");
    QTest::addColumn<int>("expected");
    QTest::newRow("mode 2 overrides German") << 0 << 2 << false << 1;
    QTest::newRow("mode 2 overrides French") << 2 << 2 << false << 1;
    QTest::newRow("mode 1 keeps French") << 2 << 1 << false << 2;
    QTest::newRow("no French: French becomes English") << 2 << 0 << true << 1;
    QTest::newRow("no French: German stays") << 0 << 0 << true << 0;
    QTest::newRow("no French: system French becomes English") << -1 << 0 << true << 1;
}

void TstTexts::switchModesAndNoFrench() {
    QFETCH(int, requested);
    QFETCH(int, mode);
    QFETCH(bool, noFrench);
    QFETCH(int, expected);
    SetSystemLocaleOverride(QLocale(QLocale::French, QLocale::France));
    QCOMPARE(SwitchLanguage(requested, mode, noFrench), expected);
    QCOMPARE(CurrentLanguage(), expected);
    QCOMPARE(Txt(TTextId::MsgSaveSettings), SaveSettingsIn(expected));
}

void TstTexts::switchSetsUpFormats() {
    SetSystemLocaleOverride(QLocale(QLocale::English, QLocale::UnitedStates));
    SwitchLanguage(1, 0, false, 3, 1);
    QCOMPARE(FormatSettings().ShortDateFormat, QStringLiteral("dd.MM.yyyy"));
    QCOMPARE(FormatSettings().DecimalSeparator, QLatin1Char(','));
    SwitchLanguage(0, 2, false, 3, 1);
    QCOMPARE(FormatSettings().ShortDateFormat, QStringLiteral("dd-MMM-yyyy"));
    QCOMPARE(FormatSettings().DecimalSeparator, QLatin1Char('.'));
}

void TstTexts::quotedLists() {
    SwitchTexts(LangEnglish);
    QCOMPARE(TxtList(TTextId::CfgCurveAxes), (QStringList{u"inactive"_s, u"left"_s, u"right"_s}));
    SwitchTexts(LangGerman);
    QCOMPARE(TxtList(TTextId::CfgFontStyles).size(), 4);
    // Commas inside an item belong to it.
    QCOMPARE(SplitQuotedList(u"\"0, 0.0\",\"#.#\""_s), (QStringList{u"0, 0.0"_s, u"#.#"_s}));
    QCOMPARE(SplitQuotedList(u"\"\",\"a\""_s), (QStringList{QString(), u"a"_s}));
    QCOMPARE(SplitQuotedList(u"no list"_s), QStringList());
}

void TstTexts::formatText_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one") << u"Datei [%s] !"_s << QStringList{u"a.zeb"_s} << u"Datei [a.zeb] !"_s;
    QTest::newRow("two in order") << u"%s-%s"_s << QStringList{u"x"_s, u"y"_s} << u"x-y"_s;
    QTest::newRow("argument holding a placeholder")
        << u"[%s] %s"_s << QStringList{u"%s"_s, u"b"_s} << u"[%s] b"_s;
    QTest::newRow("too few arguments") << u"%s and %s"_s << QStringList{u"a"_s} << u"a and %s"_s;
    QTest::newRow("no placeholder") << u"plain"_s << QStringList{u"a"_s} << u"plain"_s;
}

void TstTexts::formatText() {
    QFETCH(QString, text);
    QFETCH(QStringList, args);
    QFETCH(QString, expected);
    QString result;
    if (args.size() == 1)
        result = FormatText(text, {args[0]});
    else
        result = FormatText(text, {args[0], args[1]});
    QCOMPARE(result, expected);
}

// Qt's standard buttons speak the chosen language once its translations are installed.
void TstTexts::qtTranslationsFollow() {
    const auto cancel = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
    SwitchTexts(LangGerman);
    if (!InstallQtTranslations()) QSKIP("Qt's German translations are not installed");
    QCOMPARE(cancel(), QStringLiteral("Abbrechen"));
    SwitchTexts(LangFrench);
    QVERIFY(InstallQtTranslations());
    QCOMPARE(cancel(), QStringLiteral("Annuler"));
    SwitchTexts(LangEnglish);
    QVERIFY(InstallQtTranslations());
    QCOMPARE(cancel(), QStringLiteral("Cancel"));
}

void TstTexts::cleanup() {
    SetSystemLocaleOverride(std::nullopt);
}

QTEST_GUILESS_MAIN(TstTexts)
#include "tst_texts.moc"
