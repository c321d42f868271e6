#include "shell/modPrevInstance.h"

#include "common/core/Settings.h"
#include "common/core/modUtilities.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QPointer>
#include <QStandardPaths>
#include <QWidget>
#include <algorithm>
#include <memory>
#include <unistd.h>

namespace {
constexpr int kConnectTimeoutMs = 1000;
QPointer<QLocalServer> gServer;
std::unique_ptr<QLockFile> gStoreLock;

// Hands the title to a running copy; false when none answers.
bool AskRunningCopy(const QString& name) {
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(kConnectTimeoutMs))
        return false;
    socket.write(kAppTitle.toUtf8());
    socket.waitForBytesWritten(kConnectTimeoutMs);
    socket.disconnectFromServer();
    return true;
}

void Listen(const QString& name) {
    auto* server = new QLocalServer(qApp);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    // A socket file left behind by a copy that crashed answers no one: clear it and retry.
    if (!server->listen(name) && server->serverError() == QAbstractSocket::AddressInUseError) {
        QLocalServer::removeServer(name);
        server->listen(name);
    }
    QObject::connect(server, &QLocalServer::newConnection, server, [server] {
        while (QLocalSocket* socket = server->nextPendingConnection()) {
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QLocalSocket::readyRead, socket, [socket] {
                ActivatePrevInstance(QString::fromUtf8(socket->readAll()));
            });
        }
    });
    gServer = server;
}
} // namespace

QString PrevInstance::ServerName() {
    const QByteArray folder =
        QCryptographicHash::hash(AppPath().toUtf8(), QCryptographicHash::Sha1).toHex().left(12);
    const QString name =
        QStringLiteral("vantry-%1-%2").arg(getuid()).arg(QString::fromLatin1(folder));
    // A bare name would land in the temporary folder, which differs with TMPDIR.
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? name : runtime + QLatin1Char('/') + name;
}

QString PrevInstance::LockPath() {
    return DataPath() + AppExeName() + QStringLiteral(".lock");
}

void PrevInstance::Release() {
    delete gServer.data();
    gStoreLock.reset();
}

bool CheckPrevInstance() {
    const QString name = PrevInstance::ServerName();
    if (gServer && gServer->serverName() == name)
        return false;
    PrevInstance::Release();
    if (AskRunningCopy(name))
        return true;
    Listen(name);
    // Two copies started at the same moment: the one that lost the race asks the other.
    if (!gServer->isListening() && AskRunningCopy(name)) {
        PrevInstance::Release();
        return true;
    }
    // Whatever the rendezvous missed, no two copies write one store. A lock whose process has
    // gone (a crash) is taken over.
    QDir().mkpath(QFileInfo(PrevInstance::LockPath()).absolutePath());
    gStoreLock = std::make_unique<QLockFile>(PrevInstance::LockPath());
    gStoreLock->setStaleLockTime(0);
    // Only a lock held by a running copy stops the start; a lock file that can't be written
    // at all guards nothing and must not keep the program from starting.
    if (!gStoreLock->tryLock(kConnectTimeoutMs) &&
        gStoreLock->error() == QLockFile::LockFailedError) {
        PrevInstance::Release();
        return true;
    }
    return false;
}

QWidget* FindWindowByTitlePrefix(const QString& title) {
    const QString search = title.toUpper();
    if (search.isEmpty())
        return nullptr;
    // The main window stands first, where the old program's application window stood; the
    // others follow in the order the platform lists them.
    QWidgetList windows = QApplication::topLevelWidgets();
    std::stable_partition(windows.begin(), windows.end(),
                          [](const QWidget* window) { return window->inherits("QMainWindow"); });
    for (QWidget* window : std::as_const(windows)) {
        if (window->windowTitle().toUpper().startsWith(search))
            return window;
    }
    return nullptr;
}

QWidget* ActivatePrevInstance(const QString& title) {
    QWidget* window = FindWindowByTitlePrefix(title);
    if (!window)
        return nullptr;
    if (window->isMinimized())
        window->showNormal();
    window->raise();
    window->activateWindow();
    return window;
}
