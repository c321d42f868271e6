#pragma once

#include <QDialog>
#include <vector>

class ListItem;
class ListView;
class QLabel;
class QLineEdit;
class QPushButton;

// A row found by a search, and the list that holds it; both nullptr when nothing matched.
struct FindHit {
    ListView* list = nullptr;
    ListItem* row = nullptr;
};

// One search through lists in the given order for a row whose text matches findWhat: the row
// text and the search text are compared in lower case, the search text may stand anywhere in
// the row text, and the wild forms of the pattern operator ("*", "?", "#", "[...]") keep their
// meaning. In `current`, when it has a selected row, the search goes on from that row: the
// first row seen with the selected row's own text is passed over once, and a hit must stand
// below the selected row. Any other list gives its first match. An unclosed "[" raises 93.
FindHit FindInLists(const QString& findWhat, const std::vector<ListView*>& order,
                    ListView* current);

// The Find dialog: searches the Switchboard's lists for gFindWhat and moves the user to the
// next row that matches, changing the tab when the row lies in another list. It stays open
// after a hit, so that Find again goes on to the next one. Modal from the Find command,
// modeless from F7.
class frmFind : public QDialog {
    Q_OBJECT
public:
    // The loaded dialog, or nullptr.
    static frmFind* Instance();
    // The loaded dialog, loading it first when needed (a child window of `parent`).
    static frmFind& Load(QWidget* parent);
    ~frmFind() override;

    // Runs one search for gFindWhat. A failure goes to the caller.
    void FindIt();

    void cmdFind_Click();
    void cmdCancel_Click();
    void Text1_Change();
    // Saves the position, unless the window is minimized.
    void Form_Unload();

    QLabel* Label1;
    QLineEdit* Text1;
    QPushButton* cmdFind;
    QPushButton* cmdCancel;
    QLabel* Image1;

protected:
    // Every way of closing the dialog (Cancel, Escape, the window's close button) ends here.
    void done(int result) override;

private:
    explicit frmFind(QWidget* parent);
    void Form_Load();
};
