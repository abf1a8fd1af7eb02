// The devices that the sample tree describes: the tree as it is, and each folder of rootfs/variants laid over it.
#pragma once

#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"
#include "tests/unit/rootfs/Documents.h"

#include <string>
#include <vector>

// One channel of one device, and the documents that it is built from.
struct Channel {
    std::string device;  // name of the variant, "camera" for the tree as it is
    u32 deviceType = 0;
    int number = 0;  // from 1
    ModuleConfigure module;
    std::string stylePath;
    std::string diversityPath;

    std::string name() const { return device + " channel " + std::to_string(number); }
};

std::vector<std::string> deviceNames();

// Through the platform's parsers, as a program would. False when a file is missing or not understood.
bool machineOf(const std::string& p_strDevice, MachineInfo& p_objMachine);
bool modulesOf(const MachineInfo& p_objMachine, std::vector<ModuleConfigure>& p_vecModules);

std::vector<Channel> channelsOf(const std::string& p_strDevice);
std::vector<Channel> allChannels();

// The value of a field of a detail string by plain search: the name, the next "=", the next ")". False without one of
// them.
bool detailField(const std::string& p_strDetail, const std::string& p_strName, std::string& p_strValue);

// What a diversity document did to a channel's base style.
struct Merge {
    StyleDocument style;
    std::vector<std::string> blocks;  // names of the variant blocks that applied
    std::vector<std::string> missed;  // operations whose tab was not there
};

// The edits as a reader of the documents understands them, apart from the library's own merge.
Merge mergeFor(const Channel& p_stChannel);
