// What the library writes to standard error and hands to BuOutputMessage while it lives. One at a time.
#pragma once

#include "platform/Platform.h"

#include <basutl/BuMessage.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

class ReportScope
{
public:
    ReportScope()
    {
        Posted().clear();
        BuSetOutputHandler([](int severity, const wchar_t* text) {
            Posted().push_back(std::to_string(severity) + ':' + platform::Narrow(text));
        });
        testing::internal::CaptureStderr();
    }
    ~ReportScope()
    {
        BuSetOutputHandler(nullptr);
        testing::internal::GetCapturedStderr();
    }
    ReportScope(const ReportScope&) = delete;
    ReportScope& operator=(const ReportScope&) = delete;

    // Standard error since the last call.
    std::string TakeErrors()
    {
        std::string errors = testing::internal::GetCapturedStderr();
        testing::internal::CaptureStderr();
        return errors;
    }

    // The posted texts since the last call, as "SEVERITY:TEXT".
    std::vector<std::string> TakePosted() { return std::exchange(Posted(), {}); }

private:
    static std::vector<std::string>& Posted()
    {
        static std::vector<std::string> posted;
        return posted;
    }
};
