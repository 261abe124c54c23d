// ALSA sequencer ports as outputs. All of them are reached through one client, which is there while
// at least one port is open.
#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <mutex>

#include "platform/linux/alsa_quiet.h"
#include "platform/linux/midi_output.h"
#include "platform/linux/priority_mutex.h"
#include "platform/linux/short_message.h"

namespace {

constexpr const char* kClientName = "corvmo32";
constexpr unsigned kSourceCapabilities = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned kSinkCapabilities = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;

snd_seq_t* openSequencer() {
    const QuietAlsa quiet;
    snd_seq_t* sequencer = nullptr;
    if (snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_OUTPUT, SND_SEQ_NONBLOCK) < 0) {
        return nullptr;
    }
    snd_seq_set_client_name(sequencer, kClientName);
    return sequencer;
}

struct CloseSequencer {
    void operator()(snd_seq_t* sequencer) const {
        snd_seq_close(sequencer);
    }
};
using SequencerHandle = std::unique_ptr<snd_seq_t, CloseSequencer>;

// The one client and its one port.
class AlsaClient {
public:
    // Null when there is no sequencer.
    static std::shared_ptr<AlsaClient> shared() {
        static std::mutex s_mutex;
        static std::weak_ptr<AlsaClient> s_client;
        const std::lock_guard guard(s_mutex);
        std::shared_ptr<AlsaClient> client = s_client.lock();
        if (!client) {
            client = std::make_shared<AlsaClient>();
            s_client = client;
        }
        return client->m_port >= 0 ? client : nullptr;
    }

    AlsaClient() : m_sequencer(openSequencer()) {
        if (m_sequencer) {
            m_port = snd_seq_create_simple_port(m_sequencer.get(), kClientName, kSourceCapabilities,
                                                SND_SEQ_PORT_TYPE_MIDI_GENERIC |
                                                    SND_SEQ_PORT_TYPE_APPLICATION);
        }
    }

    // A hardware port stays deaf until somebody has subscribed to it.
    bool connect(snd_seq_addr_t port) {
        const std::lock_guard guard(m_mutex);
        return snd_seq_connect_to(m_sequencer.get(), m_port, port.client, port.port) >= 0;
    }

    void disconnect(snd_seq_addr_t port) {
        const std::lock_guard guard(m_mutex);
        snd_seq_disconnect_to(m_sequencer.get(), m_port, port.client, port.port);
    }

    // 0, or what the system answered.
    int send(snd_seq_event_t& event, snd_seq_addr_t port) {
        event.source.port = static_cast<unsigned char>(m_port);
        event.dest = port;
        event.queue = SND_SEQ_QUEUE_DIRECT;
        const std::lock_guard guard(m_mutex);
        const int result = snd_seq_event_output_direct(m_sequencer.get(), &event);
        return std::min(result, 0);
    }

private:
    PriorityMutex m_mutex;
    SequencerHandle m_sequencer;
    int m_port = -1;
};

// Long messages go in parts that fit the buffers of slow ports, each tried again while there is no
// room.
constexpr std::size_t kPartBytes = 256;
constexpr int kPauseMilliseconds = 1;
constexpr int kTriesPerPart = 2000;

constexpr std::size_t kEncoderBytes = 3;

class AlsaOutput final : public MidiOutput {
public:
    AlsaOutput(std::string name, snd_seq_addr_t port) : MidiOutput(std::move(name)), m_port(port) {}
    ~AlsaOutput() override {
        close();
    }

    MMRESULT open() override {
        m_client = AlsaClient::shared();
        if (!m_client || snd_midi_event_new(kEncoderBytes, &m_encoder) < 0 ||
            !m_client->connect(m_port)) {
            close();
            return MMSYSERR_NODRIVER;
        }
        return MMSYSERR_NOERROR;
    }
    void close() override {
        if (m_client) {
            m_client->disconnect(m_port);
            m_client.reset();
        }
        snd_midi_event_free(m_encoder);
        m_encoder = nullptr;
    }
    void reset() override {
        for (unsigned channel = 0; channel < kMidiChannels; ++channel) {
            sendShort(controlChange(channel, kSustainPedal, 0));
            sendShort(controlChange(channel, kSostenutoPedal, 0));
            sendShort(controlChange(channel, kAllNotesOff, 0));
        }
    }
    MMRESULT sendShort(std::uint32_t message) override {
        const std::array<std::uint8_t, 3> bytes = {statusOf(message), firstDataOf(message),
                                                   secondDataOf(message)};
        snd_seq_event_t event = {};
        const std::lock_guard guard(m_mutex);
        snd_midi_event_reset_encode(m_encoder);
        snd_midi_event_encode(m_encoder, bytes.data(), shortMessageLength(bytes[0]), &event);
        if (event.type == SND_SEQ_EVENT_NONE) {
            return MMSYSERR_NOERROR;
        }
        return m_client->send(event, m_port) == 0 ? MMSYSERR_NOERROR : MIDIERR_NOTREADY;
    }
    MMRESULT sendLong(std::span<const std::uint8_t> bytes) override {
        const std::lock_guard guard(m_mutex);
        while (!bytes.empty()) {
            const auto part = bytes.first(std::min(bytes.size(), kPartBytes));
            if (!sendPart(part)) {
                return MIDIERR_NOTREADY;
            }
            bytes = bytes.subspan(part.size());
        }
        return MMSYSERR_NOERROR;
    }

private:
    bool sendPart(std::span<const std::uint8_t> part) {
        std::array<std::uint8_t, kPartBytes> copy; // the library takes no constant data
        std::copy(part.begin(), part.end(), copy.begin());
        for (int attempt = 0; attempt < kTriesPerPart; ++attempt) {
            snd_seq_event_t event = {};
            event.type = SND_SEQ_EVENT_SYSEX;
            event.flags = SND_SEQ_EVENT_LENGTH_VARIABLE;
            event.data.ext.len = static_cast<unsigned>(part.size());
            event.data.ext.ptr = copy.data();
            const int result = m_client->send(event, m_port);
            if (result != -ENOMEM && result != -EAGAIN) {
                return result == 0;
            }
            ::poll(nullptr, 0, kPauseMilliseconds);
        }
        return false;
    }

    const snd_seq_addr_t m_port;
    PriorityMutex m_mutex; // keeps short messages out of the middle of a long one
    std::shared_ptr<AlsaClient> m_client;
    snd_midi_event_t* m_encoder = nullptr;
};

std::string portName(const char* client, const char* port) {
    const std::string clientName = client;
    const std::string name = port;
    return name.starts_with(clientName) ? name : clientName + " " + name;
}

bool takesMidi(const snd_seq_port_info_t* port) {
    const unsigned capabilities = snd_seq_port_info_get_capability(port);
    return (capabilities & kSinkCapabilities) == kSinkCapabilities &&
           (capabilities & SND_SEQ_PORT_CAP_NO_EXPORT) == 0;
}

void listPorts(snd_seq_t* sequencer, snd_seq_client_info_t* client, MidiOutputs& outputs) {
    snd_seq_port_info_t* port = nullptr;
    snd_seq_port_info_alloca(&port);
    snd_seq_port_info_set_client(port, snd_seq_client_info_get_client(client));
    snd_seq_port_info_set_port(port, -1);
    while (snd_seq_query_next_port(sequencer, port) >= 0) {
        if (takesMidi(port)) {
            outputs.push_back(std::make_unique<AlsaOutput>(
                portName(snd_seq_client_info_get_name(client), snd_seq_port_info_get_name(port)),
                *snd_seq_port_info_get_addr(port)));
        }
    }
}

} // namespace

MidiOutputs listAlsaOutputs() {
    MidiOutputs outputs;
    const SequencerHandle sequencer(openSequencer());
    if (!sequencer) {
        return outputs;
    }
    snd_seq_client_info_t* client = nullptr;
    snd_seq_client_info_alloca(&client);
    snd_seq_client_info_set_client(client, -1);
    while (snd_seq_query_next_client(sequencer.get(), client) >= 0) {
        const int id = snd_seq_client_info_get_client(client);
        if (id != SND_SEQ_CLIENT_SYSTEM && id != snd_seq_client_id(sequencer.get())) {
            listPorts(sequencer.get(), client, outputs);
        }
    }
    return outputs;
}
