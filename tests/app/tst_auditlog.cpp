// The audit log channel: what a log server receives in each edition.

#include "app/AuditLog.h"

#include <QCoreApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>

using namespace zeb;

namespace {

// Collects every line any client sends.
class TLogServer : public QObject {
public:
    explicit TLogServer(const QString& name) {
        QLocalServer::removeServer(name);
        FServer.listen(name);
        connect(&FServer, &QLocalServer::newConnection, this, [this] {
            while (QLocalSocket* s = FServer.nextPendingConnection()) {
                ++Connections;
                connect(s, &QLocalSocket::readyRead, this, [this, s] {
                    while (s->canReadLine())
                        Lines << QString::fromUtf8(s->readLine()).chopped(1);
                });
            }
        });
    }
    bool IsListening() const { return FServer.isListening(); }
    QStringList Lines;
    int Connections = 0;

private:
    QLocalServer FServer;
};

QString UniqueName(const char* what) {
    return TAuditLog::ServerName() + QLatin1Char('_') + QLatin1String(what) + QLatin1Char('_') +
           QString::number(QCoreApplication::applicationPid());
}

} // namespace

class TstAuditLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void serverIsNamedAfterServiceAndTopic() {
        QCOMPARE(TAuditLog::ServerName(), QStringLiteral("zeb_DdeLogTopic"));
    }

    void validatedEditionSendsOpenAndClose() {
        const QString name = UniqueName("validated");
        TLogServer server(name);
        QVERIFY(server.IsListening());
        TAuditLog log(true, name);
        log.Open(QStringLiteral("Viewer"));
        QVERIFY(log.HasConversation());
        log.Close();
        QTRY_COMPARE(server.Lines,
                     (QStringList{QStringLiteral("Viewer;;Open"), QStringLiteral("Viewer;;Close")}));
        QCOMPARE(server.Connections, 1);
    }

    void ordinaryEditionCreatesAndSendsNothing() {
        const QString name = UniqueName("ordinary");
        TLogServer server(name);
        QVERIFY(server.IsListening());
        TAuditLog log(false, name);
        log.Open(QStringLiteral("Viewer"));
        log.Log(QStringLiteral("Something"));
        QVERIFY(!log.HasConversation());
        log.Close();
        // A validated log after it: once its entries are in, a connection of the ordinary one, made
        // earlier, would have arrived before them.
        TAuditLog witness(true, name);
        witness.Open(QStringLiteral("Witness"));
        witness.Close();
        QTRY_COMPARE(server.Lines,
                     (QStringList{QStringLiteral("Witness;;Open"), QStringLiteral("Witness;;Close")}));
        QCOMPARE(server.Connections, 1);
    }

    void missingServerIsSilent() {
        const QString name = UniqueName("missing");
        QLocalServer::removeServer(name);
        TAuditLog log(true, name);
        log.Open(QStringLiteral("Viewer"));
        log.Log(QStringLiteral("Event"));
        log.Close();
        QVERIFY(!log.HasConversation());
    }

    void serverStartedLaterGetsLaterEntries() {
        const QString name = UniqueName("late");
        QLocalServer::removeServer(name);
        TAuditLog log(true, name);
        log.Open(QStringLiteral("Viewer"));
        TLogServer server(name);
        QVERIFY(server.IsListening());
        log.Close();
        QTRY_COMPARE(server.Lines, QStringList{QStringLiteral("Viewer;;Close")});
    }
};

QTEST_GUILESS_MAIN(TstAuditLog)
#include "tst_auditlog.moc"
