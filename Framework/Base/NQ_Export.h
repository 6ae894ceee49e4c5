// What the shared libraries show to the outside: everything else is hidden.
#pragma once

/// Marks a class or function as part of a library's exported interface.
#define NQ_EXPORT __attribute__((visibility("default")))
