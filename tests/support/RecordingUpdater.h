// An updater that writes down what reaches the host, one line a message, and is installed as long as it lives.
//
//   console 1: three bolts are loose
//   prompt 2: pick a face
//   box 16 [Error]: cannot read the deck
//   forced box 0 (no caption): cannot read the deck
#pragma once

#include "platform/Platform.h"

#include <TuvoUtil/Messages.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

class RecordingUpdater : public TuvoEnvUpdater
{
public:
    RecordingUpdater() : m_before(GetUpdater()) { SetUpdater(this); }
    ~RecordingUpdater() override { SetUpdater(m_before); }
    RecordingUpdater(const RecordingUpdater&) = delete;
    RecordingUpdater& operator=(const RecordingUpdater&) = delete;

    // The lines since the last call.
    std::vector<std::string> TakeLines() { return std::exchange(m_lines, {}); }

    // What message boxes answer from now on.
    void SetResponse(_TuvoMsgBoxResponse response) { m_response = response; }

    void WriteConsoleMessage(_TuvoMessageType type, const wchar_t* text, bool flag) override
    {
        EXPECT_FALSE(flag);
        m_lines.push_back("console " + std::to_string(type) + ": " + platform::Narrow(text));
    }

    void WritePromptMessage(_TuvoMessageType type, const wchar_t* text, int flag) override
    {
        EXPECT_EQ(flag, 1);
        m_lines.push_back("prompt " + std::to_string(type) + ": " + platform::Narrow(text));
    }

    _TuvoMsgBoxResponse PostMessageBox(unsigned int style, const wchar_t* caption, const wchar_t* text,
                                       bool forced) override
    {
        const std::string title = caption == nullptr ? "(no caption)" : '[' + platform::Narrow(caption) + ']';
        m_lines.push_back((forced ? "forced box " : "box ") + std::to_string(style) + ' ' + title + ": " +
                          platform::Narrow(text));
        return m_response;
    }

private:
    TuvoEnvUpdater* m_before;
    std::vector<std::string> m_lines;
    _TuvoMsgBoxResponse m_response = TUVO_RESPONSE_NONE;
};
