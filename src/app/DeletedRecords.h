#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The deleted rows as the deleted record manager lists them, and the two commands that bring
// them back or remove them for good.
struct DeletedRecord {
    QString RebateName;
    QString ProductName;
    QString DateSent;
    QString RebateID;
    QString IconKey; // "Paid", "Rejected", "Followup", "Overdue", "Unsent" or "Pending"
};

// Every row whose Deleted is True, in the store's order, through gDatabase.
QList<DeletedRecord> ReadDeletedRecords();

// Whether any row is marked deleted.
bool AnyDeletedRecords();

// Clears Deleted on the deleted rows with these keys, or removes them from the table, all in
// one transaction (one look-up by key per row). A key without a deleted row is passed over.
// Returns the number of rows changed; raises the store's error after rolling back.
int RecoverDeletedRecords(const QStringList& rebateIDs);
int PurgeDeletedRecords(const QStringList& rebateIDs);
