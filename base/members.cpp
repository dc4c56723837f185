#include "base/members.h"

#include <algorithm>
#include <stdexcept>

#include "base/text.h"

namespace zuvi {

const Member* MemberTable::ByName(std::string_view name) const {
  const auto found = by_name_.find(ToLower(name));
  return found == by_name_.end() ? nullptr : &members_[found->second];
}

const Member* MemberTable::ById(MemberId id) const {
  // Ids follow the order of the table but for a default member, so the guess is nearly always right.
  const auto guess = static_cast<std::size_t>(id) - 1;
  if (id > 0 && guess < members_.size() && members_[guess].id == id) return &members_[guess];
  const auto found = std::ranges::find(members_, id, &Member::id);
  return found == members_.end() ? nullptr : &*found;
}

Member& MemberTable::Add(std::string_view name, const BoundMethod& read, Params params) {
  if (read.Arguments() != params.size()) throw std::logic_error("parameters of " + std::string(name));
  by_name_.emplace(ToLower(name), members_.size());
  Member& member = members_.emplace_back();
  member.name = name;
  member.params = params;
  member.min_args = params.size();
  member.id = static_cast<MemberId>(members_.size());
  member.read = read;
  return member;
}

void MemberTable::AddMethod(std::string_view name, const BoundMethod& method, Params params,
                            std::size_t optional) {
  Member& member = Add(name, method, params);
  member.min_args -= optional;
  member.in_out = method.InOut();
}

void MemberTable::AddProperty(std::string_view name, const BoundMethod& getter, const BoundMethod& setter,
                              Params params) {
  if (setter && setter.Arguments() != params.size() + 1)
    throw std::logic_error("value of " + std::string(name));
  Member& member = Add(name, getter, params);
  member.property = true;
  member.write = setter;
}

}  // namespace zuvi
