// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_PACKING_H
#define AUX_TESTS_PACKING_H

#include <aux/datahelper.h>

#include "datadirectories.h"
#include "observe.h"

using aux::DataHelper;
using Type = DataHelper::ZEL_FILE_TYPE;

inline const QString dir = QStringLiteral("/data/box");
inline const QString out = QStringLiteral("/data/box/out");
inline const QString source = dir + "/source.ddd";
inline const QString packed = dir + "/packed.bin";

inline QString pack(const QString &from = source, Type type = Type::DDDF,
                    const QString &to = packed)
{
    return text(DataHelper::packFileToBinContainer(from, type, to));
}

struct Unpacked {
    QString error;
    Type type = Type::UPDF;
    QString file;
};

inline Unpacked unpack(const QString &name = {}, const QString &from = packed,
                       const QString &to = out)
{
    Unpacked result;
    result.file = name;
    result.error = text(DataHelper::unpackFileFromBinContainer(from, result.type, to, result.file));
    return result;
}

inline QString packError(const char *reason)
{
    return QStringLiteral("libaux packFileToBinContainer: %1 10001").arg(reason);
}

inline QString unpackError(const char *reason)
{
    return QStringLiteral("libaux unpackFileFromBinContainer: %1 10001").arg(reason);
}

/// Leaves a file to pack and an empty directory to unpack into.
inline void clearBox()
{
    clear(dir);
    clear(out);
    write(source, "payload");
}

#endif
