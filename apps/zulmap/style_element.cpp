#include "apps/zulmap/style_element.h"

#include <algorithm>
#include <string_view>

#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/whole_file.h"
#include "zul/kernel/message.h"

namespace zulmap {
namespace {

constexpr std::string_view kFontOpening = "<Font name='";

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

void AppendEscaped(std::string& text, std::string_view value) {
    for (const char c : value) {
        const auto code = static_cast<unsigned char>(c);
        const bool isMarkup = c == '\'' || c == '"' || c == '&' || c == '<' || c == '>';
        if (isMarkup || code < ' ') {
            text += "&#" + std::to_string(code) + ";";
        } else {
            text += c;
        }
    }
}

std::string_view WithoutIndent(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

/// The document with the names escaped where the library wrote them: alone with the opening of their element,
/// above the line of the style.
std::string Escaped(std::string_view document) {
    std::string text;
    while (!document.empty()) {
        std::string_view line = document.substr(0, document.find('\n'));
        document.remove_prefix(std::min(line.size() + 1, document.size()));
        const bool hasFeed = line.data() + line.size() != document.data();
        const std::size_t name = line.find_first_not_of(' ') + kFontOpening.size();
        const std::size_t end = line.find_last_not_of('\r');
        if (StartsWith(WithoutIndent(line), kFontOpening) && StartsWith(WithoutIndent(document), "style='") &&
            end >= name && line[end] == '\'') {
            text += line.substr(0, name);
            AppendEscaped(text, line.substr(name, end - name));
            line.remove_prefix(end);
        }
        text += line;
        if (hasFeed) text += '\n';
    }
    return text;
}

}  // namespace

void ReadStyleDocument(const std::string& path, pugi::xml_document& document) {
    const std::string text = Escaped(ReadFile(path));
    const pugi::xml_parse_result result = document.load_buffer(text.data(), text.size());
    if (result) return;
    const auto place =
        text.begin() + std::clamp<std::ptrdiff_t>(result.offset, 0, static_cast<std::ptrdiff_t>(text.size()));
    const auto line = 1 + std::count(text.begin(), place, '\n');
    throw ToolError(path + " cannot be read as XML: line " + std::to_string(line) + ": " +
                    result.description());
}

bool StyleElement::DoMessage(zul::CMessage* message) {
    if (message == nullptr || !message->IsNamed(u"GetAttributeValue")) return CAnyObject::DoMessage(message);
    const auto* const name = zul::CMessage::ToPointer<const char16_t>(message->GetParam1());
    auto* const value = zul::CMessage::ToPointer<zul::CString>(message->GetParam2());
    if (name == nullptr || value == nullptr) return CAnyObject::DoMessage(message);
    const pugi::xml_attribute attribute = m_node.attribute(zul::CString(name).GetBufferAnsi());
    if (!attribute) return false;
    value->SetBuffer(attribute.value());
    return true;
}

}  // namespace zulmap
