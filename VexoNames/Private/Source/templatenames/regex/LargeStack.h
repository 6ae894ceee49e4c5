// Stack for work that recurses deeply, whatever stack the calling thread has.
#pragma once

#include <cstddef>
#include <functional>

namespace templatenames {

/// How much stack the running thread has left; little when that is unknown.
std::size_t StackLeft();

/// Calls the function on a stack of that size, in a thread of its own, and waits for it. False, and nothing called,
/// when there is no memory for it. The function must not throw.
bool CallOnStack(std::size_t bytes, const std::function<void()>& function);

}  // namespace templatenames
