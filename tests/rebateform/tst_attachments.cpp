#include "MainWindowFixture.h"
#include "RebateFormDriver.h"
#include "RebateRows.h"
#include "app/DeletedRecords.h"
#include "data/Database.h"
#include "rebateform/AttachmentsBox.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/frmRebate.h"

#include <QFile>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSqlError>
#include <QSqlQuery>
#include <QTabWidget>
#include <QTest>

using namespace RebateFormDriver;

namespace {
const QString kStored = "9";
const QByteArray kPdf = "%PDF-1.4\n% a filled-in form\n%%EOF\n";

QString WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can't write %s", qPrintable(path));
    return path;
}

// The stored files as "RebateID:FileName", in the order they were attached.
QStringList StoredNames() {
    QSqlQuery query(gDatabase->Connection());
    if (!query.exec("SELECT RebateID, FileName FROM Attachments ORDER BY AttachmentID"))
        qFatal("%s", qPrintable(query.lastError().text()));
    QStringList names;
    while (query.next())
        names << query.value(0).toString() + ":" + query.value(1).toString();
    return names;
}

QStringList ListedRows(const AttachmentsBox* box) {
    QStringList rows;
    for (int i = 0; i < box->lstAttachments->count(); ++i)
        rows << box->lstAttachments->item(i)->text();
    return rows;
}

// The box on its page, brought forward.
AttachmentsBox* ShowBox(frmRebate* form) {
    auto* box = form->findChild<AttachmentsBox*>("fraAttachments");
    form->findChild<QTabWidget*>("tbsTabs")->setCurrentWidget(box->parentWidget());
    return box;
}
} // namespace

class tst_attachments : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() {
        mFixture = std::make_unique<MainWindowFixture>(
            QList<RebateRow>{RouterRow(kStored, "Router Rebate")});
    }
    void cleanup() { mFixture.reset(); }

    void attach_data() {
        QTest::addColumn<QStringList>("chosen"); // files of the program folder
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<QStringList>("boxes");
        QTest::newRow("a picture and a PDF at once")
            << QStringList{"receipt.ppm", "form.pdf"}
            << QStringList{"receipt.ppm (59 KB)", "form.pdf (34 bytes)"} << QStringList{};
        QTest::newRow("exactly 20 MB is taken")
            << QStringList{"limit.bin"} << QStringList{"limit.bin (20.0 MB)"} << QStringList{};
        QTest::newRow("over 20 MB is refused, the rest attached")
            << QStringList{"huge.bin", "form.pdf"} << QStringList{"form.pdf (34 bytes)"}
            << QStringList{"Files Not Attached | 48 | These files were not attached:\n"
                           "huge.bin: larger than 20 MB (20.0 MB)"};
        QTest::newRow("a file that can't be read")
            << QStringList{"missing.pdf"} << QStringList{}
            << QStringList{"Files Not Attached | 48 | These files were not attached:\n"
                           "missing.pdf: No such file or directory"};
    }
    void attach() {
        QFETCH(QStringList, chosen);
        QFETCH(QStringList, listed);
        QFETCH(QStringList, boxes);
        const QString dir = mFixture->ProgramDir();
        // A scan as a plain pixel map: 200 by 100, a file of 60,015 bytes.
        WriteFile(dir + "receipt.ppm", "P6\n200 100\n255\n" + QByteArray(200 * 100 * 3, '\x40'));
        WriteFile(dir + "form.pdf", kPdf);
        // The limit as the user reads it: 20 MB of 1,048,576 bytes.
        for (const auto& [name, size] :
             {std::pair{"limit.bin", 20 << 20}, std::pair{"huge.bin", (20 << 20) + 1}}) {
            QFile file(dir + name);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size));
        }
        frmRebate* form = OpenExisting(kStored);
        AttachmentsBox* box = ShowBox(form);
        QStringList paths;
        for (const QString& name : chosen)
            paths << dir + name;
        mFixture->Desktop().fileChoices.append(paths);

        QTest::mouseClick(box->cmdAttach, Qt::LeftButton);

        QCOMPARE(mFixture->Desktop().fileDialogs, QStringList{"Attach Files"});
        QCOMPARE(ListedRows(box), listed);
        QCOMPARE(mFixture->Desktop().Shown(), boxes);
        QSqlQuery query(gDatabase->Connection());
        QVERIFY(query.exec("SELECT RebateID, FileName, Data, Thumbnail, Size FROM Attachments"));
        int stored = 0;
        for (; query.next(); ++stored) {
            QCOMPARE(query.value(0).toString(), kStored);
            const QByteArray data = query.value(2).toByteArray();
            QCOMPARE(data, ReadFile(dir + query.value(1).toString()));
            QCOMPARE(query.value(4).toLongLong(), data.size());
            // Pictures get a thumbnail within 48 pixels, other files none.
            QCOMPARE(QImage::fromData(query.value(3).toByteArray()).size(),
                     query.value(1) == "receipt.ppm" ? QSize(48, 24) : QSize(0, 0));
        }
        QCOMPARE(stored, listed.size());
    }

    // Files go into the store at once, so a record gets them once it exists.
    void newRecordAttachesAfterItsFirstSave() {
        frmRebate* form = OpenNew();
        AttachmentsBox* box = ShowBox(form);
        QVERIFY(!box->cmdAttach->isEnabled());
        QCOMPARE(box->lblAttachHint->text(),
                 QString("Save the rebate first; then you can attach files to it."));
        for (const auto& [field, text] :
             {std::pair{20, "Spring Mail-In"}, {14, "Toaster"}, {2, "$24.99"}, {4, "$10.00"}})
            form->txtFields(field)->setText(text);
        form->mnuSaveRecord_Click();
        QVERIFY(box->cmdAttach->isEnabled());

        mFixture->Desktop().fileChoices.append(
            {WriteFile(mFixture->ProgramDir() + "form.pdf", kPdf)});
        QTest::mouseClick(box->cmdAttach, Qt::LeftButton);
        QCOMPARE(StoredNames(), QStringList{"20261123100000:form.pdf"});
        QCOMPARE(ListedRows(box), QStringList{"form.pdf (34 bytes)"});
    }

    // Enter opens a copy under the file's own name, by which the desktop picks the program;
    // Remove asks first.
    void openAndRemove() {
        AddFiles({"a.pdf", "b.pdf"});
        AttachmentsBox* box = ShowBox(OpenExisting(kStored));
        auto& desktop = mFixture->Desktop();
        desktop.openDocumentResult = false;
        box->lstAttachments->setCurrentRow(0);
        box->lstAttachments->setFocus();
        QTest::keyClick(box->lstAttachments, Qt::Key_Return);
        QCOMPARE(desktop.Shown(),
                 QStringList{"Unable to Open | 48 | Unable to open 'a.pdf' with the desktop."});
        QCOMPARE(desktop.openedDocuments.size(), 1);
        const QString opened = desktop.openedDocuments[0];
        QVERIFY2(opened.endsWith("/a.pdf"), qPrintable(opened));
        QCOMPARE(ReadFile(opened), kPdf);
        QDir(QFileInfo(opened).path()).removeRecursively();

        desktop.boxes.clear();
        for (int answer : {vb::vbNo, vb::vbYes}) {
            desktop.SetNextAnswer(answer);
            QTest::mouseClick(box->cmdRemove, Qt::LeftButton);
        }
        QCOMPARE(desktop.Shown(),
                 QStringList(2, "Remove Attachment? | 292 | Remove 'a.pdf' from this rebate?"));
        QCOMPARE(StoredNames(), QStringList{kStored + ":b.pdf"});
        QCOMPARE(ListedRows(box), QStringList{"b.pdf (34 bytes)"});
    }

    // A deleted rebate keeps its files until it is purged; the purge takes them with it.
    void purgeTakesTheFiles() {
        InsertRebates({{.RebateID = "1", .RebateName = "Old", .Deleted = true}});
        AddFiles({"gone.pdf"}, "1");
        AddFiles({"kept.pdf"});
        // The live record's key given as well: it is passed over.
        QCOMPARE(PurgeDeletedRecords({"1", kStored}), 1);
        QCOMPARE(StoredNames(), QStringList{kStored + ":kept.pdf"});
    }

private:
    // Attaches files of kPdf's bytes to the record through the form's box.
    void AddFiles(const QStringList& names, const QString& rebateID = kStored) {
        AttachmentsBox box;
        box.SetRebateID(rebateID);
        QStringList paths;
        for (const QString& name : names)
            paths << WriteFile(mFixture->ProgramDir() + name, kPdf);
        mFixture->Desktop().fileChoices.append(paths);
        box.cmdAttach_Click();
        mFixture->Desktop().fileDialogs.clear();
    }

    std::unique_ptr<MainWindowFixture> mFixture;
};

QTEST_MAIN(tst_attachments)
#include "tst_attachments.moc"
