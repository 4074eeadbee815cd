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
    return withInput(invocation.argument(0), [&](const QString &path) -> Outcome {
        ContainerFile container(path);
        return container.error().hasError() ? failed(container.error()) : describeFile(container);
    });
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
