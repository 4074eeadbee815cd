// SPDX-License-Identifier: MIT
#include "config/validation.h"
#include "config/rules.h"
#include "error/failure.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace aux
{

namespace
{

Error noSuchFile()
{
    return failure(ErrorId::General, QStringLiteral("Config file does not exist"));
}

Error missing(const Setting &setting)
{
    return failure(ErrorId::InvalidContent,
                   QStringLiteral("Invalid config file. Missing ") + setting.keyPath());
}

auto valueIn(const Candidate &candidate)
{
    return [&](const Setting &setting) { return candidate.value(setting); };
}

/// The first of the failures that a check finds in the order of the catalogue.
template <typename Check>
Error firstOf(const Check &check)
{
    Error error;
    for (const Setting &setting : settingsCatalogue()) {
        error = check(setting);
        if (error.hasError())
            break;
    }
    return error;
}

Error verdict(const Candidate &candidate)
{
    Error error = firstOf([&](const Setting &setting) {
        return candidate.contains(setting) ? Error() : missing(setting);
    });
    if (!error.hasError())
        error = firstOf(
            [&](const Setting &setting) { return checkValue(setting, candidate.value(setting)); });
    return error.hasError() ? error : checkTogether(valueIn(candidate));
}

Error checkSetting(const Setting &setting, const Candidate &candidate)
{
    if (!candidate.contains(setting))
        return missing(setting);
    if (!hasType(setting, candidate.values[setting.code]))
        return wrongType(setting);
    return checkValue(setting, candidate.value(setting));
}

} // namespace

QVector<Fault> findFaults(const Candidate &candidate)
{
    if (!candidate.fault.isNull())
        return {{nullptr, failure(ErrorId::InvalidContent,
                                  QStringLiteral("Not readable as JSON: ") + candidate.fault)}};
    QVector<Fault> faults;
    Error together = checkTogether(valueIn(candidate));
    for (const Setting &setting : settingsCatalogue()) {
        Error error = checkSetting(setting, candidate);
        if (!error.hasError() && isTogether(setting)) // said once, at the first of them
            error = std::exchange(together, Error());
        if (error.hasError())
            faults.append({&setting, std::move(error)});
    }
    return faults;
}

Error chained(const QVector<Fault> &faults)
{
    Error chain;
    // The newest entry is the one that is read first.
    std::for_each(faults.rbegin(), faults.rend(),
                  [&](const Fault &fault) { chain << fault.error; });
    return chain;
}

Error readFaultless(const QString &fileName, Candidate &candidate)
{
    if (!QFile::exists(fileName))
        return noSuchFile();
    candidate = readCandidate(fileName);
    return chained(findFaults(candidate));
}

Error Configuration::validateConfigFile(const QString &fileName)
{
    return QFile::exists(fileName) ? verdict(readCandidate(fileName)) : noSuchFile();
}

Error Configuration::findConfigFileFaults(const QString &fileName)
{
    Candidate ignored;
    return readFaultless(fileName, ignored);
}

} // namespace aux
