#include "common/ui/Forms.h"

#include <QApplication>
#include <QHash>
#include <QPointer>
#include <QWidget>

namespace {
QHash<QString, QPointer<QWidget>>& Registry() {
    static QHash<QString, QPointer<QWidget>> registry;
    return registry;
}

QHash<QString, std::function<QWidget*()>>& Factories() {
    static QHash<QString, std::function<QWidget*()>> factories;
    return factories;
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

void Forms::SetFactory(const QString& name, std::function<QWidget*()> factory) {
    Factories().insert(name, std::move(factory));
}

QWidget* Forms::Load(const QString& name) {
    if (QWidget* form = Find(name))
        return form;
    const auto factory = Factories().constFind(name);
    return factory == Factories().constEnd() || !*factory ? nullptr : (*factory)();
}

bool IsFormLoaded(const QString& name) {
    return Forms::Find(name) != nullptr;
}

void SetMousePointer(MousePointer pointer) {
    if (pointer == MousePointer::Hourglass && !gWaitCursorShown) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        gWaitCursorShown = true;
    } else if (pointer == MousePointer::Default && gWaitCursorShown) {
        QApplication::restoreOverrideCursor();
        gWaitCursorShown = false;
    }
}

MousePointer CurrentMousePointer() {
    return gWaitCursorShown ? MousePointer::Hourglass : MousePointer::Default;
}

BusyState::BusyState(const QString& status, StatusSetter setter, QString restingText)
    : mSetter(std::move(setter)), mRestingText(std::move(restingText)) {
    SetMousePointer(MousePointer::Hourglass);
    if (mSetter)
        mSetter(status);
}

BusyState::~BusyState() {
    Done();
}

void BusyState::Failed(const QString& statusText) {
    SetMousePointer(MousePointer::Default);
    if (mSetter)
        mSetter(statusText);
}

void BusyState::Done(const QString& statusText) {
    if (mDone)
        return;
    mDone = true;
    SetMousePointer(MousePointer::Default);
    if (mSetter)
        mSetter(statusText);
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
