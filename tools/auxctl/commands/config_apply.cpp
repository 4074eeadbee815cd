// SPDX-License-Identifier: MIT
#include "changes.h"
#include "config/validation.h"
#include "containerfile.h"
#include "signatures.h"
#include "streams.h"
#include "trustedkeys.h"

namespace auxctl
{

namespace
{

constexpr Switch dryRunOption{"dry-run", "Show what would change, and change nothing"};

/// What a container with a configuration holds, in an unnamed file; fails where it is another one,
/// or damaged.
void extract(const QString &path, aux::NewFile &file)
{
    ContainerFile container(path);
    if (container.header().type != aux::container::Type::CFGF)
        fail(QStringLiteral("%1 holds no configuration, but %2")
                 .arg(path, aux::container::rowOf(container.header().type)->content));
    if (!container.hasDigest())
        fail(QStringLiteral("%1 is damaged").arg(path));
    keep(container.payload(1 << 20), path, file); // as much as a candidate may have
}

Result apply(const Call &call)
{
    Input input(call.argument(0));
    QString path = input.path();
    aux::NewFile verified;
    if (requiresSignatures()) {
        keepVerified(input, verified);
        path = verified.pathWithoutName();
    }
    aux::NewFile payload;
    if (isContainer(path)) {
        extract(path, payload);
        path = payload.pathWithoutName();
    }
    aux::Configuration configuration;
    open(configuration, call);
    aux::Candidate candidate;
    checkOn(input.name(), "not taken into use", aux::readFaultless(path, candidate));
    Result result = differences(candidate);
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
