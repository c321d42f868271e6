#include "common/ui/EntryTools.h"

EntryTools& TheEntryTools() {
    static EntryTools tools;
    return tools;
}
