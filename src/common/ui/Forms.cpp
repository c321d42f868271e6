#include "Forms.h"

#include <QApplication>
#include <QHash>
#include <QPointer>
#include <QWidget>

namespace {
QHash<QString, QPointer<QWidget>>& Registry() {
    static QHash<QString, QPointer<QWidget>> registry;
    return registry;
}

bool gWaitCursorShown = false;
QString gStatusText;
void (*gStatusSetter)(const QString&) = nullptr;
} // namespace

void Forms::Register(QWidget* form) {
    Registry().insert(form->objectName(), form);
}

void Forms::Unregister(QWidget* form) {
    for (auto it = Registry().begin(); it != Registry().end();) {
        if (it.value() == form || it.value().isNull())
            it = Registry().erase(it);
        else
            ++it;
    }
}

QWidget* Forms::Find(const QString& name) {
    const auto found = Registry().constFind(name);
    return found == Registry().constEnd() ? nullptr : found->data();
}

bool IsFormLoaded(const QString& name) {
    return Forms::Find(name) != nullptr;
}

void SetMousePointer(int pointer) {
    if (pointer == 11 && !gWaitCursorShown) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        gWaitCursorShown = true;
    } else if (pointer == 0 && gWaitCursorShown) {
        QApplication::restoreOverrideCursor();
        gWaitCursorShown = false;
    }
}

int MousePointer() {
    return gWaitCursorShown ? 11 : 0;
}

void SetStatusText(const QString& text) {
    gStatusText = text;
    if (gStatusSetter)
        gStatusSetter(text);
}

QString StatusText() {
    return gStatusText;
}

void StatusLine::Attach(void (*setter)(const QString&)) {
    gStatusSetter = setter;
}

void DoEvents() {
    QCoreApplication::processEvents();
}
