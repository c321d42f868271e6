#pragma once

#include <QDate>
#include <QDateTime>

// The program's clock. Now() and Date() read it; tests fix it.
QDateTime Now();
QDate Date();

namespace Clock {
void SetFixed(const QDateTime& moment); // every later Now() returns this moment
void Advance(qint64 seconds);           // moves a fixed clock on
void UseSystem();                       // back to the machine's clock
} // namespace Clock
