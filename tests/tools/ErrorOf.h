// What an action that fails says.
#ifndef LUMOFE_TESTS_ERROR_OF_H
#define LUMOFE_TESTS_ERROR_OF_H

#include "Error.h"

#include <string>

namespace lumofe::test {

// Message of the Error that the action throws; empty when it throws none.
template <class Action>
std::string errorOf(const Action& action)
{
    try {
        action();
    } catch (const Error& e) {
        return e.what();
    }
    return {};
}

} // namespace lumofe::test

#endif
