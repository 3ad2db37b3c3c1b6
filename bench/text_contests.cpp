#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <utility>

#include "bench/labels.h"
#include "bench/painted_work.h"

namespace zulbench {
namespace {

constexpr std::size_t kLabels = 10'000;
constexpr std::size_t kSample = 250;  ///< labels of compared pictures; more would cover one another
constexpr double kHardDifference = 0.05, kSmoothDifference = 0.15, kMeasuredDifference = 0.06;

/// Names of places, all over the picture; some leave it.
LabelWork MakeWork() {
    std::mt19937 random(7);
    const auto below = [&random](std::uint32_t end) { return static_cast<std::int32_t>(random() % end); };
    LabelWork work;
    work.color = RGB(255, 255, 132);
    while (work.labels.size() < kLabels) {
        std::string name(1, static_cast<char>('A' + below(26)));
        for (std::int32_t left = 3 + below(7); left > 0; --left)
            name += static_cast<char>('a' + below(26));
        const zul::TLongPoint at{below(kWidth) - 20, below(kHeight) - 8};
        work.labels.push_back({zul::CString(name.c_str()), name, at});
    }
    return work;
}

/// By the canvas.
class ClassesLetterer : public Letterer {
public:
    ClassesLetterer(COLORREF color, WORD bits) : m_Surface(kWidth, kHeight, bits), m_Bits(bits) {
        zul::CFont& font = m_Surface.GetCanvas().GetFont();
        font.Create(zul::CString(kLabelFace).GetBuffer(), kLabelPoints, 0, 0);
        font.SetTextColor(static_cast<std::int32_t>(color));  // which Create does not pass on
    }

    Side GetSide() const override { return m_Bits == 32 ? Side::Classes : Side::Classes16; }
    void Draw(const LabelWork& work, std::size_t count) override {
        zul::CCanvas& canvas = m_Surface.GetCanvas();
        for (std::size_t i = 0; i < count; ++i)
            canvas.OutText(&work.labels[i].text, work.labels[i].at.X, work.labels[i].at.Y);
    }
    double Measure(const LabelWork& work) override {
        std::int64_t sum = 0;
        for (const Label& label : work.labels) {
            std::int32_t width = 0, height = 0;
            m_Surface.GetCanvas().GetTextSize(&label.text, width, height);
            sum += width;
        }
        return static_cast<double>(sum);
    }
    void Wipe() override { ::PatBlt(m_Surface.GetDevice(), 0, 0, kWidth, kHeight, BLACKNESS); }
    Picture GetPicture() override { return m_Surface.GetPicture(); }

private:
    Surface m_Surface;
    WORD m_Bits;
};

/// By the device's calls.
class DeviceLetterer : public Letterer {
public:
    DeviceLetterer(COLORREF color, bool hard) {
        LOGFONTW asked{};
        asked.lfHeight = -kLabelPixels;
        asked.lfQuality = hard ? NONANTIALIASED_QUALITY : DEFAULT_QUALITY;
        std::copy(std::begin(kLabelFace), std::end(kLabelFace), asked.lfFaceName);
        m_Font = ::CreateFontIndirectW(&asked);
        m_Old = ::SelectObject(m_Surface.GetDevice(), m_Font);
        ::SetTextColor(m_Surface.GetDevice(), color);
        ::SetBkMode(m_Surface.GetDevice(), TRANSPARENT);
    }
    ~DeviceLetterer() override {
        ::SelectObject(m_Surface.GetDevice(), m_Old);
        ::DeleteObject(m_Font);
    }
    DeviceLetterer(const DeviceLetterer&) = delete;
    DeviceLetterer& operator=(const DeviceLetterer&) = delete;

    Side GetSide() const override { return Side::Device; }
    void Draw(const LabelWork& work, std::size_t count) override {
        for (std::size_t i = 0; i < count; ++i) {
            const Label& label = work.labels[i];
            ::ExtTextOutW(m_Surface.GetDevice(), label.at.X, label.at.Y, 0, nullptr, Characters(label.text),
                          label.text.GetLength(), nullptr);
        }
    }
    double Measure(const LabelWork& work) override {
        std::int64_t sum = 0;
        for (const Label& label : work.labels)
            sum += SizeOf(label.text).cx;
        return static_cast<double>(sum);
    }
    void Wipe() override { ::PatBlt(m_Surface.GetDevice(), 0, 0, kWidth, kHeight, BLACKNESS); }
    Picture GetPicture() override { return m_Surface.GetPicture(); }

    const Surface& GetSurface() const { return m_Surface; }
    SIZE SizeOf(const zul::CString& text) const {
        SIZE size{};
        ::GetTextExtentExPointW(m_Surface.GetDevice(), Characters(text), static_cast<int>(text.GetLength()),
                                0, nullptr, nullptr, &size);
        return size;
    }

private:
    static LPCWSTR Characters(const zul::CString& text) {
        return reinterpret_cast<LPCWSTR>(text.GetBuffer());
    }

    Surface m_Surface;
    HFONT m_Font;
    HGDIOBJ m_Old;
};

/// The steps are the device's; the baseline lies under the last row of a letter that stands on it.
void FindPlaces(LabelWork& work, DeviceLetterer& device) {
    for (std::size_t c = ' '; c < work.advances.size(); ++c)
        work.advances[c] = device.SizeOf(zul::CString(std::string(1, static_cast<char>(c)).c_str())).cx;
    LabelWork letter;
    letter.labels.push_back({zul::CString("H"), "H", {0, 0}});
    device.Draw(letter, 1);
    const Picture picture = device.GetPicture();
    const auto last = std::find_if(picture.pixels.rbegin(), picture.pixels.rend(),
                                   [](std::uint32_t pixel) { return pixel != 0; });
    work.ascent = static_cast<std::int32_t>((picture.pixels.rend() - last + kWidth - 1) / kWidth);
    device.Wipe();
}

Picture Sample(Letterer& letterer, const LabelWork& work) {
    letterer.Wipe();
    letterer.Draw(work, kSample);
    return letterer.GetPicture();
}

/// How far apart the brightness of pixels is, as a share of all there is.
double BrightnessDifference(const Picture& a, const Picture& b) {
    double apart = 0, all = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        const double left = a.pixels[i] >> 8 & 255, right = b.pixels[i] >> 8 & 255;
        apart += std::abs(left - right);
        all += left;
    }
    return all > 0 ? apart / all : 1.0;
}

struct TextRow {
    std::shared_ptr<LabelWork> work = std::make_shared<LabelWork>(MakeWork());
    std::shared_ptr<DeviceLetterer> device;
    Letterers all;  ///< the first is what the others are held against

    explicit TextRow(bool hard) : device(std::make_shared<DeviceLetterer>(work->color, hard)) {
        FindPlaces(*work, *device);
        const EdgeSetting edges(hard);
        if (edges.Holds()) all.push_back(std::make_shared<ClassesLetterer>(work->color, WORD{32}));
        all.push_back(device);
        if (edges.Holds()) all.push_back(std::make_shared<ClassesLetterer>(work->color, WORD{16}));
        for (const std::shared_ptr<Letterer>& peer : PeerLetterers(hard))
            all.push_back(peer);
    }
};

Contest DrawnContest(const std::string& name, bool hard, double goal) {
    const TextRow row(hard);
    const double allowed = hard ? kHardDifference : kSmoothDifference;
    const auto compare = hard ? Strays : BrightnessDifference;
    std::vector<Way> ways;
    for (const std::shared_ptr<Letterer>& letterer : row.all) {
        ways.push_back({letterer->GetSide(), letterer->GetName(),
                        [letterer, work = row.work] { letterer->Draw(*work, kLabels); },
                        [letterer, work = row.work, first = row.all[0], compare] {
                            return compare(Sample(*first, *work), Sample(*letterer, *work));
                        },
                        allowed});
    }
    if (hard) {
        const auto runs = std::make_shared<PixelRuns>();
        for (const Label& label : row.work->labels) {
            const SIZE size = row.device->SizeOf(label.text);
            row.device->Wipe();
            LabelWork one{{label}, row.work->color};
            row.device->Draw(one, 1);
            constexpr LONG kOverhang = kLabelPixels / 2;
            runs->Collect(row.device->GetSurface(),
                          {std::max<LONG>(label.at.X - kOverhang, 0), std::max<LONG>(label.at.Y, 0),
                           std::min<LONG>(label.at.X + size.cx + kOverhang, kWidth),
                           std::min<LONG>(label.at.Y + size.cy, kHeight)});
        }
        const auto memory = std::make_shared<std::vector<std::uint32_t>>(std::size_t{kWidth} * kHeight);
        ways.push_back({Side::Limit, "", [runs, memory] { runs->PutDown(memory->data()); }});
    }
    return {name, "label", static_cast<double>(kLabels), goal, std::move(ways)};
}

Contest MeasuredContest() {
    const TextRow row(false);  // measures are the same for either edges
    std::vector<Way> ways;
    const auto add = [&](Side side, const std::string& name, const std::function<double()>& measure) {
        const auto sum = std::make_shared<double>(0.0);
        ways.push_back(
            {side, name, [sum, measure] { *sum = measure(); },
             [sum, wanted = row.all[0]->Measure(*row.work)] { return std::abs(*sum / wanted - 1); },
             kMeasuredDifference});
    };
    for (const std::shared_ptr<Letterer>& letterer : row.all) {
        if (letterer->GetSide() == Side::Classes16) continue;
        add(letterer->GetSide(), letterer->GetName(),
            [letterer, work = row.work] { return letterer->Measure(*work); });
    }
    add(Side::Limit, "", [work = row.work] {
        std::int64_t sum = 0;
        for (const Label& label : work->labels)
            for (const char c : label.ascii)
                sum += work->advances[static_cast<unsigned char>(c)];
        return static_cast<double>(sum);
    });
    return {"10,000 short labels, measured", "label", static_cast<double>(kLabels), 1.0, std::move(ways)};
}

}  // namespace

std::vector<Contest> TextContests() {
    std::vector<Contest> contests;
    contests.push_back(DrawnContest("10,000 short labels, hard edges", true, 500.0 / 1056.0));
    contests.push_back(DrawnContest("10,000 short labels, smooth", false, 1.0));
    contests.push_back(MeasuredContest());
    return contests;
}

}  // namespace zulbench
