#include "common/core/Desktop.h"

#include <QTest>

class tst_utilities : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void defaultAnswer_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("answer");
        QTest::newRow("Yes, No") << 36 << int(vb::vbYes);
        QTest::newRow("OK, Cancel, default Cancel") << 1 + 256 + 32 << int(vb::vbCancel);
        QTest::newRow("Retry, Cancel") << 5 + 32 << int(vb::vbRetry);
    }
    void defaultAnswer() {
        QFETCH(int, style);
        QFETCH(int, answer);
        QCOMPARE(vb::DefaultAnswer(style), answer);
        QCOMPARE(MsgBox("Go on?", style, "Question"), answer); // no desktop installed: the default
    }
};

QTEST_GUILESS_MAIN(tst_utilities)
#include "tst_utilities.moc"
