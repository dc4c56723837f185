// The ODBC drivers of this machine. Which there are, and by what names, differs from one to the next: the
// same driver has one name in a package of Debian's and another in its installer for Windows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// Names of the drivers installed for programs of this one's bitness, in the driver manager's order. Throws
/// HostError when the manager does not answer.
std::vector<std::string> InstalledDrivers();

/// Whether the name of a driver or of an engine is one of SQLite's.
bool IsSqlite(std::string_view name);

/// Name of the installed driver to use for an engine where none is asked for by name: of SQLite's the one
/// whose attributes we write or, where it has no name that we know, the first that opens a database of
/// version 3; of MariaDB's the first. Throws HostError, with what to install, when there is none.
std::string DriverFor(Engine engine);

/// Why nothing could be connected, where the error says that it was for want of a driver or data source:
/// `driver` as a connection string names it, or the data source `data_source`; both are empty for a driver
/// that was found. Any other error comes back as it is.
HostError ExplainMissingDriver(const std::string& driver, const std::string& data_source,
                               const HostError& error);

}  // namespace zuvi::host
