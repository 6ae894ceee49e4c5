// The evaluator that nobody watches. It has a file of its own: compiled together with the others, the compiler would no
// longer inline what makes it fast.
#include "engine/Evaluator.h"

#include "engine/EvaluatorCuts.h"
#include "engine/EvaluatorNotes.h"
#include "engine/EvaluatorSteps.h"
#include "engine/EvaluatorTokens.h"

namespace templatenames {

template class TEvaluator<TSilent>;

}  // namespace templatenames
