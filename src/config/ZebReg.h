#pragma once
// Program settings shared with the suite's companion programs: the accessor over the user's
// registry branch, the settings root, and the settings record with its loader and saver.
//
// On Windows the settings live in the registry under HKEY_CURRENT_USER. Elsewhere (and on
// Windows when ZEB_SETTINGS_FILE is set) one INI-format file holds the same key tree; the
// environment variable ZEB_SETTINGS_FILE names that file, so tests and portable installations
// never touch the user's own settings.

#include <QSize>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <array>
#include <functional>
#include <memory>

class QSettings;

// Every path is relative to the settings root, in registry spelling: "\Prototype". A read never
// fails: a missing key, a missing value or a value of the wrong type gives the caller's default.
class TZEBRegistry {
public:
    TZEBRegistry();
    ~TZEBRegistry();
    TZEBRegistry(const TZEBRegistry&) = delete;
    TZEBRegistry& operator=(const TZEBRegistry&) = delete;

    // Opens root + sub-path read-only; false (and reads give defaults) when it does not exist.
    bool OpenKeyRead(const QString& subPath);
    // Opens root + sub-path for writing, creating it when absent.
    bool OpenKeyWrite(const QString& subPath);
    void CloseKey();

    bool ReadB(const QString& name, bool def) const;
    int ReadI(const QString& name, int def) const;
    QString ReadS(const QString& name, const QString& def) const;
    // A double stored as a string; non-numbers and infinities give the default.
    double ReadD(const QString& name, double def) const;

    // Write failures are ignored, as is writing into a key opened for reading.
    void WriteB(const QString& name, bool value);
    void WriteI(const QString& name, int value);
    void WriteS(const QString& name, const QString& value);
    void WriteD(const QString& name, double value);

    // Writes what was changed; false when it could not be written.
    bool Flush();

    bool KeyExists(const QString& subPath) const;
    bool ValueExists(const QString& name) const;
    // Sub-keys and value names of the open key; empty when none is open.
    void GetKeyNames(QStringList& list) const;
    void GetValueNames(QStringList& list) const;

    // The registry's own create-key call: the path is below HKEY_CURRENT_USER, not below the root.
    bool CreateKey(const QString& path);

    // The INI file of the key tree; empty when the native registry is used.
    static QString SettingsFileName();

private:
    QVariant RawValue(const QString& name) const;
    bool Exists(const QString& group) const;

    std::unique_ptr<QSettings> FSettings;
    bool FNative = false;
    bool FOpen = false;
    bool FWritable = false;
    QString FGroup; // the open key as a QSettings group
};

// ------------------------------------------------------------------ settings root

inline constexpr const char* kZebRootPath = "\\Software\\Velmorant\\ZEB";
inline constexpr const char* kZebValidatedRootPath = "\\Software\\Velmorant\\ZEB_VAL";
inline constexpr const char* kZebPrototypesPath = "\\Software\\Velmorant\\ZEB_Prototypes\\";
inline constexpr const char* kZebPrototypeFile = "zeb_reg.ini";

// The folder of the running program, where "zeb_reg.ini" is looked for; tests set another one.
// Without an application object it is only known on Linux: start-up code that loads the
// settings before creating one sets it.
QString ZebProgramDir();
void SetZebProgramDir(const QString& dir); // empty: the running program's folder again
// A program of the suite in that folder, with the platform's executable suffix.
QString ZebProgramPath(const QString& baseName);

// The root every TZEBRegistry path is relative to. Selected on first use.
QString ZebSettingsRoot();
void SetZebSettingsRoot(const QString& root);
// Runs the selection (edition, prototype file) again and answers the new root.
QString SelectZebSettingsRoot();

// ------------------------------------------------------------------ settings record

inline constexpr const char* kZebProgramMain = "zeb.exe";
inline constexpr const char* kZebProgramViewer = "zeb_viewer.exe";
inline constexpr int kZebRecentFiles = 10;

struct TZebSettings {
    // Common values (the root itself).
    int ComportSearch = 2;
    int ComportDevice = 0;
    QString Comport = QStringLiteral("COM1");
    QString FileDir;
    QString TemplateFile;
    bool ShowTools = false;
    int Language = -1;
    bool MultipleInstances = false;
    int Test = 0;
    int intern = 0;
    bool CheckRange = true;
    QString ValReportFirma;
    int ReportHint = 0;
    int LocDate = 0;
    int LocDecimalSeparator = 0;
    int View = 0;
    QString CustomApp;

    // "\Prototype": the companion programs.
    int VersionPC = 0;
    QString SetupExe;
    QString ReaderExe;
    QString OnlineExe;
    QString FormatExe;

    // "\zeb_viewer.exe"
    bool Extended = false;
    std::array<QString, kZebRecentFiles> File; // "File0" .. "File9", the recent files
    bool ScreenFull = true;
    int ScreenWidth = -1;
    int ScreenHeight = -1;
    bool CustomApp0_Active = false;
    int CustomApp0_Curve = 0;
    QString CustomApp0_Name = QStringLiteral("FLOW");
    QString CustomApp0_Unit = QStringLiteral("m3/h");
    double CustomApp0_Mul = 0.06;
    double CustomApp0_Add = 0.0;
    // The activation energy of the report's mean kinetic temperature, in kJ/mol: the customary
    // 83.144 (ΔH/R = 10000 K) unless a procedure prescribes another; positive.
    double MktActivationEnergy = 83.144;

    // Sections of the companion programs; only "zeb.exe" and their owners touch them.
    struct TReader { // "\reader"
        bool Report = false;
        int FileMode = 1;
        int OutputMode = 2;
        bool MultipleZEB = false;
        bool ForceExtZEB = false;
    } Reader;
    struct TOnline { // "\online"
        int Rate = 1000;
        bool Autostart = false;
        bool ShowServerError = false;
        int Port = 0;
        bool ScreenFull = true;
        int ScreenWidth = -1;
        int ScreenHeight = -1;
    } Online;
    struct TCsv { // "\zeb2csv.exe"
        int iListSeparator = 0;
        int iDecimalSeparator = 0;
        int iNumberFormat = 0;
        int iNanFormat = 0;
        int iTimeColumn = 0;
        int iDateFormat = 0;
        QString sDateFormat;
        int iTimeFormat = 0;
        QString sTimeFormat;
        int iFileExt = 0;
        QString sFileExt;
    } Csv;
    struct TResample {                 // "\zeb_resample.exe"
        double Period = 1.0 / 86400.0; // one second as a time value in days
        bool Empty = true;
    } Resample;

    // Fixed by the edition, never persisted.
    QString DataFileExt;  // ".zeb" (".dvk" in the partner edition)
    QString MseFileExt;   // ".mse"
    QString ProductShort; // "ZEB"
    int BrandVariant = 0; // the recording variant code the loader accepts (5665 in the partner edition)

    TZebSettings(); // the built-in defaults
};

TZebSettings& ZebSettings();

// The real screen size the window geometry is checked against; set by the user interface
// before loading. Without it only the lower bounds apply.
void SetZebScreenSizeProvider(std::function<QSize()> provider);
QSize ZebScreenSize();

// Applies the window-geometry rule of the loader to the viewer's values again, for a start-up
// that loads the settings before a screen is known.
void CheckZebScreenSize(QSize screen);

// Loads every section the program reads, after resetting all values to their defaults.
void LoadZebSettings(const QString& programName);
// The same with an explicit screen size instead of the provider's.
void LoadZebSettings(const QString& programName, QSize screen);
// Writes back only what the program owns. False when the settings could not be written; the
// previous settings then stay whole.
bool SaveZebSettings(const QString& programName);
// The warning that the settings could not be saved, in the user's language, naming where they
// live (the settings file, or the registry branch).
QString ZebSettingsSaveFailedText();
