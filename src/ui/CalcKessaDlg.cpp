#include "ui/CalcKessaDlg.h"

#include "config/Texts.h"
#include "config/ZebReg.h"
#include "store/DataBase.h"
#include "ui/ValidateEdit.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;

TfrmCalcKessaDlg::TfrmCalcKessaDlg(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmCalcKessaDlg"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(Txt(TTextId::KessaCaption));
    auto named = [](auto* w, const char* name) {
        w->setObjectName(QLatin1String(name));
        return w;
    };
    lblSelect = named(new QLabel(Txt(TTextId::KessaSelectCurve), this), "lblSelect");
    ListBox1 = named(new QListWidget(this), "ListBox1");
    CheckBox1 = named(new QCheckBox(Txt(TTextId::KessaActive), this), "CheckBox1");
    lblName = named(new QLabel(Txt(TTextId::CfgName), this), "lblName");
    Edit1 = named(new QLineEdit(this), "Edit1");
    lblUnit = named(new QLabel(Txt(TTextId::KessaUnit), this), "lblUnit");
    Edit2 = named(new QLineEdit(this), "Edit2");
    lblFactor = named(new QLabel(Txt(TTextId::KessaFactor), this), "lblFactor");
    ValidateEdit1 = named(new TValidateEdit(vmFloat, this), "ValidateEdit1");
    lblOffset = named(new QLabel(Txt(TTextId::KessaOffset), this), "lblOffset");
    ValidateEdit2 = named(new TValidateEdit(vmFloat, this), "ValidateEdit2");
    Button1 = named(new QPushButton(Txt(TTextId::BtnOk), this), "Button1");
    Button2 = named(new QPushButton(Txt(TTextId::BtnCancel), this), "Button2");
    Button1->setDefault(true);
    connect(Button1, &QPushButton::clicked, this, &TfrmCalcKessaDlg::Button1Click);
    connect(Button2, &QPushButton::clicked, this, &TfrmCalcKessaDlg::Button2Click);

    auto* form = new QFormLayout;
    form->addRow(QString(), CheckBox1);
    form->addRow(lblName, Edit1);
    form->addRow(lblUnit, Edit2);
    form->addRow(lblFactor, ValidateEdit1);
    form->addRow(lblOffset, ValidateEdit2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(Button1);
    buttons->addWidget(Button2);
    auto* v = new QVBoxLayout(this);
    v->addWidget(lblSelect);
    v->addWidget(ListBox1, 1);
    v->addLayout(form);
    v->addLayout(buttons);
    resize(420, 440);
}

bool TfrmCalcKessaDlg::Execute(TDataBase* db, bool modal) {
    FDb = db;
    const TCalcKessa& k = db->CalcKessa();
    ListBox1->clear();
    for (int i = 0; i < db->Curve_Count(); ++i)
        ListBox1->addItem(QString::number(i) + QStringLiteral(": ") + db->Curve_NameUnitGet(i));
    if (k.Curve() >= 0 && k.Curve() < ListBox1->count()) ListBox1->setCurrentRow(k.Curve());
    CheckBox1->setChecked(k.Active());
    Edit1->setText(k.Name());
    Edit2->setText(k.Unit());
    ValidateEdit1->SetFloat(k.Factor());
    ValidateEdit2->SetFloat(k.Offset());
    for (TValidateEdit* e : {ValidateEdit1, ValidateEdit2})
        e->IsValid();
    if (!modal) {
        show();
        return false;
    }
    return exec() == QDialog::Accepted;
}

void TfrmCalcKessaDlg::Button1Click() {
    // A wrong number keeps the dialog open with the focus on it.
    for (TValidateEdit* e : {ValidateEdit1, ValidateEdit2})
        if (!e->IsValid()) {
            e->setFocus();
            e->selectAll();
            return;
        }
    const bool active = CheckBox1->isChecked();
    const int curve = ListBox1->currentRow();
    const double factor = ValidateEdit1->AsFloat().value_or(0.0), offset = ValidateEdit2->AsFloat().value_or(0.0);
    FDb->SetCalcKessa(active, curve, Edit1->text(), Edit2->text(), factor, offset);
    TZebSettings& s = ZebSettings();
    s.CustomApp0_Active = active;
    s.CustomApp0_Curve = curve;
    s.CustomApp0_Name = Edit1->text();
    s.CustomApp0_Unit = Edit2->text();
    s.CustomApp0_Mul = factor;
    s.CustomApp0_Add = offset;
    accept();
}

void TfrmCalcKessaDlg::Button2Click() {
    reject();
}
