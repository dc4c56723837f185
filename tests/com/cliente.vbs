' A script without a host: what the component answers by name. The last line is the verdict.
Option Explicit
On Error Resume Next
Dim p, e, fallas

' Whether it is true, and the error that was left before it.
Sub Exige(que, cierto, numero)
  If Not cierto Or Err.Number <> numero Then
    fallas = fallas + 1
    WScript.Echo "mal: " & que & " " & Err.Number
  End If
  Err.Clear
End Sub

Class Entorno
End Class

fallas = 0
Set e = New Entorno
Set p = CreateObject("ZuviProduccion.Produccion")
Exige "TypeName", TypeName(p) = "_Produccion", 0
Set p.Ambiente = e
Exige "set", p.Ambiente Is e, 0
p.Parent = e
Exige "let", p.Parent Is e, 0
Exige "silencio", p.CancelaOp(120) = False, 0
Exige "con texto", p.CancelaOp("7") = False, 0
p.ModificaOp 120
Exige "sin conexión no abre ni avisa", True, 0
p.CancelaOp
Exige "faltan argumentos", True, 450
p.CancelaOp 1, 2
Exige "sobran argumentos", True, 450
p.CancelaOp "doce"
Exige "tipo", True, 13
p.CancelaOp 3E9
Exige "desbordamiento", True, 6
p.NoExiste
Exige "miembro", True, 438
Set p = Nothing
If fallas = 0 Then WScript.Echo "bien"
WScript.Quit fallas
