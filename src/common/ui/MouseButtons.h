#pragma once

#include <Qt>

// A mouse button as the program's mouse events have always numbered it: 1 left, 2 right,
// 4 middle, 0 any other.
inline int OldMouseButton(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}
