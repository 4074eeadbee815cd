// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_RULES_H
#define AUX_CONFIG_RULES_H

#include "aux/error.h"
#include "config/catalogue.h"

#include <functional>

class QJsonValue;

// What the rules of the catalogue mean for values. Values are converted as QVariant does: the text
// "9000" is a number, "true" a bool.

namespace aux
{

/// What a setting may hold, in words, as in "true or false" or "a number from 0 to 2147483647".
QString expectation(const Setting &setting);

/// Returns a value converted to the setting's type, the way QVariant does it.
QVariant ofItsType(const QVariant &value, const Setting &setting);

/// Returns whether a value in a file is of the setting's type, without any conversion.
bool hasType(const Setting &setting, const QJsonValue &value);

/// The failure of a value that is not of the setting's type.
Error wrongType(const Setting &setting);

/// Fails with 10002 where the value breaks the setting's rule by itself.
Error checkValue(const Setting &setting, const QVariant &value);

/// Returns whether the setting's rule is about it and others together.
bool isTogether(const Setting &setting);

/// Fails with 10002 where the values of those settings break their rule.
Error checkTogether(const std::function<QVariant(const Setting &)> &valueOf);

} // namespace aux

#endif
