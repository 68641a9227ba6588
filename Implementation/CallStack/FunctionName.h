// Names of functions as suppression files can hold them.
#pragma once

#include <string>
#include <string_view>

// A demangled name without result type, parameters and blanks: "void (anonymous namespace)::Load<unsigned long>(int)"
// is "{anonymous}::Load<unsigned_long>".
std::string PlainFunctionName(std::string_view demangled);

// The last name of a path, without blanks.
std::string PlainFileName(std::string_view path);
