#include "shell/VantryApplication.h"

#include "app/cLogErr.h"
#include "common/core/VbError.h"

#include <QIcon>
#include <QWidget>

namespace {
// The source of an escaped error: the form the receiver belongs to, else what it is.
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

void Report(const VbError& error, const QObject* receiver) {
    try {
        LogError(error, SourceOf(receiver), LocationOf(receiver));
    } catch (...) {
        // The log reports its own failures in a box; nothing more can be done here.
    }
}
} // namespace

VantryApplication::VantryApplication(int& argc, char** argv) : QApplication(argc, argv) {
    // The icons and help pages live in the UI library, which the linker doesn't pull in
    // by itself.
    Q_INIT_RESOURCE(vantry);
    setWindowIcon(QIcon(QStringLiteral(":/icons/vantry.svg")));
    // The installed menu entry's name, by which the desktop matches windows to the entry.
    setDesktopFileName(QStringLiteral("example.vantry.Vantry"));
}

bool VantryApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const VbError& error) {
        Report(error, receiver);
    } catch (const std::exception& error) {
        // Error 51, "Internal error": a failure of the program itself, not of the user's data.
        Report(VbError(51, QString::fromLocal8Bit(error.what())), receiver);
    } catch (...) {
        Report(VbError(51, QStringLiteral("Internal error")), receiver);
    }
    return false;
}
