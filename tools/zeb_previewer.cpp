// zeb_previewer FILE: the overview of a recording of any size, and a cut of it for the viewer.
// `zeb_previewer --help` gives the usage and exit codes.

#include "CompanionCli.h"
#include "Language.h"
#include "Previewer.h"
#include "Texts.h"
#include "ZebReg.h"

#include <QApplication>
#include <QFileDialog>

#include <cstring>

int main(int argc, char** argv) {
    // Help, version and a wrong option are answered before the application object exists, so
    // they need no display.
    companion::StartProgram(QStringLiteral("zeb_previewer.exe"));
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        companion::PrintOut(zeb::Txt(zeb::TTextId::PrvUsage));
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        companion::PrintOut(QString::fromLatin1(companion::kPreviewerName) + QStringLiteral(" " ZEB_VERSION));
        return 0;
    }
    // Anything else with two dashes is no file; Qt's own options come with others.
    if (argc == 2 && std::strncmp(argv[1], "--", 2) == 0) {
        companion::PrintError(zeb::TxtFmt(zeb::TTextId::CliBadArgument, {QString::fromLocal8Bit(argv[1])}));
        companion::PrintError(zeb::Txt(zeb::TTextId::PrvUsage));
        return 2;
    }

    QApplication app(argc, argv);
    zeb::InstallQtTranslations();

    QString file = QCoreApplication::arguments().value(1);
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
