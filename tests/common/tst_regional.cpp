#include "Fixture.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"

#include <QTest>

namespace {
QVariant Money(std::int64_t raw) {
    return QVariant::fromValue(Currency::FromRaw(raw));
}
} // namespace

class tst_regional : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { mFixture = std::make_unique<Fixture>(); }
    void cleanup() { mFixture.reset(); }

    void parseDate_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDate>("expected"); // a null date: not a date

        const QDate none;
        QTest::newRow("m/d this year") << "3/5" << QDate(2026, 3, 5);
        QTest::newRow("no leap day") << "2/29/2026" << none;
        QTest::newRow("day first") << "13/5/2026" << none;
        QTest::newRow("yy 29") << "12/31/29" << QDate(2029, 12, 31);
        QTest::newRow("yy 30") << "1/1/30" << QDate(1930, 1, 1);
        QTest::newRow("year 100") << "1/1/100" << QDate(100, 1, 1);
        QTest::newRow("year 099") << "1/1/099" << none;
        QTest::newRow("month and year") << "March 2026" << QDate(2026, 3, 1);
        QTest::newRow("with a time") << "3/5/2026 2:07 PM" << QDate(2026, 3, 5);
        QTest::newRow("13 PM") << "3/5/2026 13:00 PM" << none;
    }
    void parseDate() {
        QFETCH(QString, text);
        QFETCH(QDate, expected);
        const auto parsed = Regional::ParseDate(text);
        QCOMPARE(parsed.value_or(QDate()), expected);
        QCOMPARE(IsDate(text), expected.isValid());
        if (expected.isValid())
            QCOMPARE(CDate(text), expected);
        else
            QCOMPARE(ErrorOf([&] { CDate(text); }), 13);
    }

    void conversions_data() {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");     // CStr
        QTest::addColumn<QVariant>("boolean"); // CBool, or the error number as int
        const auto row = [](const char* name, const QVariant& value, const char* text,
                            const QVariant& boolean) {
            QTest::newRow(name) << value << QString(text) << boolean;
        };
        const QDate day(2026, 3, 5);
        row("date", day, "3/5/2026", true);
        row("date-time", QDateTime(day, QTime(14, 7, 9)), "3/5/2026 2:07:09 PM", true);
        row("midnight", QDateTime(day, QTime(0, 0)), "3/5/2026", true);
        row("True", true, "True", true);
        row("0.1 + 0.2", 0.1 + 0.2, "0.3", true);
        row("zero", 0.0, "0", false);
        row("currency", Money(125000), "12.5", true);
        row("text False", QString("FALSE"), "FALSE", false);
        row("text other", QString("yes"), "yes", 13);
        row("Null", QVariant(), "", 94);
    }
    void conversions() {
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        QFETCH(QVariant, boolean);
        QCOMPARE(CStr(value), text);
        QCOMPARE(Format(value, QString()), text);
        QCOMPARE(IsBlank(value), text.isEmpty()); // value & "" = ""
        if (boolean.typeId() == QMetaType::Bool)
            QCOMPARE(CBool(value), boolean.toBool());
        else
            QCOMPARE(ErrorOf([&] { CBool(value); }), boolean.toInt());
    }

    void moneyText_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("raw");    // ten-thousandths
        QTest::addColumn<int>("error");     // what CCur and CDbl raise
        QTest::addColumn<double>("number"); // what CDbl gives
        QTest::newRow("dollar, comma") << "$1,234.5" << qint64(12345000) << 0 << 1234.5;
        QTest::newRow("parentheses") << "(2.00)" << qint64(-20000) << 0 << -2.0;
        QTest::newRow("half to even, up") << "0.00015" << qint64(2) << 0 << 0.00015;
        QTest::newRow("largest") << "922337203685477.5807" << qint64(9223372036854775807) << 0
                                 << 922337203685477.5807;
        QTest::newRow("too large") << "922337203685477.5808" << qint64(0) << 6 << 0.0;
        QTest::newRow("sign in parentheses") << "(-1)" << qint64(0) << 13 << 0.0;
    }
    void moneyText() {
        QFETCH(QString, text);
        QFETCH(qint64, raw);
        QFETCH(int, error);
        QFETCH(double, number);
        QCOMPARE(ErrorOf([&] { CCur(text); }), error);
        QCOMPARE(IsNumeric(text), error != 13);
        if (error == 13)
            QCOMPARE(ErrorOf([&] { CDbl(text); }), 13);
        if (error != 0)
            return;
        QCOMPARE(CCur(text).Raw(), raw);
        QCOMPARE(Regional::ParseCurrency(text)->Raw(), raw);
        QCOMPARE(CDbl(text), number);
    }

    void format_data() {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("pattern"); // "currency" for FormatCurrency
        QTest::addColumn<QString>("expected");
        auto row = [](const char* name, const QVariant& value, const char* pattern,
                      const char* expected) {
            QTest::newRow(name) << value << QString(pattern) << QString(expected);
        };
        row("12-hour", QVariant(QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9))), "h:nn AM/PM",
            "2:07 PM");
        row("day serial", QVariant(46086), "mm/dd/yyyy", "03/05/2026");
        row("Null", QVariant(), "mm/dd/yyyy", "");
        row("$0.00", Money(125000), "$0.00", "$12.50");
        row("$0.00 negative", QVariant(-12.5), "$0.00", "-$12.50");
        row("half up, currency", Money(1250), "0.00", "0.13");
        row("half of a double", QVariant(2.675), "0.00", "2.68");
        row("carry", QVariant(999.995), "#,##0.00", "1,000.00");
        row("currency negative", QVariant(-1234.5), "currency", "($1,234.50)");
    }
    void format() {
        QFETCH(QVariant, value);
        QFETCH(QString, pattern);
        QFETCH(QString, expected);
        QCOMPARE(pattern == "currency" ? FormatCurrency(value) : Format(value, pattern), expected);
    }

    void currencyOfNoNumberRaises() {
        QCOMPARE(ErrorOf([] { FormatCurrency(QString("Label1")); }), 13);
    }

    // Searches for a word, a star and a set from the Find box: tst_find.
    void like_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<int>("expected"); // 1 a match, 0 none, 93 an invalid pattern
        auto row = [](const char* name, const char* text, const char* pattern, int expected) {
            QTest::newRow(name) << QString(text) << QString(pattern) << expected;
        };
        row("case counts", "Acme", "acme", false);
        row("? one char", "abc", "a?c", true);
        row("year by #", "12/31/1999: x", "*/####:*", true);
        row("open bracket", "abc", "*[*", 93);
    }
    void like() {
        QFETCH(QString, text);
        QFETCH(QString, pattern);
        QFETCH(int, expected);
        if (expected == 93)
            QCOMPARE(ErrorOf([&] { Like(text, pattern); }), 93);
        else
            QCOMPARE(Like(text, pattern), bool(expected));
    }

private:
    std::unique_ptr<Fixture> mFixture;
};

QTEST_GUILESS_MAIN(tst_regional)
#include "tst_regional.moc"
