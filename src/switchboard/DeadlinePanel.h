#pragma once

#include <QDate>
#include <QString>
#include <QWidget>

class QLabel;
class QTreeWidget;

// The panel under the Switchboard's lists: unsent claims whose postmark deadline (Expiration
// Date) is within the chosen number of days or past (by at most kLateDays: older claims are
// given up, and stay on the Unsent list), most urgent first, with the days left.
// The options turn it off ("chkDeadlines") and set the days ("DeadlineDays").
class DeadlinePanel : public QWidget {
    Q_OBJECT
public:
    static constexpr int kLateDays = 30;

    explicit DeadlinePanel(QWidget* parent = nullptr);

    // Reads the options and the claims anew; hidden while the option is off. A failure of the
    // store is logged and leaves the panel empty.
    void Refresh();

    QLabel* lblDeadlines;
    QTreeWidget* lvDeadlines; // columns: days left, rebate, product, expiration date

Q_SIGNALS:
    // A double click or Enter on a claim.
    void OpenRequested(const QString& rebateID);
};
