#include "Fixture.h"
#include "Modal.h"
#include "app/cLogErr.h"
#include "common/core/Globals.h"
#include "common/ui/Forms.h"
#include "common/ui/TabStrip.h"
#include "maintenance/frmLogViewer.h"
#include "maintenance/frmOptions.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace {
void WriteLog(const QString& path, const QByteArray& text) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}
} // namespace

class tst_logviewer : public QObject {
    Q_OBJECT
    std::unique_ptr<Fixture> mFixture;

private Q_SLOTS:
    void initTestCase() { InitTestResources(); }
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() { mFixture.reset(); }

    // The viewer runs modal over the Options dialog with the header above the log; OK gives
    // the focus back to the button that opened it.
    void viewsLogModally() {
        WriteLog(mFixture->LogPath(), "Date:\t\t\tfirst block\r\n");
        frmOptions options;
        options.show();
        options.tbsTabs->Tabs().Item(2)->SetSelected(true);
        QVERIFY(QTest::qWaitForWindowActive(&options));
        options.cmdViewLog->setFocus();
        QString text;
        WhenModal("frmLogViewer", [&](QWidget* dialog) {
            auto* viewer = static_cast<frmLogViewer*>(dialog);
            text = viewer->txtLog->toPlainText();
            QTest::mouseClick(viewer->cmdOK, Qt::LeftButton);
        });
        options.cmdViewLog_Click();
        QCOMPARE(text, QString("Error Log for Vantry! Vantry!\n\nDate:\t\t\tfirst block\n"));
        QTRY_COMPARE(QApplication::activeWindow(), &options);
        QCOMPARE(QApplication::focusWidget(), options.cmdViewLog);
    }

    // The question and a "no": tst_errorlog's purge. A purged log can't be mailed, and the
    // viewer then finds none.
    void purgeThenMailThenView() {
        WriteLog(mFixture->LogPath(), "an entry\r\n");
        frmLogViewer viewer;
        viewer.ShowLog("an entry");
        mFixture->Desktop().SetNextAnswer(vb::vbYes);
        QTest::mouseClick(viewer.cmdPurge, Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().boxes.first().title, QString("Preparing to Delete Error Log"));
        QVERIFY(!QFile::exists(mFixture->LogPath()));
        QVERIFY(viewer.txtLog->toPlainText().isEmpty());
        QTest::mouseClick(viewer.cmdEmailLog, Qt::LeftButton);
        QVERIFY(mFixture->Desktop().mails.isEmpty());
        QCOMPARE(mFixture->Desktop().boxes.last().title, QString("Error Log Not Found"));
        frmOptions options;
        options.cmdViewLog_Click();
        QCOMPARE(mFixture->Desktop().Shown().last(),
                 QString("No Results | 64 | No logged errors found."));
        QCOMPARE(StatusText(), QString("No error log found..."));
        QVERIFY(QFile::exists(mFixture->LogPath()));
        QCOMPARE(QFileInfo(mFixture->LogPath()).size(), 0);
    }

    void mailsTheFileAsItIsNow_data() {
        QTest::addColumn<bool>("mailProgram");
        QTest::newRow("mail program") << true;
        QTest::newRow("none") << false;
    }
    void mailsTheFileAsItIsNow() {
        QFETCH(bool, mailProgram);
        WriteLog(mFixture->LogPath(), "old text");
        frmLogViewer viewer;
        viewer.ShowLog("old text");
        WriteLog(mFixture->LogPath(), "new text");
        mFixture->Desktop().sendMailResult = mailProgram;
        QTest::mouseClick(viewer.cmdEmailLog, Qt::LeftButton);
        QCOMPARE(mFixture->Desktop().mails.size(), 1);
        const auto& mail = mFixture->Desktop().mails.first();
        QCOMPARE(mail.address, kSupportMailbox);
        QCOMPARE(mail.subject, QString("Bug Report - Error Log for Vantry! Vantry!"));
        QCOMPARE(mail.body, QString("Please review my error log. The problem I am having is: "
                                    "[describe problem here!]\r\n\r\nError Log for Vantry! "
                                    "Vantry!\r\n\r\nnew text"));
        QCOMPARE(mFixture->Desktop().boxes.size(), mailProgram ? 0 : 1);
        if (!mailProgram)
            QCOMPARE(mFixture->Desktop().boxes.first().title, QString("Unable to Send Error Log"));
        QCOMPARE(StatusText(), QString("Ready..."));
    }
};

QTEST_MAIN(tst_logviewer)
#include "tst_logviewer.moc"
