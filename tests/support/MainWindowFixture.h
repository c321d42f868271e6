#pragma once

#include "Fixture.h"

#include <QPointer>

class frmMDI;

// A Fixture with the database open (holding the rows) and the main window shown and active, as
// the rebate form lives in it. A locked store fails at once, and ending the program only
// returns. At the end an open rebate form is unloaded and the main window goes without asking.
class MainWindowFixture : public Fixture {
public:
    explicit MainWindowFixture(const QList<RebateRow>& rows = {});
    ~MainWindowFixture();

    frmMDI* Main() const;

private:
    QPointer<frmMDI> mMain;
};
