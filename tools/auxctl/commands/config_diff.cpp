// SPDX-License-Identifier: MIT
#include "changes.h"
#include "streams.h"

namespace auxctl
{

namespace
{

Result showDifferences(const Call &call)
{
    Input input(call.argument(0));
    const aux::Candidate candidate = candidateOf(input.path());
    aux::Configuration configuration;
    open(configuration, call);
    const Result result = differences(candidate);
    return answered(result.text.isEmpty(), result);
}

const Registration row{{"config diff",
                        "FILE",
                        "changes",
                        differencesShape,
                        "Show what a configuration file would change",
                        {&applicationOption},
                        showDifferences}};

} // namespace

} // namespace auxctl
