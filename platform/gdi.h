/// \file
/// The graphics device interface that the library calls, under the platform's own names.
///
/// On Windows this is the system's header with the few names that it lacks; where a call behaves otherwise
/// there than this header says, the shim in `platform/windows/` makes up for it. Elsewhere the same calls,
/// records and constants are declared here and implemented by the software device in `platform/software/`;
/// the linker chooses the side. Only what the library uses is declared. Handles are opaque: a stale or
/// foreign one makes a call fail with its documented failure value and is never dereferenced.
#pragma once

#if defined(_WIN32)

#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>
#undef far
#undef near

constexpr int SYS_COLOR_INDEX_FLAG = 0x40000000;

/// The system's call with the library's characters; with a null module \p name is a file's path.
HANDLE LoadImageW(HINSTANCE module, const char16_t* name, UINT type, int width, int height, UINT flags);
/// The system's call with the library's characters.
HRSRC FindResourceW(HMODULE module, const char16_t* name, const void* type);
BOOL TransparentImage(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy,
                      int sourceWidth, int sourceHeight, COLORREF key);

/// The system's calls with the library's characters.
inline BOOL GetTextExtentExPointW(HDC dc, const char16_t* text, int count, int maxExtent, int* fit,
                                  int* extents, SIZE* size) {
    return ::GetTextExtentExPointW(dc, reinterpret_cast<LPCWSTR>(text), count, maxExtent, fit, extents, size);
}
inline BOOL ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, const char16_t* text,
                        UINT count, const int* advances) {
    return ::ExtTextOutW(dc, x, y, options, rect, reinterpret_cast<LPCWSTR>(text), count, advances);
}

#else

#include <cstdint>

#include "platform/export.h"

/// The platform's types in the widths that they have there.
using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using UINT = std::uint32_t;
using ULONG = std::uint32_t;
using WCHAR = char16_t;
using LPCWSTR = const WCHAR*;
/// 0x00BBGGRR: red in the lowest byte. With an odd highest byte the low 16 bits are the number of an entry of
/// the context's palette instead (an entry that it does not have is its first one); otherwise that byte does
/// not count.
using COLORREF = std::uint32_t;
using COLOR16 = std::uint16_t;  ///< a channel in 16 bits, of which the high byte is the 8-bit one

/// Any object that can be selected or deleted. As with the platform's C header, every typed object handle
/// converts to it by itself; the way back is a cast.
using HGDIOBJ = void*;
/// A number that the device knows, or null; never an address.
using HANDLE = void*;
using HDC = struct HDC__*;
using HPEN = struct HPEN__*;
using HBRUSH = struct HBRUSH__*;
using HFONT = struct HFONT__*;
using HBITMAP = struct HBITMAP__*;
using HRGN = struct HRGN__*;
using HPALETTE = struct HPALETTE__*;
using HWND = struct HWND__*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using HRSRC = struct HRSRC__*;
using HGLOBAL = void*;

/// What a BOOL is; any value but 0 counts as true.
constexpr int FALSE = 0;
constexpr int TRUE = 1;
/// What calls answer that have no colour, or no number, to tell.
constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;
constexpr DWORD GDI_ERROR = 0xFFFFFFFF;

// --- records ---

/// A pixel.
struct POINT {
    /// To the right, and down.
    LONG x, y;
};
/// An extent in pixels.
struct SIZE {
    /// Width and height.
    LONG cx, cy;
};
/// Left and top belong to the rectangle, right and bottom do not.
struct RECT {
    /// Pixels.
    LONG left, top, right, bottom;
};

/// A bitmap as GetObjectW describes it.
struct BITMAP {
    LONG bmType;        ///< 0
    LONG bmWidth;       ///< pixels
    LONG bmHeight;      ///< always positive
    LONG bmWidthBytes;  ///< bytes a row in memory
    WORD bmPlanes;      ///< 1
    WORD bmBitsPixel;   ///< 1, 4, 8, 16, 24 or 32
    void* bmBits;       ///< pixels of a DIB section, null for a device-dependent bitmap
};

/// The head of a device-independent image, in memory and in files.
struct BITMAPINFOHEADER {
    DWORD biSize;          ///< bytes of the header, 40
    LONG biWidth;          ///< pixels
    LONG biHeight;         ///< positive: the first stored row is the bottom one; negative: the top one
    WORD biPlanes;         ///< 1
    WORD biBitCount;       ///< bits a pixel
    DWORD biCompression;   ///< BI_RGB or BI_BITFIELDS
    DWORD biSizeImage;     ///< bytes of the rows; 0 for the size that follows from the other fields
    LONG biXPelsPerMeter;  ///< not looked at
    LONG biYPelsPerMeter;  ///< not looked at
    DWORD biClrUsed;       ///< colours in the table; 0: as many as the depth has
    DWORD biClrImportant;  ///< not looked at
};
/// A colour of an image's table.
struct RGBQUAD {
    /// 0 to 255; the last one does not count.
    BYTE rgbBlue, rgbGreen, rgbRed, rgbReserved;
};
/// A header with its colour table, or three masks of 32 bits for BI_BITFIELDS.
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;  ///< says how many colours there are
    RGBQUAD bmiColors[1];        ///< as many as that
};

/// The head of a region's rectangles.
struct RGNDATAHEADER {
    DWORD dwSize;    ///< of this header
    DWORD iType;     ///< RDH_RECTANGLES
    DWORD nCount;    ///< rectangles
    DWORD nRgnSize;  ///< bytes of the rectangles
    RECT rcBound;    ///< around all of them
};
/// The rectangles of a region.
struct RGNDATA {
    RGNDATAHEADER rdh;  ///< says how many there are
    char Buffer[1];     ///< nCount RECTs
};
/// Never made: the calls that name it want null.
struct XFORM;

/// A colour of a palette.
struct PALETTEENTRY {
    /// 0 to 255.
    BYTE peRed, peGreen, peBlue;
    BYTE peFlags;  ///< kept, not looked at
};
/// What CreatePalette makes a palette of.
struct LOGPALETTE {
    WORD palVersion;              ///< 0x300
    WORD palNumEntries;           ///< colours
    PALETTEENTRY palPalEntry[1];  ///< palNumEntries of them
};

/// A coloured point of a gradient.
struct TRIVERTEX {
    /// Pixels.
    LONG x, y;
    /// Of which the high byte is the 8-bit channel; the last one does not count.
    COLOR16 Red, Green, Blue, Alpha;
};
/// Two corners of a rectangle, and three of a triangle, by their numbers in the list of vertices.
struct GRADIENT_RECT {
    /// From 0 on; in any order.
    ULONG UpperLeft, LowerRight;
};
/// See GRADIENT_RECT.
struct GRADIENT_TRIANGLE {
    /// From 0 on; in any order.
    ULONG Vertex1, Vertex2, Vertex3;
};

/// A pen as GetObjectW describes it.
struct LOGPEN {
    UINT lopnStyle;      ///< PS_SOLID and the like
    POINT lopnWidth;     ///< pixels, in x
    COLORREF lopnColor;  ///< as it was made with
};
/// A brush as GetObjectW describes it.
struct LOGBRUSH {
    UINT lbStyle;            ///< BS_SOLID and the like
    COLORREF lbColor;        ///< of a solid one
    std::uintptr_t lbHatch;  ///< the bitmap of a pattern
};

/// Room for a face's name with its terminating zero.
constexpr int LF_FACESIZE = 32;
/// What is asked of a font.
struct LOGFONTW {
    LONG lfHeight;      ///< pixels; negative: of the characters (the em), positive: of the cell, 0: a default
    LONG lfWidth;       ///< pixels of an average character; 0: as the face has it
    LONG lfEscapement;  ///< tenths of a degree, counter-clockwise; any value
    LONG lfOrientation;  ///< not looked at: characters turn with their line
    LONG lfWeight;       ///< 400 is normal, 700 bold; FW_DONTCARE is normal too
    /// Other than 0: so.
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    /// Not looked at.
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;                 ///< NONANTIALIASED_QUALITY: hard edges
    BYTE lfPitchAndFamily;          ///< what to look for when there is no face of that name
    WCHAR lfFaceName[LF_FACESIZE];  ///< empty: any face
};

/// A colour from its channels, and the channels of one; the low eight bits count.
constexpr COLORREF RGB(unsigned red, unsigned green, unsigned blue) {
    return (red & 0xFF) | ((green & 0xFF) << 8) | ((blue & 0xFF) << 16);
}
constexpr BYTE GetRValue(COLORREF color) {
    return static_cast<BYTE>(color & 0xFF);
}
constexpr BYTE GetGValue(COLORREF color) {
    return static_cast<BYTE>((color >> 8) & 0xFF);
}
constexpr BYTE GetBValue(COLORREF color) {
    return static_cast<BYTE>((color >> 16) & 0xFF);
}
/// Colours by their number in the context's palette, and such as are looked for in it.
constexpr COLORREF PALETTEINDEX(unsigned index) {
    return 0x01000000 | (index & 0xFFFF);
}
constexpr COLORREF PALETTERGB(unsigned red, unsigned green, unsigned blue) {
    return 0x02000000 | RGB(red, green, blue);
}

// --- constants ---

/// Object types (GetObjectType).
constexpr DWORD OBJ_PEN = 1, OBJ_BRUSH = 2, OBJ_DC = 3, OBJ_PAL = 5, OBJ_FONT = 6, OBJ_BITMAP = 7,
                OBJ_REGION = 8, OBJ_MEMDC = 10;

/// Stock objects.
constexpr int WHITE_BRUSH = 0, LTGRAY_BRUSH = 1, GRAY_BRUSH = 2, DKGRAY_BRUSH = 3, BLACK_BRUSH = 4,
              NULL_BRUSH = 5, WHITE_PEN = 6, BLACK_PEN = 7, NULL_PEN = 8, SYSTEM_FONT = 13,
              DEFAULT_PALETTE = 15;

/// Pen and brush styles.
constexpr int PS_SOLID = 0, PS_DASH = 1, PS_NULL = 5;
constexpr UINT BS_SOLID = 0, BS_NULL = 1, BS_PATTERN = 3;

/// Fonts.
constexpr LONG FW_DONTCARE = 0, FW_NORMAL = 400, FW_BOLD = 700;
constexpr BYTE DEFAULT_CHARSET = 1, DEFAULT_QUALITY = 0, NONANTIALIASED_QUALITY = 3, ANTIALIASED_QUALITY = 4;
constexpr BYTE DEFAULT_PITCH = 0, FIXED_PITCH = 1, VARIABLE_PITCH = 2, FF_ROMAN = 0x10, FF_SWISS = 0x20,
               FF_MODERN = 0x30;

/// Background modes.
constexpr int TRANSPARENT = 1, OPAQUE = 2;

/// Binary raster operations; P is the pen or brush, D the destination.
constexpr int R2_BLACK = 1, R2_NOTMERGEPEN = 2, R2_MASKNOTPEN = 3, R2_NOTCOPYPEN = 4, R2_MASKPENNOT = 5,
              R2_NOT = 6, R2_XORPEN = 7, R2_NOTMASKPEN = 8, R2_MASKPEN = 9, R2_NOTXORPEN = 10, R2_NOP = 11,
              R2_MERGENOTPEN = 12, R2_COPYPEN = 13, R2_MERGEPENNOT = 14, R2_MERGEPEN = 15, R2_WHITE = 16;

/// Ternary raster operations: bits 16 to 23 are the truth table over pattern, source, destination.
constexpr DWORD SRCCOPY = 0x00CC0020, SRCPAINT = 0x00EE0086, SRCAND = 0x008800C6, SRCINVERT = 0x00660046,
                SRCERASE = 0x00440328, NOTSRCCOPY = 0x00330008, NOTSRCERASE = 0x001100A6,
                MERGECOPY = 0x00C000CA, MERGEPAINT = 0x00BB0226, PATCOPY = 0x00F00021, PATPAINT = 0x00FB0A09,
                PATINVERT = 0x005A0049, DSTINVERT = 0x00550009, BLACKNESS = 0x00000042,
                WHITENESS = 0x00FF0062;

/// Stretch modes.
constexpr int BLACKONWHITE = 1, WHITEONBLACK = 2, COLORONCOLOR = 3, HALFTONE = 4;

/// Device capabilities.
constexpr int TECHNOLOGY = 2, HORZSIZE = 4, VERTSIZE = 6, HORZRES = 8, VERTRES = 10, BITSPIXEL = 12,
              PLANES = 14, LOGPIXELSX = 88, LOGPIXELSY = 90, PHYSICALWIDTH = 110, PHYSICALHEIGHT = 111,
              PHYSICALOFFSETX = 112, PHYSICALOFFSETY = 113;
constexpr int DT_RASDISPLAY = 1, DT_RASPRINTER = 2;

/// System colours.
constexpr int COLOR_BACKGROUND = 1, COLOR_ACTIVECAPTION = 2, COLOR_WINDOW = 5, COLOR_MENUTEXT = 7,
              COLOR_HIGHLIGHT = 13, COLOR_BTNFACE = 15, COLOR_BTNSHADOW = 16, COLOR_BTNHIGHLIGHT = 20,
              COLOR_3DDKSHADOW = 21, COLOR_3DLIGHT = 22;
/// Set in a system colour index by callers written for the older platform; stripped before the look-up.
constexpr int SYS_COLOR_INDEX_FLAG = 0x40000000;

/// Edges (DrawEdge).
constexpr UINT BDR_RAISEDOUTER = 1, BDR_SUNKENOUTER = 2, BDR_RAISEDINNER = 4, BDR_SUNKENINNER = 8;
constexpr UINT BF_LEFT = 1, BF_TOP = 2, BF_RIGHT = 4, BF_BOTTOM = 8, BF_RECT = 15;

/// Gradients: the colour changes from left to right, from top to bottom, or between three corners.
constexpr ULONG GRADIENT_FILL_RECT_H = 0, GRADIENT_FILL_RECT_V = 1, GRADIENT_FILL_TRIANGLE = 2;

/// DIBs.
constexpr UINT DIB_RGB_COLORS = 0;
constexpr DWORD BI_RGB = 0, BI_BITFIELDS = 3;
constexpr UINT IMAGE_BITMAP = 0, LR_DEFAULTCOLOR = 0, LR_LOADFROMFILE = 0x10, LR_CREATEDIBSECTION = 0x2000;

/// Kinds of regions: a failure, no pixels, one rectangle, several.
constexpr int ERROR = 0, NULLREGION = 1, SIMPLEREGION = 2, COMPLEXREGION = 3;
/// Ways to combine regions.
constexpr int RGN_AND = 1, RGN_OR = 2, RGN_XOR = 3, RGN_DIFF = 4, RGN_COPY = 5;
/// The only kind of data.
constexpr DWORD RDH_RECTANGLES = 1;

/// Errors (GetLastError).
constexpr DWORD ERROR_SUCCESS = 0, ERROR_INVALID_HANDLE = 6, ERROR_NOT_ENOUGH_MEMORY = 8,
                ERROR_INVALID_PARAMETER = 87, ERROR_RESOURCE_NAME_NOT_FOUND = 1814;

/// A resource's name or type that is a number, not a text: a value below 0x10000 in place of an address.
inline LPCWSTR MAKEINTRESOURCEW(int number) {
    return reinterpret_cast<LPCWSTR>(static_cast<std::uintptr_t>(static_cast<WORD>(number)));
}
inline bool IS_INTRESOURCE(const void* name) {
    return reinterpret_cast<std::uintptr_t>(name) < 0x10000;
}
/// The type of bitmap resources.
inline const LPCWSTR RT_BITMAP = MAKEINTRESOURCEW(2);

// --- device contexts and objects ---

/// A memory context compatible with \p dc (null: the display), with a 1 x 1 one-bit bitmap selected.
ZUL_PLATFORM_API HDC CreateCompatibleDC(HDC dc);
/// Deselects everything and ends the context. Zero for a handle that is not a memory context.
ZUL_PLATFORM_API BOOL DeleteDC(HDC dc);
/// The display's context. Every call must be paired with ReleaseDC.
ZUL_PLATFORM_API HDC GetDC(HWND window);
ZUL_PLATFORM_API int ReleaseDC(HWND window, HDC dc);
/// In the unit of the index: pixels, millimetres, dots an inch, bits; 0 for no context.
ZUL_PLATFORM_API int GetDeviceCaps(HDC dc, int index);
/// Returns the object of the same kind that was selected before; null when nothing was selected.
ZUL_PLATFORM_API HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
/// Of an OBJ_ kind; null when the context is none.
ZUL_PLATFORM_API HGDIOBJ GetCurrentObject(HDC dc, UINT type);
/// Non-zero for a live or stock object. A selected object lives until it is deselected.
ZUL_PLATFORM_API BOOL DeleteObject(HGDIOBJ object);
/// Null for an index that is not listed above.
ZUL_PLATFORM_API HGDIOBJ GetStockObject(int index);
/// Of a live object or context; 0 otherwise.
ZUL_PLATFORM_API DWORD GetObjectType(HGDIOBJ object);
/// Fills the description of a bitmap, pen, brush or font, or a palette's WORD of how many colours; returns
/// the bytes written, 0 when \p size is too small.
ZUL_PLATFORM_API int GetObjectW(HGDIOBJ object, int size, void* description);
/// The calling thread's last error: ERROR_NOT_ENOUGH_MEMORY says that a call has drawn and changed nothing
/// for want of memory.
ZUL_PLATFORM_API DWORD GetLastError();
ZUL_PLATFORM_API void SetLastError(DWORD error);  ///< What GetLastError answers until the next failure.

// --- state of a context ---

/// A setter answers with the former value, and with 0 (a colour: CLR_INVALID) for no context or a value that
/// there is not; nothing changes then.
ZUL_PLATFORM_API int SetROP2(HDC dc, int rop2);
ZUL_PLATFORM_API int GetROP2(HDC dc);
ZUL_PLATFORM_API int SetBkMode(HDC dc, int mode);
ZUL_PLATFORM_API int GetBkMode(HDC dc);
ZUL_PLATFORM_API COLORREF SetBkColor(HDC dc, COLORREF color);
ZUL_PLATFORM_API COLORREF GetBkColor(HDC dc);
ZUL_PLATFORM_API COLORREF SetTextColor(HDC dc, COLORREF color);
ZUL_PLATFORM_API COLORREF GetTextColor(HDC dc);
ZUL_PLATFORM_API int SetStretchBltMode(HDC dc, int mode);
ZUL_PLATFORM_API int GetStretchBltMode(HDC dc);
ZUL_PLATFORM_API BOOL SetBrushOrgEx(HDC dc, int x, int y, POINT* previous);
ZUL_PLATFORM_API BOOL GetBrushOrgEx(HDC dc, POINT* origin);
/// Of the desktop; 0 and null for an index that is not listed above. The brushes are stock objects.
ZUL_PLATFORM_API COLORREF GetSysColor(int index);
ZUL_PLATFORM_API HBRUSH GetSysColorBrush(int index);

// --- tools and bitmaps ---

/// Null when memory is short. Styles that are not listed above are solid; a pattern is copied.
ZUL_PLATFORM_API HPEN CreatePen(int style, int width, COLORREF color);
ZUL_PLATFORM_API HBRUSH CreateSolidBrush(COLORREF color);
ZUL_PLATFORM_API HBRUSH CreatePatternBrush(HBITMAP bitmap);
/// \p bits: rows from top to bottom, each padded to 32 bits at every depth; null leaves the pixels zero.
ZUL_PLATFORM_API HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPixel, const void* bits);
/// Like the surface that the context draws on, colours included; black. A size of 0 gives the stock bitmap of
/// one pixel.
ZUL_PLATFORM_API HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height);
/// Zero-filled pixels in memory that the caller may address through \p bits. \p section must be null.
ZUL_PLATFORM_API HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits,
                                          HANDLE section, DWORD offset);
/// Completes what drawing calls may still hold back; to be called before a section's memory is read or
/// written directly.
ZUL_PLATFORM_API BOOL GdiFlush();

// --- palettes ---

/// A palette of the given colours, as many as the description says. Null for no description.
ZUL_PLATFORM_API HPALETTE CreatePalette(const LOGPALETTE* description);
/// SelectObject for palettes: returns the one selected before. \p background is not looked at.
ZUL_PLATFORM_API HPALETTE SelectPalette(HDC dc, HPALETTE palette, BOOL background);
/// Gives the colours of the selected palette to a surface that takes its colours from the device: a display,
/// a printer's page or a device-dependent bitmap of 1, 4 or 8 bits a pixel. The pixels that are there change
/// their looks. Entry n becomes the colour of pixel value n; values beyond the palette keep theirs. Returns
/// how many colours were given: none to true colours, to DIB sections, and to one-bit bitmaps on a device of
/// more bits, which all stay as they are. What is drawn in colours by number follows the selected palette
/// with or without this.
ZUL_PLATFORM_API UINT RealizePalette(HDC dc);
/// Copies entries out; returns how many there were, and the palette's size when \p count is 0. With \p
/// entries null they are counted only.
ZUL_PLATFORM_API UINT GetPaletteEntries(HPALETTE palette, UINT start, UINT count, PALETTEENTRY* entries);
/// Overwrites entries that are there; returns how many, 0 for a stock palette.
ZUL_PLATFORM_API UINT SetPaletteEntries(HPALETTE palette, UINT start, UINT count,
                                        const PALETTEENTRY* entries);
/// The first of the entries at the least squared distance from a colour's low 24 bits; 0 for an empty
/// palette.
ZUL_PLATFORM_API UINT GetNearestPaletteIndex(HPALETTE palette, COLORREF color);
/// The colour that SetPixel would draw.
ZUL_PLATFORM_API COLORREF GetNearestColor(HDC dc, COLORREF color);

// --- text ---

/// Never fails for what is asked: a face that is missing is replaced by one like it. Null for no description
/// and when memory is short.
ZUL_PLATFORM_API HFONT CreateFontIndirectW(const LOGFONTW* description);
/// Measures \p count UTF-16 units in the selected font; its escapement does not count. \p extents, where
/// given, receives for each unit the distance from the start of the text to the end of its character; \p fit
/// how many units end within \p maxExtent, all of them when that is negative. \p size, which must be given,
/// is that of the whole text whatever fits; (0, 0) for no text. False, and nothing is written, for a negative
/// count, or null where something is needed.
ZUL_PLATFORM_API BOOL GetTextExtentExPointW(HDC dc, LPCWSTR text, int count, int maxExtent, int* fit,
                                            int* extents, SIZE* size);
/// Draws \p count UTF-16 units in the text colour, (\p x, \p y) being the top left corner of the first
/// cell; in opaque mode on a box of the background colour. Characters stand in the order given, without
/// shaping; half a surrogate pair shows as a replacement character. \p options must be 0, \p rect and
/// \p advances null. Without memory text may be drawn in part.
ZUL_PLATFORM_API BOOL ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text,
                                  UINT count, const int* advances);

// --- images and resources ---

/// A bitmap like the display (a two-coloured one of black and white stays one bit deep), or with
/// LR_CREATEDIBSECTION a section as the image is stored. \p module null: \p name is the path of a BMP file,
/// with or without LR_LOADFROMFILE; otherwise a bitmap resource of the module. \p type must be IMAGE_BITMAP.
/// Sizes of 0 mean the image's own. Null for anything that is no whole image.
ZUL_PLATFORM_API HANDLE LoadImageW(HINSTANCE module, LPCWSTR name, UINT type, int width, int height,
                                   UINT flags);
/// Null when the module has no such resource.
ZUL_PLATFORM_API HRSRC FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type);
/// Null for a resource that is not, or no more, there.
ZUL_PLATFORM_API HGLOBAL LoadResource(HMODULE module, HRSRC resource);
/// The first byte, which stays the module's and is never written to.
ZUL_PLATFORM_API void* LockResource(HGLOBAL loaded);
/// Bytes; 0 as above.
ZUL_PLATFORM_API DWORD SizeofResource(HMODULE module, HRSRC resource);

// --- regions: sets of pixels; right and bottom sides are outside ---

/// The corners may come in any order. A rectangle without width or height gives an empty region.
ZUL_PLATFORM_API HRGN CreateRectRgn(int left, int top, int right, int bottom);
/// A region of the given rectangles, which may overlap; inverted ones are left out. \p transform must be
/// null. Null when \p data does not hold what its header says within \p bytes.
ZUL_PLATFORM_API HRGN ExtCreateRegion(const XFORM* transform, DWORD bytes, const RGNDATA* data);
/// Copies the region's rectangles out, sorted by top and then by left, and returns the bytes that they take
/// with their header; 0, and nothing is written, when \p bytes are too few. Null asks for the size.
ZUL_PLATFORM_API DWORD GetRegionData(HRGN region, DWORD bytes, RGNDATA* data);
/// \returns the kind of \p target, which may be one of the two others; ERROR, and it stays as it was, for an
/// unknown mode. RGN_COPY does not look at \p second.
ZUL_PLATFORM_API int CombineRgn(HRGN target, HRGN first, HRGN second, int mode);
/// What is moved beyond the ends of 32 bits is lost.
ZUL_PLATFORM_API int OffsetRgn(HRGN region, int dx, int dy);
/// Whether the pixel is in the set.
ZUL_PLATFORM_API BOOL PtInRegion(HRGN region, int x, int y);
/// The smallest rectangle around the region, all zero when it is empty; \returns the region's kind.
ZUL_PLATFORM_API int GetRgnBox(HRGN region, RECT* box);

// --- the clip of a context, which outlasts a change of its bitmap ---

/// Draws only within a copy of \p region from now on; null takes the clip away. \returns the region's kind.
ZUL_PLATFORM_API int SelectClipRgn(HDC dc, HRGN region);
/// 1: a clip exists and has been copied into \p region. 0: there is none. -1: failure.
ZUL_PLATFORM_API int GetClipRgn(HDC dc, HRGN region);
/// The smallest rectangle around the pixels that can be drawn; \returns the kind of their set.
ZUL_PLATFORM_API int GetClipBox(HDC dc, RECT* box);
/// Takes a rectangle out of the clip, which without one is the whole surface; \returns the clip's kind.
ZUL_PLATFORM_API int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom);

// --- drawing ---

/// Device pixels. Lines leave out their last pixel, right and bottom sides are outside; docs/raster-rules.md
/// tells which pixels a figure covers. False (a colour: CLR_INVALID) for no context, and for a list without a
/// line.
ZUL_PLATFORM_API BOOL MoveToEx(HDC dc, int x, int y, POINT* previous);
ZUL_PLATFORM_API BOOL LineTo(HDC dc, int x, int y);
ZUL_PLATFORM_API BOOL Polyline(HDC dc, const POINT* points, int count);
ZUL_PLATFORM_API BOOL Polygon(HDC dc, const POINT* points, int count);
ZUL_PLATFORM_API BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);
ZUL_PLATFORM_API BOOL Ellipse(HDC dc, int left, int top, int right, int bottom);
ZUL_PLATFORM_API int FillRect(HDC dc, const RECT* rect, HBRUSH brush);
ZUL_PLATFORM_API BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD rop3);
ZUL_PLATFORM_API COLORREF GetPixel(HDC dc, int x, int y);
ZUL_PLATFORM_API COLORREF SetPixel(HDC dc, int x, int y, COLORREF color);
ZUL_PLATFORM_API BOOL BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy,
                             DWORD rop3);
ZUL_PLATFORM_API BOOL StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy,
                                 int sourceWidth, int sourceHeight, DWORD rop3);
/// Copies the source's pixels but those whose low 24 bits equal \p key; stretches when the sizes differ.
ZUL_PLATFORM_API BOOL TransparentImage(HDC dc, int x, int y, int width, int height, HDC source, int sx,
                                       int sy, int sourceWidth, int sourceHeight, COLORREF key);
/// Fills rectangles or triangles, \p count of them at \p mesh, with colours between those of their corners.
/// Right and bottom sides are outside, triangles cover what polygons do. Neither pen, brush nor raster
/// operation matters. Fails, with nothing drawn, for a corner that is no vertex, an unknown mode, and nothing
/// to draw; fails too when a triangle has no area, with the others drawn.
ZUL_PLATFORM_API BOOL GradientFill(HDC dc, TRIVERTEX* vertices, ULONG vertexCount, void* mesh, ULONG count,
                                   ULONG mode);
/// Rings of one pixel, the inner one inside the outer one; the rectangle stays as it is.
ZUL_PLATFORM_API BOOL DrawEdge(HDC dc, RECT* rect, UINT edge, UINT flags);
/// Moves the visible pixels of \p scroll by (\p dx, \p dy) within \p clip. \p updateRegion and \p updateRect,
/// where given, receive what no pixel was moved onto, and the smallest rectangle around that; the pixels
/// there stay as they were.
ZUL_PLATFORM_API BOOL ScrollDC(HDC dc, int dx, int dy, const RECT* scroll, const RECT* clip,
                               HRGN updateRegion, RECT* updateRect);

#endif
