// The text table, the language choice and the switch.

#include "Formats.h"
#include "Language.h"
#include "Texts.h"

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
    void fixedTexts_data();
    void fixedTexts();
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

// Texts whose wording is fixed in every language, including the swapped Retry caption of the
// message dialog.
void TstTexts::fixedTexts_data() {
    QTest::addColumn<TTextId>("id");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("german");
    QTest::addColumn<QString>("french");
    QTest::newRow("cannot open") << TTextId::MsgCannotOpenFile << u"Cannot open file [%s] !"_s
                                 << u"Kann Datei [%s] nicht öffnen !"_s
                                 << u"Impossible d’ouvrir le fichier [%s] !"_s;
    QTest::newRow("cannot read") << TTextId::MsgFileCannotBeRead << u"File [%s] cannot be read!"_s
                                 << u"Datei [%s] kann nicht geöffnet werden !"_s
                                 << u"Impossible d’ouvrir le fichier [%s] !"_s;
    QTest::newRow("left axis") << TTextId::MsgActivateLeftAxis << u"First activate left Y axis, please!"_s
                               << u"Bitte zuerst die linke Y-Achse aktivieren !"_s
                               << u"Veuillez d'abord activer l'axe de coordonnées Y de gauche !"_s;
    QTest::newRow("too large") << TTextId::MsgFileTooLarge << u"File too large!"_s
                               << u"Achtung: Datei zu gross!"_s << u"Attention : Fichier trop volumineux !"_s;
    QTest::newRow("crosshair note")
        << TTextId::MsgCrosshairNote
        << u"Note: In some cases changes may only take effect once the crosshairs have been activated !"_s
        << u"Hinweis: Änderungen werden u.U. nur mit Aktivierung des Fadenkreuzes wirksam !"_s
        << u"NB : Ìl arrive que les modifications ne soient prises en compte qu’une fois le réticule activé !"_s;
    QTest::newRow("general retry") << TTextId::BtnRetry << u"&Retry"_s << u"&Wiederholen"_s
                                   << u"&Renouveler"_s;
    QTest::newRow("message retry") << TTextId::MsgBtnRetry << u"&Wiederholen"_s << u"&Retry"_s
                                   << u"&Renouveler"_s;
    QTest::newRow("no previewer") << TTextId::MsgNoPreviewer << u"Previewer nicht vorhanden!"_s
                                  << u"Previewer nicht vorhanden!"_s << u"Previewer nicht vorhanden!"_s;
    QTest::newRow("STDEF") << TTextId::ViewStdDev << u"STDEF="_s << u"STDEF="_s << u"STDEF="_s;
}

void TstTexts::fixedTexts() {
    QFETCH(TTextId, id);
    QFETCH(QString, english);
    QFETCH(QString, german);
    QFETCH(QString, french);
    QCOMPARE(TxtIn(id, LangEnglish), english);
    QCOMPARE(TxtIn(id, LangGerman), german);
    QCOMPARE(TxtIn(id, LangFrench), french);
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
    QCOMPARE(Txt(TTextId::MsgSaveSettings), TxtIn(TTextId::MsgSaveSettings, expected));
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
    QCOMPARE(Txt(TTextId::BtnCancel), TxtIn(TTextId::BtnCancel, expected));
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
