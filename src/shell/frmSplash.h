#pragma once

#include <QWidget>

class QLabel;

// The splash window shown while the program starts: the picture, the version and the
// maker's line. A click on the picture ends the wait of SplashDelay early.
class frmSplash : public QWidget {
    Q_OBJECT
public:
    explicit frmSplash(QWidget* parent = nullptr);
    ~frmSplash() override;

    static frmSplash* Instance();

    // "1" once the picture was clicked; SplashDelay reads it.
    QLabel* lblFlag;
    QLabel* imgSplash;
    QLabel* lblVersion;
    QLabel* lblCopyright;

public Q_SLOTS:
    void imgSplash_Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Form_Load();
};
