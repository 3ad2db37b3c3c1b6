/// \file
/// `zulmap style`: the look of a stored map as a document.
#pragma once

#include <string>

namespace zulmap {

/// Documents hold, layer by layer, the pens, brushes and fonts in the forms that the library writes. Their
/// names end in .xml
///
///     <MapStyle>
///       <Layer name='rivers'>
///         <Line>
///           <Pen type='1' ... >
///           </Pen>
///         </Line>
///         ...
///
/// or in .txt
///
///     MapStyle
///     Layer : 'rivers'
///      Line
///         Pen
///           Type : 1
///           ...
///         EndBlock
///
/// A layer has Shallows, Coast, Border, Line and Point with a pen each, Disc (of points) with a brush, Areas
/// with one brush or several that tell areas apart, and Labels with a font. What a document leaves out stays
/// as it is; of layers of the same name each is meant once, in their order.

/// Writes the document. \throws ToolError when the store cannot be read or the file not written
void ExportStyle(const std::string& store, const std::string& path);

/// Takes over what the document says, all of it or nothing.
/// \throws ToolError when the document is no such one, which says why, and when the store cannot be written
void ImportStyle(const std::string& store, const std::string& path);

}  // namespace zulmap
