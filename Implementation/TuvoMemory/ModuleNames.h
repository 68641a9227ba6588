// The names under which the library's own allocations appear in leak reports. A source passes that of its module with
// its line: VBuMalloc(size, modules::VUtlStr, __LINE__, 0).
#pragma once

namespace modules {

inline constexpr char Benchmark[] = "Benchmark";
inline constexpr char CallStack[] = "CallStack";
inline constexpr char Diagnostics[] = "Diagnostics";
inline constexpr char Evaluator[] = "Evaluator";
inline constexpr char Filer[] = "Filer";
inline constexpr char Image[] = "Image";
inline constexpr char IntegrityCheck[] = "IntegrityCheck";
inline constexpr char Progress[] = "Progress";
inline constexpr char QDDebugUtl[] = "QDDebugUtl";
inline constexpr char TuvoMemory[] = "TuvoMemory";
inline constexpr char VFixedHeap[] = "VFixedHeap";
inline constexpr char VSysInfoUtl[] = "VSysInfoUtl";
inline constexpr char VUnit[] = "VUnit";
inline constexpr char VUnitUtil[] = "VUnitUtil";
inline constexpr char VUtlGen[] = "VUtlGen";
inline constexpr char VUtlMisc[] = "VUtlMisc";
inline constexpr char VUtlStr[] = "VUtlStr";

}  // namespace modules
