#include "common/ui/ReportHooks.h"

ReportHooks& ReportHooks::Instance() {
    static ReportHooks hooks;
    return hooks;
}
