#pragma once

#include "Source.h"

#include <cstddef>
#include <optional>

namespace Tolen::LanguageServer {

/// A call that is being written, or a constructor.
struct Call {
    std::size_t name = 0;     ///< the token of the name before the bracket
    std::size_t argument = 0; ///< which one, from 0
};

/// The innermost call whose arguments @p offset is among.
std::optional<Call> FindCallAround(const Source& source, std::size_t offset);

/// How many arguments the name at token @p name is called with. @return none when it isn't called,
/// or the call isn't written to its end
std::optional<std::size_t> CountArguments(const Source& source, std::size_t name);

/// The opening bracket of the closing one at token @p closing.
std::optional<std::size_t> FindOpening(const Source& source, std::size_t closing);

} // namespace Tolen::LanguageServer
