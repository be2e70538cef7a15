#include "ui/CfgPage.h"
#include "ui/CfgWidgets.h"

#include "config/Texts.h"
#include "data/Formats.h"
#include "store/DataBase.h"
#include "ui/DateTimeInput.h"
#include "ui/ValidateEdit.h"
#include "ui/WheelSideways.h"
#include "ui/ZebChart.h"
#include "ui/ZebDlg.h"

#include <QAbstractTableModel>
#include <QCheckBox>
#include <QComboBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <functional>

using zeb::TTextId;
using zeb::Txt;
using zeb::TxtList;

using namespace cfg;


// ====================================================================== curve table

// The curves table asks the store for every cell and writes an edited cell straight back;
// the model keeps nothing but the number of rows it has announced.
class TCfgCurveModel : public QAbstractTableModel {
public:
    TCfgCurveModel(TDataBase* db, QObject* parent) : QAbstractTableModel(parent), FDb(db) {}

    void Reload() {
        beginResetModel();
        FRows = FDb->Curve_Count();
        endResetModel();
    }
    void RetranslateHeader() { Q_EMIT headerDataChanged(Qt::Horizontal, 0, TCfgPage::colCount - 1); }
    // From now on nothing is read or written: the page is going, and the store may be gone.
    void Detach() { FDb = nullptr; }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : FRows; }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : int(TCfgPage::colCount);
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        if (!index.isValid()) return Qt::NoItemFlags;
        Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        // The colour cell opens the colour dialog by itself instead of an editor.
        switch (index.column()) {
        case TCfgPage::colDescription:
        case TCfgPage::colAxis:
        case TCfgPage::colWidth:
        case TCfgPage::colType:
        case TCfgPage::colFormat:
            f |= Qt::ItemIsEditable;
            break;
        default:
            break;
        }
        return f;
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return QAbstractTableModel::headerData(section, orientation, role);
        static constexpr TTextId kHeaders[] = {TTextId::CfgCurveNumber,      TTextId::CfgCurveSerial,
                                               TTextId::CfgCurveDescription, TTextId::CfgCurveAxis,
                                               TTextId::CfgCurveColor,       TTextId::CfgCurveWidth,
                                               TTextId::CfgCurveType,        TTextId::CfgFormat};
        return section >= 0 && section < int(std::size(kHeaders)) ? Txt(kHeaders[section]) : QVariant();
    }

    // Cfg_OnGetCellData
    QVariant data(const QModelIndex& index, int role) const override {
        const int curve = index.row();
        if (!FDb || !index.isValid() || curve >= FRows || !FDb->Curve_IsValid(curve)) return {};
        const int col = index.column();
        if (role == Qt::TextAlignmentRole)
            return col == TCfgPage::colNumber || col == TCfgPage::colWidth
                       ? QVariant(Qt::AlignCenter)
                       : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
        if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
        const bool edit = role == Qt::EditRole;
        switch (col) {
        case TCfgPage::colNumber:
            return curve + 1;
        case TCfgPage::colSerial:
            return FDb->Curve_SNumberGet(curve);
        case TCfgPage::colDescription:
            return FDb->Curve_NameGet(curve);
        case TCfgPage::colAxis:
            return edit ? QVariant(FDb->Curve_AxisGet(curve))
                        : ItemOf(TTextId::CfgCurveAxes, FDb->Curve_AxisGet(curve));
        case TCfgPage::colColor:
            return edit ? QVariant(ColorOf(FDb->Curve_ColorGet(curve))) : QVariant();
        case TCfgPage::colWidth:
            return FDb->Curve_WidthGet(curve);
        case TCfgPage::colType:
            // The list of types in the types' order.
            return edit ? QVariant(int(FDb->Curve_TypeGet(curve)))
                        : ItemOf(TTextId::CfgCurveTypes, int(FDb->Curve_TypeGet(curve)));
        case TCfgPage::colFormat:
            return FDb->Curve_FormatGet(curve);
        default:
            return {};
        }
    }

    // Cfg_OnDoneEdit: rows that are no curve (any more) are ignored.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override {
        const int curve = index.row();
        if (!FDb || role != Qt::EditRole || !index.isValid() || curve >= FRows || !FDb->Curve_IsValid(curve))
            return false;
        switch (index.column()) {
        case TCfgPage::colDescription:
            FDb->Curve_NameSet(curve, value.toString());
            break;
        case TCfgPage::colAxis: {
            const int axis = value.toInt();
            if (axis < 0 || axis > 2) return false;
            FDb->Curve_AxisSet(curve, axis);
            break;
        }
        case TCfgPage::colColor: {
            const QColor c = value.value<QColor>();
            if (!c.isValid()) return false;
            FDb->Curve_ColorSet(curve, BgrOf(c));
            break;
        }
        case TCfgPage::colWidth: {
            const int w = value.toInt();
            if (w < 1 || w > kMaxLineWidth) return false;
            FDb->Curve_WidthSet(curve, w);
            break;
        }
        case TCfgPage::colType: {
            const int t = value.toInt();
            if (t < 0 || t >= kCurveTypes) return false;
            FDb->Curve_TypeSet(curve, TCurveType(t));
            break;
        }
        case TCfgPage::colFormat: {
            const QString f = value.toString().trimmed();
            if (f.isEmpty()) return false; // an empty pattern would show nothing at all
            FDb->Curve_FormatSet(curve, f);
            break;
        }
        default:
            return false;
        }
        Q_EMIT dataChanged(index, index);
        return true;
    }

private:
    static QVariant ItemOf(TTextId list, int i) {
        const QStringList items = TxtList(list);
        return i >= 0 && i < items.size() ? items[i] : QString::number(i);
    }

    TDataBase* FDb;
    int FRows = 0;
};

// One column's cell: its editor, and the way to end an open edit from outside (the page ends
// it before it copies itself into the store).
class TCfgCellDelegate : public QStyledItemDelegate {
public:
    TCfgCellDelegate(const QString& name, QObject* parent) : QStyledItemDelegate(parent) {
        setObjectName(name);
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = CreateCellEditor(parent, option, index);
        FEditor = editor;
        return editor;
    }
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override {
        if (FEditor == editor) FEditor = nullptr;
        QStyledItemDelegate::destroyEditor(editor, index);
    }
    void EndEdit() {
        if (QWidget* editor = FEditor) {
            FEditor = nullptr;
            Q_EMIT commitData(editor);
            Q_EMIT closeEditor(editor, QAbstractItemDelegate::NoHint);
        }
    }
    QWidget* Editor() const { return FEditor; }

protected:
    virtual QWidget* CreateCellEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const {
        return QStyledItemDelegate::createEditor(parent, option, index);
    }
    // A choice is a finished edit: it is written at once.
    void FinishOnChoice(QComboBox* box) const {
        auto* self = const_cast<TCfgCellDelegate*>(this);
        connect(box, &QComboBox::activated, self, [self, box] {
            if (self->FEditor != box) return;
            self->FEditor = nullptr;
            Q_EMIT self->commitData(box);
            Q_EMIT self->closeEditor(box, QAbstractItemDelegate::NoHint);
        });
    }

private:
    mutable QPointer<QWidget> FEditor;
};

// A cell edited with a list: a fixed list stands for the numbers from `first` on; an editable
// list (the number formats) stands for its text.
class TCfgListCell : public TCfgCellDelegate {
public:
    TCfgListCell(const QString& name, std::function<QStringList()> items, bool editable, int first,
                 QObject* parent)
        : TCfgCellDelegate(name, parent), FItems(std::move(items)), FEditable(editable), FFirst(first) {}

    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto* box = static_cast<QComboBox*>(editor);
        if (FEditable)
            SelectText(box, index.data(Qt::EditRole).toString());
        else
            SelectIndex(box, index.data(Qt::EditRole).toInt() - FFirst);
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
        auto* box = static_cast<QComboBox*>(editor);
        if (FEditable)
            model->setData(index, box->currentText(), Qt::EditRole);
        else if (box->currentIndex() >= 0)
            model->setData(index, box->currentIndex() + FFirst, Qt::EditRole);
    }

protected:
    QWidget* CreateCellEditor(QWidget* parent, const QStyleOptionViewItem&,
                              const QModelIndex&) const override {
        auto* box = ComboBox(QString(), FEditable, parent);
        box->addItems(FItems());
        FinishOnChoice(box);
        return box;
    }

private:
    std::function<QStringList()> FItems;
    bool FEditable;
    int FFirst;
};

// The colour cell: a swatch of the curve's colour; a click (or Space, F2) asks for a new one.
class TMyTCColor : public TCfgCellDelegate {
public:
    using TCfgCellDelegate::TCfgCellDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const QColor c = index.data(Qt::EditRole).value<QColor>();
        if (!c.isValid()) return;
        const QRect swatch = option.rect.adjusted(5, 4, -5, -4);
        painter->save();
        painter->setPen(option.palette.color(QPalette::Dark));
        painter->setBrush(c);
        painter->drawRect(swatch.adjusted(0, 0, -1, -1));
        painter->restore();
    }

    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override {
        bool ask = false;
        if (event->type() == QEvent::MouseButtonRelease) {
            const auto* me = static_cast<QMouseEvent*>(event);
            ask = me->button() == Qt::LeftButton && option.rect.contains(me->position().toPoint());
        } else if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            ask = key == Qt::Key_Space || key == Qt::Key_F2;
        }
        if (!ask) return QStyledItemDelegate::editorEvent(event, model, option, index);
        Cfg_OnGetColorEvent(model, index);
        return true;
    }

private:
    static void Cfg_OnGetColorEvent(QAbstractItemModel* model, const QModelIndex& index) {
        QColor color = index.data(Qt::EditRole).value<QColor>();
        if (zeb::TZebDlg::SelectColor(color)) model->setData(index, color, Qt::EditRole);
    }
};

// ====================================================================== page

TCfgPage::TCfgPage(TDataBase* db, QWidget* parent) : QTabWidget(parent), FDb(db) {
    setObjectName(QStringLiteral("pclCfg"));
    addTab(BuildGeneralTab(), QString());
    addTab(BuildCurveTab(), QString());
    addTab(BuildAxisTab(axBottom), QString());
    addTab(BuildAxisTab(axLeft), QString());
    addTab(BuildAxisTab(axRight), QString());
    addTab(BuildCursorTab(), QString());
    ApplyLanguage();
    FillAll();
    connect(this, &QTabWidget::currentChanged, this, &TCfgPage::OnCurrentChanged);
}

TCfgPage::~TCfgPage() {
    // An editor still open commits when its window goes; by then there is nothing to write to.
    FCurveModel->Detach();
    disconnect(FCurveModel, nullptr, this, nullptr);
}

// ---------------------------------------------------------------------- building

QWidget* TCfgPage::BuildGeneralTab() {
    auto* page = new QWidget(this);
    page->setObjectName(QStringLiteral("tbsCfgGeneral"));
    auto* v = new QVBoxLayout(page);

    auto* form = new QFormLayout;
    edtCfgTitle = LineEdit(QStringLiteral("edtCfgTitle"), page);
    edtCfgFoot = LineEdit(QStringLiteral("edtCfgFoot"), page);
    lblCfgTitle = Label(edtCfgTitle, page);
    lblCfgFoot = Label(edtCfgFoot, page);
    form->addRow(lblCfgTitle, edtCfgTitle);
    form->addRow(lblCfgFoot, edtCfgFoot);
    v->addLayout(form);

    chkCfgShowTime = new QCheckBox(page);
    chkCfgShowTime->setObjectName(QStringLiteral("chkCfgShowTime"));
    chkCfgShowName = new QCheckBox(page);
    chkCfgShowName->setObjectName(QStringLiteral("chkCfgShowName"));
    v->addWidget(chkCfgShowTime);
    v->addWidget(chkCfgShowName);

    auto* group = new QGroupBox(page);
    group->setObjectName(QStringLiteral("grpCfgFonts"));
    grpCfgFonts = group;
    auto* grid = new QGridLayout(group);
    lblCfgFontName = new QLabel(group);
    lblCfgFontSize = new QLabel(group);
    lblCfgFontStyle = new QLabel(group);
    grid->addWidget(lblCfgFontName, 0, 1);
    grid->addWidget(lblCfgFontSize, 0, 2);
    grid->addWidget(lblCfgFontStyle, 0, 3);
    static const char* const kSuffix[] = {"Title", "Legend", "Axes", "Text"};
    for (int i = 0; i < 4; ++i) {
        TFontControls& f = FFonts[size_t(i)];
        const QString suffix = QLatin1String(kSuffix[i]);
        f.ofcFont = new QFontComboBox(group);
        f.ofcFont->setObjectName(QStringLiteral("ofcCfgFont") + suffix);
        f.ofcFont->setMinimumWidth(200);
        f.ofcFont->setMaximumWidth(320);
        f.osfSize = new QSpinBox(group);
        f.osfSize->setObjectName(QStringLiteral("osfCfgFontSize") + suffix);
        f.osfSize->setRange(1, 200);
        f.cbxStyle = ComboBox(QStringLiteral("cbxCfgFontStyle") + suffix, false, group);
        f.lblFont = Label(f.ofcFont, group);
        grid->addWidget(f.lblFont, i + 1, 0);
        grid->addWidget(f.ofcFont, i + 1, 1);
        grid->addWidget(f.osfSize, i + 1, 2);
        grid->addWidget(f.cbxStyle, i + 1, 3);
    }
    grid->setColumnStretch(4, 1);
    v->addWidget(group);
    v->addStretch(1);
    return page;
}

QWidget* TCfgPage::BuildCurveTab() {
    auto* page = new QWidget(this);
    page->setObjectName(QStringLiteral("tbsCfgCurve"));
    auto* v = new QVBoxLayout(page);

    otbCurveCfg = new QTableView(page);
    otbCurveCfg->setObjectName(QStringLiteral("otbCurveCfg"));
    FCurveModel = new TCfgCurveModel(FDb, this);
    otbCurveCfg->setModel(FCurveModel);
    otbCurveCfg->verticalHeader()->hide();
    ScrollSidewaysWithShift(otbCurveCfg);
    otbCurveCfg->setSelectionMode(QAbstractItemView::SingleSelection);
    otbCurveCfg->setSelectionBehavior(QAbstractItemView::SelectItems);
    otbCurveCfg->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                                 QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    otbCurveCfg->horizontalHeader()->setHighlightSections(false);
    otbCurveCfg->horizontalHeader()->setStretchLastSection(false);
    otbCurveCfg->verticalHeader()->setDefaultSectionSize(otbCurveCfg->fontMetrics().height() + 10);

    FCells[colNumber] = new TCfgCellDelegate(QStringLiteral("otcCfgCurveNumber"), this);
    FCells[colSerial] = new TCfgCellDelegate(QStringLiteral("otcCfgCurveName1"), this);
    FCells[colDescription] = new TCfgCellDelegate(QStringLiteral("otcCfgCurveDescription"), this);
    FCells[colAxis] = new TCfgListCell(
        QStringLiteral("otcCfgCurveAxis"), [] { return TxtList(TTextId::CfgCurveAxes); }, false, 0, this);
    FCells[colColor] = new TMyTCColor(QStringLiteral("otcCfgCurveColor"), this);
    FCells[colWidth] = new TCfgListCell(QStringLiteral("otcCfgCurveWidth"), LineWidths, false, 1, this);
    FCells[colType] = new TCfgListCell(
        QStringLiteral("otcCfgCurveType"), [] { return TxtList(TTextId::CfgCurveTypes); }, false, 0, this);
    FCells[colFormat] = new TCfgListCell(QStringLiteral("otcCfgCurveFormat"), CurveFormats, true, 0, this);
    for (int c = 0; c < colCount; ++c) {
        otbCurveCfg->setItemDelegateForColumn(c, FCells[size_t(c)]);
    }
    connect(FCurveModel, &QAbstractItemModel::dataChanged, this, &TCfgPage::modified);
    v->addWidget(otbCurveCfg);
    return page;
}

QWidget* TCfgPage::BuildAxisTab(int axis) {
    static const char* const kNames[] = {"Bottom", "Left", "Right"};
    static const char* const kTabs[] = {"tbsCfgAxisBottom", "tbsCfgAxisLeft", "tbsCfgAxisRight"};
    const QString n = QLatin1String(kNames[axis]);
    auto* page = new QWidget(this);
    page->setObjectName(QLatin1String(kTabs[axis]));
    TAxisControls& a = FAxes[size_t(axis)];

    a.edtName = LineEdit(QStringLiteral("edtCfgAxis") + n + QStringLiteral("Name"), page);
    a.chkAuto = new QCheckBox(page);
    a.chkAuto->setObjectName(QStringLiteral("chkCfgAxis") + n + QStringLiteral("Auto"));
    auto ved = [&](const char* which) {
        auto* e = new TValidateEdit(vmFloat, page);
        e->setObjectName(QStringLiteral("vedCfgAxis") + n + QLatin1String(which));
        e->setMaximumWidth(180);
        return e;
    };
    a.vedMin = ved("Min");
    a.vedMax = ved("Max");
    a.vedInc = ved("Inc");
    a.lblName = Label(a.edtName, page);
    a.lblMin = Label(a.vedMin, page);
    a.lblMax = Label(a.vedMax, page);
    a.lblInc = Label(a.vedInc, page);

    auto* grid = new QGridLayout;
    grid->setColumnMinimumWidth(0, 120);
    int row = 0;
    grid->addWidget(a.lblName, row, 0);
    grid->addWidget(a.edtName, row++, 1, 1, 2);
    grid->addWidget(a.chkAuto, row++, 1, 1, 2);

    if (axis == axBottom) {
        abtCfgAxisBottomMin = DotsButton(QStringLiteral("abtCfgAxisBottomMin"), page);
        abtCfgAxisBottomMax = DotsButton(QStringLiteral("abtCfgAxisBottomMax"), page);
        abtCfgAxisBottomInc = DotsButton(QStringLiteral("abtCfgAxisBottomInc"), page);
        const struct {
            QLabel* label;
            TValidateEdit* edit;
            QToolButton* button;
            bool interval;
        } rows[] = {{a.lblMin, a.vedMin, abtCfgAxisBottomMin, false},
                    {a.lblMax, a.vedMax, abtCfgAxisBottomMax, false},
                    {a.lblInc, a.vedInc, abtCfgAxisBottomInc, true}};
        for (const auto& r : rows) {
            auto* h = new QHBoxLayout;
            h->setSpacing(2);
            h->addWidget(r.edit);
            h->addWidget(r.button);
            h->addStretch(1);
            grid->addWidget(r.label, row, 0);
            grid->addLayout(h, row++, 1, 1, 2);
            connect(r.button, &QToolButton::clicked, this,
                    [this, e = r.edit, b = r.button, i = r.interval] { OnPickTime(e, b, i); });
        }
        lblCfgAxisBottomSeconds = new QLabel(page);
        lblCfgAxisBottomSeconds->setObjectName(QStringLiteral("lblCfgAxisBottomSeconds"));
        lblCfgAxisBottomSeconds->setWordWrap(true);
        QFont small = lblCfgAxisBottomSeconds->font();
        small.setItalic(true);
        lblCfgAxisBottomSeconds->setFont(small);
        grid->addWidget(lblCfgAxisBottomSeconds, row++, 1, 1, 2);

        cbxCfgAxisBottomType = ComboBox(QStringLiteral("cbxCfgAxisBottomType"), false, page);
        cbxCfgAxisBottomFormat1 = ComboBox(QStringLiteral("cbxCfgAxisBottomFormat1"), false, page);
        cbxCfgAxisBottomFormat2 = ComboBox(QStringLiteral("cbxCfgAxisBottomFormat2"), false, page);
        for (const QString& f : RelativeFormats())
            cbxCfgAxisBottomFormat1->addItem(ShownRelative(f), f);
        for (const QString& f : AbsoluteFormats())
            cbxCfgAxisBottomFormat2->addItem(f, f);
        lblCfgAxisBottomType = Label(cbxCfgAxisBottomType, page);
        lblCfgAxisBottomFormat1 = Label(cbxCfgAxisBottomFormat1, page);
        lblCfgAxisBottomFormat2 = Label(cbxCfgAxisBottomFormat2, page);
        btnCfgAxisBottomHelp = new QToolButton(page);
        btnCfgAxisBottomHelp->setObjectName(QStringLiteral("btnCfgAxisBottomHelp"));
        btnCfgAxisBottomHelp->setText(QStringLiteral("?"));
        grid->addWidget(lblCfgAxisBottomType, row, 0);
        grid->addWidget(cbxCfgAxisBottomType, row++, 1, 1, 2);
        grid->addWidget(lblCfgAxisBottomFormat1, row, 0);
        grid->addWidget(cbxCfgAxisBottomFormat1, row++, 1);
        grid->addWidget(lblCfgAxisBottomFormat2, row, 0);
        grid->addWidget(cbxCfgAxisBottomFormat2, row, 1);
        grid->addWidget(btnCfgAxisBottomHelp, row++, 2, Qt::AlignLeft);
        connect(cbxCfgAxisBottomType, &QComboBox::currentIndexChanged, this,
                &TCfgPage::OnAxisBottomTypeChanged);
        connect(btnCfgAxisBottomHelp, &QToolButton::clicked, this, &TCfgPage::btnCfgAxisBottomHelpClick);
    } else {
        for (const auto& [label, edit] :
             {std::pair{a.lblMin, a.vedMin}, {a.lblMax, a.vedMax}, {a.lblInc, a.vedInc}}) {
            grid->addWidget(label, row, 0);
            grid->addWidget(edit, row++, 1);
        }
        a.cbxFormat = ComboBox(QStringLiteral("cbxCfgAxis") + n + QStringLiteral("Format"), true, page);
        a.cbxFormat->addItems(zeb::ValueFormatList());
        a.cbxFormat->setMaximumWidth(180);
        a.lblFormat = Label(a.cbxFormat, page);
        grid->addWidget(a.lblFormat, row, 0);
        grid->addWidget(a.cbxFormat, row++, 1);
    }
    grid->setColumnStretch(1, 1);

    // The fields keep a readable width on a wide window.
    auto* h = new QHBoxLayout;
    h->addLayout(grid, 3);
    h->addStretch(2);
    auto* v = new QVBoxLayout(page);
    v->addLayout(h);
    v->addStretch(1);
    return page;
}

QWidget* TCfgPage::BuildCursorTab() {
    auto* page = new QWidget(this);
    page->setObjectName(QStringLiteral("tbsCfgCursor"));
    auto* v = new QVBoxLayout(page);
    auto* h = new QHBoxLayout;
    for (int k = 0; k < 2; ++k) {
        const QString n = QStringLiteral("cbxCfgCursor") + QString::number(k + 1);
        auto* group = new QGroupBox(page);
        group->setObjectName(QStringLiteral("grpCfgCursor") + QString::number(k + 1));
        grpCfgCursor[size_t(k)] = group;
        TCursorControls& c = FCursors[size_t(k)];
        c.cbxFormatX = ComboBox(n + QStringLiteral("FormatX"), true, group);
        c.cbxFormatY = ComboBox(n + QStringLiteral("FormatY"), true, group);
        c.cbxAxis = ComboBox(n + QStringLiteral("Axis"), false, group);
        c.cbxWidth = ComboBox(n + QStringLiteral("Width"), false, group);
        c.cbxFormatX->addItems(zeb::ValueFormatList());
        c.cbxFormatY->addItems(zeb::ValueFormatList());
        c.cbxWidth->addItems(LineWidths());
        for (QComboBox* box : {c.cbxFormatX, c.cbxFormatY, c.cbxAxis, c.cbxWidth})
            box->setMinimumWidth(140);
        c.lblFormatX = Label(c.cbxFormatX, group);
        c.lblFormatY = Label(c.cbxFormatY, group);
        c.lblAxis = Label(c.cbxAxis, group);
        c.lblWidth = Label(c.cbxWidth, group);
        auto* form = new QFormLayout(group);
        form->addRow(c.lblFormatX, c.cbxFormatX);
        form->addRow(c.lblFormatY, c.cbxFormatY);
        form->addRow(c.lblAxis, c.cbxAxis);
        form->addRow(c.lblWidth, c.cbxWidth);
        h->addWidget(group);
    }
    h->addStretch(1);
    v->addLayout(h);
    lblCfgCursorNote = new QLabel(page);
    lblCfgCursorNote->setObjectName(QStringLiteral("lblCfgCursorNote"));
    lblCfgCursorNote->setWordWrap(true);
    v->addWidget(lblCfgCursorNote);
    v->addStretch(1);
    return page;
}

void TCfgPage::ApplyLanguage() {
    static constexpr TTextId kTabs[tabCount] = {TTextId::CfgGeneral,    TTextId::CfgCurves,
                                                TTextId::CfgAxisBottom, TTextId::CfgAxisLeft,
                                                TTextId::CfgAxisRight,  TTextId::CfgCursor};
    for (int t = 0; t < tabCount; ++t)
        setTabText(t, Txt(kTabs[t]));

    lblCfgTitle->setText(Txt(TTextId::CfgTitle));
    lblCfgFoot->setText(Txt(TTextId::CfgFooter));
    chkCfgShowTime->setText(Txt(TTextId::CfgShowStartTime));
    chkCfgShowName->setText(Txt(TTextId::CfgShowZebName));
    static_cast<QGroupBox*>(grpCfgFonts)->setTitle(Txt(TTextId::CfgFonts));
    lblCfgFontName->setText(Txt(TTextId::CfgFontName));
    lblCfgFontSize->setText(Txt(TTextId::CfgFontSize));
    lblCfgFontStyle->setText(Txt(TTextId::CfgFontStyle));
    static constexpr TTextId kFonts[] = {TTextId::CfgFontTitle, TTextId::CfgFontLegend, TTextId::CfgFontAxes,
                                         TTextId::CfgFontText};
    for (size_t i = 0; i < FFonts.size(); ++i) {
        FFonts[i].lblFont->setText(Txt(kFonts[i]));
        SetItems(FFonts[i].cbxStyle, TxtList(TTextId::CfgFontStyles));
    }

    FCurveModel->RetranslateHeader();
    FitCurveColumns();

    for (TAxisControls& a : FAxes) {
        a.lblName->setText(Txt(TTextId::CfgName));
        a.chkAuto->setText(Txt(TTextId::CfgAutomatic));
        a.lblMin->setText(Txt(TTextId::CfgMinimum));
        a.lblMax->setText(Txt(TTextId::CfgMaximum));
        a.lblInc->setText(Txt(TTextId::CfgIncrement));
        if (a.lblFormat) a.lblFormat->setText(Txt(TTextId::CfgFormat));
    }
    for (QToolButton* b : {abtCfgAxisBottomMin, abtCfgAxisBottomMax, abtCfgAxisBottomInc})
        b->setToolTip(Txt(TTextId::CfgPickTime));
    lblCfgAxisBottomSeconds->setText(Txt(TTextId::CfgAxisBottomSeconds));
    lblCfgAxisBottomType->setText(Txt(TTextId::CfgAxisType));
    SetItems(cbxCfgAxisBottomType, TxtList(TTextId::CfgAxisTypes));
    lblCfgAxisBottomFormat1->setText(Txt(TTextId::CfgFormatRelative));
    lblCfgAxisBottomFormat2->setText(Txt(TTextId::CfgFormatAbsolute));

    static constexpr TTextId kCursors[] = {TTextId::Crosshairs1, TTextId::Crosshairs2};
    for (size_t k = 0; k < FCursors.size(); ++k) {
        TCursorControls& c = FCursors[k];
        static_cast<QGroupBox*>(grpCfgCursor[k])->setTitle(Txt(kCursors[k]));
        c.lblFormatX->setText(Txt(TTextId::CfgFormatX));
        c.lblFormatY->setText(Txt(TTextId::CfgFormatY));
        c.lblAxis->setText(Txt(TTextId::CfgYAxis));
        c.lblWidth->setText(Txt(TTextId::CfgLineWidth));
        SetItems(c.cbxAxis, TxtList(TTextId::CfgCursorAxes));
    }
    lblCfgCursorNote->setText(Txt(TTextId::MsgCrosshairNote));
}

// ---------------------------------------------------------------------- visit

void TCfgPage::Enter(int tab) {
    if (!FEntered) {
        // The chart may have moved since the template was last applied (zoom, scroll, grid);
        // the page shows and edits what the chart shows.
        FDb->Ini_Store();
        MarkCurves();
        FEntered = true;
    } else if (!CanLeaveTab()) {
        return;
    }
    FillAll();
    if (tab >= 0 && tab < tabCount && tab != currentIndex()) {
        const QSignalBlocker block(this);
        setCurrentIndex(tab);
    }
    FShownTab = currentIndex();
    Q_EMIT modified();
}

bool TCfgPage::Leave() {
    if (!CanLeaveTab()) return false;
    FDb->Ini_Update();
    FEntered = false;
    // What is applied now is what an undo returns to.
    MarkCurves();
    return true;
}

bool TCfgPage::CanLeaveTab() {
    if (TValidateEdit* bad = LeaveTab()) {
        Focus(bad);
        return false;
    }
    return true;
}

TValidateEdit* TCfgPage::LeaveTab() {
    if (FShownTab == tabCurve) EndEdit();
    if (TValidateEdit* bad = WriteTab(FShownTab, true)) return bad;
    if (FShownTab != tabCurve) Q_EMIT modified(); // curve cells say so themselves
    return nullptr;
}

void TCfgPage::Focus(TValidateEdit* edit) {
    edit->setFocus(Qt::OtherFocusReason);
    edit->selectAll();
}

void TCfgPage::Undo() {
    EndEdit();
    const int tab = currentIndex();
    // The other tabs are in the template already: each was written when it was left. This one
    // goes back to what the chart shows; the curves, which have no live copy, to what they
    // were when the visit began.
    FDb->Ini_Store(tab);
    if (tab == tabCurve) RestoreCurves();
    FShownTab = tab;
    FillAll();
    Q_EMIT modified();
}

void TCfgPage::EndEdit() {
    for (TCfgCellDelegate* cell : FCells)
        cell->EndEdit();
}

void TCfgPage::OnCurrentChanged(int index) {
    if (FSwitching || index == FShownTab) return;
    if (TValidateEdit* bad = LeaveTab()) {
        // The tab bar has moved already: it goes back before the edit can take the focus.
        FSwitching = true;
        setCurrentIndex(FShownTab);
        FSwitching = false;
        Focus(bad);
        return;
    }
    FShownTab = index;
    FillTab(index);
}

// ---------------------------------------------------------------------- fill and write

double TCfgPage::TimeOrigin() const {
    double min = 0.0, max = 0.0;
    FDb->GetXMinXMax(min, max, false);
    return min;
}

void TCfgPage::SetFloat(TValidateEdit* edit, double value) {
    edit->SetFloat(value);
    edit->setProperty(kFilledProperty, edit->text());
    edit->IsValid();
}

bool TCfgPage::TakeFloat(TValidateEdit* edit, double& value, double offset) const {
    if (edit->text() == edit->property(kFilledProperty).toString()) return false;
    const std::optional<double> v = edit->AsFloat();
    if (!v) return false;
    value = *v + offset;
    return true;
}

void TCfgPage::FillAll() {
    for (int t = 0; t < tabCount; ++t)
        FillTab(t);
}

void TCfgPage::FillTab(int tab) {
    TMseSettings& s = FDb->Settings();
    switch (tab) {
    case tabGeneral: {
        edtCfgTitle->setText(s.Title.Value);
        edtCfgFoot->setText(s.Foot.Value);
        chkCfgShowTime->setChecked(s.ShowTime.Value);
        chkCfgShowName->setChecked(s.ShowName.Value);
        const TMseFont* fonts[] = {&s.FontTitle, &s.FontLegend, &s.FontAxes, &s.FontText};
        for (size_t i = 0; i < FFonts.size(); ++i) {
            TFontControls& f = FFonts[i];
            const QSignalBlocker block(f.ofcFont);
            // A family this machine lacks is kept by name rather than replaced by a look-alike.
            f.ofcFont->setCurrentFont(QFont(fonts[i]->Name.Value));
            f.ofcFont->setEditText(fonts[i]->Name.Value);
            f.osfSize->setValue(fonts[i]->Size.Value);
            SelectIndex(f.cbxStyle, fonts[i]->Style.Value);
            MarkShown({f.ofcFont, f.osfSize, f.cbxStyle});
        }
        MarkShown({edtCfgTitle, edtCfgFoot, chkCfgShowTime, chkCfgShowName});
        break;
    }
    case tabCurve:
        FCurveModel->Reload();
        ShowExtView();
        break;
    case tabAxisBottom:
    case tabAxisLeft:
    case tabAxisRight: {
        const int axis = tab - tabAxisBottom;
        const TMseAxis& c = FDb->Cfg_Axis_Get(axis);
        TAxisControls& a = FAxes[size_t(axis)];
        a.edtName->setText(c.Name.Value);
        a.chkAuto->setChecked(c.Auto.Value);
        if (axis == axBottom) {
            // Times are shown in seconds from the first measurement, to the millisecond.
            FOrigin = TimeOrigin();
            auto ms = [](double v) { return std::round(v * 1000.0) / 1000.0; };
            SetFloat(a.vedMin, ms(c.Min.Value - FOrigin));
            SetFloat(a.vedMax, ms(c.Max.Value - FOrigin));
            SetFloat(a.vedInc, ms(c.Inc.Value));
            SelectIndex(cbxCfgAxisBottomType, c.XType.Value);
            const QString& f = c.Format.Value;
            const bool relative = ChartText::IsRelativePattern(f);
            const bool date = !relative && ChartText::IsDatePattern(f);
            SelectPattern(cbxCfgAxisBottomFormat1, relative ? f : QString(), ShownRelative(f));
            SelectPattern(cbxCfgAxisBottomFormat2, date ? f : QString(), f);
            OnAxisBottomTypeChanged();
            MarkShown({cbxCfgAxisBottomType, cbxCfgAxisBottomFormat1, cbxCfgAxisBottomFormat2});
        } else {
            // An automatic range is shown to a sensible number of digits; the exact value stays
            // in the store as long as the field is not edited.
            double min = c.Min.Value, max = c.Max.Value;
            const double span = max - min;
            if (c.Auto.Value && span > 0 && std::isfinite(span)) {
                const double step = std::pow(10.0, std::floor(std::log10(span)) - 5);
                min = std::round(min / step) * step;
                max = std::round(max / step) * step;
            }
            SetFloat(a.vedMin, min);
            SetFloat(a.vedMax, max);
            SetFloat(a.vedInc, c.Inc.Value);
            SelectText(a.cbxFormat, c.Format.Value);
            MarkShown({a.cbxFormat});
        }
        MarkShown({a.edtName, a.chkAuto});
        break;
    }
    case tabCursor:
        for (int k = 0; k < 2; ++k) {
            const TMseCursor& m = FDb->Cfg_Cursor_Get(k);
            TCursorControls& c = FCursors[size_t(k)];
            SelectText(c.cbxFormatX, m.XFormat.Value);
            SelectText(c.cbxFormatY, m.YFormat.Value);
            SelectIndex(c.cbxAxis, m.Axis.Value);
            // The cursor keeps a width index: 0 is shown "1" and draws a 2-pixel pen.
            SelectIndex(c.cbxWidth, m.Width.Value);
            MarkShown({c.cbxFormatX, c.cbxFormatY, c.cbxAxis, c.cbxWidth});
        }
        break;
    default:
        break;
    }
}

TValidateEdit* TCfgPage::WriteTab(int tab, bool strict) {
    TMseSettings& s = FDb->Settings();
    switch (tab) {
    case tabGeneral: {
        if (Edited(edtCfgTitle)) s.Title.Set(edtCfgTitle->text());
        if (Edited(chkCfgShowName)) s.ShowName.Set(chkCfgShowName->isChecked());
        if (Edited(edtCfgFoot)) s.Foot.Set(edtCfgFoot->text());
        if (Edited(chkCfgShowTime)) s.ShowTime.Set(chkCfgShowTime->isChecked());
        MarkShown({edtCfgTitle, edtCfgFoot, chkCfgShowTime, chkCfgShowName});
        TMseFont* fonts[] = {&s.FontTitle, &s.FontLegend, &s.FontAxes, &s.FontText};
        for (size_t i = 0; i < FFonts.size(); ++i) {
            const TFontControls& f = FFonts[i];
            if (Edited(f.ofcFont)) fonts[i]->Name.Set(TypedText(f.ofcFont, fonts[i]->Name.Value));
            if (Edited(f.osfSize)) fonts[i]->Size.Set(f.osfSize->value());
            if (Edited(f.cbxStyle) && f.cbxStyle->currentIndex() >= 0)
                fonts[i]->Style.Set(f.cbxStyle->currentIndex());
            MarkShown({f.ofcFont, f.osfSize, f.cbxStyle});
        }
        break;
    }
    case tabCurve:
        break; // written cell by cell
    case tabAxisBottom:
    case tabAxisLeft:
    case tabAxisRight: {
        const int axis = tab - tabAxisBottom;
        TAxisControls& a = FAxes[size_t(axis)];
        // Every edit is checked, so that each wrong one shows it; the first is answered.
        TValidateEdit* bad = nullptr;
        for (TValidateEdit* e : {a.vedMin, a.vedMax, a.vedInc})
            if (!e->IsValid() && !bad) bad = e;
        if (bad && strict) return bad;
        TMseAxis& c = FDb->Cfg_Axis_Get(axis);
        if (Edited(a.edtName)) c.Name.Set(a.edtName->text());
        if (Edited(a.chkAuto)) c.Auto.Set(a.chkAuto->isChecked());
        MarkShown({a.edtName, a.chkAuto});
        const double offset = axis == axBottom ? FOrigin : 0.0;
        double v = 0.0;
        if (TakeFloat(a.vedMin, v, offset)) c.Min.Set(v);
        if (TakeFloat(a.vedMax, v, offset)) c.Max.Set(v);
        if (TakeFloat(a.vedInc, v, 0.0)) c.Inc.Set(v);
        if (axis == axBottom) {
            const int type = cbxCfgAxisBottomType->currentIndex();
            const bool typeEdited = Edited(cbxCfgAxisBottomType);
            if (typeEdited && type >= 0) c.XType.Set(type);
            // Each type reads its own list; the seconds axis has no pattern to keep.
            if (type == 1 && (typeEdited || Edited(cbxCfgAxisBottomFormat1)))
                c.Format.Set(cbxCfgAxisBottomFormat1->currentData().toString());
            if (type == 2 && (typeEdited || Edited(cbxCfgAxisBottomFormat2)))
                c.Format.Set(cbxCfgAxisBottomFormat2->currentData().toString());
            MarkShown({cbxCfgAxisBottomType, cbxCfgAxisBottomFormat1, cbxCfgAxisBottomFormat2});
        } else {
            if (Edited(a.cbxFormat)) c.Format.Set(TypedText(a.cbxFormat, c.Format.Value));
            MarkShown({a.cbxFormat});
        }
        // What is written now is what the edits stand for.
        for (TValidateEdit* e : {a.vedMin, a.vedMax, a.vedInc})
            if (e->AsFloat()) e->setProperty(kFilledProperty, e->text());
        break;
    }
    case tabCursor:
        for (int k = 0; k < 2; ++k) {
            TMseCursor& m = FDb->Cfg_Cursor_Get(k);
            const TCursorControls& c = FCursors[size_t(k)];
            if (Edited(c.cbxFormatX)) m.XFormat.Set(TypedText(c.cbxFormatX, m.XFormat.Value));
            if (Edited(c.cbxFormatY)) m.YFormat.Set(TypedText(c.cbxFormatY, m.YFormat.Value));
            if (Edited(c.cbxAxis) && c.cbxAxis->currentIndex() >= 0) m.Axis.Set(c.cbxAxis->currentIndex());
            if (Edited(c.cbxWidth) && c.cbxWidth->currentIndex() >= 0) m.Width.Set(c.cbxWidth->currentIndex());
            MarkShown({c.cbxFormatX, c.cbxFormatY, c.cbxAxis, c.cbxWidth});
        }
        break;
    default:
        break;
    }
    return nullptr;
}

void TCfgPage::MarkCurves() {
    FCurveMarks.clear();
    for (int i = 0; i < FDb->Curve_Count(); ++i) {
        const TMseSettingsCurve& c = FDb->Cfg_Curve_Get(i);
        FCurveMarks.push_back({c.Title.Value, c.Title.IsSet, c.Axis.Value, c.Color.Value, c.Width.Value,
                               c.Type.Value, c.Format.Value});
    }
}

void TCfgPage::RestoreCurves() {
    const int n = std::min(FDb->Curve_Count(), int(FCurveMarks.size()));
    for (int i = 0; i < n; ++i) {
        const TCurveMark& m = FCurveMarks[size_t(i)];
        TMseSettingsCurve& c = FDb->Cfg_Curve_Get(i);
        if (m.TitleSet)
            c.Title.Set(m.Title);
        else
            c.Title.Reset(m.Title);
        c.Axis.Set(m.Axis);
        c.Color.Set(m.Color);
        c.Width.Set(m.Width);
        c.Type.Set(m.Type);
        c.Format.Set(m.Format);
    }
}

void TCfgPage::ShowExtView() {
    // The serial numbers tell the loggers apart when the curves come from more than one.
    const bool ext = FDb->ExtView() > 0;
    otbCurveCfg->setColumnHidden(colSerial, !ext);
    FitCurveColumns();
}

void TCfgPage::FitCurveColumns() {
    static constexpr int kWidths[colCount] = {74, 85, 185, 86, 86, 86, 86, 126};
    const bool ext = FDb->ExtView() > 0;
    const QHeaderView* header = otbCurveCfg->horizontalHeader();
    for (int c = 0; c < colCount; ++c) {
        const int designed = c == colDescription && ext ? 100 : kWidths[c];
        otbCurveCfg->setColumnWidth(c, std::max(designed, header->sectionSizeHint(c)));
    }
}

// ---------------------------------------------------------------------- time axis

void TCfgPage::OnAxisBottomTypeChanged() {
    const int type = cbxCfgAxisBottomType->currentIndex();
    cbxCfgAxisBottomFormat1->setEnabled(type == 1);
    cbxCfgAxisBottomFormat2->setEnabled(type == 2);
}

void TCfgPage::OnPickTime(TValidateEdit* edit, QToolButton* button, bool interval) {
    double seconds = edit->AsFloat().value_or(0.0);
    const QPoint at = button->mapToGlobal(QPoint(0, button->height()));
    bool ok = false;
    if (interval)
        ok = TDateTimeInput::ExecuteInterval(at, seconds, this);
    else if (cbxCfgAxisBottomType->currentIndex() == 2)
        ok = TDateTimeInput::ExecuteDate(at, FOrigin / zeb::kSecondsPerDay, seconds, this);
    else
        ok = TDateTimeInput::ExecuteTime(at, seconds, this);
    if (!ok) return;
    edit->SetFloat(seconds);
    edit->IsValid();
}

void TCfgPage::btnCfgAxisBottomHelpClick() {
    zeb::TZebDlg::ShowMsg(Txt(TTextId::MsgTimeAxisNote), zeb::TMsgDlgType::Information);
}
