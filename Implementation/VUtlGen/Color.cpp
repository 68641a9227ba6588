#include <TuvoUtil/Color.h>

#include <basutl/BuLocalize.h>
#include <basutl/BuObjectArrayTempl.h>

#include <algorithm>
#include <cmath>

namespace {

template <typename Value>
void Store(Value* place, Value value)
{
    if (place != nullptr)
        *place = value;
}

// Kept: this tolerance decides the sector of a hue, not equality; nearly grey colours have a coarse hue.
bool IsNear(float component, float limit)
{
    return std::abs(component - limit) < 0.1F;
}

// The hue in sectors of 60 degrees. Component i of red, green and blue is the largest in sector 2 * i + 1, where the next
// one is the smallest, and in the sector behind it. Without branches, which nothing could predict.
float HueSector(const float (&components)[3], float max, float min)
{
    const int isNotRed = IsNear(components[0], max) ? 0 : 1;
    const int isNotGreen = IsNear(components[1], max) ? 0 : 1;
    const int largest = isNotRed + (isNotRed & isNotGreen);
    const int isSecond = IsNear(components[(largest + 1) % 3], min) ? 0 : 1;
    const float middle = components[(largest + 2 - isSecond) % 3];
    const float offset = (max - middle) / (max - min);
    return static_cast<float>((2 * largest + 1 + 2 * isSecond) % 6) + static_cast<float>(1 - 2 * isSecond) * offset;
}

// Kept: the sum is that of single precision, which calls some colours dark that are just above one half.
float LightnessOf(float max, float min)
{
    const float sum = max + min;
    return sum * 0.5F;
}

// Kept: a negative hue above -360 stays as it is.
float WithoutTurns(float hue)
{
    const float turns = hue / 360.0F;
    const bool isWhole = !(std::abs(turns) < 0x1p23F);  // as all numbers are from there on
    return hue - (isWhole ? turns : static_cast<float>(static_cast<int>(turns))) * 360.0F;
}

// The component that rises up to hue 60, stays at m2 up to 180 and has fallen to m1 at 240.
float ComponentAt(float hue, float m1, float m2)
{
    const float position = WithoutTurns(hue);
    const float distance = std::min(std::max(0.0F, 240.0F - position), position);
    const float values[] = {static_cast<float>(m1 + (m2 - m1) * distance / 60.0), m2};
    const int isFull = static_cast<int>(position >= 60.0F) & static_cast<int>(position < 180.0F);
    return values[isFull];
}

// The index of the maximum.
int RangeOfCode(int code)
{
    switch (code) {
        case 7:
            return 255;
        case 5:
            return 65535;
        case 4:
            return -1;  // Kept: all 32 bits, as a signed number holds them.
        default:
            return 0;
    }
}

int ByteOf(unsigned int color, int byte)
{
    return static_cast<int>((color >> (8 * byte)) & 0xFF);
}

const BuErrObj* Error(const wchar_t* text)
{
    return BuSetError(BuLocalizeStringExW(text, 0));
}

// Reads the numbers behind the first of four words.
bool ReadComponents(BuObjectArrayTempl<BuString>& words, unsigned int (&components)[3])
{
    if (words.GetCount() != 4 || words[0] != L"RGB")
        return false;
    for (int i = 0; i < 3; ++i) {
        int value = 0;
        if (!words[i + 1].TrimLeftNumber(value))
            return false;
        components[i] = static_cast<unsigned int>(value);
    }
    return true;
}

}  // namespace

void UtlGetHLSColorFromRGB(float r, float g, float b, float* hue, float* lightness, float* saturation)
{
    const float max = std::max(std::max(r, g), b);
    const float min = std::min(std::min(r, g), b);
    const float delta = max - min;
    const float middle = LightnessOf(max, min);
    Store(lightness, middle);
    if (delta == 0.0F) {
        Store(saturation, 0.0F);
        Store(hue, 0.0F);
        return;
    }
    Store(saturation, delta / (middle > 0.5F ? 2.0F - max - min : max + min));
    const float sector = HueSector({r, g, b}, max, min);
    Store(hue, sector < 6.0F ? sector * 60.0F : 0.0F);
}

void UtlGetRGBColorFromHLS(float hue, float lightness, float saturation, float* r, float* g, float* b)
{
    const float product = lightness * saturation;
    const float m2 = lightness > 0.5F ? lightness + saturation - product : product + lightness;
    const float m1 = 2.0F * lightness - m2;
    const bool isGrey = saturation <= 0.0F;
    Store(r, isGrey ? lightness : ComponentAt(hue, m1, m2));
    Store(g, isGrey ? lightness : ComponentAt(hue + 240.0F, m1, m2));
    Store(b, isGrey ? lightness : ComponentAt(hue + 120.0F, m1, m2));
}

bool UtlIsDarkColor(unsigned int color)
{
    const auto [min, max] = std::minmax({ByteOf(color, 0), ByteOf(color, 1), ByteOf(color, 2)});
    return LightnessOf(static_cast<float>(max) / 255.0F, static_cast<float>(min) / 255.0F) <= 0.5F;
}

float UtlConvertColorToFloatVal(int colorIndex, float min, float max, int rangeCode)
{
    const auto range = static_cast<float>(RangeOfCode(rangeCode));
    return (max - min) / range * static_cast<float>(colorIndex) + min;
}

unsigned int UtlConvertFloatValToColor(float value, float min, float max, int rangeCode)
{
    const int range = RangeOfCode(rangeCode);
    if (min == 0.0F && max == 0.0F)
        return static_cast<unsigned int>(range / 2);
    const float step = (max - min) / static_cast<float>(range);
    const float index = (value - min) / step;
    const bool isInteger = index >= -0x1p63F && index < 0x1p63F;  // not so a nan
    return isInteger && std::abs(step) >= 1e-20 ? static_cast<unsigned int>(static_cast<long long>(index)) : 0;
}

unsigned char UtlGetColorForNewMinMax(unsigned char index, float oldMin, float oldMax, float newMin, float newMax)
{
    const float length = newMax - newMin;
    if (std::abs(length) < 0.0001)
        return 127;
    const float moved = (oldMax - oldMin) / length * static_cast<float>(index) + (oldMin - newMin) * 255.0F / length;
    return moved > 0.0F ? static_cast<unsigned char>(std::min(moved, 255.0F)) : 0;
}

unsigned char UtlGetColorFromNewMinMax(unsigned char index, float oldMin, float oldMax, float newMin, float newMax)
{
    return UtlGetColorForNewMinMax(index, oldMin, oldMax, newMin, newMax);
}

BuString BuConvertRGBColorToString(unsigned int color)
{
    BuString text;
    text.Format(L"RGB %d %d %d", ByteOf(color, 0), ByteOf(color, 1), ByteOf(color, 2));
    return text;
}

const BuErrObj* BuConvertStringToRGBColor(const BuString& text, unsigned int& color)
{
    if (text.IsEmpty())
        return Error(L"Empty color definition");
    if (text.Left(3) != L"RGB")
        return Error(L"Color does not start with RGB prefix");
    BuObjectArrayTempl<BuString> words;
    unsigned int components[3] = {};
    if (text.ExtractWords(words, L" ") < 0 || !ReadComponents(words, components))
        return Error(
            L"Invalid RGB color definition string. Expecting 'RGB colR colG colB' with values between 0 and 255");
    if (std::any_of(components, components + 3, [](unsigned int component) { return component > 255; }))
        return Error(L"Value of RGB components should be between 0 and 255");
    color = components[0] | components[1] << 8 | components[2] << 16;
    return nullptr;
}
