// What camerad keeps for each channel besides the camera's own parameter files: which scheme it was left in, whether it
// switches by itself, and how the user calls the schemes.
//
// One file below the device root, written as a whole at each change:
//
//     {"version": 1, "channels": {"1": {"automatic": true, "scheme": 0, "names": {"1": "Night"}}}}
//
// A file that cannot be understood is not lost: it is renamed to "settings.json.broken", and everything is as it was never
// kept.
//
// Threads: every function may be called from any thread; they block for as long as the medium takes.
#pragma once

#include <map>
#include <mutex>
#include <string>

namespace camerad {

struct ChannelSettings {
    bool bAutomatic = false;
    int nScheme = 0;                      // that the user chose last; counts while nothing switches by itself
    std::map<int, std::string> mapNames;  // of schemes that have one
};

class Settings {
public:
    static constexpr char kFile[] = "/mnt/mtd/camerad/settings.json";

    // Reads the file. p_strProblem: what was wrong with it, a sentence for a person; empty when nothing was.
    explicit Settings(std::string& p_strProblem);

    ChannelSettings of(int p_nChannel) const;
    // Throws Refusal (Failed) when the file could not be written; then nothing has changed.
    void keep(int p_nChannel, const ChannelSettings& p_stSettings);

private:
    mutable std::mutex m_mutex;  // guards everything below and the file
    std::map<int, ChannelSettings> m_mapChannels;
};

}  // namespace camerad
