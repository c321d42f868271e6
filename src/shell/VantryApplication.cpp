#include "shell/VantryApplication.h"

#include "common/ui/HandlerTrap.h"

#include <QIcon>

VantryApplication::VantryApplication(int& argc, char** argv) : QApplication(argc, argv) {
    // The icons and help pages live in the UI library, which the linker doesn't pull in
    // by itself.
    Q_INIT_RESOURCE(vantry);
    setWindowIcon(QIcon(QStringLiteral(":/icons/vantry.svg")));
    // The installed menu entry's name, by which the desktop matches windows to the entry.
    setDesktopFileName(QStringLiteral("example.vantry.Vantry"));
}

// The last resort only: the handlers catch their own errors (TrapHandlerErrors), since an
// error unwinding through Qt's frames skips their cleanup.
bool VantryApplication::notify(QObject* receiver, QEvent* event) {
    bool handled = false;
    const bool ran =
        TrapHandlerErrors(receiver, [&] { handled = QApplication::notify(receiver, event); });
    return ran && handled;
}
