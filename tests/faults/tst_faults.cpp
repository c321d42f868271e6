// Faults in the store's keys: a RebateID holding a quote, and a key that no longer names
// exactly one row. Each case reads the whole store back.
#include "Fixture.h"
#include "ListRows.h"
#include "ProgramWindow.h"
#include "RebateFormDriver.h"
#include "RebateRows.h"
#include "common/core/Globals.h"
#include "common/ui/ListView.h"
#include "common/ui/TabStrip.h"
#include "data/Database.h"
#include "data/RebateQueries.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/RebateFields.h"
#include "rebateform/frmRebate.h"
#include "shell/modMain.h"
#include "switchboard/frmSwitchboard.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

namespace {
const QString kQuote = "O'Brien";
const QString kInjected = "x' OR RebateID='1";
// Written into the SQL text, it would match every row.
const QString kMatchesAll = "none') OR ('1'='1";

// Every row as stored, with its rowid, in the table's order.
QList<QVariantMap> Store() {
    QList<QVariantMap> rows;
    QSqlQuery query(gDatabase->Connection());
    if (!query.exec("SELECT rowid AS Place, * FROM Rebates ORDER BY rowid"))
        qFatal("can't read the store");
    while (query.next()) {
        QVariantMap row;
        for (int i = 0; i < query.record().count(); ++i)
            row.insert(query.record().fieldName(i), query.value(i));
        rows << row;
    }
    return rows;
}

void Expect(QList<QVariantMap>& rows, const QString& rebateID, const QString& column,
            const QVariant& value) {
    for (QVariantMap& row : rows)
        if (row.value("RebateID") == rebateID)
            row[column] = value;
}

QStringList Keys(Recordset& rs) {
    QStringList keys;
    for (; !rs.IsEOF(); rs.MoveNext())
        keys << rs.Fields("RebateID").toString();
    return keys;
}

// The RebateIDs of the list rows stored under this key.
QStringList ListKeys(const QString& rebateID) {
    QStringList keys;
    RebateQueries::ForEachListRowOf(rebateID, [&keys](const ScannedRow& row) {
        keys << row.Fields(RebateQueries::ListColumn::RebateID).toString();
    });
    return keys;
}

// Rebuilds Rebates without its primary key, so that a key may stand in two rows.
void DropPrimaryKey() {
    QSqlQuery sql(gDatabase->Connection());
    QVERIFY(sql.exec("SELECT sql FROM sqlite_master WHERE name = 'Rebates'") && sql.next());
    QString create = sql.value(0).toString();
    create.replace("CREATE TABLE Rebates", "CREATE TABLE Loose").replace(" PRIMARY KEY", "");
    sql.finish();
    QVERIFY(sql.exec(create));
    QVERIFY(sql.exec("INSERT INTO Loose SELECT * FROM Rebates"));
    QVERIFY(sql.exec("DROP TABLE Rebates"));
    QVERIFY(sql.exec("ALTER TABLE Loose RENAME TO Rebates"));
}
} // namespace

class tst_faults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<Fixture>();
        mFixture->OpenDatabase({RouterRow("1", "Plain"), RouterRow(kQuote, "Quote"),
                                RouterRow(kInjected, "Injected"), RouterRow("2", "Other")});
        Startup::SetEndProgramHandler([](int) {});
    }
    void cleanup() {
        if (frmRebate* form = frmRebate::Instance())
            form->Unload();
        QTRY_VERIFY(!frmRebate::Instance());
        mProgram.reset();
        Startup::SetEndProgramHandler(nullptr);
        mFixture.reset();
    }

    // Each named statement binds its key: text that would widen the query finds nothing.
    void queriesBindTheirKeys() {
        for (const QString& key : {kQuote, kInjected, kMatchesAll}) {
            const QStringList found = key == kMatchesAll ? QStringList{} : QStringList{key};
            QCOMPARE(Keys(*RebateQueries::OpenRebateByID(key)), found);
            QCOMPARE(ListKeys(key), found);
            QCOMPARE(RebateQueries::RebateIDTaken(key), !found.isEmpty());
        }
        auto rs = RebateQueries::OpenRebateByID(kQuote);
        rs->Requery(); // binds the key again
        QCOMPARE(Keys(*rs), QStringList{kQuote});
    }

    void quotedKeyTouchesOnlyItsRow_data() {
        QTest::addColumn<QString>("key");
        QTest::newRow("O'Brien") << kQuote;
        QTest::newRow("a key that reads as a condition") << kInjected;
    }
    // Opened from the Switchboard, saved twice (Save, then OK) and deleted from the Switchboard:
    // each time only that row changes.
    void quotedKeyTouchesOnlyItsRow() {
        QFETCH(QString, key);
        frmSwitchboard& board = Board(key);
        board.mnuEditRebate->trigger();
        frmRebate* form = frmRebate::Instance();
        QVERIFY(form);
        QCOMPARE(form->RebateID(), key);

        QList<QVariantMap> expected = Store();
        RebateFormDriver::Type(form, RebateField::Remarks, "saved");
        form->mnuSaveRecord_Click();
        Expect(expected, key, "Remarks", "saved");
        QCOMPARE(Store(), expected);
        // The field still has the focus: the typing goes on at the end.
        RebateFormDriver::Type(form, RebateField::Remarks, " and closed");
        form->cmdOK_Click();
        QVERIFY(!frmRebate::Instance());
        Expect(expected, key, "Remarks", "saved and closed");
        QCOMPARE(Store(), expected);
        QCOMPARE(board.lvAll->ListItems().Count(), 4); // its row rebuilt, not doubled

        SelectIDs(board.lvAll, {key});
        mFixture->Desktop().SetNextAnswer(vb::vbYes);
        board.mnuDeleteRebate->trigger();
        Expect(expected, key, "Deleted", qlonglong(1));
        QCOMPARE(Store(), expected);
        QCOMPARE(mFixture->Desktop().boxes.size(), 1); // the question only
        QCOMPARE(SortedIDs(board.lvAll).size(), 3);
        QVERIFY(!SortedIDs(board.lvAll).contains(key));
    }

    void keyNotNamingOneRowChangesNothing_data() {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("told");
        const QString gone = "is no longer in the database";
        const QString twice = "More than one rebate record has the RebateID";
        for (const char* action : {"delete", "save", "OK"}) {
            QTest::addRow("%s, purged", action) << action << "purged" << gone;
            QTest::addRow("%s, its row taken by another", action) << action << "taken" << gone;
            QTest::addRow("%s, key held twice", action) << action << "twice" << twice;
        }
    }
    // The record was purged, or its row now holds another record, or a store without a
    // primary key holds the key twice: the store stays as it is, the user is told, and a form
    // keeps what was typed.
    void keyNotNamingOneRowChangesNothing() {
        QFETCH(QString, action);
        QFETCH(QString, cause);
        QFETCH(QString, told);
        if (cause == "twice") {
            DropPrimaryKey();
            InsertRebates({RouterRow(kQuote, "Quote again")});
        }
        frmSwitchboard& board = Board(kQuote);
        frmRebate* form = nullptr;
        if (action != "delete") {
            board.mnuEditRebate->trigger();
            form = frmRebate::Instance();
            QVERIFY(form);
            RebateFormDriver::Type(form, RebateField::Remarks, "typed");
        }
        QSqlQuery sql(gDatabase->Connection());
        if (cause == "purged")
            QVERIFY(sql.exec("DELETE FROM Rebates WHERE RebateID = 'O''Brien'"));
        if (cause == "taken")
            QVERIFY(sql.exec("UPDATE Rebates SET RebateID = 'Newcomer', RebateName = 'Newcomer' "
                             "WHERE RebateID = 'O''Brien'"));
        const QList<QVariantMap> before = Store();

        const auto& boxes = mFixture->Desktop().boxes;
        if (action == "delete") {
            mFixture->Desktop().SetNextAnswer(vb::vbYes);
            board.mnuDeleteRebate->trigger();
            QCOMPARE(boxes.size(), 2); // the question, then the error
        } else {
            action == "save" ? form->mnuSaveRecord_Click() : form->cmdOK_Click();
            QCOMPARE(frmRebate::Instance(), form);
            QCOMPARE(form->txtFields(RebateField::Remarks)->text(), QString("typed"));
            QVERIFY(form->RecordChanged());
            QCOMPARE(boxes.size(), 1);
        }
        QCOMPARE(boxes.last().title, QString("Vantry! Vantry! Error"));
        QVERIFY2(boxes.last().prompt.contains(told), qPrintable(boxes.last().prompt));
        QVERIFY(boxes.last().prompt.contains(kQuote));
        QCOMPARE(Store(), before);
    }

private:
    // The Switchboard's All page, with the key's row selected.
    frmSwitchboard& Board(const QString& key) {
        mProgram = std::make_unique<ProgramWindow>();
        frmSwitchboard& board = mProgram->Switchboard();
        QTest::qVerify(QTest::qWaitFor([&board] { return !board.Timer1->isActive(); }),
                       "the Switchboard loaded", "", __FILE__, __LINE__);
        board.tbsSwitch->Tabs().Item("All")->SetSelected(true);
        SelectIDs(board.lvAll, {key});
        return board;
    }

    std::unique_ptr<Fixture> mFixture;
    std::unique_ptr<ProgramWindow> mProgram;
};

QTEST_MAIN(tst_faults)
#include "tst_faults.moc"
