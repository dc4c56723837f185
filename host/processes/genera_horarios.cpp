#include "host/processes/genera_horarios.h"

#include <array>

#include "host/odbc/retry.h"
#include "host/processes/turno_elegido.h"
#include "host/shop/folios.h"

namespace zuvi::host {
namespace {

/// The names under which `turnos.descanso` keeps the days, Sunday first.
constexpr std::array kDias{"Dimingo", "Lunes", "Martes", "Miercoles", "Jueves", "Viernes", "Sabado"};

const char* DiaDeLaSemana(const Date& fecha) {
  // Day 1 of the calendar, 31-12-1899, was a Sunday.
  const auto dia = static_cast<std::int64_t>(fecha.DayOnly().Serial()) - 1;
  return kDias[static_cast<std::size_t>(((dia % 7) + 7) % 7)];
}

/// A property of the window's control, by name.
Value Lee(const ObjectPtr& objeto, std::initializer_list<const char*> camino) {
  Value valor = objeto;
  for (const char* nombre : camino) {
    const ObjectPtr paso = ToObject(valor);
    if (!paso) return {};
    valor = paso->Call(nombre);
  }
  return valor;
}

bool SigueAbierta(Object& ventana) {
  // One of another make may not tell.
  return !ventana.Find("Visible") || ToBool(ventana.Call("Visible"));
}

/// Which members of which shifts; the same part of every statement.
struct Alcance {
  std::string miembros, del_turno;
};

Alcance AlcanceDe(BaseDatos& base, const std::string& turno) {
  return {
      " FROM turnos INNER JOIN (SELECT DISTINCT turno, empleado FROM turnoempleado WHERE empleado IS NOT "
      "NULL) miembros ON miembros.turno = turnos.turno",
      turno.empty() ? "" : " AND turnos.turno = " + Literal(base.GetEngine(), turno)};
}

/// Adds what one day lacks; returns how many rows.
std::int64_t GeneraDia(BaseDatos& base, const Alcance& alcance, std::int32_t cuantos, const Date& fecha) {
  const std::string dia = LiteralFecha(base.GetEngine(), fecha);
  return WithRetry([&]() -> std::int64_t {
    Transaccion transaccion(base);
    // Numbers come first: two stations generate one after the other.
    const std::int32_t anterior = TomaFoliosEn(transaccion, "horarios", cuantos) - cuantos;
    // Those who have their row are looked up as one set, which an engine reads once; a join it may read once
    // for each member.
    const std::int64_t nuevos = base.Ejecuta(
        "INSERT INTO horarios (id, turno, fecha, Empleado, HoraEntrada, comida, HoraSalida) SELECT " +
        Decimal(anterior) +
        " + ROW_NUMBER() OVER (ORDER BY turnos.turno, miembros.empleado), turnos.turno, " + dia +
        ", miembros.empleado, turnos.entrada, turnos.comida, turnos.salida" + alcance.miembros +
        " WHERE (turnos.turno, miembros.empleado) NOT IN (SELECT horarios.turno, horarios.Empleado FROM "
        "turnos INNER JOIN horarios ON horarios.turno = turnos.turno AND horarios.fecha = " +
        dia + " WHERE horarios.Empleado IS NOT NULL" + alcance.del_turno +
        ") AND (turnos.descanso IS NULL OR turnos.descanso <> " +
        Literal(base.GetEngine(), std::string(DiaDeLaSemana(fecha))) + ")" + alcance.del_turno);
    if (nuevos == 0) return 0;
    // Members may have come or gone since they were counted; nobody else takes numbers meanwhile.
    if (nuevos != cuantos) TomaFoliosEn(transaccion, "horarios", static_cast<std::int32_t>(nuevos) - cuantos);
    transaccion.Confirma();
    return nuevos;
  });
}

/// A process that runs once at a time.
class EnCurso {
 public:
  EnCurso(Anfitrion& anfitrion, std::string clave)
      : anfitrion_(anfitrion), clave_(std::move(clave)), unico_(anfitrion.Empieza(clave_)) {}
  EnCurso(const EnCurso&) = delete;
  EnCurso& operator=(const EnCurso&) = delete;
  ~EnCurso() {
    if (unico_) anfitrion_.Termina(clave_);
  }
  bool Unico() const { return unico_; }

 private:
  Anfitrion& anfitrion_;
  std::string clave_;
  bool unico_;
};

std::string DelAl(const Date& desde, std::int32_t dias) {
  return "del " + desde.Formatea("dd-MM-yyyy") + " al " + desde.PlusDays(dias - 1).Formatea("dd-MM-yyyy");
}

/// What the user is told at the end.
std::string Resumen(const std::string& turno, const Periodo& periodo, const Generados& generados) {
  const std::string de_quien = turno.empty() ? std::string("Todos los turnos") : "Turno " + turno;
  const std::string nuevos = NumberText(static_cast<double>(generados.renglones));
  if (generados.dias == periodo.dias)
    return de_quien + ", " + DelAl(periodo.desde, periodo.dias) + ": horarios nuevos " + nuevos;
  if (generados.dias == 0)
    return de_quien + ": se canceló antes del primer día; no se generó ningún horario.";
  return de_quien + ": se canceló. Quedaron completos los días " + DelAl(periodo.desde, generados.dias) +
         ", con horarios nuevos " + nuevos + ". Para los demás, genere el mismo periodo otra vez.";
}

}  // namespace

Periodo PeriodoDe(const std::string& nombre, const Date& desde) {
  const Date dia = desde.DayOnly();
  if (nombre == "Día") return {dia, 1};
  if (nombre == "Semana") return {dia, 7};
  if (nombre == "Mes") return {dia, static_cast<std::int32_t>(dia.PlusMonths(1).Serial() - dia.Serial())};
  throw HostError("No hay un periodo \"" + nombre + "\"");
}

Generados GeneraHorarios(Anfitrion& anfitrion, const std::string& turno, const Periodo& periodo,
                         const std::function<bool()>& sigue) {
  // Held: while windows answer, the host may turn to another database.
  const std::shared_ptr<BaseDatos> base = anfitrion.Base();
  const Alcance alcance = AlcanceDe(*base, turno);
  const std::int32_t cuantos = ToInt32(
      base->Consulta("SELECT COUNT( * )" + alcance.miembros + " WHERE 1 = 1" + alcance.del_turno)->Campo(0));
  Generados generados;
  if (cuantos == 0) return {0, periodo.dias};
  const auto progreso = anfitrion.AbreProgreso(periodo.dias, "Generando horarios", "");
  while (generados.dias < periodo.dias) {
    const Date fecha = periodo.desde.PlusDays(generados.dias);
    progreso->Avanza(generados.dias + 1, fecha.Formatea("dd-MM-yyyy"), DiaDeLaSemana(fecha));
    if (!anfitrion.Usuario().AtiendeVentanas() || anfitrion.Usuario().Cancelado() || (sigue && !sigue()))
      break;
    generados.renglones += GeneraDia(*base, alcance, cuantos, fecha);
    ++generados.dias;
  }
  return generados;
}

void ProcesoHorarios(Anfitrion& anfitrion, PeticionProceso& peticion) {
  const ObjectPtr ventana = peticion.objeto;
  if (!ventana) throw HostError(ErrorNumber::ObjectNotSet);
  const EnCurso este(anfitrion, peticion.clave);
  if (!este.Unico()) {
    anfitrion.Mensaje("Ya se están generando horarios. Espere a que terminen o cancele.",
                      EstiloMensaje::Informacion);
    return;
  }
  // Whatever was cancelled before is no cancellation of this.
  anfitrion.NuevaOperacion();
  const std::string nombre = ToText(Lee(ventana, {"Combo1", "Text"}));
  if (nombre.empty()) {
    anfitrion.Mensaje("Elija el periodo: día, semana o mes", EstiloMensaje::Informacion);
    return;
  }
  const std::string turno = TurnoElegido(*ventana);
  const Periodo periodo = PeriodoDe(nombre, ToDate(Lee(ventana, {"MonthView1", "Value"})));
  if (turno.empty() &&
      !anfitrion.Pregunta("No hay un turno seleccionado. ¿Desea generar los horarios de todos "
                          "los turnos, " +
                          DelAl(periodo.desde, periodo.dias) + "?"))
    return;
  const Generados generados =
      GeneraHorarios(anfitrion, turno, periodo, [&ventana] { return SigueAbierta(*ventana); });
  anfitrion.Mensaje(Resumen(turno, periodo, generados), EstiloMensaje::Informacion);
}

}  // namespace zuvi::host
