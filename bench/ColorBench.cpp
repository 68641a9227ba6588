// Colours converted one by one against the formulas of the textbook, which take no component for another, and their texts
// against swprintf and swscanf.

#include <TuvoUtil/Color.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace {

using Triple = std::array<float, 3>;

// Colours whose components differ clearly, so that everybody agrees on the largest and the smallest.
std::vector<Triple> Colors(std::size_t count)
{
    std::mt19937 random(7);
    std::vector<Triple> colors(count);
    for (Triple& color : colors) {
        color = {0.1F, 0.4F, 0.8F};
        for (float& component : color)
            component += static_cast<float>(random() % 1000) / 10'000;
        std::shuffle(color.begin(), color.end(), random);
    }
    return colors;
}

// ---- RGB and HLS ---------------------------------------------------------------------------------------------------

Triple ToHls(const Triple& rgb)
{
    Triple hls;
    UtlGetHLSColorFromRGB(rgb[0], rgb[1], rgb[2], &hls[0], &hls[1], &hls[2]);
    return hls;
}

Triple ToRgb(const Triple& hls)
{
    Triple rgb;
    UtlGetRGBColorFromHLS(hls[0], hls[1], hls[2], &rgb[0], &rgb[1], &rgb[2]);
    return rgb;
}

[[gnu::noinline]] Triple TextbookHls(const Triple& rgb)
{
    const auto [r, g, b] = rgb;
    const float max = std::max({r, g, b});
    const float min = std::min({r, g, b});
    const float delta = max - min;
    const float lightness = (max + min) / 2;
    if (delta == 0)
        return {0, lightness, 0};
    const float sector = max == r ? 2 + (g - b) / delta : (max == g ? 4 + (b - r) / delta : 6 + (r - g) / delta);
    return {std::fmod(60 * sector, 360.0F), lightness, delta / (1 - std::abs(2 * lightness - 1))};
}

[[gnu::noinline]] Triple TextbookRgb(const Triple& hls)
{
    const float hue = hls[0];
    const float lightness = hls[1];
    const float amplitude = hls[2] * std::min(lightness, 1 - lightness);
    const auto component = [=](float offset) {
        const float k = std::fmod(offset + hue / 30, 12.0F);
        return lightness - amplitude * std::max(-1.0F, std::min({k - 3, 9 - k, 1.0F}));
    };
    return {component(8), component(4), component(0)};
}

bool AreNear(const Triple& l, const Triple& r)
{
    return std::equal(l.begin(), l.end(), r.begin(), [](float a, float b) { return std::abs(a - b) < 1e-3F; });
}

template <Triple (*Convert)(const Triple&)>
void RunTriples(benchmark::State& state, std::vector<Triple> colors)
{
    for (const Triple& color : colors)
        if (!AreNear(ToHls(color), TextbookHls(color)) || !AreNear(TextbookRgb(ToHls(color)), color) ||
            !AreNear(ToRgb(ToHls(color)), color))
            state.SkipWithError("not the colour of the textbook");
    if (Convert == ToRgb || Convert == TextbookRgb)
        std::transform(colors.begin(), colors.end(), colors.begin(), ToHls);
    for (auto _ : state)
        for (const Triple& color : colors)
            benchmark::DoNotOptimize(Convert(color));
    state.SetItemsProcessed(static_cast<std::int64_t>(colors.size()) * state.iterations());
}

// ---- Text ----------------------------------------------------------------------------------------------------------

constexpr unsigned int SampleColor = 0x8000FF;
const BuString g_sampleText(L"RGB 255 0 128");

BuString WriteOurs()
{
    return BuConvertRGBColorToString(SampleColor);
}

BuString WritePlain()
{
    wchar_t text[40];
    std::swprintf(text, 40, L"RGB %d %d %d", SampleColor & 0xFF, SampleColor >> 8 & 0xFF, SampleColor >> 16 & 0xFF);
    return text;
}

unsigned int ReadOurs()
{
    unsigned int color = 0;
    return BuConvertStringToRGBColor(g_sampleText, color) == nullptr ? color : 0;
}

unsigned int ReadPlain()
{
    unsigned int r = 0, g = 0, b = 0;
    const int count = std::swscanf(g_sampleText.GetText(), L"RGB %u %u %u", &r, &g, &b);
    return count == 3 ? r | g << 8 | b << 16 : 0;
}

template <auto Work>
void RunText(benchmark::State& state)
{
    if (ReadOurs() != SampleColor || ReadPlain() != SampleColor || WriteOurs() != WritePlain())
        state.SkipWithError("not the same colour");
    for (auto _ : state)
        benchmark::DoNotOptimize(Work());
}

void RunLongText(benchmark::State& state, std::size_t blanks)
{
    const BuString text((L"RGB 255 " + std::wstring(blanks, L' ') + L" 0 128").c_str());
    unsigned int color = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(BuConvertStringToRGBColor(text, color));
    if (color != SampleColor)
        state.SkipWithError("not the colour of the text");
}

[[maybe_unused]] const bool g_registered = [] {
    // So many that no processor learns their order by heart.
    const std::vector<Triple> colors = Colors(100'000);
    benchmark::RegisterBenchmark("Color/to HLS/ours", RunTriples<ToHls>, colors);
    benchmark::RegisterBenchmark("Color/to HLS/textbook", RunTriples<TextbookHls>, colors);
    benchmark::RegisterBenchmark("Color/to RGB/ours", RunTriples<ToRgb>, colors);
    benchmark::RegisterBenchmark("Color/to RGB/textbook", RunTriples<TextbookRgb>, colors);
    benchmark::RegisterBenchmark("Color/to text/ours", RunText<WriteOurs>);
    benchmark::RegisterBenchmark("Color/to text/swprintf", RunText<WritePlain>);
    benchmark::RegisterBenchmark("Color/from text/ours", RunText<ReadOurs>);
    benchmark::RegisterBenchmark("Color/from text/swscanf", RunText<ReadPlain>);
    for (const std::size_t times : {1, 10, 100})
        benchmark::RegisterBenchmark(("Color/long text/" + std::to_string(times) + 'x').c_str(), RunLongText,
                                     times * 1000);
    return true;
}();

}  // namespace
