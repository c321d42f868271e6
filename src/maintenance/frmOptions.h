#pragma once

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
class TabStrip;

// The options and the maintenance commands: compact and repair, the deleted record
// manager and the error log. Each opening loads the settings anew.
class frmOptions : public QDialog {
    Q_OBJECT
public:
    explicit frmOptions(QWidget* parent = nullptr);

    void LoadData();
    void SaveData();
    // The postage text's check when the field is left: money passes and is shown "$0.00",
    // an empty text passes; anything else is refused with a box and keeps the focus.
    bool Postage_Validate();

    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdRepair_Click();
    void cmdRecordMgr_Click();
    void cmdViewLog_Click();
    void tbsTabs_Click();

    TabStrip* tbsTabs;
    QWidget* picOptions[2];
    QCheckBox* chkSound;
    QCheckBox* chkTips;
    QCheckBox* chkAlarm;
    QCheckBox* chkErrorLogging;
    QLineEdit* Postage;
    QSpinBox* spnBackupsKept;
    QCheckBox* chkDeadlines;
    QSpinBox* DeadlineDays;
    QPushButton* cmdRepair;
    QPushButton* cmdRecordMgr;
    QPushButton* cmdViewLog;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;
    QPushButton* cmdApply;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Changed();
    void TurnPage(int step);

    bool mbDirty = false;
    // The postage was refused as the focus left it: the click that took the focus is dropped.
    bool mPostageRefused = false;
};
