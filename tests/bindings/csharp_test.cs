// The C# declarations in use. Without an argument it prints what every record takes; with a song it opens
// that and answers 0 when words and position come through the records as the functions tell them.
using System;
using System.Runtime.InteropServices;
using System.Text;
using Corvmo;

static class CSharpTest
{
    [DllImport("corvmo32.dll")]
    static extern void corvmo_SetAudioDriver([MarshalAs(UnmanagedType.LPStr)] string name);

    static void PrintSizes()
    {
        foreach (Type type in typeof(Corvmo32).Assembly.GetTypes())
        {
            if (type.IsValueType && type.IsPublic)
                Console.WriteLine(type.Name + " " + Marshal.SizeOf(type));
        }
    }

    static void Expect(bool condition, string what)
    {
        if (condition)
            return;
        Console.WriteLine("not so: " + what);
        Environment.Exit(1);
    }

    static void ReadSong(string fileName)
    {
        IntPtr player, second;
        corvmo_SetAudioDriver("none");
        IntPtr section = Marshal.AllocHGlobal(Corvmo32.LockSize);
        Corvmo32.InitializeCriticalSection(section);
        MMINIT settings = new MMINIT();
        settings.timerPeriod = 5;
        settings.@lock = section;
        Expect(Corvmo32.mm_InitEngine(ref settings, out player, out second) == 1, "the engine starts");
        Expect(Corvmo32.mm_Open(player, fileName, Corvmo32.MMOPT_LYRICS, 0, 0, IntPtr.Zero) == 1,
            "the song opens");
        MMLOOP[] loops = new MMLOOP[Corvmo32.MM_MAX_LOOPS];
        for (int i = 1; i < loops.Length; i++)
            loops[i].start = Corvmo32.MMLOOP_UNUSED;
        loops[0].start = 960;
        loops[0].repeats = 3;
        Corvmo32.mm_SetLoop(player, loops);
        MIDIOUT record = Corvmo32.Read<MIDIOUT>(Corvmo32.mm_GetMM(player));
        Expect(record.loops[0].repeatsSet == 3 && record.numLoops == 1, "the play range is set");
        Expect(record.lyricCount == Corvmo32.mm_GetNumLyrics(player), "the record counts the words");
        MMLYRIC lyric = Corvmo32.Read<MMLYRIC>(Corvmo32.mm_GetPointerLyrics(player, 1));
        Expect(Corvmo32.Text(lyric.text, Encoding.ASCII) == "There ", "the first word is read");
        Corvmo32.mm_Close(player);
        Corvmo32.mm_EndEngine();
    }

    static void Main(string[] arguments)
    {
        if (arguments.Length == 0)
            PrintSizes();
        else
            ReadSong(arguments[0]);
    }
}
