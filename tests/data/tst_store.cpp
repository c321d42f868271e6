#include "Fixture.h"
#include "RebateRows.h"
#include "app/clsRebate.h"
#include "common/core/Currency.h"
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
        row("date from text", "DateSent", "11/5/2026", "2026-11-05", QDate(2026, 11, 5));
        row("date cleared", "FollowupDate", QString(""), null, null);
        row("Boolean true", "Rejected", true, qlonglong(1), true);
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

    // Blanks are stored; a second record under the same key is refused and changes nothing.
    void blankMembersThenDuplicateKey() {
        Fixture fixture;
        fixture.OpenDatabase({{.RebateID = "1",
                               .RebateName = "Printer Rebate",
                               .Email = "rebates@maker.example",
                               .ProductName = "Printer",
                               .PurchasePrice = 129.99,
                               .DateSent = QDate(2026, 11, 5),
                               .ReasonRejected = "None"}});
        clsRebate::SetSelectedRebateIDSource([] { return QString("1"); });
        clsRebate rebate;
        rebate.SetEmail("");
        rebate.SetDateSent("");
        rebate.SetReasonRejected("");
        rebate.SetRebateName("");
        rebate.SetProductName("");
        rebate.Update();
        // Null, except in the columns the table keeps as "".
        const QVariantMap raw = ReadRawRebate("1");
        for (const char* column : {"Email", "DateSent", "ReasonRejected"})
            QVERIFY2(raw.value(column).isNull(), column);
        for (const char* column : {"RebateName", "ProductName"})
            QCOMPARE(raw.value(column), QVariant(""));
        QCOMPARE(raw.value("PurchasePrice"), QVariant(qlonglong(1299900)));

        auto rs = gDatabase->OpenRecordset(kMatchNone);
        rs->AddNew();
        rs->SetField("RebateID", "1");
        rs->SetField("RebateName", "Second");
        QCOMPARE(ErrorOf([&] { rs->Update(); }), 3022);
        QCOMPARE(CountRebates(), 1);
        QCOMPARE(ReadRawRebate("1"), raw);
    }
};

QTEST_GUILESS_MAIN(tst_store)
#include "tst_store.moc"
