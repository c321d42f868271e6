#pragma once

// The key codes of the forms' key events, as the program has always numbered them: KeyDown
// and KeyUp carry a key code and a shift mask, KeyPress the character's code.
namespace vb {
enum KeyCode : int {
    vbKeyBack = 8,
    vbKeyTab = 9,
    vbKeyReturn = 13,
    vbKeyControl = 17,
    vbKeyEscape = 27,
    vbKeySpace = 32,
    vbKeyZ = 90,
    vbKeyF2 = 113,
};

enum ShiftMask : int {
    vbShiftMask = 1,
    vbCtrlMask = 2,
    vbAltMask = 4,
};
} // namespace vb
