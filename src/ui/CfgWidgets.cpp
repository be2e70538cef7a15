#include "ui/CfgWidgets.h"

#include "data/Formats.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontComboBox>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <algorithm>

namespace cfg {


// The store keeps colours as 0x00BBGGRR.
QColor ColorOf(int bgr) {
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}
int BgrOf(const QColor& c) {
    return c.red() | (c.green() << 8) | (c.blue() << 16);
}

QStringList LineWidths() {
    QStringList out;
    for (int w = 1; w <= kMaxLineWidth; ++w)
        out << QString::number(w);
    return out;
}

// The number formats offered for a curve: "#.#" first, then the other value formats.
QStringList CurveFormats() {
    QStringList out{QStringLiteral("#.#")};
    for (const QString& f : zeb::ValueFormatList())
        if (!out.contains(f)) out << f;
    return out;
}

// Relative time patterns of the time axis, as stored ('.' for the fraction).
QStringList RelativeFormats() {
    return {QStringLiteral("0+00:00:00.000"), QStringLiteral("000:00:00.000"), QStringLiteral("000:00.000"),
            QStringLiteral("0+00:00:00"),     QStringLiteral("000:00:00"),     QStringLiteral("000:00"),
            QStringLiteral("0+00:00"),        QStringLiteral("0+00")};
}

QStringList AbsoluteFormats() {
    return {zeb::TimeFormat(zeb::TTimeKind::DateTime), QStringLiteral("dd.mm.yy hh:mm:ss"),
            QStringLiteral("dd.mm.yyyy hh:mm:ss.zzz"), QStringLiteral("dd.mm hh:mm"),
            QStringLiteral("dd hh:mm:ss")};
}

// A relative pattern as the user reads it: with the decimal separator of the settings.
QString ShownRelative(const QString& pattern) {
    QString t = pattern;
    return t.replace(QLatin1Char('.'), zeb::FormatSettings().DecimalSeparator);
}

// Replaces a list's items and keeps its selection where it can.
void SetItems(QComboBox* box, const QStringList& items) {
    const QSignalBlocker block(box);
    const int index = box->currentIndex();
    const QString text = box->currentText();
    box->clear();
    box->addItems(items);
    if (box->isEditable())
        box->setEditText(text);
    else
        box->setCurrentIndex(std::clamp(index, 0, int(items.size()) - 1));
}

void SelectIndex(QComboBox* box, int index) {
    const QSignalBlocker block(box);
    box->setCurrentIndex(std::clamp(index, 0, box->count() - 1));
}

// An editable list shows the stored text whether it is one of the items or not.
void SelectText(QComboBox* box, const QString& text) {
    const QSignalBlocker block(box);
    const int at = box->findText(text);
    if (at >= 0) box->setCurrentIndex(at);
    box->setEditText(text);
}

// A list whose items carry the stored pattern; a pattern not offered is added, so that
// nothing stored is lost by passing through the page.
void SelectPattern(QComboBox* box, const QString& pattern, const QString& shown) {
    const QSignalBlocker block(box);
    int at = box->findData(pattern);
    if (at < 0 && !pattern.isEmpty()) {
        box->addItem(shown, pattern);
        at = box->count() - 1;
    }
    box->setCurrentIndex(std::max(at, 0));
}

QVariant StateOf(const QWidget* w) {
    if (const auto* e = qobject_cast<const QLineEdit*>(w)) return e->text();
    if (const auto* c = qobject_cast<const QCheckBox*>(w)) return c->isChecked();
    if (const auto* n = qobject_cast<const QSpinBox*>(w)) return n->value();
    if (const auto* b = qobject_cast<const QComboBox*>(w))
        return QStringList{QString::number(b->currentIndex()), b->currentText()};
    return {};
}

void MarkShown(std::initializer_list<QWidget*> controls) {
    for (QWidget* w : controls)
        w->setProperty(kShownProperty, StateOf(w));
}

bool Edited(const QWidget* w) {
    return StateOf(w) != w->property(kShownProperty);
}

QString TypedText(const QComboBox* box, const QString& fallback) {
    const QString t = box->currentText().trimmed();
    return t.isEmpty() ? fallback : t;
}

QLineEdit* LineEdit(const QString& name, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    return e;
}

QComboBox* ComboBox(const QString& name, bool editable, QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->setEditable(editable);
    if (editable) c->setInsertPolicy(QComboBox::NoInsert);
    return c;
}

QLabel* Label(QWidget* buddy, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setBuddy(buddy);
    return l;
}

QToolButton* DotsButton(const QString& name, QWidget* parent) {
    auto* b = new QToolButton(parent);
    b->setObjectName(name);
    b->setText(QStringLiteral("..."));
    b->setFocusPolicy(Qt::NoFocus);
    return b;
}


} // namespace cfg
