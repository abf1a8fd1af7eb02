#include "apps/sensorctl/Output.h"

#include "apps/sensorctl/Shared.h"

#include <unistd.h>

#include <cerrno>

namespace sensorctl {

namespace {

std::string textOf(const Json& p_value) {
    return p_value.is_string() ? p_value.get<std::string>()
                               : p_value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// "getZoomValue: position=16384 ratio=1000"
std::string oneLine(const std::string& p_strCommand, const Json& p_data) {
    const std::string name = p_strCommand.substr(0, p_strCommand.find(' '));
    if (p_data.empty()) {
        return name + ": ok";
    }
    std::string line = name + ":";
    for (const auto& [key, value] : p_data.items()) {
        line += " " + key + "=" + textOf(value);
    }
    return line;
}

}  // namespace

std::string Position::text() const {
    return "command" == strSource ? strSource + " " + std::to_string(nNumber)
                                  : strSource + ":" + std::to_string(nNumber);
}

void Output::command(const std::string& p_strCommand) {
    if (Form::text == m_eForm) {
        write("> " + printable(p_strCommand) + "\n");
    }
}

void Output::transcript(const std::string& p_strText, const Json& p_data) {
    event("transcript", "    " + p_strText, p_data);
}

void Output::event(const char* p_szType, const std::string& p_strText, const Json& p_data) {
    if (Form::text == m_eForm) {
        write(printable(p_strText) + "\n");
        return;
    }
    Json line = {{"type", p_szType}};
    line.update(p_data);
    writeJson(line);
}

void Output::result(const Position& p_stPosition, const std::string& p_strCommand, const Result& p_stResult) {
    if (Form::jsonLines == m_eForm) {
        Json line = {{"type", "result"},
                     {"source", p_stPosition.strSource},
                     {"line", p_stPosition.nNumber},
                     {"command", p_strCommand},
                     {"ok", p_stResult.bOk}};
        if (!p_stResult.bOk) {
            line["error"] = p_stResult.strError;
        }
        line["data"] = p_stResult.data;
        writeJson(line);
        return;
    }
    std::string text;
    for (const std::string& line : p_stResult.vecLines) {
        text += printable(line) + "\n";
    }
    if (!p_stResult.bOk) {
        text += "FAILED: " + printable(p_strCommand) + "\n";
    } else if (text.empty()) {
        text = printable(oneLine(p_strCommand, p_stResult.data)) + "\n";
    }
    write(text);
}

void Output::summary(std::size_t p_nCommands, std::size_t p_nFailed, int p_nStatus) {
    if (Form::jsonLines == m_eForm) {
        writeJson({{"type", "summary"}, {"commands", p_nCommands}, {"failed", p_nFailed}, {"status", p_nStatus}});
    }
}

bool Output::isWhole() const {
    const std::lock_guard<std::mutex> guard(m_objMutex);
    return !m_bFailed;
}

void Output::writeJson(const Json& p_data) {
    write(p_data.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

void Output::write(const std::string& p_strLines) {
    const std::lock_guard<std::mutex> guard(m_objMutex);
    for (std::size_t done = 0; done < p_strLines.size() && !m_bFailed;) {
        const ssize_t count = ::write(m_nDescriptor, p_strLines.data() + done, p_strLines.size() - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (EINTR != errno) {
            m_bFailed = true;
        }
    }
}

}  // namespace sensorctl
