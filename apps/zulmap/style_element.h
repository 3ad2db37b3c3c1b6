/// \file
/// XML documents that hold pens, brushes, fonts and backgrounds.
#pragma once

#include <pugixml.hpp>
#include <string>

#include "zul/kernel/any_object.h"

namespace zulmap {

/// Reads the document in \p path. The library writes a font's name as it is and not as XML wants it, so where
/// an element opens as the library opens it, with the name alone on the first line and the style on the next,
/// everything up to the first line's last quote is the name. Elsewhere the rules of XML hold.
/// \throws ToolError with the line of the first fault when the document cannot be read
void ReadStyleDocument(const std::string& path, pugi::xml_document& document);

/// An element of a document as the tools' ImportParametersEx takes it: answers "GetAttributeValue".
class StyleElement : public zul::CAnyObject {
public:
    /// \p node may be empty, and then has no attributes. Its document must live as long as this.
    explicit StyleElement(pugi::xml_node node) : m_node(node) {}
    bool DoMessage(zul::CMessage* message) override;

private:
    pugi::xml_node m_node;
};

}  // namespace zulmap
