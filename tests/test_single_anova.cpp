// Single classification analysis of variance: gathering of groups, the table, its outputs.
#include <wq_stat/distributions.h>
#include <wq_stat/single_anova.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "../src/detail/group_index.h"
#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"

using namespace wq_lib;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using wq_test::contentOf;
using wq_test::golden;
using wq_test::printed;
using wq_test::TempFolder;

namespace {

using Pairs = std::vector<data_pair>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double levels[] = {0.1, 0.05, 0.025, 0.01};

const Pairs two = {{1, 10}, {1, 12}, {2, 20}, {2, 22}};
const Pairs mixed = {{1, 10}, {2, 20}, {1, 12}, {2, 22}, {3, 5}};

// Group g holds g + (7 j mod 11) / 4 for j = 0 ... size - 1: figures without rounding.
Pairs balanced(int groups, int size)
{
    Pairs pairs;
    for (int g = 1; g <= groups; ++g)
        for (int j = 0; j < size; ++j) pairs.push_back({double(g), g + (7 * j % 11) / 4.0});
    return pairs;
}

// Groups of the given sizes.
Pairs ofSizes(const std::vector<int>& sizes)
{
    Pairs pairs;
    for (std::size_t g = 0; g < sizes.size(); ++g)
        for (int j = 0; j < sizes[g]; ++j) pairs.push_back({double(g), double(j % 3)});
    return pairs;
}

// The constructed sets of Simon and Lesage (1989): c, then c - 0.1 and c + 0.1 in turn.
Pairs stiff(double offset, int repeats)
{
    Pairs pairs;
    double id = 0.0;
    for (const double tenths : {4, 3, 5, 3, 5, 3, 5, 3, 5}) {
        const double c = 10.0 * offset + tenths;
        id += 1.0;
        pairs.push_back({id, c / 10.0});
        for (int i = 0; i < repeats; ++i) {
            pairs.push_back({id, (c - 1.0) / 10.0});
            pairs.push_back({id, (c + 1.0) / 10.0});
        }
    }
    return pairs;
}

SingleAnova gathered(const Pairs& pairs)
{
    SingleAnova anova;
    anova.copyFrom(pairs);
    anova.createSeries();
    return anova;
}

SingleAnova analysed(const Pairs& pairs, double significance = 0.05)
{
    SingleAnova anova = gathered(pairs);
    anova.setSignificance(significance);
    EXPECT_TRUE(anova.analyse());
    return anova;
}

std::string report(SingleAnova& anova)
{
    return printed([&] { anova.reportConsole(); });
}

std::string listing(SingleAnova& anova, std::size_t first, std::size_t last)
{
    return printed([&] { anova.listData(first, last); });
}

double fromBits(std::uint64_t bits)
{
    double x;
    std::memcpy(&x, &bits, sizeof x);
    return x;
}

}  // namespace

TEST(SingleAnova, newObject)
{
    const SingleAnova anova;
    EXPECT_EQ(anova.getModel(), 2);
    EXPECT_EQ(anova.getGroupsCreated(), 0u);
    EXPECT_TRUE(anova.isEqual());
    EXPECT_EQ(anova.getSignificance(), 0.05);
    EXPECT_THAT(anova.getGroups(), IsEmpty());
    EXPECT_EQ(anova.getGroupCount(), 0u);
    EXPECT_EQ(anova.getTotalObservations(), 0);
    for (const anova_source* row : {&anova.getTotal(), &anova.getAmong(), &anova.getWithin()}) {
        EXPECT_EQ(row->df, 0u);
        for (const double value : {row->ss, row->ms, row->fs, row->expectedMs}) EXPECT_SAME_BITS(value, 0.0);
    }
    for (const double value : {anova.getGrandTotal(), anova.getCorrectionTerm(), anova.getSumSquaredObservations(),
                               anova.getSumSquaredGroupTotals(), anova.getSumSquaredSampleSizes(), anova.getMeanSampleSize(), anova.getN0(),
                               anova.getVarianceComponent(), anova.getVarianceComponentRatio()})
        EXPECT_SAME_BITS(value, 0.0);
}

TEST(SingleAnova, settings)
{
    SingleAnova anova;
    anova.setModel(1);
    EXPECT_EQ(anova.getModel(), 1);
    anova.setEqual(false);
    EXPECT_FALSE(anova.isEqual());
    anova.setGroups(7);
    anova.increaseGroups();
    EXPECT_EQ(anova.getGroupsCreated(), 8u);
    anova.createGroup(3);
    EXPECT_EQ(anova.getGroupsCreated(), 9u);
}

TEST(SingleAnova, findGroupId)
{
    const struct {
        const char* shows;
        double key, id;
        bool found;
    } rows[] = {
        // clang-format off
        {"the same number", 1.5, 1.5, true},
        {"the next number", 1.0, std::nextafter(1.0, 2.0), false},
        {"-0 and 0 are one id", -0.0, 0.0, true},
        {"NaN matches nothing", NaN, NaN, false},
        {"infinity", infinity, infinity, true},
        {"the two infinities", infinity, -infinity, false},
        // clang-format on
    };
    for (const auto& row : rows) {
        anova_group key, group;
        key.id = row.key;
        group.id = row.id;
        EXPECT_EQ(find_group_id(key)(group), row.found) << row.shows;
    }
}

// ---------------------------------------------------------------- getGroup, createGroup

TEST(SingleAnova, createGroupAppendsWhateverExists)
{
    SingleAnova anova;
    const auto created = anova.createGroup(4.5);
    EXPECT_EQ(created->id, 4.5);
    EXPECT_EQ(created->n, 0);
    EXPECT_THAT(created->observations, IsEmpty());
    for (const double value : {created->sum, created->sumSquaredObservations, created->sumOfSquares, created->variance})
        EXPECT_SAME_BITS(value, 0.0);

    anova.createGroup(7);
    const auto again = anova.createGroup(4.5);
    ASSERT_EQ(anova.getGroups().size(), 3u);
    EXPECT_EQ(&*again, &anova.getGroups()[2]) << "the new group is the last one";
    EXPECT_EQ(again->id, 4.5);
    EXPECT_EQ(&*anova.getGroup(4.5), &anova.getGroups()[0]) << "the first of two groups with one id is found";
    EXPECT_EQ(anova.getGroupsCreated(), 3u);
}

TEST(SingleAnova, getGroup)
{
    SingleAnova anova;
    const auto beginning = [&] { return &anova.getGroups()[0]; };
    EXPECT_TRUE(anova.getGroup(1) == anova.getGroup(2)) << "both are the end of an empty list";
    for (const double id : {1.0, 0.0, NaN, infinity}) anova.createGroup(id);
    const auto end = anova.getGroup(17);
    EXPECT_EQ(end - anova.getGroup(1), 4);
    EXPECT_EQ(&*anova.getGroup(-0.0), beginning() + 1);
    EXPECT_EQ(&*anova.getGroup(infinity), beginning() + 3);
    EXPECT_TRUE(anova.getGroup(NaN) == end) << "NaN is never found";
    EXPECT_TRUE(anova.getGroup(-infinity) == end);
}

// ---------------------------------------------------------------- createSeries

TEST(SingleAnova, createSeriesKeepsTheOrderOfFirstOccurrence)
{
    const SingleAnova anova = gathered(mixed);
    const auto& groups = anova.getGroups();
    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(groups[0].id, 1.0);
    EXPECT_EQ(groups[1].id, 2.0);
    EXPECT_EQ(groups[2].id, 3.0);
    EXPECT_THAT(groups[0].observations, ElementsAre(10, 12));
    EXPECT_THAT(groups[1].observations, ElementsAre(20, 22));
    EXPECT_THAT(groups[2].observations, ElementsAre(5));
    EXPECT_EQ(anova.getGroupsCreated(), 3u);
    EXPECT_EQ(anova.getGroupCount(), 0u) << "counted by analyse()";
}

TEST(SingleAnova, createSeriesWithoutPairs)
{
    SingleAnova anova;
    EXPECT_FALSE(anova.createSeries());
    EXPECT_THAT(anova.getGroups(), IsEmpty());
    EXPECT_EQ(anova.getGroupsCreated(), 0u);
    anova.add(1, 2);
    EXPECT_TRUE(anova.createSeries());
}

TEST(SingleAnova, createSeriesTellsIdsApart)
{
    const struct {
        const char* shows;
        std::vector<double> ids;
        std::size_t groups;
    } rows[] = {
        {"1 and 1.0000000001", {1.0, 1.0000000001}, 2},
        {"neighbouring numbers", {1.0, std::nextafter(1.0, 2.0), 1.0}, 2},
        {"two NaN", {NaN, NaN}, 2},
        {"NaN of either sign", {NaN, -NaN, NaN}, 3},
        {"0 and -0", {0.0, -0.0, 0.0}, 1},
        {"both infinities", {infinity, -infinity, infinity}, 2},
        {"the smallest number and 0", {5e-324, 0.0, -5e-324}, 3},
    };
    for (const auto& row : rows) {
        SingleAnova anova;
        for (const double id : row.ids) anova.add(id, 1);
        anova.createSeries();
        EXPECT_EQ(anova.getGroups().size(), row.groups) << row.shows;
        EXPECT_SAME_BITS(anova.getGroups()[0].id, row.ids[0]);
    }
}

TEST(SingleAnova, createSeriesTwiceAppendsEveryObservationAgain)
{
    SingleAnova anova = gathered(mixed);
    anova.createSeries();
    ASSERT_EQ(anova.getGroups().size(), 3u);
    EXPECT_THAT(anova.getGroups()[0].observations, ElementsAre(10, 12, 10, 12));
    EXPECT_THAT(anova.getGroups()[2].observations, ElementsAre(5, 5));
}

TEST(SingleAnova, createSeriesAgainAndAgainMovesObservationsFewTimes)
{
    SingleAnova anova;
    anova.add(1.0, 2.0);
    int moves = 0;
    for (int i = 0; i < 1000; ++i) {
        const std::size_t before = i == 0 ? 0 : anova.getGroups()[0].observations.capacity();
        anova.createSeries();
        if (anova.getGroups()[0].observations.capacity() != before) ++moves;
    }
    EXPECT_EQ(anova.getGroups()[0].observations.size(), 1000u);
    EXPECT_LE(moves, 11);
}

TEST(SingleAnova, createSeriesTakesAllPairsWhateverTheDataRange)
{
    SingleAnova anova;
    anova.copyFrom(mixed);
    anova.setHead(0.4);
    anova.setTail(0.4);
    anova.setDataStart(2);
    anova.setDataEnd(3);
    EXPECT_TRUE(anova.createSeries());
    EXPECT_EQ(anova.getGroups().size(), 3u);
    EXPECT_TRUE(anova.analyse());
    EXPECT_EQ(anova.getTotalObservations(), 5);
}

TEST(SingleAnova, createSeriesSeesGroupsThatWereCreated)
{
    SingleAnova anova;
    for (const double id : {2.0, 1.0, 2.0}) anova.createGroup(id);
    anova.copyFrom(mixed);
    anova.createSeries();
    const auto& groups = anova.getGroups();
    ASSERT_EQ(groups.size(), 4u);
    EXPECT_THAT(groups[0].observations, ElementsAre(20, 22));
    EXPECT_THAT(groups[1].observations, ElementsAre(10, 12));
    EXPECT_THAT(groups[2].observations, IsEmpty()) << "the second group with id 2 is never found";
    EXPECT_THAT(groups[3].observations, ElementsAre(5));
}

namespace {

// The groups by the plain linear search over the list.
struct LinearSearch {
    std::vector<anova_group> groups;

    void create(double id)
    {
        groups.emplace_back();
        groups.back().id = id;
    }
    void gather(const Pairs& pairs)
    {
        for (const data_pair& pair : pairs) {
            std::size_t i = 0;
            while (i < groups.size() && !(groups[i].id == pair.x)) ++i;
            if (i == groups.size()) create(pair.x);
            groups[i].observations.push_back(pair.y);
        }
    }
};

void expectSameGroups(const std::vector<anova_group>& found, const std::vector<anova_group>& expected)
{
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        ASSERT_TRUE(wq_test::sameBits(found[i].id, expected[i].id)) << "group " << i << ": " << found[i].id << ", not " << expected[i].id;
        ASSERT_EQ(found[i].observations, expected[i].observations) << "group " << i;
    }
}

// Exposes the group list, which derived classes may change as they like.
class OwnGroups : public SingleAnova {
public:
    std::vector<anova_group>& list() { return groups; }
};

using Ids = std::vector<double>;

/** What x was before x ^= x >> shift. */
std::uint64_t withoutShift(std::uint64_t x, int shift)
{
    std::uint64_t before = x;
    for (int known = shift; known < 64; known += shift) before = x ^ (before >> shift);
    return before;
}

/** The bits whose hash (finaliser of SplitMix64) is the given one: each of its steps can be inverted. */
std::uint64_t bitsOfHash(std::uint64_t hash)
{
    std::uint64_t bits = withoutShift(hash, 31) * 0x319642B2D24D8EC3u;  // times 0x94D049BB133111EB it is 1, modulo 2^64
    bits = withoutShift(bits, 27) * 0x96DE1B173F119089u;                // times 0xBF58476D1CE4E5B9
    return withoutShift(bits, 30);
}

/** Number i of ids whose hashes end in the same 24 bits, so that they start at the same slot of a table of up to 2^24. */
double collidingId(std::uint64_t i)
{
    for (std::uint64_t attempt = 0;; ++attempt) {
        const double id = fromBits(bitsOfHash((16 * i + attempt) << 24 | 0xBAD));
        if (!std::isnan(id) && id != 0.0) return id;
    }
}

// Numbers that hash tables find alike: they differ in the named bits only.
const std::pair<const char*, double (*)(std::uint64_t)> families[] = {
    {"the integers", [](std::uint64_t i) { return double(i); }},
    {"negative integers", [](std::uint64_t i) { return -double(i); }},
    {"multiples of 2^40: low bits all 0", [](std::uint64_t i) { return std::ldexp(double(i), 40); }},
    {"multiples of 2^1000", [](std::uint64_t i) { return std::ldexp(double(i), 1000); }},
    {"multiples of the smallest number: high bits all 0", [](std::uint64_t i) { return fromBits(i); }},
    {"neighbours of 1: the lowest bits only", [](std::uint64_t i) { return 1.0 + double(i) * 0x1p-52; }},
    {"bits 32 to 48 only", [](std::uint64_t i) { return fromBits(i << 32 | 0x12345678u); }},
    {"the highest bits only", [](std::uint64_t i) { return fromBits((i % 65504) << 47 | 1u); }},  // from 65504 on NaN
    {"odd multiples of a large odd number", [](std::uint64_t i) { return fromBits((2 * i + 1) * 0x9E3779B97F4A7C15u >> 2); }},
    {"tenths", [](std::uint64_t i) { return double(i) / 10.0; }},
    {"made to collide", collidingId},
};

}  // namespace

TEST(SingleAnova, createSeriesGivesTheGroupsOfTheLinearSearch)
{
    std::mt19937_64 random(20240605);
    // clang-format off
    const double special[] = {0.0, -0.0, NaN, -NaN, infinity, -infinity, 5e-324, -5e-324, 1.0, std::nextafter(1.0, 2.0), 1.0000000001,
                              1.7976931348623157e308, -1.7976931348623157e308, fromBits(0x7FF0000000000001u), 0.1, 1e-300};
    // clang-format on
    for (int sequence = 0; sequence < 400; ++sequence) {
        SCOPED_TRACE("sequence " + std::to_string(sequence));
        // ids of one sequence: few or many, special, alike or any bits at all
        const auto pool = static_cast<std::size_t>(1 + random() % (sequence % 3 == 0 ? 5 : 200));
        const auto& family = families[random() % std::size(families)];
        const auto draw = [&]() -> double {
            switch (random() % 4) {
            case 0:
                return special[random() % std::size(special)];
            case 1:
                return sequence % 2 == 0 ? fromBits(random()) : double(random() % pool);
            default:
                return family.second(random() % pool);
            }
        };

        OwnGroups anova;
        LinearSearch expected;
        Pairs held;
        const std::size_t rounds = 1 + random() % 4;
        for (std::size_t round = 0; round < rounds; ++round) {
            for (std::size_t i = random() % 4; i > 0; --i) {  // empty groups, ids twice among them
                const double id = draw();
                anova.createGroup(id);
                expected.create(id);
            }
            if (random() % 3 == 0 && !expected.groups.empty()) {  // a host renames a group through its iterator
                const auto i = static_cast<std::size_t>(random() % expected.groups.size());
                const double id = draw(), old = expected.groups[i].id;
                const auto first = std::find_if(expected.groups.begin(), expected.groups.end(), find_group_id(expected.groups[i]));
                const auto found = anova.getGroup(old);
                if (first == expected.groups.end()) {
                    EXPECT_TRUE(found == anova.list().end());
                } else {
                    first->id = id;
                    found->id = id;
                }
            }
            if (random() % 5 == 0 && expected.groups.size() > 1) {  // a derived class throws groups out
                expected.groups.erase(expected.groups.begin());
                anova.list().erase(anova.list().begin());
            }
            for (std::uint64_t i = random() % 300; i > 0; --i) {
                held.push_back({draw(), double(random() % 1000)});
                anova.add(held.back().x, held.back().y);
            }
            EXPECT_EQ(anova.createSeries(), !held.empty());
            expected.gather(held);
            expectSameGroups(anova.getGroups(), expected.groups);
            if (HasFailure()) return;
        }
    }
}

TEST(SingleAnova, createSeriesOfManyGroups)  // 10^5, for which a linear search, 10^10 comparisons, would not end within the runner's limit
{
    constexpr std::uint64_t count = 100000;
    for (const auto& family : families) {
        SCOPED_TRACE(family.first);
        std::vector<double> ids;
        for (std::uint64_t i = 0; i < count; ++i) ids.push_back(family.second(i + 1));
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        const std::size_t n = ids.size();
        ASSERT_GT(n, 30000u);

        SingleAnova anova;
        for (std::size_t i = 0; i < n; ++i) anova.add(ids[i], double(i));
        for (std::size_t i = n; i-- > 0;) anova.add(ids[i], -double(i));
        anova.createSeries();
        ASSERT_EQ(anova.getGroups().size(), n);
        for (std::size_t i = 0; i < n; ++i) {
            const anova_group& group = anova.getGroups()[i];
            ASSERT_EQ(group.id, ids[i]);
            ASSERT_THAT(group.observations, ElementsAre(double(i), -double(i)));
        }
    }
}

/** An id that counts how often it is compared. */
struct CountedId {
    double value = 0.0;
    static inline std::uint64_t comparisons = 0;

    CountedId(double id) : value(id) {}
    explicit operator double() const { return value; }
    friend bool operator==(CountedId a, CountedId b) { return ++comparisons, a.value == b.value; }
    friend bool operator<(CountedId a, CountedId b) { return ++comparisons, a.value < b.value; }
};

TEST(SingleAnova, groupsAreFoundInNLogNComparisonsWhicheverTheIds)
{
    using Index = wq_lib::detail::GroupIndex<CountedId>;
    for (const auto& family : families) {
        for (const std::size_t count : {1000u, 10000u, 60000u}) {
            Index index;
            CountedId::comparisons = 0;
            for (std::size_t i = 1; i <= count; ++i) ASSERT_EQ(index.findOrEnter(family.second(i), i), Index::none) << family.first;
            for (std::size_t i = 1; i <= count; ++i) ASSERT_EQ(index.findOrEnter(family.second(i), 0), i) << family.first;
            // Per call the probes, and two walks down a red-black tree, which is at most 2 log2(n + 1) deep; in all twice the ids move to
            // larger tables.
            const double treeDepth = 2.0 * std::log2(static_cast<double>(count) + 1.0) + 2.0;
            const double probes = static_cast<double>(Index::mostProbes);
            EXPECT_LE(static_cast<double>(CountedId::comparisons), 2.0 * static_cast<double>(count) * (2.0 * probes + 2.0 * treeDepth))
                << family.first << ", " << count << " ids";
        }
    }
}

TEST(SingleAnova, createSeriesOfManyNaN)
{
    SingleAnova anova;
    for (std::uint64_t i = 0; i < 100000; ++i) anova.add(fromBits(0x7FF8000000000000u | i), double(i));
    anova.createSeries();
    ASSERT_EQ(anova.getGroups().size(), 100000u);
    for (std::size_t i = 0; i < 100000; ++i) ASSERT_THAT(anova.getGroups()[i].observations, ElementsAre(double(i)));
}

TEST(SingleAnova, createSeriesBehindManyCreatedGroups)
{
    SingleAnova anova;
    for (int i = 0; i < 100000; ++i) anova.createGroup(i / 2);  // every id twice
    for (int i = 49999; i >= 0; --i) anova.add(i, i);
    anova.createSeries();
    ASSERT_EQ(anova.getGroups().size(), 100000u);
    for (std::size_t i = 0; i < 100000; ++i) ASSERT_EQ(anova.getGroups()[i].observations.size(), i % 2 == 0 ? 1u : 0u) << i;
}

// ---------------------------------------------------------------- analyse

TEST(SingleAnova, tableOfTwoGroups)  // all figures by hand, none rounded
{
    const SingleAnova anova = analysed(two);
    EXPECT_EQ(anova.getGroupCount(), 2u);
    EXPECT_EQ(anova.getTotalObservations(), 4);
    EXPECT_SAME_BITS(anova.getGrandTotal(), 64.0);
    EXPECT_SAME_BITS(anova.getCorrectionTerm(), 1024.0);          // 64^2 / 4
    EXPECT_SAME_BITS(anova.getSumSquaredObservations(), 1128.0);  // 100 + 144 + 400 + 484
    EXPECT_SAME_BITS(anova.getSumSquaredGroupTotals(), 1124.0);   // 22^2 / 2 + 42^2 / 2
    EXPECT_SAME_BITS(anova.getSumSquaredSampleSizes(), 8.0);
    EXPECT_EQ(anova.getTotal().df, 3u);
    EXPECT_SAME_BITS(anova.getTotal().ss, 104.0);
    EXPECT_EQ(anova.getAmong().df, 1u);
    EXPECT_SAME_BITS(anova.getAmong().ss, 100.0);
    EXPECT_SAME_BITS(anova.getAmong().ms, 100.0);
    EXPECT_SAME_BITS(anova.getAmong().fs, 50.0);
    EXPECT_SAME_BITS(anova.getAmong().expectedMs, 51.0);  // 49 + 2: n0 is not in it
    EXPECT_EQ(anova.getWithin().df, 2u);
    EXPECT_SAME_BITS(anova.getWithin().ss, 4.0);
    EXPECT_SAME_BITS(anova.getWithin().ms, 2.0);
    EXPECT_SAME_BITS(anova.getWithin().expectedMs, 2.0);
    EXPECT_SAME_BITS(anova.getMeanSampleSize(), 2.0);
    EXPECT_SAME_BITS(anova.getN0(), 2.0);                  // (4 - 8/4) / (2 - 1)
    EXPECT_SAME_BITS(anova.getVarianceComponent(), 49.0);  // (100 - 2) / 2
    EXPECT_SAME_BITS(anova.getVarianceComponentRatio(), 49.0 / 51.0);
    const anova_group& group = anova.getGroups()[1];
    EXPECT_EQ(group.n, 2);
    EXPECT_SAME_BITS(group.sum, 42.0);
    EXPECT_SAME_BITS(group.mean, 21.0);
    EXPECT_SAME_BITS(group.sumSquaredObservations, 884.0);
    EXPECT_SAME_BITS(group.sumOfSquares, 2.0);
    EXPECT_SAME_BITS(group.variance, 2.0);
}

TEST(SingleAnova, tableOfUnequalGroups)  // {10, 12}, {20, 22}, {5} by hand
{
    const SingleAnova anova = analysed(mixed);
    EXPECT_EQ(anova.getAmong().df, 2u);
    EXPECT_EQ(anova.getWithin().df, 2u);
    EXPECT_EQ(anova.getTotal().df, 4u);
    EXPECT_SAME_BITS(anova.getSumSquaredGroupTotals(), 1149.0);  // 484/2 + 1764/2 + 25/1
    EXPECT_NEAR(anova.getCorrectionTerm(), 952.2, 1e-12);        // 69^2 / 5
    EXPECT_NEAR(anova.getAmong().ss, 196.8, 1e-12);
    EXPECT_NEAR(anova.getWithin().ss, 4.0, 1e-12);
    EXPECT_NEAR(anova.getMeanSampleSize(), 5.0 / 3.0, 1e-15);
    EXPECT_NEAR(anova.getN0(), 1.6, 1e-15);                   // (5 - 9/5) / 2: a double quotient
    EXPECT_NEAR(anova.getVarianceComponent(), 60.25, 1e-12);  // (98.4 - 2) / 1.6
    EXPECT_NEAR(anova.getAmong().expectedMs, 62.25, 1e-12);
    EXPECT_SAME_BITS(anova.getGroups()[2].variance, 0.0);  // of one observation
}

TEST(SingleAnova, tableAgreesWithTheTextbook)  // sums of squares from the deviations themselves, in long double
{
    std::mt19937 random(7);
    for (int repeat = 0; repeat < 200; ++repeat) {
        const int groups = 2 + int(random() % 9);
        Pairs pairs;
        long double grand = 0.0L, within = 0.0L, among = 0.0L, squaredSizes = 0.0L;
        std::vector<std::vector<double>> values(static_cast<std::size_t>(groups));
        for (auto& group : values)
            for (auto j = 2 + random() % 30; j > 0; --j) group.push_back(double(random() % 2000) / 16.0);
        for (std::size_t g = 0; g < values.size(); ++g)
            for (const double y : values[g]) pairs.push_back({double(g), y});
        for (const data_pair& pair : pairs) grand += pair.y;
        const long double N = pairs.size(), a = groups, mean = grand / N;
        for (const auto& group : values) {
            const long double n = group.size();
            long double sum = 0.0L;
            for (const double y : group) sum += y;
            for (const double y : group) within += (y - sum / n) * (y - sum / n);
            among += n * (sum / n - mean) * (sum / n - mean);
            squaredSizes += n * n;
        }
        const long double n0 = (N - squaredSizes / N) / (a - 1), msAmong = among / (a - 1), msWithin = within / (N - a);

        const SingleAnova anova = analysed(pairs);
        const auto near = [](double value, long double expected) {
            EXPECT_NEAR(value, double(expected), 1e-9 * std::fabs(double(expected)) + 1e-7);
        };
        EXPECT_EQ(anova.getTotalObservations(), std::int64_t(pairs.size()));
        EXPECT_EQ(anova.getGroupCount(), std::size_t(groups));
        EXPECT_EQ(anova.getAmong().df + anova.getWithin().df, anova.getTotal().df);
        near(anova.getAmong().ss, among);
        near(anova.getWithin().ss, within);
        near(anova.getTotal().ss, among + within);
        near(anova.getAmong().fs, msAmong / msWithin);
        near(anova.getN0(), n0);
        near(anova.getMeanSampleSize(), N / a);
        near(anova.getVarianceComponent(), (msAmong - msWithin) / n0);
        near(anova.getAmong().expectedMs, (msAmong - msWithin) / n0 + msWithin);
        near(anova.getVarianceComponentRatio(), (msAmong - msWithin) / n0 / ((msAmong - msWithin) / n0 + msWithin));
    }
}

TEST(SingleAnova, secondAnalysisDoublesTheGroupsAndLeavesTheTable)
{
    for (const Pairs& pairs : {two, mixed, balanced(4, 7)}) {
        SingleAnova anova = analysed(pairs);
        const SingleAnova once = anova;
        EXPECT_TRUE(anova.analyse());
        for (std::size_t i = 0; i < once.getGroups().size(); ++i) {
            const anova_group &first = once.getGroups()[i], &second = anova.getGroups()[i];
            // the same deviations added once more to the sum
            EXPECT_NEAR(second.sumOfSquares, 2.0 * first.sumOfSquares, 1e-13 * first.sumOfSquares);
            EXPECT_NEAR(second.variance, 2.0 * first.variance, 1e-13 * first.variance);
            EXPECT_EQ(second.n, first.n);
            EXPECT_SAME_BITS(second.mean, first.mean);
            EXPECT_SAME_BITS(second.sum, first.sum);
            EXPECT_SAME_BITS(second.sumSquaredObservations, first.sumSquaredObservations);
        }
        SingleAnova copy = once;
        EXPECT_EQ(report(anova), report(copy));
        EXPECT_SAME_BITS(anova.getTotal().ss, once.getTotal().ss);
        EXPECT_SAME_BITS(anova.getAmong().fs, once.getAmong().fs);
        EXPECT_SAME_BITS(anova.getVarianceComponent(), once.getVarianceComponent());
        EXPECT_SAME_BITS(anova.getN0(), once.getN0());
    }
}

TEST(SingleAnova, resetAnova)
{
    for (const bool throughResetResult : {true, false}) {
        SingleAnova anova = analysed(mixed);
        const SingleAnova before = anova;
        if (throughResetResult)
            anova.resetResult();
        else
            anova.resetAnova();
        EXPECT_EQ(anova.getGroupCount(), 0u);
        EXPECT_EQ(anova.getTotalObservations(), 0);
        for (const double value : {anova.getGrandTotal(), anova.getCorrectionTerm(), anova.getSumSquaredObservations(),
                                   anova.getSumSquaredGroupTotals(), anova.getSumSquaredSampleSizes(), anova.getVarianceComponentRatio(),
                                   anova.getTotal().ss, anova.getAmong().ss, anova.getAmong().ms, anova.getAmong().fs,
                                   anova.getAmong().expectedMs, anova.getWithin().ss, anova.getWithin().ms, anova.getWithin().expectedMs})
            EXPECT_SAME_BITS(value, 0.0);
        EXPECT_EQ(anova.getTotal().df + anova.getAmong().df + anova.getWithin().df, 0u);
        // these keep what they had
        EXPECT_SAME_BITS(anova.getMeanSampleSize(), before.getMeanSampleSize());
        EXPECT_SAME_BITS(anova.getN0(), before.getN0());
        EXPECT_SAME_BITS(anova.getVarianceComponent(), before.getVarianceComponent());
        EXPECT_EQ(anova.getGroups().size(), 3u);
        EXPECT_SAME_BITS(anova.getGroups()[0].sumOfSquares, 2.0);
        EXPECT_EQ(anova.isEqual(), before.isEqual());
        EXPECT_EQ(anova.getGroupsCreated(), 3u);
    }
}

TEST(SingleAnova, resetResultLeavesThePairedRecord)
{
    SingleAnova anova = gathered(two);
    ASSERT_TRUE(anova.BasicXyStatistics::analyse());  // through the virtual resetResult(), which does not reset it
    EXPECT_EQ(anova.getXyResult().x.n, 4u);
    anova.resetResult();
    EXPECT_EQ(anova.getXyResult().x.n, 4u);
    EXPECT_SAME_BITS(anova.getXyResult().y.sum, 64.0);
    anova.analyse();
    EXPECT_SAME_BITS(anova.getXyResult().y.sum, 64.0) << "neither computed nor used by the Anova";
}

TEST(SingleAnova, equal)
{
    const struct {
        const char* shows;
        std::vector<int> sizes;
        bool equal;
    } rows[] = {
        {"no group", {}, false},
        {"one group", {5}, false},
        {"one group of one", {1}, false},
        {"two groups of one", {1, 1}, true},
        {"three groups of five", {5, 5, 5}, true},
        {"the last one smaller", {5, 5, 4}, false},
        {"the first one larger", {6, 5, 5}, false},
        {"very unequal", {1, 200}, false},
        {"one observation more in one of many", std::vector<int>(50, 1000), true},
    };
    for (const auto& row : rows) EXPECT_EQ(analysed(ofSizes(row.sizes)).isEqual(), row.equal) << row.shows;

    std::vector<int> sizes(50, 1000);
    ++sizes[17];
    EXPECT_FALSE(analysed(ofSizes(sizes)).isEqual()) << "one more observation in one of 50 groups of 1000";
}

TEST(SingleAnova, equalOfEmptyGroups)
{
    SingleAnova anova;
    anova.createGroup(1);
    anova.analyse();
    EXPECT_FALSE(anova.isEqual());
    anova.createGroup(2);
    anova.analyse();
    EXPECT_TRUE(anova.isEqual()) << "two groups of the same size, 0";
    anova.add(1, 1);
    anova.createSeries();
    anova.analyse();
    EXPECT_FALSE(anova.isEqual());
}

TEST(SingleAnova, equalOfEveryBalancedDesign)
{
    int inexact = 0;
    for (int a = 2; a <= 120; ++a) {
        for (const int n : {1, 2, 3, 4, 5, 7, 10, 13, 29, 64, 100, 127}) {
            const SingleAnova anova = analysed(ofSizes(std::vector<int>(static_cast<std::size_t>(a), n)));
            EXPECT_TRUE(anova.isEqual()) << a << " groups of " << n;
            if (anova.getN0() != anova.getMeanSampleSize()) ++inexact;  // the last bit differs, as for 50, 76 or 78 groups

            std::vector<int> sizes(static_cast<std::size_t>(a), n);
            ++sizes.back();
            EXPECT_FALSE(analysed(ofSizes(sizes)).isEqual()) << a << " groups of " << n << ", one of them larger";
        }
    }
    EXPECT_GT(inexact, 0) << "the rule of equal sizes is not needed here";
}

TEST(SingleAnova, equalIsSetByEveryAnalysis)
{
    SingleAnova anova = gathered(two);
    anova.setEqual(false);
    anova.analyse();
    EXPECT_TRUE(anova.isEqual());
    anova.getGroup(1)->observations.push_back(3);
    anova.analyse();
    EXPECT_FALSE(anova.isEqual());
}

TEST(SingleAnova, degenerateDesigns)
{
    const std::size_t wrapped = static_cast<std::size_t>(-1);
    {
        const SingleAnova anova = analysed({});
        EXPECT_EQ(anova.getGroupCount(), 0u);
        EXPECT_EQ(anova.getTotalObservations(), 0);
        EXPECT_EQ(anova.getAmong().df, wrapped);
        EXPECT_EQ(anova.getTotal().df, wrapped);
        EXPECT_EQ(anova.getWithin().df, 0u);
        for (const double value : {anova.getAmong().ms, anova.getAmong().fs, anova.getWithin().ms, anova.getN0(), anova.getMeanSampleSize(),
                                   anova.getVarianceComponent()})
            EXPECT_TRUE(std::isnan(value));
    }
    {
        const SingleAnova anova = analysed({{7, 1.5}, {7, 2.5}, {7, 4}});
        EXPECT_EQ(anova.getAmong().df, 0u);
        EXPECT_TRUE(std::isnan(anova.getAmong().ms)) << "0 / 0";
        EXPECT_TRUE(std::isnan(anova.getN0())) << "0 times infinity";
        EXPECT_SAME_BITS(anova.getMeanSampleSize(), 3.0);
        EXPECT_EQ(anova.getWithin().df, 2u);
        EXPECT_NEAR(anova.getWithin().ss, 19.0 / 6.0, 1e-14);
    }
    {
        const SingleAnova anova = analysed({{1, 2}, {2, 4}, {3, 3}});
        for (const anova_group& group : anova.getGroups()) EXPECT_SAME_BITS(group.variance, 0.0);
        EXPECT_EQ(anova.getWithin().df, 0u);
        EXPECT_TRUE(std::isnan(anova.getWithin().ms));
        EXPECT_TRUE(anova.isEqual());
        EXPECT_SAME_BITS(anova.getN0(), 1.0);
    }
    {
        SingleAnova anova;
        anova.createGroup(9);
        anova.copyFrom(two);
        anova.createSeries();
        anova.analyse();
        EXPECT_EQ(anova.getGroupCount(), 3u);
        EXPECT_EQ(anova.getGroups()[0].n, 0);
        EXPECT_TRUE(std::isnan(anova.getGroups()[0].mean)) << "0 / 0";
        EXPECT_SAME_BITS(anova.getGroups()[0].variance, 0.0);
        EXPECT_TRUE(std::isnan(anova.getSumSquaredGroupTotals()));
        EXPECT_SAME_BITS(anova.getTotal().ss, 104.0);
    }
}

// ---------------------------------------------------------------- outputs, tests/reference/make_golden_groups.py

namespace {

struct Sample {
    const char* name;
    Pairs pairs;
    const char* comment = "";
    const char* exportComment = "";
    double significance = 0.05;
    Ids created = {};
    int analyses = 1;
    std::string outputs = "report results listing export";
};

const Sample samples[] = {
    {"two_groups", two, "Two groups of two", "Two groups of two"},
    {"mixed_order", mixed, "Unequal sizes", "two lines\nof comment", 0.01},
    {"two_and_twelve", balanced(3, 5), "Three groups of five", "", 0.05, {}, 1, "report results"},
    {"rejected", balanced(4, 30), "", "", 0.025, {}, 1, "report"},
    {"two_groups_of_14", balanced(2, 14), "", "", 0.05, {}, 1, "report"},
    {"two_groups_of_14_at_01", balanced(2, 14), "", "", 0.1, {}, 1, "report"},
    {"ten_groups_of_200", balanced(10, 200), "", "", 0.025, {}, 1, "report"},
    {"analysed_twice", mixed, "", "", 0.05, {}, 2, "report results"},
    {"not_analysed", mixed, "Before any analysis", "", 0.05, {}, 0},
    {"empty", {}, "Nothing"},
    {"one_group", {{7, 1.5}, {7, 2.5}, {7, 4}}},
    {"groups_of_one", {{1, 2}, {2, 4}, {3, 3}}},
    {"one_observation", {{4, 4}}},
    {"equal_observations", {{1, 3}, {1, 3}, {2, 3}, {2, 3}}},
    {"created_without_observations", two, "", "groups 0 and 2 have no observations", 0.05, {9, 2, 2}},
    // clang-format off
    {"ids_and_values",
     {{-0.0, 0.1}, {0.0, -2.5}, {NaN, 1e15}, {-NaN, 123456.789}, {infinity, 1e-7}, {-1e-3, 1234567}, {1e20, -0.0},
      {2.5, -NaN}, {2.5, infinity}, {-infinity, -infinity}},
     "Numbers of all kinds", "numbers"},
    // clang-format on
    {"stiff_within_negative", stiff(1e12, 10), "", "", 0.05, {}, 1, "report"},
    {"stiff_many", stiff(1e12, 100), "", "", 0.05, {}, 1, "report"},
};

SingleAnova of(const Sample& sample)
{
    SingleAnova anova;
    anova.setComment(sample.comment);
    anova.setSignificance(sample.significance);
    for (const double id : sample.created) anova.createGroup(id);
    anova.copyFrom(sample.pairs);
    anova.createSeries();
    for (int i = 0; i < sample.analyses; ++i) anova.analyse();
    return anova;
}

bool has(const Sample& sample, const char* output) { return sample.outputs.find(output) != std::string::npos; }

}  // namespace

TEST(SingleAnova, report)
{
    for (const Sample& sample : samples) {
        if (!has(sample, "report")) continue;
        SingleAnova anova = of(sample);
        EXPECT_EQ(report(anova), golden("anova_" + std::string(sample.name) + "_report.txt")) << sample.name;
    }
}

TEST(SingleAnova, testResults)
{
    for (const Sample& sample : samples) {
        if (!has(sample, "results")) continue;
        SingleAnova anova = of(sample);
        EXPECT_EQ(printed([&] { anova.testResults(); }), golden("anova_" + std::string(sample.name) + "_results.txt")) << sample.name;
    }
}

TEST(SingleAnova, listData)
{
    for (const Sample& sample : samples) {
        if (!has(sample, "listing")) continue;
        SingleAnova anova = of(sample);
        EXPECT_EQ(listing(anova, 0, 10), golden("anova_" + std::string(sample.name) + "_listing.txt")) << sample.name;
    }
}

TEST(SingleAnova, exportToR)
{
    const TempFolder folder;
    const std::string path = folder.path("groups.txt");
    for (const Sample& sample : samples) {
        if (!has(sample, "export")) continue;
        SingleAnova anova = of(sample);
        EXPECT_TRUE(anova.exportToR(path, sample.exportComment));
        EXPECT_EQ(contentOf(path), golden("anova_" + std::string(sample.name) + "_export.txt")) << sample.name;
    }
}

TEST(SingleAnova, exportToRFails)
{
    SingleAnova anova = analysed(two);
    const TempFolder folder;
    EXPECT_FALSE(anova.exportToR(folder.path("no/such/folder"), "")) << "cannot be opened";
    EXPECT_FALSE(anova.exportToR(folder.path(""), "")) << "a folder";
    EXPECT_FALSE(anova.exportToR("/dev/full", "")) << "a full disk";
}

TEST(SingleAnova, exportToRWritesOneRowPerGroup)
{
    const TempFolder folder;
    SingleAnova anova = gathered(two);
    EXPECT_TRUE(anova.exportToR(folder.path("groups.txt"), "c")) << "no analysis is needed";
    EXPECT_EQ(contentOf(folder.path("groups.txt")), "# c\n0\t10.0000\t12.0000\n1\t20.0000\t22.0000\n");
}

TEST(SingleAnova, listDataOfARange)
{
    SingleAnova anova = gathered(two);
    const struct {
        const char* shows;
        std::size_t first, last;
        const char* text;
    } rows[] = {
        {"up to the last group", 0, 10, "Series 0: id =1\n10 12  [2]\nSeries 1: id =2\n20 22  [2]\n-\n"},
        {"the end is not listed", 0, 1, "Series 0: id =1\n10 12  [2]\n-\n"},
        {"the second only", 1, 2, "Series 1: id =2\n20 22  [2]\n-\n"},
        {"an empty range", 1, 1, "-\n"},
        {"5 to 3", 5, 3, "-\n"},
        {"behind the groups", 2, static_cast<std::size_t>(-1), "-\n"},
        {"all of them", 0, static_cast<std::size_t>(-1), "Series 0: id =1\n10 12  [2]\nSeries 1: id =2\n20 22  [2]\n-\n"},
    };
    for (const auto& row : rows) EXPECT_EQ(listing(anova, row.first, row.last), row.text) << row.shows;
}

TEST(SingleAnova, listDataIsVirtual)
{
    SingleAnova anova = gathered(two);
    BasicXyStatistics& base = anova;
    EXPECT_EQ(printed([&] { base.listData(0, 1); }), "Series 0: id =1\n10 12  [2]\n-\n");
}

TEST(SingleAnova, outputsUseNoFormatOfTheHost)
{
    SingleAnova anova = of(samples[0]);
    std::cout.setf(std::ios_base::scientific | std::ios_base::showpos);
    std::cout.precision(1);
    std::cout.width(30);
    const std::string text = report(anova) + listing(anova, 0, 10);
    std::cout.copyfmt(std::ios(nullptr));
    EXPECT_EQ(text, golden("anova_two_groups_report.txt") + golden("anova_two_groups_listing.txt"));
}

TEST(SingleAnova, outputsReadFromAFile)
{
    const TempFolder folder;
    SingleAnova anova;
    ASSERT_TRUE(anova.readDataFile(folder.write("pairs.txt", "# Two groups of two\n1;10\n1|12\n2:20\n2;22\n<<\n3;3\n")));
    EXPECT_EQ(anova.getComment(), " Two groups of two");
    anova.createSeries();
    anova.analyse();
    EXPECT_EQ(listing(anova, 0, 10), golden("anova_two_groups_listing.txt"));
    EXPECT_EQ(printed([&] { anova.testResults(); }), golden("anova_two_groups_results.txt"));
}

TEST(SingleAnova, lineOfTheCriticalValue)
{
    SingleAnova anova = analysed(balanced(3, 5));
    EXPECT_THAT(report(anova), HasSubstr("\nF0.050[2, 12] = 3.885\tP[F] =0."));
    anova.setSignificance(0.01);
    EXPECT_THAT(report(anova), HasSubstr("\nF0.010[2, 12] = "));
}

namespace {

// An F that the test sets itself, with 2 and 12 degrees of freedom.
class GivenF : public SingleAnova {
public:
    explicit GivenF(double f)
    {
        among.df = 2;
        within.df = 12;
        among.fs = f;
    }
};

}  // namespace

TEST(SingleAnova, verdict)
{
    const double critical = F_PercentPoint(1.0 - 0.05, 2, 12);
    const struct {
        const char* shows;
        double f;
        const char* verdict;
    } rows[] = {
        {"equal to the critical value", critical, "accepted"},
        {"just above", std::nextafter(critical, infinity), "rejected"},
        {"just below", std::nextafter(critical, 0.0), "accepted"},
        {"infinite", infinity, "rejected"},
        {"NaN", NaN, "accepted"},
        {"negative", -3.0, "accepted"},
        {"0", 0.0, "accepted"},
    };
    for (const auto& row : rows) {
        GivenF anova(row.f);
        EXPECT_THAT(report(anova), HasSubstr("\nH0 [no added variance component among groups] is " + std::string(row.verdict) + ".\n"))
            << row.shows;
    }
}

// ---------------------------------------------------------------- critical values that the plain iteration never finds

TEST(SingleAnova, twoGroupsOf28Observations)
{
    SingleAnova anova = analysed(balanced(2, 14));
    EXPECT_THAT(report(anova), HasSubstr("\nF0.050[1, 26] = 3.250\t"));
}

TEST(SingleAnova, everySize)
{
    for (int groups = 2; groups <= 10; ++groups) {
        for (int n = 1; n <= 200; ++n) {
            SingleAnova anova = analysed(balanced(groups, n));
            for (const double level : levels) {
                anova.setSignificance(level);
                const std::string text = report(anova);
                const std::size_t label = text.find("\nF0."), figure = text.find("] = ", label);
                ASSERT_NE(figure, std::string::npos);
                const double printedF = std::atof(text.c_str() + figure + 4);
                SCOPED_TRACE(std::to_string(groups) + " groups of " + std::to_string(n) + " at " + std::to_string(level) + ": " +
                             std::to_string(printedF));
                const std::size_t df1 = anova.getAmong().df, df2 = anova.getWithin().df;
                if (df2 == 0) {
                    EXPECT_EQ(printedF, 0.0);
                    continue;
                }
                // the F at which F_Prob crosses 1 - level, within the three decimals printed
                const double half = 0.0005 + 1e-4 * printedF;
                EXPECT_LE(F_Prob(printedF - half, df1, df2), 1.0 - level + 1e-6);
                EXPECT_GE(F_Prob(printedF + half, df1, df2), 1.0 - level - 1e-6);
                if (groups == 2 && df2 >= 26 && level == 0.05) {
                    EXPECT_NEAR(printedF, 3.0 * double(df2) / double(df2 - 2), 0.00051);
                }
            }
            if (HasFailure()) return;
        }
    }
}

// ---------------------------------------------------------------- stiff data

TEST(SingleAnova, negativeFHasProbabilityOne)
{
    const struct {
        const char* shows;
        double offset;
        int repeats;
        bool negative;  // the sign of F, tests/reference/wq_model/anova.py
    } rows[] = {
        // clang-format off
        {"offset 1, 9 groups of 21", 1.0, 10, false},
        {"offset 10^6, 9 groups of 21", 1e6, 10, false},
        {"offset 10^6, 9 groups of 2001", 1e6, 1000, true},
        {"offset 10^12, 9 groups of 21", 1e12, 10, true},
        // clang-format on
        {"offset 10^12, 9 groups of 2001", 1e12, 1000, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        SingleAnova anova = analysed(stiff(row.offset, row.repeats));
        const double f = anova.getAmong().fs;
        EXPECT_EQ(f < 0.0, row.negative) << f;
        if (row.negative) {
            EXPECT_EQ(F_Prob(f, anova.getAmong().df, anova.getWithin().df), 1.0);
            EXPECT_THAT(report(anova), HasSubstr("\tP[F] =1.000\tr_i = "));
            EXPECT_THAT(report(anova), HasSubstr("is accepted.\n"));
        }
    }
}

TEST(SingleAnova, acceptH0IsThatOfTheUnivariateSample)
{
    SingleAnova anova = analysed(two);
    EXPECT_FALSE(anova.acceptH0()) << "the univariate sample is empty: t is NaN";
}
