#pragma once
// TfrmViewCalc: the calculation view. For every active curve its minimum, maximum, average
// and standard deviation over the time span the chart shows; the additional flow channel's
// texts are taken from its reference curve's figures.

#include "ui/ViewBase.h"

class TfrmViewCalc : public TfrmViewBase {
    Q_OBJECT
public:
    explicit TfrmViewCalc(TDataBase* db, QWidget* parent = nullptr);

    void ReCalc() override;
    bool NeedsRecalc() override;
    void LoadLanguageRes() override;
    // Per active curve its span text, a tab and its standard-deviation text; curves apart by
    // a tab.
    QString ClipText() const { return FClipText; }

private:
    QString FClipText;
};
