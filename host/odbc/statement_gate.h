#pragma once

#include <string_view>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// What a statement does, by its first word: how it may be repeated, and what is lost with a connection.
enum class StatementKind { Read, Write, Begin, Commit, Rollback };

/// The gate that every statement passes before it runs. Throws HostError when the text is more than one
/// statement of that engine (a trailing semicolon is allowed), holds a NUL character, at which the database
/// would end it, or reaches files or native code outside its quotes: `load_extension`, `LOAD DATA`, `INTO
/// OUTFILE`, `ATTACH` and the like. Returns what kind of statement it is.
StatementKind CheckStatement(Engine engine, std::string_view sql);

/// Throws HostError unless the statement is one that reads, for a session that may not change anything. Goes
/// beside the engine's own read-only mode, which settings and files of its own are not subject to.
void RequireReading(std::string_view sql);

}  // namespace zuvi::host
