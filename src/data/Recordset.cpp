#include "data/Recordset.h"

#include "common/core/Currency.h"
#include "common/core/Regional.h"
#include "data/Database.h"
#include "data/StoreConnection.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <atomic>
#include <cmath>
#include <limits>

using store::Kind;

namespace {

constexpr std::int64_t kNull = std::numeric_limits<std::int64_t>::min();
constexpr std::uint32_t kNullText = std::numeric_limits<std::uint32_t>::max();
std::atomic<std::uint64_t> gSerials{0};

VbError NoCurrentRecord() {
    return VbError(VbError::NoCurrentRecord);
}

VbError RowGone() {
    return VbError(dbError::RecordDeleted,
                   QStringLiteral("The record is no longer in the database: it has been deleted "
                                  "or changed since it was read. Nothing was changed."));
}

// A QString that is empty but not null, so that it is written as '' and not as NULL.
QString NonNull(const QString& text) {
    static const QString empty = QStringLiteral("");
    return text.isNull() ? empty : text;
}

QString Quoted(const QString& name) {
    QString quoted = name;
    quoted.replace(QLatin1Char(']'), QLatin1String("]]"));
    return QLatin1Char('[') + quoted + QLatin1Char(']');
}

// The stored number of a Money, Date or Boolean value; false when the value doesn't fit.
bool NumberFromSql(Kind kind, const QVariant& value, std::int64_t& number) {
    if (value.isNull()) {
        number = kNull;
        return true;
    }
    const int type = value.metaType().id();
    switch (kind) {
    case Kind::Money:
        if (type == QMetaType::LongLong || type == QMetaType::Int) {
            number = value.toLongLong();
            return true;
        }
        if (type == QMetaType::Double) {
            const double raw = value.toDouble();
            if (!(raw > -9.2e18 && raw < 9.2e18))
                return false;
            number = std::llround(raw);
            return true;
        }
        return false;
    case Kind::Date: {
        if (type != QMetaType::QString)
            return false;
        const QString text = value.toString();
        if (text.isEmpty()) {
            number = kNull;
            return true;
        }
        return store::StoredJulianDay(text.utf16(), text.size(), number);
    }
    case Kind::Boolean:
        if (type == QMetaType::LongLong || type == QMetaType::Int || type == QMetaType::Double) {
            number = value.toDouble() != 0 ? 1 : 0;
            return true;
        }
        return false;
    case Kind::Text:
    case Kind::Other:
        break;
    }
    return false;
}

QVariant TypedFromNumber(Kind kind, std::int64_t number) {
    if (number == kNull)
        return QVariant();
    switch (kind) {
    case Kind::Money:
        return QVariant::fromValue(Currency::FromRaw(number));
    case Kind::Date:
        return QVariant(QDate::fromJulianDay(number));
    case Kind::Boolean:
        return QVariant(number != 0);
    case Kind::Text:
    case Kind::Other:
        break;
    }
    return QVariant();
}

// A caller's value converted to what the column holds; raises 13 when it doesn't convert.
QVariant TypedForWrite(Kind kind, const QVariant& value) {
    if (value.isNull())
        return QVariant();
    const int type = value.metaType().id();
    const bool isCurrency = value.metaType() == QMetaType::fromType<Currency>();
    switch (kind) {
    case Kind::Text:
        return QVariant(NonNull(type == QMetaType::QString ? value.toString() : CStr(value)));
    case Kind::Money:
        if (isCurrency)
            return value;
        if (IsNumberType(type))
            return QVariant::fromValue(Currency::FromDouble(value.toDouble()));
        if (type == QMetaType::QString)
            return QVariant::fromValue(CCur(value));
        break;
    case Kind::Date:
        if (type == QMetaType::QDate && value.toDate().isValid())
            return value;
        if (type == QMetaType::QDateTime && value.toDateTime().isValid())
            return QVariant(value.toDateTime().date());
        if (type == QMetaType::QString) {
            const QString text = value.toString().trimmed();
            if (text.isEmpty())
                return QVariant();
            if (const auto date = Regional::ParseDate(text))
                return QVariant(*date);
        }
        break;
    case Kind::Boolean:
        if (type == QMetaType::Bool)
            return value;
        if (IsNumberType(type))
            return QVariant(value.toDouble() != 0);
        if (isCurrency)
            return QVariant(value.value<Currency>().Raw() != 0);
        if (type == QMetaType::QString)
            return QVariant(CBool(value));
        break;
    case Kind::Other:
        return value;
    }
    throw VbError(VbError::TypeMismatch);
}

// The value bound into SQL for a converted value.
QVariant SqlFromTyped(Kind kind, const QVariant& typed) {
    if (typed.isNull())
        return QVariant();
    switch (kind) {
    case Kind::Text:
        return QVariant(NonNull(typed.toString()));
    case Kind::Money:
        return QVariant(static_cast<qlonglong>(typed.value<Currency>().Raw()));
    case Kind::Date:
        return QVariant(typed.toDate().toString(Qt::ISODate));
    case Kind::Boolean:
        return QVariant(typed.toBool() ? 1 : 0);
    case Kind::Other:
        break;
    }
    return typed;
}

// "select * from <table> [where ...] [order by ...]": the statements whose rows can be
// written back, through the rowid that is fetched with them.
const QRegularExpression& SingleTableSelect() {
    static const QRegularExpression pattern(
        QStringLiteral(R"(^\s*select\s+\*\s+from\s+\[?([A-Za-z_][A-Za-z0-9_]*)\]?)"
                       R"((?=\s*$|\s*;|\s+where\b|\s+order\b))"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return pattern;
}

} // namespace

namespace store {

// What Fields() gives for a value read from SQLite: converted when the declared type
// allows, else the value as it is.
QVariant TypedFromSql(Kind kind, const QVariant& value) {
    if (value.isNull())
        return QVariant();
    if (kind == Kind::Text)
        return QVariant(NonNull(value.toString()));
    std::int64_t number = 0;
    if (kind != Kind::Other && NumberFromSql(kind, value, number))
        return TypedFromNumber(kind, number);
    return value;
}

} // namespace store

Recordset::Recordset(std::shared_ptr<store::Connection> connection, const QString& sql,
                     bool snapshot, const QVariantList& params)
    : mConnection(std::move(connection)), mQuery(sql), mParams(params) {
    const QRegularExpressionMatch match = SingleTableSelect().match(sql);
    if (match.hasMatch()) {
        if (const store::TableInfo* table = mConnection->Table(match.captured(1))) {
            mTable = table->name;
            if (!snapshot) {
                mUpdatable = true;
                static const QRegularExpression selectStar(
                    QStringLiteral(R"(^\s*select\s+\*)"),
                    QRegularExpression::CaseInsensitiveOption);
                mQuery.replace(selectStar, QStringLiteral("SELECT rowid, *"));
            }
        }
    }
    Load();
}

Recordset::~Recordset() = default;

void Recordset::Load() {
    QSqlQuery query(mConnection->Checked());
    query.setForwardOnly(true);
    if (!query.prepare(mQuery))
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    for (const QVariant& value : mParams)
        query.addBindValue(value);
    if (!query.exec())
        throw store::SqlFailure(query.lastError(), dbError::QueryError);

    // Built aside, so that a failed Requery leaves the rows held before.
    const store::TableInfo* table = mTable.isEmpty() ? nullptr : mConnection->Table(mTable);
    const QSqlRecord record = query.record();
    const int first = mUpdatable ? 1 : 0;
    std::vector<Column> columns;
    QHash<QString, int> indexByName;
    int keyColumn = -1;
    for (int i = first; i < record.count(); ++i) {
        Column column;
        column.name = record.fieldName(i);
        column.kind = Kind::Other;
        if (table) {
            for (int t = 0; t < table->columns.size(); ++t) {
                if (table->columns[t].compare(column.name, Qt::CaseInsensitive) == 0) {
                    column.kind = table->kinds[t];
                    break;
                }
            }
        }
        column.mixed = column.kind == Kind::Other;
        if (table && table->key.compare(column.name, Qt::CaseInsensitive) == 0)
            keyColumn = static_cast<int>(columns.size());
        indexByName.insert(column.name, static_cast<int>(columns.size()));
        columns.push_back(std::move(column));
    }

    std::vector<std::int64_t> rowIds;
    while (query.next()) {
        rowIds.push_back(mUpdatable ? query.value(0).toLongLong() : 0);
        for (std::size_t c = 0; c < columns.size(); ++c)
            Append(columns[c], query.value(static_cast<int>(c) + first));
    }
    if (query.lastError().isValid())
        throw store::SqlFailure(query.lastError(), dbError::QueryError);

    mColumns = std::move(columns);
    mIndexByName = std::move(indexByName);
    mKeyColumn = keyColumn;
    mRowIds = std::move(rowIds);
    mGone.assign(mRowIds.size(), 0);
    mLive = static_cast<int>(mRowIds.size());
    mPos = mLive > 0 ? 0 : -1;
    mSerial = ++gSerials;
}

void Recordset::Append(Column& column, const QVariant& value) {
    if (!column.mixed) {
        if (column.kind == Kind::Text) {
            if (value.isNull())
                column.spans.push_back({0, kNullText});
            else if (value.metaType().id() == QMetaType::QString)
                AppendText(column, *static_cast<const QString*>(value.constData()));
            else
                AppendText(column, value.toString());
            return;
        }
        std::int64_t number = 0;
        if (NumberFromSql(column.kind, value, number)) {
            column.numbers.push_back(number);
            return;
        }
        // A value the declared type can't carry: from here on the column keeps every value
        // as it is read.
        column.values.reserve(column.numbers.size() + 1);
        for (std::int64_t stored : column.numbers)
            column.values.push_back(TypedFromNumber(column.kind, stored));
        column.numbers = {};
        column.mixed = true;
    }
    column.values.push_back(store::TypedFromSql(column.kind, value));
}

void Recordset::AppendText(Column& column, const QString& text) {
    const auto start = static_cast<std::uint32_t>(column.chars.size());
    if (column.chars.size() + text.size() >= kNullText)
        throw VbError(7, QStringLiteral("Out of memory"));
    column.chars.insert(column.chars.end(), text.utf16(), text.utf16() + text.size());
    column.spans.push_back({start, static_cast<std::uint32_t>(text.size())});
}

QVariant Recordset::Stored(const Column& column, std::size_t row) const {
    if (column.mixed)
        return column.values[row];
    if (column.kind == Kind::Text) {
        const TextSpan span = column.spans[row];
        if (span.length == kNullText)
            return QVariant();
        if (span.length == 0)
            return QVariant(NonNull(QString()));
        return QVariant(
            QString(reinterpret_cast<const QChar*>(column.chars.data() + span.start), span.length));
    }
    return TypedFromNumber(column.kind, column.numbers[row]);
}

void Recordset::Store(Column& column, std::size_t row, const QVariant& typed) {
    if (column.mixed) {
        column.values[row] = typed;
        return;
    }
    switch (column.kind) {
    case Kind::Text:
        if (typed.isNull()) {
            column.spans[row] = {0, kNullText};
        } else {
            AppendText(column, typed.toString());
            column.spans[row] = column.spans.back();
            column.spans.pop_back();
        }
        return;
    case Kind::Money:
        column.numbers[row] = typed.isNull() ? kNull : typed.value<Currency>().Raw();
        return;
    case Kind::Date:
        column.numbers[row] = typed.isNull() ? kNull : typed.toDate().toJulianDay();
        return;
    case Kind::Boolean:
        column.numbers[row] = typed.isNull() ? kNull : (typed.toBool() ? 1 : 0);
        return;
    case Kind::Other:
        break;
    }
}

void Recordset::CheckOpen() const {
    if (mClosed)
        throw VbError(dbError::ObjectClosed, QStringLiteral("Object invalid or no longer set."));
}

void Recordset::CheckUpdatable() const {
    if (!mUpdatable)
        throw VbError(dbError::ReadOnly,
                      QStringLiteral("Cannot update. Database or object is read-only."));
}

std::size_t Recordset::CurrentRow() const {
    if (mPos < 0 || mPos >= static_cast<std::ptrdiff_t>(mRowIds.size()))
        throw NoCurrentRecord();
    if (mGone[mPos])
        throw VbError(dbError::RecordDeleted, QStringLiteral("Record is deleted."));
    return static_cast<std::size_t>(mPos);
}

void Recordset::ClearEdit() {
    mEditMode = dbEditNone;
    mPending.clear();
    mDirty.clear();
}

QString Recordset::RowCondition(std::size_t row, QVariantList& values) const {
    values.append(QVariant(static_cast<qlonglong>(mRowIds[row])));
    if (mKeyColumn < 0)
        return QStringLiteral("rowid = ?");
    // A rowid freed by a deleted row may have gone to another record since it was read.
    const Column& key = mColumns[mKeyColumn];
    values.append(SqlFromTyped(key.kind, Stored(key, row)));
    return QStringLiteral("rowid = ? AND %1 IS ?").arg(Quoted(key.name));
}

bool Recordset::IsEOF() const {
    CheckOpen();
    return mLive == 0 || mPos >= static_cast<std::ptrdiff_t>(mRowIds.size());
}

bool Recordset::IsBOF() const {
    CheckOpen();
    return mLive == 0 || mPos < 0;
}

int Recordset::RecordCount() const {
    CheckOpen();
    return mLive;
}

void Recordset::MoveFirst() {
    CheckOpen();
    if (mLive == 0)
        throw NoCurrentRecord();
    ClearEdit();
    mPos = 0;
    while (mGone[mPos])
        ++mPos;
}

void Recordset::MoveLast() {
    CheckOpen();
    if (mLive == 0)
        throw NoCurrentRecord();
    ClearEdit();
    mPos = static_cast<std::ptrdiff_t>(mRowIds.size()) - 1;
    while (mGone[mPos])
        --mPos;
}

void Recordset::MoveNext() {
    if (IsEOF())
        throw NoCurrentRecord();
    ClearEdit();
    const auto size = static_cast<std::ptrdiff_t>(mRowIds.size());
    do
        ++mPos;
    while (mPos < size && mGone[mPos]);
}

void Recordset::MovePrevious() {
    if (IsBOF())
        throw NoCurrentRecord();
    ClearEdit();
    do
        --mPos;
    while (mPos >= 0 && mGone[mPos]);
}

int Recordset::FieldCount() const {
    return static_cast<int>(mColumns.size());
}

QString Recordset::FieldName(int index) const {
    if (index < 0 || index >= FieldCount())
        throw VbError(VbError::ItemNotFound);
    return mColumns[index].name;
}

int Recordset::FieldIndex(const QString& name) const {
    if (auto found = mIndexByName.constFind(name); found != mIndexByName.constEnd())
        return found.value();
    for (std::size_t c = 0; c < mColumns.size(); ++c) {
        if (mColumns[c].name.compare(name, Qt::CaseInsensitive) == 0)
            return static_cast<int>(c);
    }
    throw VbError(VbError::ItemNotFound);
}

QVariant Recordset::Fields(const QString& name) const {
    return Fields(FieldIndex(name));
}

QVariant Recordset::Fields(int index) const {
    CheckOpen();
    if (index < 0 || index >= FieldCount())
        throw VbError(VbError::ItemNotFound);
    if (mEditMode != dbEditNone)
        return mPending[index];
    return Stored(mColumns[index], CurrentRow());
}

void Recordset::SetField(const QString& name, const QVariant& value) {
    SetField(FieldIndex(name), value);
}

void Recordset::SetField(int index, const QVariant& value) {
    CheckOpen();
    if (index < 0 || index >= FieldCount())
        throw VbError(VbError::ItemNotFound);
    if (mEditMode == dbEditNone)
        throw VbError(VbError::UpdateWithoutEdit);
    mPending[index] = TypedForWrite(mColumns[index].kind, value);
    mDirty[index] = 1;
}

void Recordset::AddNew() {
    CheckOpen();
    CheckUpdatable();
    mPending.assign(mColumns.size(), QVariant());
    mDirty.assign(mColumns.size(), 0);
    mEditMode = dbEditAdd;
}

void Recordset::Edit() {
    CheckOpen();
    CheckUpdatable();
    const std::size_t row = CurrentRow();
    mPending.clear();
    mPending.reserve(mColumns.size());
    for (const Column& column : mColumns)
        mPending.push_back(Stored(column, row));
    mDirty.assign(mColumns.size(), 0);
    mEditMode = dbEditInProgress;
}

void Recordset::Update() {
    CheckOpen();
    if (mEditMode == dbEditNone)
        throw VbError(VbError::UpdateWithoutEdit);

    QStringList names;
    QVariantList values;
    for (std::size_t c = 0; c < mColumns.size(); ++c) {
        if (!mDirty[c])
            continue;
        names.append(Quoted(mColumns[c].name));
        values.append(SqlFromTyped(mColumns[c].kind, mPending[c]));
    }
    if (mEditMode == dbEditInProgress && names.isEmpty()) {
        ClearEdit();
        return;
    }

    // One statement: SQLite runs it as one transaction, so a refusal leaves the table as it was.
    QString sql;
    if (mEditMode == dbEditAdd) {
        sql = names.isEmpty() ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(Quoted(mTable))
                              : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                    .arg(Quoted(mTable), names.join(QStringLiteral(", ")),
                                         QStringList(names.size(), QStringLiteral("?"))
                                             .join(QStringLiteral(", ")));
    } else {
        const QString where = RowCondition(CurrentRow(), values);
        sql = QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3")
                  .arg(Quoted(mTable), names.join(QStringLiteral(" = ?, ")), where);
    }
    QSqlQuery query(mConnection->Checked());
    if (!query.prepare(sql))
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    for (const QVariant& value : values)
        query.addBindValue(value);
    if (!store::ExecWaiting(query, mConnection->lockWaitMs))
        throw store::SqlFailure(query.lastError(), dbError::DiskError);

    if (mEditMode == dbEditInProgress) {
        if (query.numRowsAffected() == 0)
            throw RowGone();
        const std::size_t row = CurrentRow();
        for (std::size_t c = 0; c < mColumns.size(); ++c) {
            if (mDirty[c])
                Store(mColumns[c], row, mPending[c]);
        }
    }
    ClearEdit();
}

void Recordset::CancelUpdate() {
    CheckOpen();
    ClearEdit();
}

void Recordset::Delete() {
    CheckOpen();
    CheckUpdatable();
    const std::size_t row = CurrentRow();
    QVariantList values;
    const QString where = RowCondition(row, values);
    QSqlQuery query(mConnection->Checked());
    if (!query.prepare(QStringLiteral("DELETE FROM %1 WHERE %2").arg(Quoted(mTable), where)))
        throw store::SqlFailure(query.lastError(), dbError::QueryError);
    for (const QVariant& value : values)
        query.addBindValue(value);
    if (!store::ExecWaiting(query, mConnection->lockWaitMs))
        throw store::SqlFailure(query.lastError(), dbError::DiskError);
    if (query.numRowsAffected() == 0)
        throw RowGone();
    ClearEdit();
    mGone[row] = 1;
    --mLive;
}

void Recordset::Requery() {
    CheckOpen();
    ClearEdit();
    Load();
}

void Recordset::Close() {
    mClosed = true;
    ClearEdit();
    mColumns.clear();
    mIndexByName.clear();
    mRowIds.clear();
    mGone.clear();
    mLive = 0;
    mPos = -1;
}
