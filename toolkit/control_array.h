#pragma once

#include <map>
#include <memory>
#include <string>

#include "toolkit/control.h"

namespace zuvi {

/// Controls of one name told apart by an index, which need not be without gaps. By name `caja(3)` gives a
/// member; `Count`, `LBound` and `UBound` tell what there is.
class ControlArrayBase : public Object {
 public:
  /// Throws HostError (SubscriptOutOfRange) for an index that is not there.
  ObjectPtr Item(std::int16_t index) const { return Find(index); }
  std::int16_t Count() const { return static_cast<std::int16_t>(items_.size()); }
  std::int16_t LBound() const { return items_.empty() ? std::int16_t{0} : items_.begin()->first; }
  std::int16_t UBound() const { return items_.empty() ? std::int16_t{-1} : items_.rbegin()->first; }
  bool Has(std::int16_t index) const { return items_.contains(index); }
  const MemberTable* Members() const override;

 protected:
  const std::shared_ptr<Control>& Find(std::int16_t index) const {
    const auto found = items_.find(index);
    if (found == items_.end()) throw HostError(ErrorNumber::SubscriptOutOfRange);
    return found->second;
  }
  using Object::Find;
  std::map<std::int16_t, std::shared_ptr<Control>> items_;

 private:
  friend class Form;
};

/// The same, knowing the kind of its controls.
template <class T>
class ControlArray final : public ControlArrayBase {
 public:
  T& operator()(std::int16_t index) const { return static_cast<T&>(*Find(index)); }
  /// Calls `visit(index, control)` for each, in the order of the indices.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (const auto& [index, control] : items_) visit(index, static_cast<T&>(*control));
  }
};

}  // namespace zuvi
