// SPDX-License-Identifier: MIT
#ifndef AUXCTL_SETTINGS_H
#define AUXCTL_SETTINGS_H

#include "command.h"
#include "config/catalogue.h"

namespace auxctl
{

using aux::Setting;

/// A key as the catalogue has it; the leading "/" may be missing.
QString keyPath(const QString &key);

/// The settings of these keys, all without any; a misuse with the nearest key where one is unknown.
QVector<Setting> settingsOf(const QStringList &keys);

/// The application whose settings are meant.
extern const ValueOption<QString> applicationOption;

/// Makes the settings file those of the process that the call means: the one of --app, else the
/// only one there is, else that of aux/terminal. A misuse where there are several; fails where the
/// file says nothing.
void open(aux::Configuration &configuration, const Call &call);

/// What stands for a value that is kept secret.
QJsonValue shownValue(const Setting &setting, const QVariant &value, bool reveal);

} // namespace auxctl

#endif
