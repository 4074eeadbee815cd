// SPDX-License-Identifier: MIT
#include "passphrase.h"

#include <QFile>

#include <array>
#include <optional>

#include <bsd/readpassphrase.h>

namespace auxctl
{

namespace
{

using Function = std::function<Outcome(const QString &)>;

constexpr Option fileOption{"passphrase-file", "FILE",
                            "Read the pass phrase from a file instead of asking"};
constexpr Option descriptorOption{"passphrase-fd", "NUMBER",
                                  "Read it from an open file descriptor"};

constexpr std::size_t longestTyped = 1024;

std::optional<QString> ask(const char *prompt)
{
    std::array<char, longestTyped> typed{};
    if (readpassphrase(prompt, typed.data(), typed.size(), RPP_REQUIRE_TTY) == nullptr)
        return std::nullopt;
    return QString::fromUtf8(typed.data());
}

Outcome withTyped(PassPhraseKind kind, const Function &function)
{
    const auto typed = ask("Pass phrase: ");
    if (!typed)
        return misused("there is no terminal to ask for the pass phrase, say --passphrase-file or "
                       "--passphrase-fd");
    if (kind == PassPhraseKind::New && ask("The same once more: ") != typed)
        return misused("the two pass phrases differ");
    return function(*typed);
}

Outcome withRead(QFile &file, const Function &function)
{
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return failed(fileProblem("read", file));
    if (content.endsWith('\n'))
        content.chop(1);
    const QString passPhrase = QString::fromUtf8(content);
    if (passPhrase.toUtf8() != content)
        return failed("the pass phrase is not UTF-8");
    return function(passPhrase);
}

Outcome withDescriptor(const Invocation &invocation, const QString &text, const Function &function)
{
    bool isNumber = false;
    const int descriptor = text.toInt(&isNumber);
    if (!isNumber || descriptor < 0)
        return misused(QStringLiteral("\"%1\" is no file descriptor").arg(text));
    if (descriptor == 0 && invocation.argument(0) == "-")
        return misused("standard input gives either the file or the pass phrase");
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly))
        return failed(fileProblem("open", file));
    return withRead(file, function);
}

} // namespace

const std::vector<Option> &passPhraseOptions()
{
    static const std::vector<Option> options{fileOption, descriptorOption};
    return options;
}

Outcome withPassPhrase(const Invocation &invocation, PassPhraseKind kind, const Function &function)
{
    const QString path = invocation.value(fileOption.name);
    const QString descriptor = invocation.value(descriptorOption.name);
    if (!path.isEmpty() && !descriptor.isEmpty())
        return misused("the pass phrase comes from a file or a descriptor, not both");
    if (!descriptor.isEmpty())
        return withDescriptor(invocation, descriptor, function);
    if (path.isEmpty())
        return withTyped(kind, function);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failed(fileProblem("open", file));
    return withRead(file, function);
}

} // namespace auxctl
