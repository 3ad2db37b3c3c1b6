#include "zul/tools/background.h"

#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"
#include "zul/kernel/message.h"

namespace {

using namespace zultest;
using zul::CBackground;

/// What reached the device, one letter a call: c colour, m mode, r raster operation.
std::string Calls(const device::Recorder& recorder) {
    std::string letters;
    for (const device::RecordedCall& call : recorder.Calls()) {
        if (call.name == "SetBkColor") letters += 'c';
        if (call.name == "SetBkMode") letters += 'm';
        if (call.name == "SetROP2") letters += 'r';
    }
    return letters;
}

TEST(Background, OnlyWhatChangedReachesTheDevice) {
    struct Row {
        const char* name;
        void (*change)(CBackground&);
        const char* calls;
    };
    const Row rows[] = {
        {"nothing", [](CBackground&) {}, ""},
        {"colour", [](CBackground& background) { background.SetColor(Red); }, "c"},
        {"mode", [](CBackground& background) { background.SetMode(CBackground::ModeOpaque); }, "m"},
        {"rop", [](CBackground& background) { background.SetRop(CBackground::RopXor); }, "r"},
        {"defaults", [](CBackground& background) { background.Default(); }, "cmr"},
        {"mode outside the table", [](CBackground& background) { background.SetMode(2); }, ""},
        {"rop outside the table", [](CBackground& background) { background.SetRop(-1); }, ""},
        {"message",
         [](CBackground& background) {
             zul::CMessage message(10080, 4);
             background.DoMessage(&message);
         },
         "r"},
    };
    for (const Row& row : rows) {
        zul::CCanvas canvas;
        canvas.CreateMemoryCanvas();
        CBackground background;
        {
            device::Recorder recorder;
            background.Validate(&canvas);
            EXPECT_EQ(Calls(recorder), "cmr") << "the first validation sets everything";
        }
        row.change(background);
        device::Recorder recorder;
        background.Validate(&canvas);
        EXPECT_EQ(Calls(recorder), row.calls) << row.name;
    }
}

}  // namespace
