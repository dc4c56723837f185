#include "host/win32/clase_recordset.h"

#include <utility>

#include "automation/class_factory.h"
#include "win32/image.h"

namespace zuvi::host {
namespace {

/// ADO's class of record sets, by its well-known identifier.
constexpr CLSID kClsidRecordset = {
    0x00000535, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};

}  // namespace

/// Goes with the published factory. COM lets go of that one by itself when the apartment ends.
struct ClaseRecordset::Centinela {
  ~Centinela() {
    if (avisa) avisa();
  }
  std::function<void()> avisa;
};

ClaseRecordset::ClaseRecordset(ComServer& servidor, Crea crea, std::function<void()> al_terminar)
    : servidor_(servidor), crea_(std::move(crea)), al_terminar_(std::move(al_terminar)) {}

void ClaseRecordset::Publica() noexcept {
  if (registro_ != 0) return;
  // COM lets go of it when it takes the apartment down; this DLL may have been taken out of memory before.
  PinImage();
  try {
    const auto centinela = std::make_shared<Centinela>();
    const auto fabrica = NewCounted<IClassFactory, ClassFactory>(
        servidor_,
        ClassFactory::Maker([crea = crea_, centinela](IUnknown* exterior, REFIID iid, void** salida) {
          return crea(exterior, iid, salida);
        }));
    if (FAILED(CoRegisterClassObject(kClsidRecordset, fabrica.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                     &registro_))) {
      registro_ = 0;
      return;
    }
    centinela->avisa = [this] {
      registro_ = 0;
      del_sistema_ = {};
      const auto avisa = al_terminar_;  // which may take this down
      avisa();
    };
    centinela_ = centinela;
  } catch (...) {
    // Out of memory: the next object of the host tries again.
  }
}

void ClaseRecordset::Retira() noexcept {
  // Someone may hold the factory longer than the publication.
  if (const auto centinela = centinela_.lock()) centinela->avisa = nullptr;
  centinela_.reset();
  if (registro_ != 0) CoRevokeClassObject(std::exchange(registro_, 0));
}

HRESULT ClaseRecordset::CreaDelSistema(IUnknown* exterior, REFIID iid, void** salida) noexcept {
  if (!del_sistema_) {
    // For a moment the apartment is what it would be without us.
    struct Aparte {
      explicit Aparte(ClaseRecordset& clase) : clase_(clase), publicada_(clase.registro_ != 0) {
        clase_.Retira();
      }
      Aparte(const Aparte&) = delete;
      Aparte& operator=(const Aparte&) = delete;
      ~Aparte() {
        if (publicada_) clase_.Publica();
      }
      ClaseRecordset& clase_;
      bool publicada_;
    };
    const Aparte aparte(*this);
    ComPtr<IClassFactory> fabrica;  // another call may come in meanwhile, and be faster
    const HRESULT hallada = CoGetClassObject(kClsidRecordset, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                             nullptr, IID_IClassFactory, fabrica.put_void());
    if (FAILED(hallada)) return hallada;
    PinImageOf(*reinterpret_cast<void**>(fabrica.get()));
    del_sistema_ = std::move(fabrica);
  }
  const ComPtr<IClassFactory> fabrica = del_sistema_;
  return fabrica->CreateInstance(exterior, iid, salida);
}

}  // namespace zuvi::host
