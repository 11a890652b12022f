#include "drawn_ahead.h"

namespace wq_bench {

template <typename Number>
Number DrawnAhead<Number>::next()
{
    const Number number = numbers[place];
    place = (place + 1) & (numbers.size() - 1);
    return number;
}

template class DrawnAhead<unsigned int>;
template class DrawnAhead<double>;

std::unique_ptr<DrawnAhead<unsigned int>> handingOver(std::vector<unsigned int> numbers)
{
    return std::make_unique<DrawnAhead<unsigned int>>(std::move(numbers));
}

std::unique_ptr<DrawnAhead<double>> handingOver(std::vector<double> numbers)
{
    return std::make_unique<DrawnAhead<double>>(std::move(numbers));
}

}  // namespace wq_bench
