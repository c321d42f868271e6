#include "common/ui/ListView.h"

#include "common/core/KeyCodes.h"
#include "common/core/Twips.h"
#include "common/core/VbError.h"
#include "common/ui/MouseButtons.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStackedLayout>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace {
constexpr int kLargeIconSize = 32;
constexpr int kSmallIconSize = 16;
// Past this many separate stretches of removed rows, the views are simply told to start over.
constexpr int kMaxRemovalRanges = 64;

// The case-blind order of the lists, without a folded copy of either text: plain ASCII, which
// most row texts are, compares by its lower case at once; from the first other character
// that differs on, Qt's own case folding decides.
int CompareCaseBlind(const QString& a, const QString& b) {
    const qsizetype common = std::min(a.size(), b.size());
    const QChar* x = a.constData();
    const QChar* y = b.constData();
    for (qsizetype i = 0; i < common; ++i) {
        char16_t p = x[i].unicode();
        char16_t q = y[i].unicode();
        if (p == q)
            continue;
        if (p >= 0x80 || q >= 0x80) {
            // Back to the start of a surrogate pair, which folds as one character.
            if (i > 0 && x[i - 1].isHighSurrogate())
                --i;
            return QStringView(x + i, a.size() - i)
                .compare(QStringView(y + i, b.size() - i), Qt::CaseInsensitive);
        }
        if (p >= u'A' && p <= u'Z')
            p += u'a' - u'A';
        if (q >= u'A' && q <= u'Z')
            q += u'a' - u'A';
        if (p != q)
            return p < q ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}
// A row's sort text as numbers: its first characters folded to lower case, eight to a number,
// so that most comparisons are of two numbers in a small array rather than of two strings
// behind two pointers. Only plain ASCII is folded here; from the first other character on (or
// past the packed length) the texts are compared in full.
struct RowSortKey {
    static constexpr int kPacked = 24;

    RowSortKey(ListItem* row, const QString& text) : item(row) {
        const qsizetype limit = std::min<qsizetype>(text.size(), kPacked);
        const QChar* characters = text.constData();
        int i = 0;
        for (; i < limit; ++i) {
            char16_t c = characters[i].unicode();
            if (c == 0 || c >= 0x80)
                break;
            if (c >= u'A' && c <= u'Z')
                c += u'a' - u'A';
            packed[static_cast<size_t>(i / 8)] |= std::uint64_t{c} << (56 - 8 * (i % 8));
        }
        length = static_cast<std::uint8_t>(i);
        whole = i == text.size();
    }

    // As CompareCaseBlind of the two texts.
    template <typename TextOf> int Compare(const RowSortKey& other, const TextOf& textOf) const {
        for (size_t w = 0; w < packed.size(); ++w) {
            if (packed[w] == other.packed[w])
                continue;
            const int at =
                static_cast<int>(w) * 8 + std::countl_zero(packed[w] ^ other.packed[w]) / 8;
            if (at < length && at < other.length)
                return packed[w] < other.packed[w] ? -1 : 1;
            if (whole && at == length && at < other.length)
                return -1; // a prefix of the other
            if (other.whole && at == other.length && at < length)
                return 1;
            return CompareCaseBlind(textOf(*item), textOf(*other.item));
        }
        if (whole && other.whole)
            return 0;
        return CompareCaseBlind(textOf(*item), textOf(*other.item));
    }

    std::array<std::uint64_t, 3> packed{};
    ListItem* item;
    std::uint8_t length = 0; // characters packed
    bool whole = false;      // every character of the text is packed
};

} // namespace

// The item model over the rows of a ListView. It only reads the owner's vector; the owner
// decides when the views learn of a change.
class ListViewModel final : public QAbstractTableModel {
public:
    explicit ListViewModel(ListView* owner) : QAbstractTableModel(owner), mOwner(owner) {}

    int rowCount(const QModelIndex& parent = QModelIndex()) const override {
        return parent.isValid() ? 0 : mOwner->mAnnounced;
    }
    int columnCount(const QModelIndex& parent = QModelIndex()) const override {
        return parent.isValid() ? 0 : std::max(1, mOwner->mColumns.Count());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid() || index.row() >= mOwner->mAnnounced)
            return {};
        const ListItem* item = mOwner->RowAt(index.row());
        const int column = index.column();
        switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            if (column == 0)
                return item->mText;
            if (column <= ListItem::kMaxSubItems)
                return item->mSubItems[static_cast<size_t>(column - 1)];
            return {};
        case Qt::ToolTipRole:
            // The icon views cut long texts short.
            if (column == 0 && mOwner->mView != ListView::lvwReport)
                return item->mText;
            return {};
        case Qt::DecorationRole:
            if (column != 0)
                return {};
            if (mOwner->mView == ListView::lvwIcon)
                return mOwner->IconFor(item->mIcon, true);
            return mOwner->IconFor(item->mSmallIcon, false);
        default:
            return {};
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        if (section < mOwner->mColumns.Count())
            return mOwner->mColumns.mHeaders[static_cast<size_t>(section)]->mText;
        return {};
    }
    Qt::ItemFlags flags(const QModelIndex& index) const override {
        return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
    }

    void BeginInsertRows(int first, int last) { beginInsertRows({}, first, last); }
    void EndInsertRows() { endInsertRows(); }
    void BeginRemoveRows(int first, int last) { beginRemoveRows({}, first, last); }
    void EndRemoveRows() { endRemoveRows(); }
    void BeginReset() { beginResetModel(); }
    void EndReset() { endResetModel(); }
    void BeginInsertColumn(int column) { beginInsertColumns({}, column, column); }
    void EndInsertColumn() { endInsertColumns(); }
    QModelIndexList Persistent() const { return persistentIndexList(); }
    void ChangePersistent(const QModelIndexList& from, const QModelIndexList& to) {
        changePersistentIndexList(from, to);
    }
    void RowChanged(int row) { Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1)); }
    void AllChanged() {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }

private:
    ListView* mOwner;
};

// A QListView or QTreeView that lets its ListView see the mouse and keyboard first (to bring
// the rows up to date and to raise the old events) and after (for the events that follow the
// view's own handling).
template <class Base> class HostedView final : public Base {
public:
    explicit HostedView(ListView* owner) : Base(owner), mOwner(owner) {}

protected:
    void mousePressEvent(QMouseEvent* event) override {
        mOwner->ViewMousePressed();
        Base::mousePressEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        const QModelIndex index = this->indexAt(event->position().toPoint());
        Base::mouseReleaseEvent(event);
        mOwner->ViewMouseReleased(event, index);
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        mOwner->ViewMousePressed();
        Base::mouseDoubleClickEvent(event);
        Q_EMIT mOwner->DblClick();
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (!mOwner->ViewKeyPressed(event))
            Base::keyPressEvent(event);
    }
    void wheelEvent(QWheelEvent* event) override {
        mOwner->Flush();
        Base::wheelEvent(event);
    }
    // A hidden view has nothing to repaint for a new current row, and the tree view's own
    // handling would lay out every row to find the one rectangle; shown, it scrolls to it.
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
        if (this->isVisible())
            Base::currentChanged(current, previous);
        else
            QAbstractItemView::currentChanged(current, previous);
    }
    // Fitting the scroll bars lays out every row: a view hidden behind the other one, or on a
    // page not shown, does it when it is shown.
    void updateGeometries() override {
        mGeometriesPending = !this->isVisible();
        if (!mGeometriesPending)
            Base::updateGeometries();
    }
    void showEvent(QShowEvent* event) override {
        Base::showEvent(event);
        if (mGeometriesPending)
            updateGeometries();
    }

private:
    ListView* mOwner;
    bool mGeometriesPending = false;
};

// --- ListItem ---------------------------------------------------------------------------

ListItem::ListItem(ListView* owner, const QString& text, const QString& icon,
                   const QString& smallIcon)
    : mOwner(owner), mText(text), mIcon(icon), mSmallIcon(smallIcon) {}

void ListItem::SetText(const QString& text) {
    if (text == mText)
        return;
    mText = text;
    mOwner->RowTextChanged(this, 0);
}

void ListItem::SetSelected(bool selected) {
    if (selected == mSelected)
        return;
    mSelected = selected;
    mOwner->RowSelectionChanged(this, selected);
}

int ListItem::Index() const {
    mOwner->Order();
    return mRow + 1;
}

void ListItem::EnsureVisible() {
    mOwner->Order();
    auto* view = static_cast<QAbstractItemView*>(mOwner->ActiveView());
    view->scrollTo(mOwner->mModel->index(mRow, 0));
}

QString ListItem::SubItems(int index) const {
    if (index < 1 || index > kMaxSubItems)
        throw VbError(VbError::IndexOutOfBounds);
    return mSubItems[static_cast<size_t>(index - 1)];
}

void ListItem::SetSubItems(int index, const QString& text) {
    if (index < 1 || index > kMaxSubItems)
        throw VbError(VbError::IndexOutOfBounds);
    QString& slot = mSubItems[static_cast<size_t>(index - 1)];
    if (slot == text)
        return;
    if (index == mOwner->mKeySubItem) {
        mOwner->UnindexKey(slot, this);
        mOwner->IndexKey(text, this);
    }
    slot = text;
    mOwner->RowTextChanged(this, index);
}

// --- ListItemCollection -----------------------------------------------------------------

ListItem* ListItemCollection::Add(const QString& text, const QString& icon,
                                  const QString& smallIcon) {
    return mOwner->AddRow(text, icon, smallIcon);
}

void ListItemCollection::Remove(int index) {
    if (index < 1 || index > Count())
        throw VbError(VbError::IndexOutOfBounds);
    mOwner->RemoveRow(index - 1);
}

void ListItemCollection::Clear() {
    mOwner->ClearRows();
}

int ListItemCollection::Count() const {
    return mOwner->RowCount();
}

ListItem* ListItemCollection::Item(int index) const {
    if (index < 1 || index > Count())
        throw VbError(VbError::IndexOutOfBounds);
    mOwner->Order();
    return mOwner->RowAt(index - 1);
}

int ListItemCollection::RemoveIf(const std::function<bool(const ListItem&)>& predicate) {
    return mOwner->RemoveRowsIf(predicate);
}

// --- ColumnHeader -----------------------------------------------------------------------

void ColumnHeader::SetWidthTwips(int twips) {
    mWidth = std::max(0, twips);
    mOwner->ApplyColumnWidth(*this);
}

ColumnHeader* ColumnHeaderCollection::Add(const QString& text, int widthTwips) {
    auto header = std::make_unique<ColumnHeader>();
    header->mOwner = mOwner;
    header->mIndex = Count() + 1;
    header->mText = text;
    header->mWidth = std::max(0, widthTwips);
    ColumnHeader* added = header.get();
    const bool newColumn = Count() > 0; // the model always shows at least one column
    if (newColumn)
        mOwner->mModel->BeginInsertColumn(Count());
    mHeaders.push_back(std::move(header));
    if (newColumn)
        mOwner->mModel->EndInsertColumn();
    else
        Q_EMIT mOwner->mModel->headerDataChanged(Qt::Horizontal, 0, 0);
    mOwner->ApplyColumnWidth(*added);
    return added;
}

ColumnHeader* ColumnHeaderCollection::Item(int index) const {
    if (index < 1 || index > Count())
        throw VbError(VbError::IndexOutOfBounds);
    return mHeaders[static_cast<size_t>(index - 1)].get();
}

// --- ListView ---------------------------------------------------------------------------

ListView::ListView(QWidget* parent) : QWidget(parent), mModel(new ListViewModel(this)) {
    mListView = new HostedView<QListView>(this);
    mListView->setObjectName(QStringLiteral("icons"));
    mListView->setProperty("internalPart", true); // the error log names the list view instead
    mListView->setModel(mModel);
    mListView->setUniformItemSizes(true);
    mListView->setMovement(QListView::Static);
    mListView->setResizeMode(QListView::Adjust);
    mListView->setLayoutMode(QListView::Batched);
    mListView->setBatchSize(500);
    mListView->setWrapping(true);
    mListView->setTextElideMode(Qt::ElideRight);
    mListView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    mListView->setSelectionBehavior(QAbstractItemView::SelectRows);

    mTreeView = new HostedView<QTreeView>(this);
    mTreeView->setObjectName(QStringLiteral("details"));
    mTreeView->setProperty("internalPart", true);
    mTreeView->setModel(mModel);
    QItemSelectionModel* ownSelection = mTreeView->selectionModel();
    mTreeView->setSelectionModel(mListView->selectionModel());
    delete ownSelection;
    mTreeView->setRootIsDecorated(false);
    mTreeView->setItemsExpandable(false);
    mTreeView->setUniformRowHeights(true);
    mTreeView->setAllColumnsShowFocus(true);
    mTreeView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    mTreeView->setSelectionBehavior(QAbstractItemView::SelectRows);
    mTreeView->setIconSize(QSize(kSmallIconSize, kSmallIconSize));
    QHeaderView* header = mTreeView->header();
    header->setStretchLastSection(false);
    header->setSectionsClickable(true);
    header->setSectionsMovable(false);
    header->setMinimumSectionSize(0);
    header->setSortIndicatorShown(false);

    mStack = new QStackedLayout(this);
    mStack->setContentsMargins(0, 0, 0, 0);
    mStack->addWidget(mListView);
    mStack->addWidget(mTreeView);

    connect(header, &QHeaderView::sectionClicked, this,
            [this](int logical) { Q_EMIT ColumnClick(logical + 1); });
    connect(header, &QHeaderView::sectionResized, this, [this](int logical, int, int size) {
        if (!mSyncing && logical < mColumns.Count())
            mColumns.mHeaders[static_cast<size_t>(logical)]->mWidth = size * kTwipsPerPixel;
    });
    QItemSelectionModel* selection = mListView->selectionModel();
    connect(selection, &QItemSelectionModel::selectionChanged, this,
            &ListView::OnViewSelectionChanged);
    connect(selection, &QItemSelectionModel::currentChanged, this, &ListView::OnCurrentChanged);

    SetMultiSelect(false);
    SetView(lvwIcon);
}

ListView::~ListView() {
    // The views ask the model about the rows while they go; they go first.
    delete mTreeView;
    delete mListView;
}

QWidget* ListView::ActiveView() const {
    return mView == lvwReport ? static_cast<QWidget*>(mTreeView) : mListView;
}

void ListView::SetIcons(IconLookup large, IconLookup small) {
    mLargeIcons = std::move(large);
    mSmallIcons = std::move(small);
    mLargeCache.clear();
    mSmallCache.clear();
    mModel->AllChanged();
}

QIcon ListView::IconFor(const QString& key, bool large) const {
    if (key.isEmpty())
        return {};
    auto& cache = large ? mLargeCache : mSmallCache;
    const auto found = cache.constFind(key);
    if (found != cache.constEnd())
        return *found;
    const IconLookup& lookup = large ? mLargeIcons : mSmallIcons;
    const QIcon icon = lookup ? lookup(key) : QIcon();
    cache.insert(key, icon);
    return icon;
}

void ListView::SetAccessibleName(const QString& name) {
    setAccessibleName(name);
    mListView->setAccessibleName(name);
    mTreeView->setAccessibleName(name);
}

void ListView::SetVisible(bool visible) {
    if (!visible) {
        const QWidget* focus = QApplication::focusWidget();
        if (focus && (focus == this || isAncestorOf(focus)))
            mRefocus = true;
        setVisible(false);
        return;
    }
    setVisible(true);
    if (mRefocus) {
        mRefocus = false;
        ActiveView()->setFocus();
    }
}

void ListView::SetMultiSelect(bool multiSelect) {
    mMultiSelect = multiSelect;
    const auto mode =
        multiSelect ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection;
    mListView->setSelectionMode(mode);
    mTreeView->setSelectionMode(mode);
    if (!multiSelect) {
        mSingleSelected = nullptr;
        for (const auto& row : mRows) {
            if (!row->mSelected)
                continue;
            if (mSingleSelected)
                row->mSelected = false;
            else
                mSingleSelected = row.get();
        }
        mSelectionDirty = true;
        ScheduleFlush();
    }
}

void ListView::SetView(int view) {
    if (view < lvwIcon || view > lvwReport)
        throw VbError(VbError::InvalidCall);
    const bool hadFocus = ActiveView()->hasFocus();
    mView = view;
    const QFontMetrics metrics = fontMetrics();
    const int charWidth = metrics.averageCharWidth();
    switch (view) {
    case lvwIcon:
        mListView->setViewMode(QListView::IconMode);
        mListView->setFlow(QListView::LeftToRight);
        mListView->setIconSize(QSize(kLargeIconSize, kLargeIconSize));
        mListView->setGridSize(QSize(charWidth * 16, kLargeIconSize + metrics.height() * 2 + 12));
        mListView->setWordWrap(true);
        mListView->setSpacing(0);
        break;
    case lvwSmallIcon:
        mListView->setViewMode(QListView::ListMode);
        mListView->setFlow(QListView::LeftToRight);
        mListView->setIconSize(QSize(kSmallIconSize, kSmallIconSize));
        mListView->setGridSize(
            QSize(charWidth * 46, std::max(kSmallIconSize, metrics.height()) + 6));
        mListView->setWordWrap(false);
        break;
    case lvwList:
        mListView->setViewMode(QListView::ListMode);
        mListView->setFlow(QListView::TopToBottom);
        mListView->setIconSize(QSize(kSmallIconSize, kSmallIconSize));
        mListView->setGridSize(
            QSize(charWidth * 46, std::max(kSmallIconSize, metrics.height()) + 4));
        mListView->setWordWrap(false);
        break;
    default:
        break;
    }
    mListView->setWrapping(true);
    mStack->setCurrentWidget(ActiveView());
    mModel->AllChanged(); // the pictures change size with the view
    if (hadFocus)
        ActiveView()->setFocus();
}

void ListView::SetArrange(int arrange) {
    mArrange = arrange;
    if (mView == lvwIcon || mView == lvwSmallIcon)
        mListView->doItemsLayout();
}

void ListView::SetSorted(bool sorted) {
    if (sorted == mSorted)
        return;
    mSorted = sorted;
    SortAgain();
}

void ListView::SetSortKey(int key) {
    if (key == mSortKey)
        return;
    mSortKey = key;
    SortAgain();
}

void ListView::SetSortOrder(int order) {
    if (order == mSortOrder)
        return;
    mSortOrder = order;
    SortAgain();
}

void ListView::SortAgain() {
    mSortedUpTo = 0;
    if (mSorted)
        ScheduleFlush();
}

ListItem* ListView::SelectedItem() {
    if (mCurrent && mCurrent->mSelected)
        return mCurrent;
    if (!mMultiSelect)
        return mSingleSelected;
    Order();
    for (const auto& row : mRows)
        if (row->mSelected)
            return row.get();
    return nullptr;
}

void ListView::SetSelectedItem(ListItem* item) {
    mCurrent = item;
    if (item)
        item->SetSelected(true);
    mSelectionDirty = true;
    ScheduleFlush();
}

ListItem* ListView::GetFirstVisible() {
    Order();
    if (mRows.empty())
        return nullptr;
    auto* view = static_cast<QAbstractItemView*>(ActiveView());
    if (!view->isVisible() ||
        (view->verticalScrollBar()->value() == 0 && view->horizontalScrollBar()->value() == 0))
        return RowAt(0);
    // The top left corner may fall between icons: look a little way in.
    int first = -1;
    for (int y = 0; y <= 48; y += 8) {
        for (int x = 0; x <= 48; x += 8) {
            const QModelIndex index = view->indexAt(QPoint(x, y));
            if (index.isValid() && (first < 0 || index.row() < first))
                first = index.row();
        }
    }
    return RowAt(first < 0 ? 0 : first);
}

ListItem* ListView::AddRow(const QString& text, const QString& icon, const QString& smallIcon) {
    auto item = std::unique_ptr<ListItem>(new ListItem(this, text, icon, smallIcon));
    item->mRow = RowCount();
    ListItem* added = item.get();
    mRows.push_back(std::move(item));
    ScheduleFlush();
    return added;
}

void ListView::RemoveRow(int row) {
    Order();
    ListItem* item = RowAt(row);
    mSyncing = true;
    mModel->BeginRemoveRows(row, row);
    if (mCurrent == item)
        mCurrent = nullptr;
    if (mSingleSelected == item)
        mSingleSelected = nullptr;
    ForgetKey(*item);
    mRows.erase(mRows.begin() + row);
    mAnnounced = RowCount();
    mSortedUpTo = RowCount();
    Renumber(row);
    mModel->EndRemoveRows();
    mSyncing = false;
}

int ListView::RemoveRowsIf(const std::function<bool(const ListItem&)>& predicate) {
    Order();
    std::vector<std::pair<int, int>> ranges; // [first, last] in the current order
    for (int row = 0; row < RowCount(); ++row) {
        if (!predicate(*RowAt(row)))
            continue;
        if (!ranges.empty() && ranges.back().second == row - 1)
            ranges.back().second = row;
        else
            ranges.emplace_back(row, row);
    }
    if (ranges.empty())
        return 0;
    int removed = 0;
    mSyncing = true;
    if (ranges.size() > static_cast<size_t>(kMaxRemovalRanges)) {
        mModel->BeginReset();
        for (const auto& [first, last] : ranges)
            for (int row = first; row <= last; ++row)
                RowAt(row)->mRow = -1; // marks the row for removal below
        std::erase_if(mRows, [&](const std::unique_ptr<ListItem>& item) {
            if (item->mRow >= 0)
                return false;
            if (mCurrent == item.get())
                mCurrent = nullptr;
            if (mSingleSelected == item.get())
                mSingleSelected = nullptr;
            ForgetKey(*item);
            ++removed;
            return true;
        });
        mAnnounced = RowCount();
        mSortedUpTo = RowCount();
        Renumber(0);
        mSelectionDirty = true;
        mModel->EndReset();
    } else {
        // From the back, so that the positions of the ranges still to go stay right.
        for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
            const auto [first, last] = *range;
            mModel->BeginRemoveRows(first, last);
            for (int row = first; row <= last; ++row) {
                if (mCurrent == RowAt(row))
                    mCurrent = nullptr;
                if (mSingleSelected == RowAt(row))
                    mSingleSelected = nullptr;
                ForgetKey(*RowAt(row));
            }
            mRows.erase(mRows.begin() + first, mRows.begin() + last + 1);
            removed += last - first + 1;
            mAnnounced = RowCount();
            mSortedUpTo = RowCount();
            Renumber(first);
            mModel->EndRemoveRows();
        }
    }
    mSyncing = false;
    ScheduleFlush();
    return removed;
}

void ListView::ClearRows() {
    mSyncing = true;
    mModel->BeginReset();
    mRows.clear();
    // The rows that come next are usually as many: the index is grown once, not row by row.
    const qsizetype keys = mByKey.size();
    mByKey.clear();
    mByKey.reserve(keys);
    mMoreByKey.clear();
    mCurrent = nullptr;
    mSingleSelected = nullptr;
    mAnnounced = 0;
    mSortedUpTo = 0;
    mSelectionDirty = false;
    mModel->EndReset();
    mSyncing = false;
}

void ListView::ScheduleFlush() {
    if (mFlushScheduled)
        return;
    mFlushScheduled = true;
    QTimer::singleShot(0, this, [this] {
        mFlushScheduled = false;
        Flush();
    });
}

void ListView::Flush() {
    Order();
    if (mSelectionDirty)
        SyncSelectionToView();
}

void ListView::Order() {
    const int total = RowCount();
    if (mAnnounced < total) {
        mSyncing = true;
        mModel->BeginInsertRows(mAnnounced, total - 1);
        mAnnounced = total;
        mModel->EndInsertRows();
        mSyncing = false;
    }
    if (mSorted && mSortedUpTo < total)
        SortRows();
    mSortedUpTo = total;
}

void ListView::Renumber(int from) {
    for (int row = from; row < RowCount(); ++row)
        mRows[static_cast<size_t>(row)]->mRow = row;
}

void ListView::SortRows() {
    const int key = mSortKey;
    const bool descending = mSortOrder != 0;
    static const QString kNoText;
    const auto textOf = [key](const ListItem& item) -> const QString& {
        if (key == 0)
            return item.mText;
        if (key >= 1 && key <= ListItem::kMaxSubItems)
            return item.mSubItems[static_cast<size_t>(key - 1)];
        return kNoText;
    };
    QItemSelectionModel* selection = mListView->selectionModel();
    mSyncing = true;
    // The views' selection is rebuilt from the rows afterwards; dropping it first spares the
    // selection model from carrying every selected index through the move.
    selection->clearSelection();
    mSelectionDirty = true;
    Q_EMIT mModel->layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = mModel->Persistent();
    std::vector<std::pair<ListItem*, int>> kept;
    kept.reserve(static_cast<size_t>(before.size()));
    for (const QModelIndex& index : before)
        kept.emplace_back(index.row() < RowCount() ? RowAt(index.row()) : nullptr, index.column());

    const auto sorted = static_cast<size_t>(mSortedUpTo);
    if (mRows.size() - sorted <= 16) {
        // A few rows added to rows in order (a saved record): each finds its place by a
        // binary search, after the rows it equals. Each move shifts the rows after it, so
        // more rows than a handful go through the full sort.
        const auto inOrder = [&](const std::unique_ptr<ListItem>& a,
                                 const std::unique_ptr<ListItem>& b) {
            const int c = CompareCaseBlind(textOf(*a), textOf(*b));
            return descending ? c > 0 : c < 0;
        };
        for (size_t i = sorted; i < mRows.size(); ++i) {
            const auto added = mRows.begin() + static_cast<std::ptrdiff_t>(i);
            std::rotate(std::upper_bound(mRows.begin(), added, *added, inOrder), added, added + 1);
        }
    } else {
        std::vector<RowSortKey> keys;
        keys.reserve(mRows.size());
        for (const auto& row : mRows)
            keys.emplace_back(row.get(), textOf(*row));
        const auto inOrder = [&](const RowSortKey& a, const RowSortKey& b) {
            const int c = a.Compare(b, textOf);
            return descending ? c > 0 : c < 0;
        };
        const auto middle = keys.begin() + static_cast<std::ptrdiff_t>(sorted);
        std::stable_sort(middle, keys.end(), inOrder);
        if (sorted > 0)
            std::inplace_merge(keys.begin(), middle, keys.end(), inOrder);
        for (auto& row : mRows)
            row.release(); // each is taken up again, in its new place
        for (size_t i = 0; i < keys.size(); ++i)
            mRows[i].reset(keys[i].item);
    }
    Renumber(0);

    QModelIndexList after;
    after.reserve(before.size());
    for (const auto& [item, column] : kept)
        after.append(item ? mModel->index(item->mRow, column) : QModelIndex());
    mModel->ChangePersistent(before, after);
    Q_EMIT mModel->layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    mSyncing = false;
}

void ListView::SyncSelectionToView() {
    mSelectionDirty = false;
    const int lastColumn = mModel->columnCount() - 1;
    QItemSelection wanted;
    int start = -1;
    for (int row = 0; row <= mAnnounced; ++row) {
        const bool selected = row < mAnnounced && RowAt(row)->mSelected;
        if (selected && start < 0)
            start = row;
        if (!selected && start >= 0) {
            wanted.append(
                QItemSelectionRange(mModel->index(start, 0), mModel->index(row - 1, lastColumn)));
            start = -1;
        }
    }
    QItemSelectionModel* selection = mListView->selectionModel();
    mSyncing = true;
    selection->clearSelection();
    if (!wanted.isEmpty())
        selection->select(wanted, QItemSelectionModel::Select);
    const QModelIndex current = mCurrent ? mModel->index(mCurrent->mRow, 0) : QModelIndex();
    if (current != selection->currentIndex())
        selection->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    mSyncing = false;
}

void ListView::OnViewSelectionChanged(const QItemSelection& selected,
                                      const QItemSelection& deselected) {
    if (mSyncing)
        return;
    for (const QItemSelectionRange& range : deselected)
        for (int row = range.top(); row <= range.bottom() && row < RowCount(); ++row) {
            ListItem* item = RowAt(row);
            item->mSelected = false;
            if (mSingleSelected == item)
                mSingleSelected = nullptr;
        }
    for (const QItemSelectionRange& range : selected)
        for (int row = range.top(); row <= range.bottom() && row < RowCount(); ++row) {
            ListItem* item = RowAt(row);
            item->mSelected = true;
            if (!mMultiSelect)
                mSingleSelected = item;
        }
}

void ListView::OnCurrentChanged() {
    if (mSyncing)
        return;
    const QModelIndex current = mListView->selectionModel()->currentIndex();
    mCurrent = current.isValid() && current.row() < RowCount() ? RowAt(current.row()) : nullptr;
}

void ListView::RowSelectionChanged(ListItem* item, bool selected) {
    if (!mMultiSelect) {
        if (selected) {
            if (mSingleSelected && mSingleSelected != item)
                mSingleSelected->mSelected = false;
            mSingleSelected = item;
        } else if (mSingleSelected == item) {
            mSingleSelected = nullptr;
        }
    }
    mSelectionDirty = true;
    ScheduleFlush();
}

void ListView::RowTextChanged(ListItem* item, int column) {
    if (item->mRow < mAnnounced)
        mModel->RowChanged(item->mRow);
    // A row not yet in order finds its place at the next flush anyway.
    if (column == mSortKey && item->mRow < mSortedUpTo)
        SortAgain();
}

void ListView::ForgetKey(const ListItem& item) {
    if (mKeySubItem > 0)
        UnindexKey(item.mSubItems[static_cast<size_t>(mKeySubItem - 1)],
                   const_cast<ListItem*>(&item));
}

void ListView::IndexKey(const QString& key, ListItem* item) {
    ListItem*& first = mByKey[key];
    if (!first)
        first = item;
    else
        mMoreByKey.insert(key, item);
}

void ListView::UnindexKey(const QString& key, ListItem* item) {
    const auto first = mByKey.find(key);
    if (first == mByKey.end())
        return;
    if (*first != item) {
        mMoreByKey.remove(key, item);
        return;
    }
    if (const auto more = mMoreByKey.find(key); more != mMoreByKey.end()) {
        *first = *more;
        mMoreByKey.erase(more);
    } else {
        mByKey.erase(first);
    }
}

void ListView::SetKeySubItem(int index) {
    if (index < 0 || index > ListItem::kMaxSubItems)
        throw VbError(VbError::IndexOutOfBounds);
    mKeySubItem = index;
    mByKey.clear();
    mMoreByKey.clear();
    if (index == 0)
        return;
    for (const auto& row : mRows)
        IndexKey(row->mSubItems[static_cast<size_t>(index - 1)], row.get());
}

ListItem* ListView::FindByKey(const QString& key) const {
    return mByKey.value(key, nullptr);
}

void ListView::SelectOnly(ListItem* item) {
    for (const auto& row : mRows)
        if (row.get() != item && row->mSelected)
            row->SetSelected(false);
    if (item)
        item->SetSelected(true);
}

void ListView::ApplyColumnWidth(const ColumnHeader& header) {
    mSyncing = true;
    mTreeView->header()->resizeSection(header.mIndex - 1,
                                       qRound(header.mWidth / double(kTwipsPerPixel)));
    mSyncing = false;
}

void ListView::ViewMousePressed() {
    Flush();
}

void ListView::ViewMouseReleased(QMouseEvent* event, const QModelIndex& index) {
    if (index.isValid() && index.row() < RowCount())
        Q_EMIT ItemClick(RowAt(index.row()));
    Q_EMIT MouseUp(OldMouseButton(event->button()), event->globalPosition().toPoint());
}

bool ListView::ViewKeyPressed(QKeyEvent* event) {
    Flush();
    int keyAscii = 0;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        keyAscii = vb::vbKeyReturn;
        break;
    case Qt::Key_Escape:
        keyAscii = vb::vbKeyEscape;
        break;
    case Qt::Key_Backspace:
        keyAscii = vb::vbKeyBack;
        break;
    default:
        if (!(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) &&
            !event->text().isEmpty() && event->text().at(0).unicode() >= 32)
            keyAscii = event->text().at(0).unicode();
        break;
    }
    if (keyAscii == 0)
        return false;
    Q_EMIT KeyPress(keyAscii);
    if (keyAscii == 0)
        return true; // swallowed by the handler
    if (keyAscii > vb::vbKeySpace) {
        LetterSearch(QChar(keyAscii));
        return true;
    }
    return false;
}

void ListView::LetterSearch(QChar letter) {
    Order();
    const int count = RowCount();
    if (count == 0)
        return;
    const int start = mCurrent ? mCurrent->mRow + 1 : 0;
    for (int step = 0; step < count; ++step) {
        ListItem* item = RowAt((start + step) % count);
        if (!item->mText.startsWith(letter, Qt::CaseInsensitive))
            continue;
        for (const auto& row : mRows)
            row->mSelected = false;
        mSingleSelected = nullptr;
        item->SetSelected(true);
        mCurrent = item;
        SyncSelectionToView();
        item->EnsureVisible();
        return;
    }
}
