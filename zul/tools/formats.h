/// \file
/// The settings of a tool as text: a block of lines, or an XML element.
///
/// A block, for a person to edit:
///
///         Background
///           Mode : 1
///           Color : 255
///           Rop : 0
///         EndBlock
///
/// with four blanks before the first and last line, six before the others and exactly one on either side of a
/// colon. The element has an attribute a line, numbers in decimal and colours as CPalette's colour strings.
/// Texts stand between single quotes in both, without any escaping. Files are UTF-8, lines end with a line
/// feed. What surrounds a block or an element is the caller's.
#pragma once

#include "zul/tools/settings.h"

namespace zulsys {
class CTextFile;
}

namespace zul {

/// Write to \p file. Whether the file took everything tells its `Disconnect`. A text ends at a zero character
/// in it, and a line feed in it becomes a blank, so that it stays one line and cannot pass for others.
void ExportBlock(const CAnyObject& tool, const TSettings& settings, zulsys::CTextFile& file);
void ExportElement(const CAnyObject& tool, const TSettings& settings, zulsys::CTextFile& file);

/// Reads lines up to the end line or the end of the file and hands what they say to the tool's setters. When
/// the file cannot be read that far the tool has its former settings, and the file's `Disconnect` tells. A
/// line that begins with no key is passed over. Only the first 255 bytes of a line count, and a text whose
/// closing quote, the last one of the line, is not among them is passed over too. A number that is missing or
/// not where it should be is 0, one beyond 32 bits the nearest limit.
void ImportBlock(CAnyObject& tool, const TSettings& settings, zulsys::CTextFile& file);

/// Asks \p element with the message "GetAttributeValue" for every attribute (parameter 1 the name, a
/// `const char16_t*`; parameter 2 a `CString*` for the value) and hands those it has to the tool's setters.
/// Null has none.
void ImportElement(CAnyObject& tool, const TSettings& settings, CAnyObject* element);

}  // namespace zul
