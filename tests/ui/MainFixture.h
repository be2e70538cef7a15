#pragma once
// Helpers of the main window's tests: recordings made by zebtool, a load waited for to its
// end, and the window's commands by name.

#include "DialogHelpers.h"
#include "ui/Main.h"

#include <QAction>
#include <QProcess>
#include <QSignalSpy>

inline void Generate(const QStringList& args) {
    QProcess p;
    p.start(QStringLiteral(ZEBTOOL), QStringList{QStringLiteral("gen"), QStringLiteral("--quiet")} + args);
    QVERIFY(p.waitForFinished(120000));
    QCOMPARE(p.exitCode(), 0);
}

// Opens the file and waits for the loader's last report, whose result goes to *result.
inline bool Load(TForm1& f, const QString& file, int* result = nullptr) {
    QSignalSpy spy(&f, &TForm1::loadFinished);
    if (!f.OpenFile(file) || !spy.wait(120000)) return false;
    if (result) *result = int(spy.first().first().value<TLoadReport>());
    return true;
}

inline QAction* Action(TForm1& f, const QString& name) {
    return Child<QAction>(f, name);
}
