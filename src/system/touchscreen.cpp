// SPDX-License-Identifier: MIT
#include "aux/systeminfo.h"
#include "error/debugline.h"

#include <QProcess>

#include <csignal>

#include <unistd.h>

namespace aux
{

namespace
{

constexpr int patienceMs = 2000;

/// A program that does not outlive this object, nor does anything that it has started.
class Helper : public QProcess
{
public:
    Helper() = default;
    Helper(const Helper &) = delete;
    Helper &operator=(const Helper &) = delete;
    Helper(Helper &&) = delete;
    Helper &operator=(Helper &&) = delete;
    ~Helper() override
    {
        if (state() == NotRunning)
            return;
        ::kill(-static_cast<pid_t>(processId()), SIGKILL);
        waitForFinished();
    }

protected:
    /// Runs in the child.
    void setupChildProcess() override { ::setpgid(0, 0); }
};

} // namespace

bool SystemInfo::isTouchscreenDetected()
{
    constexpr const char *operation = "isTouchscreenDetected";
    Helper udevadm;
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
