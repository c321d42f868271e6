#include "data/AttachmentQueries.h"

#include "common/core/VbError.h"
#include "data/Database.h"
#include "data/StoreConnection.h"

#include <QSqlError>
#include <QSqlQuery>

namespace AttachmentQueries {

namespace {

QSqlQuery Prepared(const QString& sql) {
    QSqlQuery query(TheDatabase().Connection());
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    return query;
}

void Run(QSqlQuery& query) {
    if (!query.exec())
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
}

} // namespace

QList<Attachment> ListAttachments(const QString& rebateID) {
    QSqlQuery query = Prepared(QStringLiteral(
        "SELECT AttachmentID, FileName, Size, Thumbnail FROM Attachments WHERE RebateID = ? "
        "ORDER BY AttachmentID"));
    query.addBindValue(rebateID);
    Run(query);
    QList<Attachment> rows;
    while (query.next()) {
        rows.append({query.value(0).toLongLong(), query.value(1).toString(),
                     query.value(2).toLongLong(), query.value(3).toByteArray()});
    }
    return rows;
}

void AddAttachments(const QString& rebateID, const QList<NewAttachment>& files) {
    Database& db = TheDatabase();
    db.InTransaction([&] {
        for (const NewAttachment& file : files) {
            db.Execute(QStringLiteral("INSERT INTO Attachments (RebateID, FileName, Size, "
                                      "Thumbnail, Data) VALUES (?, ?, ?, ?, ?)"),
                       {rebateID, file.fileName, static_cast<qint64>(file.data.size()),
                        file.thumbnail.isEmpty() ? QVariant() : QVariant(file.thumbnail),
                        file.data});
        }
    });
}

QByteArray ReadAttachmentData(qint64 attachmentID) {
    QSqlQuery query =
        Prepared(QStringLiteral("SELECT Data FROM Attachments WHERE AttachmentID = ?"));
    query.addBindValue(attachmentID);
    Run(query);
    if (!query.next())
        throw VbError(VbError::NoCurrentRecord);
    return query.value(0).toByteArray();
}

bool RemoveAttachment(qint64 attachmentID) {
    return TheDatabase().Execute(QStringLiteral("DELETE FROM Attachments WHERE AttachmentID = ?"),
                                 {attachmentID}) > 0;
}

// MIN skips the NULLs of (Deleted = True): the key's rows with a Deleted of NULL count for
// neither side, any other value than True keeps the attachments.
QString PurgeStatement() {
    return QStringLiteral(
        "DELETE FROM Attachments WHERE RebateID IN (SELECT RebateID FROM Rebates WHERE "
        "RebateID = ? GROUP BY RebateID HAVING MIN(Deleted = True) = 1)");
}

} // namespace AttachmentQueries
