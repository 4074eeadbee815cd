// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_REQUIRE_H
#define AUX_TESTS_REQUIRE_H

#include <cstdlib>

/// Ends the program, which the fuzzer takes for a find, unless the condition holds.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

#endif
