#include "config/QtOptions.h"

namespace zeb {

bool IsQtOption(const QString& arg, bool& takesValue) {
    static const QStringList kWithValue = {
        QStringLiteral("platform"),        QStringLiteral("platformpluginpath"), QStringLiteral("platformtheme"),
        QStringLiteral("plugin"),          QStringLiteral("qwindowgeometry"),    QStringLiteral("qwindowicon"),
        QStringLiteral("qwindowtitle"),    QStringLiteral("session"),            QStringLiteral("display"),
        QStringLiteral("style"),           QStringLiteral("stylesheet"),         QStringLiteral("qmljsdebugger")};
    static const QStringList kAlone = {QStringLiteral("reverse"), QStringLiteral("widgetcount")};
    takesValue = false;
    if (!arg.startsWith(QLatin1Char('-'))) return false;
    QString name = arg.mid(arg.startsWith(QLatin1String("--")) ? 2 : 1);
    const qsizetype eq = name.indexOf(QLatin1Char('='));
    if (eq >= 0) return kWithValue.contains(name.left(eq)); // -style=fusion carries its value
    takesValue = kWithValue.contains(name);
    return takesValue || kAlone.contains(name);
}

QStringList WithoutQtOptions(const QStringList& args, QString* missingValue) {
    QStringList rest;
    for (qsizetype i = 0; i < args.size(); ++i) {
        bool takesValue = false;
        if (!IsQtOption(args[i], takesValue)) {
            rest << args[i];
            continue;
        }
        if (takesValue && i + 1 >= args.size()) {
            if (missingValue) *missingValue = args[i];
            break;
        }
        if (takesValue) ++i;
    }
    return rest;
}

} // namespace zeb
