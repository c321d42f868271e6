#include "common/ui/QtDesktop.h"
#include "shell/VantryApplication.h"
#include "shell/Wiring.h"
#include "shell/modMain.h"

int main(int argc, char** argv) {
    VantryApplication app(argc, argv);
    InstallDesktop(std::make_unique<QtDesktop>());
    Startup::UseDeveloperEnvironment();
    WireFeatures();
    return Main() ? app.exec() : 0;
}
