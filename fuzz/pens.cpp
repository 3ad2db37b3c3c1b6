/// \file
/// Pens of all styles, lengths, widths, dashes and endings, drawing lines of any shape through views of all
/// kinds, and by themselves.
///
/// An input is a program: each step is a call, and what follows it are the call's arguments. Whatever the
/// steps were, a clip must change nothing inside it, what a pen draws by itself must give the device its pen
/// and brush back and cost no more than what is visible, and no handle may be left, be it that reports throw
/// or not.

#include <iterator>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "fuzz/frame/picture.h"
#include "fuzz/frame/reporting.h"
#include "fuzz/frame/views.h"
#include "platform/software/trace.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/message.h"

namespace {

using fuzz::Picture;
using fuzz::Require;

constexpr int kNear = 2 * Picture::kSide;
constexpr int kMaxSteps = 30;
constexpr int kMaxPoints = 12;
/// Device calls that the marks of one line on the picture can need, more or less, for each of its points.
constexpr std::size_t kMaxCalls = 500;

class Program {
public:
    explicit Program(fuzz::Input& input)
        : m_Input(input), m_Picture(Picture::SomeDepth(input)), m_Reporting(input.Below(4) == 0) {
        m_Canvas.AttachToDevice(m_Picture.Dc());
        SetPen();
    }
    ~Program() { m_Canvas.Release(); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Step() {
        using Method = void (Program::*)();
        static constexpr Method kSteps[] = {
            &Program::SetPen,     &Program::SetPen,      &Program::SetOne,    &Program::SendMessage,
            &Program::SetView,    &Program::SetModes,    &Program::SetClip,   &Program::Attach,
            &Program::Handles,    &Program::DrawLists,   &Program::DrawLists, &Program::DrawPixels,
            &Program::DrawPixels, &Program::DrawFigures, &Program::PenAlone,  &Program::PenAlone,
            &Program::Apply,
        };
        const Method step = kSteps[m_Input.Below(std::size(kSteps))];
        fuzz::Reporting::Try([&] { (this->*step)(); });
    }

private:
    zul::CPen& Pen() { return m_Canvas.GetPen(); }
    int Number() { return m_Input.Number(kNear); }
    /// A width or a length.
    int Length() { return m_Input.Below(16) == 15 ? Number() : m_Input.Below(24); }

    // --- settings ---

    void SetPen() {
        const int type = m_Input.Below(4) == 0 ? m_Input.Below(5) : zul::CPen::PenExtended;
        const int style = m_Input.Below(zul::CPen::GetExtendedStylesCount() + 2) - 1;
        const int width = Length(), dash = Length();
        const auto color = m_Input.Any<std::int32_t>(), extra = m_Input.Any<std::int32_t>();
        const int ends = m_Input.Flag() ? m_Input.Below(64) : m_Input.Any<std::int32_t>();
        Pen().Create(static_cast<zul::CPen::TPenType>(type), style, width, color, ends, dash, extra);
        Pen().SetScaled(m_Input.Below(4) == 0);
    }
    void SetOne() {
        using Setter = void (zul::CPen::*)(std::int32_t);
        static constexpr Setter kSetters[] = {&zul::CPen::SetType,       &zul::CPen::SetStyle,
                                              &zul::CPen::SetEndType,    &zul::CPen::SetWidth,
                                              &zul::CPen::SetColor,      &zul::CPen::SetExtraColor,
                                              &zul::CPen::SetDashLength, &zul::CPen::CreateXor};
        const Setter setter = m_Input.OneOf(kSetters);
        (Pen().*setter)(Number());
    }
    void SendMessage() {
        constexpr int kFirst = 10019, kCodes = 16, kInvalidate = 10080;
        const int code = m_Input.Below(kCodes + 1);
        zul::CMessage message(code == kCodes ? kInvalidate : kFirst + code, Number());
        Pen().DoMessage(&message);
    }
    void SetView() { m_Canvas.SetScaler(m_Views.Change(m_Input)); }
    void SetModes() {
        m_Canvas.SetPretranslation(m_Input.Flag());
        m_Canvas.SetBlackLinesMode(m_Input.Flag());
        m_Canvas.SetLinesOnlyMode(m_Input.Flag());
        m_Canvas.SetListClipping(m_Input.Flag());
        m_Canvas.GetBackground().SetMode(m_Input.Below(3));
        m_Canvas.GetBackground().SetRop(m_Input.Below(3));
        m_Canvas.GetBrush().SetType(m_Input.Below(4));
    }
    void SetClip() {
        const int x = Number(), y = Number(), right = Number(), bottom = Number();
        m_Canvas.GetRegion().Create(x, y, right, bottom, &m_Canvas,
                                    static_cast<zul::CRegion::TCombine>(m_Input.Below(6)));
        if (m_Input.Below(4) == 0) m_Canvas.GetRegion().SetNullRegion(&m_Canvas);
    }
    void Attach() {
        m_Canvas.Release();
        if (m_Input.Flag()) m_Canvas.AttachToDevice(m_Picture.Dc());
    }
    void Handles() {
        Pen().CalculatePixelWidth(&m_Canvas, Length());
        Pen().GetPixelValue(Number());
        Pen().ValidateKelvornPen(Length());
        Pen().Validate(&m_Canvas);
        if (m_Input.Flag()) Pen().Release(&m_Canvas);
    }
    /// A pen applied to itself, to another one and back.
    void Apply() {
        zul::CPen other;
        other.ApplyPen(&Pen());
        Require(other.IsEqualSettings(&Pen()), "a pen takes over another one's settings");
        Pen().ApplyPen(&other);
        Pen().Default();
        Pen().ApplyPen(&other);
    }

    // --- figures ---

    std::vector<zul::TLongPoint> LongPoints() {
        std::vector<zul::TLongPoint> points(static_cast<std::size_t>(m_Input.Below(kMaxPoints)));
        for (std::size_t i = 0; i < points.size(); ++i) {
            const bool again = i > 0 && m_Input.Below(8) == 0;
            points[i] = again ? points[i - 1] : zul::TLongPoint{Number(), Number()};
        }
        return points;
    }
    /// Runs \p draw, cut to a smaller clip too, and counts what it costs.
    template <class Draw>
    void Look(std::size_t points, Draw&& draw) {
        Pen().Validate(&m_Canvas);  // which may make another pen of it
        m_Picture.GuardCut(m_Input, [&] {
            const device::Recorder recorder;
            fuzz::Reporting::Try(draw);
            Require(recorder.Calls().size() < kMaxCalls * (points + 1), "the calls follow what is visible");
        });
    }
    void DrawLists() {
        std::vector<zul::TPoint> points(static_cast<std::size_t>(m_Input.Below(kMaxPoints)));
        for (zul::TPoint& point : points)
            point = zul::WrapToPoint(Number(), Number());
        const auto count = static_cast<std::int32_t>(points.size());
        zul::CPoints list(true);
        list.SetPoints(points.data(), static_cast<std::uint32_t>(count));
        const int which = m_Input.Below(4);
        Look(points.size(), [&] {
            switch (which) {
                case 0:
                    return m_Canvas.Polyline(points.data(), count);
                case 1:
                    return m_Canvas.Polygon(points.data(), count);
                case 2:
                    return m_Canvas.Polyline(&list);
                default:
                    return m_Canvas.Polygon(&list);
            }
        });
    }
    void DrawPixels() {
        const std::vector<zul::TLongPoint> points = LongPoints();
        const auto count = static_cast<std::int32_t>(points.size());
        const bool closed = m_Input.Flag();
        Look(points.size(), [&] {
            if (closed) {
                m_Canvas.Polygon(points.data(), count);
            } else {
                m_Canvas.Polyline(points.data(), count);
            }
        });
    }
    void DrawFigures() {
        const int a = Number(), b = Number(), c = Number(), d = Number(), which = m_Input.Below(5);
        Look(4, [&] {
            switch (which) {
                case 0:
                    return m_Canvas.Line(a, b, c, d);
                case 1:
                    return m_Canvas.Rectangle(a, b, c, d);
                case 2:
                    return m_Canvas.Ellipse(a, b, c, d);
                case 3:
                    return m_Canvas.Circle(a, b, c);
                default:
                    m_Canvas.MoveTo(a, b);
                    return m_Canvas.LineTo(c, d);
            }
        });
    }
    void PenAlone() {
        const std::vector<zul::TLongPoint> points = LongPoints();
        const auto count = static_cast<std::int32_t>(points.size());
        const int a = Number(), b = Number(), c = Number(), d = Number(), which = m_Input.Below(7);
        const int spacing = Length(), offset = Length();
        const bool flag = m_Input.Flag();
        Pen().Validate(&m_Canvas);
        const HGDIOBJ pen = Selected(OBJ_PEN), brush = Selected(OBJ_BRUSH);
        Look(points.size() + 4, [&] {
            switch (which) {
                case 0:
                    return Pen().Polyline(points.data(), count);
                case 1:
                    return Pen().Polygon(points.data(), count);
                case 2:
                    return Pen().Rectangle(a, b, c, d);
                case 3:
                    return Pen().LineTo(a, b, flag ? &m_Canvas : nullptr);
                case 4:
                    return Pen().DrawArrowsLine(a, b, c, d, spacing, offset, flag);
                case 5:
                    return Pen().DrawEndings(points.data(), count, flag);
                default:
                    return Pen().DrawEndings(a, b, c, d);
            }
        });
        Require(Selected(OBJ_PEN) == pen && Selected(OBJ_BRUSH) == brush, "the device has its tools back");
    }
    HGDIOBJ Selected(UINT type) const { return ::GetCurrentObject(m_Picture.Dc(), type); }

    fuzz::Input& m_Input;
    Picture m_Picture;
    fuzz::Reporting m_Reporting;
    fuzz::Views m_Views;
    zul::CCanvas m_Canvas;
};

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Program program(input);
    for (int step = 0; step < kMaxSteps && input.IsLeft(); ++step)
        program.Step();
}
