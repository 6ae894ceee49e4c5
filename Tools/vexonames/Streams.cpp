#include "Streams.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "Errors.h"
#include "Text.h"

namespace {

constexpr std::size_t kLongestLine = std::size_t{64} * 1024 * 1024;
constexpr std::size_t kBlock = std::size_t{64} * 1024;

// A batch that is done by then needs no progress; after that the eye wants to see it move.
constexpr auto kFirstProgress = std::chrono::milliseconds(500);
constexpr auto kNextProgress = std::chrono::milliseconds(100);

}  // namespace

// ---- in

std::optional<std::string> TTexts::Next() {
  if (!FromInput()) {
    if (count_ == arguments_.size()) return std::nullopt;
    return arguments_[count_++];
  }
  std::optional<std::string> line = NextLine();
  if (!line) return std::nullopt;
  if (line->ends_with('\r')) line->pop_back();
  if (count_++ == 0 && line->starts_with("\xEF\xBB\xBF")) line->erase(0, 3);
  return line;
}

std::optional<std::string> TTexts::NextLine() {
  std::string line;
  for (bool any = false;; any = true) {
    if (at_ == block_.size() && !Fill()) return any ? std::optional(line) : std::nullopt;
    const std::size_t end = block_.find('\n', at_);
    line.append(block_, at_, end == std::string::npos ? end : end - at_);
    at_ = end == std::string::npos ? block_.size() : end + 1;
    if (line.size() > kLongestLine)
      throw TInputError("line " + std::to_string(count_ + 1) + " of the input is longer than 64 MiB");
    if (end != std::string::npos) return line;
  }
}

bool TTexts::Fill() {
  block_.resize(kBlock);
  ssize_t got = 0;
  do got = read(STDIN_FILENO, block_.data(), block_.size());
  while (got < 0 && errno == EINTR);
  if (got < 0) throw TInputError(std::string("standard input cannot be read: ") + std::strerror(errno));
  block_.resize(static_cast<std::size_t>(got));
  at_ = 0;
  return got > 0;
}

// ---- out

void TData::Line(std::string_view line) {
  std::string text(line);
  text += '\n';
  for (std::string_view rest = text; !rest.empty();) {
    const ssize_t written = write(STDOUT_FILENO, rest.data(), rest.size());
    if (written >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw TInputError(std::string("standard output cannot be written: ") + std::strerror(errno));
    }
  }
}

void TData::Result(std::string_view text) { IsTerminal() ? Line(Printable(text)) : Line(text); }

bool TData::IsTerminal() { return isatty(STDOUT_FILENO) != 0; }

// ---- beside

// Where results or input appear on the same terminal, they show the progress.
TDiagnostics::TDiagnostics(bool showsProgress)
    : showsProgress_(showsProgress && isatty(STDERR_FILENO) != 0 && !TData::IsTerminal() && isatty(STDIN_FILENO) == 0),
      next_(TClock::now() + kFirstProgress) {}

void TDiagnostics::Line(std::initializer_list<std::string_view> parts) {
  Clear();
  std::string text;
  for (const std::string_view part : parts) text += part;
  text += '\n';
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void TDiagnostics::Progress(std::size_t done) {
  if (!showsProgress_ || TClock::now() < next_) return;
  std::fprintf(stderr, "\r%zu templates", done);
  shown_ = true;
  next_ = TClock::now() + kNextProgress;
}

void TDiagnostics::Clear() {
  if (shown_) std::fputs("\r\x1B[K", stderr);
  shown_ = false;
}
