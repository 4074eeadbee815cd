// SPDX-License-Identifier: MIT
#include "tables.h"

#include "container/containerformat.h"
#include "fs/datadirectories.h"

namespace
{

constexpr const char *locationsHead = R"(# Locations and container types

## Locations

`aux::FsHelper` and `auxctl` call the directories of the terminal's files by these names; in a program
they are the values of `aux::DirLocation`.

| Value | Name | Path | Found by its path | Emptied by a factory reset |
|------:|------|------|-------------------|----------------------------|
)";

constexpr const char *typesHead = R"(
## Container types

What a [container](container-format.md) holds; in a program the values of
`aux::DataHelper::ZEL_FILE_TYPE`.

| Type | Payload |
|------|---------|
)";

const char *yesOrNo(bool answer)
{
    return answer ? "yes" : "no";
}

/// The temporary directory is another one wherever this runs.
QString pathOf(const aux::DataDirectory &row)
{
    return row.location == aux::DirLocation::Tmp
               ? QStringLiteral("the system's temporary directory")
               : '`' + row.path + '`';
}

} // namespace

void printTables(QTextStream &out)
{
    out << locationsHead;
    for (const aux::DataDirectory &row : aux::dataDirectories().mid(1)) // not the invalid one
        out << "| " << static_cast<int>(row.location) << " | `" << row.name << "` | " << pathOf(row)
            << " | " << yesOrNo(row.isFoundByPath) << " | " << yesOrNo(row.isClearedByReset)
            << " |\n";
    out << typesHead;
    for (const aux::container::TypeRow &row : aux::container::typeRows)
        out << "| `" << row.tag << "` | " << row.content << " |\n";
}

void printMagic(QTextStream &out)
{
    using namespace aux::container;
    out << "# Containers of libaux, for file(1).\n"
        << "# brand, type, digest, then name and payload, each with its length in front\n";
    for (const TypeRow &row : typeRows)
        out << "0\tstring\t" << brand << row.tag << "\tlibaux container, " << row.content << "\n"
            << ">0\tuse\tlibaux-container\n";
    out << "\n0\tname\tlibaux-container\n"
        << '>' << nameLengthOffset << "\tpstring/l\tx\t\\b, named \"%s\"\n"
        << ">(" << nameLengthOffset << ".l+" << nameOffset << ")\tulelong\tx\t\\b, %u bytes\n";
}
