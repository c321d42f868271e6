#pragma once

#include <QString>
#include <QWidget>
#include <memory>
#include <vector>

class QTabBar;
class QGridLayout;
class QFrame;
class TabStrip;

// One tab: its key and caption (the program finds tabs by them), a tag and a tool tip.
class Tab {
public:
    int Index() const { return mIndex; } // 1-based
    QString Key() const { return mKey; }
    QString Caption() const { return mCaption; }
    QString Tag() const { return mTag; }
    QString ToolTipText() const { return mToolTip; }
    bool Selected() const;
    // Selecting a tab from code raises the strip's Click like a user's click.
    void SetSelected(bool selected);

private:
    friend class TabCollection;
    TabStrip* mOwner = nullptr;
    int mIndex = 0;
    QString mKey;
    QString mCaption;
    QString mTag;
    QString mToolTip;
};

class TabCollection {
public:
    Tab* Add(const QString& key, const QString& caption, const QString& tag,
             const QString& toolTip);
    int Count() const { return static_cast<int>(mTabs.size()); }
    // By 1-based index or by key; error 35600 when there is no such tab.
    Tab* Item(int index) const;
    Tab* Item(const QString& key) const;

private:
    friend class TabStrip;
    explicit TabCollection(TabStrip* owner) : mOwner(owner) {}
    TabStrip* mOwner;
    std::vector<std::unique_ptr<Tab>> mTabs;
};

// A row of tabs above a framed page area. The form puts its pages into the page area with
// AddPage and shows the page of the selected tab itself; Click comes for every change of the
// selected tab, by the user or by code.
class TabStrip : public QWidget {
    Q_OBJECT
public:
    explicit TabStrip(QWidget* parent = nullptr);
    ~TabStrip() override;

    TabCollection& Tabs() { return mTabs; }
    Tab* SelectedItem() const;
    void AddPage(QWidget* page);
    QTabBar* Bar() const { return mBar; }

Q_SIGNALS:
    void Click();

private:
    friend class Tab;
    friend class TabCollection;
    TabCollection mTabs{this};
    QTabBar* mBar;
    QFrame* mPageArea;
    QGridLayout* mPages;
};
