#include "app/Startup.h"

#include "app/AuditLog.h"
#include "app/Export.h"
#include "config/Language.h"
#include "config/QtOptions.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "ui/BigDataDlg.h"
#include "ui/Main.h"
#include "ui/ZebDlg.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QRegularExpression>
#include <QScreen>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

namespace zeb {

namespace {

constexpr const char* kZebViewerName = "zeb_viewer";

void Print(QString text, FILE* stream) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

void PrintErr(const QString& text) {
    Print(text, stderr);
}


QStringList RawArguments(int argc, char** argv) {
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    return args;
}

// Help, version and a wrong call are answered before the application object exists, so they
// work without a display; -1 when the program goes on.
int AnswerEarly(const TCommandLine& cmd) {
    switch (cmd.Mode) {
    case TCommandLine::TMode::Help:
        Print(Txt(TTextId::CliUsage), stdout);
        return 0;
    case TCommandLine::TMode::Version:
        Print(VersionText(), stdout);
        return 0;
    case TCommandLine::TMode::Invalid:
        PrintErr(TxtFmt(TTextId::CliBadArgument, {cmd.Error}));
        PrintErr(Txt(TTextId::CliUsage));
        return 2;
    default:
        return -1;
    }
}

// Export runs never need a display: they are chosen before the application object exists,
// because the platform cannot change afterwards.
bool WantsExport(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strncmp(argv[i], "--export-", 9) == 0 || std::strcmp(argv[i], "--report") == 0 ||
            std::strcmp(argv[i], "--summary") == 0)
            return true;
    return false;
}


} // namespace

TCommandLine ParseCommandLine(const QStringList& args) {
    TCommandLine cmd;
    auto invalid = [&cmd](const QString& arg) {
        cmd.Mode = TCommandLine::TMode::Invalid;
        cmd.Error = arg;
        return cmd;
    };
    // Help and version win over everything else on the line.
    for (const QString& a : args)
        if (a == QLatin1String("--help") || a == QLatin1String("-h") || a == QLatin1String("/?")) {
            cmd.Mode = TCommandLine::TMode::Help;
            return cmd;
        }
    if (args.contains(QLatin1String("--version"))) {
        cmd.Mode = TCommandLine::TMode::Version;
        return cmd;
    }
    bool sizeGiven = false, templateGiven = false;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        const bool hasValue = i + 1 < args.size();
        bool qtValue = false;
        if (IsQtOption(a, qtValue)) {
            if (qtValue && !hasValue) return invalid(a);
            if (qtValue) ++i;
        } else if (a.startsWith(QLatin1String("--export-"))) {
            const QString format = a.mid(9);
            static const QStringList kFormats = {QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("bmp"),
                                                 QStringLiteral("pdf"), QStringLiteral("svg")};
            if (!kFormats.contains(format)) return invalid(a);
            if (!cmd.Picture.isEmpty() || !hasValue) return invalid(a);
            cmd.Format = format;
            cmd.Picture = args[++i];
        } else if (a == QLatin1String("--report")) {
            if (!cmd.Report.isEmpty() || !hasValue) return invalid(a);
            cmd.Report = args[++i];
        } else if (a == QLatin1String("--summary")) {
            if (!cmd.Summary.isEmpty() || !hasValue) return invalid(a);
            cmd.Summary = args[++i];
            const QString suffix = QFileInfo(cmd.Summary).suffix().toLower();
            if (suffix != QLatin1String("pdf") && suffix != QLatin1String("csv")) return invalid(cmd.Summary);
        } else if (a == QLatin1String("--size")) {
            if (!hasValue || sizeGiven) return invalid(a);
            static const QRegularExpression re(QStringLiteral("^(\\d{1,5})[xX](\\d{1,5})$"));
            const QRegularExpressionMatch m = re.match(args[++i]);
            const int w = m.hasMatch() ? m.captured(1).toInt() : 0;
            const int h = m.hasMatch() ? m.captured(2).toInt() : 0;
            if (w < 16 || h < 16 || w > 20000 || h > 20000) return invalid(args[i]);
            cmd.Size = QSize(w, h);
            sizeGiven = true;
        } else if (a == QLatin1String("--notices")) {
            if (cmd.Notices) return invalid(a);
            cmd.Notices = true;
        } else if (a == QLatin1String("--activation-energy")) {
            if (!hasValue || cmd.ActivationEnergy > 0.0) return invalid(a);
            bool ok = false;
            const double v = args[++i].toDouble(&ok);
            if (!ok || !(v > 0.0) || !std::isfinite(v)) return invalid(args[i]);
            cmd.ActivationEnergy = v;
        } else if (a == QLatin1String("--template")) {
            if (!hasValue || templateGiven) return invalid(a);
            cmd.Template = args[++i];
            templateGiven = true;
        } else if (a.startsWith(QLatin1String("--"))) {
            return invalid(a);
        } else {
            cmd.Files << a;
        }
    }
    // Each option belongs to its export.
    if (cmd.Notices && cmd.Picture.isEmpty()) return invalid(QStringLiteral("--notices"));
    if (cmd.ActivationEnergy > 0.0 && cmd.Report.isEmpty() && cmd.Summary.isEmpty())
        return invalid(QStringLiteral("--activation-energy"));
    if (!cmd.Summary.isEmpty()) {
        // A summary is an export of its own, of one file or many.
        if (!cmd.Picture.isEmpty() || !cmd.Report.isEmpty() || sizeGiven)
            return invalid(!cmd.Report.isEmpty() ? QStringLiteral("--report")
                                                 : sizeGiven ? QStringLiteral("--size") : QStringLiteral("--export-") + cmd.Format);
        if (cmd.Files.isEmpty()) return invalid(QStringLiteral("FILE"));
        cmd.Mode = TCommandLine::TMode::Summary;
    } else if (!cmd.Picture.isEmpty() || !cmd.Report.isEmpty()) {
        if (cmd.Files.size() != 1) return invalid(cmd.Files.value(1, QStringLiteral("FILE")));
        cmd.Mode = TCommandLine::TMode::Export;
    } else if (sizeGiven || templateGiven) {
        // Only the export knows these.
        return invalid(sizeGiven ? QStringLiteral("--size") : QStringLiteral("--template"));
    }
    return cmd;
}

QString VersionText() {
    QString text = QString::fromLatin1(kZebViewerName) + QLatin1Char(' ') + QStringLiteral(ZEB_VERSION);
    const bool partner = ZebSettings().BrandVariant != 0;
    const QStringList companions = {partner ? QStringLiteral("trk_cutter") : QStringLiteral("zeb_cutter"),
                                    partner ? QStringLiteral("trk2csv") : QStringLiteral("zeb2csv"),
                                    QStringLiteral("zeb_previewer")};
    QStringList found;
    for (const QString& name : companions) {
        const QFileInfo fi(ZebProgramPath(name));
        if (fi.isFile() && fi.isExecutable()) found << name;
    }
    const QString dir = QDir::toNativeSeparators(ZebProgramDir());
    text += QLatin1Char('\n');
    text += found.isEmpty() ? TxtFmt(TTextId::CliVersionNoCompanions, {dir})
                            : TxtFmt(TTextId::CliVersionCompanions, {dir, found.join(QStringLiteral(", "))});
    return text;
}

int RunViewer(int argc, char** argv, const TStartupObserver& observer) {
    auto step = [&observer](TStartupStep s, TForm1* form) {
        if (observer) observer(s, form);
    };

    // 1. and 2. the settings root and the program's settings
    ZebSettingsRoot();
    const QString programName = QString::fromLatin1(kZebProgramViewer);
    LoadZebSettings(programName);
    step(TStartupStep::SettingsLoaded, nullptr);

    // 3. every text in the user's language, before any window or dialog exists
    const TZebSettings& s = ZebSettings();
    ApplyStartupLanguage(s.Language, s.LocDate, s.LocDecimalSeparator);
    step(TStartupStep::LanguageSwitched, nullptr);

    if (const int answered = AnswerEarly(ParseCommandLine(RawArguments(argc, argv))); answered >= 0)
        return answered;

    // 4. the application object
    const bool exporting = WantsExport(argc, argv);
    if (exporting && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // The desktop matches the window to its entry (and so its icon) by this name.
    QGuiApplication::setDesktopFileName(QStringLiteral("com.velmorant.ZebViewer"));
    QApplication app(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/com.velmorant.ZebViewer.svg")));
    InstallQtTranslations();
    SetZebScreenSizeProvider([] {
        const QScreen* screen = QGuiApplication::primaryScreen();
        return screen ? screen->availableGeometry().size() : QSize();
    });
    CheckZebScreenSize(ZebScreenSize());
    // No display name: the platform would add it to every window caption a second time.
    step(TStartupStep::ApplicationCreated, nullptr);

    // Read again as Qt decodes it (the raw bytes above decide only what needs no window).
    const TCommandLine cmd = ParseCommandLine(QCoreApplication::arguments().mid(1));
    if (const int answered = AnswerEarly(cmd); answered >= 0) return answered;

    TZebDlg::SetDataFileExtension(s.DataFileExt);
    // An export makes no window: the store, a chart and the report do the work.
    if (cmd.Mode == TCommandLine::TMode::Export || cmd.Mode == TCommandLine::TMode::Summary) {
        AuditLog().Open(QStringLiteral("Viewer"));
        const int exitCode = cmd.Mode == TCommandLine::TMode::Summary ? RunSummary(cmd) : RunExport(cmd);
        AuditLog().Close();
        return exitCode;
    }

    // 5. the forms that live for the whole run
    auto form = std::make_unique<TForm1>();
    auto* bigDataDlg = new TfrmBigDataDlg(form.get());
    form->SetBigDataDlg(bigDataDlg);
    form->SetCommandLine(cmd.Files);
    TZebDlg::SetMainWindow(form.get());
    step(TStartupStep::FormsCreated, form.get());

    // 6. the audit log
    AuditLog().Open(QStringLiteral("Viewer"));
    step(TStartupStep::AuditLogOpened, form.get());

    // 7. the window's loop
    form->show();
    step(TStartupStep::EventLoopStarted, form.get());
    const int exitCode = QApplication::exec();
    // The window writes the settings as it goes.
    TZebDlg::SetMainWindow(nullptr);
    form.reset();
    step(TStartupStep::MainWindowDestroyed, nullptr);

    // 8. the closing entry
    AuditLog().Close();
    step(TStartupStep::AuditLogClosed, nullptr);
    return exitCode;
}

} // namespace zeb
