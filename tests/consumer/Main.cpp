// Needs functions of both libraries, a variable of the library, and the catalogue that was installed with it.
#include <TuvoUtil/Memory.h>
#include <TuvoUtil/Units.h>
#include <basutl/BuString.h>

#include <cstdio>

int main(int count, char** arguments)
{
    if (count != 2)
        return 2;
    VUnitUtlMain(arguments[1]);
    const int pressure = VUnitUtlGetDataTypeId("Pressure");
    const int from = VUnitUtlGetUnitSystemId("mm", "ton", "sec", "kelvin");
    const int to = VUnitUtlGetUnitSystemId("m", "kg", "sec", "kelvin");
    double value = 0.0;
    VUnitUtlConvertFromOneToAnother(pressure, pressure, from, to, 210000.0, &value);

    BuString text;
    text.Format(L"%g", value);
    void* const block = VBuMalloc(100, __FILE__, __LINE__, 0);
    VBuFree(block, __FILE__, __LINE__);
    std::printf("210000 MPa are %s Pa, %d\n", text.ToNarrow().c_str(), __VxFreeLoopCount__);
    return 0;
}
