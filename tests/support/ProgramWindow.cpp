#include "ProgramWindow.h"

#include "common/ui/ListView.h"
#include "common/ui/TabStrip.h"
#include "shell/frmMDI.h"
#include "switchboard/frmSwitchboard.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTest>

ProgramWindow::ProgramWindow() {
    mMdi = new frmMDI;
    mMdi->resize(1000, 760);
    mSwitchboard = &frmSwitchboard::Load();
    mFrame = mMdi->AddChild(mSwitchboard);
    mMdi->show();
    mFrame->show();
    QVERIFY(QTest::qWaitForWindowExposed(mMdi));
    QCoreApplication::processEvents();
}

ProgramWindow::~ProgramWindow() {
    // Deleting skips the exit question; the main window takes its children with it.
    delete mMdi;
    QCoreApplication::processEvents();
}

void ProgramWindow::ResizeSwitchboard(const QSize& size) {
    mFrame->resize(size);
    QCoreApplication::processEvents();
}

void ProgramWindow::ClickTab(const QString& caption) {
    QTabBar* bar = mSwitchboard->tbsSwitch->Bar();
    const int index = mSwitchboard->tbsSwitch->Tabs().Item(caption)->Index() - 1;
    // A tab scrolled out of sight comes into view first, as with the bar's arrows.
    if (!bar->rect().contains(bar->tabRect(index)))
        bar->setCurrentIndex(index);
    else
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    QCoreApplication::processEvents();
}

QString ProgramWindow::CurrentTab() const {
    const Tab* tab = mSwitchboard->tbsSwitch->SelectedItem();
    return tab ? tab->Caption() : QString();
}

void ProgramWindow::ClickRow(ListView* lv, int index) {
    auto* view = static_cast<QAbstractItemView*>(lv->ActiveView());
    lv->ListItems().Item(index)->EnsureVisible();
    const QRect rect = view->visualRect(view->model()->index(index - 1, 0));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, rect.center());
    QCoreApplication::processEvents();
}
