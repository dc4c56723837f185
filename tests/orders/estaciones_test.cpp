// Two stations on one database: an order is open for modification at one of them at a time, and a station
// that died does not keep it for ever.
#include <array>
#include <csignal>
#include <utility>

#include "host/mensajes.h"
#include "host/ocupadas.h"
#include "orders/frm_op.h"
#include "tests/host/procesos.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

constexpr std::int32_t kOrden = 110;  // last saved by RAUL

class Estacion : public Tienda {
 public:
  Estacion(const std::string& base, const std::string& usuario) : Tienda(AnfitrionEn(base, usuario)) {}
  /// The editor that was opened; null when the order was refused.
  std::shared_ptr<Form> Modifica() {
    Mensajes();
    produccion->ModificaOp(kOrden);
    return escritorio.Forms().empty() ? nullptr : escritorio.Forms().back();
  }
  std::string Mensajes() { return anfitrion->TomaRegistro(); }
  double Ocupado() { return Numero("SELECT ocupado FROM op WHERE op = " + Decimal(kOrden)); }
};

/// RAUL's station in a process of its own. To be started before the own process opens the database.
class EstacionAparte {
 public:
  explicit EstacionAparte(const std::string& base) {
    if (pipe(ordenes_.data()) != 0 || pipe(respuestas_.data()) != 0) throw HostError("pipe");
    pid_ = Hijo([&] {
      // Whatever becomes of the test, no station stays behind.
      alarm(60);
      Recibe(ordenes_);
      Estacion estacion(base, "RAUL");
      const auto ventana = estacion.Modifica();
      Manda(respuestas_, ventana ? 'A' : 'N');
      Recibe(ordenes_);
      Manda(respuestas_, ventana && ventana->Unload() ? 'C' : 'N');
      return 0;
    });
  }
  EstacionAparte(const EstacionAparte&) = delete;
  EstacionAparte& operator=(const EstacionAparte&) = delete;
  ~EstacionAparte() {
    Mata();
    for (const int extremo : {ordenes_[0], ordenes_[1], respuestas_[0], respuestas_[1]}) close(extremo);
  }
  /// Goes on to its next step: opens the order ('A'), then closes it ('C').
  char Sigue() {
    Manda(ordenes_, '.');
    return Recibe(respuestas_);
  }
  void Mata() {
    if (pid_ == 0) return;
    kill(pid_, SIGKILL);
    Espera(std::exchange(pid_, 0));
  }

 private:
  using Tubo = std::array<int, 2>;
  static void Manda(const Tubo& tubo, char c) {
    if (write(tubo[1], &c, 1) != 1) throw HostError("write");
  }
  static char Recibe(const Tubo& tubo) {
    char c = 0;
    return read(tubo[0], &c, 1) == 1 ? c : '?';
  }
  Tubo ordenes_{}, respuestas_{};
  pid_t pid_ = 0;
};

void SeTurnanLaOrden(const std::string& base) {
  EstacionAparte una(base), otra(base);
  Estacion lucia(base, "LUCIA"), raul(base, "RAUL");
  const std::string ocupada = TextoMensaje(756, "es") + " RAUL " + TextoMensaje(76, "es") + "\n";

  ASSERT_EQ(una.Sigue(), 'A');
  EXPECT_EQ(lucia.Ocupado(), 1);
  EXPECT_EQ(lucia.Modifica(), nullptr);
  EXPECT_EQ(lucia.Mensajes(), ocupada);
  EXPECT_EQ(raul.Modifica(), nullptr);
  EXPECT_EQ(raul.Mensajes(), TextoMensaje(755, "es") + "\n");

  ASSERT_EQ(una.Sigue(), 'C');
  EXPECT_EQ(lucia.Ocupado(), 0);
  const auto ventana = lucia.Modifica();
  ASSERT_TRUE(ventana);
  EXPECT_EQ(lucia.Mensajes(), "");
  EXPECT_EQ(raul.Ocupado(), 1);
  EXPECT_TRUE(ventana->Unload());
  EXPECT_EQ(raul.Ocupado(), 0);

  ASSERT_EQ(otra.Sigue(), 'A');
  otra.Mata();
  EXPECT_EQ(lucia.Ocupado(), 1);
  EXPECT_EQ(lucia.Modifica(), nullptr);
  EXPECT_EQ(lucia.Mensajes(), ocupada);
  EXPECT_TRUE(LiberaOrden(lucia.Base(), kOrden, "LUCIA"));
  EXPECT_FALSE(LiberaOrden(lucia.Base(), kOrden, "LUCIA"));
  const auto liberada = lucia.Modifica();
  ASSERT_TRUE(liberada);
  EXPECT_TRUE(liberada->Unload());
}

TEST(DosEstaciones, SeTurnanUnaOrdenEnUnArchivo) {
  const Archivo archivo("zuvi_dos_estaciones.db");
  Estacion(archivo.Texto(), "ADMIN");
  SeTurnanLaOrden(archivo.Texto());
}

TEST(DosEstaciones, SeTurnanUnaOrdenEnElServidor) {
  const char* servidor = std::getenv("ZUVI_MARIADB");
  if (!servidor || !*servidor) GTEST_SKIP() << "ZUVI_MARIADB is not set";
  { Tienda nueva(servidor); }
  SeTurnanLaOrden(servidor);
}

}  // namespace
}  // namespace zuvi::host
