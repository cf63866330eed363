#pragma once

#include "coordinator/leaving/LeaveQuestion.h"
#include "coordinator/leaving/LeaveWait.h"

#include <string>

// What a wait to leave and the question before a shutdown say to people. Pure functions.

namespace cirrovane {

/// What is waited for: "Sleeps as soon as it is safe."; empty while nothing is.
std::string waitSentence(const LeaveStanding& standing);

/// Why the latest wait came to nothing; empty where it did not, and where the user ended it.
std::string outcomeSentence(const LeaveStanding& standing);

/// What the sheet before a shutdown says besides what is left; empty while nobody is asked.
std::string questionSentence(QuestionState state);

}  // namespace cirrovane
