#include "maintenance/frmAbout.h"
#include "maintenance/Maintenance.h"

#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"
#include "maintenance/frmTip.h"
#include "maintenance/modMultimedia.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int kTwipsPerPixel = 15;

QLabel* Label(const char* name, const QString& text, QWidget* parent = nullptr) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

QPushButton* Button(const char* name, const QString& caption) {
    auto* button = new QPushButton(caption);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}
} // namespace

frmAbout::frmAbout(QWidget* parent)
    : QDialog(parent), imgAbout(Label("imgAbout", QString())),
      lblVersion(Label("lblVersion", QString())),
      lblCompanyProduct(Label("lblCompanyProduct", QString())),
      lblDescription(Label("lblDescription",
                           QStringLiteral("Keeps track of your mail-in rebates: what you bought, "
                                          "what you sent, what is due and what came back."))),
      lblTCR(Label("lblTCR", QStringLiteral("Subscribe to Thrift Courier, the refund newsletter"))),
      cmdOK(Button("cmdOK", QStringLiteral("OK"))),
      cmdEmailKVX(Button("cmdEmailKVX", QStringLiteral("&E-mail KVX"))),
      cmdKVXWebPage(Button("cmdKVXWebPage", QStringLiteral("KVX &Web Page"))),
      cmdSysInfo(Button("cmdSysInfo", QStringLiteral("&System Info..."))) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Vantry! Vantry!"));
    imgAbout->setPixmap(ImageList::Render(QStringLiteral(":/icons/vantry.svg"), 64));
    imgAbout->setCursor(Qt::PointingHandCursor);
    imgAbout->setToolTip(QStringLiteral("Credits"));
    imgAbout->installEventFilter(this);
    lblTCR->setCursor(Qt::PointingHandCursor);
    lblTCR->setStyleSheet(QStringLiteral("color: #0645ad; text-decoration: underline;"));
    lblTCR->installEventFilter(this);
    QFont title = lblCompanyProduct->font();
    title.setBold(true);
    title.setPointSizeF(title.pointSizeF() * 1.4);
    lblCompanyProduct->setFont(title);
    lblDescription->setWordWrap(true);
    auto* lblCopyright = Label(
        "lblCopyright", QStringLiteral("Copyright \u00a9 KVX Partners. All rights reserved."));
    auto* lblDisclaimer =
        Label("lblDisclaimer",
              QStringLiteral("Warning: This program is protected by copyright law. Copying or "
                             "selling it without the maker's leave is not allowed."));
    lblDisclaimer->setWordWrap(true);
    cmdOK->setDefault(true);

    auto* text = new QVBoxLayout;
    for (QWidget* widget :
         {static_cast<QWidget*>(lblCompanyProduct), static_cast<QWidget*>(lblVersion),
          static_cast<QWidget*>(lblDescription), static_cast<QWidget*>(lblTCR),
          static_cast<QWidget*>(lblCopyright)})
        text->addWidget(widget);
    text->addStretch(1);
    auto* top = new QHBoxLayout;
    top->addWidget(imgAbout, 0, Qt::AlignTop);
    top->addLayout(text, 1);
    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {cmdOK, cmdEmailKVX, cmdKVXWebPage, cmdSysInfo})
        buttons->addWidget(button);
    buttons->addStretch(1);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(lblDisclaimer, 1);
    auto* layout = new QGridLayout(this);
    layout->addLayout(top, 0, 0);
    layout->addLayout(buttons, 0, 1);
    layout->addLayout(bottom, 1, 0, 1, 2);
    setMinimumSize(480, 260);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdEmailKVX, &QPushButton::clicked, this, &frmAbout::cmdEmailKVX_Click);
    connect(cmdKVXWebPage, &QPushButton::clicked, this, &frmAbout::cmdKVXWebPage_Click);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);

    lblVersion->setText(QStringLiteral("Version ") + AppVersion());
    lblCompanyProduct->setText(QStringLiteral("Vantry! Vantry! ") + AppVersion());
    PlayThemeSong();
}

bool frmAbout::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        if (watched == imgAbout) {
            imgAbout_Click();
            return true;
        }
        if (watched == lblTCR) {
            lblTCR_Click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmAbout::cmdEmailKVX_Click() {
    const BusyState busy(QString(), nullptr);
    OpenDocument(QStringLiteral("mailto:") + kSupportMailbox);
}

void frmAbout::cmdKVXWebPage_Click() {
    OpenDocument(kProductWebSite);
}

void frmAbout::lblTCR_Click() {
    OpenDocument(gTCRLink);
}

void frmAbout::cmdSysInfo_Click() {
    StartSysInfo();
}

void frmAbout::imgAbout_Click() {
    frmCredits credits(this);
    Maintenance::RunModal(credits);
}

void StartSysInfo() {
    for (const char* tool :
         {"hardinfo", "gnome-system-monitor", "plasma-systemmonitor", "ksysguard"}) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(tool));
        if (!path.isEmpty() && QProcess::startDetached(path, {}))
            return;
    }
    MsgBox(QStringLiteral("System Information is not installed in the location specified in the "
                          "system registry."),
           vb::vbExclamation, QStringLiteral("Unable to Start System Information"));
}

frmCredits::frmCredits(QWidget* parent)
    : QDialog(parent), picBack(new QWidget(this)), Frame1(new QWidget(picBack)),
      imgMan(new QLabel(this)), Timer1(new QTimer(this)) {
    setObjectName(QStringLiteral("frmCredits"));
    setWindowTitle(QStringLiteral("Vantry! Vantry! Credits"));
    picBack->setObjectName(QStringLiteral("picBack"));
    Frame1->setObjectName(QStringLiteral("Frame1"));
    imgMan->setObjectName(QStringLiteral("imgMan"));
    Timer1->setObjectName(QStringLiteral("Timer1"));
    picBack->setAutoFillBackground(true);
    QPalette night = picBack->palette();
    night.setColor(QPalette::Window, QColor(0x10, 0x18, 0x30));
    night.setColor(QPalette::WindowText, QColor(0xf0, 0xe8, 0xc0));
    picBack->setPalette(night);

    auto* rows = new QVBoxLayout(Frame1);
    rows->setSpacing(10);
    const auto add = [&](const char* name, const QString& text, double scale, bool bold) {
        QLabel* label = Label(name, text, Frame1);
        label->setAlignment(Qt::AlignCenter);
        label->setWordWrap(true);
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * scale);
        font.setBold(bold);
        label->setFont(font);
        rows->addWidget(label);
    };
    add("lblDedication",
        QStringLiteral("For every shopper who ever waited eight weeks for a check"), 1.0, false);
    auto* picture = new QLabel(Frame1);
    picture->setPixmap(ImageList::Render(QStringLiteral(":/icons/vantry.svg"), 64));
    picture->setAlignment(Qt::AlignCenter);
    rows->addWidget(picture);
    add("lblName", QStringLiteral("Vantry! Vantry!"), 1.8, true);
    add("lblRole", QStringLiteral("Design and Programming\nKVX Partners"), 1.1, false);
    add("lblDevTeam",
        QStringLiteral("Development Team\nThe rebate form crew\nThe Switchboard crew\n"
                       "The report writers\nThe tool smiths"),
        1.1, false);
    add("lblThanks",
        QStringLiteral("Special Thanks\nThe readers of Thrift Courier\nEvery beta "
                       "tester who mailed a form twice\nAnd you, for keeping your "
                       "receipts"),
        1.1, false);
    add("lblSong", QStringLiteral("Theme song \"Check's in the Mail\""), 1.0, false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(picBack, 1);
    imgMan->setFixedSize(48, 48);
    imgMan->setPixmap(ManPicture(1, 44));
    setMinimumSize(360, 320);
    resize(420, 360);

    connect(Timer1, &QTimer::timeout, this, &frmCredits::Timer1_Timer);
    PlayThemeSong();
}

void frmCredits::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    Frame1->setFixedWidth(picBack->width());
    Frame1->adjustSize();
    mTop = picBack->height() * kTwipsPerPixel;
    PlaceFrame();
    imgMan->move(width() - imgMan->width() - 8, 8);
    imgMan->raise();
    Timer1->start(25);
}

void frmCredits::PlaceFrame() {
    Frame1->move(0, mTop / kTwipsPerPixel);
}

void frmCredits::Timer1_Timer() {
    if (mTop < -Frame1->height() * kTwipsPerPixel)
        mTop = picBack->height() * kTwipsPerPixel - 1;
    mTop -= 25;
    PlaceFrame();
    if (++mTicks >= 32) {
        mTicks = 0;
        if (!mGoingBack) {
            if (++mPicture >= 4)
                mGoingBack = true;
        } else if (--mPicture <= 1) {
            mGoingBack = false;
        }
        imgMan->setPixmap(ManPicture(mPicture, 44));
    }
}
