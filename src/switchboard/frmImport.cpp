#include "switchboard/frmImport.h"

#include <QAbstractTableModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace {

// The rows to add, read where they lie: a file of 100,000 records previews at once.
class PreviewModel final : public QAbstractTableModel {
public:
    PreviewModel(const RebateCsv::Reading& reading, const QList<RebateColumn>& columns,
                 QObject* parent)
        : QAbstractTableModel(parent), mReading(reading), mColumns(columns) {}

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(mReading.rows.size());
    }
    int columnCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(mColumns.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || !index.isValid())
            return {};
        return RebateCsv::ValueText(mReading.rows[index.row()][index.column()],
                                    mColumns[index.column()].type);
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole)
            return {};
        if (orientation == Qt::Horizontal)
            return mColumns[section].name;
        return QStringLiteral("Line %1").arg(mReading.rowLines[section]);
    }

private:
    const RebateCsv::Reading& mReading;
    const QList<RebateColumn>& mColumns;
};

} // namespace

QString frmImport::Rebates(qsizetype count) {
    return count == 1 ? QStringLiteral("1 rebate") : QStringLiteral("%1 rebates").arg(count);
}

frmImport::frmImport(const RebateCsv::Reading& reading, const QList<RebateColumn>& columns,
                     const QString& fileName, QWidget* parent)
    : QDialog(parent), lblSummary(new QLabel), tblPreview(new QTableView), lblReport(new QLabel),
      txtReport(new QPlainTextEdit), cmdImport(new QPushButton(QStringLiteral("&Import"))),
      cmdCancel(new QPushButton(QStringLiteral("Cancel"))) {
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("Import from CSV"));
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    tblPreview->setObjectName(QStringLiteral("tblPreview"));
    lblReport->setObjectName(QStringLiteral("lblReport"));
    txtReport->setObjectName(QStringLiteral("txtReport"));
    cmdImport->setObjectName(QStringLiteral("cmdImport"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    QStringList summary;
    summary.append(reading.rows.isEmpty()
                       ? QStringLiteral("No rebate can be added from '%1'.").arg(fileName)
                       : QStringLiteral("%1 will be added from '%2'.")
                             .arg(Rebates(reading.rows.size()), fileName));
    if (!reading.alreadyThere.isEmpty())
        summary.append(QStringLiteral("%1 whose RebateID is already in the database will be left "
                                      "out: the records there stay as they are.")
                           .arg(Rebates(reading.alreadyThere.size())));
    if (!reading.problems.isEmpty())
        summary.append(reading.problems.size() == 1
                           ? QStringLiteral("1 line can't be read and will be left out.")
                           : QStringLiteral("%1 lines can't be read and will be left out.")
                                 .arg(reading.problems.size()));
    if (!reading.rows.isEmpty())
        summary.append(QStringLiteral("Nothing is written until you click Import, and then all "
                                      "of it at once."));
    lblSummary->setText(summary.join(u'\n'));
    lblSummary->setWordWrap(true);

    tblPreview->setModel(new PreviewModel(reading, columns, tblPreview));
    tblPreview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tblPreview->horizontalHeader()->setDefaultSectionSize(110);
    tblPreview->resizeColumnToContents(0); // the RebateID in full
    tblPreview->setVisible(!reading.rows.isEmpty());

    const QStringList report = reading.problems + reading.alreadyThere;
    lblReport->setText(QStringLiteral("Left out:"));
    txtReport->setReadOnly(true);
    txtReport->setPlainText(report.join(u'\n'));
    lblReport->setVisible(!report.isEmpty());
    txtReport->setVisible(!report.isEmpty());

    cmdImport->setEnabled(!reading.rows.isEmpty());
    cmdImport->setDefault(!reading.rows.isEmpty());
    cmdCancel->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdImport);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblSummary);
    layout->addWidget(tblPreview, 3);
    layout->addWidget(lblReport);
    layout->addWidget(txtReport, 1);
    layout->addLayout(buttons);
    resize(760, 480);

    connect(cmdImport, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}
