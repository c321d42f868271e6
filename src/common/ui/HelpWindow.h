#pragma once

#include <QList>
#include <QString>
#include <QWidget>

class QLineEdit;
class QListWidget;
class QTextBrowser;
class QToolButton;
class QUrl;

// The help viewer: the list of topics (in the order of the contents page) with a search
// field above it, and the topic on the right with Back, Forward and Contents.
class HelpWindow : public QWidget {
    Q_OBJECT
public:
    explicit HelpWindow(QWidget* parent = nullptr);

    void ShowContents();
    void ShowSearch();
    // False when there is no topic of that number (the contents page is shown instead).
    bool ShowTopic(int context);

    // The topic on show: its context number, 0 for the contents page.
    int CurrentTopic() const;
    QString CurrentTitle() const;
    // Titles of the topics the list shows now (all, or those matching the search).
    QStringList ListedTitles() const;

    // Limits the list to topics whose title or text holds every word of the text.
    void Search(const QString& text);

private:
    struct Topic {
        int context; // 0 for the contents page
        QString title;
        QString text; // lower-case plain text, for the search
    };

    void LoadTopics();
    void Open(int context);
    void OnAnchorClicked(const QUrl& url);
    void OnSourceChanged(const QUrl& url);
    void OpenFirstListed();

    QList<Topic> mTopics;
    QLineEdit* mSearch;
    QListWidget* mList;
    QTextBrowser* mBrowser;
    QToolButton* mBack;
    QToolButton* mForward;
};
