// zeb2csv: a recording as text for a spreadsheet, one line per distinct time stamp.
// `zeb2csv --help` lists the settings codes and the exit codes.

#include "CompanionCli.h"
#include "config/Texts.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    companion::StartProgram(QStringLiteral("zeb2csv.exe"));
    return companion::Run(companion::ParseConverterArgs(QCoreApplication::arguments().mid(1)),
                          companion::kConverterName, zeb::Txt(zeb::TTextId::CmpConverterUsage));
}
