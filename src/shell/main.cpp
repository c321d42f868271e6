#include "QtDesktop.h"
#include "VantryApplication.h"
#include "modMain.h"

int main(int argc, char** argv) {
    VantryApplication app(argc, argv);
    InstallDesktop(std::make_unique<QtDesktop>());
    Startup::UseDeveloperEnvironment();
    return Main() ? app.exec() : 0;
}
