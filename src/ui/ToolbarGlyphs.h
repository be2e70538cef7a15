#pragma once
// The toolbar's glyphs, drawn so they stay sharp at any scale and need no resources.

#include <QIcon>

enum class TGlyph {
    GridBottom,
    GridLeft,
    GridRight,
    AxisBottom,
    AxisLeft,
    AxisRight,
    Cursor1,
    Cursor2,
    Scale,
    Undo,
    ViewGraph,
    ViewTable,
    ViewCfg,
    TableGotoTMin,
    TableGotoTime,
    TextModify,
    TextInsert,
    Print
};

QIcon Glyph(TGlyph g);
