#include <TuvoUtil/BulletinTable.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

// Law: eight bytes as an integer, a float, a double, a character and a text are written as printf writes them. The sign of
// a nan is left out, of which C libraries think differently.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    static std::string path =
        (std::filesystem::temp_directory_path() / std::to_string(std::random_device{}())).string();
    static char names[][2] = {"0", "1", "2", "3", "4"}, separator[] = "|";
    UtlCreateBulletinTable(nullptr, nullptr);
    std::string expected;
    for (int row = 0; size >= 8; data += 8, size -= 8) {
        char text[9] = "", printed[1000];
        long long bits = 0;
        std::memcpy(&bits, std::memcpy(text, data, 8), 8);
        const auto single = static_cast<double>(std::bit_cast<float>(static_cast<int>(bits)));
        if (std::isnan(single) || std::isnan(std::bit_cast<double>(bits)))
            continue;
        UtlBulletinTableAddRow(nullptr, nullptr);
        for (int type = 0; type < 5; ++type)
            UtlBulletinTableSetCellValue(nullptr, nullptr, names[type], type, row, text, 0);
        ++row;
        expected.append(printed, static_cast<std::size_t>(std::snprintf(
                                     printed, sizeof printed, "\n%d |%f |%f |%c |%s |", static_cast<int>(bits), single,
                                     std::bit_cast<double>(bits), *text, text)));
    }
    UtlBulletinTableWriteRowToFile(nullptr, nullptr, path.data(), -1, -1, -1, 2, 0, separator);
    UtlDeleteBulletinTable(nullptr, nullptr);
    const bool isSame = expected == std::string(std::istreambuf_iterator<char>(std::ifstream(path).rdbuf()), {});
    if (std::remove(path.c_str()) != 0 || !isSame)
        std::abort();
    return 0;
}
