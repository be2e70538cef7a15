#pragma once
// TfrmGoToDlg: asks for the time position that the chart or the table moves to, as seconds
// relative to a base moment. In modes 1 (a span) and 2 (a moment after the base) a "..."
// button next to the field opens the date/time pop-up on the field's value.

#include <QDialog>

class QLabel;
class QPushButton;
class QToolButton;
class TValidateEdit;

class TfrmGoToDlg : public QDialog {
    Q_OBJECT
public:
    explicit TfrmGoToDlg(QWidget* parent = nullptr);

    // Empties the field, shows the "..." button only for modes 1 and 2 and runs the dialog
    // modally. base is in days since 1 January 2000. True, with the field's value in seconds,
    // when the dialog was closed with OK.
    bool Execute(int mode, double base, double& seconds);

    int Mode() const { return FMode; }
    double Base() const { return FBase; }

public Q_SLOTS:
    // Closes with OK only when the field holds a valid number.
    void btnOKClick();
    // Opens the date/time pop-up just below the field; a confirmed value replaces the field's.
    void abtTimeClick();

private:
    int FMode = 0;
    double FBase = 0.0;

    QLabel* Label1 = nullptr;
    TValidateEdit* vedTime = nullptr;
    QToolButton* abtTime = nullptr;
    QPushButton* btnOK = nullptr;
    QPushButton* btnCancel = nullptr;
};
