#pragma once

#include "app/RebateCsv.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTableView;

// The preview of an import: what will be added (every column of every record), which lines
// can't be read and why, which records are left out because their RebateID is already in the
// database. Nothing is written here: Import accepts, Cancel rejects.
class frmImport : public QDialog {
    Q_OBJECT
public:
    frmImport(const RebateCsv::Reading& reading, const QList<RebateColumn>& columns,
              const QString& fileName, QWidget* parent = nullptr);

    // "1 rebate", "12 rebates".
    static QString Rebates(qsizetype count);

    QLabel* lblSummary;
    QTableView* tblPreview;
    QLabel* lblReport;
    QPlainTextEdit* txtReport;
    QPushButton* cmdImport;
    QPushButton* cmdCancel;
};
