// The tables of the schema, the same text for every engine but for the table options. Column names keep the
// capitals under which they are read; engines look them up without regard to case.
#pragma once

#include <array>

namespace zuvi::host {

/// A table's name and the list of its columns, as CREATE TABLE takes it.
struct Tabla {
  const char* nombre;
  const char* columnas;
};

// "esquema" comes first and gets its row last: a table without the row is the mark of an attempt that broke
// off. A database of an earlier version gets the tables that it lacks; what a version adds is whole tables.
inline constexpr std::array kTablas{
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

inline constexpr std::array kIndices{
    "CREATE INDEX IF NOT EXISTS oppart_op ON oppart (op)",
    "CREATE INDEX IF NOT EXISTS turnoempleado_turno ON turnoempleado (turno)",
    "CREATE INDEX IF NOT EXISTS horarios_turno ON horarios (turno, fecha)",
    "CREATE INDEX IF NOT EXISTS movimientos_articulo ON movimientos (articulo, almacen)",
    "CREATE INDEX IF NOT EXISTS movimientos_orden ON movimientos (orden)",
    "CREATE INDEX IF NOT EXISTS codigos_op ON codigos (op)",
};

}  // namespace zuvi::host
