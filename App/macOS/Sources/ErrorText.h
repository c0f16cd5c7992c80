#pragma once

#include <exception>
#include <string>

namespace Tinkra {

/// What the exception that is being handled says of itself. To be called in a handler alone.
inline std::string currentErrorText()
{
    try {
        throw;
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown error";
    }
}

}
