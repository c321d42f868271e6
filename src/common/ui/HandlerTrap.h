#pragma once

#include <QString>
#include <functional>

class QObject;

// Runs an event handler's body and logs whatever error escapes it, as the standard trap does
// (source: the receiver's form; location: the receiver's name), so that no error unwinds
// through Qt's event delivery, which is built without exception cleanup. Returns false when
// the body failed.
bool TrapHandlerErrors(const QObject* receiver, const std::function<void()>& body);

// The report of an error caught outside any handler (the application's last resort).
void ReportEscapedError(const QObject* receiver, int number, const QString& description);
