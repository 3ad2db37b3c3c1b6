/// \file
/// Where labels are placed.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "apps/zulmap/labels/inner_place.h"
#include "apps/zulmap/labels/label_placer.h"
#include "apps/zulmap/labels/label_text.h"
#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/map_scheme.h"
#include "apps/zulmap/map_sight.h"
#include "apps/zulmap/memory_picture.h"
#include "tests/apps/apps_testing.h"

namespace zulmap {
namespace {

constexpr zul::TSize kScreen{800, 400};

/// Under the alternate rule.
bool IsInside(const std::vector<Path>& rings, const TDoublePoint& p) {
    return std::count_if(rings.begin(), rings.end(),
                         [&](const Path& ring) { return zulmap::IsInside(p, ring); }) %
               2 !=
           0;
}

/// No edge comes into the box, and its middle lies inside.
bool IsBoxInside(const std::vector<Path>& rings, const TDoublePoint& center, HalfSize half) {
    for (const Path& ring : rings) {
        for (std::size_t i = 0, last = ring.size() - 1; i < ring.size(); last = i++) {
            double from = 0.0;
            double to = 1.0;
            const auto cut = [&](double start, double way, double reach) {
                const double a = (-reach - start) / way;
                const double b = (reach - start) / way;
                from = std::max(from, std::min(a, b));
                to = std::min(to, std::max(a, b));
            };
            cut(ring[i].X - center.X, ring[last].X - ring[i].X, half.width);
            cut(ring[i].Y - center.Y, ring[last].Y - ring[i].Y, half.height);
            if (from < to) return false;
        }
    }
    return IsInside(rings, center);
}

/// A ring about a place, as jagged as it comes.
Path Star(std::mt19937& random, const TDoublePoint& center, double radius, int corners) {
    std::uniform_real_distribution<double> part(0.25, 1.0);
    Path ring;
    for (int i = 0; i < corners; ++i) {
        const double angle = 6.283185307179586 * i / corners;
        const double length = radius * part(random);
        ring.push_back({center.X + length * std::cos(angle), center.Y + length * std::sin(angle)});
    }
    return ring;
}

TEST(InnerPlace, ABoxFitsWhereverAnySearchFindsRoomForIt) {
    std::mt19937 random(5);
    int found = 0;
    for (int round = 0; round < 200; ++round) {
        std::vector<Path> rings = {Star(random, {0.0, 0.0}, 100.0, 5 + round % 30)};
        if (round % 2 == 0) rings.push_back(Star(random, {10.0, 5.0}, 15.0, 7));
        const HalfSize half{20.0 + round % 40, 8.0 + round % 11};
        bool isRoom = false;
        const HalfSize ample{half.width * 1.01, half.height * 1.01};
        for (double x = -100.0; x < 100.0 && !isRoom; x += 2.0) {
            for (double y = -100.0; y < 100.0 && !isRoom; y += 2.0) {
                isRoom = IsBoxInside(rings, {x, y}, ample);
            }
        }
        const auto place = FindInnerPlace(rings, half, 1.0);
        EXPECT_TRUE(place || !isRoom) << round;
        if (!place) continue;
        ++found;
        const HalfSize almost{half.width * 0.999, half.height * 0.999};
        EXPECT_TRUE(IsBoxInside(rings, place->center, almost)) << round;
        EXPECT_GE(place->room, 1.0) << round;
        EXPECT_TRUE(IsInside(rings, FindInnerPlace(rings, {900.0, 900.0}, 0.0)->center)) << round;
    }
    EXPECT_GT(found, 40);
    EXPECT_LT(found, 160);
}

TEST(InnerPlace, AreasWithoutInsideHaveNone) {
    for (const std::vector<Path>& rings : {std::vector<Path>{},
                                           {{}},
                                           {{{1.0, 1.0}}},
                                           {{{0.0, 0.0}, {9.0, 0.0}}},
                                           {{{2.0, 2.0}, {2.0, 2.0}, {2.0, 2.0}}}}) {
        EXPECT_FALSE(FindInnerPlace(rings, {1.0, 1.0}, 0.0));
    }
}

TEST(TurnedBox, BoxesOverlapWhereTheyHaveAPointInCommon) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(0.0, 300.0);
    std::uniform_real_distribution<double> side(2.0, 40.0);
    BoxIndex index({200, 300});
    std::vector<TurnedBox> boxes;
    int together = 0;
    for (int i = 0; i < 300; ++i) {
        const TurnedBox box{
            {place(random), place(random)}, {side(random), side(random)}, Turn(place(random))};
        bool isFree = true;
        for (const TurnedBox& other : boxes) {
            bool haveCommon = false;
            for (int x = -20; x <= 20; ++x) {
                for (int y = -20; y <= 20 && !haveCommon; ++y) {
                    const TDoublePoint p = box.CornerAt(x / 20.0, y / 20.0);
                    const TDoublePoint q =
                        other.turn.FromScreen({p.X - other.center.X, p.Y - other.center.Y});
                    haveCommon = std::abs(q.X) < other.half.width && std::abs(q.Y) < other.half.height;
                }
            }
            const TurnedBox larger{box.center, {box.half.width + 6.0, box.half.height + 6.0}, box.turn};
            EXPECT_LE(haveCommon, Overlap(box, other));
            EXPECT_TRUE(haveCommon || !Overlap(box, other) || Overlap(larger, other));
            isFree = isFree && !Overlap(box, other);
            together += haveCommon ? 1 : 0;
        }
        EXPECT_EQ(index.IsFree(box), isFree);
        index.Add(box);
        boxes.push_back(box);
    }
    EXPECT_GT(together, 300);
}

TEST(LabelText, NamesBreakIntoEvenLines) {
    const auto measure = [](const zul::CString& text) { return static_cast<double>(text.GetLength()); };
    const struct {
        const char* name;
        std::size_t count;
        std::vector<zul::CString> lines;
    } rows[] = {
        {"Papua New Guinea", 1, {"Papua New Guinea"}},
        {"Papua New Guinea", 2, {"Papua New", "Guinea"}},
        {"Papua New Guinea", 3, {"Papua", "New", "Guinea"}},
        {"Guinea-Bissau", 2, {"Guinea-", "Bissau"}},
        {"a b cc dddd", 2, {"a b cc", "dddd"}},
        {"St. Vin. and the Gren.", 3, {"St. Vin.", "and the", "Gren."}},
        {"Chad", 2, {}},
        {"\xF0\x9F\x8F\x94 \xF0\x9F\x8F\x94", 2, {"\xF0\x9F\x8F\x94", "\xF0\x9F\x8F\x94"}},
        {"- -", 3, {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(BreakName(row.name, row.count, measure), row.lines) << row.name << ' ' << row.count;
    }
}

/// What is written on a view of a map.
struct Written {
    std::vector<Label> labels;
    std::vector<TurnedBox> outlines;
    std::vector<std::string> names;
};

Written WriteOn(const MapData& map, const std::string& font, const SightRequest& view = {},
                zul::TSize screen = kScreen, bool isHasty = false) {
    MapStyle style;
    style.font = ParseFont(font);
    const Sight sight = MakeSight(map, view, screen);
    MapContent content(std::make_shared<const MapData>(map), sight.space, 0.0);
    content.Prepare();
    MemoryPicture picture(screen.Width, screen.Height);
    picture.GetCanvas().SetScaler(sight.scaler.get());
    LabelPlacer placer(content, style, picture.GetCanvas(), screen);
    while (!placer.Place(isHasty ? TimeSlice(std::chrono::nanoseconds(0)) : TimeSlice())) {
    }
    Written written{placer.GetLabels(), {}, {}};
    LabelWriter writer(picture.GetCanvas(), map, style);
    for (const Label& label : written.labels) {
        written.outlines.push_back(writer.GetOutline(label));
        std::string name;
        for (const zul::CString& line : label.lines) {
            name += (name.empty() ? "" : " ") + std::string(line.GetBufferAnsi());
        }
        written.names.push_back(name);
    }
    return written;
}

const MapData& World() {
    static const MapData map = ReadMaps({ZULMAP_DATA "/countries-50m.geojson"},
                                        [](const std::string&, std::size_t) {}, {}, {"name"});
    return map;
}

TEST(Labels, ShareTheScreenWithoutTouching) {
    SightRequest turned;
    turned.box = Box{-20.0, 30.0, 60.0, 70.0};
    turned.degrees = 25.0;
    SightRequest ahead;
    ahead.center = TDoublePoint{10.0, 20.0};
    ahead.depth = 4e6;
    const struct {
        SightRequest view;
        const char* font;
    } rows[] = {{{}, ""},
                {{}, "framed=1 angle=33 halo=7 height=6"},
                {turned, "bold=1"},
                {turned, "height=200000 scaled=1"},
                {ahead, "italic=1 angle=-90"}};
    for (const auto& row : rows) {
        const Written written = WriteOn(World(), row.font, row.view);
        EXPECT_GT(written.labels.size(), 15U) << row.font;
        for (std::size_t i = 0; i < written.outlines.size(); ++i) {
            const Box bounds = written.outlines[i].GetBounds();
            EXPECT_TRUE((Box{0.0, 0.0, 800.0, 400.0}.Contains(bounds))) << written.names[i];
            for (std::size_t j = 0; j < i; ++j) {
                EXPECT_FALSE(Overlap(written.outlines[i], written.outlines[j]))
                    << written.names[i] << " on " << written.names[j];
            }
        }
        const Written again = WriteOn(World(), row.font, row.view, kScreen, true);
        EXPECT_EQ(again.names, written.names) << "placed bit by bit";
        EXPECT_EQ(std::set<std::string>(again.names.begin(), again.names.end()).size(), again.names.size());
    }
}

TEST(Labels, StandInTheirCountriesOrOnTheWater) {
    const zul::TSize screen{1600, 800};
    const Written written = WriteOn(World(), "", {}, screen);
    EXPECT_GT(written.labels.size(), 120U);
    EXPECT_EQ(written.names.front(), "Antarctica");
    int inside = 0;
    for (std::size_t i = 0; i < written.labels.size(); ++i) {
        int foreign = 0;
        int own = 0;
        for (int x = -2; x <= 2; ++x) {
            for (int y = -1; y <= 1; ++y) {
                const TDoublePoint pixel = written.labels[i].text.CornerAt(x / 2.5, y / 2.0);
                const TDoublePoint place{pixel.X * 0.225 - 180.0, 90.0 - pixel.Y * 0.225};
                for (const Feature& feature : World().features) {
                    const bool isThere =
                        std::any_of(feature.areas.begin(), feature.areas.end(),
                                    [&](const Area& area) { return IsInside(area.rings, place); });
                    if (!isThere) continue;
                    ++(written.names[i] == feature.name.GetBufferAnsi() ? own : foreign);
                }
            }
        }
        EXPECT_LE(foreign, 3) << written.names[i] << " of 15";
        inside += own == 15 ? 1 : 0;
    }
    EXPECT_GT(inside, 40);
}

Feature Square(const char* name, double x, double y, double size) {
    return {{{{{{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}}}}}, {}, {}, name};
}

MapData MapOf(const std::vector<Feature>& features) {
    MapData map;
    map.layers.resize(1);
    map.features = features;
    map.hasNames = true;
    map.extent = {0.0, 0.0, 100.0, 50.0};
    map.scheme = MakeScheme(map);
    return map;
}

TEST(Labels, FollowTheFeatures) {
    const std::string longName(300, 'n');
    const struct {
        const char* what;
        std::vector<Feature> features;
        std::vector<std::string> names;
    } rows[] = {
        {"the largest first",
         {Square("a", 0, 0, 10), Square("b", 20, 0, 30), Square("c", 60, 0, 20)},
         {"b", "c", "a"}},
        {"one for two close by", {Square("a", 0, 0, 10), Square("a", 12, 0, 10)}, {"a"}},
        {"and two for two far away", {Square("a", 0, 0, 10), Square("a", 85, 0, 10)}, {"a", "a"}},
        {"none without a name, none that is too long",
         {Square("", 0, 0, 30), Square(longName.c_str(), 40, 0, 30), Square("\xF0\x9F\x8F\x94", 80, 0, 10)},
         {"\xF0\x9F\x8F\x94"}},
        {"points and lines behind areas",
         {{{}, {{{0, 5}, {100, 5}}, {{0, 5}, {0, 5.1}}}, {}, "line"},
          {{}, {}, {{50, 30}, {50, 30}}, "point"},
          Square("a", 0, 10, 10)},
         {"a", "point", "line"}},
    };
    for (const auto& row : rows) {
        MapData map = MapOf(row.features);
        EXPECT_EQ(WriteOn(map, "").names, row.names) << row.what;
        map.hasNames = false;
        EXPECT_TRUE(WriteOn(map, "").names.empty()) << row.what;
    }
}

TEST(Labels, OfAreasKeepClearOfSigns) {
    const MapData map = MapOf({Square("area", 0, 0, 50), {{}, {}, {{25.0, 25.0}, {25.0, 30.0}}, ""}});
    const Written written = WriteOn(map, "angle=20");
    ASSERT_EQ(written.labels.size(), 1U);
    for (const double y : {160.0, 200.0}) {
        EXPECT_FALSE(Overlap(written.labels[0].text, {{200.5, y + 0.5}, {3.0, 3.0}, Turn()})) << y;
    }
}

}  // namespace
}  // namespace zulmap
