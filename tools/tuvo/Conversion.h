// One conversion: from a data type in a unit system to a data type in another system.
#pragma once

#include "tools/tuvo/CatalogueFile.h"

#include <string>

namespace tool {

// Whether values of a data type are the same in all unit systems.
bool IsIndependentOfSystem(const DataType& type);

class Conversion
{
public:
    struct End
    {
        const DataType& type;
        int unitSystem;
    };

    // Throws Failure when the data types are of different dimensions. What a type with a multiplier measures is not known
    // to the catalogue: it goes with every other type.
    Conversion(const CatalogueFile& catalogue, const End& from, const End& to);

    double Convert(double value) const;

    // Appends a result with at most `digits` significant digits, and without the last ones where the arithmetic of a
    // temperature scale, which adds numbers of several hundreds, leaves only noise: 0 for 5.7e-14.
    void AppendResult(std::string& out, double result, int digits) const;

    // A value y of the source is y * Factor() + Offset() in the target.
    double Factor() const;
    double Offset() const { return Convert(0.0); }

    // What stands behind values of both ends: their unit, nothing when they have none.
    const std::string& SourceUnit() const { return m_sourceUnit; }
    const std::string& TargetUnit() const { return m_targetUnit; }

private:
    int m_fromType;
    int m_toType;
    int m_fromSystem;
    int m_toSystem;
    double m_largestTerm = 0.0;  // the largest number that is added on the way, in the target's unit
    std::string m_sourceUnit;
    std::string m_targetUnit;
};

}  // namespace tool
