/// \file
/// What every test program runs: its tests, each of which must leave as many device objects as it found.
#include <gtest/gtest.h>

#include <string>

#include "platform/software/display.h"
#include "zul/tools/brush.h"
#include "zul/tools/font.h"
#include "zul/tools/pen.h"

namespace {

struct TKind {
    DWORD Type;
    const char* Name;
};
constexpr TKind kKinds[] = {
    {0, "objects of any kind"}, {OBJ_DC, "contexts"},    {OBJ_MEMDC, "memory contexts"},
    {OBJ_PEN, "pens"},          {OBJ_BRUSH, "brushes"},  {OBJ_FONT, "fonts"},
    {OBJ_BITMAP, "bitmaps"},    {OBJ_REGION, "regions"}, {OBJ_PAL, "palettes"},
};

struct TTool {
    const zul::THandleCounts& (*Count)();
    const char* Name;
};
constexpr TTool kTools[] = {
    {zul::CPen::GetHandleCounts, "made by pens"},
    {zul::CBrush::GetHandleCounts, "made by brushes"},
    {zul::CFont::GetHandleCounts, "made by fonts"},
};

class CHandleWatch : public testing::EmptyTestEventListener {
    static std::string Describe() {
        std::string text;
        const auto add = [&text](auto count, const char* name) {
            text += std::to_string(count) + " " + name + "\n";
        };
        for (const TKind& kind : kKinds)
            add(device::LiveHandles(kind.Type), kind.Name);
        for (const TTool& tool : kTools)
            add(tool.Count().Made - tool.Count().Deleted, tool.Name);
        return text;
    }

    // A system may keep what it made when it was first needed: of several runs the last one is judged.
    void OnTestIterationStart(const testing::UnitTest&, int iteration) override {
        m_IsJudged = iteration + 1 == GTEST_FLAG_GET(repeat);
    }
    void OnTestStart(const testing::TestInfo&) override {
        if (m_IsJudged) m_Before = Describe();
    }
    void OnTestEnd(const testing::TestInfo&) override {
        if (!m_IsJudged) return;
        EXPECT_EQ(Describe(), m_Before) << "the test leaves other device objects than it found";
    }

    bool m_IsJudged = false;
    std::string m_Before;
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new CHandleWatch);
    return RUN_ALL_TESTS();
}
