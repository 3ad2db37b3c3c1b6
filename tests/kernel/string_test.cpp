#include "zul/kernel/string.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/kernel/kernel_testing.h"

namespace zul {
namespace {

std::vector<std::u16string> LinesOf(const CString& text) {
    std::vector<std::u16string> lines;
    TTextIterator line;
    for (bool more = text.FindFirstLine(line); more; more = text.FindNextLine(line)) {
        lines.emplace_back(text.GetBuffer() + line.Position, line.Length);
    }
    return lines;
}

TEST(StringTest, LinesEndAtEveryKindOfBreak) {
    using Lines = std::vector<std::u16string>;
    const struct {
        const char16_t* Text;
        Lines Expected;
    } rows[] = {
        {u"", {}},
        {u"one", {u"one"}},
        {u"one\r\ntwo\rthree\nfour", {u"one", u"two", u"three", u"four"}},
        {u"a\r\n\r\nb\r\n", {u"a", u"", u"b"}},
        {u"a\n\rb", {u"a", u"", u"b"}},
        {u"\r\r\n", {u"", u""}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(LinesOf(row.Text), row.Expected) << CString(row.Text).GetBufferAnsi();
}

TEST(StringTest, TextPassesThroughUtf8AndBack) {
    const struct {
        const char16_t* Wide;
        const char* Narrow;
    } rows[] = {
        {u"\u007F\u0080\u07FF\u0800\uFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
        {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(CString(row.Wide).GetBufferAnsi(), row.Narrow);
        EXPECT_EQ(CString(row.Narrow), CString(row.Wide));
    }
}

TEST(StringTest, BrokenEncodingsAreReplaced) {
    const struct {
        const char* Narrow;
        const char16_t* Expected;
    } bytes[] = {
        {"\x80", u"\uFFFD"},
        {"\xC3", u"\uFFFD"},
        {"\xC3(", u"\uFFFD("},
        {"\xE2\x82", u"\uFFFD\uFFFD"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past the last code point
    };
    for (const auto& row : bytes)
        EXPECT_EQ(CString(row.Narrow), CString(row.Expected));

    const char16_t lone[] = {u'a', 0xD800, u'b', 0xDC00, 0xD83D, 0};
    EXPECT_STREQ(CString(lone).GetBufferAnsi(),
                 "a\xEF\xBF\xBD"
                 "b\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(StringTest, TheNarrowTextFollowsEveryChange) {
    CString text(u"one");
    EXPECT_STREQ(text.GetBufferAnsi(), "one");
    text.Append(u"-two");
    EXPECT_STREQ(text.GetBufferAnsi(), "one-two");
    text.SetAt(u'!', 3);
    EXPECT_STREQ(text.GetBufferAnsi(), "one!two");
    text.SetAt(0, 4);
    text.SetAt(u'x', 4);
    text.SetAt(0, UINT32_MAX);
    EXPECT_STREQ(text.GetBufferAnsi(), "one!");
    text = CString(u"new");
    EXPECT_STREQ(text.GetBufferAnsi(), "new");
}

TEST(StringTest, ASourceInsideTheOwnBufferIsTakenOver) {
    CString text(u"folder/name.bmp, a text too long for the small buffer");
    text.SetBuffer(text.GetBuffer() + 7);
    EXPECT_EQ(text, CString(u"name.bmp, a text too long for the small buffer"));
    text.SetBuffer(text.GetBufferAnsi() + 10);
    EXPECT_EQ(text, CString(u"a text too long for the small buffer"));
    text.Append(text.GetBuffer() + 24);
    EXPECT_EQ(text, CString(u"a text too long for the small buffersmall buffer"));
    text.SetBuffer(text);
    text.Append(text);
    EXPECT_EQ(text.GetLength(), 96u);
}

TEST(StringTest, NullCountsAsEmptyWhenTakenOverAndEqualsNothing) {
    CString text(static_cast<const char16_t*>(nullptr));
    EXPECT_STREQ(text.GetBufferAnsi(), "");
    text.Append(static_cast<const char16_t*>(nullptr));
    text.SetBuffer(static_cast<const char*>(nullptr));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_FALSE(text.IsEqual(static_cast<const char16_t*>(nullptr), true));
    EXPECT_FALSE(text.IsEqual(static_cast<const CString*>(nullptr), false));
    EXPECT_TRUE(CString::IsEqual(nullptr, nullptr, false));
    EXPECT_FALSE(CString::IsEqual(nullptr, u"", false));
    EXPECT_EQ(CString::GetLength(static_cast<const char16_t*>(nullptr)), 0u);
}

TEST(StringTest, CaseCountsOnlyWhenAsked) {
    const struct {
        const char16_t *First, *Second;
        bool Exact, Loose;
    } rows[] = {
        {u"KM", u"KM", true, true},
        {u"KM", u"km", false, true},
        {u"\u0416\u0443\u043A\u0401", u"\u0436\u0423\u041A\u0451", false, true},
        {u"\u00C9", u"\u00E9", false, true},
        {u"\u00D7", u"\u00F7", false, false},  // the signs for times and divided by are no letters
        {u"@", u"`", false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CString::IsEqual(row.First, row.Second, false), row.Exact);
        EXPECT_EQ(CString::IsEqual(row.First, row.Second, true), row.Loose);
    }
}

TEST(StringTest, FindLastGivesTheLastPlace) {
    TTextIterator place;
    const CString name(u"Name : 'O'Brien'");
    ASSERT_TRUE(name.FindLast(place, u"'O"));
    EXPECT_EQ(place.Position, 7u);
    EXPECT_EQ(place.Length, 2u);
    ASSERT_TRUE(name.FindLast(place, u"'"));
    EXPECT_EQ(place.Position, 15u);
    for (const char16_t* absent : {u"\"", u"", static_cast<const char16_t*>(nullptr)})
        EXPECT_FALSE(name.FindLast(place, absent));
}

}  // namespace
}  // namespace zul
