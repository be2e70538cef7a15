#include "config/Texts.h"

#include <array>

namespace zeb {

namespace {

using enum TTextId;

// {identity, English, German, French}. Texts may hold "%s" placeholders, CR LF line breaks
// and quoted lists ("a","b"). Where only one language is meant to be shown, all three carry it.
// \u00A0 is the no-break space that French typography puts before "!" where the wording has it.
constexpr std::array<TTextRecord, size_t(TTextId::Count)> kTable{
    // Messages
    TTextRecord{MsgCannotOpenFile, u"Cannot open file [%s] !", u"Kann Datei [%s] nicht öffnen !",
                u"Impossible d’ouvrir le fichier [%s] !"},
    TTextRecord{MsgFileCannotBeRead, u"File [%s] cannot be read!", u"Datei [%s] kann nicht geöffnet werden !",
                u"Impossible d’ouvrir le fichier [%s] !"},
    TTextRecord{MsgLoadCannotOpen, u"File \"%s\" cannot be opened!",
                u"Datei \"%s\" kann nicht geöffnet werden !", u"Impossible d’ouvrir le fichier \"%s\" !"},
    TTextRecord{MsgFatalError, u"Fatal error has occurred!",
                u"Es ist ein schwerwiegender Fehler aufgetreten !", u"Une erreur fatale s’est produite !"},
    TTextRecord{MsgSaveSettings, u"Do you want to save the current settings ?",
                u"Sollen die aktuellen Einstellungen gespeichert werden ?",
                u"Voulez-vous enregistrer les paramètres actuels ?"},
    TTextRecord{MsgSaveFileFirst, u"Please save file first!", u"Bitte zuerst die Datei speichern !",
                u"Enregistrer d’abord le fichier, SVP\u00A0!"},
    TTextRecord{MsgEnterCorrectTime, u"Please enter correct time:", u"Bitte korrekte Zeit eingeben :",
                u"Entrer un temps correct, SVP:"},
    TTextRecord{MsgActivateLeftAxis, u"First activate left Y axis, please!",
                u"Bitte zuerst die linke Y-Achse aktivieren !",
                u"Veuillez d'abord activer l'axe de coordonnées Y de gauche\u00A0!"},
    TTextRecord{MsgFileTooLarge, u"File too large!", u"Achtung: Datei zu gross!",
                u"Attention : Fichier trop volumineux !"},
    TTextRecord{MsgReadingFile, u"Reading file..", u"Datei lesen..", u"Lecture du fichier.."},
    // The "Ì" of the French text belongs to it.
    TTextRecord{MsgCrosshairNote,
                u"Note: In some cases changes may only take effect once the crosshairs have been activated !",
                u"Hinweis: Änderungen werden u.U. nur mit Aktivierung des Fadenkreuzes wirksam !",
                u"NB : Ìl arrive que les modifications ne soient prises en compte qu’une fois le réticule "
                u"activé\u00A0!"},
    TTextRecord{MsgTimeAxisNote,
                u"Note:\r\nThe time axis label is aligned to the right !\r\n"
                u"Enter a final value therefore, that lies within the required range.",
                u"Hinweis:\r\nDie Beschriftung der Zeitachse ist rechtsbündig !\r\n"
                u"Geben Sie deshalb einen Endwert ein, der innerhalb des gewünschten Bereichs liegt.",
                u"Remarque :\r\nL’étiquette de l’axe du temps est alignée à droite !\r\n"
                u"Entrez donc une valeur finale qui se trouve dans la plage souhaitée."},
    TTextRecord{
        MsgDataReductionNote,
        u"Note:\r\nAt least one measurement channel contains more than 1 million measured values.\r\n"
        u"For this channel, data reduction has been enabled, which is indicated in the legend by an * "
        u"in front of the channel name.\r\n"
        u"The curve is drawn from a reduced set of points; table, calculations and export still use "
        u"every measured value.\r\n"
        u"Data reduction can be deactivated at any time.",
        u"Hinweis:\r\nMindestens ein Messkanal enthält mehr als 1 Million Messwerte.\r\n"
        u"Für diesen Kanal wurde die Datenreduktion eingeschaltet, was in der Legende durch ein * "
        u"vor dem Kanalnamen angezeigt wird.\r\n"
        u"Die Kurve wird aus einer reduzierten Punktmenge gezeichnet; Tabelle, Berechnungen und Export "
        u"verwenden weiterhin jeden Messwert.\r\n"
        u"Die Datenreduktion kann jederzeit ausgeschaltet werden.",
        u"Remarque :\r\nAu moins un canal de mesure contient plus d’un million de valeurs mesurées.\r\n"
        u"Pour ce canal, la réduction des données a été activée, ce qui est indiqué dans la légende "
        u"par un * devant le nom du canal.\r\n"
        u"La courbe est tracée à partir d’un ensemble réduit de points ; le tableau, les calculs et "
        u"l’exportation utilisent toujours toutes les valeurs mesurées.\r\n"
        u"La réduction des données peut être désactivée à tout moment."},
    // Deliberately untranslated.
    TTextRecord{MsgNoPreviewer, u"Previewer nicht vorhanden!", u"Previewer nicht vorhanden!",
                u"Previewer nicht vorhanden!"},
    TTextRecord{MsgZebFileDefect, u"ZEB file is defect !", u"ZEB-Datei ist defekt !",
                u"Fichier ZEB défectueux !"},
    TTextRecord{MsgCannotSaveFile, u"Cannot save file [%s] !", u"Kann Datei [%s] nicht speichern !",
                u"Impossible d’enregistrer le fichier [%s] !"},
    // Written to standard error: settings are saved while the window closes, with no one to ask.
    TTextRecord{MsgCannotSaveSettings, u"Warning: the settings could not be saved [%s] !",
                u"Warnung: Die Einstellungen konnten nicht gespeichert werden [%s] !",
                u"Attention : les paramètres n’ont pas pu être enregistrés [%s] !"},
    TTextRecord{MsgPrintFailed, u"The chart could not be printed on \"%s\".",
                u"Die Grafik konnte nicht auf \"%s\" gedruckt werden.",
                u"Le graphique n’a pas pu être imprimé sur \"%s\"."},
    TTextRecord{MsgCannotWritePicture, u"The picture \"%s\" cannot be written.",
                u"Das Bild \"%s\" kann nicht geschrieben werden.", u"L’image \"%s\" ne peut pas être écrite."},
    // Status bar while and after the cutter works for the window.
    TTextRecord{MsgCutterRunning, u"Writing \"%s\" ..", u"\"%s\" wird geschrieben ..",
                u"Écriture de \"%s\" .."},
    TTextRecord{MsgCutterDone, u"The time window was written to \"%s\".",
                u"Das Zeitfenster wurde in \"%s\" geschrieben.",
                u"La fenêtre de temps a été écrite dans \"%s\"."},
    TTextRecord{MsgCutterFailed, u"The cutter stopped with code %s: %s", u"Der Cutter brach mit Code %s ab: %s",
                u"Le découpeur s’est arrêté avec le code %s : %s"},
    TTextRecord{MsgCutterNoChannel, u"No channel is shown, so there is nothing to write.",
                u"Es wird kein Kanal angezeigt, daher gibt es nichts zu schreiben.",
                u"Aucun canal n’est affiché, il n’y a donc rien à écrire."},

    // Large-file question
    TTextRecord{BigDataInfo, u"This file contains more than 2.5 million measurements.",
                u"Diese Datei enthält mehr als 2.500.000 Messwerte",
                u"Ce fichier contient plus de 2,5 millions de valeurs mesurées."},
    TTextRecord{BigDataStop, u"Stop the process and close the Viewer", u"Viewer ohne Anzeige beenden",
                u"Arrêter le processus et fermer le Viewer"},
    TTextRecord{BigDataShow, u"Only display the measurements read so far",
                u"Nur die bis jetzt gelesenen Messwerte anzeigen",
                u"Afficher uniquement les valeurs lues jusqu’ici"},
    TTextRecord{BigDataContinue, u"Continue reading in", u"Das Einlesen fortsetzen",
                u"Poursuivre la lecture"},
    TTextRecord{BigDataPreviewer, u"Open file in Previewer",
                u"Die Datei im Previewer öffnen und dort zuschneiden",
                u"Ouvrir le fichier dans le Previewer"},

    // File, folder and colour dialogs
    TTextRecord{DlgZebFile, u"ZEB file", u"ZEB-Datei", u"Fichier ZEB"},
    TTextRecord{DlgZebTemplate, u"ZEB template", u"ZEB-Vorlage", u"Modèle ZEB"},
    TTextRecord{DlgAllFiles, u"All files", u"Alle Dateien", u"Tous les fichiers"},
    TTextRecord{DlgSelectDirectory, u"Select folder", u"Verzeichnis wählen", u"Choisir un dossier"},

    // General buttons
    TTextRecord{BtnOk, u"OK", u"OK", u"OK"},
    TTextRecord{BtnCancel, u"Cancel", u"Abbrechen", u"Annuler"},
    TTextRecord{BtnYes, u"&Yes", u"&Ja", u"&Oui"},
    TTextRecord{BtnNo, u"&No", u"&Nein", u"&Non"},
    TTextRecord{BtnHelp, u"&Help", u"&Hilfe", u"&Aide"},
    TTextRecord{BtnClose, u"&Close", u"&Schließen", u"&Fermer"},
    TTextRecord{BtnIgnore, u"&Ignore", u"&Ignorieren", u"&Ignorer"},
    TTextRecord{BtnRetry, u"&Retry", u"&Wiederholen", u"&Renouveler"},
    TTextRecord{BtnAbort, u"&Abort", u"&Abbrechen", u"&Abandonner"},
    TTextRecord{BtnAll, u"&All", u"&Alle", u"&Tous"},
    TTextRecord{BtnNoToAll, u"N&o to All", u"Alle N&ein", u"Non à t&out"},
    TTextRecord{BtnYesToAll, u"Yes to &All", u"Alle J&a", u"Oui à &tout"},

    // Buttons and titles of the message dialog
    TTextRecord{MsgBtnOk, u"OK", u"OK", u"OK"},
    TTextRecord{MsgBtnCancel, u"Cancel", u"Abbrechen", u"Annuler"},
    TTextRecord{MsgBtnYes, u"&Yes", u"&Ja", u"&Oui"},
    TTextRecord{MsgBtnNo, u"&No", u"&Nein", u"&Non"},
    TTextRecord{MsgBtnHelp, u"&Help", u"&Hilfe", u"&Aide"},
    TTextRecord{MsgBtnClose, u"&Close", u"&Schließen", u"&Fermer"},
    TTextRecord{MsgBtnIgnore, u"&Ignore", u"&Ignorieren", u"&Ignorer"},
    // English and German are swapped here on purpose; it is kept as it stands.
    TTextRecord{MsgBtnRetry, u"&Wiederholen", u"&Retry", u"&Renouveler"},
    TTextRecord{MsgBtnAbort, u"&Abort", u"&Abbrechen", u"&Abandonner"},
    TTextRecord{MsgBtnAll, u"&All", u"&Alle", u"&Tous"},
    TTextRecord{MsgBtnNoToAll, u"N&o to All", u"Alle N&ein", u"Non à t&out"},
    TTextRecord{MsgBtnYesToAll, u"Yes to &All", u"Alle J&a", u"Oui à &tout"},
    TTextRecord{MsgTitleWarning, u"Warning", u"Warnung", u"Avertissement"},
    TTextRecord{MsgTitleError, u"Error", u"Fehler", u"Erreur"},
    TTextRecord{MsgTitleInformation, u"Information", u"Information", u"Information"},
    TTextRecord{MsgTitleConfirm, u"Confirm", u"Bestätigen", u"Confirmation"},

    // Main window: menus, commands, hints, status line
    TTextRecord{MenuFile, u"File", u"Datei", u"Fichier"},
    TTextRecord{MenuFileOpen, u"Open..", u"Öffnen..", u"Ouvrir.."},
    TTextRecord{HintFileOpen, u"Open file", u"Datei öffnen", u"Ouvrir un fichier"},
    TTextRecord{MenuFileOpenAgain, u"Open again", u"Erneut öffnen", u"Rouvrir"},
    TTextRecord{MenuFileSave, u"Save", u"Speichern", u"Enregistrer"},
    TTextRecord{HintFileSave, u"Save file", u"Datei speichern", u"Enregistrer le fichier"},
    TTextRecord{MenuFileSaveAs, u"Save time window as..", u"Zeitfenster speichern unter..",
                u"Enregistrer la fenêtre de temps sous.."},
    TTextRecord{MenuFileTemplateUse, u"Use template..", u"Vorlage anwenden..", u"Appliquer un modèle.."},
    TTextRecord{MenuFileTemplateSave, u"Save as template..", u"Als Vorlage speichern..",
                u"Enregistrer comme modèle.."},
    TTextRecord{MenuFileExportText, u"Export time window as text..", u"Zeitfenster als Text exportieren..",
                u"Exporter la fenêtre de temps en texte.."},
    TTextRecord{MenuFileExportMatlab, u"Export time window as MATLAB..", u"Zeitfenster als MATLAB exportieren..",
                u"Exporter la fenêtre de temps en MATLAB.."},
    TTextRecord{MenuFileExportHdf5, u"Export time window as HDF5..", u"Zeitfenster als HDF5 exportieren..",
                u"Exporter la fenêtre de temps en HDF5.."},
    TTextRecord{DlgHdf5File, u"HDF5 file", u"HDF5-Datei", u"Fichier HDF5"},
    TTextRecord{MenuFileExportBmp, u"Export graphic as bitmap..", u"Grafik als Bitmap exportieren..",
                u"Exporter le graphique en bitmap.."},
    TTextRecord{MenuFileExportJpg, u"Export graphic as JPEG..", u"Grafik als JPEG exportieren..",
                u"Exporter le graphique en JPEG.."},
    TTextRecord{MenuFileExportPng, u"Export graphic as PNG..", u"Grafik als PNG exportieren..",
                u"Exporter le graphique en PNG.."},
    TTextRecord{MenuFileExportPdf, u"Export graphic as PDF..", u"Grafik als PDF exportieren..",
                u"Exporter le graphique en PDF.."},
    TTextRecord{MenuFileExportSvg, u"Export graphic as SVG..", u"Grafik als SVG exportieren..",
                u"Exporter le graphique en SVG.."},
    TTextRecord{MenuFilePrintPreview, u"Print preview..", u"Druckvorschau..", u"Aperçu avant impression.."},
    TTextRecord{MenuFilePrint, u"Print", u"Drucken", u"Imprimer"},
    TTextRecord{HintFilePrint, u"Print graph", u"Grafik drucken", u"Imprimer le graphique"},
    TTextRecord{MenuFilePrintReport, u"Print report..", u"Bericht drucken..", u"Imprimer le rapport.."},
    TTextRecord{MenuFileExit, u"Exit", u"Beenden", u"Quitter"},
    TTextRecord{MenuBack, u"Back!", u"Zurück!", u"Retour !"},
    TTextRecord{MenuView, u"View", u"Ansicht", u"Affichage"},
    TTextRecord{MenuGraph, u"Graph", u"Grafik", u"Graphique"},
    TTextRecord{HintViewGraph, u"Show graph", u"Grafik anzeigen", u"Afficher le graphique"},
    TTextRecord{MenuTable, u"Table", u"Tabelle", u"Tableau"},
    TTextRecord{HintViewTable, u"Show table", u"Tabelle anzeigen", u"Afficher le tableau"},
    TTextRecord{MenuConfiguration, u"Configuration", u"Konfiguration", u"Configuration"},
    TTextRecord{HintViewCfg, u"Show configuration", u"Konfiguration anzeigen", u"Afficher la configuration"},
    TTextRecord{MenuGraphGridBottom, u"Gridline bottom", u"Gitterlinien unten", u"Quadrillage en bas"},
    TTextRecord{MenuGraphGridLeft, u"Gridline left", u"Gitterlinien links", u"Quadrillage à gauche"},
    TTextRecord{MenuGraphGridRight, u"Gridline right", u"Gitterlinien rechts", u"Quadrillage à droite"},
    TTextRecord{MenuGraphAxisBottom, u"Fixed axis bottom", u"Feste Achse unten", u"Axe fixe en bas"},
    TTextRecord{MenuGraphAxisLeft, u"Fixed axis left", u"Feste Achse links", u"Axe fixe à gauche"},
    TTextRecord{MenuGraphAxisRight, u"Fixed axis right", u"Feste Achse rechts", u"Axe fixe à droite"},
    TTextRecord{Crosshairs1, u"Crosshairs 1", u"Fadenkreuz 1", u"Réticule 1"},
    TTextRecord{Crosshairs2, u"Crosshairs 2", u"Fadenkreuz 2", u"Réticule 2"},
    TTextRecord{MenuGraphExtended, u"Extended..", u"Erweitert..", u"Avancé.."},
    TTextRecord{MenuGraphFunc, u"Functions", u"Funktionen", u"Fonctions"},
    TTextRecord{MenuGraphFuncIntegral, u"Numerical Integration..", u"Numerische Integration..",
                u"Intégration numérique.."},
    TTextRecord{MenuGraphFuncFlow, u"Calculation of Flow..", u"Berechnung des Durchflusses..",
                u"Calcul du débit.."},
    TTextRecord{MenuGraphFuncCalc, u"Show calculation", u"Berechnung anzeigen", u"Afficher le calcul"},
    TTextRecord{MenuGraphFuncLimit, u"Show limits", u"Grenzwerte anzeigen", u"Afficher les limites"},
    TTextRecord{MenuGraphFuncKessa, u"Additional FLOW channel..", u"Zusätzlicher FLOW-Kanal..",
                u"Canal FLOW supplémentaire.."},
    TTextRecord{Fft, u"FFT", u"FFT", u"FFT"},
    TTextRecord{MenuGraphCheckboxes, u"Detailed legend", u"Ausführliche Legende", u"Légende détaillée"},
    TTextRecord{Limits, u"Limits", u"Grenzwerte", u"Limites"},
    TTextRecord{MenuGraphNote, u"Notice", u"Notiz", u"Note"},
    TTextRecord{MenuGraphScale, u"Auto scale", u"Autoskalierung", u"Échelle automatique"},
    TTextRecord{Undo, u"Undo", u"Rückgängig", u"Annuler"},
    TTextRecord{MenuTableGotoTime, u"Go to time..", u"Gehe zu Zeit..", u"Aller au temps.."},
    TTextRecord{MenuTableGotoTMin, u"Go to beginning of graph", u"Gehe zum Anfang der Grafik",
                u"Aller au début du graphique"},
    TTextRecord{HintTableFirst, u"First row", u"Erste Zeile", u"Première ligne"},
    TTextRecord{HintTableReverseFast, u"One page back", u"Eine Seite zurück", u"Une page en arrière"},
    TTextRecord{HintTableReverse, u"One row back", u"Eine Zeile zurück", u"Une ligne en arrière"},
    TTextRecord{HintTableForward, u"One row forward", u"Eine Zeile vor", u"Une ligne en avant"},
    TTextRecord{HintTableForwardFast, u"One page forward", u"Eine Seite vor", u"Une page en avant"},
    TTextRecord{HintTableEnd, u"Last row", u"Letzte Zeile", u"Dernière ligne"},
    TTextRecord{TextModify, u"Change or move Text", u"Text ändern oder verschieben",
                u"Modifier ou déplacer le texte"},
    TTextRecord{TextInsert, u"Insert Text", u"Text einfügen", u"Insérer un texte"},
    TTextRecord{DataReduction, u"Data reduction", u"Datenreduktion", u"Réduction des données"},
    TTextRecord{StatusBlock, u"Block ", u"Block ", u"Bloc "},
    TTextRecord{
        StatusZoomHint,
        u"Zoom: Mark selection with left mouse button pressed, Move: with right mouse button pressed",
        u"Zoom: Bereich mit gedrückter linker Maustaste markieren, Verschieben: mit gedrückter rechter "
        u"Maustaste",
        u"Zoom : marquer la sélection avec le bouton gauche de la souris enfoncé, Déplacer : avec le "
        u"bouton droit enfoncé"},
    TTextRecord{StatusScrollX, u"X= ", u"X= ", u"X= "},
    // The window title without a file; %s is the product's short name.
    TTextRecord{MainCaption, u"%s Viewer", u"%s Viewer", u"%s Viewer"},

    // Crosshair read-outs
    TTextRecord{ReadX1, u"X1=", u"X1=", u"X1="},
    TTextRecord{ReadY1, u"Y1=", u"Y1=", u"Y1="},
    TTextRecord{ReadX2, u"X2=", u"X2=", u"X2="},
    TTextRecord{ReadY2, u"Y2=", u"Y2=", u"Y2="},
    TTextRecord{ReadDX, u"X2-X1=", u"X2-X1=", u"X2-X1="},
    TTextRecord{ReadDY, u"Y2-Y1=", u"Y2-Y1=", u"Y2-Y1="},

    // Chart and table view
    TTextRecord{ChartStartTime, u"Start time : ", u"Startzeit : ", u"Heure de début : "},
    TTextRecord{ColumnTime, u"Time", u"Zeit", u"Temps"},

    // Configuration page
    TTextRecord{CfgGeneral, u"General", u"Allgemein", u"Général"},
    TTextRecord{CfgCurves, u"Curves", u"Kurven", u"Courbes"},
    TTextRecord{CfgAxisBottom, u"Time axis", u"Zeitachse", u"Axe du temps"},
    TTextRecord{CfgAxisLeft, u"Left Y axis", u"Linke Y-Achse", u"Axe Y gauche"},
    TTextRecord{CfgAxisRight, u"Right Y axis", u"Rechte Y-Achse", u"Axe Y droit"},
    TTextRecord{CfgCursor, u"Cursor", u"Cursor", u"Curseur"},
    TTextRecord{CfgTitle, u"Title", u"Titel", u"Titre"},
    TTextRecord{CfgFooter, u"Footer", u"Fußzeile", u"Pied de page"},
    TTextRecord{CfgShowStartTime, u"Show start date and time", u"Startdatum und -zeit anzeigen",
                u"Afficher la date et l’heure de début"},
    TTextRecord{CfgShowZebName, u"Show ZEB name", u"ZEB-Name anzeigen", u"Afficher le nom du ZEB"},
    TTextRecord{CfgFontTitle, u"Title font", u"Schrift Titel", u"Police du titre"},
    TTextRecord{CfgFontLegend, u"Legend font", u"Schrift Legende", u"Police de la légende"},
    TTextRecord{CfgFontAxes, u"Axes font", u"Schrift Achsen", u"Police des axes"},
    TTextRecord{CfgFontText, u"Text font", u"Schrift Text", u"Police du texte"},
    TTextRecord{CfgFontStyles, u"\"standard\",\"bold\",\"italic\",\"bold+italic\"",
                u"\"Standard\",\"fett\",\"kursiv\",\"fett+kursiv\"",
                u"\"standard\",\"gras\",\"italique\",\"gras+italique\""},
    TTextRecord{CfgName, u"Name", u"Name", u"Nom"},
    TTextRecord{CfgAutomatic, u"Automatic", u"Automatisch", u"Automatique"},
    TTextRecord{CfgMinimum, u"Minimum", u"Minimum", u"Minimum"},
    TTextRecord{CfgMaximum, u"Maximum", u"Maximum", u"Maximum"},
    TTextRecord{CfgIncrement, u"Increment", u"Schrittweite", u"Pas"},
    TTextRecord{CfgAxisType, u"Axis type", u"Achsentyp", u"Type d’axe"},
    TTextRecord{
        CfgAxisTypes,
        u"\"Time axis with time in seconds beginning at 0\",\"Time axis in time format beginning at 0\","
        u"\"Time axis in date/time format\"",
        u"\"Zeitachse mit Zeit in Sekunden ab 0\",\"Zeitachse im Zeitformat ab 0\","
        u"\"Zeitachse im Datums-/Zeitformat\"",
        u"\"Axe du temps en secondes à partir de 0\",\"Axe du temps au format horaire à partir de 0\","
        u"\"Axe du temps au format date/heure\""},
    TTextRecord{CfgFormat, u"Format", u"Format", u"Format"},
    TTextRecord{CfgFormatRelative, u"Format (relative time)", u"Format (relative Zeit)",
                u"Format (temps relatif)"},
    TTextRecord{CfgFormatAbsolute, u"Format (date/time)", u"Format (Datum/Zeit)", u"Format (date/heure)"},
    TTextRecord{CfgFormatX, u"Format X", u"Format X", u"Format X"},
    TTextRecord{CfgFormatY, u"Format Y", u"Format Y", u"Format Y"},
    TTextRecord{CfgYAxis, u"Y axis", u"Y-Achse", u"Axe Y"},
    TTextRecord{CfgLineWidth, u"Line Width", u"Linienbreite", u"Épaisseur de ligne"},
    TTextRecord{CfgCursorAxes, u"\"left\",\"right\"", u"\"links\",\"rechts\"", u"\"gauche\",\"droite\""},
    TTextRecord{CfgCurveNumber, u"No.", u"Nr.", u"N°"},
    TTextRecord{CfgCurveSerial, u"Serial number", u"Seriennummer", u"Numéro de série"},
    TTextRecord{CfgCurveDescription, u"Description", u"Bezeichnung", u"Désignation"},
    TTextRecord{CfgCurveAxis, u"Axis", u"Achse", u"Axe"},
    TTextRecord{CfgCurveColor, u"Color", u"Farbe", u"Couleur"},
    TTextRecord{CfgCurveWidth, u"Width", u"Breite", u"Épaisseur"},
    TTextRecord{CfgCurveType, u"Type", u"Typ", u"Type"},
    TTextRecord{CfgCurveAxes, u"\"inactive\",\"left\",\"right\"", u"\"inaktiv\",\"links\",\"rechts\"",
                u"\"inactif\",\"gauche\",\"droite\""},
    TTextRecord{CfgCurveTypes, u"\"line\",\"line and points\"", u"\"Linie\",\"Linie und Punkte\"",
                u"\"ligne\",\"ligne et points\""},
    TTextRecord{CfgFonts, u"Fonts", u"Schriften", u"Polices"},
    TTextRecord{CfgFontName, u"Font", u"Schriftart", u"Police"},
    TTextRecord{CfgFontSize, u"Size", u"Größe", u"Taille"},
    TTextRecord{CfgFontStyle, u"Style", u"Stil", u"Style"},
    TTextRecord{CfgAxisBottomSeconds,
                u"Minimum, maximum and increment in seconds from the first measurement",
                u"Minimum, Maximum und Schrittweite in Sekunden ab dem ersten Messwert",
                u"Minimum, maximum et pas en secondes à partir de la première mesure"},
    TTextRecord{CfgPickTime, u"Choose date or time", u"Datum oder Zeit wählen",
                u"Choisir la date ou l’heure"},

    // Text notices
    TTextRecord{NoteDelete, u"Delete", u"Löschen", u"Supprimer"},
    TTextRecord{NoteInsertXY1, u"Insert X1, Y1", u"X1, Y1 einfügen", u"Insérer X1, Y1"},
    TTextRecord{NoteInsertXY2, u"Insert X2, Y2", u"X2, Y2 einfügen", u"Insérer X2, Y2"},
    TTextRecord{NoteInsertDiff, u"Insert X2-X1, Y2-Y1", u"X2-X1, Y2-Y1 einfügen", u"Insérer X2-X1, Y2-Y1"},
    TTextRecord{NoteModify, u"Change", u"Ändern", u"Modifier"},
    TTextRecord{NoteModifyTitle, u"modify notice", u"Notiz ändern", u"modifier la note"},
    TTextRecord{NoteNewTitle, u"New notice", u"Neue Notiz", u"Nouvelle note"},
    TTextRecord{NoteNewBox, u"New text box..", u"Neues Textfeld..", u"Nouvelle zone de texte.."},

    // Print preview
    TTextRecord{PrintProportional, u"&proportional", u"&proportional", u"&proportionnel"},
    TTextRecord{PrintOrientation, u"&Orientation", u"&Ausrichtung", u"&Orientation"},
    TTextRecord{PrintOrientations, u"\"Portrait\",\"Landscape\"", u"\"Hochformat\",\"Querformat\"",
                u"\"Portrait\",\"Paysage\""},
    TTextRecord{PrintMargins, u"&Margins (in %)", u"&Ränder (in %)", u"&Marges (en %)"},
    TTextRecord{PrintMarginLeft, u"Left", u"Links", u"Gauche"},
    TTextRecord{PrintMarginRight, u"Right", u"Rechts", u"Droite"},
    TTextRecord{PrintMarginTop, u"Top", u"Oben", u"Haut"},
    TTextRecord{PrintMarginBottom, u"Bottom", u"Unten", u"Bas"},
    TTextRecord{PrintPrinter, u"Printer", u"Drucker", u"Imprimante"},
    TTextRecord{PrintProperties, u"&Properties", u"&Eigenschaften", u"&Propriétés"},
    TTextRecord{PrintPrint, u"Pri&nt", u"&Drucken", u"&Imprimer"},
    TTextRecord{PrintBack, u"&Back", u"&Zurück", u"&Retour"},
    TTextRecord{PrintToPdf, u"PDF file", u"PDF-Datei", u"Fichier PDF"},

    // Chart editor
    TTextRecord{EdTitles, u"Titles", u"Titel", u"Titres"},
    TTextRecord{EdAxes, u"Axes", u"Achsen", u"Axes"},
    TTextRecord{EdLegend, u"Legend", u"Legende", u"Légende"},
    TTextRecord{EdBackground, u"Background", u"Hintergrund", u"Arrière-plan"},
    TTextRecord{EdVisible, u"Visible", u"Sichtbar", u"Visible"},
    TTextRecord{EdGrid, u"Grid lines", u"Gitterlinien", u"Quadrillage"},
    TTextRecord{EdGridColor, u"Grid colour", u"Gitterfarbe", u"Couleur du quadrillage"},
    TTextRecord{EdGridStyle, u"Grid line style", u"Linienart des Gitters", u"Style du quadrillage"},
    TTextRecord{EdGridWidth, u"Grid line width", u"Linienbreite des Gitters", u"Épaisseur du quadrillage"},
    TTextRecord{EdLineStyle, u"Line style", u"Linienart", u"Style de ligne"},
    TTextRecord{EdLineStyles, u"\"solid\",\"dashed\",\"dotted\",\"dash-dotted\"",
                u"\"durchgezogen\",\"gestrichelt\",\"gepunktet\",\"Strich-Punkt\"",
                u"\"continu\",\"tirets\",\"pointillé\",\"tiret-point\""},
    TTextRecord{EdPoints, u"Points", u"Punkte", u"Points"},
    TTextRecord{EdPosition, u"Position", u"Position", u"Position"},
    TTextRecord{EdPositions, u"\"right\",\"left\",\"top\",\"bottom\"", u"\"rechts\",\"links\",\"oben\",\"unten\"",
                u"\"à droite\",\"à gauche\",\"en haut\",\"en bas\""},
    TTextRecord{EdFrame, u"Frame", u"Rahmen", u"Cadre"},
    TTextRecord{EdChartBackground, u"Chart background", u"Diagrammhintergrund", u"Fond du graphique"},
    TTextRecord{EdPlotBackground, u"Plot background", u"Zeichenflächenhintergrund", u"Fond de la zone de tracé"},

    // Integration and flow dialog
    TTextRecord{CalcDlgIntegration, u"Numerical integration", u"Numerische Integration",
                u"Intégration numérique"},
    TTextRecord{CalcDlgFlow, u"Calculation of flow", u"Berechnung des Durchflusses", u"Calcul du débit"},
    TTextRecord{CalcDlgBegin, u"Begin", u"Beginn", u"Début"},
    TTextRecord{CalcDlgEnd, u"End", u"Ende", u"Fin"},
    TTextRecord{CalcDlgSelectCurve, u"Select curve:", u"Auswahl der Kurve:", u"Choix de la courbe :"},
    TTextRecord{CalcDlgCompute, u"Calculate", u"Berechnen", u"Calculer"},
    TTextRecord{CalcDlgClose, u"Close", u"Ende", u"Fermer"},
    TTextRecord{CalcDlgResult, u"Result:", u"Ergebnis:", u"Résultat :"},
    TTextRecord{CalcDlgFromAxis, u"Time axis X", u"Zeitachse X", u"Axe du temps X"},
    TTextRecord{CalcDlgFromCursor, u"Crosshairs", u"Fadenkreuz", u"Réticule"},

    // Calculation and limit views ("STDEF=" is spelled so on purpose)
    TTextRecord{ViewCalcCaption, u"Calculation", u"Berechnung", u"Calcul"},
    TTextRecord{ViewColumnCurve, u"Curve", u"Kurve", u"Courbe"},
    TTextRecord{ViewColumnParameter, u"Parameter", u"Parameter", u"Paramètre"},
    TTextRecord{ViewColumnValue, u"Value", u"Wert", u"Valeur"},
    TTextRecord{ViewMinimum, u"Minimum=", u"Minimum=", u"Minimum="},
    TTextRecord{ViewMaximum, u"Maximum=", u"Maximum=", u"Maximum="},
    TTextRecord{ViewAverage, u"Average=", u"Mittelwert=", u"Moyenne="},
    TTextRecord{ViewStdDev, u"STDEF=", u"STDEF=", u"STDEF="},
    TTextRecord{ViewOutOfLimits, u"Out of limits time=", u"Zeit außerhalb der Grenzwerte=",
                u"Temps hors limites="},
    TTextRecord{ViewWithinLimits, u"Within limits time=", u"Zeit innerhalb der Grenzwerte=",
                u"Temps dans les limites="},
    TTextRecord{ViewClipboard, u"Clipboard", u"Zwischenablage", u"Presse-papiers"},

    // FFT view ("Frequenz in Hz" is shown in German in every language)
    TTextRecord{FftReset, u"Reset", u"Zurücksetzen", u"Réinitialiser"},
    TTextRecord{FftWindowToBand, u"Window = Band", u"Fenster = Band", u"Fenêtre = Bande"},
    TTextRecord{FftBandToWindow, u"Band = Window", u"Band = Fenster", u"Bande = Fenêtre"},
    TTextRecord{FftEditor, u"Editor", u"Editor", u"Éditeur"},
    TTextRecord{FftInput, u"Input", u"Eingang", u"Entrée"},
    TTextRecord{FftTimeAxis, u"t in s", u"t in s", u"t en s"},
    TTextRecord{FftFrequencyAxis, u"Frequenz in Hz", u"Frequenz in Hz", u"Frequenz in Hz"},
    TTextRecord{FftBandStart, u"X1= ", u"X1= ", u"X1= "},
    TTextRecord{FftBandEnd, u"X2= ", u"X2= ", u"X2= "},
    TTextRecord{FftBandPoints, u"D = ", u"D = ", u"D = "},
    TTextRecord{FftWeighting, u"Weighting window", u"Fensterfunktion", u"Fenêtre de pondération"},
    TTextRecord{FftWindowNames,
                u"\"Rectangle\",\"Triangle\",\"cos²\",\"Gauss\",\"Hamming\",\"Blackman\",\"Blackman-Harris\","
                u"\"Blackman-Nuttall\",\"Tukey\"",
                u"\"Rechteck\",\"Dreieck\",\"cos²\",\"Gauß\",\"Hamming\",\"Blackman\",\"Blackman-Harris\","
                u"\"Blackman-Nuttall\",\"Tukey\"",
                u"\"Rectangle\",\"Triangle\",\"cos²\",\"Gauss\",\"Hamming\",\"Blackman\",\"Blackman-Harris\","
                u"\"Blackman-Nuttall\",\"Tukey\""},
    TTextRecord{FftLogarithmic, u"Logarithmic", u"Logarithmisch", u"Logarithmique"},
    TTextRecord{FftPeak, u"Strongest line", u"Stärkste Linie", u"Raie la plus forte"},
    TTextRecord{FftPeakText, u"Strongest line: %s Hz", u"Stärkste Linie: %s Hz", u"Raie la plus forte : %s Hz"},
    TTextRecord{ChartPropsCaption, u"Chart properties", u"Diagrammeigenschaften", u"Propriétés du graphique"},
    TTextRecord{ChartPropsXAxis, u"X axis", u"X-Achse", u"Axe X"},
    TTextRecord{ChartPropsYAxis, u"Y axis", u"Y-Achse", u"Axe Y"},

    // Additional flow channel
    TTextRecord{KessaCaption, u"Additional FLOW channel", u"zusätzlicher FLOW-Kanal",
                u"Canal FLOW supplémentaire"},
    TTextRecord{KessaActive, u"active", u"aktiv", u"actif"},
    TTextRecord{KessaUnit, u"Unit", u"Einheit", u"Unité"},
    TTextRecord{KessaFactor, u"Multiplier", u"Multiplikator", u"Multiplicateur"},
    TTextRecord{KessaOffset, u"Offset", u"Offset", u"Décalage"},
    TTextRecord{KessaSelectCurve, u"Please select the reference curve:", u"Bitte Referenzkurve wählen:",
                u"Veuillez choisir la courbe de référence :"},

    // Go-to-time and date/time input
    TTextRecord{GoToCaption, u"Go to time", u"Gehe zu Zeit", u"Aller au temps"},
    TTextRecord{GoToLabel, u"Time in seconds:", u"Zeit in Sekunden:", u"Temps en secondes :"},
    TTextRecord{DateTimeOk, u"&OK", u"&OK", u"&OK"},
    TTextRecord{DateTimeCancel, u"&Cancel", u"Ab&bruch", u"&Annuler"},
    // Times, the same in every language.
    TTextRecord{DateTimeIntervals,
                u"00:00:30,00:01:00,00:05:00,00:10:00,00:30:00,01:00:00,02:00:00,12:00:00,24:00:00",
                u"00:00:30,00:01:00,00:05:00,00:10:00,00:30:00,01:00:00,02:00:00,12:00:00,24:00:00",
                u"00:00:30,00:01:00,00:05:00,00:10:00,00:30:00,01:00:00,02:00:00,12:00:00,24:00:00"},

    // Report
    TTextRecord{ReportTitle, u"Measurement report", u"Messbericht", u"Rapport de mesure"},
    TTextRecord{ReportCompany, u"Company", u"Firma", u"Société"},
    TTextRecord{ReportFile, u"File", u"Datei", u"Fichier"},
    TTextRecord{ReportCreator, u"Created by", u"Erstellt von", u"Créé par"},
    TTextRecord{ReportZebName, u"ZEB name", u"ZEB-Name", u"Nom du ZEB"},
    TTextRecord{ReportLoggers, u"Loggers", u"Logger", u"Enregistreurs"},
    TTextRecord{ReportStartTime, u"Start of recording", u"Beginn der Aufzeichnung", u"Début de l’enregistrement"},
    TTextRecord{ReportTimeRange, u"Time range of the report", u"Zeitbereich des Berichts",
                u"Plage de temps du rapport"},
    TTextRecord{ReportPrinted, u"Printed on", u"Gedruckt am", u"Imprimé le"},
    TTextRecord{ReportChannels, u"Channels", u"Kanäle", u"Canaux"},
    TTextRecord{ReportNotices, u"Notices", u"Notizen", u"Notes"},
    TTextRecord{ReportNoticeText, u"Notice", u"Notiz", u"Note"},
    TTextRecord{ReportMinimum, u"Minimum", u"Minimum", u"Minimum"},
    TTextRecord{ReportMaximum, u"Maximum", u"Maximum", u"Maximum"},
    TTextRecord{ReportAverage, u"Average", u"Mittelwert", u"Moyenne"},
    TTextRecord{ReportStdDev, u"Standard deviation", u"Standardabweichung", u"Écart type"},
    TTextRecord{ReportSpan, u"Span", u"Spannweite", u"Étendue"},
    TTextRecord{ReportMkt, u"Mean kinetic temperature (ΔH = %s kJ/mol)",
                u"Mittlere kinetische Temperatur (ΔH = %s kJ/mol)",
                u"Température cinétique moyenne (ΔH = %s kJ/mol)"},
    TTextRecord{ReportLimitMode, u"Limits", u"Grenzwerte", u"Limites"},
    TTextRecord{ReportLimitModes,
                u"\"none\",\"alarm below L1 = %s\",\"alarm above L1 = %s\",\"alarm between L1 = %s and L2 = %s\","
                u"\"alarm below L1 = %s or above L2 = %s\"",
                u"\"keine\",\"Alarm unter L1 = %s\",\"Alarm über L1 = %s\",\"Alarm zwischen L1 = %s und L2 = %s\","
                u"\"Alarm unter L1 = %s oder über L2 = %s\"",
                u"\"aucune\",\"alarme sous L1 = %s\",\"alarme au-dessus de L1 = %s\","
                u"\"alarme entre L1 = %s et L2 = %s\",\"alarme sous L1 = %s ou au-dessus de L2 = %s\""},
    TTextRecord{ReportOutOfLimits, u"Out of limits time", u"Zeit außerhalb der Grenzwerte", u"Temps hors limites"},
    TTextRecord{ReportWithinLimits, u"Within limits time", u"Zeit innerhalb der Grenzwerte",
                u"Temps dans les limites"},
    TTextRecord{ReportViolations, u"Limit violations (time of the first)",
                u"Grenzwertverletzungen (Zeit der ersten)", u"Dépassements de limite (heure du premier)"},
    TTextRecord{ReportNoValues, u"No measured values in the time range", u"Keine Messwerte im Zeitbereich",
                u"Aucune valeur mesurée dans la plage de temps"},
    TTextRecord{ReportPage, u"Page %s of %s", u"Seite %s von %s", u"Page %s sur %s"},
    TTextRecord{ReportCheckedBy, u"Checked by", u"Geprüft von", u"Vérifié par"},
    TTextRecord{ReportDate, u"Date", u"Datum", u"Date"},
    TTextRecord{ReportSavePdf, u"Save as &PDF..", u"Als &PDF speichern..", u"Enregistrer en &PDF.."},
    TTextRecord{ReportZoomIn, u"Zoom in", u"Vergrößern", u"Zoom avant"},
    TTextRecord{ReportZoomOut, u"Zoom out", u"Verkleinern", u"Zoom arrière"},
    TTextRecord{ReportPdfFilter, u"PDF document", u"PDF-Dokument", u"Document PDF"},
    TTextRecord{ReportCannotWrite, u"Cannot write report [%s] !", u"Kann Bericht [%s] nicht schreiben !",
                u"Impossible d’écrire le rapport [%s] !"},
    TTextRecord{ReportDuration, u"%s d %s", u"%s T %s", u"%s j %s"},
    TTextRecord{ReportValues, u"Values (sampling interval)", u"Werte (Abtastintervall)",
                u"Valeurs (intervalle d’échantillonnage)"},
    TTextRecord{ReportInterval, u"every %s", u"alle %s", u"toutes les %s"},
    TTextRecord{ReportInfinite, u"Infinite values: %s, left out of minimum, maximum, average, standard deviation and "
                                u"mean kinetic temperature",
                u"Unendliche Werte: %s, nicht in Minimum, Maximum, Mittelwert, Standardabweichung und mittlerer "
                u"kinetischer Temperatur enthalten",
                u"Valeurs infinies : %s, exclues du minimum, du maximum, de la moyenne, de l’écart type et de la "
                u"température cinétique moyenne"},
    TTextRecord{ReportNoticeNumber, u"No.", u"Nr.", u"N°"},
    TTextRecord{ReportActivationEnergy, u"Activation energy for the mean kinetic temperature:",
                u"Aktivierungsenergie für die mittlere kinetische Temperatur:",
                u"Énergie d’activation pour la température cinétique moyenne :"},
    TTextRecord{DlgPngPicture, u"PNG picture", u"PNG-Bild", u"Image PNG"},
    TTextRecord{DlgSvgDrawing, u"SVG drawing", u"SVG-Zeichnung", u"Dessin SVG"},

    // Summary of recordings
    TTextRecord{MenuFileSummary, u"Summary of recordings..", u"Übersicht der Aufzeichnungen..",
                u"Synthèse des enregistrements.."},
    TTextRecord{SumCaption, u"Summary of recordings", u"Übersicht der Aufzeichnungen", u"Synthèse des enregistrements"},
    TTextRecord{SumReading, u"Reading recordings", u"Aufzeichnungen werden gelesen", u"Lecture des enregistrements"},
    TTextRecord{SumProgress, u"%s of %s: %s", u"%s von %s: %s", u"%s sur %s : %s"},
    TTextRecord{SumColumns,
                u"\"File\",\"Status\",\"Logger\",\"Curve\",\"Unit\",\"First time\",\"Last time\",\"Values\",\"Minimum\","
                u"\"Time of minimum\",\"Maximum\",\"Time of maximum\",\"Average\",\"Mean kinetic temperature\","
                u"\"Out of limits\",\"Violations\",\"First violation\",\"Verdict\"",
                u"\"Datei\",\"Status\",\"Logger\",\"Kurve\",\"Einheit\",\"Erste Zeit\",\"Letzte Zeit\",\"Werte\",\"Minimum\","
                u"\"Zeit des Minimums\",\"Maximum\",\"Zeit des Maximums\",\"Mittelwert\",\"Mittlere kinetische Temperatur\","
                u"\"Außerhalb der Grenzwerte\",\"Verletzungen\",\"Erste Verletzung\",\"Ergebnis\"",
                u"\"Fichier\",\"État\",\"Enregistreur\",\"Courbe\",\"Unité\",\"Première heure\",\"Dernière heure\","
                u"\"Valeurs\",\"Minimum\",\"Heure du minimum\",\"Maximum\",\"Heure du maximum\",\"Moyenne\","
                u"\"Température cinétique moyenne\",\"Hors limites\",\"Dépassements\",\"Premier dépassement\",\"Verdict\""},
    TTextRecord{SumStatuses, u"\"complete\",\"truncated\",\"damaged\",\"unreadable\"",
                u"\"vollständig\",\"abgeschnitten\",\"beschädigt\",\"nicht lesbar\"",
                u"\"complet\",\"tronqué\",\"endommagé\",\"illisible\""},
    TTextRecord{SumVerdicts, u"\"passed\",\"failed\",\"no limits\"",
                u"\"bestanden\",\"nicht bestanden\",\"keine Grenzwerte\"",
                u"\"conforme\",\"non conforme\",\"sans limites\""},
    TTextRecord{SumFailedOnly, u"&Failed curves only", u"Nur &nicht bestandene Kurven",
                u"Courbes &non conformes seulement"},
    TTextRecord{SumOwnTemplates, u"Templates: each recording's own", u"Vorlagen: die jeder Aufzeichnung",
                u"Modèles : celui de chaque enregistrement"},
    TTextRecord{SumOneTemplate, u"Template for all: %s", u"Vorlage für alle: %s", u"Modèle pour tous : %s"},
    TTextRecord{SumChooseTemplate, u"&One template for all..", u"&Eine Vorlage für alle..",
                u"&Un modèle pour tous.."},
    TTextRecord{SumExportPdf, u"Export as &PDF..", u"Als &PDF exportieren..", u"Exporter en &PDF.."},
    TTextRecord{SumExportCsv, u"Export as &CSV..", u"Als &CSV exportieren..", u"Exporter en &CSV.."},
    TTextRecord{SumCsvFilter, u"CSV table", u"CSV-Tabelle", u"Tableau CSV"},
    TTextRecord{SumCounts, u"%s recordings; curves: %s passed, %s failed, %s without limits",
                u"%s Aufzeichnungen; Kurven: %s bestanden, %s nicht bestanden, %s ohne Grenzwerte",
                u"%s enregistrements ; courbes : %s conformes, %s non conformes, %s sans limites"},
    TTextRecord{SumIncomplete, u"Not read completely: %s", u"Nicht vollständig gelesen: %s",
                u"Lus incomplètement : %s"},
    TTextRecord{SumPeriod, u"Period", u"Zeitraum", u"Période"},
    TTextRecord{SumResult, u"Result", u"Ergebnis", u"Résultat"},
    TTextRecord{SumFailedCurve, u"Failed: %s", u"Nicht bestanden: %s", u"Non conforme : %s"},
    TTextRecord{SumViolationColumns, u"\"No.\",\"Begins\",\"Ends\",\"Duration\",\"Values\"",
                u"\"Nr.\",\"Beginn\",\"Ende\",\"Dauer\",\"Werte\"",
                u"\"N°\",\"Début\",\"Fin\",\"Durée\",\"Valeurs\""},
    TTextRecord{SumMoreViolations, u"… and %s more", u"… und %s weitere", u"… et %s de plus"},
    TTextRecord{SumOpenHint, u"Double-click a row to open its recording.",
                u"Doppelklick auf eine Zeile öffnet ihre Aufzeichnung.",
                u"Double-cliquer sur une ligne ouvre son enregistrement."},
    TTextRecord{SumCannotWrite, u"Cannot write summary [%s] !", u"Kann Übersicht [%s] nicht schreiben !",
                u"Impossible d’écrire la synthèse [%s] !"},
    TTextRecord{SumLimits, u"Limits", u"Grenzwerte", u"Limites"},
    TTextRecord{SumNoRecordings, u"The folder [%s] holds no recordings.", u"Der Ordner [%s] enthält keine Aufzeichnungen.",
                u"Le dossier [%s] ne contient aucun enregistrement."},

    // Command-line picture export
    TTextRecord{CliUsage,
                u"Usage: zeb_viewer [FILE]\r\n"
                u"       zeb_viewer FILE --export-png|--export-jpg|--export-bmp|--export-pdf|--export-svg OUT "
                u"[--size WxH] "
                u"[--template T.mse] [--notices]\r\n"
                u"       zeb_viewer FILE --report OUT.pdf [--template T.mse] [--activation-energy KJ_PER_MOL]\r\n"
                u"       zeb_viewer --summary OUT.pdf|OUT.csv [--template T.mse] [--activation-energy KJ_PER_MOL] FILE...\r\n"
                u"       zeb_viewer --help | --version\r\n"
                u"Opens the recording FILE in the window; with an export, writes its chart or report without a "
                u"window;\r\n"
                u"--summary writes the summary of the recordings FILE... (1: not every one read completely).\r\n"
                u"--notices draws the notices on the picture; --activation-energy sets that of the mean kinetic\r\n"
                u"temperature (the settings' otherwise, 83.144 unless changed).\r\n"
                u"Exit codes: 0 done, 1 the recording or template cannot be loaded, 2 invalid argument,\r\n"
                u"3 the picture or report cannot be written",
                u"Aufruf: zeb_viewer [DATEI]\r\n"
                u"        zeb_viewer DATEI --export-png|--export-jpg|--export-bmp|--export-pdf|--export-svg "
                u"AUSGABE [--size BxH] "
                u"[--template V.mse] [--notices]\r\n"
                u"        zeb_viewer DATEI --report AUSGABE.pdf [--template V.mse] [--activation-energy KJ_PRO_MOL]\r\n"
                u"        zeb_viewer --summary AUSGABE.pdf|AUSGABE.csv [--template V.mse] [--activation-energy KJ_PRO_MOL] "
                u"DATEI...\r\n"
                u"        zeb_viewer --help | --version\r\n"
                u"Öffnet die Aufzeichnung DATEI im Fenster; mit einem Export schreibt es ihr Diagramm oder ihren "
                u"Bericht ohne Fenster;\r\n"
                u"--summary schreibt die Übersicht der Aufzeichnungen DATEI... (1: nicht jede vollständig gelesen).\r\n"
                u"--notices zeichnet die Notizen ins Bild; --activation-energy setzt die der mittleren kinetischen\r\n"
                u"Temperatur (sonst die der Einstellungen, 83,144, wenn nicht geändert).\r\n"
                u"Rückgabewerte: 0 erledigt, 1 Aufzeichnung oder Vorlage nicht ladbar, 2 ungültiges Argument,\r\n"
                u"3 Bild oder Bericht nicht schreibbar",
                u"Usage : zeb_viewer [FICHIER]\r\n"
                u"        zeb_viewer FICHIER --export-png|--export-jpg|--export-bmp|--export-pdf|--export-svg "
                u"SORTIE [--size LxH] "
                u"[--template M.mse] [--notices]\r\n"
                u"        zeb_viewer FICHIER --report SORTIE.pdf [--template M.mse] [--activation-energy KJ_PAR_MOL]\r\n"
                u"        zeb_viewer --summary SORTIE.pdf|SORTIE.csv [--template M.mse] [--activation-energy KJ_PAR_MOL] "
                u"FICHIER...\r\n"
                u"        zeb_viewer --help | --version\r\n"
                u"Ouvre l’enregistrement FICHIER dans la fenêtre ; avec un export, écrit son graphique ou son "
                u"rapport sans fenêtre ;\r\n"
                u"--summary écrit la synthèse des enregistrements FICHIER... (1 : pas tous lus entièrement).\r\n"
                u"--notices dessine les notes sur l’image ; --activation-energy fixe celle de la température\r\n"
                u"cinétique moyenne (sinon celle des paramètres, 83,144 sauf changement).\r\n"
                u"Codes de sortie : 0 terminé, 1 enregistrement ou modèle illisible, 2 argument invalide,\r\n"
                u"3 image ou rapport impossible à écrire"},
    TTextRecord{CliBadArgument, u"Invalid argument: %s", u"Ungültiges Argument: %s", u"Argument invalide : %s"},
    TTextRecord{CliCannotWritePicture, u"Cannot write picture [%s] !", u"Kann Bild [%s] nicht schreiben !",
                u"Impossible d’écrire l’image [%s] !"},

    // Companion programs: cutter, text converter, previewer
    TTextRecord{CmpCutterUsage,
                u"Usage: zeb_cutter \"SOURCE\" \"TARGET\" \"START\" \"END\" \"N\" \"LIST\" [\"csv\" | \"mat\" | \"h5\"]\r\n"
                u"Writes the values of the channels in LIST with START <= time <= END as a new recording TARGET.\r\n"
                u"  START, END  seconds since 1 January 2000, \".\" as the decimal point\r\n"
                u"  N           the number of channels in LIST\r\n"
                u"  LIST        channel numbers from 0, separated by commas, e.g. 0,2,3\r\n"
                u"  csv         TARGET becomes text, as zeb2csv writes it (zeb2csv --help)\r\n"
                u"  mat, h5     TARGET becomes a MATLAB or HDF5 file of the channels' points\r\n"
                u"Exit codes: 0 done, 1 invalid argument or unknown channel, 2 the source cannot be read,\r\n"
                u"3 the target is the source, 4 the target cannot be written, 5 the source is damaged\r\n"
                u"(what could be read up to the damage was written).",
                u"Aufruf: zeb_cutter \"QUELLE\" \"ZIEL\" \"START\" \"ENDE\" \"N\" \"LISTE\" [\"csv\" | \"mat\" | \"h5\"]\r\n"
                u"Schreibt die Messwerte der Kanäle in LISTE mit START <= Zeit <= ENDE als neue Aufzeichnung ZIEL.\r\n"
                u"  START, ENDE  Sekunden seit dem 1. Januar 2000, \".\" als Dezimalzeichen\r\n"
                u"  N            die Anzahl der Kanäle in LISTE\r\n"
                u"  LISTE        Kanalnummern ab 0, durch Kommas getrennt, z. B. 0,2,3\r\n"
                u"  csv          ZIEL wird Text, wie zeb2csv ihn schreibt (zeb2csv --help)\r\n"
                u"  mat, h5      ZIEL wird eine MATLAB- oder HDF5-Datei mit den Punkten der Kanäle\r\n"
                u"Rückgabewerte: 0 fertig, 1 ungültiges Argument oder unbekannter Kanal, 2 die Quelle kann nicht\r\n"
                u"gelesen werden, 3 das Ziel ist die Quelle, 4 das Ziel kann nicht geschrieben werden, 5 die Quelle\r\n"
                u"ist beschädigt (was bis zur Beschädigung lesbar war, wurde geschrieben).",
                u"Usage : zeb_cutter \"SOURCE\" \"CIBLE\" \"DÉBUT\" \"FIN\" \"N\" \"LISTE\" [\"csv\" | \"mat\" | \"h5\"]\r\n"
                u"Écrit les mesures des voies de LISTE avec DÉBUT <= temps <= FIN dans un nouvel enregistrement CIBLE.\r\n"
                u"  DÉBUT, FIN  secondes depuis le 1er janvier 2000, \".\" comme séparateur décimal\r\n"
                u"  N           le nombre de voies de LISTE\r\n"
                u"  LISTE       numéros de voie à partir de 0, séparés par des virgules, p. ex. 0,2,3\r\n"
                u"  csv         CIBLE devient un texte, tel que zeb2csv l’écrit (zeb2csv --help)\r\n"
                u"  mat, h5     CIBLE devient un fichier MATLAB ou HDF5 des points des canaux\r\n"
                u"Codes de sortie : 0 terminé, 1 argument invalide ou voie inconnue, 2 la source ne peut pas être lue,\r\n"
                u"3 la cible est la source, 4 la cible ne peut pas être écrite, 5 la source est endommagée\r\n"
                u"(ce qui était lisible jusqu’au dommage a été écrit)."},
    TTextRecord{CmpConverterUsage,
                u"Usage: zeb2csv \"SOURCE\" \"TARGET\"\r\n"
                u"Writes the recording SOURCE as text TARGET for a spreadsheet: a header line with the time and\r\n"
                u"each channel's name and unit, then one line for each distinct time stamp. The text is UTF-8\r\n"
                u"with a byte-order mark (so spreadsheets read it as UTF-8), lines end in CR LF, values that are\r\n"
                u"no number read NAN, INF or -INF. A TARGET without an extension gets the one of iFileExt.\r\n"
                u"Settings, section \"\\zeb2csv.exe\" of the program settings (any other value means 0):\r\n"
                u"  iListSeparator    0 automatic (\";\" where the decimal separator is \",\", else \",\"),\r\n"
                u"                    1 \";\", 2 \",\", 3 tab, 4 blank\r\n"
                u"  iDecimalSeparator 0 automatic (that of the system's locale), 1 \".\", 2 \",\"\r\n"
                u"  iNumberFormat     0 as many digits as the value needs, 1 to 9 that many decimals,\r\n"
                u"                    10 scientific (0.000000E+00)\r\n"
                u"  iNanFormat        text of a missing value: 0 empty, 1 NaN, 2 #N/A, 3 -\r\n"
                u"  iTimeColumn       0 date and time, 1 seconds from the first line, 2 both,\r\n"
                u"                    3 seconds since 1 January 2000\r\n"
                u"  iDateFormat       0 yyyy-MM-dd, 1 dd/MM/yyyy, 2 MM/dd/yyyy, 3 dd.MM.yyyy, 4 dd-MMM-yyyy,\r\n"
                u"                    5 yyyy-MMM-dd, 6 the pattern sDateFormat\r\n"
                u"  iTimeFormat       0 HH:mm:ss with milliseconds, 1 HH:mm:ss, 2 HH:mm, 3 the pattern sTimeFormat\r\n"
                u"  iFileExt          0 .csv, 1 .txt, 2 sFileExt\r\n"
                u"Pattern letters: yy or yyyy year, M or MM month, MMM or MMMM its name, d or dd day, ddd or dddd\r\n"
                u"the weekday's name, H or HH hour 0-23, h or hh hour 1-12 with AM/PM (else 0-23), m or mm minute,\r\n"
                u"s or ss second, zzz milliseconds, AM/PM, 'text' as it stands. In sDateFormat m also means the\r\n"
                u"month, in sTimeFormat n also means the minute (as other programs of the suite write them).\r\n"
                u"Memory: about 30 MB whatever the size of the recording. Records that are not in time order are\r\n"
                u"sorted through a temporary file beside TARGET, which needs room for the records once more\r\n"
                u"(12 bytes and 4 per channel each) while it runs.\r\n"
                u"Exit codes: 0 done, 1 invalid argument, 2 the source cannot be read, 3 the target is the source,\r\n"
                u"4 the target cannot be written, 5 the source is damaged (what could be read up to the damage\r\n"
                u"was written).",
                u"Aufruf: zeb2csv \"QUELLE\" \"ZIEL\"\r\n"
                u"Schreibt die Aufzeichnung QUELLE als Text ZIEL für eine Tabellenkalkulation: eine Kopfzeile mit\r\n"
                u"der Zeit und Name und Einheit jedes Kanals, dann eine Zeile für jeden Zeitstempel. Der Text ist\r\n"
                u"UTF-8 mit Byte-Order-Mark (so lesen Tabellenkalkulationen ihn als UTF-8), Zeilen enden mit CR LF,\r\n"
                u"Werte, die keine Zahl sind, lauten NAN, INF oder -INF. Ein ZIEL ohne Endung erhält die von iFileExt.\r\n"
                u"Einstellungen, Abschnitt \"\\zeb2csv.exe\" der Programmeinstellungen (jeder andere Wert gilt als 0):\r\n"
                u"  iListSeparator    0 automatisch (\";\", wo das Dezimalzeichen \",\" ist, sonst \",\"),\r\n"
                u"                    1 \";\", 2 \",\", 3 Tabulator, 4 Leerzeichen\r\n"
                u"  iDecimalSeparator 0 automatisch (das der Ländereinstellung), 1 \".\", 2 \",\"\r\n"
                u"  iNumberFormat     0 so viele Stellen, wie der Wert braucht, 1 bis 9 so viele Nachkommastellen,\r\n"
                u"                    10 wissenschaftlich (0.000000E+00)\r\n"
                u"  iNanFormat        Text eines fehlenden Werts: 0 leer, 1 NaN, 2 #N/A, 3 -\r\n"
                u"  iTimeColumn       0 Datum und Uhrzeit, 1 Sekunden ab der ersten Zeile, 2 beides,\r\n"
                u"                    3 Sekunden seit dem 1. Januar 2000\r\n"
                u"  iDateFormat       0 yyyy-MM-dd, 1 dd/MM/yyyy, 2 MM/dd/yyyy, 3 dd.MM.yyyy, 4 dd-MMM-yyyy,\r\n"
                u"                    5 yyyy-MMM-dd, 6 das Muster sDateFormat\r\n"
                u"  iTimeFormat       0 HH:mm:ss mit Millisekunden, 1 HH:mm:ss, 2 HH:mm, 3 das Muster sTimeFormat\r\n"
                u"  iFileExt          0 .csv, 1 .txt, 2 sFileExt\r\n"
                u"Musterzeichen: yy/yyyy Jahr, M/MM Monat, MMM/MMMM sein Name, d/dd Tag, ddd/dddd Name des Wochentags,\r\n"
                u"H/HH Stunde 0-23, h/hh Stunde 1-12 mit AM/PM (sonst 0-23), m/mm Minute, s/ss Sekunde,\r\n"
                u"zzz Millisekunden, AM/PM, 'Text' wie er steht. In sDateFormat bedeutet m auch den Monat, in\r\n"
                u"sTimeFormat n auch die Minute (wie andere Programme der Reihe sie schreiben).\r\n"
                u"Speicher: etwa 30 MB, wie groß die Aufzeichnung auch ist. Datensätze, die nicht in Zeitfolge stehen,\r\n"
                u"werden über eine temporäre Datei neben ZIEL sortiert, die währenddessen Platz für die Datensätze\r\n"
                u"noch einmal braucht (je 12 Bytes und 4 pro Kanal).\r\n"
                u"Rückgabewerte: 0 fertig, 1 ungültiges Argument, 2 die Quelle kann nicht gelesen werden, 3 das Ziel\r\n"
                u"ist die Quelle, 4 das Ziel kann nicht geschrieben werden, 5 die Quelle ist beschädigt (was bis zur\r\n"
                u"Beschädigung lesbar war, wurde geschrieben).",
                u"Usage : zeb2csv \"SOURCE\" \"CIBLE\"\r\n"
                u"Écrit l’enregistrement SOURCE en texte CIBLE pour un tableur : une ligne d’en-tête avec le temps\r\n"
                u"et le nom et l’unité de chaque voie, puis une ligne par horodatage distinct. Le texte est en UTF-8\r\n"
                u"avec une marque d’ordre des octets (les tableurs le lisent en UTF-8), lignes en CR LF, valeurs non\r\n"
                u"numériques : NAN, INF ou -INF. Une CIBLE sans extension reçoit celle de iFileExt.\r\n"
                u"Paramètres, section \"\\zeb2csv.exe\" des paramètres du programme (toute autre valeur vaut 0) :\r\n"
                u"  iListSeparator    0 automatique (\";\" si le séparateur décimal est \",\", sinon \",\"),\r\n"
                u"                    1 \";\", 2 \",\", 3 tabulation, 4 espace\r\n"
                u"  iDecimalSeparator 0 automatique (celui des paramètres régionaux), 1 \".\", 2 \",\"\r\n"
                u"  iNumberFormat     0 autant de chiffres que la valeur en demande, 1 à 9 autant de décimales,\r\n"
                u"                    10 scientifique (0.000000E+00)\r\n"
                u"  iNanFormat        texte d’une valeur manquante : 0 vide, 1 NaN, 2 #N/A, 3 -\r\n"
                u"  iTimeColumn       0 date et heure, 1 secondes depuis la première ligne, 2 les deux,\r\n"
                u"                    3 secondes depuis le 1er janvier 2000\r\n"
                u"  iDateFormat       0 yyyy-MM-dd, 1 dd/MM/yyyy, 2 MM/dd/yyyy, 3 dd.MM.yyyy, 4 dd-MMM-yyyy,\r\n"
                u"                    5 yyyy-MMM-dd, 6 le modèle sDateFormat\r\n"
                u"  iTimeFormat       0 HH:mm:ss avec millisecondes, 1 HH:mm:ss, 2 HH:mm, 3 le modèle sTimeFormat\r\n"
                u"  iFileExt          0 .csv, 1 .txt, 2 sFileExt\r\n"
                u"Lettres des modèles : yy/yyyy année, M/MM mois, MMM/MMMM son nom, d/dd jour, ddd/dddd nom du jour\r\n"
                u"de la semaine, H/HH heure 0-23, h/hh heure 1-12 avec AM/PM (sinon 0-23), m/mm minute, s/ss seconde,\r\n"
                u"zzz millisecondes, AM/PM, 'texte' tel quel. Dans sDateFormat, m désigne aussi le mois, dans\r\n"
                u"sTimeFormat, n aussi la minute (comme d’autres programmes de la suite les écrivent).\r\n"
                u"Mémoire : environ 30 Mo quelle que soit la taille de l’enregistrement. Les enregistrements hors de\r\n"
                u"l’ordre du temps sont triés par un fichier temporaire à côté de CIBLE, qui demande pendant ce temps\r\n"
                u"la place des enregistrements une fois de plus (12 octets et 4 par voie chacun).\r\n"
                u"Codes de sortie : 0 terminé, 1 argument invalide, 2 la source ne peut pas être lue, 3 la cible est\r\n"
                u"la source, 4 la cible ne peut pas être écrite, 5 la source est endommagée (ce qui était lisible\r\n"
                u"jusqu’au dommage a été écrit)."},
    TTextRecord{CmpBadArgument, u"Invalid argument \"%s\" (%s --help shows the call)",
                u"Ungültiges Argument \"%s\" (%s --help zeigt den Aufruf)",
                u"Argument invalide \"%s\" (%s --help montre l’appel)"},
    TTextRecord{CmpArgumentCount, u"Wrong number of arguments (%s --help shows the call)",
                u"Falsche Anzahl von Argumenten (%s --help zeigt den Aufruf)",
                u"Nombre d’arguments incorrect (%s --help montre l’appel)"},
    TTextRecord{CmpChannelCount, u"N is %s, but the list holds %s channels",
                u"N ist %s, die Liste enthält aber %s Kanäle", u"N vaut %s, mais la liste contient %s voies"},
    TTextRecord{CmpWindowReversed, u"The start %s lies after the end %s", u"Der Start %s liegt nach dem Ende %s",
                u"Le début %s est après la fin %s"},
    TTextRecord{CmpWindowEmpty, u"The time window holds no values of the chosen channels",
                u"Das Zeitfenster enthält keine Werte der gewählten Kanäle",
                u"La fenêtre de temps ne contient aucune valeur des voies choisies"},
    TTextRecord{CmpNoSuchChannel, u"The recording has no channel %s", u"Die Aufzeichnung hat keinen Kanal %s",
                u"L’enregistrement n’a pas de voie %s"},
    TTextRecord{CmpCannotRead, u"Cannot read \"%s\"", u"\"%s\" kann nicht gelesen werden",
                u"Impossible de lire \"%s\""},
    TTextRecord{CmpNotARecording, u"\"%s\" is not a recording", u"\"%s\" ist keine Aufzeichnung",
                u"\"%s\" n’est pas un enregistrement"},
    TTextRecord{CmpTargetIsSource, u"The target \"%s\" is the source itself", u"Das Ziel \"%s\" ist die Quelle selbst",
                u"La cible \"%s\" est la source elle-même"},
    TTextRecord{CmpCannotWrite, u"Cannot write \"%s\"", u"\"%s\" kann nicht geschrieben werden",
                u"Impossible d’écrire \"%s\""},
    TTextRecord{CmpKindMissing, u"This build cannot write [%s]: its library was missing when it was built.",
                u"Dieses Programm kann [%s] nicht schreiben: seine Bibliothek fehlte beim Erstellen.",
                u"Ce programme ne peut pas écrire [%s] : sa bibliothèque manquait à la compilation."},
    TTextRecord{CmpDamaged, u"\"%s\" is damaged: what could be read up to the damage was written to \"%s\"",
                u"\"%s\" ist beschädigt: was bis zur Beschädigung lesbar war, steht in \"%s\"",
                u"\"%s\" est endommagé : ce qui était lisible jusqu’au dommage a été écrit dans \"%s\""},
    TTextRecord{PrvCaption, u"ZEB Previewer", u"ZEB Previewer", u"ZEB Previewer"},
    TTextRecord{PrvReading, u"Reading %s ...", u"Lese %s ...", u"Lecture de %s ..."},
    TTextRecord{PrvInfo, u"%s channels, %s values, from %s to %s", u"%s Kanäle, %s Messwerte, von %s bis %s",
                u"%s voies, %s mesures, du %s au %s"},
    TTextRecord{PrvChannel, u"Channel", u"Kanal", u"Voie"},
    TTextRecord{PrvUnit, u"Unit", u"Einheit", u"Unité"},
    TTextRecord{PrvValues, u"Values", u"Messwerte", u"Mesures"},
    TTextRecord{PrvMinimum, u"Minimum", u"Minimum", u"Minimum"},
    TTextRecord{PrvMaximum, u"Maximum", u"Maximum", u"Maximum"},
    TTextRecord{PrvWindow, u"Time window: %s to %s", u"Zeitfenster: %s bis %s", u"Fenêtre de temps : %s à %s"},
    TTextRecord{PrvHint,
                u"Drag over the chart with the left mouse button to choose the time window; tick the channels to keep.",
                u"Mit gedrückter linker Maustaste über das Diagramm ziehen, um das Zeitfenster zu wählen; die "
                u"gewünschten Kanäle anhaken.",
                u"Faire glisser sur le graphique avec le bouton gauche pour choisir la fenêtre de temps ; cocher les "
                u"voies à garder."},
    TTextRecord{PrvWhole, u"Whole recording", u"Ganze Aufzeichnung", u"Tout l’enregistrement"},
    TTextRecord{PrvCutAndOpen, u"Cut and open", u"Zuschneiden und öffnen", u"Découper et ouvrir"},
    TTextRecord{PrvNoChannel, u"Tick at least one channel.", u"Bitte mindestens einen Kanal anhaken.",
                u"Cocher au moins une voie."},
    TTextRecord{PrvSaveAs, u"Save time window as", u"Zeitfenster speichern unter",
                u"Enregistrer la fenêtre de temps sous"},
    TTextRecord{PrvCutting, u"Cutting %s ...", u"Schneide %s zu ...", u"Découpage de %s ..."},
    TTextRecord{PrvOpened, u"\"%s\" written and opened in ZEB Viewer", u"\"%s\" geschrieben und in ZEB Viewer geöffnet",
                u"\"%s\" écrit et ouvert dans ZEB Viewer"},
    TTextRecord{PrvCutFailed, u"The cut failed: %s", u"Das Zuschneiden ist fehlgeschlagen: %s",
                u"Le découpage a échoué : %s"},
    TTextRecord{PrvMissingProgram, u"Program \"%s\" not found", u"Programm \"%s\" nicht gefunden",
                u"Programme \"%s\" introuvable"},
    TTextRecord{PrvDamaged, u"The file is damaged; the overview shows what could be read up to the damage.",
                u"Die Datei ist beschädigt; die Übersicht zeigt, was bis zur Beschädigung lesbar war.",
                u"Le fichier est endommagé ; l’aperçu montre ce qui était lisible jusqu’au dommage."},
    TTextRecord{PrvEmpty, u"The recording holds no measured values.", u"Die Aufzeichnung enthält keine Messwerte.",
                u"L’enregistrement ne contient aucune mesure."},

    // Help and version on the command line: the viewer, the previewer and zebtool
    TTextRecord{CliVersionCompanions, u"Companion programs in %s: %s", u"Begleitprogramme in %s: %s",
                u"Programmes compagnons dans %s : %s"},
    TTextRecord{CliVersionNoCompanions, u"No companion programs in %s", u"Keine Begleitprogramme in %s",
                u"Aucun programme compagnon dans %s"},
    TTextRecord{PrvUsage,
                u"Usage: zeb_previewer [FILE]\r\n"
                u"       zeb_previewer --help | --version\r\n"
                u"Shows an overview of the recording FILE, of any size; without FILE a file dialog asks for one.\r\n"
                u"A time window and channels of it are cut and opened in the viewer.\r\n"
                u"Exit codes: 0 done, 2 invalid argument",
                u"Aufruf: zeb_previewer [DATEI]\r\n"
                u"        zeb_previewer --help | --version\r\n"
                u"Zeigt eine Übersicht der Aufzeichnung DATEI jeder Größe; ohne DATEI fragt ein Dateidialog.\r\n"
                u"Ein Zeitfenster und Kanäle daraus werden ausgeschnitten und im Viewer geöffnet.\r\n"
                u"Rückgabewerte: 0 erledigt, 2 ungültiges Argument",
                u"Usage : zeb_previewer [FICHIER]\r\n"
                u"        zeb_previewer --help | --version\r\n"
                u"Montre un aperçu de l’enregistrement FICHIER, de toute taille ; sans FICHIER, un dialogue le "
                u"demande.\r\n"
                u"Une fenêtre de temps et des canaux en sont découpés et ouverts dans le visualiseur.\r\n"
                u"Codes de sortie : 0 terminé, 2 argument invalide"},
    TTextRecord{ToolUsage,
                u"Usage: zebtool gen [--seed N] [--channels N] [--records N | --values N] [--interval SEC]\r\n"
                u"                   [--start YYYY-MM-DD[THH:MM:SS]] [--missing RATE] [--gap-rate RATE] [--gaps]\r\n"
                u"                   [--odd-rate RATE] [--jitter SHARE] [--late N] [--no-limits] [--zeb-name TEXT] [--logger TEXT]\r\n"
                u"                   [--quiet] OUT.zeb\r\n"
                u"       zebtool blocks [--variant CODE] FILE\r\n"
                u"       zebtool dump [--answer N | --no-ask] [--variant CODE] FILE\r\n"
                u"       zebtool info [--answer N | --no-ask] [--variant CODE] FILE\r\n"
                u"       zebtool analyse [--from S] [--to S] [--answer N | --no-ask] [--variant CODE] FILE\r\n"
                u"       zebtool fft --curve I --from S --to S [--answer N | --no-ask] [--variant CODE] FILE\r\n"
                u"       zebtool summary [--from S] [--to S] [--template T.mse] [--variant CODE] FILE...\r\n"
                u"       zebtool --help | --version\r\n"
                u"gen writes a recording with made-up values; --odd-rate writes that share of them as NaN or an "
                u"infinity;\r\n"
                u"--jitter moves each time stamp at random by up to that share of the interval; --late writes N records,\r\n"
                u"spread over the recording, after the last one, so the file leaves time order.\r\n"
                u"blocks lists the blocks and where the walk ended; info gives a short summary.\r\n"
                u"dump writes everything the loader reads as JSON: a gap is null, a value that is no finite\r\n"
                u"number is NaN, Infinity or -Infinity as a string.\r\n"
                u"analyse writes each curve's statistics, limit times and integral over the points with\r\n"
                u"from <= time <= to as JSON (S: seconds since 1 January 2000; default all); a figure that\r\n"
                u"does not exist for the range is null.\r\n"
                u"fft writes the FFT view's spectrum of curve I (from 0) between from and to as JSON:\r\n"
                u"n, dt, first, last and lines of [hertz, magnitude]; n is 0 for six points or fewer.\r\n"
                u"summary writes the report's figures of every curve of every recording as a JSON array;\r\n"
                u"it exits with 1 when a recording could not be read completely.\r\n"
                u"Exit codes: 0 done (dump and info show a failed load as status), 1 the file cannot be read or "
                u"written, 2 invalid argument",
                u"Aufruf: zebtool gen [--seed N] [--channels N] [--records N | --values N] [--interval SEK]\r\n"
                u"                    [--start JJJJ-MM-TT[THH:MM:SS]] [--missing ANTEIL] [--gap-rate ANTEIL] "
                u"[--gaps]\r\n"
                u"                    [--odd-rate ANTEIL] [--jitter ANTEIL] [--late N] [--no-limits] [--zeb-name TEXT] [--logger TEXT]\r\n"
                u"                    [--quiet] AUSGABE.zeb\r\n"
                u"        zebtool blocks [--variant CODE] DATEI\r\n"
                u"        zebtool dump [--answer N | --no-ask] [--variant CODE] DATEI\r\n"
                u"        zebtool info [--answer N | --no-ask] [--variant CODE] DATEI\r\n"
                u"        zebtool analyse [--from S] [--to S] [--answer N | --no-ask] [--variant CODE] DATEI\r\n"
                u"        zebtool fft --curve I --from S --to S [--answer N | --no-ask] [--variant CODE] DATEI\r\n"
                u"        zebtool summary [--from S] [--to S] [--template V.mse] [--variant CODE] DATEI...\r\n"
                u"        zebtool --help | --version\r\n"
                u"gen schreibt eine Aufzeichnung mit erfundenen Werten; --odd-rate schreibt diesen Anteil davon als "
                u"NaN oder unendlich;\r\n"
                u"--jitter verschiebt jeden Zeitstempel zufällig um bis zu diesen Anteil des Intervalls; --late schreibt\r\n"
                u"N über die Aufzeichnung verteilte Datensätze nach dem letzten, so dass die Datei die Zeitfolge verlässt.\r\n"
                u"blocks listet die Blöcke und wo der Durchlauf endete; info gibt eine kurze Übersicht.\r\n"
                u"dump schreibt alles, was der Lader liest, als JSON: eine Lücke ist null, ein Wert, der keine\r\n"
                u"endliche Zahl ist, ist NaN, Infinity oder -Infinity als Zeichenkette.\r\n"
                u"analyse schreibt Statistik, Grenzwertzeiten und Integral jeder Kurve über die Punkte mit\r\n"
                u"from <= Zeit <= to als JSON (S: Sekunden seit 1. Januar 2000; sonst alle); eine Kennzahl, die\r\n"
                u"es für den Bereich nicht gibt, ist null.\r\n"
                u"fft schreibt das Spektrum der FFT-Ansicht von Kurve I (ab 0) zwischen from und to als JSON:\r\n"
                u"n, dt, first, last und lines aus [Hertz, Betrag]; n ist 0 bei sechs Punkten oder weniger.\r\n"
                u"summary schreibt die Kennzahlen des Berichts jeder Kurve jeder Aufzeichnung als JSON-Array;\r\n"
                u"es endet mit 1, wenn eine Aufzeichnung nicht vollständig gelesen werden konnte.\r\n"
                u"Rückgabewerte: 0 erledigt (dump und info zeigen ein misslungenes Laden als status), 1 Datei nicht "
                u"lesbar oder nicht schreibbar, 2 ungültiges Argument",
                u"Usage : zebtool gen [--seed N] [--channels N] [--records N | --values N] [--interval SEC]\r\n"
                u"                    [--start AAAA-MM-JJ[THH:MM:SS]] [--missing TAUX] [--gap-rate TAUX] [--gaps]\r\n"
                u"                    [--odd-rate TAUX] [--jitter PART] [--late N] [--no-limits] [--zeb-name TEXTE] [--logger TEXTE]\r\n"
                u"                    [--quiet] SORTIE.zeb\r\n"
                u"        zebtool blocks [--variant CODE] FICHIER\r\n"
                u"        zebtool dump [--answer N | --no-ask] [--variant CODE] FICHIER\r\n"
                u"        zebtool info [--answer N | --no-ask] [--variant CODE] FICHIER\r\n"
                u"        zebtool analyse [--from S] [--to S] [--answer N | --no-ask] [--variant CODE] FICHIER\r\n"
                u"        zebtool fft --curve I --from S --to S [--answer N | --no-ask] [--variant CODE] FICHIER\r\n"
                u"        zebtool summary [--from S] [--to S] [--template M.mse] [--variant CODE] FICHIER...\r\n"
                u"        zebtool --help | --version\r\n"
                u"gen écrit un enregistrement de valeurs inventées ; --odd-rate en écrit cette part en NaN ou "
                u"infini ;\r\n"
                u"--jitter décale chaque horodatage au hasard d’au plus cette part de l’intervalle ; --late écrit N\r\n"
                u"enregistrements répartis après le dernier, si bien que le fichier quitte l’ordre du temps.\r\n"
                u"blocks liste les blocs et où le parcours s’est arrêté ; info donne un court résumé.\r\n"
                u"dump écrit tout ce que lit le chargeur en JSON : une coupure est null, une valeur qui n’est\r\n"
                u"pas un nombre fini est NaN, Infinity ou -Infinity en chaîne.\r\n"
                u"analyse écrit les statistiques, temps hors limites et intégrale de chaque courbe sur les points\r\n"
                u"avec from <= temps <= to en JSON (S : secondes depuis le 1er janvier 2000 ; sinon tous) ; une\r\n"
                u"valeur qui n’existe pas pour la plage est null.\r\n"
                u"fft écrit le spectre de la vue FFT de la courbe I (depuis 0) entre from et to en JSON :\r\n"
                u"n, dt, first, last et lines de [hertz, amplitude] ; n vaut 0 pour six points ou moins.\r\n"
                u"summary écrit les valeurs du rapport de chaque courbe de chaque enregistrement en tableau JSON ;\r\n"
                u"il sort avec 1 quand un enregistrement n’a pas pu être lu entièrement.\r\n"
                u"Codes de sortie : 0 terminé (dump et info montrent un chargement raté dans status), 1 fichier "
                u"illisible ou impossible à écrire, 2 argument invalide"},
};

static_assert(kTable.size() == size_t(TTextId::Count), "one record per text identity");

consteval bool InIdentityOrder() {
    for (size_t i = 0; i < kTable.size(); ++i)
        if (size_t(kTable[i].Id) != i) return false;
    return true;
}
static_assert(InIdentityOrder(), "records must stand in the order of TTextId");

const char16_t* TextOf(const TTextRecord& r, int language) {
    switch (language) {
    case LangGerman:
        return r.German;
    case LangFrench:
        return r.French;
    default:
        return r.English;
    }
}

struct TCurrentTexts {
    int Language = LangGerman;
    std::array<QString, kTable.size()> Texts;
    TCurrentTexts() { Fill(LangGerman); }
    void Fill(int language) {
        Language = language;
        for (size_t i = 0; i < kTable.size(); ++i)
            Texts[i] = QString::fromUtf16(TextOf(kTable[i], language));
    }
};

// German until the switch: a text read before it reads in German.
TCurrentTexts& Current() {
    static TCurrentTexts current;
    return current;
}

size_t IndexOf(TTextId id) {
    const auto i = size_t(id);
    return i < kTable.size() ? i : 0;
}

} // namespace

std::span<const TTextRecord> TextTable() {
    return kTable;
}

QString Txt(TTextId id) {
    return Current().Texts[IndexOf(id)];
}

QString TxtIn(TTextId id, int language) {
    return QString::fromUtf16(TextOf(kTable[IndexOf(id)], language));
}

QStringList SplitQuotedList(const QString& text) {
    QStringList items;
    qsizetype i = 0;
    while (true) {
        const qsizetype open = text.indexOf(QLatin1Char('"'), i);
        if (open < 0) break;
        const qsizetype close = text.indexOf(QLatin1Char('"'), open + 1);
        if (close < 0) break;
        items << text.mid(open + 1, close - open - 1);
        i = close + 1;
    }
    return items;
}

QStringList TxtList(TTextId id) {
    return SplitQuotedList(Txt(id));
}

QString FormatText(const QString& text, std::initializer_list<QString> args) {
    QString out;
    out.reserve(text.size());
    auto arg = args.begin();
    const QLatin1String placeholder("%s");
    qsizetype i = 0;
    while (true) {
        const qsizetype at = text.indexOf(placeholder, i);
        if (at < 0 || arg == args.end()) break;
        out += QStringView(text).mid(i, at - i);
        out += *arg++;
        i = at + placeholder.size();
    }
    out += QStringView(text).mid(i);
    return out;
}

QString TxtFmt(TTextId id, std::initializer_list<QString> args) {
    return FormatText(Txt(id), args);
}

int CurrentLanguage() {
    return Current().Language;
}

void SwitchTexts(int language) {
    if (language != LangGerman && language != LangFrench) language = LangEnglish;
    Current().Fill(language);
}

} // namespace zeb
