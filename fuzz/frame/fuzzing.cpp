#include "fuzz/frame/fuzzing.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>

#include "platform/software/display.h"
#include "zul/kernel/client.h"
#include "zul/kernel/library.h"

namespace fuzz {

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

int Input::Below(int end) {
    const auto limit = static_cast<std::uint32_t>(end);
    const std::uint32_t value = limit <= 0x100     ? Any<std::uint8_t>()
                                : limit <= 0x10000 ? Any<std::uint16_t>()
                                                   : Any<std::uint32_t>();
    return static_cast<int>(value % limit);
}

std::int32_t Input::Number(std::int32_t near) {
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min(),
                           kMax = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kEdges[] = {kMin,  kMin + 1, -65536, -32769, -32768, -1,       0,
                                       32767, 32768,    65535,  65536,  46341,  kMax - 1, kMax};
    switch (Below(8)) {
        case 0:
            return OneOf(kEdges);
        case 1:
            return Any<std::int32_t>();
        default:
            return near < 128 ? Any<std::int8_t>() % (near + 1) : Any<std::int32_t>() % (near + 1);
    }
}

double Input::Real(std::int32_t near) {
    using Limits = std::numeric_limits<double>;
    constexpr double kEdges[] = {Limits::infinity(),
                                 -Limits::infinity(),
                                 Limits::quiet_NaN(),
                                 Limits::max(),
                                 Limits::lowest(),
                                 Limits::min(),
                                 Limits::denorm_min(),
                                 -0.0,
                                 9223372036854775808.0,
                                 -9223372036854775808.0,
                                 0.5,
                                 1e-9};
    if (Below(8) == 0) return OneOf(kEdges);
    return Number(near) + (Flag() ? Any<std::uint16_t>() / 65536.0 : 0.0);
}

std::u16string Input::Text(int longest) {
    constexpr char16_t kUnits[] = {u'\n',  u'\r',  0,      u'\t',  0xAD,   0x301,  0x3A9,  0x416,  0x5D0,
                                   0x635,  0x200B, 0x2028, 0x4E2D, 0xAC00, 0xD800, 0xD835, 0xDBFF, 0xDC00,
                                   0xDD38, 0xDFFF, 0xE000, 0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF};
    std::u16string text(static_cast<std::size_t>(Below(longest + 1)), u'x');
    for (char16_t& unit : text) {
        if (!IsLeft()) break;
        const int kind = Below(16);
        unit = kind == 0   ? OneOf(kUnits)
               : kind == 1 ? static_cast<char16_t>(Below(0x600))
                           : static_cast<char16_t>(u' ' + Below(0x60));
    }
    return text;
}

std::string Input::Bytes(std::size_t longest) {
    const std::size_t most = std::min<std::size_t>(longest, 0xFFFF);
    const std::size_t count = std::min(static_cast<std::size_t>(Below(static_cast<int>(most + 1))), m_Left);
    std::string bytes(reinterpret_cast<const char*>(m_Data), count);
    Skip(count);
    return bytes;
}

std::string Input::Rest() {
    std::string bytes(reinterpret_cast<const char*>(m_Data), m_Left);
    Skip(m_Left);
    return bytes;
}

ScratchFile::ScratchFile()
    : m_Directory(std::filesystem::temp_directory_path() / ("zul-fuzz-" + std::to_string(::getpid()))),
      m_Path(m_Directory / "resource" / "input") {
    std::filesystem::create_directories(m_Path.parent_path());
}

ScratchFile::~ScratchFile() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Directory, ignored);
}

const ScratchFile& Scratch() {
    static const ScratchFile scratch;
    return scratch;
}

void ScratchFile::Fill(const std::string& bytes) const {
    std::error_code ignored;
    std::filesystem::remove(m_Path, ignored);  // to write anew is faster than to overwrite
    std::ofstream(m_Path, std::ios::binary) << bytes;
}

std::string ScratchFile::Bytes() const {
    std::ifstream file(m_Path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

namespace {

class Silent : public zul::CErrorHandler {
    void OnError(const zul::TErrorReport&) override {}
};

/// Once: what every input finds.
void Prepare() {
    static Silent silent;
    static const zul::CErrorHandlerScope scope(&silent);
    static const bool prepared = [] {
        AutoRegister();
        zul::CClient::SetSysDBDir(u"/no-such-directory");
        return ::DeleteDC(::CreateCompatibleDC(nullptr)) != 0;  // makes the display
    }();
    Require(prepared, "there is a display");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Prepare();
    const int before = device::LiveHandles();
    fuzz::Run(data, size);
    fuzz::Require(device::LiveHandles() == before, "no handle is left");
    return 0;
}
