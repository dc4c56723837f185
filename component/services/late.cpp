#include "component/services/late.h"

#include <array>

namespace zuvi {

MemberId Late::Resolve(const char* name) {
  // Names are literals, so a look at the address nearly always settles it.
  for (const auto& [known, id] : ids_)
    if (known.data() == name || known == name) return id;
  if (!target_) throw HostError(ErrorNumber::ObjectNotSet);
  const auto id = target_->Find(name);
  if (!id) throw HostError(ErrorNumber::NoSuchMember);
  ids_.emplace_back(name, *id);
  return *id;
}

Value Late::Call(const char* name, std::initializer_list<Value> args) {
  const MemberId id = Resolve(name);
  // Most calls take no argument or one: those are not to pay for an array of values.
  if (args.size() == 0) return target_->Read(id, {});
  if (args.size() == 1) {
    Value only = *args.begin();
    return target_->Read(id, std::span(&only, 1));
  }
  std::array<Value, 8> copies;
  if (args.size() > copies.size()) throw HostError(ErrorNumber::WrongArgumentCount);
  std::copy(args.begin(), args.end(), copies.begin());
  return target_->Read(id, std::span(copies.data(), args.size()));
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
