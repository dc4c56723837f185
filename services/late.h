#pragma once

#include <array>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/object.h"

namespace zuvi {

/// An object called by name. Each name is resolved once and its id kept.
class Late {
 public:
  explicit Late(ObjectPtr target) : target_(std::move(target)) {}

  /// The object behind; may be null, which every call refuses with ObjectNotSet.
  const ObjectPtr& Target() const { return target_; }
  /// Calls with arguments by value.
  template <class... Args>
  Value Call(const char* name, Args&&... args) {
    const MemberId id = Resolve(name);
    if constexpr (sizeof...(Args) == 0) {
      return target_->Read(id, {});
    } else {
      std::array<Value, sizeof...(Args)> values{Value(std::forward<Args>(args))...};
      return target_->Read(id, values);
    }
  }
  /// Calls with the arguments marked in `by_ref` by reference; they are changed in place.
  Value CallByRef(const char* name, std::span<Value> args, ByRef by_ref);
  /// Sets a property.
  void Put(const char* name, Value value);
  /// Whether the target is known to declare argument `index` of a method, and by reference.
  bool TakesByRef(const char* name, std::size_t index) {
    const MemberId id = Resolve(name);
    return target_->TakesByRef(id, index);
  }
  /// `Object::ReadChain` of the target.
  Value ReadChain(std::span<const Step> steps) {
    if (!target_) throw HostError(ErrorNumber::ObjectNotSet);
    return target_->ReadChain(steps);
  }

 private:
  MemberId Resolve(const char* name);
  ObjectPtr target_;
  std::vector<std::pair<std::string_view, MemberId>> ids_;
  std::size_t next_ = 0;  // after the one that was looked for last
};

}  // namespace zuvi
