#pragma once
// Shift with the wheel scrolls a grid sideways, as Alt does: Qt itself would page it up or down,
// which a grid of few rows and many columns never needs.

class QAbstractScrollArea;

void ScrollSidewaysWithShift(QAbstractScrollArea* area);
