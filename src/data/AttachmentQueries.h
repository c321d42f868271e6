#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// The files attached to rebates, in the table Attachments, through gDatabase. Each raises 91
// when no database is open, and what the store raises otherwise.
namespace AttachmentQueries {

struct Attachment {
    qint64 id = 0;
    QString fileName;
    qint64 size = 0;
    QByteArray thumbnail; // a PNG for pictures, else empty
};

struct NewAttachment {
    QString fileName;
    QByteArray thumbnail;
    QByteArray data;
};

// The attachments of a rebate in the order they were added, without their bytes.
QList<Attachment> ListAttachments(const QString& rebateID);

// Adds the files to the rebate, all in one transaction or none.
void AddAttachments(const QString& rebateID, const QList<NewAttachment>& files);

// The bytes of one attachment; raises 3021 when it is gone.
QByteArray ReadAttachmentData(qint64 attachmentID);

// Removes one attachment; false when it was gone already.
bool RemoveAttachment(qint64 attachmentID);

// The statement the purge runs per key, inside its transaction, before the rebate's row goes:
// it takes the key as its one bound value. Attachments stay while a row that isn't marked
// deleted still holds the key.
QString PurgeStatement();

} // namespace AttachmentQueries
