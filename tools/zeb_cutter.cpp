// zeb_cutter: a time window and a choice of channels of a recording as a new recording, or
// with the final word "csv" as text. `zeb_cutter --help` lists the arguments and exit codes.

#include "CompanionCli.h"
#include "config/Texts.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    // Writing text, the cutter is the converter: the converter's settings decide the format.
    const bool csv = args.size() == 7 && args.last().compare(QLatin1String("csv"), Qt::CaseInsensitive) == 0;
    companion::StartProgram(csv ? QStringLiteral("zeb2csv.exe") : QStringLiteral("zeb_cutter.exe"));
    return companion::Run(companion::ParseCutterArgs(args), companion::kCutterName,
                          zeb::Txt(zeb::TTextId::CmpCutterUsage));
}
