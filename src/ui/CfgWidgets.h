#pragma once
// The small pieces the configuration page builds its tabs from: list contents, selecting in a
// combo box, the "what was shown" marks that tell an edited control, and the controls made
// with their names.

#include <QColor>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <initializer_list>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;
class QWidget;

namespace cfg {

inline constexpr int kMaxLineWidth = 10;

inline constexpr int kCurveTypes = 2;

inline const char* const kFilledProperty = "zebFilledText";

// What a control showed when it was filled: only a change from that is an edit, so a visit
// never rewrites a stored value the control cannot show (a font of 120 points, a cursor width
// index 0 shown as "1").
inline const char* const kShownProperty = "zebShown";

// The store keeps colours as 0x00BBGGRR.
QColor ColorOf(int bgr);

int BgrOf(const QColor& c);

QStringList LineWidths();

// The number formats offered for a curve: "#.#" first, then the other value formats.
QStringList CurveFormats();

// Relative time patterns of the time axis, as stored ('.' for the fraction).
QStringList RelativeFormats();

QStringList AbsoluteFormats();

// A relative pattern as the user reads it: with the decimal separator of the settings.
QString ShownRelative(const QString& pattern);

// Replaces a list's items and keeps its selection where it can.
void SetItems(QComboBox* box, const QStringList& items);

void SelectIndex(QComboBox* box, int index);

// An editable list shows the stored text whether it is one of the items or not.
void SelectText(QComboBox* box, const QString& text);

// A list whose items carry the stored pattern; a pattern not offered is added, so that
// nothing stored is lost by passing through the page.
void SelectPattern(QComboBox* box, const QString& pattern, const QString& shown);

QVariant StateOf(const QWidget* w);

void MarkShown(std::initializer_list<QWidget*> controls);

bool Edited(const QWidget* w);

QString TypedText(const QComboBox* box, const QString& fallback);

QLineEdit* LineEdit(const QString& name, QWidget* parent);

QComboBox* ComboBox(const QString& name, bool editable, QWidget* parent);

QLabel* Label(QWidget* buddy, QWidget* parent);

QToolButton* DotsButton(const QString& name, QWidget* parent);

} // namespace cfg
