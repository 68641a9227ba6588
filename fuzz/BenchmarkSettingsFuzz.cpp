#include "Benchmark/Session.h"
#include "platform/Platform.h"

#include <basutl/BuLogger.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

static int g_errors = 0;

// Laws: the first line is a level of one digit, the second a threshold above 0 that strtod reads; each that is not is told
// once and changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tuvo::benchmark;
    std::string text(reinterpret_cast<const char*>(data), size);
    text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string level = text.substr(0, end), threshold = text.substr(std::min(end + 1, text.size()));
    platform::SetEnvironmentValue(L"QD_BENCH_LEVEL", platform::Widen(level));
    platform::SetEnvironmentValue(L"QD_BENCH_THRESHOLD_SEC", platform::Widen(threshold));
    BuLogger::GetInstance().SetSink([](int logLevel, const wchar_t*, void*) { g_errors += logLevel == 2 ? 1 : 0; },
                                    nullptr);
    g_errors = 0;
    _Level readLevel = BENCH_LEVEL_0;
    float seconds = 0.5F;
    ReadSessionSettings(readLevel, seconds);
    const bool isLevel = level.empty() || level == "0" || level == "1" || level == "2";
    const auto expected = static_cast<float>(std::strtod(threshold.c_str(), nullptr));
    // An empty value is none on Windows.
    const bool isThreshold = expected > 0 || (threshold.empty() && platform::Separator() == L'\\');
    if (readLevel != (isLevel && !level.empty() ? level[0] - '0' : 0) || seconds != (expected > 0 ? expected : 0.5F) ||
        g_errors != (isLevel ? 0 : 1) + (isThreshold ? 0 : 1))
        std::abort();
    return 0;
}
