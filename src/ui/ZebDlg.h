#pragma once
// TZebDlg: the one way the program shows a message box or a standard file, folder or colour
// dialog, so that all of them look and behave alike and speak the current language.
//
// Every operation saves the mouse cursor before the dialog (an hourglass set by the caller
// turns into the arrow while the dialog is up) and restores it afterwards.
//
// Filters are written in the "label|pattern|label|pattern" form; QtFilter() turns them into
// Qt's "label (pattern);;..." form when the dialog is built.

#include <QColor>
#include <QFileDialog>
#include <QFlags>
#include <QString>
#include <QStringList>

#include <functional>

class QDialog;
class QWidget;

namespace zeb {

enum class TMsgDlgType { Warning, Error, Information, Confirmation, Custom };

enum class TMsgDlgBtn : unsigned {
    Yes = 0x1,
    No = 0x2,
    OK = 0x4,
    Cancel = 0x8,
    Abort = 0x10,
    Retry = 0x20,
    Ignore = 0x40,
    All = 0x80,
    NoToAll = 0x100,
    YesToAll = 0x200,
    Help = 0x400,
    Close = 0x800,
};
Q_DECLARE_FLAGS(TMsgDlgButtons, TMsgDlgBtn)
Q_DECLARE_OPERATORS_FOR_FLAGS(TMsgDlgButtons)

// The result of a message box: the button pressed; Cancel when it was closed without one.
enum class TModalResult {
    None,
    Ok,
    Cancel,
    Abort,
    Retry,
    Ignore,
    Yes,
    No,
    Close,
    Help,
    All,
    NoToAll,
    YesToAll
};

class TZebDlg {
public:
    using TOptions = QFileDialog::Options;

    // ---- filters
    static QString MatlabFilter() { return QStringLiteral("MATLAB (*.mat)|*.mat"); }
    static QString BinaryFilter() { return QStringLiteral("ZEB Binary file (*.bin)|*.bin"); }
    static QString BinaryTimeFilter() {
        return QStringLiteral("ZEB Binary2 file with time mark (*.bin2)|*.bin2");
    }
    static QString BmpFilter() { return QStringLiteral("Bitmap (*.bmp)|*.bmp"); }
    // The label's spelling is the program's own.
    static QString JpgFilter() { return QStringLiteral("JEPG (*.jpg)|*.jpg"); }
    static QString CsvFilter() { return QStringLiteral("Text (*.csv)|*.csv"); }
    // Built from the current language's record and the extension: "ZEB file (*.zeb)|*.zeb".
    static QString ZebFilter();
    static QString MseFilter();
    static QString BuildFilter(const QString& label, const QString& extension);
    // "a (*.x)|*.x|b|*.y;*.z" -> "a (*.x);;b (*.y *.z)".
    static QString QtFilter(const QString& filter);
    // The name with the extension appended when the name has none.
    static QString WithDefaultExtension(const QString& fileName, const QString& extension);

    // ---- message boxes
    // Centred over the main window; only the named default button is the default and has the
    // focus. A default button that is not in the set leaves every button unmarked.
    static TModalResult ShowMsgBox(const QString& text, TMsgDlgType kind, TMsgDlgButtons buttons,
                                   TMsgDlgBtn defaultButton);
    static TModalResult ShowMsg(const QString& text, TMsgDlgType kind);
    static TModalResult ShowErrMsg(const QString& text);

    // ---- open dialogs: true when confirmed; fileName is in/out
    static bool OpenFile(const QString& title, const QString& initialDir, const QString& filter,
                         const QString& defaultExt, QString& fileName, TOptions options = {});
    // withPartnerFiles adds the partner brand's recordings (".dvk", same layout), withAllFiles
    // an entry for every file.
    static bool OpenZebFile(const QString& title, const QString& initialDir, QString& fileName,
                            bool withPartnerFiles = false, bool withAllFiles = false, TOptions options = {});
    static bool OpenMultipleZebFile(const QString& title, const QString& initialDir, QStringList& fileNames,
                                    bool withPartnerFiles = false, bool withAllFiles = false,
                                    TOptions options = {});
    static bool OpenMseFile(const QString& title, const QString& initialDir, QString& fileName,
                            TOptions options = {});
    // Asks for a new template; a confirmed name that does not exist yet becomes an empty file.
    static bool CreateMseFile(QString& fileName);

    // ---- save dialogs: folder and name are split from fileName when it holds a folder,
    // otherwise the dialog starts in initialDir; an existing file is asked about first unless
    // promptOverwrite is off.
    static bool SaveFile(const QString& title, const QString& initialDir, const QString& filter,
                         const QString& defaultExt, QString& fileName, bool promptOverwrite = true,
                         TOptions options = {});
    static bool SaveZebFile(const QString& title, const QString& initialDir, QString& fileName,
                            bool promptOverwrite = true, TOptions options = {});
    static bool SaveMseFile(const QString& title, const QString& initialDir, QString& fileName,
                            bool promptOverwrite = true, TOptions options = {});
    static bool SaveMatlabFile(const QString& title, const QString& initialDir, QString& fileName,
                               bool promptOverwrite = true, TOptions options = {});
    static bool SaveBinaryFile(const QString& title, const QString& initialDir, QString& fileName,
                               bool promptOverwrite = true, TOptions options = {});
    // Offers ".bin2" files but appends ".bin" to a bare name, as the program always has.
    static bool SaveBinaryTimeFile(const QString& title, const QString& initialDir, QString& fileName,
                                   bool promptOverwrite = true, TOptions options = {});
    static bool SaveBmpFile(const QString& title, const QString& initialDir, QString& fileName,
                            bool promptOverwrite = true, TOptions options = {});
    static bool SaveJpgFile(const QString& title, const QString& initialDir, QString& fileName,
                            bool promptOverwrite = true, TOptions options = {});
    static bool SaveCsvFile(const QString& title, const QString& initialDir, QString& fileName,
                            bool promptOverwrite = true, TOptions options = {});

    // ---- text input
    // A text asked for in a small box whose top-left corner is at the screen point (the mouse);
    // line breaks may be typed. True when confirmed; text is in/out.
    static bool InputBox(const QString& title, const QString& label, QString& text, QPoint at);

    // ---- folder and colour
    // Centred on the screen, starting at folder; an empty caption means "Select folder".
    static bool SelectDirectory(const QString& caption, QString& folder);
    // The current colour is also the first custom colour.
    static bool SelectColor(QColor& color);

    // ---- environment
    // The window message boxes are centred over and parented to; the active window when unset.
    static void SetMainWindow(QWidget* window);
    static QWidget* MainWindow();
    // The data-file extension of the settings (".zeb"; ".dvk" in the partner edition).
    static void SetDataFileExtension(const QString& extension);
    static QString DataFileExtension();
    static QString TemplateFileExtension() { return QStringLiteral(".mse"); }
    // Off: Qt's own widget dialogs even where the platform has native ones (tests, offscreen).
    static void SetNativeDialogs(bool on);
    // Called with every dialog once it is shown and running modally, so that tests can drive it.
    using TDialogHook = std::function<void(QDialog*)>;
    static void SetDialogHook(TDialogHook hook);
};

} // namespace zeb
