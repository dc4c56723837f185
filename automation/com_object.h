#pragma once

#include <optional>
#include <vector>

#include "automation/com_server.h"
#include "automation/handles.h"
#include "automation/host_signatures.h"
#include "automation/windows_com.h"
#include "base/object.h"

namespace zuvi {

/// Somebody else's automation object. A call that failed is never made again in another form: the host may
/// have acted before it failed. Used in the apartment that handed it over, like every automation object.
class ComObject final : public Object {
 public:
  ComObject(ComPtr<IDispatch> dispatch, ComServer& server)
      : dispatch_(std::move(dispatch)), server_(server) {}

  IDispatch* Dispatch() const { return dispatch_.get(); }
  bool Foreign() const override { return true; }

  std::optional<MemberId> Find(std::string_view name) override;
  /// Arguments go by value, those marked in `by_ref` by reference in the form the host's type information
  /// declares, else as by-reference variants. What comes back in them is converted unless `kUnread` is added.
  Value Read(MemberId id, std::span<Value> args, ByRef by_ref) override;
  /// The objects in between are called as they come, without an adapter of their own. When the same ones come
  /// again, their ids are known.
  Value ReadChain(std::span<const Step> steps) override;
  bool TakesByRef(MemberId id, std::size_t index) override;
  /// Values are put; objects are set by reference, unless the host's type information knows only put.
  void Write(MemberId id, std::span<Value> args) override;

 private:
  /// The id of a name on one object that came up within a chain. The object is held, so that its address
  /// cannot become that of another: ids are good for the object that gave them and no other.
  struct KnownStep {
    ComPtr<IDispatch> object;
    const char* name;
    MemberId id;
  };

  /// A literal as the system's text, so that a column's name is made once for all its rows.
  struct KnownKey {
    const char* literal;
    UniqueBstr text;
  };

  HostSignatures& Signatures();
  MemberId HeadId(FixedText name);
  MemberId StepId(IDispatch* object, FixedText name, bool keep);
  BSTR KeyText(FixedText literal, bool keep, UniqueBstr& once);

  ComPtr<IDispatch> dispatch_;
  ComServer& server_;
  const char* chain_head_ = nullptr;  // the first name of the last chain and its id: mostly the same literal
  MemberId chain_head_id_ = 0;
  std::vector<KnownStep> known_steps_;
  std::vector<KnownKey> known_keys_;
  std::optional<HostSignatures> signatures_;  // looked up when first needed
};

}  // namespace zuvi
