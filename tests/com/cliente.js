// The same from the other script language. The last line is the verdict.
var fallas = 0;
function exige(que, cierto) {
  if (!cierto) {
    fallas++;
    WScript.Echo("mal: " + que);
  }
}
function numero(f) {
  try {
    f();
  } catch (e) {
    return e.number & 0xFFFF;
  }
  return 0;
}

var p = new ActiveXObject("ZuviProduccion.Produccion.1");
var entorno = { nombre: "entorno" };
p.Ambiente = entorno;
exige("identidad", p.Ambiente === entorno);
p.Parent = entorno;
exige("identidad de Parent", p.Parent === entorno);
exige("silencio", p.CancelaOp(120) === false);
exige("con texto", p.CancelaOp("7") === false);
exige("sin conexión no abre ni avisa", numero(function () { p.NuevaOp(); }) === 0);
exige("faltan argumentos", numero(function () { p.CancelaOp(); }) !== 0);
exige("sobran argumentos", numero(function () { p.CancelaOp(1, 2); }) !== 0);
p = null;
if (fallas === 0) WScript.Echo("bien");
WScript.Quit(fallas);
