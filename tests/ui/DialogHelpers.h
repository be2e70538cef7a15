#pragma once
// Helpers of the widget tests: a named child, acting on a modal dialog once it is up, and
// typing over a field as a user does.

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include <functional>

// The named child; a missing one is reported, so a renamed control is easy to find.
template <typename T> T* Child(const QObject& o, const QString& name) {
    T* c = o.findChild<T*>(name);
    if (!c) qWarning("missing %s", qPrintable(name));
    return c;
}
template <typename T> T* Child(const QObject* o, const QString& name) {
    return Child<T>(*o, name);
}

// Runs the action on the modal dialog of the given object name once it is up.
inline void WhenShown(const QString& objectName, std::function<void(QDialog*)> action, int tries = 200) {
    QTimer::singleShot(5, [=] {
        auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dlg && dlg->objectName() == objectName && dlg->isVisible()) {
            action(dlg);
            return;
        }
        if (tries > 0) WhenShown(objectName, action, tries - 1);
    });
}

// Selects the whole text and types the new one over it; an empty text deletes it.
inline void Retype(QWidget* w, const QString& text) {
    QTest::keyClick(w, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty())
        QTest::keyClick(w, Qt::Key_Delete);
    else
        QTest::keyClicks(w, text);
}
