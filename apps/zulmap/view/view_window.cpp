#include "apps/zulmap/view/view_window.h"

#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

/// Between two looks at the inputs.
constexpr std::chrono::milliseconds kSlice{8};

constexpr int kLeastSide = 64;

[[noreturn]] void Fail(const char* what) {
    throw ToolError(std::string(what) + ": " + SDL_GetError());
}

constexpr char kNoDisplay[] = "there is no display to open a window on";

/// The library's start and end.
class Session {
public:
    Session() {
        // Left alone, the library falls back on drivers that show nothing to anybody.
        if (std::getenv("SDL_VIDEODRIVER") == nullptr) {
            const bool hasWayland = std::getenv("WAYLAND_DISPLAY") != nullptr;
            if (!hasWayland && std::getenv("DISPLAY") == nullptr) throw ToolError(kNoDisplay);
            SDL_SetHint(SDL_HINT_VIDEODRIVER, hasWayland ? "wayland,x11" : "x11");
        }
        SDL_SetMainReady();
        if (SDL_Init(SDL_INIT_VIDEO) != 0) Fail(kNoDisplay);
    }
    ~Session() { SDL_Quit(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
};

struct Closer {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};

class Window {
public:
    Window(const std::string& title, zul::TSize size)
        : m_Window(SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                                    size.Width, size.Height, SDL_WINDOW_RESIZABLE)) {
        if (!m_Window) Fail("no window can be opened");
        SDL_SetWindowMinimumSize(m_Window.get(), kLeastSide, kLeastSide);
    }

    zul::TSize GetSize() const {
        zul::TSize size{};
        SDL_GetWindowSize(m_Window.get(), &size.Width, &size.Height);
        return size;
    }
    void SetSize(zul::TSize size) { SDL_SetWindowSize(m_Window.get(), size.Width, size.Height); }

    /// Copies rectangles of a picture to the same place in the window.
    void Show(const PictureView& picture, const std::vector<PixelRect>& parts) {
        if (parts.empty()) return;
        SDL_Surface* target = SDL_GetWindowSurface(m_Window.get());
        if (target == nullptr) Fail("the window has no surface");
        // The surface only refers to the pixels, and is not written to.
        const std::unique_ptr<SDL_Surface, Closer> source(SDL_CreateRGBSurfaceWithFormatFrom(
            const_cast<std::uint32_t*>(picture.pixels), picture.width, picture.height, 32, picture.width * 4,
            SDL_PIXELFORMAT_RGB888));
        if (!source) Fail("the window's picture cannot be made");
        std::vector<SDL_Rect> rects;
        for (const PixelRect& part : parts) {
            SDL_Rect from{part.MinX, part.MinY, part.MaxX - part.MinX, part.MaxY - part.MinY};
            SDL_Rect to = from;
            SDL_BlitSurface(source.get(), &from, target, &to);
            if (to.w > 0 && to.h > 0) rects.push_back(to);
        }
        SDL_UpdateWindowSurfaceRects(m_Window.get(), rects.data(), static_cast<int>(rects.size()));
    }

private:
    std::unique_ptr<SDL_Window, Closer> m_Window;
};

class Loop {
public:
    Loop(Viewer& viewer, Window& window, ViewScript* script, const CountingErrorHandler& errors,
         std::ostream& report)
        : m_Viewer(viewer), m_Window(window), m_Script(script), m_Errors(errors), m_Report(report) {}

    void Run() {
        while (!m_Viewer.IsDone()) {
            SDL_Event event;
            while (SDL_PollEvent(&event) != 0) {
                Handle(event);
            }
            if (m_Script != nullptr) PlayScript();
            const bool isComplete = m_Viewer.Work(TimeSlice(kSlice));
            Present();
            const bool isPlaying = m_Script != nullptr && !m_Script->IsAwaitingKey();
            if (isComplete && !isPlaying && !m_Viewer.IsDone()) SDL_WaitEvent(nullptr);
        }
    }

private:
    void Handle(const SDL_Event& event) {
        ViewInput input;
        switch (event.type) {
            case SDL_QUIT:
                input.kind = ViewInput::Kind::Quit;
                break;
            case SDL_WINDOWEVENT:
                return HandleWindow(event.window);
            case SDL_MOUSEBUTTONDOWN:
            case SDL_MOUSEBUTTONUP:
                return HandleButton(event.button);
            case SDL_MOUSEMOTION:
                input.kind = ViewInput::Kind::Move;
                input.at = {event.motion.x, event.motion.y};
                break;
            case SDL_MOUSEWHEEL:
                input.kind = ViewInput::Kind::Wheel;
                input.at = {event.wheel.mouseX, event.wheel.mouseY};
                input.steps =
                    event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -event.wheel.y : event.wheel.y;
                break;
            case SDL_KEYDOWN:
                input.kind = ViewInput::Kind::Key;
                input.key = NameOf(event.key.keysym.sym);
                if (m_Script != nullptr) m_Script->Notice(input.key);
                break;
            default:
                return;
        }
        m_Viewer.Handle(input);
    }

    static std::string NameOf(SDL_Keycode code) {
        std::string name = SDL_GetKeyName(code);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        return name;
    }

    void HandleButton(const SDL_MouseButtonEvent& event) {
        if (event.button != SDL_BUTTON_LEFT && event.button != SDL_BUTTON_RIGHT) return;
        const bool isDown = event.type == SDL_MOUSEBUTTONDOWN;
        const bool isShifted = (SDL_GetModState() & KMOD_SHIFT) != 0;
        // So that the window hears of the pointer beyond its sides, and of the button going up there.
        SDL_CaptureMouse(isDown ? SDL_TRUE : SDL_FALSE);
        ViewInput input;
        input.kind = isDown ? ViewInput::Kind::Press : ViewInput::Kind::Release;
        input.at = {event.x, event.y};
        input.button = event.button == SDL_BUTTON_RIGHT || isShifted ? ViewInput::Button::Right
                                                                     : ViewInput::Button::Left;
        m_Viewer.Handle(input);
    }

    void HandleWindow(const SDL_WindowEvent& event) {
        ViewInput input;
        switch (event.event) {
            case SDL_WINDOWEVENT_SIZE_CHANGED:
                input.kind = ViewInput::Kind::Resize;
                input.size = {event.data1, event.data2};
                m_IsExposed = true;
                break;
            case SDL_WINDOWEVENT_SHOWN:
            case SDL_WINDOWEVENT_EXPOSED:
            case SDL_WINDOWEVENT_RESTORED:
                m_IsExposed = true;
                m_IsHidden = false;
                return;
            case SDL_WINDOWEVENT_HIDDEN:
            case SDL_WINDOWEVENT_MINIMIZED:
                m_IsHidden = true;
                return;
            case SDL_WINDOWEVENT_FOCUS_LOST:
                SDL_CaptureMouse(SDL_FALSE);
                input.kind = ViewInput::Kind::Abandon;
                break;
            case SDL_WINDOWEVENT_LEAVE:
                input.kind = ViewInput::Kind::Leave;
                break;
            default:
                return;
        }
        m_Viewer.Handle(input);
    }

    void PlayScript() {
        const std::optional<ViewInput> input = m_Script->Next(m_Viewer, m_Errors, m_Report);
        if (input) {
            if (input->kind == ViewInput::Kind::Resize) m_Window.SetSize(input->size);
            m_Viewer.Handle(*input);
        } else if (m_Script->IsDone() && m_Viewer.IsComplete()) {
            ViewInput quit;
            quit.kind = ViewInput::Kind::Quit;
            m_Viewer.Handle(quit);
        }
    }

    void Present() {
        std::vector<PixelRect> changed = m_Viewer.Compose();
        if (m_IsHidden) return;
        const PictureView screen = m_Viewer.GetScreen();
        if (std::exchange(m_IsExposed, false)) changed = {{0, 0, screen.width, screen.height}};
        m_Window.Show(screen, changed);
    }

    Viewer& m_Viewer;
    Window& m_Window;
    ViewScript* m_Script;
    const CountingErrorHandler& m_Errors;
    std::ostream& m_Report;
    bool m_IsExposed = true;  ///< nothing of the window's contents is known to be there
    bool m_IsHidden = false;
};

}  // namespace

void RunViewWindow(Viewer& viewer, const std::string& title, ViewScript* script,
                   const CountingErrorHandler& errors, std::ostream& report) {
    const Session session;
    Window window(title, viewer.GetView().GetScreen());
    Loop(viewer, window, script, errors, report).Run();
}

}  // namespace zulmap
