#include "ui/BigDataDlg.h"

#include "config/Texts.h"

#include <QButtonGroup>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

using zeb::TTextId;
using zeb::Txt;

namespace {

QFrame* Panel(QWidget* parent, const char* name) {
    auto* p = new QFrame(parent);
    p->setObjectName(QLatin1String(name));
    p->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return p;
}

template <class T> T* Named(T* w, const char* name) {
    w->setObjectName(QLatin1String(name));
    return w;
}

} // namespace

TfrmBigDataDlg::TfrmBigDataDlg(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmBigDataDlg"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setModal(true);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    panInfo = Panel(this, "panInfo");
    auto* info = new QHBoxLayout(panInfo);
    info->setContentsMargins(12, 12, 12, 6);
    auto* icon = new QLabel(panInfo);
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(side, side));
    icon->setAlignment(Qt::AlignTop);
    info->addWidget(icon);
    memInfo = Named(new QPlainTextEdit(panInfo), "memInfo");
    memInfo->setReadOnly(true);
    memInfo->setFrameShape(QFrame::NoFrame);
    memInfo->setFocusPolicy(Qt::NoFocus);
    memInfo->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    memInfo->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    memInfo->viewport()->setAutoFillBackground(false);
    memInfo->setFixedHeight(2 * memInfo->fontMetrics().lineSpacing() + 8);
    info->addWidget(memInfo, 1);
    outer->addWidget(panInfo);

    panSelection = Panel(this, "panSelection");
    auto* sel = new QVBoxLayout(panSelection);
    sel->setContentsMargins(12 + side + info->spacing(), 6, 12, 6);
    rbnCancel = Named(new QRadioButton(panSelection), "rbnCancel");
    rbnShow = Named(new QRadioButton(panSelection), "rbnShow");
    rbnContinue = Named(new QRadioButton(panSelection), "rbnContinue");
    rbnPreviewer = Named(new QRadioButton(panSelection), "rbnPreviewer");
    auto* group = new QButtonGroup(this);
    for (QRadioButton* rb : {rbnCancel, rbnShow, rbnContinue, rbnPreviewer}) {
        group->addButton(rb);
        sel->addWidget(rb);
    }
    outer->addWidget(panSelection);

    panButtons = Panel(this, "panButtons");
    auto* buttons = new QHBoxLayout(panButtons);
    buttons->setContentsMargins(12, 6, 12, 12);
    buttons->addStretch(1);
    btnOK = Named(new QPushButton(panButtons), "btnOK");
    btnCancel = Named(new QPushButton(panButtons), "btnCancel");
    btnOK->setDefault(true);
    buttons->addWidget(btnOK);
    buttons->addWidget(btnCancel);
    outer->addWidget(panButtons);

    connect(btnOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);

    FormCreate();
}

void TfrmBigDataDlg::FormCreate() {
    setWindowTitle(Txt(TTextId::MsgFileTooLarge));
    memInfo->setPlainText(Txt(TTextId::BigDataInfo));
    rbnCancel->setText(Txt(TTextId::BigDataStop));
    rbnShow->setText(Txt(TTextId::BigDataShow));
    rbnContinue->setText(Txt(TTextId::BigDataContinue));
    rbnPreviewer->setText(Txt(TTextId::BigDataPreviewer));
    btnOK->setText(Txt(TTextId::BtnOk));
    btnCancel->setText(Txt(TTextId::BtnCancel));

    // The dialog is exactly as high as its three panels.
    int height = 0;
    for (QFrame* p : {panInfo, panSelection, panButtons})
        height += p->sizeHint().height();
    setFixedHeight(height);
    setMinimumWidth(qMax(sizeHint().width(), 420));
}

TBigDataAnswer TfrmBigDataDlg::Execute() {
    rbnShow->setChecked(true);
    btnOK->setFocus(Qt::OtherFocusReason);
    if (exec() != QDialog::Accepted) return TBigDataAnswer::Stop;
    if (rbnShow->isChecked()) return TBigDataAnswer::Show;
    if (rbnContinue->isChecked()) return TBigDataAnswer::Continue;
    if (rbnPreviewer->isChecked()) return TBigDataAnswer::Previewer;
    // rbnCancel comes last on purpose: it answers like a cancelled dialog.
    return TBigDataAnswer::Stop;
}
