#include "zul/kernel/buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
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
    std::uint32_t growths = 0;
    for (std::int32_t i = 0; i < 1000000; ++i) {
        const std::uint32_t before = points.GetReserved();
        ASSERT_TRUE(points.Append(i));
        if (points.GetReserved() != before) ++growths;
    }
    EXPECT_LE(growths, 20u);
    ASSERT_EQ(points.GetCount(), 1000000u);
    for (std::int32_t i = 0; i < 1000000; ++i)
        ASSERT_EQ(points[static_cast<std::uint32_t>(i)], i);
}

TEST(MemoryBufferTest, ASmallBlockKeepsItsMemoryWhenClearedAndALargeOneDoesNot) {
    CAnyMemoryBuffer buffer;
    buffer.Resize(1000, false);
    const std::uint32_t reserved = buffer.GetReserved();
    buffer.Clear();
    EXPECT_EQ(buffer.GetSize(), 0u);
    EXPECT_EQ(buffer.GetReserved(), reserved);
    buffer.Resize(1 << 20, false);
    buffer.Clear();
    EXPECT_EQ(buffer.GetReserved(), 0u);
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
        switch (random() % 4) {
            case 0:
                ASSERT_TRUE(buffer.Write(position, size, data));
                if (size != 0) {
                    model.resize(std::max<std::size_t>(model.size(), position + size));
                    std::copy(data, data + size, at(position));
                }
                break;
            case 1:
                ASSERT_TRUE(buffer.DoInsert(position, size, data));
                if (size != 0) {
                    model.resize(std::max<std::size_t>(model.size(), position));
                    model.insert(at(position), data, data + size);
                }
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

TEST(MemoryBufferTest, GrowthIsZeroAlsoWhereOldBytesLay) {
    CAnyMemoryBuffer buffer = BufferOf("secret");
    buffer.Resize(2, true);
    buffer.Resize(6, true);
    EXPECT_EQ(TextOf(buffer), std::string("se\0\0\0\0", 6));
    buffer.Resize(2, true);
    buffer.Write(5, 1, "!");
    EXPECT_EQ(TextOf(buffer), std::string("se\0\0\0!", 6));
    buffer.Resize(4, false);
    EXPECT_EQ(TextOf(buffer), std::string(4, '\0'));
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

TEST(MemoryBufferTest, SizesPast32BitsAreRefusedAndChangeNothing) {
    CAnyMemoryBuffer buffer = BufferOf("abc");
    EXPECT_FALSE(buffer.Write(UINT32_MAX, 2, "xy"));
    EXPECT_FALSE(buffer.DoInsert(UINT32_MAX, UINT32_MAX, "xy"));
    buffer.DoDelete(1, UINT32_MAX);
    EXPECT_EQ(TextOf(buffer), "a");
    buffer.DoDelete(UINT32_MAX, UINT32_MAX);
    EXPECT_EQ(TextOf(buffer), "a");
    CBuffer<std::int64_t> records;
    EXPECT_EQ(records.SetCount(0x20000001u, false), nullptr);
    EXPECT_EQ(records.GetCount(), 0u);
}

TEST(MemoryBufferTest, NullAndNothingDoNothing) {
    CAnyMemoryBuffer buffer = BufferOf("abc");
    buffer.Write(50, 4, nullptr);
    buffer.Write(50, 0, "x");
    buffer.DoInsert(0, 4, nullptr);
    CAnyMemoryBuffer::Copy(nullptr, "x", 1);
    CAnyMemoryBuffer::Copy(buffer.GetBuffer(), nullptr, 1);
    EXPECT_EQ(TextOf(buffer), "abc");
    CAnyMemoryBuffer empty;
    EXPECT_EQ(empty.Resize(0, true), nullptr);
    empty.DoDelete(0, 10);
    empty.Clear();
    EXPECT_EQ(empty.GetSize(), 0u);
}

TEST(MemoryBufferTest, CopiesAreIndependentAndWithoutOwner) {
    CProbe owner;
    CAnyMemoryBuffer buffer = BufferOf("abc");
    buffer.SetOwner(&owner);
    CAnyMemoryBuffer copy(buffer);
    copy.Write(0, 1, "X");
    EXPECT_EQ(TextOf(buffer), "abc");
    EXPECT_EQ(TextOf(copy), "Xbc");
    CModificator modificator(nullptr);
    copy.DoModify(modificator);
    EXPECT_EQ(owner.Modified, 0);
    buffer.DoModify(modificator);
    EXPECT_EQ(owner.Modified, 1);
    const CAnyMemoryBuffer moved(std::move(copy));
    EXPECT_EQ(TextOf(moved), "Xbc");
}

TEST(MemoryBufferTest, AnOwnerThatDiedIsForgotten) {
    CAnyMemoryBuffer buffer;
    {
        CProbe owner;
        buffer.SetOwner(&owner);
    }
    const std::uint64_t before = CClient::GetModificationCount();
    {
        CModificator modificator(nullptr);
        buffer.DoModify(modificator);
    }
    EXPECT_EQ(CClient::GetModificationCount(), before);
}

TEST(MemoryBufferTest, IsStoredAsSizeAndBytes) {
    CAnyMemoryBuffer buffer = BufferOf("abc");
    CMemoryStream stream;
    ASSERT_TRUE(buffer.ObjectToBuffer(&stream));
    EXPECT_EQ(stream.GetSize(), 7u);
    EXPECT_EQ(buffer.GetPreferredSize(), 7u);
    EXPECT_EQ(std::memcmp(stream.GetBuffer(), "\x03\0\0\0abc", 7), 0);
    stream.SetPosition(0);
    CAnyMemoryBuffer back = BufferOf("something longer");
    ASSERT_TRUE(back.ObjectFromBuffer(&stream));
    EXPECT_EQ(TextOf(back), "abc");

    buffer.SetAsNotSerializable(true);
    stream.Clear();
    ASSERT_TRUE(buffer.ObjectToBuffer(&stream));
    EXPECT_EQ(stream.GetSize(), 4u);
    EXPECT_EQ(buffer.GetPreferredSize(), 4u);
}

TEST(MemoryBufferTest, AStoredSizeThatTheStreamCannotHoldGivesAnEmptyBlock) {
    for (const std::string& bytes : {std::string("\x03\0\0\0ab", 6), std::string("\xFF\xFF\xFF\xFF abc", 8),
                                     std::string("\x03\0", 2), std::string()}) {
        CMemoryStream stream(bytes.data(), bytes.size());
        CAnyMemoryBuffer buffer = BufferOf("old");
        EXPECT_FALSE(buffer.ObjectFromBuffer(&stream));
        EXPECT_EQ(buffer.GetSize(), 0u);
        EXPECT_LT(buffer.GetReserved(), 1000u);
    }
    CAnyMemoryBuffer buffer;
    EXPECT_FALSE(buffer.ObjectFromBuffer(nullptr));
    EXPECT_FALSE(buffer.ObjectToBuffer(nullptr));
}

TEST(AnyBufferTest, EachChangeIsOneModification) {
    CAnyBuffer buffer;
    const std::uint64_t before = CClient::GetModificationCount();
    buffer.Write(0, 3, "abc");
    buffer.DoInsert(1, 1, "-");
    buffer.DoDelete(0, 1);
    EXPECT_EQ(CClient::GetModificationCount(), before + 3);
    EXPECT_EQ(std::string(static_cast<const char*>(buffer.GetBuffer()), buffer.GetSize()), "-bc");
}

TEST(AnyBufferTest, ReadsBackThroughTheRegistry) {
    CAnyBuffer buffer;
    buffer.Write(0, 3, "abc");
    CMemoryStream stream;
    ASSERT_TRUE(buffer.DoSerialize(&stream));
    stream.SetPosition(0);
    CPtr<CAnyBuffer> back(dynamic_cast<CAnyBuffer*>(CClass::Create(u"CAnyBuffer")));
    ASSERT_TRUE(back.IsExist());
    ASSERT_TRUE(back->DoUnserialize(&stream));
    EXPECT_EQ(back->GetSize(), 3u);
    back.Remove();
}

}  // namespace
}  // namespace zul
