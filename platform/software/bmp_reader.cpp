#include "platform/software/bmp_reader.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <exception>
#include <optional>
#include <vector>

#include "platform/software/images.h"
#include "platform/software/run_lengths.h"
#include "platform/software/section.h"

namespace device {

namespace {

constexpr std::uint32_t kCoreHeaderSize = 12;
/// Headers that begin like the info header: those with masks in it, the one of another system, V4, V5.
constexpr std::uint32_t kLongHeaderSizes[] = {40, 52, 56, 64, 108, 124};

enum Compression : std::uint32_t { kPlain = 0, kRuns8 = 1, kRuns4 = 2, kMasks = 3, kMasksWithAlpha = 6 };

/// Red, green, blue.
using Masks = std::array<std::uint32_t, 3>;

/// What the headers say, and where the rest lies.
struct Layout {
    BITMAPINFOHEADER info{};
    Masks masks{};
    std::int64_t table = 0;  ///< offset
    std::int64_t entrySize = 4;
    std::int64_t bits = 0;  ///< offset

    bool IsRuns() const { return info.biCompression == kRuns8 || info.biCompression == kRuns4; }
    bool HasMasks() const { return info.biCompression == kMasks || info.biCompression == kMasksWithAlpha; }
};

template <class T>
T At(const std::uint8_t* bytes, std::size_t offset) {
    T value;
    std::memcpy(&value, bytes + offset, sizeof value);
    return value;
}

/// Fills in the short header's four figures; its colours have three bytes.
bool ReadCoreHeader(ByteSource& source, std::int64_t start, Layout& layout) {
    std::uint8_t core[kCoreHeaderSize];
    if (!source.Read(start, core, sizeof core)) return false;
    layout.info.biWidth = At<std::uint16_t>(core, 4);
    layout.info.biHeight = At<std::uint16_t>(core, 6);
    layout.info.biPlanes = At<std::uint16_t>(core, 8);
    layout.info.biBitCount = At<std::uint16_t>(core, 10);
    layout.table = start + kCoreHeaderSize;
    layout.entrySize = 3;
    return true;
}

/// Masks stand in the header when it is long enough, else behind it.
bool ReadLongHeader(ByteSource& source, std::int64_t start, std::uint32_t size, Layout& layout) {
    if (!source.Holds(start, size) || !source.Read(start, &layout.info, sizeof layout.info)) return false;
    const bool masksInside = size == 52 || size == 56 || size >= 108;
    layout.table = start + size;
    if (!layout.HasMasks()) return true;
    if (!source.Read(start + dib::kHeaderSize, layout.masks.data(), sizeof layout.masks)) return false;
    if (!masksInside) layout.table += layout.info.biCompression == kMasksWithAlpha ? 16 : 12;
    return size != 64;  // the other system has another compression under this number
}

bool IsContiguous(std::uint32_t mask) {
    const std::uint32_t low = mask & (0u - mask);
    return ((mask + low) & mask) == 0;
}

bool AreMasks(const Layout& layout) {
    const int depth = layout.info.biBitCount;
    const std::uint32_t all = depth == 32 ? ~0u : (1u << depth) - 1;
    std::uint32_t any = 0;
    for (const std::uint32_t mask : layout.masks) {
        if ((mask & ~all) != 0 || !IsContiguous(mask)) return false;
        any |= mask;
    }
    return any != 0;
}

/// Whether the figures name an image that can be read. Rows from the top cannot be runs.
bool IsImage(const Layout& layout) {
    const BITMAPINFOHEADER& info = layout.info;
    if (info.biPlanes != 1 || info.biWidth <= 0 || info.biHeight == 0 || !dib::IsDepth(info.biBitCount) ||
        !dib::FitsLimit(info.biWidth, info.biHeight, info.biBitCount)) {
        return false;
    }
    switch (info.biCompression) {
        case kPlain:
            return true;
        case kRuns8:
            return info.biBitCount == 8 && info.biHeight > 0;
        case kRuns4:
            return info.biBitCount == 4 && info.biHeight > 0;
        case kMasks:
        case kMasksWithAlpha:
            return (info.biBitCount == 16 || info.biBitCount == 32) && AreMasks(layout);
        default:
            return false;
    }
}

/// Where the rows are: where the file's header says, else right behind the colours.
std::optional<std::int64_t> BitsOffset(ByteSource& source, const Layout& layout, bool fileHeader) {
    std::uint32_t stated = 0;
    if (fileHeader && !source.Read(10, &stated, sizeof stated)) return std::nullopt;
    if (stated != 0) return stated;
    return layout.table + layout.entrySize * dib::ColorCount(layout.info);
}

std::optional<Layout> ReadLayout(ByteSource& source, bool fileHeader) {
    Layout layout;
    std::int64_t start = 0;
    if (fileHeader) {
        char magic[2];
        if (!source.Read(0, magic, sizeof magic) || magic[0] != 'B' || magic[1] != 'M') return std::nullopt;
        start = dib::kFileHeaderSize;
    }
    std::uint32_t size = 0;
    if (!source.Read(start, &size, sizeof size)) return std::nullopt;
    if (size == kCoreHeaderSize) {
        if (!ReadCoreHeader(source, start, layout)) return std::nullopt;
    } else {
        const auto* const end = std::end(kLongHeaderSizes);
        if (std::find(std::begin(kLongHeaderSizes), end, size) == end) return std::nullopt;
        if (!ReadLongHeader(source, start, size, layout)) return std::nullopt;
    }
    if (!IsImage(layout)) return std::nullopt;
    const std::optional<std::int64_t> bits = BitsOffset(source, layout, fileHeader);
    if (!bits) return std::nullopt;
    layout.bits = *bits;
    return layout;
}

/// The colours that the header says there are, whatever else lies in their place; those beyond the source are
/// black.
ColorTable ReadColors(ByteSource& source, const Layout& layout) {
    ColorTable table;
    const std::int64_t full = dib::FullColorCount(layout.info.biBitCount);
    table.count = static_cast<std::int32_t>(full);
    const std::int64_t there = std::max<std::int64_t>(source.Size() - layout.table, 0) / layout.entrySize;
    const std::int64_t count = std::min({dib::ColorCount(layout.info), full, there});
    std::uint8_t bytes[256 * 4];
    if (!source.Read(layout.table, bytes, count * layout.entrySize)) return table;
    const std::uint8_t* next = bytes;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i, next += layout.entrySize)
        table.colors[i] = RGB(next[2], next[1], next[0]);
    return table;
}

/// The layout whose pixels are the stored ones; none for masks that must be converted.
std::optional<Format> StoredFormat(const Layout& layout) {
    if (layout.HasMasks()) return FormatOfMasks(layout.info.biBitCount, layout.masks);
    const std::optional<Format> plain = FormatOfDepth(layout.info.biBitCount);
    return plain == Format::Rgb565 ? Format::Rgb555 : plain;
}

/// Takes the bits of a mask out of a pixel and spreads them over 8, the high bits repeated below.
class Channel {
public:
    explicit Channel(std::uint32_t mask) {
        for (std::uint32_t rest = mask; rest != 0 && (rest & 1) == 0; rest >>= 1)
            ++m_Shift;
        m_Most = mask >> m_Shift;
        for (std::uint32_t rest = m_Most; rest != 0; rest >>= 1)
            ++m_Width;
    }
    std::uint32_t Of(std::uint32_t pixel) const {
        const std::uint32_t value = pixel >> m_Shift & m_Most;
        if (m_Width >= 8) return value >> (m_Width - 8);
        std::uint32_t spread = 0;
        for (int bit = 8 - m_Width; m_Width > 0 && bit > -m_Width; bit -= m_Width)
            spread |= bit >= 0 ? value << bit : value >> -bit;
        return spread;
    }

private:
    int m_Shift = 0, m_Width = 0;
    std::uint32_t m_Most = 0;
};

/// Converts rows of 16 or 32 bits with any masks to 32 bits.
bool ReadMaskedRows(ByteSource& source, const Layout& layout, Bitmap& bitmap) {
    const Surface& surface = bitmap.surface;
    const Channel red(layout.masks[0]), green(layout.masks[1]), blue(layout.masks[2]);
    const std::int64_t rowSize = dib::RowSize(layout.info);
    const std::size_t pixelSize = layout.info.biBitCount / 8;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(rowSize));
    std::uint8_t* to = bitmap.pixels.get();
    for (std::int64_t y = 0; y < surface.height; ++y) {
        const auto width = static_cast<std::size_t>(surface.width);
        const std::int64_t used =
            y + 1 < surface.height ? rowSize : static_cast<std::int64_t>(width * pixelSize);
        if (!source.Read(layout.bits + y * rowSize, row.data(), used)) return false;
        for (std::size_t x = 0; x < width; ++x, to += 4) {
            const std::uint32_t pixel =
                pixelSize == 2 ? At<std::uint16_t>(row.data(), 2 * x) : At<std::uint32_t>(row.data(), 4 * x);
            const std::uint32_t color = red.Of(pixel) << 16 | green.Of(pixel) << 8 | blue.Of(pixel);
            std::memcpy(to, &color, sizeof color);
        }
    }
    return true;
}

bool ReadRuns(ByteSource& source, const Layout& layout, const Surface& surface) {
    const std::int64_t there = source.Size() - layout.bits;
    const std::int64_t stated = layout.info.biSizeImage;
    const std::int64_t size = stated > 0 ? std::min(stated, there) : there;
    if (size <= 0 || size > dib::kSizeLimit) return false;
    std::vector<std::uint8_t> code(static_cast<std::size_t>(size));
    return source.Read(layout.bits, code.data(), size) && DecodeRuns(surface, code.data(), code.size());
}

/// Bytes that plain rows take up; the last one may lack its padding.
std::int64_t LeastRowsSize(const BITMAPINFOHEADER& info) {
    return dib::RowsSize(info) - dib::RowSize(info) + (std::int64_t{info.biWidth} * info.biBitCount + 7) / 8;
}

/// Whether the rows are there, or small enough to make room for on the word of a few bytes.
bool IsWorthMemory(const ByteSource& source, const Layout& layout) {
    if (!layout.IsRuns()) return source.Holds(layout.bits, LeastRowsSize(layout.info));
    const std::int64_t shown = dib::RowSize(layout.info.biWidth, 32) * layout.info.biHeight;
    return source.Holds(layout.bits, 1) && shown <= std::max(GetImageLimit(), source.Size());
}

std::unique_ptr<Bitmap> ReadImage(ByteSource& source, const Layout& layout) {
    if (!IsWorthMemory(source, layout)) return nullptr;
    const BITMAPINFOHEADER& info = layout.info;
    const std::optional<Format> stored = StoredFormat(layout);
    const bool bottomUp = info.biHeight > 0;
    auto bitmap = MakeBitmap(info.biWidth, bottomUp ? info.biHeight : -info.biHeight,
                             stored.value_or(Format::Bgrx32), bottomUp);
    if (bitmap == nullptr) return nullptr;
    bitmap->section = true;
    if (info.biBitCount <= dib::kDeepestIndexed && !OwnTable(*bitmap, ReadColors(source, layout)))
        return nullptr;
    bool whole = false;
    if (layout.IsRuns()) {
        whole = ReadRuns(source, layout, bitmap->surface);
    } else if (!stored) {
        whole = ReadMaskedRows(source, layout, *bitmap);
    } else {  // rows stand in memory as they do in the file
        const std::int64_t size = std::min(dib::RowsSize(info), source.Size() - layout.bits);
        whole = source.Read(layout.bits, bitmap->pixels.get(), size);
    }
    return whole ? std::move(bitmap) : nullptr;
}

}  // namespace

namespace {

std::atomic<std::int64_t> imageLimit{kDefaultImageLimit};

}  // namespace

void SetImageLimit(std::int64_t bytes) {
    imageLimit = std::max<std::int64_t>(bytes, 0);
}

std::int64_t GetImageLimit() {
    return imageLimit;
}

std::unique_ptr<Bitmap> ReadBmp(ByteSource& source, bool fileHeader) try {
    const std::optional<Layout> layout = ReadLayout(source, fileHeader);
    return layout ? ReadImage(source, *layout) : nullptr;
} catch (const std::exception&) {
    return nullptr;
}

}  // namespace device
