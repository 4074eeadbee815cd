// SPDX-License-Identifier: MIT
#include "changes.h"
#include "config/rules.h"

#include <QFile>
#include <QJsonArray>

namespace auxctl
{

void commit(const aux::SettingsChanges &changes, const aux::Configuration &configuration)
{
    const aux::Reason reason = aux::commitChanges(changes);
    if (!reason.isNone())
        fail(QStringLiteral("cannot write %1")
                 .arg(reason.cause().isEmpty() ? configuration.getFileName() + ": " + reason.text()
                                               : reason.cause()));
}

aux::Candidate candidateOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        failOn("open", file);
    aux::Candidate candidate = aux::readCandidate(path);
    if (!candidate.fault.isNull())
        fail(QStringLiteral("%1 is not readable as JSON: %2").arg(path, candidate.fault));
    return candidate;
}

Result differences(const aux::Candidate &candidate)
{
    const aux::CurrentSettings current;
    QJsonArray json;
    QVector<QStringList> lines{{"KEY", "OLD", "NEW"}};
    for (const Setting &setting : aux::settingsCatalogue()) {
        if (!candidate.contains(setting))
            continue;
        const QVariant before = ofItsType(current.value(setting), setting);
        const QVariant after = ofItsType(candidate.value(setting), setting);
        if (before == after)
            continue;
        const ShownSetting from = shown(setting, before, false);
        const ShownSetting to = shown(setting, after, false);
        Record fields{{"key", setting.keyPath()}};
        if (setting.isSecret)
            fields += {"secret", true};
        else
            fields += Record{{"old", QJsonValue::fromVariant(before)},
                             {"new", QJsonValue::fromVariant(after)}};
        json += toObject(fields);
        lines += {setting.keyPath(), from.text.isEmpty() ? "-" : from.text,
                  to.text.isEmpty() ? "-" : to.text};
    }
    return {json, json.isEmpty() ? QString() : alignedText(lines)};
}

} // namespace auxctl
