#include "common/core/Clock.h"

namespace {
QDateTime gFixedMoment;
}

QDateTime Now() {
    if (gFixedMoment.isValid())
        return gFixedMoment;
    QDateTime now = QDateTime::currentDateTime();
    return now.addMSecs(-now.time().msec());
}

QDate Date() {
    return Now().date();
}

void Clock::SetFixed(const QDateTime& moment) {
    gFixedMoment = moment;
}

void Clock::Advance(qint64 seconds) {
    if (gFixedMoment.isValid())
        gFixedMoment = gFixedMoment.addSecs(seconds);
}

void Clock::UseSystem() {
    gFixedMoment = QDateTime();
}
