#include "switchboard/DeadlinePanel.h"

#include "app/AppSettings.h"
#include "app/cLogErr.h"
#include "common/core/Clock.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "data/DeadlineQueries.h"

#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
constexpr int kVisibleRows = 5;

// "3 days", "1 day", "Today", "1 day late", "5 days late".
QString DaysLeftText(int days) {
    if (days == 0)
        return QStringLiteral("Today");
    const int count = std::abs(days);
    const QString text =
        count == 1 ? QStringLiteral("1 day") : QStringLiteral("%1 days").arg(count);
    return days > 0 ? text : text + QStringLiteral(" late");
}
} // namespace

DeadlinePanel::DeadlinePanel(QWidget* parent)
    : QWidget(parent), lblDeadlines(new QLabel), lvDeadlines(new QTreeWidget) {
    setObjectName(QStringLiteral("picDeadlines"));
    lblDeadlines->setObjectName(QStringLiteral("lblDeadlines"));
    lvDeadlines->setObjectName(QStringLiteral("lvDeadlines"));
    lvDeadlines->setAccessibleName(QStringLiteral("Postmark Deadlines"));
    lvDeadlines->setHeaderLabels({QStringLiteral("Days Left"), QStringLiteral("Rebate Name"),
                                  QStringLiteral("Product Name"),
                                  QStringLiteral("Expiration Date")});
    lvDeadlines->setRootIsDecorated(false);
    lvDeadlines->setUniformRowHeights(true);
    lvDeadlines->setAllColumnsShowFocus(true);
    lvDeadlines->header()->setStretchLastSection(false);
    lvDeadlines->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    lvDeadlines->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    lvDeadlines->setToolTip(QStringLiteral("Double-click a rebate or press Enter to open it"));
    lvDeadlines->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(lvDeadlines, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        if (item)
            Q_EMIT OpenRequested(item->data(0, Qt::UserRole).toString());
    });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(lblDeadlines);
    layout->addWidget(lvDeadlines);
}

void DeadlinePanel::Refresh() {
    lvDeadlines->clear();
    if (!ReadFlag(Setting::Deadlines)) {
        hide();
        return;
    }
    const int days = ReadWhole(Setting::DeadlineDays);
    const QDate today = Date();
    QList<DeadlineRow> rows;
    try {
        rows = ReadDeadlineRows(today.addDays(-kLateDays), today.addDays(days));
    } catch (const VbError& e) {
        LogError(e, QStringLiteral("frmSwitchboard"), QStringLiteral("DeadlinePanel::Refresh()"));
    }
    QList<QTreeWidgetItem*> items;
    items.reserve(rows.size());
    for (const DeadlineRow& row : rows) {
        const int left = static_cast<int>(today.daysTo(row.expDate));
        auto* item = new QTreeWidgetItem({DaysLeftText(left), row.rebateName, row.productName,
                                          Format(row.expDate, QStringLiteral("mm/dd/yyyy"))});
        item->setData(0, Qt::UserRole, row.rebateID);
        if (left < 0)
            for (int column = 0; column < 4; ++column)
                item->setForeground(column, QColor(0xB0, 0x00, 0x00));
        items.append(item);
    }
    lvDeadlines->addTopLevelItems(items);
    if (!items.isEmpty()) {
        lvDeadlines->setCurrentItem(items.first());
        // As high as its rows, up to a few; the lists above keep the room.
        const int rows = std::min(static_cast<int>(items.size()), kVisibleRows);
        lvDeadlines->setFixedHeight(lvDeadlines->header()->sizeHint().height() +
                                    lvDeadlines->sizeHintForRow(0) * rows +
                                    2 * lvDeadlines->frameWidth());
    }
    lvDeadlines->setVisible(!items.isEmpty());
    const QString within =
        days == 1 ? QStringLiteral("1 day") : QStringLiteral("%1 days").arg(days);
    lblDeadlines->setText(
        items.isEmpty()
            ? QStringLiteral("Postmark deadlines: no unsent rebate expires within %1.").arg(within)
            : QStringLiteral("Postmark deadlines: %1 unsent rebate%2 expiring within %3 or past.")
                  .arg(items.size())
                  .arg(items.size() == 1 ? QString() : QStringLiteral("s"))
                  .arg(within));
    show();
}
