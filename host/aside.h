// SPDX-License-Identifier: MIT
/// Runs what takes long on another thread, for callers that wait for it.
#pragma once

#include <functional>

namespace host
{

/// Calls a function on another thread, and comes back when it is done. Meanwhile windows are painted and timers run,
/// and what people do is kept until afterwards: the caller is in the middle of something that nobody may interrupt with
/// an edit. Runs an event loop.
void RunAside(const std::function<void()>& in_function);

} // namespace host
