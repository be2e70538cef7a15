// Free text boxes and notices through the real chart offscreen: written, edited, dragged and
// deleted with the mouse and their menus, the crosshair read-outs put into a box, the notice
// command without a left axis, kept in the template, and drawn into a picture.

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"
#include "MainFixture.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/ChartTexts.h"
#include "ui/CrossHair.h"
#include "ui/Main.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QAction>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace zeb;
using namespace Qt::StringLiterals;

namespace {

constexpr double kT0 = 7.6e8;

// What the next input box answers: a text, or a cancel when none is set.
struct TAnswers {
    QStringList Texts;
    QStringList Titles;
};
TAnswers& Answers() {
    static TAnswers a;
    return a;
}

struct TChart {
    TDataBase Db;
    std::unique_ptr<TZebChart> Chart;
    TChartTexts* Texts = nullptr;

    TChart() {
        AddSampledCurve(Db, u"T1"_s, 200, kT0, 1, [](int i) { return 20.0 + std::sin(i / 10.0); });
        Db.Curve_AxisSet(0, axLeft);
        Chart = std::make_unique<TZebChart>(&Db);
        Chart->resize(900, 500);
        Chart->show();
        Chart->replot();
        Chart->SetTextMode(true);
        Texts = Chart->Texts();
    }
    QPoint Centre(const QCPItemText* item) const {
        return QRectF(item->topLeft->pixelPosition(), item->bottomRight->pixelPosition()).center().toPoint();
    }
};

} // namespace

class TstChartTexts : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        SetFormats(2);
        SwitchTexts(LangEnglish);
        TZebDlg::SetNativeDialogs(false);
        TZebDlg::SetDialogHook([](QDialog* dlg) {
            if (auto* box = qobject_cast<QInputDialog*>(dlg)) {
                Answers().Titles << box->windowTitle();
                if (Answers().Texts.isEmpty()) {
                    box->reject();
                    return;
                }
                box->setTextValue(Answers().Texts.takeFirst());
                box->accept();
                return;
            }
            Answers().Titles << dlg->windowTitle();
            dlg->reject();
        });
    }
    void init() { Answers() = TAnswers(); }

    // A click beside the marks writes a notice where it was; its mark is dragged, changed and
    // deleted through its menu.
    void notices() {
        TChart c;
        QSignalSpy modified(c.Chart.get(), &TZebChart::modified);
        const QPoint at = c.Chart->axisRect()->rect().center();
        Answers().Texts << u"Door opened\nby the cleaner"_s;
        QTest::mouseClick(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, at);
        QCOMPARE(Answers().Titles, QStringList{u"New notice"_s});
        const TMseTimeTextList& notices = c.Db.Settings().TimeTexts;
        QCOMPARE(notices.Count(), 1);
        QCOMPARE(notices[0].Text.Value, u"Door opened\nby the cleaner"_s);
        QVERIFY(std::abs(notices[0].X.Value - c.Chart->xAxis->pixelToCoord(at.x())) < 1e-6);
        QVERIFY(c.Texts->NoticesShown());
        QVERIFY(modified.count() >= 1);

        // Dragged: the mark moves, the point stays.
        const QPoint mark = c.Centre(c.Texts->NoticeItem(0));
        const QPointF corner = c.Texts->NoticeItem(0)->topLeft->pixelPosition();
        QTest::mousePress(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, mark);
        QTest::mouseMove(c.Chart.get(), mark + QPoint(60, 40));
        QTest::mouseRelease(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, mark + QPoint(60, 40));
        c.Chart->replot();
        QCOMPARE(c.Texts->NoticeItem(0)->topLeft->pixelPosition(), corner + QPointF(60, 40));
        QVERIFY(std::abs(notices[0].X.Value - c.Chart->xAxis->pixelToCoord(at.x())) < 1e-6);

        // The right button on the mark: its menu changes and deletes it.
        QTest::mouseClick(c.Chart.get(), Qt::RightButton, Qt::NoModifier, c.Centre(c.Texts->NoticeItem(0)));
        QVERIFY(c.Texts->PopupMenu2()->isVisible());
        Answers().Texts << u"Défrost — 除霜"_s;
        c.Texts->PopupMenu2()->findChild<QAction*>(u"pop2Modify"_s)->trigger();
        c.Texts->PopupMenu2()->hide();
        QCOMPARE(Answers().Titles.last(), u"modify notice"_s);
        QCOMPARE(notices[0].Text.Value, u"Défrost — 除霜"_s);
        // A cancelled editor changes nothing; an index beyond the list does nothing.
        c.Texts->PopupMenu2Click(0, 0, QPoint());
        QCOMPARE(notices[0].Text.Value, u"Défrost — 除霜"_s);
        c.Texts->PopupMenu2Click(1, 5, QPoint());
        QCOMPARE(notices.Count(), 1);
        c.Texts->PopupMenu2()->findChild<QAction*>(u"pop2Delete"_s)->trigger();
        QCOMPARE(notices.Count(), 0);
        // An empty text adds nothing.
        Answers().Texts << QString();
        QTest::mouseClick(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, at);
        QCOMPARE(notices.Count(), 0);
    }

    void insertTextAtTopLeft() {
        TChart c;
        c.Texts->InsertText(u"Start"_s);
        const TMseTimeText& n = c.Db.Settings().TimeTexts[0];
        QCOMPARE(n.X.Value, c.Chart->xAxis->range().lower);
        QCOMPARE(n.Y.Value, c.Chart->yAxis->range().upper);
    }

    // Boxes: edited by a double click, dragged, filled with the crosshair read-outs.
    void freeBoxes() {
        TChart c;
        c.Texts->InsertBox(u"Pump A"_s, QPoint(100, 80));
        c.Chart->replot();
        TMseTextList& boxes = c.Db.Settings().Texts;
        QCOMPARE(boxes.Count(), 1);
        Answers().Texts << u"Pump B"_s;
        QTest::mouseDClick(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, c.Centre(c.Texts->BoxItem(0)));
        QCOMPARE(Answers().Titles.last(), u"Insert Text"_s);
        QCOMPARE(boxes[0].Text.Value, u"Pump B"_s);

        const QPoint grab = c.Centre(c.Texts->BoxItem(0));
        QTest::mousePress(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, grab);
        QTest::mouseMove(c.Chart.get(), grab + QPoint(150, 90));
        QTest::mouseRelease(c.Chart.get(), Qt::LeftButton, Qt::NoModifier, grab + QPoint(150, 90));
        QCOMPARE(boxes[0].X.Value, 250);
        QCOMPARE(boxes[0].Y.Value, 170);

        // With both crosshairs off the reset captions go in.
        c.Texts->PopupMenuClick(1, 0);
        QCOMPARE(boxes[0].Text.Value, u"X1= Y1="_s);
        c.Chart->CrossHair()->SetCursor(0, 0);
        c.Chart->CrossHair()->SetCursor(1, 0);
        c.Texts->PopupMenuClick(3, 0);
        QCOMPARE(boxes[0].Text.Value, c.Chart->CrossHair()->LabelText(4) + u" "_s + c.Chart->CrossHair()->LabelText(5));
        QVERIFY(boxes[0].Text.Value.startsWith(u"X2-X1="_s) && boxes[0].Text.Value.size() > 15);
        c.Texts->PopupMenuClick(0, 7); // beyond the list
        QCOMPARE(boxes.Count(), 1);
        // Its menu under the right button deletes it.
        c.Chart->replot();
        QTest::mouseClick(c.Chart.get(), Qt::RightButton, Qt::NoModifier, c.Centre(c.Texts->BoxItem(0)));
        QVERIFY(c.Texts->PopupMenu1()->isVisible());
        c.Texts->PopupMenu1()->actions().first()->trigger();
        c.Texts->PopupMenu1()->hide();
        QCOMPARE(boxes.Count(), 0);
    }

    // A box far right stays inside a narrower chart and goes back when it grows.
    void boxesStayInside() {
        TChart c;
        c.Texts->InsertBox(u"Far right"_s, QPoint(850, 60));
        c.Chart->resize(400, 300);
        c.Chart->replot();
        QVERIFY(c.Texts->BoxItem(0)->bottomRight->pixelPosition().x() <= 400);
        // Back at its place once the chart is wide enough for the whole box...
        c.Chart->resize(1200, 500);
        c.Chart->replot();
        QCOMPARE(c.Texts->BoxItem(0)->topLeft->pixelPosition().x(), 850.0);
        // ...and pulled in by exactly what it overhangs where it is not.
        const double width =
            c.Texts->BoxItem(0)->bottomRight->pixelPosition().x() - c.Texts->BoxItem(0)->topLeft->pixelPosition().x();
        QVERIFY(width > 20);
        c.Chart->resize(880, 500);
        c.Chart->replot();
        QCOMPARE(c.Texts->BoxItem(0)->topLeft->pixelPosition().x(), std::min(850.0, 880.0 - width));
        QCOMPARE(c.Db.Settings().Texts[0].X.Value, 850);
    }

    // Saved with the display settings and read back whole; drawn into a picture.
    void keptAndDrawn() {
        TChart c;
        // Line breaks, quotes, INI syntax, other scripts and backslashes (one before an "n").
        const QString special = u"Line 1\r\nLine 2 \"quoted\" 'single' ; = [x] äöü ✓ C:\\new\\\\x"_s;
        c.Texts->InsertBox(special, QPoint(120, 90));
        for (int i = 0; i < 300; ++i)
            c.Texts->InsertText(u"Notice %1"_s.arg(i));
        QTemporaryDir dir;
        const QString file = dir.filePath(u"texts.mse"_s);
        QVERIFY(c.Db.Ini_FileSave(file));
        TDataBase back;
        QVERIFY(back.Ini_FileOpen(file));
        QCOMPARE(back.Settings().Texts.Count(), 1);
        QCOMPARE(back.Settings().Texts[0].Text.Value, special);
        QCOMPARE(back.Settings().Texts[0].X.Value, 120);
        QCOMPARE(back.Settings().TimeTexts.Count(), 300);
        QCOMPARE(back.Settings().TimeTexts[299].Text.Value, u"Notice 299"_s);
        QCOMPARE(back.Settings().TimeTexts[0].X.Value, c.Db.Settings().TimeTexts[0].X.Value);

        // The picture with the texts differs from the one without, where the box stands.
        const QImage with = c.Chart->toPixmap(900, 500).toImage();
        c.Db.Settings().Texts.Clear();
        c.Chart->Rebuild();
        const QImage without = c.Chart->toPixmap(900, 500).toImage();
        int differ = 0;
        for (int y = 90; y < 120; ++y)
            for (int x = 120; x < 200; ++x)
                differ += with.pixel(x, y) != without.pixel(x, y);
        QVERIFY(differ > 50);
    }

    // Without a left axis the notice command hides the notices and says why.
    void noticeCommandNeedsTheLeftAxis() {
        QTemporaryDir dir;
        UseTestEnvironment(dir);
        const QString file = dir.filePath(u"n.zeb"_s);
        QVERIFY(MakeRecording(file, {.channels = 2, .records = 100}));
        TForm1 f;
        QVERIFY(Load(f, file));
        QAction* note = Action(f, u"menGraphNote"_s);
        note->trigger();
        QVERIFY(f.Chart()->Texts()->NoticesShown());
        for (int i = 0; i < f.DataBase()->Curve_Count(); ++i)
            f.DataBase()->Curve_AxisSet(i, axRight);
        f.Chart()->Rebuild();
        note->trigger();
        QVERIFY(!f.Chart()->Texts()->NoticesShown());
        QCOMPARE(Answers().Titles.size(), 1); // the message
        QVERIFY(!note->isChecked());
    }
};

QTEST_MAIN(TstChartTexts)
#include "tst_charttexts.moc"
