// SPDX-License-Identifier: MIT
#include "commands.h"
#include "settings.h"

namespace auxctl
{

Outcome configGet(const Invocation &invocation)
{
    return withSettings(invocation.arguments, [&](const QVector<Setting> &settings) {
        return withConfiguration(invocation, [&](aux::Configuration &configuration) {
            const QVariant value = configuration.getValue(settings.first().code);
            return Outcome{ExitStatus::Done, {}, QJsonValue::fromVariant(value), value.toString()};
        });
    });
}

} // namespace auxctl
