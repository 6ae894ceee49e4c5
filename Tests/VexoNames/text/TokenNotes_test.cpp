// Which notes templates get: mistakes the right ones, ordinary texts none.
#include "text/TokenNotes.h"

#include "Support.h"

namespace names_test {
namespace {

using namespace templatenames;

std::u16string Unescaped(const std::string& row) {
  return std::u16string(S(row).Replace("\\n", "\n").Replace("\\t", "\t").StringView());
}

std::vector<TSyntaxNote> NotesOf(std::u16string_view text) {
  std::vector<TSyntaxNote> notes;
  NoteTemplateSyntax(text, notes);
  if (text.starts_with(kLiteralMarker)) return notes;
  const TMarkers markers = ChooseMarkers(text);
  TScanner scanner(text, markers);
  for (TScannedToken token; scanner.Next(token);)
    NoteTokenSyntax(text.substr(token.textBegin, token.textEnd - token.textBegin), markers, token.textBegin, notes);
  return notes;
}

std::string Line(const std::vector<TSyntaxNote>& notes) {
  std::string line;
  for (const TSyntaxNote& note : notes) {
    line += (line.empty() ? "" : " | ") + std::string(TNameProblem::NameOf(note.kind)) + ' ' +
            std::to_string(note.begin) + '-' + std::to_string(note.end);
    if (!note.suggestion.Empty()) line += ' ' + Text(note.suggestion);
    EXPECT_FALSE(note.reason.Empty());
  }
  return line;
}

const RowFile mistakes("text/SyntaxNotes.txt", {}, [](const Row& row) {
  const auto parts = Pieces(row.text, " => ", 2);
  EXPECT_EQ(Line(NotesOf(Unescaped(parts.at(0)))), parts.at(1));
});

const RowFile ordinary("text/OrdinaryTexts.txt", {},
                       [](const Row& row) { EXPECT_EQ(Line(NotesOf(Unescaped(row.text))), ""); });

TEST(SyntaxNotes, SentencesSayWhatWasFoundAndWhatWouldDo) {
  const std::pair<std::u16string_view, std::string_view> cases[] = {
      {u"<<n formt=\"%s\"/>>",
       "there is no attribute \"formt\": a token may have format, elem, extract and regex, in "
       "small letters"},
      {u"<<n format='%s'/>>", "the value of format is not read: its quotes are not straight double quotes"},
      {u"a/>b",
       "\"/>\" ends no token, because none begins before it: it and all that follows stay as they are written"},
      {u"{{n}}", "\"{{n}}\" is no token; write \"<<n/>>\""},
  };
  for (const auto& [text, reason] : cases) EXPECT_EQ(Text(NotesOf(text).at(0).reason), reason);
}

// As many as a report keeps, and the time that a linear walk takes: minutes otherwise.
TEST(SyntaxNotes, LongTextsGetABoundedNumber) {
  for (const char* const piece :
       {"{{n}}", "<<n/>", "<n/>>", "<<n", "<", "<n a=b ", "<<a format=\"<<a elem=\" ", "{", "${"}) {
    const NQ_TString text = S(Repeated(piece, Scaled(1'000'000)) + "/>");
    EXPECT_LE(NotesOf(text.StringView()).size(), 2 * TNameReport::kMostKept) << piece;
  }
}

}  // namespace
}  // namespace names_test
