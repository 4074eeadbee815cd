// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "files.h"
#include "streams.h"

namespace auxctl
{

namespace
{

Finding describeFile(const QString &argument)
{
    Input input(argument);
    return {ContainerFile(input.path()).description()};
}

Finding verifyFile(const QString &argument)
{
    Input input(argument);
    ContainerFile container(input.path());
    const bool isValid = container.hasDigest();
    return {container.description() + Record{{"valid", isValid}}, !isValid};
}

Result describe(const Call &call)
{
    return lookAtEach(filesOf(call.arguments()), describeFile);
}

Result verify(const Call &call)
{
    return lookAtEach(filesOf(call.arguments()), verifyFile);
}

constexpr const char *shape = "[{path: text, error?: [{domain: text, message: text, id: number}], "
                              "type?: text, name?: text, size?: number, digest?: text, "
                              "complete?: bool, valid?: bool}]";

const Registration infoRow{{"container info",
                            "FILE...",
                            "containers",
                            shape,
                            "Show what the headers of containers say",
                            {},
                            describe}};
const Registration verifyRow{{"container verify",
                              "FILE...",
                              "containers",
                              shape,
                              "Check the digests of containers, writing nothing",
                              {},
                              verify}};

} // namespace

} // namespace auxctl
