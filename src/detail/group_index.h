// Finds the group of an id, whatever ids there are.
#ifndef WQ_STAT_DETAIL_GROUP_INDEX_H
#define WQ_STAT_DETAIL_GROUP_INDEX_H

#include "prefetch.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <vector>

namespace wq_lib::detail {

/**
 * Positions by id. Ids are the same when they compare equal, so 0 and -0 are; the first position entered for an id stays. NaN equals
 * nothing: it is never found and must not be entered.
 *
 * A hash table with open addressing and linear probing, in constant expected time. Ids that were made to collide can defeat any fixed hash:
 * one that finds no slot within a limit of probes goes into an ordered map, so that n ids take no more than n log n steps, whichever they
 * are.
 * @tparam Id double, or what compares and converts as one.
 */
template <typename Id = double>
class GroupIndex {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    static constexpr std::size_t mostProbes = 64;  // at a load of a half, few of a million ids take more (Knuth 1998, 6.4)

    GroupIndex() : slots(16) {}

    /** @return the position of the id; when it has none it is entered with the one given, and none is returned. */
    std::size_t findOrEnter(Id id, std::size_t position)
    {
        const std::size_t start = hash(static_cast<double>(id));
        const Slot& first = slots[start & (slots.size() - 1)];  // the size is a power of two
        if (first.id == id && first.position != none) return first.position;
        return findOrEnterBehind(start, id, position);
    }

    /** Has the processor fetch the slot of an id that is looked for soon. */
    void prefetchSlot(Id id) const { prefetchPlace(&slots[hash(static_cast<double>(id)) & (slots.size() - 1)]); }

private:
    struct Slot {
        Id id = 0.0;
        std::size_t position = none;
    };

    /** What findOrEnter does where the first slot does not hold the id: a function of its own, so that the short way is compiled into its
     * caller. */
    std::size_t findOrEnterBehind(std::size_t start, Id id, std::size_t position)
    {
        Slot* slot = slotOf(start, id);
        if (slot != nullptr && slot->position != none) return slot->position;
        if (!crowded.empty()) {
            const auto found = crowded.find(id);
            if (found != crowded.end()) return found->second;
        }
        if (2 * (entries + 1) > slots.size()) {
            grow();
            slot = slotOf(start, id);
        }
        enter(slot, id, position);
        return none;
    }

    /** The slot that holds the id, or the empty one where it belongs; nullptr when there is neither within the limit. */
    Slot* slotOf(std::size_t start, Id id)
    {
        for (std::size_t probe = 0; probe < mostProbes; ++probe) {
            Slot& slot = slots[(start + probe) & (slots.size() - 1)];
            if (slot.position == none || slot.id == id) return &slot;
        }
        return nullptr;
    }

    /** @param slot empty, or nullptr. */
    void enter(Slot* slot, Id id, std::size_t position)
    {
        if (slot == nullptr) {
            crowded.emplace(id, position);
        } else {
            *slot = {id, position};
            ++entries;
        }
    }

    void grow()
    {
        std::vector<Slot> before(2 * slots.size());
        before.swap(slots);
        entries = 0;
        for (const Slot& slot : before)
            if (slot.position != none) enter(slotOf(hash(static_cast<double>(slot.id)), slot.id), slot.id, slot.position);
    }

    /** Every bit of the id reaches every bit of the result (finaliser of SplitMix64, Steele, Lea and Flood 2014; the constants are
     * Stafford's, 2011). */
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
    std::size_t entries = 0;            // in slots
    std::map<Id, std::size_t> crowded;  // those that found no slot
};

}  // namespace wq_lib::detail

#endif
