#pragma once

#include <QDate>
#include <QList>
#include <QString>

// The unsent claims whose postmark deadline (Expiration Date) falls between two days (both
// included), through gDatabase: rows the lists show (not marked deleted) without a Date Sent.
// Raises 91 when no database is open, and what the store raises otherwise.
struct DeadlineRow {
    QString rebateID;
    QString rebateName;
    QString productName;
    QDate expDate;
};

// One query, most urgent first (the earliest Expiration Date, then by RebateID). A row whose
// Expiration Date is no date is passed over.
QList<DeadlineRow> ReadDeadlineRows(const QDate& from, const QDate& until);
