// The problems of a report, for people and for programs.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "TNameReport.h"

/// "in the value of 'counting': <<nope/>>: there is no name 'nope'": one line, fit for a terminal.
std::string Sentence(const TNameProblem& problem);

/// A line for each failure, except for those that fail only because a limit had run out before: these are counted.
std::vector<std::string> FailureLines(const TNameReport& report);

/// All that is known of the problem; what it has not is left out. The places are those of the text that was resolved.
nlohmann::ordered_json JsonOf(const TNameProblem& problem, TNamePlaces& places);
