// SPDX-License-Identifier: MIT
#ifndef TERMINAL_DISPATCH_H
#define TERMINAL_DISPATCH_H

#include <aux/configuration.h>
#include <aux/error.h>

#include <utility>

/// Keeps the server's public key in the settings. While these cannot be written, as on a full
/// storage, this process alone has it, and the next write that succeeds takes it along.
aux::Error keepKey(aux::Configuration &configuration, const QByteArray &key,
                   const QString &passPhrase);

/// Takes a download to where the upload looks for it: packs it into a container, moves that to the
/// archive, and encrypts it for the server. Returns the path of the message.
///
/// What the steps before a failure have made stays, and so does the download: another attempt packs
/// it anew.
std::pair<aux::Error, QString> dispatch(const aux::Configuration &configuration,
                                        const QString &download);

#endif
