// What a task hands to its names.
#pragma once

#include "NQ_TURL.h"
#include "Ticket/AT_TTicket.h"

namespace systemnames {

/// Null: not known.
struct TContext {
  NQ_TURL input;
  const AT_TTicket* ticket = nullptr;
  const NQ_TDict* job = nullptr;
  const NQ_TString* jobId = nullptr;
  const NQ_TDict* product = nullptr;
  unsigned int inputNumber = 1;
  bool createsParameters = true;  // at once; else when a template asks for one

  NQ_TString TaskName() const { return ticket == nullptr ? NQ_TString() : ticket->GetTaskName(); }
};

}  // namespace systemnames
