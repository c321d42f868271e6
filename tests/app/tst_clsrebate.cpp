#include "Fixture.h"
#include "RebateRows.h"
#include "app/clsRebate.h"
#include "common/core/Globals.h"
#include "common/core/VbError.h"

#include <QTest>
#include <iterator>

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
                        .PostagePrice = 0.49,
                        .DateSent = QDate(2026, 11, 5),
                        .DateDue = QDate(2026, 12, 31),
                        .FollowupDate = QDate(2026, 11, 20),
                        .DateReceived = QDate(2026, 11, 21),
                        .ReasonRejected = "None",
                        .Remarks = "Keep the receipt"};

// Blanking a text member stores Null, except in the columns the table keeps as "".
const struct {
    const char* column;
    void (clsRebate::*clear)(const QString&);
    bool null;
} kBlanks[] = {{"Email", &clsRebate::SetEmail, true},
               {"DateSent", &clsRebate::SetDateSent, true},
               {"ReasonRejected", &clsRebate::SetReasonRejected, true},
               {"RebateName", &clsRebate::SetRebateName, false},
               {"ProductName", &clsRebate::SetProductName, false}};

} // namespace

class tst_clsrebate : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void blankMemberIsStored_data() {
        QTest::addColumn<int>("blank");
        for (int i = 0; i < int(std::size(kBlanks)); ++i)
            QTest::newRow(kBlanks[i].column) << i;
    }

    void blankMemberIsStored() {
        QFETCH(int, blank);
        const QString column = kBlanks[blank].column;
        const bool null = kBlanks[blank].null;
        Fixture fixture;
        fixture.OpenDatabase({kFilled});
        SelectRow(kFilled.RebateID);
        clsRebate rebate;
        (rebate.*kBlanks[blank].clear)("");
        rebate.Update();
        const QVariantMap raw = ReadRawRebate(kFilled.RebateID);
        QCOMPARE(raw.value(column).isNull(), null);
        if (!null)
            QCOMPARE(raw.value(column), QVariant(""));
        QCOMPARE(raw.value("Email").isNull(), column == "Email");
        QCOMPARE(raw.value("PurchasePrice"), QVariant(qlonglong(1299900)));
    }

    void readsTheSelectedRow() {
        Fixture fixture;
        fixture.OpenDatabase({{.RebateID = "1",
                               .RebateName = std::nullopt,
                               .PurchasePrice = std::nullopt,
                               .AmountReceived = std::nullopt,
                               .Rejected = std::nullopt,
                               .Deleted = std::nullopt},
                              kFilled});
        SelectRow(kFilled.RebateID);
        clsRebate rebate;
        QCOMPARE(rebate.RebateID(), kFilled.RebateID);
        QCOMPARE(rebate.RebateName(), QString("Printer Rebate"));
        QCOMPARE(rebate.Email(), QString("rebates@maker.example"));
        QCOMPARE(rebate.PurchasePrice(), 129.99);
        QCOMPARE(rebate.PostagePrice(), 0.49);
        QCOMPARE(rebate.DateSent(), QString("11/5/2026"));
        QVERIFY(!rebate.Rejected());

        rebate.SetDateDue("01/02/2027");
        rebate.SetRejected(true);
        rebate.Update();
        clsRebate again;
        QCOMPARE(again.DateDue(), QString("1/2/2027"));
        QVERIFY(again.Rejected());

        SelectRow("1");
        clsRebate nulls;
        QCOMPARE(nulls.RebateName(), QString(""));
        QCOMPARE(nulls.PurchasePrice(), 0.0);
        QCOMPARE(nulls.AmountReceived(), 0.0);
        QCOMPARE(nulls.DateSent(), QString(""));
        QVERIFY(!nulls.Rejected());
        QVERIFY(!nulls.Deleted());
    }

    void missingRowRaises() {
        Fixture fixture;
        fixture.OpenDatabase({kFilled});
        QCOMPARE(ErrorOf([] { clsRebate rebate; }), 91); // no list to ask
        SelectRow("20990101000000");
        QCOMPARE(ErrorOf([] { clsRebate rebate; }), 3021);
    }

    void refreshNeedsTheFormAndAKey_data() {
        QTest::addColumn<bool>("formLoaded");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("refreshed");
        QTest::newRow("form not loaded") << false << "20261101090000" << false;
        QTest::newRow("form shows no key") << true << "" << false;
        QTest::newRow("form shows the key") << true << "20261101090000" << true;
    }

    void refreshNeedsTheFormAndAKey() {
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
};

QTEST_GUILESS_MAIN(tst_clsrebate)
#include "tst_clsrebate.moc"
