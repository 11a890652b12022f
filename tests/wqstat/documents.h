// What the commands print with --json, read.
#pragma once

#include "commands.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <map>
#include <string>

namespace wq_test {

using Json = nlohmann::ordered_json;

inline Json documentOf(const Words& arguments)
{
    const Outcome outcome = run(with(arguments, {"--json", "--no-warnings"}));
    EXPECT_EQ(outcome.status, done) << outcome;
    EXPECT_EQ(outcome.errors, "");
    return Json::parse(outcome.output);
}

// A number, also one that is not finite; true is 1.
inline double numberOf(const Json& member)
{
    if (member.is_boolean()) return member.get<bool>() ? 1.0 : 0.0;
    if (member.is_number()) return member.get<double>();
    if (member.is_null()) return std::numeric_limits<double>::quiet_NaN();
    const std::map<std::string, double> texts = {{"NaN", std::numeric_limits<double>::quiet_NaN()},
                                                 {"Inf", std::numeric_limits<double>::infinity()},
                                                 {"-Inf", -std::numeric_limits<double>::infinity()}};
    return texts.at(member.get<std::string>());
}

}  // namespace wq_test
