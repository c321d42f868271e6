#pragma once

#include "RebateRows.h"
#include "ScriptedDesktop.h"

#include <QDateTime>
#include <QString>
#include <QTemporaryDir>
#include <functional>

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
    ScriptedDesktop& Desktop() { return *mDesktop; } // owned by the seam

    // Opens gDatabase on DatabasePath() and writes the rows into it (InsertRebates); the
    // fixture closes it at the end.
    void OpenDatabase(const QList<RebateRow>& rows = {});
    // The error log's text; "" when there is no log file.
    QString LogText() const;

private:
    QTemporaryDir mDir;
    ScriptedDesktop* mDesktop;
};

// The number of the VbError the action raises, 0 when it raises none.
int ErrorOf(const std::function<void()>& action);

// The whole file; empty when it can't be read.
QByteArray ReadFile(const QString& path);

// Registers the program's compiled resources (icons, help pages) in a test executable.
void InitTestResources();
