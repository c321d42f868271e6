#include "data/Schema.h"

#include "data/Database.h"

#include <QStringList>
#include <vantry_schema.h>

void AddMissingTables(Database& db) {
    QString text;
    for (const QString& line : QString::fromUtf8(kSchemaText).split(QLatin1Char('\n'))) {
        if (!line.trimmed().startsWith(QLatin1String("--")))
            text += line + QLatin1Char('\n');
    }
    for (const QString& statement : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        if (statement.contains(QLatin1String("IF NOT EXISTS"), Qt::CaseInsensitive))
            db.Execute(statement.trimmed());
    }
}
