#include "common/ui/HandlerTrap.h"

#include "app/cLogErr.h"
#include "common/core/VbError.h"

#include <QWidget>
#include <exception>

namespace {
// The source of an error: the form the receiver belongs to, else what it is.
QString SourceOf(const QObject* receiver) {
    if (const auto* widget = qobject_cast<const QWidget*>(receiver)) {
        const QString form = widget->window()->objectName();
        if (!form.isEmpty())
            return form;
    }
    return receiver && !receiver->objectName().isEmpty()
               ? receiver->objectName()
               : QString::fromLatin1(receiver ? receiver->metaObject()->className() : "App");
}

QString LocationOf(const QObject* receiver) {
    return receiver && !receiver->objectName().isEmpty() ? receiver->objectName()
                                                         : QStringLiteral("notify");
}
} // namespace

void ReportEscapedError(const QObject* receiver, int number, const QString& description) {
    try {
        LogError(VbError(number, description), SourceOf(receiver), LocationOf(receiver));
    } catch (...) {
        // The log reports its own failures in a box; nothing more can be done here.
    }
}

bool TrapHandlerErrors(const QObject* receiver, const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (const VbError& error) {
        ReportEscapedError(receiver, error.Number(), error.Description());
    } catch (const std::exception& error) {
        // Error 51, "Internal error": a failure of the program itself, not of the user's data.
        ReportEscapedError(receiver, 51, QString::fromLocal8Bit(error.what()));
    } catch (...) {
        ReportEscapedError(receiver, 51, QStringLiteral("Internal error"));
    }
    return false;
}
