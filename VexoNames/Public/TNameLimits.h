// What a template, a value or a definition may cost.
#pragma once

#include <cstdint>

/// Bounds on the work that untrusted text can cause. A token that would exceed one fails like any other failed token:
/// it stays in the text and is counted. The rest of the template resolves, but once a call has used up its tokens or
/// characters, its remaining tokens fail too. A log line at level 2 names the limit. 0 allows nothing of the kind. Set
/// per `TName` with `TName::SetLimits`.
struct TNameLimits {
  /// Templates inside values inside values: how deep. A name that names itself ends here. 64 is far above what
  /// definitions use and keeps the stack below 256 KiB.
  int nestedDepth = 64;
  /// Tokens looked at per public call, those inside values included.
  std::int64_t tokens = 10'000'000;
  /// Characters (UTF-16 units) that values add per public call, those of values that were cut and of the tokens inside
  /// values included; so are those of regular expressions that a log line repeats.
  std::int64_t characters = std::int64_t{512} * 1024 * 1024;
  /// Requests to services per public call. A reply may hold tokens that ask again; 10,000 is more than the names of any
  /// template ask for, and at a millisecond each takes ten seconds.
  int queries = 10'000;
  /// Time that requests without an answer may take together, by the clock. A minute is two calls of the default
  /// deadline: services that do not answer hold nobody up for longer than that and the request in hand. Replies that
  /// come count nothing, however long they took.
  std::int64_t queryMilliseconds = 60'000;
  /// Steps that the regular-expression matcher may take from one starting position in a value, and how deep it may
  /// recurse where it runs without machine code.
  unsigned long regexMatch = 1'000'000;
  unsigned long regexRecursion = 10'000;
  /// Time that the regular expressions of a public call may take together, by the clock, which is looked at between
  /// parts of a search that take a few seconds at most.
  std::int64_t regexMilliseconds = 10'000;
  /// XML files that values are read from, which are small: a file beyond a limit is not loaded, and the log tells
  /// which. Its size in bytes; also the characters that the entities it uses and attributes with a declared value add
  /// to it.
  std::int64_t xmlBytes = std::int64_t{16} * 1024 * 1024;
  /// Elements, attributes and other nodes; the attributes of one element; how deep elements lie within each other.
  std::int64_t xmlNodes = 500'000;
  int xmlAttributes = 1'000;
  int xmlDepth = 1'000;
  /// Entities used, each time counted, those inside entities included.
  int xmlEntities = 10'000;
  /// Characters of the document type declaration inside the file, those of the entities used there included (each as
  /// the longest declared so far). The file is read in pieces of 48 KiB: that much may escape the count.
  std::int64_t xmlDoctype = 256 * 1024;
  /// Comparisons of names: the XML library may compare each element, attribute or ID with all different ones before it.
  /// So many take about a second. 14,000 elements may each have a name of their own, 500,000 share 200 names.
  std::int64_t xmlNameSteps = 100'000'000;
  /// Bytes of memory for a file and what it holds. A file at the limits above takes about 100 MiB.
  std::int64_t xmlMemory = std::int64_t{256} * 1024 * 1024;
};
