// Colours of viewers and reports: RGB and HLS, colour indices on a scale of values, colours as numbers and as text.
//
// Components are floats: r, g, b, lightness and saturation from 0 to 1, hue in degrees from 0 to 360 with blue at 0, red
// at 120 and green at 240 (not the convention that has red at 0).
//
//   float hue, lightness, saturation;
//   UtlGetHLSColorFromRGB(1, 0, 0, &hue, &lightness, &saturation);   // 120, 0.5, 1
//
//   unsigned int color = 0;
//   BuConvertStringToRGBColor(L"RGB 255 0 128", color);   // null; color is 0x8000FF, blue in the highest byte
//   BuConvertRGBColorToString(color);                     // "RGB 255 0 128"
//
// Functions have no state and may be called from any thread.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuErrObj.h>
#include <basutl/BuString.h>

// ---- RGB and HLS ---------------------------------------------------------------------------------------------------

// A grey colour has hue and saturation 0. Components that differ by less than 0.1 count as equal when the largest and the
// smallest are looked for, which makes the hue of nearly grey colours coarse. A result whose pointer is null is not
// stored.
TUVOUTIL_API void UtlGetHLSColorFromRGB(float r, float g, float b, float* hue, float* lightness, float* saturation);

// A saturation of 0 or less gives a grey. A hue beyond 360 counts modulo 360, and so does one below -360; a negative one
// stands for no colour of the circle: it continues the change from hue 0 to 60, so that components may leave 0 to 1. A
// result whose pointer is null is not stored.
TUVOUTIL_API void UtlGetRGBColorFromHLS(float hue, float lightness, float saturation, float* r, float* g, float* b);

// Whether the lightness of a colour of three bytes, in whatever order, is 0.5 or less. Higher bits are ignored.
TUVOUTIL_API bool UtlIsDarkColor(unsigned int color);

// ---- Colour indices on a scale of values ---------------------------------------------------------------------------
//
// `rangeCode` says what index the maximum has: 7 for 255, 5 for 65535, 4 for -1; any other code for 0.

// The value of an index on the scale from `min` (index 0) to `max`, in single precision; infinity or nan where the index
// of the maximum is 0.
TUVOUTIL_API float UtlConvertColorToFloatVal(int colorIndex, float min, float max, int rangeCode);

// The index of a value in single precision, truncated towards zero; not clamped, so that a value outside the scale has an
// index outside the range. When min and max are both 0 it is half the index of the maximum: 127, 32767, 0 and 0. 0 when
// the scale is shorter than 1e-20 an index, when the index of the maximum is 0, and when the quotient is no 64-bit
// integer; else the result has the low 32 bits of it.
TUVOUTIL_API unsigned int UtlConvertFloatValToColor(float value, float min, float max, int rangeCode);

// The index, of 255 at the maximum, on the scale from newMin to newMax that has the value of `index` on the scale from
// oldMin to oldMax: truncated, 0 below and 255 above the new scale. 127 when the new scale is shorter than 0.0001; 0 when
// there is no such value (nan).
//
//   UtlGetColorForNewMinMax(255, 0, 10, 0, 20)   // 127
TUVOUTIL_API unsigned char UtlGetColorForNewMinMax(unsigned char index, float oldMin, float oldMax, float newMin,
                                                   float newMax);

// The same under another name.
TUVOUTIL_API unsigned char UtlGetColorFromNewMinMax(unsigned char index, float oldMin, float oldMax, float newMin,
                                                    float newMax);

// ---- Colours as text -----------------------------------------------------------------------------------------------
//
// A colour has red in its lowest byte, then green, then blue.

// "RGB 255 0 128" for 0x8000FF; the highest byte is ignored. Empty when memory is exhausted.
TUVOUTIL_API BuString BuConvertRGBColorToString(unsigned int color);

// Reads such a text: the word RGB in capitals at its very start, and three numbers of 0 to 255 behind it, divided by
// blanks. A number may have a sign, and other characters behind its digits. Null, with the colour stored, or an error,
// which leaves `color` as it was:
//
//   "Empty color definition"
//   "Color does not start with RGB prefix"
//   "Invalid RGB color definition string. Expecting 'RGB colR colG colB' with values between 0 and 255", when there are
//     not three words behind "RGB", one of them does not begin with a number, and when memory is exhausted
//   "Value of RGB components should be between 0 and 255"
TUVOUTIL_API const BuErrObj* BuConvertStringToRGBColor(const BuString& text, unsigned int& color);
