#pragma once
#include <vector>
#include "TNameReport.h"
#include "text/Scan.h"
namespace templatenames {
struct TSyntaxNote {
  TNameProblem::TNameProblem_Kind kind;
  std::size_t begin = 0;
  std::size_t end = 0;
  NQ_TString reason;
  NQ_TString suggestion;
};
inline void NoteTokenSyntax(std::u16string_view, const TMarkers&, std::size_t, std::vector<TSyntaxNote>&) {}
inline void NoteTemplateSyntax(std::u16string_view, std::vector<TSyntaxNote>&) {}
}  // namespace templatenames
