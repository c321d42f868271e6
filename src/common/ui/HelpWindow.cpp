#include "common/ui/HelpWindow.h"

#include "common/core/modUtilities.h"

#include <QFile>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QSplitter>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {
const QString kContentsPage = QStringLiteral("qrc:/help/contents.html");

QUrl UrlFor(int context) {
    return QUrl(context == 0 ? kContentsPage : QStringLiteral("qrc:/help/%1.html").arg(context));
}

QString ResourceFor(int context) {
    return UrlFor(context).toString().mid(3); // ":/help/..."
}

// 0 for the contents page, -1 for anything that isn't a topic of ours.
int ContextOfUrl(const QUrl& url) {
    if (url.scheme() != QStringLiteral("qrc") || !url.path().startsWith(QStringLiteral("/help/")))
        return -1;
    const QString name = url.fileName().section(QLatin1Char('.'), 0, 0);
    if (name == QStringLiteral("contents"))
        return 0;
    bool ok = false;
    const int context = name.toInt(&ok);
    return ok ? context : -1;
}

QString ReadResource(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QToolButton* MakeButton(const QString& name, const QString& text, const QString& icon) {
    auto* button = new QToolButton;
    button->setObjectName(name);
    button->setText(text);
    button->setIcon(QIcon(icon));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    return button;
}
} // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), mSearch(new QLineEdit), mList(new QListWidget),
      mBrowser(new QTextBrowser),
      mBack(MakeButton(QStringLiteral("cmdBack"), QStringLiteral("&Back"),
                       QStringLiteral(":/icons/back.svg"))),
      mForward(MakeButton(QStringLiteral("cmdForward"), QStringLiteral("&Forward"),
                          QStringLiteral(":/icons/forward.svg"))) {
    setObjectName(QStringLiteral("HelpWindow"));
    setWindowTitle(QStringLiteral("Vantry! Vantry! Help"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/vantry.svg")));

    mSearch->setObjectName(QStringLiteral("txtSearch"));
    mSearch->setPlaceholderText(QStringLiteral("Type a word to find"));
    mSearch->setClearButtonEnabled(true);
    mList->setObjectName(QStringLiteral("lstTopics"));
    mList->setAccessibleName(QStringLiteral("Topics"));
    mBrowser->setObjectName(QStringLiteral("txtTopic"));
    mBrowser->setOpenLinks(false);
    // The pages' own colours are made for a white page, which they keep under a dark theme.
    QPalette page = mBrowser->palette();
    page.setColor(QPalette::Base, Qt::white);
    page.setColor(QPalette::Text, Qt::black);
    mBrowser->setPalette(page);
    mBrowser->document()->setDefaultStyleSheet(QStringLiteral(
        "h1 { color: #1F3A5F; font-size: large; } h2 { color: #2F6FB3; font-size: medium; }"
        " a { color: #2F6FB3; } td { vertical-align: top; }"));
    mBack->setToolTip(QStringLiteral("Back to the previous topic"));
    mForward->setToolTip(QStringLiteral("Forward to the next topic"));
    auto* contents = MakeButton(QStringLiteral("cmdContents"), QStringLiteral("&Contents"),
                                QStringLiteral(":/icons/help.svg"));
    contents->setToolTip(QStringLiteral("Show the contents page"));

    auto* searchLabel = new QLabel(QStringLiteral("&Search for:"));
    searchLabel->setBuddy(mSearch);
    auto* topicsLabel = new QLabel(QStringLiteral("&Topics:"));
    topicsLabel->setBuddy(mList);

    auto* left = new QWidget;
    auto* leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(searchLabel);
    leftLayout->addWidget(mSearch);
    leftLayout->addWidget(topicsLabel);
    leftLayout->addWidget(mList, 1);

    auto* right = new QWidget;
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(mBack);
    buttons->addWidget(mForward);
    buttons->addWidget(contents);
    buttons->addStretch(1);
    rightLayout->addLayout(buttons);
    rightLayout->addWidget(mBrowser, 1);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(left);
    splitter->addWidget(right);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({280, 560});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    resize(860, 580);

    connect(mSearch, &QLineEdit::textChanged, this, &HelpWindow::Search);
    connect(mSearch, &QLineEdit::returnPressed, this, &HelpWindow::OpenFirstListed);
    connect(mList, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { Open(item->data(Qt::UserRole).toInt()); });
    connect(mList, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { Open(item->data(Qt::UserRole).toInt()); });
    connect(mBrowser, &QTextBrowser::anchorClicked, this, &HelpWindow::OnAnchorClicked);
    connect(mBrowser, &QTextBrowser::sourceChanged, this, &HelpWindow::OnSourceChanged);
    connect(mBrowser, &QTextBrowser::backwardAvailable, mBack, &QWidget::setEnabled);
    connect(mBrowser, &QTextBrowser::forwardAvailable, mForward, &QWidget::setEnabled);
    connect(mBack, &QToolButton::clicked, mBrowser, &QTextBrowser::backward);
    connect(mForward, &QToolButton::clicked, mBrowser, &QTextBrowser::forward);
    connect(contents, &QToolButton::clicked, this, [this] { Open(0); });
    mBack->setEnabled(false);
    mForward->setEnabled(false);

    LoadTopics();
    Search(QString());
    Open(0);
}

void HelpWindow::LoadTopics() {
    // The contents page decides the order: every topic it links to, in its order.
    QList<int> order{0};
    static const QRegularExpression link(QStringLiteral("href=\"(\\d+)\\.html\""));
    for (const auto& match : link.globalMatch(ReadResource(ResourceFor(0)))) {
        const int context = match.captured(1).toInt();
        if (!order.contains(context))
            order.append(context);
    }
    static const QRegularExpression title(QStringLiteral("<title>(.*)</title>"));
    for (int context : order) {
        const QString html = ReadResource(ResourceFor(context));
        if (html.isEmpty())
            continue;
        QTextDocument document;
        document.setHtml(html);
        const QString caption = title.match(html).captured(1);
        mTopics.append(
            {context, caption, (caption + QLatin1Char('\n') + document.toPlainText()).toLower()});
    }
}

void HelpWindow::Present() {
    show();
    raise();
    activateWindow();
}

void HelpWindow::ShowContents() {
    Open(0);
    Present();
}

void HelpWindow::ShowSearch() {
    Present();
    mSearch->setFocus();
    mSearch->selectAll();
}

bool HelpWindow::ShowTopic(int context) {
    const bool known = QFile::exists(ResourceFor(context));
    Open(known ? context : 0);
    Present();
    return known;
}

int HelpWindow::CurrentTopic() const {
    return ContextOfUrl(mBrowser->source());
}

QString HelpWindow::CurrentTitle() const {
    return mBrowser->documentTitle();
}

QStringList HelpWindow::ListedTitles() const {
    QStringList titles;
    for (int row = 0; row < mList->count(); ++row)
        titles.append(mList->item(row)->text());
    return titles;
}

void HelpWindow::Search(const QString& text) {
    const QStringList words =
        text.toLower().split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    mList->clear();
    // Topics whose title holds every word come first, so Enter opens the likeliest one; each
    // group keeps the contents page's order.
    QList<const Topic*> byTitle;
    QList<const Topic*> byText;
    for (const Topic& topic : std::as_const(mTopics)) {
        const auto holdsAll = [&words](const QString& text) {
            return std::all_of(words.cbegin(), words.cend(),
                               [&text](const QString& word) { return text.contains(word); });
        };
        if (!holdsAll(topic.searchText))
            continue;
        (!words.isEmpty() && holdsAll(topic.title.toLower()) ? byTitle : byText).append(&topic);
    }
    for (const Topic* topic : byTitle + byText) {
        auto* item = new QListWidgetItem(topic->title, mList);
        item->setData(Qt::UserRole, topic->context);
    }
    OnSourceChanged(mBrowser->source());
}

void HelpWindow::Open(int context) {
    if (CurrentTopic() != context)
        mBrowser->setSource(UrlFor(context));
}

void HelpWindow::OpenFirstListed() {
    if (mList->count() > 0)
        Open(mList->item(0)->data(Qt::UserRole).toInt());
}

void HelpWindow::OnAnchorClicked(const QUrl& url) {
    const QUrl target = mBrowser->source().resolved(url);
    if (ContextOfUrl(target) >= 0)
        mBrowser->setSource(target);
    else
        OpenDocument(target.toString());
}

void HelpWindow::OnSourceChanged(const QUrl& url) {
    const int context = ContextOfUrl(url);
    for (int row = 0; row < mList->count(); ++row) {
        if (mList->item(row)->data(Qt::UserRole).toInt() == context) {
            mList->setCurrentRow(row);
            return;
        }
    }
    mList->setCurrentRow(-1);
}
