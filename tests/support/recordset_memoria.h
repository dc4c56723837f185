// Rows of the memory host as a record set, by type and by name.
#pragma once

#include <memory>
#include <string>

#include "base/text.h"
#include "component/services/acceso_datos.h"
#include "tests/support/anfitrion_memoria.h"

namespace zuvi::pruebas {

/// ADO's Field, for a record set called by name.
class CampoMemoria final : public EnMemoria<Object> {
 public:
  CampoMemoria(Mundo& mundo, Value valor) : EnMemoria(mundo, "Field"), valor_(std::move(valor)) {}
  Value Valor() const { return valor_; }
  const MemberTable* Members() const override {
    static const MemberTable tabla =
        MemberTable::Of<CampoMemoria>().Property<&CampoMemoria::Valor>("Value").AsDefault();
    return &tabla;
  }

 private:
  Value valor_;
};

class RecordsetMemoria final : public EnMemoria<Recordset> {
 public:
  RecordsetMemoria(Mundo& mundo, Filas filas) : EnMemoria(mundo, "Recordset"), filas_(std::move(filas)) {}
  bool Eof() override {
    mundo_.LlamaCallada();
    return actual_ >= filas_.size();
  }
  void MoveNext() override {
    mundo_.LlamaCallada();
    if (actual_ >= filas_.size()) throw HostError("MoveNext past the end");
    ++actual_;
  }
  Value Campo(FixedText nombre) override { return Campo(Value(nombre.text)); }
  Value Campo(std::int32_t ordinal) override { return Campo(Value(ordinal)); }
  void PonCursorType(std::int32_t tipo) override { mundo_.Llama("CursorType", tipo); }
  void PonLockType(std::int32_t tipo) override { mundo_.Llama("LockType", tipo); }
  void Open(const std::string& fuente, const std::shared_ptr<Conexion>& conexion, std::int32_t cursor,
            std::int32_t bloqueo, std::int32_t opciones) override {
    mundo_.Llama("Open", fuente, Value(conexion), cursor, bloqueo, opciones);
    filas_ = mundo_.tablas[fuente];
    actual_ = 0;
  }
  const MemberTable* Members() const override {
    using Yo = RecordsetMemoria;
    static const MemberTable tabla =
        MemberTable::Of<Yo>()
            .Property<&Yo::Eof>("EOF")
            .Property<&Yo::Fields>("Fields")
            .Method<&Yo::MoveNext>("MoveNext")
            .Property<&Yo::SoloEscritura, &Yo::PonCursorType>("CursorType")
            .Property<&Yo::SoloEscritura, &Yo::PonLockType>("LockType")
            .Method<&Yo::Open>("Open", {"fuente", "conexion", "cursor", "bloqueo", "opciones"});
    return &tabla;
  }

  Value Campo(const Value& indice) {
    mundo_.LlamaCallada();
    if (actual_ >= filas_.size())
      throw HostError("Either BOF or EOF is True, or the current record has been deleted.");
    const Fila& fila = filas_[actual_];
    if (const auto* ordinal = std::get_if<std::int32_t>(&indice.Get()))
      return fila.at(static_cast<std::size_t>(*ordinal)).second;
    const std::string nombre = ATexto(indice);
    for (const auto& [columna, valor] : fila)
      if (IgualSinCaso(columna, nombre)) return valor;
    throw HostError("Item cannot be found: " + nombre);
  }

 private:
  std::int32_t SoloEscritura() { throw HostError("sólo se escribe"); }
  ObjectPtr Fields();
  Filas filas_;
  std::size_t actual_ = 0;
};

/// ADO's Fields.
class CamposMemoria final : public EnMemoria<Object> {
 public:
  CamposMemoria(Mundo& mundo, std::shared_ptr<RecordsetMemoria> filas)
      : EnMemoria(mundo, "Fields"), filas_(std::move(filas)) {}
  ObjectPtr Item(const Value& indice) {
    return std::make_shared<CampoMemoria>(mundo_, filas_->Campo(indice));
  }
  const MemberTable* Members() const override {
    static const MemberTable tabla =
        MemberTable::Of<CamposMemoria>().Property<&CamposMemoria::Item>("Item", {"Index"}).AsDefault();
    return &tabla;
  }

 private:
  std::shared_ptr<RecordsetMemoria> filas_;
};

inline ObjectPtr RecordsetMemoria::Fields() {
  return std::make_shared<CamposMemoria>(mundo_,
                                         std::static_pointer_cast<RecordsetMemoria>(shared_from_this()));
}

}  // namespace zuvi::pruebas
