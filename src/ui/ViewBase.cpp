#include "ui/ViewBase.h"

#include "config/Texts.h"
#include "store/DataBase.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

TfrmViewBase::TfrmViewBase(TDataBase* db, const char* name, const int (&widths)[3], int slot, QWidget* parent)
    : QWidget(parent, Qt::Tool), FDb(db), FSlot(slot) {
    setObjectName(QLatin1String(name));
    // A tool window stays above the main window and goes with it.
    setAttribute(Qt::WA_DeleteOnClose, false);
    // Windows' own dialog font there; elsewhere the desktop's, at the same size.
#ifdef Q_OS_WIN
    QFont f(QStringLiteral("Segoe UI"));
#else
    QFont f = font();
#endif
    f.setPointSize(9);
    setFont(f);
    resize(kWidth, kHeight);
    setMinimumSize(kMinWidth, kMinHeight);
    // Limits, number formats or the flow channel may have changed: the next computation
    // starts afresh.
    connect(db, &TDataBase::settingsChanged, this, &TfrmViewBase::Clear);

    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(0);
    // A diagnostic aid kept on purpose: the counters, on a panel that stays hidden.
    FPanel = new QWidget(this);
    FPanel->setObjectName(QStringLiteral("Panel1"));
    FPanel->setFixedHeight(33);
    FCounters = new QLabel(FPanel);
    FCounters->setObjectName(QStringLiteral("Label1"));
    FCounters->move(8, 8);
    FPanel->hide();
    v->addWidget(FPanel);

    FList = new QTableWidget(0, 3, this);
    FList->setObjectName(QStringLiteral("ListView1"));
    FList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    FList->setSelectionBehavior(QAbstractItemView::SelectRows);
    FList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    FList->setShowGrid(true);
    FList->setWordWrap(false);
    FList->verticalHeader()->hide();
    FList->verticalHeader()->setDefaultSectionSize(FList->fontMetrics().height() + 6);
    FList->horizontalHeader()->setHighlightSections(false);
    FList->horizontalHeader()->setStretchLastSection(true);
    for (int c = 0; c < 3; ++c)
        FList->setColumnWidth(c, widths[c]);
    FList->setContextMenuPolicy(Qt::CustomContextMenu);
    v->addWidget(FList, 1);

    PopupMenu1 = new QMenu(this);
    PopupMenu1->setObjectName(QStringLiteral("PopupMenu1"));
    QAction* clip = PopupMenu1->addAction(zeb::Txt(zeb::TTextId::ViewClipboard));
    clip->setObjectName(QStringLiteral("Zwischenablage1"));
    connect(clip, &QAction::triggered, this, &TfrmViewBase::Zwischenablage1Click);
    connect(FList, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { PopupMenu1->popup(FList->viewport()->mapToGlobal(at)); });
    // Beyond the inert entry: Ctrl+C copies the selected rows for a spreadsheet (the list's own
    // copy would take one cell).
    FList->installEventFilter(this);
    ShowCounters();
}

void TfrmViewBase::SetColumnTitles(const QString& curve, const QString& parameter, const QString& value) {
    FList->setHorizontalHeaderLabels({curve, parameter, value});
}

void TfrmViewBase::AddRow(const QString& curve, const QString& parameter, const QString& value) {
    const int row = FList->rowCount();
    FList->insertRow(row);
    const QString cells[3] = {curve, parameter, value};
    for (int c = 0; c < 3; ++c) {
        auto* item = new QTableWidgetItem(cells[c]);
        if (c == 2) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        FList->setItem(row, c, item);
    }
}

void TfrmViewBase::ShowCounters() {
    FCounters->setText(QString::number(FCallCount) + QLatin1Char(':') + QString::number(FCalcCount));
    FCounters->adjustSize();
}

bool TfrmViewBase::NeedsRecalc() {
    const int n = FDb->Curve_Count();
    const TAxisState& bottom = FDb->Axis_Get(axBottom);
    if (n != int(FActiveFlags.size())) {
        FActiveFlags.assign(size_t(n), false);
        for (int i = 0; i < n; ++i)
            FActiveFlags[size_t(i)] = FDb->Curve_IsActive(i);
        FAxisMin = bottom.Min;
        FAxisMax = bottom.Max;
        return true;
    }
    bool changed = false;
    for (int i = 0; i < n; ++i) {
        const bool active = FDb->Curve_IsActive(i);
        if (active != FActiveFlags[size_t(i)]) changed = true;
        FActiveFlags[size_t(i)] = active;
    }
    // Exact comparison: any move of the axis is a change.
    if (bottom.Min != FAxisMin || bottom.Max != FAxisMax) changed = true;
    FAxisMin = bottom.Min;
    FAxisMax = bottom.Max;
    return changed;
}

bool TfrmViewBase::BeginReCalc() {
    ++FCallCount;
    // The loader owns the samples until its last report.
    if (FDb->IsLoading() || !NeedsRecalc()) {
        ShowCounters();
        return false;
    }
    ++FCalcCount;
    ShowCounters();
    FList->setRowCount(0);
    FFigures.clear();
    return true;
}

void TfrmViewBase::Clear() {
    FList->setRowCount(0);
    FFigures.clear();
    FActiveFlags.clear();
    // A store without curves still differs from the forgotten state once it has one.
    FAxisMin = FAxisMax = std::numeric_limits<double>::quiet_NaN();
}

void TfrmViewBase::Display(bool visible) {
    if (FActive && isVisible() != visible) setVisible(visible);
}

void TfrmViewBase::SetActive() {
    if (FActive) return;
    FActive = true;
    if (!FPlaced && parentWidget()) {
        // First shown side by side over the chart's lower right part, the calculation view
        // rightmost; later where the user left it.
        FPlaced = true;
        const QRect owner = parentWidget()->frameGeometry();
        move(std::max(owner.left(), owner.right() - (FSlot + 1) * (width() + 12) - 20),
             std::max(owner.top(), owner.bottom() - height() - 90));
    }
    show();
    raise();
    Clear();
}

void TfrmViewBase::SetInactive() {
    FActive = false;
    hide();
}

QString TfrmViewBase::SelectedRowsText() const {
    std::vector<int> rows;
    for (const QModelIndex& i : FList->selectionModel()->selectedRows())
        rows.push_back(i.row());
    if (rows.empty())
        for (int r = 0; r < FList->rowCount(); ++r)
            rows.push_back(r);
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (int r : rows) {
        QStringList cells;
        for (int c = 0; c < 3; ++c)
            cells << (FList->item(r, c) ? FList->item(r, c)->text() : QString());
        lines << cells.join(QLatin1Char('\t'));
    }
    return lines.join(QLatin1Char('\n'));
}

bool TfrmViewBase::eventFilter(QObject* watched, QEvent* event) {
    if (watched == FList && (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        if (event->type() == QEvent::KeyPress) QApplication::clipboard()->setText(SelectedRowsText());
        event->accept();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void TfrmViewBase::closeEvent(QCloseEvent* event) {
    // FormClose only hides; the owner decides what closing means for the view.
    event->accept();
    hide();
    Q_EMIT closedByUser();
}

