// SPDX-License-Identifier: MIT
#include "commands.h"
#include "containerfile.h"
#include "streams.h"

namespace auxctl
{

namespace
{

Outcome describe(const Invocation &invocation, Outcome (*describeFile)(ContainerFile &))
{
    const InputFile input(invocation.argument(0));
    if (input.error().hasError())
        return failed(input.error());
    ContainerFile container(input.path());
    return container.error().hasError() ? failed(container.error()) : describeFile(container);
}

} // namespace

Outcome containerInfo(const Invocation &invocation)
{
    return describe(invocation,
                    [](ContainerFile &container) { return record(container.description()); });
}

Outcome containerVerify(const Invocation &invocation)
{
    return describe(invocation, [](ContainerFile &container) {
        const bool isValid = container.hasDigest();
        return answered(isValid, record(container.description() + Record{{"valid", isValid}}));
    });
}

} // namespace auxctl
