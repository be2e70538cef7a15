#include "app/AuditLog.h"

#include <QLocalSocket>

namespace zeb {

namespace {
// A poke is synchronous; a server that does not take the entry within this time loses it.
constexpr int kTimeoutMs = 1000;
} // namespace

TAuditLog::TAuditLog(bool validatedEdition, const QString& serverName)
    : FValidated(validatedEdition), FServerName(serverName.isEmpty() ? ServerName() : serverName) {}

TAuditLog::~TAuditLog() {
    if (FSocket) FSocket->abort();
}

QString TAuditLog::ServerName() {
    return QLatin1String(kService) + QLatin1Char('_') + QLatin1String(kTopic);
}

bool TAuditLog::Connect() {
    if (FSocket->state() == QLocalSocket::ConnectedState) return true;
    FSocket->abort();
    FSocket->connectToServer(FServerName, QIODevice::WriteOnly);
    return FSocket->waitForConnected(kTimeoutMs);
}

void TAuditLog::Open(const QString& label) {
    if (!FValidated) return;
    FLabel = label;
    if (!FSocket) FSocket = std::make_unique<QLocalSocket>();
    Connect();
    Log(QStringLiteral("Open"));
}

void TAuditLog::Log(const QString& event) {
    if (!FValidated || !FSocket) return;
    // A server started after us still gets the later entries.
    if (!Connect()) return;
    const QString entry = FLabel + QStringLiteral(";;") + event + QLatin1Char('\n');
    FSocket->write(entry.toUtf8());
    FSocket->waitForBytesWritten(kTimeoutMs);
}

void TAuditLog::Close() {
    if (!FValidated || !FSocket) return;
    Log(QStringLiteral("Close"));
    FSocket->disconnectFromServer();
    if (FSocket->state() != QLocalSocket::UnconnectedState) FSocket->waitForDisconnected(kTimeoutMs);
    // Closing comes after the event loop; nothing of the socket may outlive the application.
    FSocket.reset();
}

TAuditLog& AuditLog() {
    static TAuditLog log;
    return log;
}

} // namespace zeb
