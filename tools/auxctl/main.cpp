// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "diagnostics.h"
#include "output.h"

#include <QCoreApplication>

namespace auxctl
{

namespace
{

ExitStatus runAndPrint(const CommandLine &line)
{
    const Format format{line.has(jsonOption), line.key(), line.has(debugOption)};
    try {
        return print(line.run(), format);
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
