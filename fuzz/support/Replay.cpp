// Plays a corpus through a fuzz target without a fuzzer: each file as it is, and cut short at lengths spread evenly over it,
// so that the ordinary test run keeps what fuzzing has found. Arguments are folders. Fails when there was nothing to play.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize);

namespace {

constexpr std::size_t kCuts = 24;  // shortened copies of a file, evenly spread; bounds the time under an emulator

void play(const std::vector<std::uint8_t>& p_vecBytes, std::size_t p_nSize) {
    // A block of exactly this size: a sanitizer sees the first byte read past it.
    const std::vector<std::uint8_t> vecExact(p_vecBytes.begin(),
                                             p_vecBytes.begin() + static_cast<std::ptrdiff_t>(p_nSize));
    LLVMFuzzerTestOneInput(vecExact.data(), vecExact.size());
}

}  // namespace

int main(int p_nCount, char** p_ppArguments) {
    std::size_t nPlayed = 0;
    for (int i = 1; i < p_nCount; ++i) {
        std::set<std::filesystem::path> files;  // in the order of their names
        for (const auto& entry : std::filesystem::directory_iterator(p_ppArguments[i])) {
            files.insert(entry.path());
        }
        for (const std::filesystem::path& path : files) {
            std::ifstream file(path, std::ios::binary);
            const std::vector<std::uint8_t> vecBytes{std::istreambuf_iterator<char>(file),
                                                     std::istreambuf_iterator<char>()};
            std::fprintf(stderr, "%s\n", path.filename().c_str());
            const std::size_t nStep = vecBytes.size() / kCuts + 1;
            for (std::size_t nSize = 0; nSize < vecBytes.size(); nSize += nStep) {
                play(vecBytes, nSize);
            }
            play(vecBytes, vecBytes.size());
            ++nPlayed;
        }
    }
    std::fprintf(stderr, "%zu files played\n", nPlayed);
    return nPlayed > 0 ? 0 : 1;
}
