// What the library prints, kept.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace wqstat {

/** While it lives, what is printed goes nowhere else. */
class CapturedOutput {
public:
    CapturedOutput() : output(std::cout.rdbuf(kept.rdbuf())) {}
    ~CapturedOutput() { std::cout.rdbuf(output); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    std::string text() const { return kept.str(); }

private:
    std::ostringstream kept;
    std::streambuf* output;
};

}  // namespace wqstat
