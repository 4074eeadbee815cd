// SPDX-License-Identifier: MIT
#include "candidates.h"
#include "help.h"

namespace auxctl
{

namespace
{

Result completion(const Call &call)
{
    const QStringList shells{"bash", "fish", "zsh"};
    const QString shell = call.argument(0, shells.first());
    if (!shells.contains(shell))
        misuseUnknown("shell", shell, shells);
    return document(resource("completion." + shell));
}

constexpr ValueOption<QString> currentOption{"current", "TEXT", "The beginning of the word to come",
                                             anyText};

Result complete(const Call &call)
{
    return textLines(
        candidatesAfter(call.arguments(), call.value(currentOption).value_or(QString())));
}

const Registration completionRow{{"completion",
                                  "[SHELL]",
                                  "script",
                                  "text",
                                  "Print the completion script for bash, fish or zsh",
                                  {},
                                  completion}};
const Registration completeRow{{"complete",
                                "[WORD...]",
                                "candidates",
                                "[text]",
                                "Print what may follow, for those scripts",
                                {&currentOption},
                                complete}};

} // namespace

} // namespace auxctl
