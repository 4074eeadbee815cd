// SPDX-License-Identifier: MIT
#include "aux/systeminfo.h"
#include "error/debugline.h"
#include "process/helperprogram.h"

namespace aux
{

namespace
{

constexpr qint64 timeoutMs = 2000;

} // namespace

bool SystemInfo::isTouchscreenDetected()
{
    constexpr const char *operation = "isTouchscreenDetected";
    HelperProgram udevadm;
    // Deliberately a time-out is no failure: see what it has written so far.
    static_cast<void>(udevadm.run(QStringLiteral("udevadm"),
                                  {QStringLiteral("info"), QStringLiteral("--export-db")},
                                  [] { return timeoutMs; }));
    if (!udevadm.hasSucceeded() && !udevadm.hasTimedOut()) {
        debugLine(operation, ": touch screen ident process failed");
        return false;
    }
    const bool detected = udevadm.output().contains("E: ID_INPUT_TOUCHSCREEN=1");
    if (!detected)
        debugLine(operation, ": touch screen not detected");
    return detected;
}

} // namespace aux
