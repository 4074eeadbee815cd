// SPDX-License-Identifier: MIT
#include "config/jsonformat.h"
#include "output.h"
#include "settings.h"
#include "streams.h"

#include <QJsonObject>
#include <QSettings>

namespace auxctl
{

namespace
{

constexpr Switch revealOption{"reveal", "Write secrets too"};

QJsonObject complete(bool reveal)
{
    const aux::CurrentSettings current;
    QSettings::SettingsMap values;
    for (const Setting &setting : aux::settingsCatalogue()) {
        if (!setting.isSecret || reveal)
            values[setting.keyPath().mid(1)] = current.value(setting);
    }
    return aux::json::nest(values);
}

Result exportSettings(const Call &call)
{
    aux::Configuration configuration;
    open(configuration, call);
    const bool reveal = call.has(revealOption);
    const QJsonObject settings = complete(reveal);
    const QByteArray text = jsonText(settings);
    QStringList warnings;
    if (!reveal)
        warnings += "secrets are left out, without them it cannot be applied; --reveal writes them";
    if (call.arguments().isEmpty())
        return {QJsonObject{{"configuration", settings}}, QString::fromUtf8(text).trimmed(),
                ExitStatus::Done, warnings};
    Output output(call, call.argument(0), Access::Own);
    output.write(text);
    Result result = record({{"path", output.path()}});
    result.warnings = warnings;
    return output.commit(result);
}

const Registration row{{"config export",
                        "[FILE]",
                        "exported",
                        "{path?: text, configuration?: object}",
                        "Write all settings as a file that config apply takes",
                        {&applicationOption, &revealOption, &forceOption},
                        exportSettings}};

} // namespace

} // namespace auxctl
