#pragma once

#include <QWidget>

class QChartView;
class QLabel;

// The Savings page of the Switchboard: money received per month against money still
// outstanding, and the rebates by state, in charts, from the figures of the statistics.
class SavingsPage : public QWidget {
    Q_OBJECT
public:
    explicit SavingsPage(QWidget* parent = nullptr);

    // Reads the figures anew (one walk of the rows) and redraws both charts. A failure of the
    // store is logged and leaves the charts empty.
    void UpdateSavings();

    QLabel* lblSavingsTotals;
    QChartView* chtMonths; // bar sets "Received" and "Outstanding" over the months
    QChartView* chtStates; // one bar set "Amount" over the states, the bars lying
};
