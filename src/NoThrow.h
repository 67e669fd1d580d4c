#pragma once

#include "Log.h"

#include <exception>
#include <new>
#include <type_traits>

namespace tessaline {

/// Runs the body of a call from host or QML. Callers are not exception-safe, so an exception
/// becomes a log line and an empty result.
/// @param scope "Tessaline::" and the name of the function, as in other log lines
/// @param line line of the call, for the log
template <typename Body>
std::invoke_result_t<Body> noThrow(const char *scope, Body body,
                                   int line = __builtin_LINE()) noexcept
{
    try {
        return body();
    } catch (const std::bad_alloc &) {
        LOG_ERROR_AT(line, "%s, malloc memory fail", scope);
    } catch (const std::exception &exception) {
        LOG_ERROR_AT(line, "%s, unexpected exception: %s", scope, exception.what());
    } catch (...) {
        LOG_ERROR_AT(line, "%s, unexpected exception", scope);
    }
    return std::invoke_result_t<Body>();
}

} // namespace tessaline
