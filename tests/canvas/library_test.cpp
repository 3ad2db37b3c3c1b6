// What a host finds after it has started the library.
#include "zul/kernel/library.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/point.h"
#include "zul/geometry/points.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"

namespace {

using namespace zultest;

std::string Document(const char* name) {
    const zul::CString* document = zul::CClass::GetDocument(zul::CString(name));
    return document ? document->GetBufferAnsi() : "";
}

struct ClassRow {
    const char* name;
    const char* title;
    const char* package;
    const char* field;  ///< a telling field's name and type as they stand in the document
    int fields;
};

const ClassRow Classes[] = {
    {"CRect", "Rect", "domain", "'m_MaxY'><type name='TCoord'/>", 4},
    {"CPoint", "Point", "domain", "'m_X'><type name='TCoord'/>", 2},
    {"CBrush", "Brush", "domain", "'m_Pattern'><type name='CRef'><type name='CBitmap'/></type>", 9},
    {"CPen", "Pen", "kernel", "'m_MeterToPixelFactor'><type name='double'/>", 15},
    {"CFont", "Font", "kernel", "'m_Name'><type name='CString'/>", 10},
    {"CRegion", "Clip Region", "kernel", "'m_SaveRgn'><type name='long'/>", 2},
    {"CPalette", "Palette", "kernel", "'m_Entries'><type name='CAnyBuffer'/>", 6},
    {"CGradient", "Gradient", "domain", "'m_ModeType'   style='static'><type name='long'/>", 2},
    {"CBackground", "Background", "kernel", "'m_Rop'><type name='long'/>", 4},
    {"CScaler", "Scaler", "kernel", "'m_AddAngleToFontAngle'><type name='bool'/>", 25},
    {"CBitmap", "Bitmap", "domain", "'m_Buffer'><type name='CRef'><type name='CAnyBuffer'/></type>", 3},
    {"CDibSection", "DIB Section", "domain", "'m_Bits'><type name='long'/>", 1},
    {"CImage", "Image", "domain", "'m_Path'><type name='CString'/>", 1},
    {"CCanvas", "Canvas", "kernel", "'m_DefaultBitmap'   style='out'><type name='long'/>", 21},
};

class RegisteredClass : public testing::TestWithParam<ClassRow> {
protected:
    static void SetUpTestSuite() { AutoRegister(); }
};

TEST_P(RegisteredClass, IsCreatedByName) {
    NoLeaks leaks;
    const std::unique_ptr<zul::CAnyObject> object(zul::CClass::Create(zul::CString(GetParam().name)));
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(*zul::CClass::GetName(object.get()), zul::CString(GetParam().name));
}

TEST_P(RegisteredClass, IsDescribed) {
    const ClassRow& row = GetParam();
    const std::string text = Document(row.name);
    const std::string opening =
        std::string("<class   name='") + row.name + "'   title='" + row.title + "'   ";
    EXPECT_EQ(text.substr(0, opening.size()), opening);
    EXPECT_NE(text.find(std::string("   package='zul.graphics.") + row.package + "'"), std::string::npos)
        << text;
    EXPECT_NE(text.find(std::string("      <field name=") + row.field + "</field>"), std::string::npos)
        << text;
    int count = 0;
    for (std::size_t at = text.find("<field "); at != std::string::npos; at = text.find("<field ", at + 1))
        ++count;
    EXPECT_EQ(count, row.fields);
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
