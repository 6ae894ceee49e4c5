#include "NQ_IInterface.h"

#include <cstring>
#include <ostream>

bool NQ_IInterface::HasInterface(const char* interfaceName) const {
  return std::strcmp(interfaceName, NQ_ClassName()) == 0;
}

std::ostream& operator<<(std::ostream& out, const NQ_IPrintable& printable) {
  printable.PrintOn(out);
  return out;
}
