#include "Fixture.h"
#include "RebateRows.h"
#include "common/core/Currency.h"
#include "common/core/VbError.h"
#include "data/Database.h"

#include <QFile>
#include <QTest>

namespace {

const QString kMatchNone = "Select * from Rebates Where RebateID = 'Match None'";

} // namespace

class tst_store : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void openRefusesWhatIsNoDatabase_data() {
        QTest::addColumn<QByteArray>("content"); // null: no file at all
        QTest::addColumn<int>("error");
        QTest::newRow("missing file") << QByteArray() << 3024;
        QTest::newRow("text file") << QByteArray(4096, 'x') << 3049;
        QTest::newRow("damaged header")
            << QByteArray("SQLite format 3").append(200, '\x7f') << 3049;
    }
    void openRefusesWhatIsNoDatabase() {
        QFETCH(QByteArray, content);
        QFETCH(int, error);
        Fixture fixture;
        const QString path = fixture.ProgramDir() + "Other.mdb";
        if (!content.isNull()) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        QCOMPARE(ErrorOf([&] { Database::Open(path); }), error);
        QCOMPARE(QFile::exists(path), !content.isNull());
        QCOMPARE(ReadFile(path), content);
    }

    void reserveOpensUnderAnyFileName() {
        Fixture fixture;
        const QString path = fixture.ProgramDir() + QString::fromUtf8("Rebates #1 ?%20 café.mdb");
        QVERIFY(QFile::copy(fixture.ReservePath(), path));
        auto database = Database::Open(path);
        QCOMPARE(database->Name(), path);
        // The empty table every new store starts from (its columns: InsertRebates, every test).
        QCOMPARE(database->OpenRecordset(kMatchNone)->FieldCount(), 24);
        QCOMPARE(database->OpenRecordset("Select * from Rebates")->RecordCount(), 0);
    }

    void queries_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("engineText");
        auto row = [](const char* name, const QString& sql, const QStringList& keys) {
            QTest::newRow(name) << sql << keys << 0 << QString();
        };
        auto refused = [](const char* name, const QString& sql, int error, const char* engineText) {
            QTest::newRow(name) << sql << QStringList() << error << QString(engineText);
        };
        row("new record", kMatchNone, {});
        row("one record", "Select * from Rebates Where RebateID = 'A'", {"A"});
        row("list row", "SELECT * FROM Rebates WHERE (([RebateID])= 'B');", {"B"});
        refused("unbalanced parenthesis",
                "Select * from Rebates WHERE NOT (([Deleted])=True Order by DateSent", 3075,
                "syntax error");
        refused("unknown column", "Select * from Rebates WHERE Nope = 1", 3075,
                "no such column: Nope");
        refused("quote in key", "Select * from Rebates Where RebateID = 'O'Neil'", 3075,
                "syntax error");
        refused("missing table", "Select * from Claims", 3078, "no such table: Claims");
    }
    void queries() {
        QFETCH(QString, sql);
        QFETCH(QStringList, keys);
        QFETCH(int, error);
        QFETCH(QString, engineText);
        Fixture fixture;
        fixture.OpenDatabase({{.RebateID = "A"},
                              {.RebateID = "B", .Deleted = true},
                              {.RebateID = "C", .Deleted = std::nullopt}});
        for (int type : {dbOpenDynaset, dbOpenSnapshot}) {
            try {
                auto rs = gDatabase->OpenRecordset(sql, type);
                QCOMPARE(rs->RecordCount(), keys.size());
                QStringList found;
                for (; !rs->IsEOF(); rs->MoveNext())
                    found << rs->Fields("RebateID").toString();
                QCOMPARE(found, keys);
                QCOMPARE(0, error);
            } catch (const VbError& raised) {
                QCOMPARE(raised.Number(), error);
                QVERIFY2(raised.Description().contains(engineText),
                         qPrintable(raised.Description()));
            }
        }
    }

    void valuesRoundTrip_data() {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("written");
        QTest::addColumn<QVariant>("stored"); // as SQLite holds it
        QTest::addColumn<QVariant>("read");   // as Fields gives it back
        const auto row = [](const char* name, const char* column, const QVariant& written,
                            const QVariant& stored, const QVariant& read) {
            QTest::newRow(name) << QString(column) << written << stored << read;
        };
        const auto money = [](qlonglong raw) {
            return QVariant::fromValue(Currency::FromRaw(raw));
        };
        const QVariant null;
        const QVariant text("Sent by \"certified\" mail; 2 UPCs");
        row("text", "Remarks", text, text, text);
        row("money from double", "PurchasePrice", 129.99, qlonglong(1299900), money(1299900));
        row("money from text", "RebateAmount", "$1,234.50", qlonglong(12345000), money(12345000));
        row("money, four decimals", "PostagePrice", money(4901), qlonglong(4901), money(4901));
        row("negative money", "CouponAmount", -5, qlonglong(-50000), money(-50000));
        row("date from text", "DateSent", "11/5/2026", "2026-11-05", QDate(2026, 11, 5));
        row("date", "DateDue", QDate(2027, 1, 31), "2027-01-31", QDate(2027, 1, 31));
        row("date cleared", "FollowupDate", QString(""), null, null);
        row("Boolean true", "Rejected", true, qlonglong(1), true);
        row("Boolean from number", "Deleted", 0, qlonglong(0), false);
    }
    void valuesRoundTrip() {
        QFETCH(QString, column);
        QFETCH(QVariant, written);
        QFETCH(QVariant, stored);
        QFETCH(QVariant, read);
        Fixture fixture;
        fixture.OpenDatabase();
        auto rs = gDatabase->OpenRecordset(kMatchNone);
        rs->AddNew();
        rs->SetField("RebateID", "1");
        rs->SetField(column, written);
        rs->Update();
        const QVariantMap raw = ReadRawRebate("1");
        QCOMPARE(raw.value(column).isNull(), stored.isNull());
        if (!stored.isNull())
            QCOMPARE(raw.value(column), stored);

        const QVariant value =
            gDatabase->OpenRecordset("Select * from Rebates Where RebateID = '1'")->Fields(column);
        QCOMPARE(value.isNull(), read.isNull());
        if (!read.isNull()) {
            QCOMPARE(value.metaType(), read.metaType());
            QCOMPARE(value, read);
        }
    }

    void unconvertibleValueChangesNothing_data() {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("date") << "DateSent" << QVariant("13/45/2026");
        QTest::newRow("money") << "PurchasePrice" << QVariant("twelve dollars");
        QTest::newRow("Boolean") << "Rejected" << QVariant("perhaps");
    }
    void unconvertibleValueChangesNothing() {
        QFETCH(QString, column);
        QFETCH(QVariant, value);
        Fixture fixture;
        fixture.OpenDatabase(
            {{.RebateID = "A", .PurchasePrice = 10.0, .DateSent = QDate(2026, 11, 1)}});
        auto rs = gDatabase->OpenRecordset("Select * from Rebates Where RebateID = 'A'");
        const QVariant before = rs->Fields(column);
        QVariantMap expected = ReadRawRebate("A");
        expected["Remarks"] = "still editing";
        rs->Edit();
        QCOMPARE(ErrorOf([&] { rs->SetField(column, value); }), 13);
        QCOMPARE(rs->Fields(column), before);
        rs->SetField("Remarks", "still editing");
        rs->Update();
        QCOMPARE(ReadRawRebate("A"), expected);
    }

    void duplicateKeyIsRefused() {
        Fixture fixture;
        fixture.OpenDatabase({{.RebateID = "1", .RebateName = "First"}});
        auto rs = gDatabase->OpenRecordset(kMatchNone);
        rs->AddNew();
        rs->SetField("RebateID", "1");
        rs->SetField("RebateName", "Second");
        QCOMPARE(ErrorOf([&] { rs->Update(); }), 3022);
        QCOMPARE(CountRebates(), 1);
        QCOMPARE(ReadRawRebate("1").value("RebateName"), QVariant("First"));
    }

    void recordsetOutlivesItsDatabase() {
        Fixture fixture;
        fixture.OpenDatabase({{.RebateID = "1", .RebateName = "Printer"}});
        auto rs = gDatabase->OpenRecordset("Select * from Rebates");
        gDatabase.reset();
        QCOMPARE(rs->Fields("RebateName"), QVariant("Printer"));
        rs->Edit();
        rs->SetField("RebateName", "Router");
        QCOMPARE(ErrorOf([&] { rs->Update(); }), 3420);
        QCOMPARE(ErrorOf([&] { rs->Requery(); }), 3420);
    }
};

QTEST_GUILESS_MAIN(tst_store)
#include "tst_store.moc"
