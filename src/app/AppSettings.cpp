#include "app/AppSettings.h"

#include "app/cLogErr.h"
#include "common/core/Regional.h"
#include "common/core/Settings.h"
#include "common/core/VbError.h"

#include <cmath>
#include <utility>

namespace {
// Positions beyond this many twips (over 100,000 pixels) are no position on any screen.
constexpr double kTwipsLimit = 1.5e6;

QString DefaultOf(const SettingSpec& setting) {
    return setting.defaultValue ? QString::fromLatin1(setting.defaultValue) : QString();
}

std::optional<double> UsableTwips(const QString& text) {
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value) || std::fabs(value) > kTwipsLimit)
        return std::nullopt;
    return value;
}
} // namespace

QString ReadSetting(const SettingSpec& setting) {
    return GetSetting(kAppTitle, QLatin1String(setting.section), QLatin1String(setting.key),
                      DefaultOf(setting));
}

void WriteSetting(const SettingSpec& setting, const QString& value) {
    // A settings file that can't be written is told once: every window's close writes its
    // position, and the same failure each time says nothing new.
    static bool failureLogged = false;
    if (SaveSetting(kAppTitle, QLatin1String(setting.section), QLatin1String(setting.key), value) ||
        failureLogged)
        return;
    failureLogged = true;
    LogError(VbError(VbError::PathFileAccess,
                     QStringLiteral("The settings file '%1' could not be written; settings "
                                    "changed now will not be kept.")
                         .arg(SettingsStore::FileFor(kAppTitle))),
             QStringLiteral("AppSettings"), QStringLiteral("WriteSetting"));
}

bool ReadFlag(const SettingSpec& setting) {
    try {
        return CBool(ReadSetting(setting));
    } catch (const VbError&) {
        return CBool(DefaultOf(setting));
    }
}

Currency ReadMoney(const SettingSpec& setting) {
    try {
        return CCur(ReadSetting(setting));
    } catch (const VbError&) {
        return CCur(DefaultOf(setting));
    }
}

std::optional<double> ReadTwips(const SettingSpec& setting) {
    if (const auto stored = UsableTwips(ReadSetting(setting)))
        return stored;
    return UsableTwips(DefaultOf(setting));
}

int ReadWhole(const SettingSpec& setting) {
    const auto [low, high] = setting.type == SettingType::ListView ? std::pair(0, 3)
                             : setting.type == SettingType::Days   ? std::pair(0, kMaxDays)
                                                                   : std::pair(1, 999);
    bool ok = false;
    const int value = ReadSetting(setting).toInt(&ok);
    return ok && value >= low && value <= high ? value : DefaultOf(setting).toInt();
}
