#include "fuzz/frame/bmp_mutation.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "platform/dib_header.h"
#include "tests/images/bmp_suite.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t mostSize);

namespace fuzz {
namespace {

using Bytes = std::vector<std::uint8_t>;

class Mutation {
public:
    explicit Mutation(unsigned seed) : m_Random(seed) {}

    std::uint32_t Below(std::size_t end) { return static_cast<std::uint32_t>(m_Random() % end); }

    /// Of any header, depth and compression, with random pixels. No file header.
    Bytes NewImage() {
        constexpr DWORD kHeaders[] = {12, 40, 40, 40, 52, 56, 64, 108, 124},
                        kCompressions[] = {0, 0, 0, 1, 2, 3, 6};
        constexpr WORD kDepths[] = {1, 4, 8, 16, 24, 32};
        BITMAPINFOHEADER header{};
        header.biSize = OneOf(kHeaders);
        header.biWidth = static_cast<std::int32_t>(1 + Below(40));
        header.biHeight = static_cast<std::int32_t>(1 + Below(40));
        header.biPlanes = 1;
        header.biCompression = header.biSize == 12 ? 0 : OneOf(kCompressions);
        header.biBitCount = header.biCompression == 1   ? WORD{8}
                            : header.biCompression == 2 ? WORD{4}
                                                        : OneOf(kDepths);
        const auto colors = static_cast<DWORD>(dib::FullColorCount(header.biBitCount));
        const auto pixels = static_cast<std::size_t>(dib::RowsSize(header));
        if (Below(4) == 0) header.biHeight = -header.biHeight;
        if (Below(2) == 0) header.biSizeImage = static_cast<DWORD>(pixels);
        if (Below(3) == 0 && colors > 0) header.biClrUsed = 1 + Below(colors);
        Bytes image(std::max<std::size_t>(header.biSize, 40) + 4 * colors + 12 + pixels);
        for (std::uint8_t& byte : image)
            byte = static_cast<std::uint8_t>(m_Random());
        std::memcpy(image.data(), &header, sizeof header);
        if (header.biSize == 12) {
            const WORD core[] = {static_cast<WORD>(header.biWidth), static_cast<WORD>(header.biHeight), 1,
                                 header.biBitCount};
            std::memcpy(&image[4], core, sizeof core);
        }
        return image;
    }

    Bytes NewFile() {
        static const std::vector<images::TFile> suite = images::MakeSuite();
        if (Below(2) == 0) return suite[Below(suite.size())].Bytes;
        const Bytes image = NewImage();
        const BITMAPINFOHEADER header = dib::ReadHeader(image.data());
        const auto size = static_cast<std::uint32_t>(14 + image.size());
        const std::uint32_t offset =
            header.biSize == 12 ? size : static_cast<std::uint32_t>(14 + dib::BitsOffset(header));
        Bytes file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        std::memcpy(&file[2], &size, sizeof size);
        std::memcpy(&file[10], &offset, sizeof offset);
        file.insert(file.end(), image.begin(), image.end());
        return file;
    }

    /// A number of the header becomes one that such numbers turn on.
    void ChangeHeader(std::uint8_t* data, std::size_t size) {
        constexpr std::uint32_t kNumbers[] = {
            0,  1,  2,   3,   4,   8,     12,    16,     24,         32,         40,        54,
            64, 99, 124, 255, 256, 32767, 65535, 0x8000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        if (size < 4) return;
        const std::size_t place = Below(std::min<std::size_t>(size - 3, 140) / 2 + 1) * 2;
        const std::uint32_t number = Below(6) == 0 ? static_cast<std::uint32_t>(m_Random()) : OneOf(kNumbers);
        std::memcpy(data + place, &number, std::min<std::size_t>(1u << Below(3), size - place));
    }

private:
    template <class T, std::size_t Count>
    T OneOf(const T (&values)[Count]) {
        return values[Below(Count)];
    }

    std::mt19937 m_Random;
};

}  // namespace

std::size_t MutateBmp(std::uint8_t* data, std::size_t size, std::size_t mostSize, unsigned seed,
                      bool fileHeader) {
    Mutation mutation(seed);
    switch (mutation.Below(8)) {
        case 0: {
            Bytes fresh = mutation.NewFile();
            if (!fileHeader)
                fresh.erase(
                    fresh.begin(),
                    fresh.begin() + std::min<std::ptrdiff_t>(14, static_cast<std::ptrdiff_t>(fresh.size())));
            size = std::min(fresh.size(), mostSize);
            std::copy_n(fresh.begin(), size, data);
            return size;
        }
        case 1:
        case 2:
        case 3:
            mutation.ChangeHeader(data, size);
            return size;
        default:
            return LLVMFuzzerMutate(data, size, mostSize);
    }
}

}  // namespace fuzz
