#include "zul/kernel/library.h"

#include <cstdint>

#include "zul/geometry/points.h"
#include "zul/kernel/class_documents.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"
#include "zul/raster/bitmap.h"
#include "zul/raster/pattern_bitmap.h"

namespace zul {
namespace {

// The pattern's eight rows of 32 bits, inverted where the bitmap is made.
constexpr std::uint32_t PatternRows[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

}  // namespace
}  // namespace zul

void AutoRegister() {
    using namespace zul;
    for (const TClassRow* row = GetClassRows(); row->Name; ++row)
        CClass::Register(row->MakeFactory(), CString(MakeClassDocument(*row).c_str()));
    CClass::GetStructureRegistry()->DoAppend(u"CPoints", new CInteger(sizeof(CPoints)));
}

void InitializeLibrary() {
    using namespace zul;
    CAnyPtr& holder = GetPatternHolder();
    holder.Remove();
    auto* pattern = new CBitmap;
    holder.DoSetInstance(pattern);
    std::uint32_t rows[8];
    for (int i = 0; i < 8; ++i)
        rows[i] = ~PatternRows[i];
    if (pattern) pattern->Create(8, 8, 1, rows);
}

void FinalizeLibrary() {
    zul::GetPatternHolder().Remove();
}
