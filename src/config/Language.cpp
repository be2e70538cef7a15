#include "config/Language.h"

#include "config/Texts.h"
#include "data/Formats.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

namespace zeb {

int SelectLanguage(int languageSetting) {
    return LanguageIndex(languageSetting);
}

int SwitchLanguage(int requested, int mode, bool noFrench, int dateIndex, int decimalSeparatorChoice) {
    int language = mode == 2 ? int(LangEnglish) : SelectLanguage(requested);
    if (noFrench && language == LangFrench) language = LangEnglish;
    SwitchTexts(language);
    // The chart draws no texts of its own that would need switching; the formats follow.
    SetFormats(mode, dateIndex, decimalSeparatorChoice);
    return language;
}

int ApplyStartupLanguage(int languageSetting, int locDate, int locDecimalSeparator) {
    return SwitchLanguage(languageSetting, 0, false, locDate, locDecimalSeparator);
}

const char* QtLanguageName(int language) {
    switch (language) {
    case LangGerman:
        return "de";
    case LangFrench:
        return "fr";
    default:
        return "en";
    }
}

bool InstallQtTranslations() {
    static std::unique_ptr<QTranslator> installed;
    if (!QCoreApplication::instance()) return false;
    if (installed) {
        QCoreApplication::removeTranslator(installed.get());
        installed.reset();
    }
    if (CurrentLanguage() == LangEnglish) return true;

    auto translator = std::make_unique<QTranslator>();
    const QString name = QStringLiteral("qtbase_") + QLatin1String(QtLanguageName(CurrentLanguage()));
    // A deployed copy next to the program wins over the system's.
    const QStringList folders{QCoreApplication::applicationDirPath() + QStringLiteral("/translations"),
                              QLibraryInfo::path(QLibraryInfo::TranslationsPath)};
    for (const QString& folder : folders) {
        if (translator->load(name, folder)) {
            QCoreApplication::installTranslator(translator.get());
            installed = std::move(translator);
            return true;
        }
    }
    return false;
}

} // namespace zeb
