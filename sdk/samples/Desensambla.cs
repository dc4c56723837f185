// Desensambla medio kit, por nombre. El hilo principal ha de ser STA: así los avisos y ventanas son del programa.
using System;

static class Desensambla
{
    [STAThread]
    static int Main()
    {
        Type tipo = Type.GetTypeFromProgID("ZuviProduccion.Produccion");
        if (tipo == null) { Console.Error.WriteLine("ZuviProduccion no está registrado"); return 1; }
        dynamic produccion = Activator.CreateInstance(tipo);
        produccion.Ambiente = Activator.CreateInstance(Type.GetTypeFromProgID("ZuviEnviroment.Ambiente"));
        produccion.Desensamble("KIT1", 0.5, 1);
        return 0;
    }
}
