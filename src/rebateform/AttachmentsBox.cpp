#include "rebateform/AttachmentsBox.h"

#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "data/AttachmentQueries.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSaveFile>
#include <QStyle>
#include <QTemporaryDir>
#include <QVBoxLayout>

namespace {
const QString kSource = QStringLiteral("frmRebate");
constexpr int kThumbnail = 48;

// A PNG of the picture scaled into the thumbnail's square; empty for anything else.
QByteArray ThumbnailOf(const QByteArray& data) {
    QImage image;
    if (!image.loadFromData(data))
        return {};
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.scaled(kThumbnail, kThumbnail, Qt::KeepAspectRatio, Qt::SmoothTransformation)
        .save(&buffer, "PNG");
    return png;
}

// "512 bytes", "12 KB", "3.4 MB".
QString SizeText(qint64 bytes) {
    if (bytes < 1024)
        return QStringLiteral("%1 bytes").arg(bytes);
    if (bytes < 1024 * 1024)
        return QStringLiteral("%1 KB").arg((bytes + 1023) / 1024);
    return QStringLiteral("%1 MB").arg(static_cast<double>(bytes) / (1024 * 1024), 0, 'f', 1);
}
} // namespace

AttachmentsBox::AttachmentsBox(QWidget* parent)
    : QGroupBox(QStringLiteral("Attachments"), parent), lstAttachments(new QListWidget),
      lblAttachHint(new QLabel), cmdAttach(new QPushButton(QStringLiteral("Attach Files..."))),
      cmdOpen(new QPushButton(QStringLiteral("Open"))),
      cmdRemove(new QPushButton(QStringLiteral("Remove"))) {
    setObjectName(QStringLiteral("fraAttachments"));
    lstAttachments->setObjectName(QStringLiteral("lstAttachments"));
    lstAttachments->setIconSize(QSize(kThumbnail, kThumbnail));
    // The list takes the room the page has, down to one row: the form keeps the size of its
    // other pages.
    lstAttachments->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    lstAttachments->setMinimumHeight(kThumbnail + 12);
    lstAttachments->setAccessibleName(QStringLiteral("Attachments"));
    lblAttachHint->setObjectName(QStringLiteral("lblAttachHint"));
    lblAttachHint->setWordWrap(true);
    cmdAttach->setObjectName(QStringLiteral("cmdAttach"));
    cmdOpen->setObjectName(QStringLiteral("cmdOpen"));
    cmdRemove->setObjectName(QStringLiteral("cmdRemove"));
    for (QPushButton* button : {cmdAttach, cmdOpen, cmdRemove})
        button->setAutoDefault(true);

    connect(cmdAttach, &QPushButton::clicked, this, &AttachmentsBox::cmdAttach_Click);
    connect(cmdOpen, &QPushButton::clicked, this, &AttachmentsBox::cmdOpen_Click);
    connect(cmdRemove, &QPushButton::clicked, this, &AttachmentsBox::cmdRemove_Click);
    connect(lstAttachments, &QListWidget::itemActivated, this, &AttachmentsBox::cmdOpen_Click);
    connect(lstAttachments, &QListWidget::currentRowChanged, this, &AttachmentsBox::EnableButtons);

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(cmdAttach);
    buttons->addWidget(cmdOpen);
    buttons->addWidget(cmdRemove);
    buttons->addStretch(1);
    auto* row = new QHBoxLayout;
    row->addWidget(lstAttachments, 1);
    row->addLayout(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblAttachHint);
    layout->addLayout(row, 1);
    SetRebateID(QString());
}

void AttachmentsBox::SetRebateID(const QString& rebateID) {
    mRebateID = rebateID;
    Reload();
}

void AttachmentsBox::Reload() {
    lstAttachments->clear();
    if (mRebateID.isEmpty()) {
        lblAttachHint->setText(
            QStringLiteral("Save the rebate first; then you can attach files to it."));
        EnableButtons();
        return;
    }
    try {
        const QIcon fileIcon = style()->standardIcon(QStyle::SP_FileIcon);
        for (const auto& file : AttachmentQueries::ListAttachments(mRebateID)) {
            QPixmap thumbnail;
            const bool picture =
                !file.thumbnail.isEmpty() && thumbnail.loadFromData(file.thumbnail);
            auto* item = new QListWidgetItem(
                picture ? QIcon(thumbnail) : fileIcon,
                QStringLiteral("%1 (%2)").arg(file.fileName, SizeText(file.size)));
            item->setData(Qt::UserRole, file.id);
            item->setData(Qt::UserRole + 1, file.fileName);
            lstAttachments->addItem(item);
        }
    } catch (const VbError& e) {
        LogError(e, kSource, QStringLiteral("AttachmentsBox::Reload()"));
    }
    if (lstAttachments->count() > 0)
        lstAttachments->setCurrentRow(0);
    lblAttachHint->setText(
        lstAttachments->count() == 0
            ? QStringLiteral("No files attached. Attach a scanned receipt, the UPC or the "
                             "filled-in form (up to 20 MB each).")
            : QStringLiteral("Double-click a file or press Enter to open it."));
    EnableButtons();
}

void AttachmentsBox::EnableButtons() {
    cmdAttach->setEnabled(!mRebateID.isEmpty());
    const bool any = lstAttachments->currentItem() != nullptr;
    cmdOpen->setEnabled(any);
    cmdRemove->setEnabled(any);
}

void AttachmentsBox::cmdAttach_Click() {
    if (mRebateID.isEmpty())
        return;
    const QStringList paths = TheDesktop().OpenFileNames(QStringLiteral("Attach Files"), window());
    QList<AttachmentQueries::NewAttachment> files;
    QStringList refused;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (info.size() > kMaxBytes) {
            refused << QStringLiteral("%1: larger than 20 MB (%2)")
                           .arg(info.fileName(), SizeText(info.size()));
            continue;
        }
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            refused << QStringLiteral("%1: %2").arg(info.fileName(), file.errorString());
            continue;
        }
        const QByteArray data = file.readAll();
        // A file that grew past the limit while it was being read is refused all the same.
        if (data.size() > kMaxBytes) {
            refused << QStringLiteral("%1: larger than 20 MB (%2)")
                           .arg(info.fileName(), SizeText(data.size()));
            continue;
        }
        files.append({info.fileName(), ThumbnailOf(data), data});
    }
    if (!files.isEmpty()) {
        try {
            AttachmentQueries::AddAttachments(mRebateID, files);
        } catch (const VbError& e) {
            LogError(e, kSource, QStringLiteral("cmdAttach_Click"));
        }
        Reload();
        lstAttachments->setCurrentRow(lstAttachments->count() - 1);
    }
    if (!refused.isEmpty())
        MsgBox(QStringLiteral("These files were not attached:\n") + refused.join(QLatin1Char('\n')),
               vb::vbExclamation, QStringLiteral("Files Not Attached"));
}

void AttachmentsBox::cmdOpen_Click() {
    const QListWidgetItem* item = lstAttachments->currentItem();
    if (!item)
        return;
    const QString name = item->data(Qt::UserRole + 1).toString();
    try {
        const QByteArray data =
            AttachmentQueries::ReadAttachmentData(item->data(Qt::UserRole).toLongLong());
        // A folder of its own keeps the file's name, by which the desktop picks the program;
        // the Switchboard's unload removes the folders.
        QTemporaryDir folder(TempPath() + QStringLiteral("/~vaatXXXXXX"));
        folder.setAutoRemove(false);
        QString safeName = QFileInfo(name).fileName();
        if (safeName.isEmpty() || safeName == QLatin1String("..") || safeName == QLatin1String("."))
            safeName = QStringLiteral("attachment");
        const QString path = folder.filePath(safeName);
        QSaveFile file(path);
        const bool written = folder.isValid() && file.open(QIODevice::WriteOnly) &&
                             file.write(data) == data.size() && file.commit();
        if (!written || !TheDesktop().OpenDocument(path)) {
            if (!written)
                folder.remove();
            MsgBox(QStringLiteral("Unable to open '%1' with the desktop.").arg(name),
                   vb::vbExclamation, QStringLiteral("Unable to Open"));
        }
    } catch (const VbError& e) {
        LogError(e, kSource, QStringLiteral("cmdOpen_Click"));
        Reload();
    }
}

void AttachmentsBox::cmdRemove_Click() {
    const QListWidgetItem* item = lstAttachments->currentItem();
    if (!item)
        return;
    const QString name = item->data(Qt::UserRole + 1).toString();
    if (MsgBox(QStringLiteral("Remove '%1' from this rebate?").arg(name),
               vb::vbYesNo | vb::vbQuestion | vb::vbDefaultButton2,
               QStringLiteral("Remove Attachment?")) != vb::vbYes)
        return;
    try {
        AttachmentQueries::RemoveAttachment(item->data(Qt::UserRole).toLongLong());
    } catch (const VbError& e) {
        LogError(e, kSource, QStringLiteral("cmdRemove_Click"));
    }
    Reload();
}
