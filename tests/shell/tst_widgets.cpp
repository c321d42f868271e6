#include "Fixture.h"
#include "common/ui/Forms.h"
#include "common/ui/QtDesktop.h"
#include "common/ui/StatusBar.h"

#include <QAccessible>
#include <QMessageBox>
#include <QTest>

class tst_widgets : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void statusBarPanels() {
        Fixture fixture;
        auto bar = std::make_unique<StatusBar>();
        bar->AttachStatusLine();
        SetStatusText("Loading records...");
        // A screen reader hears each panel's name and its text.
        const auto spoken = [&bar](int index) {
            QAccessibleInterface* panel = QAccessible::queryAccessibleInterface(bar->Panels(index));
            return panel->text(QAccessible::Name) + ": " + panel->text(QAccessible::Description);
        };
        const QStringList panels{"Date: 11/23/2026", "Time: 10:00 AM",
                                 "Status: Loading records..."};
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(spoken(i), panels[i - 1]);
            QCOMPARE(bar->PanelText(i), panels[i - 1].section(": ", 1));
        }
        QCOMPARE(QAccessible::queryAccessibleInterface(bar.get())->text(QAccessible::Name),
                 QString("Status Bar"));

        bar.reset();
        SetStatusText("Ready..."); // nothing attached any more, nothing breaks
        QCOMPARE(StatusText(), QString("Ready..."));
    }

    void messageBoxButtons_data() {
        using B = QMessageBox;
        QTest::addColumn<int>("style");
        QTest::addColumn<B::StandardButtons>("buttons");
        QTest::addColumn<B::StandardButton>("defaultButton");
        QTest::addColumn<B::Icon>("icon");
        const auto row = [](int style, B::StandardButtons buttons, B::StandardButton byDefault,
                            B::Icon icon) {
            QTest::addRow("%d", style) << style << buttons << byDefault << icon;
        };
        row(0, B::Ok, B::Ok, B::NoIcon);
        row(16, B::Ok, B::Ok, B::Critical);
        row(36, B::Yes | B::No, B::Yes, B::Question);
        row(37, B::Retry | B::Cancel, B::Retry, B::Question);
        row(48, B::Ok, B::Ok, B::Warning);
        row(292, B::Yes | B::No, B::No, B::Question);
        row(289, B::Ok | B::Cancel, B::Cancel, B::Question);
    }

    void messageBoxButtons() {
        QFETCH(int, style);
        QFETCH(QMessageBox::StandardButtons, buttons);
        QFETCH(QMessageBox::StandardButton, defaultButton);
        QFETCH(QMessageBox::Icon, icon);
        const auto box = QtDesktop::MakeBox("Are you sure?", style, "Question");
        QCOMPARE(box->standardButtons(), buttons);
        QCOMPARE(box->standardButton(box->defaultButton()), defaultButton);
        QCOMPARE(box->icon(), icon);
        QCOMPARE(box->windowTitle(), QString("Question"));
    }
};

QTEST_MAIN(tst_widgets)
#include "tst_widgets.moc"
