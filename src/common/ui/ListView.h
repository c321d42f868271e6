#pragma once

#include "common/core/Twips.h"

#include <QHash>
#include <QIcon>
#include <QMultiHash>
#include <QPoint>
#include <QString>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <vector>

class QListView;
class QTreeView;
class QStackedLayout;
class QItemSelection;
class QKeyEvent;
class QModelIndex;
class QMouseEvent;
class ListView;
class ListViewModel;
template <class Base> class HostedView;

// One row of a ListView: a text, an icon key for each icon size and up to three sub-items
// (the further columns of the Details view). A row is handed out by pointer; the pointer
// stays good until the row is removed or the list is cleared.
class ListItem {
public:
    static constexpr int kMaxSubItems = 3;

    QString Text() const { return mText; }
    void SetText(const QString& text);
    QString Icon() const { return mIcon; }
    QString SmallIcon() const { return mSmallIcon; }
    bool Selected() const { return mSelected; }
    void SetSelected(bool selected);
    // 1-based position in the displayed (sorted) order.
    int Index() const;
    void EnsureVisible();
    // Sub-items 1..3; an index outside that range raises error 35600.
    QString SubItems(int index) const;
    void SetSubItems(int index, const QString& text);

private:
    friend class ListView;
    friend class ListViewModel;
    ListItem(ListView* owner, const QString& text, const QString& icon, const QString& smallIcon);

    ListView* mOwner;
    QString mText;
    QString mIcon;
    QString mSmallIcon;
    std::array<QString, kMaxSubItems> mSubItems;
    int mRow = -1;
    bool mSelected = false;
};

// The rows of a ListView, 1-based like the old collection.
class ListItemCollection {
public:
    ListItem* Add(const QString& text, const QString& icon = QString(),
                  const QString& smallIcon = QString());
    void Remove(int index);
    void Clear();
    int Count() const;
    // Raises error 35600 (index out of bounds) outside 1..Count().
    ListItem* Item(int index) const;
    // Removes every row the predicate holds for, in one pass; returns how many went.
    int RemoveIf(const std::function<bool(const ListItem&)>& predicate);

private:
    friend class ListView;
    explicit ListItemCollection(ListView* owner) : mOwner(owner) {}
    ListView* mOwner;
};

// A column of the Details view. Widths are in twips, 15 to the pixel.
class ColumnHeader {
public:
    int Index() const { return mIndex; }
    QString Text() const { return mText; }
    int WidthTwips() const { return mWidth; }
    void SetWidthTwips(int twips);

private:
    friend class ColumnHeaderCollection;
    friend class ListView;
    friend class ListViewModel;
    ListView* mOwner = nullptr;
    int mIndex = 0;
    QString mText;
    int mWidth = 0;
};

class ColumnHeaderCollection {
public:
    ColumnHeader* Add(const QString& text, int widthTwips);
    int Count() const { return static_cast<int>(mHeaders.size()); }
    // 1-based; raises error 35600 outside 1..Count().
    ColumnHeader* Item(int index) const;

private:
    friend class ListView;
    friend class ListViewModel;
    explicit ColumnHeaderCollection(ListView* owner) : mOwner(owner) {}
    ListView* mOwner;
    std::vector<std::unique_ptr<ColumnHeader>> mHeaders;
};

// A list of rows shown as large icons, small icons, a list or a details table, with the
// operations the forms use. The rows live in one vector behind a light item model shared by
// a QListView (the three icon and list views) and a QTreeView (details), which also share
// the selection. Rows added in a batch are announced to the views and sorted once, just
// before the next access by index or the next turn of the event loop.
class ListView : public QWidget {
    Q_OBJECT
public:
    enum ViewMode { lvwIcon = 0, lvwSmallIcon = 1, lvwList = 2, lvwReport = 3 };
    using IconLookup = std::function<QIcon(const QString& key)>;

    explicit ListView(QWidget* parent = nullptr);
    ~ListView() override;

    QString Name() const { return objectName(); }
    ListItemCollection& ListItems() { return mItems; }
    ColumnHeaderCollection& ColumnHeaders() { return mColumns; }

    // The focused row when it is selected, else the first selected row, else nullptr.
    ListItem* SelectedItem();
    // Selects the row and gives it the focus rectangle; nullptr takes the focus rectangle away.
    void SetSelectedItem(ListItem* item);
    // The first row at the top of the visible area; nullptr for an empty list.
    ListItem* GetFirstVisible();

    int View() const { return mView; }
    void SetView(int view);
    // Any value re-flows the icons; the value is kept.
    int Arrange() const { return mArrange; }
    void SetArrange(int arrange);

    bool Sorted() const { return mSorted; }
    void SetSorted(bool sorted);
    int SortKey() const { return mSortKey; } // 0: the text, 1..3: a sub-item
    void SetSortKey(int key);
    int SortOrder() const { return mSortOrder; } // 0 ascending, 1 descending
    void SetSortOrder(int order);

    bool MultiSelect() const { return mMultiSelect; }
    void SetMultiSelect(bool multiSelect);

    bool Visible() const { return !isHidden(); }
    // Hiding keeps the keyboard focus: the list takes it back when shown again.
    void SetVisible(bool visible);
    int WidthTwips() const { return width() * kTwipsPerPixel; }
    int HeightTwips() const { return height() * kTwipsPerPixel; }

    // Where the large and the small pictures come from, by the rows' icon keys.
    void SetIcons(IconLookup large, IconLookup small);
    // Names the list for screen readers (the form uses its tab's caption).
    void SetAccessibleName(const QString& name);

    // Rows can be found by the text of one sub-item (1..3; 0, the default, keeps no index): an
    // index kept as rows come and go, so finding one record's row costs the same at any size.
    void SetKeySubItem(int index);
    ListItem* FindByKey(const QString& key) const;
    // Selects the row (nullptr: none) and deselects every other, in one pass over the rows.
    void SelectOnly(ListItem* item);

    // The widget that shows the rows in the current view (tests drive it with QTest).
    QWidget* ActiveView() const;

Q_SIGNALS:
    void ItemClick(ListItem* item);
    void DblClick();
    // Typed characters, Enter (13), Escape (27), Backspace (8); set to 0 to swallow the key.
    void KeyPress(int& keyAscii);
    // button: 1 left, 2 right, 4 middle; the pointer in screen coordinates.
    void MouseUp(int button, QPoint globalPos);
    // The header's 1-based index.
    void ColumnClick(int column);

private:
    template <class Base> friend class HostedView;
    friend class ListItem;
    friend class ListItemCollection;
    friend class ListViewModel;
    friend class ColumnHeader;
    friend class ColumnHeaderCollection;

    ListItem* AddRow(const QString& text, const QString& icon, const QString& smallIcon);
    void RemoveRow(int row);
    int RemoveRowsIf(const std::function<bool(const ListItem&)>& predicate);
    void ClearRows();
    ListItem* RowAt(int row) const { return mRows[static_cast<size_t>(row)].get(); }
    int RowCount() const { return static_cast<int>(mRows.size()); }

    // Announces added rows and sorts what is out of order: everything that reads rows by
    // position calls it first. The rows' selection reaches the views only in Flush (before the
    // views take input, and at the next turn of the event loop), so that selecting row after
    // row stays linear.
    void Order();
    // Order, and passes the rows' selection to the views.
    void Flush();
    void ScheduleFlush();
    void SortRows();
    void SortAgain(); // all rows count as out of order; sorted at the next flush
    void Renumber(int from);
    void SyncSelectionToView();
    void OnViewSelectionChanged(const QItemSelection& selected, const QItemSelection& deselected);
    void OnCurrentChanged();
    void RowSelectionChanged(ListItem* item, bool selected);
    void RowTextChanged(ListItem* item, int column);
    void ForgetKey(const ListItem& item);
    void IndexKey(const QString& key, ListItem* item);
    void UnindexKey(const QString& key, ListItem* item);
    void ColumnsChanged();
    void ApplyColumnWidth(const ColumnHeader& header);
    void LetterSearch(QChar letter);
    // Events of the two views: the hosted views call these around their own handling.
    void ViewMousePressed();
    void ViewMouseReleased(QMouseEvent* event, const QModelIndex& index);
    bool ViewKeyPressed(QKeyEvent* event); // true when the key was used here
    QIcon IconFor(const QString& key, bool large) const;

    ListItemCollection mItems{this};
    ColumnHeaderCollection mColumns{this};
    std::vector<std::unique_ptr<ListItem>> mRows;
    ListViewModel* mModel;
    QStackedLayout* mStack;
    QListView* mListView;
    QTreeView* mTreeView;
    IconLookup mLargeIcons;
    IconLookup mSmallIcons;
    mutable QHash<QString, QIcon> mLargeCache;
    mutable QHash<QString, QIcon> mSmallCache;
    int mKeySubItem = 0;
    // The rows by their key sub-item: the first row of each key, and the further rows of a key
    // that more than one row holds. The second table is empty in a sound store; one plain
    // table saves the chain node a multi-hash gives every row.
    QHash<QString, ListItem*> mByKey;
    QMultiHash<QString, ListItem*> mMoreByKey;

    ListItem* mCurrent = nullptr;
    ListItem* mSingleSelected = nullptr; // the one selected row when MultiSelect is off
    int mAnnounced = 0;                  // rows the views know of
    int mSortedUpTo = 0;                 // rows [0, mSortedUpTo) are in order
    bool mSelectionDirty = false;
    bool mFlushScheduled = false;
    bool mSyncing = false;
    bool mRefocus = false;
    int mView = lvwIcon;
    int mArrange = 0;
    bool mSorted = false;
    int mSortKey = 0;
    int mSortOrder = 0;
    bool mMultiSelect = false;
};
