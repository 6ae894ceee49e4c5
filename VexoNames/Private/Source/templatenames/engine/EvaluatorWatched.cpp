// The evaluators that log, report and check.
#include "engine/Evaluator.h"

#include "engine/EvaluatorCuts.h"
#include "engine/EvaluatorNotes.h"
#include "engine/EvaluatorSteps.h"
#include "engine/EvaluatorTokens.h"

namespace templatenames {

template class TEvaluator<TLogging>;
template class TEvaluator<TReporting>;
template class TEvaluator<TChecking>;

}  // namespace templatenames
