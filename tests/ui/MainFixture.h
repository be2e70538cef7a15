#pragma once
// Helpers of the main window's tests: generated recordings, the window's surroundings, a load
// waited for to its end, and the window's commands by name.

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "DialogHelpers.h"
#include "MakeRecording.h"
#include "ui/Main.h"
#include "ui/ZebDlg.h"

#include <QAction>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

// The window's surroundings: its own settings file and program folder in dir, English texts
// and Qt's own dialogs.
inline void UseTestEnvironment(const QTemporaryDir& dir) {
    qputenv("ZEB_SETTINGS_FILE", dir.filePath(QStringLiteral("settings.ini")).toLocal8Bit());
    SetZebProgramDir(dir.path());
    zeb::SwitchTexts(zeb::LangEnglish);
    zeb::TZebDlg::SetNativeDialogs(false);
}

// Opens the file and waits for the loader's last report, whose result goes to *result.
inline bool Load(TForm1& f, const QString& file, int* result = nullptr) {
    QSignalSpy spy(&f, &TForm1::loadFinished);
    if (!f.OpenFile(file) || !spy.wait(120000)) return false;
    if (result) *result = int(spy.first().first().value<TLoadReport>());
    return true;
}

// A shown window of the given size with the recording loaded; none if either failed.
inline std::unique_ptr<TForm1> OpenShown(const QString& file, QSize size = QSize(1200, 800)) {
    auto f = std::make_unique<TForm1>();
    f->setWindowState(Qt::WindowNoState);
    f->resize(size);
    f->show();
    if (!QTest::qWaitForWindowExposed(f.get()) || !Load(*f, file)) return {};
    return f;
}

inline QAction* Action(TForm1& f, const QString& name) {
    return Child<QAction>(f, name);
}
