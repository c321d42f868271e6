#pragma once

#include "common/core/Currency.h"

#include <QDate>
#include <QList>
#include <QString>

// The money of the savings chart, from the rows and by the rules of the statistics
// (clsRebateStats): what came back per month against what is still outstanding, and the
// rebates by state.
struct SavingsMonth {
    QString label;        // "Nov 2026"; "No date" or "Earlier" for the buckets
    Currency received;    // by the month of Date Received
    Currency outstanding; // by the month of Date Due
};

struct SavingsState {
    QString state; // "Unsent", "Pending", "Overdue", "Paid", "Followup", "Rejected"
    int count = 0;
    Currency amount; // the rebate amounts; for "Paid" the amounts received
};

struct SavingsFigures {
    // "No date" first when a figure has no readable month, then "Earlier" when there are more
    // than kSavingsMonths months, then the months oldest first.
    QList<SavingsMonth> months;
    // The states that have rebates, in the order of the Switchboard's tabs.
    QList<SavingsState> states;
    Currency totalReceived;    // equals the statistics' Rebate Money Received
    Currency totalOutstanding; // equals the statistics' Rebates Outstanding
};

inline constexpr int kSavingsMonths = 24;

// One walk of the rows the statistics count. Raises what the store raises.
SavingsFigures ReadSavingsFigures(const QDate& today);
