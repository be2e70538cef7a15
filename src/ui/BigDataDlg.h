#pragma once
// TfrmBigDataDlg: asks what to do with a recording that turns out to hold more than
// 2,500,000 values while it is being read. The loader waits for the answer.

#include "store/FileThread.h"

#include <QDialog>

class QFrame;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

class TfrmBigDataDlg : public QDialog {
    Q_OBJECT
public:
    explicit TfrmBigDataDlg(QWidget* parent = nullptr);

    // Shows the question modally with "show what was read" preselected. Anything but OK
    // (close box, Cancel, Escape) answers Stop, whatever is selected.
    TBigDataAnswer Execute();

private:
    void FormCreate();

    QFrame* panInfo;
    QPlainTextEdit* memInfo;
    QFrame* panSelection;
    QRadioButton* rbnCancel;
    QRadioButton* rbnShow;
    QRadioButton* rbnContinue;
    QRadioButton* rbnPreviewer;
    QFrame* panButtons;
    QPushButton* btnOK;
    QPushButton* btnCancel;
};
