// The same from the other script language, whose objects are set by a plain assignment. The last line is the
// verdict.
function falla(f) {
  try {
    f();
    return false;
  } catch (e) {
    return true;
  }
}

var p = new ActiveXObject("ZuviProduccion.Produccion.1");
var entorno = { nombre: "entorno" };
p.Ambiente = entorno;
p.Parent = entorno;
var bien = p.Ambiente === entorno && p.Parent === entorno && p.CancelaOp("7") === false &&
  !falla(function () { p.NuevaOp(); }) && falla(function () { p.CancelaOp(); }) &&
  falla(function () { p.CancelaOp(1, 2); });
WScript.Echo(bien ? "bien" : "mal");
