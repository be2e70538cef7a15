// The go-to dialog and the date/time pop-up through their real widgets: what the pickers show
// for a value and what comes back, the entries that keep the pop-up open, and the dialog's
// "..." button per mode.

#include "DialogHelpers.h"
#include "config/Texts.h"
#include "data/Formats.h"
#include "ui/DateTimeInput.h"
#include "ui/GoToDlg.h"
#include "ui/ValidateEdit.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QTimeEdit>
#include <QToolButton>

namespace {

// What the pop-up shows, in one text: "date time.ms", "days+time.ms" or the interval.
QString Shown(QDialog* p) {
    const auto time = [p](const char* name) {
        return Child<QTimeEdit>(p, name)->time().toString(Qt::ISODate);
    };
    if (Child<QWidget>(p, "panDate")->isVisible())
        return Child<QDateEdit>(p, "dtpDate")->date().toString(Qt::ISODate) + QLatin1Char(' ') +
               time("dtpDateTime") + QLatin1Char('.') + Child<QLineEdit>(p, "edtDateMSec")->text();
    if (Child<QWidget>(p, "panTime")->isVisible())
        return Child<QLineEdit>(p, "edtTimeDay")->text() + QLatin1Char('+') + time("dtpTime") +
               QLatin1Char('.') + Child<QLineEdit>(p, "edtTimeMSec")->text();
    return Child<QComboBox>(p, "cbxInterval")->currentText();
}

void ClickOk(QDialog* d) {
    QTest::mouseClick(Child<QPushButton>(d, "btnOK"), Qt::LeftButton);
}

const QString kPopup = QStringLiteral("TDateTimeInput");
const QString kGoTo = QStringLiteral("frmGoToDlg");

} // namespace

class TstGoToDlg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zeb::SwitchTexts(zeb::LangEnglish);
        zeb::SetFormats(0);
    }

    void roundTrip_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("base"); // days, date form only
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<double>("back");

        const int span = TDateTimeInput::imTime, date = TDateTimeInput::imDate;
        QTest::newRow("span rounded to ms") << span << 0.0 << 1.2344 << "0+00:00:01.234" << 1.234;
        QTest::newRow("span half a ms up") << span << 0.0 << 1.2346 << "0+00:00:01.235" << 1.235;
        QTest::newRow("span days and time") << span << 0.0 << 90061.5 << "1+01:01:01.500" << 90061.5;
        QTest::newRow("span rest rounds to a day")
            << span << 0.0 << 86399.9996 << "1+00:00:00.000" << 86400.0;
        QTest::newRow("span negative, 0 days") << span << 0.0 << -100.25 << "0+00:01:40.250" << 100.25;
        QTest::newRow("span negative beyond a day") << span << 0.0 << -90000.0 << "0+01:00:00.000" << 3600.0;
        QTest::newRow("span ms with zeros") << span << 0.0 << 0.007 << "0+00:00:00.007" << 0.007;
        QTest::newRow("date rounded to ms") << date << 0.0 << 1.2344 << "2000-01-01 00:00:01.234" << 1.234;
        // 8766.5 days: 1 January 2024, noon.
        QTest::newRow("date after base") << date << 8766.5 << 3600.25 << "2024-01-01 13:00:00.250" << 3600.25;
        QTest::newRow("date before base") << date << 1.0 << -1.5 << "2000-01-01 23:59:58.500" << -1.5;
        QTest::newRow("date over midnight")
            << date << 8766.5 << 43200.001 << "2024-01-02 00:00:00.001" << 43200.001;
    }

    void roundTrip() {
        QFETCH(int, mode);
        QFETCH(double, base);
        QFETCH(double, seconds);
        QFETCH(QString, shown);
        QFETCH(double, back);

        QString seen;
        WhenShown(kPopup, [&seen](QDialog* p) {
            seen = Shown(p);
            ClickOk(p);
        });
        double s = seconds;
        QVERIFY(mode == TDateTimeInput::imDate ? TDateTimeInput::ExecuteDate(QPoint(100, 100), base, s)
                                               : TDateTimeInput::ExecuteTime(QPoint(100, 100), s));
        QCOMPARE(seen, shown);
        QCOMPARE(s, back);
    }

    void nonIntegerKeepsPopupOpen_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("mended"); // the result once the field holds 12

        const auto row = [](const char* tag, int mode, const char* field, const char* text, double mended) {
            QTest::newRow(tag) << mode << QString::fromLatin1(field) << QString::fromLatin1(text) << mended;
        };
        const int date = TDateTimeInput::imDate, span = TDateTimeInput::imTime;
        row("date ms fraction", date, "edtDateMSec", "1.5", 5.012);
        row("date ms letters", date, "edtDateMSec", "abc", 5.012);
        row("date ms empty", date, "edtDateMSec", "", 5.012);
        row("date ms a second", date, "edtDateMSec", "1000", 5.012);
        row("span days fraction", span, "edtTimeDay", "1.5", 12 * 86400.0 + 5);
        row("span days negative", span, "edtTimeDay", "-1", 12 * 86400.0 + 5);
        row("span ms letters", span, "edtTimeMSec", "x", 5.012);
    }

    void nonIntegerKeepsPopupOpen() {
        QFETCH(int, mode);
        QFETCH(QString, field);
        QFETCH(QString, text);
        QFETCH(double, mended);

        bool stayedOpen = false;
        WhenShown(kPopup, [&](QDialog* p) {
            auto* edit = p->findChild<QLineEdit*>(field);
            QVERIFY(edit);
            Retype(edit, text);
            ClickOk(p);
            stayedOpen = p->isVisible();
            Retype(edit, QStringLiteral("12"));
            QTest::keyClick(edit, Qt::Key_Return); // the default button
        });
        double s = 5.0;
        QVERIFY(mode == TDateTimeInput::imDate ? TDateTimeInput::ExecuteDate(QPoint(0, 0), 100.0, s)
                                               : TDateTimeInput::ExecuteTime(QPoint(0, 0), s));
        QVERIFY(stayedOpen);
        QCOMPARE(s, mended);
    }

    void interval() {
        QCOMPARE(TDateTimeInput::Intervals().size(), 9);
        QString preselected;
        WhenShown(kPopup, [&preselected](QDialog* p) {
            preselected = Shown(p);
            auto* box = Child<QComboBox>(p, "cbxInterval");
            box->setFocus();
            QTest::keyClick(box, Qt::Key_Down);
            ClickOk(p);
        });
        double s = 600.0;
        QVERIFY(TDateTimeInput::ExecuteInterval(QPoint(0, 0), s));
        QCOMPARE(preselected, QStringLiteral("00:10:00"));
        QCOMPARE(s, 1800.0);

        WhenShown(kPopup,
                  [](QDialog* p) { QTest::mouseClick(Child<QPushButton>(p, "btnCancel"), Qt::LeftButton); });
        QVERIFY(!TDateTimeInput::ExecuteInterval(QPoint(0, 0), s));
        QCOMPARE(s, 1800.0);
    }

    void dotsButtonPerMode_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("dots");
        QTest::newRow("0 seconds") << 0 << false;
        QTest::newRow("1 span") << 1 << true;
        QTest::newRow("2 date") << 2 << true;
        QTest::newRow("3") << 3 << false;
    }

    void dotsButtonPerMode() {
        QFETCH(int, mode);
        QFETCH(bool, dots);
        TfrmGoToDlg dlg;
        bool visible = !dots;
        WhenShown(kGoTo, [&visible](QDialog* d) {
            visible = Child<QToolButton>(d, "abtTime")->isVisible();
            d->reject();
        });
        double s = 0;
        QVERIFY(!dlg.Execute(TTimeAxisType(mode), 0.0, s));
        QCOMPARE(visible, dots);
    }

    void okOnlyWithValidValue() {
        TfrmGoToDlg dlg;
        bool openAfterBadOk = false, marked = false;
        WhenShown(kGoTo, [&](QDialog* d) {
            auto* ved = Child<TValidateEdit>(d, "vedTime");
            QTest::keyClicks(ved, QStringLiteral("12x"));
            ClickOk(d);
            openAfterBadOk = d->isVisible();
            marked = ved->ShowsError();
            Retype(ved, QStringLiteral("12.5"));
            ClickOk(d);
        });
        double s = 0;
        QVERIFY(dlg.Execute(TTimeAxisType::Seconds, 0.0, s));
        QVERIFY(openAfterBadOk);
        QVERIFY(marked);
        QCOMPARE(s, 12.5);

        // The next time the field starts empty and unmarked.
        QString text = QStringLiteral("?");
        WhenShown(kGoTo, [&](QDialog* d) {
            text = Child<TValidateEdit>(d, "vedTime")->text();
            marked = Child<TValidateEdit>(d, "vedTime")->ShowsError();
            d->reject();
        });
        QVERIFY(!dlg.Execute(TTimeAxisType::Seconds, 0.0, s));
        QVERIFY(text.isEmpty());
        QVERIFY(!marked);
    }

    void dotsOpensPopupOnField_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("base");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<double>("seconds");

        QTest::newRow("span") << 1 << 0.0 << QStringLiteral("90061.2344") << QStringLiteral("1+01:01:01.234")
                              << 90061.234;
        QTest::newRow("date after base")
            << 2 << 8766.5 << QStringLiteral("1.2344") << QStringLiteral("2024-01-01 12:00:01.234") << 1.234;
    }

    void dotsOpensPopupOnField() {
        QFETCH(int, mode);
        QFETCH(double, base);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(double, seconds);

        TfrmGoToDlg dlg;
        QString seen, field;
        WhenShown(kGoTo, [&](QDialog* d) {
            auto* ved = Child<TValidateEdit>(d, "vedTime");
            QTest::keyClicks(ved, typed);
            WhenShown(kPopup, [&seen](QDialog* p) {
                seen = Shown(p);
                ClickOk(p);
            });
            QTest::mouseClick(Child<QToolButton>(d, "abtTime"), Qt::LeftButton);
            field = ved->text();
            ClickOk(d);
        });
        double s = 0;
        QVERIFY(dlg.Execute(TTimeAxisType(mode), base, s));
        QCOMPARE(seen, shown);
        // Written back rounded, not with the noise of the arithmetic.
        QCOMPARE(field, QString::number(seconds, 'f', 3));
        QCOMPARE(s, seconds);
    }
};

QTEST_MAIN(TstGoToDlg)
#include "tst_gotodlg.moc"
