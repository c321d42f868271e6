#include "QtDesktop.h"
#include "VantryApplication.h"
#include "frmSwitchboard.h"
#include "modMain.h"

int main(int argc, char** argv) {
    VantryApplication app(argc, argv);
    InstallDesktop(std::make_unique<QtDesktop>());
    Startup::UseDeveloperEnvironment();
    frmSwitchboard::RegisterFactory();
    return Main() ? app.exec() : 0;
}
