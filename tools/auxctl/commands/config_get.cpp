// SPDX-License-Identifier: MIT
#include "settings.h"

namespace auxctl
{

namespace
{

Result getSetting(const Call &call)
{
    const Setting setting = settingsOf(call.arguments()).first();
    aux::Configuration configuration;
    open(configuration, call);
    const QVariant value = configuration.getValue(setting.code);
    return {QJsonValue::fromVariant(value), printable(value.toString())};
}

const Registration row{{"config get",
                        "KEY",
                        "value",
                        "scalar",
                        "Print the value of a setting",
                        {&applicationOption},
                        getSetting}};

} // namespace

} // namespace auxctl
