#pragma once

#include "Log.h"

#include <type_traits>

namespace tessaline {

/// Runs the body of a call from host or QML. Nobody out there expects an exception, and most of
/// their code is compiled without them: what the body throws, which is lack of memory, ends here
/// with a log line, and the caller gets an empty result.
/// @param scope "Tessaline::" and the name of the function, as in other log lines
template <typename Body>
std::invoke_result_t<Body> guarded(const char *scope, Body body) noexcept
{
    try {
        return body();
    } catch (...) {
        LOG_ERROR("%s, malloc memory fail", scope);
        return std::invoke_result_t<Body>();
    }
}

} // namespace tessaline
