// Objects that can be reached by name, whoever made them: ours through a table of published members, foreign
// ones (a host's automation objects) through an adapter in com/. Look-up ignores case.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "base/value.h"

namespace zuvi {

class MemberTable;
struct Member;

/// Identifies a member of one object; 0 is the default member.
using MemberId = std::int32_t;
inline constexpr MemberId kDefaultMember = 0;

/// Which arguments of a call travel by reference: bit i for argument i. The callee may change those.
using ByRef = std::uint32_t;
/// Added to the bits of a call whose caller does not care what the callee leaves in them: it may be anything.
inline constexpr ByRef kUnread = ByRef{1} << 31;
inline constexpr ByRef kAllByRef = ~kUnread;

/// A text that is there as long as the program: the compiler takes nothing but constants. Adapters know it
/// again by its address.
struct FixedText {
  consteval FixedText(const char* literal = nullptr) : text(literal) {}  // NOLINT: stands where a text does
  operator const char*() const { return text; }                          // NOLINT
  const char* text;
};

/// One step of a chain of reads: a member of what the step before gave. Its arguments are `args`, or the one
/// text `key`.
struct Step {
  FixedText name;
  std::span<Value> args{};
  FixedText key{};
};

/// An automation object. Every operation may throw HostError.
class Object : public std::enable_shared_from_this<Object> {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  /// The id of a member, or nothing when there is none of that name.
  virtual std::optional<MemberId> Find(std::string_view name);
  /// Calls a method or reads a property; arguments in the order of their declaration. Throws NoSuchMember,
  /// WrongArgumentCount, or what the member throws.
  virtual Value Read(MemberId id, std::span<Value> args, ByRef by_ref = 0);
  /// Sets a property; the last argument is the new value.
  virtual void Write(MemberId id, std::span<Value> args);
  /// The value the object stands for where a plain value is needed.
  virtual Value Default() { return Read(kDefaultMember, {}); }
  /// The object to hand on to others: itself, or for an adapter the object behind it.
  virtual ObjectPtr Reference() { return shared_from_this(); }
  /// Reads a chain such as `Fields`, `Item("op")`, `Value`. The same as one `Call` after the other; an
  /// adapter spares itself the objects in between. Throws ObjectNotSet or TypeMismatch where a step gives no
  /// object.
  virtual Value ReadChain(std::span<const Step> steps);
  /// Whether argument `index` of a method is declared, and by reference. False where nothing is known.
  virtual bool TakesByRef(MemberId /*id*/, std::size_t /*index*/) { return false; }
  /// True for an adapter of somebody else's object, which can be nothing more than an Object.
  virtual bool Foreign() const { return false; }
  /// The published members; null when there are none or they are not known on this side.
  virtual const MemberTable* Members() const { return nullptr; }
  /// What is known of a member: that of the table, or of those an object has besides it. Null when there is
  /// none.
  virtual const Member* MemberById(MemberId id) const;

  /// By name in one step. Throws NoSuchMember.
  Value Call(std::string_view name, std::span<Value> args = {}, ByRef by_ref = 0);
  void Put(std::string_view name, Value value);

  /// Slot of the wrapper that publishes this object outside (com/ keeps it); not owned, null when
  /// unpublished.
  void* published_as = nullptr;
};

/// `Reference()` of an object that may be null.
inline ObjectPtr ReferenceOf(const ObjectPtr& object) { return object ? object->Reference() : nullptr; }

}  // namespace zuvi
