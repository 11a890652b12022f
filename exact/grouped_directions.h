// Rayleigh's test of directions that are grouped, where all their distributions over the classes can be looked at.
#pragma once

namespace wq_exact::detail {

/** @return whether n directions have at most 1 000 000 distributions over so many classes. */
bool canEnumerateDirections(double n, double classes) noexcept;

/**
 * P(z' >= z) where each direction falls into each class with the same probability: the sum of the multinomial probabilities of all
 * distributions that are as long; lengths that differ by rounding are equal. Throws std::bad_alloc.
 * @param n,classes of which canEnumerateDirections() is true; n from 1, classes from 3 on.
 */
double groupedUpperTail(double z, double n, double classes);

}  // namespace wq_exact::detail
