#include "ui/GoToDlg.h"

#include "config/Texts.h"
#include "ui/DateTimeInput.h"
#include "ui/ValidateEdit.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;

TfrmGoToDlg::TfrmGoToDlg(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmGoToDlg"));
    setWindowTitle(Txt(TTextId::GoToCaption));

    Label1 = new QLabel(Txt(TTextId::GoToLabel), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    vedTime = new TValidateEdit(vmFloat, this);
    vedTime->setObjectName(QStringLiteral("vedTime"));
    vedTime->setMinimumWidth(180);
    Label1->setBuddy(vedTime);
    abtTime = new QToolButton(this);
    abtTime->setObjectName(QStringLiteral("abtTime"));
    abtTime->setText(QStringLiteral("..."));
    abtTime->setToolTip(Txt(TTextId::CfgPickTime));
    abtTime->setFocusPolicy(Qt::NoFocus);

    btnOK = new QPushButton(Txt(TTextId::BtnOk), this);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setDefault(true);
    btnCancel = new QPushButton(Txt(TTextId::BtnCancel), this);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));

    auto* v = new QVBoxLayout(this);
    v->addWidget(Label1);
    auto* field = new QHBoxLayout;
    field->setSpacing(2);
    field->addWidget(vedTime, 1);
    field->addWidget(abtTime);
    v->addLayout(field);
    v->addSpacing(6);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(btnOK);
    buttons->addWidget(btnCancel);
    v->addLayout(buttons);
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    connect(btnOK, &QPushButton::clicked, this, &TfrmGoToDlg::btnOKClick);
    connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(abtTime, &QToolButton::clicked, this, &TfrmGoToDlg::abtTimeClick);
}

bool TfrmGoToDlg::Execute(TTimeAxisType mode, double base, double& seconds) {
    FMode = mode;
    FBase = base;
    vedTime->clear();
    vedTime->ClearVerdict(); // an empty field is no error until OK is pressed
    abtTime->setVisible(mode == TTimeAxisType::TimeFromStart || mode == TTimeAxisType::DateTime);
    vedTime->setFocus();
    if (exec() != QDialog::Accepted) return false;
    seconds = vedTime->AsFloat().value_or(0.0);
    return true;
}

void TfrmGoToDlg::btnOKClick() {
    if (vedTime->IsValid()) {
        accept();
        return;
    }
    vedTime->setFocus();
    vedTime->selectAll();
}

void TfrmGoToDlg::abtTimeClick() {
    const QPoint below = vedTime->mapToGlobal(QPoint(0, vedTime->height()));
    double seconds = vedTime->AsFloat().value_or(0.0);
    bool ok = false;
    if (FMode == TTimeAxisType::TimeFromStart)
        ok = TDateTimeInput::ExecuteTime(below, seconds, this);
    else if (FMode == TTimeAxisType::DateTime)
        ok = TDateTimeInput::ExecuteDate(below, FBase, seconds, this);
    if (!ok) return;
    vedTime->SetFloat(seconds);
    vedTime->IsValid();
}
