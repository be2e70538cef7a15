// Fuzzes the program settings: the first byte splits the rest into the settings file (read
// through QSettings, named by ZEB_SETTINGS_FILE) and the prototype file "zeb_reg.ini". The root
// is chosen, the settings are loaded for the viewer and for the suite's main program, and the
// viewer's own values are saved; after one save and load they must survive another unchanged.

#include "config/ZebReg.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdint>

namespace {

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

bool WriteFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// What the viewer writes back.
QStringList ViewerValues() {
    const TZebSettings& s = ZebSettings();
    QStringList out(s.File.begin(), s.File.end());
    out << QString::number(s.ScreenFull) << QString::number(s.ScreenWidth) << QString::number(s.ScreenHeight)
        << QString::number(s.CustomApp0_Active) << QString::number(s.CustomApp0_Curve) << s.CustomApp0_Name
        << s.CustomApp0_Unit << QString::number(s.CustomApp0_Mul, 'g', 17)
        << QString::number(s.CustomApp0_Add, 'g', 17) << QString::number(s.MktActivationEnergy, 'g', 17);
    return out;
}

} // namespace

// Speed and flat memory over detail while fuzzing: where a block was allocated and freed is
// kept two calls deep, and freed memory waits in a smaller quarantine. A finding is run again
// with ASAN_OPTIONS=malloc_context_size=30 for the whole story.
extern "C" const char* __asan_default_options() {
    return "malloc_context_size=2:quarantine_size_mb=64";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // In memory where the system has a folder for it: QSettings syncs every file it writes to
    // the disk, which would otherwise take most of each run.
    static QTemporaryDir dir(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                 ? QStringLiteral("/dev/shm/fuzz_settings-XXXXXX")
                                 : QString());
    static qint64 run = 0;
    // Qt's warnings about values it cannot read are no findings; printed, they cost more than
    // the run itself.
    static const QtMessageHandler quiet = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    (void)quiet;
    if (size < 1 || !dir.isValid()) return 0;
    const size_t split = 1 + (size - 1) * data[0] / 255;
    const QByteArray settings(reinterpret_cast<const char*>(data + 1), qsizetype(split - 1));
    const QByteArray prototype(reinterpret_cast<const char*>(data + split), qsizetype(size - split));
    // Qt reads "@Variant(...)" and "@DateTime(...)" values through QDataStream, which believes
    // the lengths inside them: a few bytes ask for gigabytes. The programs never write such
    // values; the reader of the settings file is Qt's, not ours, so these are left out here.
    if (settings.contains("@Variant(") || settings.contains("@DateTime(")) return 0;

    // One file for every run, so QSettings keeps one parsed file, not one per input. It reads a
    // file again when its time stamp or size changed: each run gets a time of its own.
    const QString file = dir.filePath(QStringLiteral("registry.ini"));
    static const bool named = [&file] {
        qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(file));
        return true;
    }();
    (void)named;
    {
        QFile f(file);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(settings) != settings.size()) return 0;
        f.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000 + ++run, Qt::UTC),
                      QFileDevice::FileModificationTime);
    }
    const QString prog = dir.filePath(QStringLiteral("prog"));
    static const bool made = QDir().mkpath(prog);
    (void)made;
    const QString protoFile = QDir(prog).filePath(QString::fromLatin1(kZebPrototypeFile));
    QFile::remove(protoFile);
    if (!prototype.isEmpty() && !WriteFile(protoFile, prototype)) return 0;
    SetZebProgramDir(prog);

    SelectZebSettingsRoot();
    // The suite's main program reads every section, the viewer's among them, just as the
    // viewer reads it.
    LoadZebSettings(QString::fromLatin1(kZebProgramMain), QSize(1920, 1080));
    {
        TZEBRegistry reg;
        QStringList names;
        if (reg.OpenKeyRead(QString())) {
            reg.GetKeyNames(names);
            reg.GetValueNames(names);
        }
    }
    const QStringList loaded = ViewerValues();
    if (SaveZebSettings(QString::fromLatin1(kZebProgramViewer))) {
        LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
        const QStringList once = ViewerValues();
        // Values that came back as they went out are saved alike again: another round could
        // only repeat this one.
        if (once != loaded) {
            Check(SaveZebSettings(QString::fromLatin1(kZebProgramViewer)));
            LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
            Check(ViewerValues() == once);
        }
    }
    return 0;
}
