// The calls that the module makes on host objects, as data: the one table that the integrator's guide, the
// type libraries and the adapters of services/by_name.cpp are checked against
// (tests/services/contrato_test.cpp). A new call is written here first.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "base/value.h"

namespace zuvi {

enum class CallType { None, Any, Short, Long, Real, Text, Date, Boolean, Object };

/// How an argument travels: by value; by reference, and read again after the call; by reference and not read
/// again, whatever the host leaves there. An optional argument goes only to a host that declares it.
enum class Travel { In, InOut, Unread };

struct CallArgument {
  std::string_view name;
  CallType type;
  Travel travel = Travel::In;
  /// The value that it has in every call of the module (for one that travels back: before the call).
  std::optional<Value> always = std::nullopt;
  bool optional = false;
};

/// Whether a member is called (or read, which is the same call by name) or set.
enum class CallKind { Call, Put };

struct CallShape {
  std::string_view member;
  std::vector<CallArgument> arguments;
  CallType result = CallType::None;
  /// When the module calls it, and what comes of it that it fails: sentences of the guide, in Spanish.
  std::string_view when;
  std::string_view failure;
  CallKind kind = CallKind::Call;
};

struct ServiceShape {
  std::string_view prog_id;
  /// Who makes the object and how long it is kept, in Spanish.
  std::string_view life;
  std::vector<CallShape> calls;
};

/// Every host object that the module uses and every call it makes on them, in the order of their type
/// libraries.
std::span<const ServiceShape> HostContract();

}  // namespace zuvi
