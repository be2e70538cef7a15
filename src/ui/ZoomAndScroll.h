#pragma once
// Mouse zoom and pan of the chart, one level of undo, auto scale and per-axis fixing. The
// chart hands it its mouse events; QCustomPlot's own range interactions stay off.
//
// Left button: a rubber band (an inverting outline, red while under 10 pixels in either
// direction); on release the participating axes zoom to it. Right button: the axes follow
// the mouse. A fixed axis keeps its range through zoom, pan and auto scale.

#include <QColor>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>

#include <array>

class QCPAxis;
class QCustomPlot;
class QWidget;
class TCrossHair;

class TZoomAndScroll : public QObject {
    Q_OBJECT
public:
    enum TAxis : int { zaLeft = 0, zaBottom = 1, zaRight = 2, zaTop = 3, zaCount = 4 };
    enum TState : int { zsIdle = 0, zsZooming = 1, zsMoving = 2 };
    static constexpr int kMinBand = 10;

    TZoomAndScroll(TCrossHair* crossHair, QCustomPlot* chart, QObject* parent = nullptr);
    ~TZoomAndScroll() override;

    void MouseDown(Qt::MouseButton button, int x, int y);
    void MouseMove(int x, int y);
    // Left: true when axes were zoomed. Right: true when a pan moved an axis.
    bool MouseUp(Qt::MouseButton button, int x, int y);

    void ZoomRedo();
    bool IsZoomRedoPossible() const;
    void Autoscale(bool clearFixed);
    void ClearFixed();
    bool IsFixed() const;
    bool IsFixed(TAxis axis) const { return FFixed[axis]; }
    void SetFixed(TAxis axis, bool fixed) { FFixed[axis] = fixed; }
    // Automatic scaling of an axis: it follows the data.
    bool IsAuto(TAxis axis) const { return FAuto[axis]; }
    void SetAuto(TAxis axis, bool on) { FAuto[axis] = on; }
    // Scales every automatic axis to the data.
    void ApplyAuto();

    TState State() const { return FState; }
    bool IsBandDrawn() const { return FDrawn; }
    QRect Band() const { return QRect(FStart, FEnd).normalized(); }
    QColor BandColor() const;
    QCPAxis* Axis(TAxis axis) const;

Q_SIGNALS:
    // Axis ranges or automatic flags changed by the user.
    void rangesChanged();

private:
    struct TUndo {
        bool Valid = false;
        bool Auto = false;
        double Min = 0.0, Max = 0.0;
    };
    bool Takes(TAxis axis) const;
    void Rescale(TAxis axis);
    void UpdateBand();

    TCrossHair* FCrossHair;
    QCustomPlot* FChart;
    QPointer<QWidget> FOverlay;
    TState FState = zsIdle;
    std::array<bool, zaCount> FFixed{};
    std::array<bool, zaCount> FAuto{true, true, true, true};
    bool FMoved = false;
    bool FDrawn = false;
    QPoint FStart, FEnd;
    std::array<double, zaCount> FScale{};
    std::array<TUndo, zaCount> FUndo{};
};
