#pragma once

#include <QString>
#include <QVariant>

// NZ(value, default): the value, or the default when the value is Null; "" when no default
// is given. A null QVariant is Null.
QVariant NZ(const QVariant& value, const QVariant& defaultValue = QString());

// The program's folder with one trailing separator. Every file name is built on it.
QString AppPath();
// The folder of the store, its reserve copy, the log and the compaction files, with one
// trailing separator: the program's folder while the user can write there (a portable copy) or
// while it holds the store, otherwise the user's data folder, created when missing.
QString DataPath();
// The empty store delivered with an installed program, in its share folder beside bin/.
QString InstalledReservePath();
// The executable's base name ("Vantry"): the database, reserve copy and log are named after it.
QString AppExeName();
// The program's version as "major.minor.revision".
QString AppVersion();

// True when a file matches the path; never raises.
bool FileExists(const QString& path);
// When a file matches the mask (wild cards "*" and "?" allowed in the file name part),
// deletes the first one found and returns true; false when nothing matches. A file that
// can't be deleted raises error 75.
bool KillFile(const QString& mask);
// The system's temporary folder without a trailing separator.
QString TempPath();
// Hands a file, URL or "mailto:" address to the desktop; the result isn't looked at.
void OpenDocument(const QString& target);

namespace AppLocation {
// Tests put the program in a temporary folder under a name of their choosing.
void Override(const QString& directory, const QString& exeName);
void Reset();
} // namespace AppLocation
