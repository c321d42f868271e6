#include "common/ui/ListView.h"

#include <QAbstractItemView>
#include <QTest>
#include <numeric>

class tst_listview : public QObject {
    Q_OBJECT
private Q_SLOTS:

    // Texts alike in their first characters, across case, past 8, 16 and 24 characters and
    // beyond plain ASCII, sort as a case-blind comparison of the whole texts orders them;
    // equal texts keep the order they were added in. Rows added to a sorted list merge in.
    void sortIsCaseBlindOverWholeTexts_data() {
        QTest::addColumn<int>("sortOrder");
        QTest::addColumn<int>("addedLater"); // rows added after the others were sorted
        QTest::newRow("ascending, half added after a sort") << 0 << 12;
        QTest::newRow("descending, two added after a sort") << 1 << 2;
    }
    void sortIsCaseBlindOverWholeTexts() {
        QFETCH(int, sortOrder);
        QFETCH(int, addedLater);
        const QString long24 = "11/22/2026: Rebate for t";
        QStringList texts =
            QString("Rebate|abcdefgh|ABCDEFGHI|rebate|abcdefgh\u00e9|_x|Ax||abc|abcd|"
                    "ab\u00c9|abe|\u00dcber|uber|abf|ab\u00e9|abcdefghijklmnop|"
                    "ABCDEFGHIJKLMNOP|abcdefghijklmnopq|Zebra|abcdefgh")
                .split('|');
        for (const char* tail : {"he Router", "he router!", "", "HE ROUTER"})
            texts.insert(texts.size() / 2, long24 + tail);
        std::vector<int> order(static_cast<size_t>(texts.size()));
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
            const int c = texts[a].compare(texts[b], Qt::CaseInsensitive);
            return sortOrder == 0 ? c < 0 : c > 0;
        });
        QStringList expected;
        for (int i : order)
            expected << QString::number(i);

        ListView lv;
        lv.SetSortOrder(sortOrder);
        lv.SetSorted(true);
        const qsizetype first = addedLater ? texts.size() - addedLater : texts.size();
        for (qsizetype i = 0; i < texts.size(); ++i) {
            if (i == first)
                QCOMPARE(lv.ListItems().Item(1)->Index(), 1); // sorts what is there
            lv.ListItems().Add(texts[i])->SetSubItems(1, QString::number(i));
        }
        QStringList sorted;
        for (int i = 1; i <= lv.ListItems().Count(); ++i)
            sorted << lv.ListItems().Item(i)->SubItems(1);
        QCOMPARE(sorted, expected);
    }

    // Rows are found by their key sub-item through every change: a key held by two rows (a
    // store's duplicate) finds the first, then the other once the first is gone.
    void findByKey_data() {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QStringList>("found"); // the texts found for keys a, b and c
        QTest::newRow("as added") << "" << QStringList{"a1", "b", ""};
        QTest::newRow("first of a removed") << "remove 1" << QStringList{"a2", "b", ""};
        QTest::newRow("second of a removed") << "remove 3" << QStringList{"a1", "b", ""};
        QTest::newRow("key changed") << "a1 to c" << QStringList{"a2", "b", "a1"};
        QTest::newRow("cleared") << "clear" << QStringList{"", "", ""};
    }
    void findByKey() {
        QFETCH(QString, step);
        QFETCH(QStringList, found);
        ListView lv;
        lv.SetKeySubItem(3);
        for (const auto& [text, key] : {std::pair{"a1", "a"}, {"b", "b"}, {"a2", "a"}})
            lv.ListItems().Add(text)->SetSubItems(3, key);
        if (step.startsWith("remove"))
            lv.ListItems().Remove(step.mid(7).toInt());
        else if (step == "a1 to c")
            lv.ListItems().Item(1)->SetSubItems(3, "c");
        else if (step == "clear")
            lv.ListItems().Clear();
        QStringList texts;
        for (const QString key : {"a", "b", "c"}) {
            const ListItem* row = lv.FindByKey(key);
            texts << (row ? row->Text() : QString());
        }
        QCOMPARE(texts, found);
    }

    // The View menu's four looks show the same rows and selection.
    void viewsShareRows() {
        ListView lv;
        lv.SetMultiSelect(true);
        lv.ListItems().Add("a")->SetSelected(true);
        lv.ListItems().Add("b");
        lv.show();
        for (int view :
             {ListView::lvwIcon, ListView::lvwSmallIcon, ListView::lvwList, ListView::lvwReport}) {
            lv.SetView(view);
            auto* shown = qobject_cast<QAbstractItemView*>(lv.ActiveView());
            QVERIFY(shown->isVisible());
            QTRY_COMPARE(shown->model()->rowCount(), 2);
            QTRY_COMPARE(shown->selectionModel()->selectedRows().size(), 1);
        }
    }
};

QTEST_MAIN(tst_listview)
#include "tst_listview.moc"
