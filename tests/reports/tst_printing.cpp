#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateFormDriver.h"
#include "RebateRows.h"
#include "ReportReaders.h"
#include "common/ui/Forms.h"
#include "common/ui/ListView.h"
#include "common/ui/QtDesktop.h"
#include "common/ui/ReportHooks.h"
#include "common/ui/Toolbar.h"
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
constexpr double kPointsPerInch = 72.0;

RebateRow Named(const QString& id, const QString& name, const QString& remarks = QString()) {
    return {.RebateID = id, .RebateName = name, .Remarks = remarks};
}

// The words of a page that equal the text.
QList<ReportReaders::Word> WordsOf(const QList<ReportReaders::Word>& words, const QString& text,
                                   int page = 0) {
    QList<ReportReaders::Word> found;
    for (const auto& word : words)
        if (word.page == page && word.text == text)
            found.append(word);
    return found;
}
} // namespace

class tst_printing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mPdf = mDir.filePath(QString("out-%1.pdf").arg(++mRun)); }

    // The rebate form prints its record as stored; copies come out whole, one after the other.
    void printRecordFromForm_data() {
        QTest::addColumn<int>("copies");
        QTest::newRow("one copy") << 1;
        QTest::newRow("two copies, collated") << 2;
    }
    void printRecordFromForm() {
        SKIP_WITHOUT_PDF_TOOLS();
        QFETCH(int, copies);
        Fixture fixture;
        fixture.OpenDatabase({Named("1", "Widget Rebate")});
        fixture.Desktop().printerOutputFile = mPdf;
        fixture.Desktop().printerCopies = copies;
        frmRebate* form = RebateFormDriver::OpenExisting("1");
        RebateFormDriver::Type(form, 0, "Unsaved Name");
        form->mnuPrint_Click();

        const QStringList pages = ReportReaders::PdfPages(mPdf);
        QCOMPARE(pages.size(), copies);
        for (const QString& page : pages) {
            QVERIFY(page.contains("Widget Rebate"));
            QVERIFY(!page.contains("Unsaved Name"));
            QVERIFY(page.contains("Rebate Contact Info"));
            QVERIFY(page.contains("Reason Rejected:"));
        }
        QCOMPARE(fixture.Desktop().printerDialogs, 1);
        QCOMPARE(StatusText(), QString("Ready..."));
        form->Unload();
    }

    // One inch from the paper's edges; values at the two-inch tab, wrapped lines under them.
    void recordMarginsAndHangingIndent() {
        SKIP_WITHOUT_PDF_TOOLS();
        Fixture fixture;
        const QString remarks = QString("word ").repeated(60) + "LASTWORD";
        fixture.OpenDatabase({Named("1", "Margins", remarks)});
        fixture.Desktop().printerOutputFile = mPdf;
        Reports::PrintToPrinter("1");

        const auto words = ReportReaders::PdfWords(mPdf);
        const auto label = WordsOf(words, "Remarks:");
        QCOMPARE(label.size(), 1);
        QVERIFY2(qAbs(label[0].box.left() - kPointsPerInch) < 2,
                 qPrintable(QString::number(label[0].box.left())));
        const auto lastWord = WordsOf(words, "LASTWORD");
        QCOMPARE(lastWord.size(), 1);
        QVERIFY(lastWord[0].box.top() > label[0].box.bottom()); // wrapped below the label
        // Every word of the value, on every line, stands at or after the tab stop.
        double leftmost = 1e9;
        for (const auto& word : WordsOf(words, "word"))
            leftmost = std::min(leftmost, word.box.left());
        QVERIFY2(qAbs(leftmost - 3 * kPointsPerInch) < 2, qPrintable(QString::number(leftmost)));
        const double width = ReportReaders::PdfPageWidth(mPdf);
        for (const auto& word : words)
            QVERIFY(word.box.right() <= width - kPointsPerInch + 1);
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
        QVERIFY2(pages.size() > 1 && pages.size() < 9, qPrintable(QString::number(pages.size())));
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

    // The commands that print nothing, and what they leave in the status line.
    void printsNothing_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("status");
        QTest::addColumn<int>("dialogs");
        QTest::addColumn<QString>("boxTitle");
        const auto row = [](const char* command, const char* status, int dialogs,
                            const char* boxTitle) {
            QTest::newRow(command)
                << QString(command) << QString(status) << dialogs << QString(boxTitle);
        };
        // Cancelling the dialog on the selected rows: realPrinterDialogGivesFocusBack.
        row("cancel record", "Cancelled print job...", 1, "");
        row("cancel statistics", "Cancelled print job...", 1, "");
        row("gone", "Ready...", 0, "Unable to Print");
        row("no selection", "Ready...", 0, "");
        row("statistics tab", "Ready...", 0, "");
    }
    void printsNothing() {
        QFETCH(QString, command);
        QFETCH(QString, status);
        QFETCH(int, dialogs);
        QFETCH(QString, boxTitle);
        Fixture fixture;
        fixture.OpenDatabase({Named("1", "Alpha")});
        fixture.Desktop().printerOutputFile = mPdf;
        fixture.Desktop().printerDialogResult = !command.startsWith("cancel");
        ProgramWindow window;
        window.ClickTab(command == "statistics tab" ? "Statistics" : "All");
        SetStatusText("Ready...");
        ListView* lv = window.Switchboard().GetCurrentLV();
        if (lv && command != "no selection")
            lv->ListItems().Item(1)->SetSelected(true);
        else if (lv)
            lv->ListItems().Item(1)->SetSelected(false);
        if (command == "cancel record")
            Reports::PrintToPrinter("1");
        else if (command == "cancel statistics")
            window.Switchboard().mnuPrintStats_Click();
        else if (command == "gone")
            Reports::PrintToPrinter("999");
        else
            window.Switchboard().mnuPrintSelected_Click();

        QCOMPARE(fixture.Desktop().printerDialogs, dialogs);
        QVERIFY(!QFile::exists(mPdf));
        QCOMPARE(StatusText(), status);
        QCOMPARE(fixture.Desktop().boxes.size(), boxTitle.isEmpty() ? 0 : 1);
        if (!boxTitle.isEmpty()) {
            QCOMPARE(fixture.Desktop().boxes[0].title, boxTitle);
            QCOMPARE(fixture.Desktop().boxes[0].prompt,
                     QString("Unable to locate Record ID '999' in the database. Please try "
                             "printing the record from the Switchboard."));
        }
    }

    // A printer that can't be opened offers Retry; Retry tries again, Cancel gives up.
    void retryBox() {
        Fixture fixture;
        fixture.OpenDatabase({Named("1", "Alpha")});
        fixture.Desktop().printerOutputFile = mDir.filePath("missing/folder/out.pdf");
        fixture.Desktop().SetNextAnswer(4); // Retry
        fixture.Desktop().SetNextAnswer(2); // Cancel
        Reports::PrintToPrinter("1");
        const auto& boxes = fixture.Desktop().boxes;
        QCOMPARE(boxes.size(), 2);
        QCOMPARE(boxes[0].title, QString("Retry?"));
        QCOMPARE(boxes[0].style, 37);
        QVERIFY(!boxes[0].prompt.isEmpty());
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    // The statistics sheet: one page per copy, title centred, body an inch in, page number.
    void printStatistics_data() {
        QTest::addColumn<int>("copies");
        QTest::addColumn<bool>("empty");
        QTest::newRow("figures") << 1 << false;
        QTest::newRow("empty store, two copies") << 2 << true;
    }
    void printStatistics() {
        SKIP_WITHOUT_PDF_TOOLS();
        QFETCH(int, copies);
        QFETCH(bool, empty);
        Fixture fixture;
        fixture.OpenDatabase(
            empty
                ? QList<RebateRow>{}
                : QList<RebateRow>{{.RebateID = "1", .PurchasePrice = 20.0, .RebateAmount = 5.0}});
        fixture.Desktop().printerOutputFile = mPdf;
        fixture.Desktop().printerCopies = copies;
        ProgramWindow window;
        window.ClickTab("Unsent");
        // The main window's Print button prints the statistics from any Switchboard page.
        window.Mdi().tbToolBar_ButtonClick("Print");

        const QStringList pages = ReportReaders::PdfPages(mPdf);
        QCOMPARE(pages.size(), copies);
        for (const QString& page : pages) {
            QVERIFY(page.contains("Vantry! Vantry! Statistics as of 11/23/2026 10:00:00 AM"));
            QVERIFY(page.contains("Congratulations!"));
            QVERIFY(page.contains("of your hard earned money!"));
            QVERIFY(page.contains("Page 1"));
            QVERIFY(page.contains(empty ? "You've purchased $0.00 worth of"
                                        : "You've purchased $20.00 worth of"));
            // The figures stand on their captions' lines, inside the page.
            const QString spent = empty ? "\\$0\\.00" : "\\$20\\.00";
            QVERIFY(page.contains(QRegularExpression("Total spent on products: +" + spent + "\n")));
            QVERIFY(page.contains(QRegularExpression("Number of products purchased: +" +
                                                     QString(empty ? "0" : "1") + "\n")));
        }
        const auto words = ReportReaders::PdfWords(mPdf);
        const auto head = WordsOf(words, "Expenditures"); // the block's head, then its total
        QCOMPARE(head.size(), 2);
        QVERIFY(qAbs(head[0].box.left() - kPointsPerInch) < 2);
        QVERIFY(head[0].box.top() > kPointsPerInch);
        const auto title = WordsOf(words, "Vantry!");
        const double width = ReportReaders::PdfPageWidth(mPdf);
        const auto asOf = WordsOf(words, "AM");
        QVERIFY(!title.isEmpty() && !asOf.isEmpty());
        QVERIFY(qAbs((title[0].box.left() + asOf[0].box.right()) / 2 - width / 2) < 3);
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    // The real printer dialog: Escape cancels it, and the focus goes back to the list.
    void realPrinterDialogGivesFocusBack() {
        Fixture fixture;
        fixture.OpenDatabase({Named("1", "Alpha")});
        ProgramWindow window;
        window.ClickTab("All");
        ListView* lv = window.Switchboard().GetCurrentLV();
        ProgramWindow::ClickRow(lv, 1);
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
