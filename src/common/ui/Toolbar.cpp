#include "common/ui/Toolbar.h"

#include "common/core/VbError.h"
#include "common/ui/ImageList.h"
#include "common/ui/MouseButtons.h"

#include <QAction>
#include <QActionGroup>
#include <QMouseEvent>
#include <QToolButton>

ToolbarButton::ToolbarButton(Toolbar* toolbar, int index, QString key, Style style, QAction* action)
    : mToolbar(toolbar), mIndex(index), mKey(std::move(key)), mStyle(style), mAction(action) {}

void ToolbarButton::SetDescription(const QString& description) {
    mDescription = description;
    if (QToolButton* button = Widget())
        button->setAccessibleName(description);
}

void ToolbarButton::SetToolTipText(const QString& text) {
    mToolTip = text;
    mAction->setToolTip(text);
}

void ToolbarButton::SetImage(const QString& imageKey) {
    mImage = imageKey;
    Refresh();
}

QString ToolbarButton::Caption() const {
    return mAction->text();
}

void ToolbarButton::SetCaption(const QString& caption) {
    mAction->setText(caption);
    Refresh();
}

bool ToolbarButton::Enabled() const {
    return mAction->isEnabled();
}

void ToolbarButton::SetEnabled(bool enabled) {
    mAction->setEnabled(enabled);
}

bool ToolbarButton::Visible() const {
    return mAction->isVisible();
}

void ToolbarButton::SetVisible(bool visible) {
    mAction->setVisible(visible);
}

int ToolbarButton::Value() const {
    return mAction->isChecked() ? 1 : 0;
}

void ToolbarButton::SetValue(int value) {
    if (mAction->isCheckable())
        mAction->setChecked(value != 0);
}

QToolButton* ToolbarButton::Widget() const {
    return qobject_cast<QToolButton*>(mToolbar->widgetForAction(mAction));
}

void ToolbarButton::Refresh() {
    if (mStyle == Separator)
        return;
    QIcon icon;
    if (!mImage.isEmpty()) {
        if (mToolbar->mImageList)
            icon.addPixmap(mToolbar->mImageList->Picture(mImage), QIcon::Normal);
        if (mToolbar->mHotImageList) {
            const QPixmap hot = mToolbar->mHotImageList->Picture(mImage);
            if (!mToolbar->mImageList)
                icon.addPixmap(hot, QIcon::Normal);
            icon.addPixmap(hot, QIcon::Active);
        }
    }
    mAction->setIcon(icon);
    if (QToolButton* button = Widget())
        button->setToolButtonStyle(mAction->text().isEmpty() ? Qt::ToolButtonIconOnly
                                                             : Qt::ToolButtonTextUnderIcon);
}

Toolbar::Toolbar(QWidget* parent) : QToolBar(parent) {
    setMovable(false);
    setFloatable(false);
    // The right button belongs to the form's own pop-up, not the main window's dock menu.
    setContextMenuPolicy(Qt::PreventContextMenu);
}

Toolbar::~Toolbar() = default;

ToolbarButton& Toolbar::AddButton(const QString& key, const QString& description,
                                  const QString& toolTip, const QString& imageKey,
                                  ToolbarButton::Style style) {
    auto* action = new QAction(this);
    action->setCheckable(style == ToolbarButton::Check || style == ToolbarButton::Group);
    addAction(action);
    ToolbarButton& button = Append(key, style, action);
    if (style == ToolbarButton::Group) {
        if (!mOpenGroup)
            mOpenGroup = new QActionGroup(this);
        mOpenGroup->addAction(action);
    } else {
        mOpenGroup = nullptr;
    }
    if (QToolButton* widget = button.Widget())
        widget->setObjectName(key);
    button.SetDescription(description);
    button.SetToolTipText(toolTip);
    button.SetImage(imageKey);
    connect(action, &QAction::triggered, this, [this, key] { Q_EMIT ButtonClick(key); });
    return button;
}

ToolbarButton& Toolbar::AddSeparator() {
    mOpenGroup = nullptr;
    ToolbarButton& separator = Append(QString(), ToolbarButton::Separator, addSeparator());
    separator.mDescription = QStringLiteral("Separator");
    return separator;
}

ToolbarButton& Toolbar::Append(const QString& key, ToolbarButton::Style style, QAction* action) {
    const int index = Count() + 1;
    mButtons.push_back(
        std::unique_ptr<ToolbarButton>(new ToolbarButton(this, index, key, style, action)));
    return *mButtons.back();
}

ToolbarButton& Toolbar::Buttons(int index) {
    if (index < 1 || index > Count())
        throw VbError(VbError::IndexOutOfBounds);
    return *mButtons[static_cast<size_t>(index - 1)];
}

ToolbarButton& Toolbar::Buttons(const QString& key) {
    if (ToolbarButton* button = Find(key))
        return *button;
    throw VbError(VbError::ElementNotFound);
}

bool Toolbar::HasButton(const QString& key) const {
    return Find(key) != nullptr;
}

ToolbarButton* Toolbar::Find(const QString& key) const {
    if (key.isEmpty()) // separators have no key
        return nullptr;
    for (const auto& button : mButtons) {
        if (button->Key() == key)
            return button.get();
    }
    return nullptr;
}

void Toolbar::SetImageList(const ImageList* list) {
    mImageList = list;
    if (list)
        setIconSize(QSize(list->Size(), list->Size()));
    RefreshAll();
}

void Toolbar::SetHotImageList(const ImageList* list) {
    mHotImageList = list;
    if (list && !mImageList)
        setIconSize(QSize(list->Size(), list->Size()));
    RefreshAll();
}

void Toolbar::RefreshAll() {
    for (const auto& button : mButtons)
        button->Refresh();
}

void Toolbar::mouseReleaseEvent(QMouseEvent* event) {
    QToolBar::mouseReleaseEvent(event);
    Q_EMIT MouseUp(OldMouseButton(event->button()), event->globalPosition().toPoint());
    event->accept();
}
