// Every export under its plain name, and the calling convention: the function takes its own arguments off
// the stack.
#include <array>
#include <string>

#include "tests/windows/dll_test.h"
#include "tests/windows/measured_call.h"

namespace {

struct Export {
    const char* name;
    DWORD argumentBytes;
};

constexpr Export kExports[] = {
#define EXPORT(name, argumentBytes) {#name, argumentBytes},
#include "corvmo32_exports.inc"
#undef EXPORT
};

constexpr DWORD kMostArguments = 8;

} // namespace

class Exports : public DllTest {
protected:
    const void* find(const std::string& name) const {
        return reinterpret_cast<const void*>(GetProcAddress(dll.module, name.c_str()));
    }

    /// Calls an export with zeros at the four places that a stack of 4-byte words can have.
    void expectCleanStack(const Export& entry) const {
        const void* const function = find(entry.name);
        const std::array<DWORD, kMostArguments> zeros{};
        for (DWORD padding = 0; padding < 16; padding += sizeof(DWORD)) {
            MeasuredCall call;
            measureCall(function, zeros.data(), entry.argumentBytes / sizeof(DWORD), padding,
                        &call);
            EXPECT_EQ(call.leftOnStack, 0U) << entry.name << ", padding " << padding;
            EXPECT_EQ(call.registersChanged, 0U) << entry.name << ", padding " << padding;
        }
    }
};

TEST_F(Exports, Are_found_under_their_undecorated_names_alone) {
    load();
    for (const Export& entry : kExports) {
        const std::string decorated =
            std::string(entry.name) + "@" + std::to_string(entry.argumentBytes);
        EXPECT_NE(find(entry.name), nullptr) << entry.name;
        EXPECT_EQ(find(decorated), nullptr) << decorated;
        EXPECT_EQ(find("_" + decorated), nullptr) << decorated;
    }
    EXPECT_EQ(std::size(kExports), 65U);
}

TEST_F(Exports, Clean_their_arguments_off_the_stack_before_start_up) {
    load();
    for (const Export& entry : kExports) {
        expectCleanStack(entry);
    }
}

// Without an output player 1's handle is 0, so that the zeros reach a player that plays a song.
TEST_F(Exports, Clean_their_arguments_off_the_stack_while_a_song_plays) {
    load(0);
    ASSERT_EQ(start(), 1);
    ASSERT_EQ(mm1, nullptr);
    const std::string song = evenNotes(100, 96).write();
    for (const Export& entry : kExports) {
        if (entry.name == std::string("mm_EndEngine")) {
            continue;
        }
        ASSERT_EQ(dll.mm_Open(mm1, song.c_str(), kAllOptions, 0, 0, nullptr), 1);
        dll.mm_StartSync(mm1);
        expectCleanStack(entry);
    }
    expectCleanStack({"mm_EndEngine", 0});
}
