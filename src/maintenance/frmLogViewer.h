#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;
class QStatusBar;

// The error log on screen, with the commands to purge it and to mail it to support.
class frmLogViewer : public QDialog {
    Q_OBJECT
public:
    explicit frmLogViewer(QWidget* parent = nullptr);

    // Puts the text into txtLog and shows the purge and mail buttons.
    void ShowLog(const QString& text);
    // Mails the log as the file holds it now to the support mailbox.
    void SendLog();
    void cmdPurge_Click();
    void cmdOK_Click();

    QPlainTextEdit* txtLog;
    QPushButton* cmdPurge;
    QPushButton* cmdEmailLog;
    QPushButton* cmdOK;
    QStatusBar* StatusBar1;
};
