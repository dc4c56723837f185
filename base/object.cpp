#include "base/object.h"

#include "base/members.h"

namespace zuvi {
namespace {

const Member& Published(const Object& object, MemberId id) {
  const Member* member = object.MemberById(id);
  if (!member) throw HostError(ErrorNumber::NoSuchMember);
  return *member;
}

}  // namespace

const Member* Object::MemberById(MemberId id) const {
  const MemberTable* table = Members();
  return table ? table->ById(id) : nullptr;
}

std::optional<MemberId> Object::Find(std::string_view name) {
  const MemberTable* table = Members();
  const Member* member = table ? table->ByName(name) : nullptr;
  if (!member) return std::nullopt;
  return member->id;
}

Value Object::Read(MemberId id, std::span<Value> args, ByRef /*by_ref*/) {
  const Member& member = Published(*this, id);
  if (!member.read) throw HostError(ErrorNumber::NoSuchMember);
  if (args.size() < member.min_args || args.size() > member.params.size())
    throw HostError(ErrorNumber::WrongArgumentCount);
  return member.read(*this, args);
}

void Object::Write(MemberId id, std::span<Value> args) {
  const Member& member = Published(*this, id);
  if (!member.write) throw HostError(ErrorNumber::NoSuchMember);
  if (args.size() != member.params.size() + 1) throw HostError(ErrorNumber::WrongArgumentCount);
  member.write(*this, args);
}

Value Object::ReadChain(std::span<const Step> steps) {
  ObjectPtr owner;
  Value value;
  for (const Step& step : steps) {
    Object* object = this;
    if (&step != &steps.front()) {
      owner = ToObject(value);
      if (!owner) throw HostError(ErrorNumber::ObjectNotSet);
      object = owner.get();
    }
    if (step.key) {
      Value key(step.key.text);
      value = object->Call(step.name.text, std::span(&key, 1));
    } else {
      value = object->Call(step.name.text, step.args);
    }
  }
  return value;
}

Value Object::Call(std::string_view name, std::span<Value> args, ByRef by_ref) {
  const auto id = Find(name);
  if (!id) throw HostError(ErrorNumber::NoSuchMember);
  return Read(*id, args, by_ref);
}

void Object::Put(std::string_view name, Value value) {
  const auto id = Find(name);
  if (!id) throw HostError(ErrorNumber::NoSuchMember);
  Write(*id, std::span(&value, 1));
}

}  // namespace zuvi
