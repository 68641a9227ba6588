// A plug-in of the tests, which stands beside the test programs and is unloaded with its scope.
#pragma once

class Plugin
{
public:
    explicit Plugin(const char* name);  // without the suffix of the system
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // The address of a function; null when the plug-in has none of this name, or was not loaded.
    void* Find(const char* function) const;

private:
    void* m_module;
};
