#pragma once

namespace zuvi::host {

/// How long the host waits for its database, in whole seconds from 1 to 3600. What a connection string says
/// itself (CONN_TIMEOUT, READ_TIMEOUT, WRITE_TIMEOUT; Timeout for SQLite) goes before these.
struct Limits {
  /// For a connection to come about.
  int connect = 10;
  /// For each answer. The server is told to end a statement a little before, so that an endless one costs no
  /// connection.
  int read = 30;
  /// For the server to take what is sent.
  int write = 30;
  /// For rows or files that somebody else has locked.
  int lock = 10;
};

/// The limits in the environment: ZUVI_LIMITE_CONEXION, ZUVI_LIMITE_LECTURA, ZUVI_LIMITE_ESCRITURA and
/// ZUVI_LIMITE_CANDADO. Throws HostError when one of them is no number of seconds.
Limits LimitsFromEnvironment();

}  // namespace zuvi::host
