#include "common/core/modUtilities.h"

#include "common/core/Desktop.h"
#include "common/core/VbError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {
QString gAppDirectory;
QString gExeName;
} // namespace

QVariant NZ(const QVariant& value, const QVariant& defaultValue) {
    return value.isNull() ? defaultValue : value;
}

void AppLocation::Override(const QString& directory, const QString& exeName) {
    gAppDirectory = directory;
    gExeName = exeName;
}

void AppLocation::Reset() {
    gAppDirectory.clear();
    gExeName.clear();
}

QString AppPath() {
    QString path = gAppDirectory.isEmpty() ? QCoreApplication::applicationDirPath() : gAppDirectory;
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    return path;
}

QString DataPath() {
    // A store already beside the program stays the user's store even when the folder can't be
    // written now: it opens read-only rather than a fresh empty store elsewhere taking its place.
    const QString program = AppPath();
    if (QFileInfo(program).isWritable() ||
        QFileInfo::exists(program + AppExeName() + QStringLiteral(".mdb")))
        return program;
    QString path = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(path);
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    return path;
}

QString InstalledReservePath() {
    return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/" VANTRY_SHARE_FROM_BIN))
        .absoluteFilePath(AppExeName() + QStringLiteral(".rdb"));
}

QString AppExeName() {
    if (!gExeName.isEmpty())
        return gExeName;
    return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
}

QString AppVersion() {
    return QStringLiteral("%1.%2.%3")
        .arg(VANTRY_VERSION_MAJOR)
        .arg(VANTRY_VERSION_MINOR)
        .arg(VANTRY_VERSION_PATCH);
}

bool FileExists(const QString& path) {
    if (path.isEmpty())
        return false;
    return QFileInfo(path).isFile();
}

bool KillFile(const QString& mask) {
    const QFileInfo info(mask);
    const QDir dir = info.dir();
    const QStringList matches =
        dir.entryList(QStringList{info.fileName()}, QDir::Files | QDir::Hidden, QDir::Name);
    if (matches.isEmpty())
        return false;
    if (!QFile::remove(dir.filePath(matches.first())))
        throw VbError(VbError::PathFileAccess);
    return true;
}

QString TempPath() {
    QString path = QDir::tempPath();
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}

void OpenDocument(const QString& target) {
    TheDesktop().OpenDocument(target);
}
