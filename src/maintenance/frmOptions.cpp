#include "maintenance/frmOptions.h"
#include "maintenance/Maintenance.h"

#include "app/AppSettings.h"
#include "app/Compaction.h"
#include "app/Notifier.h"
#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Regional.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"
#include "common/ui/TabStrip.h"
#include "data/Database.h"
#include "maintenance/frmLogViewer.h"
#include "maintenance/frmPurge.h"

#include <QCheckBox>
#include <QFocusEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {
template <class T> T* Named(T* widget, const char* name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QLabel* Picture(const char* name, const QString& iconKey) {
    auto* label = Named(new QLabel, name);
    label->setPixmap(ImageList::Render(ImageList::ResourceFor(iconKey), 32));
    label->setAlignment(Qt::AlignTop);
    return label;
}

// A framed group: the picture at the left, the controls beside it.
QGroupBox* Frame(const char* name, const QString& caption, QLabel* picture,
                 const QList<QWidget*>& controls) {
    auto* frame = Named(new QGroupBox(caption), name);
    auto* row = new QHBoxLayout(frame);
    row->addWidget(picture);
    auto* column = new QVBoxLayout;
    for (QWidget* control : controls)
        column->addWidget(control);
    row->addLayout(column, 1);
    return frame;
}

// A label and the field it names, side by side at the left of a row.
QWidget* LabelledRow(const char* name, const QString& caption, QWidget* field) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* label = Named(new QLabel(caption), name);
    label->setBuddy(field);
    layout->addWidget(label);
    layout->addWidget(field);
    layout->addStretch(1);
    return row;
}
} // namespace

frmOptions::frmOptions(QWidget* parent)
    : QDialog(parent), tbsTabs(Named(new TabStrip, "tbsTabs")),
      chkSound(Named(new QCheckBox(QStringLiteral(
                         "Play &Music on Startup and in the About Vantry! Vantry! Dialog Box.")),
                     "chkSound")),
      chkTips(Named(new QCheckBox(QStringLiteral("Show &Tip of the Day at startup.")), "chkTips")),
      chkAlarm(Named(
          new QCheckBox(QStringLiteral("&When starting Vantry! Vantry!, display overdue rebates.")),
          "chkAlarm")),
      chkErrorLogging(Named(new QCheckBox(QStringLiteral("&Log Errors (bugs!) for tech support.")),
                            "chkErrorLogging")),
      Postage(Named(new QLineEdit, "Postage")),
      spnBackupsKept(Named(new QSpinBox, "spnBackupsKept")),
      chkDeadlines(
          Named(new QCheckBox(QStringLiteral(
                    "Show unsent rebates near their &postmark deadline on the Switchboard.")),
                "chkDeadlines")),
      DeadlineDays(Named(new QSpinBox, "DeadlineDays")),
      cmdRepair(Named(new QPushButton(QStringLiteral("Compact/Repair Database...")), "cmdRepair")),
      cmdRecordMgr(Named(new QPushButton(QStringLiteral("&Deleted Records...")), "cmdRecordMgr")),
      cmdViewLog(Named(new QPushButton(QStringLiteral("&View Error Log...")), "cmdViewLog")),
      cmdOK(Named(new QPushButton(QStringLiteral("&OK")), "cmdOK")),
      cmdCancel(Named(new QPushButton(QStringLiteral("&Cancel")), "cmdCancel")),
      cmdApply(Named(new QPushButton(QStringLiteral("&Apply")), "cmdApply")) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    setWindowIcon(ImageList::Render(ImageList::ResourceFor(QStringLiteral("Options")), 32));

    tbsTabs->Tabs().Add(QStringLiteral("Startup"), QStringLiteral("Startup"), QString(), QString());
    tbsTabs->Tabs().Add(QStringLiteral("General"), QStringLiteral("General"), QString(), QString());

    picOptions[0] = Named(new QWidget, "picOptions_0");
    auto* startup = new QVBoxLayout(picOptions[0]);
    startup->addWidget(Frame("fra1", QStringLiteral("Sound"),
                             Picture("imgSound", QStringLiteral("Sound")), {chkSound}));
    startup->addWidget(Frame("frmTipoftheDay", QStringLiteral("Tip of the Day"),
                             Picture("imgTip", QStringLiteral("Tip")), {chkTips}));
    startup->addWidget(Frame("fraAlarms", QStringLiteral("Alarms"),
                             Picture("imgAlarm", QStringLiteral("Overdue")), {chkAlarm}));
    DeadlineDays->setRange(0, kMaxDays);
    connect(chkDeadlines, &QCheckBox::toggled, DeadlineDays, &QWidget::setEnabled);
    startup->addWidget(Frame(
        "fraDeadlines", QStringLiteral("Postmark Deadlines"),
        Picture("imgDeadlines", QStringLiteral("Unsent")),
        {chkDeadlines, LabelledRow("lblDeadlineDays", QStringLiteral("Days &before the deadline:"),
                                   DeadlineDays)}));
    startup->addStretch(1);

    picOptions[1] = Named(new QWidget, "picOptions_1");
    auto* general = new QVBoxLayout(picOptions[1]);
    auto* lblPurgeDesc =
        Named(new QLabel(QStringLiteral("You can compact and repair your database, purge deleted "
                                        "records, or recover deleted records if they haven't been "
                                        "purged yet.")),
              "lblPurgeDesc");
    lblPurgeDesc->setWordWrap(true);
    for (QPushButton* button : {cmdRepair, cmdRecordMgr})
        button->setToolTip(QStringLiteral("Open the deleted record manager"));
    auto* purgeButtons = new QWidget;
    auto* purgeRow = new QHBoxLayout(purgeButtons);
    purgeRow->setContentsMargins(0, 0, 0, 0);
    purgeRow->addWidget(cmdRepair);
    purgeRow->addWidget(cmdRecordMgr);
    purgeRow->addStretch(1);
    general->addWidget(Frame("fraPurge", QStringLiteral("Record Recovery and Purging"),
                             Picture("imgPurge", QStringLiteral("Delete")),
                             {lblPurgeDesc, purgeButtons}));
    auto* logRow = new QWidget;
    auto* logLayout = new QHBoxLayout(logRow);
    logLayout->setContentsMargins(0, 0, 0, 0);
    logLayout->addWidget(chkErrorLogging, 1);
    logLayout->addWidget(cmdViewLog);
    general->addWidget(Frame("frmErrorLogging", QStringLiteral("Error Logging"),
                             Picture("imgBugs", QStringLiteral("Log")), {logRow}));
    Postage->setMaximumWidth(100);
    general->addWidget(
        Frame("Frame1", QStringLiteral("Postage"), Picture("imgStamp", QStringLiteral("Paid")),
              {LabelledRow("lblPostage", QStringLiteral("&Default postage amount:"), Postage)}));
    spnBackupsKept->setRange(1, 999);
    general->addWidget(Frame(
        "fraBackups", QStringLiteral("Backups"), Picture("imgBackups", QStringLiteral("Save")),
        {LabelledRow("lblBackupsKept", QStringLiteral("&Backups of the database to keep:"),
                     spnBackupsKept)}));
    general->addStretch(1);

    tbsTabs->AddPage(picOptions[0]);
    tbsTabs->AddPage(picOptions[1]);

    auto* picButtons = Named(new QWidget, "picButtons");
    auto* buttons = new QHBoxLayout(picButtons);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addStretch(1);
    for (QPushButton* button : {cmdOK, cmdCancel, cmdApply}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    cmdOK->setDefault(true);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tbsTabs, 1);
    layout->addWidget(picButtons);
    setMinimumSize(480, 520);

    connect(tbsTabs, &TabStrip::Click, this, &frmOptions::tbsTabs_Click);
    for (QCheckBox* box : {chkSound, chkTips, chkAlarm, chkErrorLogging, chkDeadlines})
        connect(box, &QCheckBox::toggled, this, &frmOptions::Changed);
    connect(DeadlineDays, &QSpinBox::valueChanged, this, &frmOptions::Changed);
    connect(Postage, &QLineEdit::textChanged, this, &frmOptions::Changed);
    connect(spnBackupsKept, &QSpinBox::valueChanged, this, &frmOptions::Changed);
    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmOptions::cmdCancel_Click);
    connect(cmdApply, &QPushButton::clicked, this, &frmOptions::cmdApply_Click);
    connect(cmdRepair, &QPushButton::clicked, this, &frmOptions::cmdRepair_Click);
    connect(cmdRecordMgr, &QPushButton::clicked, this, &frmOptions::cmdRecordMgr_Click);
    connect(cmdViewLog, &QPushButton::clicked, this, &frmOptions::cmdViewLog_Click);
    Postage->installEventFilter(this);
    auto* nextPage = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this);
    connect(nextPage, &QShortcut::activated, this, [this] { TurnPage(1); });
    auto* previousPage = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), this);
    connect(previousPage, &QShortcut::activated, this, [this] { TurnPage(-1); });
    auto* previousPage2 = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), this);
    connect(previousPage2, &QShortcut::activated, this, [this] { TurnPage(-1); });

    tbsTabs_Click();
    LoadData();
    mbDirty = false;
}

void frmOptions::LoadData() {
    const BusyState busy(QStringLiteral("Loading data..."));
    Postage->setText(ReadSetting(Setting::Postage));
    spnBackupsKept->setValue(ReadWhole(Setting::BackupsKept));
    const std::pair<QCheckBox*, const SettingSpec*> boxes[] = {
        {chkSound, &Setting::Sound},
        {chkTips, &Setting::Tips},
        {chkAlarm, &Setting::Alarm},
        {chkErrorLogging, &Setting::ErrorLogging},
        {chkDeadlines, &Setting::Deadlines}};
    for (const auto& [box, setting] : boxes)
        box->setChecked(ReadFlag(*setting));
    DeadlineDays->setValue(ReadWhole(Setting::DeadlineDays));
    DeadlineDays->setEnabled(chkDeadlines->isChecked());
    cmdApply->setEnabled(false);
}

void frmOptions::SaveData() {
    BusyState busy(QStringLiteral("Saving..."));
    try {
        WriteSetting(Setting::Postage, Postage->text());
        Postage->setModified(false);
        WriteSetting(Setting::BackupsKept, QString::number(spnBackupsKept->value()));
        const std::pair<QCheckBox*, const SettingSpec*> boxes[] = {
            {chkTips, &Setting::Tips},
            {chkErrorLogging, &Setting::ErrorLogging},
            {chkAlarm, &Setting::Alarm},
            {chkSound, &Setting::Sound},
            {chkDeadlines, &Setting::Deadlines}};
        for (const auto& [box, setting] : boxes)
            WriteSetting(*setting, box->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
        WriteSetting(Setting::DeadlineDays, QString::number(DeadlineDays->value()));
        Q_EMIT Notifier::Instance().OptionsChanged();
    } catch (const VbError& error) {
        busy.Failed(QStringLiteral("Saving..."));
        LogError(error, objectName(), QStringLiteral("SaveData()"),
                 QStringLiteral("Unable to Save Option Settings"));
    }
}

void frmOptions::Changed() {
    mbDirty = true;
    cmdApply->setEnabled(true);
}

bool frmOptions::Postage_Validate() {
    const QString text = Postage->text();
    if (text.isEmpty())
        return true;
    std::optional<Currency> value;
    try {
        value = Regional::ParseCurrency(text);
    } catch (const VbError&) {
        // Beyond the currency range: no postage.
    }
    if (!value) {
        MsgBox(QStringLiteral("Please enter a valid postage amount."), vb::vbOKOnly,
               QStringLiteral("Invalid Amount"));
        Postage->setFocus(Qt::OtherFocusReason);
        Postage->selectAll();
        return false;
    }
    Postage->setText(Format(QVariant::fromValue(*value), QStringLiteral("$0.00")));
    return true;
}

bool frmOptions::eventFilter(QObject* watched, QEvent* event) {
    if (watched == Postage && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        const bool printable = !text.isEmpty() && text.at(0).isPrint() &&
                               !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
        if (printable && !text.at(0).isDigit() && text != QStringLiteral(".") &&
            text != QStringLiteral("$"))
            return true; // dropped, as the field takes only money
    } else if (watched == Postage && event->type() == QEvent::FocusIn) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
            reason == Qt::ShortcutFocusReason)
            Postage->selectAll();
    } else if (watched == Postage && event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        // A box or menu that comes up takes the focus for a moment: that is no leaving.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
            isVisible() && !Postage_Validate())
            mPostageRefused = true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmOptions::cmdApply_Click() {
    if (std::exchange(mPostageRefused, false) || !Postage_Validate())
        return;
    SaveData();
    cmdApply->setEnabled(false);
}

void frmOptions::cmdOK_Click() {
    if (std::exchange(mPostageRefused, false) || !Postage_Validate())
        return;
    SaveData();
    cmdApply->setEnabled(false);
    accept();
}

void frmOptions::cmdCancel_Click() {
    mPostageRefused = false;
    reject();
}

void frmOptions::cmdRepair_Click() {
    if (std::exchange(mPostageRefused, false))
        return;
    const int answer =
        MsgBox(QStringLiteral("Are you sure you want to compact/repair your database? ") +
                   QStringLiteral("\r\n\r\n") +
                   QStringLiteral(
                       "It's a good idea to do this occasionally if you delete a lot of records."),
               vb::vbOKCancel | vb::vbQuestion | vb::vbDefaultButton2,
               QStringLiteral("Ready to Compact/Repair Database"));
    if (answer == vb::vbCancel)
        return;
    if (IsFormLoaded(QStringLiteral("frmRebate"))) {
        // The open rebate holds its record on the connection that compaction closes: what
        // the user typed there could no longer be saved.
        MsgBox(QStringLiteral("Please close the open rebate before you compact and repair the "
                              "database, so that nothing you typed there is lost."),
               vb::vbExclamation, QStringLiteral("Rebate Open"));
        return;
    }
    bool result = false;
    {
        // The compaction writes its own status texts.
        const BusyState busy(QString(), nullptr);
        result = CompactRebateDatabase(SetStatusText);
    }
    if (gDatabase && gDatabase->IsOpen())
        Q_EMIT Notifier::Instance().DatabaseReopened();
    Beep();
    if (result)
        MsgBox(QStringLiteral("Your database has been compacted and repaired."), vb::vbInformation,
               QStringLiteral("Finished!"));
    else
        MsgBox(QStringLiteral("The repair and compaction of the database failed. The database "
                              "may be in an unusable state."),
               vb::vbCritical, QStringLiteral("Repair Failed"));
}

void frmOptions::cmdRecordMgr_Click() {
    if (std::exchange(mPostageRefused, false))
        return;
    frmPurge manager(this);
    Maintenance::RunModal(manager);
}

void frmOptions::cmdViewLog_Click() {
    if (std::exchange(mPostageRefused, false))
        return;
    BusyState busy(QStringLiteral("Getting error log..."));
    QString log;
    try {
        log = gErrorLog ? gErrorLog->Display() : QString();
    } catch (const VbError& error) {
        busy.Failed(QStringLiteral("Error..."));
        LogError(error, objectName(), QStringLiteral("cmdViewLog_Click"));
        return;
    }
    if (log.isEmpty()) {
        busy.Done(QStringLiteral("No error log found..."));
        MsgBox(QStringLiteral("No logged errors found."), vb::vbInformation,
               QStringLiteral("No Results"));
        return;
    }
    frmLogViewer viewer(this);
    viewer.ShowLog(QStringLiteral("Error Log for Vantry! Vantry!\r\n\r\n") + log);
    busy.Done();
    Maintenance::RunModal(viewer);
}

void frmOptions::tbsTabs_Click() {
    const Tab* selected = tbsTabs->SelectedItem();
    for (int i = 0; i < 2; ++i)
        picOptions[i]->setVisible(selected && selected->Index() == i + 1);
}

void frmOptions::TurnPage(int step) {
    const int count = tbsTabs->Tabs().Count();
    const Tab* selected = tbsTabs->SelectedItem();
    const int index = selected ? selected->Index() : 1;
    const int next = (index - 1 + step + count) % count + 1;
    tbsTabs->Tabs().Item(next)->SetSelected(true);
}
