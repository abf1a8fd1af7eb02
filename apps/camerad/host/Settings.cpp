#include "apps/camerad/host/Settings.h"

#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/Refusal.h"
#include "apps/camerad/host/SchemeRules.h"
#include "platform/DeviceRoot.h"
#include "platform/QVFile.h"
#include "platform/Types.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace camerad {

namespace {

constexpr int kVersion = 1;
constexpr INT64 kLargestFile = 256 * 1024;  // bytes; four channels of 32 schemes have a few thousand

constexpr int kMostChannels = 4;
constexpr int kMostSchemes = 32;  // of a channel; the factory's own comes behind them

// Nothing when there is no such file. Throws std::runtime_error when it cannot be read.
std::optional<std::string> contentOf(const char* p_szFile) {
    if (!QVFile::exists(p_szFile)) {
        return std::nullopt;
    }
    QVFile file;
    if (!file.open(p_szFile, QVFile::modeRead)) {
        throw std::runtime_error("it cannot be opened");
    }
    const INT64 nLength = file.getLength();
    if (nLength < 0 || nLength > kLargestFile) {
        throw std::runtime_error("it is larger than any settings file");
    }
    std::string strText(static_cast<std::size_t>(nLength), '\0');
    if (file.read(strText.data(), static_cast<int>(nLength)) != nLength) {
        throw std::runtime_error("it cannot be read");
    }
    return strText;
}

// The settings have four levels. Nesting is bounded while the text is read, before anything is built from it.
nlohmann::json parsed(const std::string& p_strText) {
    constexpr int kDeepest = 8;
    const auto fnBounded = [](int p_nDepth, nlohmann::json::parse_event_t, nlohmann::json&) {
        if (p_nDepth > kDeepest) {
            throw std::runtime_error("it is nested too deeply");
        }
        return true;
    };
    return nlohmann::json::parse(p_strText, fnBounded);
}

// Throws std::runtime_error when the number is not between the two.
int wholeNumber(const nlohmann::json& p_objValue, const char* p_szWhat, int p_nMin, int p_nMax) {
    // A number without a sign may be larger than any signed one.
    const double dValue = p_objValue.is_number_integer() ? p_objValue.get<double>() : p_nMin - 1.0;
    if (dValue < p_nMin || dValue > p_nMax) {
        throw std::runtime_error(std::string(p_szWhat) + " is no number from " + std::to_string(p_nMin) + " to " +
                                 std::to_string(p_nMax));
    }
    return p_objValue.get<int>();
}

// The number that a member of an object has for its name.
int numberOfName(const std::string& p_strName, const char* p_szWhat, int p_nMin, int p_nMax) {
    constexpr std::size_t kMostDigits = 3;
    const bool bDigits = !p_strName.empty() && p_strName.size() <= kMostDigits &&
                         std::string::npos == p_strName.find_first_not_of("0123456789");
    return wholeNumber(bDigits ? nlohmann::json(std::stoi(p_strName)) : nlohmann::json(), p_szWhat, p_nMin, p_nMax);
}

const nlohmann::json& objectAt(const nlohmann::json& p_objParent, const char* p_szName) {
    const nlohmann::json& object = p_objParent.at(p_szName);
    if (!object.is_object()) {
        throw std::runtime_error(std::string("\"") + p_szName + "\" is no object");
    }
    return object;
}

ChannelSettings channelOf(const nlohmann::json& p_objChannel) {
    ChannelSettings settings;
    settings.bAutomatic = p_objChannel.at("automatic").get<bool>();
    settings.nScheme = wholeNumber(p_objChannel.at("scheme"), "a scheme", 0, kMostSchemes);
    for (const auto& [strScheme, name] : objectAt(p_objChannel, "names").items()) {
        const std::string strName = name.get<std::string>();
        if (strName.empty() || !isPlainText(strName) || charactersOf(strName) > kLongestSchemeName) {
            throw std::runtime_error("a name of a scheme is empty, too long or has control characters");
        }
        settings.mapNames[numberOfName(strScheme, "a scheme with a name", 0, kMostSchemes)] = strName;
    }
    return settings;
}

std::map<int, ChannelSettings> read() {
    std::map<int, ChannelSettings> mapChannels;
    const std::optional<std::string> content = contentOf(Settings::kFile);
    if (!content) {
        return mapChannels;
    }
    const nlohmann::json settings = parsed(*content);
    if (settings.at("version") != kVersion) {
        throw std::runtime_error("it is of another version");
    }
    for (const auto& [strChannel, channel] : objectAt(settings, "channels").items()) {
        mapChannels[numberOfName(strChannel, "a channel", 1, kMostChannels)] = channelOf(channel);
    }
    return mapChannels;
}

std::string textOf(const std::map<int, ChannelSettings>& p_mapChannels) {
    nlohmann::json channels = nlohmann::json::object();
    for (const auto& [nChannel, settings] : p_mapChannels) {
        nlohmann::json names = nlohmann::json::object();
        for (const auto& [nScheme, strName] : settings.mapNames) {
            names[std::to_string(nScheme)] = strName;
        }
        channels[std::to_string(nChannel)] = {
            {"automatic", settings.bAutomatic}, {"scheme", settings.nScheme}, {"names", std::move(names)}};
    }
    return nlohmann::json({{"version", kVersion}, {"channels", std::move(channels)}}).dump(2) + "\n";
}

bool write(const std::string& p_strText) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(platform::devicePath(Settings::kFile)).parent_path(),
                                        ignored);
    QVFile file;
    const int nLength = static_cast<int>(p_strText.size());
    return file.open(Settings::kFile, QVFile::modeWrite | QVFile::modeTruncate) &&
           file.write(p_strText.data(), nLength) == nLength && file.close();
}

}  // namespace

Settings::Settings(std::string& p_strProblem) {
    p_strProblem.clear();
    try {
        m_mapChannels = read();
    } catch (const std::exception& objWhy) {
        const std::string strPath = platform::devicePath(kFile);
        std::rename(strPath.c_str(), (strPath + ".broken").c_str());
        p_strProblem = std::string(kFile) + " cannot be used and is now called settings.json.broken: " + objWhy.what();
    }
}

ChannelSettings Settings::of(int p_nChannel) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_mapChannels.find(p_nChannel);
    return m_mapChannels.end() == found ? ChannelSettings{} : found->second;
}

void Settings::keep(int p_nChannel, const ChannelSettings& p_stSettings) {
    const std::lock_guard lock(m_mutex);
    std::map<int, ChannelSettings> mapChannels = m_mapChannels;
    mapChannels[p_nChannel] = p_stSettings;
    if (!write(textOf(mapChannels))) {
        throw Refusal(Refusal::Kind::Failed, "not-kept", std::string(kFile) + " cannot be written");
    }
    m_mapChannels = std::move(mapChannels);
}

}  // namespace camerad
