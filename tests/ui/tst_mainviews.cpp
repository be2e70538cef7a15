// The three views of the main window driven offscreen: switching by menu, tool button and
// shortcut with the toolbar and menu of each view, the configuration page holding the user on
// an invalid entry, the clicks on chart elements that open it, and the table's jumps.

#include "ChartHelpers.h"
#include "MainFixture.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/CfgPage.h"
#include "ui/GoToDlg.h"
#include "ui/TableView.h"
#include "ui/ValidateEdit.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QCheckBox>
#include <QFrame>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QToolButton>

#include <memory>

using namespace zeb;
using namespace Qt::StringLiterals;

namespace {

// The toolbar panel that belongs to each view, and the view's own menu.
const QStringList kPanels = {u"panSpeedButtonsGraph"_s, u"panSpeedButtonsTable"_s, u"panSpeedButtonsCfg"_s};
const QStringList kMenus = {u"menGraph"_s, u"menTable"_s, u"menCfg"_s};
const QStringList kViewButtons = {u"spbViewGraph"_s, u"spbViewTable"_s, u"spbViewCfg"_s};

// The page shown, with exactly its panel, its menu and its view button.
void VerifyPage(TForm1& f, int page) {
    QCOMPARE(Child<QStackedWidget>(f, u"onbView"_s)->currentIndex(), page);
    for (int p = 0; p < 3; ++p) {
        QCOMPARE(Child<QFrame>(f, kPanels[p])->isVisibleTo(&f), p == page);
        QCOMPARE(Child<QMenu>(f, kMenus[p])->menuAction()->isVisible(), p == page);
        QCOMPARE(Child<QToolButton>(f, kViewButtons[p])->isChecked(), p == page);
    }
    QVERIFY(Child<QFrame>(f, u"Panel1"_s)->isVisibleTo(&f));
    QVERIFY(Child<QFrame>(f, u"Panel3"_s)->isVisibleTo(&f));
}

} // namespace

class TstMainViews : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(FTmp.isValid());
        UseTestEnvironment(FTmp);
        FFile = FTmp.filePath(u"views.zeb"_s);
        QVERIFY(MakeRecording(FFile, {.seed = 3, .channels = 3, .records = 3000, .intervalSeconds = 1}));
    }

    void init() {
        ZebSettings() = TZebSettings();
        QFile::remove(TForm1::SettingsFileOf(FFile));
        FDialogs.clear();
        // Message boxes are answered with their default, file dialogs cancelled; each is noted.
        TZebDlg::SetDialogHook([this](QDialog* dlg) {
            FDialogs << QString::fromLatin1(dlg->metaObject()->className());
            dlg->reject();
        });
    }

    void switchViews_data() {
        QTest::addColumn<QString>("how");
        QTest::newRow("menu") << u"menu"_s;
        QTest::newRow("tool button") << u"button"_s;
        QTest::newRow("shortcut") << u"key"_s;
    }

    void switchViews() {
        QFETCH(QString, how);
        auto f = Open();
        QVERIFY(f);
        f->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(f.get()));
        VerifyPage(*f, TForm1::pgGraph);
        QCOMPARE(f->StatusText(), Txt(TTextId::StatusZoomHint));

        const QStringList actions = {u"menViewGraph"_s, u"menViewTable"_s, u"menViewCfg"_s};
        const Qt::Key keys[] = {Qt::Key_G, Qt::Key_T, Qt::Key_C};
        for (int page : {TForm1::pgTable, TForm1::pgCfg, TForm1::pgGraph, TForm1::pgCfg, TForm1::pgTable,
                         TForm1::pgGraph}) {
            if (how == u"menu"_s)
                Action(*f, actions[page])->trigger();
            else if (how == u"button"_s)
                QTest::mouseClick(Child<QToolButton>(*f, kViewButtons[page]), Qt::LeftButton);
            else
                QTest::keyClick(f.get(), keys[page], Qt::ControlModifier);
            VerifyPage(*f, page);
            // The chart's hint belongs to the chart; the table brings its own texts.
            QCOMPARE(f->StatusText(), page == TForm1::pgGraph ? Txt(TTextId::StatusZoomHint) : QString());
        }
        // The same view again changes nothing.
        Action(*f, u"menViewGraph"_s)->trigger();
        VerifyPage(*f, TForm1::pgGraph);
    }

    void loadingLocksTheViews() {
        TForm1 f;
        QSignalSpy spy(&f, &TForm1::loadFinished);
        QVERIFY(f.OpenFile(FFile));
        // The loader owns the store until its last report: no view may be entered.
        for (const QString& name : {u"menViewTable"_s, u"menViewCfg"_s}) {
            QVERIFY(!Action(f, name)->isEnabled());
            QVERIFY(!Child<QToolButton>(f, kViewButtons[name == u"menViewCfg"_s ? 2 : 1])->isEnabled());
        }
        f.GUI_ViewCfg();
        QCOMPARE(f.ViewPage(), int(TForm1::pgGraph));
        QVERIFY(spy.wait(120000));
        QVERIFY(Action(f, u"menViewCfg"_s)->isEnabled());
        f.GUI_ViewCfg();
        QCOMPARE(f.ViewPage(), int(TForm1::pgCfg));
    }

    void enteringCfgSetsModified() {
        {
            // Without a recording there is nothing to mark.
            TForm1 f;
            f.GUI_ViewCfg();
            VerifyPage(f, TForm1::pgCfg);
            QVERIFY(!f.IsModified());
            f.GUI_ViewGraph();
            VerifyPage(f, TForm1::pgGraph);
        }
        auto f = Open();
        QVERIFY(f);
        f->GUI_ViewTable();
        QVERIFY(!f->IsModified()); // looking at the table changes nothing
        f->GUI_ViewCfg();
        QVERIFY(f->IsModified());
        QVERIFY(f->windowTitle().endsWith(u"*]"_s));
        QVERIFY(Action(*f, u"menFileSave"_s)->isEnabled());
    }

    void invalidEntryHoldsThePage_data() {
        QTest::addColumn<QString>("command");
        QTest::newRow("to the chart") << u"menViewGraph"_s;
        QTest::newRow("to the table") << u"menViewTable"_s;
        QTest::newRow("view button") << u"spbViewGraph"_s;
        QTest::newRow("save") << u"menFileSave"_s;
        QTest::newRow("save as template") << u"menFileTemplateSave"_s;
        QTest::newRow("open file") << u"menFileOpen"_s;
        QTest::newRow("close and save") << u"close"_s;
    }

    // Whatever would take the page's entries refuses while one is invalid, shows no dialog,
    // writes nothing and leaves the focus on the entry.
    void invalidEntryHoldsThePage() {
        QFETCH(QString, command);
        auto f = Open();
        QVERIFY(f);
        f->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(f.get()));
        TCfgPage* page = f->CfgPage();
        f->GUI_ViewCfg();
        page->setCurrentIndex(TCfgPage::tabAxisLeft);
        QCOMPARE(page->currentIndex(), int(TCfgPage::tabAxisLeft));
        auto* min = Child<TValidateEdit>(*page, u"vedCfgAxisLeftMin"_s);
        min->setText(u"1,2,3"_s);
        Child<QLineEdit>(*page, u"edtCfgAxisLeftName"_s)->setFocus();
        QVERIFY(f->IsModified());
        const double before = f->DataBase()->Axis_Get(axLeft).Min;

        if (command == u"close"_s) {
            TZebDlg::SetDialogHook([this](QDialog* dlg) {
                FDialogs << QString::fromLatin1(dlg->metaObject()->className());
                if (auto* yes = dlg->findChild<QPushButton*>(u"Yes"_s)) yes->click();
            });
            QVERIFY(!f->close());
            QVERIFY(f->isVisible());
            QCOMPARE(FDialogs, QStringList{u"QMessageBox"_s}); // the question only
        } else if (command.startsWith(u"spb"_s)) {
            QTest::mouseClick(Child<QToolButton>(*f, command), Qt::LeftButton);
            QVERIFY(FDialogs.isEmpty());
        } else {
            Action(*f, command)->trigger();
            QVERIFY(FDialogs.isEmpty());
        }
        VerifyPage(*f, TForm1::pgCfg);
        QCOMPARE(page->currentIndex(), int(TCfgPage::tabAxisLeft));
        // The window's focus, whether or not a message box still holds the activation.
        QCOMPARE(f->focusWidget(), min);
        QCOMPARE(min->text(), u"1,2,3"_s);
        QVERIFY(!QFileInfo::exists(TForm1::SettingsFileOf(FFile)));
        QVERIFY(f->IsModified());
        QCOMPARE(f->DataBase()->Axis_Get(axLeft).Min, before);

        // Mended, the same command goes through.
        min->setText(u"-5"_s);
        if (command == u"menFileSave"_s) {
            Action(*f, command)->trigger();
            QVERIFY(QFileInfo::exists(TForm1::SettingsFileOf(FFile)));
            QVERIFY(!f->IsModified());
        } else if (command == u"menViewGraph"_s || command == u"spbViewGraph"_s) {
            Action(*f, u"menViewGraph"_s)->trigger();
            VerifyPage(*f, TForm1::pgGraph);
        } else if (command == u"menViewTable"_s) {
            Action(*f, command)->trigger();
            VerifyPage(*f, TForm1::pgTable);
        }
        if (command == u"close"_s) {
            QVERIFY(f->close());
            QVERIFY(QFileInfo::exists(TForm1::SettingsFileOf(FFile)));
        }
    }

    // Leaving the page puts what it holds on the chart.
    void leavingCfgAppliesIt() {
        auto f = Open();
        QVERIFY(f);
        TCfgPage* page = f->CfgPage();
        f->GUI_ViewCfg();
        page->setCurrentIndex(TCfgPage::tabGeneral);
        Child<QLineEdit>(*page, u"edtCfgTitle"_s)->setText(u"Pump test"_s);
        page->setCurrentIndex(TCfgPage::tabAxisLeft);
        Child<QCheckBox>(*page, u"chkCfgAxisLeftAuto"_s)->setChecked(false);
        Child<TValidateEdit>(*page, u"vedCfgAxisLeftMin"_s)->setText(u"-7"_s);
        Child<TValidateEdit>(*page, u"vedCfgAxisLeftMax"_s)->setText(u"9"_s);

        f->GUI_ViewGraph();
        VerifyPage(*f, TForm1::pgGraph);
        QCOMPARE(f->Chart()->TitleElement()->text(), u"Pump test"_s);
        const QCPRange left = f->Chart()->ChartAxis(axLeft)->range();
        QCOMPARE(left.lower, -7.0);
        QCOMPARE(left.upper, 9.0);
        QCOMPARE(f->DataBase()->General_Get().Title, u"Pump test"_s);

        // Back on the page it shows what the chart shows, on the tab it was left on.
        f->GUI_ViewCfg();
        QCOMPARE(page->currentIndex(), int(TCfgPage::tabAxisLeft));
        QCOMPARE(Child<TValidateEdit>(*page, u"vedCfgAxisLeftMin"_s)->AsFloat().value_or(0.0), -7.0);
    }

    // An automatic axis shows on the page the range the chart shows; switched off, it stays there.
    void automaticAxesShowTheirRange() {
        auto f = Open();
        QVERIFY(f);
        TZebChart& chart = *f->Chart();
        const QCPRange left = chart.ChartAxis(axLeft)->range(), bottom = chart.ChartAxis(axBottom)->range();
        QVERIFY(f->DataBase()->Axis_Get(axLeft).Auto);
        f->GUI_ViewCfg();
        TCfgPage* page = f->CfgPage();
        auto value = [&](const QString& name) {
            return Child<TValidateEdit>(*page, name)->AsFloat().value_or(-1e300);
        };
        auto near = [](double a, double b, double span, double share = 1e-9) {
            return std::abs(a - b) <= span * share;
        };
        // Shown to six digits of the range; kept exact.
        QVERIFY(near(value(u"vedCfgAxisLeftMin"_s), left.lower, left.size(), 1e-5));
        QVERIFY(near(value(u"vedCfgAxisLeftMax"_s), left.upper, left.size(), 1e-5));
        // The time axis counts seconds from the first measurement, to the millisecond.
        double first = 0.0, last = 0.0;
        f->DataBase()->GetXMinXMax(first, last, false);
        QVERIFY(std::abs(value(u"vedCfgAxisBottomMin"_s) - (bottom.lower - first)) < 1e-3);
        QVERIFY(std::abs(value(u"vedCfgAxisBottomMax"_s) - (bottom.upper - first)) < 1e-3);

        page->setCurrentIndex(TCfgPage::tabAxisLeft);
        Child<QCheckBox>(*page, u"chkCfgAxisLeftAuto"_s)->setChecked(false);
        f->GUI_ViewGraph();
        QVERIFY(!f->DataBase()->Axis_Get(axLeft).Auto);
        QVERIFY(near(chart.ChartAxis(axLeft)->range().lower, left.lower, left.size()));
        QVERIFY(near(chart.ChartAxis(axLeft)->range().upper, left.upper, left.size()));
    }

    void saveFromCfgPage() {
        auto f = Open();
        QVERIFY(f);
        TCfgPage* page = f->CfgPage();
        f->GUI_ViewCfg();
        page->setCurrentIndex(TCfgPage::tabGeneral);
        Child<QLineEdit>(*page, u"edtCfgFoot"_s)->setText(u"Saved from the page"_s);
        // The tab is still open: the save takes it as it stands.
        Action(*f, u"menFileSave"_s)->trigger();
        QVERIFY(!f->IsModified());
        VerifyPage(*f, TForm1::pgCfg);
        TDataBase check;
        QVERIFY(check.Ini_FileOpen(TForm1::SettingsFileOf(FFile)));
        QCOMPARE(check.General_Get().Foot, u"Saved from the page"_s);

        // Editing on after the save still reaches the chart.
        Child<QLineEdit>(*page, u"edtCfgTitle"_s)->setText(u"After saving"_s);
        f->GUI_ViewGraph();
        QCOMPARE(f->Chart()->TitleElement()->text(), u"After saving"_s);
        QVERIFY(f->IsModified());
    }

    void cfgUndo() {
        auto f = Open();
        QVERIFY(f);
        f->DataBase()->General_Get().Title = u"Original"_s;
        f->GUI_ViewCfg();
        TCfgPage* page = f->CfgPage();
        page->setCurrentIndex(TCfgPage::tabGeneral);
        auto* title = Child<QLineEdit>(*page, u"edtCfgTitle"_s);
        QCOMPARE(title->text(), u"Original"_s);
        title->setText(u"Changed"_s);
        QTest::mouseClick(Child<QToolButton>(*f, u"spbCfgRedo"_s), Qt::LeftButton);
        QCOMPARE(title->text(), u"Original"_s);
        title->setText(u"Changed again"_s);
        Action(*f, u"menCfgRedo"_s)->trigger();
        QCOMPARE(title->text(), u"Original"_s);
        f->GUI_ViewGraph();
        QCOMPARE(f->Chart()->TitleElement()->text(), u"Original"_s);
    }

    // Which click names which tab is the chart's own test; here what the window does with it.
    void elementClicks_data() {
        QTest::addColumn<QString>("element");
        QTest::addColumn<int>("modifier");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("tab");
        const int left = Qt::LeftButton;
        QTest::newRow("shift on the title") << u"title"_s << int(Qt::ShiftModifier) << left << 0;
        QTest::newRow("alt on the right axis") << u"right axis"_s << int(Qt::AltModifier) << left << 4;
        QTest::newRow("ctrl on the curve") << u"curve"_s << int(Qt::ControlModifier) << left << 1;
        QTest::newRow("ctrl on a legend entry") << u"legend"_s << int(Qt::ControlModifier) << left << 1;
        QTest::newRow("right button on a legend entry") << u"legend"_s << 0 << int(Qt::RightButton) << 1;
    }

    void elementClicks() {
        QFETCH(QString, element);
        QFETCH(int, modifier);
        QFETCH(int, button);
        QFETCH(int, tab);
        auto f = Open();
        QVERIFY(f);
        TDataBase& db = *f->DataBase();
        TZebChart& chart = *f->Chart();
        db.General_Get().Title = u"Title"_s;
        db.Curve_AxisSet(1, axRight); // every axis shown
        chart.Rebuild();
        // The page was last left on another tab than the click names.
        f->GUI_ViewCfg();
        f->CfgPage()->setCurrentIndex(TCfgPage::tabCursor);
        f->GUI_ViewGraph();
        f->SetModified(false);
        chart.replot(); // laid out, so the elements are where the click goes

        const QPoint at = ElementPos(chart, element);
        QVERIFY2(!at.isNull(), "element not found on the chart");
        const int legendCurve = chart.LegendCurve(0);
        const bool wasActive = db.Curve_IsActive(legendCurve);
        QTest::mouseClick(&chart, Qt::MouseButton(button), Qt::KeyboardModifiers(modifier), at);

        VerifyPage(*f, TForm1::pgCfg);
        QCOMPARE(f->CfgPage()->currentIndex(), tab);
        QCOMPARE(f->CfgTab(), -1); // used up: the next visit keeps the user's tab
        QVERIFY(f->IsModified());
        if (element == u"legend"_s)
            QCOMPARE(db.Curve_IsActive(legendCurve), !wasActive);
        else
            QCOMPARE(db.Curve_IsActive(legendCurve), wasActive);

        // The view menu later opens the page on the tab the user last had.
        f->GUI_ViewGraph();
        f->GUI_ViewCfg();
        QCOMPARE(f->CfgPage()->currentIndex(), tab);
    }

    void plainClicksStayOnChart() {
        auto f = Open();
        QVERIFY(f);
        TZebChart& chart = *f->Chart();
        f->DataBase()->General_Get().Title = u"Title"_s;
        chart.Rebuild();
        chart.replot();
        // The legend's plain click switches limit lines (the main window's own test) and stays too.
        for (const QString& element : {u"title"_s, u"left axis"_s, u"bottom axis"_s, u"legend"_s}) {
            QTest::mouseClick(&chart, Qt::LeftButton, Qt::NoModifier, ElementPos(chart, element));
            VerifyPage(*f, TForm1::pgGraph);
        }
    }

    // The table opens, and jumps back, where the chart's time axis begins.
    void tableGotoTMin() {
        auto f = Open();
        QVERIFY(f);
        TDataBase& db = *f->DataBase();
        double first = 0.0, last = 0.0;
        db.GetXMinXMax(first, last, false);
        // Zoomed in as the zoom leaves it: a fixed range in the store's view.
        TAxisState& bottom = db.Axis_Get(axBottom);
        bottom.Auto = false;
        bottom.Min = first + 1000.25;
        bottom.Max = first + 2000.0;
        f->Chart()->Rebuild();

        f->GUI_ViewTable();
        VerifyPage(*f, TForm1::pgTable);
        QCOMPARE(db.Table_GetFirstTime(), first + 1001.0); // the first sample on the chart

        QTest::mouseClick(Child<QToolButton>(*f, u"spbTableEnd"_s), Qt::LeftButton);
        QVERIFY(db.Table_GetFirstTime() > first + 2000.0);
        QTest::mouseClick(Child<QToolButton>(*f, u"spbTableGotoTMin"_s), Qt::LeftButton);
        QCOMPARE(db.Table_GetFirstTime(), first + 1001.0);

        db.Table_SetFirstRow(first);
        Action(*f, u"menTableGotoTMin"_s)->trigger();
        QCOMPARE(db.Table_GetFirstTime(), first + 1001.0);
        // The table's first text row shows that time.
        QCOMPARE(f->TableView()->Model()->Table_OnGetCellData(2, 0),
                 TDataBase::GetXValueStr(zeb::TTimeKind::DateTimeMs, first + 1001.0));
    }

    void tableGotoTime_data() {
        QTest::addColumn<int>("xType");
        QTest::addColumn<bool>("viaButton");
        QTest::newRow("seconds") << 0 << false;
        QTest::newRow("time from 0") << 1 << true;
        QTest::newRow("date and time") << 2 << false;
    }

    // The dialog asks in the time axis's terms, counted from the axis's zero.
    void tableGotoTime() {
        QFETCH(int, xType);
        QFETCH(bool, viaButton);
        auto f = Open();
        QVERIFY(f);
        TDataBase& db = *f->DataBase();
        db.Axis_Get(axBottom).XType = TTimeAxisType(xType);
        f->GUI_ViewTable();
        double first = 0.0, last = 0.0;
        db.GetXMinXMax(first, last, false);
        const double start = db.Table_GetFirstTime();

        auto go = [&](const QString& text, bool ok) {
            int mode = -1;
            double base = -1.0;
            WhenShown(u"frmGoToDlg"_s, [&](QDialog* dlg) {
                mode = int(static_cast<TfrmGoToDlg*>(dlg)->Mode());
                base = static_cast<TfrmGoToDlg*>(dlg)->Base();
                Child<TValidateEdit>(dlg, u"vedTime"_s)->setText(text);
                Child<QPushButton>(dlg, ok ? u"btnOK"_s : u"btnCancel"_s)->click();
            });
            if (viaButton)
                QTest::mouseClick(Child<QToolButton>(*f, u"spbTableGotoT"_s), Qt::LeftButton);
            else
                Action(*f, u"menTableGotoTime"_s)->trigger();
            QCOMPARE(mode, xType);
            QCOMPARE(base, first / kSecondsPerDay);
        };

        go(u"1234.5"_s, false);
        QCOMPARE(db.Table_GetFirstTime(), start);
        go(u"1234.5"_s, true);
        QCOMPARE(db.Table_GetFirstTime(), first + 1235.0);
        QCOMPARE(f->TableView()->Model()->Table_OnGetCellData(2, 0),
                 TDataBase::GetXValueStr(zeb::TTimeKind::DateTimeMs, first + 1235.0));
    }

    void tableStatusTexts() {
        auto f = Open();
        QVERIFY(f);
        f->GUI_ViewTable();
        QScrollBar* bar = f->TableView()->ScrollBar();
        double first = 0.0, last = 0.0;
        f->DataBase()->GetXMinXMax(first, last, false);
        bar->setSliderDown(true); // dragged to the middle
        bar->setSliderPosition((bar->minimum() + bar->maximum()) / 2);
        QCOMPARE(f->StatusText(),
                 Txt(TTextId::StatusScrollX) +
                     TDataBase::GetXValueStr(zeb::TTimeKind::DateTimeMs, first + (last - first) / 2.0));
        bar->setSliderDown(false);
        QCOMPARE(f->StatusText(), QString());
        // Back on the chart its hint returns.
        f->GUI_ViewGraph();
        QCOMPARE(f->StatusText(), Txt(TTextId::StatusZoomHint));
    }

private:
    std::unique_ptr<TForm1> Open() const { return OpenShown(FFile); }

    QTemporaryDir FTmp;
    QString FFile;
    QStringList FDialogs; // classes of the dialogs shown through the dialog helpers
};

QTEST_MAIN(TstMainViews)
#include "tst_mainviews.moc"
