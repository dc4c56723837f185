' A host that does nothing but open a window of the module and pump, or take a kit apart: the hands are somebody else's.
Dim produccion
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set produccion.Ambiente = Ambiente
If WScript.Arguments(0) = "crea" Then
  Dim conexion
  Set conexion = Ambiente.Conexion
  WScript.Quit 0
ElseIf WScript.Arguments(0) = "turnos" Then
  produccion.MuestraTurnos
ElseIf WScript.Arguments(0) = "desarma" Then
  produccion.Desensamble WScript.Arguments(1), 1, 1
  WScript.Echo "fin"
  WScript.Quit 0
Else
  produccion.ModificaOp WScript.Arguments(0)
End If
Do
  WScript.Sleep 1000
Loop
