#include "app/clsRebateStats.h"

#include "app/cLogErr.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "data/RebateQueries.h"
#include "data/Recordset.h"

#include <limits>

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

Currency clsRebateStats::Money(const QVariant& value) {
    return MoneyOf(value);
}

bool clsRebateStats::IsReceived(const QVariant& amountReceived) {
    return Compare(amountReceived, true) == Tri::True;
}

bool clsRebateStats::IsOutstanding(const QVariant& amountReceived, const QVariant& rejected) {
    return And(Compare(amountReceived, false), Not(IsTrue(rejected))) == Tri::True;
}

bool clsRebateStats::GetStats() {
    return GetStatistics();
}

void clsRebateStats::Init() {
    GetStatistics();
}

bool clsRebateStats::GetStatistics() {
    bool result = false;
    std::unique_ptr<Recordset> rs; // closed and released when it goes out of scope
    try {
        rs = RebateQueries::OpenStatisticsRows();
        if (rs->IsEOF() && rs->IsBOF())
            return false;
        // A recordset that is not at both ends holds a row: RecordCount is above 0 from here.
        rs->MoveLast();
        rs->MoveFirst();
        if (rs->RecordCount() > std::numeric_limits<std::int16_t>::max())
            throw VbError(VbError::Overflow);
        miCountPurchases = static_cast<std::int16_t>(rs->RecordCount());

        const int purchasePrice = rs->FieldIndex(QStringLiteral("PurchasePrice"));
        const int couponAmount = rs->FieldIndex(QStringLiteral("CouponAmount"));
        const int postagePrice = rs->FieldIndex(QStringLiteral("PostagePrice"));
        const int followupPostage = rs->FieldIndex(QStringLiteral("FollowupPostage"));
        const int amountReceived = rs->FieldIndex(QStringLiteral("AmountReceived"));
        const int rejected = rs->FieldIndex(QStringLiteral("Rejected"));
        const int rebateAmount = rs->FieldIndex(QStringLiteral("RebateAmount"));

        // The first row assigns, the later ones add.
        for (bool first = true; !rs->IsEOF(); first = false) {
            Sum(mcTotalSpent, MoneyOf(rs->Fields(purchasePrice)), first);
            Sum(mcTotalCoupons, MoneyOf(rs->Fields(couponAmount)), first);
            Sum(mcTotalPostage, MoneyOf(rs->Fields(postagePrice)), first);
            Sum(mcTotalFollowupPostage, MoneyOf(rs->Fields(followupPostage)), first);
            const QVariant received = rs->Fields(amountReceived);
            Sum(mcTotalReceived, MoneyOf(received), first);

            const QVariant isRejected = rs->Fields(rejected);
            if (IsTrue(isRejected) == Tri::True) {
                CountOne(miCountRejections, first);
                Sum(mcTotalRejected, MoneyOf(rs->Fields(rebateAmount)), first);
            } else if (Not(Compare(received, true)) == Tri::True) {
                CountOne(miCountPending, first);
            }
            if (IsReceived(received))
                CountOne(miCountReceived, first);
            if (Compare(rs->Fields(followupPostage), true) == Tri::True)
                CountOne(miCountFollowups, first);
            if (IsOutstanding(received, isRejected))
                Sum(mcTotalOutstanding, MoneyOf(rs->Fields(rebateAmount)), first);
            rs->MoveNext();
        }
        result = true;
    } catch (const VbError& error) {
        LogError(error, QStringLiteral("clsRebateStats"), QStringLiteral("GetStatistics()"),
                 QStringLiteral("Error Compiling Stats"));
        result = false;
    }
    return result;
}
