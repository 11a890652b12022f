// What a draw through a virtual call into a shared library takes at least, whatever the generator.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace wq_bench {

/** Hands over numbers that were drawn before, one a call, again and again. */
template <typename Number>
class DrawnAhead {
public:
    explicit DrawnAhead(std::vector<Number> drawn) : numbers(std::move(drawn)) {}
    virtual ~DrawnAhead() = default;
    DrawnAhead(const DrawnAhead&) = delete;
    DrawnAhead& operator=(const DrawnAhead&) = delete;

    virtual Number next();

private:
    std::vector<Number> numbers;
    std::size_t place = 0;
};

/** Made where the caller does not see the type, so that each number takes a virtual call. @param numbers 2^k of them. */
std::unique_ptr<DrawnAhead<unsigned int>> handingOver(std::vector<unsigned int> numbers);
std::unique_ptr<DrawnAhead<double>> handingOver(std::vector<double> numbers);

}  // namespace wq_bench
