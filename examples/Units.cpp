// Unit conversion as a solver interface uses it: the directory of unit.xml is the argument.
#include <TuvoUtil/Units.h>

#include <cstdio>
#include <initializer_list>

namespace {

struct Quantity
{
    const char* type;
    double value;
};

void Convert(const Quantity& quantity, int from, int to)
{
    const int type = VUnitUtlGetDataTypeId(quantity.type);
    double result = 0.0;
    VUnitUtlConvertFromOneToAnother(type, type, from, to, quantity.value, &result);

    char fromUnit[256];
    char toUnit[256];
    const _UnitDataStr source = {type, from};
    const _UnitDataStr target = {type, to};
    VUnitUtlGetUnitString(&source, fromUnit);
    VUnitUtlGetUnitString(&target, toUnit);
    std::printf("%-12s %10g %-10s = %12g %s\n", quantity.type, quantity.value, fromUnit, result, toUnit);
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
        return 2;
    VUnitUtlMain(arguments[1]);  // before any other function of the family
    const int millimetres = VUnitUtlGetUnitSystemId("mm", "ton", "sec", "kelvin");
    const int metres = VUnitUtlGetBaseUnitSystemId();

    // Steel in the units of a model in millimetres, as a solver in SI units wants it.
    for (const Quantity& quantity :
         {Quantity{"Length", 250.0}, Quantity{"Force", 1500.0}, Quantity{"Pressure", 210000.0},
          Quantity{"Density", 7.85e-9}, Quantity{"Temperature", 293.15}})
        Convert(quantity, millimetres, metres);

    double factor = 0.0;
    VUnitUtlGetUnitConversionFactor("Feet", "Inches", factor);  // needs no catalogue
    std::printf("a foot has %g inches\n", factor);
    std::printf("there is %s data type \"Presure\"\n", VUnitUtlGetDataTypeId("Presure") < 0 ? "no" : "a");
}
