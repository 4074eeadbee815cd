// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_NUMBERED_H
#define AUX_TESTS_NUMBERED_H

#include <aux/configuration.h>

#include <QString>

/// What the steps of a terminal at work are numbered by.
constexpr auto numbered = aux::SettingsCode::DeviceInfotext;

/// Several blocks long, so that a half of it would show.
inline QString settingOf(int number)
{
    return QStringLiteral("%1 ").arg(number).repeated(3000);
}

/// 0 for the default, -1 for what never was a setting.
inline int numberOf(const QString &setting)
{
    const int number = setting.section(' ', 0, 0).toInt();
    return setting.isEmpty() || setting == settingOf(number) ? number : -1;
}

#endif
