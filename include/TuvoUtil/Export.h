// How TuvoUtil's names leave the library. TUVOUTIL_STATIC: the library is linked in as an archive.
#pragma once

#if defined(_WIN32)
#if defined(TUVOUTIL_BUILD)
#define TUVOUTIL_API __declspec(dllexport)
#elif defined(TUVOUTIL_STATIC)
#define TUVOUTIL_API
#else
#define TUVOUTIL_API __declspec(dllimport)
#endif
#else
// Stands in front of each declaration of the library's interface.
#define TUVOUTIL_API __attribute__((visibility("default")))
#endif
