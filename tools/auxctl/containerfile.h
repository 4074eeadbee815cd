// SPDX-License-Identifier: MIT
#ifndef AUXCTL_CONTAINERFILE_H
#define AUXCTL_CONTAINERFILE_H

#include "command.h"
#include "container/containerheader.h"

namespace auxctl
{

/// Whether the file begins like a container; fails where it cannot be read.
bool isContainer(const QString &path);

/// A container of which the header has been read.
class ContainerFile
{
public:
    /// Fails where it cannot be read, or is no container.
    explicit ContainerFile(const QString &path);

    [[nodiscard]] const aux::container::Header &header() const { return m_header; }
    [[nodiscard]] bool isComplete() const;
    /// Reads the payload, all of which must be there, and compares its digest with the header's.
    [[nodiscard]] bool hasDigest();

    /// The payload; fails where it cannot be read, or is longer than so many bytes.
    [[nodiscard]] QByteArray payload(int maximum);

    /// What the header says, and whether the file is long enough for it.
    [[nodiscard]] Record description() const;

private:
    aux::RegularFile m_file;
    aux::container::Header m_header;
};

/// The name of a file in a directory, for the one that is stored or unpacked.
extern const ValueOption<QString> fileNameOption;

/// The name of a known type.
QString typeName(aux::container::Type type);
/// The names of all types, in their order.
QStringList typeNames();
/// The type of this name, in letters of any case; a misuse where it is none.
aux::container::Type typeFromName(const QString &name);

} // namespace auxctl

#endif
