#include "Modal.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QScopeGuard>
#include <QTest>
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

void WhileModal(const QString& name, bool* opened, std::function<void(QWidget*)> whileOpen) {
    if (opened)
        *opened = false;
    QTimer::singleShot(0, qApp, [name, whileOpen = std::move(whileOpen), opened] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (!dialog)
            return;
        if (opened)
            *opened = true;
        const auto closeAtEnd = qScopeGuard([dialog] {
            if (dialog->isVisible())
                static_cast<QDialog*>(dialog)->reject();
        });
        QCOMPARE(dialog->objectName(), name);
        dialog->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), dialog);
        whileOpen(dialog);
    });
}
