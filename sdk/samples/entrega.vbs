' Entrega el producto terminado de una orden.   cscript entrega.vbs 120
Option Explicit
Dim ambiente, produccion
If WScript.Arguments.Count <> 1 Then
  WScript.Echo "uso: cscript entrega.vbs <orden>"
  WScript.Quit 2
End If
Set ambiente = CreateObject("ZuviEnviroment.Ambiente")
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set produccion.Ambiente = ambiente
produccion.EntregaProductoTerminado CLng(WScript.Arguments(0))
WScript.Echo "Orden " & WScript.Arguments(0) & " entregada."
