// The large-file question driven through the real dialog offscreen.

#include "config/Texts.h"
#include "ui/BigDataDlg.h"

#include <QApplication>
#include <QFrame>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace zeb;
using namespace Qt::StringLiterals;

namespace {

enum class TLeave { OkButton, CancelButton, CloseBox, Escape, Enter };

// Runs Execute() and, once the dialog is up, lets act() work on it.
int RunWith(TfrmBigDataDlg& dlg, const std::function<void(TfrmBigDataDlg&)>& act) {
    QTimer::singleShot(0, &dlg, [&dlg, act] {
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        act(dlg);
    });
    return int(dlg.Execute());
}

} // namespace

Q_DECLARE_METATYPE(TLeave)

class TstBigDataDlg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SwitchTexts(LangEnglish); }

    void answers_data() {
        QTest::addColumn<QString>("choice"); // empty: leave the preselection
        QTest::addColumn<TLeave>("leave");
        QTest::addColumn<int>("answer");
        QTest::newRow("preselected, OK") << QString() << TLeave::OkButton << 1;
        QTest::newRow("preselected, Enter") << QString() << TLeave::Enter << 1;
        QTest::newRow("show, OK") << u"rbnShow"_s << TLeave::OkButton << 1;
        QTest::newRow("continue, OK") << u"rbnContinue"_s << TLeave::OkButton << 2;
        QTest::newRow("previewer, OK") << u"rbnPreviewer"_s << TLeave::OkButton << 3;
        QTest::newRow("stop, OK") << u"rbnCancel"_s << TLeave::OkButton << 0;
        QTest::newRow("continue, Cancel") << u"rbnContinue"_s << TLeave::CancelButton << 0;
        QTest::newRow("previewer, close box") << u"rbnPreviewer"_s << TLeave::CloseBox << 0;
        QTest::newRow("show, close box") << u"rbnShow"_s << TLeave::CloseBox << 0;
        QTest::newRow("continue, Escape") << u"rbnContinue"_s << TLeave::Escape << 0;
    }
    void answers() {
        QFETCH(QString, choice);
        QFETCH(TLeave, leave);
        QFETCH(int, answer);
        TfrmBigDataDlg dlg;
        const int got = RunWith(dlg, [&](TfrmBigDataDlg& d) {
            if (!choice.isEmpty()) {
                // On the indicator, where a user clicks; the button itself spans the dialog.
                auto* rb = d.findChild<QRadioButton*>(choice);
                QTest::mouseClick(rb, Qt::LeftButton, {}, QPoint(8, rb->height() / 2));
            }
            switch (leave) {
            case TLeave::OkButton:
                QTest::mouseClick(d.findChild<QPushButton*>(u"btnOK"_s), Qt::LeftButton);
                break;
            case TLeave::CancelButton:
                QTest::mouseClick(d.findChild<QPushButton*>(u"btnCancel"_s), Qt::LeftButton);
                break;
            case TLeave::CloseBox:
                d.close();
                break;
            case TLeave::Escape:
                QTest::keyClick(&d, Qt::Key_Escape);
                break;
            case TLeave::Enter:
                QTest::keyClick(&d, Qt::Key_Return);
                break;
            }
        });
        QCOMPARE(got, answer);
    }

    // Whatever was chosen before, the next question starts at "show what was read".
    void preselectionEachTime() {
        TfrmBigDataDlg dlg;
        QCOMPARE(RunWith(dlg,
                         [](TfrmBigDataDlg& d) {
                             d.findChild<QRadioButton*>(u"rbnPreviewer"_s)->setChecked(true);
                             d.accept();
                         }),
                 3);
        bool showChecked = false, othersOff = false;
        RunWith(dlg, [&](TfrmBigDataDlg& d) {
            showChecked = d.findChild<QRadioButton*>(u"rbnShow"_s)->isChecked();
            othersOff = !d.findChild<QRadioButton*>(u"rbnPreviewer"_s)->isChecked() &&
                        !d.findChild<QRadioButton*>(u"rbnCancel"_s)->isChecked() &&
                        !d.findChild<QRadioButton*>(u"rbnContinue"_s)->isChecked();
            d.reject();
        });
        QVERIFY(showChecked);
        QVERIFY(othersOff);
    }

    void textsAndLayout_data() {
        QTest::addColumn<int>("language");
        QTest::newRow("German") << int(LangGerman);
        QTest::newRow("English") << int(LangEnglish);
        QTest::newRow("French") << int(LangFrench);
    }
    void textsAndLayout() {
        QFETCH(int, language);
        SwitchTexts(language);
        TfrmBigDataDlg dlg;
        QCOMPARE(dlg.windowTitle(), Txt(TTextId::MsgFileTooLarge));
        QCOMPARE(dlg.findChild<QPlainTextEdit*>(u"memInfo"_s)->toPlainText(), Txt(TTextId::BigDataInfo));
        QCOMPARE(dlg.findChild<QRadioButton*>(u"rbnCancel"_s)->text(), Txt(TTextId::BigDataStop));
        QCOMPARE(dlg.findChild<QRadioButton*>(u"rbnShow"_s)->text(), Txt(TTextId::BigDataShow));
        QCOMPARE(dlg.findChild<QRadioButton*>(u"rbnContinue"_s)->text(), Txt(TTextId::BigDataContinue));
        QCOMPARE(dlg.findChild<QRadioButton*>(u"rbnPreviewer"_s)->text(), Txt(TTextId::BigDataPreviewer));
        QCOMPARE(dlg.findChild<QPushButton*>(u"btnCancel"_s)->text(), Txt(TTextId::BtnCancel));
        if (language == LangGerman) {
            QCOMPARE(dlg.windowTitle(), u"Achtung: Datei zu gross!"_s);
            QCOMPARE(dlg.findChild<QRadioButton*>(u"rbnShow"_s)->text(),
                     u"Nur die bis jetzt gelesenen Messwerte anzeigen"_s);
        }

        // As high as its three panels, and every choice readable.
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        int sum = 0;
        for (const char* name : {"panInfo", "panSelection", "panButtons"})
            sum += dlg.findChild<QFrame*>(QLatin1String(name))->height();
        QCOMPARE(dlg.height(), sum);
        for (auto* rb : dlg.findChildren<QRadioButton*>())
            QVERIFY2(rb->width() >= rb->sizeHint().width(), qPrintable(rb->objectName()));
        if (const QString dir = qEnvironmentVariable("ZEB_SCREENSHOT_DIR"); !dir.isEmpty())
            dlg.grab().save(dir + u"/bigdatadlg_"_s + QString::number(language) + u".png"_s);
        dlg.close();
        SwitchTexts(LangEnglish);
    }
};

QTEST_MAIN(TstBigDataDlg)
#include "tst_bigdatadlg.moc"
