#pragma once

#include <QString>

// The settings store: string values under an application name and a section ("Options",
// "Settings"). Each application name has its own INI file, each section is a group in it:
// ~/.config/Vantry! Vantry!/Vantry! Vantry!.ini with [Options] and [Settings].
inline const QString kAppTitle = QStringLiteral("Vantry! Vantry!");

QString GetSetting(const QString& appName, const QString& section, const QString& key,
                   const QString& defaultValue = QString());
// False when the INI file could not be written.
bool SaveSetting(const QString& appName, const QString& section, const QString& key,
                 const QString& value);

namespace SettingsStore {
// The folder that holds the INI files; empty means the user's configuration folder.
void SetDirectory(const QString& directory);
QString FileFor(const QString& appName);
} // namespace SettingsStore
