#pragma once
// The audit log channel of the validated edition: the program reports its opening and closing
// to the suite's log server as entries "label;;event".
//
// On Windows the suite's server speaks DDE (service "zeb", topic "DdeLogTopic", poke of the item
// "DdeLogItem"). This implementation uses a local socket named "<service>_<topic>" on every
// platform (a named pipe on Windows), one entry per poke as a line of UTF-8 text ending in '\n';
// a DDE client can take its place behind the same interface.

#include <QString>

#include <memory>

class QLocalSocket;

namespace zeb {

#ifdef ZEB_VALIDATED_EDITION
inline constexpr bool kValidatedEdition = true;
#else
inline constexpr bool kValidatedEdition = false;
#endif

class TAuditLog {
public:
    static constexpr const char* kService = "zeb";
    static constexpr const char* kTopic = "DdeLogTopic";
    static constexpr const char* kItem = "DdeLogItem";

    // The edition is fixed when the program is built; tests choose it here. serverName
    // defaults to ServerName().
    explicit TAuditLog(bool validatedEdition = kValidatedEdition, const QString& serverName = {});
    ~TAuditLog();
    TAuditLog(const TAuditLog&) = delete;
    TAuditLog& operator=(const TAuditLog&) = delete;

    // "zeb_DdeLogTopic".
    static QString ServerName();

    // Remembers the label, opens the conversation and logs "Open".
    void Open(const QString& label);
    // Sends label + ";;" + event. Without a server nothing happens and nothing is reported.
    void Log(const QString& event);
    // Logs "Close" and ends the conversation.
    void Close();

    bool IsValidatedEdition() const { return FValidated; }
    // Whether a conversation object exists (never in the ordinary edition).
    bool HasConversation() const { return FSocket != nullptr; }
    QString Label() const { return FLabel; }

private:
    bool Connect();

    bool FValidated;
    QString FServerName;
    QString FLabel;
    std::unique_ptr<QLocalSocket> FSocket;
};

// The program's one channel, in the edition it was built as.
TAuditLog& AuditLog();

} // namespace zeb
