// How a word that has been begun could go on.
//
// Everything comes from the usage of the commands, so that a new command completes by itself. Looks at the table, at file
// names and at what the sources tell; disturbs neither the library nor the camera. One thread.
#pragma once

#include "apps/sensorctl/CommandTable.h"
#include "apps/sensorctl/Options.h"

#include <functional>
#include <string>
#include <vector>

namespace sensorctl {

// What the words of a camera are; each may be empty.
struct CompletionSources {
    std::function<std::vector<std::string>(u32 p_nKey)> fnValuesOf;  // the choices of a parameter
    std::function<std::vector<std::string>()> fnTabs;                // the tabs of the style document
};

class Completion {
public:
    // The table must outlive the object.
    Completion(const CommandTable& p_objTable, CompletionSources p_stSources)
        : m_objTable(p_objTable), m_stSources(std::move(p_stSources)) {}

    // The words that could stand where p_strBegun stands, behind p_vecBefore: sorted, each once, all beginning like
    // p_strBegun in any case of letters. More can follow one that ends in "/" or "="; the others are whole.
    std::vector<std::string> candidates(const Words& p_vecBefore, const std::string& p_strBegun) const;

    // The same for the arguments of the program: its options, and commands separated by "--".
    std::vector<std::string> argumentCandidates(const Words& p_vecBefore, const std::string& p_strBegun) const;

private:
    std::vector<std::string> allOf(const std::string& p_strKind, const Words& p_vecBefore,
                                   const std::string& p_strBegun) const;
    std::vector<std::string> commandNames() const;

    const CommandTable& m_objTable;
    const CompletionSources m_stSources;
};

// What all of the words begin with, whatever the case of letters, as the first of them spells it.
std::string commonStart(const std::vector<std::string>& p_vecWords);

// The files and folders whose path begins like this; folders end in "/".
std::vector<std::string> pathsLike(const std::string& p_strBegun);

}  // namespace sensorctl
