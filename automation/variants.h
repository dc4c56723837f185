// VARIANT <-> Value. No conversion here asks for the system's locale.
#pragma once

#include "automation/com_server.h"
#include "automation/handles.h"
#include "automation/windows_com.h"
#include "base/value.h"

namespace zuvi {

/// A client's value, by-reference ones followed. An argument left out is Empty; whole numbers beyond 32 bits,
/// currency and decimals become reals. Throws HostError (TypeMismatch) for arrays, records and error codes.
Value FromVariant(const VARIANT& variant, ComServer& server);

/// What a variant stands for that points to another, through a few such steps; else itself.
const VARIANT& Followed(const VARIANT& variant);

/// True for the mark of an argument left out.
bool IsMissing(const VARIANT& variant);

/// The value in its natural type; throws std::bad_alloc.
void ToVariant(const Value& value, ComServer& server, VARIANT& out);

/// True when `Coerce` knows the type.
bool IsCoercible(VARTYPE type);
/// The value in a type that somebody else asks for. Throws HostError (TypeMismatch, Overflow,
/// InvalidUseOfNull).
void Coerce(const Value& value, VARTYPE type, ComServer& server, VARIANT& out);

/// Points `out` at the contents of `storage`, which holds a value of that type (VT_VARIANT: at itself).
void MakeByRef(VARIANT& storage, VARTYPE type, VARIANT& out);

/// Stores a value where a by-reference argument points, in the type the caller gave it; by-value ones stay.
void WriteBack(const Value& value, VARIANT& argument, ComServer& server);

}  // namespace zuvi
