#include "common/core/Settings.h"

#include <QSettings>
#include <QStandardPaths>

namespace {
QString gDirectory;
}

void SettingsStore::SetDirectory(const QString& directory) {
    gDirectory = directory;
}

QString SettingsStore::FileFor(const QString& appName) {
    const QString directory =
        gDirectory.isEmpty()
            ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                  QLatin1Char('/') + appName
            : gDirectory;
    return directory + QLatin1Char('/') + appName + QStringLiteral(".ini");
}

QString GetSetting(const QString& appName, const QString& section, const QString& key,
                   const QString& defaultValue) {
    QSettings store(SettingsStore::FileFor(appName), QSettings::IniFormat);
    return store.value(section + QLatin1Char('/') + key, defaultValue).toString();
}

bool SaveSetting(const QString& appName, const QString& section, const QString& key,
                 const QString& value) {
    QSettings store(SettingsStore::FileFor(appName), QSettings::IniFormat);
    store.setValue(section + QLatin1Char('/') + key, value);
    store.sync();
    return store.status() == QSettings::NoError;
}
