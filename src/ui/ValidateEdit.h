#pragma once
// TValidateEdit: a one-line edit that knows what kind of text it may hold (any text, a
// floating number, a signed or an unsigned integer) and shows by its colour whether the text
// it holds is acceptable. The verdict is given when the owner asks (IsValid), typically
// before it takes the value over; an owner may refine the verdict, or mend the text, through
// OnValidInput.

#include <QColor>
#include <QLineEdit>

#include <functional>
#include <optional>

enum TValidateMode : int { vmString = 0, vmFloat = 1, vmSigned = 2, vmUnsigned = 3 };

class TValidateEdit;

// Called with the edit's text and the verdict of the mode. Setting bChange hands the (changed)
// text back to the edit; bValid is the final verdict.
using TValidInputEvent =
    std::function<void(TValidateEdit* sender, QString& sText, bool& bChange, bool& bValid)>;

class TValidateEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit TValidateEdit(QWidget* parent = nullptr);
    explicit TValidateEdit(TValidateMode mode, QWidget* parent = nullptr);

    TValidateMode Mode() const { return FMode; }
    void SetMode(TValidateMode mode);

    const TValidInputEvent& OnValidInput() const { return FOnValidInput; }
    void SetOnValidInput(TValidInputEvent handler) { FOnValidInput = std::move(handler); }

    QColor ColorOk() const { return FColorOk; }
    QColor ColorError() const { return FColorError; }
    void SetColorOk(const QColor& color);
    void SetColorError(const QColor& color);

    // The verdict on the current text: by the mode, then by OnValidInput (which may replace the
    // text). The edit takes ColorOk or ColorError accordingly.
    bool IsValid();
    // Whether the edit shows the error colour, i.e. the last verdict was negative.
    bool ShowsError() const { return FShowsError; }
    // Back to the normal colour without a verdict, e.g. for a field emptied for new input.
    void ClearVerdict() { ShowVerdict(true); }

    // The text as a number under the program's number settings; none when it does not convert
    // (or is not finite).
    std::optional<double> AsFloat() const;
    // The text as a 32-bit integer; none when it does not convert.
    std::optional<int> AsInteger() const;
    // Shows a floating number in the program's own notation.
    void SetFloat(double value);

private:
    bool Check(bool mayChangeText);
    void ShowVerdict(bool valid);

    TValidateMode FMode = vmString;
    TValidInputEvent FOnValidInput;
    QColor FColorOk;
    QColor FColorError;
    bool FShowsError = false;
};
