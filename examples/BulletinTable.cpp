// Two load steps reported to a file, which is then shown.
#include <TuvoUtil/BulletinTable.h>
#include <TuvoUtil/TrackedFile.h>

#include <cstdio>
#include <initializer_list>

namespace {

void Show(const char* path)
{
    std::FILE* const file = TuvoFOpen(path, "r", __FILE__, __LINE__);
    if (file == nullptr)
        return;
    for (int c = std::getc(file); c != EOF; c = std::getc(file))
        std::putchar(c);
    TuvoFClose(file, __FILE__, __LINE__);
    std::remove(path);
}

}  // namespace

int main()
{
    // The table keeps pointers to the names of its columns.
    static char step[] = "step", force[] = "force", state[] = "state";
    const char path[] = "example-report.txt";
    char separator[] = ";";

    void* table = nullptr;
    if (UtlCreateBulletinTableWithOpFileName("steps", &table, path) != 0)
        return 1;
    UtlBulletinTableAddColumn(table, nullptr, step, 0);
    UtlBulletinTableAddColumn(table, nullptr, force, 2);
    UtlBulletinTableAddColumn(table, nullptr, state, 4);
    for (int row = 0; row < 2; ++row) {
        const int number = row + 1;
        UtlBulletinTableAddRow(table, nullptr);
        UtlBulletinTableSetInfo(table, nullptr, step, row, &number);
        for (const double part : {12.5, 0.25})  // summed up in the cell
            UtlBulletinTableAddCellValue(table, nullptr, force, row, &part, 1);
    }
    UtlBulletinTableSetInfo(table, nullptr, state, 1, "converged");

    const int written = UtlBulletinTableWriteRowToFile(table, nullptr, nullptr, -1, -1, -1, 0, 0, separator);
    UtlDeleteBulletinTable(table, nullptr);
    Show(path);
    std::printf("\n");
    return written;
}
