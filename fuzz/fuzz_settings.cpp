// Fuzzes the program settings: the first byte splits the rest into the settings file (read
// through QSettings, named by ZEB_SETTINGS_FILE) and the prototype file "zeb_reg.ini". The root
// is chosen, the settings are loaded for the viewer and for the suite's main program, and the
// viewer's own values are saved; after one save and load they must survive another unchanged.

#include "ZebReg.h"

#include <QDir>
#include <QFile>
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
        << QString::number(s.CustomApp0_Add, 'g', 17);
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static QTemporaryDir dir;
    static int run = 0;
    if (size < 1 || !dir.isValid()) return 0;
    const size_t split = 1 + (size - 1) * data[0] / 255;
    const QByteArray settings(reinterpret_cast<const char*>(data + 1), qsizetype(split - 1));
    const QByteArray prototype(reinterpret_cast<const char*>(data + split), qsizetype(size - split));

    // A new name each run: QSettings caches what it parsed per file name.
    const QString file = dir.filePath(QStringLiteral("registry%1.ini").arg(++run));
    if (!WriteFile(file, settings)) return 0;
    qputenv("ZEB_SETTINGS_FILE", QFile::encodeName(file));
    const QString prog = dir.filePath(QStringLiteral("prog"));
    QDir().mkpath(prog);
    const QString protoFile = QDir(prog).filePath(QString::fromLatin1(kZebPrototypeFile));
    QFile::remove(protoFile);
    if (!prototype.isEmpty() && !WriteFile(protoFile, prototype)) return 0;
    SetZebProgramDir(prog);

    SelectZebSettingsRoot();
    LoadZebSettings(QString::fromLatin1(kZebProgramMain), QSize(1920, 1080));
    LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
    {
        TZEBRegistry reg;
        QStringList names;
        if (reg.OpenKeyRead(QString())) {
            reg.GetKeyNames(names);
            reg.GetValueNames(names);
        }
    }
    if (SaveZebSettings(QString::fromLatin1(kZebProgramViewer))) {
        LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
        const QStringList once = ViewerValues();
        Check(SaveZebSettings(QString::fromLatin1(kZebProgramViewer)));
        LoadZebSettings(QString::fromLatin1(kZebProgramViewer), QSize(1920, 1080));
        Check(ViewerValues() == once);
    }
    QFile::remove(file);
    QFile::remove(file + QStringLiteral(".lock"));
    return 0;
}
