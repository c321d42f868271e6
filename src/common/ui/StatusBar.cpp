#include "common/ui/StatusBar.h"

#include "common/core/Clock.h"
#include "common/core/Regional.h"
#include "common/ui/Forms.h"

#include <QLabel>
#include <QTimer>

namespace {
StatusBar* gStatusLineBar = nullptr;

void WriteStatusLine(const QString& text) {
    if (gStatusLineBar)
        gStatusLineBar->SetPanelText(3, text);
}

// A screen reader reads a panel by its name ("Date") and its text as the description.
void ShowText(QLabel* panel, const QString& text) {
    panel->setText(text);
    panel->setAccessibleDescription(text);
}

QLabel* MakePanel(QWidget* parent, const QString& name) {
    auto* panel = new QLabel(parent);
    panel->setObjectName(name);
    panel->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    panel->setContentsMargins(4, 0, 4, 0);
    return panel;
}
} // namespace

StatusBar::StatusBar(QWidget* parent) : QStatusBar(parent), mClock(new QTimer(this)) {
    setSizeGripEnabled(true);
    setAccessibleName(QStringLiteral("Status Bar"));
    for (int i = 0; i < PanelCount; ++i)
        mPanels[i] = MakePanel(this, QStringLiteral("Panel%1").arg(i + 1));
    mPanels[0]->setAccessibleName(QStringLiteral("Date"));
    mPanels[1]->setAccessibleName(QStringLiteral("Time"));
    mPanels[2]->setAccessibleName(QStringLiteral("Status"));
    ShowText(mPanels[2], QStringLiteral("Status..."));
    addWidget(mPanels[0]);
    addWidget(mPanels[1]);
    addWidget(mPanels[2], 1);
    connect(mClock, &QTimer::timeout, this, &StatusBar::UpdateClock);
    mClock->start(1000);
    UpdateClock();
}

StatusBar::~StatusBar() {
    if (gStatusLineBar == this) {
        gStatusLineBar = nullptr;
        StatusLine::Attach(nullptr);
    }
}

QLabel* StatusBar::Panels(int index) const {
    return index >= 1 && index <= PanelCount ? mPanels[index - 1] : nullptr;
}

QString StatusBar::PanelText(int index) const {
    const QLabel* panel = Panels(index);
    return panel ? panel->text() : QString();
}

void StatusBar::SetPanelText(int index, const QString& text) {
    if (QLabel* panel = Panels(index))
        ShowText(panel, text);
}

void StatusBar::AttachStatusLine() {
    gStatusLineBar = this;
    StatusLine::Attach(&WriteStatusLine);
}

void StatusBar::UpdateClock() {
    const QDateTime now = Now();
    ShowText(mPanels[0], Format(now.date(), QStringLiteral("m/d/yyyy")));
    ShowText(mPanels[1], Format(now, QStringLiteral("h:nn AM/PM")));
}
