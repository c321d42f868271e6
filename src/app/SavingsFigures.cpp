#include "app/SavingsFigures.h"

#include "app/clsRebateStats.h"
#include "common/core/VbError.h"
#include "data/RebateQueries.h"
#include "data/RebateStatus.h"
#include "data/ScannedRow.h"

#include <QMap>
#include <array>

namespace {
const QString kNoDate = QStringLiteral("No date");

// The month of a date value as yyyymm; 0 for Null or a value that is no date.
int MonthKey(const QVariant& value) {
    if (value.metaType().id() != QMetaType::QDate || !value.toDate().isValid())
        return 0;
    const QDate date = value.toDate();
    return date.year() * 100 + date.month();
}

QString MonthLabel(int key) {
    return QDate(key / 100, key % 100, 1).toString(QStringLiteral("MMM yyyy"));
}

constexpr std::array<const char*, 6> kStates{"Unsent", "Pending",  "Overdue",
                                             "Paid",   "Followup", "Rejected"};
} // namespace

SavingsFigures ReadSavingsFigures(const QDate& today) {
    using namespace RebateQueries::ListColumn;
    using RebateQueries::SavingsColumn::RebateAmount;
    QMap<int, SavingsMonth> byMonth; // key 0: no date
    std::array<SavingsState, kStates.size()> byState{};
    SavingsFigures figures;
    RebateQueries::ForEachSavingsRow([&](const ScannedRow& row) {
        const Currency money = clsRebateStats::Money(row, AmountReceived);
        if (money.Raw() != 0) {
            figures.totalReceived += money;
            SavingsMonth& month = byMonth[MonthKey(row.Fields(DateReceived))];
            month.received += money;
        }
        const Currency promised = clsRebateStats::Money(row, RebateAmount);
        if (clsRebateStats::IsOutstanding(row, AmountReceived, Rejected)) {
            figures.totalOutstanding += promised;
            SavingsMonth& month = byMonth[MonthKey(row.Fields(DateDue))];
            month.outstanding += promised;
        }
        QString status;
        try {
            status = GetRebateStatus(row, today);
        } catch (const VbError&) {
            return; // a value that can't be compared puts the row in no state
        }
        for (size_t i = 0; i < kStates.size(); ++i) {
            if (status == QLatin1String(kStates[i])) {
                ++byState[i].count;
                byState[i].amount += status == QLatin1String("Paid") ? money : promised;
            }
        }
    });

    if (const auto none = byMonth.constFind(0); none != byMonth.constEnd()) {
        figures.months.append({kNoDate, none->received, none->outstanding});
        byMonth.remove(0);
    }
    // The months shown run without a gap: a month with nothing is an empty place on the axis.
    if (!byMonth.isEmpty()) {
        const int last = byMonth.lastKey();
        const int months = (last / 100) * 12 + last % 100 - 1;
        for (int back = 1; back < kSavingsMonths; ++back) {
            const int month = months - back;
            const int key = (month / 12) * 100 + month % 12 + 1;
            if (key < byMonth.firstKey())
                break;
            if (!byMonth.contains(key))
                byMonth.insert(key, SavingsMonth{});
        }
    }
    if (byMonth.size() > kSavingsMonths) {
        SavingsMonth earlier{QStringLiteral("Earlier"), {}, {}};
        while (byMonth.size() > kSavingsMonths) {
            const SavingsMonth first = byMonth.first();
            earlier.received += first.received;
            earlier.outstanding += first.outstanding;
            byMonth.erase(byMonth.begin());
        }
        figures.months.append(earlier);
    }
    for (auto it = byMonth.constBegin(); it != byMonth.constEnd(); ++it)
        figures.months.append({MonthLabel(it.key()), it->received, it->outstanding});
    for (size_t i = 0; i < kStates.size(); ++i) {
        if (byState[i].count > 0) {
            byState[i].state = QString::fromLatin1(kStates[i]);
            figures.states.append(byState[i]);
        }
    }
    return figures;
}
