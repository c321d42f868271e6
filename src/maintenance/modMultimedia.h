#pragma once

#include <QString>
#include <functional>

// The theme song, compiled into the resources as a WAV.
inline const QString kThemeSong = QStringLiteral("qrc:/sound/theme.wav");

// True when the machine has an audio output.
bool CanPlaySound();
// Starts the sound and returns at once; a sound already playing stops first.
void PlayResourceSound(const QString& resource);
// Plays the theme song when the machine can play sound, "Vantry.res" is in the program's
// folder and the option "chkSound" is on. Never shows a message.
void PlayThemeSong();

namespace Multimedia {
// Where sounds go instead of the audio output (tests record them); nothing set means the
// machine's audio output.
void SetSoundOutput(std::function<void(const QString& resource)> output);
} // namespace Multimedia
