// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "diagnostics.h"
#include "output.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    auxctl::divertOutput();
    auxctl::collectDiagnostics();
    const QCoreApplication application(argc, argv);
    const auxctl::Call call = auxctl::parse(QCoreApplication::arguments().mid(1));
    const auxctl::Outcome outcome = call.run();
    return static_cast<int>(auxctl::print(outcome, call.format));
}
