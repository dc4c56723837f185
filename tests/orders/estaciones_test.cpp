// Two stations on one database: an order is open for modification at one of them at a time, and a station
// that died does not keep it for ever.
#include <sys/socket.h>

#include <array>
#include <csignal>

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

void SeTurnanLaOrden(const std::string& base) {
  // A station in a process of its own, there before this process opens the database. It will die at work.
  std::array<int, 2> extremos{};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, extremos.data()), 0);
  const pid_t aparte = Hijo([&] {
    // Whatever becomes of the test, it does not stay behind.
    alarm(60);
    char paso = 0;
    if (read(extremos[1], &paso, 1) != 1) return 1;
    Estacion raul(base, "RAUL");
    paso = raul.Modifica() ? 'A' : 'N';
    if (write(extremos[1], &paso, 1) != 1) return 1;
    pause();
    return 0;
  });
  close(extremos[1]);
  Estacion lucia(base, "LUCIA"), raul(base, "RAUL"), otra_de_raul(base, "RAUL");
  const std::string ocupada = TextoMensaje(756, "es") + " RAUL " + TextoMensaje(76, "es") + "\n";

  const auto de_raul = raul.Modifica();
  ASSERT_TRUE(de_raul);
  EXPECT_EQ(lucia.Ocupado(), 1);
  EXPECT_EQ(lucia.Modifica(), nullptr);
  EXPECT_EQ(lucia.Mensajes(), ocupada);
  EXPECT_EQ(otra_de_raul.Modifica(), nullptr);
  EXPECT_EQ(otra_de_raul.Mensajes(), TextoMensaje(755, "es") + "\n");
  EXPECT_TRUE(de_raul->Unload());

  const auto de_lucia = lucia.Modifica();
  ASSERT_TRUE(de_lucia);
  EXPECT_EQ(lucia.Mensajes(), "");
  EXPECT_EQ(raul.Ocupado(), 1);
  EXPECT_TRUE(de_lucia->Unload());
  EXPECT_EQ(raul.Ocupado(), 0);

  char paso = '.';
  ASSERT_EQ(write(extremos[0], &paso, 1), 1);
  ASSERT_EQ(read(extremos[0], &paso, 1), 1);
  ASSERT_EQ(paso, 'A');
  kill(aparte, SIGKILL);
  Espera(aparte);
  close(extremos[0]);
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
