#include "tests/support/anfitrion_memoria.h"

#include <array>

#include "base/text.h"
#include "services/acceso_datos.h"
#include "services/control_procesos.h"
#include "services/documento_inventario.h"
#include "services/ventanas.h"

namespace zuvi::pruebas {
namespace {

using Args = std::span<Value>;

void Exige(bool cumple, const std::string& que) {
  if (!cumple) throw HostError(que);
}

/// A host object that answers by `responde(nombre, args)`.
template <class Responde>
ObjectPtr Nuevo(Mundo& mundo, const std::string& nombre, Responde responde) {
  return std::make_shared<ObjetoMemoria>(mundo, nombre, std::move(responde));
}

struct Registros {
  Filas filas;
  std::size_t actual = 0;

  Value Campo(const Value& indice) const {
    Exige(actual < filas.size(), "Either BOF or EOF is True, or the current record has been deleted.");
    const Fila& fila = filas[actual];
    if (const auto* ordinal = std::get_if<std::int32_t>(&indice.Get()))
      return fila.at(static_cast<std::size_t>(*ordinal)).second;
    for (const auto& [columna, valor] : fila)
      if (EqualsIgnoringCase(columna, ToText(indice))) return valor;
    throw HostError("Item cannot be found: " + ToText(indice));
  }
};

/// ADO's record set, with its Fields and Field.
ObjectPtr MemoryRecordset(Mundo& m, Filas filas) {
  const auto r = std::make_shared<Registros>(Registros{std::move(filas)});
  return Nuevo(m, "Recordset", [&m, r](const std::string& n, Args a) -> Value {
    const bool fin = r->actual >= r->filas.size();
    if (n == "EOF") return fin;
    if (n == "MoveNext") {
      Exige(!fin, "MoveNext past the end");
      ++r->actual;
      return {};
    }
    if (n == "Fields")
      return Nuevo(m, "Fields", [&m, r](const std::string&, Args item) -> Value {
        return Nuevo(m, "Field", [valor = r->Campo(item[0])](const std::string&, Args) { return valor; });
      });
    m.Llama(n, a);
    if (n == "Open") *r = {m.tablas[ToText(a[0])]};
    return {};
  });
}

/// Logs the columns with the types of their values.
ObjectPtr ConstructorMemoria(Mundo& m) {
  return Nuevo(m, "Constructor", [&m](const std::string& n, Args a) -> Value {
    if (n == "AgregaCampo") a[2] = Mundo::TextoConTipo(a[2]);
    m.Llama(n, a);
    return {};
  });
}

/// Arguments that are the same in every call: where they stand, and what they are. The log leaves them out.
const std::map<std::string, std::pair<std::ptrdiff_t, Value>> kFijos{{"Consulta", {2, true}},
                                                                     {"ExisteClave", {4, true}},
                                                                     {"FiltroTecla", {0, true}},
                                                                     {"PreparaVentana", {2, ""}},
                                                                     {"LiberaVentana", {2, "frmMaster"}}};

/// Capitals.
std::int16_t UpperCase(std::int16_t c) {
  return c >= 'a' && c <= 'z' ? static_cast<std::int16_t>(c - 32) : c;
}
/// Digits, point and minus, and control characters.
std::int16_t DeNumero(std::int16_t c) {
  const bool pasa = (c >= 0 && c < ' ') || (c >= '0' && c <= '9') || c == '.' || c == '-';
  return pasa ? c : std::int16_t{0};
}

/// What is asked for all the time is not worth a line of the log.
std::optional<Value> Callado(const Mundo& m, const std::string& n, Args a) {
  if (n == "ValorNumerico") return a[0] == Value("") ? 0 : ToNumber(a[0]);
  if (n == "ValorTexto") return a[0].IsNull() ? std::string() : ToText(a[0]);
  if (n == "EstaVacio") return Trim(ToText(a[0])).empty();
  if (n == "FechaSQL") return "'" + ToDate(a[1]).Formatea("yyyy-MM-dd") + "'";
  if (n == "TextoConCeros") {
    const std::string cifras = Decimal(ToInt32(a[0]));
    const auto largo = static_cast<std::size_t>(ToInt32(a[1]));
    return cifras.size() < largo ? std::string(largo - cifras.size(), '0') + cifras : cifras;
  }
  if (n != "FormateaCampo") return std::nullopt;
  const ObjectPtr caja = ToObject(a[0]);
  const std::string texto = ToText(caja->Call("Text"));
  return m.formato ? m.formato(ToText(caja->Call("Tag")), texto) : texto;
}

ObjectPtr AccesoDatosMemoria(Mundo& m) {
  return Nuevo(m, "AccesoDatos", [&m, folio = 500](const std::string& n, Args a) mutable -> Value {
    if (const auto valor = Callado(m, n, a)) return *valor;
    std::vector<Value> vistos(a.begin(), a.end());
    if (const auto fijo = kFijos.find(n); fijo != kFijos.end()) {
      const auto& [lugar, valor] = fijo->second;
      Exige(vistos.at(static_cast<std::size_t>(lugar)) == valor, "lo fijo de " + n + " es otra cosa");
      vistos.erase(vistos.begin() + lugar);
    }
    if (n == "Consulta") vistos.resize(1);
    m.Llama(n, vistos);
    if (n == "Consulta") {
      Exige(ToObject(a[1]) != nullptr, "sin conexión");
      const auto filas = m.tablas.find(ToText(a[0]));
      return MemoryRecordset(m, filas == m.tablas.end() ? Filas{} : filas->second);
    }
    if (n == "TraeMensaje") return "mensaje " + ToText(a[0]);
    if (n == "Pregunta") {
      if (m.respuestas.empty()) return false;
      const bool respuesta = m.respuestas.front();
      m.respuestas.pop_front();
      return respuesta;
    }
    if (n == "SiguienteFolio") {
      a[2] = 8801;
      return ++folio;
    }
    if (n == "ComponeFecha") return Date::FromSerial(ToInt32(a[0]) * 1000 + ToInt32(a[1]));
    if (n == "ExisteClave") return m.claves.contains(ToText(a[1]) + "." + ToText(a[2]) + "=" + ToText(a[0]));
    if (n == "UbicacionRestringida") return m.restringidos.contains(ToText(a[0]));
    if (n == "NuevoConstructorSql") return ConstructorMemoria(m);
    if (n == "FiltroMayusculas") return a[1] = UpperCase(ToInt16(a[1]));
    if (n == "FiltroTecla") return a[2] = DeNumero(ToInt16(a[2]));
    return {};
  });
}

ObjectPtr ControlProcesosMemoria(Mundo& m) {
  return Nuevo(m, "ControlProcesos",
               [&m, clave = std::string()](const std::string& n, Args a) mutable -> Value {
                 const bool veto = m.vetos.contains(clave);
                 m.Llama(n, a);
                 if (n == "ConsultaProceso") a[0] = veto;
                 if (n != "IniciaProceso") return {};
                 PeticionProceso p;
                 p.clave = clave = ToText(a[0]);
                 p.objeto = ToObject(a[1]);
                 p.bandera = ToBool(a[5]);
                 if (m.proceso) m.proceso(p);
                 a[1] = p.objeto;
                 a[5] = p.bandera;
                 return {};
               });
}

ObjectPtr ProgresoMemoria(Mundo& m) {
  return Nuevo(m, "Progreso", [&m](const std::string& n, Args a) {
    m.Llama(n, a);
    return Value();
  });
}

/// Host windows that fill a text box: they write what the script chooses, by name.
ObjectPtr LlenaCaja(Mundo& m, const std::string& nombre) {
  return Nuevo(m, nombre, [&m, nombre, caja = ObjectPtr()](const std::string& n, Args a) mutable -> Value {
    for (std::size_t i = 1; i < a.size(); ++i) Exige(a[i] == Value(""), "los textos de Muestra van vacíos");
    m.Llama(nombre + "." + n, a.first(std::min<std::size_t>(a.size(), 1)));
    if (n == "PonDestino") caja = ToObject(a[0]);
    if (n == "Muestra" && m.eleccion) caja->Put("Text", *m.eleccion);
    return {};
  });
}

}  // namespace

ObjectPtr AmbienteMemoria(Mundo& m, const std::string& nombre) {
  const std::map<std::string, Value> datos{
      {"Conexion", Nuevo(m, "Conexion", [](const std::string&, Args) { return Value(); })},
      {"UsuarioActual", "ADMIN"},
      {"RutaAplicacion", "C:\\Tienda"},
      {"DatoFechaA", 45},
      {"DatoFechaB", 931},
      {"DatoDocumento", "DD"}};
  return Nuevo(m, nombre, [&m, nombre, datos](const std::string& n, Args a) -> Value {
    m.Llama(n == "Conexion" ? nombre + "." + n : n, a);
    if (n == "ParametrosEstacion") return MemoryRecordset(m, {m.parametros});
    if (n == "ContenedorRutas" && m.con_rutas)
      // The container of the paths, and the collection in it.
      return Nuevo(m, "Rutas", [&m](const std::string&, Args) {
        return Value(Nuevo(m, "Rutas", [](const std::string&, Args) { return Value(); }));
      });
    const auto dato = datos.find(n);
    return dato == datos.end() ? Value() : dato->second;
  });
}

ObjectPtr DocumentoMemoria(Mundo& m) {
  const std::string nombre = "Documento " + std::to_string(++m.documentos);
  return Nuevo(m, nombre,
               [&m, nombre, cantidad = 0.0, costo = 0.0](const std::string& n, Args a) mutable -> Value {
                 m.Llama(nombre + "." + n, a);
                 if (n == "PonCantidad") m.cantidades.push_back(cantidad = ToNumber(a[0]));
                 if (n == "PonCosto") costo = ToNumber(a[0]);
                 if (n != "AplicaMovimiento") return {};
                 // It numbers its movements in its own way.
                 a[0] = "M-99";
                 return cantidad * costo;
               });
}

ObjectPtr FabricaMemoria::Crea(std::string_view prog_id) {
  mundo_.Llama("Crea", std::array{Value(std::string(prog_id))});
  mundo_.FallaAntes();
  if (mundo_.falla.clase == Clase::NadaPorObjeto && mundo_.Toca()) return nullptr;
  if (prog_id == AccesoDatos::kProgId) return AccesoDatosMemoria(mundo_);
  if (prog_id == ControlProcesos::kProgId) return ControlProcesosMemoria(mundo_);
  if (prog_id == DocumentoInventario::kProgId) return DocumentoMemoria(mundo_);
  if (prog_id == ConstructorSql::kProgId) return ConstructorMemoria(mundo_);
  if (prog_id == VentanaProgreso::kProgId) return ProgresoMemoria(mundo_);
  if (prog_id == Recordset::kProgId) return MemoryRecordset(mundo_, {});
  if (prog_id == BuscaCatalogo::kProgId) return LlenaCaja(mundo_, "Busca");
  if (prog_id == CapturaNumerica::kProgId) return LlenaCaja(mundo_, "Captura");
  throw HostError(ErrorNumber::CannotCreateObject);
}

}  // namespace zuvi::pruebas
