// SPDX-License-Identifier: MIT
#ifndef AUXCTL_SETTINGS_H
#define AUXCTL_SETTINGS_H

#include "command.h"
#include "config/settingsfile.h"

namespace auxctl
{

using aux::Setting;

/// The applications that have a settings file, as ORG/NAME.
QStringList applications();

/// A key as the catalogue has it; the leading "/" may be missing.
QString keyPath(const QString &key);

/// The settings of these keys, all without any; a misuse with the nearest key where one is unknown.
QVector<Setting> settingsOf(const QStringList &keys);

QStringList areaNames();

/// The area of this name; a misuse with the nearest name where it is none.
aux::SettingsArea areaFromName(const QString &name);

/// The application whose settings are meant.
extern const ValueOption<QString> applicationOption;

/// Lets one that has no settings file yet be meant.
extern const Switch createOption;

/// Makes the settings file that of the process that the call means: the one of --app, else the
/// only one there is, else that of aux/terminal. A misuse where there are several; fails where
/// there is none for --app, and where the file says nothing.
void open(aux::Configuration &configuration, const Call &call);

/// A setting with its value, in JSON "secret" in place of a value that is kept secret.
struct ShownSetting {
    Record record;
    QString text; // the value
};
ShownSetting shown(const Setting &setting, const QVariant &value, bool reveal);

} // namespace auxctl

#endif
