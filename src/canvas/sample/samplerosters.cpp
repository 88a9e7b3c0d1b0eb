#include "canvas/sample/samplecollege.h"

#include <algorithm>
#include <array>

namespace ellwynd::sample {

namespace {

constexpr std::nullopt_t never = std::nullopt;

/// A section in mid-term: weighted groups, and a homework that eight students are missing.
std::vector<Profile> introToProgramming() {
    return {
        {5001, "Jordan", 38, "F", 10, 13, {1, 6, 12, 13, 16}},
        {5002, "Sam", 41, "F", never, 4, {2, 10, 11, 12}},
        {5003, "Priya", 61, "D−", 3, 22, {5, 9, 10, 12}},
        {5004, "Marcus", 68, "D+", 1, 18, {12, 15}},
        {5005, "Zoe", 88, "B+", 1, 26, {}},
        {5006, "Ava", 91, "A−", 0, 31, {}},
        {5007, "Mia", 79, "C+", 2, 19, {12}},
        {5008, "Noah", 84, "B", 1, 21, {}},
        {5009, "Diego", 49, "F", 16, 9, {16}},
        {5010, "Emma", 95, "A", 0, 28, {}},
        {5011, "Liam", 73, "C", 2, 17, {5, 12}},
        {5012, "Pia", 82, "B−", 15, 14, {}},
        {5013, "Nadia", 58, "F", 4, 12, {7, 11}},
        {5014, "Theo", 60, "D−", 4, 3, {}},
        {5015, "Iris", 77, "C+", 2, 16, {1}},
        {5016, "Omar", 86, "B", 3, 20, {16}},
        {5017, "Lena", 90, "A−", 1, 24, {}},
        {5018, "Ruben", 75, "C", 2, 15, {12}},
        {5019, "Cleo", 93, "A", 1, 27, {}},
        {5020, "Tomas", 81, "B−", 5, 14, {}},
        {5021, "Freya", 87, "B+", 1, 22, {}},
        {5022, "Hugo", 72, "C−", 3, 16, {}},
        {5023, "Anya", 96, "A", 0, 33, {}},
        {5024, "Mateo", 78, "C+", 2, 17, {12}},
        {5025, "Sable", 85, "B", 1, 19, {}},
        {5026, "Otis", 70, "C−", 4, 12, {}},
    };
}

/// Weighted by points; two thirds of the class are missing one critique, which is therefore
/// excluded from the scores.
std::vector<Profile> webInterfaceDesign() {
    return {
        {5101, "Tara", 52, "F", 9, 8, {21, 24, 27, 29}},
        {5102, "Ben", 66, "D", 2, 11, {25}},
        {5103, "Yuki", 89, "B+", 1, 17, {29}},
        {5104, "Grace", 94, "A", 0, 21, {}},
        {5105, "Omar", 71, "C−", 6, 10, {22, 29}},
        {5106, "Lily", 83, "B", 1, 15, {29}},
        {5107, "Ethan", 63, "D", 1, 9, {23, 26, 29}},
        {5108, "Nora", 78, "C+", 3, 13, {29}},
        {5109, "Kofi", 92, "A−", 1, 18, {}},
        {5110, "Vera", 47, "F", 12, 3, {27}},
        {5111, "Silas", 80, "B−", 2, 12, {29}},
        {5112, "Amira", 97, "A", 0, 24, {}},
        {5113, "Jonas", 74, "C", 2, 12, {29}},
        {5114, "Esme", 86, "B", 1, 14, {29}},
        {5115, "Rafi", 69, "D+", 14, 7, {29}},
        {5116, "Talia", 88, "B+", 2, 16, {29}},
        {5006, "Ava", 85, "B", 1, 14, {}},
        {5011, "Liam", 76, "C", 3, 4, {28, 29}},
    };
}

/// A term that has ended, so inactivity does not count.
std::vector<Profile> dataStructuresLastTerm() {
    return {
        {5201, "Lou", 44, "F", 33, 6, {42, 44}}, {5202, "Sofia", 90, "A−", 30, 25, {}},
        {5203, "Jonah", 67, "D+", 31, 12, {43}}, {5204, "Amara", 85, "B", 30, 19, {}},
        {5205, "Felix", 72, "C−", 29, 15, {41}}, {5206, "Isla", 93, "A", 29, 22, {}},
        {5207, "Dev", 59, "F", 34, 10, {42}},    {5208, "Hana", 88, "B+", 30, 18, {}},
        {5209, "Bram", 76, "C", 31, 13, {}},     {5210, "Suri", 81, "B−", 30, 17, {}},
        {5211, "Kofi", 71, "C−", 32, 3, {}},     {5212, "Nell", 95, "A", 29, 24, {}},
        {5213, "Ivo", 65, "D", 30, 11, {}},      {5214, "Eda", 48, "F", 40, 7, {44}},
        {5215, "Zaid", 84, "B", 30, 16, {}},     {5216, "Wren", 79, "C+", 31, 14, {}},
    };
}

/// A linear congruential sequence seeded with the course id.
class Draws {
  public:
    explicit Draws(std::int64_t courseID) : state(std::uint64_t(courseID)) {}

    /// The next draw, reduced to 0 … count - 1.
    std::size_t below(std::size_t count) { return next() % count; }
    bool odd() { return (next() & 1U) != 0; }

  private:
    std::uint64_t next() {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return state >> 33U;
    }

    std::uint64_t state;
};

/// The letter grade of a band from 0 to 43, which means 55 to 98 percent.
std::string_view letter(std::size_t band) {
    struct Grade {
        std::size_t from;
        std::string_view letter;
    };
    constexpr std::array grades{Grade{38, "A"},  Grade{35, "A−"}, Grade{32, "B+"}, Grade{28, "B"},
                                Grade{25, "B−"}, Grade{22, "C+"}, Grade{18, "C"},  Grade{15, "C−"},
                                Grade{12, "D+"}, Grade{8, "D"},   Grade{5, "D−"},  Grade{0, "F"}};
    return std::ranges::find_if(grades, [&](const Grade &grade) { return band >= grade.from; })
        ->letter;
}

constexpr std::array<std::string_view, 24> generatedNames{
    "Maya", "Owen", "Aisha", "Leo",   "Chloe", "Ravi", "Elena", "Jack",
    "Nina", "Theo", "Rosa",  "Finn",  "Ivy",   "Cole", "Dana",  "Milo",
    "Sana", "Rhys", "Tessa", "Arjun", "Paige", "Hugo", "Wren",  "Idris"};

std::vector<Profile> generated(std::int64_t courseID) {
    std::vector<std::int64_t> assignments;
    for (const SampleGroup &group : assignmentGroups(courseID)) {
        for (const SampleAssignment &assignment : group.assignments)
            assignments.push_back(assignment.id);
    }

    Draws draws(courseID);
    const std::size_t size = 16 + draws.below(9);
    const std::size_t offset = draws.below(generatedNames.size());
    constexpr std::array<std::size_t, 4> strides{5, 7, 11, 13};
    const std::size_t stride = strides[draws.below(strides.size())];
    const std::int64_t firstID = 5300 + 7 * (courseID % 97);

    std::vector<Profile> students;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t band = draws.below(44);
        std::vector<std::int64_t> missing;
        if (band < 15) {
            const std::size_t count = draws.odd() ? 2 : 1;
            while (missing.size() < count) {
                const std::int64_t pick = assignments[draws.below(assignments.size())];
                if (std::ranges::count(missing, pick) == 0)
                    missing.push_back(pick);
            }
        }
        const int daysAway = int(draws.below(18)) + 2;
        const double activityHours = 3 + double(draws.below(20));
        students.push_back(
            {firstID + std::int64_t(i),
             generatedNames[(offset + i * stride) % generatedNames.size()], double(band) + 55,
             letter(band), daysAway, activityHours, std::move(missing)});
    }
    return students;
}

} // namespace

std::vector<Profile> roster(std::int64_t courseID) {
    switch (courseID) {
    case 900101:
        return introToProgramming();
    case 900102:
        return webInterfaceDesign();
    case 900201:
        return dataStructuresLastTerm();
    default:
        return generated(courseID);
    }
}

} // namespace ellwynd::sample
