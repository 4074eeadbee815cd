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

int descriptorFromText(const QString &text)
{
    bool isNumber = false;
    const int descriptor = text.toInt(&isNumber);
    if (!isNumber || descriptor < 0)
        misuse(QStringLiteral("\"%1\" is no file descriptor").arg(text));
    return descriptor;
}

constexpr std::size_t longestTyped = 1024;

std::optional<QString> ask(const char *prompt)
{
    std::array<char, longestTyped> typed{};
    if (readpassphrase(prompt, typed.data(), typed.size(), RPP_REQUIRE_TTY) == nullptr)
        return std::nullopt;
    return QString::fromUtf8(typed.data());
}

QString typed(PassPhraseKind kind)
{
    const auto passPhrase = ask("Pass phrase: ");
    if (!passPhrase)
        misuse("there is no terminal to ask for the pass phrase, say --passphrase-file or "
               "--passphrase-fd");
    if (kind == PassPhraseKind::New && ask("The same once more: ") != passPhrase)
        misuse("the two pass phrases differ");
    return *passPhrase;
}

QString contentOf(QFile &file)
{
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        failOn("read", file);
    if (content.endsWith('\n'))
        content.chop(1);
    QString passPhrase = QString::fromUtf8(content);
    if (passPhrase.toUtf8() != content)
        fail("the pass phrase is not UTF-8");
    return passPhrase;
}

} // namespace

constexpr ValueOption<QString> passPhraseFileOption{
    "passphrase-file", "FILE", "Read the pass phrase from a file instead of asking", anyText};
constexpr ValueOption<int> passPhraseDescriptorOption{
    "passphrase-fd", "NUMBER", "Read it from an open file descriptor", descriptorFromText};

QString passPhrase(const Call &call, PassPhraseKind kind)
{
    const auto path = call.value(passPhraseFileOption);
    const auto descriptor = call.value(passPhraseDescriptorOption);
    if (path && descriptor)
        misuse("the pass phrase comes from a file or a descriptor, not both");
    if (descriptor == 0 && call.argument(0) == "-")
        misuse("standard input gives either the file or the pass phrase");
    if (!path && !descriptor)
        return typed(kind);
    QFile file(path.value_or(QString()));
    if (!(path ? file.open(QIODevice::ReadOnly) : file.open(*descriptor, QIODevice::ReadOnly)))
        failOn("open", file);
    return contentOf(file);
}

} // namespace auxctl
