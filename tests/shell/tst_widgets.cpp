#include "Fixture.h"
#include "app/cLogErr.h"
#include "common/core/Clock.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"
#include "common/ui/QtDesktop.h"
#include "common/ui/StatusBar.h"
#include "common/ui/Toolbar.h"

#include <QAccessible>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace {
// Every picture key the program's toolbars, lists and forms ask for.
const QStringList kImageKeys{
    "Exit",  "Options", "Calc",      "Dialer",     "Web",         "Tip",  "Help",     "Save",
    "Print", "Delete",  "Cut",       "Copy",       "Paste",       "Undo", "Redo",     "TCR",
    "Log",   "New",     "Unsent",    "Pending",    "Overdue",     "Paid", "Followup", "Rejected",
    "Large", "Small",   "List",      "Details",    "Arrange All", "AZ",   "ZA",       "Find",
    "Back",  "Forward", "Hyperlink", "NoHyperlink"};

int Pixels(const QPixmap& picture, bool (*test)(QRgb)) {
    const QImage image = picture.toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += test(image.pixel(x, y));
    return count;
}
bool Coloured(QRgb p) {
    return qAlpha(p) > 0 && (qRed(p) != qGreen(p) || qGreen(p) != qBlue(p));
}
} // namespace

class tst_widgets : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { InitTestResources(); }

    void imageKeys_data() {
        QTest::addColumn<QString>("key");
        for (const QString& key : kImageKeys)
            QTest::newRow(qPrintable(key)) << key;
    }

    void imageKeys() {
        QFETCH(QString, key);
        for (int size : {16, 32}) {
            ImageList list(size);
            list.Add(key);
            const QPixmap picture = list.Picture(key);
            QCOMPARE(picture.deviceIndependentSize().toSize(), QSize(size, size));
            // Something is drawn, and not just a speck.
            const int inked = Pixels(picture, [](QRgb p) { return qAlpha(p) > 128; });
            QVERIFY2(inked > size * size / 8, qPrintable(QString::number(inked)));
        }
    }

    void toolbarButtonState() {
        QMainWindow window;
        auto* bar = new Toolbar(&window);
        window.addToolBar(bar);
        ImageList grey(16, ImageList::Tone::Grey);
        ImageList colour(16);
        grey.Add("Save");
        colour.Add("Save");
        ToolbarButton& save = bar->AddButton("Save", "Save Record", "Save Record", "Save");
        // The normal look is grey, the look under the mouse in colour.
        bar->SetImageList(&grey);
        bar->SetHotImageList(&colour);
        QCOMPARE(bar->iconSize(), QSize(16, 16));
        const QIcon icon = save.Action()->icon();
        QCOMPARE(Pixels(icon.pixmap(16, QIcon::Normal), Coloured), 0);
        QVERIFY(Pixels(icon.pixmap(16, QIcon::Active), Coloured) > 0);
    }

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

        // The status line takes the width the clock panels leave.
        bar->resize(800, 24);
        bar->show();
        QVERIFY(QTest::qWaitForWindowExposed(bar.get()));
        QVERIFY(bar->Panels(3)->width() > bar->Panels(1)->width() + bar->Panels(2)->width());
        // The clock ticks by itself.
        Clock::Advance(2 * 3600 + 60);
        QTRY_COMPARE(bar->PanelText(2), QString("12:01 PM"));
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

    // The error box: its numbered steps stand as an indented list, one line each.
    void messageBoxLayout() {
        Fixture fixture;
        gErrorLog->LogIt(3078,
                         "The database engine cannot find the input table or query: no such "
                         "table: Rebates.",
                         "frmSwitchboard", "AddAllListItems()");
        const QString prompt = fixture.Desktop().boxes.value(0).prompt;
        QVERIFY(prompt.contains("\t1. Click on the 'Options' button on the toolbar"));
        const auto box = QtDesktop::MakeBox(prompt, 48, kErrorTitle);
        box->show();
        QVERIFY(QTest::qWaitForWindowExposed(box.get()));
        auto* label = box->findChild<QLabel*>("qt_msgbox_label");
        QVERIFY(label);
        QVERIFY2(label->width() >= 360, qPrintable(QString::number(label->width())));

        QTextDocument shown;
        shown.setDefaultFont(label->font());
        shown.setHtml(label->text());
        shown.setTextWidth(label->contentsRect().width());
        shown.documentLayout(); // lays the text out
        const auto lineStart = [](const QTextBlock& block) {
            return block.layout()->position().x() + block.layout()->lineAt(0).x();
        };
        const qreal left = lineStart(shown.firstBlock());
        int steps = 0;
        for (QTextBlock block = shown.firstBlock(); block.isValid(); block = block.next()) {
            if (!block.text().contains("Click on the"))
                continue;
            ++steps;
            QVERIFY2(block.layout()->lineCount() == 1, qPrintable(block.text()));
            const qreal indent = lineStart(block) - left;
            QVERIFY2(indent >= 10 && indent <= 40, qPrintable(QString::number(indent)));
        }
        QCOMPARE(steps, 4);
    }
};

QTEST_MAIN(tst_widgets)
#include "tst_widgets.moc"
