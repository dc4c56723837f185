// Cancela una orden; el componente pregunta antes.   cscript cancela.js 120
var produccion = new ActiveXObject("ZuviProduccion.Produccion");
produccion.Ambiente = new ActiveXObject("ZuviEnviroment.Ambiente");
WScript.Echo(produccion.CancelaOp(Number(WScript.Arguments(0))) ? "cancelada" : "sin cambio");
