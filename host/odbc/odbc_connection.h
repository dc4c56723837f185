#pragma once

#include <string>

#include "host/odbc/base_datos.h"
#include "host/odbc/limits.h"
#include "host/odbc/odbc_api.h"

namespace zuvi::host {

/// A connection to the database, made ready: engine and form of texts found out, session settings done.
/// Disconnected by the destructor.
class OdbcConnection {
 public:
  /// Throws HostError when the database cannot be reached within its limit or is none of the engines.
  OdbcConnection(const std::string& connection_string, const Limits& limits);
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;
  ~OdbcConnection();

  SQLHANDLE Get() const { return connection_.Get(); }
  Engine GetEngine() const { return engine_; }
  /// The form of texts that this connection was found to keep whole.
  Encoding TextEncoding() const { return encoding_; }
  /// File of a SQLite database by the name that its driver has for it; empty when it is kept in none.
  const std::string& File() const { return file_; }
  /// From now on nothing changes in the database by this connection: the engine refuses it.
  void SetReadOnly();
  /// Throws HostError when the file of a SQLite database is not in its place any more: what is written to it
  /// would be gone with the program.
  void RequireFile() const;
  /// Forgets a lost connection without touching it again.
  void Abandon();

 private:
  void Open(const std::string& connection_string);
  Encoding InitialEncoding(const std::string& connection_string) const;
  void Connect(const std::string& connection_string);
  Engine AskEngine() const;
  /// True when a text with more than one byte a character arrives whole in that form.
  bool Preserves(Encoding encoding) const;
  /// False when the form has to be another one, which takes connecting anew.
  bool ChooseEncoding();
  void PrepareSession();

  Limits limits_;
  EnvironmentHandle environment_;
  ConnectionHandle connection_;
  std::string file_;
  Engine engine_ = Engine::Sqlite;
  Encoding encoding_ = Encoding::Utf16;
};

}  // namespace zuvi::host
