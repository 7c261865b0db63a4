#include "engine/Buffers.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

using namespace fe;

namespace {

struct Case {
    int inW, inH, screenW, screenH;
};

// The cells of a row of a Markdown table.
std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::istringstream row(line);
    std::string cell;
    std::getline(row, cell, '|'); // before the first bar
    while (std::getline(row, cell, '|')) {
        const auto first = cell.find_first_not_of(' '), last = cell.find_last_not_of(' ');
        cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
    }
    return cells;
}

// The page's table of bytes, from its row of sizes on.
std::vector<std::vector<std::string>> readTable()
{
    std::ifstream page(LUMOFE_MEMORY_PAGE);
    std::vector<std::vector<std::string>> table;
    for (std::string line; std::getline(page, line);) {
        if (table.empty() && line.rfind("| input to screen |", 0) != 0) continue;
        if (line.empty()) break;
        table.push_back(cellsOf(line));
    }
    return table;
}

std::vector<Case> casesOf(const std::vector<std::string>& heads)
{
    std::vector<Case> cases;
    for (std::size_t i = 1; i < heads.size(); ++i) {
        Case c{};
        EXPECT_EQ(
            std::sscanf(heads[i].c_str(), "%dx%d to %dx%d", &c.inW, &c.inH, &c.screenW, &c.screenH),
            4)
            << heads[i];
        cases.push_back(c);
    }
    return cases;
}

std::string mebibytes(std::int64_t bytes)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", double(bytes) / (1 << 20));
    return text;
}

} // namespace

TEST(MemoryPage, ListsWhatASlotObtains)
{
    constexpr const char* kNames[kBufferCount] = {
        "`m_pStaged`",    "`m_pSubMapA`",   "`m_pSubMapB`",    "`m_pMapTable`",
        "`m_pPanoImage`", "`m_pViewImage`", "`m_pWorkImageA`", "`m_pMapWork`"};
    const auto table = readTable();
    ASSERT_EQ(table.size(), std::size_t(2 + kBufferCount + 2)); // heads, rule, buffers, sums
    const std::vector<Case> cases = casesOf(table[0]);
    ASSERT_GE(cases.size(), 3u);
    for (const auto& row : table)
        ASSERT_EQ(row.size(), cases.size() + 1);

    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(table[0][i + 1]);
        const Case& c = cases[i];
        FEDSP e;
        e.FE_Initialize(0, c.inW, c.inH, 4);
        const auto plan = planBuffers(e, c.inW, c.inH, c.screenW, c.screenH).value();
        std::int64_t sum = 0;
        for (std::size_t b = 0; b < kBufferCount; ++b) {
            EXPECT_EQ(table[2 + b][0], kNames[b]);
            EXPECT_EQ(table[2 + b][i + 1], std::to_string(plan[b].heap));
            sum += plan[b].heap;
        }
        EXPECT_EQ(table[2 + kBufferCount][i + 1], std::to_string(sum));
        EXPECT_EQ(table[3 + kBufferCount][i + 1], mebibytes(sum));
    }
}
