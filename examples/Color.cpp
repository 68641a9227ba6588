// The colours of a contour plot: a colour from a settings text, made lighter, and values as indices of a colour bar.
#include <TuvoUtil/Color.h>

#include <cmath>
#include <cstdio>
#include <initializer_list>

namespace {

float Component(unsigned int color, int byte)
{
    return static_cast<float>(color >> (8 * byte) & 0xFF) / 255;
}

unsigned int Byte(float component)
{
    return static_cast<unsigned int>(std::lround(component * 255));
}

unsigned int Lighter(unsigned int color)
{
    float hue, lightness, saturation;
    UtlGetHLSColorFromRGB(Component(color, 0), Component(color, 1), Component(color, 2), &hue, &lightness, &saturation);
    float r, g, b;
    UtlGetRGBColorFromHLS(hue, (1 + lightness) / 2, saturation, &r, &g, &b);
    return Byte(r) | Byte(g) << 8 | Byte(b) << 16;
}

void Print(const char* what, unsigned int color)
{
    std::printf("%s: %s, %s\n", what, BuConvertRGBColorToString(color).ToNarrow().c_str(),
                UtlIsDarkColor(color) ? "dark" : "light");
}

}  // namespace

int main()
{
    unsigned int color = 0;
    if (BuConvertStringToRGBColor(L"RGB 204 51 51", color) != nullptr)
        return 1;
    Print("hot", color);
    Print("warm", Lighter(color));
    const BuErrObj* const error = BuConvertStringToRGBColor(L"RGB 204 51 510", color);
    std::printf("%s\n", BuGetErrorDescription(error).ToNarrow().c_str());

    // Stresses on a bar from 0 to 400 MPa; then the bar is cut at 200.
    for (const float stress : {0.0F, 50.0F, 130.0F, 400.0F}) {
        const unsigned int index = UtlConvertFloatValToColor(stress, 0, 400, 7);
        std::printf("%3.0f MPa: index %u, then %d\n", static_cast<double>(stress), index,
                    UtlGetColorForNewMinMax(static_cast<unsigned char>(index), 0, 400, 0, 200));
    }
}
