#include "ui/WheelSideways.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QWheelEvent>

namespace {

class TShiftWheelFilter : public QObject {
public:
    explicit TShiftWheelFilter(QObject* parent) : QObject(parent) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Wheel) return false;
        const auto* wheel = static_cast<const QWheelEvent*>(event);
        const QPoint delta = wheel->angleDelta();
        if (!(wheel->modifiers() & Qt::ShiftModifier) || delta.x() != 0 || delta.y() == 0) return false;
        // The same turn as a sideways one without Shift: the area hands it to its horizontal bar.
        QWheelEvent sideways(wheel->position(), wheel->globalPosition(), QPoint(wheel->pixelDelta().y(), 0),
                             QPoint(delta.y(), 0), wheel->buttons(), wheel->modifiers() & ~Qt::ShiftModifier,
                             wheel->phase(), wheel->inverted(), wheel->source());
        QCoreApplication::sendEvent(watched, &sideways);
        return true;
    }
};

} // namespace

void ScrollSidewaysWithShift(QAbstractScrollArea* area) {
    area->viewport()->installEventFilter(new TShiftWheelFilter(area));
}
