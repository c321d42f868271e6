#pragma once

#include "common/core/Currency.h"

#include <QString>
#include <optional>

// The one table of every setting the program keeps: its section and key in the settings
// store (application "Vantry! Vantry!"), what kind of value it holds, and its default. Every
// reader and writer goes through it; the INI file and its keys are those of the old program.
enum class SettingType {
    Flag,        // "0" or "1"
    Money,       // currency text, "$0.00" once the Options dialog has written it
    Twips,       // a window position or size in twips, the text of a number
    ListView,    // a list's view, 0 to 3
    ToolbarSize, // "Large" or "Small"
    Count,       // a whole number from 1 to 999
    Days,        // a whole number of days, 0 to kMaxDays
};

struct SettingSpec {
    const char* section;
    const char* key;
    SettingType type;
    const char* defaultValue; // nullptr: none (the reader works one out)
};

namespace Setting {
inline constexpr SettingSpec Sound{"Options", "chkSound", SettingType::Flag, "1"};
inline constexpr SettingSpec Tips{"Options", "chkTips", SettingType::Flag, "1"};
inline constexpr SettingSpec Alarm{"Options", "chkAlarm", SettingType::Flag, "1"};
inline constexpr SettingSpec ErrorLogging{"Options", "chkErrorLogging", SettingType::Flag, "1"};
inline constexpr SettingSpec Postage{"Options", "Postage", SettingType::Money, ".32"};
inline constexpr SettingSpec BackupsKept{"Options", "BackupsKept", SettingType::Count, "10"};
// The Switchboard's panel of unsent claims near their postmark deadline, and how near.
inline constexpr SettingSpec Deadlines{"Options", "chkDeadlines", SettingType::Flag, "1"};
inline constexpr SettingSpec DeadlineDays{"Options", "DeadlineDays", SettingType::Days, "7"};

inline constexpr SettingSpec MainLeft{"Settings", "MainLeft", SettingType::Twips, nullptr};
inline constexpr SettingSpec MainTop{"Settings", "MainTop", SettingType::Twips, nullptr};
inline constexpr SettingSpec MainWidth{"Settings", "MainWidth", SettingType::Twips, nullptr};
inline constexpr SettingSpec MainHeight{"Settings", "MainHeight", SettingType::Twips, nullptr};
inline constexpr SettingSpec MdiToolbar{"Settings", "MDI Toolbar", SettingType::ToolbarSize,
                                        "Large"};
inline constexpr SettingSpec MdiToolbarText{"Settings", "MDI Toolbar Text", SettingType::Flag, "1"};
inline constexpr SettingSpec SwitchboardLeft{"Settings", "SwitchboardLeft", SettingType::Twips,
                                             nullptr};
inline constexpr SettingSpec SwitchboardTop{"Settings", "SwitchboardTop", SettingType::Twips,
                                            nullptr};
inline constexpr SettingSpec SwitchboardWidth{"Settings", "SwitchboardWidth", SettingType::Twips,
                                              "6500"};
inline constexpr SettingSpec SwitchboardHeight{"Settings", "SwitchboardHeight", SettingType::Twips,
                                               "6500"};
inline constexpr SettingSpec ViewNew{"Settings", "New", SettingType::ListView, "0"};
inline constexpr SettingSpec ViewAll{"Settings", "All", SettingType::ListView, "0"};
inline constexpr SettingSpec ViewFollowup{"Settings", "Followup", SettingType::ListView, "0"};
inline constexpr SettingSpec ViewOverdue{"Settings", "Overdue", SettingType::ListView, "0"};
inline constexpr SettingSpec ViewPaid{"Settings", "Paid", SettingType::ListView, "0"};
inline constexpr SettingSpec ViewPending{"Settings", "Pending", SettingType::ListView, "0"};
inline constexpr SettingSpec ViewRejected{"Settings", "Rejected", SettingType::ListView, "0"};
inline constexpr SettingSpec ViewUnsent{"Settings", "Unsent", SettingType::ListView, "0"};
inline constexpr SettingSpec RebateLeft{"Settings", "RebateLeft", SettingType::Twips, nullptr};
inline constexpr SettingSpec RebateTop{"Settings", "RebateTop", SettingType::Twips, nullptr};
inline constexpr SettingSpec FindLeft{"Settings", "FindLeft", SettingType::Twips, nullptr};
inline constexpr SettingSpec FindTop{"Settings", "FindTop", SettingType::Twips, nullptr};
} // namespace Setting

// The stored text, or the default ("" when there is none) when the key is missing.
QString ReadSetting(const SettingSpec& setting);
void WriteSetting(const SettingSpec& setting, const QString& value);

// Typed readers. A stored value that can't be used (not a Boolean, not money, not a finite
// number of a sensible size, a view outside 0 to 3) reads as the default.
bool ReadFlag(const SettingSpec& setting);
Currency ReadMoney(const SettingSpec& setting);
// nullopt when neither the stored value nor the default is a usable number.
std::optional<double> ReadTwips(const SettingSpec& setting);
inline constexpr int kMaxDays = 365;
// A ListView, Count or Days setting (blanks around the number allowed), within its type's range.
int ReadWhole(const SettingSpec& setting);
