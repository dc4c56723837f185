// The schema, the same text for every engine but for the table options. Column names keep the capitals under
// which they are read; engines look them up without regard to case.
#include "host/esquema.h"

#include <array>

#include "base/reloj.h"

namespace zuvi::host {
namespace {

constexpr std::int32_t kVersion = 3;

struct Tabla {
  const char* nombre;
  const char* columnas;
};

// "esquema" comes first and gets its row last: a table without the row is the mark of an attempt that broke
// off. A database of an earlier version gets the tables that it lacks; what a version adds is whole tables.
constexpr std::array kTablas{
    Tabla{"esquema", "version INTEGER NOT NULL PRIMARY KEY"},
    Tabla{"op",
          "op INTEGER NOT NULL PRIMARY KEY, estado VARCHAR(2) DEFAULT 'PE', ocupado SMALLINT DEFAULT 0, "
          "usuario VARCHAR(40), usufecha DATE, usuhora VARCHAR(8), f_emision DATE, fechaEntrega DATE, "
          "importe DOUBLE DEFAULT 0, costo DOUBLE DEFAULT 0, almacen VARCHAR(10), observ TEXT, "
          "automatico SMALLINT DEFAULT 0, ordencompra DOUBLE DEFAULT 0, cerrado SMALLINT DEFAULT 0, "
          "Tipo_doc VARCHAR(10)"},
    Tabla{"oppart",
          "id_entrada INTEGER NOT NULL PRIMARY KEY, op INTEGER, tipo_doc VARCHAR(10), no_referen INTEGER, "
          "articulo VARCHAR(60), cantidad DOUBLE DEFAULT 0, precio DOUBLE DEFAULT 0, "
          "impuesto DOUBLE DEFAULT 0, observ VARCHAR(255), partida SMALLINT DEFAULT 0, "
          "terminado DOUBLE DEFAULT 0, usuario VARCHAR(40), usufecha DATE, usuhora VARCHAR(8)"},
    Tabla{"prods",
          "articulo VARCHAR(60) NOT NULL PRIMARY KEY, descrip VARCHAR(120), unidad VARCHAR(10), "
          "costo_u DOUBLE DEFAULT 0, ubicacion VARCHAR(20), kit SMALLINT DEFAULT 0, "
          "costo DOUBLE NOT NULL DEFAULT 0, precio DOUBLE DEFAULT 0"},
    Tabla{
        "clavesadd",
        "clave VARCHAR(60) NOT NULL PRIMARY KEY, Articulo VARCHAR(60), Dato1 VARCHAR(60), Dato2 VARCHAR(60)"},
    Tabla{"monedas",
          "moneda VARCHAR(5) NOT NULL PRIMARY KEY, descrip VARCHAR(40), Tc DOUBLE, Base SMALLINT DEFAULT 0"},
    Tabla{"vends", "vend VARCHAR(10) NOT NULL PRIMARY KEY, Nombre VARCHAR(80)"},
    Tabla{"almacen", "almacen INTEGER NOT NULL PRIMARY KEY, nombre VARCHAR(60)"},
    Tabla{"componen", "articulo VARCHAR(60) NOT NULL PRIMARY KEY, Minimo DOUBLE"},
    Tabla{
        "comppart",
        "articulo VARCHAR(60) NOT NULL, renglon SMALLINT NOT NULL, Componente VARCHAR(60), Cantidad DOUBLE, "
        "Almacen INTEGER, PRIMARY KEY (articulo, renglon)"},
    Tabla{"turnos",
          "turno VARCHAR(40) NOT NULL PRIMARY KEY, entrada VARCHAR(5), comida VARCHAR(5), salida VARCHAR(5), "
          "descanso VARCHAR(10), regcomida VARCHAR(5)"},
    Tabla{"turnoempleado", "turno VARCHAR(40), empleado VARCHAR(20)"},
    Tabla{"horarios",
          "id INTEGER NOT NULL PRIMARY KEY, turno VARCHAR(40), fecha DATE, Empleado VARCHAR(20), "
          "HoraEntrada VARCHAR(5), comida VARCHAR(5), HoraSalida VARCHAR(5)"},
    Tabla{"empleados", "empleado VARCHAR(20) NOT NULL PRIMARY KEY, nombre VARCHAR(80)"},
    Tabla{"folios", "clave VARCHAR(40) NOT NULL PRIMARY KEY, ultimo INTEGER NOT NULL"},
    Tabla{"existencias",
          "articulo VARCHAR(60) NOT NULL, almacen INTEGER NOT NULL, cantidad DOUBLE NOT NULL, "
          "valor BIGINT NOT NULL, movimiento INTEGER, PRIMARY KEY (articulo, almacen)"},
    Tabla{"movimientos",
          "id INTEGER NOT NULL PRIMARY KEY, fecha DATETIME, tipo VARCHAR(1), concepto VARCHAR(5), "
          "orden INTEGER, folio VARCHAR(20), referencia INTEGER, documento VARCHAR(40), usuario VARCHAR(40), "
          "almacen INTEGER, articulo VARCHAR(60), cantidad DOUBLE, costo DOUBLE, importe BIGINT"},
    Tabla{"parametros", "estacion INTEGER NOT NULL PRIMARY KEY, Almacen INTEGER, Lector SMALLINT"},
    Tabla{"restricciones",
          "ubicacion VARCHAR(20) NOT NULL, almacen INTEGER NOT NULL, PRIMARY KEY (ubicacion, almacen)"},
    Tabla{"procesos", "clave VARCHAR(40) NOT NULL PRIMARY KEY, vetado SMALLINT NOT NULL DEFAULT 0"},
    Tabla{"bitacora",
          "id INTEGER NOT NULL PRIMARY KEY, fecha DATETIME, usuario VARCHAR(40), suceso VARCHAR(255)"},
    Tabla{"codigos",
          "id_entrada INTEGER NOT NULL, articulo VARCHAR(60) NOT NULL, codigo VARCHAR(20) NOT NULL UNIQUE, "
          "op INTEGER NOT NULL, consecutivo INTEGER NOT NULL, usuario VARCHAR(40), fecha DATETIME, "
          "PRIMARY KEY (id_entrada, articulo)"},
    Tabla{"fracciones",
          "id INTEGER NOT NULL PRIMARY KEY, codigo VARCHAR(255), articulo VARCHAR(60), cantidad DOUBLE, "
          "fecha DATETIME, usuario VARCHAR(40)"},
    Tabla{"conceptos", "concepto VARCHAR(5) NOT NULL PRIMARY KEY, descrip VARCHAR(60)"},
    Tabla{"impuestos", "impuesto VARCHAR(10) NOT NULL PRIMARY KEY, descrip VARCHAR(60), porcentaje DOUBLE"},
};

constexpr std::array kIndices{
    "CREATE INDEX IF NOT EXISTS oppart_op ON oppart (op)",
    "CREATE INDEX IF NOT EXISTS turnoempleado_turno ON turnoempleado (turno)",
    "CREATE INDEX IF NOT EXISTS horarios_turno ON horarios (turno, fecha)",
    "CREATE INDEX IF NOT EXISTS movimientos_articulo ON movimientos (articulo, almacen)",
    "CREATE INDEX IF NOT EXISTS movimientos_orden ON movimientos (orden)",
    "CREATE INDEX IF NOT EXISTS codigos_op ON codigos (op)",
};

// The average cost. As long as the present cost explains a movement's amount to the half centavo that
// rounding takes or gives (and a hair for the arithmetic), it stays: were it worked out anew each time, the
// rounding left on a small rest of stock would move it. Any other movement makes it total value by total
// quantity over all warehouses. Without stock, or with a negative one, the last cost stays.
constexpr const char* kCostoPromedio =
    "UPDATE prods SET costo = (SELECT SUM(valor) / SUM(cantidad) / 100 FROM existencias WHERE articulo = "
    "NEW.articulo) WHERE articulo = NEW.articulo "
    "AND (SELECT SUM(cantidad) FROM existencias WHERE articulo = NEW.articulo) > 0 "
    "AND (SELECT SUM(valor) FROM existencias WHERE articulo = NEW.articulo) >= 0 AND ";

void Crea(BaseDatos& base) {
  // Binary order with trailing blanks: keys compare the same on every engine.
  const std::string opciones = base.TraeMotor() == Motor::MariaDb
                                   ? " ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_nopad_bin"
                                   : "";
  for (const Tabla& tabla : kTablas)
    base.EjecutaEsquema(std::string("CREATE TABLE IF NOT EXISTS ") + tabla.nombre + " (" + tabla.columnas +
                        ")" + opciones);
  for (const char* indice : kIndices) base.EjecutaEsquema(indice);
  // The component spells this table in two ways, which are two tables to a server that tells capitals apart.
  if (base.TraeMotor() == Motor::MariaDb &&
      ANumero(base.Consulta("SELECT @@lower_case_table_names")->Campo(0)) == 0)
    base.EjecutaEsquema("CREATE OR REPLACE VIEW Op AS SELECT * FROM op");
  const std::string costo = kCostoPromedio;
  base.EjecutaEsquema(
      "CREATE TRIGGER IF NOT EXISTS existencias_primera AFTER INSERT ON existencias FOR EACH ROW BEGIN " +
      costo + "ABS(NEW.valor - NEW.cantidad * costo * 100) > 0.51; END");
  base.EjecutaEsquema(
      "CREATE TRIGGER IF NOT EXISTS existencias_cambio AFTER UPDATE ON existencias FOR EACH ROW BEGIN " +
      costo + "ABS((NEW.valor - OLD.valor) - (NEW.cantidad - OLD.cantidad) * costo * 100) > 0.51; END");
}

bool HayTabla(BaseDatos& base, const std::string& tabla) {
  const std::string literal = Literal(base.TraeMotor(), tabla);
  const auto cuenta =
      base.Consulta(base.TraeMotor() == Motor::Sqlite
                        ? "SELECT COUNT( * ) FROM sqlite_master WHERE type = 'table' AND name = " + literal
                        : "SELECT COUNT( * ) FROM information_schema.tables WHERE table_schema = DATABASE() "
                          "AND table_name = " +
                              literal);
  return ANumero(cuenta->Campo(0)) != 0;
}

/// The version of the schema; 0 when it was never finished.
std::int32_t VersionDe(BaseDatos& base) {
  if (!HayTabla(base, "esquema")) return 0;
  const auto fila = base.Consulta("SELECT version FROM esquema");
  return fila->Eof() ? 0 : AEntero32(fila->Campo(0));
}

void ExigePropia(BaseDatos& base) {
  if (!HayTabla(base, "esquema") && HayTabla(base, "op"))
    throw HostError("La base de datos tiene una tabla op que no es de este anfitrión; no se tocó nada");
}

/// One program at a time makes the schema. SQLite does it in one transaction that starts by locking; a server
/// that ends its transaction at each CREATE gets a lock of its own, held by the connection.
class Exclusiva {
 public:
  explicit Exclusiva(BaseDatos& base) : base_(base) {
    if (base.TraeMotor() == Motor::Sqlite) {
      base.Ejecuta("BEGIN IMMEDIATE");
    } else if (const Value logrado = base.Consulta("SELECT GET_LOCK('zuvi_esquema', 60)")->Campo(0);
               logrado.IsNull() || ANumero(logrado) != 1) {
      throw HostError("Otro programa está preparando la base de datos desde hace un minuto");
    }
  }
  Exclusiva(const Exclusiva&) = delete;
  Exclusiva& operator=(const Exclusiva&) = delete;
  ~Exclusiva() {
    try {
      if (base_.TraeMotor() == Motor::MariaDb)
        base_.Consulta("SELECT RELEASE_LOCK('zuvi_esquema')");
      else if (!confirmada_)
        base_.Ejecuta("ROLLBACK");
    } catch (const HostError&) {
      // The connection is gone, and the lock with it.
    }
  }

  /// Fills the shop; the rows of the whole shop are one transaction on every engine.
  void Llena() {
    if (base_.TraeMotor() == Motor::MariaDb) {
      Transaccion transaccion(base_);
      Filas();
      transaccion.Confirma();
    } else {
      Filas();
      Confirma();
    }
  }
  /// Notes that the schema is up to date.
  void Actualiza() {
    base_.Ejecuta("UPDATE esquema SET version = " + Decimal(kVersion));
    if (base_.TraeMotor() != Motor::MariaDb) Confirma();
  }

 private:
  void Confirma() {
    base_.Ejecuta("COMMIT");
    confirmada_ = true;
  }
  void Filas() {
    LlenaTienda(base_, Fecha::DesdeCivil(Ahora()).SoloDia());
    InsertaFilas(base_, "esquema", "(version)", {{kVersion}});
  }

  BaseDatos& base_;
  bool confirmada_ = false;
};

}  // namespace

bool PreparaEsquema(BaseDatos& base) {
  if (VersionDe(base) >= kVersion) return false;
  ExigePropia(base);
  Exclusiva exclusiva(base);
  // Another program may have been faster.
  const std::int32_t version = VersionDe(base);
  if (version >= kVersion) return false;
  Crea(base);
  if (version > 0)
    exclusiva.Actualiza();
  else
    exclusiva.Llena();
  return version == 0;
}

void RehaceEsquema(BaseDatos& base) {
  ExigePropia(base);
  Exclusiva exclusiva(base);
  for (const Tabla& tabla : kTablas) base.EjecutaEsquema(std::string("DROP TABLE IF EXISTS ") + tabla.nombre);
  Crea(base);
  exclusiva.Llena();
}

void InsertaFilas(BaseDatos& base, const std::string& tabla, const std::string& columnas,
                  const std::vector<std::vector<Value>>& filas) {
  std::string sql;
  for (const auto& fila : filas) {
    sql += sql.empty() ? "INSERT INTO " + tabla + " " + columnas + " VALUES (" : ", (";
    const char* separador = "";
    for (const Value& valor : fila) {
      sql += separador + Literal(base.TraeMotor(), valor);
      separador = ", ";
    }
    sql += ")";
  }
  if (!sql.empty()) base.Ejecuta(sql);
}

}  // namespace zuvi::host
