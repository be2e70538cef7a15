#include "ui/ChartPropsDlg.h"

#include "config/Texts.h"
#include "ui/CurvePlottable.h"
#include "ui/ValidateEdit.h"
#include "ui/ZebDlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;

TfrmChartProps::TfrmChartProps(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmChartProps"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(Txt(TTextId::ChartPropsCaption));
    edtTitle = new QLineEdit(this);
    edtTitle->setObjectName(QStringLiteral("edtTitle"));
    auto range = [this](const char* name) {
        auto* e = new TValidateEdit(vmFloat, this);
        e->setObjectName(QLatin1String(name));
        return e;
    };
    vedXMin = range("vedXMin");
    vedXMax = range("vedXMax");
    vedYMin = range("vedYMin");
    vedYMax = range("vedYMax");
    btnColor = new QPushButton(this);
    btnColor->setObjectName(QStringLiteral("btnColor"));
    connect(btnColor, &QPushButton::clicked, this, [this] {
        QColor c = FColor;
        if (!zeb::TZebDlg::SelectColor(c)) return;
        FColor = c;
        btnColor->setStyleSheet(QStringLiteral("background-color: %1").arg(c.name()));
    });

    auto* form = new QFormLayout;
    form->addRow(Txt(TTextId::CfgTitle), edtTitle);
    auto axis = [&](TTextId caption, TValidateEdit* min, TValidateEdit* max) {
        auto* box = new QGroupBox(Txt(caption), this);
        auto* f = new QFormLayout(box);
        f->addRow(Txt(TTextId::CfgMinimum), min);
        f->addRow(Txt(TTextId::CfgMaximum), max);
        return box;
    };
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(Txt(TTextId::BtnOk));
    buttons->button(QDialogButtonBox::Cancel)->setText(Txt(TTextId::BtnCancel));
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (Apply()) accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* v = new QVBoxLayout(this);
    v->addLayout(form);
    v->addWidget(axis(TTextId::ChartPropsXAxis, vedXMin, vedXMax));
    v->addWidget(axis(TTextId::ChartPropsYAxis, vedYMin, vedYMax));
    auto* colour = new QFormLayout;
    colour->addRow(Txt(TTextId::CfgCurveColor), btnColor);
    v->addLayout(colour);
    v->addWidget(buttons);
}

bool TfrmChartProps::Execute(QCustomPlot* chart, QCPTextElement* title, QCPAbstractPlottable* curve, bool modal) {
    FChart = chart;
    FTitle = title;
    FCurve = curve;
    edtTitle->setText(title ? title->text() : QString());
    vedXMin->SetFloat(chart->xAxis->range().lower);
    vedXMax->SetFloat(chart->xAxis->range().upper);
    vedYMin->SetFloat(chart->yAxis->range().lower);
    vedYMax->SetFloat(chart->yAxis->range().upper);
    FColor = curve ? curve->pen().color() : QColor(Qt::blue);
    btnColor->setStyleSheet(QStringLiteral("background-color: %1").arg(FColor.name()));
    if (!modal) {
        show();
        return false;
    }
    return exec() == QDialog::Accepted;
}

bool TfrmChartProps::Apply() {
    // A wrong number, or a minimum not below its maximum, keeps the dialog open on that field.
    for (TValidateEdit* e : {vedXMin, vedXMax, vedYMin, vedYMax})
        if (!e->IsValid()) {
            e->setFocus();
            return false;
        }
    const double x0 = *vedXMin->AsFloat(), x1 = *vedXMax->AsFloat(), y0 = *vedYMin->AsFloat(), y1 = *vedYMax->AsFloat();
    if (!(x0 < x1)) {
        vedXMax->setFocus();
        return false;
    }
    if (!(y0 < y1)) {
        vedYMax->setFocus();
        return false;
    }
    if (FTitle) FTitle->setText(edtTitle->text());
    FChart->xAxis->setRange(x0, x1);
    FChart->yAxis->setRange(y0, y1);
    if (FCurve) {
        QPen pen = FCurve->pen();
        pen.setColor(FColor);
        FCurve->setPen(pen);
    }
    FChart->replot();
    return true;
}
