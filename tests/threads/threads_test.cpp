// Threads draw, load and store at once what one thread does alone: each with canvases, files and a store of
// its own, all with the same fonts, class registry, table of objects and table of handles.
#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "tests/scenes/board.h"
#include "tests/store/drawn_canvas.h"
#include "zul/kernel/library.h"
#include "zul/raster/dib_section.h"
#include "zul/store/store.h"

namespace {

using namespace zul;

constexpr int Threads = 8;

std::int32_t SomeColor(scenes::CRandom& random) {
    return static_cast<std::int32_t>(random.Color());
}

/// Labels with halos, in sizes, turns and faces by lot; some letters are in another face's file.
std::uint64_t DrawTexts(scenes::CRandom& random) {
    static const CString texts[] = {u"Þingvellir", u"Αθήνα", u"Новосибирск", u"Zürich\nHB 408 m",
                                    u"\u2603\u6771\u4EAC"};
    static const char16_t* const names[] = {u"Liberation Sans", u"Liberation Serif", u"DejaVu Sans",
                                            u"nowhere", u""};
    scenes::CBoard board(32, true);
    CCanvas canvas;
    canvas.AttachToDevice(board.Get());
    for (int i = 0; i < 20; ++i) {
        CFont& font = canvas.GetFont();
        font.Create(names[random.In(0, 4)], random.In(6, 30), SomeColor(random),
                    random.OneIn(3) ? random.In(0, 3599) : 0);
        font.SetStyle(random.In(0, 0x3FF));
        font.SetOreolColor(SomeColor(random));
        const int x = random.In(-20, 80), y = random.In(-20, 80);
        canvas.OutText(x, y, x + random.In(5, 90), y + random.In(5, 50), &texts[random.In(0, 4)]);
    }
    canvas.Release();
    return board.Hash();
}

/// A canvas goes into a store and comes back as another object that draws the same, with the one scaler of
/// all threads.
std::uint64_t StoreAndDraw(scenes::CRandom& random) {
    CStore store;
    EXPECT_TRUE(store.Open(u":memory:", CStore::Create));
    std::uint64_t before = 0;
    {
        CBitmap pattern;
        CScaler scaler;
        CGradient gradient;
        CPalette palette;
        CCanvas canvas;
        SetUpCanvas(canvas, pattern, scaler, gradient, palette);
        canvas.GetPen().Create(CPen::PenExtended, random.In(0, 42), random.In(1, 9), SomeColor(random), 5, 9,
                               SomeColor(random));
        before = HashOfPicture(canvas, nullptr);
        EXPECT_TRUE(store.SetRoot(u"canvas", &canvas));
    }
    const CRef<CCanvas> canvas = store.GetRoot<CCanvas>(u"canvas");
    EXPECT_TRUE(canvas.IsExist());
    if (!canvas.IsExist()) return 0;
    EXPECT_EQ(HashOfPicture(*canvas, nullptr), before);
    return before;
}

/// Pictures of all depths go through files and over one another.
std::uint64_t DrawImages(scenes::CRandom& random) {
    const CScratchPath path;
    scenes::CBoard board(8 << random.In(0, 2), false);
    CCanvas canvas;
    canvas.AttachToDevice(board.Get());
    for (const int depth : {1, 4, 8, 16, 24, 32}) {
        CDibSection made, read;
        EXPECT_TRUE(made.Create(31, 17, depth, nullptr));
        for (int i = 0; i < 200; ++i)
            made.SetPixel(random.In(0, 30), random.In(0, 16), SomeColor(random));
        // A section that was made for a size goes into a file without its greys.
        const bool isFiled = depth > 8;
        if (isFiled) {
            EXPECT_TRUE(made.SaveToFile(path.Wide().c_str()) && read.Create(path.Wide().c_str()));
        }
        canvas.StretchBlt(isFiled ? &read : &made, random.In(-9, 60), random.In(-9, 60), random.In(5, 80),
                          random.In(5, 80), 0, 0, 31, 17, CBitmap::RopSourceCopy);
    }
    canvas.Release();
    return board.Hash();
}

/// Objects by name, values as text.
std::uint64_t MakeByName(scenes::CRandom& random) {
    static const char16_t* const names[] = {u"CPen", u"CFont", u"CBrush", u"CRect", u"CGradient", u"CFloat"};
    std::uint64_t hash = 0;
    for (int i = 0; i < 200; ++i) {
        const std::unique_ptr<CAnyObject> object(CClass::Create(names[random.In(0, 5)]));
        const CString text =
            CString::Format(u"%d %s %.3f", random.In(0, 99), CClass::GetName(object.get())->GetBuffer(),
                            random.In(0, 99) / 7.0);
        for (std::uint32_t at = 0; at < text.GetLength(); ++at)
            hash = hash * 31 + text.GetBuffer()[at];
    }
    return hash;
}

constexpr std::uint64_t (*Works[])(scenes::CRandom&) = {DrawTexts, StoreAndDraw, DrawImages, MakeByName};

/// What all works with all seeds result in; \p first says where to begin, so that threads do different work
/// at a time.
std::vector<std::uint64_t> WorkThrough(std::size_t first) {
    const std::size_t count = std::size(Works) * Threads;
    std::vector<std::uint64_t> results(count);
    for (std::size_t i = first; i < first + count; ++i) {
        scenes::CRandom random(i % count);
        results[i % count] = Works[i % std::size(Works)](random);
    }
    return results;
}

TEST(Threads, DoAtOnceWhatOneDoesAlone) {
    AutoRegister();
    std::vector<std::uint64_t> together[Threads];
    std::vector<std::thread> threads;
    // The first in this process: what is made when it is first needed is needed by all of them.
    for (std::size_t i = 0; i < Threads; ++i)
        threads.emplace_back([&together, i] { together[i] = WorkThrough(i * 5); });
    for (std::thread& thread : threads)
        thread.join();
    const std::vector<std::uint64_t> alone = WorkThrough(0);
    for (int i = 0; i < Threads; ++i)
        EXPECT_EQ(together[i], alone) << "thread " << i;
    EXPECT_EQ(std::set<std::uint64_t>(alone.begin(), alone.end()).size(), alone.size()) << "all works differ";
}

}  // namespace
