#pragma once

#include "common/core/Currency.h"

#include <cstdint>

class ScannedRow;

// Twelve figures over all undeleted rebates, worked out in one walk of the table. Create a
// new object each time and call Init: a second walk on the same object restarts the five
// plain sums but adds to the other figures.
class clsRebateStats {
public:
    // Walks the table; true when every row was taken. A failure is logged ("Error Compiling
    // Stats") and leaves the figures reached so far.
    bool GetStats();
    void Init(); // GetStats, dropping the result

    std::int16_t CountFollowups() const { return miCountFollowups; }
    std::int16_t CountPending() const { return miCountPending; }
    std::int16_t CountPurchases() const { return miCountPurchases; }
    std::int16_t CountReceived() const { return miCountReceived; }
    std::int16_t CountRejections() const { return miCountRejections; }
    Currency TotalCoupons() const { return mcTotalCoupons; }
    Currency TotalFollowupPostage() const { return mcTotalFollowupPostage; }
    Currency TotalOutstanding() const { return mcTotalOutstanding; }
    Currency TotalPostage() const { return mcTotalPostage; }
    Currency TotalReceived() const { return mcTotalReceived; }
    Currency TotalRejected() const { return mcTotalRejected; }
    Currency TotalSpent() const { return mcTotalSpent; }

    // The rules the figures follow, for whoever shows them another way: a column of a stored
    // row as money (Null or unreadable is 0), and whether a row's amount counts as outstanding.
    static Currency Money(const ScannedRow& row, int column);
    static bool IsOutstanding(const ScannedRow& row, int amountReceived, int rejected);

private:
    void AddRow(const ScannedRow& row, bool first);

    std::int16_t miCountFollowups = 0;
    std::int16_t miCountPending = 0;
    std::int16_t miCountPurchases = 0;
    std::int16_t miCountReceived = 0;
    std::int16_t miCountRejections = 0;
    Currency mcTotalCoupons;
    Currency mcTotalFollowupPostage;
    Currency mcTotalOutstanding;
    Currency mcTotalPostage;
    Currency mcTotalReceived;
    Currency mcTotalRejected;
    Currency mcTotalSpent;
};
