#include "ui/TableView.h"

#include "config/Texts.h"
#include "store/DataBase.h"
#include "ui/WheelSideways.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QWheelEvent>
#include <QScrollBar>
#include <QStyle>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;

// ====================================================================== model

TTableModel::TTableModel(TDataBase* db, QObject* parent) : QAbstractTableModel(parent), FDb(db) {}

int TTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : FRows; }

int TTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : FColumns; }

QString TTableModel::Table_OnGetCellData(int r, int c) const {
    if (FDb->IsLoading()) return {};
    if (r == 0) {
        if (c == 0) return Txt(TTextId::ColumnTime);
        const int curve = c - 1;
        const QString nameUnit = FDb->Curve_NameUnitGet(curve);
        return FDb->ExtView() > 0 ? FDb->Curve_SNumberGet(curve) + QLatin1Char(',') + nameUnit : nameUnit;
    }
    if (c == 0) return FDb->Table_GetTime(r - 2);
    return FDb->Table_GetValue(c - 1, r - 2);
}

bool TTableModel::Table_OnGetCellAttributes(int r, int c) const {
    return r >= 1 && c >= 1 && !FDb->IsLoading() && FDb->LimitLinesOn() && FDb->Table_IsAlarm(c - 1, r - 2);
}

QVariant TTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int r = index.row() + 1;
    switch (role) {
    case Qt::DisplayRole: return Table_OnGetCellData(r, index.column());
    case Qt::ForegroundRole:
        if (Table_OnGetCellAttributes(r, index.column())) return QColor(255, 0, 0);
        return {};
    case Qt::TextAlignmentRole:
        return index.column() == 0 ? QVariant(Qt::AlignLeft | Qt::AlignVCenter) : QVariant(Qt::AlignRight | Qt::AlignVCenter);
    default: return {};
    }
}

QVariant TTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return Table_OnGetCellData(0, section);
    return {};
}

void TTableModel::SetVisibleRows(int rows) {
    rows = std::max(rows, 1);
    if (rows == FRows) return;
    beginResetModel();
    FRows = rows;
    endResetModel();
}

void TTableModel::Refresh() {
    const int columns = FDb->IsLoading() ? 1 : FDb->Curve_Count() + 1;
    if (columns != FColumns) {
        beginResetModel();
        FColumns = columns;
        endResetModel();
        return;
    }
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, FColumns - 1);
    Q_EMIT dataChanged(index(0, 0), index(FRows - 1, FColumns - 1));
}

// ====================================================================== view

TTableView::TTableView(TDataBase* db, QWidget* parent) : QWidget(parent), FDb(db) {
    FModel = new TTableModel(db, this);
    FTable = new QTableView(this);
    FTable->setObjectName(QStringLiteral("otbTable"));
    FTable->setModel(FModel);
    FTable->verticalHeader()->hide();
    FTable->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    FTable->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    FTable->setSelectionMode(QAbstractItemView::SingleSelection);
    FTable->setSelectionBehavior(QAbstractItemView::SelectItems);
    FTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    FTable->setAlternatingRowColors(true);
    FTable->setWordWrap(false);
    const int lineHeight = FTable->fontMetrics().height() + 6;
    FTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    FTable->verticalHeader()->setDefaultSectionSize(lineHeight);
    FTable->verticalHeader()->setMinimumSectionSize(lineHeight);
    FTable->horizontalHeader()->setDefaultSectionSize(130);
    FTable->horizontalHeader()->setHighlightSections(false);
    FTable->installEventFilter(this);
    // Rows are counted on the viewport: a horizontal scroll bar that comes or goes changes it.
    FTable->viewport()->installEventFilter(this);
    ScrollSidewaysWithShift(FTable);
    FTable->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);

    FFrozen = new QTableView(FTable);
    FFrozen->setObjectName(QStringLiteral("otbTableTime"));
    FFrozen->setModel(FModel);
    FFrozen->setSelectionModel(FTable->selectionModel());
    FFrozen->setFocusPolicy(Qt::NoFocus);
    FFrozen->verticalHeader()->hide();
    FFrozen->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    FFrozen->verticalHeader()->setDefaultSectionSize(lineHeight);
    FFrozen->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    FFrozen->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    FFrozen->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    FFrozen->setAlternatingRowColors(true);
    FFrozen->setWordWrap(false);
    FFrozen->setEditTriggers(QAbstractItemView::NoEditTriggers);
    FFrozen->setStyleSheet(QStringLiteral("QTableView { border: none; }"));
    FTable->viewport()->stackUnder(FFrozen);
    FFrozen->viewport()->installEventFilter(this);
    // The grid never scrolls vertically: the rows move in the store, not in the control. A
    // scroll the control makes on its own (a current cell brought into view) is taken back.
    for (QTableView* t : {FTable, FFrozen})
        connect(t->verticalScrollBar(), &QScrollBar::valueChanged, t, [t](int value) {
            if (value != 0) t->verticalScrollBar()->setValue(0);
        });
    connect(FModel, &QAbstractItemModel::modelReset, this, &TTableView::PlaceFrozenColumn);
    connect(FTable->horizontalHeader(), &QHeaderView::sectionResized, this, [this](int section, int, int size) {
        if (section == 0) {
            FFrozen->setColumnWidth(0, size);
            PlaceFrozenColumn();
        }
    });

    FScroll = new QScrollBar(Qt::Horizontal, this);
    FScroll->setObjectName(QStringLiteral("scbTable"));
    FScroll->setRange(0, 100);
    FScroll->setTracking(true);
    connect(FScroll, &QScrollBar::sliderMoved, this, [this](int p) { GUI_TableScroll(p, false); });
    connect(FScroll, &QScrollBar::sliderReleased, this, [this] { GUI_TableScroll(FScroll->value(), true); });
    connect(FScroll, &QScrollBar::actionTriggered, this, [this](int action) {
        // Clicks on the track or the arrows end their scroll at once.
        if (action != QAbstractSlider::SliderMove)
            QMetaObject::invokeMethod(this, [this] { GUI_TableScroll(FScroll->value(), true); }, Qt::QueuedConnection);
    });

    auto button = [this](const char* name, QStyle::StandardPixmap icon, TTextId hint, void (TTableView::*slot)()) {
        auto* b = new QToolButton(this);
        b->setObjectName(QLatin1String(name));
        b->setToolTip(Txt(hint));
        b->setIcon(style()->standardIcon(icon));
        b->setAutoRaise(true);
        connect(b, &QToolButton::clicked, this, slot);
        return b;
    };
    auto* nav = new QHBoxLayout;
    nav->setContentsMargins(0, 0, 0, 0);
    nav->addWidget(button("spbTableFirst", QStyle::SP_MediaSkipBackward, TTextId::HintTableFirst, &TTableView::GUI_TableGotoFirst));
    nav->addWidget(button("spbTableReverseFast", QStyle::SP_MediaSeekBackward, TTextId::HintTableReverseFast, &TTableView::GUI_TableGotoReverseFast));
    nav->addWidget(button("spbTableReverse", QStyle::SP_ArrowLeft, TTextId::HintTableReverse, &TTableView::GUI_TableGotoReverse));
    nav->addWidget(button("spbTableForward", QStyle::SP_ArrowRight, TTextId::HintTableForward, &TTableView::GUI_TableGotoForward));
    nav->addWidget(button("spbTableForwardFast", QStyle::SP_MediaSeekForward, TTextId::HintTableForwardFast, &TTableView::GUI_TableGotoForwardFast));
    nav->addWidget(button("spbTableEnd", QStyle::SP_MediaSkipForward, TTextId::HintTableEnd, &TTableView::GUI_TableGotoEnd));
    nav->addWidget(FScroll, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(FTable, 1);
    layout->addLayout(nav);

    for (auto change : {&TDataBase::samplesReleased, &TDataBase::samplesReplaced, &TDataBase::tableMoved,
                        &TDataBase::settingsChanged})
        connect(db, change, FModel, &TTableModel::Refresh);
}

void TTableView::Enter() {
    FDb->GetXMinXMax(FStart, FEnd, false);
    FScroll->setValue(0);
    FitRows();
    FModel->Refresh();
    FitColumns();
}

// The time column as wide as a time text of the current format; each curve's column as wide
// as its header (name and unit) up to a limit, beyond which the tooltip tells the rest.
void TTableView::FitColumns() {
    const QFontMetrics fm = FTable->fontMetrics();
    const QString sample = TDataBase::GetXValueStr(zeb::TTimeKind::DateTimeMs, FEnd) + QStringLiteral("  ");
    FTable->setColumnWidth(0, fm.horizontalAdvance(sample) + 12);
    const QFontMetrics header = FTable->horizontalHeader()->fontMetrics();
    const int padding = 2 * FTable->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, FTable) + 12;
    for (int c = 1; c < FModel->columnCount(); ++c) {
        const int text = header.horizontalAdvance(FModel->Table_OnGetCellData(0, c)) + padding;
        FTable->setColumnWidth(c, std::clamp(text, kMinColumnWidth, kMaxColumnWidth));
    }
    PlaceFrozenColumn();
}

void TTableView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitRows();
    PlaceFrozenColumn();
}

void TTableView::PlaceFrozenColumn() {
    for (int c = 1; c < FModel->columnCount(); ++c) FFrozen->setColumnHidden(c, true);
    FFrozen->setColumnWidth(0, FTable->columnWidth(0));
    const int frame = FTable->frameWidth();
    FFrozen->setGeometry(frame, frame, FTable->columnWidth(0),
                         FTable->viewport()->height() + FTable->horizontalHeader()->height());
}

// As many data rows as fit; more than the store's rows would only show empty lines.
void TTableView::FitRows() {
    const int rowHeight = std::max(1, FTable->verticalHeader()->defaultSectionSize());
    const int height = FTable->viewport()->height();
    FModel->SetVisibleRows(std::clamp(height / rowHeight, 1, FDb->Table_GetMaxRows() + 1));
}

int TTableView::PageStep() const {
    const int n = FModel->VisibleRows();
    return n >= 5 ? n - 3 : 1;
}

void TTableView::GUI_TableGotoFirst() {
    FDb->Table_SetFirstRow(0.0);
}

void TTableView::GUI_TableGotoReverseFast() {
    FDb->Table_MoveFirstRow(-PageStep());
}

void TTableView::GUI_TableGotoReverse() {
    FDb->Table_MoveFirstRow(-1);
}

void TTableView::GUI_TableGotoForward() {
    FDb->Table_MoveFirstRow(1);
}

void TTableView::GUI_TableGotoForwardFast() {
    // One row, then the page step: a page and one row in all.
    FDb->Table_MoveFirstRow(1);
    FDb->Table_MoveFirstRow(PageStep());
}

void TTableView::GUI_TableGotoEnd() {
    FDb->Table_SetFirstRow(10000000000.0);
    GUI_TableGotoReverseFast();
}

void TTableView::GUI_TableGotoTMin() {
    double mn = 0.0, mx = 0.0;
    if (FChartMin) mn = FChartMin();
    else FDb->GetXMinXMax(mn, mx, true);
    FDb->Table_SetFirstRow(mn);
}

void TTableView::GUI_TableGotoTime(double time) {
    FDb->Table_SetFirstRow(time);
}

double TTableView::ScrollTime(int position) const { return FStart + position * (FEnd - FStart) / 100.0; }

void TTableView::GUI_TableScroll(int position, bool ending) {
    const double t = ScrollTime(position);
    if (!ending) {
        Q_EMIT statusText(Txt(TTextId::StatusScrollX) + TDataBase::GetXValueStr(zeb::TTimeKind::DateTimeMs, t));
        return;
    }
    Q_EMIT statusText(QString());
    FDb->Table_SetFirstRow(t);
}

// The wheel moves the store's first row by the platform's wheel step, like the keys do.
bool TTableView::Table_OnWheel(const QWheelEvent* wheel) {
    const int dy = wheel->angleDelta().y();
    if (dy == 0 || (wheel->modifiers() & Qt::ShiftModifier)) return false; // sideways: the control's own
    FWheelDelta += dy;
    const int notches = FWheelDelta / QWheelEvent::DefaultDeltasPerStep;
    if (notches == 0) return true; // a fine-grained wheel: wait for a whole notch
    FWheelDelta -= notches * QWheelEvent::DefaultDeltasPerStep;
    const int rows = -notches * std::max(1, QApplication::wheelScrollLines());
    FDb->Table_MoveFirstRow(rows);
    return true;
}

bool TTableView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == FTable->viewport() || (FFrozen && watched == FFrozen->viewport())) {
        if (event->type() == QEvent::Wheel && Table_OnWheel(static_cast<QWheelEvent*>(event))) return true;
        if (event->type() == QEvent::Resize && watched == FTable->viewport()) {
            FitRows();
            PlaceFrozenColumn();
        }
        return QWidget::eventFilter(watched, event);
    }
    if (watched != FTable || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const int row = FTable->currentIndex().row();
    const int column = std::max(0, FTable->currentIndex().column());
    switch (key->key()) {
    case Qt::Key_PageUp: GUI_TableGotoReverseFast(); return true;
    case Qt::Key_PageDown: GUI_TableGotoForwardFast(); return true;
    case Qt::Key_Home: GUI_TableGotoFirst(); return true;
    case Qt::Key_End: GUI_TableGotoEnd(); return true;
    case Qt::Key_Down:
        // Past the bottom: the rows move, not the control.
        if (row == FModel->VisibleRows() - 1) {
            GUI_TableGotoForward();
            FTable->setCurrentIndex(FModel->index(FModel->VisibleRows() - 1, column));
            return true;
        }
        break;
    case Qt::Key_Up:
        if (row == 0) {
            GUI_TableGotoReverse();
            FTable->setCurrentIndex(FModel->index(0, column));
            return true;
        }
        break;
    default: break;
    }
    return QWidget::eventFilter(watched, event);
}
