// What an iteration for a root visited, and the bisection between.
#ifndef WQ_STAT_DETAIL_ROOT_BRACKET_H
#define WQ_STAT_DETAIL_ROOT_BRACKET_H

namespace wq_lib::detail {

/** Encloses the x in (0, 1) at which a function crosses a level from below. */
class RootBracket {
public:
    /** Takes note of a point; those outside (0, 1) tell nothing. */
    void visit(double x, bool below)
    {
        if (!(x > 0.0 && x < 1.0)) return;
        if (below && x > lower) lower = x;
        if (!below && x < upper) upper = x;
    }

    /** @return the smallest double found on the level or above it, the next one towards the lower end being below. */
    template <typename IsBelow>
    double bisect(IsBelow&& isBelow)
    {
        for (;;) {
            const double middle = lower + (upper - lower) / 2.0;
            if (middle == lower || middle == upper) return upper;
            (isBelow(middle) ? lower : upper) = middle;
        }
    }

private:
    double lower = 0.0;  // the largest x visited that is below
    double upper = 1.0;  // the smallest x visited that is not
};

}  // namespace wq_lib::detail

#endif
