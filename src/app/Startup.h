#pragma once
// The program's start-up and shutdown, and its command line.
//
//   zeb_viewer [FILE]
//   zeb_viewer FILE --export-png|--export-jpg|--export-bmp|--export-pdf|--export-svg OUT
//              [--size WxH] [--template T.mse] [--notices]
//   zeb_viewer FILE --report OUT.pdf [--template T.mse] [--activation-energy KJ_PER_MOL]
//   zeb_viewer --help | --version
//
// The export forms load the recording as an open would, apply its settings (and the template,
// when given), write the chart or the report without showing a window and exit: 0 on success,
// 1 when the recording or template cannot be loaded (the program's message on stderr), 2 for a
// wrong command line, 3 when the file cannot be written. Help and version go to stdout and
// exit with 0; they and a wrong command line need no display. Qt's own options (-platform,
// -style, ...) pass through to Qt.

#include <QSize>
#include <QString>
#include <QStringList>

#include <functional>

class TForm1;

namespace zeb {

struct TCommandLine {
    enum class TMode { Window, Export, Summary, Help, Version, Invalid };
    TMode Mode = TMode::Window;
    QStringList Files; // the plain arguments; a window opens exactly one
    QString Picture;   // export: the picture file
    QString Report;    // export: the report's PDF file
    QString Summary;   // summary: its PDF or CSV file, of every file given
    QString Format;    // export: "png", "jpg", "bmp", "pdf" or "svg"
    QSize Size{1200, 800};
    QString Template; // export: a display template applied after the recording's own settings
    bool Notices = false; // picture export: the notices drawn
    double ActivationEnergy = 0.0; // report, summary: kJ/mol for the mean kinetic temperature; 0: the settings' 
    QString Error;    // invalid: the offending argument
};

// args: the arguments after the program's name.
TCommandLine ParseCommandLine(const QStringList& args);

// What --version prints: the program's name and version, and the folder its companion programs
// are looked for in with those found there.
QString VersionText();

// The points of start-up and shutdown, in the order they are passed. The main window is given
// from FormsCreated on and until MainWindowDestroyed, where it is already gone (nullptr).
enum class TStartupStep {
    SettingsLoaded,     // settings root chosen, settings of "zeb_viewer.exe" read
    LanguageSwitched,   // before the application object exists
    ApplicationCreated, // with Qt's own translations
    FormsCreated,       // the main window and the long-lived dialogs
    AuditLogOpened,     // "Viewer;;Open" sent
    EventLoopStarted,   // window mode: the window is shown, the loop starts next
    MainWindowDestroyed,
    AuditLogClosed, // "Viewer;;Close" sent
};
using TStartupObserver = std::function<void(TStartupStep, TForm1*)>;

// The whole program: start-up, the window's event loop or the export, shutdown.
// The observer lets tests look at each step.
int RunViewer(int argc, char** argv, const TStartupObserver& observer = {});

} // namespace zeb
