#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <vector>

namespace store {
struct Connection;
enum class Kind : unsigned char;
} // namespace store

// Edit modes, as the program has always numbered them.
enum EditModeEnum { dbEditNone = 0, dbEditInProgress = 1, dbEditAdd = 2 };

// The rows of one query, read once and held in memory with their rowids, and a cursor over
// them. Values come back converted by the column's declared type: money as Currency, dates
// as QDate, Booleans as bool, text as QString, Null as a null QVariant.
//
// Writes go through AddNew or Edit, SetField and Update; Update writes the one row at once.
// A row added with AddNew is written to the table but does not join this recordset. An edit
// or delete reaches the row it was read from and nothing else: by its rowid and, where the
// table has a one-column primary key, by the key it was read with.
class Recordset {
public:
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    bool IsEOF() const;
    bool IsBOF() const;
    int RecordCount() const; // rows held, less those deleted through this recordset

    // Each raises 3021 when there is nowhere to go; each drops a pending AddNew or Edit.
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    int FieldCount() const;
    QString FieldName(int index) const;
    // The column's index (names compare without regard to case); raises 3265 when unknown.
    int FieldIndex(const QString& name) const;

    // The current row's value (or the pending one during AddNew/Edit). Raises 3021 with no
    // current row, 3167 on a row deleted through this recordset, 3265 for an unknown name.
    QVariant Fields(const QString& name) const;
    QVariant Fields(int index) const;

    // Sets a value of the pending row. Money takes numbers, Currency or numeric text; dates
    // take QDate or date text ("" or Null is Null); Booleans take bool or numbers. A value that
    // doesn't convert raises 13 and changes nothing. Raises 3020 outside AddNew/Edit.
    void SetField(const QString& name, const QVariant& value);
    void SetField(int index, const QVariant& value);

    void AddNew(); // starts a new row with every column Null; replaces a pending one
    void Edit();   // starts editing the current row
    // Writes the pending row (INSERT for AddNew, UPDATE for Edit). On any refusal (locked or
    // read-only file, full disk, duplicate key 3022, 3167 for a row no longer in the table)
    // raises, leaves the table unchanged and keeps the edit pending so that the caller may
    // try again.
    void Update();
    void CancelUpdate(); // drops a pending AddNew or Edit; nothing pending is no error
    // Removes the current row from the table for good; 3167 when it is no longer there.
    void Delete();
    void Requery(); // runs the query again and goes to its first row
    void Close();   // later calls raise 3420

    int EditMode() const { return mEditMode; }
    bool Updatable() const { return mUpdatable; }
    // Different for every recordset ever opened, so callers may cache column indexes.
    std::uint64_t Serial() const { return mSerial; }

private:
    friend class Database;
    Recordset(std::shared_ptr<store::Connection> connection, const QString& sql, bool snapshot,
              const QVariantList& params);

    // Where a text lies in its column's characters; a length of kNullText is Null.
    struct TextSpan {
        std::uint32_t start;
        std::uint32_t length;
    };

    struct Column {
        QString name;
        store::Kind kind;
        // Typed storage by kind. Text: the characters of all rows in one block, a span per
        // row (an edited text is appended and its span moved). Money (ten-thousandths), Date
        // (Julian day) and Boolean (0/1): one number per row, kNull for Null. A column holding
        // a value its declared type can't carry keeps all its values in `values` instead.
        std::vector<char16_t> chars;
        std::vector<TextSpan> spans;
        std::vector<std::int64_t> numbers;
        std::vector<QVariant> values;
        bool mixed = false;
    };

    static void AppendText(Column& column, const QString& text);
    void Load();
    void Append(Column& column, const QVariant& value);
    QVariant Stored(const Column& column, std::size_t row) const;
    void Store(Column& column, std::size_t row, const QVariant& typed);
    void CheckOpen() const;
    void CheckUpdatable() const;
    std::size_t CurrentRow() const; // raises 3021 / 3167
    void ClearEdit();
    // "rowid = ?" and the key test that find the held row `row` in the table, with their
    // values appended to `values`.
    QString RowCondition(std::size_t row, QVariantList& values) const;

    std::shared_ptr<store::Connection> mConnection;
    QString mQuery; // as run (with the rowid when updatable)
    QVariantList mParams;
    QString mTable;      // the table of a "select * from <table> ..." statement
    int mKeyColumn = -1; // the table's one-column primary key among the columns, if held
    bool mUpdatable = false;
    bool mClosed = false;
    std::uint64_t mSerial = 0;

    std::vector<Column> mColumns;
    QHash<QString, int> mIndexByName;
    std::vector<std::int64_t> mRowIds;
    std::vector<char> mGone; // deleted through this recordset
    int mLive = 0;           // rows not gone
    std::ptrdiff_t mPos = -1;

    int mEditMode = dbEditNone;
    std::vector<QVariant> mPending;
    std::vector<char> mDirty;
};
