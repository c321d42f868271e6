#include "common/ui/MainFrame.h"

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

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

bool IsReachable(const QRect& frame, const QRect& room) {
    constexpr int kGrip = 24; // enough of the title bar to take hold of
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QSize most = screen ? screen->virtualSize() : room.size();
    return frame.width() <= most.width() && frame.height() <= most.height() &&
           frame.top() >= room.top() && frame.top() + kGrip <= room.bottom() &&
           frame.left() + kGrip <= room.right() && frame.right() - kGrip >= room.left();
}
