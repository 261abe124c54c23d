// MIDI outputs of the platform layer: the host's own, the recording, and the software synthesizer.
#include <gtest/gtest.h>

#include <fluidsynth.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/synthesizer.h"
#include "platform/system.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const char* const kFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";

// An output that notes what is asked of it.
struct Device {
    std::vector<std::string> calls;
    std::vector<std::uint32_t> shortMessages;
    std::vector<Bytes> longMessages;
    MMRESULT openResult = MMSYSERR_NOERROR;
    MMRESULT sendResult = MMSYSERR_NOERROR;
    MMRESULT prepareResult = MMSYSERR_NOERROR;
    int stillPlaying = 0;

    static Device& of(void* user) {
        return *static_cast<Device*>(user);
    }

    corvmo_output output(const char* name) {
        corvmo_output functions = {};
        functions.name = name;
        functions.user = this;
        functions.open = [](void* user) {
            of(user).calls.emplace_back("open");
            return of(user).openResult;
        };
        functions.close = [](void* user) { of(user).calls.emplace_back("close"); };
        functions.reset = [](void* user) { of(user).calls.emplace_back("reset"); };
        functions.short_message = [](void* user, std::uint32_t message) -> MMRESULT {
            of(user).shortMessages.push_back(message);
            return of(user).sendResult;
        };
        functions.long_message = [](void* user, const std::uint8_t* data,
                                    std::uint32_t length) -> MMRESULT {
            of(user).longMessages.emplace_back(data, data + length);
            return MMSYSERR_NOERROR;
        };
        functions.prepare = [](void* user) { return of(user).prepareResult; };
        functions.still_playing = [](void* user) {
            const int left = of(user).stillPlaying;
            of(user).stillPlaying = std::max(left - 1, 0);
            return left;
        };
        return functions;
    }
};

struct Recording {
    struct Message {
        UINT output;
        std::uint64_t time;
        Bytes bytes;

        bool operator==(const Message&) const = default;
    };
    std::vector<Message> messages;

    static void note(void* user, const corvmo_sent* sent) {
        static_cast<Recording*>(user)->messages.push_back(
            {sent->output, sent->time, Bytes(sent->data, sent->data + sent->length)});
    }
};

HMIDIOUT openOutput(UINT index) {
    HMIDIOUT handle = nullptr;
    EXPECT_EQ(midiOutOpen(&handle, index, 0, 0, CALLBACK_NULL), MMSYSERR_NOERROR);
    return handle;
}

MIDIHDR headerFor(Bytes& bytes) {
    MIDIHDR header = {};
    header.lpData = reinterpret_cast<char*>(bytes.data());
    header.dwBufferLength = static_cast<DWORD>(bytes.size());
    return header;
}

class Outputs : public testing::Test {
protected:
    Outputs() {
        const std::array outputs = {first.output("First"), second.output("Second")};
        corvmo_SetOutputs(outputs.data(), outputs.size());
    }
    ~Outputs() override {
        corvmo_RecordOutputs(nullptr, nullptr);
        corvmo_SetOutputs(nullptr, 0);
        corvmo_SetAudioDriver(nullptr);
        corvmo_SetSoundFont(nullptr);
    }

    Device first;
    Device second;
};

// The loudest sample of half a second of sound.
float loudness(Synthesizer& synthesizer) {
    constexpr int kFrames = 22050;
    std::vector<float> left(kFrames);
    std::vector<float> right(kFrames);
    fluid_synth_write_float(synthesizer.synth(), kFrames, left.data(), 0, 1, right.data(), 0, 1);
    float loudest = 0;
    for (int frame = 0; frame < kFrames; ++frame) {
        const auto index = static_cast<std::size_t>(frame);
        loudest = std::max({loudest, std::fabs(left[index]), std::fabs(right[index])});
    }
    return loudest;
}

constexpr float kSilence = 0.0005F;

} // namespace

TEST_F(Outputs, Are_listed_under_their_names) {
    std::array<char, 16> name = {};
    EXPECT_EQ(midiOutGetNumDevs(), 2u);
    EXPECT_EQ(corvmo_GetOutputCount(), 2u);
    EXPECT_EQ(corvmo_GetOutputName(1, name.data(), name.size()), 1);
    EXPECT_STREQ(name.data(), "Second");
    EXPECT_EQ(corvmo_GetOutputName(0, name.data(), 4), 1);
    EXPECT_STREQ(name.data(), "Fir");
    EXPECT_EQ(corvmo_GetOutputName(2, name.data(), name.size()), 0);
    EXPECT_TRUE(first.calls.empty()) << "listing opens nothing";

    corvmo_SetOutputs(nullptr, 0);
    EXPECT_GE(midiOutGetNumDevs(), 1u) << "the software synthesizer is always there";
    const corvmo_output unused = {};
    corvmo_SetOutputs(&unused, 0);
    EXPECT_EQ(midiOutGetNumDevs(), 0u);
}

TEST_F(Outputs, Are_reached_through_handles_that_end_with_closing) {
    HMIDIOUT one = openOutput(0);
    HMIDIOUT two = openOutput(1);
    HMIDIOUT other = nullptr;
    EXPECT_EQ(midiOutOpen(&other, 2, 0, 0, CALLBACK_NULL), MMSYSERR_BADDEVICEID);
    EXPECT_EQ(midiOutOpen(&other, 0, 0, 0, CALLBACK_NULL), MMSYSERR_ALLOCATED);
    EXPECT_EQ(midiOutReset(two), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutClose(one), MMSYSERR_NOERROR);
    EXPECT_EQ(first.calls, (std::vector<std::string>{"open", "close"}));
    EXPECT_EQ(second.calls, (std::vector<std::string>{"open", "reset"}));

    HMIDIOUT again = openOutput(0);
    Bytes bytes = {0xF0, 0xF7};
    MIDIHDR header = headerFor(bytes);
    for (HMIDIOUT stale :
         {one, static_cast<HMIDIOUT>(nullptr), reinterpret_cast<HMIDIOUT>(&bytes)}) {
        EXPECT_EQ(midiOutShortMsg(stale, 0x90), MMSYSERR_INVALHANDLE);
        EXPECT_EQ(midiOutReset(stale), MMSYSERR_INVALHANDLE);
        EXPECT_EQ(midiOutClose(stale), MMSYSERR_INVALHANDLE);
        EXPECT_EQ(midiOutPrepareHeader(stale, &header, sizeof header), MMSYSERR_INVALHANDLE);
        EXPECT_EQ(midiOutLongMsg(stale, &header, sizeof header), MMSYSERR_INVALHANDLE);
        EXPECT_EQ(midiOutUnprepareHeader(stale, &header, sizeof header), MMSYSERR_INVALHANDLE);
    }
    EXPECT_EQ(midiOutShortMsg(again, 0x90), MMSYSERR_NOERROR);

    corvmo_SetOutputs(nullptr, 0);
    EXPECT_EQ(midiOutShortMsg(again, 0x90), MMSYSERR_INVALHANDLE) << "the host's outputs are gone";
    EXPECT_EQ(first.calls, (std::vector<std::string>{"open", "close", "open", "close"}));
    EXPECT_EQ(second.calls.back(), "close");
}

TEST_F(Outputs, Are_not_open_when_the_device_refuses) {
    first.openResult = MMSYSERR_NOMEM;
    HMIDIOUT handle = nullptr;
    EXPECT_EQ(midiOutOpen(&handle, 0, 0, 0, CALLBACK_NULL), MMSYSERR_NOMEM);
    EXPECT_EQ(handle, nullptr);
    first.openResult = MMSYSERR_NOERROR;
    EXPECT_EQ(midiOutClose(openOutput(0)), MMSYSERR_NOERROR);
}

TEST_F(Outputs, Count_what_they_refuse_until_they_take_a_message_again) {
    HMIDIOUT handle = openOutput(0);
    first.sendResult = MIDIERR_NOTREADY;
    EXPECT_EQ(midiOutShortMsg(handle, 0x90), MIDIERR_NOTREADY);
    EXPECT_EQ(midiOutShortMsg(handle, 0x90), MIDIERR_NOTREADY);
    EXPECT_EQ(corvmo_GetRefusals(0), 2u);
    EXPECT_EQ(corvmo_GetRefusals(1), 0u);
    EXPECT_EQ(corvmo_GetRefusals(2), 0u);
    first.sendResult = MMSYSERR_NOERROR;
    EXPECT_EQ(midiOutShortMsg(handle, 0x90), MMSYSERR_NOERROR);
    EXPECT_EQ(corvmo_GetRefusals(0), 0u);
    first.sendResult = MIDIERR_NOTREADY;
    midiOutShortMsg(handle, 0x90);
    EXPECT_EQ(midiOutClose(handle), MMSYSERR_NOERROR);
    openOutput(0);
    EXPECT_EQ(corvmo_GetRefusals(0), 0u) << "opened anew";
}

TEST_F(Outputs, Record_every_message_with_its_length_and_time) {
    corvmo_UseManualClock(5);
    Recording recording;
    corvmo_RecordOutputs(&Recording::note, &recording);
    HMIDIOUT one = openOutput(0);
    HMIDIOUT two = openOutput(1);
    EXPECT_EQ(midiOutShortMsg(one, 0x7F3C90), MMSYSERR_NOERROR);
    corvmo_AdvanceClock(3);
    EXPECT_EQ(midiOutShortMsg(two, 0x7F05C3), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutShortMsg(two, 0x7F40D3), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutShortMsg(two, 0x4000E0), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutShortMsg(two, 0x0102F2), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutShortMsg(two, 0x0102F3), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutShortMsg(two, 0x0102F8), MMSYSERR_NOERROR);
    for (DWORD noShortMessage : {0x3C40u, 0xF0u, 0xF7u}) {
        EXPECT_EQ(midiOutShortMsg(one, noShortMessage), MMSYSERR_INVALPARAM);
        EXPECT_EQ(recording.messages.back().bytes.front(), noShortMessage & 0xFF);
        EXPECT_EQ(recording.messages.back().bytes.size(), 3u);
        recording.messages.pop_back();
    }
    Bytes bytes = {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};
    MIDIHDR header = headerFor(bytes);
    EXPECT_EQ(midiOutPrepareHeader(one, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutLongMsg(one, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutReset(one), MMSYSERR_NOERROR);
    corvmo_RecordOutputs(nullptr, nullptr);
    EXPECT_EQ(midiOutShortMsg(one, 0x003C90), MMSYSERR_NOERROR);

    const std::vector<Recording::Message> expected = {
        {0, 5000, {0x90, 0x3C, 0x7F}},
        {1, 8000, {0xC3, 0x05}},
        {1, 8000, {0xD3, 0x40}},
        {1, 8000, {0xE0, 0x00, 0x40}},
        {1, 8000, {0xF2, 0x02, 0x01}},
        {1, 8000, {0xF3, 0x02}},
        {1, 8000, {0xF8}},
        {0, 8000, bytes},
    };
    EXPECT_EQ(recording.messages, expected);
    EXPECT_EQ(first.shortMessages, (std::vector<std::uint32_t>{0x7F3C90, 0x003C90}));
    EXPECT_EQ(first.longMessages, (std::vector<Bytes>{bytes}));
    corvmo_UseRealClock();
}

TEST_F(Outputs, Take_a_long_message_only_between_preparing_and_unpreparing) {
    HMIDIOUT handle = openOutput(0);
    Bytes bytes = {0xF0, 0x01, 0xF7};
    MIDIHDR header = headerFor(bytes);
    EXPECT_EQ(midiOutUnprepareHeader(handle, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutLongMsg(handle, &header, sizeof header), MIDIERR_UNPREPARED);
    EXPECT_EQ(midiOutPrepareHeader(handle, nullptr, sizeof header), MMSYSERR_INVALPARAM);
    EXPECT_EQ(midiOutPrepareHeader(handle, &header, sizeof header - 1), MMSYSERR_INVALPARAM);
    first.prepareResult = MMSYSERR_NOMEM;
    EXPECT_EQ(midiOutPrepareHeader(handle, &header, sizeof header), MMSYSERR_NOMEM);
    EXPECT_EQ(header.dwFlags, 0u);
    EXPECT_TRUE(first.longMessages.empty());

    first.prepareResult = MMSYSERR_NOERROR;
    first.stillPlaying = 2;
    EXPECT_EQ(midiOutPrepareHeader(handle, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutLongMsg(handle, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutUnprepareHeader(handle, &header, sizeof header), MIDIERR_STILLPLAYING);
    EXPECT_EQ(midiOutLongMsg(handle, &header, sizeof header), MIDIERR_STILLPLAYING);
    EXPECT_EQ(midiOutUnprepareHeader(handle, &header, sizeof header), MIDIERR_STILLPLAYING);
    EXPECT_EQ(midiOutUnprepareHeader(handle, &header, sizeof header), MMSYSERR_NOERROR);
    EXPECT_EQ(header.dwFlags, MHDR_DONE);
    EXPECT_EQ(midiOutLongMsg(handle, &header, sizeof header), MIDIERR_UNPREPARED);
    EXPECT_EQ(first.longMessages, (std::vector<Bytes>{bytes}));
}

TEST_F(Outputs, May_be_closed_and_recorded_anew_while_other_threads_send) {
    const corvmo_output silent = {};
    corvmo_SetOutputs(&silent, 1);
    std::atomic<std::uintptr_t> current = 0;
    std::atomic<bool> done = false;
    std::vector<std::thread> senders;
    for (int number = 0; number < 3; ++number) {
        senders.emplace_back([&] {
            while (!done) {
                const MMRESULT result =
                    midiOutShortMsg(reinterpret_cast<HMIDIOUT>(current.load()), 0x90);
                EXPECT_TRUE(result == MMSYSERR_NOERROR || result == MMSYSERR_INVALHANDLE);
            }
        });
    }
    for (int round = 0; round < 50; ++round) {
        std::atomic<int> count = 0;
        corvmo_RecordOutputs(
            [](void* user, const corvmo_sent*) { ++*static_cast<std::atomic<int>*>(user); },
            &count);
        HMIDIOUT handle = openOutput(0);
        current = reinterpret_cast<std::uintptr_t>(handle);
        EXPECT_EQ(midiOutShortMsg(handle, 0x90), MMSYSERR_NOERROR);
        EXPECT_EQ(midiOutClose(handle), MMSYSERR_NOERROR);
        corvmo_RecordOutputs(nullptr, nullptr);
        EXPECT_GE(count, 1);
    }
    done = true;
    for (std::thread& sender : senders) {
        sender.join();
    }
}

TEST_F(Outputs, Accept_everything_from_a_synthesizer_without_audio_or_font) {
    corvmo_SetOutputs(nullptr, 0);
    Bytes bytes = {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};
    corvmo_SetSoundFont("/nowhere/font.sf2");
    for (const char* driver : {"none", "no such driver"}) {
        corvmo_SetAudioDriver(driver);
        HMIDIOUT handle = openOutput(0);
        MIDIHDR header = headerFor(bytes);
        EXPECT_EQ(midiOutShortMsg(handle, 0x7F3C90), MMSYSERR_NOERROR);
        EXPECT_EQ(midiOutPrepareHeader(handle, &header, sizeof header), MMSYSERR_NOERROR);
        EXPECT_EQ(midiOutLongMsg(handle, &header, sizeof header), MMSYSERR_NOERROR);
        EXPECT_EQ(midiOutUnprepareHeader(handle, &header, sizeof header), MMSYSERR_NOERROR);
        EXPECT_EQ(midiOutReset(handle), MMSYSERR_NOERROR);
        EXPECT_EQ(midiOutClose(handle), MMSYSERR_NOERROR);
    }
}

TEST(SynthesizerTest, Sounds_while_a_note_is_held_and_falls_silent_on_reset) {
    Synthesizer synthesizer;
    EXPECT_FALSE(synthesizer.loadFont("/nowhere/font.sf2"));
    synthesizer.sendShort(0x7F3C90);
    EXPECT_LT(loudness(synthesizer), kSilence) << "no font, no sound";
    ASSERT_TRUE(synthesizer.loadFont(kFont));
    EXPECT_LT(loudness(synthesizer), kSilence);

    synthesizer.sendShort(0x13C0);   // organ, which sounds on for as long as it is held
    synthesizer.sendShort(0x7F40B0); // pedal
    synthesizer.sendShort(0x7F3C90);
    loudness(synthesizer);
    EXPECT_GT(loudness(synthesizer), 0.01F);
    synthesizer.sendShort(0x003C80);
    loudness(synthesizer);
    EXPECT_GT(loudness(synthesizer), 0.01F) << "the pedal holds the note";
    synthesizer.reset();
    loudness(synthesizer);
    loudness(synthesizer);
    loudness(synthesizer);
    EXPECT_LT(loudness(synthesizer), kSilence);
}

TEST(SynthesizerTest, Obeys_every_kind_of_reset_message) {
    const std::array<Bytes, 3> resets = {{
        {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7},
        {0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7},
        {0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7},
    }};
    Synthesizer synthesizer;
    for (const Bytes& reset : resets) {
        int value = 0;
        synthesizer.sendShort(0x1407B2); // volume
        synthesizer.sendShort(0x2010E2); // pitch bend
        ASSERT_EQ(fluid_synth_get_cc(synthesizer.synth(), 2, 7, &value), FLUID_OK);
        ASSERT_EQ(value, 20);
        ASSERT_EQ(fluid_synth_get_pitch_bend(synthesizer.synth(), 2, &value), FLUID_OK);
        ASSERT_EQ(value, 0x20 << 7 | 0x10);
        synthesizer.sendLong(reset);
        ASSERT_EQ(fluid_synth_get_cc(synthesizer.synth(), 2, 7, &value), FLUID_OK);
        EXPECT_EQ(value, 100) << "manufacturer " << int{reset[1]};
        ASSERT_EQ(fluid_synth_get_pitch_bend(synthesizer.synth(), 2, &value), FLUID_OK);
        EXPECT_EQ(value, 0x2000);
    }
}

TEST_F(Outputs, Rendered_output_hands_out_the_sound_of_what_it_was_sent) {
    constexpr std::size_t kFrames = 4800;
    std::vector<float> sound(2 * kFrames, 1.0F);
    const auto peak = [&] {
        return std::abs(*std::max_element(sound.begin(), sound.end(), [](float a, float b) {
            return std::abs(a) < std::abs(b);
        }));
    };
    EXPECT_EQ(corvmo_RenderAudio(sound.data(), kFrames), 0);
    EXPECT_EQ(peak(), 0.0F);

    corvmo_SetSoundFont(kFont);
    corvmo_UseRenderedOutput(48000);
    ASSERT_EQ(midiOutGetNumDevs(), 1U);
    for (int pass = 0; pass < 2; ++pass) {
        HMIDIOUT output = nullptr;
        ASSERT_EQ(midiOutOpen(&output, 0, 0, 0, CALLBACK_NULL), MMSYSERR_NOERROR);
        ASSERT_EQ(corvmo_RenderAudio(sound.data(), kFrames), 1);
        EXPECT_LT(peak(), 0.001F);
        midiOutShortMsg(output, 0x7F4590); // 440 Hz
        ASSERT_EQ(corvmo_RenderAudio(sound.data(), kFrames), 1);
        EXPECT_GT(peak(), 0.01F);
        midiOutClose(output);
        EXPECT_EQ(corvmo_RenderAudio(sound.data(), kFrames), 0);
        EXPECT_EQ(peak(), 0.0F);
    }

    corvmo_SetSoundFont("/no/such/font.sf2");
    HMIDIOUT output = nullptr;
    ASSERT_EQ(midiOutOpen(&output, 0, 0, 0, CALLBACK_NULL), MMSYSERR_NOERROR);
    EXPECT_EQ(corvmo_RenderAudio(sound.data(), kFrames), 0);
    midiOutClose(output);
}
