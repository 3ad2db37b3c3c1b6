#include "zul/canvas/region.h"

namespace zul {

CRegion::~CRegion() {
    if (m_Handle) ::DeleteObject(m_Handle);
    if (m_SaveRgn) ::DeleteObject(m_SaveRgn);
}

void CRegion::ApplyRegion(const CRegion* source) {
    if (!source || source == this) return;
    if (m_Handle) ::DeleteObject(m_Handle);
    m_Handle = nullptr;
}

}  // namespace zul
