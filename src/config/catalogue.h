// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_CATALOGUE_H
#define AUX_CONFIG_CATALOGUE_H

#include "aux/configuration.h"

#include <QVector>

#include <array>

namespace aux
{

/// What a value must be like beside its type.
struct Rule {
    enum class Kind {
        None,
        Length,        ///< empty, or exactly `number` characters
        MinimumLength, ///< empty, or at least `number` characters
        NotValue,      ///< any but `number`
        IdList,        ///< empty, or a list of USB vendor:product ids
        OneOn,         ///< of all settings with this rule at least one is on
    };
    Kind kind = Kind::None;
    int number = 0;
    /// What is said of a value that breaks it; of an IdList the parser says it. After a text that
    /// ends in a blank comes the length or the value.
    const char *fault = "";
};

/// Everything that is known of a setting; of an unknown one nothing.
struct Setting {
    SettingsCode code = SettingsCode(-1);
    const char *key = nullptr;             // from the root, with a leading "/"
    QVariant defaultValue = {};            // its type is the type of the setting
    SettingsArea area = SettingsArea::All; // beside All, to which every setting belongs
    bool flag = false;                     // changed() tells its changes apart
    bool isSecret = false;                 // not for everybody's eyes
    Rule rule = {};

    QString keyPath() const { return QString::fromUtf8(key); }
    /// As in QSettings::SettingsMap, without the leading "/".
    QString storedKey() const { return keyPath().mid(1); }
    bool belongsTo(SettingsArea group) const { return group == SettingsArea::All || group == area; }
};

/// What people call the areas, indexed by SettingsArea.
inline constexpr std::array areaNames{"all", "network", "time", "screensaver", "mode"};

/// All settings in the order of their codes.
const QVector<Setting> &settingsCatalogue();

const Setting &settingOf(SettingsCode code);

/// Returns the setting of exactly this key path, as in "/network/dataport"; else null.
const Setting *settingAt(const QString &keyPath);

} // namespace aux

#endif
