#pragma once

#include <functional>

// The program's entry procedure: one running copy, the error log, the database file (made
// from the reserve copy when missing), the splash, the database, the main window, the
// Switchboard. Returns true when the program runs on from the main window's event loop;
// false when it ended during start-up (another copy runs, the database is missing or can't
// be opened), after telling the user why.
bool Main();

// Copies the reserve database "<exe>.rdb" to "<exe>.mdb", leaving the reserve in place.
// False after the box "Error Renaming Vantry.rdb" when the copy fails.
bool RestoreDatabaseFromRdb();

// Keeps the splash up for the given seconds (whole-second arithmetic on the machine's
// clock, so 3 to 4 seconds for 4) while window messages flow, or until its picture is
// clicked.
void SplashDelay(int seconds);

// Ends the program: the main event loop returns with the code.
void EndProgram(int exitCode = 0);

namespace Startup {
// How the program ends; nothing restores the default (the event loop's exit). Tests record it.
void SetEndProgramHandler(std::function<void(int)> handler);
// The splash's wait in seconds, 4 unless a test shortens it.
void SetSplashSeconds(int seconds);
// Developer and test settings from the environment: VANTRY_PROGRAM_DIR puts the program's
// folder elsewhere (tests), VANTRY_QUIT_AFTER=<seconds> ends the program after that time
// without closing its windows (screenshots).
void UseDeveloperEnvironment();
} // namespace Startup
