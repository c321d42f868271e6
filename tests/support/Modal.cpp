#include "Modal.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <memory>

void WhenModal(std::function<void(QWidget*)> action) {
    WhenModal(QString(), std::move(action));
}

void WhenModal(const QString& name, std::function<void(QWidget*)> action) {
    auto* poll = new QTimer(qApp);
    // The window that is modal now (if any) is the owner, not the one to come.
    QPointer<QWidget> before = QApplication::activeModalWidget();
    auto shown = std::make_shared<QElapsedTimer>();
    QObject::connect(poll, &QTimer::timeout, poll, [poll, before, name, action, shown] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == before.data() || !modal->isVisible() ||
            (!name.isEmpty() && modal->objectName() != name))
            return;
        // Keys reach the window once it is active, as the user's would.
        if (!shown->isValid())
            shown->start();
        if (QApplication::activeWindow() != modal && shown->elapsed() < 2000)
            return;
        poll->stop();
        poll->deleteLater();
        action(modal);
    });
    poll->start(10);
}
