// zeb_previewer FILE: the overview of a recording of any size, and a cut of it for the viewer.
// `zeb_previewer --help` gives the usage and exit codes.

#include "CompanionCli.h"
#include "config/Language.h"
#include "config/QtOptions.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "Previewer.h"

#include <QApplication>
#include <QFileDialog>


int main(int argc, char** argv) {
    // Help, version and a wrong call are answered before the application object exists, so
    // they need no display; Qt's own options (-platform offscreen, ...) are Qt's.
    companion::StartProgram(QStringLiteral("zeb_previewer.exe"));
    QStringList raw;
    for (int i = 1; i < argc; ++i)
        raw << QString::fromLocal8Bit(argv[i]);
    QString missingValue;
    const QStringList args = zeb::WithoutQtOptions(raw, &missingValue);
    const auto invalid = [](const QString& arg) {
        companion::PrintError(zeb::TxtFmt(zeb::TTextId::CliBadArgument, {arg}));
        companion::PrintError(zeb::Txt(zeb::TTextId::PrvUsage));
        return 2;
    };
    if (!missingValue.isEmpty()) return invalid(missingValue);
    for (const QString& a : args)
        if (a == QLatin1String("--help") || a == QLatin1String("-h") || a == QLatin1String("/?")) {
            companion::PrintOut(zeb::Txt(zeb::TTextId::PrvUsage));
            return 0;
        }
    if (args.contains(QLatin1String("--version"))) {
        companion::PrintOut(QString::fromLatin1(companion::kPreviewerName) + QStringLiteral(" " ZEB_VERSION));
        return 0;
    }
    for (const QString& a : args)
        if (a.size() > 1 && a.startsWith(QLatin1Char('-'))) return invalid(a);
    // One recording at a time.
    if (args.size() > 1) {
        companion::PrintError(
            zeb::TxtFmt(zeb::TTextId::CmpArgumentCount, {QString::fromLatin1(companion::kPreviewerName)}));
        return 2;
    }

    QApplication app(argc, argv);
    zeb::InstallQtTranslations();

    QString file = args.value(0);
    if (file.isEmpty()) {
        const QString ext = ZebSettings().DataFileExt;
        file = QFileDialog::getOpenFileName(nullptr, zeb::Txt(zeb::TTextId::PrvCaption), QString(),
                                            zeb::Txt(zeb::TTextId::DlgZebFile) + QStringLiteral(" (*") + ext +
                                                QLatin1Char(')'));
        if (file.isEmpty()) return 0;
    }
    TfrmPreviewer window;
    window.show();
    window.OpenFile(file);
    return QApplication::exec();
}
