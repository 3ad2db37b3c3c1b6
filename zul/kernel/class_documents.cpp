#include "zul/kernel/class_documents.h"

#include <sstream>

#include "zul/canvas/canvas.h"
#include "zul/geometry/point.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/class_registry.h"
#include "zul/raster/dib_section.h"
#include "zul/raster/image.h"
#include "zul/scaler/length.h"

namespace zul {
namespace {

constexpr char Graphics[] = "zulgraphics";
constexpr char Bitmaps[] = "zulbitmap";

constexpr TFieldRow RectFields[] = {{"m_MinX m_MinY m_MaxX m_MaxY", "TCoord", nullptr}, {}};

constexpr TFieldRow PointFields[] = {{"m_X m_Y", "TCoord", nullptr}, {}};

constexpr TFieldRow BrushFields[] = {
    {"m_Color m_Style m_Type", "long", nullptr},
    {"m_Pattern", "CRef CBitmap", nullptr},
    {"m_OriginX m_OriginY m_DefaultBrush m_Handle m_fInvalid", "long", nullptr},
    {},
};

constexpr TFieldRow PenFields[] = {
    {"m_Type m_Style m_EndType m_Width m_DashLength", "long", nullptr},
    {"m_MeterToPixelFactor", "double", nullptr},
    {"m_Color m_ExtraColor", "long", nullptr},
    {"m_fScaled", "bool", nullptr},
    {"m_Device m_Handle m_ExtraHandle1 m_ExtraHandle2 m_DefaultPen", "long", nullptr},
    {"m_fInvalid", "bool", nullptr},
    {},
};

constexpr TFieldRow FontFields[] = {
    {"m_Name", "CString", nullptr},
    {"m_Alignment m_Style m_TextColor m_OreolColor m_Height m_Angle m_Handle m_DefaultFont m_fInvalid",
     "long", nullptr},
    {},
};

constexpr TFieldRow RegionFields[] = {{"m_Handle m_SaveRgn", "long", nullptr}, {}};

constexpr TFieldRow PaletteFields[] = {
    {"m_Type", "long", nullptr},
    {"m_Entries", "CAnyBuffer", nullptr},
    {"m_Handle m_DefaultPalette", "long", nullptr},
    {"m_fInvalid m_fRealize", "bool", nullptr},
    {},
};

constexpr TFieldRow GradientFields[] = {
    {"m_Buffer", "CAnyBuffer", nullptr},
    {"m_ModeType", "long", "static"},
    {},
};

constexpr TFieldRow BackgroundFields[] = {{"m_BkMode m_BkColor m_Rop m_fInvalid", "long", nullptr}, {}};

constexpr TFieldRow ScalerFields[] = {
    {"m_MBMinX m_MBMinY m_MBMaxX m_MBMaxY m_VSMinX m_VSMinY m_VSMaxX m_VSMaxY", "long", nullptr},
    {"m_PixelsPerSm m_ScreenToVisible m_BaseFraction m_MetresInSm m_MinScale m_MaxScale m_MetresInUnit",
     "double", nullptr},
    {"m_SpanLeft m_SpanBottom m_OffsX m_OffsY m_ScreenWidth m_ScreenHeight", "long", nullptr},
    {"m_PivotX m_PivotY", "TCoord", nullptr},
    {"m_Angle", "double", nullptr},
    {"m_AddAngleToFontAngle", "bool", nullptr},
    {},
};

constexpr TFieldRow BitmapFields[] = {
    {"m_Buffer", "CRef CAnyBuffer", nullptr},
    {"m_Handle", "long", nullptr},
    {"m_Attached", "bool", nullptr},
    {},
};

constexpr TFieldRow SectionFields[] = {{"m_Bits", "long", nullptr}, {}};

constexpr TFieldRow ImageFields[] = {{"m_Path", "CString", nullptr}, {}};

constexpr TFieldRow CanvasFields[] = {
    {"m_Pen", "CPen", nullptr},
    {"m_Brush", "CBrush", nullptr},
    {"m_Font", "CFont", nullptr},
    {"m_Background", "CBackground", nullptr},
    {"m_Region", "CRegion", nullptr},
    {"m_Palette", "CPtr CPalette", nullptr},
    {"m_Scaler", "CRef CScaler", nullptr},
    {"m_Bitmap m_Icon", "CPtr CBitmap", nullptr},
    {"m_VectIcon", "CPtr CAnyObject", nullptr},
    {"m_Gradient", "CRef CGradient", nullptr},
    {"m_Device", "long", nullptr},
    {"m_DefaultBitmap", "long", "out"},
    {"m_Buffer", "CAnyBuffer", nullptr},
    {"m_MemoryDC m_Anisotropic m_PretranslateCoords", "bool", nullptr},
    {"m_CurPositionX m_CurPositionY", "TCoord", nullptr},
    {"m_Edge m_EdgeFlags", "long", "static"},
    {},
};

template <class T>
CAnyFactory* MakeFactory() {
    return new CFactory<T>;
}

// Two descriptions stand at two classes each; hosts show these texts, so they stay as they are.
constexpr TClassRow Classes[] = {
    {MakeFactory<CRect>, "CRect", "Rect", "Class implements rect primitive", "CAnyDomain", "domain", Graphics,
     RectFields},
    {MakeFactory<CPoint>, "CPoint", "Point", "Class implements rect primitive", "CAnyDomain", "domain",
     Graphics, PointFields},
    {MakeFactory<CLength>, "CLength", "Length", "Class implements length in meters or in km", "CFloat",
     "kernel", Graphics, nullptr},
    {MakeFactory<CBrush>, "CBrush", "Brush", "Class implements brush gdi object", "CAnyObject", "domain",
     Graphics, BrushFields},
    {MakeFactory<CPen>, "CPen", "Pen", "Class implements pen gdi object", "CAnyObject", "kernel", Graphics,
     PenFields},
    {MakeFactory<CFont>, "CFont", "Font", "Class implements brush gdi object", "CAnyObject", "kernel",
     Graphics, FontFields},
    {MakeFactory<CRegion>, "CRegion", "Clip Region", "Class implements clipping region gdi object",
     "CAnyObject", "kernel", Graphics, RegionFields},
    {MakeFactory<CPalette>, "CPalette", "Palette", "Class implements palette gdi object", "CAnyObject",
     "kernel", Graphics, PaletteFields},
    {MakeFactory<CGradient>, "CGradient", "Gradient", "Class provides frame for gradients usage",
     "CAnyObject", "domain", Graphics, GradientFields},
    {MakeFactory<CBackground>, "CBackground", "Background", "Class contains screen background info",
     "CAnyObject", "kernel", Graphics, BackgroundFields},
    {MakeFactory<CScaler>, "CScaler", "Scaler", "Class provide mapping from map to screen coordinates",
     "CAnyObject", "kernel", Graphics, ScalerFields},
    {MakeFactory<CBitmap>, "CBitmap", "Bitmap", "Class provides frame for bitmap usage", "CAnyObject",
     "domain", Bitmaps, BitmapFields},
    {MakeFactory<CDibSection>, "CDibSection", "DIB Section",
     "Class provides frame for bitmap usage with dirrect access to bitmap bits", "CBitmap", "domain", Bitmaps,
     SectionFields},
    {MakeFactory<CCanvas>, "CCanvas", "Canvas", "Class provides frame for gdi HDC object", "CAnyObject",
     "kernel", Graphics, CanvasFields},
    {MakeFactory<CImage>, "CImage", "Image", "Class represents image of various widespread formats",
     "CBitmap", "domain", Bitmaps, ImageFields},
    {},
};

std::string TypeElement(const std::string& type) {
    const std::size_t blank = type.find(' ');
    if (blank == std::string::npos) return "<type name='" + type + "'/>";
    return "<type name='" + type.substr(0, blank) + "'>" + TypeElement(type.substr(blank + 1)) + "</type>";
}

std::string FieldElements(const TFieldRow& row) {
    std::string elements;
    std::istringstream names(row.Names);
    for (std::string name; names >> name;) {
        elements += "      <field name='" + name + "'";
        if (row.Style) elements += std::string("   style='") + row.Style + "'";
        elements += ">" + TypeElement(row.Type) + "</field>";
    }
    return elements;
}

}  // namespace

const TClassRow* GetClassRows() {
    return Classes;
}

std::string MakeClassDocument(const TClassRow& row) {
    std::string text = "<class";
    const auto attribute = [&text](const char* name, const std::string& value) {
        text += std::string("   ") + name + "='" + value + "'";
    };
    attribute("name", row.Name);
    attribute("title", row.Title);
    attribute("description", row.Description);
    if (row.Fields) attribute("supportinfo", "");
    attribute("package", std::string("zul.graphics.") + row.Package);
    attribute("module", row.Module);
    attribute("platform", "");
    attribute("version", "1.0.0");
    text += ">";
    text += std::string("<public>      <parent name='") + row.Parent + "'/>   </public>";
    if (row.Fields) {
        text += "   <private>";
        for (const TFieldRow* field = row.Fields; field->Names; ++field)
            text += FieldElements(*field);
        text += "   </private>";
    }
    return text + "</class>";
}

}  // namespace zul
