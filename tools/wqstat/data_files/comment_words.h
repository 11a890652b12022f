// What the comment of a data file says of its columns.
#pragma once

#include <string>

namespace wqstat {

/** The first line of a comment; empty when there is none. */
std::string firstLine(const std::string& comment);

/** The same for people: "weight (kg);height (m)" is "weight (kg) and height (m)". */
std::string readableComment(const std::string& comment);

/** What the two columns of a file of pairs are called; both empty where nobody has said. */
struct PairNames {
    std::string x;
    std::string y;
};

/** Of a comment that names both with a semicolon between them, as the data have it: "cars. Speed (mph);stopping distance (ft). 1920s". */
PairNames pairNames(const std::string& comment);

}  // namespace wqstat
