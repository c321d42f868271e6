#include "data/RebateStatus.h"

#include "common/core/Clock.h"
#include "common/core/Currency.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "data/Recordset.h"

namespace {

// Column indexes of the seven fields, resolved once per recordset: the rule runs for every
// row of a list load.
struct StatusColumns {
    std::uint64_t serial = 0;
    int deleted = -1;
    int amountReceived = -1;
    int rejected = -1;
    int followupDate = -1;
    int dateReceived = -1;
    int dateDue = -1;
    int dateSent = -1;
};

const StatusColumns& ColumnsOf(const Recordset& rs) {
    static StatusColumns cached;
    if (cached.serial != rs.Serial()) {
        StatusColumns columns;
        columns.deleted = rs.FieldIndex(QStringLiteral("Deleted"));
        columns.amountReceived = rs.FieldIndex(QStringLiteral("AmountReceived"));
        columns.rejected = rs.FieldIndex(QStringLiteral("Rejected"));
        columns.followupDate = rs.FieldIndex(QStringLiteral("FollowupDate"));
        columns.dateReceived = rs.FieldIndex(QStringLiteral("DateReceived"));
        columns.dateDue = rs.FieldIndex(QStringLiteral("DateDue"));
        columns.dateSent = rs.FieldIndex(QStringLiteral("DateSent"));
        columns.serial = rs.Serial();
        cached = columns;
    }
    return cached;
}

// A Boolean field, Null counting as False.
bool IsTrue(const QVariant& value) {
    if (value.isNull())
        return false;
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool();
    return CBool(value);
}

// value > 0; Null gives Null, which counts as False.
bool AboveZero(const QVariant& value) {
    if (value.isNull())
        return false;
    if (value.metaType() == QMetaType::fromType<Currency>())
        return value.value<Currency>().Raw() > 0;
    return CDbl(value) > 0;
}

// value < today; Null gives Null, which counts as False.
bool BeforeToday(const QVariant& value, const QDate& today) {
    if (value.isNull())
        return false;
    const QDate date = value.metaType().id() == QMetaType::QDate ? value.toDate() : CDate(value);
    return date < today;
}

} // namespace

QString GetRebateStatus(const Recordset& rs) {
    return GetRebateStatus(rs, Date());
}

QString GetRebateStatus(const Recordset& rs, const QDate& today) {
    static const QString deleted = QStringLiteral("Deleted");
    static const QString paid = QStringLiteral("Paid");
    static const QString rejected = QStringLiteral("Rejected");
    static const QString followup = QStringLiteral("Followup");
    static const QString overdue = QStringLiteral("Overdue");
    static const QString unsent = QStringLiteral("Unsent");
    static const QString pending = QStringLiteral("Pending");

    const StatusColumns& columns = ColumnsOf(rs);
    if (IsTrue(rs.Fields(columns.deleted)))
        return deleted;
    if (AboveZero(rs.Fields(columns.amountReceived)))
        return paid;
    if (IsTrue(rs.Fields(columns.rejected)))
        return rejected;
    if (!IsBlank(rs.Fields(columns.followupDate)))
        return followup;
    // Both sides are evaluated, received first, as the rule reads them.
    const bool notReceived = IsBlank(rs.Fields(columns.dateReceived));
    const bool due = BeforeToday(rs.Fields(columns.dateDue), today);
    if (due && notReceived)
        return overdue;
    if (IsBlank(rs.Fields(columns.dateSent)))
        return unsent;
    return pending;
}
