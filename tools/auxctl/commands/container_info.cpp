// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "streams.h"

namespace auxctl
{

namespace
{

Result describe(const Call &call)
{
    const Input input(call.argument(0));
    return record(ContainerFile(input.path()).description());
}

Result verify(const Call &call)
{
    const Input input(call.argument(0));
    ContainerFile container(input.path());
    const bool isValid = container.hasDigest();
    return answered(isValid, record(container.description() + Record{{"valid", isValid}}));
}

const Registration infoRow{{"container info",
                            "CONTAINER",
                            "container",
                            "{type, name, size, digest, complete}",
                            "Show what the header of a container says",
                            {},
                            describe}};
const Registration verifyRow{{"container verify",
                              "CONTAINER",
                              "container",
                              "{type, name, size, digest, complete, valid}",
                              "Check the digest of a container, writing nothing",
                              {},
                              verify}};

} // namespace

} // namespace auxctl
