#pragma once
// TfrmBigDataDlg: asks what to do with a recording that turns out to hold more than
// 2,500,000 values while it is being read. The loader waits for the answer.

#include <QDialog>

class QFrame;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

class TfrmBigDataDlg : public QDialog {
    Q_OBJECT
public:
    // The answers, as the loader understands them.
    enum : int { kStop = 0, kShow = 1, kContinue = 2, kPreviewer = 3 };

    explicit TfrmBigDataDlg(QWidget* parent = nullptr);

    // Shows the question modally with "show what was read" preselected. Anything but OK
    // (close box, Cancel, Escape) answers kStop, whatever is selected.
    int Execute();

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
