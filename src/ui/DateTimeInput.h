#pragma once
// TDateTimeInput: the small borderless pop-up that edits a time with pickers instead of a
// number of seconds. Three forms: a calendar date with time of day and milliseconds, a time
// span of whole days plus a time of day and milliseconds, and a choice of fixed intervals.
//
// Times go in and come out as seconds (double); inside, the value is a date-time in days since
// 1 January 2000. Results are rounded to milliseconds (three decimals of a second), which is
// all the pickers can show.

#include <QDialog>
#include <QPoint>

class QComboBox;
class QDateEdit;
class QFrame;
class QLineEdit;
class QPushButton;
class QTimeEdit;

class TDateTimeInput : public QDialog {
    Q_OBJECT
public:
    enum TInputMode : int { imDate = 0, imTime = 1, imInterval = 2 };

    explicit TDateTimeInput(TInputMode mode, QWidget* parent = nullptr);

    // Each runs a new pop-up modally with its top-left corner at the screen point and answers
    // whether it was closed with OK; only then is seconds changed.
    //
    // A moment: base (days since 1 January 2000) plus seconds is shown as date, time of day
    // and milliseconds; on OK seconds := (value - base) * 86400.
    static bool ExecuteDate(const QPoint& point, double base, double& seconds, QWidget* parent = nullptr);
    // A span: whole days (never fewer than 0), the time of day of the rest and its
    // milliseconds; on OK seconds := value * 86400.
    static bool ExecuteTime(const QPoint& point, double& seconds, QWidget* parent = nullptr);
    // One of the fixed intervals; the one equal to seconds is preselected.
    static bool ExecuteInterval(const QPoint& point, double& seconds, QWidget* parent = nullptr);

    TInputMode Mode() const { return FMode; }
    // The value in days since 1 January 2000 (a span in days in the time and interval forms).
    double Value() const { return FValue; }
    // Shows a value in the pickers of the form's mode.
    void SetValue(double days);
    // The value as seconds rounded to milliseconds, relative to base (days).
    double Seconds(double base = 0.0) const;

    // The fixed intervals in seconds, in the order offered.
    static QList<int> Intervals();
    // Milliseconds as the edits show them: at least three digits.
    static QString MSecText(int ms);

public Q_SLOTS:
    // Takes the pickers' value over and closes with OK; an entry that is not a whole number (or
    // does not make a time) leaves the pop-up open.
    void btnOKClick();

private:
    void BuildDatePanel();
    void BuildTimePanel();
    void BuildIntervalPanel();
    void PlaceAt(const QPoint& point);

    TInputMode FMode;
    double FValue = 0.0;

    QFrame* panCtrl = nullptr;
    QPushButton* btnOK = nullptr;
    QPushButton* btnCancel = nullptr;

    QFrame* panDate = nullptr;
    QDateEdit* dtpDate = nullptr;
    QTimeEdit* dtpDateTime = nullptr;
    QLineEdit* edtDateMSec = nullptr;

    QFrame* panTime = nullptr;
    QLineEdit* edtTimeDay = nullptr;
    QTimeEdit* dtpTime = nullptr;
    QLineEdit* edtTimeMSec = nullptr;

    QFrame* panInterval = nullptr;
    QComboBox* cbxInterval = nullptr;
};
