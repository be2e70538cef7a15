// The text table, the language choice and the switch.

#include "config/Language.h"
#include "config/Texts.h"
#include "data/Formats.h"

#include <QCoreApplication>
#include <QTest>

using namespace zeb;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(zeb::TTextId)

namespace {

// One text in the language a switch should have chosen.
QString SaveSettingsIn(int language) {
    switch (language) {
    case LangGerman:
        return u"Sollen die aktuellen Einstellungen gespeichert werden ?"_s;
    case LangFrench:
        return u"Voulez-vous enregistrer les paramètres actuels ?"_s;
    default:
        return u"Do you want to save the current settings ?"_s;
    }
}

} // namespace

class TstTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Must stay first: it looks at the state before any switch.
    void germanBeforeTheSwitch() {
        QCOMPARE(CurrentLanguage(), int(LangGerman));
        QCOMPARE(Txt(TTextId::MsgFatalError),
                 QStringLiteral("Es ist ein schwerwiegender Fehler aufgetreten !"));
        QCOMPARE(Txt(TTextId::ColumnTime), QStringLiteral("Zeit"));
    }

    void everyRecordIsComplete() {
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
    void languagesAgreeOnStructure() {
        for (const TTextRecord& r : TextTable()) {
            const QString en = TxtIn(r.Id, LangEnglish);
            const QString what = QStringLiteral("record %1: ").arg(int(r.Id)) + en;
            for (int lang : {LangGerman, LangFrench}) {
                const QString other = TxtIn(r.Id, lang);
                QVERIFY2(other.count(QStringLiteral("%s")) == en.count(QStringLiteral("%s")),
                         qPrintable(what));
                QVERIFY2(other.count(QStringLiteral("\r\n")) == en.count(QStringLiteral("\r\n")),
                         qPrintable(what));
                QVERIFY2(other.count(QLatin1Char('\n')) == other.count(QStringLiteral("\r\n")),
                         qPrintable(what));
                QVERIFY2(SplitQuotedList(other).size() == SplitQuotedList(en).size(), qPrintable(what));
            }
        }
    }

    void selection_data() {
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

    void selection() {
        QFETCH(int, setting);
        QFETCH(QString, system);
        QFETCH(int, expected);
        SetSystemLocaleOverride(QLocale(system));
        QCOMPARE(SelectLanguage(setting), expected);
        QCOMPARE(ApplyStartupLanguage(setting, 0, 0), expected);
        QCOMPARE(CurrentLanguage(), expected);
        QCOMPARE(Txt(TTextId::MsgSaveSettings), SaveSettingsIn(expected));
    }

    void switchModesAndNoFrench_data() {
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

    void switchModesAndNoFrench() {
        QFETCH(int, requested);
        QFETCH(int, mode);
        QFETCH(bool, noFrench);
        QFETCH(int, expected);
        SetSystemLocaleOverride(QLocale(QLocale::French, QLocale::France));
        QCOMPARE(SwitchLanguage(requested, mode, noFrench), expected);
        QCOMPARE(CurrentLanguage(), expected);
        QCOMPARE(Txt(TTextId::MsgSaveSettings), SaveSettingsIn(expected));
    }

    void switchSetsUpFormats() {
        SetSystemLocaleOverride(QLocale(QLocale::English, QLocale::UnitedStates));
        SwitchLanguage(1, 0, false, 3, 1);
        QCOMPARE(FormatSettings().ShortDateFormat, QStringLiteral("dd.MM.yyyy"));
        QCOMPARE(FormatSettings().DecimalSeparator, QLatin1Char(','));
        SwitchLanguage(0, 2, false, 3, 1);
        QCOMPARE(FormatSettings().ShortDateFormat, QStringLiteral("dd-MMM-yyyy"));
        QCOMPARE(FormatSettings().DecimalSeparator, QLatin1Char('.'));
    }

    void quotedLists() {
        SwitchTexts(LangEnglish);
        QCOMPARE(TxtList(TTextId::CfgCurveAxes), (QStringList{u"inactive"_s, u"left"_s, u"right"_s}));
        SwitchTexts(LangGerman);
        QCOMPARE(TxtList(TTextId::CfgFontStyles).size(), 4);
        // Commas inside an item belong to it.
        QCOMPARE(SplitQuotedList(u"\"0, 0.0\",\"#.#\""_s), (QStringList{u"0, 0.0"_s, u"#.#"_s}));
        QCOMPARE(SplitQuotedList(u"\"\",\"a\""_s), (QStringList{QString(), u"a"_s}));
        QCOMPARE(SplitQuotedList(u"no list"_s), QStringList());
    }

    void formatText_data() {
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

    void formatText() {
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
    void qtTranslationsFollow() {
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

    void cleanup() { SetSystemLocaleOverride(std::nullopt); }
};

QTEST_GUILESS_MAIN(TstTexts)
#include "tst_texts.moc"
