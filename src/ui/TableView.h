#pragma once
// The table view: a fixed window of rows over the store. The control never scrolls by
// itself; every move goes to the store's first table row, so any file costs the same.

#include <QAbstractTableModel>
#include <QWidget>

#include <functional>

class QScrollBar;
class QTableView;
class QToolButton;
class QWheelEvent;
class TDataBase;

// Asks the store for every cell. Model row i is data row r = i + 1 of the table, which
// shows store table row r - 2; column c is the table's column c (0 the time).
class TTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit TTableModel(TDataBase* db, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // How many data rows the control shows.
    void SetVisibleRows(int rows);
    int VisibleRows() const { return FRows; }
    void Refresh();

    // The texts and colours of the table's cells, by table row and column (row 0 the header).
    QString Table_OnGetCellData(int r, int c) const;
    bool Table_OnGetCellAttributes(int r, int c) const; // true: red text

private:
    TDataBase* FDb;
    int FRows = 20;
    int FColumns = 1;
};

class TTableView : public QWidget {
    Q_OBJECT
public:
    explicit TTableView(TDataBase* db, QWidget* parent = nullptr);

    // The page is shown: the time range is taken and the scroll bar reset.
    void Enter();

    void GUI_TableGotoFirst();
    void GUI_TableGotoReverseFast();
    void GUI_TableGotoReverse();
    void GUI_TableGotoForward();
    void GUI_TableGotoForwardFast();
    void GUI_TableGotoEnd();
    void GUI_TableGotoTMin();
    void GUI_TableGotoTime(double time); // after the go-to dialog answered OK

    int PageStep() const;
    // The minimum of the chart's time axis; the main window supplies it.
    void SetChartMinProvider(std::function<double()> provider) { FChartMin = std::move(provider); }

    QTableView* Table() const { return FTable; }
    QScrollBar* ScrollBar() const { return FScroll; }
    TTableModel* Model() const { return FModel; }

Q_SIGNALS:
    void statusText(const QString& text);
    void gotoTimeRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    static constexpr int kMinColumnWidth = 80;
    static constexpr int kMaxColumnWidth = 320;
    bool Table_OnWheel(const QWheelEvent* wheel);
    void FitColumns();
    void GUI_TableScroll(int position, bool ending);
    double ScrollTime(int position) const;
    void FitRows();
    void PlaceFrozenColumn();

    TDataBase* FDb;
    TTableModel* FModel;
    QTableView* FTable;
    QTableView* FFrozen = nullptr; // the time column, kept in place while the values scroll sideways
    QScrollBar* FScroll;
    double FStart = 0.0, FEnd = 0.0;
    int FWheelDelta = 0; // eighths of a degree not yet turned into rows
    std::function<double()> FChartMin;
};
