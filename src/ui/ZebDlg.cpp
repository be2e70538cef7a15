#include "ui/ZebDlg.h"

#include "config/Texts.h"
#include "config/ZebReg.h"

#include <QApplication>
#include <QColorDialog>
#include <QCursor>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTimer>

#include <array>

namespace zeb {

namespace {

struct TEnvironment {
    QPointer<QWidget> MainWindow;
#ifdef ZEB_PARTNER_EDITION
    QString DataFileExtension = QStringLiteral(".dvk");
#else
    QString DataFileExtension = QStringLiteral(".zeb");
#endif
    bool NativeDialogs = true;
    TZebDlg::TDialogHook Hook;
};

TEnvironment& Env() {
    static TEnvironment env;
    return env;
}

QWidget* DialogParent() {
    if (Env().MainWindow) return Env().MainWindow;
    return QApplication::activeWindow();
}

// An hourglass the caller has set gives way to the arrow while the dialog is up; whatever the
// cursor was comes back afterwards.
class TCursorKeeper {
public:
    TCursorKeeper() : FPushed(QGuiApplication::overrideCursor() != nullptr) {
        if (FPushed) QGuiApplication::setOverrideCursor(QCursor(Qt::ArrowCursor));
    }
    ~TCursorKeeper() {
        if (FPushed) QGuiApplication::restoreOverrideCursor();
    }
    TCursorKeeper(const TCursorKeeper&) = delete;
    TCursorKeeper& operator=(const TCursorKeeper&) = delete;

private:
    bool FPushed;
};

// Runs a dialog modally; shown is run once the dialog is on screen, then the test hook.
int Exec(QDialog& dlg, const std::function<void()>& shown = {}) {
    TCursorKeeper cursor;
    dlg.setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    QTimer::singleShot(0, &dlg, [&dlg, shown] {
        if (shown) shown();
        if (Env().Hook) Env().Hook(&dlg);
    });
    return dlg.exec();
}

// ---- message box

struct TButtonInfo {
    TMsgDlgBtn Button;
    const char* Name; // the push button's object name
    TTextId Caption;
    QMessageBox::ButtonRole Role;
    TModalResult Result;
};

// In the order the buttons are laid out and walked.
constexpr std::array kButtons{
    TButtonInfo{TMsgDlgBtn::Yes, "Yes", TTextId::MsgBtnYes, QMessageBox::YesRole, TModalResult::Yes},
    TButtonInfo{TMsgDlgBtn::No, "No", TTextId::MsgBtnNo, QMessageBox::NoRole, TModalResult::No},
    TButtonInfo{TMsgDlgBtn::OK, "OK", TTextId::MsgBtnOk, QMessageBox::AcceptRole, TModalResult::Ok},
    TButtonInfo{TMsgDlgBtn::Cancel, "Cancel", TTextId::MsgBtnCancel, QMessageBox::RejectRole,
                TModalResult::Cancel},
    TButtonInfo{TMsgDlgBtn::Abort, "Abort", TTextId::MsgBtnAbort, QMessageBox::RejectRole,
                TModalResult::Abort},
    TButtonInfo{TMsgDlgBtn::Retry, "Retry", TTextId::MsgBtnRetry, QMessageBox::AcceptRole,
                TModalResult::Retry},
    TButtonInfo{TMsgDlgBtn::Ignore, "Ignore", TTextId::MsgBtnIgnore, QMessageBox::AcceptRole,
                TModalResult::Ignore},
    TButtonInfo{TMsgDlgBtn::All, "All", TTextId::MsgBtnAll, QMessageBox::YesRole, TModalResult::All},
    TButtonInfo{TMsgDlgBtn::NoToAll, "NoToAll", TTextId::MsgBtnNoToAll, QMessageBox::NoRole,
                TModalResult::NoToAll},
    TButtonInfo{TMsgDlgBtn::YesToAll, "YesToAll", TTextId::MsgBtnYesToAll, QMessageBox::YesRole,
                TModalResult::YesToAll},
    TButtonInfo{TMsgDlgBtn::Help, "Help", TTextId::MsgBtnHelp, QMessageBox::HelpRole, TModalResult::Help},
    TButtonInfo{TMsgDlgBtn::Close, "Close", TTextId::MsgBtnClose, QMessageBox::RejectRole,
                TModalResult::Close},
};

const TButtonInfo* InfoOf(TMsgDlgBtn button) {
    for (const TButtonInfo& b : kButtons)
        if (b.Button == button) return &b;
    return nullptr;
}

// Walks the buttons in order: the one named like the default becomes the default and gets
// the focus, every other loses its default mark (and may not take it on by focus).
void MarkDefault(QMessageBox& box, const QString& defaultName) {
    const auto buttons = box.findChildren<QPushButton*>();
    for (QPushButton* pb : buttons) {
        if (pb->objectName() == defaultName) {
            pb->setAutoDefault(true);
            box.setDefaultButton(pb);
            pb->setFocus(Qt::OtherFocusReason);
        } else {
            pb->setDefault(false);
            pb->setAutoDefault(false);
        }
    }
}

QMessageBox::Icon IconOf(TMsgDlgType kind) {
    switch (kind) {
    case TMsgDlgType::Warning:
        return QMessageBox::Warning;
    case TMsgDlgType::Error:
        return QMessageBox::Critical;
    case TMsgDlgType::Information:
        return QMessageBox::Information;
    case TMsgDlgType::Confirmation:
        return QMessageBox::Question;
    case TMsgDlgType::Custom:
        break;
    }
    return QMessageBox::NoIcon;
}

QString TitleOf(TMsgDlgType kind) {
    switch (kind) {
    case TMsgDlgType::Warning:
        return Txt(TTextId::MsgTitleWarning);
    case TMsgDlgType::Error:
        return Txt(TTextId::MsgTitleError);
    case TMsgDlgType::Information:
        return Txt(TTextId::MsgTitleInformation);
    case TMsgDlgType::Confirmation:
        return Txt(TTextId::MsgTitleConfirm);
    case TMsgDlgType::Custom:
        break;
    }
    return TxtFmt(TTextId::MainCaption, {ZebSettings().ProductShort});
}

// ---- file dialogs

QString SuffixOf(const QString& extension) {
    return extension.startsWith(QLatin1Char('.')) ? extension.mid(1) : extension;
}

QFileDialog::Options WithEnvironment(QFileDialog::Options options) {
    if (!Env().NativeDialogs) options |= QFileDialog::DontUseNativeDialog;
    return options;
}

void Prepare(QFileDialog& dlg, const QString& title, const QString& filter, const QString& defaultExt,
             QFileDialog::Options options) {
    if (!title.isEmpty()) dlg.setWindowTitle(title);
    dlg.setOptions(WithEnvironment(options));
    dlg.setSizeGripEnabled(true);
    if (!filter.isEmpty()) dlg.setNameFilter(TZebDlg::QtFilter(filter));
    if (!defaultExt.isEmpty()) dlg.setDefaultSuffix(SuffixOf(defaultExt));
}

// Starts the dialog at fileName: in its folder when it names one, else in initialDir.
void StartAt(QFileDialog& dlg, const QString& initialDir, const QString& fileName) {
    const QFileInfo fi(fileName);
    const bool hasFolder = fileName.contains(QLatin1Char('/')) || fileName.contains(QLatin1Char('\\'));
    const QString folder = hasFolder ? fi.absolutePath() : initialDir;
    if (!folder.isEmpty()) dlg.setDirectory(folder);
    if (!fileName.isEmpty()) dlg.selectFile(fi.fileName());
}

bool RunOpen(const QString& title, const QString& initialDir, const QString& filter,
             const QString& defaultExt, QFileDialog::Options options, bool multiple, QStringList& files) {
    QFileDialog dlg(DialogParent());
    Prepare(dlg, title, filter, defaultExt, options);
    dlg.setAcceptMode(QFileDialog::AcceptOpen);
    dlg.setFileMode(multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    StartAt(dlg, initialDir, files.value(0));
    if (Exec(dlg) != QDialog::Accepted) return false;
    const QStringList chosen = dlg.selectedFiles();
    if (chosen.isEmpty()) return false;
    files = chosen;
    return true;
}

QString ZebOpenFilter(bool withPartnerFiles, bool withAllFiles) {
    QString filter = TZebDlg::ZebFilter();
    const QString partner = QStringLiteral(".dvk");
    if (withPartnerFiles && TZebDlg::DataFileExtension() != partner)
        filter += QLatin1Char('|') + TZebDlg::BuildFilter(Txt(TTextId::DlgZebFile), partner);
    if (withAllFiles) filter += QLatin1Char('|') + Txt(TTextId::DlgAllFiles) + QStringLiteral(" (*)|*");
    return filter;
}

} // namespace

// ---- filters

QString TZebDlg::BuildFilter(const QString& label, const QString& extension) {
    return label + QStringLiteral(" (*") + extension + QStringLiteral(")|*") + extension;
}

QString TZebDlg::ZebFilter() {
    return BuildFilter(Txt(TTextId::DlgZebFile), DataFileExtension());
}
QString TZebDlg::MseFilter() {
    return BuildFilter(Txt(TTextId::DlgZebTemplate), TemplateFileExtension());
}

QString TZebDlg::QtFilter(const QString& filter) {
    const QStringList parts = filter.split(QLatin1Char('|'));
    static const QRegularExpression trailingPatterns(QStringLiteral("\\s*\\(([^()]*)\\)\\s*$"));
    QStringList entries;
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        const QString label = parts[i].trimmed();
        QStringList patterns = parts.value(i + 1).split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString& p : patterns)
            p = p.trimmed();
        patterns.removeAll(QString());
        if (patterns.isEmpty()) {
            if (!label.isEmpty()) entries << label;
            continue;
        }
        const QString joined = patterns.join(QLatin1Char(' '));
        // Qt reads the patterns from the label's last parentheses, so a label that already
        // shows them keeps its text and gets Qt's separators.
        const QRegularExpressionMatch m = trailingPatterns.match(label);
        QString shown = m.hasMatch() ? label.left(m.capturedStart()) : label;
        if (m.hasMatch()) {
            QStringList inLabel =
                m.captured(1).split(QRegularExpression(QStringLiteral("[;\\s]+")), Qt::SkipEmptyParts);
            if (inLabel != patterns) shown = label;
        }
        if (shown.isEmpty())
            entries << joined;
        else
            entries << shown + QStringLiteral(" (") + joined + QLatin1Char(')');
    }
    return entries.join(QStringLiteral(";;"));
}

QString TZebDlg::WithDefaultExtension(const QString& fileName, const QString& extension) {
    if (fileName.isEmpty() || extension.isEmpty()) return fileName;
    if (!QFileInfo(fileName).suffix().isEmpty()) return fileName;
    const QString suffix = SuffixOf(extension);
    if (fileName.endsWith(QLatin1Char('.'))) return fileName + suffix;
    return fileName + QLatin1Char('.') + suffix;
}

// ---- message boxes

TModalResult TZebDlg::ShowMsgBox(const QString& text, TMsgDlgType kind, TMsgDlgButtons buttons,
                                 TMsgDlgBtn defaultButton) {
    QMessageBox box(DialogParent());
    box.setObjectName(QStringLiteral("ZebMsgBox"));
    box.setIcon(IconOf(kind));
    box.setWindowTitle(TitleOf(kind));
    box.setTextFormat(Qt::PlainText);
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    // The texts put a blank before "?", "!" and ":"; keep the mark on the line of its word.
    static const QRegularExpression blankBeforeMark(QStringLiteral(" ([?!:;])"));
    shown.replace(blankBeforeMark, QStringLiteral("\u00A0\\1"));
    box.setText(shown);

    for (const TButtonInfo& b : kButtons) {
        if (!buttons.testFlag(b.Button)) continue;
        auto* pb = new QPushButton(Txt(b.Caption), &box);
        pb->setObjectName(QLatin1String(b.Name));
        box.addButton(pb, b.Role);
    }
    if (box.buttons().isEmpty()) {
        auto* pb = new QPushButton(Txt(TTextId::MsgBtnOk), &box);
        pb->setObjectName(QStringLiteral("OK"));
        box.addButton(pb, QMessageBox::AcceptRole);
    }
    // Escape answers like the button a user would expect to cancel.
    for (TMsgDlgBtn esc : {TMsgDlgBtn::Cancel, TMsgDlgBtn::No, TMsgDlgBtn::Close, TMsgDlgBtn::Abort}) {
        if (auto* pb = box.findChild<QPushButton*>(QLatin1String(InfoOf(esc)->Name))) {
            box.setEscapeButton(pb);
            break;
        }
    }
    if (box.buttons().size() == 1) box.setEscapeButton(box.buttons().constFirst());

    const TButtonInfo* def = InfoOf(defaultButton);
    const QString defaultName = def ? QLatin1String(def->Name) : QString();
    MarkDefault(box, defaultName);
    // Showing the box lets Qt mark an accepting button as default; mark again once it is up.
    Exec(box, [&box, defaultName] { MarkDefault(box, defaultName); });

    const QAbstractButton* clicked = box.clickedButton();
    if (!clicked) return TModalResult::Cancel;
    for (const TButtonInfo& b : kButtons)
        if (clicked->objectName() == QLatin1String(b.Name)) return b.Result;
    return TModalResult::Cancel;
}

TModalResult TZebDlg::ShowMsg(const QString& text, TMsgDlgType kind) {
    return ShowMsgBox(text, kind, TMsgDlgBtn::OK, TMsgDlgBtn::OK);
}

TModalResult TZebDlg::ShowErrMsg(const QString& text) {
    return ShowMsg(text, TMsgDlgType::Error);
}

// ---- open dialogs

bool TZebDlg::OpenFile(const QString& title, const QString& initialDir, const QString& filter,
                       const QString& defaultExt, QString& fileName, TOptions options) {
    QStringList files{fileName};
    if (!RunOpen(title, initialDir, filter, defaultExt, options, false, files)) return false;
    fileName = files.constFirst();
    return true;
}

bool TZebDlg::OpenZebFile(const QString& title, const QString& initialDir, QString& fileName,
                          bool withPartnerFiles, bool withAllFiles, TOptions options) {
    return OpenFile(title, initialDir, ZebOpenFilter(withPartnerFiles, withAllFiles), DataFileExtension(),
                    fileName, options);
}

bool TZebDlg::OpenMultipleZebFile(const QString& title, const QString& initialDir, QStringList& fileNames,
                                  bool withPartnerFiles, bool withAllFiles, TOptions options) {
    QStringList files = fileNames;
    if (!RunOpen(title, initialDir, ZebOpenFilter(withPartnerFiles, withAllFiles), DataFileExtension(),
                 options, true, files))
        return false;
    fileNames = files;
    return true;
}

bool TZebDlg::OpenMseFile(const QString& title, const QString& initialDir, QString& fileName,
                          TOptions options) {
    return OpenFile(title, initialDir, MseFilter(), TemplateFileExtension(), fileName, options);
}

bool TZebDlg::CreateMseFile(QString& fileName) {
    QString chosen = fileName;
    if (!SaveMseFile(QString(), QString(), chosen)) return false;
    fileName = chosen;
    if (!QFileInfo::exists(fileName)) {
        QFile file(fileName);
        if (file.open(QIODevice::WriteOnly)) file.close();
    }
    return true;
}

// ---- save dialogs

bool TZebDlg::SaveFile(const QString& title, const QString& initialDir, const QString& filter,
                       const QString& defaultExt, QString& fileName, bool promptOverwrite, TOptions options) {
    QFileDialog dlg(DialogParent());
    if (!promptOverwrite) options |= QFileDialog::DontConfirmOverwrite;
    Prepare(dlg, title, filter, defaultExt, options);
    dlg.setAcceptMode(QFileDialog::AcceptSave);
    dlg.setFileMode(QFileDialog::AnyFile);
    StartAt(dlg, initialDir, fileName);
    if (Exec(dlg) != QDialog::Accepted) return false;
    const QString chosen = dlg.selectedFiles().value(0);
    if (chosen.isEmpty()) return false;
    // A native dialog may hand back the bare name.
    fileName = WithDefaultExtension(chosen, defaultExt);
    return true;
}

bool TZebDlg::SaveZebFile(const QString& title, const QString& initialDir, QString& fileName,
                          bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, ZebFilter(), DataFileExtension(), fileName, promptOverwrite, options);
}

bool TZebDlg::SaveMseFile(const QString& title, const QString& initialDir, QString& fileName,
                          bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, MseFilter(), TemplateFileExtension(), fileName, promptOverwrite,
                    options);
}

bool TZebDlg::SaveMatlabFile(const QString& title, const QString& initialDir, QString& fileName,
                             bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, MatlabFilter(), QStringLiteral(".mat"), fileName, promptOverwrite,
                    options);
}

bool TZebDlg::SaveBinaryFile(const QString& title, const QString& initialDir, QString& fileName,
                             bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, BinaryFilter(), QStringLiteral(".bin"), fileName, promptOverwrite,
                    options);
}

bool TZebDlg::SaveBinaryTimeFile(const QString& title, const QString& initialDir, QString& fileName,
                                 bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, BinaryTimeFilter(), QStringLiteral(".bin"), fileName, promptOverwrite,
                    options);
}

bool TZebDlg::SaveBmpFile(const QString& title, const QString& initialDir, QString& fileName,
                          bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, BmpFilter(), QStringLiteral(".bmp"), fileName, promptOverwrite,
                    options);
}

bool TZebDlg::SaveJpgFile(const QString& title, const QString& initialDir, QString& fileName,
                          bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, JpgFilter(), QStringLiteral(".jpg"), fileName, promptOverwrite,
                    options);
}

bool TZebDlg::SaveCsvFile(const QString& title, const QString& initialDir, QString& fileName,
                          bool promptOverwrite, TOptions options) {
    return SaveFile(title, initialDir, CsvFilter(), QStringLiteral(".csv"), fileName, promptOverwrite,
                    options);
}

// ---- folder and colour

bool TZebDlg::SelectDirectory(const QString& caption, QString& folder) {
    QFileDialog dlg(DialogParent());
    dlg.setWindowTitle(caption.isEmpty() ? Txt(TTextId::DlgSelectDirectory) : caption);
    dlg.setOptions(WithEnvironment(QFileDialog::ShowDirsOnly));
    dlg.setFileMode(QFileDialog::Directory);
    dlg.setAcceptMode(QFileDialog::AcceptOpen);
    if (!folder.isEmpty()) dlg.setDirectory(folder);

    QScreen* screen = DialogParent() ? DialogParent()->screen() : QGuiApplication::primaryScreen();
    dlg.resize(dlg.sizeHint());
    if (screen) dlg.move(screen->availableGeometry().center() - dlg.rect().center());

    if (Exec(dlg) != QDialog::Accepted) return false;
    const QString chosen = dlg.selectedFiles().value(0);
    if (chosen.isEmpty()) return false;
    folder = chosen;
    return true;
}

bool TZebDlg::SelectColor(QColor& color) {
    QColorDialog dlg(DialogParent());
    if (!Env().NativeDialogs) dlg.setOption(QColorDialog::DontUseNativeDialog);
    QColorDialog::setCustomColor(0, color);
    dlg.setCurrentColor(color);
    if (Exec(dlg) != QDialog::Accepted) return false;
    color = dlg.selectedColor();
    return true;
}

// ---- environment

void TZebDlg::SetMainWindow(QWidget* window) {
    Env().MainWindow = window;
}
QWidget* TZebDlg::MainWindow() {
    return Env().MainWindow;
}
void TZebDlg::SetDataFileExtension(const QString& extension) {
    Env().DataFileExtension = extension;
}
QString TZebDlg::DataFileExtension() {
    return Env().DataFileExtension;
}
void TZebDlg::SetNativeDialogs(bool on) {
    Env().NativeDialogs = on;
}
bool TZebDlg::InputBox(const QString& title, const QString& label, QString& text, QPoint at) {
    QInputDialog dlg(MainWindow());
    dlg.setObjectName(QStringLiteral("InputBox"));
    dlg.setWindowTitle(title);
    dlg.setLabelText(label);
    dlg.setOptions(QInputDialog::UsePlainTextEditForTextInput);
    dlg.setTextValue(text);
    dlg.setOkButtonText(Txt(TTextId::BtnOk));
    dlg.setCancelButtonText(Txt(TTextId::BtnCancel));
    dlg.move(at);
    if (Exec(dlg) != QDialog::Accepted) return false;
    text = dlg.textValue();
    return true;
}

void TZebDlg::SetDialogHook(TDialogHook hook) {
    Env().Hook = std::move(hook);
}

} // namespace zeb
