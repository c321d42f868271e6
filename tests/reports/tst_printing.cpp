#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateFormDriver.h"
#include "RebateRows.h"
#include "ReportReaders.h"
#include "common/ui/Forms.h"
#include "common/ui/ListView.h"
#include "common/ui/QtDesktop.h"
#include "common/ui/ReportHooks.h"
#include "data/Database.h"
#include "rebateform/frmRebate.h"
#include "reports/Reports.h"
#include "shell/frmMDI.h"
#include "switchboard/frmSwitchboard.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

namespace {
RebateRow Named(const QString& id, const QString& name, const QString& remarks = QString()) {
    return {.RebateID = id, .RebateName = name, .Remarks = remarks};
}
} // namespace

class tst_printing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mPdf = mDir.filePath(QString("out-%1.pdf").arg(++mRun)); }

    // The rebate form prints its record as stored, copies whole, one after the other, a long
    // value to its last word.
    void printRecordFromForm() {
        SKIP_WITHOUT_PDF_TOOLS();
        Fixture fixture;
        fixture.OpenDatabase(
            {Named("1", "Widget Rebate", QString("word ").repeated(60) + "LASTWORD")});
        fixture.Desktop().printerOutputFile = mPdf;
        fixture.Desktop().printerCopies = 2;
        frmRebate* form = RebateFormDriver::OpenExisting("1");
        RebateFormDriver::Type(form, 0, "Unsaved Name");
        form->mnuPrint_Click();

        const QStringList pages = ReportReaders::PdfPages(mPdf);
        QCOMPARE(pages.size(), 2);
        for (const QString& page : pages) {
            for (const char* text :
                 {"Widget Rebate", "Rebate Contact Info", "Reason Rejected:", "LASTWORD"})
                QVERIFY2(page.contains(text), text);
            QVERIFY(!page.contains("Unsaved Name"));
        }
        QCOMPARE(fixture.Desktop().printerDialogs, 1);
        QCOMPARE(StatusText(), QString("Ready..."));
        form->Unload();
    }

    // Selected rows print as one flowing document: records share pages, in list order, and
    // a record gone from the store is passed over.
    void printSelectedFlows() {
        SKIP_WITHOUT_PDF_TOOLS();
        Fixture fixture;
        QList<RebateRow> rows;
        for (int i = 0; i < 10; ++i)
            rows.append(Named(QString::number(100 + i), QString("Record%1").arg(i)));
        fixture.OpenDatabase(rows);
        fixture.Desktop().printerOutputFile = mPdf;
        ProgramWindow window;
        window.ClickTab("All");
        window.Switchboard().mnuSelectAll_Click();
        gDatabase->Execute("delete from Rebates where RebateID = '105'");
        window.Switchboard().mnuPrintSelected->trigger();

        const QStringList pages = ReportReaders::PdfPages(mPdf);
        const QString all = pages.join("\f");
        QVERIFY(pages.first().count("Rebate Contact Info") > 1);
        QVERIFY(!all.contains("Record5"));
        QCOMPARE(all.count("Reason Rejected:"), 9); // no line twice at a page break
        int last = -1;
        for (int i : {0, 1, 2, 3, 4, 6, 7, 8, 9}) {
            const int at = all.indexOf(QString("Record%1\n").arg(i));
            QVERIFY2(at > last, qPrintable(QString::number(i)));
            last = at;
        }
    }

    // The commands that print nothing, and what they leave in the status line. A printer that
    // can't be opened offers Retry; Retry tries again, Cancel gives up.
    void printsNothing_data() {
        QTest::addColumn<QString>("command");
        // Cancelling the dialog on the selected rows: realPrinterDialogGivesFocusBack.
        for (const char* command : {"cancel record", "gone", "no selection", "printer fails"})
            QTest::newRow(command) << QString(command);
    }
    void printsNothing() {
        QFETCH(QString, command);
        Fixture fixture;
        fixture.OpenDatabase({Named("1", "Alpha")});
        fixture.Desktop().printerOutputFile = mPdf;
        const bool cancel = command.startsWith("cancel");
        fixture.Desktop().printerDialogResult = !cancel;
        const bool fails = command == "printer fails";
        if (fails) {
            fixture.Desktop().printerOutputFile = mDir.filePath("missing/folder/out.pdf");
            fixture.Desktop().SetNextAnswer(4); // Retry
            fixture.Desktop().SetNextAnswer(2); // Cancel
        }
        ProgramWindow window;
        window.ClickTab("All");
        SetStatusText("Ready...");
        ListView* lv = window.Switchboard().GetCurrentLV();
        lv->ListItems().Item(1)->SetSelected(command != "no selection");
        if (cancel || fails)
            Reports::PrintToPrinter("1");
        else if (command == "gone")
            Reports::PrintToPrinter("999");
        else
            window.Switchboard().mnuPrintSelected_Click();

        QCOMPARE(fixture.Desktop().printerDialogs, cancel || fails ? 1 : 0);
        QVERIFY(!QFile::exists(mPdf));
        QCOMPARE(StatusText(), QString(cancel ? "Cancelled print job..." : "Ready..."));
        QStringList boxes;
        if (command == "gone")
            boxes << "Unable to Print | 48 | Unable to locate Record ID '999' in the database. "
                     "Please try printing the record from the Switchboard.";
        if (fails)
            boxes = QStringList(2, "Retry? | 37 | The printer could not be opened.");
        QCOMPARE(fixture.Desktop().Shown(), boxes);
    }

    // The statistics sheet: one page per copy, with its page number.
    void printStatistics() {
        SKIP_WITHOUT_PDF_TOOLS();
        Fixture fixture;
        fixture.OpenDatabase({{.RebateID = "1", .PurchasePrice = 20.0, .RebateAmount = 5.0}});
        fixture.Desktop().printerOutputFile = mPdf;
        fixture.Desktop().printerCopies = 2;
        ProgramWindow window;
        window.ClickTab("Unsent");
        // The main window's Print button prints the statistics from any Switchboard page.
        window.Mdi().tbToolBar_ButtonClick("Print");

        const QStringList pages = ReportReaders::PdfPages(mPdf);
        QCOMPARE(pages.size(), 2);
        for (const QString& page : pages) {
            for (const char* line :
                 {"Vantry! Vantry! Statistics as of 11/23/2026 10:00:00 AM", "Congratulations!",
                  "of your hard earned money!", "Page 1", "You've purchased $20.00 worth of"})
                QVERIFY2(page.contains(line), line);
            // The figures stand on their captions' lines.
            QVERIFY(page.contains(QRegularExpression("Total spent on products: +\\$20\\.00\n")));
            QVERIFY(page.contains(QRegularExpression("Number of products purchased: +1\n")));
        }
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    // The real printer dialog: Escape cancels it, and the focus goes back to the list.
    void realPrinterDialogGivesFocusBack() {
        Fixture fixture;
        fixture.OpenDatabase({Named("1", "Alpha")});
        ProgramWindow window;
        window.ClickTab("All");
        ProgramWindow::ClickRow(window.Switchboard().GetCurrentLV(), 1);
        QWidget* focused = QApplication::focusWidget();
        QVERIFY(focused);
        InstallDesktop(std::make_unique<QtDesktop>());
        bool sawDialog = false;
        QTimer::singleShot(0, [&sawDialog] {
            QWidget* dialog = QApplication::activeModalWidget();
            sawDialog = qobject_cast<QDialog*>(dialog) != nullptr;
            if (dialog)
                QTest::keyClick(dialog, Qt::Key_Escape);
        });
        window.Switchboard().mnuPrintSelected->trigger();
        QVERIFY(sawDialog);
        QCOMPARE(StatusText(), QString("Cancelled print job..."));
        QTRY_COMPARE(QApplication::focusWidget(), focused);
    }

private:
    QTemporaryDir mDir;
    QString mPdf;
    int mRun = 0;
};

QTEST_MAIN(tst_printing)
#include "tst_printing.moc"
