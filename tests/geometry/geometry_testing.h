/// \file
/// What the geometry tests share: short ways to make lists and read them back, and to watch reports and
/// records.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/geometry/ring_measures.h"
#include "zul/geometry/points.h"
#include "zul/kernel/client.h"
#include "zul/kernel/stream.h"

namespace zul {

inline void PrintTo(const TPoint& p, std::ostream* out) {
    *out << "(" << p.X << "," << p.Y << ")";
}

namespace testing {

inline CPoints Points(const List& points) {
    CPoints made(true);
    made.SetPoints(points.data(), static_cast<std::uint32_t>(points.size()));
    return made;
}

inline List Read(const CPoints& points) {
    return List(points.GetPoints(), points.GetPoints() + points.GetCount());
}

/// The bounding box as four numbers, so that a failure prints them.
inline std::vector<int> Box(const CPoints& points) {
    TCoord minX, minY, maxX, maxY;
    points.GetMbr(minX, minY, maxX, maxY);
    return {minX, minY, maxX, maxY};
}

/// Keeps the reports made while it lives; they return to where they were made.
class Reports : public CErrorHandler {
public:
    void OnError(const TErrorReport& report) override {
        m_Reports.push_back(std::to_string(report.Type) + " " + report.Text.GetBufferAnsi());
    }
    const std::vector<std::string>& Get() const { return m_Reports; }

private:
    std::vector<std::string> m_Reports;
    CErrorHandlerScope m_Scope{this};
};

/// How many modifications an action records.
template <class Action>
std::uint64_t Recorded(Action action) {
    const std::uint64_t before = CClient::GetModificationCount();
    action();
    return CClient::GetModificationCount() - before;
}

template <class T>
std::vector<std::uint8_t> Stored(T& object) {
    CMemoryStream stream;
    EXPECT_TRUE(object.ObjectToBuffer(&stream));
    return std::vector<std::uint8_t>(stream.GetBuffer(), stream.GetBuffer() + stream.GetSize());
}

/// Reads every beginning of the stored form of `written`, fields of 16 bits, into copies of `fresh`: whole
/// fields arrive, the others stay, and nothing is recorded.
template <class T>
void CheckCutShort(T& written, const T& fresh) {
    const std::vector<std::uint8_t> bytes = Stored(written);
    ASSERT_EQ(bytes.size(), written.GetPreferredSize());
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        T read = fresh;
        std::vector<std::uint8_t> expected = Stored(read);
        std::copy_n(bytes.begin(), size / 2 * 2, expected.begin());
        CMemoryStream cut(bytes.data(), size);
        EXPECT_EQ(Recorded([&] { EXPECT_TRUE(read.ObjectFromBuffer(&cut)); }), 0u);
        EXPECT_EQ(Stored(read), expected) << size;
    }
    EXPECT_FALSE(written.ObjectToBuffer(nullptr) || written.ObjectFromBuffer(nullptr));
}

}  // namespace testing
}  // namespace zul
