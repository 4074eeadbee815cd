// SPDX-License-Identifier: MIT
#ifndef AUXCTL_SETTINGS_H
#define AUXCTL_SETTINGS_H

#include "command.h"
#include "config/catalogue.h"

#include <functional>

namespace auxctl
{

/// A setting with the text it is called by.
struct Setting {
    aux::SettingsCode code;
    aux::_SetMeta meta;

    [[nodiscard]] QString key() const { return QString::fromUtf8(meta.key); }
    /// Not for everybody's eyes.
    [[nodiscard]] bool isSecret() const;
};

/// A key as the catalogue has it; the leading "/" may be missing.
QString keyPath(const QString &key);

/// All settings in the order of their codes.
QVector<Setting> allSettings();

/// Runs the function with the settings of these keys, of all without any; Usage with the nearest
/// key where one is unknown.
Outcome withSettings(const QStringList &keys,
                     const std::function<Outcome(const QVector<Setting> &)> &function);

/// Runs the function with the settings file of the application that the call means: of --app, else
/// of the only one there is, else of aux/terminal. Usage where there are several.
Outcome withConfiguration(const Invocation &invocation,
                          const std::function<Outcome(aux::Configuration &)> &function);

/// What stands for a value that is kept secret.
QJsonValue shownValue(const Setting &setting, const QVariant &value, bool reveal);

} // namespace auxctl

#endif
