#include "shell/frmSplash.h"

#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "maintenance/Maintenance.h"

#include <QGuiApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QSvgRenderer>

namespace {
frmSplash* gInstance = nullptr;

QLabel* MakeLabel(QWidget* parent, const char* name, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QLatin1String(name));
    return label;
}
} // namespace

frmSplash::frmSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint),
      lblFlag(MakeLabel(this, "lblFlag", QStringLiteral("0"))),
      imgSplash(MakeLabel(this, "imgSplash", QString())),
      lblVersion(MakeLabel(this, "lblVersion", QString())),
      lblCopyright(MakeLabel(this, "lblCopyright",
                             QStringLiteral("Copyright \u00A9 KVX. All rights reserved."))) {
    setObjectName(QStringLiteral("frmSplash"));
    setAttribute(Qt::WA_DeleteOnClose);
    gInstance = this;
    Forms::Register(this);

    QSvgRenderer picture(QStringLiteral(":/icons/splash.svg"));
    const QSize size = picture.isValid() ? picture.defaultSize() : QSize(480, 280);
    setFixedSize(size);
    const qreal ratio = devicePixelRatioF();
    QPixmap image(size * ratio);
    image.fill(QColor(0x2F, 0x6F, 0xB3));
    QPainter painter(&image);
    picture.render(&painter);
    painter.end();
    image.setDevicePixelRatio(ratio);
    imgSplash->setGeometry(0, 0, size.width(), size.height());
    imgSplash->setPixmap(image);
    imgSplash->setCursor(Qt::PointingHandCursor);
    imgSplash->setAccessibleName(QStringLiteral("Vantry! Vantry!"));
    imgSplash->installEventFilter(this);
    lblFlag->hide();

    // Version and maker's line sit on the dark band at the foot of the picture.
    const QString style = QStringLiteral("color: white; background: transparent;");
    lblVersion->setStyleSheet(style + QStringLiteral(" font-weight: bold;"));
    lblCopyright->setStyleSheet(style);
    lblVersion->setGeometry(24, size.height() - 66, size.width() - 48, 22);
    lblCopyright->setGeometry(24, size.height() - 40, size.width() - 48, 20);
    lblVersion->raise();
    lblCopyright->raise();

    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    Form_Load();
}

frmSplash::~frmSplash() {
    if (gInstance == this)
        gInstance = nullptr;
}

frmSplash* frmSplash::Instance() {
    return gInstance;
}

void frmSplash::Form_Load() {
    App::SetHelpFile(AppPath() + QStringLiteral("vantry.hlp"));
    lblVersion->setText(QStringLiteral("Version ") + AppVersion());
    Maintenance::PlayThemeSong();
}

void frmSplash::imgSplash_Click() {
    lblFlag->setText(QStringLiteral("1"));
}

bool frmSplash::eventFilter(QObject* watched, QEvent* event) {
    if (watched == imgSplash && event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
        imgSplash_Click();
    return QWidget::eventFilter(watched, event);
}
