#include "maintenance/frmTip.h"

#include "app/AppSettings.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/ui/Help.h"
#include "common/ui/ImageList.h"

#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTimer>
#include <QVBoxLayout>

QPixmap ManPicture(int number, int size) {
    return ImageList::Render(QStringLiteral(":/icons/man%1.svg").arg(number), size);
}

const QStringList& frmTip::AllTips() {
    static const QStringList tips = {
        QStringLiteral("To send e-mail to KVX, click on the 'Help' item on the menu, then click "
                       "on 'About Vantry! Vantry!'  Click on the 'E-mail KVX' button to open "
                       "your default e-mail package. (Note: this may not work with proprietary "
                       "e-mail clients used by online services such as America Online.)"),
        QStringLiteral("To visit the KVX home page, click on the 'Help' item on the menu, then "
                       "click on 'About Vantry! Vantry!'  Click on the 'KVX Web Page' button to "
                       "open KVX's home page in your default browser. Or better yet, just click "
                       "the KVX Web Page button on the main toolbar."),
        QStringLiteral("To visit Thrift Courier on the web, click on the 'Help' item on the menu, "
                       "then click 'Thrift Courier on the web'. Or better yet, just click the TCR "
                       "Web Page button on the main toolbar."),
        QStringLiteral("Everything's BIG in Texas!"),
        QStringLiteral("Clicking a field's label will automatically move the cursor to that "
                       "field and highlight the text."),
        QStringLiteral("You can make more memory available by closing applications and "
                       "terminate-and-stay-resident (TSR) programs that you aren't using."),
        QStringLiteral("Pressing TAB will move the cursor to the next field in a form. Pressing "
                       "SHIFT+TAB will move to the previous field."),
        QStringLiteral("Pressing 't' while in a date field will insert the current date."),
        QStringLiteral("Pressing 'y' while in a date field will insert yesterday's date."),
        QStringLiteral("Pressing '-' while in a date field will subtract one day from the date in "
                       "the field."),
        QStringLiteral("Pressing '+' or '=' while in a date field will add one day to the date in "
                       "the field."),
        QStringLiteral("Pressing 'w' while in the Date Due field will open the Week Converter. "
                       "This utility will convert the number of weeks until the rebate is due "
                       "into a date."),
        QStringLiteral("Pressing F5 will refresh the icons displayed in the Switchboard."),
        QStringLiteral("Pressing SPACEBAR while in a checkbox will toggle between checked and "
                       "unchecked."),
        QStringLiteral("Pressing the F2 key will highlight all text in the current field."),
        QStringLiteral("You can copy the contents of a field to the clipboard by highlighting the "
                       "text and then pressing CTRL+C."),
        QStringLiteral("You can cut the contents of a field by highlighting the text and then "
                       "pressing CTRL+X. This will delete the data from the current selection "
                       "while copying it to the clipboard."),
        QStringLiteral("Pressing the 'c' key while in a currency field will open a calculator."),
        QStringLiteral("Pressing ALT+Z while in a non-date text field will open a zoom box with "
                       "the contents of the field displayed."),
        QStringLiteral("Using the keyboard, you can undo changes in some text fields by pressing "
                       "CTRL+Z."),
        QStringLiteral("You can paste the contents of the clipboard by pressing CTRL+V."),
        QStringLiteral("You can run the Find function from the Switchboard by pressing CTRL+F or "
                       "the F7 Key."),
        QStringLiteral("Right-clicking on a rebate icon in the Switchboard will open a "
                       "context-sensitive popup menu for commonly used actions."),
        QStringLiteral("Typing a letter while in the Switchboard will take you to the closest "
                       "rebate icon beginning with that letter. Typing the letter again will take "
                       "you to the next match."),
        QStringLiteral("You can change the size of the icons on the Main Window toolbar by "
                       "right-clicking on the toolbar and selecting the icon size (small or "
                       "large)."),
        QStringLiteral("You can display or hide the text on the Main Window toolbar by "
                       "right-clicking on the toolbar and checking or unchecking Text."),
        QStringLiteral("You can turn the Vantry! Vantry! theme song on or off from the Options "
                       "dialog box."),
        QStringLiteral("You can contact KVX Partners via e-mail by selecting 'About Vantry! "
                       "Vantry!' from the Main Window Help menu, then clicking 'E-mail KVX'."),
        QStringLiteral("When you delete a rebate, it's not deleted permanently until you purge "
                       "deleted records. You can purge or recover deleted records from the "
                       "Options dialog box."),
        QStringLiteral("You can change the default postage inserted into the postage fields by "
                       "opening the Options dialog box and entering a new default postage."),
        QStringLiteral("You can sort rebates in the Switchboard by right-clicking on an icon and "
                       "selecting 'Sort Ascending' or 'Sort Descending' from the popup menu."),
        QStringLiteral("You can sort rebates in the Switchboard while in Details view by clicking "
                       "on a column header. Clicking on the column header again will sort in the "
                       "opposite direction."),
        QStringLiteral("You can send rebate or statistical reports to your default word processor "
                       "(in RTF format) by selecting 'View Selected Rebates in Word Processor' or "
                       "'View Statistics in Word Processor' from the File Menu."),
    };
    return tips;
}

frmTip::frmTip(QWidget* parent)
    : QDialog(parent), lblTipText(new QLabel),
      chkLoadTipsAtStartup(new QCheckBox(QStringLiteral("&Show Tips at Startup"))),
      cmdPrevTip(new QPushButton(QStringLiteral("&Previous Tip"))),
      cmdNextTip(new QPushButton(QStringLiteral("&Next Tip"))),
      cmdOK(new QPushButton(QStringLiteral("OK"))),
      cmdHelp(new QPushButton(QStringLiteral("&Help"))), imgMan(new QLabel),
      Timer1(new QTimer(this)) {
    setObjectName(QStringLiteral("frmTip"));
    setWindowTitle(QStringLiteral("Vantry! Vantry! Tip of the Day"));
    lblTipText->setObjectName(QStringLiteral("lblTipText"));
    chkLoadTipsAtStartup->setObjectName(QStringLiteral("chkLoadTipsAtStartup"));
    cmdPrevTip->setObjectName(QStringLiteral("cmdPrevTip"));
    cmdNextTip->setObjectName(QStringLiteral("cmdNextTip"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    imgMan->setObjectName(QStringLiteral("imgMan"));
    Timer1->setObjectName(QStringLiteral("Timer1"));

    auto* panel = new QFrame;
    panel->setFrameShape(QFrame::StyledPanel);
    panel->setStyleSheet(QStringLiteral("QFrame { background: #ffffe8; }"));
    auto* didYouKnow = new QLabel(QStringLiteral("Did you know..."));
    QFont bold = didYouKnow->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    didYouKnow->setFont(bold);
    lblTipText->setWordWrap(true);
    lblTipText->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    lblTipText->setMinimumHeight(110);
    imgMan->setFixedSize(64, 64);
    imgMan->setAlignment(Qt::AlignCenter);
    auto* text = new QVBoxLayout;
    text->addWidget(didYouKnow);
    text->addWidget(lblTipText, 1);
    auto* inside = new QHBoxLayout(panel);
    inside->addWidget(imgMan, 0, Qt::AlignTop);
    inside->addLayout(text, 1);

    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {cmdOK, cmdNextTip, cmdPrevTip, cmdHelp}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    cmdOK->setDefault(true);
    auto* top = new QHBoxLayout;
    top->addWidget(panel, 1);
    top->addLayout(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addWidget(chkLoadTipsAtStartup);
    setMinimumSize(480, 240);
    resize(520, 260);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdNextTip, &QPushButton::clicked, this, &frmTip::NextTip);
    connect(cmdPrevTip, &QPushButton::clicked, this, &frmTip::PrevTip);
    connect(cmdHelp, &QPushButton::clicked, this, &frmTip::cmdHelp_Click);
    connect(chkLoadTipsAtStartup, &QCheckBox::clicked, this, &frmTip::chkLoadTipsAtStartup_Click);
    connect(Timer1, &QTimer::timeout, this, &frmTip::Timer1_Timer);
}

bool frmTip::Form_Load() {
    const bool showAtStartup = ReadFlag(Setting::Tips);
    if (!showAtStartup && !gAppStarted)
        return false;
    chkLoadTipsAtStartup->setChecked(showAtStartup);
    mTips = AllTips();
    RandomTip();
    return true;
}

void frmTip::RandomTip() {
    mCurrentTip = static_cast<int>(QRandomGenerator::global()->bounded(mTips.size())) + 1;
    DisplayCurrentTip();
}

void frmTip::NextTip() {
    if (++mCurrentTip > mTips.size())
        mCurrentTip = 1;
    DisplayCurrentTip();
}

void frmTip::PrevTip() {
    if (--mCurrentTip < 1)
        mCurrentTip = static_cast<int>(mTips.size());
    DisplayCurrentTip();
}

void frmTip::DisplayCurrentTip() {
    if (!mTips.isEmpty())
        lblTipText->setText(mTips.at(mCurrentTip - 1));
    Timer1->start(60);
}

void frmTip::Timer1_Timer() {
    if (!mGoingBack) {
        if (++mPicture >= 4)
            mGoingBack = true;
    } else if (--mPicture <= 1) {
        mGoingBack = false;
    }
    imgMan->setPixmap(ManPicture(mPicture, 56));
    if (mPicture == 1)
        Timer1->stop();
}

void frmTip::chkLoadTipsAtStartup_Click() {
    WriteSetting(Setting::Tips,
                 chkLoadTipsAtStartup->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
}

void frmTip::cmdHelp_Click() {
    if (!Help::Available()) {
        MsgBox(QStringLiteral("Unable to display Help Contents. There is no Help associated with "
                              "this project."),
               vb::vbInformation, windowTitle());
        return;
    }
    Help::ShowTopic(2503);
}
