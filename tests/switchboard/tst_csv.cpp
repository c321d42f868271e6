#include "Fixture.h"
#include "ListRows.h"
#include "Modal.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "app/Backups.h"
#include "data/Database.h"
#include "switchboard/frmImport.h"
#include "switchboard/frmSwitchboard.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace {
const QByteArray kHeader =
    "RebateID,RebateName,Address,PhoneNumber,Email,WebSite,ProductName,PurchasePrice,ExpDate,"
    "DatePurchased,LocationPurchased,RebateAmount,PostagePrice,CouponAmount,DateSent,DateDue,"
    "AmountReceived,FollowupDate,FollowupPostage,DateReceived,Rejected,ReasonRejected,Deleted,"
    "Remarks\r\n";

// A record that reads, with some fields replaced (by index); an empty field is Null.
QByteArray Line(const QByteArray& id, const QMap<int, QByteArray>& changes = {}) {
    QList<QByteArray> fields = {id, "Name " + id, "", "",     "",      "", "Product", "10.00",
                                "", "",           "", "5.00", "",      "", "",        "",
                                "", "",           "", "",     "False", "", "False",   ""};
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        fields[it.key()] = it.value();
    return fields.join(',') + "\r\n";
}

QString WriteFile(const Fixture& fixture, const QByteArray& bytes) {
    const QString path = fixture.ProgramDir() + "in.csv";
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return {};
    return path;
}

struct Preview {
    QString summary;
    QString report;
    int rows = -1;
    bool importable = false;
};
} // namespace

class tst_csv : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;

    // Imports the file through the File menu; the preview is read, then Import (or Cancel)
    // is clicked.
    Preview Import(ProgramWindow& window, const QString& path, bool confirm = true) {
        Preview seen;
        mFixture->Desktop().filePaths << path;
        WhenModal("frmImport", [&seen, confirm](QWidget* dialog) {
            auto* form = static_cast<frmImport*>(dialog);
            seen = {form->lblSummary->text(), form->txtReport->toPlainText(),
                    form->tblPreview->model()->rowCount(), form->cmdImport->isEnabled()};
            QTest::mouseClick(confirm && seen.importable ? form->cmdImport : form->cmdCancel,
                              Qt::LeftButton);
        });
        window.Switchboard().mnuImport->trigger();
        return seen;
    }

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() { mFixture.reset(); }

    // Every kind of value goes out and comes back the same.
    void roundTrip() {
        RebateRow odd{.RebateID = "q1",
                      .RebateName = "Say \"hi\", you",
                      .Address = "12 Main St\nApt 4\r\nSpringfield",
                      .PhoneNumber = "",
                      .ProductName = "Café 中文 😀",
                      .PurchasePrice = -3.25,
                      .ExpDate = QDate(2026, 12, 31),
                      .RebateAmount = 0.0005,
                      .Remarks = ", leading comma"};
        RebateRow nulls = MoneyRow("n1", {}, {}, {}, {}, {}, {}, std::nullopt);
        for (auto* text :
             {&nulls.RebateName, &nulls.Address, &nulls.PhoneNumber, &nulls.ProductName})
            text->reset();
        RebateRow paid = RouterRow("p1", "Router");
        paid.DateSent = QDate(2026, 9, 1);
        paid.DateDue = QDate(2026, 10, 27);
        paid.DateReceived = QDate(2026, 10, 20);
        paid.AmountReceived = 1234567.89;
        paid.Rejected = true;
        mFixture->OpenDatabase({odd, nulls, paid});
        const QStringList ids = {"n1", "p1", "q1"};
        QList<QVariantMap> before;
        for (const QString& id : ids)
            before << ReadRawRebate(id);

        ProgramWindow window;
        window.ClickTab("All");
        const QString out = mFixture->ProgramDir() + "all.csv";
        mFixture->Desktop().filePaths << out;
        window.Switchboard().mnuExportList->trigger();
        const QByteArray file = ReadFile(out);
        QVERIFY(file.startsWith(kHeader));
        QVERIFY(file.contains("\r\nq1,\"Say \"\"hi\"\", you\",\"12 Main St\nApt 4\r\nSpringfield\","
                              "\"\",,,Café 中文 😀,-3.25,2026-12-31,,,0.0005,0.00,0.00,,,0.00,,"
                              "0.00,,False,,False,\", leading comma\"\r\n"));
        QVERIFY(file.contains("\r\nn1,,,,,,,,,,,,,,,,,,,,,,False,\r\n"));
        QCOMPARE(file.count("\r\n"), 1 + 3 + 1);

        // The selected rows go out in the list's order; a file that can't be written is told.
        SelectIDs(window.Switchboard().lvAll, {"p1", "n1"});
        const QStringList order = ListedIDs(window.Switchboard().lvAll, true);
        const QString selected = mFixture->ProgramDir() + "sel.csv";
        mFixture->Desktop().filePaths << selected;
        window.Switchboard().mnuExportSelected->trigger();
        const QStringList lines = QString::fromUtf8(ReadFile(selected)).split("\r\n");
        QCOMPARE(lines.size(), 4);
        QVERIFY(lines[1].startsWith(order[0] + ',') && lines[2].startsWith(order[1] + ','));
        const QString missing = mFixture->ProgramDir() + "missing/all.csv";
        mFixture->Desktop().filePaths << missing;
        window.Switchboard().mnuExportList->trigger();
        QVERIFY(!QFile::exists(missing));
        QCOMPARE(mFixture->Desktop().boxes.size(), 1);
        QCOMPARE(mFixture->Desktop().boxes[0].title, QString("Export Failed"));
        QVERIFY(mFixture->Desktop().boxes[0].prompt.startsWith("The file '" + missing +
                                                               "' could not be written"));

        gDatabase->Execute("DELETE FROM Rebates");
        const Preview preview = Import(window, out);
        QCOMPARE(preview.summary.split('\n').first(),
                 QString("3 rebates will be added from 'all.csv'."));
        QCOMPARE(preview.report, QString());
        for (int i = 0; i < ids.size(); ++i)
            QCOMPARE(ReadRawRebate(ids[i]), before[i]);
        QCOMPARE(SortedIDs(window.Switchboard().lvAll), ids);
        // The store as it was before the import is kept.
        QCOMPARE(Backups::List().size(), 1);
        QCOMPARE(Backups::List().first().records, 0);
    }

    // Each line that can't be read is named with its reason; the readable one is added.
    void refusesBadLines_data() {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QByteArray>("bad");
        QTest::addColumn<QString>("report");
        const auto bad = [](const char* name, const QByteArray& line, const char* report) {
            QTest::newRow(name) << kHeader << line << QString(report);
        };
        bad("other encoding", Line("b", {{1, "Caf\xE9"}}),
            "Line 3: not UTF-8 text (the file may be in another encoding)");
        bad("quote left open", Line("b", {{1, "\"open"}}),
            "Line 3: a quoted field is never closed");
        bad("impossible date", Line("b", {{14, "2024-02-30"}}),
            "Line 3: DateSent \"2024-02-30\" is not a date (yyyy-mm-dd)");
        bad("amount with a sign", Line("b", {{7, "$12.50"}, {20, "maybe"}}),
            "Line 3: PurchasePrice \"$12.50\" is not an amount (a plain decimal such as 12.50); "
            "Rejected \"maybe\" is not True or False");
        bad("amount too large", Line("b", {{11, "922337203685477.5808"}}),
            "Line 3: RebateAmount \"922337203685477.5808\" is too large an amount");
        bad("no RebateID", Line(""), "Line 3: no RebateID");
        bad("RebateID twice", Line("good"), "Line 3: RebateID \"good\" again (first on line 2)");
        bad("RebateID in the store", Line("stored"),
            "Line 3: RebateID \"stored\" is already in the database; the record there is kept");
        QTest::newRow("wrong header")
            << QByteArray(kHeader).replace("RebateName", "Name").replace(",Remarks", "")
            << QByteArray()
            << "Line 1: the header doesn't name the columns of the table Rebates (missing "
               "RebateName, Remarks; not in the table \"Name\"); no line can be read";
    }
    void refusesBadLines() {
        QFETCH(QByteArray, header);
        QFETCH(QByteArray, bad);
        QFETCH(QString, report);
        mFixture->OpenDatabase({RouterRow("stored", "Stored")});
        const QVariantMap stored = ReadRawRebate("stored");
        ProgramWindow window;
        const bool headerRight = header == kHeader;
        const Preview preview = Import(window, WriteFile(*mFixture, header + Line("good") + bad));
        QCOMPARE(preview.report, report);
        QCOMPARE(preview.importable, headerRight);
        QCOMPARE(preview.rows, headerRight ? 1 : 0);
        QCOMPARE(CountRebates(), headerRight ? 2 : 1);
        QCOMPARE(ReadRawRebate("good").value("ProductName"),
                 headerRight ? QVariant("Product") : QVariant());
        QCOMPARE(ReadRawRebate("stored"), stored);
    }

    // Cancel writes nothing; a store that refuses one record takes none of them; a file that
    // leaves Deleted empty (a spreadsheet's own rows) adds rebates the lists show.
    void importAllOrNothing() {
        mFixture->OpenDatabase();
        ProgramWindow window;
        window.ClickTab("All");
        QCOMPARE(Import(window, WriteFile(*mFixture, kHeader + Line("a") + Line("b")), false).rows,
                 2);
        QCOMPARE(CountRebates(), 0);
        QVERIFY(Backups::List().isEmpty());

        gDatabase->Execute("CREATE TRIGGER refuse BEFORE INSERT ON Rebates WHEN "
                           "NEW.RebateID = 'b' BEGIN SELECT RAISE(ABORT, 'refused'); END");
        Import(window, WriteFile(*mFixture, kHeader + Line("a") + Line("b") + Line("c")));
        QCOMPARE(CountRebates(), 0);
        QVERIFY(mFixture->LogText().contains("mnuImport_Click"));
        QVERIFY(!mFixture->Desktop().Shown().join('\n').contains("Import Complete"));

        Import(window, WriteFile(*mFixture, kHeader + Line("e", {{20, ""}, {22, ""}})));
        QCOMPARE(SortedIDs(window.Switchboard().lvAll), QStringList{"e"});
        QCOMPARE(ReadRawRebate("e").value("Deleted").toInt(), 0);
    }
};

QTEST_MAIN(tst_csv)
#include "tst_csv.moc"
