// JSON files, read strictly.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

/// Keeps the members of an object in the order of the file.
using TJson = nlohmann::ordered_json;

/// A file larger than this is refused before it is read any further.
inline constexpr std::size_t kLargestFile = std::size_t{64} * 1024 * 1024;
/// Objects and arrays within each other.
inline constexpr std::size_t kDeepestJson = 64;

/// Reads the file. Throws TInputError with the file and line and column of a syntax error, or the path of a key that
/// appears twice or of a value that lies too deep.
TJson ReadJsonFile(const std::string& file);

/// The same for text; the file's name is for messages.
TJson ParseJson(std::string_view text, const std::string& file);

/// The path extended by a key, for messages: "names.inputnr"; keys that are not plain words are quoted.
std::string PathTo(const std::string& path, std::string_view key);
