#pragma once

#include <QDialog>

class ListView;
class QLabel;
class QMenu;
class QAction;
class QPushButton;
class QStatusBar;

// The deleted record manager: the rows marked deleted, to be recovered or purged for good.
class frmPurge : public QDialog {
    Q_OBJECT
public:
    explicit frmPurge(QWidget* parent = nullptr);

    // Clears and refills the list from the database.
    void AddDeletedRecords();
    void cmdRecover_Click();
    void cmdPurge_Click();
    void cmdClose_Click();
    void mnuSelectAll_Click();
    void mnuInvertSelection_Click();
    void lvwRecords_MouseUp(int button, QPoint globalPos);
    void lvwRecords_ColumnClick(int column);

    QWidget* picBack;
    QPushButton* cmdClose;
    QPushButton* cmdRecover;
    QPushButton* cmdPurge;
    ListView* lvwRecords;
    QLabel* imgRecordMgr;
    QLabel* lblDesc;
    QStatusBar* sbStatus;
    QMenu* mnuRecords;
    QAction* mnuSelectAll;
    QAction* mnuInvertSelection;

private:
    void UpdatePurgeButtons();
    void SetStatus(const QString& text);
    // Recover and purge: the question, then the command on the selected rows' keys.
    void ChangeSelected(const QString& title, const QString& question, const QString& status,
                        int (*command)(const QStringList&));
};
