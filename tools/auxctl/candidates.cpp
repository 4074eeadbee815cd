// SPDX-License-Identifier: MIT
#include "candidates.h"

#include "containerfile.h"
#include "location.h"
#include "settings.h"
#include "system/interfacelist.h"
#include "trustedkeys.h"

#include <QHostAddress>
#include <QRegularExpression>

#include <algorithm>

namespace auxctl
{

namespace
{

QStringList keys(const QString &ending)
{
    QStringList names;
    for (const Setting &setting : aux::settingsCatalogue())
        names += setting.keyPath() + ending;
    return names;
}

/// What an argument, or the value of an option, may be, by the name that the usage shows.
QStringList valuesOf(QString placeholder)
{
    placeholder.remove('[').remove(']').remove("...");
    if (placeholder == "KEY")
        return keys({});
    if (placeholder == "KEY=VALUE")
        return keys("=");
    if (placeholder == "AREA")
        return areaNames();
    if (QStringList{"LOCATION", "FROM", "TO"}.contains(placeholder))
        return locationNames();
    if (placeholder == "TYPE")
        return typeNames();
    if (placeholder == "ORG/NAME")
        return applications();
    if (placeholder == "IFACE") {
        QStringList names;
        for (const aux::Interface &interface : aux::systemInterfaces())
            names += interface.name;
        return names;
    }
    if (placeholder == "FINGERPRINT")
        return trustedFingerprints();
    if (placeholder == "SHELL")
        return {"bash", "fish", "zsh"};
    const bool isPath =
        placeholder.endsWith("FILE") ||
        QStringList{"CONTAINER", "MESSAGE", "SIGNATURE", "DIRECTORY"}.contains(placeholder);
    return isPath ? QStringList(anyFile) : QStringList();
}

/// The command's option of this name; null where it has none.
const Option *optionOf(const Command &command, const QString &word)
{
    const auto options = command.allOptions();
    const auto found = std::find_if(options.begin(), options.end(), [&word](const Option *option) {
        return word == QStringLiteral("--") + option->name;
    });
    return found == options.end() ? nullptr : *found;
}

QStringList optionNames(const Command *command)
{
    QStringList names;
    auto options = commonOptions();
    if (command != nullptr) {
        const auto own = command->allOptions();
        options.insert(options.begin(), own.begin(), own.end());
    }
    for (const Option *option : options)
        names += QStringLiteral("--") + QString(option->name).section('|', -1);
    return names;
}

/// The words that a command's name may go on with.
QStringList commandWords(const QStringList &words)
{
    QStringList next;
    for (const Command &command : commands()) {
        const QStringList name = QString(command.name).split(' ');
        if (name.size() > words.size() && name.mid(0, words.size()) == words)
            next += name[words.size()];
    }
    next.removeDuplicates();
    return next;
}

/// What may stand after these words, which begin with the command's name.
QStringList candidatesOf(const Command &command, const QStringList &words, const QString &current)
{
    const Option *last = words.isEmpty() ? nullptr : optionOf(command, words.last());
    if (last != nullptr && last->value != nullptr)
        return valuesOf(last->value);
    if (current.startsWith('-'))
        return optionNames(&command);
    int count = -QString(command.name).count(' ') - 1; // of the arguments
    bool isValue = false;
    for (const QString &word : words) {
        count += isValue || word.startsWith("--") ? 0 : 1;
        const Option *option = optionOf(command, word);
        isValue = option != nullptr && option->value != nullptr;
    }
    const QStringList arguments = QString(command.arguments).split(' ', Qt::SkipEmptyParts);
    const bool isOpen = !arguments.isEmpty() && arguments.last().contains("...");
    return valuesOf(isOpen && count >= arguments.size() ? arguments.last()
                                                        : arguments.value(count));
}

} // namespace

QStringList candidatesAfter(const QStringList &words, const QString &current)
{
    QStringList names = words;
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString &word) { return word.startsWith('-'); }),
                names.end());
    const Command *command = findCommand(names);
    QStringList all = command != nullptr        ? candidatesOf(*command, words, current)
                      : current.startsWith('-') ? optionNames(nullptr)
                                                : commandWords(names);
    if (all == QStringList(anyFile))
        return all;
    if (!current.isEmpty() && !current.startsWith('/')) // a key is known without it, too
        all.replaceInStrings(QRegularExpression(QStringLiteral("\\A/")), {});
    all.erase(std::remove_if(
                  all.begin(), all.end(),
                  [&current](const QString &candidate) { return !candidate.startsWith(current); }),
              all.end());
    return all;
}

} // namespace auxctl
