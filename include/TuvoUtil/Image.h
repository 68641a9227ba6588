// Image files: decoded here into 8-bit or floating-point pixels, or loaded and saved by functions of the host.
//
//   int width = 0, height = 0;
//   tuvo::utl::TuvoImageComponents inFile;
//   unsigned char* pixels =
//       tuvo::utl::LoadAImage("logo.png", &width, &height, &inFile, tuvo::utl::TUVO_IMAGE_RGBA, false);
//   const unsigned char* topRight = pixels + (width - 1) * 4;   // red, green, blue, alpha
//   tuvo::utl::FreeImage(pixels);
//
// JPEG, PNG, BMP, GIF (the first picture), PSD (the composed picture), HDR, PNM (binary), TGA and Softimage PIC are known
// by their content, whatever the name. Pixels stand in rows from the top, without gaps, each with its channels in the
// order of the names below.
//
// LoadAImage, LoadAImageFlt and FreeImage may be called from any thread. The host's functions are not locked: register
// them at start-up.
#pragma once

#include <TuvoUtil/Export.h>

namespace tuvo::utl {

// The channels of a pixel; the value is their number.
enum TuvoImageComponents : int
{
    TUVO_IMAGE_AS_STORED = 0,  // as many as the file has
    TUVO_IMAGE_GREY = 1,
    TUVO_IMAGE_GREY_ALPHA = 2,
    TUVO_IMAGE_RGB = 3,
    TUVO_IMAGE_RGBA = 4
};

// What the pixels of the host's functions are. The values are the host's own.
enum TuvoImagePixelDataType : int
{
};

// ---- Decoding ------------------------------------------------------------------------------------------------------

// Loads an image as 8-bit channels: the wanted ones, converted from those of the file (grey from red, green and blue as
// (77 r + 150 g + 29 b) / 256, a missing alpha as 255), and with `flip` the rows from the bottom. Channels of 16 bits
// lose their lower half; those of HDR are raised to the power 1/2.2 and cut off above 1.
//
// Gives the pixels, which the caller gives back with FreeImage, and stores width, height and the channels of the file,
// each unless its pointer is null. Of a file that is cut short or damaged the result may be what could be decoded, the
// rest black or transparent.
//
// Null, with nothing stored, when the path is null or cannot be read, the file is no image, memory is exhausted,
// `wanted` is none of the values above, or the image is too large: more than 65536 pixels wide or high, or 2 GiB or more
// when decoded. That is found out before anything is decoded.
TUVOUTIL_API unsigned char* LoadAImage(const char* path, int* width, int* height, TuvoImageComponents* channelsInFile,
                                       TuvoImageComponents wanted, bool flip);

// The same as floating-point channels, 1 for full intensity: those of HDR as they are stored, all others as loaded by
// LoadAImage, divided by 255 and, but for alpha, raised to the power 2.2.
TUVOUTIL_API float* LoadAImageFlt(const char* path, int* width, int* height, TuvoImageComponents* channelsInFile,
                                  TuvoImageComponents wanted, bool flip);

// Gives back what LoadAImage or LoadAImageFlt gave; null does nothing.
TUVOUTIL_API void FreeImage(void* pixels);

// ---- Functions of the host -----------------------------------------------------------------------------------------
//
// A null function leaves the one before in place; none can be taken away. What a flag means, what a path may be and who
// frees what is the host's business: everything is passed on as it is, null included.

// Registers what the functions below call in place of what was registered before. It is kept.
TUVOUTIL_API void RegisterLoadImageFunc(unsigned char* (*load)(const wchar_t* path, bool flag, unsigned* width,
                                                               unsigned* height, TuvoImagePixelDataType* type));
TUVOUTIL_API void RegisterSaveImageFunc(void (*save)(const wchar_t* path, unsigned width, unsigned height,
                                                     TuvoImagePixelDataType type, unsigned char* pixels, bool flag));
TUVOUTIL_API void RegisterFreeImageFunc(void (*free)(unsigned char* pixels));

// Calls the host's function and gives its result; null, with nothing stored, when there is none.
TUVOUTIL_API unsigned char* LoadImageEx(const wchar_t* path, bool flag, unsigned* width, unsigned* height,
                                        TuvoImagePixelDataType* type);

// Call the host's function; without one nothing happens.
TUVOUTIL_API void SaveImage(const wchar_t* path, unsigned width, unsigned height, TuvoImagePixelDataType type,
                            unsigned char* pixels, bool flag);
TUVOUTIL_API void FreeImageEx(unsigned char* pixels);

}  // namespace tuvo::utl
