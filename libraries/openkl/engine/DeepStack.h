#pragma once

#include <cstddef>
#include <functional>

namespace Tolen::OpenKL {

/// Runs @p work on a thread with a stack of @p bytes and waits for it.
/// @return false, with nothing run, when there is no such thread to be had
bool RunWithStack(std::size_t bytes, const std::function<void()>& work);

} // namespace Tolen::OpenKL
