// SPDX-License-Identifier: MIT
#ifndef AUXCTL_SETTINGS_H
#define AUXCTL_SETTINGS_H

#include "command.h"
#include "config/catalogue.h"

#include <functional>

namespace auxctl
{

using aux::Setting;

/// A key as the catalogue has it; the leading "/" may be missing.
QString keyPath(const QString &key);

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
