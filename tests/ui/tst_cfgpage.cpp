// The configuration page through its real widgets: filling from the store, the invalid entry
// that holds the tab and the view, every curve column written back, the time-axis fields and
// their pop-ups, and undo.

#include "DialogHelpers.h"
#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/CfgPage.h"
#include "ui/ValidateEdit.h"
#include "ui/ZebDlg.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDateEdit>
#include <QFontComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>
#include <QTimeEdit>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <memory>

using namespace zeb;

namespace {

constexpr double kT0 = 8766 * 86400.0; // 1 January 2024, the first measurement

// Three curves, ten seconds apart, from two loggers when the serials differ; the store as
// after a load: the template holds every value, the chart shows part of the time.
void Fill(TDataBase& db, const QStringList& serials) {
    TStoreReceiver r(db);
    const QStringList names{QStringLiteral("Temp"), QStringLiteral("Hum"), QStringLiteral("Press")};
    for (int i = 0; i < serials.size(); ++i) {
        AddSampledCurve(db, serials[i], 100, kT0, 10.0, [i](int p) { return p * (i + 1); });
        r.SetChannelName(i, names[i]);
    }
    db.CheckExtView();
    db.Ini_Store();
    db.Axis_Get(axBottom).Min = kT0 + 60;
    db.Axis_Get(axBottom).Max = kT0 + 600;
    db.Axis_Get(axBottom).XType = TTimeAxisType::DateTime;
}

} // namespace

class TstCfgPage : public QObject {
    Q_OBJECT

    std::unique_ptr<TDataBase> FDb;
    std::unique_ptr<TCfgPage> FPage;

    template <typename T> T* C(const QString& name) const { return Child<T>(*FPage, name); }
    void Open(const QStringList& serials = {QStringLiteral("A1"), QStringLiteral("A1"),
                                            QStringLiteral("A1")}) {
        FDb = std::make_unique<TDataBase>();
        Fill(*FDb, serials);
        FPage = std::make_unique<TCfgPage>(FDb.get());
        FPage->resize(860, 520);
        FPage->show();
        FPage->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(FPage.get()));
    }
    void ClickTab(int tab) {
        QTabBar* bar = FPage->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center());
    }
    QTableView* Table() const { return FPage->CurveTable(); }
    QPoint CellCenter(int row, int col) const {
        return Table()->visualRect(Table()->model()->index(row, col)).center();
    }
    // A double click as the mouse makes it: the press of the first click picks the cell.
    QWidget* OpenEditor(int row, int col) const {
        QTest::mouseClick(Table()->viewport(), Qt::LeftButton, {}, CellCenter(row, col));
        QTest::mouseDClick(Table()->viewport(), Qt::LeftButton, {}, CellCenter(row, col));
        QWidget* editor = QApplication::focusWidget();
        return editor != Table() ? editor : nullptr;
    }

private Q_SLOTS:
    void initTestCase() {
        SwitchTexts(LangEnglish);
        SetFormats(0);
        TZebDlg::SetNativeDialogs(false);
    }

    void cleanup() {
        TZebDlg::SetDialogHook(nullptr);
        FPage.reset();
        FDb.reset();
    }

    void enterShowsWhatChartShows() {
        Open();
        // The chart has moved on since the template was written.
        TAxisState& left = FDb->Axis_Get(axLeft);
        left.Name = QStringLiteral("Temperature");
        left.Auto = false;
        left.Min = -5.5;
        left.Max = 99;
        FDb->General_Get().Title = QStringLiteral("Hall 3");
        FDb->Cursor_Get(1).Axis = 1;
        FDb->Cursor_Get(1).Width = 4;
        FDb->Curve_WidthSet(1, 3);
        QSignalSpy modified(FPage.get(), &TCfgPage::modified);

        FPage->Enter(TCfgPage::tabAxisLeft);
        QCOMPARE(FPage->currentIndex(), int(TCfgPage::tabAxisLeft));
        QVERIFY(modified.count() >= 1);
        QCOMPARE(C<QLineEdit>("edtCfgAxisLeftName")->text(), QStringLiteral("Temperature"));
        QVERIFY(!C<QCheckBox>("chkCfgAxisLeftAuto")->isChecked());
        QCOMPARE(C<TValidateEdit>("vedCfgAxisLeftMin")->text(), QStringLiteral("-5.5"));
        QCOMPARE(C<TValidateEdit>("vedCfgAxisLeftMax")->text(), QStringLiteral("99"));
        QCOMPARE(C<QLineEdit>("edtCfgTitle")->text(), QStringLiteral("Hall 3"));
        QCOMPARE(C<QComboBox>("cbxCfgCursor2Axis")->currentIndex(), 1);
        QCOMPARE(C<QComboBox>("cbxCfgCursor2Width")->currentText(), QStringLiteral("5")); // index 4
        const QModelIndex width = Table()->model()->index(1, TCfgPage::colWidth);
        QCOMPARE(width.data().toString(), QStringLiteral("3"));
        // Entering took the chart's view into the template.
        QCOMPARE(FDb->Cfg_Axis_Get(axLeft).Min.Value, -5.5);

        const QStringList tabs{"tbsCfgGeneral",  "tbsCfgCurve",     "tbsCfgAxisBottom",
                               "tbsCfgAxisLeft", "tbsCfgAxisRight", "tbsCfgCursor"};
        QCOMPARE(FPage->count(), tabs.size());
        for (int t = 0; t < FPage->count(); ++t) {
            ClickTab(t);
            QCOMPARE(FPage->currentIndex(), t);
            QCOMPARE(FPage->widget(t)->objectName(), tabs[t]);
        }
    }

    void invalidEntryHoldsTab_data() {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("edit");
        QTest::addColumn<double>("offset"); // of the stored value from the typed one

        for (const char* axis : {"Bottom", "Left", "Right"}) {
            const int tab = axis[0] == 'B' ? 2 : axis[0] == 'L' ? 3 : 4;
            for (const char* which : {"Min", "Max", "Inc"}) {
                const QString name =
                    QStringLiteral("vedCfgAxis") + QLatin1String(axis) + QLatin1String(which);
                const double offset = tab == 2 && which[0] == 'M' ? kT0 : 0.0;
                QTest::newRow(qPrintable(name)) << tab << name << offset;
            }
        }
    }

    void invalidEntryHoldsTab() {
        QFETCH(int, tab);
        QFETCH(QString, edit);
        QFETCH(double, offset);
        Open();
        FPage->Enter(tab);
        const int axis = tab - TCfgPage::tabAxisBottom;
        const TMseAxis before = FDb->Cfg_Axis_Get(axis);
        const char* axisName[] = {"Bottom", "Left", "Right"};
        auto* name = C<QLineEdit>(QStringLiteral("edtCfgAxis") + QLatin1String(axisName[axis]) +
                                  QStringLiteral("Name"));
        auto* ved = C<TValidateEdit>(edit);
        Retype(name, QStringLiteral("Changed"));
        Retype(ved, QStringLiteral("12a"));

        ClickTab(TCfgPage::tabGeneral);
        QCOMPARE(FPage->currentIndex(), tab);
        QCOMPARE(QApplication::focusWidget(), ved);
        QVERIFY(ved->ShowsError());
        // Nothing of the tab was taken over.
        QCOMPARE(FDb->Cfg_Axis_Get(axis).Name.Value, before.Name.Value);
        QVERIFY(!FPage->CanLeaveTab());

        Retype(ved, QStringLiteral("7"));
        ClickTab(TCfgPage::tabGeneral);
        QCOMPARE(FPage->currentIndex(), int(TCfgPage::tabGeneral));
        const TMseAxis& after = FDb->Cfg_Axis_Get(axis);
        QCOMPARE(after.Name.Value, QStringLiteral("Changed"));
        const double stored = edit.endsWith(QLatin1String("Min"))   ? after.Min.Value
                              : edit.endsWith(QLatin1String("Max")) ? after.Max.Value
                                                                    : after.Inc.Value;
        QCOMPARE(stored, 7.0 + offset);
    }

    void curveCells_data() {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("typed"); // empty: one step down the list
        QTest::addColumn<QVariant>("stored");

        QTest::newRow("description") << int(TCfgPage::colDescription) << "Outside" << QVariant("Outside");
        QTest::newRow("axis") << int(TCfgPage::colAxis) << "" << QVariant(2);
        QTest::newRow("width") << int(TCfgPage::colWidth) << "" << QVariant(2);
        QTest::newRow("type") << int(TCfgPage::colType) << "" << QVariant(1);
        QTest::newRow("format typed") << int(TCfgPage::colFormat) << "0.00" << QVariant("0.00");
    }

    void curveCells() {
        QFETCH(int, column);
        QFETCH(QString, typed);
        QFETCH(QVariant, stored);
        Open();
        FPage->Enter(TCfgPage::tabCurve);
        QSignalSpy modified(FPage.get(), &TCfgPage::modified);
        const int row = 1;
        QPointer<QWidget> editor = OpenEditor(row, column);
        QVERIFY(editor);
        if (typed.isEmpty()) {
            QTest::keyClick(editor, Qt::Key_Down);
        } else {
            Retype(editor, typed);
            QTest::keyClick(editor, Qt::Key_Return);
        }
        QTRY_VERIFY(!editor); // closed, not only hidden

        QVariant actual;
        switch (column) {
        case TCfgPage::colDescription:
            actual = FDb->Curve_NameGet(row);
            break;
        case TCfgPage::colAxis:
            actual = FDb->Curve_AxisGet(row);
            break;
        case TCfgPage::colWidth:
            actual = FDb->Curve_WidthGet(row);
            break;
        case TCfgPage::colType:
            actual = int(FDb->Curve_TypeGet(row));
            break;
        case TCfgPage::colFormat:
            actual = FDb->Curve_FormatGet(row);
            break;
        }
        QCOMPARE(actual.toString(), stored.toString());
        QVERIFY(modified.count() >= 1);
        // The neighbours stay as they were.
        QCOMPARE(FDb->Curve_NameGet(0), QStringLiteral("Temp"));
        QCOMPARE(FDb->Curve_AxisGet(2), 1);
    }

    void colourCell() {
        Open();
        FPage->Enter(TCfgPage::tabCurve);
        const int before = FDb->Curve_ColorGet(2);
        QColor offered, chosen(0x11, 0x22, 0x33);
        bool accept = true;
        TZebDlg::SetDialogHook([&](QDialog* d) {
            auto* cd = qobject_cast<QColorDialog*>(d);
            QVERIFY(cd);
            offered = cd->currentColor();
            cd->setCurrentColor(chosen);
            accept ? cd->accept() : cd->reject();
        });
        QTest::mouseClick(Table()->viewport(), Qt::LeftButton, {}, CellCenter(2, TCfgPage::colColor));
        QCOMPARE(offered, QColor(before & 0xFF, (before >> 8) & 0xFF, (before >> 16) & 0xFF));
        QCOMPARE(FDb->Curve_ColorGet(2), 0x332211);

        chosen = QColor(0x44, 0x55, 0x66); // the keyboard way, on the current cell
        QTest::keyClick(Table(), Qt::Key_Space);
        QCOMPARE(FDb->Curve_ColorGet(2), 0x665544);

        accept = false;
        chosen = Qt::black;
        QTest::mouseClick(Table()->viewport(), Qt::LeftButton, {}, CellCenter(2, TCfgPage::colColor));
        QCOMPARE(offered, QColor(0x44, 0x55, 0x66));
        QCOMPARE(FDb->Curve_ColorGet(2), 0x665544);
    }

    void openEditEndedOnLeave() {
        Open();
        FPage->Enter(TCfgPage::tabCurve);
        QWidget* editor = OpenEditor(0, TCfgPage::colDescription);
        QVERIFY(editor);
        Retype(editor, QStringLiteral("Inlet"));
        QVERIFY(FPage->Leave()); // the edit was still open
        QCOMPARE(FDb->Curve_NameGet(0), QStringLiteral("Inlet"));
    }

    void editOfVanishedCurveIgnored() {
        Open();
        FPage->Enter(TCfgPage::tabCurve);
        QWidget* editor = OpenEditor(2, TCfgPage::colDescription);
        QVERIFY(editor);
        Retype(editor, QStringLiteral("Gone"));
        FDb->Reset(); // a new file, while the edit is open
        FPage->EndEdit();
        QCOMPARE(FDb->Curve_Count(), 0);
        FPage->Enter(TCfgPage::tabCurve);
        QCOMPARE(Table()->model()->rowCount(), 0);
    }

    void serialColumn_data() {
        QTest::addColumn<QStringList>("serials");
        QTest::addColumn<bool>("shown");
        QTest::newRow("one logger") << QStringList{"A1", "A1", "A1"} << false;
        QTest::newRow("two loggers") << QStringList{"A1", "B7", "B7"} << true;
    }

    void serialColumn() {
        QFETCH(QStringList, serials);
        QFETCH(bool, shown);
        Open(serials);
        FPage->Enter(TCfgPage::tabCurve);
        QCOMPARE(!Table()->isColumnHidden(TCfgPage::colSerial), shown);
        if (shown)
            QCOMPARE(Table()->model()->index(1, TCfgPage::colSerial).data().toString(), QStringLiteral("B7"));
        QCOMPARE(Table()->model()->index(2, TCfgPage::colNumber).data().toInt(), 3);
        // Each column at least as wide as designed (the name narrower beside the serial numbers),
        // and as its header's text needs in every language, so no header is cut.
        const int widths[] = {74, 85, shown ? 100 : 185, 86, 86, 86, 86, 126};
        const auto english = qScopeGuard([this] {
            SwitchTexts(LangEnglish);
            FPage->ApplyLanguage();
        });
        for (int language : {LangGerman, LangFrench, LangEnglish}) {
            SwitchTexts(language);
            FPage->ApplyLanguage();
            for (int c = 0; c < TCfgPage::colCount; ++c) {
                if (Table()->isColumnHidden(c)) continue;
                const int need = Table()->horizontalHeader()->sectionSizeHint(c);
                QVERIFY2(Table()->columnWidth(c) >= std::max(widths[c], need),
                         qPrintable(QStringLiteral("language %1, column %2: %3 wide, needs %4")
                                        .arg(language)
                                        .arg(c)
                                        .arg(Table()->columnWidth(c))
                                        .arg(std::max(widths[c], need))));
            }
        }
        // The grid is wider than the page: Shift with the wheel takes it sideways.
        FPage->resize(400, 300);
        FPage->show();
        QScrollBar* bar = Table()->horizontalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        bar->setValue(0);
        QWidget* viewport = Table()->viewport();
        const QPointF at(viewport->width() / 2.0, viewport->height() / 2.0);
        QWheelEvent e(at, viewport->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::ShiftModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport, &e);
        QVERIFY(bar->value() > 0);
    }

    void generalAndCursorWrittenBack() {
        Open();
        FDb->General_Get().FontLegend.Name = QStringLiteral("No Such Family 9");
        FPage->Enter(TCfgPage::tabGeneral);
        Retype(C<QLineEdit>("edtCfgFoot"), QStringLiteral("Line 2"));
        const bool showTime = C<QCheckBox>("chkCfgShowTime")->isChecked();
        C<QCheckBox>("chkCfgShowTime")->setFocus();
        QTest::keyClick(C<QCheckBox>("chkCfgShowTime"), Qt::Key_Space);
        Retype(C<QSpinBox>("osfCfgFontSizeTitle"), QStringLiteral("14"));
        auto* style = C<QComboBox>("cbxCfgFontStyleAxes");
        style->setFocus();
        QTest::keyClick(style, Qt::Key_Down);
        ClickTab(TCfgPage::tabCursor);
        const TMseSettings& s = FDb->Settings();
        QCOMPARE(s.Foot.Value, QStringLiteral("Line 2"));
        QCOMPARE(s.ShowTime.Value, !showTime);
        QCOMPARE(s.FontTitle.Size.Value, 14);
        QCOMPARE(s.FontAxes.Style.Value, 1);
        QCOMPARE(s.FontLegend.Name.Value, QStringLiteral("No Such Family 9"));

        auto* axis = C<QComboBox>("cbxCfgCursor1Axis");
        axis->setFocus();
        QTest::keyClick(axis, Qt::Key_Down);
        C<QComboBox>("cbxCfgCursor1Width")->setCurrentIndex(4);
        Retype(C<QComboBox>("cbxCfgCursor2FormatY"), QStringLiteral("0.0000"));
        QVERIFY(FPage->Leave());
        QCOMPARE(FDb->Cursor_Get(0).Axis, 1);
        QCOMPARE(FDb->Cursor_Get(0).Width, 4);
        QCOMPARE(FDb->Cursor_Get(1).YFormat, QStringLiteral("0.0000"));
    }

    // Only an edit changes a value: passing through every tab leaves what the controls cannot
    // show as it was.
    void visitKeepsStoredValues() {
        Open();
        FDb->Cursor_Get(0).Width = 0;
        FDb->General_Get().FontTitle.Size = 120;
        FDb->Axis_Get(axLeft).Format = QStringLiteral("0.00 'bar'");
        FPage->Enter(TCfgPage::tabGeneral);
        QCOMPARE(C<QComboBox>("cbxCfgCursor1Width")->currentText(), QStringLiteral("1"));
        for (int t = 0; t < FPage->count(); ++t)
            ClickTab(t);
        ClickTab(TCfgPage::tabGeneral);
        QVERIFY(FPage->Leave());
        const TMseSettings& s = FDb->Settings();
        QCOMPARE(s.Cursor1.Width.Value, 0);
        QCOMPARE(s.FontTitle.Size.Value, 120);
        QCOMPARE(s.AxisLeft.Format.Value, QStringLiteral("0.00 'bar'"));
        QCOMPARE(FDb->Cursor_Get(0).Width, 0);
    }

    void timeAxisInSecondsFromStart() {
        Open();
        // Not on a millisecond: an untouched field must not round it away.
        FDb->Axis_Get(axBottom).Min = kT0 + 60.0001234;
        FPage->Enter(TCfgPage::tabAxisBottom);
        QCOMPARE(C<TValidateEdit>("vedCfgAxisBottomMin")->text(), QStringLiteral("60"));
        QCOMPARE(C<TValidateEdit>("vedCfgAxisBottomMax")->text(), QStringLiteral("600"));
        Retype(C<TValidateEdit>("vedCfgAxisBottomMax"), QStringLiteral("900.5"));
        QVERIFY(FPage->Leave());
        QCOMPARE(FDb->Axis_Get(axBottom).Min, kT0 + 60.0001234);
        QCOMPARE(FDb->Axis_Get(axBottom).Max, kT0 + 900.5);
    }

    void timeAxisFormatPerType_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("format");
        QTest::newRow("seconds keep the pattern") << 0 << "dd.mm hh:mm";
        QTest::newRow("relative list") << 1 << "000:00";
        QTest::newRow("date list") << 2 << "dd.mm.yyyy hh:mm:ss.zzz";
    }

    void timeAxisFormatPerType() {
        QFETCH(int, type);
        QFETCH(QString, format);
        Open();
        FDb->Axis_Get(axBottom).Format = QStringLiteral("dd.mm hh:mm");
        FPage->Enter(TCfgPage::tabAxisBottom);
        auto* relative = C<QComboBox>("cbxCfgAxisBottomFormat1");
        auto* absolute = C<QComboBox>("cbxCfgAxisBottomFormat2");
        QCOMPARE(absolute->currentData().toString(), QStringLiteral("dd.mm hh:mm"));
        C<QComboBox>("cbxCfgAxisBottomType")->setCurrentIndex(type);
        QCOMPARE(relative->isEnabled(), type == 1);
        QCOMPARE(absolute->isEnabled(), type == 2);
        // Both lists get a choice; only the type's own counts.
        relative->setCurrentIndex(relative->findData(QStringLiteral("000:00")));
        absolute->setCurrentIndex(absolute->findData(QStringLiteral("dd.mm.yyyy hh:mm:ss.zzz")));
        QVERIFY(FPage->Leave());
        QCOMPARE(int(FDb->Axis_Get(axBottom).XType), type);
        QCOMPARE(FDb->Axis_Get(axBottom).Format, format);
    }

    void timeAxisPopups_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("result");

        QTest::newRow("minimum as a date") << "abtCfgAxisBottomMin" << 2 << "60.5";
        QTest::newRow("maximum as a span") << "abtCfgAxisBottomMax" << 1 << "87000";
        QTest::newRow("increment as an interval") << "abtCfgAxisBottomInc" << 0 << "300";
    }

    void timeAxisPopups() {
        QFETCH(QString, button);
        QFETCH(int, type);
        QFETCH(QString, result);
        Open();
        FPage->Enter(TCfgPage::tabAxisBottom);
        C<QComboBox>("cbxCfgAxisBottomType")->setCurrentIndex(type);
        QString shown;
        WhenShown(QStringLiteral("TDateTimeInput"), [&shown](QDialog* p) {
            if (auto* date = p->findChild<QDateEdit*>(QStringLiteral("dtpDate")); date && date->isVisible()) {
                shown = date->date().toString(Qt::ISODate) + QLatin1Char(' ') +
                        p->findChild<QTimeEdit*>(QStringLiteral("dtpDateTime"))->time().toString(Qt::ISODate);
                Retype(p->findChild<QLineEdit*>(QStringLiteral("edtDateMSec")), QStringLiteral("500"));
            } else if (auto* days = p->findChild<QLineEdit*>(QStringLiteral("edtTimeDay"));
                       days && days->isVisible()) {
                shown = days->text() + QLatin1Char('+') +
                        p->findChild<QTimeEdit*>(QStringLiteral("dtpTime"))->time().toString(Qt::ISODate);
                Retype(days, QStringLiteral("1"));
            } else {
                auto* box = p->findChild<QComboBox*>(QStringLiteral("cbxInterval"));
                shown = box->currentText();
                box->setCurrentIndex(2);
            }
            QTest::mouseClick(p->findChild<QPushButton*>(QStringLiteral("btnOK")), Qt::LeftButton);
        });
        QTest::mouseClick(C<QToolButton>(button), Qt::LeftButton);
        const QString edit = QString(button).replace(QLatin1String("abt"), QLatin1String("ved"));
        QCOMPARE(C<TValidateEdit>(edit)->text(), result);
        if (type == 2) QCOMPARE(shown, QStringLiteral("2024-01-01 00:01:00"));
        if (type == 1) QCOMPARE(shown, QStringLiteral("0+00:10:00"));
        if (type == 0) QCOMPARE(shown, QStringLiteral("00:00:30"));
    }

    void timeAxisHelp() {
        Open();
        FPage->Enter(TCfgPage::tabAxisBottom);
        QString text;
        TZebDlg::SetDialogHook([&text](QDialog* d) {
            if (auto* box = qobject_cast<QMessageBox*>(d)) text = box->text();
            d->accept();
        });
        QTest::mouseClick(C<QToolButton>("btnCfgAxisBottomHelp"), Qt::LeftButton);
        const QStringList lines = text.split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines[1].startsWith(QStringLiteral("The time axis label is aligned to the right")));
    }

    void undoAxisTab() {
        Open();
        FDb->Axis_Get(axLeft).Min = 3;
        FPage->Enter(TCfgPage::tabGeneral);
        Retype(C<QLineEdit>("edtCfgTitle"), QStringLiteral("Kept"));
        ClickTab(TCfgPage::tabAxisLeft);
        auto* min = C<TValidateEdit>("vedCfgAxisLeftMin");
        Retype(min, QStringLiteral("42"));
        ClickTab(TCfgPage::tabAxisRight); // 42 is in the template now
        ClickTab(TCfgPage::tabAxisLeft);
        QCOMPARE(min->text(), QStringLiteral("42"));
        Retype(min, QStringLiteral("oops"));

        FPage->Undo();
        QCOMPARE(min->text(), QStringLiteral("3"));
        QVERIFY(!min->ShowsError());
        QCOMPARE(FDb->Cfg_Axis_Get(axLeft).Min.Value, 3.0);
        // Another tab's edit is not undone.
        QCOMPARE(FDb->Settings().Title.Value, QStringLiteral("Kept"));
        QVERIFY(FPage->Leave());
        QCOMPARE(FDb->General_Get().Title, QStringLiteral("Kept"));
    }

    void undoCurves() {
        Open();
        FPage->Enter(TCfgPage::tabCurve);
        const int color = FDb->Curve_ColorGet(0);
        QWidget* editor = OpenEditor(0, TCfgPage::colDescription);
        QVERIFY(editor);
        Retype(editor, QStringLiteral("Renamed"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(FDb->Curve_NameGet(0), QStringLiteral("Renamed")); // the view commits queued
        FDb->Curve_ColorSet(0, 0x123456);

        FPage->Undo();
        QCOMPARE(FDb->Curve_NameGet(0), QStringLiteral("Temp"));
        QCOMPARE(FDb->Curve_ColorGet(0), color);
        QCOMPARE(Table()->model()->index(0, TCfgPage::colDescription).data().toString(),
                 QStringLiteral("Temp"));
    }
};

QTEST_MAIN(TstCfgPage)
#include "tst_cfgpage.moc"
