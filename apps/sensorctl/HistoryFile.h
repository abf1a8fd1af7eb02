// The lines that were typed at the prompt in earlier sessions.
//
// A text file of the user, one line each, oldest first; at most kMostLines of at most kLongestLine bytes. It is replaced
// through a file beside it, so that a session that dies leaves it whole. One thread.
#pragma once

#include <string>
#include <vector>

namespace sensorctl {

class HistoryFile {
public:
    static constexpr std::size_t kMostLines = 500;
    static constexpr std::size_t kLongestLine = 4096;  // bytes; longer lines are not kept

    // An empty path keeps nothing.
    explicit HistoryFile(const std::string& p_strPath) : m_strPath(p_strPath) {}

    const std::string& path() const { return m_strPath; }

    // The newest lines. Empty when there is no file, or none that can be read.
    std::vector<std::string> load() const;

    // Adds lines to what the file holds by now, and drops the oldest. Folders on the way are made, for the user alone.
    // False when it cannot be written, or is something else than a regular file.
    bool append(const std::vector<std::string>& p_vecLines) const;

private:
    const std::string m_strPath;
};

// Where the history of a user lies: $SENSORCTL_HISTORY when that is set (empty: nowhere), otherwise sensorctl/history in
// $XDG_STATE_HOME, which is .local/state in $HOME unless it is set. Nowhere as well without a home, and when that place
// is inside the device root: the camera's files are not ours. The arguments are the three variables, null when not set.
std::string historyPath(const char* p_szHistory, const char* p_szState, const char* p_szHome,
                        const std::string& p_strDeviceRoot);

}  // namespace sensorctl
