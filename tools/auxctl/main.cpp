// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "diagnostics.h"
#include "output.h"
#include "progress.h"

#include <QCoreApplication>

#include <utility>

#include <unistd.h>

namespace auxctl
{

namespace
{

/// Prints the result whenever it is another one than before, until a signal ends that.
ExitStatus watch(const CommandLine &line, const Format &format)
{
    QJsonValue last;
    for (;; sleep(1)) {
        const Result result = line.run(); // a failure ends it
        const QJsonValue before = std::exchange(last, result.json);
        if (result.json == before)
            takeDiagnostics(); // said already
        else if (print(result, format) == ExitStatus::Failed)
            return ExitStatus::Failed;
    }
}

ExitStatus runAndPrint(const CommandLine &line)
{
    const Format format{line.has(jsonOption), line.key(), line.has(debugOption)};
    if (line.has(quietOption))
        Progress::disable();
    try {
        return line.has(watchOption) ? watch(line, format) : print(line.run(), format);
    } catch (const Failure &failure) {
        return print(failure, format);
    }
}

} // namespace

} // namespace auxctl

int main(int argc, char **argv)
{
    auxctl::divertOutput();
    auxctl::collectDiagnostics();
    const QCoreApplication application(argc, argv);
    const auxctl::CommandLine line(QCoreApplication::arguments().mid(1));
    return static_cast<int>(auxctl::runAndPrint(line));
}
