// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "files.h"
#include "signatures.h"
#include "streams.h"

#include <algorithm>
#include <iterator>

namespace auxctl
{

namespace
{

Finding describeFile(const QString &argument)
{
    Input input(argument);
    return {ContainerFile(input.path()).description()};
}

Finding verifyFile(const QString &argument)
{
    Input input(argument);
    ContainerFile container(input.path());
    const bool isValid = container.hasDigest();
    return {container.description() + Record{{"valid", isValid}}, !isValid};
}

Result describe(const Call &call)
{
    return lookAtEach(filesOf(call.arguments()), describeFile);
}

Finding verifySigner(const QString &argument, const QString &keyring)
{
    Input input(argument);
    const Finding content = verifyFile(argument);
    const Finding signer = verifySignature(argument, input.path(), signaturePath(input), keyring);
    return {content.fields + signer.fields, content.isNo || signer.isNo, signer.reason};
}

/// The files without those that are signatures of others among them.
QStringList withoutSignatures(const QStringList &files)
{
    QStringList others;
    std::copy_if(files.begin(), files.end(), std::back_inserter(others), [&](const QString &file) {
        return !file.endsWith(signatureEnding) ||
               !files.contains(file.chopped(QString(signatureEnding).size()));
    });
    return others;
}

Result verify(const Call &call)
{
    const QStringList files = filesOf(call.arguments());
    const auto keyring = call.value(keyringOption);
    const auto look = [&keyring](const QString &argument) {
        return keyring ? verifySigner(argument, *keyring) : verifyFile(argument);
    };
    return lookAtEach(keyring ? withoutSignatures(files) : files, look);
}

constexpr const char *shape =
    "[{path: text, error?: errors, "
    "type?: text, name?: text, size?: number, digest?: text, "
    "complete?: bool, valid?: bool, trusted?: bool, signer?: text, signed?: text}]";

const Registration infoRow{{"container info",
                            "FILE...",
                            "containers",
                            shape,
                            "Show what the headers of containers say",
                            {},
                            describe}};
const Registration verifyRow{{"container verify",
                              "FILE...",
                              "containers",
                              shape,
                              "Check the digests of containers, writing nothing",
                              {&keyringOption},
                              verify}};

} // namespace

} // namespace auxctl
