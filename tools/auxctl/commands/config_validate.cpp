// SPDX-License-Identifier: MIT
#include "command.h"
#include "streams.h"

#include <aux/configuration.h>

#include <QFile>

namespace auxctl
{

namespace
{

Result validate(const Call &call)
{
    const Input input(call.argument(0));
    aux::Configuration configuration; // knows the format of the file
    configuration.init();
    aux::Error error = aux::Configuration::validateConfigFile(input.path());
    // Not a fault of the contents where there are none to be read.
    if (!QFile(input.path()).open(QIODevice::ReadOnly))
        check(std::move(error));
    if (error.hasError())
        throw Failure{ExitStatus::No, std::move(error)};
    return {true, "valid"};
}

const Registration row{{"config validate",
                        "FILE",
                        "valid",
                        "true",
                        "Check a configuration file before it is taken into use",
                        {},
                        validate}};

} // namespace

} // namespace auxctl
