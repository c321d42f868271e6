#pragma once

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

// "Restore from Backup": the backups of the store, newest first, with the moment each was made
// and its record count; Restore puts the chosen one in place of the store after asking.
class frmRestore : public QDialog {
    Q_OBJECT
public:
    explicit frmRestore(QWidget* parent = nullptr);

    // Clears and refills the list from the backups folder.
    void FillList();
    void cmdRestore_Click();

    QTreeWidget* lstBackups;
    QLabel* lblDesc;
    QPushButton* cmdRestore;
    QPushButton* cmdClose;
};
