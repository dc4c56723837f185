#pragma once

#include <string>
#include <vector>

#include "automation/dispatch_object.h"
#include "base/members.h"
#include "host/win32/salida_programa.h"

namespace zuvi::host {

/// The `WScript` object of our script runner: the members that scripts use everywhere, with a `Sleep` that
/// pumps.
class WScript final : public Object {
 public:
  WScript(ComServer& servidor, SalidaPrograma& salida, std::string archivo,
          std::vector<std::string> argumentos)
      : servidor_(servidor),
        salida_(salida),
        archivo_(std::move(archivo)),
        argumentos_(std::move(argumentos)) {}

  /// Writes up to four values separated by blanks as one line; without a console or a file to write to, shows
  /// them in a message box.
  void Echo(const Value& a, const Value& b, const Value& c, const Value& d);
  void Sleep(std::int32_t milisegundos);
  /// Ends the process at once with that exit code.
  [[noreturn]] void Quit(std::int32_t codigo);
  ObjectPtr CreateObject(const std::string& prog_id);
  ObjectPtr Arguments();
  std::string ScriptFullName() { return archivo_; }
  std::string ScriptName();

  const MemberTable* Members() const override;

 private:
  ComServer& servidor_;
  SalidaPrograma& salida_;
  std::string archivo_;
  std::vector<std::string> argumentos_;
};

/// A new object of a registered class. Throws HostError (CannotCreateObject).
ComPtr<IDispatch> CreaPorNombre(const std::string& prog_id);

}  // namespace zuvi::host
