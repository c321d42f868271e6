#include "switchboard/SavingsPage.h"

#include "app/SavingsFigures.h"
#include "app/cLogErr.h"
#include "common/core/Clock.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QHBoxLayout>
#include <QHorizontalBarSeries>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QValueAxis>

namespace {
QChartView* NewChartView(const char* name, const QString& title) {
    auto* chart = new QChart;
    chart->setTitle(title);
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->legend()->setAlignment(Qt::AlignBottom);
    chart->setMargins(QMargins(4, 4, 4, 4));
    auto* view = new QChartView(chart);
    view->setObjectName(QLatin1String(name));
    view->setRenderHint(QPainter::Antialiasing);
    view->setMinimumSize(300, 300);
    return view;
}

// Replaces the chart's series and axes with bars of the sets over the categories, standing or
// (with the categories down the left) lying.
void ShowBars(QChart* chart, const QStringList& categories, const QList<QBarSet*>& sets,
              bool lying) {
    chart->removeAllSeries();
    for (QAbstractAxis* axis : chart->axes()) {
        chart->removeAxis(axis);
        delete axis; // the chart gives a removed axis back instead of deleting it
    }
    QAbstractBarSeries* series =
        lying ? static_cast<QAbstractBarSeries*>(new QHorizontalBarSeries) : new QBarSeries;
    double top = 0;
    for (QBarSet* set : sets) {
        series->append(set);
        for (int i = 0; i < set->count(); ++i)
            top = std::max(top, set->at(i));
    }
    chart->addSeries(series);
    auto* x = new QBarCategoryAxis;
    x->append(categories);
    // Standing bars: "Nov 2026" under each month fits only when the labels stand upright too.
    if (!lying)
        x->setLabelsAngle(-90);
    chart->addAxis(x, lying ? Qt::AlignLeft : Qt::AlignBottom);
    series->attachAxis(x);
    auto* y = new QValueAxis;
    y->setLabelFormat(QStringLiteral("$%.0f"));
    y->setRange(0, top > 0 ? top : 1);
    y->applyNiceNumbers();
    chart->addAxis(y, lying ? Qt::AlignBottom : Qt::AlignLeft);
    series->attachAxis(y);
}
} // namespace

SavingsPage::SavingsPage(QWidget* parent)
    : QWidget(parent), lblSavingsTotals(new QLabel),
      chtMonths(NewChartView("chtMonths", QStringLiteral("Received and Outstanding by Month"))),
      chtStates(NewChartView("chtStates", QStringLiteral("Rebates by State"))) {
    lblSavingsTotals->setObjectName(QStringLiteral("lblSavingsTotals"));
    // Below the size at which their labels can be read, the charts scroll rather than shrink.
    auto* sheet = new QWidget;
    auto* charts = new QHBoxLayout(sheet);
    charts->setContentsMargins(0, 0, 0, 0);
    charts->addWidget(chtMonths, 3);
    charts->addWidget(chtStates, 2);
    chtMonths->setMinimumWidth(420);
    auto* scroller = new QScrollArea;
    scroller->setObjectName(QStringLiteral("scrSavings"));
    scroller->setWidgetResizable(true);
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidget(sheet);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(lblSavingsTotals);
    layout->addWidget(scroller, 1);
}

void SavingsPage::UpdateSavings() {
    SavingsFigures figures;
    try {
        figures = ReadSavingsFigures(Date());
    } catch (const VbError& e) {
        LogError(e, QStringLiteral("frmSwitchboard"), QStringLiteral("UpdateSavings()"));
    }
    const auto money = [](Currency value) {
        return FormatCurrency(QVariant::fromValue(value));
    };
    lblSavingsTotals->setText(
        QStringLiteral("Received: %1    Outstanding: %2")
            .arg(money(figures.totalReceived), money(figures.totalOutstanding)));

    QStringList months;
    auto* received = new QBarSet(QStringLiteral("Received"));
    auto* outstanding = new QBarSet(QStringLiteral("Outstanding"));
    received->setColor(QColor(0x2E, 0x7D, 0x32));
    outstanding->setColor(QColor(0xEF, 0x6C, 0x00));
    for (const SavingsMonth& month : figures.months) {
        months.append(month.label);
        received->append(month.received.ToDouble());
        outstanding->append(month.outstanding.ToDouble());
    }
    ShowBars(chtMonths->chart(), months, {received, outstanding}, false);

    QStringList states;
    auto* amount = new QBarSet(QStringLiteral("Amount"));
    amount->setColor(QColor(0x1F, 0x3A, 0x5F));
    // Lying bars stand from the bottom up: the last state goes first, so that they read in the
    // order of the tabs from the top.
    for (auto it = figures.states.crbegin(); it != figures.states.crend(); ++it) {
        states.append(QStringLiteral("%1 (%2)").arg(it->state).arg(it->count));
        amount->append(it->amount.ToDouble());
    }
    ShowBars(chtStates->chart(), states, {amount}, true);
}
