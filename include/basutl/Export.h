// How basutl's names leave the library. BASUTL_STATIC: basutl is linked in as an archive, or called through the thunks
// of its import library; nothing is imported by address.
#pragma once

#if defined(_WIN32)
#if defined(BASUTL_BUILD)
#define BASUTL_API __declspec(dllexport)
#elif defined(BASUTL_STATIC)
#define BASUTL_API
#else
#define BASUTL_API __declspec(dllimport)
#endif
#else
// Stands in front of each declaration of the library's interface.
#define BASUTL_API __attribute__((visibility("default")))
#endif
