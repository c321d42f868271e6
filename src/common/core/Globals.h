#pragma once

#include "common/core/Currency.h"

#include <QObject>
#include <QPointer>
#include <QString>

// Application-wide values shared between the Switchboard, the rebate form and the entry
// tools. They live for the whole process; nothing here is saved.
extern bool gbNewRecord;        // the next opening of frmRebate creates a record
extern bool gbRecordSaved;      // a saved record waits to be brought into the lists
extern QString gsSavedRebateID; // the RebateID of that record
extern QString gFindWhat;       // the last search text of frmFind
extern QString gsCalendarDate;  // date handed to and returned by frmCalendar
// The field whose text frmCalendar sets on OK; it lets go of it then.
extern QPointer<QObject> gCalendarTarget;
extern Currency gcCalculatorValue;
extern QString gTCRLink; // the newsletter's subscription page
extern bool gAppStarted; // start-up has finished

// The product's web addresses and mailboxes.
inline const QString kProductWebSite = QStringLiteral("https://www.vantry.example/");
inline const QString kTCRLink =
    QStringLiteral("https://www.thriftcourier.example/subscriptions.htm?RefID=QZ");
inline const QString kSupportMailbox = QStringLiteral("support@vantry.example");
inline const QString kSuggestionMailbox = QStringLiteral("suggestions@vantry.example");

// Back to the values of a fresh start (tests).
void ResetGlobals();
