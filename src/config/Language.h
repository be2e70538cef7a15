#pragma once
// The user-interface language: chosen once at start, before any window exists, and never
// changed while the program runs.

namespace zeb {

// The language of a stored `Language` setting: 0, 1 or 2 as it is (German, English, French);
// anything else from the system's user language (German 0, French 2, everything else 1).
int SelectLanguage(int languageSetting);

// Switches every text record to one language and sets up the date, time and number formats.
// Mode 2 means English with the fixed international formats; any other mode takes the language
// from the requested value and passes the mode on to the format set-up (0 and 1 from the
// date-format index and decimal-separator choice of the settings, 3 and above from the system).
// With noFrench set, French becomes English. Returns the language chosen.
int SwitchLanguage(int requested, int mode, bool noFrench, int dateIndex = 0, int decimalSeparatorChoice = 0);

// The language step of start-up, given the stored `Language`, `LocDate` and
// `LocDecimalSeparator` settings: mode 0, French allowed. Returns the language chosen.
int ApplyStartupLanguage(int languageSetting, int locDate, int locDecimalSeparator);

// Installs Qt's own translations (standard buttons, file and colour dialogs) for the current
// language. Needs the application object, so start-up calls it right after creating it.
// Returns whether a translation was found; English needs none and answers true.
bool InstallQtTranslations();

// The locale name Qt's translation files use for a language: "de", "en" or "fr".
const char* QtLanguageName(int language);

} // namespace zeb
