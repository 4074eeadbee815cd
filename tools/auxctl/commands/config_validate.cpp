// SPDX-License-Identifier: MIT
#include "commands.h"
#include "streams.h"

#include <aux/configuration.h>

#include <QFile>

namespace auxctl
{

Outcome configValidate(const Invocation &invocation)
{
    return withInput(invocation.argument(0), [&](const QString &path) -> Outcome {
        aux::Configuration configuration; // knows the format of the file
        configuration.init();
        aux::Error error = aux::Configuration::validateConfigFile(path);
        if (!error.hasError())
            return {ExitStatus::Done, {}, true, "valid"};
        // Not a fault of the contents where there are none to be read.
        return QFile(path).open(QIODevice::ReadOnly) ? answered(false, failed(std::move(error)))
                                                     : failed(std::move(error));
    });
}

} // namespace auxctl
