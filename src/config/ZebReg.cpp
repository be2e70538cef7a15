#include "config/ZebReg.h"

#include "config/IniFile.h"
#include "config/Texts.h"
#include "data/Formats.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>

#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <variant>

namespace {

// "\Software\Velmorant\ZEB" + "\Prototype" as a QSettings group "Software/Velmorant/ZEB/Prototype".
QString ToGroup(const QString& registryPath) {
    QString p = registryPath;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return p.split(QLatin1Char('/'), Qt::SkipEmptyParts).join(QLatin1Char('/'));
}

QString JoinGroup(const QString& group, const QString& name) {
    return group.isEmpty() ? name : group + QLatin1Char('/') + name;
}

bool IsIntegerType(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

std::optional<int> FromIntegerVariant(const QVariant& v) {
    bool ok = false;
    const qlonglong i = v.toLongLong(&ok);
    if (!ok || i < std::numeric_limits<int>::min() || i > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(i);
}

} // namespace

// ============================================================================ TZEBRegistry

QString TZEBRegistry::SettingsFileName() {
    const QString env = qEnvironmentVariable("ZEB_SETTINGS_FILE");
    if (!env.isEmpty()) return env;
#ifdef Q_OS_WIN
    return {};
#else
    const QString dir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return dir + QStringLiteral("/Velmorant/zeb_registry.ini");
#endif
}

TZEBRegistry::TZEBRegistry() {
    const QString file = SettingsFileName();
    FNative = file.isEmpty();
    if (FNative)
        FSettings = std::make_unique<QSettings>(QStringLiteral("HKEY_CURRENT_USER"), QSettings::NativeFormat);
    else
        FSettings = std::make_unique<QSettings>(file, QSettings::IniFormat);
}

TZEBRegistry::~TZEBRegistry() = default;

bool TZEBRegistry::Exists(const QString& group) const {
    if (group.isEmpty()) return true;
    const qsizetype slash = group.lastIndexOf(QLatin1Char('/'));
    const QString parent = slash < 0 ? QString() : group.left(slash);
    const QString name = group.mid(slash + 1);
    if (!parent.isEmpty()) FSettings->beginGroup(parent);
    const QStringList children = FSettings->childGroups();
    if (!parent.isEmpty()) FSettings->endGroup();
    // Registry keys ignore case; the INI file keeps it as written.
    return children.contains(name, FNative ? Qt::CaseInsensitive : Qt::CaseSensitive);
}

bool TZEBRegistry::OpenKeyRead(const QString& subPath) {
    FGroup = ToGroup(ZebSettingsRoot() + subPath);
    FWritable = false;
    FOpen = Exists(FGroup);
    return FOpen;
}

bool TZEBRegistry::OpenKeyWrite(const QString& subPath) {
    FGroup = ToGroup(ZebSettingsRoot() + subPath);
    FOpen = true;
    FWritable = FSettings->isWritable();
    return FWritable;
}

void TZEBRegistry::CloseKey() {
    FOpen = FWritable = false;
    FGroup.clear();
}

QVariant TZEBRegistry::RawValue(const QString& name) const {
    if (!FOpen || name.isEmpty()) return {};
    // A missing key answers an invalid value; a key in the file always holds a valid one.
    return FSettings->value(JoinGroup(FGroup, name));
}

// In the registry a value has a type and a value of another type is unreadable. The INI file
// keeps only text, so there a value is readable when its text parses as the wanted type.

namespace {

// The INI value as the text the file holds (values set in this process keep their type in
// QSettings' cache until they are read back from the file).
std::optional<QString> IniText(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::QString:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Bool:
        return v.toString();
    // QSettings splits an unquoted value at commas; hand-edited paths may hold them.
    case QMetaType::QStringList:
        return v.toStringList().join(QLatin1Char(','));
    default:
        return std::nullopt;
    }
}

} // namespace

bool TZEBRegistry::ReadB(const QString& name, bool def) const {
    const QVariant v = RawValue(name);
    if (FNative) {
        if (!IsIntegerType(v)) return def;
        const std::optional<int> i = FromIntegerVariant(v);
        return i ? *i != 0 : def;
    }
    const std::optional<QString> text = IniText(v);
    return text ? TIniFile::ParseBool(*text).value_or(def) : def;
}

int TZEBRegistry::ReadI(const QString& name, int def) const {
    const QVariant v = RawValue(name);
    if (FNative) return IsIntegerType(v) ? FromIntegerVariant(v).value_or(def) : def;
    const std::optional<QString> text = IniText(v);
    return text ? TIniFile::ParseInteger(*text).value_or(def) : def;
}

QString TZEBRegistry::ReadS(const QString& name, const QString& def) const {
    const QVariant v = RawValue(name);
    if (FNative) return v.typeId() == QMetaType::QString ? v.toString() : def;
    return IniText(v).value_or(def);
}

double TZEBRegistry::ReadD(const QString& name, double def) const {
    const QVariant v = RawValue(name);
    if (FNative && v.typeId() != QMetaType::QString) return def;
    const std::optional<QString> text = IniText(v);
    return text ? TIniFile::ParseFloat(*text).value_or(def) : def;
}

void TZEBRegistry::WriteB(const QString& name, bool value) {
    WriteI(name, value ? 1 : 0);
}

// A value that stands as it would be written is left alone: settings that did not change leave
// the file untouched (no rewrite at every exit).
void TZEBRegistry::WriteI(const QString& name, int value) {
    if (!FOpen || !FWritable || name.isEmpty()) return;
    const QString key = JoinGroup(FGroup, name);
    const QVariant now = FSettings->value(key);
    const bool same = FNative ? IsIntegerType(now) && FromIntegerVariant(now) == value
                              : IniText(now) == QString::number(value);
    if (!same) FSettings->setValue(key, value);
}

void TZEBRegistry::WriteS(const QString& name, const QString& value) {
    if (!FOpen || !FWritable || name.isEmpty()) return;
    const QString key = JoinGroup(FGroup, name);
    const QVariant now = FSettings->value(key);
    if (now.typeId() != QMetaType::QString || now.toString() != value) FSettings->setValue(key, value);
}

void TZEBRegistry::WriteD(const QString& name, double value) {
    WriteS(name, zeb::FloatToStr(value));
}

bool TZEBRegistry::Flush() {
    // QSettings writes the INI file through a save file: a failed write leaves the old one whole
    // and is an access error. A format error only says that lines of the file it read were not
    // understood; what it writes is still written.
    FSettings->sync();
    return FSettings->status() != QSettings::AccessError;
}

bool TZEBRegistry::KeyExists(const QString& subPath) const {
    return Exists(ToGroup(ZebSettingsRoot() + subPath));
}

bool TZEBRegistry::ValueExists(const QString& name) const {
    return RawValue(name).isValid();
}

void TZEBRegistry::GetKeyNames(QStringList& list) const {
    list.clear();
    if (!FOpen) return;
    if (!FGroup.isEmpty()) FSettings->beginGroup(FGroup);
    list = FSettings->childGroups();
    if (!FGroup.isEmpty()) FSettings->endGroup();
}

void TZEBRegistry::GetValueNames(QStringList& list) const {
    list.clear();
    if (!FOpen) return;
    if (!FGroup.isEmpty()) FSettings->beginGroup(FGroup);
    list = FSettings->childKeys();
    if (!FGroup.isEmpty()) FSettings->endGroup();
}

bool TZEBRegistry::CreateKey(const QString& path) {
    const QString group = ToGroup(path);
    if (group.isEmpty()) return false;
    if (FNative) {
        // A writable QSettings on a registry path creates the key when it opens it.
        QString native = group;
        native.replace(QLatin1Char('/'), QLatin1Char('\\'));
        QSettings key(QStringLiteral("HKEY_CURRENT_USER\\") + native, QSettings::NativeFormat);
        return key.isWritable();
    }
    // The INI file cannot hold an empty key; the key comes into being with its first value.
    return FSettings->isWritable() && FSettings->status() == QSettings::NoError;
}

// ============================================================================ settings root

namespace {

QString& ProgramDirOverride() {
    static QString dir;
    return dir;
}

std::optional<QString>& RootStore() {
    static std::optional<QString> root;
    return root;
}

} // namespace

QString ZebProgramDir() {
    if (!ProgramDirOverride().isEmpty()) return ProgramDirOverride();
    if (QCoreApplication::instance()) return QCoreApplication::applicationDirPath();
#ifdef Q_OS_LINUX
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
#else
    return {};
#endif
}

void SetZebProgramDir(const QString& dir) {
    ProgramDirOverride() = dir;
}

QString ZebProgramPath(const QString& baseName) {
#ifdef Q_OS_WIN
    const QString name = baseName + QStringLiteral(".exe");
#else
    const QString name = baseName;
#endif
    return QDir(ZebProgramDir()).filePath(name);
}

QString ZebSettingsRoot() {
    if (!RootStore()) SelectZebSettingsRoot();
    return *RootStore();
}

void SetZebSettingsRoot(const QString& root) {
    RootStore() = root;
}

QString SelectZebSettingsRoot() {
#ifdef ZEB_VALIDATED_EDITION
    RootStore() = QString::fromLatin1(kZebValidatedRootPath);
#else
    RootStore() = QString::fromLatin1(kZebRootPath);
    const QString dir = ZebProgramDir();
    const QString iniName =
        dir.isEmpty() ? QString() : QDir(dir).filePath(QString::fromLatin1(kZebPrototypeFile));
    TIniFile ini;
    if (!iniName.isEmpty() && QFileInfo(iniName).isFile() && ini.Load(iniName)) {
        // A key present but empty names the branch that holds all prototypes, as the platform's
        // INI reader answers an empty string there; only a missing key gives the default.
        const QString key =
            ini.ReadString(QStringLiteral("Settings"), QStringLiteral("Key"), QStringLiteral("unknown"));
        const QString prototype = QString::fromLatin1(kZebPrototypesPath) + key;
        TZEBRegistry reg;
        // KeyExists looks below the current root; the prototype branch becomes the root when it
        // exists there or when it can be created below the user's branch.
        if (reg.KeyExists(prototype) || reg.CreateKey(prototype)) RootStore() = prototype;
    }
#endif
    return *RootStore();
}

// ============================================================================ settings record

TZebSettings::TZebSettings() {
#ifdef ZEB_PARTNER_EDITION
    ValReportFirma = QStringLiteral("Dravik");
    DataFileExt = QStringLiteral(".dvk");
    ProductShort = QStringLiteral("TRK");
    BrandVariant = 5665;
#else
    ValReportFirma = QStringLiteral("Velmorant");
    DataFileExt = QStringLiteral(".zeb");
    ProductShort = QStringLiteral("ZEB");
    BrandVariant = 0;
#endif
    MseFileExt = QStringLiteral(".mse");
}

TZebSettings& ZebSettings() {
    static TZebSettings settings;
    return settings;
}

namespace {

std::function<QSize()>& ScreenProvider() {
    static std::function<QSize()> provider;
    return provider;
}

using TTarget = std::variant<bool*, int*, QString*, double*>;

// One value of the key table: where it lives, where it goes, and who writes it back.
struct TKey {
    QString Section; // "" for the root itself, else "\" + owner
    QString Name;
    TTarget Target;
    QStringList Writers;            // programs that write it; empty: never written
    const bool* SkipWhen = nullptr; // read only while this flag is false
};

const QString kMain = QString::fromLatin1(kZebProgramMain);
const QString kViewer = QString::fromLatin1(kZebProgramViewer);

std::vector<TKey> KeyTable(TZebSettings& s) {
    const QString common;
    const QString proto = QStringLiteral("\\Prototype");
    const QString viewer = QLatin1Char('\\') + kViewer;
    const QString reader = QStringLiteral("\\reader");
    const QString online = QStringLiteral("\\online");
    const QString csv = QStringLiteral("\\zeb2csv.exe");
    const QString resample = QStringLiteral("\\zeb_resample.exe");
    const QStringList main{kMain};
    const QStringList none;
    const QStringList loader{QStringLiteral("Loader.exe")};

    std::vector<TKey> t{
        {common, QStringLiteral("ComportSearch"), &s.ComportSearch, main},
        {common, QStringLiteral("ComportDevice"), &s.ComportDevice, loader},
        {common, QStringLiteral("Comport"), &s.Comport, {kMain, QStringLiteral("Loader.exe")}},
        {common, QStringLiteral("FileDir"), &s.FileDir, main},
        {common, QStringLiteral("TemplateFile"), &s.TemplateFile, main},
        {common, QStringLiteral("ShowTools"), &s.ShowTools, main},
        {common, QStringLiteral("Language"), &s.Language, main},
        {common, QStringLiteral("MultipleInstances"), &s.MultipleInstances, none},
        {common, QStringLiteral("Test"), &s.Test, none},
        {common, QStringLiteral("intern"), &s.intern, none},
        {common, QStringLiteral("CheckRange"), &s.CheckRange, none},
        {common, QStringLiteral("ValReportFirma"), &s.ValReportFirma, main},
        {common, QStringLiteral("ReportHint"), &s.ReportHint, main},
        {common, QStringLiteral("LocDate"), &s.LocDate, main},
        {common, QStringLiteral("LocDecimalSeparator"), &s.LocDecimalSeparator, main},
        {common, QStringLiteral("View"), &s.View, main},
        {common, QStringLiteral("CustomApp"), &s.CustomApp, main},

        {proto, QStringLiteral("VersionPC"), &s.VersionPC, none},
        {proto, QStringLiteral("SetupExe"), &s.SetupExe, none},
        {proto, QStringLiteral("ReaderExe"), &s.ReaderExe, none},
        {proto, QStringLiteral("OnlineExe"), &s.OnlineExe, none},
        {proto, QStringLiteral("FormatExe"), &s.FormatExe, none},

        {viewer, QStringLiteral("Extended"), &s.Extended, none},
    };
    for (int i = 0; i < kZebRecentFiles; ++i)
        t.push_back({viewer, QStringLiteral("File") + QString::number(i), &s.File[size_t(i)], {kViewer}});
    const TKey viewerRest[] = {
        {viewer, QStringLiteral("ScreenFull"), &s.ScreenFull, {kViewer}},
        {viewer, QStringLiteral("ScreenWidth"), &s.ScreenWidth, {kViewer}, &s.ScreenFull},
        {viewer, QStringLiteral("ScreenHeight"), &s.ScreenHeight, {kViewer}, &s.ScreenFull},
        {viewer, QStringLiteral("CustomApp0_Active"), &s.CustomApp0_Active, {kViewer}},
        {viewer, QStringLiteral("CustomApp0_Curve"), &s.CustomApp0_Curve, {kViewer}},
        {viewer, QStringLiteral("CustomApp0_Name"), &s.CustomApp0_Name, {kViewer}},
        {viewer, QStringLiteral("CustomApp0_Unit"), &s.CustomApp0_Unit, {kViewer}},
        {viewer, QStringLiteral("CustomApp0_Mul"), &s.CustomApp0_Mul, {kViewer}},
        {viewer, QStringLiteral("CustomApp0_Add"), &s.CustomApp0_Add, {kViewer}},
        {viewer, QStringLiteral("MktActivationEnergy"), &s.MktActivationEnergy, {kViewer}},

        {reader, QStringLiteral("Report"), &s.Reader.Report, none},
        {reader, QStringLiteral("FileMode"), &s.Reader.FileMode, {kMain, QStringLiteral("reader")}},
        {reader, QStringLiteral("OutputMode"), &s.Reader.OutputMode, {kMain, QStringLiteral("reader")}},
        {reader, QStringLiteral("MultipleZEB"), &s.Reader.MultipleZEB, {QStringLiteral("reader")}},
        {reader, QStringLiteral("ForceExtZEB"), &s.Reader.ForceExtZEB, {kMain, QStringLiteral("reader")}},
    };
    t.insert(t.end(), std::begin(viewerRest), std::end(viewerRest));

    const QStringList onlineWriters{kMain, QStringLiteral("online")};
    const TKey rest[] = {
        {online, QStringLiteral("Rate"), &s.Online.Rate, onlineWriters},
        {online, QStringLiteral("Autostart"), &s.Online.Autostart, onlineWriters},
        {online, QStringLiteral("ShowServerError"), &s.Online.ShowServerError, onlineWriters},
        {online, QStringLiteral("Port"), &s.Online.Port, onlineWriters},
        {online, QStringLiteral("ScreenFull"), &s.Online.ScreenFull, onlineWriters},
        {online, QStringLiteral("ScreenWidth"), &s.Online.ScreenWidth, onlineWriters, &s.Online.ScreenFull},
        {online, QStringLiteral("ScreenHeight"), &s.Online.ScreenHeight, onlineWriters, &s.Online.ScreenFull},

        {csv, QStringLiteral("iListSeparator"), &s.Csv.iListSeparator, {csv.mid(1)}},
        {csv, QStringLiteral("iDecimalSeparator"), &s.Csv.iDecimalSeparator, {csv.mid(1)}},
        {csv, QStringLiteral("iNumberFormat"), &s.Csv.iNumberFormat, {csv.mid(1)}},
        {csv, QStringLiteral("iNanFormat"), &s.Csv.iNanFormat, {csv.mid(1)}},
        {csv, QStringLiteral("iTimeColumn"), &s.Csv.iTimeColumn, {csv.mid(1)}},
        {csv, QStringLiteral("iDateFormat"), &s.Csv.iDateFormat, {csv.mid(1)}},
        {csv, QStringLiteral("sDateFormat"), &s.Csv.sDateFormat, {csv.mid(1)}},
        {csv, QStringLiteral("iTimeFormat"), &s.Csv.iTimeFormat, {csv.mid(1)}},
        {csv, QStringLiteral("sTimeFormat"), &s.Csv.sTimeFormat, {csv.mid(1)}},
        {csv, QStringLiteral("iFileExt"), &s.Csv.iFileExt, {csv.mid(1)}},
        {csv, QStringLiteral("sFileExt"), &s.Csv.sFileExt, {csv.mid(1)}},

        {resample, QStringLiteral("Period"), &s.Resample.Period, {resample.mid(1)}},
        {resample, QStringLiteral("Empty"), &s.Resample.Empty, {resample.mid(1)}},
    };
    t.insert(t.end(), std::begin(rest), std::end(rest));
    return t;
}

// The table of the one settings record: its addresses never change, so it is made once.
const std::vector<TKey>& TheKeyTable() {
    static const std::vector<TKey> table = KeyTable(ZebSettings());
    return table;
}

// The root and the prototype key are read by everybody; a program section by its owner and by
// the suite's main program, which owns every section.
bool ReadsSection(const QString& program, const QString& section) {
    if (section.isEmpty() || section == QLatin1String("\\Prototype")) return true;
    return program == kMain || program == QStringView(section).mid(1);
}

void ReadKey(const TZEBRegistry& reg, const TKey& k) {
    if (k.SkipWhen && *k.SkipWhen) return;
    std::visit(
        [&](auto* p) {
            using T = std::remove_pointer_t<decltype(p)>;
            if constexpr (std::is_same_v<T, bool>)
                *p = reg.ReadB(k.Name, *p);
            else if constexpr (std::is_same_v<T, int>)
                *p = reg.ReadI(k.Name, *p);
            else if constexpr (std::is_same_v<T, QString>)
                *p = reg.ReadS(k.Name, *p);
            else
                *p = reg.ReadD(k.Name, *p);
        },
        k.Target);
}

void WriteKey(TZEBRegistry& reg, const TKey& k) {
    std::visit(
        [&](auto* p) {
            using T = std::remove_pointer_t<decltype(p)>;
            if constexpr (std::is_same_v<T, bool>)
                reg.WriteB(k.Name, *p);
            else if constexpr (std::is_same_v<T, int>)
                reg.WriteI(k.Name, *p);
            else if constexpr (std::is_same_v<T, QString>)
                reg.WriteS(k.Name, *p);
            else
                reg.WriteD(k.Name, *p);
        },
        k.Target);
}

// A geometry that does not fit the screen, or was never stored (-1), means a maximised window.
void CheckScreen(bool& full, int width, int height, QSize screen) {
    if (width < 20 || height < 20) full = true;
    if (screen.isValid() && (width > screen.width() || height > screen.height())) full = true;
}

QString CountryCode() {
    return QLocale::territoryToCode(zeb::SystemLocale().territory());
}

} // namespace

void SetZebScreenSizeProvider(std::function<QSize()> provider) {
    ScreenProvider() = std::move(provider);
}

QSize ZebScreenSize() {
    return ScreenProvider() ? ScreenProvider()() : QSize();
}

void CheckZebScreenSize(QSize screen) {
    TZebSettings& s = ZebSettings();
    CheckScreen(s.ScreenFull, s.ScreenWidth, s.ScreenHeight, screen);
}

void LoadZebSettings(const QString& programName) {
    LoadZebSettings(programName, ZebScreenSize());
}

void LoadZebSettings(const QString& programName, QSize screen) {
    TZebSettings& s = ZebSettings();
    s = TZebSettings();
    const std::vector<TKey>& table = TheKeyTable();

    TZEBRegistry reg;
    QString open;
    bool opened = false;
    for (const TKey& k : table) {
        if (!ReadsSection(programName, k.Section)) continue;
        if (!opened || k.Section != open) {
            reg.OpenKeyRead(k.Section);
            open = k.Section;
            opened = true;
        }
        ReadKey(reg, k);
    }

    if (s.ReportHint == 0) s.ReportHint = CountryCode() == QLatin1String("IN") ? 2 : 1;
    if (!(s.MktActivationEnergy > 0.0 && std::isfinite(s.MktActivationEnergy)))
        s.MktActivationEnergy = TZebSettings().MktActivationEnergy;
    if (ReadsSection(programName, QLatin1Char('\\') + kViewer))
        CheckScreen(s.ScreenFull, s.ScreenWidth, s.ScreenHeight, screen);
    if (ReadsSection(programName, QStringLiteral("\\online")))
        CheckScreen(s.Online.ScreenFull, s.Online.ScreenWidth, s.Online.ScreenHeight, screen);
}

bool SaveZebSettings(const QString& programName) {
    const std::vector<TKey>& table = TheKeyTable();

    TZEBRegistry reg;
    bool wrote = true;
    QString open;
    bool opened = false;
    for (const TKey& k : table) {
        if (!k.Writers.contains(programName)) continue;
        // Keys are opened only for sections that get a value, so nothing empty is created.
        if (!opened || k.Section != open) {
            wrote = reg.OpenKeyWrite(k.Section) && wrote;
            open = k.Section;
            opened = true;
        }
        WriteKey(reg, k);
    }
    return reg.Flush() && wrote;
}

QString ZebSettingsSaveFailedText() {
    const QString where = TZEBRegistry::SettingsFileName();
    return zeb::TxtFmt(zeb::TTextId::MsgCannotSaveSettings,
                       {where.isEmpty() ? ZebSettingsRoot() : QDir::toNativeSeparators(where)});
}
