#pragma once
// Qt's own command-line options (-platform offscreen, -style=fusion, ...), which the application
// object takes for itself. The programs read their own arguments around them, before the
// application object exists, so help, version and wrong calls need no display.

#include <QString>
#include <QStringList>

namespace zeb {

// Whether arg is one of Qt's options, with one dash or two; takesValue tells whether the next
// argument is its value (false for "-style=fusion", which carries it).
bool IsQtOption(const QString& arg, bool& takesValue);

// The arguments without Qt's options and their values. A Qt option whose value is missing is
// reported in *missingValue (left empty otherwise).
QStringList WithoutQtOptions(const QStringList& args, QString* missingValue = nullptr);

} // namespace zeb
