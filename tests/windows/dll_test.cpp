// Loads the library and patches its imports; the fixture around it.
#include "tests/windows/dll_test.h"

bool Dll::load() {
    module = LoadLibraryA("corvmo32.dll");
    if (module == nullptr) {
        return false;
    }
    bool complete = true;
#define EXPORT(function, argumentBytes)                                                            \
    function = reinterpret_cast<decltype(function)>(                                               \
        reinterpret_cast<void*>(GetProcAddress(module, #function)));                               \
    complete = complete && function != nullptr;
#include "corvmo32_exports.inc"
#undef EXPORT
    return complete;
}

void Dll::unload() {
    FreeLibrary(module);
    *this = {};
}

DllTest::DllTest() {
    InitializeCriticalSection(&lock);
    settings.hwnd = window.handle();
    settings.timerPeriod = kPeriod;
    settings.deviceIndex2 = 1;
    settings.flags = MMINIT_SECONDPLAYER | MMINIT_SYSEXSTORE;
    settings.lock = &lock;
}

DllTest::~DllTest() {
    unload();
    DeleteCriticalSection(&lock);
}

void DllTest::load(int outputs) {
    unload();
    machine::setUpRealTime(outputs);
    ASSERT_TRUE(dll.load());
    ASSERT_TRUE(machine::takeOver(dll.module));
}

void DllTest::unload() {
    if (dll.module == nullptr) {
        return;
    }
    dll.mm_Close(mm1);
    dll.mm_Close(mm2);
    dll.mm_EndEngine();
    dll.unload();
    machine::tearDown();
    window.take();
    removeWrittenFiles();
}

std::int16_t DllTest::start() {
    return dll.mm_InitEngine(&settings, &mm1, &mm2);
}

void DllTest::play(HMIDIOUT player, const SongBuilder& song, std::uint16_t options) {
    ASSERT_EQ(dll.mm_Open(player, song.write().c_str(), options, 0, 0, nullptr), 1)
        << "error " << dll.mm_GetLastError();
    dll.mm_SetLoop(player, nullptr);
    dll.mm_StartSync(player);
}

SongBuilder evenNotes(int count, std::uint32_t distance, int channel) {
    constexpr std::uint32_t kFirst = 96;
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (int i = 0; i < count; ++i) {
        track.at(kFirst + static_cast<std::uint32_t>(i) * distance);
        track.note(channel, 36 + i % 48, distance / 2);
    }
    return song;
}
