// What someone who mistyped a name may have meant.
#pragma once

#include <string>
#include <vector>

namespace wqstat {

/** "; did you mean NAME?" with the one of the names that the word is nearest to; empty where none is near. */
std::string didYouMean(const std::string& word, const std::vector<std::string>& names);

}  // namespace wqstat
