// The table view through the real widgets: cell texts and alarm colours, paging, the
// scroll bar, the still top row at both edges, and home and end on a large store.

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "StoreFill.h"
#include "ui/TableView.h"
#include "ui/ZebChart.h"

#include <QApplication>
#include <QHeaderView>
#include <QWheelEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QToolButton>

namespace {

// Curve 0: one point a second from 0; curve 1: every other second, with a gap marker.
void Fill(TDataBase& db, int points) {
    AddSampledCurve(db, QStringLiteral("M1"), points, 0, 1, [](int i) { return i % 100; });
    TStoreReceiver r(db);
    r.AddCurve(QStringLiteral("M2"));
    r.SetChannelName(0, QStringLiteral("Temp"));
    r.SetUnit(0, QStringLiteral("°C"));
    r.SetChannelName(1, QStringLiteral("Hum"));
    std::vector<double> t, v;
    std::vector<TPointKind> k;
    for (int i = 0; i < points; i += 2) {
        t.push_back(i);
        v.push_back(-i);
        k.push_back(i == 4 ? TPointKind::Gap : TPointKind::Value);
    }
    r.AddPoints(1, t, v, k);
    r.SetLimits(0, 2, 1, 50.0, 0.0); // alarm above 50
    db.Curve_FormatSet(0, QStringLiteral("0.0"));
    db.Curve_FormatSet(1, QStringLiteral("0"));
    db.Table_SetFirstRow(0);
}

// Many channels with long names: channel k holds 1000 * k + the second.
void FillMany(TDataBase& db, int channels, int points) {
    TStoreReceiver r(db);
    for (int k = 0; k < channels; ++k) {
        AddSampledCurve(db, QStringLiteral("EB-T%1").arg(k), points, 0, 1, [k](int i) { return 1000 * k + i; });
        r.SetChannelName(k, QStringLiteral("Temperature channel %1").arg(k));
        r.SetUnit(k, QStringLiteral("°C"));
        db.Curve_FormatSet(k, QStringLiteral("0"));
    }
    db.Table_SetFirstRow(0);
}

QString Cell(const TTableView& v, int row, int column) {
    return v.Model()->data(v.Model()->index(row, column), Qt::DisplayRole).toString();
}

bool Red(const TTableView& v, int row, int column) {
    return v.Model()->data(v.Model()->index(row, column), Qt::ForegroundRole).value<QColor>() == QColor(255, 0, 0);
}

} // namespace

class TstTableView : public QObject {
    Q_OBJECT

    std::unique_ptr<TDataBase> FDb;
    std::unique_ptr<TTableView> FView;

    void Make(int points, int height = 400, int channels = 2, int width = 600) {
        FView.reset();
        FDb = std::make_unique<TDataBase>();
        if (channels == 2)
            Fill(*FDb, points);
        else
            FillMany(*FDb, channels, points);
        FView = std::make_unique<TTableView>(FDb.get());
        FView->resize(width, height);
        FView->show();
        QVERIFY(QTest::qWaitForWindowExposed(FView.get()));
        FView->Enter();
    }
    double First() const { return FDb->Table_GetFirstTime(); }

private Q_SLOTS:
    void initTestCase() {
        zeb::SetFormats(2);
        zeb::SwitchTexts(1);
    }

    void cellTexts() {
        Make(100);
        const TTableModel& m = *FView->Model();
        QCOMPARE(m.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Time"));
        QCOMPARE(m.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Temp [°C]"));
        QCOMPARE(m.headerData(2, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Hum"));
        // The first data row stands for store row -1 and stays empty.
        QCOMPARE(Cell(*FView, 0, 0), QString());
        QCOMPARE(Cell(*FView, 1, 0), zeb::FormatTime(zeb::TTimeKind::DateTimeMs, 0.0));
        QCOMPARE(Cell(*FView, 1, 1), QStringLiteral("0.0"));
        QCOMPARE(Cell(*FView, 1, 2), QStringLiteral("0"));
        QCOMPARE(Cell(*FView, 2, 2), QString()); // no value at second 1
        QCOMPARE(Cell(*FView, 5, 2), QString()); // a gap marker has no value
        QCOMPARE(Cell(*FView, 7, 2), QStringLiteral("-6"));
    }

    // Values no number format can show have texts of their own, and are never an alarm.
    void nonFiniteValues() {
        FView.reset();
        FDb = std::make_unique<TDataBase>();
        TStoreReceiver r(*FDb);
        r.AddCurve(QStringLiteral("M1"));
        const double inf = std::numeric_limits<double>::infinity();
        const std::vector<double> t{0, 1, 2, 3}, v{1.5, std::numeric_limits<double>::quiet_NaN(), inf, -inf};
        r.AddPoints(0, t, v, std::vector<TPointKind>(4, TPointKind::Value));
        r.SetLimits(0, 4, 1, 0.0, 10.0); // alarm below 0 or above 10
        FDb->Curve_FormatSet(0, QStringLiteral("0.0"));
        FDb->Table_SetFirstRow(0);
        FView = std::make_unique<TTableView>(FDb.get());
        FView->resize(400, 300);
        FView->show();
        QVERIFY(QTest::qWaitForWindowExposed(FView.get()));
        FView->Enter();
        QCOMPARE(Cell(*FView, 1, 1), QStringLiteral("1.5"));
        QCOMPARE(Cell(*FView, 2, 1), QStringLiteral("NAN"));
        QCOMPARE(Cell(*FView, 3, 1), QStringLiteral("INF"));
        QCOMPARE(Cell(*FView, 4, 1), QStringLiteral("-INF"));
        QVERIFY(!Red(*FView, 2, 1));
    }

    void alarmColoursFollowTheLimitSwitch() {
        Make(100);
        FView->GUI_TableGotoTime(45);
        // Store rows start at 45: table row r shows 45 + r - 1.
        QVERIFY(!Red(*FView, 6, 1)); // 50: on the limit
        QVERIFY(Red(*FView, 7, 1));  // 51
        QVERIFY(!Red(*FView, 7, 0)); // never the time column
        QVERIFY(!Red(*FView, 7, 2));
        FDb->Curve_SetAllLimitLines(false);
        QVERIFY(!Red(*FView, 7, 1));
    }

    void pageStep_data() {
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("small");
        QTest::newRow("many rows") << 500 << false;
        QTest::newRow("four rows or fewer") << 110 << true;
    }
    void pageStep() {
        QFETCH(int, height);
        QFETCH(bool, small);
        Make(1000, height);
        const int n = FView->Model()->VisibleRows();
        QCOMPARE(n <= 4, small);
        QCOMPARE(FView->PageStep(), small ? 1 : n - 3);
        FView->GUI_TableGotoTime(100);
        FView->GUI_TableGotoReverseFast();
        QCOMPARE(First(), 100.0 - FView->PageStep());
        FView->GUI_TableGotoTime(100);
        FView->GUI_TableGotoForwardFast(); // one more than a page
        QCOMPARE(First(), 100.0 + FView->PageStep() + 1);
        QTest::keyClick(FView->Table(), Qt::Key_PageUp);
        QCOMPARE(First(), 101.0);
    }

    void scrollBarMapsTheTimeRange() {
        Make(1001);
        QStringList status;
        connect(FView.get(), &TTableView::statusText, this, [&](const QString& s) { status << s; });
        QScrollBar* bar = FView->ScrollBar();
        bar->setSliderDown(true);
        bar->setSliderPosition(100);
        QCOMPARE(status.last(), QStringLiteral("X= ") + zeb::FormatTime(zeb::TTimeKind::DateTimeMs, 1000.0));
        bar->setSliderDown(false);
        QCOMPARE(status.last(), QString());
        QCOMPARE(First(), 1000.0);
        bar->setSliderDown(true);
        bar->setSliderPosition(0);
        bar->setSliderDown(false);
        QCOMPARE(First(), 0.0);
        FView->GUI_TableGotoTime(500);
        FView->Enter();
        QCOMPARE(bar->value(), 0);
    }

    void topRowStaysAtBothEdges() {
        Make(1000);
        QTableView* t = FView->Table();
        const int last = FView->Model()->VisibleRows() - 1;
        FView->GUI_TableGotoTime(200);
        t->setFocus();
        t->setCurrentIndex(FView->Model()->index(last, 1));
        QTest::keyClick(t, Qt::Key_Down);
        QCOMPARE(First(), 201.0);
        QCOMPARE(t->currentIndex().row(), last);
        t->setCurrentIndex(FView->Model()->index(0, 1));
        QTest::keyClick(t, Qt::Key_Up);
        QCOMPARE(First(), 200.0);
        QCOMPARE(t->currentIndex().row(), 0);
        QTest::keyClick(t, Qt::Key_Down); // inside the window: the control moves
        QCOMPARE(First(), 200.0);
        QCOMPARE(t->currentIndex().row(), 1);
    }

    // Twenty channels need a horizontal scroll bar; the rows are counted without the room it
    // takes, so the last row is whole, and stepping past it moves the store, never the grid.
    void manyChannelsKeepRowsAligned_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(500, 230);
        QTest::newRow("odd height") << QSize(700, 457);
        QTest::newRow("large") << QSize(1100, 811);
    }
    void manyChannelsKeepRowsAligned() {
        QFETCH(QSize, size);
        Make(500, size.height(), 20, size.width());
        QTableView* t = FView->Table();
        auto* frozen = FView->findChild<QTableView*>(QStringLiteral("otbTableTime"));
        QVERIFY(frozen);
        QTRY_VERIFY(t->horizontalScrollBar()->isVisible()); // it comes with the next layout pass
        const int last = FView->Model()->VisibleRows() - 1;
        QVERIFY(t->visualRect(FView->Model()->index(last, 1)).bottom() < t->viewport()->height());
        t->setFocus();
        t->setCurrentIndex(FView->Model()->index(last, 7));
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(t, Qt::Key_Down);
        QCOMPARE(First(), 3.0);
        QCOMPARE(t->verticalScrollBar()->value(), 0);
        for (int row : {0, last / 2, last}) {
            const QRect time = frozen->visualRect(FView->Model()->index(row, 0));
            const QRect value = t->visualRect(FView->Model()->index(row, 7));
            QCOMPARE(frozen->viewport()->mapTo(FView.get(), time.topLeft()).y(),
                     t->viewport()->mapTo(FView.get(), value.topLeft()).y());
        }
        // Table row r shows store row r - 2, whose second is First() + r - 1 here.
        QCOMPARE(Cell(*FView, last, 0), zeb::FormatTime(zeb::TTimeKind::DateTimeMs, First() + last - 1));
        QCOMPARE(Cell(*FView, last, 7), QString::number(6000 + int(First()) + last - 1));
    }

    void wheelMovesTheStoreRows() {
        Make(1000);
        FView->GUI_TableGotoTime(100);
        QSignalSpy moved(FDb.get(), &TDataBase::tableMoved);
        QWidget* viewport = FView->Table()->viewport();
        auto wheel = [&](int delta) {
            const QPointF at(viewport->width() / 2.0, viewport->height() / 2.0);
            QWheelEvent e(at, viewport->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
            QApplication::sendEvent(viewport, &e);
        };
        const int step = QApplication::wheelScrollLines();
        wheel(-120);
        QCOMPARE(First(), 100.0 + step);
        QCOMPARE(moved.count(), 1);
        wheel(60); // half a notch waits for the other half
        QCOMPARE(First(), 100.0 + step);
        wheel(60);
        QCOMPARE(First(), 100.0);
        QCOMPARE(FView->Table()->verticalScrollBar()->value(), 0);
    }

    // Shift with the wheel goes sideways through many channels, as Alt does; the rows stay.
    void shiftWheelGoesSideways() {
        Make(100, 400, 12, 500);
        FView->GUI_TableGotoTime(50);
        QScrollBar* bar = FView->Table()->horizontalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        QWidget* viewport = FView->Table()->viewport();
        const QPointF at(viewport->width() / 2.0, viewport->height() / 2.0);
        for (Qt::KeyboardModifier key : {Qt::ShiftModifier, Qt::AltModifier}) {
            bar->setValue(0);
            // Alt turns the wheel sideways on the way in; Shift leaves that to the program.
            const QPoint delta = key == Qt::AltModifier ? QPoint(-120, 0) : QPoint(0, -120);
            QWheelEvent e(at, viewport->mapToGlobal(at), QPoint(), delta, Qt::NoButton, key, Qt::NoScrollPhase, false);
            QApplication::sendEvent(viewport, &e);
            QVERIFY2(bar->value() > 0, key == Qt::ShiftModifier ? "Shift" : "Alt");
            QCOMPARE(First(), 50.0);
        }
    }

    void columnsFitTheirHeaders() {
        Make(10, 400, 3, 900);
        FDb->Curve_NameSet(2, QString(200, QLatin1Char('W')));
        FView->Enter();
        const QTableView* t = FView->Table();
        const QFontMetrics fm = t->horizontalHeader()->fontMetrics();
        const QString header = FView->Model()->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString();
        QCOMPARE(header, QStringLiteral("Temperature channel 0 [°C]"));
        QVERIFY(t->columnWidth(1) > fm.horizontalAdvance(header));
        // A very long name stops at a sensible width; the tooltip holds all of it.
        QVERIFY(t->columnWidth(3) < t->viewport()->width() / 2);
        QCOMPARE(FView->Model()->headerData(3, Qt::Horizontal, Qt::ToolTipRole).toString(),
                 FView->Model()->headerData(3, Qt::Horizontal, Qt::DisplayRole).toString());
    }

    void homeAndEndOnALargeStore() {
        Make(3000000);
        QTest::keyClick(FView->Table(), Qt::Key_End);
        // The end sets the last row, then pages back: the last page is full.
        QCOMPARE(First(), 2999999.0 - FView->PageStep());
        QTest::keyClick(FView->Table(), Qt::Key_Home);
        QCOMPARE(First(), 0.0);
        FView->findChild<QToolButton*>(QStringLiteral("spbTableEnd"))->click();
        QCOMPARE(First(), 2999999.0 - FView->PageStep());
        FView->findChild<QToolButton*>(QStringLiteral("spbTableReverse"))->click();
        QCOMPARE(First(), 2999998.0 - FView->PageStep());
    }

    // A move redraws the table once; the chart, which does not show the rows, is left alone.
    void oneRedrawPerMove() {
        Make(100);
        TZebChart chart(FDb.get());
        QSignalSpy rebuilt(&chart, &TZebChart::rebuilt);
        QSignalSpy redrawn(FView->Table()->model(), &QAbstractItemModel::dataChanged);
        FView->GUI_TableGotoForward();
        QCOMPARE(redrawn.count(), 1);
        QCOMPARE(rebuilt.count(), 0);
    }
};

QTEST_MAIN(TstTableView)
#include "tst_tableview.moc"
