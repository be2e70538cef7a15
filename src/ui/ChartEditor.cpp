#include "ui/ChartEditor.h"

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/ValidateEdit.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;
using zeb::TxtList;

namespace {

QColor ColorOf(int bgr) {
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}
int BgrOf(const QColor& c) {
    return c.red() | (c.green() << 8) | (c.blue() << 16);
}

} // namespace

TChartEditor::TChartEditor(TDataBase* db, TZebChart* chart, QWidget* parent)
    : QWidget(parent), FDb(db), FChart(chart) {
    setObjectName(QStringLiteral("GraphEditor"));
    setMinimumWidth(340);
    FTabs = new QTabWidget(this);
    FTabs->setObjectName(QStringLiteral("pclGraphEditor"));
    FTabs->addTab(BuildTitles(), Txt(TTextId::EdTitles));
    FTabs->addTab(BuildAxes(), Txt(TTextId::EdAxes));
    FTabs->addTab(BuildCurves(), Txt(TTextId::CfgCurves));
    FTabs->addTab(BuildLegend(), Txt(TTextId::EdLegend));
    FTabs->addTab(BuildBackground(), Txt(TTextId::EdBackground));
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 0);
    v->addWidget(FTabs);
}

TChartEditor::TFontFields TChartEditor::FontFields(QWidget* parent, const char* name) {
    TFontFields f;
    f.Family = new QFontComboBox(parent);
    f.Family->setObjectName(QStringLiteral("ofc") + QLatin1String(name));
    f.Size = new QSpinBox(parent);
    f.Size->setObjectName(QStringLiteral("osf") + QLatin1String(name));
    f.Size->setRange(1, 200);
    f.Style = new QComboBox(parent);
    f.Style->setObjectName(QStringLiteral("cbx") + QLatin1String(name));
    f.Style->addItems(TxtList(TTextId::CfgFontStyles));
    connect(f.Family, &QFontComboBox::currentFontChanged, this, &TChartEditor::Apply);
    connect(f.Size, &QSpinBox::valueChanged, this, &TChartEditor::Apply);
    connect(f.Style, &QComboBox::currentIndexChanged, this, &TChartEditor::Apply);
    return f;
}

void TChartEditor::ShowColor(QPushButton* button, int color) {
    button->setStyleSheet(QStringLiteral("background-color: %1; min-width: 60px").arg(ColorOf(color).name()));
}

// A button showing a colour; a click chooses another and writes it to the target at once.
QPushButton* TChartEditor::ColorButton(QWidget* parent, const char* name, int* target) {
    auto* b = new QPushButton(parent);
    b->setObjectName(QLatin1String(name));
    connect(b, &QPushButton::clicked, this, [this, b, target] {
        QColor c = ColorOf(*target);
        if (!zeb::TZebDlg::SelectColor(c)) return;
        *target = BgrOf(c);
        ShowColor(b, *target);
        FChart->Rebuild();
        Q_EMIT modified();
    });
    return b;
}

QWidget* TChartEditor::BuildTitles() {
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    edtTitle = new QLineEdit(page);
    edtTitle->setObjectName(QStringLiteral("edtGraphTitle"));
    edtFoot = new QLineEdit(page);
    edtFoot->setObjectName(QStringLiteral("edtGraphFoot"));
    for (QLineEdit* e : {edtTitle, edtFoot})
        connect(e, &QLineEdit::textEdited, this, &TChartEditor::Apply);
    FTitleFont = FontFields(page, "TitleFont");
    btnTitleColor = ColorButton(page, "btnTitleColor", &FDb->Look_Get().TitleColor);
    FFootFont = FontFields(page, "FootFont");
    btnFootColor = new QPushButton(page);
    btnFootColor->setObjectName(QStringLiteral("btnFootColor"));
    connect(btnFootColor, &QPushButton::clicked, this, [this] {
        TChartLook& look = FDb->Look_Get();
        QColor c = ColorOf(look.FootColor >= 0 ? look.FootColor : look.TitleColor);
        if (!zeb::TZebDlg::SelectColor(c)) return;
        look.FootColor = BgrOf(c);
        ShowColor(btnFootColor, look.FootColor);
        FChart->Rebuild();
        Q_EMIT modified();
    });
    form->addRow(Txt(TTextId::CfgTitle), edtTitle);
    form->addRow(Txt(TTextId::CfgFontName), FTitleFont.Family);
    form->addRow(Txt(TTextId::CfgFontSize), FTitleFont.Size);
    form->addRow(Txt(TTextId::CfgFontStyle), FTitleFont.Style);
    form->addRow(Txt(TTextId::CfgCurveColor), btnTitleColor);
    form->addRow(Txt(TTextId::CfgFooter), edtFoot);
    form->addRow(Txt(TTextId::CfgFontName), FFootFont.Family);
    form->addRow(Txt(TTextId::CfgFontSize), FFootFont.Size);
    form->addRow(Txt(TTextId::CfgFontStyle), FFootFont.Style);
    form->addRow(Txt(TTextId::CfgCurveColor), btnFootColor);
    return page;
}

QWidget* TChartEditor::BuildAxes() {
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    cbxAxis = new QComboBox(page);
    cbxAxis->setObjectName(QStringLiteral("cbxGraphAxis"));
    cbxAxis->addItems({Txt(TTextId::CfgAxisBottom), Txt(TTextId::CfgAxisLeft), Txt(TTextId::CfgAxisRight)});
    connect(cbxAxis, &QComboBox::currentIndexChanged, this, &TChartEditor::FillAxis);
    chkAxisVisible = new QCheckBox(Txt(TTextId::EdVisible), page);
    chkAxisVisible->setObjectName(QStringLiteral("chkGraphAxisVisible"));
    chkAxisAuto = new QCheckBox(Txt(TTextId::CfgAutomatic), page);
    chkAxisAuto->setObjectName(QStringLiteral("chkGraphAxisAuto"));
    vedAxisMin = new TValidateEdit(vmFloat, page);
    vedAxisMin->setObjectName(QStringLiteral("vedGraphAxisMin"));
    vedAxisMax = new TValidateEdit(vmFloat, page);
    vedAxisMax->setObjectName(QStringLiteral("vedGraphAxisMax"));
    vedAxisInc = new TValidateEdit(vmFloat, page);
    vedAxisInc->setObjectName(QStringLiteral("vedGraphAxisInc"));
    cbxAxisFormat = new QComboBox(page);
    cbxAxisFormat->setObjectName(QStringLiteral("cbxGraphAxisFormat"));
    cbxAxisFormat->setEditable(true);
    cbxAxisFormat->addItems(zeb::ValueFormatList());
    chkAxisGrid = new QCheckBox(Txt(TTextId::EdGrid), page);
    chkAxisGrid->setObjectName(QStringLiteral("chkGraphAxisGrid"));
    btnGridColor = new QPushButton(page);
    btnGridColor->setObjectName(QStringLiteral("btnGridColor"));
    connect(btnGridColor, &QPushButton::clicked, this, [this] {
        int& target = FDb->Look_Get().GridColor[std::max(0, cbxAxis->currentIndex())];
        QColor c = ColorOf(target);
        if (!zeb::TZebDlg::SelectColor(c)) return;
        target = BgrOf(c);
        ShowColor(btnGridColor, target);
        FChart->Rebuild();
        Q_EMIT modified();
    });
    cbxGridStyle = new QComboBox(page);
    cbxGridStyle->setObjectName(QStringLiteral("cbxGridStyle"));
    cbxGridStyle->addItems(TxtList(TTextId::EdLineStyles));
    speGridWidth = new QSpinBox(page);
    speGridWidth->setObjectName(QStringLiteral("speGridWidth"));
    speGridWidth->setRange(1, 5);
    connect(cbxGridStyle, &QComboBox::currentIndexChanged, this, &TChartEditor::Apply);
    connect(speGridWidth, &QSpinBox::valueChanged, this, &TChartEditor::Apply);
    FAxisFont = FontFields(page, "AxisFont");
    for (QCheckBox* c : {chkAxisVisible, chkAxisAuto, chkAxisGrid})
        connect(c, &QCheckBox::toggled, this, &TChartEditor::Apply);
    // A number is taken once its field holds one; a wrong one waits, coloured.
    for (TValidateEdit* e : {vedAxisMin, vedAxisMax, vedAxisInc})
        connect(e, &QLineEdit::textEdited, this, [this, e] {
            if (e->IsValid()) Apply();
        });
    connect(cbxAxisFormat, &QComboBox::currentTextChanged, this, &TChartEditor::Apply);
    form->addRow(Txt(TTextId::CfgCurveAxis), cbxAxis);
    form->addRow(QString(), chkAxisVisible);
    form->addRow(QString(), chkAxisAuto);
    form->addRow(Txt(TTextId::CfgMinimum), vedAxisMin);
    form->addRow(Txt(TTextId::CfgMaximum), vedAxisMax);
    form->addRow(Txt(TTextId::CfgIncrement), vedAxisInc);
    form->addRow(Txt(TTextId::CfgFormat), cbxAxisFormat);
    form->addRow(QString(), chkAxisGrid);
    form->addRow(Txt(TTextId::EdGridColor), btnGridColor);
    form->addRow(Txt(TTextId::EdGridStyle), cbxGridStyle);
    form->addRow(Txt(TTextId::EdGridWidth), speGridWidth);
    form->addRow(Txt(TTextId::CfgFontName), FAxisFont.Family);
    form->addRow(Txt(TTextId::CfgFontSize), FAxisFont.Size);
    form->addRow(Txt(TTextId::CfgFontStyle), FAxisFont.Style);
    return page;
}

QWidget* TChartEditor::BuildCurves() {
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    cbxCurve = new QComboBox(page);
    cbxCurve->setObjectName(QStringLiteral("cbxGraphCurve"));
    connect(cbxCurve, &QComboBox::currentIndexChanged, this, &TChartEditor::FillCurve);
    btnCurveColor = new QPushButton(page);
    btnCurveColor->setObjectName(QStringLiteral("btnCurveColor"));
    connect(btnCurveColor, &QPushButton::clicked, this, [this] {
        const int curve = cbxCurve->currentIndex();
        if (!FDb->Curve_IsValid(curve)) return;
        QColor c = ColorOf(FDb->Curve_ColorGet(curve));
        if (!zeb::TZebDlg::SelectColor(c)) return;
        FDb->Curve_ColorSet(curve, BgrOf(c));
        ShowColor(btnCurveColor, BgrOf(c));
        FChart->Rebuild();
        Q_EMIT modified();
    });
    speCurveWidth = new QSpinBox(page);
    speCurveWidth->setObjectName(QStringLiteral("speGraphCurveWidth"));
    speCurveWidth->setRange(1, 10);
    cbxCurveStyle = new QComboBox(page);
    cbxCurveStyle->setObjectName(QStringLiteral("cbxGraphCurveStyle"));
    cbxCurveStyle->addItems(TxtList(TTextId::EdLineStyles));
    chkCurvePoints = new QCheckBox(Txt(TTextId::EdPoints), page);
    chkCurvePoints->setObjectName(QStringLiteral("chkGraphCurvePoints"));
    connect(speCurveWidth, &QSpinBox::valueChanged, this, &TChartEditor::Apply);
    connect(cbxCurveStyle, &QComboBox::currentIndexChanged, this, &TChartEditor::Apply);
    connect(chkCurvePoints, &QCheckBox::toggled, this, &TChartEditor::Apply);
    form->addRow(Txt(TTextId::CfgCurves), cbxCurve);
    form->addRow(Txt(TTextId::CfgCurveColor), btnCurveColor);
    form->addRow(Txt(TTextId::CfgCurveWidth), speCurveWidth);
    form->addRow(Txt(TTextId::EdLineStyle), cbxCurveStyle);
    form->addRow(QString(), chkCurvePoints);
    return page;
}

QWidget* TChartEditor::BuildLegend() {
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    chkLegendVisible = new QCheckBox(Txt(TTextId::EdVisible), page);
    chkLegendVisible->setObjectName(QStringLiteral("chkLegendVisible"));
    cbxLegendPosition = new QComboBox(page);
    cbxLegendPosition->setObjectName(QStringLiteral("cbxLegendPosition"));
    cbxLegendPosition->addItems(TxtList(TTextId::EdPositions));
    chkLegendFrame = new QCheckBox(Txt(TTextId::EdFrame), page);
    chkLegendFrame->setObjectName(QStringLiteral("chkLegendFrame"));
    FLegendFont = FontFields(page, "LegendFont");
    for (QCheckBox* c : {chkLegendVisible, chkLegendFrame})
        connect(c, &QCheckBox::toggled, this, &TChartEditor::Apply);
    connect(cbxLegendPosition, &QComboBox::currentIndexChanged, this, &TChartEditor::Apply);
    form->addRow(QString(), chkLegendVisible);
    form->addRow(Txt(TTextId::EdPosition), cbxLegendPosition);
    form->addRow(QString(), chkLegendFrame);
    form->addRow(Txt(TTextId::CfgFontName), FLegendFont.Family);
    form->addRow(Txt(TTextId::CfgFontSize), FLegendFont.Size);
    form->addRow(Txt(TTextId::CfgFontStyle), FLegendFont.Style);
    return page;
}

QWidget* TChartEditor::BuildBackground() {
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    btnBackground = ColorButton(page, "btnBackground", &FDb->Look_Get().Background);
    btnPlotBackground = ColorButton(page, "btnPlotBackground", &FDb->Look_Get().PlotBackground);
    form->addRow(Txt(TTextId::EdChartBackground), btnBackground);
    form->addRow(Txt(TTextId::EdPlotBackground), btnPlotBackground);
    return page;
}

void TChartEditor::Fill() {
    FFilling = true;
    edtTitle->setText(FDb->General_Get().Title);
    edtFoot->setText(FDb->General_Get().Foot);
    auto fillFont = [](TFontFields& f, const TFontState& s) {
        f.Family->setCurrentFont(QFont(s.Name));
        f.Family->setProperty("shown", f.Family->currentFont().family());
        f.Size->setValue(s.Size);
        f.Style->setCurrentIndex(std::clamp(s.Style, 0, 3));
    };
    fillFont(FTitleFont, FDb->General_Get().FontTitle);
    fillFont(FFootFont, FDb->Look_Get().FootFontSet ? FDb->Look_Get().FootFont : FDb->General_Get().FontTitle);
    fillFont(FLegendFont, FDb->General_Get().FontLegend);
    ShowColor(btnTitleColor, FDb->Look_Get().TitleColor);
    ShowColor(btnFootColor, FDb->Look_Get().FootColor >= 0 ? FDb->Look_Get().FootColor : FDb->Look_Get().TitleColor);
    chkLegendVisible->setChecked(FDb->Look_Get().LegendVisible);
    cbxLegendPosition->setCurrentIndex(int(FDb->Look_Get().LegendPosition));
    chkLegendFrame->setChecked(FDb->Look_Get().LegendFrame);
    ShowColor(btnBackground, FDb->Look_Get().Background);
    ShowColor(btnPlotBackground, FDb->Look_Get().PlotBackground);
    cbxCurve->clear();
    for (int i = 0; i < FDb->Curve_Count(); ++i)
        cbxCurve->addItem(FDb->Curve_NameUnitGet(i));
    FFilling = false;
    FillAxis();
    FillCurve();
}

void TChartEditor::FillAxis() {
    const bool filling = FFilling;
    FFilling = true;
    const int a = std::max(0, cbxAxis->currentIndex());
    const TAxisState& s = FDb->Axis_Get(a);
    chkAxisVisible->setChecked(FDb->Look_Get().AxisVisible[a]);
    chkAxisAuto->setChecked(s.Auto);
    vedAxisMin->SetFloat(s.Min);
    vedAxisMax->SetFloat(s.Max);
    vedAxisInc->SetFloat(s.Inc);
    // The time axis's labels follow its type; the format is the value axes'.
    cbxAxisFormat->setEnabled(a != axBottom);
    cbxAxisFormat->setEditText(s.Format);
    chkAxisGrid->setChecked(s.Grid);
    ShowColor(btnGridColor, FDb->Look_Get().GridColor[a]);
    cbxGridStyle->setCurrentIndex(std::clamp(FDb->Look_Get().GridStyle[a], 0, 3));
    speGridWidth->setValue(std::clamp(FDb->Look_Get().GridWidth[a], 1, 5));
    FAxisFont.Family->setCurrentFont(QFont(FDb->General_Get().FontAxes.Name));
    FAxisFont.Family->setProperty("shown", FAxisFont.Family->currentFont().family());
    FAxisFont.Size->setValue(FDb->General_Get().FontAxes.Size);
    FAxisFont.Style->setCurrentIndex(std::clamp(FDb->General_Get().FontAxes.Style, 0, 3));
    FFilling = filling;
}

void TChartEditor::FillCurve() {
    const bool filling = FFilling;
    FFilling = true;
    const int c = cbxCurve->currentIndex();
    const bool valid = FDb->Curve_IsValid(c);
    for (QWidget* w : std::initializer_list<QWidget*>{btnCurveColor, speCurveWidth, cbxCurveStyle, chkCurvePoints})
        w->setEnabled(valid);
    if (valid) {
        ShowColor(btnCurveColor, FDb->Curve_ColorGet(c));
        speCurveWidth->setValue(std::clamp(FDb->Curve_WidthGet(c), 1, 10));
        const std::vector<int>& styles = FDb->Look_Get().CurveStyle;
        cbxCurveStyle->setCurrentIndex(c < int(styles.size()) ? std::clamp(styles[size_t(c)], 0, 3) : 0);
        chkCurvePoints->setChecked(FDb->Curve_TypeGet(c) == TCurveType::LineAndPoints);
    }
    FFilling = filling;
}

void TChartEditor::Apply() {
    if (FFilling) return;
    FDb->General_Get().Title = edtTitle->text();
    FDb->General_Get().Foot = edtFoot->text();
    auto takeFont = [](const TFontFields& f, TFontState& s) {
        // A family this machine lacks is shown as its stand-in; only a choice replaces it.
        const QString family = f.Family->currentFont().family();
        if (family != f.Family->property("shown").toString()) s.Name = family;
        s.Size = f.Size->value();
        s.Style = std::max(0, f.Style->currentIndex());
    };
    takeFont(FTitleFont, FDb->General_Get().FontTitle);
    // The footer's own font from the first change of its fields on.
    TFontState foot = FDb->Look_Get().FootFontSet ? FDb->Look_Get().FootFont : FDb->General_Get().FontTitle;
    const TFontState before = foot;
    takeFont(FFootFont, foot);
    if (FDb->Look_Get().FootFontSet || foot.Name != before.Name || foot.Size != before.Size || foot.Style != before.Style) {
        FDb->Look_Get().FootFont = foot;
        FDb->Look_Get().FootFontSet = true;
    }
    takeFont(FLegendFont, FDb->General_Get().FontLegend);
    takeFont(FAxisFont, FDb->General_Get().FontAxes);
    const int a = std::max(0, cbxAxis->currentIndex());
    TAxisState& s = FDb->Axis_Get(a);
    FDb->Look_Get().AxisVisible[a] = chkAxisVisible->isChecked();
    s.Auto = chkAxisAuto->isChecked();
    if (const auto x = vedAxisMin->AsFloat()) s.Min = *x;
    if (const auto x = vedAxisMax->AsFloat()) s.Max = *x;
    if (const auto x = vedAxisInc->AsFloat(); x && *x >= 0) s.Inc = *x;
    if (a != axBottom && !cbxAxisFormat->currentText().trimmed().isEmpty()) s.Format = cbxAxisFormat->currentText().trimmed();
    s.Grid = chkAxisGrid->isChecked();
    FDb->Look_Get().GridStyle[a] = std::max(0, cbxGridStyle->currentIndex());
    FDb->Look_Get().GridWidth[a] = speGridWidth->value();
    const int c = cbxCurve->currentIndex();
    if (FDb->Curve_IsValid(c)) {
        FDb->Curve_WidthSet(c, speCurveWidth->value());
        // Points alone stay so unless points are asked for with the line.
        if (FDb->Curve_TypeGet(c) != TCurveType::Points || chkCurvePoints->isChecked())
            FDb->Curve_TypeSet(c, chkCurvePoints->isChecked() ? TCurveType::LineAndPoints : TCurveType::Line);
        std::vector<int>& styles = FDb->Look_Get().CurveStyle;
        if (int(styles.size()) <= c) styles.resize(size_t(c) + 1, 0);
        styles[size_t(c)] = std::max(0, cbxCurveStyle->currentIndex());
    }
    FDb->Look_Get().LegendVisible = chkLegendVisible->isChecked();
    FDb->Look_Get().LegendPosition = TLegendPosition(std::clamp(cbxLegendPosition->currentIndex(), 0, 3));
    FDb->Look_Get().LegendFrame = chkLegendFrame->isChecked();
    // The view is what the template gets when the settings are saved.
    FDb->Ini_Store();
    FChart->Rebuild();
    Q_EMIT modified();
}
