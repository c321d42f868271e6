#include "Fixture.h"
#include "RebateRows.h"
#include "app/clsRebate.h"
#include "common/core/Globals.h"
#include "common/core/VbError.h"

#include <QTest>

namespace {

void SelectRow(const QString& rebateID) {
    clsRebate::SetSelectedRebateIDSource([rebateID] { return rebateID; });
}

void ShowInForm(const std::optional<QString>& txtFields18) {
    clsRebate::SetRebateFormSource([txtFields18] { return txtFields18; });
}

const RebateRow kFilled{.RebateID = "1",
                        .RebateName = "Printer Rebate",
                        .Email = "rebates@maker.example",
                        .PurchasePrice = 129.99,
                        .DateSent = QDate(2026, 11, 5),
                        .ReasonRejected = "None"};

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
    void blankMembersAreStored() {
        Fixture fixture;
        fixture.OpenDatabase({kFilled});
        SelectRow(kFilled.RebateID);
        clsRebate rebate;
        for (const auto& blank : kBlanks)
            (rebate.*blank.clear)("");
        rebate.Update();
        const QVariantMap raw = ReadRawRebate(kFilled.RebateID);
        for (const auto& blank : kBlanks) {
            const QVariant value = raw.value(blank.column);
            QVERIFY2(blank.null ? value.isNull() : value == QVariant(""), blank.column);
        }
        QCOMPARE(raw.value("PurchasePrice"), QVariant(qlonglong(1299900)));
    }

    // The selected row's values, Null columns as blanks; a change goes back to the row.
    void readsTheSelectedRow() {
        Fixture fixture;
        fixture.OpenDatabase({kFilled,
                              {.RebateID = "2",
                               .RebateName = std::nullopt,
                               .PurchasePrice = std::nullopt,
                               .Rejected = std::nullopt,
                               .Deleted = std::nullopt}});
        SelectRow(kFilled.RebateID);
        clsRebate filled;
        QCOMPARE(filled.RebateName(), QString("Printer Rebate"));
        QCOMPARE(filled.Email(), QString("rebates@maker.example"));
        QCOMPARE(filled.PurchasePrice(), 129.99);
        QCOMPARE(filled.DateSent(), QString("11/5/2026"));
        SelectRow("2");
        clsRebate nulls;
        QCOMPARE(nulls.RebateName(), QString(""));
        QCOMPARE(nulls.PurchasePrice(), 0.0);
        QCOMPARE(nulls.DateSent(), QString(""));
        QVERIFY(!nulls.Rejected() && !nulls.Deleted());
        nulls.SetDateDue("01/02/2027");
        nulls.SetRejected(true);
        nulls.Update();
        clsRebate again;
        QCOMPARE(again.DateDue(), QString("1/2/2027"));
        QVERIFY(again.Rejected());
    }

    void missingRowRaises() {
        Fixture fixture;
        fixture.OpenDatabase({kFilled});
        QCOMPARE(ErrorOf([] { clsRebate rebate; }), 91); // no list to ask
        SelectRow("2");
        QCOMPARE(ErrorOf([] { clsRebate rebate; }), 3021);
    }

    void refreshNeedsTheFormAndAKey_data() {
        QTest::addColumn<bool>("formLoaded");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("refreshed");
        QTest::newRow("form not loaded") << false << "1" << false;
        QTest::newRow("form shows no key") << true << "" << false;
        QTest::newRow("form shows the key") << true << "1" << true;
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
