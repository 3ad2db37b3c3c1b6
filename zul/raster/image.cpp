#include "zul/raster/image.h"

#include "zul/kernel/client.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/system/file.h"

namespace zul {

bool CImage::Create(const char16_t* name) {
    const CString path(name);  // the name may be the image's own
    if (path != m_Path) {
        CModificator bracket(this);
        m_Path = path;
    }
    CString full;
    CClient::GetSysDBDir(full);
    full.Append(u"\\resource\\");
    full.Append(path);
    zulsys::CFile file;
    char type[2];
    if (!file.Connect(full.GetBuffer(), true, nullptr, 8, 3) || !file.Read(type, sizeof type)) return false;
    file.Disconnect();
    return type[0] == 'B' && type[1] == 'M' && CBitmap::Create(full.GetBuffer());
}

HBITMAP CImage::GetHandle() {
    if (m_Handle) return m_Handle;
    if (m_Path.IsEmpty() || !Create(m_Path.GetBuffer())) return nullptr;
    return m_Handle;
}

bool CImage::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    CAnyObject::ObjectToBuffer(stream);
    m_Path.ObjectToBuffer(stream);
    return true;
}

bool CImage::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    const CString former = m_Path;
    CAnyObject::ObjectFromBuffer(stream);
    m_Path.ObjectFromBuffer(stream);
    if (m_Path != former) Clear();
    return true;
}

std::uint32_t CImage::GetPreferredSize() {
    return m_Path.GetPreferredSize() + CAnyObject::GetPreferredSize();
}

}  // namespace zul
