#pragma once
// What the companion programs share on the command line: settings and language at start,
// their arguments, one-line messages, and where the suite's programs are.

#include "Cutter.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace companion {

#ifdef ZEB_PARTNER_EDITION
inline constexpr const char* kCutterName = "trk_cutter";
inline constexpr const char* kConverterName = "trk2csv";
#else
inline constexpr const char* kCutterName = "zeb_cutter";
inline constexpr const char* kConverterName = "zeb2csv";
#endif
inline constexpr const char* kPreviewerName = "zeb_previewer";
inline constexpr const char* kViewerName = "zeb_viewer";

// Loads the program's settings (its section is read under settingsName, e.g. "zeb2csv.exe")
// and switches every text to the user's language, as the viewer does at start.
void StartProgram(const QString& settingsName);

// A message on standard error, one line.
void PrintError(const QString& text);
// A text on standard output (the help).
void PrintOut(const QString& text);

// A time on the command line: seconds since 1 January 2000 with "." as the decimal point.
std::optional<double> ParseSeconds(const QString& text);
// A whole number 0..65535 without sign or blanks.
std::optional<int> ParseIndex(const QString& text);

struct TParsed {
    enum class TKind { Run, Help, Version, Bad } Kind = TKind::Bad;
    TCutRequest Request;
    QString Message; // for Bad: one line in the program's language
};

// zeb_cutter "SOURCE" "TARGET" "START" "END" "N" "LIST" ["csv"]
TParsed ParseCutterArgs(const QStringList& args);
// zeb2csv "SOURCE" "TARGET"
TParsed ParseConverterArgs(const QStringList& args);

// Runs a parsed command line: help, version or the cut; answers the exit code.
int Run(const TParsed& parsed, const char* program, const QString& usage);


} // namespace companion
