#include "app/RebateCsv.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <QStringDecoder>
#include <limits>

namespace {

// ---- writing

QByteArray Quoted(const QByteArray& text) {
    const bool quote = text.isEmpty() || text.contains(',') || text.contains('"') ||
                       text.contains('\r') || text.contains('\n');
    if (!quote)
        return text;
    QByteArray out;
    out.reserve(text.size() + 2);
    out += '"';
    for (const char c : text) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
    return out;
}

QByteArray MoneyText(qint64 tenThousandths) {
    const bool negative = tenThousandths < 0;
    // The magnitude as unsigned, so the most negative amount formats too.
    const quint64 magnitude =
        negative ? 0 - static_cast<quint64>(tenThousandths) : static_cast<quint64>(tenThousandths);
    QByteArray fraction = QByteArray::number(magnitude % 10000).rightJustified(4, '0');
    while (fraction.size() > 2 && fraction.endsWith('0'))
        fraction.chop(1);
    return (negative ? "-" : "") + QByteArray::number(magnitude / 10000) + '.' + fraction;
}

// ---- reading

struct Field {
    QByteArray bytes;
    bool quoted = false;
};

struct Record {
    int line = 0; // where it starts, from 1
    QList<Field> fields;
    QString problem; // the structure is broken; the fields are not to be used
};

// Splits the bytes into records. The structure is all ASCII (comma, quote, CR, LF), which no
// byte of a UTF-8 sequence can be, so the bytes are split before they are decoded.
QList<Record> Split(const QByteArray& data) {
    QList<Record> records;
    qsizetype i = 0;
    int line = 1;
    const qsizetype n = data.size();
    while (i < n) {
        Record record;
        record.line = line;
        bool endOfRecord = false;
        while (!endOfRecord) {
            Field field;
            if (i < n && data[i] == '"') {
                field.quoted = true;
                ++i;
                bool closed = false;
                while (i < n) {
                    const char c = data[i++];
                    if (c == '"') {
                        if (i < n && data[i] == '"') {
                            field.bytes += '"';
                            ++i;
                        } else {
                            closed = true;
                            break;
                        }
                    } else {
                        if (c == '\n')
                            ++line;
                        field.bytes += c;
                    }
                }
                if (!closed) {
                    record.problem = QStringLiteral("a quoted field is never closed");
                    records.append(record);
                    return records;
                }
                if (i < n && data[i] != ',' && data[i] != '\r' && data[i] != '\n' &&
                    record.problem.isEmpty())
                    record.problem = QStringLiteral("text follows the closing quote of field %1")
                                         .arg(record.fields.size() + 1);
            }
            while (i < n && data[i] != ',' && data[i] != '\r' && data[i] != '\n') {
                if (data[i] == '"' && !field.quoted && record.problem.isEmpty())
                    record.problem = QStringLiteral("a quote inside field %1, which doesn't "
                                                    "start with a quote")
                                         .arg(record.fields.size() + 1);
                field.bytes += data[i++];
            }
            record.fields.append(field);
            if (i < n && data[i] == ',') {
                ++i;
                continue;
            }
            // CR LF, LF or a lone CR ends the record.
            if (i < n && data[i] == '\r')
                ++i;
            if (i < n && data[i] == '\n')
                ++i;
            ++line;
            endOfRecord = true;
        }
        // A blank line is no record.
        if (record.fields.size() == 1 && !record.fields[0].quoted &&
            record.fields[0].bytes.isEmpty())
            continue;
        records.append(record);
    }
    return records;
}

bool Decode(const QByteArray& bytes, QString& text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    text = decoder.decode(bytes);
    return !decoder.hasError();
}

QString Show(const QString& text) {
    constexpr int kShown = 40;
    return u'"' + (text.size() > kShown ? text.left(kShown) + QStringLiteral("...") : text) + u'"';
}

// The value of a field as the store holds it for a column of this type; a null QVariant for
// an empty field; the reason in `problem` when the text can't be such a value.
QVariant ValueOf(const Field& field, const QString& text, ColumnType type, QString& problem) {
    if (text.isEmpty() && !(field.quoted && type == ColumnType::Text))
        return QVariant();
    switch (type) {
    case ColumnType::Text:
        return text;
    case ColumnType::Money: {
        static const QRegularExpression pattern(
            QStringLiteral(R"(^(-?)(\d{1,15})(?:\.(\d{1,4}))?$)"));
        const QRegularExpressionMatch match = pattern.match(text);
        if (!match.hasMatch()) {
            problem = QStringLiteral("%1 is not an amount (a plain decimal such as 12.50)")
                          .arg(Show(text));
            return QVariant();
        }
        const bool negative = !match.captured(1).isEmpty();
        // At most 15 whole digits and 4 places: no overflow of 64 unsigned bits.
        const quint64 magnitude = match.captured(2).toULongLong() * 10000 +
                                  match.captured(3).leftJustified(4, u'0').toULongLong();
        const quint64 limit = static_cast<quint64>(std::numeric_limits<qint64>::max()) + negative;
        if (magnitude > limit) {
            problem = QStringLiteral("%1 is too large an amount").arg(Show(text));
            return QVariant();
        }
        return static_cast<qint64>(negative ? 0 - magnitude : magnitude);
    }
    case ColumnType::Date: {
        static const QRegularExpression pattern(QStringLiteral(R"(^\d{4}-\d{2}-\d{2}$)"));
        if (!pattern.match(text).hasMatch() ||
            !QDate::fromString(text, QStringLiteral("yyyy-MM-dd")).isValid()) {
            problem = QStringLiteral("%1 is not a date (yyyy-mm-dd)").arg(Show(text));
            return QVariant();
        }
        return text;
    }
    case ColumnType::Boolean: {
        const QString word = text.toLower();
        if (word == QStringLiteral("true") || word == QStringLiteral("1") ||
            word == QStringLiteral("yes"))
            return 1;
        if (word == QStringLiteral("false") || word == QStringLiteral("0") ||
            word == QStringLiteral("no"))
            return 0;
        problem = QStringLiteral("%1 is not True or False").arg(Show(text));
        return QVariant();
    }
    }
    return QVariant();
}

const QString kNotUtf8 = QStringLiteral("not UTF-8 text (the file may be in another encoding)");

QString LineText(int line) {
    return QStringLiteral("Line %1: ").arg(line);
}

} // namespace

QString RebateCsv::ValueText(const QVariant& value, ColumnType type) {
    if (value.isNull())
        return {};
    const bool integer = value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Int;
    if (type == ColumnType::Money && integer)
        return QString::fromLatin1(MoneyText(value.toLongLong()));
    if (type == ColumnType::Boolean && integer &&
        (value.toLongLong() == 0 || value.toLongLong() == 1))
        return value.toLongLong() ? QStringLiteral("True") : QStringLiteral("False");
    return value.toString();
}

QByteArray RebateCsv::Write(const QList<RebateColumn>& columns, const QList<QVariantList>& rows) {
    QByteArray out;
    for (qsizetype c = 0; c < columns.size(); ++c)
        out += (c ? "," : "") + Quoted(columns[c].name.toUtf8());
    out += "\r\n";
    for (const QVariantList& row : rows) {
        for (qsizetype c = 0; c < columns.size(); ++c) {
            if (c)
                out += ',';
            const QVariant value = c < row.size() ? row[c] : QVariant();
            if (!value.isNull())
                out += Quoted(ValueText(value, columns[c].type).toUtf8());
        }
        out += "\r\n";
    }
    return out;
}

RebateCsv::Reading RebateCsv::Read(const QByteArray& file, const QList<RebateColumn>& columns,
                                   const QSet<QString>& existing) {
    Reading reading;
    QByteArray data = file;
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3);
    const QList<Record> records = Split(data);
    if (records.isEmpty()) {
        reading.problems.append(QStringLiteral("The file holds no header and no records."));
        return reading;
    }

    // The header: every column of Rebates once, in any order.
    const Record& header = records.first();
    QHash<QString, int> columnOf; // lower-case name -> index in columns
    for (int c = 0; c < columns.size(); ++c)
        columnOf.insert(columns[c].name.toLower(), c);
    QList<int> target; // for each field of a record, its column
    QStringList unknown, twice, missing;
    QList<bool> seen(columns.size(), false);
    if (!header.problem.isEmpty()) {
        reading.problems.append(LineText(header.line) + header.problem);
        return reading;
    }
    for (const Field& field : header.fields) {
        QString name;
        if (!Decode(field.bytes, name)) {
            reading.problems.append(LineText(header.line) + kNotUtf8 +
                                    QStringLiteral("; no line can be read"));
            return reading;
        }
        const int column = columnOf.value(name.trimmed().toLower(), -1);
        if (column < 0)
            unknown.append(Show(name));
        else if (seen[column])
            twice.append(columns[column].name);
        else
            seen[column] = true;
        target.append(column);
    }
    for (int c = 0; c < columns.size(); ++c)
        if (!seen[c])
            missing.append(columns[c].name);
    if (!unknown.isEmpty() || !twice.isEmpty() || !missing.isEmpty()) {
        QStringList parts;
        if (!missing.isEmpty())
            parts.append(QStringLiteral("missing %1").arg(missing.join(QStringLiteral(", "))));
        if (!unknown.isEmpty())
            parts.append(
                QStringLiteral("not in the table %1").arg(unknown.join(QStringLiteral(", "))));
        if (!twice.isEmpty())
            parts.append(QStringLiteral("named twice %1").arg(twice.join(QStringLiteral(", "))));
        reading.problems.append(
            LineText(header.line) +
            QStringLiteral("the header doesn't name the columns of the table Rebates (%1); no "
                           "line can be read")
                .arg(parts.join(QStringLiteral("; "))));
        return reading;
    }

    const int keyColumn = columnOf.value(QStringLiteral("rebateid"));
    // An empty Deleted reads as False: the lists' condition NOT (Deleted = True) is never true
    // of Null, so such a rebate would be in no list at all.
    const int deletedColumn = columnOf.value(QStringLiteral("deleted"));
    QHash<QString, int> lineOfKey; // keys read so far, with their line
    for (qsizetype r = 1; r < records.size(); ++r) {
        const Record& record = records[r];
        const QString where = LineText(record.line);
        if (!record.problem.isEmpty()) {
            reading.problems.append(where + record.problem);
            continue;
        }
        if (record.fields.size() != target.size()) {
            reading.problems.append(where + QStringLiteral("%1 fields where the header has %2")
                                                .arg(record.fields.size())
                                                .arg(target.size()));
            continue;
        }
        QVariantList values(columns.size());
        QStringList fieldProblems;
        bool utf8 = true;
        for (qsizetype f = 0; f < record.fields.size() && utf8; ++f) {
            QString text;
            if (!Decode(record.fields[f].bytes, text)) {
                utf8 = false;
                break;
            }
            const RebateColumn& column = columns[target[f]];
            QString problem;
            values[target[f]] = ValueOf(record.fields[f], text, column.type, problem);
            if (!problem.isEmpty())
                fieldProblems.append(column.name + u' ' + problem);
        }
        if (!utf8) {
            reading.problems.append(where + kNotUtf8);
            continue;
        }
        const QString key = values[keyColumn].toString();
        if (fieldProblems.isEmpty() && key.isEmpty())
            fieldProblems.append(QStringLiteral("no RebateID"));
        if (!fieldProblems.isEmpty()) {
            reading.problems.append(where + fieldProblems.join(QStringLiteral("; ")));
            continue;
        }
        if (const auto earlier = lineOfKey.constFind(key); earlier != lineOfKey.cend()) {
            reading.problems.append(where + QStringLiteral("RebateID %1 again (first on line %2)")
                                                .arg(Show(key))
                                                .arg(*earlier));
            continue;
        }
        lineOfKey.insert(key, record.line);
        if (existing.contains(key)) {
            reading.alreadyThere.append(
                where + QStringLiteral("RebateID %1 is already in the database; the record there "
                                       "is kept")
                            .arg(Show(key)));
            continue;
        }
        if (values[deletedColumn].isNull())
            values[deletedColumn] = 0;
        reading.rows.append(values);
        reading.rowLines.append(record.line);
    }
    return reading;
}
