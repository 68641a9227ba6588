// A module asks for its switches; a developer has turned one on in a file.
#include <TuvoUtil/DebugConfig.h>

#include <cstdio>

namespace {

const BuString Mesher = L"Mesher";

void ShowTrace(const char* when)
{
    BuString text;
    const int result = QDDebugUtl::GetCustomConfigInfo(&Mesher, L"TraceLevel", nullptr, nullptr, &text);
    std::printf("%s: result %d, integer %d, text \"%s\"\n", when, result,
                QDDebugUtl::GetCustomConfigIntVal(L"TraceLevel"), text.ToNarrow().c_str());
}

}  // namespace

int main()
{
    std::FILE* const file = std::fopen("ExampleDebug.config", "w");
    if (file == nullptr || std::fputs("# what the mesher tells\nTraceLevel : 3 of 5\n", file) < 0 ||
        std::fclose(file) != 0)
        return 1;

    ShowTrace("before");
    QDDebugUtl::SetUserDir(L".");
    std::printf("read: %d\n", QDDebugUtl::ReadConfigInfo(0, Mesher, L"ExampleDebug.config", 0));
    std::printf("read again: %d\n", QDDebugUtl::ReadConfigInfo(0, Mesher, L"ExampleDebug.config", 0));
    ShowTrace("after");
    BuString module = Mesher;
    QDDebugUtl::SetConfigInfo(&module, L"TraceLevel", L"off");
    ShowTrace("set");
    std::remove("ExampleDebug.config");
}
