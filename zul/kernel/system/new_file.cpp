#include "zul/kernel/system/new_file.h"

#include <random>

#include "platform/crt.h"

namespace zulsys {
namespace {

/// A name in the same folder that nobody else has; short, so that it is none too long where \p place is not.
std::u16string NameBeside(const std::u16string& place) {
    const std::size_t folder = place.find_last_of(u"/\\:") + 1;
    std::u16string name = place.substr(0, folder) + u"~";
    constexpr char16_t Digits[] = u"0123456789abcdef";
    std::random_device random;
    for (std::uint32_t number = random(), digit = 0; digit < 8; number >>= 4, ++digit)
        name += Digits[number & 15];
    return name + u".part";
}

}  // namespace

CNewFile::CNewFile(const char16_t* path) : m_Place(path != nullptr ? path : u"") {
    m_Name = zul_wreplaceable(m_Place.c_str()) ? NameBeside(m_Place) : m_Place;
}

CNewFile::~CNewFile() {
    if (!m_Kept && m_Name != m_Place) zul_wremove(m_Name.c_str());
}

bool CNewFile::Keep() {
    m_Kept = m_Name == m_Place || zul_wreplace(m_Name.c_str(), m_Place.c_str());
    return m_Kept;
}

}  // namespace zulsys
