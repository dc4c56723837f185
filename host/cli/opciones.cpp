#include "host/cli/opciones.h"

#include <CLI/CLI.hpp>
#include <cctype>
#include <string_view>

namespace zuvi::cli {
namespace {

/// The words in the order in which the library takes them, the last one first. It would take what follows
/// "--base=" for the value that is missing there.
std::vector<std::string> AlReves(int argc, char** argv) {
  std::vector<std::string> palabras;
  for (int i = argc - 1; i > 0; --i) {
    std::string palabra = argv[i];
    if (palabra.starts_with("--") && palabra.find('=') == palabra.size() - 1) {
      palabras.emplace_back();
      palabra.pop_back();
    }
    palabras.push_back(std::move(palabra));
  }
  return palabras;
}

/// What the library finds wrong with an option: the text begins with the option's name.
MalUso ConOpcion(const CLI::ArgumentMismatch& error) {
  std::string_view texto = error.what();
  const bool lleva_valor = texto.ends_with("override");
  texto.remove_prefix(texto.find_first_not_of('-'));
  return MalUso("La opción --" + std::string(texto.substr(0, texto.find_first_of(": "))) +
                (lleva_valor ? " no se conoce o no lleva valor" : " necesita un valor"));
}

/// What is no option: the command and its arguments. A negative number is an argument, and so is everything
/// behind "--".
void LeeComando(const std::vector<std::string>& palabras, LineaDeOrdenes& linea) {
  bool solo_argumentos = false;
  for (const std::string& palabra : palabras) {
    const bool opcion = palabra.size() > 1 && palabra[0] == '-' &&
                        std::isdigit(static_cast<unsigned char>(palabra[1])) == 0 && !solo_argumentos;
    if (opcion && palabra == "--")
      solo_argumentos = true;
    else if (const auto igual = palabra.find('='); opcion && palabra[1] == '-' && igual != palabra.npos)
      throw MalUso("La opción " + palabra.substr(0, igual) + " no se conoce o no lleva valor");
    else if (opcion)
      throw MalUso("No se conoce la opción " + palabra);
    else if (linea.comando.empty())
      linea.comando = palabra;
    else
      linea.argumentos.push_back(palabra);
  }
}

}  // namespace

LineaDeOrdenes LeeLinea(int argc, char** argv) {
  LineaDeOrdenes linea;
  CLI::App app;
  app.allow_extras()->set_help_flag();  // the help is ours
  const auto texto = [&app](const char* nombre, std::string& valor, const char* variable) {
    app.add_option(nombre, valor)->take_last()->envname(variable);
  };
  texto("--base", linea.base, "ZUVI_BASE");
  texto("--usuario", linea.usuario, "ZUVI_USUARIO");
  texto("--idioma", linea.idioma, "ZUVI_IDIOMA");
  texto("--reportes", linea.reportes, "ZUVI_REPORTES");
  texto("--traza", linea.traza, "");
  const auto bandera = [&app](const char* nombre, bool& valor) {
    return app.add_flag(nombre, valor)->disable_flag_override();
  };
  bool respuesta = false;
  const CLI::Option* responde = bandera("--si,!--no", respuesta);
  bandera("--vacia", linea.vacia);
  bandera("-h,--help", linea.ayuda);
  bandera("--version", linea.version);
  try {
    app.parse(AlReves(argc, argv));
  } catch (const CLI::ArgumentMismatch& error) {
    throw ConOpcion(error);
  }
  if (responde->count() > 0) linea.respuesta = respuesta;
  LeeComando(app.remaining(), linea);
  if (linea.vacia && linea.comando != "crea") throw MalUso("La opción --vacia es del comando crea");
  if (linea.idioma != "es" && linea.idioma != "en") throw MalUso("El idioma debe ser es o en");
  return linea;
}

}  // namespace zuvi::cli
