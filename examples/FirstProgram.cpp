// A pressure of a model in millimetres and tonnes, in SI units. The argument is the folder of unit.xml.
#include <TuvoUtil/Units.h>

#include <cstdio>

int main(int, char** arguments)
{
    VUnitUtlMain(arguments[1]);
    const int pressure = VUnitUtlGetDataTypeId("Pressure");
    if (pressure < 0) {
        std::fputs("where is unit.xml?\n", stderr);
        return 1;
    }
    const int from = VUnitUtlGetUnitSystemId("mm", "ton", "sec", "kelvin");
    const int to = VUnitUtlGetUnitSystemId("m", "kg", "sec", "kelvin");
    double value = 0.0;
    VUnitUtlConvertFromOneToAnother(pressure, pressure, from, to, 210000.0, &value);
    std::printf("210000 MPa = %g Pa\n", value);
}
