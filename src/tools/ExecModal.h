#pragma once

class QDialog;

// Runs the dialog modally, then gives the activation and the focus back to the control that
// had them when it opened (the field that opened a tool), whatever the window manager does.
int ExecModal(QDialog& dialog);
