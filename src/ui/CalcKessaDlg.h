#pragma once
// TfrmCalcKessaDlg: edits the additional flow channel (factor * reference curve + offset).
// OK hands the six values to the channel and to the program settings, where they are saved.

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class TDataBase;
class TValidateEdit;

class TfrmCalcKessaDlg : public QDialog {
    Q_OBJECT
public:
    explicit TfrmCalcKessaDlg(QWidget* parent = nullptr);

    // Fills the dialog from the channel and shows it; true when OK took the values. With modal
    // false it is only shown, for tests.
    bool Execute(TDataBase* db, bool modal = true);
    void Button1Click(); // OK
    void Button2Click(); // Cancel

private:
    TDataBase* FDb = nullptr;
    QLabel* lblSelect;
    QListWidget* ListBox1;
    QCheckBox* CheckBox1;
    QLabel* lblName;
    QLineEdit* Edit1;
    QLabel* lblUnit;
    QLineEdit* Edit2;
    QLabel* lblFactor;
    TValidateEdit* ValidateEdit1;
    QLabel* lblOffset;
    TValidateEdit* ValidateEdit2;
    QPushButton* Button1;
    QPushButton* Button2;
};
