// What a memory host and its test share: the script (tables, answers, vetoes, failures) and the log of every
// call that the component made.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/object.h"
#include "services/control_procesos.h"

namespace zuvi::pruebas {

/// How a host call fails.
enum class Clase { Texto, SinTexto, SinMemoria, SinMiembro, TextoPorNumero, NumeroPorObjeto, NadaPorObjeto };

/// Text of a `Clase::Texto` failure: line breaks and accents have to reach the user as they are.
inline constexpr const char* kTextoFalla = "Se perdió la conexión\r\nañadida";

/// Which call fails: the n-th that can fail in this way, alone or with all after it; 0 is none.
struct Falla {
  int n = 0;
  bool persistente = false;
  Clase clase = Clase::Texto;
};

/// Columns in their order.
using Fila = std::vector<std::pair<std::string, Value>>;
using Filas = std::vector<Fila>;

class Mundo {
 public:
  // Script.
  /// Rows by the exact text of the statement; any other statement gives no rows.
  std::map<std::string, Filas> tablas;
  std::deque<bool> respuestas;
  std::set<std::string> vetos;
  /// The station's settings.
  Fila parametros{{"Almacen", std::int32_t{2}}, {"Lector", std::int16_t{0}}};
  /// Whether the environment has an object with a "PathCollection".
  bool con_rutas = false;
  /// Keys that exist, as "table.column=value".
  std::set<std::string> claves;
  /// Articles refused in every warehouse.
  std::set<std::string> restringidos;
  /// Display form of a field by its tag and text; without it a text stays as it is.
  std::function<std::string(const std::string& etiqueta, const std::string& texto)> formato;
  /// What the user chooses or enters in the host's windows that fill a field; none when he gives up.
  std::optional<std::string> eleccion;
  std::function<void(PeticionProceso&)> proceso;
  /// Host code that runs within a call, after it was logged under that line.
  std::function<void(const std::string& linea)> gancho;
  Falla falla;

  // What happened.
  std::vector<std::string> bitacora;
  /// Quantities of the movement documents, to the last bit.
  std::vector<double> cantidades;
  int fallas_dadas = 0;
  int documentos = 0;
  /// Host objects alive.
  int vivos = 0;

  /// Logs "nombre(a, b, …)" and runs the hook.
  void Llama(const std::string& nombre, std::span<const Value> args = {});
  void Anota(std::string linea) { bitacora.push_back(std::move(linea)); }
  /// Counts one call that can fail; true when it is to fail.
  bool Toca();
  /// Fails the way the script says, when that is an exception and it is its turn.
  void FallaAntes();

  std::string Bitacora() const;
  /// How a value shows in the log; objects by their name, controls of an array as "txtFields(4)".
  static std::string Texto(const Value& valor);
  /// The same behind its type: i2, i4, r8, txt, fecha; other kinds as `Texto`.
  static std::string TextoConTipo(const Value& valor);

 private:
  int cuenta_ = 0;
};

/// Objects of the memory host have a name for the log and are counted.
class ConNombre {
 public:
  ConNombre(Mundo& mundo, std::string nombre) : mundo_(mundo), nombre_(std::move(nombre)) { ++mundo_.vivos; }
  ConNombre(const ConNombre&) = delete;
  ConNombre& operator=(const ConNombre&) = delete;
  virtual ~ConNombre() { --mundo_.vivos; }
  const std::string& Nombre() const { return nombre_; }

 protected:
  Mundo& mundo_;
  std::string nombre_;
};

/// A host object: whatever name it is called by, one function answers. Failures happen here.
class ObjetoMemoria final : public Object, public ConNombre {
 public:
  using Responde = std::function<Value(const std::string& nombre, std::span<Value> args)>;
  ObjetoMemoria(Mundo& mundo, std::string nombre, Responde responde)
      : ConNombre(mundo, std::move(nombre)), responde_(std::move(responde)) {}
  std::optional<MemberId> Find(std::string_view name) override;
  Value Read(MemberId id, std::span<Value> args, ByRef by_ref) override;
  void Write(MemberId id, std::span<Value> args) override;

 private:
  Responde responde_;
  std::vector<std::string> nombres_;
};

}  // namespace zuvi::pruebas
