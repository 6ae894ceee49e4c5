#include "NQ_TBoxed.h"

#include <charconv>

#include "NQ_EException.h"

void NQ_TInt32::PrintOn(std::ostream& out) const { out << std::to_string(value_); }

void NQ_TBool::PrintOn(std::ostream& out) const { out << (value_ ? '1' : '0'); }

// The shortest text that reads back as the same number, whatever the stream's flags and locale are.
void NQ_TDouble::PrintOn(std::ostream& out) const {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, value_).ptr;
  out.write(text, end - text);
}

void NQ_TPointer::PrintOn(std::ostream& out) const { out << value_; }

void NQ_TPointer::NQ_Pack(NQ_IPacking&) const { nq::Throw(NQ_EException("A pointer cannot be packed")); }

void NQ_TPointer::NQ_Unpack(NQ_IUnpacking&) { nq::Throw(NQ_EException("A pointer cannot be unpacked")); }
