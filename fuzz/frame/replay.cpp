/// \file
/// A fuzzer without Clang's engine: `PROGRAM MUTANTS FILE|FOLDER...` runs each file and so many damaged forms
/// of each, the same every time. It fails when there is no file.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                                                     std::size_t mostSize, unsigned seed);

static std::mt19937 random_bits;

/// Damages a byte, cuts the end off or doubles it. \returns the new size.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t mostSize) {
    if (size == 0) return 0;
    const std::size_t place = random_bits() % size;
    switch (random_bits() % 8) {
        case 0:
            return place;
        case 1: {
            const std::size_t more = std::min(mostSize - size, size - place);
            std::copy_n(data + place, more, data + size);
            return size + more;
        }
        default:
            data[place] = static_cast<std::uint8_t>(random_bits());
            return size;
    }
}

static void Mutate(Bytes& bytes) {
    const std::size_t size = bytes.size();
    bytes.resize(size + 1000);
    const bool special = LLVMFuzzerCustomMutator != nullptr;
    bytes.resize(special ? LLVMFuzzerCustomMutator(bytes.data(), size, bytes.size(),
                                                   static_cast<unsigned>(random_bits()))
                         : LLVMFuzzerMutate(bytes.data(), size, bytes.size()));
}

static void Run(const Bytes& bytes) {
    const Bytes exact(bytes);  // a step beyond shows
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

static void Replay(const std::filesystem::path& path, int mutants) {
    std::ifstream file(path, std::ios::binary);
    const Bytes sound(std::istreambuf_iterator<char>(file), {});
    Run(sound);
    for (int i = 0; i < mutants; ++i) {
        Bytes mutant = sound;
        for (int left = 1 + i % 3; left > 0; --left)
            Mutate(mutant);
        Run(mutant);
    }
}

int main(int argc, char** argv) {
    const int mutants = argc > 1 ? std::atoi(argv[1]) : 0;
    std::vector<std::filesystem::path> files;
    for (int i = 2; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            files.push_back(argv[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files)
        Replay(file, mutants);
    std::printf("%zu files, %d damaged forms of each\n", files.size(), mutants);
    return files.empty() ? 1 : 0;
}
