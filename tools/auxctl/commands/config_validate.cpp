// SPDX-License-Identifier: MIT
#include "config/rules.h"
#include "config/validation.h"
#include "settings.h"
#include "streams.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace auxctl
{

namespace
{

/// A value of any type as it stands in the file.
QString foundText(const aux::Candidate &candidate, const Setting &setting)
{
    if (!candidate.contains(setting))
        return QStringLiteral("nothing");
    if (setting.isSecret)
        return QStringLiteral("********");
    const QByteArray text =
        QJsonDocument(QJsonArray{candidate.values[setting.code]}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2));
}

Record recordOf(const aux::Fault &fault, const aux::Candidate &candidate)
{
    Record record;
    if (fault.setting != nullptr)
        record += {"key", fault.setting->keyPath()};
    record += {"message", fault.error.getMsg()};
    if (fault.setting != nullptr)
        record += Record{{"expected", aux::expectation(*fault.setting)},
                         {"found", foundText(candidate, *fault.setting)}};
    return record;
}

Result validate(const Call &call)
{
    Input input(call.argument(0));
    QFile file(input.path());
    aux::Error verdict = aux::Configuration::validateConfigFile(input.path());
    if (!file.open(QIODevice::ReadOnly)) { // no contents that could be at fault
        verdict.setExtraData(input.name() + ": " + file.errorString());
        check(std::move(verdict));
        failOn("open", file);
    }
    const aux::Candidate candidate = aux::readCandidate(input.path());
    const QVector<aux::Fault> faults = aux::findFaults(candidate);
    QVector<Record> records;
    for (const aux::Fault &fault : faults)
        records += recordOf(fault, candidate);
    Result result = table(records);
    if (records.isEmpty()) {
        result.text = "valid";
        return result;
    }
    result.errors += verdict.hasError() ? verdict : faults.first().error;
    return answered(false, result);
}

const Registration row{{"config validate",
                        "FILE",
                        "faults",
                        "[{key?: text, message: text, expected?: text, found?: text}]",
                        "Find everything that is wrong with a configuration file",
                        {},
                        validate}};

} // namespace

} // namespace auxctl
