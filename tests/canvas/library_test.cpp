// What a host finds after it has started the library.
#include "zul/kernel/library.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <regex>
#include <sstream>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/points.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/stream.h"

namespace {

using namespace zultest;

std::string Document(const std::string& name) {
    const zul::CString* document = zul::CClass::GetDocument(name.c_str());
    return document ? document->GetBufferAnsi() : "";
}

struct ClassRow {
    const char* name;
    const char* heading;  ///< package, module, parent, title
    const char* stored;   ///< the fields of the stored form in its order
    int fields;
    bool inOrder = true;  ///< that is the document's order, too
};

const ClassRow Classes[] = {
    {"CRect", "domain zulgraphics CAnyDomain Rect", "m_MinX m_MinY m_MaxX m_MaxY", 4},
    {"CPoint", "domain zulgraphics CAnyDomain Point", "m_X m_Y", 2},
    {"CLength", "kernel zulgraphics CFloat Length", "double", 0},
    {"CBrush", "domain zulgraphics CAnyObject Brush", "m_Color m_Style m_Type m_Pattern", 9},
    {"CPen", "kernel zulgraphics CAnyObject Pen",
     "m_Type m_Style m_EndType m_Width m_DashLength m_Color m_ExtraColor m_fScaled", 15},
    {"CFont", "kernel zulgraphics CAnyObject Font",
     "m_Name m_Alignment m_Style m_TextColor m_OreolColor m_Height m_Angle", 10},
    {"CRegion", "kernel zulgraphics CAnyObject Clip Region", "", 2},
    {"CPalette", "kernel zulgraphics CAnyObject Palette", "m_Type m_Entries", 6},
    {"CGradient", "domain zulgraphics CAnyObject Gradient", "m_Buffer", 2},
    {"CBackground", "kernel zulgraphics CAnyObject Background", "m_BkMode m_BkColor m_Rop", 4},
    {"CScaler", "kernel zulgraphics CAnyObject Scaler",
     "m_MBMinX m_MBMinY m_MBMaxX m_MBMaxY m_VSMinX m_VSMinY m_VSMaxX m_VSMaxY m_MetresInSm m_ScreenToVisible "
     "m_BaseFraction m_PixelsPerSm m_MetresInUnit m_MinScale m_MaxScale m_SpanLeft m_SpanBottom",
     25, false},
    {"CBitmap", "domain zulbitmap CAnyObject Bitmap", "m_Buffer", 3},
    {"CDibSection", "domain zulbitmap CBitmap DIB Section", "m_Buffer", 1},
    {"CCanvas", "kernel zulgraphics CAnyObject Canvas",
     "m_Pen m_Brush m_Font m_Background m_Scaler m_Gradient", 21},
    {"CImage", "domain zulbitmap CBitmap Image", "m_Path", 1},
};

/// The outermost type of a field or, if the class lacks it, of its base; \p at is where the field stands.
std::string TypeOf(const std::string& document, const std::string& field, std::size_t& at) {
    std::smatch match;
    at = document.find("<field name='" + field + "'");
    if (at == std::string::npos) {
        std::regex_search(document, match, std::regex("<parent name='(\\w+)'"));
        return TypeOf(Document(match[1]), field, at);
    }
    const std::string rest = document.substr(at);
    std::regex_search(rest, match, std::regex("<type name='(\\w+)'"));
    return match[1];
}

/// Bytes of an empty value's stored form.
std::size_t StoredSize(const std::string& type) {
    static std::map<std::string, std::size_t> sizes = {{"TCoord", 2}, {"long", 4}, {"bool", 1},
                                                       {"double", 8}, {"CRef", 8}, {"CString", 4}};
    if (sizes.count(type) == 0) {
        const std::unique_ptr<zul::CAnyObject> object(zul::CClass::Create(type.c_str()));
        zul::CMemoryStream stream;
        if (object) object->ObjectToBuffer(&stream);
        sizes[type] = stream.GetSize();
    }
    return sizes[type];
}

class RegisteredClass : public testing::TestWithParam<ClassRow> {
protected:
    static void SetUpTestSuite() {
        AutoRegister();
        AutoRegister();
    }
};

TEST_P(RegisteredClass, IsCreatedByNameAndStoresTheFieldsOfItsDocument) {
    const ClassRow& row = GetParam();
    const std::unique_ptr<zul::CAnyObject> object(zul::CClass::Create(row.name));
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(*zul::CClass::GetName(object.get()), zul::CString(row.name));
    zul::CMemoryStream stream;
    object->ObjectToBuffer(&stream);
    std::size_t size = 0, last = 0, at = 0;
    std::istringstream fields(row.stored);
    for (std::string field; fields >> field; last = at) {
        size += StoredSize(field.substr(0, 2) == "m_" ? TypeOf(Document(row.name), field, at) : field);
        EXPECT_TRUE(!row.inOrder || at >= last) << field;
    }
    EXPECT_EQ(stream.GetSize(), size);
}

TEST_P(RegisteredClass, IsDescribedInOneLayout) {
    const ClassRow& row = GetParam();
    const std::string text = Document(row.name);
    std::smatch match;
    ASSERT_TRUE(std::regex_match(
        text, match,
        std::regex(
            "<class   name='(\\w+)'   title='([\\w ]+)'   description='Class [\\w ]+'(   supportinfo='')?"
            "   package='zul.graphics.(\\w+)'   module='(\\w+)'   platform=''   version='1\\.0\\.0'>"
            "<public>      <parent name='(\\w+)'/>   </public>"
            "(   <private>(      <field name='m_\\w+'(   style='(static|out)')?>"
            "(<type name='\\w+'/>|<type name='C(Ptr|Ref)'><type name='\\w+'/></type>)</field>)+"
            "   </private>)?</class>")))
        << text;
    EXPECT_EQ(match[1], row.name);
    EXPECT_EQ(match[4].str() + " " + match[5].str() + " " + match[6].str() + " " + match[2].str(),
              row.heading);
    EXPECT_EQ(match[3].matched, row.fields != 0) << "support is told of what has fields";
    const std::regex field("<field "), type("<type name='(\\w+)'/>");
    EXPECT_EQ(std::distance(std::sregex_iterator(text.begin(), text.end(), field), {}), row.fields);
    for (std::sregex_iterator i(text.begin(), text.end(), type), end; i != end; ++i) {
        const std::string name = (*i)[1];
        EXPECT_TRUE(StoredSize(name) != 0 || name == "CRegion" || name == "CAnyObject") << name;
    }
}

INSTANTIATE_TEST_SUITE_P(, RegisteredClass, testing::ValuesIn(Classes),
                         [](const testing::TestParamInfo<ClassRow>& row) { return row.param.name; });

TEST(Library, DocumentOfAPointIsExactlyThis) {
    AutoRegister();
    EXPECT_EQ(Document("CPoint"),
              "<class   name='CPoint'   title='Point'   description='Class implements rect primitive'"
              "   supportinfo=''   package='zul.graphics.domain'   module='zulgraphics'   platform=''"
              "   version='1.0.0'><public>      <parent name='CAnyDomain'/>   </public>   <private>"
              "      <field name='m_X'><type name='TCoord'/></field>"
              "      <field name='m_Y'><type name='TCoord'/></field>   </private></class>");
}

TEST(Library, PointsAreTheOneStructure) {
    AutoRegister();
    AutoRegister();
    zul::CAnyDictionary* structures = zul::CClass::GetStructureRegistry();
    EXPECT_EQ(structures->GetCount(), 1u);
    auto* size = dynamic_cast<zul::CInteger*>(structures->DoGetInstance(u"CPoints"));
    ASSERT_NE(size, nullptr);
    EXPECT_EQ(size->GetValue(), static_cast<std::int64_t>(sizeof(zul::CPoints)));
}

}  // namespace
