#include "zul/scaler/length.h"

#include <algorithm>

#include "zul/kernel/string.h"

namespace zul {
namespace {

constexpr char16_t kKilometres[] = u"KM";
constexpr std::uint32_t kMarkLength = 2;
constexpr double kMetresInKilometre = 1000.0;

}  // namespace

bool CLength::ToString(CString& text, const char16_t* format) {
    const std::uint32_t length = format != nullptr ? CString::GetLength(format) : 0;
    if (length < kMarkLength || !CString::IsEqual(format + length - kMarkLength, kKilometres, false))
        return CFloat::ToString(text, format);

    const double kilometres = GetValue() / kMetresInKilometre;
    if (length == kMarkLength) {
        text = CString::FormatNumber(nullptr, kilometres);
        return true;
    }
    text = CString::FormatNumber(format, kilometres);
    // Whatever stands there: callers rely on two characters going, the mark or not.
    text.SetAt(0, text.GetLength() - std::min(text.GetLength(), kMarkLength));
    return true;
}

}  // namespace zul
