#pragma once

#include <QStatusBar>
#include <QString>

class QLabel;
class QTimer;

// The main window's status bar: panel 1 shows the date and panel 2 the time, both kept by
// the bar itself from the program's clock; panel 3 takes the remaining width and is the
// program's status line once AttachStatusLine() has run.
class StatusBar : public QStatusBar {
    Q_OBJECT
public:
    explicit StatusBar(QWidget* parent = nullptr);
    ~StatusBar() override;

    static constexpr int PanelCount = 3;
    // Panels 1 to 3; nullptr for any other index.
    QLabel* Panels(int index) const;
    QString PanelText(int index) const;
    void SetPanelText(int index, const QString& text);

    // Makes SetStatusText (Forms.h) write into panel 3 of this bar.
    void AttachStatusLine();

    // Reads the clock again (the bar does so by itself every second).
    void UpdateClock();

private:
    QLabel* mPanels[PanelCount];
    QTimer* mClock;
};
