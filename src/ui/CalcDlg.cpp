#include "ui/CalcDlg.h"

#include "analysis/Analysis.h"
#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/CrossHair.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;

TfrmCalcDlg::TfrmCalcDlg(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmCalcDlg"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto named = [](auto* w, const char* name) {
        w->setObjectName(QLatin1String(name));
        return w;
    };
    lblBegin = named(new QLabel(Txt(TTextId::CalcDlgBegin), this), "lblBegin");
    lblBeginValue = named(new QLabel(this), "lblBeginValue");
    lblEnd = named(new QLabel(Txt(TTextId::CalcDlgEnd), this), "lblEnd");
    lblEndValue = named(new QLabel(this), "lblEndValue");
    lblSelect = named(new QLabel(Txt(TTextId::CalcDlgSelectCurve), this), "lblSelect");
    ListBox1 = named(new QListWidget(this), "ListBox1");
    lblResult = named(new QLabel(Txt(TTextId::CalcDlgResult), this), "lblResult");
    lblResult1 = named(new QLabel(this), "lblResult1");
    lblResult2 = named(new QLabel(this), "lblResult2");
    for (QLabel* l : {lblBeginValue, lblEndValue, lblResult1, lblResult2})
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont bold = lblResult1->font();
    bold.setBold(true);
    lblResult1->setFont(bold);
    ProgressBar1 = named(new QProgressBar(this), "ProgressBar1");
    ProgressBar1->setRange(0, 100);
    ProgressBar1->setValue(0);
    ProgressBar1->setTextVisible(false);
    Button1 = named(new QPushButton(Txt(TTextId::CalcDlgCompute), this), "Button1");
    Button2 = named(new QPushButton(Txt(TTextId::CalcDlgClose), this), "Button2");
    Button1->setDefault(true);
    connect(Button1, &QPushButton::clicked, this, &TfrmCalcDlg::Button1Click);
    connect(Button2, &QPushButton::clicked, this, &TfrmCalcDlg::Button2Click);
    connect(ListBox1, &QListWidget::itemDoubleClicked, this, &TfrmCalcDlg::Button1Click);

    auto* bounds = new QGridLayout;
    bounds->addWidget(lblBegin, 0, 0);
    bounds->addWidget(lblBeginValue, 0, 1);
    bounds->addWidget(lblEnd, 1, 0);
    bounds->addWidget(lblEndValue, 1, 1);
    bounds->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(Button1);
    buttons->addWidget(Button2);
    auto* v = new QVBoxLayout(this);
    v->addLayout(bounds);
    v->addSpacing(6);
    v->addWidget(lblSelect);
    v->addWidget(ListBox1, 1);
    v->addSpacing(6);
    v->addWidget(lblResult);
    v->addWidget(lblResult1);
    v->addWidget(lblResult2);
    v->addWidget(ProgressBar1);
    v->addLayout(buttons);
    resize(440, 420);
}

bool TfrmCalcDlg::Execute(TDataBase* db, TCrossHair* crossHair, bool flowMode, bool modal) {
    FDb = db;
    FFlow = flowMode;
    setWindowTitle(Txt(flowMode ? TTextId::CalcDlgFlow : TTextId::CalcDlgIntegration));
    // The time axis, or a crosshair placed on the left axis.
    FXMin = db->Axis_Get(axBottom).Min;
    FXMax = db->Axis_Get(axBottom).Max;
    FMinFromCursor = FMaxFromCursor = false;
    if (crossHair && crossHair->GetActive(0) == 0) {
        FXMin = crossHair->X(0);
        FMinFromCursor = true;
    }
    if (crossHair && crossHair->GetActive(1) == 0) {
        FXMax = crossHair->X(1);
        FMaxFromCursor = true;
    }
    if (FXMin > FXMax) {
        std::swap(FXMin, FXMax);
        std::swap(FMinFromCursor, FMaxFromCursor);
    }
    auto source = [](bool cursor) -> QString {
        return QStringLiteral("  (") + Txt(cursor ? TTextId::CalcDlgFromCursor : TTextId::CalcDlgFromAxis) +
               QLatin1Char(')');
    };
    lblBeginValue->setText(TDataBase::GetXValueStr(zeb::TTimeKind::Time, FXMin) + source(FMinFromCursor));
    lblEndValue->setText(TDataBase::GetXValueStr(zeb::TTimeKind::TimeMs, FXMax) + source(FMaxFromCursor));

    // Every curve of the store; the derived flow channel is no curve of its own.
    ListBox1->clear();
    for (int i = 0; i < db->Curve_Count(); ++i) {
        if (flowMode ? !db->IsFlowCurve(i) : !db->Curve_IsActive(i)) continue;
        auto* item = new QListWidgetItem(db->Curve_NameUnitGet(i), ListBox1);
        item->setData(Qt::UserRole, i);
    }
    if (ListBox1->count() == 0) return false;
    ListBox1->setCurrentRow(0);
    lblResult1->clear();
    lblResult2->clear();
    ProgressBar1->setValue(0);
    FResult.reset();
    if (modal)
        exec();
    else
        show();
    return true;
}

void TfrmCalcDlg::Button1Click() {
    const QListWidgetItem* item = ListBox1->currentItem();
    if (!FDb || !item) return;
    const int curve = item->data(Qt::UserRole).toInt();
    for (QWidget* w : std::initializer_list<QWidget*>{Button1, Button2, ListBox1})
        w->setEnabled(false);
    ProgressBar1->setValue(0);
    const auto summary = FDb->Summary(curve);
    FResult = Integrate(FDb->Data(curve), summary.get(), FXMin, FXMax);
    ProgressBar1->setValue(100);
    const QString unit = FDb->Curve_UnitGet(curve).trimmed();
    if (!FResult) {
        // No point of the curve in the range: no figure rather than one made up.
        lblResult1->clear();
        lblResult2->clear();
    } else if (FFlow) {
        const double litres = FlowTotal(*FResult);
        lblResult1->setText(zeb::FormatFloat(QStringLiteral("0.000"), litres) + QStringLiteral(" l"));
        lblResult2->setText(QLatin1Char('(') + zeb::FormatFloat(QStringLiteral("0.00000E+00"), litres) +
                            QStringLiteral(" l)"));
    } else {
        lblResult1->setText(zeb::FormatFloat(QStringLiteral("0.000"), *FResult) + QLatin1Char(' ') + unit +
                            QStringLiteral(" * s"));
        lblResult2->setText(QLatin1Char('(') + zeb::FormatFloat(QStringLiteral("0.00000E+00"), *FResult) +
                            QLatin1Char(' ') + unit + QStringLiteral(" * s)"));
    }
    for (QWidget* w : std::initializer_list<QWidget*>{Button1, Button2, ListBox1})
        w->setEnabled(true);
}

void TfrmCalcDlg::Button2Click() {
    close();
}

QString TfrmCalcDlg::ResultText(int line) const {
    return line == 0 ? lblResult1->text() : lblResult2->text();
}
