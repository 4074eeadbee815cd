// SPDX-License-Identifier: MIT
// Prints what is made from the tables of the library: tables settings|tables|magic
#include "tables.h"

#include <map>
#include <string>

int main(int argc, char **argv)
{
    const std::map<std::string, void (*)(QTextStream &)> printers{
        {"settings", printSettings}, {"tables", printTables}, {"magic", printMagic}};
    const auto printer = printers.find(argc == 2 ? argv[1] : "");
    if (printer == printers.end())
        return 2;
    QTextStream out(stdout);
    printer->second(out);
}
