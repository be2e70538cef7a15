#pragma once
// TCfgPage: the configuration view (`pclCfg`), the inner page of the main window on which the
// user edits how the open recording is shown: titles and fonts, the curves, the three axes
// and the two crosshairs.
//
// The page keeps no settings of its own. A visit starts with Enter(): the chart's current
// view is taken into the store's template and every tab is filled from it. Leaving a tab
// writes that tab back into the template; a tab with an invalid number cannot be left, and
// the number's edit gets the focus. Curve cells are written as soon as their edit ends.
// Leave() ends the visit: it checks and writes the open tab and applies the template to the
// store's live view; the caller then redraws.

#include <QTabWidget>

#include <array>
#include <vector>

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QTableView;
class QToolButton;
class TCfgCellDelegate;
class TCfgCurveModel;
class TDataBase;
class TValidateEdit;

class TCfgPage : public QTabWidget {
    Q_OBJECT
public:
    enum TCfgTab : int {
        tabGeneral = 0,
        tabCurve = 1,
        tabAxisBottom = 2,
        tabAxisLeft = 3,
        tabAxisRight = 4,
        tabCursor = 5,
        tabCount = 6
    };
    // Curve table columns.
    enum TCurveColumn : int {
        colNumber = 0,
        colSerial = 1,
        colDescription = 2,
        colAxis = 3,
        colColor = 4,
        colWidth = 5,
        colType = 6,
        colFormat = 7,
        colCount = 8
    };

    explicit TCfgPage(TDataBase* db, QWidget* parent = nullptr);
    ~TCfgPage() override;

    // Cfg_OnChange: starts a visit (the chart's view into the template) and fills every tab from
    // the store; a tab of 0..5 is shown. Entering again without leaving keeps the edits made so
    // far and only refills the page, once the open tab could be left.
    void Enter(int tab = -1);
    // Ends a visit (view change, save, export): false while the open tab holds an invalid
    // entry, which then has the focus; otherwise the page is in the template and the template
    // on the live view, and modified() has been sent.
    bool Leave();
    // Cfg_OnChanging: checks the open tab and writes it into the template; false (with the
    // focus on the first invalid edit) when it holds an invalid entry.
    bool CanLeaveTab();
    // GUI_CfgRedo: the open tab back to the values the chart shows.
    void Undo();
    // Ends an open edit of the curve table, writing the cell.
    void EndEdit();
    // Captions, lists and headers in the current language.
    void ApplyLanguage();

    bool IsEntered() const { return FEntered; }
    QTableView* CurveTable() const { return otbCurveCfg; }

Q_SIGNALS:
    // The display settings were changed (or may have been) by the page.
    void modified();

private:
    struct TAxisControls {
        QLabel* lblName = nullptr;
        QLineEdit* edtName = nullptr;
        QCheckBox* chkAuto = nullptr;
        QLabel* lblMin = nullptr;
        QLabel* lblMax = nullptr;
        QLabel* lblInc = nullptr;
        TValidateEdit* vedMin = nullptr;
        TValidateEdit* vedMax = nullptr;
        TValidateEdit* vedInc = nullptr;
        QLabel* lblFormat = nullptr;
        QComboBox* cbxFormat = nullptr; // left and right axis
    };
    struct TCursorControls {
        QLabel* lblFormatX = nullptr;
        QLabel* lblFormatY = nullptr;
        QLabel* lblAxis = nullptr;
        QLabel* lblWidth = nullptr;
        QComboBox* cbxFormatX = nullptr;
        QComboBox* cbxFormatY = nullptr;
        QComboBox* cbxAxis = nullptr;
        QComboBox* cbxWidth = nullptr;
    };
    struct TFontControls {
        QLabel* lblFont = nullptr;
        QFontComboBox* ofcFont = nullptr;
        QSpinBox* osfSize = nullptr;
        QComboBox* cbxStyle = nullptr;
    };
    // What a curve's entry held when the visit began, for the undo of the curves tab: the
    // curves have no live copy in the store.
    struct TCurveMark {
        QString Title;
        bool TitleSet = false;
        int Axis = 0, Color = 0, Width = 1, Type = 0;
        QString Format;
    };

    QWidget* BuildGeneralTab();
    QWidget* BuildCurveTab();
    QWidget* BuildAxisTab(int axis);
    QWidget* BuildCursorTab();

    void FillTab(int tab);
    void FillAll();
    // Writes a tab into the template. Strict: nothing is written when an edit is invalid, and
    // that edit is answered. Lenient: the valid values are written.
    TValidateEdit* WriteTab(int tab, bool strict);
    void MarkCurves();
    void RestoreCurves();
    void ShowExtView();
    // The curve grid's columns at their designed widths, or wider where the header's text in
    // the current language needs it.
    void FitCurveColumns();

    // Checks and writes the open tab; the first invalid edit when it cannot be left.
    TValidateEdit* LeaveTab();
    void Focus(TValidateEdit* edit);
    void OnCurrentChanged(int index);
    void OnPickTime(TValidateEdit* edit, QToolButton* button, bool interval);
    void OnAxisBottomTypeChanged();
    void btnCfgAxisBottomHelpClick();
    // The number an edit holds, unless its text is still the one it was filled with: then the
    // stored value stays as it was, exact to the last bit.
    bool TakeFloat(TValidateEdit* edit, double& value, double offset) const;
    void SetFloat(TValidateEdit* edit, double value);
    double TimeOrigin() const;

    TDataBase* FDb;
    bool FEntered = false;
    int FShownTab = 0;       // the tab whose values are on display and written when it is left
    bool FSwitching = false; // a refused tab change is being undone
    double FOrigin = 0.0;    // time-axis zero of the edits, seconds since 2000
    std::vector<TCurveMark> FCurveMarks;

    // ---- general
    QLabel* lblCfgTitle = nullptr;
    QLabel* lblCfgFoot = nullptr;
    QLineEdit* edtCfgTitle = nullptr;
    QLineEdit* edtCfgFoot = nullptr;
    QCheckBox* chkCfgShowTime = nullptr;
    QCheckBox* chkCfgShowName = nullptr;
    QWidget* grpCfgFonts = nullptr;
    QLabel* lblCfgFontName = nullptr;
    QLabel* lblCfgFontSize = nullptr;
    QLabel* lblCfgFontStyle = nullptr;
    std::array<TFontControls, 4> FFonts; // title, legend, axes, text

    // ---- curves
    QTableView* otbCurveCfg = nullptr;
    TCfgCurveModel* FCurveModel = nullptr;
    std::array<TCfgCellDelegate*, colCount> FCells{};

    // ---- axes: bottom, left, right
    std::array<TAxisControls, 3> FAxes;
    QToolButton* abtCfgAxisBottomMin = nullptr;
    QToolButton* abtCfgAxisBottomMax = nullptr;
    QToolButton* abtCfgAxisBottomInc = nullptr;
    QLabel* lblCfgAxisBottomType = nullptr;
    QComboBox* cbxCfgAxisBottomType = nullptr;
    QLabel* lblCfgAxisBottomFormat1 = nullptr;
    QLabel* lblCfgAxisBottomFormat2 = nullptr;
    QComboBox* cbxCfgAxisBottomFormat1 = nullptr;
    QComboBox* cbxCfgAxisBottomFormat2 = nullptr;
    QLabel* lblCfgAxisBottomSeconds = nullptr;
    QToolButton* btnCfgAxisBottomHelp = nullptr;

    // ---- cursors
    std::array<QWidget*, 2> grpCfgCursor{};
    std::array<TCursorControls, 2> FCursors;
    QLabel* lblCfgCursorNote = nullptr;
};
