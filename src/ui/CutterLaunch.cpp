#include "ui/CutterLaunch.h"

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"

#include <QDir>
#include <QProcess>

#include <charconv>

using zeb::TTextId;
using zeb::Txt;
using zeb::TxtFmt;

namespace {

// Shortest text that reads back to the same double, with "." whatever the locale: the cutter's
// window must hold exactly the points the chart shows at its edges.
QString ExactNumber(double v) {
    char buf[32];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    return QString::fromLatin1(buf, int(r.ptr - buf));
}

} // namespace

QStringList CutterArguments(const TDataBase& db, const QString& target, const QString& kind) {
    QStringList channels;
    for (int i = 0; i < db.Curve_Count(); ++i)
        if (db.Curve_IsAvailable(i)) channels << QString::number(db.Curve_FileChannel(i));
    if (channels.isEmpty()) return {};
    const TAxisState& bottom = db.Axis_Get(axBottom);
    QStringList args{QDir::toNativeSeparators(db.FileName()), QDir::toNativeSeparators(target),
                     ExactNumber(bottom.Min), ExactNumber(bottom.Max), QString::number(channels.size()),
                     channels.join(QLatin1Char(','))};
    if (!kind.isEmpty()) args << kind;
    return args;
}

TCutterLaunch::TCutterLaunch(QObject* parent) : QObject(parent) {}

TCutterLaunch::~TCutterLaunch() {
    WaitForAll();
}

void TCutterLaunch::WaitForAll() {
    for (QProcess* cutter : std::vector<QProcess*>(FCutters)) {
        cutter->disconnect(this);
        cutter->waitForFinished(-1);
    }
    FCutters.clear();
}

void TCutterLaunch::Start(const TDataBase& db, const QString& target, const QString& kind) {
    const QStringList args = CutterArguments(db, target, kind);
    if (args.isEmpty()) {
        Q_EMIT statusText(Txt(TTextId::MsgCutterNoChannel));
        return;
    }
    const bool partner = ZebSettings().BrandVariant != 0;
    auto* cutter = new QProcess(this);
    // Every argument travels as one word; on Windows Qt quotes each in double quotes.
    cutter->setProgram(ZebProgramPath(partner ? QStringLiteral("trk_cutter") : QStringLiteral("zeb_cutter")));
    cutter->setArguments(args);
    cutter->setProcessChannelMode(QProcess::SeparateChannels);
    const QString shown = QDir::toNativeSeparators(target);
    connect(cutter, &QProcess::finished, this, [this, cutter, shown](int code, QProcess::ExitStatus status) {
        std::erase(FCutters, cutter);
        const QString message = QString::fromLocal8Bit(cutter->readAllStandardError()).trimmed();
        cutter->deleteLater();
        if (status == QProcess::NormalExit && code == 0)
            Q_EMIT statusText(TxtFmt(TTextId::MsgCutterDone, {shown}));
        else
            Q_EMIT statusText(
                TxtFmt(TTextId::MsgCutterFailed, {QString::number(status == QProcess::NormalExit ? code : -1),
                                                  message.isEmpty() ? cutter->errorString()
                                                                    : message.section(QLatin1Char('\n'), 0, 0)}));
        Q_EMIT finished(status == QProcess::NormalExit ? code : -1);
    });
    connect(cutter, &QProcess::errorOccurred, this, [this, cutter](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart) return; // the rest ends in finished()
        std::erase(FCutters, cutter);
        Q_EMIT statusText(TxtFmt(TTextId::MsgCutterFailed, {QStringLiteral("-1"), cutter->errorString()}));
        cutter->deleteLater();
        Q_EMIT finished(-1);
    });
    FCutters.push_back(cutter);
    Q_EMIT statusText(TxtFmt(TTextId::MsgCutterRunning, {shown}));
    cutter->start();
}
