// Every setting of every tool through its messages: one row a setting.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "tests/canvas/canvas_testing.h"
#include "zul/kernel/message.h"

namespace {

using namespace zultest;

template <class T>
std::unique_ptr<zul::CAnyObject> Make() {
    return std::make_unique<T>();
}

struct SettingRow {
    const char* name;
    std::unique_ptr<zul::CAnyObject> (*make)();
    std::int32_t get, set;
    std::int64_t first;  ///< what a new tool answers
};

const SettingRow Settings[] = {
    {"PenColor", Make<zul::CPen>, 10019, 10020, 0},
    {"PenDashLength", Make<zul::CPen>, 10021, 10022, 5},
    {"PenEndType", Make<zul::CPen>, 10023, 10024, 0},
    {"PenExtraColor", Make<zul::CPen>, 10025, 10026, 0},
    {"PenStyle", Make<zul::CPen>, 10029, 10030, 0},
    {"PenType", Make<zul::CPen>, 10031, 10032, 1},
    {"PenWidth", Make<zul::CPen>, 10033, 10034, 1},
    {"BrushColor", Make<zul::CBrush>, 10035, 10036, 0xFFFFFF},
    {"BrushStyle", Make<zul::CBrush>, 10039, 10040, 4},
    {"BrushType", Make<zul::CBrush>, 10041, 10042, 1},
    {"FontAngle", Make<zul::CFont>, 10043, 10044, 0},
    {"FontAlignment", Make<zul::CFont>, 10045, 10046, 9},
    {"FontHeight", Make<zul::CFont>, 10047, 10048, 12},
    {"FontHaloColor", Make<zul::CFont>, 10051, 10052, 0},
    {"FontStyle", Make<zul::CFont>, 10053, 10054, 0x200},
    {"FontTextColor", Make<zul::CFont>, 10055, 10056, 0},
    {"BackgroundColor", Make<zul::CBackground>, 10057, 10058, 0},
    {"BackgroundMode", Make<zul::CBackground>, 10059, 10060, 0},
    {"BackgroundRop", Make<zul::CBackground>, 10061, 10062, 0},
};

TEST(ToolMessages, EverySettingIsReadAndWrittenByTwoOfThem) {
    for (const SettingRow& row : Settings) {
        SCOPED_TRACE(row.name);
        const std::unique_ptr<zul::CAnyObject> tool = row.make();
        const auto send = [&](std::int32_t code, std::int64_t value = 0) {
            zul::CMessage message(code, value);
            EXPECT_TRUE(tool->DoMessage(&message));
            return message.GetResult();
        };
        EXPECT_EQ(send(row.get), row.first);
        for (const std::int64_t value : {7, -3, INT32_MIN, 0}) {
            send(row.set, value);
            EXPECT_EQ(send(row.get), value) << "widened with its sign";
        }
        send(row.set, 0x1'00000005);
        EXPECT_EQ(send(row.get), 5) << "only 32 bits travel";
        const std::uint64_t before = zul::CClient::GetModificationCount();
        send(row.set, 23);
        send(row.set, 23);
        EXPECT_EQ(zul::CClient::GetModificationCount(), before + 1) << "an equal value is no change";
        zul::CMessage unknown(10018);
        EXPECT_FALSE(tool->DoMessage(&unknown));
        EXPECT_FALSE(tool->DoMessage(nullptr));
    }
}

TEST(ToolMessages, PenUnitIsZeroOrOne) {
    zul::CPen pen;
    for (const std::int64_t value : {std::int64_t{1} << 32, std::int64_t{0}, std::int64_t{-1}}) {
        zul::CMessage set(10028, value), get(10027);
        EXPECT_TRUE(pen.DoMessage(&set) && pen.DoMessage(&get));
        EXPECT_EQ(get.GetResult(), value != 0);
    }
}

TEST(ToolMessages, BrushOriginTravelsInOneValueAndIsStoredSilently) {
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    zul::CBrush& brush = canvas.GetBrush();
    brush.Validate(&canvas);
    zul::CMessage set(10038, -5, 9);
    EXPECT_TRUE(brush.DoMessage(&set));
    zul::CMessage get(10037);
    EXPECT_TRUE(brush.DoMessage(&get));
    EXPECT_EQ(get.GetResult(), 0x9'FFFFFFFB);
    device::Recorder recorder;
    brush.Validate(&canvas);
    EXPECT_EQ(recorder.Count("SetBrushOrgEx"), 0);
}

TEST(ToolMessages, InvalidatingHasTheDeviceObjectMadeAnew) {
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.GetPen().Validate(&canvas);
    canvas.GetBrush().Validate(&canvas);
    zul::CMessage penMessage(10080, 0);  // whatever the parameter
    zul::CMessage brushMessage(10080, 1);
    EXPECT_TRUE(canvas.GetPen().DoMessage(&penMessage));
    EXPECT_TRUE(canvas.GetBrush().DoMessage(&brushMessage));
    device::Recorder recorder;
    canvas.GetPen().Validate(&canvas);
    canvas.GetBrush().Validate(&canvas);
    EXPECT_EQ(recorder.Count("CreatePen"), 1);
    EXPECT_EQ(recorder.Count("CreateSolidBrush"), 1);
}

TEST(ToolMessages, FontNameTravelsAsAnAddress) {
    zul::CFont font;
    zul::CMessage set(10050, zul::CMessage::FromPointer(u"Old Map Face"));
    EXPECT_TRUE(font.DoMessage(&set));
    zul::CMessage get(10049);
    EXPECT_TRUE(font.DoMessage(&get));
    EXPECT_EQ(zul::CMessage::ToPointer<const char16_t>(get.GetResult()), font.GetName());
    zul::CMessage null(10050, 0);
    EXPECT_FALSE(font.DoMessage(&null));
    font.SetName(font.GetName() + 4);  // its own characters
    font.SetName(nullptr);
    EXPECT_EQ(zul::CString(font.GetName()), zul::CString(u"Map Face"));
}

TEST(ToolMessages, PaletteEntries) {
    zul::CPalette palette;
    const auto send = [&palette](std::int32_t code, std::int64_t first, std::int64_t second = 0) {
        zul::CMessage message(code, first, second);
        EXPECT_TRUE(palette.DoMessage(&message)) << code;
        return message.GetResult();
    };
    send(10063, Red);
    send(10063, Green);
    send(10066, 1, Blue);
    EXPECT_EQ(send(10065, 1), Blue);
    {
        Reports reports;
        EXPECT_EQ(send(10065, std::int64_t{1} << 32), 0) << "no index, although its low bits are one";
        send(10066, -1, Red);
        EXPECT_EQ(reports.List.size(), 2u);
        send(10064, 2);
        EXPECT_EQ(reports.List.size(), 2u) << "deleting nothing is no error";
    }
    send(10064, 0);
    EXPECT_EQ(palette.GetCount(), 1);
    EXPECT_EQ(palette.GetColor(0), Blue);
    send(10080, 0);
}

}  // namespace
