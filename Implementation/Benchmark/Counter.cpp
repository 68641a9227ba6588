#include "Benchmark/Log.h"

#include <TuvoUtil/Benchmark.h>

namespace tuvo::benchmark {

Counter::Counter(const wchar_t* name, _Level level) : m_name(name), m_isActive(Benchmark::IsBenchLevelActive(level)) {}
Counter::Counter(const Counter& other) = default;
Counter& Counter::operator=(const Counter& other) = default;
Counter::~Counter() = default;

int Counter::IncrementCount(int periodSec)
{
    if (m_isActive == 0)
        return m_count;
    m_count = static_cast<int>(static_cast<unsigned int>(m_count) + 1U);  // wraps
    const BuDate now = BuDate::getCurrentDate();
    if (m_count == 1) {
        m_start = now;
    } else if (BuDate::Difference(now, m_start) >= periodSec) {
        BuLogger::GetInstance().Log(LogReport, BuLocalizeStringExW(L"%s: %d calls within %d sec", 0), m_name.GetText(),
                                    m_count, periodSec);
        m_count = 0;
    }
    return m_count;
}

}  // namespace tuvo::benchmark
