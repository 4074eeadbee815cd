// SPDX-License-Identifier: MIT
#ifndef AUX_CONTAINER_CONTAINER_H
#define AUX_CONTAINER_CONTAINER_H

#include "aux/error.h"
#include "container/containerformat.h"

namespace aux::container
{

/// Is DataHelper's packFileToBinContainer, with the name to store.
Error pack(const QString &inFile, Type type, const QString &name, const QString &outFile);

} // namespace aux::container

#endif
