// Sections and steps as events of a trace file, in the JSON that trace viewers read.
#pragma once

namespace tuvo::benchmark::trace {

// Begins the file. False when it cannot be written; then nothing is traced.
bool Open(const wchar_t* path) noexcept;

namespace detail {
extern constinit bool isOn;
}

inline bool IsOn() noexcept
{
    return detail::isOn;
}

// Each writes one event with the time of now. A failure is told to the log and ends the trace; the file stays whole up to
// there as far as the system lets it.
void BeginSection(const wchar_t* name) noexcept;
void EndSection(const wchar_t* name) noexcept;
void AddStep(const wchar_t* name) noexcept;

}  // namespace tuvo::benchmark::trace
