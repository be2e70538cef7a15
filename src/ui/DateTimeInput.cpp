#include "ui/DateTimeInput.h"

#include "config/Texts.h"
#include "data/Formats.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTimeEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

using zeb::TTextId;
using zeb::Txt;

namespace {

constexpr qint64 kMsPerDay = 86'400'000;
constexpr double kSecondsPerDay = zeb::kSecondsPerDay;

QDate Epoch() {
    return {2000, 1, 1};
}

double RoundMs(double seconds) {
    return std::round(seconds * 1000.0) / 1000.0;
}

// A whole number as the edits take it: digits with an optional sign, blanks around allowed.
std::optional<int> ToInt(const QString& text) {
    bool ok = false;
    const int v = text.trimmed().toInt(&ok);
    return ok ? std::optional<int>(v) : std::nullopt;
}

// Seconds of the day of a picker; the pickers show whole seconds.
int SecondsOf(const QTime& t) {
    return t.hour() * 3600 + t.minute() * 60 + t.second();
}

QTime TimeOfSeconds(qint64 secondsOfDay) {
    return QTime(0, 0).addSecs(int(secondsOfDay));
}

// The date pattern of the program's settings in the picker's notation: '/' there stands for
// the date separator.
QString PickerDateFormat() {
    QString f = zeb::FormatSettings().ShortDateFormat;
    if (f.isEmpty()) f = QStringLiteral("yyyy-MM-dd");
    return f.replace(QLatin1Char('/'), zeb::FormatSettings().DateSeparator);
}

QString PickerTimeFormat() {
    const QChar sep =
        zeb::FormatSettings().TimeSeparator.isNull() ? QLatin1Char(':') : zeb::FormatSettings().TimeSeparator;
    return QStringLiteral("HH") + sep + QStringLiteral("mm") + sep + QStringLiteral("ss");
}

QLabel* FixedLabel(const QString& text, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    return l;
}

QLineEdit* MSecEdit(const QString& name, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setAlignment(Qt::AlignRight);
    e->setFixedWidth(e->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 12);
    return e;
}

QFrame* Panel(const QString& name, QWidget* parent) {
    auto* p = new QFrame(parent);
    p->setObjectName(name);
    return p;
}

} // namespace

TDateTimeInput::TDateTimeInput(TInputMode mode, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), FMode(mode) {
    setObjectName(QStringLiteral("TDateTimeInput"));
    setWindowTitle(Txt(TTextId::GoToCaption));

    // Without a window frame the pop-up draws its own edge.
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* frame = new QFrame(this);
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setFrameShadow(QFrame::Raised);
    outer->addWidget(frame);
    auto* v = new QVBoxLayout(frame);
    v->setContentsMargins(8, 8, 8, 8);
    v->setSpacing(8);

    BuildDatePanel();
    BuildTimePanel();
    BuildIntervalPanel();
    for (QFrame* p : {panDate, panTime, panInterval}) {
        p->setParent(frame);
        v->addWidget(p);
    }
    panDate->setVisible(mode == imDate);
    panTime->setVisible(mode == imTime);
    panInterval->setVisible(mode == imInterval);

    panCtrl = Panel(QStringLiteral("panCtrl"), frame);
    auto* h = new QHBoxLayout(panCtrl);
    h->setContentsMargins(0, 0, 0, 0);
    h->addStretch(1);
    btnOK = new QPushButton(Txt(TTextId::DateTimeOk), panCtrl);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setDefault(true);
    btnCancel = new QPushButton(Txt(TTextId::DateTimeCancel), panCtrl);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    h->addWidget(btnOK);
    h->addWidget(btnCancel);
    v->addWidget(panCtrl);

    connect(btnOK, &QPushButton::clicked, this, &TDateTimeInput::btnOKClick);
    connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);

    SetValue(0.0);
}

void TDateTimeInput::BuildDatePanel() {
    panDate = Panel(QStringLiteral("panDate"), this);
    auto* h = new QHBoxLayout(panDate);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(4);
    dtpDate = new QDateEdit(panDate);
    dtpDate->setObjectName(QStringLiteral("dtpDate"));
    dtpDate->setCalendarPopup(true);
    dtpDate->setDisplayFormat(PickerDateFormat());
    dtpDateTime = new QTimeEdit(panDate);
    dtpDateTime->setObjectName(QStringLiteral("dtpDateTime"));
    dtpDateTime->setDisplayFormat(PickerTimeFormat());
    edtDateMSec = MSecEdit(QStringLiteral("edtDateMSec"), panDate);
    h->addWidget(dtpDate);
    h->addWidget(dtpDateTime);
    h->addWidget(FixedLabel(QStringLiteral("."), panDate));
    h->addWidget(edtDateMSec);
}

void TDateTimeInput::BuildTimePanel() {
    panTime = Panel(QStringLiteral("panTime"), this);
    auto* h = new QHBoxLayout(panTime);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(4);
    edtTimeDay = new QLineEdit(panTime);
    edtTimeDay->setObjectName(QStringLiteral("edtTimeDay"));
    edtTimeDay->setAlignment(Qt::AlignRight);
    edtTimeDay->setFixedWidth(edtTimeDay->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + 12);
    dtpTime = new QTimeEdit(panTime);
    dtpTime->setObjectName(QStringLiteral("dtpTime"));
    dtpTime->setDisplayFormat(PickerTimeFormat());
    edtTimeMSec = MSecEdit(QStringLiteral("edtTimeMSec"), panTime);
    h->addWidget(edtTimeDay);
    h->addWidget(FixedLabel(QStringLiteral(" + "), panTime));
    h->addWidget(dtpTime);
    h->addWidget(FixedLabel(QStringLiteral("."), panTime));
    h->addWidget(edtTimeMSec);
}

void TDateTimeInput::BuildIntervalPanel() {
    panInterval = Panel(QStringLiteral("panInterval"), this);
    auto* h = new QHBoxLayout(panInterval);
    h->setContentsMargins(0, 0, 0, 0);
    cbxInterval = new QComboBox(panInterval);
    cbxInterval->setObjectName(QStringLiteral("cbxInterval"));
    const QList<int> intervals = Intervals();
    const QStringList texts = Txt(TTextId::DateTimeIntervals).split(QLatin1Char(','));
    for (int i = 0; i < intervals.size(); ++i)
        cbxInterval->addItem(texts[i].trimmed(), intervals[i]);
    h->addWidget(cbxInterval, 1);
}

QList<int> TDateTimeInput::Intervals() {
    QList<int> out;
    for (const QString& item : Txt(TTextId::DateTimeIntervals).split(QLatin1Char(','))) {
        const QStringList hms = item.trimmed().split(QLatin1Char(':'));
        if (hms.size() != 3) continue;
        out << hms[0].toInt() * 3600 + hms[1].toInt() * 60 + hms[2].toInt();
    }
    return out;
}

QString TDateTimeInput::MSecText(int ms) {
    return QString::asprintf("%.3d", ms);
}

void TDateTimeInput::SetValue(double days) {
    FValue = days;
    switch (FMode) {
    case imDate: {
        const auto total = qint64(std::llround(days * double(kMsPerDay)));
        // Floor division, so that a moment before the epoch still has a time of day >= 0.
        qint64 day = total / kMsPerDay;
        qint64 ms = total % kMsPerDay;
        if (ms < 0) {
            ms += kMsPerDay;
            --day;
        }
        dtpDate->setDate(Epoch().addDays(day));
        dtpDateTime->setTime(TimeOfSeconds(ms / 1000));
        edtDateMSec->setText(MSecText(int(ms % 1000)));
        break;
    }
    case imTime: {
        const double seconds = days * kSecondsPerDay;
        // A negative span has no days; its time of day is that of its size.
        qint64 whole = std::max<qint64>(qint64(std::trunc(seconds / kSecondsPerDay)), 0);
        qint64 ms = std::llround(std::abs(seconds - double(whole) * kSecondsPerDay) * 1000.0);
        if (seconds >= 0) {
            whole += ms / kMsPerDay; // a rest rounded up to a full day
        }
        ms %= kMsPerDay;
        edtTimeDay->setText(QString::number(whole));
        dtpTime->setTime(TimeOfSeconds(ms / 1000));
        edtTimeMSec->setText(MSecText(int(ms % 1000)));
        break;
    }
    case imInterval: {
        const int seconds = int(std::llround(days * kSecondsPerDay));
        const int at = cbxInterval->findData(seconds);
        cbxInterval->setCurrentIndex(std::max(at, 0));
        break;
    }
    }
}

double TDateTimeInput::Seconds(double base) const {
    return RoundMs((FValue - base) * kSecondsPerDay);
}

void TDateTimeInput::btnOKClick() {
    switch (FMode) {
    case imDate: {
        const std::optional<int> ms = ToInt(edtDateMSec->text());
        if (!ms || *ms < 0 || *ms > 999 || !dtpDate->date().isValid()) return;
        const double ofDay = SecondsOf(dtpDateTime->time()) + *ms / 1000.0;
        FValue = double(Epoch().daysTo(dtpDate->date())) + ofDay / kSecondsPerDay;
        break;
    }
    case imTime: {
        const std::optional<int> days = ToInt(edtTimeDay->text());
        const std::optional<int> ms = ToInt(edtTimeMSec->text());
        if (!days || !ms || *days < 0 || *ms < 0 || *ms > 999) return;
        const double ofDay = SecondsOf(dtpTime->time()) + *ms / 1000.0;
        FValue = double(*days) + ofDay / kSecondsPerDay;
        break;
    }
    case imInterval:
        FValue = cbxInterval->currentData().toDouble() / kSecondsPerDay;
        break;
    }
    accept();
}

void TDateTimeInput::PlaceAt(const QPoint& point) {
    adjustSize();
    QScreen* screen = QGuiApplication::screenAt(point);
    if (!screen) screen = QGuiApplication::primaryScreen();
    QPoint at = point;
    if (screen) {
        // Keep the whole pop-up on the screen, as a drop-down list would.
        const QRect avail = screen->availableGeometry();
        at.setX(std::clamp(at.x(), avail.left(), std::max(avail.left(), avail.right() - width() + 1)));
        at.setY(std::clamp(at.y(), avail.top(), std::max(avail.top(), avail.bottom() - height() + 1)));
    }
    move(at);
}

bool TDateTimeInput::ExecuteDate(const QPoint& point, double base, double& seconds, QWidget* parent) {
    TDateTimeInput dlg(imDate, parent);
    dlg.SetValue(base + seconds / kSecondsPerDay);
    dlg.PlaceAt(point);
    if (dlg.exec() != QDialog::Accepted) return false;
    seconds = dlg.Seconds(base);
    return true;
}

bool TDateTimeInput::ExecuteTime(const QPoint& point, double& seconds, QWidget* parent) {
    TDateTimeInput dlg(imTime, parent);
    dlg.SetValue(seconds / kSecondsPerDay);
    dlg.PlaceAt(point);
    if (dlg.exec() != QDialog::Accepted) return false;
    seconds = dlg.Seconds();
    return true;
}

bool TDateTimeInput::ExecuteInterval(const QPoint& point, double& seconds, QWidget* parent) {
    TDateTimeInput dlg(imInterval, parent);
    dlg.SetValue(seconds / kSecondsPerDay);
    dlg.PlaceAt(point);
    if (dlg.exec() != QDialog::Accepted) return false;
    seconds = dlg.Seconds();
    return true;
}
