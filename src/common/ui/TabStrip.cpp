#include "common/ui/TabStrip.h"

#include "common/core/VbError.h"

#include <QFrame>
#include <QGridLayout>
#include <QTabBar>
#include <QVBoxLayout>

bool Tab::Selected() const {
    return mOwner->mBar->currentIndex() == mIndex - 1;
}

void Tab::SetSelected(bool selected) {
    if (selected)
        mOwner->mBar->setCurrentIndex(mIndex - 1);
}

Tab* TabCollection::Add(const QString& key, const QString& caption, const QString& tag,
                        const QString& toolTip) {
    auto tab = std::make_unique<Tab>();
    tab->mOwner = mOwner;
    tab->mIndex = Count() + 1;
    tab->mKey = key;
    tab->mCaption = caption;
    tab->mTag = tag;
    tab->mToolTip = toolTip;
    Tab* added = tab.get();
    mTabs.push_back(std::move(tab));
    const QSignalBlocker quiet(mOwner->mBar); // adding the first tab is no click
    const int at = mOwner->mBar->addTab(caption);
    mOwner->mBar->setTabToolTip(at, toolTip);
    return added;
}

Tab* TabCollection::Item(int index) const {
    if (index < 1 || index > Count())
        throw VbError(VbError::IndexOutOfBounds);
    return mTabs[static_cast<size_t>(index - 1)].get();
}

Tab* TabCollection::Item(const QString& key) const {
    for (const auto& tab : mTabs)
        if (tab->mKey == key)
            return tab.get();
    throw VbError(VbError::IndexOutOfBounds);
}

TabStrip::TabStrip(QWidget* parent) : QWidget(parent) {
    mBar = new QTabBar(this);
    mBar->setObjectName(QStringLiteral("tabs"));
    mBar->setProperty("internalPart", true); // the error log names the tab strip instead
    mBar->setExpanding(false);
    mBar->setUsesScrollButtons(true);
    mBar->setDrawBase(false);
    mPageArea = new QFrame(this);
    mPageArea->setObjectName(QStringLiteral("pages"));
    mPageArea->setProperty("internalPart", true);
    mPageArea->setFrameShape(QFrame::StyledPanel);
    mPages = new QGridLayout(mPageArea);
    mPages->setContentsMargins(6, 6, 6, 6);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(mBar);
    layout->addWidget(mPageArea, 1);
    connect(mBar, &QTabBar::currentChanged, this, [this] { Q_EMIT Click(); });
}

TabStrip::~TabStrip() = default;

Tab* TabStrip::SelectedItem() const {
    const int current = mBar->currentIndex();
    return current < 0 ? nullptr : mTabs.mTabs[static_cast<size_t>(current)].get();
}

void TabStrip::AddPage(QWidget* page) {
    mPages->addWidget(page, 0, 0);
}
