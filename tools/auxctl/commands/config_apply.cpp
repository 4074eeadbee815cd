// SPDX-License-Identifier: MIT
#include "changes.h"
#include "config/validation.h"
#include "containerfile.h"
#include "streams.h"

#include <QFile>
#include <QTemporaryFile>

namespace auxctl
{

namespace
{

constexpr Switch dryRunOption{"dry-run", "Show what would change, and change nothing"};

bool isContainer(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        failOn("open", file);
    return file.read(aux::container::brandSize) == aux::container::brand;
}

/// What a container with a configuration holds, in an unnamed file; fails where it is another one,
/// or damaged.
void extract(const QString &path, QTemporaryFile &file)
{
    ContainerFile container(path);
    if (container.header().type != aux::container::Type::CFGF)
        fail(QStringLiteral("%1 holds no configuration, but %2")
                 .arg(path, aux::container::rowOf(container.header().type)->content));
    if (!container.hasDigest())
        fail(QStringLiteral("%1 is damaged").arg(path));
    const QByteArray payload = container.payload(1 << 20); // as much as a candidate may have
    if (!file.open() || file.write(payload) != payload.size() || !file.flush())
        failOn("write", file);
}

Result apply(const Call &call)
{
    const Input input(call.argument(0));
    QString path = input.path();
    QTemporaryFile payload;
    if (isContainer(path)) {
        extract(path, payload);
        path = QStringLiteral("/proc/self/fd/%1").arg(payload.handle());
    }
    aux::Configuration configuration;
    open(configuration, call);
    aux::Candidate candidate;
    check(aux::readFaultless(path, candidate));
    Result result = differences(candidate, configuration);
    if (!call.has(dryRunOption))
        check(configuration.applyConfigFile(path));
    return result;
}

const Registration row{{"config apply",
                        "FILE",
                        "changes",
                        differencesShape,
                        "Take a configuration file, or a container with one, into use",
                        {&applicationOption, &createOption, &dryRunOption},
                        apply}};

} // namespace

} // namespace auxctl
