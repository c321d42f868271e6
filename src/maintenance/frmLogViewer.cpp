#include "maintenance/frmLogViewer.h"

#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "common/ui/ImageList.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

frmLogViewer::frmLogViewer(QWidget* parent)
    : QDialog(parent), txtLog(new QPlainTextEdit),
      cmdPurge(new QPushButton(QStringLiteral("&Purge Log"))),
      cmdEmailLog(new QPushButton(QStringLiteral("&Email Log to KVX"))),
      cmdOK(new QPushButton(QStringLiteral("&OK"))), StatusBar1(new QStatusBar) {
    setObjectName(QStringLiteral("frmLogViewer"));
    txtLog->setObjectName(QStringLiteral("txtLog"));
    cmdPurge->setObjectName(QStringLiteral("cmdPurge"));
    cmdEmailLog->setObjectName(QStringLiteral("cmdEmailLog"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    StatusBar1->setObjectName(QStringLiteral("StatusBar1"));
    setProperty(Help::kContextProperty, 8700);
    txtLog->setReadOnly(true);
    txtLog->setLineWrapMode(QPlainTextEdit::NoWrap);
    cmdPurge->hide();
    cmdEmailLog->hide();
    for (QPushButton* button : {cmdPurge, cmdEmailLog, cmdOK})
        button->setAutoDefault(false);
    cmdOK->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdPurge);
    buttons->addWidget(cmdEmailLog);
    buttons->addWidget(cmdOK);
    auto* body = new QVBoxLayout;
    body->addWidget(txtLog, 1);
    body->addLayout(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* page = new QWidget;
    page->setLayout(body);
    layout->addWidget(page, 1);
    layout->addWidget(StatusBar1);
    // 7755 by 4470 twips at least.
    setMinimumSize(7755 / 15, 4470 / 15);
    resize(640, 420);

    connect(cmdOK, &QPushButton::clicked, this, &frmLogViewer::cmdOK_Click);
    connect(cmdPurge, &QPushButton::clicked, this, &frmLogViewer::cmdPurge_Click);
    connect(cmdEmailLog, &QPushButton::clicked, this, &frmLogViewer::SendLog);
}

void frmLogViewer::ShowLog(const QString& text) {
    setWindowIcon(ImageList::Render(ImageList::ResourceFor(QStringLiteral("Log")), 32));
    setWindowTitle(QStringLiteral("Error Log"));
    txtLog->setPlainText(text);
    QFont courier(QStringLiteral("Courier"));
    courier.setStyleHint(QFont::TypeWriter);
    courier.setFixedPitch(true);
    txtLog->setFont(courier);
    cmdEmailLog->show();
    cmdPurge->show();
    txtLog->setFocus();
}

void frmLogViewer::cmdOK_Click() {
    accept();
}

void frmLogViewer::cmdPurge_Click() {
    StatusBar1->showMessage(QStringLiteral("Purge log..."));
    if (gErrorLog && gErrorLog->PurgeIt())
        txtLog->clear();
    StatusBar1->showMessage(QStringLiteral("Ready..."));
}

void frmLogViewer::SendLog() {
    SetStatusText(QStringLiteral("Getting error log..."));
    try {
        const QString log = gErrorLog ? gErrorLog->Display() : QString();
        if (log.isEmpty()) {
            MsgBox(QStringLiteral("No logged errors found."), vb::vbInformation,
                   QStringLiteral("Error Log Not Found"));
        } else {
            const QString note =
                QStringLiteral("Please review my error log. The problem I am having is: "
                               "[describe problem here!]\r\n\r\n"
                               "Error Log for Vantry! Vantry!\r\n\r\n") +
                log;
            SetStatusText(QStringLiteral("Opening default e-mail client..."));
            if (!TheDesktop().SendMail(kSupportMailbox,
                                       QStringLiteral("Bug Report - Error Log for Vantry! Vantry!"),
                                       note))
                MsgBox(QStringLiteral("No e-mail program could be opened to send the error log. "
                                      "Please send the file \"%1\" to %2 with the e-mail program "
                                      "you use.")
                           .arg(gErrorLog->LogFile(), kSupportMailbox),
                       vb::vbExclamation, QStringLiteral("Unable to Send Error Log"));
            SetStatusText(QStringLiteral("Signing off..."));
        }
    } catch (const VbError& error) {
        LogError(error, objectName(), QStringLiteral("SendLog()"));
    }
    SetStatusText(QStringLiteral("Ready..."));
}
