// Build tool: creates the reserve database from the schema file.
//   vantry_mkrdb <schema.sql> <target.rdb>
#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTextStream>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        QTextStream(stderr) << "usage: vantry_mkrdb <schema.sql> <target.rdb>\n";
        return 2;
    }
    QFile schema(QString::fromLocal8Bit(argv[1]));
    if (!schema.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream(stderr) << "cannot read " << schema.fileName() << '\n';
        return 1;
    }
    QString text;
    for (const QString& line : QString::fromUtf8(schema.readAll()).split(QLatin1Char('\n'))) {
        if (!line.trimmed().startsWith(QLatin1String("--")))
            text += line + QLatin1Char('\n');
    }
    int status = 0;
    {
        QSqlDatabase db =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("mkrdb"));
        db.setDatabaseName(QString::fromLocal8Bit(argv[2]));
        if (!db.open()) {
            QTextStream(stderr) << db.lastError().text() << '\n';
            return 1;
        }
        for (const QString& statement : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            if (statement.trimmed().isEmpty())
                continue;
            QSqlQuery query(db);
            if (!query.exec(statement)) {
                QTextStream(stderr) << query.lastError().text() << '\n';
                status = 1;
            }
        }
        // The delivered file is already in write-ahead-log mode, as the program keeps it, so
        // opening a fresh copy changes nothing in it.
        QSqlQuery wal(db);
        if (!wal.exec(QStringLiteral("PRAGMA journal_mode=WAL"))) {
            QTextStream(stderr) << wal.lastError().text() << '\n';
            status = 1;
        }
        wal.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("mkrdb"));
    return status;
}
