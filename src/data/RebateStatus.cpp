#include "data/RebateStatus.h"

#include "common/core/Clock.h"
#include "common/core/Currency.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "data/RebateQueries.h"
#include "data/Recordset.h"
#include "data/ScannedRow.h"

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

// The rule's four kinds of read of a recordset's current row.
struct RecordsetCells {
    const Recordset& rs;
    bool Flag(int column) const { return IsTrue(rs.Fields(column)); }
    bool Blank(int column) const { return IsBlank(rs.Fields(column)); }
    bool Above(int column) const { return AboveZero(rs.Fields(column)); }
    bool Before(int column, const QDate& today) const {
        return BeforeToday(rs.Fields(column), today);
    }
};

// The same reads of a stored row: the values the columns' types carry read directly, any
// other as the recordset gives it.
struct StoredCells {
    const ScannedRow& row;
    bool Flag(int column) const {
        std::int64_t number = 0;
        return row.Number(column, number) ? number != ScannedRow::kNull && number != 0
                                          : IsTrue(row.Fields(column));
    }
    bool Blank(int column) const {
        std::int64_t number = 0;
        return row.Number(column, number) ? number == ScannedRow::kNull
                                          : IsBlank(row.Fields(column));
    }
    bool Above(int column) const {
        std::int64_t number = 0;
        return row.Number(column, number) ? number != ScannedRow::kNull && number > 0
                                          : AboveZero(row.Fields(column));
    }
    bool Before(int column, const QDate& today) const {
        std::int64_t day = 0;
        return row.Number(column, day) ? day != ScannedRow::kNull && day < today.toJulianDay()
                                       : BeforeToday(row.Fields(column), today);
    }
};

template <typename Cells>
QString StatusOf(const Cells& cells, const StatusColumns& columns, const QDate& today) {
    static const QString deleted = QStringLiteral("Deleted");
    static const QString paid = QStringLiteral("Paid");
    static const QString rejected = QStringLiteral("Rejected");
    static const QString followup = QStringLiteral("Followup");
    static const QString overdue = QStringLiteral("Overdue");
    static const QString unsent = QStringLiteral("Unsent");
    static const QString pending = QStringLiteral("Pending");

    if (cells.Flag(columns.deleted))
        return deleted;
    if (cells.Above(columns.amountReceived))
        return paid;
    if (cells.Flag(columns.rejected))
        return rejected;
    if (!cells.Blank(columns.followupDate))
        return followup;
    // Both sides are evaluated, received first, as the rule reads them.
    const bool notReceived = cells.Blank(columns.dateReceived);
    const bool due = cells.Before(columns.dateDue, today);
    if (due && notReceived)
        return overdue;
    if (cells.Blank(columns.dateSent))
        return unsent;
    return pending;
}

} // namespace

QString GetRebateStatus(const Recordset& rs) {
    return GetRebateStatus(rs, Date());
}

QString GetRebateStatus(const Recordset& rs, const QDate& today) {
    return StatusOf(RecordsetCells{rs}, ColumnsOf(rs), today);
}

QString GetRebateStatus(const ScannedRow& row, const QDate& today) {
    using namespace RebateQueries::ListColumn;
    static constexpr StatusColumns columns{
        0, Deleted, AmountReceived, Rejected, FollowupDate, DateReceived, DateDue, DateSent};
    return StatusOf(StoredCells{row}, columns, today);
}
