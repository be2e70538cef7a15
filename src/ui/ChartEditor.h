#pragma once
// TChartEditor: the chart editor page. Every element of the chart in one place: titles, the
// three axes, each curve, the legend and the background. A change shows on the chart at once;
// what the display template has a key for is kept there (and saved with it), the rest for as
// long as the program runs.

#include <QWidget>

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTabWidget;
class TDataBase;
class TValidateEdit;
class TZebChart;

class TChartEditor : public QWidget {
    Q_OBJECT
public:
    TChartEditor(TDataBase* db, TZebChart* chart, QWidget* parent = nullptr);

    // Fills every field from the store; the chart is shown beside the editor while it is open.
    void Fill();

Q_SIGNALS:
    void modified();

private:
    // One font as three fields: family, size, bold/italic.
    struct TFontFields {
        QFontComboBox* Family = nullptr;
        QSpinBox* Size = nullptr;
        QComboBox* Style = nullptr;
    };
    QWidget* BuildTitles();
    QWidget* BuildAxes();
    QWidget* BuildCurves();
    QWidget* BuildLegend();
    QWidget* BuildBackground();
    TFontFields FontFields(QWidget* parent, const char* name);
    QPushButton* ColorButton(QWidget* parent, const char* name, int* target);
    void FillAxis();
    void FillCurve();
    // Takes the fields into the store and redraws the chart.
    void Apply();
    void ShowColor(QPushButton* button, int color);

    TDataBase* FDb;
    TZebChart* FChart;
    QTabWidget* FTabs;
    bool FFilling = false;

    QLineEdit* edtTitle;
    QLineEdit* edtFoot;
    TFontFields FTitleFont;
    QPushButton* btnTitleColor;
    TFontFields FFootFont;
    QPushButton* btnFootColor;

    QComboBox* cbxAxis;
    QCheckBox* chkAxisVisible;
    QCheckBox* chkAxisAuto;
    TValidateEdit* vedAxisMin;
    TValidateEdit* vedAxisMax;
    TValidateEdit* vedAxisInc;
    QComboBox* cbxAxisFormat;
    QCheckBox* chkAxisGrid;
    QPushButton* btnGridColor;
    QComboBox* cbxGridStyle;
    QSpinBox* speGridWidth;
    TFontFields FAxisFont;

    QComboBox* cbxCurve;
    QPushButton* btnCurveColor;
    QSpinBox* speCurveWidth;
    QComboBox* cbxCurveStyle;
    QCheckBox* chkCurvePoints;

    QCheckBox* chkLegendVisible;
    QComboBox* cbxLegendPosition;
    QCheckBox* chkLegendFrame;
    TFontFields FLegendFont;

    QPushButton* btnBackground;
    QPushButton* btnPlotBackground;
};
