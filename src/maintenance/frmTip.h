#pragma once

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QLabel;
class QPushButton;
class QTimer;

// One hint at a time on how to use the program, with the little man who turns round when a
// new tip comes up.
class frmTip : public QDialog {
    Q_OBJECT
public:
    explicit frmTip(QWidget* parent = nullptr);

    // False when the start-up routine opens the form against the user's wish ("chkTips" off
    // before start-up has finished): the form is then not to be shown.
    bool Form_Load();

    // The compiled-in tips, in their order.
    static const QStringList& AllTips();

    void DisplayCurrentTip();
    void NextTip();
    void PrevTip();
    void RandomTip();
    int CurrentTip() const { return mCurrentTip; }
    // The man's picture on show, 1 to 4 (0 before the first tip).
    int Picture() const { return mPicture; }

    void Timer1_Timer();
    void chkLoadTipsAtStartup_Click();
    void cmdHelp_Click();

    QLabel* lblTipText;
    QCheckBox* chkLoadTipsAtStartup;
    QPushButton* cmdPrevTip;
    QPushButton* cmdNextTip;
    QPushButton* cmdOK;
    QPushButton* cmdHelp;
    QLabel* imgMan;
    QTimer* Timer1;

private:
    QStringList mTips;
    int mCurrentTip = 0;
    int mPicture = 0;
    bool mGoingBack = false;
};

// The man's picture of that number (1 to 4), at the given size.
QPixmap ManPicture(int number, int size);
