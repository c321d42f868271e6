#pragma once

#include <QLineEdit>
#include <QPointer>
#include <functional>

// One member of the rebate form's text field array (txtFields). A plain line edit with the
// behaviour the form's entry routines rely on:
//
// - a one-step swap undo: a run of typing, a cut or a paste can be undone, and undoing again
//   brings it back. Text set by code (setText) replaces the text and leaves nothing to undo.
// - DataField (the column the field edits, which also classes it for the key rules), Tag
//   (the status text shown while it has the focus) and Index (its place in the array).
// - the old key events: KeyDown with a key code and shift mask, then KeyPress with the
//   character code, which the handler may set to 0 (swallow) or to another character.
// - a validate veto: when the focus is about to move to another control of the same form,
//   the Validate handler runs; a Cancel sends the focus back, and a button that took the
//   focus with a mouse press doesn't see that press (so it doesn't click).
class FieldEdit : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
    Q_PROPERTY(QString Tag READ Tag WRITE SetTag)
    Q_PROPERTY(int Index READ Index CONSTANT)

public:
    // Shift masks of the key events: 1 Shift, 2 Ctrl, 4 Alt.
    enum ShiftMask { ShiftMaskShift = 1, ShiftMaskCtrl = 2, ShiftMaskAlt = 4 };

    // objectName becomes "txtFields_<index>".
    FieldEdit(int index, const QString& dataField, const QString& tag, QWidget* parent = nullptr);

    int Index() const { return mIndex; }
    QString DataField() const { return mDataField; }
    void SetDataField(const QString& dataField) { mDataField = dataField; }
    QString Tag() const { return mTag; }
    void SetTag(const QString& tag) { mTag = tag; }

    // The one-step undo (EM_CANUNDO, EM_UNDO).
    bool CanUndo() const { return mCanUndo; }
    void Undo();
    // Puts the text in place of the selection as one undo step, around the key rules.
    void PasteText(const QString& text);

    // Runs the Validate handler for a move the focus events don't report (the window is
    // inactive); false when it refuses, and the field then stays the window's focus.
    bool CheckLeave();

    // How the focus came last: Tab, Backtab, an access key, the mouse or code.
    Qt::FocusReason LastFocusReason() const { return mLastFocusReason; }

    // Handlers of the old events. Each receives this field; the by-reference arguments may
    // be changed as the old events allowed.
    std::function<void(FieldEdit&, int& keyCode, int shift)> KeyDown;
    std::function<void(FieldEdit&, int& keyAscii)> KeyPress;
    std::function<void(FieldEdit&, int keyCode, int shift)> KeyUp;
    std::function<void(FieldEdit&)> GotFocus;
    std::function<void(FieldEdit&, bool& cancel)> Validate;

    // The old key code of a key event (65 for A, 113 for F2, 17 for Ctrl ...), 0 when the key
    // has none, and its shift mask.
    static int VbKeyCode(const QKeyEvent& event);
    static int VbShift(Qt::KeyboardModifiers modifiers);
    // The character code that KeyPress sees for a key event, 0 when the key sends none
    // (arrows, function keys, Alt combinations).
    static int VbKeyAscii(const QKeyEvent& event);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OnTextChanged(const QString& text);
    void SwallowPressOf(QWidget* thief);
    void CloseUndoRun() { mRunOpen = false; }
    // Cut and paste each make one undo step of their own.
    void CutAsOneStep();
    void PasteAsOneStep();

    int mIndex;
    QString mDataField;
    QString mTag;

    QString mShownText;      // the text before the change being reported
    QString mUndoText;       // what Undo brings back
    bool mCanUndo = false;   // there is something to undo
    bool mRunOpen = false;   // further typing joins the step that is open
    bool mUndoing = false;   // Undo is setting the text
    bool mHasFocus = false;  // focusIn seen, focusOut not yet
    bool mReturning = false; // the focus comes back after a veto
    bool mHeld = false;      // the field was the form's focus when its window lost the focus
    Qt::FocusReason mLastFocusReason = Qt::OtherFocusReason;
    QPointer<QWidget> mThief; // a button whose mouse press is swallowed after a veto
};
