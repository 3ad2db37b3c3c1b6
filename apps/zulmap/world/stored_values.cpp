#include "apps/zulmap/world/stored_values.h"

namespace zulmap {

bool WriteText(zul::CStream& stream, const std::string& text) {
    const auto size = static_cast<std::uint32_t>(text.size());
    return WriteValues(stream, size) && stream.Write(text.data(), size);
}

bool ReadText(zul::CStream& stream, std::string& text) {
    std::uint32_t size = 0;
    if (!ReadValues(stream, size) || size > stream.GetRemaining()) return false;
    text.resize(size);
    return stream.Read(text.data(), size);
}

bool WriteTexts(zul::CStream& stream, const std::vector<std::string>& texts) {
    bool isWritten = WriteValues(stream, static_cast<std::uint32_t>(texts.size()));
    for (const std::string& text : texts) {
        isWritten = isWritten && WriteText(stream, text);
    }
    return isWritten;
}

bool ReadTexts(zul::CStream& stream, std::vector<std::string>& texts) {
    std::uint32_t count = 0;
    // Each has at least its length.
    if (!ReadValues(stream, count) || count > stream.GetRemaining() / sizeof count) return false;
    texts.resize(count);
    for (std::string& text : texts) {
        if (!ReadText(stream, text)) return false;
    }
    return true;
}

}  // namespace zulmap
