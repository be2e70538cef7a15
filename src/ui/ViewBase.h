#pragma once
// What the calculation view and the limit view share: a small tool window above the main
// window that lists, per active curve, figures over the time span the chart shows, and that
// recomputes only when the curves' visibility or that span changed.

#include "analysis/Figures.h"

#include <QWidget>

#include <vector>

class QLabel;
class QMenu;
class QTableWidget;
class TDataBase;

class TfrmViewBase : public QWidget {
    Q_OBJECT
public:
    // Client size and smallest size of both windows.
    static constexpr int kWidth = 473, kHeight = 437, kMinWidth = 320, kMinHeight = 300;

    // Brings the list up to date; cheap when nothing changed.
    virtual void ReCalc() = 0;
    // Whether the curves' active flags, the time axis range (or what a subclass adds) changed
    // since the last call; the remembered state is updated in every case.
    virtual bool NeedsRecalc();
    // Empties the list and forgets the remembered state: the next ReCalc computes anew.
    void Clear();
    // Only while active: shows or hides the window when its visibility differs.
    void Display(bool visible);
    // Not active yet: active, shown and cleared. SetInactive: inactive and hidden.
    void SetActive();
    void SetInactive();
    bool IsActive() const { return FActive; }
    virtual void LoadLanguageRes() = 0;

    // The figures of the last computation, one per curve listed.
    struct TShown {
        int Curve = -1;
        TCurveFigures Figures;
    };
    const std::vector<TShown>& Figures() const { return FFigures; }

    int CallCount() const { return FCallCount; }
    int CalcCount() const { return FCalcCount; }
    QTableWidget* List() const { return FList; }
    // The selected rows (all rows when none is selected), one line each, cells separated by
    // tabs.
    QString SelectedRowsText() const;
    // The pop-up entry "Zwischenablage": present and deliberately inert.
    void Zwischenablage1Click() {}

Q_SIGNALS:
    // The user closed the window.
    void closedByUser();

protected:
    // The store and the widths of the three columns; slot 0 or 1 places the window first at the
    // main window's lower right corner or left of the other.
    TfrmViewBase(TDataBase* db, const char* name, const int (&widths)[3], int slot, QWidget* parent);
    void SetColumnTitles(const QString& curve, const QString& parameter, const QString& value);
    void AddRow(const QString& curve, const QString& parameter, const QString& value);
    // The counters' label: CallCount, a colon, CalcCount.
    void ShowCounters();
    // Both counters' bookkeeping at the start of ReCalc: false when nothing must be computed.
    bool BeginReCalc();

    void closeEvent(QCloseEvent* event) override; // FormClose
    bool eventFilter(QObject* watched, QEvent* event) override;

    TDataBase* FDb;
    QMenu* PopupMenu1 = nullptr;
    std::vector<TShown> FFigures;

private:
    std::vector<bool> FActiveFlags;
    double FAxisMin = 0.0, FAxisMax = 0.0;
    int FCallCount = 0;
    int FCalcCount = 0;
    bool FActive = false;
    int FSlot = 0;
    bool FPlaced = false;
    QWidget* FPanel = nullptr;
    QLabel* FCounters = nullptr;
    QTableWidget* FList = nullptr;
};
