#pragma once
// TfrmGoToDlg: asks for the time position that the chart or the table moves to, as seconds
// relative to a base moment. For a time from the start (a span) and a date and time (a moment
// after the base) a "..." button next to the field opens the date/time pop-up on its value.

#include "config/DisplayKinds.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QToolButton;
class TValidateEdit;

class TfrmGoToDlg : public QDialog {
    Q_OBJECT
public:
    explicit TfrmGoToDlg(QWidget* parent = nullptr);

    // Empties the field, shows the "..." button only for times (not seconds) and runs the dialog
    // modally. base is in days since 1 January 2000. True, with the field's value in seconds,
    // when the dialog was closed with OK.
    bool Execute(TTimeAxisType mode, double base, double& seconds);

    TTimeAxisType Mode() const { return FMode; }
    double Base() const { return FBase; }

public Q_SLOTS:
    // Closes with OK only when the field holds a valid number.
    void btnOKClick();
    // Opens the date/time pop-up just below the field; a confirmed value replaces the field's.
    void abtTimeClick();

private:
    TTimeAxisType FMode = TTimeAxisType::Seconds;
    double FBase = 0.0;

    QLabel* Label1 = nullptr;
    TValidateEdit* vedTime = nullptr;
    QToolButton* abtTime = nullptr;
    QPushButton* btnOK = nullptr;
    QPushButton* btnCancel = nullptr;
};
