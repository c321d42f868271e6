#include "common/ui/MainFrame.h"

namespace {
MainFrame* gFrame = nullptr;
}

MainFrame* MainFrame::Instance() {
    return gFrame;
}

MainFrame::MainFrame() {
    gFrame = this;
}

MainFrame::~MainFrame() {
    if (gFrame == this)
        gFrame = nullptr;
}
