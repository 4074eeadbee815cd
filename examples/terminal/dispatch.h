// SPDX-License-Identifier: MIT
#ifndef TERMINAL_DISPATCH_H
#define TERMINAL_DISPATCH_H

#include <aux/configuration.h>
#include <aux/error.h>

#include <utility>

/// Keeps the server's public key in the settings, which are on the storage when it returns.
aux::Error keepKey(aux::Configuration &configuration, const QByteArray &key,
                   const QString &passPhrase);

/// Takes a download to where the upload looks for it: packs it into a container, moves that to the
/// archive, and encrypts it for the server. Returns the path of the message.
///
/// What the steps before a failure have made stays: a container in New can be archived, one in the
/// archive encrypted, at the next attempt.
std::pair<aux::Error, QString> dispatch(const aux::Configuration &configuration,
                                        const QString &download);

#endif
