#include "app/clsRebateStats.h"

#include "app/cLogErr.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "data/RebateQueries.h"
#include "data/ScannedRow.h"

#include <limits>
#include <optional>

namespace {

// A value the column can't hold (text in a money column, 'yes' for a Boolean) is counted
// nowhere: it reads as Null, and the rest of its row still counts.
template <typename Read> auto OrNull(const QVariant& value, Read read, decltype(read(value)) null) {
    try {
        return read(value);
    } catch (const VbError&) {
        return null;
    }
}

// NZ(value, 0) as currency.
Currency MoneyOf(const QVariant& value) {
    if (value.isNull())
        return Currency();
    if (value.metaType() == QMetaType::fromType<Currency>())
        return value.value<Currency>();
    return OrNull(
        value, [](const QVariant& v) { return CCur(v); }, Currency());
}

// Three-valued tests: a Null operand makes the condition Null, which counts as false.
enum class Tri { False, True, Null };

Tri IsTrue(const QVariant& value) {
    if (value.isNull())
        return Tri::Null;
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool() ? Tri::True : Tri::False;
    return OrNull(
        value, [](const QVariant& v) { return CBool(v) ? Tri::True : Tri::False; }, Tri::Null);
}

Tri Compare(const QVariant& value, bool above) {
    if (value.isNull())
        return Tri::Null;
    const bool isCurrency = value.metaType() == QMetaType::fromType<Currency>();
    return OrNull(
        value,
        [above, isCurrency](const QVariant& v) {
            const bool result = above
                                    ? (isCurrency ? v.value<Currency>().Raw() > 0 : CDbl(v) > 0)
                                    : (isCurrency ? v.value<Currency>().Raw() == 0 : CDbl(v) == 0);
            return result ? Tri::True : Tri::False;
        },
        Tri::Null);
}

// The same reads of a stored row (Money too, below): the values the columns' types carry read
// directly, any other as the recordset would give it.
Tri IsTrueAt(const ScannedRow& row, int column) {
    std::int64_t number = 0;
    if (row.Number(column, number))
        return number == ScannedRow::kNull ? Tri::Null : (number != 0 ? Tri::True : Tri::False);
    return IsTrue(row.Fields(column));
}

Tri CompareAt(const ScannedRow& row, int column, bool above) {
    std::int64_t raw = 0;
    if (row.Number(column, raw)) {
        if (raw == ScannedRow::kNull)
            return Tri::Null;
        return (above ? raw > 0 : raw == 0) ? Tri::True : Tri::False;
    }
    return Compare(row.Fields(column), above);
}

Tri Not(Tri value) {
    return value == Tri::Null ? Tri::Null : (value == Tri::True ? Tri::False : Tri::True);
}

Tri And(Tri left, Tri right) {
    if (left == Tri::False || right == Tri::False)
        return Tri::False;
    return left == Tri::True && right == Tri::True ? Tri::True : Tri::Null;
}

// A 16-bit count: adding past 32,767 raises 6, as the old Integer did.
void CountOne(std::int16_t& count, bool assign) {
    if (assign) {
        count = 1;
        return;
    }
    if (count == std::numeric_limits<std::int16_t>::max())
        throw VbError(VbError::Overflow);
    ++count;
}

void Sum(Currency& total, Currency value, bool assign) {
    total = assign ? value : total + value;
}

} // namespace

Currency clsRebateStats::Money(const ScannedRow& row, int column) {
    std::int64_t raw = 0;
    if (row.Number(column, raw))
        return raw == ScannedRow::kNull ? Currency() : Currency::FromRaw(raw);
    return MoneyOf(row.Fields(column));
}

bool clsRebateStats::IsOutstanding(const ScannedRow& row, int amountReceived, int rejected) {
    return And(CompareAt(row, amountReceived, false), Not(IsTrueAt(row, rejected))) == Tri::True;
}

void clsRebateStats::Init() {
    GetStats();
}

bool clsRebateStats::GetStats() {
    try {
        // Worked out on a copy: a table too large to count leaves the figures as they were,
        // whatever else went wrong on the way.
        clsRebateStats walk = *this;
        int rows = 0;
        std::optional<VbError> failure;
        RebateQueries::ForEachStatisticsRow([&](const ScannedRow& row) {
            if (!failure) {
                try {
                    walk.AddRow(row, rows == 0);
                } catch (const VbError& error) {
                    failure = error;
                }
            }
            ++rows;
        });
        if (rows == 0)
            return false;
        if (rows > std::numeric_limits<std::int16_t>::max())
            throw VbError(VbError::Overflow);
        walk.miCountPurchases = static_cast<std::int16_t>(rows);
        *this = walk;
        if (failure)
            throw *failure;
        return true;
    } catch (const VbError& error) {
        LogError(error, QStringLiteral("clsRebateStats"), QStringLiteral("GetStatistics()"),
                 QStringLiteral("Error Compiling Stats"));
        return false;
    }
}

// The first row assigns, the later ones add.
void clsRebateStats::AddRow(const ScannedRow& row, bool first) {
    using namespace RebateQueries::StatisticsColumn;
    Sum(mcTotalSpent, Money(row, PurchasePrice), first);
    Sum(mcTotalCoupons, Money(row, CouponAmount), first);
    Sum(mcTotalPostage, Money(row, PostagePrice), first);
    Sum(mcTotalFollowupPostage, Money(row, FollowupPostage), first);
    Sum(mcTotalReceived, Money(row, AmountReceived), first);

    const Tri isRejected = IsTrueAt(row, Rejected);
    const Tri received = CompareAt(row, AmountReceived, true);
    if (isRejected == Tri::True) {
        CountOne(miCountRejections, first);
        Sum(mcTotalRejected, Money(row, RebateAmount), first);
    } else if (Not(received) == Tri::True) {
        CountOne(miCountPending, first);
    }
    if (received == Tri::True)
        CountOne(miCountReceived, first);
    if (CompareAt(row, FollowupPostage, true) == Tri::True)
        CountOne(miCountFollowups, first);
    if (IsOutstanding(row, AmountReceived, Rejected))
        Sum(mcTotalOutstanding, Money(row, RebateAmount), first);
}
