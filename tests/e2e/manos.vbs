' A host that does nothing but open a window of the module and pump: the hands are somebody else's.
Dim produccion
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set produccion.Ambiente = Ambiente
If WScript.Arguments(0) = "turnos" Then
  produccion.MuestraTurnos
Else
  produccion.ModificaOp WScript.Arguments(0)
End If
Do
  WScript.Sleep 1000
Loop
