' A script without a host: what the component answers by name. The last line is the verdict.
Option Explicit
On Error Resume Next
Dim p, fallas, n

Sub Exige(que, cierto)
  If Not cierto Then
    fallas = fallas + 1
    WScript.Echo "mal: " & que
  End If
End Sub

Class Entorno
  Public Sub Nada
  End Sub
End Class

fallas = 0
Set p = CreateObject("ZuviProduccion.Produccion")
If Err.Number <> 0 Then
  WScript.Echo "no se pudo crear: " & Err.Description
  WScript.Quit 1
End If
Exige "TypeName", TypeName(p) = "_Produccion"

Dim e
Set e = New Entorno
Set p.Ambiente = e
Exige "set", Err.Number = 0
Exige "identidad", p.Ambiente Is e
p.Parent = e
Exige "let", Err.Number = 0
Exige "identidad de let", p.Parent Is e

n = 120
Exige "silencio", p.CancelaOp(n) = False
Exige "sin error", Err.Number = 0
Exige "con texto", p.CancelaOp("7") = False
Exige "sin error con texto", Err.Number = 0

Err.Clear
p.ModificaOp n
Exige "sin conexión no abre ni avisa", Err.Number = 0
Err.Clear
p.CancelaOp
Exige "faltan argumentos", Err.Number = 450
Err.Clear
p.CancelaOp 1, 2
Exige "sobran argumentos", Err.Number = 450
Err.Clear
p.CancelaOp "doce"
Exige "tipo", Err.Number = 13
Err.Clear
p.CancelaOp 3E9
Exige "desbordamiento", Err.Number = 6
Err.Clear
p.NoExiste
Exige "miembro", Err.Number = 438
Err.Clear
Set p = Nothing
If fallas = 0 Then WScript.Echo "bien"
WScript.Quit fallas
