#include "MainWindowFixture.h"

#include "data/Database.h"
#include "rebateform/frmRebate.h"
#include "shell/frmMDI.h"
#include "shell/modMain.h"

#include <QApplication>
#include <QTest>

MainWindowFixture::MainWindowFixture(const QList<RebateRow>& rows) {
    OpenDatabase(rows);
    gDatabase->SetBusyTimeout(0);
    Startup::SetEndProgramHandler([](int) {});
    mMain = new frmMDI;
    mMain->show();
    QApplication::setActiveWindow(mMain);
    QVERIFY(QTest::qWaitForWindowActive(mMain));
}

MainWindowFixture::~MainWindowFixture() {
    if (frmRebate* form = frmRebate::Instance())
        form->Unload();
    QTRY_VERIFY(!frmRebate::Instance());
    delete mMain.data();
    Startup::SetEndProgramHandler(nullptr);
}

frmMDI* MainWindowFixture::Main() const {
    return mMain;
}
