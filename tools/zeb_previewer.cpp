// zeb_previewer FILE: the overview of a recording of any size, and a cut of it for the viewer.

#include "CompanionCli.h"
#include "Language.h"
#include "Previewer.h"
#include "Texts.h"
#include "ZebReg.h"

#include <QApplication>
#include <QFileDialog>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    companion::StartProgram(QStringLiteral("zeb_previewer.exe"));
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
