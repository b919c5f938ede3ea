// Faults of what the program is handed: of all calls that the stand-ins take, one fails.
#pragma once

#include <string>

namespace velmora::test {

struct Faults {
    int failing = 0;    ///< The call that fails, counted from 1; none at 0.
    int calls = 0;      ///< Since the count began.
    std::string where;  ///< The function that has failed; empty until then.

    /// To be asked at each call that may fail: whether this is the one.
    bool IsNow(const char* function = __builtin_FUNCTION())
    {
        if (++calls != failing) return false;
        where = function;
        return true;
    }
};

inline Faults faults;

template <class Error>
void MayFail(const char* function = __builtin_FUNCTION())
{
    if (faults.IsNow(function)) throw Error("a fault that the test asked for");
}

}  // namespace velmora::test
