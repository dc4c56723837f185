#pragma once

#include "automation/com_server.h"
#include "automation/windows_com.h"
#include "base/object.h"

namespace zuvi {

/// Identifiers of a creatable class and its default interface, as its type library states them.
struct ClassIds {
  CLSID clsid;
  IID interface_id;
};

/// The automation object of an object of ours. The same object always gives the same one while that lives.
/// An adapter of a foreign object gives the foreign object itself; null gives null. `ids` name the type
/// information of an object made by a class factory.
ComPtr<IDispatch> Publish(const ObjectPtr& object, ComServer& server, const ClassIds* ids = nullptr);

/// The object behind an automation object: ours if it came from this server, else an adapter.
ObjectPtr ObjectOf(IDispatch* dispatch, ComServer& server);

}  // namespace zuvi
