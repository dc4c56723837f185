// Whose a database is, found out without changing it.
#include <algorithm>
#include <map>

#include "base/text.h"
#include "host/shop/celdas.h"
#include "host/shop/esquema.h"
#include "host/shop/esquema_tablas.h"

namespace zuvi::host {
namespace {

struct Objeto {
  std::string nombre;
  bool tabla = false;
};

std::string Lista(BaseDatos& base, bool con_indices) {
  std::string lista;
  for (const Tabla& tabla : kTablas)
    lista += (lista.empty() ? "" : ", ") + Literal(base.GetEngine(), std::string(tabla.nombre));
  // SQLite keeps indices and tables under one roof.
  for (const char* indice : kIndices) {
    if (!con_indices) break;
    std::string nombre = indice;
    nombre = nombre.substr(nombre.find("EXISTS ") + 7);
    lista += ", " + Literal(base.GetEngine(), nombre.substr(0, nombre.find(' ')));
  }
  return lista;
}

/// Everything that is called like something of ours, in whatever letters.
std::vector<Objeto> Homonimos(BaseDatos& base) {
  const bool sqlite = base.GetEngine() == Engine::Sqlite;
  const std::string sql =
      sqlite ? "SELECT name, type FROM sqlite_master WHERE LOWER(name) IN (" + Lista(base, true) + ")"
             : "SELECT table_name, table_type FROM information_schema.tables WHERE table_schema = DATABASE() "
               "AND "
               "LOWER(table_name) IN (" +
                   Lista(base, false) + ")";
  std::vector<Objeto> objetos;
  for (const auto filas = base.Consulta(sql); !filas->Eof(); filas->MoveNext()) {
    const std::string tipo = ToLower(TextOrNothing(filas->Campo(1)));
    objetos.push_back({TextOrNothing(filas->Campo(0)), tipo == "table" || tipo == "base table"});
  }
  return objetos;
}

std::map<std::string, std::set<std::string>> ColumnasDe(BaseDatos& base,
                                                        const std::set<std::string>& tablas) {
  std::string lista;
  for (const std::string& tabla : tablas)
    lista += (lista.empty() ? "" : ", ") + Literal(base.GetEngine(), tabla);
  const std::string sql = base.GetEngine() == Engine::Sqlite
                              ? "SELECT m.name, c.name FROM sqlite_master AS m JOIN "
                                "pragma_table_info(m.name) AS c WHERE m.type = "
                                "'table' AND m.name IN (" +
                                    lista + ")"
                              : "SELECT table_name, column_name FROM information_schema.columns WHERE "
                                "table_schema = DATABASE() AND "
                                "table_name IN (" +
                                    lista + ")";
  std::map<std::string, std::set<std::string>> columnas;
  for (const auto filas = base.Consulta(sql); !filas->Eof(); filas->MoveNext())
    columnas[TextOrNothing(filas->Campo(0))].insert(ToLower(TextOrNothing(filas->Campo(1))));
  return columnas;
}

/// The names in a list of column definitions, in small letters.
std::vector<std::string> NombresEn(std::string_view definiciones) {
  std::vector<std::string> nombres;
  int nivel = 0;
  bool empieza = true;
  std::string nombre;
  for (const char c : definiciones) {
    if (c == '(') ++nivel;
    if (c == ')') --nivel;
    if (nivel == 0 && c == ',') {
      empieza = true;
    } else if (empieza && c == ' ' && !nombre.empty()) {
      if (nombre != "PRIMARY") nombres.push_back(ToLower(nombre));
      nombre.clear();
      empieza = false;
    } else if (empieza && c != ' ') {
      nombre += c;
    }
  }
  return nombres;
}

/// The first of our tables that lacks a column of ours; empty when all have theirs.
std::string TablaAjena(BaseDatos& base, const std::set<std::string>& tablas) {
  const auto columnas = ColumnasDe(base, tablas);
  for (const Tabla& tabla : kTablas) {
    if (!tablas.contains(tabla.nombre)) continue;
    const auto hay = columnas.find(tabla.nombre);
    if (hay == columnas.end()) return tabla.nombre;
    for (const std::string& nombre : NombresEn(tabla.columnas))
      if (!hay->second.contains(nombre)) return tabla.nombre;
    if (tabla.nombre == std::string_view("esquema") && hay->second.size() != 1) return tabla.nombre;
  }
  return {};
}

/// The first of those tables that holds a row.
std::string TablaConDatos(BaseDatos& base, const std::set<std::string>& tablas) {
  for (const std::string& tabla : tablas)
    if (!base.Consulta("SELECT 1 FROM " + tabla + " LIMIT 1")->Eof()) return tabla;
  return {};
}

}  // namespace

bool NecesitaVistaOp(BaseDatos& base) {
  return base.GetEngine() == Engine::MariaDb &&
         ToNumber(base.Consulta("SELECT @@lower_case_table_names")->Campo(0)) == 0;
}

Esquema Examina(BaseDatos& base) {
  Esquema esquema;
  const auto es = [&](EstadoEsquema estado, const std::string& tabla = {}) {
    esquema.estado = estado;
    esquema.tabla = tabla;
    return esquema;
  };
  const auto homonimos = Homonimos(base);
  if (homonimos.empty()) return es(EstadoEsquema::Falta);
  bool vista_op = false;
  std::string otro;  // called like a table of ours, and no table of ours
  for (const Objeto& objeto : homonimos) {
    const auto se_llama = [&](const Tabla& tabla) { return EqualsIgnoringCase(objeto.nombre, tabla.nombre); };
    const auto tabla = std::ranges::find_if(kTablas, se_llama);
    if (tabla == kTablas.end()) continue;  // an index
    if (objeto.tabla && objeto.nombre == tabla->nombre)
      esquema.tablas.insert(objeto.nombre);
    else if (objeto.tabla || objeto.nombre != "Op")
      otro = objeto.nombre;
    else
      vista_op = true;
  }
  if (!esquema.tablas.contains("esquema"))
    return es(EstadoEsquema::Ajeno,
              esquema.tablas.empty() ? homonimos.front().nombre : *esquema.tablas.begin());
  const auto columnas = ColumnasDe(base, {"esquema"});
  if (columnas.empty() || !columnas.begin()->second.contains("version"))
    return es(EstadoEsquema::Ajeno, "esquema");
  const auto fila = base.Consulta("SELECT version FROM esquema ORDER BY version DESC");
  const bool hay_version = !fila->Eof();
  try {
    if (hay_version) esquema.version = ToInt32(fila->Campo(0));
  } catch (const HostError&) {
    return es(EstadoEsquema::Ajeno, "esquema");
  }
  if (esquema.version > kVersionEsquema && esquema.tablas.contains("op")) return es(EstadoEsquema::Nuevo);
  if (const std::string ajena = TablaAjena(base, esquema.tablas); !ajena.empty())
    return es(EstadoEsquema::Ajeno, ajena);
  if (!hay_version) {
    const std::string con_datos = TablaConDatos(base, esquema.tablas);
    return con_datos.empty() ? es(EstadoEsquema::AMedias) : es(EstadoEsquema::Ajeno, con_datos);
  }
  if (esquema.version < 1 || !esquema.tablas.contains("op")) return es(EstadoEsquema::Ajeno, "esquema");
  if (!otro.empty()) return es(EstadoEsquema::Ajeno, otro);
  if (esquema.version < kVersionMinima) return es(EstadoEsquema::Antiguo);
  for (const Tabla& tabla : kTablas)
    if (!esquema.tablas.contains(tabla.nombre)) return es(EstadoEsquema::Roto, tabla.nombre);
  if (!vista_op && NecesitaVistaOp(base)) return es(EstadoEsquema::Roto, "Op");
  return es(EstadoEsquema::Listo);
}

void ExigeListo(const Esquema& esquema) {
  const std::string version = Decimal(esquema.version);
  const std::string nuestra = Decimal(kVersionEsquema);
  switch (esquema.estado) {
    case EstadoEsquema::Listo:
      return;
    case EstadoEsquema::Falta:
      throw HostError(
          "La base no tiene las tablas de Zuvi; se crean con zuvi crea o al abrirla con Zuvi.exe");
    case EstadoEsquema::AMedias:
      throw HostError(
          "Las tablas de Zuvi quedaron a medio crear; se terminan con zuvi crea o al abrir la base con "
          "Zuvi.exe");
    case EstadoEsquema::Antiguo:
      throw HostError(
          "La base es de la versión " + version + " y este programa usa la " + nuestra +
          "; se actualiza con zuvi actualiza o al abrirla con Zuvi.exe, con una cuenta que pueda crear "
          "tablas");
    case EstadoEsquema::Nuevo:
      throw HostError("La base es de la versión " + version + ", más nueva que la de este programa (" +
                      nuestra + "): actualice el programa. No se tocó nada");
    case EstadoEsquema::Ajeno:
      throw HostError("La base tiene una tabla " + esquema.tabla +
                      " que no es de este anfitrión; no se tocó nada");
    case EstadoEsquema::Roto:
      if (esquema.tabla == "Op")
        throw HostError("A la base le falta la vista Op; la hace zuvi actualiza con la cuenta del dueño");
      throw HostError("A la base le falta la tabla " + esquema.tabla +
                      ": restaure un respaldo, o use zuvi actualiza para crearla vacía");
  }
}

}  // namespace zuvi::host
