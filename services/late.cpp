#include "services/late.h"

namespace zuvi {

MemberId Late::Resolve(const char* name) {
  // Names are literals, so a look at the addresses nearly always settles it; and calls come in the order in
  // which they came before.
  if (next_ < ids_.size() && ids_[next_].first.data() == name) return ids_[next_++].second;
  for (std::size_t i = 0; i < ids_.size(); ++i)
    if (ids_[i].first.data() == name) return next_ = i + 1, ids_[i].second;
  const std::string_view wanted(name);
  for (const auto& [known, id] : ids_)
    if (known == wanted) return id;
  if (!target_) throw HostError(ErrorNumber::ObjectNotSet);
  const auto id = target_->Find(name);
  if (!id) throw HostError(ErrorNumber::NoSuchMember);
  if (ids_.empty()) ids_.reserve(4);
  ids_.emplace_back(name, *id);
  return *id;
}

Value Late::CallByRef(const char* name, std::span<Value> args, ByRef by_ref) {
  const MemberId id = Resolve(name);
  return target_->Read(id, args, by_ref);
}

void Late::Put(const char* name, Value value) {
  const MemberId id = Resolve(name);
  target_->Write(id, std::span(&value, 1));
}

}  // namespace zuvi
