// SPDX-License-Identifier: MIT
#include "aux/systeminfo.h"
#include "error/debugline.h"
#include "process/helperprogram.h"

namespace aux
{

namespace
{

constexpr int patienceMs = 2000;

} // namespace

bool SystemInfo::isTouchscreenDetected()
{
    constexpr const char *operation = "isTouchscreenDetected";
    HelperProgram udevadm;
    udevadm.start(QStringLiteral("udevadm"),
                  {QStringLiteral("info"), QStringLiteral("--export-db")});
    udevadm.waitForFinished(patienceMs); // deliberately no failure: see what it has written so far
    if (udevadm.exitCode() != 0) {
        debugLine(operation, ": touch screen ident process failed");
        return false;
    }
    const bool detected = udevadm.readAllStandardOutput().contains("E: ID_INPUT_TOUCHSCREEN=1");
    if (!detected)
        debugLine(operation, ": touch screen not detected");
    return detected;
}

} // namespace aux
