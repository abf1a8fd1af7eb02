// What changes in a camera while nobody gives commands: its schemes, its day/night state, its light, its parameters and
// what the driver holds.
//
// Looks leave no trace in the transcript, but for the first: it asks the library for the style document. One thread.
#pragma once

#include "apps/sensorctl/Result.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace sensorctl {

struct Change {
    std::string strText;  // "scheme 0 -> 1"
    Json data;            // the same by name
};

class Watch {
public:
    // What to look at.
    struct Subjects {
        bool bScheme = true;
        bool bMode = true;
        bool bState = true;       // day/night
        bool bLight = true;       // of the scene, in whole levels on the scale of the day/night thresholds
        bool bParameters = true;  // of the current scheme
        bool bDriver = true;      // values that the driver holds for commands that can be set
        std::set<u32> setKeys;    // only these parameters; empty: all
    };

    // Takes the first look. The session must outlive the object.
    Watch(Session& p_objSession, const Subjects& p_stSubjects);

    // What is different from the look before.
    std::vector<Change> look();

private:
    struct State {
        int nScheme = -1;
        int nMode = 0;
        int nNight = 0;
        int nLight = 0;
        double dLux = 0;
        std::uint64_t nCalls = 0;  // of the transcript
        std::map<u32, int> mapParameters;
        std::map<u32, int> mapDriver;
    };

    State take(const State& p_stBefore) const;
    std::map<u32, int> parameters() const;
    std::map<u32, int> driverValues() const;

    Session& m_objSession;
    const Subjects m_stSubjects;
    std::vector<StyleParameter> m_vecStyle;  // empty while nothing is initialised
    State m_stBefore;
};

}  // namespace sensorctl
