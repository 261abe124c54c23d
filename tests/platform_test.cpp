// Memory, files, locks and windows of the platform layer, and the faults that tests inject into it.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/faults.h"
#include "platform/system.h"

namespace {

const char* const kText = "MThd and so on";

class TemporaryFolder : public testing::Test {
protected:
    TemporaryFolder() {
        std::string pattern = testing::TempDir() + "corvmo-XXXXXX";
        m_folder = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() override {
        std::filesystem::remove_all(m_folder);
    }
    std::string path(const char* name) const {
        return m_folder / name;
    }

private:
    std::filesystem::path m_folder;
};

HANDLE openFile(const char* name) {
    return CreateFileA(name, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

class Files : public TemporaryFolder {};

class Faults : public TemporaryFolder {
protected:
    ~Faults() override {
        faults::clear();
    }
};

} // namespace

TEST(Memory, A_locked_block_grows_with_its_content_and_zeros_behind_it) {
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 16);
    auto* bytes = static_cast<unsigned char*>(GlobalLock(block));
    ASSERT_EQ(std::count(bytes, bytes + 16, 0), 16);
    std::fill_n(bytes, 16, 0xAA);

    ASSERT_EQ(GlobalReAlloc(block, 100000, GMEM_MOVEABLE | GMEM_ZEROINIT), block);
    bytes = static_cast<unsigned char*>(GlobalLock(block));
    EXPECT_EQ(std::count(bytes, bytes + 16, 0xAA), 16);
    EXPECT_EQ(std::count(bytes + 16, bytes + 100000, 0), 100000 - 16);
    EXPECT_EQ(GlobalSize(block), 100000U);

    EXPECT_EQ(GlobalUnlock(block), 1) << "locked before and after growing";
    EXPECT_EQ(GlobalUnlock(block), 0);
    EXPECT_EQ(GlobalUnlock(block), 0) << "not locked any more";
    EXPECT_EQ(GlobalLock(block), bytes);
    EXPECT_EQ(GlobalUnlock(block), 0);
    EXPECT_EQ(GlobalFree(block), nullptr);
}

TEST(Memory, A_block_that_cannot_grow_keeps_its_content) {
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 4);
    auto* bytes = static_cast<char*>(GlobalLock(block));
    std::copy_n("abc", 4, bytes);

    EXPECT_EQ(GlobalReAlloc(block, 1000000, 0), nullptr) << "it may not move while it is locked";
    faults::failCall("GlobalReAlloc", 1);
    EXPECT_EQ(GlobalReAlloc(block, 1000000, GMEM_MOVEABLE), nullptr);
    faults::clear();

    EXPECT_EQ(GlobalLock(block), bytes);
    EXPECT_STREQ(bytes, "abc");
    EXPECT_EQ(GlobalFree(block), nullptr);
}

TEST(Memory, A_fixed_block_is_its_own_address_even_after_moving) {
    HGLOBAL block = GlobalAlloc(GPTR, 8);
    HGLOBAL neighbour = GlobalAlloc(GPTR, 8);
    EXPECT_EQ(GlobalLock(block), static_cast<void*>(block));
    EXPECT_EQ(GlobalReAlloc(block, 100000, 0), nullptr);

    HGLOBAL moved = GlobalReAlloc(block, 100000, GMEM_MOVEABLE | GMEM_ZEROINIT);
    ASSERT_NE(moved, nullptr);
    auto* bytes = static_cast<char*>(GlobalLock(moved));
    EXPECT_EQ(bytes, reinterpret_cast<char*>(moved));
    EXPECT_EQ(std::count(bytes, bytes + 100000, 0), 100000);
    EXPECT_EQ(GlobalFree(moved), nullptr);
    EXPECT_EQ(GlobalFree(neighbour), nullptr);
}

TEST(Memory, Handles_that_are_none_are_refused) {
    HGLOBAL freed = GlobalAlloc(GMEM_MOVEABLE, 8);
    EXPECT_EQ(GlobalFree(freed), nullptr);
    int own = 0;
    for (HGLOBAL handle : {freed, reinterpret_cast<HGLOBAL>(&own)}) {
        EXPECT_EQ(GlobalLock(handle), nullptr);
        EXPECT_EQ(GlobalUnlock(handle), 0);
        EXPECT_EQ(GlobalSize(handle), 0U);
        EXPECT_EQ(GlobalReAlloc(handle, 8, GMEM_MOVEABLE), nullptr);
        EXPECT_EQ(GlobalFree(handle), handle);
    }
    EXPECT_EQ(GlobalLock(nullptr), nullptr);
}

TEST_F(Files, A_file_is_read_in_parts_up_to_its_end) {
    std::ofstream(path("song.mid")) << kText;
    HANDLE file = openFile(path("song.mid").c_str());
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetFileSize(file, nullptr), 14u);

    std::string bytes(100, '?');
    DWORD count = 0;
    EXPECT_EQ(ReadFile(file, bytes.data(), 4, &count, nullptr), 1);
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(ReadFile(file, bytes.data() + 4, 96, &count, nullptr), 1);
    EXPECT_EQ(count, 10u);
    EXPECT_EQ(bytes.substr(0, 15), std::string(kText) + '?');
    EXPECT_EQ(ReadFile(file, bytes.data(), 4, &count, nullptr), 1);
    EXPECT_EQ(count, 0u);

    EXPECT_EQ(CloseHandle(file), 1);
    EXPECT_EQ(CloseHandle(file), 0);
    EXPECT_EQ(ReadFile(file, bytes.data(), 4, &count, nullptr), 0);
    EXPECT_EQ(GetFileSize(file, nullptr), INVALID_FILE_SIZE);
}

TEST_F(Files, What_is_not_a_file_cannot_be_opened) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(openFile(nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(openFile(path("absent").c_str()), INVALID_HANDLE_VALUE);
    EXPECT_EQ(openFile(path(".").c_str()), INVALID_HANDLE_VALUE);
    EXPECT_EQ(openFile(path("pipe").c_str()), INVALID_HANDLE_VALUE)
        << "and does not wait for a writer";
}

TEST_F(Files, A_file_of_more_than_four_gigabytes_has_no_size) {
    constexpr std::uintmax_t kJustAbove = std::uintmax_t{1} << 32 | 5;
    std::ofstream(path("huge")) << kText;
    std::filesystem::resize_file(path("huge"), kJustAbove);
    HANDLE file = openFile(path("huge").c_str());
    EXPECT_EQ(GetFileSize(file, nullptr), INVALID_FILE_SIZE);
    EXPECT_EQ(CloseHandle(file), 1);
}

TEST(Lock, Excludes_other_threads_and_lets_its_owner_in_again) {
    CRITICAL_SECTION lock;
    InitializeCriticalSection(&lock);
    int count = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            for (int round = 0; round < 5000; ++round) {
                EnterCriticalSection(&lock);
                EnterCriticalSection(&lock);
                LeaveCriticalSection(&lock);
                ++count;
                LeaveCriticalSection(&lock);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(count, 20000);
    DeleteCriticalSection(&lock);
}

TEST(Window, Keeps_ten_thousand_messages_in_order_and_loses_the_rest) {
    HWND window = corvmo_CreateWindow();
    corvmo_message message = {};
    EXPECT_EQ(corvmo_WaitMessage(window, &message, 0), 0);
    for (UINT number = 0; number < 10000; ++number) {
        ASSERT_EQ(PostMessageA(window, number, number + 1, -static_cast<LPARAM>(number)), 1);
    }
    EXPECT_EQ(PostMessageA(window, 10000, 0, 0), 0);
    for (UINT number = 0; number < 10000; ++number) {
        ASSERT_EQ(corvmo_WaitMessage(window, &message, 0), 1);
        ASSERT_EQ(message.message, number);
        ASSERT_EQ(message.wParam, number + 1);
        ASSERT_EQ(message.lParam, -static_cast<LPARAM>(number));
    }
    EXPECT_EQ(PostMessageA(window, 1, 0, 0), 1) << "there is room again";
    corvmo_DestroyWindow(window);
}

TEST(Window, Takes_no_message_before_it_is_made_or_after_it_is_gone) {
    HWND window = corvmo_CreateWindow();
    ASSERT_EQ(PostMessageA(window, 1, 0, 0), 1);
    corvmo_DestroyWindow(window);
    corvmo_DestroyWindow(window);
    corvmo_message message = {};
    int own = 0;
    for (HWND none : {window, static_cast<HWND>(nullptr), reinterpret_cast<HWND>(&own)}) {
        EXPECT_EQ(PostMessageA(none, 1, 0, 0), 0);
        EXPECT_EQ(corvmo_WaitMessage(none, &message, 0xFFFFFFFF), 0);
    }
}

TEST(Window, Wakes_the_thread_that_waits_on_it) {
    constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;
    HWND window = corvmo_CreateWindow();
    HWND answers = corvmo_CreateWindow();
    int lastResult = 1;
    std::thread waiting([&] {
        corvmo_message message = {};
        while ((lastResult = corvmo_WaitMessage(window, &message, kNoLimit)) != 0) {
            PostMessageA(answers, message.message + 1, 0, 0);
        }
    });
    corvmo_message answer = {};
    EXPECT_EQ(PostMessageA(window, 7, 0, 0), 1);
    EXPECT_EQ(corvmo_WaitMessage(answers, &answer, kNoLimit), 1);
    EXPECT_EQ(answer.message, 8u);

    corvmo_DestroyWindow(window);
    waiting.join();
    EXPECT_EQ(lastResult, 0);
    corvmo_DestroyWindow(answers);
}

TEST_F(Faults, Only_the_chosen_call_fails) {
    faults::failCall("GlobalAlloc", 2);
    HGLOBAL first = GlobalAlloc(GPTR, 1);
    HGLOBAL second = GlobalAlloc(GPTR, 1);
    HGLOBAL third = GlobalAlloc(GPTR, 1);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(third, nullptr);
    EXPECT_EQ(faults::callCount("GlobalAlloc"), 3);

    faults::failCall("GlobalAlloc", 1);
    faults::failCall("GlobalAlloc", 0);
    HGLOBAL fourth = GlobalAlloc(GPTR, 1);
    EXPECT_NE(fourth, nullptr) << "the fault was taken back";
    EXPECT_EQ(faults::callCount("GlobalAlloc"), 1);
    for (HGLOBAL block : {first, third, fourth}) {
        EXPECT_EQ(GlobalFree(block), nullptr);
    }
}

TEST_F(Faults, Every_function_answers_its_own_failure) {
    std::ofstream(path("file")) << kText;
    HANDLE file = openFile(path("file").c_str());
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 1);
    HWND window = corvmo_CreateWindow();
    TIMECAPS caps = {};
    char byte = 0;
    DWORD count = 1;
    HMIDIOUT device = nullptr;
    const corvmo_output silent = {};
    corvmo_SetOutputs(&silent, 1);
    ASSERT_EQ(midiOutOpen(&device, 0, 0, 0, CALLBACK_NULL), MMSYSERR_NOERROR);
    MIDIHDR header = {};
    header.lpData = &byte;
    header.dwBufferLength = 1;
    header.dwFlags = MHDR_PREPARED;

    for (const char* function :
         {"CreateFileA", "GetFileSize", "ReadFile", "GlobalLock", "PostMessageA", "timeGetDevCaps",
          "timeBeginPeriod", "timeSetEvent", "midiOutGetNumDevs", "midiOutShortMsg",
          "midiOutPrepareHeader", "midiOutLongMsg", "midiOutUnprepareHeader"}) {
        faults::failCall(function, 1);
    }
    EXPECT_EQ(openFile(path("file").c_str()), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetFileSize(file, nullptr), INVALID_FILE_SIZE);
    EXPECT_EQ(ReadFile(file, &byte, 1, &count, nullptr), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(GlobalLock(block), nullptr);
    EXPECT_EQ(PostMessageA(window, 1, 0, 0), 0);
    EXPECT_NE(timeGetDevCaps(&caps, sizeof caps), TIMERR_NOERROR);
    EXPECT_EQ(timeBeginPeriod(1), TIMERR_NOCANDO);
    EXPECT_EQ(timeSetEvent(
                  1, 1, [](UINT, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR) {}, 0, TIME_PERIODIC),
              0u);
    EXPECT_EQ(midiOutGetNumDevs(), 0u);
    EXPECT_NE(midiOutShortMsg(device, 0x90), MMSYSERR_NOERROR);
    EXPECT_NE(midiOutPrepareHeader(device, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_NE(midiOutLongMsg(device, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutUnprepareHeader(device, &header, sizeof header), MIDIERR_STILLPLAYING);
    EXPECT_EQ(midiOutUnprepareHeader(device, &header, sizeof header), MMSYSERR_NOERROR);

    corvmo_DestroyWindow(window);
    EXPECT_EQ(GlobalFree(block), nullptr);
    EXPECT_EQ(CloseHandle(file), 1);
    corvmo_SetOutputs(nullptr, 0);
}

TEST(FloatingPoint, Computes_in_the_precision_of_the_type) {
    EXPECT_EQ(_controlfp(_PC_53, _MCW_PC), _PC_53);
    volatile double tempo = 500000;
    volatile double percent = 10;
    EXPECT_EQ(static_cast<long>(tempo - percent * 0.01 * tempo), 450000);
}
