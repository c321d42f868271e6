#include "Modal.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

void WhenModal(std::function<void(QWidget*)> action) {
    WhenModal(QString(), std::move(action));
}

void WhenModal(const QString& name, std::function<void(QWidget*)> action) {
    auto* poll = new QTimer(qApp);
    // The window that is modal now (if any) is the owner, not the one to come.
    QPointer<QWidget> before = QApplication::activeModalWidget();
    QObject::connect(poll, &QTimer::timeout, poll, [poll, before, name, action] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == before.data() || !modal->isVisible() ||
            (!name.isEmpty() && modal->objectName() != name))
            return;
        poll->stop();
        poll->deleteLater();
        action(modal);
    });
    poll->start(10);
}
