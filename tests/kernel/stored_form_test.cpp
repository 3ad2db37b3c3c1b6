// The stored form of every kernel class: its bytes, and what becomes of a form that is cut short or lies.
#include <gtest/gtest.h>

#include <string>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"

namespace zul {
namespace {

const std::string Empty(4, '\0');

template <class T>
std::string Store(T& value) {
    CMemoryStream stream;
    EXPECT_TRUE(value.ObjectToBuffer(&stream));
    return std::string(reinterpret_cast<const char*>(stream.GetBuffer()), stream.GetSize());
}

template <class T>
bool Read(T& value, const std::string& bytes) {
    CMemoryStream stream(bytes.data(), bytes.size());
    return value.ObjectFromBuffer(&stream);
}

// \p afterCut is what a value that held \p bytes is stored as once it was read from too few of them.
template <class T>
void ExpectForm(T& value, const std::string& bytes, const std::string& afterCut) {
    EXPECT_EQ(Store(value), bytes);
    EXPECT_EQ(value.GetPreferredSize(), bytes.size());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        T back;
        ASSERT_TRUE(Read(back, bytes));
        ASSERT_EQ(Store(back), bytes);
        EXPECT_FALSE(Read(back, bytes.substr(0, size))) << size;
        EXPECT_EQ(Store(back), afterCut) << size;
    }
    EXPECT_FALSE(value.ObjectToBuffer(nullptr));
    EXPECT_FALSE(value.ObjectFromBuffer(nullptr));
}

TEST(StoredFormTest, ReadsBackWholeOrNotAtAll) {
    CAnyBuffer buffer;
    buffer.Write(0, 3, "abc");
    ExpectForm(buffer, std::string("\x03\0\0\0abc", 7), Empty);
    CString text(u"a\u0416");
    ExpectForm(text, std::string("\x02\0\0\0a\0\x16\x04", 8), Empty);
    CFloat number(-2.5);
    const std::string numberBytes("\0\0\0\0\0\0\x04\xC0", 8);
    ExpectForm(number, numberBytes, numberBytes);
    CInteger integer(-3);
    const std::string integerBytes("\xFD\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 8);
    ExpectForm(integer, integerBytes, integerBytes);
}

TEST(StoredFormTest, CollectionsReadBackTheSameObjects) {
    CProbe probe;
    CAnyRef reference(&probe);
    const std::string id = Store(reference);
    ExpectForm(reference, id, std::string(8, '\0'));

    CAnyArray array;
    array.DoAppend(new CProbe);
    array.DoAppend(nullptr);
    array.DoAppend(new CProbe);
    const std::string items = Store(array);
    CAnyObject* const last = array.DoGetInstance(2);
    ASSERT_TRUE(Read(array, items));  // into itself
    EXPECT_EQ(array.DoGetInstance(2), last);
    ExpectForm(array, items, Empty);

    CAnyDictionary dictionary;
    dictionary.DoAppend(u"one", new CInteger(1));
    dictionary.DoAppend(u"two", new CInteger(2));
    ExpectForm(dictionary, Store(dictionary), Empty);
}

// The count says more than any stream holds: nothing is allocated for it.
TEST(StoredFormTest, HugeCountsGiveEmptyValues) {
    for (const std::string& count : {std::string("\xFF\xFF\xFF\xFF", 4), std::string("\x01\0\0\x80", 4)}) {
        const std::string bytes = count + "eight more";
        CAnyMemoryBuffer block;
        block.Write(0, 3, "abc");
        block.SetAsNotSerializable(true);
        EXPECT_EQ(Store(block), Empty);
        EXPECT_FALSE(Read(block, bytes));
        EXPECT_LT(block.GetReserved(), 1000u);
        CString text(u"old");
        EXPECT_FALSE(Read(text, bytes));
        EXPECT_TRUE(text.IsEmpty());
        CAnyArray array;
        EXPECT_FALSE(Read(array, bytes));
        EXPECT_EQ(array.GetCount(), 0u);
        CAnyDictionary dictionary;
        EXPECT_FALSE(Read(dictionary, bytes));
        EXPECT_EQ(dictionary.GetCount(), 0u);
    }
}

}  // namespace
}  // namespace zul
