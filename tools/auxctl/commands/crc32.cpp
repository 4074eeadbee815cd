// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"
#include "progress.h"
#include "streams.h"

#include <aux/crc32.h>

#include <QFile>

namespace auxctl
{

Outcome crc32(const Invocation &invocation)
{
    return withInput(invocation.argument(0), [&](const QString &path) -> Outcome {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return failed(fileProblem("open", file));

        const Progress progress(file.fileName());
        QByteArray piece(1 << 16, Qt::Uninitialized);
        unsigned int crc = 0;
        qint64 length = 0;
        while ((length = file.read(piece.data(), piece.size())) > 0)
            crc = aux::crc32(crc, reinterpret_cast<unsigned char *>(piece.data()),
                             static_cast<unsigned int>(length));
        if (length < 0)
            return failed(fileProblem("read", file));
        return plainText(QStringLiteral("%1").arg(crc, 8, 16, QLatin1Char('0')));
    });
}

} // namespace auxctl
