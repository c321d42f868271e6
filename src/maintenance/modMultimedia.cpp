#include "maintenance/modMultimedia.h"

#include "app/AppSettings.h"
#include "common/core/modUtilities.h"

#include <QAudioDevice>
#include <QCoreApplication>
#include <QMediaDevices>
#include <QPointer>
#include <QSoundEffect>
#include <QUrl>

namespace {
std::function<void(const QString&)> gSoundOutput;
// The sound plays on after the call has returned, so the player outlives it.
QPointer<QSoundEffect> gPlayer; // owned by the application object
} // namespace

void Multimedia::SetSoundOutput(std::function<void(const QString&)> output) {
    gSoundOutput = std::move(output);
}

bool CanPlaySound() {
    return gSoundOutput || !QMediaDevices::audioOutputs().isEmpty();
}

void PlayResourceSound(const QString& resource) {
    if (gSoundOutput) {
        gSoundOutput(resource);
        return;
    }
    if (!gPlayer)
        gPlayer = new QSoundEffect(QCoreApplication::instance());
    gPlayer->stop();
    gPlayer->setSource(QUrl(resource));
    gPlayer->play();
}

void PlayThemeSong() {
    if (CanPlaySound() && FileExists(AppPath() + QStringLiteral("Vantry.res")) &&
        ReadFlag(Setting::Sound))
        PlayResourceSound(kThemeSong);
}
