// Finds the group of an id in constant expected time.
#ifndef WQ_STAT_SRC_GROUP_INDEX_H
#define WQ_STAT_SRC_GROUP_INDEX_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace wq_lib::detail {

/**
 * Positions by id, in a table with open addressing. Ids are the same when they compare equal, so 0 and -0 are; the first
 * position entered for an id stays. NaN equals nothing: it is never found and must not be entered.
 */
class GroupIndex {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    GroupIndex() : slots(16) {}

    /** @return the position of the id; when it has none it is entered with the one given, and none is returned. */
    std::size_t findOrEnter(double id, std::size_t position)
    {
        if (2 * (entries + 1) > slots.size()) grow();
        Slot& slot = slotOf(id);
        if (slot.position != none) return slot.position;
        slot = {id, position};
        ++entries;
        return none;
    }

private:
    struct Slot {
        double id = 0.0;
        std::size_t position = none;
    };

    /** The slot that holds the id, or the empty one where it belongs. */
    Slot& slotOf(double id)
    {
        const std::size_t mask = slots.size() - 1;  // the size is a power of two
        std::size_t i = hash(id) & mask;
        while (slots[i].position != none && slots[i].id != id) i = (i + 1) & mask;
        return slots[i];
    }

    void grow()
    {
        std::vector<Slot> before(2 * slots.size());
        before.swap(slots);
        for (const Slot& slot : before)
            if (slot.position != none) slotOf(slot.id) = slot;
    }

    /** Every bit of the id reaches every bit of the result (finaliser of SplitMix64, Steele, Lea and Flood 2014). */
    static std::size_t hash(double id)
    {
        const double key = id == 0.0 ? 0.0 : id;  // -0 becomes 0
        std::uint64_t bits;
        std::memcpy(&bits, &key, sizeof bits);
        bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
        bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
        return static_cast<std::size_t>(bits ^ (bits >> 31));
    }

    std::vector<Slot> slots;
    std::size_t entries = 0;
};

}  // namespace wq_lib::detail

#endif
