#pragma once
// The chart's two crosshair cursors ("Crosshairs 1" dashed, "Crosshairs 2" dash-dot-dot) and
// the six read-outs below the chart: X1, Y1, X2, Y2, X2-X1, Y2-Y1. Each cursor is bound to
// the first curve of its value axis; dragged with the mouse it follows that curve's samples.
// While a zoom rectangle is drawn the read-outs show the rectangle instead.

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QString>

#include <array>

class QCPItemTracer;
class QCPAxis;
class QCPLayer;
class QCustomPlot;
class QLabel;
class TDataBase;

class TCrossHair : public QObject {
    Q_OBJECT
public:
    TCrossHair(TDataBase* db, QCustomPlot* chart, const std::array<QLabel*, 6>& labels = {},
               QObject* parent = nullptr);

    void SetLabels(const std::array<QLabel*, 6>& labels);

    // which 0 or 1; axis 0 left, 1 right. An axis without a curve switches the cursor off;
    // otherwise it is bound to the axis's first curve and placed at one (cursor 1) or two
    // (cursor 2) thirds of the ranges.
    void SetCursor(int which, int axis);
    // The left (0) or right (1) axis has a curve.
    bool IsActive(int axis) const;
    // The axis of a cursor, -1 when it is off or for any other argument.
    int GetActive(int which) const;
    // Width index 0..9 of the settings; the pen is index + 2 wide.
    int GetWidth(int which) const;
    void SetWidth(int which, int index);
    // Grey cursors for printing, black otherwise.
    void SetCursorPrintColor(bool on);
    // Hidden from drawings that have no use for them (the report), whatever their state.
    void SetHidden(bool hidden);
    // Either cursor is hit at the pixel.
    bool IsClicked(int x, int y) const;
    // The cursor hit at the pixel, -1 for none.
    int CursorAt(int x, int y) const;
    void Refresh();
    void Repaint();
    // The zoom rectangle's read-out from its start pixel; off ends it.
    void SetZoomRect(bool on, int x = 0, int y = 0);
    void DispZoomRect(int x, int y);

    // After the chart was rebuilt: each cursor back onto its axis's first curve, or off.
    void Rebind();
    // Places a cursor at a time, on the sample of its curve nearest to it.
    void MoveTo(int which, double time);
    // Places a cursor exactly; the read-outs follow.
    void SetPosition(int which, double x, double y);

    double X(int which) const;
    double Y(int which) const;
    // The curve a cursor is bound to, -1 when off.
    int BoundCurve(int which) const;
    QString LabelText(int index) const { return FTexts[size_t(index)]; }
    QCPItemTracer* Tracer(int which) const { return FTracer[size_t(which & 1)]; }

Q_SIGNALS:
    void cursorChanged(int which);

private:
    void OnChange(int which);
    void SetText(int index, const QString& text);
    int FirstCurve(int axis) const;
    QCPAxis* ValueAxis(int axis) const;
    void ApplyPen(int which);

    TDataBase* FDb;
    QCustomPlot* FChart;
    QCPLayer* FLayer = nullptr;
    std::array<QPointer<QLabel>, 6> FLabels;
    std::array<QString, 6> FTexts;
    std::array<QCPItemTracer*, 2> FTracer{};
    std::array<int, 2> FAxis{-1, -1};
    std::array<int, 2> FCurve{-1, -1};
    std::array<double, 2> FWidth{2.0, 2.0};
    QColor FColor = Qt::black;
    bool FBusy = false;
    double FX1 = 0.0, FX2 = 0.0;
    // The zoom rectangle's start in values and the axis its y is read on (0 none).
    double FZoomX = 0.0, FZoomY = 0.0;
    int FZoomAxis = 0;
};
