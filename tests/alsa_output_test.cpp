// Outputs on ALSA sequencer ports. The sequencer calls that reach the kernel are replaced in this
// program by a small sequencer of its own, so that the test runs on machines without one.
#include <gtest/gtest.h>

#include <alsa/asoundlib.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/system.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Port {
    int client;
    int port;
    const char* clientName;
    const char* name;
    unsigned capabilities;
};

constexpr unsigned kWritable = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;
constexpr int kOwnClient = 130;

// In the order of clients and ports, as the kernel lists them.
const std::vector<Port> kPorts = {
    {0, 0, "System", "Timer", kWritable},
    {20, 0, "Keyboard", "Keyboard MIDI 1", kWritable | SND_SEQ_PORT_CAP_READ},
    {20, 1, "Keyboard", "Sensors", SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ},
    {128, 0, "Synth", "Private", kWritable | SND_SEQ_PORT_CAP_NO_EXPORT},
    {128, 3, "Synth", "Input", kWritable},
    {kOwnClient, 0, "corvmo32", "corvmo32", kWritable},
};

struct Sequencer {
    bool present = true;
    int openHandles = 0;
    int refusals = 0;           ///< sends to refuse with ENOMEM before the next one is taken
    std::vector<int> connected; ///< client numbers
    std::vector<snd_seq_event_t> events;
    std::vector<Bytes> longParts;
};

Sequencer g_sequencer;

snd_seq_t* const kHandle = reinterpret_cast<snd_seq_t*>(&g_sequencer);

class AlsaOutputs : public testing::Test {
protected:
    AlsaOutputs() {
        g_sequencer = {};
        corvmo_SetOutputs(nullptr, 0);
        corvmo_SetAudioDriver("none");
    }
    ~AlsaOutputs() override {
        corvmo_SetOutputs(nullptr, 0);
        corvmo_SetAudioDriver(nullptr);
        EXPECT_EQ(g_sequencer.openHandles, 0);
    }

    static HMIDIOUT open(UINT index) {
        HMIDIOUT handle = nullptr;
        EXPECT_EQ(midiOutOpen(&handle, index, 0, 0, CALLBACK_NULL), MMSYSERR_NOERROR);
        return handle;
    }
    static MMRESULT sendLong(HMIDIOUT handle, Bytes bytes) {
        MIDIHDR header = {};
        header.lpData = reinterpret_cast<char*>(bytes.data());
        header.dwBufferLength = static_cast<DWORD>(bytes.size());
        EXPECT_EQ(midiOutPrepareHeader(handle, &header, sizeof header), MMSYSERR_NOERROR);
        const MMRESULT result = midiOutLongMsg(handle, &header, sizeof header);
        EXPECT_EQ(midiOutUnprepareHeader(handle, &header, sizeof header), MMSYSERR_NOERROR);
        return result;
    }
};

std::string outputName(UINT index) {
    char name[64] = "";
    corvmo_GetOutputName(index, name, sizeof name);
    return name;
}

} // namespace

extern "C" {

int snd_seq_open(snd_seq_t** handle, const char*, int, int) {
    if (!g_sequencer.present) {
        return -ENOENT;
    }
    ++g_sequencer.openHandles;
    *handle = kHandle;
    return 0;
}

int snd_seq_close(snd_seq_t*) {
    --g_sequencer.openHandles;
    return 0;
}

int snd_seq_set_client_name(snd_seq_t*, const char*) {
    return 0;
}

int snd_seq_client_id(snd_seq_t*) {
    return kOwnClient;
}

int snd_seq_create_simple_port(snd_seq_t*, const char*, unsigned, unsigned) {
    return 5;
}

int snd_seq_query_next_client(snd_seq_t*, snd_seq_client_info_t* info) {
    for (const Port& port : kPorts) {
        if (port.client > snd_seq_client_info_get_client(info)) {
            snd_seq_client_info_set_client(info, port.client);
            snd_seq_client_info_set_name(info, port.clientName);
            return 0;
        }
    }
    return -ENOENT;
}

int snd_seq_query_next_port(snd_seq_t*, snd_seq_port_info_t* info) {
    // The record keeps the port as a byte, so that -1 is the one before the first.
    const auto next = static_cast<unsigned char>(snd_seq_port_info_get_port(info) + 1);
    for (const Port& port : kPorts) {
        if (port.client == snd_seq_port_info_get_client(info) && port.port >= next) {
            snd_seq_port_info_set_port(info, port.port);
            snd_seq_port_info_set_name(info, port.name);
            snd_seq_port_info_set_capability(info, port.capabilities);
            return 0;
        }
    }
    return -ENOENT;
}

int snd_seq_connect_to(snd_seq_t*, int, int client, int) {
    g_sequencer.connected.push_back(client);
    return 0;
}

int snd_seq_disconnect_to(snd_seq_t*, int, int client, int) {
    std::erase(g_sequencer.connected, client);
    return 0;
}

int snd_seq_event_output_direct(snd_seq_t*, snd_seq_event_t* event) {
    if (g_sequencer.refusals > 0) {
        --g_sequencer.refusals;
        return -ENOMEM;
    }
    g_sequencer.events.push_back(*event);
    if (event->type == SND_SEQ_EVENT_SYSEX) {
        const auto* data = static_cast<const std::uint8_t*>(event->data.ext.ptr);
        g_sequencer.longParts.emplace_back(data, data + event->data.ext.len);
    }
    return 28;
}

} // extern "C"

TEST_F(AlsaOutputs, Are_the_ports_that_others_may_write_to) {
    ASSERT_EQ(midiOutGetNumDevs(), 3u);
    EXPECT_EQ(outputName(1), "Keyboard MIDI 1");
    EXPECT_EQ(outputName(2), "Synth Input");
    EXPECT_EQ(g_sequencer.openHandles, 0) << "listing keeps nothing open";
}

TEST_F(AlsaOutputs, Are_none_without_a_sequencer_and_listed_afresh_after_the_last_closing) {
    g_sequencer.present = false;
    EXPECT_EQ(midiOutGetNumDevs(), 1u);
    g_sequencer.present = true;
    EXPECT_EQ(midiOutClose(open(0)), MMSYSERR_NOERROR);
    ASSERT_EQ(midiOutGetNumDevs(), 3u);
    g_sequencer.present = false;
    HMIDIOUT handle = nullptr;
    EXPECT_EQ(midiOutOpen(&handle, 1, 0, 0, CALLBACK_NULL), MMSYSERR_NODRIVER);
}

TEST_F(AlsaOutputs, Get_short_messages_as_events_sent_straight_to_their_port) {
    HMIDIOUT keyboard = open(1);
    HMIDIOUT synth = open(2);
    EXPECT_EQ(g_sequencer.openHandles, 1) << "one client for all";
    EXPECT_EQ(g_sequencer.connected, (std::vector<int>{20, 128}));

    for (DWORD message : {0x7F3C92u, 0x003C82u, 0x400BB0u, 0x05C3u, 0x7F7FE4u, 0xF8u}) {
        EXPECT_EQ(midiOutShortMsg(synth, message), MMSYSERR_NOERROR);
    }
    EXPECT_EQ(midiOutShortMsg(keyboard, 0x0000E4), MMSYSERR_NOERROR);

    const auto& events = g_sequencer.events;
    ASSERT_EQ(events.size(), 7u);
    EXPECT_EQ(events[0].type, SND_SEQ_EVENT_NOTEON);
    EXPECT_EQ(events[0].data.note.channel, 2);
    EXPECT_EQ(events[0].data.note.note, 0x3C);
    EXPECT_EQ(events[0].data.note.velocity, 0x7F);
    EXPECT_EQ(events[0].queue, SND_SEQ_QUEUE_DIRECT);
    EXPECT_EQ(events[0].source.port, 5);
    EXPECT_EQ(events[0].dest.client, 128);
    EXPECT_EQ(events[0].dest.port, 3);
    EXPECT_EQ(events[1].type, SND_SEQ_EVENT_NOTEOFF);
    EXPECT_EQ(events[2].type, SND_SEQ_EVENT_CONTROLLER);
    EXPECT_EQ(events[2].data.control.param, 11u);
    EXPECT_EQ(events[2].data.control.value, 64);
    EXPECT_EQ(events[3].type, SND_SEQ_EVENT_PGMCHANGE);
    EXPECT_EQ(events[3].data.control.value, 5);
    EXPECT_EQ(events[4].type, SND_SEQ_EVENT_PITCHBEND);
    EXPECT_EQ(events[4].data.control.value, 8191);
    EXPECT_EQ(events[5].type, SND_SEQ_EVENT_CLOCK);
    EXPECT_EQ(events[6].dest.client, 20);
    EXPECT_EQ(events[6].data.control.value, -8192);

    EXPECT_EQ(midiOutClose(synth), MMSYSERR_NOERROR);
    EXPECT_EQ(g_sequencer.connected, (std::vector<int>{20}));
    EXPECT_EQ(midiOutShortMsg(keyboard, 0x90), MMSYSERR_NOERROR);
}

TEST_F(AlsaOutputs, Get_long_messages_whole_even_when_the_port_is_busy) {
    HMIDIOUT handle = open(1);
    Bytes bytes(1000, 0x11);
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    g_sequencer.refusals = 3;
    EXPECT_EQ(sendLong(handle, bytes), MMSYSERR_NOERROR);
    Bytes received;
    for (const Bytes& part : g_sequencer.longParts) {
        EXPECT_LE(part.size(), 256u);
        received.insert(received.end(), part.begin(), part.end());
    }
    EXPECT_EQ(received, bytes);
}

TEST_F(AlsaOutputs, Release_every_note_and_pedal_on_reset) {
    HMIDIOUT handle = open(1);
    EXPECT_EQ(midiOutReset(handle), MMSYSERR_NOERROR);
    std::vector<std::vector<unsigned>> released(16);
    ASSERT_EQ(g_sequencer.events.size(), 48u);
    for (const snd_seq_event_t& event : g_sequencer.events) {
        ASSERT_EQ(event.type, SND_SEQ_EVENT_CONTROLLER);
        ASSERT_EQ(event.data.control.value, 0);
        released[event.data.control.channel].push_back(event.data.control.param);
    }
    for (const auto& controllers : released) {
        EXPECT_EQ(controllers, (std::vector<unsigned>{64, 66, 123}));
    }
}
