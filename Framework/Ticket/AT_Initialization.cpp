#include "Ticket/AT_Initialization.h"

#include "Ticket/AT_TTicket.h"

bool __NQ_INITIALIZATION_FUNCTION_AT_Ticket__() {  // NOLINT(bugprone-reserved-identifier)
  AT_TTicket::NQ_ClassObject();
  return true;
}
