// Trees, requests and replies as text, so that a test's row holds one.
#pragma once

#include <string_view>

#include "NQ_TAny.h"
#include "NQ_TTree.h"

namespace names_test {

/// The value that a text stands for, written as it prints:
///   {Type = Number, Value = 5}     a tree; dict {...} a plain dictionary
///   [a, b]                         an array
///   5, true, null, illegal         an integer, a boolean, the null and the illegal value
///   x, "5"                         strings
///   url file://h/p, time 5         a URL, a time in milliseconds
NQ_TAny Value(std::string_view text);

/// The same for a tree; a test failure when the text is none.
NQ_TTree Tree(std::string_view text);

}  // namespace names_test
