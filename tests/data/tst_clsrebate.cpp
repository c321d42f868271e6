#include "Fixture.h"
#include "Globals.h"
#include "RebateRows.h"
#include "VbError.h"
#include "clsRebate.h"
#include "clsRebates.h"

#include <QTest>
#include <functional>

using Setter = std::function<void(clsRebate&)>;
Q_DECLARE_METATYPE(Setter)

namespace {

void SelectRow(const QString& rebateID) {
    clsRebate::SetSelectedRebateIDSource([rebateID] { return rebateID; });
}

void ShowInForm(const std::optional<QString>& txtFields18) {
    clsRebate::SetRebateFormSource([txtFields18] { return txtFields18; });
}

const RebateRow kFilled{.RebateID = "20261101090000",
                        .RebateName = "Printer Rebate",
                        .Address = "P.O. Box 1",
                        .PhoneNumber = "(800) 555-0100",
                        .Email = "rebates@maker.example",
                        .WebSite = "www.maker.example",
                        .ProductName = "Inkjet Printer",
                        .PurchasePrice = 129.99,
                        .ExpDate = QDate(2026, 12, 31),
                        .DatePurchased = QDate(2026, 10, 30),
                        .LocationPurchased = "Staples",
                        .RebateAmount = 50.0,
                        .PostagePrice = 0.49,
                        .CouponAmount = 10.0,
                        .DateSent = QDate(2026, 11, 5),
                        .DateDue = QDate(2026, 12, 31),
                        .AmountReceived = 0.0,
                        .FollowupDate = QDate(2026, 11, 20),
                        .FollowupPostage = 0.49,
                        .DateReceived = QDate(2026, 11, 21),
                        .Rejected = false,
                        .ReasonRejected = "None",
                        .Deleted = false,
                        .Remarks = "Keep the receipt"};

} // namespace

class tst_clsrebate : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void newRecordSavedTwiceIsOneRow();
    void blankMemberIsStored_data();
    void blankMemberIsStored();
    void readsTheSelectedRow();
    void nullsReadAsDefaults();
    void missingRowRaises_data();
    void missingRowRaises();
    void refreshNeedsTheFormAndAKey_data();
    void refreshNeedsTheFormAndAKey();
    void movesBeepAtTheEnds();
    void walkerQueryIsRefused();
};

void tst_clsrebate::newRecordSavedTwiceIsOneRow() {
    Fixture fixture;
    fixture.OpenDatabase();
    gbNewRecord = true;
    clsRebate rebate;
    rebate.AddNew(); // as the form's load does
    rebate.SetRebateID("20261123100000");
    rebate.SetRebateName("Router");
    rebate.SetPurchasePrice(79.99);
    rebate.Update();
    QCOMPARE(CountRebates(), 1);

    // Save without closing: the form puts the object on the saved row, then saves again.
    ShowInForm(QString("20261123100000"));
    rebate.RefreshFromRebateForm();
    QCOMPARE(rebate.RebateName(), QString("Router"));
    rebate.SetRebateName("Cable Modem");
    rebate.Update();
    rebate.Requery();
    rebate.SetRemarks("mailed");
    rebate.Update();
    QCOMPARE(CountRebates(), 1);
    const QVariantMap raw = ReadRawRebate("20261123100000");
    QCOMPARE(raw.value("RebateName"), QVariant("Cable Modem"));
    QCOMPARE(raw.value("Remarks"), QVariant("mailed"));
    QCOMPARE(raw.value("PurchasePrice"), QVariant(qlonglong(799900)));
}

void tst_clsrebate::blankMemberIsStored_data() {
    QTest::addColumn<QString>("column");
    QTest::addColumn<Setter>("clear");
    QTest::addColumn<bool>("null"); // else ""
    auto row = [](const char* column, Setter clear, bool null) {
        QTest::newRow(column) << QString(column) << clear << null;
    };
    row(
        "Email", [](clsRebate& r) { r.SetEmail(""); }, true);
    row(
        "WebSite", [](clsRebate& r) { r.SetWebSite(""); }, true);
    row(
        "ExpDate", [](clsRebate& r) { r.SetExpDate(""); }, true);
    row(
        "DatePurchased", [](clsRebate& r) { r.SetDatePurchased(""); }, true);
    row(
        "LocationPurchased", [](clsRebate& r) { r.SetLocationPurchased(""); }, true);
    row(
        "DateSent", [](clsRebate& r) { r.SetDateSent(""); }, true);
    row(
        "DateDue", [](clsRebate& r) { r.SetDateDue(""); }, true);
    row(
        "FollowupDate", [](clsRebate& r) { r.SetFollowupDate(""); }, true);
    row(
        "DateReceived", [](clsRebate& r) { r.SetDateReceived(""); }, true);
    row(
        "ReasonRejected", [](clsRebate& r) { r.SetReasonRejected(""); }, true);
    row(
        "Remarks", [](clsRebate& r) { r.SetRemarks(""); }, true);
    row(
        "RebateName", [](clsRebate& r) { r.SetRebateName(""); }, false);
    row(
        "Address", [](clsRebate& r) { r.SetAddress(""); }, false);
    row(
        "PhoneNumber", [](clsRebate& r) { r.SetPhoneNumber(""); }, false);
    row(
        "ProductName", [](clsRebate& r) { r.SetProductName(""); }, false);
}

void tst_clsrebate::blankMemberIsStored() {
    QFETCH(QString, column);
    QFETCH(Setter, clear);
    QFETCH(bool, null);
    Fixture fixture;
    fixture.OpenDatabase({kFilled});
    SelectRow(kFilled.RebateID);
    clsRebate rebate;
    clear(rebate);
    rebate.Update();
    const QVariantMap raw = ReadRawRebate(kFilled.RebateID);
    QVERIFY(!raw.isEmpty());
    QCOMPARE(raw.value(column).isNull(), null);
    if (!null)
        QCOMPARE(raw.value(column), QVariant(""));
    // Nothing else moved.
    QCOMPARE(raw.value("Email").isNull(), column == "Email");
    QCOMPARE(raw.value("PurchasePrice"), QVariant(qlonglong(1299900)));
}

void tst_clsrebate::readsTheSelectedRow() {
    Fixture fixture;
    fixture.OpenDatabase({{.RebateID = "1", .RebateName = "Other"}, kFilled});
    SelectRow(kFilled.RebateID);
    clsRebate rebate;
    QCOMPARE(rebate.RebateID(), kFilled.RebateID);
    QCOMPARE(rebate.RebateName(), QString("Printer Rebate"));
    QCOMPARE(rebate.Email(), QString("rebates@maker.example"));
    QCOMPARE(rebate.PurchasePrice(), 129.99);
    QCOMPARE(rebate.PostagePrice(), 0.49);
    QCOMPARE(rebate.DateSent(), QString("11/5/2026"));
    QCOMPARE(rebate.ExpDate(), QString("12/31/2026"));
    QCOMPARE(rebate.Remarks(), QString("Keep the receipt"));
    QVERIFY(!rebate.Rejected());

    // What the form writes comes back as the store's own date text.
    rebate.SetDateDue("01/02/2027");
    rebate.SetRejected(true);
    rebate.Update();
    clsRebate again;
    QCOMPARE(again.DateDue(), QString("1/2/2027"));
    QVERIFY(again.Rejected());
}

void tst_clsrebate::nullsReadAsDefaults() {
    Fixture fixture;
    fixture.OpenDatabase({{.RebateID = "1",
                           .RebateName = std::nullopt,
                           .PurchasePrice = std::nullopt,
                           .AmountReceived = std::nullopt,
                           .Rejected = std::nullopt,
                           .Deleted = std::nullopt}});
    SelectRow("1");
    clsRebate rebate;
    QCOMPARE(rebate.RebateName(), QString(""));
    QCOMPARE(rebate.PurchasePrice(), 0.0);
    QCOMPARE(rebate.AmountReceived(), 0.0);
    QCOMPARE(rebate.DateSent(), QString(""));
    QVERIFY(!rebate.Rejected());
    QVERIFY(!rebate.Deleted());
}

void tst_clsrebate::missingRowRaises_data() {
    QTest::addColumn<bool>("selection");
    QTest::addColumn<int>("error");
    QTest::newRow("no such key") << true << 3021;
    QTest::newRow("no list to ask") << false << 91;
}

void tst_clsrebate::missingRowRaises() {
    QFETCH(bool, selection);
    QFETCH(int, error);
    Fixture fixture;
    fixture.OpenDatabase({kFilled});
    if (selection)
        SelectRow("20990101000000");
    QCOMPARE(ErrorOf([] { clsRebate rebate; }), error);
}

void tst_clsrebate::refreshNeedsTheFormAndAKey_data() {
    QTest::addColumn<bool>("formLoaded");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("refreshed");
    QTest::newRow("form not loaded") << false << "20261101090000" << false;
    QTest::newRow("form shows no key") << true << "" << false;
    QTest::newRow("form shows the key") << true << "20261101090000" << true;
}

void tst_clsrebate::refreshNeedsTheFormAndAKey() {
    QFETCH(bool, formLoaded);
    QFETCH(QString, key);
    QFETCH(bool, refreshed);
    Fixture fixture;
    fixture.OpenDatabase({kFilled});
    gbNewRecord = true;
    clsRebate rebate;
    ShowInForm(formLoaded ? std::optional<QString>(key) : std::nullopt);
    rebate.RefreshFromRebateForm();
    QCOMPARE(rebate.RebateName(), refreshed ? QString("Printer Rebate") : QString());
}

void tst_clsrebate::movesBeepAtTheEnds() {
    Fixture fixture;
    fixture.OpenDatabase({kFilled});
    SelectRow(kFilled.RebateID);
    clsRebate rebate;
    rebate.MoveNext();
    QCOMPARE(fixture.Desktop().beeps, 1);
    rebate.MoveNext(); // still on the last row: beeps again
    QCOMPARE(fixture.Desktop().beeps, 2);
    rebate.MovePrevious();
    QCOMPARE(fixture.Desktop().beeps, 3);
    rebate.MoveLast();
    rebate.MoveFirst();
    QCOMPARE(fixture.Desktop().beeps, 3);
    // Still on the row: a save edits it.
    rebate.SetRemarks("moved");
    rebate.Update();
    QCOMPARE(CountRebates(), 1);
    QCOMPARE(ReadRawRebate(kFilled.RebateID).value("Remarks"), QVariant("moved"));

    // An empty set has no end to reach.
    gbNewRecord = true;
    clsRebate fresh;
    fresh.MoveNext();
    fresh.MovePrevious();
    QCOMPARE(fixture.Desktop().beeps, 3);
}

void tst_clsrebate::walkerQueryIsRefused() {
    Fixture fixture;
    fixture.OpenDatabase();
    QCOMPARE(ErrorOf([] { clsRebates walker; }), 3075);
}

QTEST_GUILESS_MAIN(tst_clsrebate)
#include "tst_clsrebate.moc"
