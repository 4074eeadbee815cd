// SPDX-License-Identifier: MIT
#include "aux/datahelper.h"
#include "error/reason.h"
#include "openpgp/filepair.h"

namespace aux
{

namespace
{

Reason run(FilePair &files, bool decode)
{
    HelperProgram base64;
    files.connectTo(base64);
    const QStringList arguments = decode ? QStringList(QStringLiteral("--decode")) : QStringList();
    Reason reason = base64.run(QStringLiteral("base64"), arguments, files.timeout());
    if (!reason.isNone())
        return reason;
    if (base64.hasSucceeded())
        return files.commit();
    reason = files.whyNoRoom(base64);
    if (!reason.isNone())
        return reason;
    return decode ? QStringLiteral("input is not base64") : QStringLiteral("base64 failed");
}

} // namespace

Error DataHelper::base64(const QString &inFile, const QString &outFile, bool decode)
{
    NewFile output(outFile);
    FilePair files(inFile, output);
    Reason reason = files.open();
    if (reason.isNone())
        reason = run(files, decode);
    return outcome("base64", reason);
}

Error DataHelper::base64encode(const QString &inFile, const QString &outFile)
{
    return base64(inFile, outFile, false);
}

Error DataHelper::base64decode(const QString &inFile, const QString &outFile)
{
    return base64(inFile, outFile, true);
}

} // namespace aux
