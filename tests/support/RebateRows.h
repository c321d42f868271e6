#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QVariantMap>
#include <optional>

// One row of Rebates for a test, written as the program would write it unless a field says
// otherwise: an empty optional is Null. Money is in dollars. Designated initializers keep a
// row short: RebateRow{.RebateID = "1", .AmountReceived = 5.0, .Rejected = true}.
struct RebateRow {
    QString RebateID = QString("");
    std::optional<QString> RebateName = QString("");
    std::optional<QString> Address = QString("");
    std::optional<QString> PhoneNumber = QString("");
    std::optional<QString> Email = std::nullopt;
    std::optional<QString> WebSite = std::nullopt;
    std::optional<QString> ProductName = QString("");
    std::optional<double> PurchasePrice = 0.0;
    std::optional<QDate> ExpDate = std::nullopt;
    std::optional<QDate> DatePurchased = std::nullopt;
    std::optional<QString> LocationPurchased = std::nullopt;
    std::optional<double> RebateAmount = 0.0;
    std::optional<double> PostagePrice = 0.0;
    std::optional<double> CouponAmount = 0.0;
    std::optional<QDate> DateSent = std::nullopt;
    std::optional<QDate> DateDue = std::nullopt;
    std::optional<double> AmountReceived = 0.0;
    std::optional<QDate> FollowupDate = std::nullopt;
    std::optional<double> FollowupPostage = 0.0;
    std::optional<QDate> DateReceived = std::nullopt;
    std::optional<bool> Rejected = false;
    std::optional<QString> ReasonRejected = std::nullopt;
    std::optional<bool> Deleted = false;
    std::optional<QString> Remarks = std::nullopt;
};

// Writes the rows into gDatabase's table in one transaction, bypassing the program's own
// store (the test helper must not depend on what it tests). Fails the test on any error.
void InsertRebates(const QList<RebateRow>& rows);

// n rows with unique 14-digit keys, spread in turn over the seven statuses as seen on
// Fixture::kToday ("Unsent", "Pending", "Overdue", "Paid", "Followup", "Rejected", "Deleted"),
// with amounts and dates drawn from the seed.
QList<RebateRow> GenerateRebates(int n, quint32 seed);

// A row by its money, for the statistics: key, purchase price, rebate amount, postage, coupon,
// amount received, followup postage, Rejected and Deleted; an empty optional is Null.
RebateRow MoneyRow(const QString& id, std::optional<double> price, std::optional<double> rebate,
                   std::optional<double> postage, std::optional<double> coupon,
                   std::optional<double> received, std::optional<double> followup,
                   std::optional<bool> rejected = false, std::optional<bool> deleted = false);

// An unsent router rebate with the fields the rebate form requires.
RebateRow RouterRow(const QString& id, const QString& name);

// n unsent rows keyed "1" to "n", named "r1" to "rn".
QList<RebateRow> PlainRebates(int n);

// The row as stored, by column name: a Null column is a null QVariant, money the raw
// ten-thousandths, dates their text. Empty when there is no such row.
QVariantMap ReadRawRebate(const QString& rebateID);

// The number of rows in Rebates.
int CountRebates();
