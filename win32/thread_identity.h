#pragma once

#include <windows.h>

#include <utility>

namespace zuvi {

/// A thread, told from later ones that get the same number: its number, and when it began.
using ThreadIdentity = std::pair<DWORD, ULONGLONG>;

/// The calling one.
inline ThreadIdentity CurrentThread() {
  FILETIME begun{}, other{};
  ::GetThreadTimes(::GetCurrentThread(), &begun, &other, &other, &other);
  return {::GetCurrentThreadId(), ULONGLONG{begun.dwHighDateTime} << 32 | begun.dwLowDateTime};
}

}  // namespace zuvi
