// SPDX-License-Identifier: MIT
#include "command.h"
#include "progress.h"
#include "streams.h"

#include <aux/fshelper.h>

namespace auxctl
{

namespace
{

Result checksum(const Call &call)
{
    const Input input(call.argument(0));
    const Progress progress(input.path());
    return plainText(checked(aux::FsHelper::generateChecksum(input.path())));
}

Result verify(const Call &call)
{
    const Input input(call.argument(0));
    const Progress progress(input.path());
    const bool isValid = aux::FsHelper::validateChecksum(input.path(), call.argument(1));
    return answered(isValid, {isValid, isValid ? "valid" : "not valid"});
}

const Registration checksumRow{{"files checksum",
                                "FILE",
                                "checksum",
                                "text",
                                "Print the SHA-256 checksum of a file",
                                {},
                                checksum}};
const Registration verifyRow{{"files verify",
                              "FILE CHECKSUM",
                              "valid",
                              "true or false",
                              "Check the SHA-256 checksum of a file",
                              {},
                              verify}};

} // namespace

} // namespace auxctl
