// Holds the table of operations: which there are, which take the lock, which driver calls they make, how long they wait,
// what they return without init.
#include "platform/Clock.h"
#include "platform/ImageAdjust.h"
#include "technic/QVMutex.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/docs/Operations.h"
#include "tests/unit/docs/OperationsTable.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

// Cells of a row about an operation of the class.
constexpr std::size_t kLock = 1;
constexpr std::size_t kBlocks = 2;
constexpr std::size_t kDriverCalls = 3;
constexpr std::size_t kWithoutInit = 4;
constexpr std::size_t kFailure = 5;

constexpr char kFreeFunctions[] = "Free functions";
constexpr char kWords[] = "Words";
constexpr char kInner[] = "Shown, and not for hosts";

bool isOfClass(const TableRow& p_stRow) {
    return kFreeFunctions != p_stRow.section && kWords != p_stRow.section && kInner != p_stRow.section;
}

std::vector<TableRow> classRows() {
    std::vector<TableRow> vecRows = operationRows();
    vecRows.erase(std::remove_if(vecRows.begin(), vecRows.end(), [](const TableRow& r) { return !isOfClass(r); }),
                  vecRows.end());
    return vecRows;
}

// The names of a list of symbols, without class, arguments and marks; a name stands as often as it has overloads.
std::multiset<std::string> exportedNames() {
    std::ifstream list(EXPORTED_SYMBOLS);
    std::multiset<std::string> setNames;
    for (std::string strLine; std::getline(list, strLine);) {
        if (strLine.empty() || '#' == strLine.front()) {
            continue;
        }
        std::string strName = strLine.substr(0, strLine.find_first_of("(["));
        const std::size_t nClass = strName.rfind("::");
        setNames.insert(std::string::npos == nClass ? strName : strName.substr(nClass + 2));
    }
    return setNames;
}

// The names of the functions between "public:" and "private:".
std::set<std::string> publicMembers() {
    std::ifstream header(PUBLIC_HEADER);
    std::set<std::string> setNames;
    bool bPublic = false;
    for (std::string strLine; std::getline(header, strLine);) {
        strLine = strLine.substr(0, strLine.find("//"));
        if ("public:" == strLine || "private:" == strLine) {
            bPublic = "public:" == strLine;
        }
        std::smatch match;
        if (bPublic && std::string::npos == strLine.find("= delete") &&
            std::regex_search(strLine, match, std::regex("(~?\\w+)\\("))) {
            setNames.insert(match[1]);
        }
    }
    return setNames;
}

// What the reference says behind "@lock", for each public member that says it.
std::map<std::string, std::string> locksOfReference() {
    std::ifstream header(PUBLIC_HEADER);
    std::map<std::string, std::string> mapLocks;
    std::string strLock;
    for (std::string strLine; std::getline(header, strLine) && "private:" != strLine;) {
        std::smatch match;
        if (std::regex_search(strLine, match, std::regex("/// @lock (\\w+)"))) {
            strLock = match[1];
        } else if (std::regex_search(strLine, match, std::regex("^    [^/]*?(~?\\w+)\\("))) {
            if (!strLock.empty()) {
                mapLocks[match[1]] = strLock;
            }
            strLock.clear();
        }
    }
    return mapLocks;
}

// "ia ch0 set 34 = 50" as the table writes it: "`set 34`".
std::string asTableCall(const std::string& p_strLine) {
    std::istringstream words(p_strLine);
    std::string strIa;
    std::string strChannel;
    std::string strOption;
    std::string strCommand;
    words >> strIa >> strChannel >> strOption >> strCommand;
    return "commands" == strOption ? "`commands`" : "`" + strOption + " " + strCommand + "`";
}

// Only calls in code letters, with their commands.
bool isExact(const std::string& p_strCell) {
    static const std::regex kCalls("`(commands|[a-z]+ [0-9]+)`(, `(commands|[a-z]+ [0-9]+)`)*");
    return "none" == p_strCell || std::regex_match(p_strCell, kCalls);
}

// The seconds behind "clock", 0 without.
double clockSeconds(const std::string& p_strCell) {
    std::smatch match;
    return std::regex_search(p_strCell, match, std::regex("clock ([0-9.]+) s")) ? std::stod(match[1]) : 0.0;
}

void discardOutput() {
    const int nNull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nNull, STDOUT_FILENO);
}

// A controller with two user schemes that hold every parameter that an operation sets, or none of those that it reads.
// Scheme 0 is current; no background thread runs. Command 49 has a list of three values, of which the second is in force.
class Desk {
public:
    explicit Desk(bool p_bHoldsKeys) {
        m_objController.setVideoStreamModule(&camera);
        std::vector<KeyVal> vecRecords = {{8000, 0}, {8001, 0}, {8002, 0}, {8003, 24}, {8004, 0}};
        if (p_bHoldsKeys) {
            for (const u32 nKey :
                 {16u,   34u,   49u,   112u,  113u,  128u,  130u,  144u,  160u,  170u,  171u,  1536u, 2304u,
                  2305u, 2306u, 2307u, 2308u, 2309u, 2312u, 2313u, 2368u, 2369u, 2384u, 2385u, 2400u, 2401u}) {
                vecRecords.push_back({nKey, 0});
            }
        }
        camera.dynamicCommands({49});
        camera.range(49, RecordingCamera::rangeOf(8, {7, 8, 9}));
        camera.driverHolds(0, 49, 8);
        probe.buildSets(2, vecRecords);
        probe.setCurScheme(0);
    }
    ~Desk() { m_objController.uinit(); }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    // init is called on a controller that is not built.
    std::string call(const std::string& p_strName) {
        if ("init" == p_strName) {
            m_objController.uinit();
        }
        return callOperation(p_strName, m_objController);
    }

    RecordingCamera camera;

private:
    ISensorController m_objController;

public:
    SensorControllerProbe probe{m_objController};
};

bool readsBack(const TableRow& p_stRow) {
    return "Reading back" == p_stRow.section;
}

// Every call of a cell fails, and every notification of a key that an operation sets.
void failAll(RecordingCamera& p_objCamera, const std::string& p_strCalls) {
    constexpr int kNoAnswer = -3;
    static const std::map<std::string, u32> kOptions = {{"set", IA_CMD_OPT_SET},
                                                        {"get", IA_CMD_OPT_GET},
                                                        {"range", IA_CMD_OPT_GET_PARAM_RNAGE},
                                                        {"status", IA_CMD_OPT_GET_EXEC_STATUS}};
    static const std::regex kCall("([a-z]+) ([0-9]+)");
    p_objCamera.driverFails(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, kNoAnswer);
    for (std::sregex_iterator it(p_strCalls.begin(), p_strCalls.end(), kCall), itEnd; it != itEnd; ++it) {
        const u32 nCommand = static_cast<u32>(std::stoul((*it)[2]));
        p_objCamera.driverFails(nCommand, kOptions.at((*it)[1]), kNoAnswer);
        p_objCamera.videoFails(static_cast<int>(nCommand), kNoAnswer);
    }
}

class OperationsTable : public testing::Test {
protected:
    OperationsTable() { root.makeFolder("/mnt/mtd/code/config_file"); }

    TestRoot root;
};

TEST_F(OperationsTable, HasExactlyOneRowForEverySymbolThatIsShown) {
    std::multiset<std::string> setRows;
    for (const TableRow& stRow : operationRows()) {
        setRows.insert(stRow.name());
    }
    EXPECT_EQ(exportedNames(), setRows);
}

TEST_F(OperationsTable, TellsHostsOfThePublicOperationsAndOfNoOther) {
    std::set<std::string> setRows;
    for (const TableRow& stRow : classRows()) {
        EXPECT_TRUE(setRows.insert(stRow.name()).second) << stRow.name() << " stands there twice";
    }
    EXPECT_EQ(publicMembers(), setRows);
}

TEST_F(OperationsTable, IsHeldForEveryPublicOperation) {
    const std::vector<std::string> vecNames = operationNames();
    EXPECT_EQ(publicMembers(), std::set<std::string>(vecNames.begin(), vecNames.end()));
}

// QVMutex ends the process when its holder locks it a second time, and says so.
TEST_F(OperationsTable, SaysWhichOperationsTakeTheLock) {
    for (const TableRow& stRow : classRows()) {
        SCOPED_TRACE(stRow.name());
        const std::string strLock = stRow.cells[kLock].substr(0, stRow.cells[kLock].find(','));
        ASSERT_TRUE("mutex" == strLock || "none" == strLock) << stRow.cells[kLock];
        const auto callWhileHeld = [&] {
            discardOutput();
            Desk desk(!readsBack(stRow));
            const QVMutexManager guard(&desk.probe.mutex(), "the test", 7);
            desk.call(stRow.name());
            ::_exit(0);
        };
        if ("mutex" == strLock) {
            EXPECT_DEATH(callWhileHeld(),
                         "QVMutex: locked a second time at ISensorController.cpp:[0-9]+ by the thread "
                         "that locked it at the test:7");
        } else {
            EXPECT_EXIT(callWhileHeld(), testing::ExitedWithCode(0), "");
        }
    }
}

TEST_F(OperationsTable, SaysOfTheLockWhatTheReferenceSays) {
    std::map<std::string, std::string> mapLocks = locksOfReference();
    EXPECT_GT(mapLocks.size(), 40u);
    for (const TableRow& stRow : classRows()) {
        const auto found = mapLocks.find(stRow.name());
        if (mapLocks.end() != found) {
            EXPECT_EQ(found->second, stRow.cells[kLock].substr(0, stRow.cells[kLock].find(','))) << stRow.name();
        }
    }
}

TEST_F(OperationsTable, SaysWhichDriverCallsAnOperationMakes) {
    int nExact = 0;
    for (const TableRow& stRow : classRows()) {
        SCOPED_TRACE(stRow.name());
        const std::string& strCell = stRow.cells[kDriverCalls];
        if (!isExact(strCell)) {
            continue;
        }
        ++nExact;
        Desk desk(!readsBack(stRow));
        desk.camera.clear();
        quietly([&] { return desk.call(stRow.name()); });
        std::string strCalls;
        for (const std::string& strLine : desk.camera.linesLike("ia ")) {
            strCalls += (strCalls.empty() ? "" : ", ") + asTableCall(strLine);
        }
        EXPECT_EQ(strCell, strCalls.empty() ? "none" : strCalls);
    }
    EXPECT_GT(nExact, 90);
}

TEST_F(OperationsTable, SaysThatWhatASetHoldsIsReadWithoutTheDriver) {
    for (const TableRow& stRow : classRows()) {
        if (!readsBack(stRow) || "none" == stRow.cells[kDriverCalls] || !isExact(stRow.cells[kDriverCalls])) {
            continue;
        }
        Desk desk(true);
        desk.camera.clear();
        EXPECT_EQ("true", quietly([&] { return desk.call(stRow.name()); })) << stRow.name();
        EXPECT_THAT(desk.camera.linesLike("ia "), testing::IsEmpty()) << stRow.name();
    }
}

// "likewise" stands for the cell above it.
TEST_F(OperationsTable, SaysWhatAnOperationReturnsWhenDriverAndVideoModuleFail) {
    std::string strFailure;
    for (const TableRow& stRow : classRows()) {
        SCOPED_TRACE(stRow.name());
        strFailure = "likewise" == stRow.cells[kFailure] ? strFailure : stRow.cells[kFailure];
        const std::string& strCalls = stRow.cells[kDriverCalls];
        if ("none" == strCalls || !isExact(strCalls)) {
            continue;
        }
        Desk desk(!readsBack(stRow));
        failAll(desk.camera, strCalls);
        EXPECT_EQ(0u == strFailure.find("true") ? "true" : "false", quietly([&] { return desk.call(stRow.name()); }));
    }
}

TEST_F(OperationsTable, SaysThatWhatCallsTheDriverBlocksForIt) {
    for (const TableRow& stRow : operationRows()) {
        if (kWords == stRow.section || kInner == stRow.section) {
            continue;
        }
        SCOPED_TRACE(stRow.name());
        const bool bBlocks = std::string::npos != stRow.cells[isOfClass(stRow) ? kBlocks : 1].find("driver");
        EXPECT_EQ("none" != stRow.cells[isOfClass(stRow) ? kDriverCalls : 2], bBlocks);
    }
}

// On a thread of the test, a wait moves the held clock by its length. The image pipeline never starts.
TEST_F(OperationsTable, SaysHowLongAnOperationWaitsAtMost) {
    for (const TableRow& stRow : classRows()) {
        SCOPED_TRACE(stRow.name());
        Desk desk(true);
        desk.camera.runRet = 1;
        const INT64 nBefore = platform::Clock::monotonicMicroseconds();
        quietly([&] { return desk.call(stRow.name()); });
        EXPECT_EQ(static_cast<INT64>(clockSeconds(stRow.cells[kBlocks]) * 1e6),
                  platform::Clock::monotonicMicroseconds() - nBefore);
    }
}

TEST_F(OperationsTable, SaysWhatAnOperationReturnsWithoutInit) {
    for (const TableRow& stRow : classRows()) {
        SCOPED_TRACE(stRow.name());
        RecordingCamera camera;
        camera.dynamicCommands({49});
        camera.range(49, RecordingCamera::rangeOf(8, {7, 8, 9}));
        camera.driverHolds(0, 49, 8);
        ISensorController controller;
        controller.setVideoStreamModule(&camera);
        EXPECT_EQ(stRow.cells[kWithoutInit], quietly([&] { return callOperation(stRow.name(), controller); }));
        controller.uinit();
    }
}

}  // namespace
