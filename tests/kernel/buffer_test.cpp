#include "zul/kernel/buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/client.h"

namespace zul {
namespace {

std::string TextOf(const CAnyMemoryBuffer& buffer) {
    return std::string(static_cast<const char*>(buffer.GetBuffer()), buffer.GetSize());
}

CAnyMemoryBuffer BufferOf(const std::string& text) {
    CAnyMemoryBuffer buffer;
    buffer.Write(0, static_cast<std::uint32_t>(text.size()), text.data());
    return buffer;
}

TEST(MemoryBufferTest, AppendingAMillionPointsAllocatesAFewTimes) {
    CBuffer<std::int32_t> points;
    std::set<std::uint32_t> reserved;
    for (std::int32_t i = 0; i < 1000000; ++i) {
        ASSERT_TRUE(points.Append(i));
        reserved.insert(points.GetReserved());
    }
    EXPECT_LE(reserved.size(), 20u);
}

// Every operation against the same one on a vector, with positions inside and outside the block.
TEST(MemoryBufferTest, EditsAsAVectorDoes) {
    std::minstd_rand engine(7);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    CAnyMemoryBuffer buffer;
    std::vector<std::uint8_t> model;
    for (int step = 0; step < 20000; ++step) {
        const std::uint32_t position = random() % (buffer.GetSize() + 9);
        std::uint8_t data[24];
        for (std::uint8_t& byte : data)
            byte = static_cast<std::uint8_t>(random() >> 8);
        const std::uint32_t size = random() % 24;
        const auto at = [&model](std::size_t i) { return model.begin() + static_cast<std::ptrdiff_t>(i); };
        const std::size_t reach = size != 0 ? position : 0;
        switch (random() % 4) {
            case 0:
                ASSERT_TRUE(buffer.Write(position, size, data));
                model.resize(std::max(model.size(), reach + size));
                std::copy(data, data + size, at(reach));
                break;
            case 1:
                ASSERT_TRUE(buffer.DoInsert(position, size, data));
                model.resize(std::max(model.size(), reach));
                model.insert(at(reach), data, data + size);
                break;
            case 2:
                buffer.DoDelete(position, size);
                if (position < model.size()) {
                    model.erase(at(position), at(std::min<std::size_t>(model.size(), position + size)));
                }
                break;
            default: {
                const bool keep = random() % 8 != 0;
                buffer.Resize(position, keep);
                if (!keep) model.clear();
                model.resize(position);
            }
        }
        ASSERT_EQ(buffer.GetSize(), model.size()) << step;
        ASSERT_TRUE(
            std::equal(model.begin(), model.end(), static_cast<const std::uint8_t*>(buffer.GetBuffer())))
            << step;
    }
}

TEST(MemoryBufferTest, SourcesInsideTheBlockSurviveItsMove) {
    CAnyMemoryBuffer buffer = BufferOf(std::string(60, '.') + "abcd");
    const auto* const tail = static_cast<const char*>(buffer.GetBuffer()) + 60;
    ASSERT_TRUE(buffer.Write(buffer.GetSize(), 4, tail));
    EXPECT_EQ(TextOf(buffer).substr(60), "abcdabcd");
    ASSERT_TRUE(buffer.DoInsert(0, 4, static_cast<const char*>(buffer.GetBuffer()) + 60));
    EXPECT_EQ(TextOf(buffer).substr(0, 5), "abcd.");
    ASSERT_TRUE(buffer.Write(1, 4, buffer.GetBuffer()));
    EXPECT_EQ(TextOf(buffer).substr(0, 6), "aabcd.");
}

TEST(MemoryBufferTest, NullAndSizesPast32BitsChangeNothing) {
    CAnyMemoryBuffer buffer = BufferOf("abc");
    EXPECT_FALSE(buffer.Write(UINT32_MAX, 2, "xy"));
    EXPECT_FALSE(buffer.DoInsert(UINT32_MAX, UINT32_MAX, "xy"));
    buffer.Write(50, 4, nullptr);
    CAnyMemoryBuffer::Copy(buffer.GetBuffer(), nullptr, 1);
    buffer.DoDelete(UINT32_MAX, UINT32_MAX);
    buffer.DoDelete(1, UINT32_MAX);
    EXPECT_EQ(TextOf(buffer), "a");
    CBuffer<std::int64_t> records;
    EXPECT_EQ(records.SetCount(0x20000001u, false), nullptr);
    EXPECT_EQ(records.GetCount(), 0u);
}

TEST(MemoryBufferTest, CopiesAreIndependentAndWithoutOwner) {
    CAnyMemoryBuffer buffer = BufferOf("abc");
    CModificator modificator(nullptr);
    {
        CProbe owner;
        buffer.SetOwner(&owner);
        CAnyMemoryBuffer copy(buffer);
        copy.Write(0, 1, "X");
        EXPECT_EQ(TextOf(buffer) + TextOf(copy), "abcXbc");
        CAnyMemoryBuffer moved(std::move(copy));
        EXPECT_EQ(TextOf(moved), "Xbc");
        moved = BufferOf("new");
        EXPECT_EQ(TextOf(moved), "new");
        copy = buffer;
        copy.DoModify(modificator);
        EXPECT_EQ(owner.Modified, 0);
        buffer.DoModify(modificator);
        EXPECT_EQ(owner.Modified, 1);
    }
    CModificator late(nullptr);
    buffer.DoModify(late);  // on behalf of an owner that died
}

TEST(AnyBufferTest, EachRealChangeIsOneModification) {
    CAnyBuffer buffer;
    const std::uint64_t before = CClient::GetModificationCount();
    buffer.Write(0, 3, "abc");
    buffer.DoInsert(1, 1, "-");
    buffer.DoDelete(0, 1);
    buffer.Resize(2, true);
    EXPECT_EQ(CClient::GetModificationCount(), before + 4);
    buffer.Write(9, 0, "x");
    buffer.Write(0, 3, nullptr);
    buffer.DoInsert(0, 1, nullptr);
    buffer.DoDelete(2, 5);
    buffer.Resize(2, true);
    EXPECT_FALSE(buffer.Write(UINT32_MAX, 2, "xy"));
    EXPECT_FALSE(buffer.DoInsert(UINT32_MAX, UINT32_MAX, "xy"));
    EXPECT_EQ(CClient::GetModificationCount(), before + 4);
    EXPECT_EQ(std::string(static_cast<const char*>(buffer.GetBuffer()), buffer.GetSize()), "-b");
}

}  // namespace
}  // namespace zul
