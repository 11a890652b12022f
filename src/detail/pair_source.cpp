#include "detail/pair_source.h"

#include <cstddef>
#include <cstring>

// Where objects are laid out by the Itanium C++ ABI, with plain addresses in their tables of virtual functions.
#if defined(__ELF__) && (defined(__x86_64__) || defined(__i386__) || defined(__aarch64__)) && !defined(__Fuchsia__)
#  define WQ_PLAIN_VIRTUAL_TABLES
#endif

namespace wq_lib::detail {

#ifdef WQ_PLAIN_VIRTUAL_TABLES

namespace {

using Address = const void*;

/**
 * The address that a virtual call of getDataPair jumps to. By the ABI (2.3, 2.5) an object begins with the address of its table, and a
 * pointer to a virtual member function holds the place in it: the offset, of which the processor's supplement may use the lowest bit as a
 * mark.
 */
Address targetOfGetDataPair(const BasicXyStatistics& sample)
{
    struct {
        std::ptrdiff_t place;
        std::ptrdiff_t adjustment;
    } member;
    const auto getDataPair = &BasicXyStatistics::getDataPair;
    static_assert(sizeof member == sizeof getDataPair);
    std::memcpy(&member, &getDataPair, sizeof member);
    const char* table;
    std::memcpy(&table, static_cast<const void*>(&sample), sizeof table);
    Address target;
    std::memcpy(&target, table + (member.place & ~std::ptrdiff_t{1}), sizeof target);
    return target;
}

/** Has a table of its own, as the classes of a host have, with the operation in it as they inherit it. */
struct Inheriting : BasicXyStatistics {};

// Read off as the library is loaded: making an object takes memory, which an analysis has no need of. Where one runs before (linked
// statically, in a constructor of the host's own), they are null, and the pairs are called for.
const Address targetWithin = targetOfGetDataPair(BasicXyStatistics());
const Address targetInherited = targetOfGetDataPair(Inheriting());

}  // namespace

// The same address is the same code, whatever class, compiler or library the table is of, with type information or without: no override has
// it. A table that names the inherited operation does it by its symbol, for which the dynamic linker has one address in all of a process:
// in a program at fixed addresses that of a stub in the program, elsewhere that of the operation. Only the table of the class itself may
// name the operation past its symbol; so there are two addresses to compare with. An inherited operation that had neither would be called
// for each pair: slower, with the same figures.
bool readsStoredPairs(const BasicXyStatistics& sample)
{
    const Address target = targetOfGetDataPair(sample);
    return target == targetWithin || target == targetInherited;
}

#else

bool readsStoredPairs(const BasicXyStatistics&) { return false; }

#endif

}  // namespace wq_lib::detail
