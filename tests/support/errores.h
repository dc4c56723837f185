// The error that a call ends with.
#pragma once

#include <gtest/gtest.h>

#include "base/error.h"

namespace zuvi::pruebas {

/// A failed test when the call ends without one.
template <class Action>
HostError ErrorDe(Action&& action) {
  try {
    action();
  } catch (const HostError& error) {
    return error;
  }
  ADD_FAILURE() << "sin error";
  return HostError("");
}

template <class Action>
void EsperaError(ErrorNumber numero, Action&& action) {
  EXPECT_EQ(ErrorDe(action).Number(), numero);
}

}  // namespace zuvi::pruebas
