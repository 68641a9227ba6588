// Converting values with types and systems given by id, against a converter of udunits2 that was made beforehand.

#include <TuvoUtil/Units.h>

#include <benchmark/benchmark.h>
#include <udunits2.h>

#include <array>
#include <cmath>
#include <cstddef>

namespace {

// Values that no compiler can foresee.
class Values
{
public:
    Values()
    {
        for (std::size_t i = 0; i < m_values.size(); ++i)
            m_values[i] = 0.5 + static_cast<double>(i) * 1.25;
    }
    double Next() { return m_values[m_next++ % m_values.size()]; }

private:
    std::array<double, 1024> m_values = {};
    std::size_t m_next = 0;
};

struct Conversion
{
    int dataType, fromSystem, toSystem;

    double operator()(double value) const
    {
        double converted = 0.0;
        VUnitUtlConvertFromOneToAnother(dataType, dataType, fromSystem, toSystem, value, &converted);
        return converted;
    }
};

// Temperatures from Fahrenheit to kelvin: a factor and an offset in both.
Conversion OurConverter()
{
    VUnitUtlMain(TUVO_SOURCE_DIR "/data");
    return {VUnitUtlGetDataTypeId("Temperature"), VUnitUtlGetUnitSystemId("in", "lb", "sec", "fahrenheit"),
            VUnitUtlGetBaseUnitSystemId()};
}

cv_converter* PeerConverter()
{
    ut_set_error_message_handler(ut_ignore);
    ut_system* const system = ut_read_xml(nullptr);
    ut_unit* const from = ut_parse(system, "degF", UT_ASCII);
    ut_unit* const to = ut_parse(system, "K", UT_ASCII);
    return from != nullptr && to != nullptr ? ut_get_converter(from, to) : nullptr;
}

bool Agree(const Conversion& ours, const cv_converter* peer)
{
    Values values;
    for (int i = 0; i < 1000; ++i) {
        const double value = values.Next();
        const double expected = cv_convert_double(peer, value);
        if (!(std::abs(ours(value) - expected) <= 1e-12 * std::abs(expected)))
            return false;
    }
    return true;
}

void ConvertOurs(benchmark::State& state)
{
    const Conversion convert = OurConverter();
    const cv_converter* const peer = PeerConverter();
    if (peer == nullptr || !Agree(convert, peer))
        state.SkipWithError("the results differ");
    Values values;
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(values.Next()));
}

void ConvertUdunits2(benchmark::State& state)
{
    const cv_converter* const converter = PeerConverter();
    if (converter == nullptr)
        state.SkipWithError("there is no such unit");
    Values values;
    for (auto _ : state)
        benchmark::DoNotOptimize(cv_convert_double(converter, values.Next()));
}

// Every type in turn, between pairs of systems that change from value to value.
void ConvertManyKinds(benchmark::State& state)
{
    OurConverter();
    const int types = 150, systems = VUnitUtlGetUnitSystems(nullptr);
    const auto count = static_cast<int>(state.range(0));
    Values values;
    for (auto _ : state)
        for (int i = 0; i < count; ++i)
            benchmark::DoNotOptimize(Conversion{i % types, i % systems, (i * 7 + 1) % systems}(values.Next()));
}

BENCHMARK(ConvertOurs)->Name("Units/convert/ours");
BENCHMARK(ConvertUdunits2)->Name("Units/convert/udunits2");
BENCHMARK(ConvertManyKinds)->Name("Units/convertManyKinds/1x")->Arg(100);
BENCHMARK(ConvertManyKinds)->Name("Units/convertManyKinds/100x")->Arg(10'000);

}  // namespace
