#include "tools/frmCalendar.h"

#include "common/core/Clock.h"
#include "common/core/Globals.h"
#include "common/core/Regional.h"
#include "tools/ExecModal.h"

#include <QEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {
constexpr int kCells = 37;
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;

// The look of a day cell: today in red, the chosen day framed, the others plain black.
void StyleCell(QLabel* cell, bool today, bool chosen) {
    QString style = QStringLiteral("QLabel { color: %1; border: 1px solid %2; }")
                        .arg(today ? QStringLiteral("red") : QStringLiteral("black"),
                             chosen ? QStringLiteral("black") : QStringLiteral("transparent"));
    if (chosen)
        style += QStringLiteral("QLabel { background: palette(base); }");
    cell->setStyleSheet(style);
}
} // namespace

frmCalendar::frmCalendar(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmCalendar"));
    setWindowTitle(QStringLiteral("Calendar"));

    auto* layout = new QVBoxLayout(this);
    auto* header = new QHBoxLayout;
    auto moveButton = [this, header](const char* name, QStyle::StandardPixmap icon,
                                     const QString& tip, void (frmCalendar::*click)()) {
        auto* button = new QPushButton(this);
        button->setObjectName(QLatin1String(name));
        button->setIcon(style()->standardIcon(icon));
        button->setToolTip(tip);
        button->setAccessibleName(tip);
        button->setAutoDefault(false);
        button->setFocusPolicy(Qt::TabFocus);
        connect(button, &QPushButton::clicked, this, click);
        header->addWidget(button);
        return button;
    };
    moveButton("cmdYearBack", QStyle::SP_MediaSkipBackward, QStringLiteral("Go back one year"),
               &frmCalendar::cmdYearBack_Click);
    moveButton("cmdMonthBack", QStyle::SP_MediaSeekBackward, QStringLiteral("Go back one month"),
               &frmCalendar::cmdMonthBack_Click);
    lblMonth = new QLabel(this);
    lblMonth->setObjectName(QStringLiteral("lblMonth"));
    lblMonth->setAlignment(Qt::AlignCenter);
    QFont bold = lblMonth->font();
    bold.setBold(true);
    lblMonth->setFont(bold);
    header->addWidget(lblMonth, 1);
    moveButton("cmdMonthForward", QStyle::SP_MediaSeekForward,
               QStringLiteral("Go forward one month"), &frmCalendar::cmdMonthForward_Click);
    moveButton("cmdYearAhead", QStyle::SP_MediaSkipForward, QStringLiteral("Go forward one year"),
               &frmCalendar::cmdYearAhead_Click);
    layout->addLayout(header);

    auto* fraCalendar = new QFrame(this);
    fraCalendar->setObjectName(QStringLiteral("fraCalendar"));
    fraCalendar->setFrameShape(QFrame::StyledPanel);
    fraCalendar->setFocusPolicy(Qt::StrongFocus);
    fraCalendar->setAccessibleName(QStringLiteral("Days of the month"));
    auto* grid = new QGridLayout(fraCalendar);
    grid->setSpacing(2);
    const QStringList days = {QStringLiteral("Su"), QStringLiteral("Mo"), QStringLiteral("Tu"),
                              QStringLiteral("We"), QStringLiteral("Th"), QStringLiteral("Fr"),
                              QStringLiteral("Sa")};
    for (int column = 0; column < days.size(); ++column) {
        auto* label = new QLabel(days[column], fraCalendar);
        label->setObjectName(QStringLiteral("Label1_%1").arg(column));
        label->setAlignment(Qt::AlignCenter);
        label->setFont(bold);
        grid->addWidget(label, 0, column);
    }
    for (int index = 0; index < kCells; ++index) {
        auto* cell = new QLabel(fraCalendar);
        cell->setObjectName(QStringLiteral("Label3_%1").arg(index));
        cell->setAlignment(Qt::AlignCenter);
        cell->setMinimumSize(32, 24);
        cell->installEventFilter(this);
        // A hidden cell keeps its place, so the grid doesn't move when a month is shorter.
        QSizePolicy policy = cell->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        cell->setSizePolicy(policy);
        grid->addWidget(cell, 1 + index / 7, index % 7);
        Label3.append(cell);
    }
    layout->addWidget(fraCalendar, 1);

    auto* buttons = new QHBoxLayout;
    auto button = [this, buttons](const char* name, const QString& caption,
                                  void (frmCalendar::*click)()) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(QLatin1String(name));
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, click);
        buttons->addWidget(b);
        return b;
    };
    button("cmdToday", QStringLiteral("&Today"), &frmCalendar::cmdToday_Click);
    button("cmdReset", QStringLiteral("&Reset"), &frmCalendar::cmdReset_Click);
    buttons->addStretch(1);
    cmdOK = button("cmdOK", QStringLiteral("&OK"), &frmCalendar::cmdOK_Click);
    cmdCancel = button("cmdCancel", QStringLiteral("&Cancel"), &frmCalendar::cmdCancel_Click);
    cmdOK->setDefault(true);
    layout->addLayout(buttons);

    // The form sees the moving keys before its buttons.
    installEventFilter(this);
    for (QWidget* child : findChildren<QWidget*>())
        child->installEventFilter(this);
    fraCalendar->setFocus();
}

void frmCalendar::ShowModal(QWidget* owner) {
    frmCalendar form(owner);
    ExecModal(form);
}

void frmCalendar::showEvent(QShowEvent* event) {
    // Each opening starts on the date handed in, or on today.
    cmdReset_Click();
    QDialog::showEvent(event);
}

void frmCalendar::MoveTo(const QDate& date) {
    if (!date.isValid() || date.year() < kFirstYear || date.year() > kLastYear)
        return;
    const bool sameMonth =
        msFirst.isValid() && date.year() == msFirst.year() && date.month() == msFirst.month();
    msDate = date;
    if (!sameMonth) {
        msFirst = QDate(msDate.year(), msDate.month(), 1);
        FillMonth();
    }
    MarkCells();
}

void frmCalendar::ShowCaptions() {
    lblMonth->setText(Format(msDate, QStringLiteral("mmmm")).toUpper());
    setWindowTitle(QStringLiteral("Calendar - ") + Format(msDate, QStringLiteral("mmmm d, yyyy")));
}

void frmCalendar::FillMonth() {
    ShowCaptions();
    for (QLabel* cell : Label3)
        cell->hide();
    const int start = msFirst.dayOfWeek() % 7; // Sunday in the first column
    const int days = msFirst.daysInMonth();
    for (int day = 0; day < days; ++day) {
        QLabel* cell = Label3[start + day];
        cell->setText(QString::number(day + 1));
        cell->show();
    }
}

void frmCalendar::MarkCells() {
    ShowCaptions();
    const QDate today = Date();
    const bool thisMonth = today.year() == msDate.year() && today.month() == msDate.month();
    const QString todayText = QString::number(today.day());
    const QString chosenText = QString::number(msDate.day());
    for (QLabel* cell : Label3) {
        const bool shown = !cell->isHidden();
        StyleCell(cell, shown && thisMonth && cell->text() == todayText,
                  shown && cell->text() == chosenText);
        cell->setAccessibleName(cell->text());
    }
}

void frmCalendar::cmdToday_Click() {
    MoveTo(Date());
}

void frmCalendar::cmdReset_Click() {
    if (gsCalendarDate.isEmpty())
        gsCalendarDate = Format(Date(), QStringLiteral("mm/dd/yyyy"));
    const auto date = Regional::ParseDate(gsCalendarDate);
    msFirst = QDate();
    MoveTo(date ? *date : Date());
}

void frmCalendar::Label3_Click(int index) {
    QLabel* cell = Label3.value(index);
    if (!cell || cell->isHidden())
        return;
    msDate = QDate(msDate.year(), msDate.month(), cell->text().toInt());
    MarkCells();
}

void frmCalendar::cmdOK_Click() {
    gsCalendarDate = Format(msDate, QStringLiteral("mm/dd/yyyy"));
    if (gCalendarTarget)
        gCalendarTarget->setProperty("text", gsCalendarDate);
    gCalendarTarget.clear();
    accept();
}

void frmCalendar::cmdCancel_Click() {
    reject();
}

void frmCalendar::reject() {
    gsCalendarDate.clear();
    QDialog::reject();
}

bool frmCalendar::MoveKey(int key, Qt::KeyboardModifiers modifiers) {
    const bool ctrl = modifiers & Qt::ControlModifier;
    switch (key) {
    case Qt::Key_Left:
        MoveTo(msDate.addDays(-1));
        return true;
    case Qt::Key_Right:
        MoveTo(msDate.addDays(1));
        return true;
    case Qt::Key_Up:
        MoveTo(msDate.addDays(-7));
        return true;
    case Qt::Key_Down:
        MoveTo(msDate.addDays(7));
        return true;
    case Qt::Key_PageUp:
        MoveTo(ctrl ? msDate.addYears(-1) : msDate.addMonths(-1));
        return true;
    case Qt::Key_PageDown:
        MoveTo(ctrl ? msDate.addYears(1) : msDate.addMonths(1));
        return true;
    case Qt::Key_Home:
        MoveTo(msFirst);
        return true;
    case Qt::Key_End:
        MoveTo(QDate(msFirst.year(), msFirst.month(), msFirst.daysInMonth()));
        return true;
    case Qt::Key_Escape:
        cmdCancel_Click();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Enter on a button presses that button; anywhere else it is OK.
        if (qobject_cast<QPushButton*>(focusWidget()) && focusWidget() != cmdOK)
            return false;
        cmdOK_Click();
        return true;
    default:
        return false;
    }
}

bool frmCalendar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (MoveKey(key->key(), key->modifiers()))
            return true;
    } else if (event->type() == QEvent::MouseButtonRelease) {
        if (const int index = Label3.indexOf(qobject_cast<QLabel*>(watched)); index >= 0) {
            Label3_Click(index);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
