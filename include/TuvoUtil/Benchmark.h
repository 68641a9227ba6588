// Chronometers for the sections of a program, nested as the program nests them, and counters of calls. What took long is
// written to the log (BuLogger, level 6), with a summary by time.
//
//   using namespace tuvo::benchmark;
//   Benchmark solve(L"solve", BENCH_LEVEL_0);
//   {
//       Benchmark assemble(L"assemble", BENCH_LEVEL_1);   // a part of solve
//       ...
//       assemble.RecordElapsedTime(L"%d elements", 8000);
//   }
//   // At the end of solve, when that took 3 s:
//   //   ----------------------------------
//   //   Benchmark history:
//   //   ----------------------------------
//   //   3s (internal: 1s): Chrono 'solve'
//   //      2s: Chrono 'assemble'
//   //         1.5s: Step 8000 elements
//   //         2s: End
//   //   ----------------------------------
//   //   Benchmark summary:
//   //   ----------------------------------
//   //   2.000s : 1 calls of    assemble / End
//   //   1.500s : 1 calls of    assemble / Step 8000 elements
//
// Three variables of the environment say what is measured. They are read once, when a level is first asked for:
//
//   QD_BENCH_LEVEL          0, 1 or 2: sections up to this level are timed; 0 when it is not set
//   QD_BENCH_THRESHOLD_SEC  above 0: what takes fewer seconds is not shown; 0.5 when it is not set. The number that the
//                           text begins with counts, whatever follows it
//   QD_BENCH_TRACE          a file, written anew: each timed section and step as it happens, however short, as Chrome
//                           trace events for Perfetto, speedscope and the like. The file is whole JSON after every
//                           event, whenever the program ends. It must be seekable, and belongs to one process: a
//                           program that this one starts needs a file of its own
//
// A value that is none of these is told to the log (level 2) and counts as not set. A level above 0 is told as well.
//
// Rules:
//  - The first section of a process is never timed, whatever its level. Open one early.
//  - Sections close in the reverse order of their opening; any other order gives each its own time, but a wrong place.
//  - What a section shorter than its threshold holds is not shown. An outermost one waits for the next outermost one
//    that is not: both leave memory then.
//  - A section that the log's sink opens while it is given a report is not timed.
//  - When memory is exhausted a section is not timed, or a step or a line is left out.
//  - Not locked: sections belong to one thread, a counter to one at a time.
#pragma once

#include <TuvoUtil/Export.h>
#include <basutl/BuArrayTempl.h>
#include <basutl/BuDate.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>
#include <basutl/BuTreeItemTempl.h>

// A text of a format and its arguments (see BuString::Format); empty for a null format and when memory is exhausted.
TUVOUTIL_API BuString UtlFormatString(const wchar_t* format, ...);

namespace tuvo::benchmark {

// How deep measuring goes. Levels are compared as numbers, others than these too.
enum _Level : int
{
    BENCH_LEVEL_0 = 0,
    BENCH_LEVEL_1 = 1,
    BENCH_LEVEL_2 = 2
};

class ChronoTree;

// A section of the program, from its construction to its destruction. Cost when its level is not timed: a comparison;
// otherwise little more than two readings of the clock.
class TUVOUTIL_API Benchmark
{
public:
    class Chrono;  // what was measured

    // The level of the session. Stores the threshold of the session, in seconds, unless `thresholdOut` is null.
    static _Level GetSessionBenchLevel(float* thresholdOut);

    // Whether sections of a level are timed: 1 or 0.
    static unsigned char IsBenchLevelActive(_Level level);

    // Opens a section inside the innermost one that is open. The name is copied; null counts as empty.
    Benchmark(const wchar_t* name, _Level level);

    // Copies share one section, which closes when the first of them is destroyed; for the others nothing is left to do.
    // A section whose only Benchmark was assigned over stays open for good, and with it all around it.
    Benchmark(const Benchmark& other);
    Benchmark& operator=(const Benchmark& other);

    // Closes the section. Writes the report when it is an outermost one that lasted at least the threshold.
    virtual ~Benchmark();

    // Records a step: the seconds since the section was opened, with a formatted name (see BuString::Format). Nothing
    // for steps below the threshold and for sections that are not timed or closed already.
    void RecordElapsedTime(const wchar_t* format, ...);

protected:
    // Writes the history of an item, each line behind `prefix` (null: nothing), adds it to the summary, and frees what
    // the item holds: its chronometer and all items below. `names` are in the order of their UTF-16 code units, without
    // duplicates; `times` (in seconds) and `counts` belong to them by index. When memory for the summary is exhausted
    // the three stay as they were.
    static void DumpChronoItemChildren(BuTreeItemTempl<Benchmark::Chrono*, BuCRTAllocator>& item, const wchar_t* prefix,
                                       BuObjectArrayTempl<BuString>& names, BuArrayTempl<float>& times,
                                       BuArrayTempl<unsigned long long>& counts);

    // The level and the threshold, in seconds, of the session, and the item above all outermost sections.
    static _Level m_iSessionBenchLevel;
    static float m_rSessionThresholdSec;
    static BuTreeItemTempl<Chrono*, BuCRTAllocator> m_tiRoot;
    static BuTreeItemTempl<Chrono*, BuCRTAllocator>* m_ptiCurrent;  // the innermost open section; null before the first

private:
    friend class ChronoTree;

    Chrono* m_chrono;  // null when the section is not timed
};

// Counts the calls of something and tells the log how many there were in a period.
//
//   static Counter counter(L"stiffness", BENCH_LEVEL_1);
//   counter.IncrementCount(10);   // "stiffness: 5120 calls within 10 sec"
class TUVOUTIL_API Counter
{
public:
    // The name is copied; null counts as empty. Counts only when `level` is timed in this session.
    Counter(const wchar_t* name, _Level level);

    // A copy counts on from there by itself.
    Counter(const Counter& other);
    Counter& operator=(const Counter& other);
    virtual ~Counter();

    // Counts one call and gives the count: 1, 2, 3 ... The first call that comes `periodSec` seconds or more after the
    // one counted as 1 writes the line and begins anew: 0. Always 0 when the counter is not active.
    int IncrementCount(int periodSec);

private:
    BuString m_name;
    unsigned char m_isActive;
    int m_count = 0;
    BuDate m_start;  // of the call that was counted as 1
};

}  // namespace tuvo::benchmark
