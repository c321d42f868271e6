#pragma once

#include "ScriptedDesktop.h"

#include <QDateTime>
#include <QString>
#include <QTemporaryDir>

// What every test starts from: a temporary program folder holding a fresh copy of the
// reserve database as "Vantry.rdb" and "Vantry.mdb", settings in a temporary folder, the
// scripted desktop, the clock fixed at kToday 10:00:00, the globals reset, and a fresh
// gErrorLog writing LogPath(). At the end it closes gDatabase and drops the user-interface
// hooks of clsRebate.
// Create one per test function (init()/cleanup() or a local), never share across tests.
class Fixture {
public:
    static inline const QDate kToday{2026, 11, 23}; // inline: safe in other files' statics

    Fixture();
    ~Fixture();
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;

    QString ProgramDir() const;                      // with a trailing "/"
    QString DatabasePath() const;                    // ProgramDir() + "Vantry.mdb"
    QString ReservePath() const;                     // ProgramDir() + "Vantry.rdb"
    QString LogPath() const;                         // ProgramDir() + "Vantry.log"
    QString SettingsFile() const;                    // the INI file in use
    ScriptedDesktop& Desktop() { return *mDesktop; } // owned by the seam

    // Opens gDatabase on DatabasePath(); the fixture closes it at the end. Rows go in with
    // InsertRebates (RebateRows.h).
    void OpenDatabase();

private:
    QTemporaryDir mDir;
    ScriptedDesktop* mDesktop;
};

// Registers the program's compiled resources (icons, help pages) in a test executable.
void InitTestResources();
