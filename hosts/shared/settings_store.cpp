// The file of remembered settings: JSON, an object per song that holds only what was set.
#include "shared/settings_store.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <system_error>

namespace host {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* kSongs = "songs";
constexpr const char* kFolder = "corvmo32";
constexpr int kMaxData = 127; ///< largest data byte of MIDI

/// A whole-number setting of a channel and its name in the file.
struct ChannelField {
    const char* name;
    int ChannelSettings::*value;
    int lowest;
    int highest;
};

constexpr ChannelField kChannelFields[] = {
    {"volume", &ChannelSettings::volume, -kMostOffset, kMostOffset},
    {"pan", &ChannelSettings::pan, -kMostOffset, kMostOffset},
    {"reverb", &ChannelSettings::reverb, -kMostOffset, kMostOffset},
    {"chorus", &ChannelSettings::chorus, -kMostOffset, kMostOffset},
    {"program", &ChannelSettings::program, 0, kMaxData},
    {"bankMsb", &ChannelSettings::bankMsb, 0, kMaxData},
    {"bankLsb", &ChannelSettings::bankLsb, 0, kMaxData},
};

constexpr struct {
    const char* name;
    bool ChannelSettings::*value;
} kChannelSwitches[] = {{"mute", &ChannelSettings::muted}, {"solo", &ChannelSettings::solo}};

std::string keyOf(const SongFile& song) {
    char text[32];
    std::snprintf(text, sizeof text, "%016llx",
                  static_cast<unsigned long long>(song.fingerprint()));
    return text;
}

// Reading: whatever is missing, of another kind or out of range is as if it had never been set.

template <typename Number>
void readNumber(const Json& object, const char* name, Number lowest, Number highest,
                Number& value) {
    const auto found = object.find(name);
    if (found != object.end() && found->is_number()) {
        const double number = found->get<double>();
        if (number >= static_cast<double>(lowest) && number <= static_cast<double>(highest)) {
            value = static_cast<Number>(number);
        }
    }
}

ChannelSettings readChannel(const Json& object) {
    ChannelSettings channel;
    for (const ChannelField& field : kChannelFields) {
        readNumber(object, field.name, field.lowest, field.highest, channel.*field.value);
    }
    for (const auto& field : kChannelSwitches) {
        const auto found = object.find(field.name);
        channel.*field.value = found != object.end() && *found == true;
    }
    return channel;
}

SongSettings readSettings(const Json& object) {
    SongSettings settings;
    readNumber(object, "tempo", kSlowestPercent, kFastestPercent, settings.tempoPercent);
    readNumber(object, "transpose", -kMostTranspose, kMostTranspose, settings.transpose);
    readNumber(object, "displayOffset", -kMostDisplayOffset, kMostDisplayOffset,
               settings.displayOffset);
    if (const auto encoding = object.find("encoding");
        encoding != object.end() && encoding->is_string()) {
        settings.encoding = encoding->get<std::string>();
    }
    const Json channels = object.value("channels", Json());
    for (int i = 0; channels.is_object() && i < kChannels; ++i) {
        const auto channel = channels.find(std::to_string(i + 1));
        if (channel != channels.end() && channel->is_object()) {
            settings.channels[static_cast<std::size_t>(i)] = readChannel(*channel);
        }
    }
    return settings;
}

// Writing.

Json writeChannel(const ChannelSettings& channel) {
    const ChannelSettings songs;
    Json object = Json::object();
    for (const ChannelField& field : kChannelFields) {
        if (channel.*field.value != songs.*field.value) {
            object[field.name] = channel.*field.value;
        }
    }
    for (const auto& field : kChannelSwitches) {
        if (channel.*field.value) {
            object[field.name] = true;
        }
    }
    return object;
}

Json writeSettings(const SongSettings& settings) {
    const SongSettings songs;
    Json object = Json::object();
    if (settings.tempoPercent != songs.tempoPercent) {
        object["tempo"] = settings.tempoPercent;
    }
    if (settings.transpose != songs.transpose) {
        object["transpose"] = settings.transpose;
    }
    if (settings.displayOffset != songs.displayOffset) {
        object["displayOffset"] = settings.displayOffset;
    }
    if (!settings.encoding.empty()) {
        object["encoding"] = settings.encoding;
    }
    for (int i = 0; i < kChannels; ++i) {
        const ChannelSettings& channel = settings.channels[static_cast<std::size_t>(i)];
        if (channel != ChannelSettings()) {
            object["channels"][std::to_string(i + 1)] = writeChannel(channel);
        }
    }
    return object;
}

/// An object without songs when there is no file or it is damaged.
Json readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    Json all = Json::parse(file, nullptr, false);
    const bool sound = all.is_object() && all.contains(kSongs) && all[kSongs].is_object();
    return sound ? all : Json{{kSongs, Json::object()}};
}

/// A damaged file may still be of use to its owner.
void keepDamaged(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (file && Json::parse(file, nullptr, false).is_discarded()) {
        file.close();
        std::error_code ignored;
        fs::rename(path, fs::path(path) += ".damaged", ignored);
    }
}

/// Readers see the old file or the new one, never a part.
bool writeFile(const fs::path& path, const Json& all) {
    constexpr int kIndent = 2;
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    const fs::path fresh = fs::path(path) += "." + std::to_string(std::random_device()()) + ".new";
    std::ofstream file(fresh, std::ios::binary);
    file << all.dump(kIndent, ' ', false, Json::error_handler_t::replace) << '\n';
    file.close();
    if (file) {
        fs::rename(fresh, path, error);
    }
    if (!file || error) {
        std::error_code ignored;
        fs::remove(fresh, ignored);
        return false;
    }
    return true;
}

} // namespace

fs::path SettingsStore::usualFile() {
#ifdef _WIN32
    const wchar_t* const roaming = _wgetenv(L"APPDATA");
    fs::path root = roaming == nullptr ? L"" : roaming;
#else
    const char* const config = std::getenv("XDG_CONFIG_HOME");
    fs::path root = config == nullptr ? "" : config;
    if (!root.is_absolute()) {
        const char* const home = std::getenv("HOME");
        root = home == nullptr || *home == '\0' ? fs::path() : fs::path(home) / ".config";
    }
#endif
    return root.empty() ? fs::path() : root / kFolder / "songs.json";
}

std::optional<SongSettings> SettingsStore::find(const SongFile& song) const {
    if (m_file.empty()) {
        return std::nullopt;
    }
    const Json all = readFile(m_file);
    const auto entry = all[kSongs].find(keyOf(song));
    if (entry == all[kSongs].end() || !entry->is_object()) {
        return std::nullopt;
    }
    const SongSettings settings = readSettings(*entry);
    return settings == SongSettings() ? std::nullopt : std::optional(settings);
}

bool SettingsStore::remember(const SongFile& song, const SongSettings& settings) const {
    if (m_file.empty()) {
        return false;
    }
    Json all = readFile(m_file);
    Json& songs = all[kSongs];
    if (settings == SongSettings()) {
        if (songs.erase(keyOf(song)) == 0) {
            return true;
        }
    } else {
        Json entry = writeSettings(settings);
        entry["file"] = textOf(pathOf(song.name()).filename());
        songs[keyOf(song)] = std::move(entry);
    }
    keepDamaged(m_file);
    return writeFile(m_file, all);
}

} // namespace host
