#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <string>

namespace {

TEST(LibraryEntry, KeepsTheLibraryLoaded)
{
    static const char address = 0;
    std::string path = platform::Narrow(platform::ModuleFile(&address));
    path.replace(path.rfind('/') + 1, std::string::npos, "libTuvoUtil.so");
    ASSERT_EQ(dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_NE(dlsym(library, "__VxFreeLoopCount__"), nullptr);
    dlclose(library);
    EXPECT_NE(dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

}  // namespace
