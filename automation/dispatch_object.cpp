#include "automation/dispatch_object.h"

#include <typeinfo>

#include "automation/com_object.h"
#include "automation/published_object.h"

namespace zuvi {

ComPtr<IDispatch> Publish(const ObjectPtr& object, ComServer& server, const ClassIds* ids) {
  if (!object) return {};
  if (const Object& given = *object; typeid(given) == typeid(ComObject))
    return ComPtr<IDispatch>(static_cast<const ComObject&>(given).Dispatch());
  const ObjectPtr target = object->Reference();
  if (!target) return {};
  if (target != object) return Publish(target, server, ids);
  if (target->published_as) return ComPtr<IDispatch>(static_cast<IDispatch*>(target->published_as));
  return NewCounted<IDispatch, PublishedObject<IDispatch>>(target, server, ids);
}

ObjectPtr ObjectOf(IDispatch* dispatch, ComServer& server) {
  if (!dispatch) return nullptr;
  ComPtr<IDispatch> shared(dispatch);
  if (const auto own = shared.As<IZuviIdentity>(kIidZuviIdentity); own && own->Cookie() == &server)
    return static_cast<Object*>(own->ObjectBehind())->shared_from_this();
  return std::make_shared<ComObject>(std::move(shared), server);
}

}  // namespace zuvi
