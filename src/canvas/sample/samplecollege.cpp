#include "canvas/sample/samplecollege.h"

namespace ellwynd::sample {

namespace {

using std::chrono::days;

/// `count` assignments with consecutive ids and numbered names.
std::vector<SampleAssignment>
numbered(std::int64_t firstID, std::string_view name, int firstNumber, int count, int points) {
    std::vector<SampleAssignment> result;
    for (int i = 0; i < count; ++i) {
        result.push_back(
            {firstID + i, std::string(name) + " " + std::to_string(firstNumber + i), points});
    }
    return result;
}

} // namespace

const std::vector<SampleTerm> &activeTerms() {
    // Canvas course names have two blanks between the course code and the section number.
    static const std::vector<SampleTerm> terms{
        {9001,
         "Fall 2026",
         days{-21},
         days{63},
         {{900101, "CS 101  4021 - Intro to Programming", true},
          {900102, "WEB 210  4788 - Web Interface Design"},
          {900103, "CS 230  5140 - PHP with SQL"},
          {900104, "CS 240  6612 - Database Design"},
          {900105, "WEB 110  7708 - Web Fundamentals"},
          {900106, "CS 260  8830 - Data Structures"}}},
        {9002, "Summer 2026", days{-98}, days{-28}, {{900201, "CS 260  3310 - Data Structures"}}},
    };
    return terms;
}

const std::vector<SampleTerm> &olderTerms() {
    static const std::vector<SampleTerm> terms{
        {9101,
         "Spring 2026",
         days{-203},
         days{-112},
         {{900301, "CS 101  2207 - Intro to Programming"},
          {900302, "CS 230  2290 - PHP with SQL"},
          {900303, "WEB 110  2314 - Web Fundamentals"}}},
        {9102,
         "Winter 2026",
         days{-294},
         days{-217},
         {{900401, "CS 240  1120 - Database Design"},
          {900402, "WEB 210  1166 - Web Interface Design"}}},
        {9103,
         "Fall 2025",
         days{-385},
         days{-301},
         {{900501, "CS 101  4410 - Intro to Programming"},
          {900502, "CS 260  4475 - Data Structures"},
          {900503, "CS 115  4489 - Computing and Society"}}},
        {9104,
         "Summer 2025",
         days{-462},
         days{-392},
         {{900601, "WEB 110  3052 - Web Fundamentals"},
          {900602, "CS 101  3078 - Intro to Programming"}}},
        {9105,
         "Spring 2025",
         days{-567},
         days{-476},
         {{900701, "CS 230  2118 - PHP with SQL"},
          {900702, "CS 240  2133 - Database Design"},
          {900703, "WEB 210  2160 - Web Interface Design"}}},
        {9106,
         "Winter 2025",
         days{-658},
         days{-581},
         {{900801, "CS 101  1033 - Intro to Programming"},
          {900802, "CS 115  1047 - Computing and Society"}}},
        {9107,
         "Fall 2024",
         days{-749},
         days{-665},
         {{900901, "CS 260  4302 - Data Structures"},
          {900902, "WEB 110  4318 - Web Fundamentals"},
          {900903, "CS 101  4361 - Intro to Programming"}}},
        {9108,
         "Spring 2024",
         days{-931},
         days{-840},
         {{901001, "CS 240  2011 - Database Design"},
          {901002, "WEB 210  2029 - Web Interface Design"}}},
        {9109,
         "Winter 2024",
         days{-1022},
         days{-945},
         {{901101, "CS 101  1008 - Intro to Programming"},
          {901102, "WEB 110  1015 - Web Fundamentals"}}},
    };
    return terms;
}

std::vector<SampleGroup> assignmentGroups(std::int64_t courseID) {
    switch (courseID) {
    case 900101:
        return {
            {1,
             "Projects",
             40,
             {{1, "Final Project", 100}, {2, "Project 2", 100}, {3, "Project 1", 100}}},
            {2, "Quizzes", 20, numbered(4, "Reading Quiz", 5, 4, 10)},
            {3, "Homework", 30, numbered(8, "Homework", 1, 6, 20)},
            {4, "Participation", 10, numbered(14, "Discussion", 1, 3, 10)},
        };
    case 900102:
        return {
            {5,
             "Assignments",
             std::nullopt,
             {{21, "Wireframe Exercise", 30},
              {22, "Typography Lab", 30},
              {23, "Color Study", 30},
              {24, "Responsive Layout", 50},
              {25, "Accessibility Audit", 40},
              {26, "Flexbox Lab", 30},
              {27, "Portfolio Draft", 60},
              {28, "Grid Challenge", 30},
              {29, "Peer Critique 2", 20}}},
        };
    case 900201:
        return {
            {6,
             "Assignments",
             std::nullopt,
             {{41, "Linked Lists Lab", 40},
              {42, "Trees Project", 60},
              {43, "Hash Tables Lab", 40},
              {44, "Final Exam", 100}}},
        };
    default: {
        const std::int64_t base = courseID * 100;
        std::vector<SampleAssignment> assignments = numbered(base + 1, "Lab", 1, 4, 20);
        assignments.push_back({base + 5, "Midterm", 50});
        assignments.push_back({base + 6, "Final Project", 100});
        return {{courseID, "Assignments", std::nullopt, std::move(assignments)}};
    }
    }
}

} // namespace ellwynd::sample
