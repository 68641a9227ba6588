// Gives a fuzz target all files of the folders that are named, and fails when there is none.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Replay(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    // A copy of exactly this size, so that a sanitizer sees every read past the end.
    const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(data.data(), data.size());
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    int count = 0;
    for (int i = 1; i < argumentCount; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::printf("%s\n", entry.path().string().c_str());
            std::fflush(stdout);  // the last one named is to blame for a crash
            Replay(entry.path());
            ++count;
        }
    return count > 0 ? 0 : 1;
}
