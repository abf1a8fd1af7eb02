#include "tests/integration/Story.h"

#include "tests/integration/StoryFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace fs = std::filesystem;

namespace {

// Around a call in the captured output: the time and the text of the entry stand between them.
constexpr char kCallBegins = '\x01';
constexpr char kTimeEnds = '\x02';
constexpr char kCallEnds = '\x03';

const std::string kIndent(10, ' ');

// Standard error goes to a file of its own from begin to end; what a sanitizer says does not.
class StandardError {
public:
    void begin() {
        char szName[] = "stderr-XXXXXX";
        m_nCapture = mkostemp(szName, O_CLOEXEC);
        unlink(szName);
        m_nSaved = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
        dup2(m_nCapture, STDERR_FILENO);
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(m_nSaved)));
#endif
    }
    std::string end() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(STDERR_FILENO)));
#endif
        dup2(m_nSaved, STDERR_FILENO);
        close(m_nSaved);
        std::string strText;
        char buffer[4096];
        lseek(m_nCapture, 0, SEEK_SET);
        for (ssize_t nRead = 0; (nRead = ::read(m_nCapture, buffer, sizeof(buffer))) > 0;) {
            strText.append(buffer, static_cast<std::size_t>(nRead));
        }
        close(m_nCapture);
        return strText;
    }

private:
    int m_nCapture = -1;
    int m_nSaved = -1;
};
StandardError g_objStandardError;

void writeOut(const std::string& p_strText) {
    const ssize_t nWritten = ::write(STDOUT_FILENO, p_strText.data(), p_strText.size());
    static_cast<void>(nWritten);  // a story that lost a line does not compare
}

std::string twoDigits(int p_nNumber) {
    return (p_nNumber < 10 ? "0" : "") + std::to_string(p_nNumber);
}

std::string clockOf(const platform::CivilTime& p_stTime) {
    return twoDigits(p_stTime.hour) + ":" + twoDigits(p_stTime.minute) + ":" + twoDigits(p_stTime.second);
}

std::string keyName(u32 p_nKey) {
    constexpr u32 kWDRChange = 2370;
    switch (p_nKey) {
#define ROW(name, number, command, handler) \
    case number:                            \
        return #name;
#define STORED_ROW(name, number) ROW(name, number, 0, 0)
#define DRIVER_NAMED_ROW(name, number, command, handler) ROW(name, number, command, handler)
#include "sensor/KeyCmdTable.def"
#undef ROW
#undef STORED_ROW
#undef DRIVER_NAMED_ROW
        case kWDRChange:
            return "wide dynamic range changes";
        default:
            return "";
    }
}

// The number of a key, and its name if it has one.
std::string named(u32 p_nKey) {
    const std::string strName = keyName(p_nKey);
    return std::to_string(p_nKey) + (strName.empty() ? "" : " (" + strName + ")");
}

std::string nameOf(const simcam::TranscriptEntry& p_stEntry) {
    if (simcam::TranscriptEntry::Kind::Notification == p_stEntry.kind) {
        return keyName(p_stEntry.command);
    }
    const simcam::CommandRow* const pRow = simcam::findCommand(p_stEntry.command);
    return nullptr == pRow ? "" : pRow->name;
}

void writeDown(const simcam::TranscriptEntry& p_stEntry) {
    const std::string strName = nameOf(p_stEntry);
    writeOut(kCallBegins + clockOf(p_stEntry.time) + kTimeEnds + simcam::toText(p_stEntry, false) +
             (strName.empty() ? "" : "  (" + strName + ")") + kCallEnds);
}

std::string withoutColours(const std::string& p_strText) {
    std::string strPlain;
    for (std::size_t i = 0; i < p_strText.size(); ++i) {
        if ('\033' == p_strText[i]) {
            i = std::min(p_strText.find('m', i), p_strText.size() - 1);
        } else {
            strPlain += p_strText[i];
        }
    }
    return strPlain;
}

// Line numbers that are part of the message; see Initialisation.cpp.
bool isFrozen(const std::string& p_strLine) {
    if (std::string::npos == p_strLine.find("file:ISensorController.cpp")) {
        return false;
    }
    for (const char* szEnd : {"fun:init line:66", "fun:init line:71", "fun:init line:78", "fun:init line:89",
                              "fun:init line:192", "fun:init line:206", "fun:init line:241", "fun:uinit line:253",
                              "fun:resetParameters line:1930", "fun:resetParameters line:1953"}) {
        const std::string strEnd = szEnd;
        if (p_strLine.size() >= strEnd.size() &&
            0 == p_strLine.compare(p_strLine.size() - strEnd.size(), strEnd.size(), strEnd)) {
            return true;
        }
    }
    return false;
}

std::string withoutRealLines(const std::string& p_strLine) {
    const std::string strMark = " line:";
    const std::size_t nMark = p_strLine.find(strMark);
    if (std::string::npos == nMark || isFrozen(p_strLine)) {
        return p_strLine;
    }
    const std::size_t nNumber = nMark + strMark.size();
    const std::size_t nBehind = std::min(p_strLine.find_first_not_of("0123456789", nNumber), p_strLine.size());
    return p_strLine.substr(0, nNumber) + "#" + p_strLine.substr(nBehind);
}

std::vector<std::string> linesOf(const std::string& p_strText) {
    std::vector<std::string> vecLines;
    std::istringstream stream(p_strText);
    for (std::string strLine; std::getline(stream, strLine);) {
        vecLines.push_back(strLine);
    }
    return vecLines;
}

// So that it can be seen.
std::string withVisibleEnd(const std::string& p_strLine) {
    return !p_strLine.empty() && ' ' == p_strLine.back() ? p_strLine + "$" : p_strLine;
}

// A line of something that was said.
std::string said(const std::string& p_strWhere, const std::string& p_strLine) {
    return p_strWhere + (p_strLine.empty() ? "" : " ") + withVisibleEnd(p_strLine);
}

// A few lines around a place, the one there marked.
std::string around(const std::vector<std::string>& p_vecLines, std::size_t p_nLine) {
    constexpr std::size_t kContext = 4;
    std::string strText;
    const std::size_t nEnd = std::min(p_vecLines.size(), p_nLine + kContext + 1);
    for (std::size_t i = p_nLine - std::min(p_nLine, kContext); i < nEnd; ++i) {
        strText += (i == p_nLine ? "  > " : "    ") + std::to_string(i + 1) + "  " + p_vecLines[i] + "\n";
    }
    return nEnd <= p_nLine ? strText + "  > (the end)\n" : strText;
}

}  // namespace

Story::Story() {
    camera.transcript().setObserver(writeDown);
}

Story::~Story() {
    camera.transcript().setObserver({});
}

std::string Story::shown(const std::string& p_strResult) {
    constexpr std::size_t kLong = 100;
    std::string strShown;
    std::size_t nLineBegins = 0;
    for (const char cByte : p_strResult) {
        if ('(' == cByte && strShown.size() - nLineBegins > kLong) {
            nLineBegins = strShown.size();
            strShown += "\n" + kIndent + "   ";
        }
        strShown += cByte;
    }
    return strShown;
}

void Story::begin(const char* p_szWho, const std::string& p_strWhat) {
    closeRepetition();
    m_vecLines.push_back((m_vecLines.empty() ? "" : "\n") + std::string("== ") + p_szWho + ": " + p_strWhat);
    m_vecCalls.clear();
    g_objStandardError.begin();
    detail::beginCapture();
}

void Story::end(const std::string& p_strResult) {
    platform::Clock::settle();
    const std::string strOutput = detail::endCapture();
    const std::string strErrors = g_objStandardError.end();
    take(strOutput);
    closeRepetition();
    for (const std::string& strLine : linesOf(strErrors)) {
        add(said("err", strLine));
    }
    takeLog();
    takeFiles();
    if (!p_strResult.empty()) {
        add(p_strResult);
    }
}

// The captured output: what was said, and the calls in between.
void Story::take(const std::string& p_strOutput) {
    std::size_t nFrom = 0;
    while (nFrom < p_strOutput.size()) {
        const std::size_t nCall = std::min(p_strOutput.find(kCallBegins, nFrom), p_strOutput.size());
        takeText(p_strOutput.substr(nFrom, nCall - nFrom));
        if (nCall == p_strOutput.size()) {
            return;
        }
        const std::size_t nEnd = std::min(p_strOutput.find(kCallEnds, nCall), p_strOutput.size());
        takeCall(p_strOutput.substr(nCall + 1, nEnd - nCall - 1));
        nFrom = nEnd + 1;
    }
}

void Story::takeText(const std::string& p_strText) {
    for (const std::string& strLine : linesOf(withoutColours(p_strText))) {
        addTimed("", said("out", withoutRealLines(strLine)));
    }
}

void Story::takeCall(const std::string& p_strMarked) {
    const std::size_t nTime = p_strMarked.find(kTimeEnds);
    const std::string strCall = p_strMarked.substr(nTime + 1);
    m_vecCalls.push_back(strCall.substr(0, strCall.find("  (")));
    addTimed(p_strMarked.substr(0, nTime), strCall);
}

void Story::takeLog() {
    for (const std::string& strLine : linesOf(root.errorLog())) {
        add(said("log", withoutRealLines(strLine)));
    }
    root.remove("/mnt/mtd/log/SensorError.log");
}

void Story::takeFiles() {
    const std::map<std::string, std::string> mapNow = storyfiles::below(root.path());
    for (const std::string& strLine : storyfiles::changes(m_mapFiles, mapNow)) {
        add(strLine);
    }
    m_mapFiles = mapNow;
}

void Story::addTimed(const std::string& p_strTime, const std::string& p_strLine) {
    if (p_strLine == m_strRepeated) {
        ++m_nRepetitions;
        m_strLastTime = p_strTime;
        return;
    }
    closeRepetition();
    m_strRepeated = p_strLine;
    m_vecLines.push_back((p_strTime.empty() ? kIndent : p_strTime + "  ") + p_strLine);
}

void Story::closeRepetition() {
    if (m_nRepetitions > 0) {
        m_vecLines.push_back((m_strLastTime.empty() ? kIndent : m_strLastTime + "  ") + "... " +
                             std::to_string(m_nRepetitions) + (1 == m_nRepetitions ? " time more" : " times more"));
    }
    m_nRepetitions = 0;
    m_strRepeated.clear();
}

void Story::add(const std::string& p_strLine) {
    m_vecLines.push_back(kIndent + p_strLine);
}

void Story::pass(int p_nSeconds) {
    step("clock", std::to_string(p_nSeconds) + " s pass", [&] { seconds(p_nSeconds); });
}

void Story::until(int p_nHour, int p_nMinute, int p_nSecond) {
    constexpr int kDay = 24 * 60 * 60;
    const platform::CivilTime stNow = platform::Clock::civilTime();
    const platform::CivilTime stThen{stNow.year, stNow.month, stNow.day, p_nHour, p_nMinute, p_nSecond};
    const int nLength = ((p_nHour - stNow.hour) * 60 + p_nMinute - stNow.minute) * 60 + p_nSecond - stNow.second;
    step("clock", "until " + clockOf(stThen), [&] { seconds(nLength > 0 ? nLength : nLength + kDay); });
}

void Story::setClock(int p_nHour, int p_nMinute) {
    const platform::CivilTime stTime{2024, 5, 2, p_nHour, p_nMinute, 0};
    world("the clock is set to " + clockOf(stTime), [&] { platform::Clock::hold(stTime); });
}

void Story::start(Channel& p_objChannel) {
    host("init", [&] { return p_objChannel.init(); });
}

void Story::flush(Channel& p_objChannel) {
    host("flush", [&] { return p_objChannel.controller.flush(); });
}

int Story::set(Channel& p_objChannel, u32 p_nKey, int p_nValue) {
    return host("setParameter " + named(p_nKey) + " " + std::to_string(p_nValue),
                [&] { return p_objChannel.controller.setParameter(static_cast<int>(p_nKey), p_nValue, true); });
}

int Story::set(Channel& p_objChannel, const std::string& p_strText) {
    return host("setParameters \"" + p_strText + "\"",
                [&] { return p_objChannel.controller.setParameters(p_strText, true); });
}

std::string Story::get(Channel& p_objChannel, u32 p_nKey) {
    return host("getParameter " + named(p_nKey), [&] {
        int nValue = 0;
        const bool bRead = p_objChannel.controller.getParameter(static_cast<int>(p_nKey), nValue);
        return bRead ? "true " + std::to_string(nValue) : std::string("false");
    });
}

std::string Story::list(Channel& p_objChannel, const std::string& p_strKeys) {
    return host("getParameters \"" + p_strKeys + "\"", [&] {
        std::string strPairs;
        const int nResult = p_objChannel.controller.getParameters(p_strKeys, strPairs);
        return 1 == nResult ? "1 " + strPairs : std::to_string(nResult);
    });
}

std::string Story::all(Channel& p_objChannel) {
    return host("getAllParameters", [&] {
        std::string strPairs;
        return p_objChannel.controller.getAllParameters(strPairs) ? strPairs : "false";
    });
}

std::string Story::range(Channel& p_objChannel, int p_nCmd) {
    return host("getSensorParamRange " + std::to_string(p_nCmd), [&] {
        int nDefault = -1;
        std::string strRange;
        const bool bTold = p_objChannel.controller.getSensorParamRange(p_nCmd, nDefault, strRange);
        return bTold ? "true default " + std::to_string(nDefault) + " range \"" + strRange + "\""
                     : std::string("false");
    });
}

int Story::check(Channel& p_objChannel, std::string& p_strText) {
    const std::string strResult = host("SensorCheck \"" + std::string(p_strText) + "\"", [&] {
        const int nResult = p_objChannel.controller.SensorCheck(p_strText);
        return std::to_string(nResult) + " \"" + p_strText + "\"";
    });
    return std::stoi(strResult);
}

int Story::restore(Channel& p_objChannel, u32 p_nKey) {
    return host("restore " + named(p_nKey), [&] { return p_objChannel.controller.restore(static_cast<int>(p_nKey)); });
}

bool Story::rollback(Channel& p_objChannel) {
    return host("resetToLastParameters", [&] { return p_objChannel.controller.resetToLastParameters(); });
}

void Story::scheme(Channel& p_objChannel, int p_nScheme) {
    host("setParamScheme " + std::to_string(p_nScheme),
         [&] { return p_objChannel.controller.setParamScheme(p_nScheme); });
}

void Story::mode(Channel& p_objChannel, int p_nMode) {
    host("setParamMode " + std::to_string(p_nMode), [&] { return p_objChannel.controller.setParamMode(p_nMode); });
}

std::string Story::style(Channel& p_objChannel) {
    std::string strDocument;
    host("getUIStyleFile", [&] { strDocument = p_objChannel.controller.getUIStyleFile(); });
    for (const std::string& strLine : storyfiles::styleLines(strDocument)) {
        add(strLine);
    }
    return strDocument;
}

void Story::uinit(Channel& p_objChannel) {
    host("uinit", [&] { p_objChannel.controller.uinit(); });
}

void Story::light(const std::string& p_strLux) {
    world("light " + p_strLux + " lux", [&] { camera.scene().setLight(std::stod(p_strLux)); });
}

void Story::fault(const std::string& p_strText) {
    world("fault " + p_strText, [&] {
        simcam::Fault stFault;
        std::string strError;
        if (!simcam::parseFault(p_strText, stFault, strError)) {
            throw std::invalid_argument(strError);
        }
        camera.faults().add(stFault);
    });
}

void Story::noFaults() {
    world("no faults any more", [&] { camera.faults().clear(); });
}

std::vector<std::string> Story::setsOf(const std::string& p_strStart) const {
    std::vector<std::string> vecFound;
    std::copy_if(m_vecCalls.begin(), m_vecCalls.end(), std::back_inserter(vecFound),
                 [&](const std::string& p_strCall) { return 0 == p_strCall.rfind(p_strStart, 0); });
    return vecFound;
}

void Story::expectTranscript(const std::string& p_strName) const {
    std::string strHappened;
    for (const std::string& strLine : m_vecLines) {
        strHappened += strLine + "\n";
    }
    const fs::path file = fs::path(TRANSCRIPTS) / (p_strName + ".txt");
    if (nullptr != std::getenv("SENSORDLL_RENEW_TRANSCRIPTS")) {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary | std::ios::trunc) << strHappened;
        return;
    }
    std::ifstream stream(file, std::ios::binary);
    ASSERT_TRUE(stream) << "there is no transcript " << p_strName
                        << ".txt yet; SENSORDLL_RENEW_TRANSCRIPTS=1 writes what happened there, to be read";
    const std::string strExpected{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (strExpected == strHappened) {
        return;
    }
    const std::vector<std::string> vecExpected = linesOf(strExpected);
    const std::vector<std::string> vecHappened = linesOf(strHappened);
    const std::size_t nSame = static_cast<std::size_t>(
        std::mismatch(vecExpected.begin(), vecExpected.end(), vecHappened.begin(), vecHappened.end()).first -
        vecExpected.begin());
    ADD_FAILURE() << "the story differs from transcripts/" << p_strName << ".txt at line " << nSame + 1
                  << "\nexpected:\n"
                  << around(vecExpected, nSame) << "happened:\n"
                  << around(vecHappened, nSame)
                  << "After reading it, SENSORDLL_RENEW_TRANSCRIPTS=1 writes what happened there.";
}
