#include "Fixture.h"
#include "common/ui/Help.h"
#include "common/ui/HelpWindow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

namespace {
const QList<int> kContexts{1000, 1079, 1080, 1081, 1082, 1083, 1084, 2500, 2502, 2503, 2504,
                           2507, 3000, 3001, 4700, 4800, 5002, 5502, 5902, 7000, 7001, 7500};
}

class tst_help : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void cleanup() {
        Help::Quit();
        App::SetHelpFile(QString());
    }

    // Each topic in the one help window, with its title first; the contents list them all.
    void topicByNumber() {
        HelpWindow* window = nullptr;
        for (int context : kContexts) {
            Help::ShowTopic(context);
            window = window ? window : Help::Window();
            QVERIFY(window && window->isVisible());
            QCOMPARE(Help::Window(), window);
            QCOMPARE(window->CurrentTopic(), context);
            QVERIFY(!window->CurrentTitle().isEmpty());
            const QString text = window->findChild<QTextBrowser*>("txtTopic")->toPlainText();
            QVERIFY2(text.startsWith(window->CurrentTitle()), qPrintable(text.left(60)));
            QVERIFY2(text.size() > window->CurrentTitle().size() + 80, "a topic says something");
        }
        Help::ShowContents();
        QCOMPARE(Help::Window(), window);
        QCOMPARE(window->CurrentTopic(), 0);
        QStringList titles = window->ListedTitles();
        QCOMPARE(titles.size(), kContexts.size() + 1);
        QCOMPARE(titles.first(), QString("Contents"));
        QCOMPARE(titles.removeDuplicates(), 0);
        QVERIFY(titles.contains("Introducing Vantry! Vantry!"));
    }

    // The titles that must be listed ("|" between them; a title holding the words comes first)
    // and those that must not.
    void search_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("mustList");
        QTest::addColumn<QStringList>("mustNotList");
        const auto row = [](const char* text, const QString& must, const QString& mustNot) {
            QTest::newRow(text) << QString(text) << must.split('|', Qt::SkipEmptyParts)
                                << mustNot.split('|', Qt::SkipEmptyParts);
        };
        row("overdue", "The Overdue page", "");
        row("DELETED   purge", "Deleting rebates|Options", "The toolbar|The status bar");
        row("xylophone", "", "Contents");
    }

    void search() {
        QFETCH(QString, text);
        QFETCH(QStringList, mustList);
        QFETCH(QStringList, mustNotList);
        HelpWindow window;
        window.show();
        QTest::keyClicks(window.findChild<QLineEdit*>("txtSearch"), text);
        const QStringList listed = window.ListedTitles();
        for (const QString& title : mustList)
            QVERIFY2(listed.contains(title), qPrintable(title));
        for (const QString& title : mustNotList)
            QVERIFY2(!listed.contains(title), qPrintable(title));
        if (mustList.isEmpty())
            QVERIFY(listed.isEmpty());
        else if (mustList.first().contains(text, Qt::CaseInsensitive))
            QCOMPARE(listed.first(), mustList.first());
        // Enter opens the first topic found.
        QTest::keyClick(window.findChild<QLineEdit*>("txtSearch"), Qt::Key_Return);
        if (!listed.isEmpty())
            QCOMPARE(window.CurrentTitle(), listed.first());
    }

    void f1OnFocusedControl() {
        Help::InstallF1Handler();
        QWidget form;
        auto* field = new QLineEdit(&form);
        auto* other = new QPushButton("Other", &form);
        other->move(0, 40);
        field->setProperty(Help::kContextProperty, 2504);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));

        // Without help, F1 does nothing.
        field->setFocus();
        QTest::keyClick(field, Qt::Key_F1);
        QVERIFY(!Help::Window());

        App::SetHelpFile("vantry.hlp");
        QTest::keyClick(field, Qt::Key_F1);
        QVERIFY(Help::Window());
        QCOMPARE(Help::Window()->CurrentTopic(), 2504);
        // A control without a number: the contents.
        form.activateWindow();
        other->setFocus();
        QTest::keyClick(other, Qt::Key_F1);
        QCOMPARE(Help::Window()->CurrentTopic(), 0);
    }
};

QTEST_MAIN(tst_help)
#include "tst_help.moc"
