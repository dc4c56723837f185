// The schema as it is made, upgraded and emptied. Only who asks for one of these changes a database: opening
// reads (esquema_examen.cpp).
#include "host/shop/esquema.h"

#include "base/clock.h"
#include "host/shop/celdas.h"
#include "host/shop/esquema_tablas.h"

namespace zuvi::host {
namespace {

/// What is missing of the schema. Each table is made as one that cannot be there: another's would not be
/// taken over unseen.
void CreaFaltantes(BaseDatos& base, const std::set<std::string>& hay) {
  // Binary order with trailing blanks: keys compare the same on every engine.
  const bool mariadb = base.GetEngine() == Engine::MariaDb;
  const std::string opciones =
      mariadb ? " ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_nopad_bin" : "";
  for (const Tabla& tabla : kTablas)
    if (!hay.contains(tabla.nombre))
      base.EjecutaEsquema(std::string("CREATE TABLE ") + tabla.nombre + " (" + tabla.columnas + ")" +
                          opciones);
  for (const char* indice : kIndices) base.EjecutaEsquema(indice);
  // The view works with the rights of whoever uses it, and outlives the account that made it.
  if (NecesitaVistaOp(base))
    base.EjecutaEsquema("CREATE OR REPLACE SQL SECURITY INVOKER VIEW Op AS SELECT * FROM op");
}

/// Up to version 3 the average cost was kept by triggers, which a server that writes a binary log does not
/// let an ordinary account make, nor take away. Where they still are they come to the same figures as the
/// movement itself, so they may stay.
void QuitaDisparadores(BaseDatos& base) {
  for (const char* disparador : {"existencias_primera", "existencias_cambio"}) {
    try {
      base.EjecutaEsquema(std::string("DROP TRIGGER IF EXISTS ") + disparador);
    } catch (const HostError& error) {
      if (base.GetEngine() == Engine::Sqlite || error.SqlState().starts_with("08")) throw;
    }
  }
}

/// One program at a time makes the schema. SQLite does it in one transaction that starts by locking; a server
/// that ends its transaction at each CREATE gets a lock of its own, held by the connection.
class Exclusiva {
 public:
  explicit Exclusiva(BaseDatos& base) : base_(base) {
    if (base.GetEngine() == Engine::Sqlite) {
      base.Ejecuta("BEGIN IMMEDIATE");
    } else if (!TomaCandado()) {
      throw HostError("Otro programa está preparando la base de datos; espere a que termine");
    }
  }
  Exclusiva(const Exclusiva&) = delete;
  Exclusiva& operator=(const Exclusiva&) = delete;
  ~Exclusiva() {
    try {
      if (base_.GetEngine() == Engine::MariaDb)
        base_.Consulta("SELECT RELEASE_LOCK('zuvi_esquema')");
      else if (!confirmada_)
        base_.Ejecuta("ROLLBACK");
    } catch (const HostError&) {
      // The connection is gone, and the lock with it.
    }
  }

  /// Runs what changes rows, all or nothing, and ends the work.
  template <class Cuerpo>
  void Llena(Cuerpo&& cuerpo) {
    if (base_.GetEngine() == Engine::MariaDb) {
      Transaccion transaccion(base_);
      cuerpo();
      transaccion.Confirma();
    } else {
      cuerpo();
      base_.Ejecuta("COMMIT");
      confirmada_ = true;
    }
  }

 private:
  /// Waits twenty seconds in pieces, each shorter than the shortest limit of reading.
  bool TomaCandado() {
    for (int intento = 0; intento < 40; ++intento)
      if (NumeroDe(base_.Consulta("SELECT GET_LOCK('zuvi_esquema', 0.5)")->Campo(0)) == 1) return true;
    return false;
  }

  BaseDatos& base_;
  bool confirmada_ = false;
};

void Llena(BaseDatos& base, Contenido contenido) {
  if (contenido == Contenido::Tienda)
    LlenaTienda(base, Date::FromCivil(Ahora()).DayOnly());
  else
    LlenaVacia(base);
  InsertaFilas(base, "esquema", "(version)", {{kVersionEsquema}});
}

/// A server's connection works in a database of its own choice only if it was given one.
void ExigeElegida(BaseDatos& base) {
  if (base.GetEngine() == Engine::MariaDb && base.Consulta("SELECT DATABASE()")->Campo(0).IsNull())
    throw HostError("La cadena de conexión no dice en qué base de datos: falta Database=…");
}

/// A file that holds nothing yet is ours: readers and a writer may then work at the same time.
void PreparaArchivo(BaseDatos& base) {
  if (base.GetEngine() != Engine::Sqlite) return;
  if (ToNumber(base.Consulta("SELECT COUNT( * ) FROM sqlite_master")->Campo(0)) != 0) return;
  try {
    base.EjecutaEsquema("PRAGMA journal_mode=WAL");
  } catch (const HostError&) {
    // Another program is at it: it does the same.
  }
}

}  // namespace

bool CreaEsquema(BaseDatos& base, Contenido contenido) {
  ExigeElegida(base);
  const auto falta = [&](const Esquema& esquema) {
    if (esquema.estado == EstadoEsquema::Falta || esquema.estado == EstadoEsquema::AMedias) return true;
    ExigeListo(esquema);
    return false;
  };
  if (!falta(Examina(base))) return false;
  PreparaArchivo(base);
  Exclusiva exclusiva(base);
  // Another program may have been faster.
  const Esquema esquema = Examina(base);
  if (!falta(esquema)) return false;
  CreaFaltantes(base, esquema.tablas);
  exclusiva.Llena([&] { Llena(base, contenido); });
  return true;
}

std::int32_t ActualizaEsquema(BaseDatos& base) {
  const auto actualizable = [](const Esquema& esquema) {
    if (esquema.estado != EstadoEsquema::Antiguo && esquema.estado != EstadoEsquema::Roto)
      ExigeListo(esquema);
    return esquema.estado != EstadoEsquema::Listo || esquema.version < kVersionEsquema;
  };
  Esquema esquema = Examina(base);
  if (!actualizable(esquema)) return esquema.version;
  Exclusiva exclusiva(base);
  esquema = Examina(base);
  if (!actualizable(esquema)) return esquema.version;
  try {
    CreaFaltantes(base, esquema.tablas);
    QuitaDisparadores(base);
  } catch (const HostError& error) {
    throw HostError("La base es de la versión " + Decimal(esquema.version) +
                        " y no se pudo actualizar a la " + Decimal(kVersionEsquema) +
                        " con esta cuenta; use la del dueño de la base: " + error.what(),
                    error.Number(), error.NativeCode(), error.SqlState());
  }
  exclusiva.Llena([&] { base.Ejecuta("UPDATE esquema SET version = " + Decimal(kVersionEsquema)); });
  return esquema.version;
}

void RehaceEsquema(BaseDatos& base, Contenido contenido) {
  ActualizaEsquema(base);
  Exclusiva exclusiva(base);
  exclusiva.Llena([&] {
    for (const Tabla& tabla : kTablas) base.Ejecuta(std::string("DELETE FROM ") + tabla.nombre);
    Llena(base, contenido);
  });
}

void InsertaFilas(BaseDatos& base, const std::string& tabla, const std::string& columnas,
                  const std::vector<std::vector<Value>>& filas) {
  std::string sql;
  for (const auto& fila : filas) {
    if (sql.empty())
      sql.append("INSERT INTO ").append(tabla).append(" ").append(columnas).append(" VALUES (");
    else
      sql += ", (";
    const char* separador = "";
    for (const Value& valor : fila) {
      sql.append(separador).append(Literal(base.GetEngine(), valor));
      separador = ", ";
    }
    sql += ")";
  }
  if (!sql.empty()) base.Ejecuta(sql);
}

}  // namespace zuvi::host
