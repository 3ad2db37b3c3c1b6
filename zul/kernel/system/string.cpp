#include "zul/kernel/system/string.h"

namespace zulsys {

bool CString::IsEqual(const char16_t* first, const char16_t* second, std::uint32_t length) {
    if (first == nullptr || second == nullptr) return first == second;
    for (; length != 0; --length, ++first, ++second) {
        if (*first != *second) return false;
        if (*first == 0) return true;
    }
    return true;
}

}  // namespace zulsys
