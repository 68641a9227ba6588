#include "VUnitUtil/Conversion.h"

#include "VUnit/Catalogue.h"

#include <TuvoUtil/Units.h>

#include <bit>
#include <cmath>

namespace conversion {
namespace {

// Kept: the data type whose factors enter as square roots.
constexpr std::int32_t SquareRootType = 49;

double PowerInSteps(double value, std::int64_t count, bool divide)
{
    const auto step = [=](double product) { return divide ? product / value : product * value; };
    double product = 1.0;
    for (; count >= 2; count -= 2) {
        const double next = step(step(product));
        if (std::bit_cast<std::uint64_t>(next) == std::bit_cast<std::uint64_t>(product))
            break;  // 1, 0, infinity, nan or a sign that alternates: all further pairs of steps change nothing
        product = next;
    }
    return count % 2 != 0 ? step(product) : product;
}

// The value multiplied or divided one after the other. Exponents above a million, which no quantity has, go in groups
// of that many, so that a file cannot make a conversion take seconds.
double Power(double value, std::int32_t exponent)
{
    constexpr std::int64_t group = 1 << 20;
    const bool divide = exponent < 0;
    const std::int64_t count = divide ? -std::int64_t{exponent} : exponent;
    const double rest = PowerInSteps(value, count % group, divide);
    if (count < group)
        return rest;
    return rest * PowerInSteps(PowerInSteps(value, group, divide), count / group, false);
}

// A base unit that is not in the catalogue counts as the reference unit.
struct Scale
{
    double factor = 1.0;
    double offset = 0.0;
};

Scale ScaleOf(std::int32_t unitId)
{
    const _UnitBaseTypeStr* const unit = catalogue::FindUnit(unitId);
    return unit != nullptr ? Scale{unit->conversionValue, unit->additiveValue} : Scale{};
}

struct SystemScales
{
    explicit SystemScales(const _UnitSystemStr& system)
        : length(ScaleOf(system.lengthUnit)),
          mass(ScaleOf(system.massUnit)),
          time(ScaleOf(system.timeUnit)),
          heat(ScaleOf(system.heatUnit))
    {}

    double FactorOf(const catalogue::Exponents& e) const
    {
        return Power(length.factor, e.length) * Power(mass.factor, e.mass) * Power(time.factor, e.time) *
               Power(heat.factor, e.heat);
    }
    double OffsetWithoutHeat(const catalogue::Exponents& e) const
    {
        return (e.length != 0 ? length.offset : 0.0) + (e.mass != 0 ? mass.offset : 0.0) +
               (e.time != 0 ? time.offset : 0.0);
    }
    double OffsetOf(const catalogue::Exponents& e) const
    {
        return OffsetWithoutHeat(e) + (e.heat != 0 ? heat.offset : 0.0);
    }

    Scale length, mass, time, heat;
};

catalogue::Exponents ConvertedExponents(const _UnitDataTypeStr* type)
{
    return type != nullptr && type->hasMultiplier == 0 ? catalogue::ExponentsOf(*type) : catalogue::Exponents{};
}

bool HasHeatAlone(const catalogue::Exponents& e)
{
    return e.length == 0 && e.mass == 0 && e.time == 0;
}

Quantity WorkOut(std::int32_t dataTypeId, std::int32_t systemId)
{
    Quantity quantity = {};
    const _UnitDataTypeStr* const type = catalogue::FindDataType(dataTypeId);
    const _UnitSystemStr* const system = catalogue::FindSystem(systemId);
    quantity.multiplier = type != nullptr ? type->multiplier : 1.0;
    quantity.hasMultiplier = quantity.multiplier != 1.0;
    quantity.factor = 1.0;
    if (system == nullptr)
        return quantity;

    const catalogue::Exponents exponents = ConvertedExponents(type);
    const SystemScales scales(*system);
    quantity.dataTypeId = dataTypeId;
    quantity.systemId = systemId;
    quantity.generation = catalogue::g_generation;
    quantity.hasSystem = true;
    quantity.factor = scales.FactorOf(exponents);
    if (dataTypeId == SquareRootType)
        quantity.factor = std::sqrt(quantity.factor);
    quantity.offset = scales.OffsetWithoutHeat(exponents);
    quantity.isTemperature = HasHeatAlone(exponents) && exponents.heat >= 1;
    if (quantity.isTemperature) {
        quantity.heatOffset = scales.heat.offset;
        quantity.minusHeatOffset = -scales.heat.offset;
    }
    return quantity;
}

// The quantities worked out last, each in the one place that its ids lead to. Ids of types below 256 with ids of systems
// below 32 never collide; others do so rarely, and are then worked out again.
constexpr std::uint32_t QuantityCount = 32 * 256;
constinit Quantity g_quantities[QuantityCount] = {};

Quantity& PlaceOf(std::int32_t dataTypeId, std::int32_t systemId)
{
    const std::uint32_t place = static_cast<std::uint32_t>(systemId) * 256 + static_cast<std::uint32_t>(dataTypeId);
    return g_quantities[place % QuantityCount];
}

bool IsCurrent(const Quantity& quantity, std::int32_t dataTypeId, std::int32_t systemId)
{
    return quantity.dataTypeId == dataTypeId && quantity.systemId == systemId &&
           quantity.generation == catalogue::g_generation;
}

double ToReference(double value, const Quantity& from)
{
    if (!from.hasMultiplier) [[likely]]  // and divisions are slow
        return (value - from.heatOffset) / from.factor - from.offset;
    if (from.isTemperature)
        value = (value / from.multiplier - from.heatOffset) * from.multiplier;
    return value / from.factor / from.multiplier - from.offset;
}

double FromReference(double value, const Quantity& to)
{
    return (to.factor * (value + to.offset) - to.minusHeatOffset) * to.multiplier;
}

// ---- Sub-models ----------------------------------------------------------------------------------------------------

struct SubModelScales
{
    double length, mass, time;
    std::int32_t temperatureCode;
};
constinit SubModelScales g_subModel = {1.0, 1.0, 1.0, 0};

double ConvertTemperature(double value, double otherwise)
{
    constexpr double fifth = 0.5555555555555556;
    switch (g_subModel.temperatureCode) {
        case 1:
            return (value - 32) * fifth;
        case 2:
            return value * 1.8 + 32;
        case 3:
            return (value - 32) * fifth + 273.15;
        case 4:
            return (value - 273.15) * 1.8 + 32;
        case 5:
            return value - 273.15;
        case 6:
            return value + 273.15;
        default:
            return otherwise;
    }
}

double ScaleSubModel(double value, const catalogue::Exponents& e)
{
    const double scaled =
        value * Power(g_subModel.length, e.length) * Power(g_subModel.mass, e.mass) * Power(g_subModel.time, e.time);
    return HasHeatAlone(e) && e.heat == 1 ? ConvertTemperature(value, scaled) : scaled;
}

double ConvertSubModel(std::int32_t dataTypeId, double value)
{
    // Kept: of several types with this id the last one counts here.
    const _UnitDataTypeStr* const type = catalogue::FindLastDataType(dataTypeId);
    return ScaleSubModel(value, ConvertedExponents(type)) * (type != nullptr ? type->multiplier : 1.0);
}

// ---- One value after the other -------------------------------------------------------------------------------------

// The last conversion, if neither side has a multiplier: most callers convert many values of one kind. Made with all
// that the next such value needs side by side.
struct LastConversion
{
    std::int32_t fromType, toType, fromSystem, toSystem;
    std::uint32_t generation;  // of the catalogue; 0 for none
    double fromHeatOffset, fromFactor, fromOffset;
    double toOffset, toFactor, toMinusHeatOffset;

    bool Is(int from, int to, int systemFrom, int systemTo) const
    {
        return ((from ^ fromType) | (to ^ toType) | (systemFrom ^ fromSystem) | (systemTo ^ toSystem)) == 0 &&
               generation == catalogue::g_generation;
    }
    double Convert(double value) const
    {
        const double reference = (value - fromHeatOffset) / fromFactor - fromOffset;
        return toFactor * (reference + toOffset) - toMinusHeatOffset;
    }
};
constinit LastConversion g_last = {};

void Keep(const Quantity& from, const Quantity& to)
{
    g_last = {from.dataTypeId, to.dataTypeId, from.systemId, to.systemId, to.generation,     from.heatOffset,
              from.factor,     from.offset,   to.offset,     to.factor,   to.minusHeatOffset};
}

// Converts what is not like the last value. Out of line, so that the way of all others is short.
[[gnu::noinline]] void ConvertNext(int fromType, int toType, int fromSystem, int toSystem, double value, double* out)
{
    if (fromSystem == -1 && toSystem == -1) {
        *out = ConvertSubModel(toType, value);
        return;
    }
    const Quantity from = QuantityOf(fromType, fromSystem);  // the next may take its place
    const Quantity& to = QuantityOf(toType, toSystem);
    if (from.hasSystem)
        *out = ToReference(value, from);
    if (to.hasSystem)
        *out = FromReference(*out, to);
    if (from.hasSystem && to.hasSystem && !from.hasMultiplier && !to.hasMultiplier)
        Keep(from, to);
}

// ---- Factors -------------------------------------------------------------------------------------------------------

Scale ScaleOf(const _UnitDataStr* quantity)
{
    if (quantity == nullptr)
        return {};
    const _UnitDataTypeStr* const type = catalogue::FindDataType(quantity->dataTypeId);
    const _UnitSystemStr* const system = catalogue::FindSystem(quantity->systemId);
    if (type == nullptr || system == nullptr)
        return {};
    const SystemScales scales(*system);
    return {scales.FactorOf(catalogue::ExponentsOf(*type)), scales.OffsetOf(catalogue::ExponentsOf(*type))};
}

void Store(double* output, double value)
{
    if (output != nullptr)
        *output = value;
}

}  // namespace

const Quantity& QuantityOf(std::int32_t dataTypeId, std::int32_t systemId)
{
    Quantity& kept = PlaceOf(dataTypeId, systemId);
    if (!IsCurrent(kept, dataTypeId, systemId))
        kept = WorkOut(dataTypeId, systemId);
    return kept;
}

}  // namespace conversion

void VUnitUtlConvertFromOneToAnother(int fromType, int toType, int fromSystem, int toSystem, double value, double* out)
{
    using namespace conversion;
    if (out == nullptr)
        return;
    if (g_last.Is(fromType, toType, fromSystem, toSystem)) [[likely]]
        *out = g_last.Convert(value);
    else
        ConvertNext(fromType, toType, fromSystem, toSystem, value, out);
}

void VUnitUtlSetScaleFatorForSubModelUnitConversion(double length, double mass, double time, int temperatureCode)
{
    conversion::g_subModel = {length, mass, time, temperatureCode};
}

void VUnitGetFactorsToConvert(const _UnitDataStr* from, const _UnitDataStr* to, double* fromFactor, double* fromOffset,
                              double* toFactor, double* toOffset)
{
    const conversion::Scale fromScale = conversion::ScaleOf(from);
    const conversion::Scale toScale = conversion::ScaleOf(to);
    conversion::Store(fromFactor, fromScale.factor);
    conversion::Store(fromOffset, fromScale.offset);
    conversion::Store(toFactor, toScale.factor);
    conversion::Store(toOffset, toScale.offset);
}
