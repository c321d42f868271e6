#include "rebateform/FieldEdit.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QTimer>

namespace {
// The widget whose controls a field validates against: its form, which is either a window of
// its own or the widget inside an MDI child window.
QWidget* FormOf(QWidget* field) {
    QWidget* form = field;
    while (form->parentWidget() && !form->isWindow() &&
           !form->parentWidget()->inherits("QMdiSubWindow"))
        form = form->parentWidget();
    return form;
}

bool IsWindowLevelReason(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

bool IsPrintable(QChar c) {
    return c.unicode() >= 32 && c.unicode() != 127;
}
} // namespace

FieldEdit::FieldEdit(int index, const QString& dataField, const QString& tag, QWidget* parent)
    : QLineEdit(parent), mIndex(index), mDataField(dataField), mTag(tag) {
    setObjectName(QStringLiteral("txtFields_%1").arg(index));
    // Dropped text would pass around the key rules, as no drop reached the old fields.
    setAcceptDrops(false);
    connect(this, &QLineEdit::textChanged, this, &FieldEdit::OnTextChanged);
}

// QLineEdit::setText clears the line edit's own undo history while every edit of the user adds
// to it, so its availability tells the two kinds of change apart.
void FieldEdit::OnTextChanged(const QString& text) {
    if (!mUndoing) {
        if (!QLineEdit::isUndoAvailable()) {
            mCanUndo = false;
            mUndoText.clear();
            mRunOpen = false;
        } else if (!mRunOpen) {
            mUndoText = mShownText;
            mCanUndo = true;
            mRunOpen = true;
        }
    }
    mShownText = text;
}

void FieldEdit::Undo() {
    if (!mCanUndo)
        return;
    const QString current = text();
    mUndoing = true;
    setText(mUndoText);
    mUndoing = false;
    mUndoText = current;
    mRunOpen = false;
}

void FieldEdit::CutAsOneStep() {
    CloseUndoRun();
    cut();
    CloseUndoRun();
}

void FieldEdit::PasteText(const QString& text) {
    CloseUndoRun();
    insert(text);
    CloseUndoRun();
}

void FieldEdit::PasteAsOneStep() {
    CloseUndoRun();
    paste();
    CloseUndoRun();
}

int FieldEdit::VbShift(Qt::KeyboardModifiers modifiers) {
    return ((modifiers & Qt::ShiftModifier) ? ShiftMaskShift : 0) |
           ((modifiers & Qt::ControlModifier) ? ShiftMaskCtrl : 0) |
           ((modifiers & Qt::AltModifier) ? ShiftMaskAlt : 0);
}

int FieldEdit::VbKeyCode(const QKeyEvent& event) {
    const int key = event.key();
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9))
        return key; // the same codes as the letters and digits
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return 112 + (key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Shift:
        return 16;
    case Qt::Key_Control:
        return 17;
    case Qt::Key_Alt:
        return 18;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Space:
        return 32;
    case Qt::Key_PageUp:
        return 33;
    case Qt::Key_PageDown:
        return 34;
    case Qt::Key_End:
        return 35;
    case Qt::Key_Home:
        return 36;
    case Qt::Key_Left:
        return 37;
    case Qt::Key_Up:
        return 38;
    case Qt::Key_Right:
        return 39;
    case Qt::Key_Down:
        return 40;
    case Qt::Key_Insert:
        return 45;
    case Qt::Key_Delete:
        return 46;
    default:
        return 0;
    }
}

int FieldEdit::VbKeyAscii(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    const bool ctrl = modifiers & Qt::ControlModifier;
    const bool alt = modifiers & Qt::AltModifier;
    switch (event.key()) {
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Escape:
        return 27;
    default:
        break;
    }
    // Ctrl and a letter send the control characters 1 to 26; Ctrl and Alt together (AltGr)
    // type the character of the key; Alt alone is the menus' and labels' access key.
    if (ctrl && !alt)
        return (event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z) ? event.key() - Qt::Key_A + 1
                                                                      : 0;
    if (alt && !ctrl)
        return 0;
    const QString text = event.text();
    return (!text.isEmpty() && IsPrintable(text.at(0))) ? text.at(0).unicode() : 0;
}

void FieldEdit::keyPressEvent(QKeyEvent* event) {
    const QPointer<FieldEdit> self(this);
    int keyCode = VbKeyCode(*event);
    if (KeyDown && keyCode != 0) {
        KeyDown(*this, keyCode, VbShift(event->modifiers()));
        if (!self)
            return;
    }
    const int typed = VbKeyAscii(*event);
    if (typed != 0) {
        int keyAscii = typed;
        if (KeyPress) {
            KeyPress(*this, keyAscii);
            if (!self)
                return;
        }
        if (keyAscii == 0) {
            event->accept();
            return;
        }
        if (keyAscii != typed) {
            QKeyEvent replaced(event->type(), Qt::Key_unknown, Qt::NoModifier,
                               QString(QChar(keyAscii)));
            QLineEdit::keyPressEvent(&replaced);
            event->accept();
            return;
        }
    } else if (!event->text().isEmpty() && IsPrintable(event->text().at(0))) {
        // A character that no KeyPress saw would pass around the key rules.
        event->ignore();
        return;
    }
    if (event->matches(QKeySequence::Undo)) {
        Undo();
    } else if (event->matches(QKeySequence::Redo)) {
        // The one step swaps; there is no separate redo.
    } else if (event->matches(QKeySequence::Cut)) {
        CutAsOneStep();
    } else if (event->matches(QKeySequence::Paste)) {
        PasteAsOneStep();
    } else {
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
}

void FieldEdit::keyReleaseEvent(QKeyEvent* event) {
    const int keyCode = VbKeyCode(*event);
    if (KeyUp && keyCode != 0) {
        const QPointer<FieldEdit> self(this);
        KeyUp(*this, keyCode, VbShift(event->modifiers()));
        if (!self)
            return;
    }
    QLineEdit::keyReleaseEvent(event);
}

// Text composed by an input method reaches KeyPress character by character, like typing.
void FieldEdit::inputMethodEvent(QInputMethodEvent* event) {
    if (event->commitString().isEmpty() || !KeyPress) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    const QPointer<FieldEdit> self(this);
    QString committed;
    for (const QChar c : event->commitString()) {
        int keyAscii = c.unicode();
        KeyPress(*this, keyAscii);
        if (!self)
            return;
        if (keyAscii != 0)
            committed += QChar(keyAscii);
    }
    QInputMethodEvent filtered(event->preeditString(), event->attributes());
    filtered.setCommitString(committed, event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(&filtered);
}

void FieldEdit::focusInEvent(QFocusEvent* event) {
    mHasFocus = true;
    mLastFocusReason = event->reason();
    // A window activation gives back the field that held the focus, which is no entry; a field
    // the program moved the focus into while a box was up is entered by the activation.
    const bool entered = !mReturning && !(IsWindowLevelReason(event->reason()) && mHeld);
    const QList<FieldEdit*> fields = FormOf(this)->findChildren<FieldEdit*>();
    for (FieldEdit* field : fields)
        field->mHeld = false;
    QLineEdit::focusInEvent(event);
    if (entered && GotFocus)
        GotFocus(*this);
}

void FieldEdit::focusOutEvent(QFocusEvent* event) {
    // A field that never had the focus (the target of a vetoed move) has nothing to check.
    if (!mHasFocus) {
        QLineEdit::focusOutEvent(event);
        return;
    }
    QWidget* next = QApplication::focusWidget();
    const bool withinForm = next && next != this && !IsWindowLevelReason(event->reason()) &&
                            FormOf(this)->isAncestorOf(next);
    // Leaving for another window, a menu or another form keeps the field as the form's focus.
    mHeld = !withinForm;
    if (Validate && withinForm) {
        const QPointer<FieldEdit> self(this);
        const QPointer<QWidget> thief(next);
        bool cancel = false;
        Validate(*this, cancel);
        if (!self)
            return;
        if (cancel) {
            if (event->reason() == Qt::MouseFocusReason && thief)
                SwallowPressOf(thief);
            mReturning = true;
            setFocus(Qt::OtherFocusReason);
            mReturning = false;
            if (hasFocus())
                return;
            // The refusal's box left the window inactive: the field is the window's focus again
            // and gets it back with the window's activation.
            mHeld = window()->focusWidget() == this;
        }
    }
    mHasFocus = false;
    CloseUndoRun();
    QLineEdit::focusOutEvent(event);
}

bool FieldEdit::CheckLeave() {
    if (!Validate)
        return true;
    const QPointer<FieldEdit> self(this);
    bool cancel = false;
    Validate(*this, cancel);
    if (self && cancel) {
        mHeld = true;
        mReturning = true;
        setFocus(Qt::OtherFocusReason);
        mReturning = false;
    }
    return !cancel;
}

// The mouse press that moved the focus is delivered right after the focus change; eating it
// keeps the button from going down, so its release doesn't click. A move by keyboard brings no
// press, so the watch ends when the event loop next turns.
void FieldEdit::SwallowPressOf(QWidget* thief) {
    if (mThief)
        mThief->removeEventFilter(this);
    mThief = thief;
    thief->installEventFilter(this);
    QTimer::singleShot(0, this, [this] {
        if (mThief)
            mThief->removeEventFilter(this);
        mThief = nullptr;
    });
}

bool FieldEdit::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mThief && (event->type() == QEvent::MouseButtonPress ||
                              event->type() == QEvent::MouseButtonDblClick)) {
        mThief->removeEventFilter(this);
        mThief = nullptr;
        return true;
    }
    return QLineEdit::eventFilter(watched, event);
}

void FieldEdit::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions) {
        const QString name = action->objectName();
        if (name == QLatin1String("edit-redo")) {
            menu->removeAction(action);
        } else if (name == QLatin1String("edit-undo")) {
            disconnect(action, &QAction::triggered, nullptr, nullptr);
            action->setEnabled(mCanUndo && !isReadOnly());
            connect(action, &QAction::triggered, this, &FieldEdit::Undo);
        } else if (name == QLatin1String("edit-cut")) {
            disconnect(action, &QAction::triggered, nullptr, nullptr);
            connect(action, &QAction::triggered, this, &FieldEdit::CutAsOneStep);
        } else if (name == QLatin1String("edit-paste")) {
            disconnect(action, &QAction::triggered, nullptr, nullptr);
            connect(action, &QAction::triggered, this, &FieldEdit::PasteAsOneStep);
        }
    }
    menu->popup(event->globalPos());
}
