#include "ui/ValidateEdit.h"

#include "data/Formats.h"

#include <QPalette>

#include <cmath>

namespace {

// A pale red that keeps black text readable, and the window system's own field colour.
const QColor kDefaultError(0xFF, 0xC8, 0xC8);

} // namespace

TValidateEdit::TValidateEdit(QWidget* parent) : TValidateEdit(vmString, parent) {}

TValidateEdit::TValidateEdit(TValidateMode mode, QWidget* parent)
    : QLineEdit(parent), FMode(mode), FColorOk(palette().color(QPalette::Base)), FColorError(kDefaultError) {
    // Once marked wrong, the mark goes as soon as the text is mended, not only at the next
    // check by the owner; a text the hook would rewrite is left alone while the user types.
    connect(this, &QLineEdit::textChanged, this, [this] {
        if (FShowsError) Check(false);
    });
}

void TValidateEdit::SetMode(TValidateMode mode) {
    FMode = mode;
    if (FShowsError) Check(false);
}

void TValidateEdit::SetColorOk(const QColor& color) {
    FColorOk = color;
    ShowVerdict(!FShowsError);
}

void TValidateEdit::SetColorError(const QColor& color) {
    FColorError = color;
    ShowVerdict(!FShowsError);
}

std::optional<double> TValidateEdit::AsFloat() const {
    const std::optional<double> v = zeb::TryStrToFloat(text());
    if (!v || !std::isfinite(*v)) return std::nullopt;
    return v;
}

std::optional<int> TValidateEdit::AsInteger() const {
    bool ok = false;
    const int v = text().trimmed().toInt(&ok);
    if (!ok) return std::nullopt;
    return v;
}

void TValidateEdit::SetFloat(double value) {
    setText(zeb::FloatToStr(value));
}

bool TValidateEdit::IsValid() {
    return Check(true);
}

bool TValidateEdit::Check(bool mayChangeText) {
    bool valid = true;
    switch (FMode) {
    case vmString:
        break;
    case vmFloat:
        valid = AsFloat().has_value();
        break;
    case vmSigned:
        valid = AsInteger().has_value();
        break;
    case vmUnsigned: {
        const std::optional<int> v = AsInteger();
        valid = v && *v >= 0;
        break;
    }
    }
    if (FOnValidInput) {
        QString sText = text();
        bool bChange = false;
        FOnValidInput(this, sText, bChange, valid);
        if (mayChangeText && bChange && sText != text()) {
            // The mark must not be re-checked against the text in between.
            FShowsError = false;
            setText(sText);
        }
    }
    ShowVerdict(valid);
    return valid;
}

void TValidateEdit::ShowVerdict(bool valid) {
    FShowsError = !valid;
    QPalette p = palette();
    p.setColor(QPalette::Base, valid ? FColorOk : FColorError);
    setPalette(p);
}
