#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program, so that the fuzzer keeps the input, when something that must hold does not.
inline void mustHold(bool condition, const char* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}
