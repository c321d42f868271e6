#pragma once

#include <QDialog>

class QLabel;
class QPushButton;
class QTimer;
class QWidget;

// The about box: the version, the maker's links, the system information tool, and a click
// on the picture for the credits.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent = nullptr);

    void cmdEmailKVX_Click();
    void cmdKVXWebPage_Click();
    void lblTCR_Click();
    void cmdSysInfo_Click();
    void imgAbout_Click();

    QLabel* imgAbout;
    QLabel* lblVersion;
    QLabel* lblCompanyProduct;
    QLabel* lblDescription;
    QLabel* lblTCR;
    QPushButton* cmdOK;
    QPushButton* cmdEmailKVX;
    QPushButton* cmdKVXWebPage;
    QPushButton* cmdSysInfo;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

// Starts the desktop's system information tool; a box says so when there is none.
void StartSysInfo();

// The credits, rolling upwards like a film's for as long as the window is open.
class frmCredits : public QDialog {
    Q_OBJECT
public:
    explicit frmCredits(QWidget* parent = nullptr);

    void Timer1_Timer();

    QWidget* picBack;
    QWidget* Frame1;
    QLabel* imgMan;
    QTimer* Timer1;
    // Frame1's top in twips, kept exact between the whole pixels.
    int FrameTop() const { return mTop; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void PlaceFrame();

    int mTop = 0;
    int mTicks = 0;
    int mPicture = 1;
    bool mGoingBack = false;
};
