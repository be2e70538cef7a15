#pragma once
// TfrmViewLimit: the limit view. For every active curve with limits the time spent outside
// and inside them over the time span the chart shows.

#include "ui/ViewBase.h"

class TfrmViewLimit : public TfrmViewBase {
    Q_OBJECT
public:
    explicit TfrmViewLimit(TDataBase* db, QWidget* parent = nullptr);

    void ReCalc() override;
    void LoadLanguageRes() override;
};
