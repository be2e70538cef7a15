// Linked into every test that shows widgets: the application font is chosen here, not by the
// desktop the test happens to run on, so sizes and positions are the same on every machine.

#include <QFont>
#include <QGuiApplication>

namespace {

void UseTestFont() {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return;
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPointSize(9);
    QGuiApplication::setFont(font);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(UseTestFont)
