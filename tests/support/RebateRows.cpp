#include "RebateRows.h"

#include "Fixture.h"
#include "data/Database.h"

#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <cmath>

namespace {

template <typename T> QVariant Raw(const std::optional<T>& value) {
    if (!value)
        return QVariant();
    if constexpr (std::is_same_v<T, double>)
        return QVariant(static_cast<qlonglong>(std::llround(*value * 10000.0)));
    else if constexpr (std::is_same_v<T, QDate>)
        return QVariant(value->toString(Qt::ISODate));
    else if constexpr (std::is_same_v<T, bool>)
        return QVariant(*value ? 1 : 0);
    else
        return QVariant(*value);
}

QSqlDatabase Connection() {
    if (!gDatabase)
        qFatal("the test opened no database (Fixture::OpenDatabase)");
    return gDatabase->Connection();
}

} // namespace

void InsertRebates(const QList<RebateRow>& rows) {
    QSqlDatabase db = Connection();
    QVERIFY(db.transaction());
    QSqlQuery query(db);
    QVERIFY(query.prepare(QStringLiteral(
        "INSERT INTO Rebates (RebateID, RebateName, Address, PhoneNumber, Email, WebSite, "
        "ProductName, PurchasePrice, ExpDate, DatePurchased, LocationPurchased, RebateAmount, "
        "PostagePrice, CouponAmount, DateSent, DateDue, AmountReceived, FollowupDate, "
        "FollowupPostage, DateReceived, Rejected, ReasonRejected, Deleted, Remarks) VALUES "
        "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")));
    for (const RebateRow& row : rows) {
        const QVariantList values{row.RebateID,
                                  Raw(row.RebateName),
                                  Raw(row.Address),
                                  Raw(row.PhoneNumber),
                                  Raw(row.Email),
                                  Raw(row.WebSite),
                                  Raw(row.ProductName),
                                  Raw(row.PurchasePrice),
                                  Raw(row.ExpDate),
                                  Raw(row.DatePurchased),
                                  Raw(row.LocationPurchased),
                                  Raw(row.RebateAmount),
                                  Raw(row.PostagePrice),
                                  Raw(row.CouponAmount),
                                  Raw(row.DateSent),
                                  Raw(row.DateDue),
                                  Raw(row.AmountReceived),
                                  Raw(row.FollowupDate),
                                  Raw(row.FollowupPostage),
                                  Raw(row.DateReceived),
                                  Raw(row.Rejected),
                                  Raw(row.ReasonRejected),
                                  Raw(row.Deleted),
                                  Raw(row.Remarks)};
        for (int i = 0; i < values.size(); ++i)
            query.bindValue(i, values[i]);
        if (!query.exec()) {
            db.rollback();
            QFAIL(qPrintable(query.lastError().text()));
        }
    }
    QVERIFY(db.commit());
}

QList<RebateRow> GenerateRebates(int n, quint32 seed) {
    QRandomGenerator random(seed);
    const QDate today = Fixture::kToday;
    static const char* const products[] = {"Inkjet Printer", "Router", "Hard Drive",
                                           "Memory Card",    "Webcam", "Keyboard"};
    static const char* const stores[] = {"Best Buy", "Staples", "Office Depot", "Fry's"};
    QList<RebateRow> rows;
    rows.reserve(n);
    for (int i = 0; i < n; ++i) {
        RebateRow row;
        row.RebateID = QStringLiteral("2026%1").arg(i, 10, 10, QLatin1Char('0'));
        row.RebateName = QStringLiteral("Rebate %1").arg(i);
        row.Address =
            QStringLiteral("P.O. Box %1, El Paso, TX 88523").arg(random.bounded(9000) + 100);
        row.PhoneNumber =
            QStringLiteral("(800) 555-%1").arg(random.bounded(10000), 4, 10, QLatin1Char('0'));
        row.ProductName = QString::fromLatin1(products[random.bounded(6)]);
        row.LocationPurchased = QString::fromLatin1(stores[random.bounded(4)]);
        row.PurchasePrice = random.bounded(2000, 40000) / 100.0;
        row.RebateAmount = random.bounded(500, 10000) / 100.0;
        row.PostagePrice = 0.49;
        row.CouponAmount = random.bounded(4) == 0 ? random.bounded(100, 1000) / 100.0 : 0.0;
        row.DatePurchased = today.addDays(-random.bounded(30, 400));
        const QDate sent = today.addDays(-random.bounded(1, 120));
        switch (i % 7) {
        case 0: // Unsent
            break;
        case 1: // Pending
            row.DateSent = sent;
            row.DateDue = today.addDays(random.bounded(0, 56));
            break;
        case 2: // Overdue
            row.DateSent = sent;
            row.DateDue = today.addDays(-random.bounded(1, 60));
            break;
        case 3: // Paid
            row.DateSent = sent;
            row.DateDue = sent.addDays(56);
            row.DateReceived = sent.addDays(random.bounded(20, 80));
            row.AmountReceived = *row.RebateAmount;
            break;
        case 4: // Followup
            row.DateSent = sent;
            row.DateDue = today.addDays(-random.bounded(1, 30));
            row.FollowupDate = today.addDays(-random.bounded(0, 10));
            row.FollowupPostage = 0.49;
            break;
        case 5: // Rejected
            row.DateSent = sent;
            row.Rejected = true;
            row.ReasonRejected = QStringLiteral("No UPC");
            break;
        default: // Deleted
            row.Deleted = true;
            break;
        }
        rows.append(row);
    }
    return rows;
}

RebateRow MoneyRow(const QString& id, std::optional<double> price, std::optional<double> rebate,
                   std::optional<double> postage, std::optional<double> coupon,
                   std::optional<double> received, std::optional<double> followup,
                   std::optional<bool> rejected, std::optional<bool> deleted) {
    return {.RebateID = id,
            .PurchasePrice = price,
            .RebateAmount = rebate,
            .PostagePrice = postage,
            .CouponAmount = coupon,
            .AmountReceived = received,
            .FollowupPostage = followup,
            .Rejected = rejected,
            .Deleted = deleted};
}

RebateRow RouterRow(const QString& id, const QString& name) {
    return {.RebateID = id,
            .RebateName = name,
            .ProductName = "Router",
            .PurchasePrice = 89.99,
            .RebateAmount = 30.0};
}

QList<RebateRow> PlainRebates(int n) {
    QList<RebateRow> rows;
    for (int i = 1; i <= n; ++i)
        rows.append({.RebateID = QString::number(i), .RebateName = QStringLiteral("r%1").arg(i)});
    return rows;
}

QVariantMap ReadRawRebate(const QString& rebateID) {
    QSqlQuery query(Connection());
    query.prepare(QStringLiteral("SELECT * FROM Rebates WHERE RebateID = ?"));
    query.addBindValue(rebateID);
    QVariantMap values;
    if (!query.exec() || !query.next())
        return values;
    const QSqlRecord record = query.record();
    for (int i = 0; i < record.count(); ++i)
        values.insert(record.fieldName(i), query.value(i));
    return values;
}

int CountRebates() {
    QSqlQuery query(Connection());
    if (!query.exec(QStringLiteral("SELECT count(*) FROM Rebates")) || !query.next())
        return -1;
    return query.value(0).toInt();
}
