// An environment variable that a test sets.
#pragma once

#include <cstdlib>
#include <string>
#include <utility>

namespace wq_test {

// An environment variable for as long as the object lives.
class Variable {
public:
    Variable(std::string variable, const std::string& value) : name(std::move(variable))
    {
        if (const char* const old = std::getenv(name.c_str())) before = old;
        setenv(name.c_str(), value.c_str(), 1);
    }
    ~Variable() { setenv(name.c_str(), before.c_str(), 1); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    std::string name;
    std::string before;
};

}  // namespace wq_test
