// Clipping held against an independent library over seeded random lists.
//
// Only crossing points are rounded, each along its edge and by at most half a unit. So a visible stretch P-Q
// of a segment becomes P'-Q' with |PP'|, |QQ'| <= 1/2 for ends that were cut and 0 for ends that were not,
// and every point of it moves by at most 1/2. That bounds what may differ:
//
// - length: |P'Q'| differs from |PQ| by at most 1/2 for each cut end. When rounding lays a stretch onto an
// edge, it
//   was within 1/2 of that edge. So the length inside lies between that in a frame smaller by 1/2 all around
//   and that in the frame itself, give or take 1/2 for each cut end;
// - area: a cut end sweeps a triangle of height at most 1/2 over the stretch: 1/4 (|PQ| + 1/2) for each;
// - which points are enclosed, and how often: unchanged farther than 1/2 from all segments.
//
// Lists whose segments run along the axes or diagonally cross edges at whole coordinates: nothing may differ.
#include <geos_c.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <random>

#include "geometry_testing.h"
#include "zul/geometry/rect.h"

namespace zul::testing {
namespace {

constexpr int CaseCount = 50000;  // of rings, and again of open lists
constexpr double Slack = 1e-6;    // of sums of doubles

struct Case {
    std::uint64_t seed = 0;
    TRect frame = {};
    List list;
    bool exact = false;  // no crossing point needs rounding
};

std::string Describe(const Case& c, const List& result) {
    std::string text =
        "seed " + std::to_string(c.seed) + ", frame " +
        ::testing::PrintToString(std::vector<int>{c.frame.MinX, c.frame.MinY, c.frame.MaxX, c.frame.MaxY});
    for (const List* list : {&c.list, &result}) {
        text += list == &result ? "\nresult" : "\nlist";
        for (const TPoint& p : *list)
            text += " " + std::to_string(p.X) + "," + std::to_string(p.Y);
    }
    return text;
}

// --- making cases ---

class Maker {
public:
    explicit Maker(std::uint64_t seed) : m_Random(seed) {
        const int scales[] = {6, 40, 1000, 32767};
        m_Scale = scales[Pick(0, 3)];
        m_Case.seed = seed;
        const TPoint a = Place(1);
        const TPoint b = Place(1);
        m_Case.frame = {std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y)};
        if (Pick(0, 31) == 0) m_Case.frame = {MinCoord, MinCoord, MaxCoord, MaxCoord};
    }

    Case Ring() {
        switch (Pick(0, 4)) {
            case 0:
                Scatter(Pick(1, 12));
                break;
            case 1:
                Star(Pick(3, 20));
                break;
            case 2:
                Spiral();
                break;
            case 3:
                Terrain(Pick(1, 12));
                break;
            default:
                Walk(Pick(1, 30), true);
                m_Case.list.push_back({m_Case.list.front().X, m_Case.list.back().Y});
                m_Case.exact = true;
        }
        if (Pick(0, 3) == 0) m_Case.list.push_back(m_Case.list.front());
        return m_Case;
    }

    Case Line() {
        switch (Pick(0, 2)) {
            case 0:
                Scatter(Pick(2, 12));
                break;
            case 1:
                Walk(Pick(1, 40), false);
                break;
            default:
                Walk(Pick(1, 40), true);
                m_Case.exact = true;
        }
        return m_Case;
    }

private:
    int Pick(int low, int high) {
        return low + static_cast<int>(m_Random() % static_cast<unsigned>(high - low + 1));
    }

    static TPoint Cut(int x, int y) { return {SaturateToCoord(x), SaturateToCoord(y)}; }

    TPoint Place(int factor) {
        const int reach = std::min(factor * m_Scale, 32768);
        return Cut(Pick(-reach, reach), Pick(-reach, reach));
    }

    // Anywhere about the frame, often on its border lines or at the limits of the range.
    void Scatter(int count) {
        const TRect& f = m_Case.frame;
        const TCoord xs[] = {f.MinX, f.MaxX, MinCoord, MaxCoord};
        const TCoord ys[] = {f.MinY, f.MaxY, MinCoord, MaxCoord};
        for (int i = 0; i < count; ++i) {
            TPoint p = Place(2);
            if (Pick(0, 5) == 0) p.X = xs[Pick(0, 3)];
            if (Pick(0, 5) == 0) p.Y = ys[Pick(0, 3)];
            m_Case.list.push_back(p);
        }
    }

    // Sorted around a centre: concave, mostly simple.
    void Star(int count) {
        Scatter(count);
        const TPoint c = Place(1);
        std::sort(m_Case.list.begin(), m_Case.list.end(), [&](const TPoint& a, const TPoint& b) {
            return std::atan2(a.Y - c.Y, a.X - c.X) < std::atan2(b.Y - c.Y, b.X - c.X);
        });
    }

    // A band that winds about the frame, outwards and back.
    void Spiral() {
        const double cx = (m_Case.frame.MinX + m_Case.frame.MaxX) / 2.0;
        const double cy = (m_Case.frame.MinY + m_Case.frame.MaxY) / 2.0;
        const int steps = Pick(6, 40);
        const double growth = m_Scale * Pick(10, 100) / 2000.0;
        const double turn = Pick(0, 1) == 0 ? 0.7 : -0.7;
        const auto at = [&](int i, double width) {
            const double r = growth * (i + width);
            return Cut(static_cast<int>(cx + r * std::cos(turn * i)),
                       static_cast<int>(cy + r * std::sin(turn * i)));
        };
        for (int i = 0; i < steps; ++i)
            m_Case.list.push_back(at(i, 0));
        for (int i = steps - 1; i >= 0; --i)
            m_Case.list.push_back(at(i, 4));
    }

    // A line of level and diagonal stretches above a straight foot, turned to any side.
    void Terrain(int count) {
        const int step = std::max(1, m_Scale / 4);
        int x = -m_Scale;
        int y = Pick(0, m_Scale);
        const int foot = -Pick(1, m_Scale);
        List& list = m_Case.list;
        list.push_back(Cut(x, y));
        for (int i = 0; i < count; ++i) {
            const int dx = Pick(1, step);
            const int slope = Pick(-1, 1);
            const int end = y + slope * dx;
            if (x + dx > 32767 || end > 32767 || end <= foot) continue;
            x += dx;
            y = end;
            list.push_back(Cut(x, y));
        }
        list.push_back(Cut(x, foot));
        list.push_back(Cut(-m_Scale, foot));
        if (Pick(0, 1) == 0) {
            for (TPoint& p : list)
                p = {p.Y, p.X};
        }
        if (Pick(0, 1) == 0) {
            for (TPoint& p : list)
                p = Cut(-p.X, -p.Y);
        }
        m_Case.exact = true;
    }

    // Step by step; with `octilinear` along the axes and diagonals only.
    void Walk(int count, bool octilinear) {
        const int step = std::max(1, m_Scale / Pick(1, 6));
        TPoint at = Place(1);
        m_Case.list.push_back(at);
        for (int i = 0; i < count; ++i) {
            const int length = Pick(1, step);
            const int dx = octilinear ? Pick(-1, 1) * length : Pick(-step, step);
            const int dy = octilinear ? Pick(-1, 1) * length : Pick(-step, step);
            if (Cut(at.X + dx, at.Y + dy) != WrapToPoint(at.X + dx, at.Y + dy)) continue;
            at = WrapToPoint(at.X + dx, at.Y + dy);
            m_Case.list.push_back(at);
        }
    }

    std::mt19937_64 m_Random;
    int m_Scale = 0;
    Case m_Case;
};

// --- measuring ---

double SignedArea(const List& ring) {
    double sum = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const TPoint& a = ring[i];
        const TPoint& b = ring[(i + 1) % ring.size()];
        sum += static_cast<double>(a.X) * b.Y - static_cast<double>(b.X) * a.Y;
    }
    return sum / 2;
}

// How much rounding may change: ends outside of segments that may reach the frame, with the length they may
// have.
struct Cuts {
    int ends = 0;
    double area = 0;
};

Cuts CountCuts(const Case& c, bool closed) {
    const CRect frame(c.frame);
    const double diagonal = Distance(frame.GetWidth(), frame.GetHeight());
    Cuts cuts;
    for (std::size_t i = closed ? 0 : 1; i < c.list.size(); ++i) {
        const TPoint& a = c.list[(i + c.list.size() - 1) % c.list.size()];
        const TPoint& b = c.list[i];
        if (!frame.IsIntersect(std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X),
                               std::max(a.Y, b.Y)))
            continue;
        const int ends = (frame.IsInside(a.X, a.Y) ? 0 : 1) + (frame.IsInside(b.X, b.Y) ? 0 : 1);
        cuts.ends += ends;
        cuts.area += ends * 0.25 * (std::min(diagonal, Distance(a.X - b.X, a.Y - b.Y)) + 0.5);
    }
    return cuts;
}

struct Box {
    double minX, minY, maxX, maxY;
};

// The length of a stretch unless it runs along an edge of the frame.
double LengthOffTheEdges(const Box& f, double ax, double ay, double bx, double by) {
    const bool along =
        (ax == bx && (ax == f.minX || ax == f.maxX)) || (ay == by && (ay == f.minY || ay == f.maxY));
    return along ? 0 : Distance(bx - ax, by - ay);
}

double LengthInside(const Box& f, const List& line) {
    double sum = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        sum += LengthOffTheEdges(f, line[i - 1].X, line[i - 1].Y, line[i].X, line[i].Y);
    }
    return sum;
}

// --- the independent library ---

class Geos {
public:
    using Geometry = std::unique_ptr<GEOSGeometry, std::function<void(GEOSGeometry*)>>;

    Geos() : m_Context(GEOS_init_r()) {}
    ~Geos() { GEOS_finish_r(m_Context); }
    Geos(const Geos&) = delete;
    Geos& operator=(const Geos&) = delete;

    Geometry Polygon(List ring) {
        if (ring.size() < 3) return Own(nullptr);
        ring.push_back(ring.front());
        return Own(GEOSGeom_createPolygon_r(m_Context, GEOSGeom_createLinearRing_r(m_Context, Sequence(ring)),
                                            nullptr, 0));
    }

    bool IsValid(const Geometry& geometry) {
        return geometry && GEOSisValid_r(m_Context, geometry.get()) == 1;
    }

    /// Negative when the library cannot tell.
    double AreaInside(const TRect& f, const Geometry& polygon) {
        const Geometry frame =
            Polygon({{f.MinX, f.MinY}, {f.MaxX, f.MinY}, {f.MaxX, f.MaxY}, {f.MinX, f.MaxY}});
        const Geometry common = Own(GEOSIntersection_r(m_Context, polygon.get(), frame.get()));
        double area = -1;
        return common && GEOSArea_r(m_Context, common.get(), &area) == 1 ? area : -1;
    }

    double LengthInside(const Box& f, const List& line) {
        const Geometry whole = Own(GEOSGeom_createLineString_r(m_Context, Sequence(line)));
        const Geometry left = Own(GEOSClipByRect_r(m_Context, whole.get(), f.minX, f.minY, f.maxX, f.maxY));
        if (!left) return -1;
        double sum = 0;
        const int parts = GEOSGetNumGeometries_r(m_Context, left.get());
        for (int part = 0; part < parts; ++part) {
            const GEOSGeometry* piece = GEOSGetGeometryN_r(m_Context, left.get(), part);
            const GEOSCoordSequence* sequence = GEOSGeom_getCoordSeq_r(m_Context, piece);
            unsigned size = 0;
            if (!sequence || GEOSCoordSeq_getSize_r(m_Context, sequence, &size) != 1) continue;
            double ax = 0, ay = 0;
            for (unsigned i = 0; i < size; ++i) {
                double x = 0, y = 0;
                GEOSCoordSeq_getXY_r(m_Context, sequence, i, &x, &y);
                if (i > 0) sum += LengthOffTheEdges(f, ax, ay, x, y);
                ax = x;
                ay = y;
            }
        }
        return sum;
    }

private:
    Geometry Own(GEOSGeometry* geometry) {
        return Geometry(geometry, [this](GEOSGeometry* g) { GEOSGeom_destroy_r(m_Context, g); });
    }

    GEOSCoordSequence* Sequence(const List& points) {
        GEOSCoordSequence* sequence =
            GEOSCoordSeq_create_r(m_Context, static_cast<unsigned>(points.size()), 2);
        for (unsigned i = 0; i < points.size(); ++i) {
            GEOSCoordSeq_setXY_r(m_Context, sequence, i, points[i].X, points[i].Y);
        }
        return sequence;
    }

    GEOSContextHandle_t m_Context;
};

List Clip(const Case& c, bool closed) {
    CPoints result(true);
    Points(c.list).ClipByRect(c.frame.MinX, c.frame.MinY, c.frame.MaxX, c.frame.MaxY, result, closed);
    return Read(result);
}

bool AllInside(const Case& c, const List& result) {
    const CRect frame(c.frame);
    return std::all_of(result.begin(), result.end(),
                       [&](const TPoint& p) { return frame.IsInside(p.X, p.Y); });
}

TEST(ClipByRectProperty, RingsEncloseTheSameAreaAndPoints) {
    Geos geos;
    int areas = 0;
    int exactAreas = 0;
    int samples = 0;
    for (int i = 0; i < CaseCount; ++i) {
        const Case c = Maker(static_cast<std::uint64_t>(i)).Ring();
        const List result = Clip(c, true);
        ASSERT_TRUE(AllInside(c, result)) << Describe(c, result);
        ASSERT_LE(result.size(), 4 * c.list.size() + 8) << Describe(c, result);

        std::mt19937_64 random(static_cast<std::uint64_t>(i));
        for (int sample = 0; sample < 6; ++sample) {
            const auto between = [&](double low, double high) {
                return low + (high - low) * (static_cast<double>(random() >> 11) + 0.5) / 9007199254740992.0;
            };
            const double x = between(c.frame.MinX, c.frame.MaxX);
            const double y = between(c.frame.MinY, c.frame.MaxY);
            if (DistanceTo(c.list, x, y) < (c.exact ? Slack : 0.5 + Slack)) continue;
            if (!(x > c.frame.MinX && x < c.frame.MaxX && y > c.frame.MinY && y < c.frame.MaxY)) continue;
            ++samples;
            ASSERT_EQ(WindingNumber(result, x, y), WindingNumber(c.list, x, y))
                << "at " << x << "," << y << "\n"
                << Describe(c, result);
        }

        const auto polygon = geos.Polygon(c.list);
        if (!geos.IsValid(polygon)) continue;
        const double expected = geos.AreaInside(c.frame, polygon);
        if (expected < 0) continue;
        ++(c.exact ? exactAreas : areas);
        const double tolerance = (c.exact ? 0 : CountCuts(c, true).area) + Slack * (1 + expected * 1e-6);
        ASSERT_NEAR(std::abs(SignedArea(result)), expected, tolerance) << Describe(c, result);
    }
    // The property must not pass by comparing nothing.
    EXPECT_GT(areas, CaseCount / 8);
    EXPECT_GT(exactAreas, CaseCount / 8);
    EXPECT_GT(samples, CaseCount * 2);
}

TEST(ClipByRectProperty, LinesKeepTheirLengthInside) {
    Geos geos;
    int compared = 0;
    int crossing = 0;
    for (int i = 0; i < CaseCount; ++i) {
        const Case c = Maker(static_cast<std::uint64_t>(CaseCount + i)).Line();
        const List result = Clip(c, false);
        ASSERT_TRUE(AllInside(c, result)) << Describe(c, result);
        ASSERT_LE(result.size(), 6 * c.list.size()) << Describe(c, result);
        if (c.list.size() < 2 || c.frame.MinX == c.frame.MaxX || c.frame.MinY == c.frame.MaxY) continue;

        const Box frame = {double(c.frame.MinX), double(c.frame.MinY), double(c.frame.MaxX),
                           double(c.frame.MaxY)};
        const double length = LengthInside(frame, result);
        const double most = geos.LengthInside(frame, c.list);
        ASSERT_GE(most, 0);
        const double slack = Slack * (1 + most * 1e-3);
        const int ends = CountCuts(c, false).ends;
        ++compared;
        if (ends > 0 && most > 0) ++crossing;
        if (c.exact) {
            ASSERT_NEAR(length, most, slack) << Describe(c, result);
            continue;
        }
        ASSERT_LE(length, most + 0.5 * ends + slack) << Describe(c, result);
        if (c.frame.MaxX - c.frame.MinX < 2 || c.frame.MaxY - c.frame.MinY < 2) continue;
        const Box smaller = {frame.minX + 0.5, frame.minY + 0.5, frame.maxX - 0.5, frame.maxY - 0.5};
        const double least = geos.LengthInside(smaller, c.list);
        ASSERT_GE(length, least - 0.5 * ends - slack) << Describe(c, result);
    }
    EXPECT_GT(compared, CaseCount / 2);
    EXPECT_GT(crossing, CaseCount / 3);
}

}  // namespace
}  // namespace zul::testing
