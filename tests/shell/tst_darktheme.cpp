#include "Fixture.h"
#include "ProgramWindow.h"
#include "RebateRows.h"
#include "shell/VantryApplication.h"
#include "shell/frmMDI.h"
#include "switchboard/frmSwitchboard.h"

#include <QLabel>
#include <QStyleFactory>
#include <QTest>
#include <cmath>

namespace {
// The desktop's dark theme as Fusion draws it: light text on dark grounds.
QPalette DarkPalette() {
    QPalette dark(QColor(53, 53, 56), QColor(45, 45, 48));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, QColor(220, 220, 220));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    return dark;
}

// Normal text needs a contrast of 4.5:1 to be read comfortably; on white that is a relative
// luminance of at most 0.183.
bool ReadableOnWhite(const QColor& ink) {
    const auto channel = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(ink.redF()) + 0.7152 * channel(ink.greenF()) +
               0.0722 * channel(ink.blueF()) <=
           0.183;
}
} // namespace

class tst_darktheme : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        InitTestResources();
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        QApplication::setPalette(DarkPalette());
    }

    void statisticsSheet() {
        Fixture fixture;
        fixture.OpenDatabase();
        InsertRebates({{.RebateID = "1", .PurchasePrice = 19.99, .RebateAmount = 10.0},
                       {.RebateID = "2", .PurchasePrice = 5.0, .AmountReceived = 2.5}});
        ProgramWindow program;
        program.ClickTab("Statistics");
        auto* sheet = program.Switchboard().findChild<QWidget*>("picLVBack_9");
        QVERIFY(sheet);
        QCOMPARE(sheet->palette().color(QPalette::Window), QColor(Qt::white));
        int texts = 0;
        for (const QLabel* label : sheet->findChildren<QLabel*>()) {
            if (label->text().isEmpty())
                continue;
            ++texts;
            const QColor ink = label->palette().color(label->foregroundRole());
            QVERIFY2(ReadableOnWhite(ink), qPrintable(label->objectName() + " " + ink.name()));
        }
        // Three headers, fifteen captions and fifteen figures.
        QCOMPARE(texts, 33);
        // The README's picture of the dark look is taken here.
        const QString shots = qEnvironmentVariable("VANTRY_SCREENSHOT_DIR");
        if (!shots.isEmpty()) {
            program.Mdi().resize(900, 700);
            QVERIFY(program.Mdi().grab().save(shots + "/statistics-dark.png"));
        }
    }
};

int main(int argc, char** argv) {
    VantryApplication app(argc, argv);
    tst_darktheme test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_darktheme.moc"
