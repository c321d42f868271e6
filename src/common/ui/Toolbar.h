#pragma once

#include <QPoint>
#include <QString>
#include <QToolBar>
#include <memory>
#include <vector>

class ImageList;
class QAction;
class QActionGroup;
class QToolButton;
class Toolbar;

// One button of a Toolbar, or one of its separators. Everything a form reads or sets on a
// button: key, description, tool tip, picture key, caption, enabled, visible, and the
// value of a check or group button (1 down, 0 up).
class ToolbarButton {
public:
    enum Style { Default = 0, Check = 1, Group = 2, Separator = 3 };

    int Index() const { return mIndex; } // 1-based, separators count
    const QString& Key() const { return mKey; }
    Style ButtonStyle() const { return mStyle; }

    QString Description() const { return mDescription; }
    void SetDescription(const QString& description);
    QString ToolTipText() const { return mToolTip; }
    void SetToolTipText(const QString& text);
    // The key of the button's picture in the toolbar's image lists; "" shows none.
    QString Image() const { return mImage; }
    void SetImage(const QString& imageKey);
    // Shown under the picture when not empty.
    QString Caption() const;
    void SetCaption(const QString& caption);
    bool Enabled() const;
    void SetEnabled(bool enabled);
    bool Visible() const;
    void SetVisible(bool visible);
    // 1 when a check or group button is down, 0 otherwise. Setting a group button down
    // raises the other buttons of its group.
    int Value() const;
    void SetValue(int value);

    QAction* Action() const { return mAction; }
    // The button on screen (objectName = key); nullptr for a separator.
    QToolButton* Widget() const;

private:
    friend class Toolbar;
    ToolbarButton(Toolbar* toolbar, int index, QString key, Style style, QAction* action);
    void Refresh(); // picture and caption style after a change of lists or caption

    Toolbar* mToolbar;
    int mIndex;
    QString mKey;
    Style mStyle;
    QAction* mAction;
    QString mDescription;
    QString mToolTip;
    QString mImage;
};

// A toolbar whose buttons are addressed by 1-based index (separators count) and by key.
// Pictures come from ImageList (the normal look) and HotImageList (the look under the
// mouse); a click emits ButtonClick with the key, a mouse release that the buttons leave
// to the toolbar (any but the left button) emits MouseUp with the global position.
class Toolbar : public QToolBar {
    Q_OBJECT
public:
    explicit Toolbar(QWidget* parent = nullptr);
    ~Toolbar() override;

    ToolbarButton& AddButton(const QString& key, const QString& description, const QString& toolTip,
                             const QString& imageKey,
                             ToolbarButton::Style style = ToolbarButton::Default);
    ToolbarButton& AddSeparator();

    int Count() const { return static_cast<int>(mButtons.size()); }
    // Raise error 35600 for an index out of range and 35601 for an unknown key.
    ToolbarButton& Buttons(int index);
    ToolbarButton& Buttons(const QString& key);
    bool HasButton(const QString& key) const;

    // The lists are not owned; nullptr detaches. Assigning a list sets the icon size.
    void SetImageList(const ImageList* list);
    void SetHotImageList(const ImageList* list);
    const ImageList* GetImageList() const { return mImageList; }
    const ImageList* GetHotImageList() const { return mHotImageList; }

Q_SIGNALS:
    void ButtonClick(const QString& key);
    // Mouse button as the old values: 1 left, 2 right, 4 middle.
    void MouseUp(int button, const QPoint& globalPos);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    friend class ToolbarButton;
    ToolbarButton& Append(const QString& key, ToolbarButton::Style style, QAction* action);
    void RefreshAll();

    std::vector<std::unique_ptr<ToolbarButton>> mButtons;
    const ImageList* mImageList = nullptr;
    const ImageList* mHotImageList = nullptr;
    QActionGroup* mOpenGroup = nullptr; // the group that the next group button joins
};
