#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "ReportReaders.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/ListView.h"
#include "common/ui/ReportHooks.h"
#include "data/RebateQueries.h"
#include "data/Recordset.h"
#include "reports/ReportLayout.h"
#include "reports/RtfDocument.h"
#include "switchboard/frmSwitchboard.h"

#include <QAction>
#include <QDir>
#include <QRegularExpression>
#include <QTest>

namespace {
// A record with every kind of value the layout treats apart.
RebateRow FullRecord() {
    return {.RebateID = "20261101090000",
            .RebateName = "Zoë's {Brace} \\Back",
            .Address = "1 Main St\r\nApt 2\r\nSpringfield",
            .PhoneNumber = "(555) 123-4567",
            .ProductName = "Café ☕ 😀 שלום",
            .PurchasePrice = 19.99,
            .DatePurchased = QDate(2026, 10, 5),
            .LocationPurchased = "Mall\r\nNorth Wing",
            .RebateAmount = 10.0,
            .PostagePrice = std::nullopt,
            .CouponAmount = 2.5,
            .Rejected = true,
            .ReasonRejected = "Tab\there",
            .Remarks = "Line one\nLine two"};
}

} // namespace

class tst_rtfreport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mTemp = std::make_unique<QTemporaryDir>();
        qputenv("TMPDIR", mTemp->path().toUtf8());
    }
    void cleanup() { mTemp.reset(); }

    // Both layouts as a word processor reads them (one run of the reader, which is slow to
    // start): labels, tab, values by their rules, braces, accents, emoji and right-to-left text
    // as typed; the statistics computed afresh.
    void reportsReadBackInOffice() {
        SKIP_WITHOUT_OFFICE();
        Fixture fixture;
        RebateRow blank{.RebateID = "2", .RebateName = "Second", .PurchasePrice = std::nullopt};
        RebateRow bought{.RebateID = "3",
                         .RebateName = "Third",
                         .PurchasePrice = 1234.5,
                         .RebateAmount = 10.0,
                         .PostagePrice = 0.5,
                         .CouponAmount = 1.5};
        fixture.OpenDatabase({FullRecord(), blank});
        RtfDocument document;
        for (const QString& id : {FullRecord().RebateID, QString("2")})
            AddRecordToRTF(document, *RebateQueries::OpenRebateByID(id));
        QFile records(mTemp->filePath("records.rtf"));
        QVERIFY(records.open(QIODevice::WriteOnly) && records.write(document.ToRtf()) > 0);
        records.close();

        ProgramWindow window;
        window.ClickTab("Unsent");
        // A record added since the page was last shown: the report computes afresh.
        InsertRebates({bought});
        window.Switchboard().mnuPrintPrevewStats->trigger();
        const ScriptedDesktop& desktop = fixture.Desktop();
        QCOMPARE(desktop.openedDocuments.size(), 1);

        const QStringList texts =
            ReportReaders::OfficeText({records.fileName(), desktop.openedDocuments.first()});
        const QString text = texts.value(0);
        QVERIFY2(text.contains("Zoë's {Brace} \\Back\n"), qPrintable(text));
        for (const char* line :
             {"Address: \t1 Main St, Apt 2, Springfield\n", "Place Purchased: \tMall, North Wing\n",
              "Remarks: \tLine one, Line two\n", "Product Name: \tCafé ☕ 😀 שלום\n",
              "Purchase Price: \t$19.99\n", "Coupon Amount: \t$2.50\n", "Postage Price: \t\n",
              "Date Purchased: \t10/5/2026\n", "Rejected: \tYes\n",
              "Reason Rejected: \tTab\there\n", "Rebate Contact Info\n", "Product Information\n",
              "Submission Info\n"})
            QVERIFY2(text.contains(QString::fromUtf8(line)), line);
        // The second record follows in the same flow, its money Null and not rejected.
        const QString second = text.mid(text.indexOf("Second\n"));
        QVERIFY(second.contains("Purchase Price: \t\n"));
        QVERIFY(second.contains("Rejected: \t\n"));

        const QString stats = texts.value(1);
        for (const char* line :
             {"Vantry! Vantry! Statistics as of 11/23/2026 10:00:00 AM\n", "Expenditures\n",
              "Total spent on products: \t\t$1,254.49\n", "Total Expenditures \t\t\t$1,254.99\n",
              "Number of products purchased: \t\t3\n", "Congratulations!\n",
              "You've purchased $1,254.99 worth of\n", "of your hard earned money!"})
            QVERIFY2(stats.contains(QString::fromUtf8(line)), qPrintable(stats));
    }

    // The Switchboard's "View Selected Rebates in Word Processor": the selected rows (picked
    // against the list's order) in list order, in one report file of the temporary folder. A
    // report that can't be written or shown says so.
    void viewSelected_data() {
        QTest::addColumn<QString>("box");
        QTest::newRow("shown") << QString();
        QTest::newRow("no temporary folder")
            << "Error Creating Temp File | 48 | Unable to create temporary file.";
        QTest::newRow("no program for RTF")
            << "Unable to Display | 48 | Unable to display report in default RTF editor.";
    }
    void viewSelected() {
        QFETCH(QString, box);
        const bool folderMissing = box.startsWith("Error Creating");
        Fixture fixture;
        fixture.OpenDatabase(
            {{.RebateID = "1", .RebateName = "Alpha"}, {.RebateID = "2", .RebateName = "Beta"}});
        if (folderMissing)
            qputenv("TMPDIR", (mTemp->path() + "/gone").toUtf8());
        fixture.Desktop().openDocumentResult = !box.startsWith("Unable to Display");
        ProgramWindow window;
        window.ClickTab("All");
        ListView* lv = window.Switchboard().GetCurrentLV();
        lv->ListItems().Item(2)->SetSelected(true);
        lv->ListItems().Item(1)->SetSelected(true);
        window.Switchboard().mnuPrintPreview_Click();

        const ScriptedDesktop& desktop = fixture.Desktop();
        QCOMPARE(desktop.Shown(), box.isEmpty() ? QStringList() : QStringList{box});
        QCOMPARE(QDir(mTemp->path()).entryList({"~va*"}, QDir::Files).size(),
                 folderMissing ? 0 : 1);
        QCOMPARE(StatusText(), QString("Ready..."));
        if (!box.isEmpty())
            return;
        QCOMPARE(desktop.openedDocuments.size(), 1);
        const QString path = desktop.openedDocuments.first();
        QCOMPARE(QFileInfo(path).absolutePath(), TempPath());
        // The names as record titles.
        const QString rtf = QString::fromLatin1(ReadFile(path));
        QRegularExpressionMatchIterator titles =
            QRegularExpression("\\\\fs24\\\\b(?:\\\\ulnone)? (Alpha|Beta)").globalMatch(rtf);
        QStringList found;
        while (titles.hasNext())
            found << titles.next().captured(1);
        QCOMPARE(found, (QStringList{"Alpha", "Beta"}));
    }

private:
    std::unique_ptr<QTemporaryDir> mTemp;
};

QTEST_MAIN(tst_rtfreport)
#include "tst_rtfreport.moc"
