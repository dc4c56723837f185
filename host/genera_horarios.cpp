#include "host/genera_horarios.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "host/folios.h"

namespace zuvi::host {
namespace {

/// The names under which `turnos.descanso` keeps the days, Sunday first.
constexpr std::array kDias{"Dimingo", "Lunes", "Martes", "Miercoles", "Jueves", "Viernes", "Sabado"};

Fecha MasDias(const Fecha& fecha, std::int32_t dias) { return Fecha::DesdeSerie(fecha.Serie() + dias); }

const char* DiaDeLaSemana(const Fecha& fecha) {
  // Day 1 of the calendar, 31-12-1899, was a Sunday.
  const auto dia = static_cast<std::int64_t>(fecha.SoloDia().Serie()) - 1;
  return kDias[static_cast<std::size_t>(((dia % 7) + 7) % 7)];
}

std::int32_t DiasHastaElMesSiguiente(const Fecha& desde) {
  namespace ch = std::chrono;
  const FechaCivil c = desde.Civil();
  const ch::year_month mes{ch::year{c.anio}, ch::month{static_cast<unsigned>(c.mes)}};
  const ch::year_month siguiente = mes + ch::months{1};
  const auto ultimo = static_cast<unsigned>((siguiente / ch::last).day());
  const auto dia = ch::day{std::min(static_cast<unsigned>(c.dia), ultimo)};
  return static_cast<std::int32_t>(
      (ch::sys_days{siguiente / dia} - ch::sys_days{mes / ch::day{static_cast<unsigned>(c.dia)}}).count());
}

/// A property of the window's control, by name.
Value Lee(const ObjectPtr& objeto, std::initializer_list<const char*> camino) {
  Value valor = objeto;
  for (const char* nombre : camino) {
    const ObjectPtr paso = AObjeto(valor);
    if (!paso) return {};
    valor = paso->Call(nombre);
  }
  return valor;
}

}  // namespace

Periodo PeriodoDe(const std::string& nombre, const Fecha& desde) {
  const Fecha dia = desde.SoloDia();
  if (nombre == "Día") return {dia, 1};
  if (nombre == "Semana") return {dia, 7};
  if (nombre == "Mes") return {dia, DiasHastaElMesSiguiente(dia)};
  throw HostError("No hay un periodo \"" + nombre + "\"");
}

std::int64_t GeneraHorarios(Anfitrion& anfitrion, const std::string& turno, const Periodo& periodo) {
  BaseDatos& base = *anfitrion.Base();
  const Motor motor = base.TraeMotor();
  const std::string del_turno = turno.empty() ? "" : " AND turnos.turno = " + Literal(motor, turno);
  const std::string miembros =
      " FROM turnos INNER JOIN (SELECT DISTINCT turno, empleado FROM turnoempleado) miembros "
      "ON miembros.turno = turnos.turno";
  const auto cuenta = base.Consulta("SELECT COUNT( * )" + miembros + " WHERE 1 = 1" + del_turno);
  const double renglones = ANumero(cuenta->Campo(0)) * periodo.dias;
  if (renglones == 0) return 0;
  const std::int32_t bloque = RedondeaA32(renglones);
  // Numbers left over because rows exist already are lost; they need only be unique.
  std::int32_t anterior = TomaFolios(base, "horarios", bloque) - bloque;

  const auto progreso = anfitrion.AbreProgreso(periodo.dias, "Generando horarios", "");
  Transaccion transaccion(base);
  std::int64_t agregados = 0;
  for (std::int32_t n = 0; n < periodo.dias; ++n) {
    const Fecha fecha = MasDias(periodo.desde, n);
    progreso->Avanza(n + 1, fecha.Formatea("dd-MM-yyyy"), DiaDeLaSemana(fecha));
    anfitrion.ExigeNoCancelado();
    const std::string dia = LiteralFecha(motor, fecha);
    const std::int64_t hoy = base.Ejecuta(
        "INSERT INTO horarios (id, turno, fecha, Empleado, HoraEntrada, comida, HoraSalida) SELECT " +
        Decimal(anterior) +
        " + ROW_NUMBER() OVER (ORDER BY turnos.turno, miembros.empleado), turnos.turno, " + dia +
        ", miembros.empleado, turnos.entrada, turnos.comida, turnos.salida" + miembros +
        " LEFT JOIN horarios ON horarios.turno = turnos.turno AND horarios.fecha = " + dia +
        " AND horarios.Empleado = miembros.empleado WHERE horarios.id IS NULL AND (turnos.descanso IS NULL "
        "OR turnos.descanso <> " +
        Literal(motor, std::string(DiaDeLaSemana(fecha))) + ")" + del_turno);
    agregados += hoy;
    anterior += static_cast<std::int32_t>(hoy);
  }
  transaccion.Confirma();
  return agregados;
}

void ProcesoHorarios(Anfitrion& anfitrion, PeticionProceso& peticion) {
  const ObjectPtr& ventana = peticion.objeto;
  if (!ventana) throw HostError(ErrorNumber::ObjectNotSet);
  const std::string nombre = ATexto(Lee(ventana, {"Combo1", "Text"}));
  if (nombre.empty()) {
    anfitrion.Mensaje("Elija el periodo: día, semana o mes", EstiloMensaje::Informacion);
    return;
  }
  Value indice = std::int32_t{0};
  const Value elegido = AObjeto(ventana->Call("lv", std::span(&indice, 1)))->Call("SelectedItem");
  std::string turno;
  if (elegido.IsObject() && AObjeto(elegido)) turno = ATexto(AObjeto(elegido)->Call("Key")).substr(1);
  const Fecha desde = AFecha(Lee(ventana, {"MonthView1", "Value"}));
  const Periodo periodo = PeriodoDe(nombre, desde);
  const std::int64_t agregados = GeneraHorarios(anfitrion, turno, periodo);
  anfitrion.Mensaje((turno.empty() ? std::string("Todos los turnos") : "Turno " + turno) + ", del " +
                        periodo.desde.Formatea("dd-MM-yyyy") + " al " +
                        MasDias(periodo.desde, periodo.dias - 1).Formatea("dd-MM-yyyy") +
                        ": horarios nuevos " + TextoDeNumero(static_cast<double>(agregados)),
                    EstiloMensaje::Informacion);
}

}  // namespace zuvi::host
